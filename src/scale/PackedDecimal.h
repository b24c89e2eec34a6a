#pragma once

#include "comm/DevCommBaseUnit.h"

namespace tolvane {

// Three bytes of packed decimal, least significant pair first. A price in currency units, rounded
// to hundredths; a weight field in thousandths of the unit. Throw std::runtime_error with the value
// when it does not fit in six digits.
void AppendPrice(double price, TCmdBuffer& data);
void AppendWeight(double weight, TCmdBuffer& data);

}  // namespace tolvane
