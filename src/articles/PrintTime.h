#pragma once

#include <string>

#include "system/LocalTime.h"

namespace tolvane {

// "DD.MM.YYYY - HH.NN.SS", as the printed list tells when it was printed.
std::string PrintTime(const TLocalDateTime& now);

}  // namespace tolvane
