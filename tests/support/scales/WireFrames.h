#pragma once

#include <cstdint>

#include "comm/DevCommBaseUnit.h"

namespace tolvane::test {

// Frames as the protocol describes them, made and read without the code under test.

// A reply with any body. Each byte has a marker of its own before it, which the protocol allows and
// the driver never does.
TCmdBuffer Wire(const TCmdBuffer& body);
// A correct reply of a scale.
TCmdBuffer ReplyTo(std::uint8_t command, const TCmdBuffer& data, std::uint8_t address = 0);
// The body of a request: address, command, data and checksum. The marker 0D says that 14 was added
// to the bytes that follow it, 0C that nothing was.
TCmdBuffer BodyOf(const TCmdBuffer& request);

}  // namespace tolvane::test
