#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace tolvane {

// A failure whose text may hold zero bytes, at which what() ends.
class TFailure : public std::runtime_error {
public:
    explicit TFailure(std::string text) : std::runtime_error(text), text_(std::move(text)) {}
    const std::string& Text() const noexcept { return text_; }

private:
    std::string text_;
};

}  // namespace tolvane
