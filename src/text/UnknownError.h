#pragma once

#include <string_view>

#include "text/Cp1251.h"

namespace tolvane {

// The message shown for an exception that carries none.
inline constexpr std::string_view kUnknownError = "Неизвестна грешка"_cp1251;

}  // namespace tolvane
