#pragma once

#include <cstdint>
#include <memory>

#include "config/TypesUnit.h"
#include "scale/DevElicomScaleUnit.h"
#include "upload/ScaleFactory.h"

namespace tolvane {

// The number after "COM" in the address of a serial scale; 1 when there is none.
std::int32_t SerialPortNumber(const TScaleRec& rec);

// The driver of a configured scale over its kind of link, not open yet. Throws std::runtime_error
// for a kind of link that does not exist.
std::unique_ptr<TElicomScale> MakeScaleDriver(TScaleFactory& factory, const TScaleRec& rec);

}  // namespace tolvane
