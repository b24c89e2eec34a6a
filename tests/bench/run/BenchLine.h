#pragma once

#include <string>

#include "text/Cp1251.h"

namespace tolvane::bench {

// The article line of one article with every text.
inline std::string BenchLine(int number) {
    std::string line = std::to_string(number);
    line += "|22012|1|0|0|7.10|0|5|";
    line +=
        "Свински врат без кос|Свински врат без кос|Съхранение от 0 до +4 гр.С|"
        "Произход: България|Да се консумира след термична обработка|L240502-1|"_cp1251;
    return line + "0|0|" + std::to_string(1000 + number) + "|";
}

}  // namespace tolvane::bench
