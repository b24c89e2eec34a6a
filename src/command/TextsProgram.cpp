// Prints the manual page or the completion: tolvane_texts manual|bash.

#include <iostream>
#include <string_view>

#include "command/Options.h"

int main(int count, char** words) {
    const std::string_view word = count == 2 ? words[1] : "";
    if (word != "manual" && word != "bash") return 2;
    std::cout << (word == "manual" ? tolvane::ManualPage() : tolvane::BashCompletion());
    return std::cout ? 0 : 1;
}
