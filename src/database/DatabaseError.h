#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tolvane {

// One argument of a status vector. `kind` is the client library's own code of the argument.
struct TStatusArgument {
    std::int32_t kind = 0;
    std::int64_t number = 0;  // error codes and numbers
    std::string text;         // texts
};

// Anything that went wrong with the database. what() is the server's own message, its lines joined
// by line breaks, or the module's own text; code page 1251. Status is the whole status vector,
// empty when the server had no part in it.
class TDatabaseError : public std::runtime_error {
public:
    explicit TDatabaseError(const std::string& message) : TDatabaseError(message, {}, 0) {}
    TDatabaseError(const std::string& message, std::vector<TStatusArgument> status,
                   std::int32_t sqlCode)
        : std::runtime_error(message),
          status_(std::make_shared<const std::vector<TStatusArgument>>(std::move(status))),
          sqlCode_(sqlCode) {}

    const std::vector<TStatusArgument>& Status() const noexcept { return *status_; }
    // The first error code of the status vector; 0 when it is empty.
    std::int64_t ErrorCode() const noexcept {
        return status_->empty() ? 0 : status_->front().number;
    }
    std::int32_t SqlCode() const noexcept { return sqlCode_; }

private:
    std::shared_ptr<const std::vector<TStatusArgument>> status_;  // copies must not throw
    std::int32_t sqlCode_;
};

}  // namespace tolvane
