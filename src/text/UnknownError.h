#pragma once

#include <string_view>

#include "text/Cp1251.h"

namespace tolvane {

// What is told of an exception that carries no message.
inline constexpr std::string_view kUnknownError = "Неизвестна грешка"_cp1251;

}  // namespace tolvane
