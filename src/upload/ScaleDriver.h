#pragma once

#include <memory>

#include "config/TypesUnit.h"
#include "scale/DevElicomScaleUnit.h"
#include "upload/ScaleFactory.h"

namespace tolvane {

// The driver of a configured scale over its kind of link, not open yet. Throws std::runtime_error
// for a kind of link that does not exist.
std::unique_ptr<TElicomScale> MakeScaleDriver(TScaleFactory& factory, const TScaleRec& rec);

}  // namespace tolvane
