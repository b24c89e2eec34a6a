#pragma once

#include <stdexcept>

namespace tolvane {

// The options or the configuration do not fit; the text (UTF-8) says what to do.
class TUsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace tolvane
