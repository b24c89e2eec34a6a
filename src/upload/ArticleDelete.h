#pragma once

#include <cstdint>

#include "scale/DevElicomScaleUnit.h"

namespace tolvane {

// How the price of an article is set to zero.
enum class TDeleteForm : std::uint8_t {
    Listed,    // by the command without a weight field
    Numbered,  // by the command with a weight field, for every number of a scale
};

// Deletes one article: sets its price to zero and clears its name. Throws TScaleRefusal or TFailure
// when the price cannot be set. Returns whether the name was cleared, too; ErrCode is then 0 or
// what the scale has answered to that.
bool DeleteArticle(TElicomScale& scale, std::int32_t plu, TDeleteForm form, std::int32_t& ErrCode);

}  // namespace tolvane
