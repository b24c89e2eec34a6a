#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace tolvane::test {

// An environment variable that test.sh sets. Throws std::runtime_error when it is not set.
inline std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr || *value == '\0')
        throw std::runtime_error(std::string("the environment variable ") + name +
                                 " is not set; test.sh sets it");
    return value;
}

// How often to do something; a release sets the variable to more than is usual.
inline int CountFromEnvironment(const char* name, int usual) {
    const char* value = std::getenv(name);
    return value == nullptr ? usual : std::atoi(value);
}

}  // namespace tolvane::test
