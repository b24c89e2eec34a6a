#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "command/LedgerContent.h"

namespace tolvane {

// The text of a ledger's file: JSON in UTF-8. Its first member is a checksum of all that follows,
// in every format, so that a damaged file never passes for a ledger.

class TLedgerDamaged : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
// Whole, but of a later format.
class TLedgerNewer : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// `content.saved` must be set.
std::string LedgerText(const TLedgerContent& content);
// Throws TLedgerDamaged or TLedgerNewer, each with its words for a person.
TLedgerContent ParseLedgerText(std::string_view bytes);

}  // namespace tolvane
