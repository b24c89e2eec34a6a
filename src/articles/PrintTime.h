#pragma once

#include <string>

#include "system/LocalTime.h"

namespace tolvane {

// "DD.MM.YYYY - HH.NN.SS", the time of printing on the printed list.
std::string PrintTime(const TLocalDateTime& now);

}  // namespace tolvane
