#include "text/Failure.h"

namespace tolvane {

std::string MessageOf(const std::exception& failure) {
    const auto* whole = dynamic_cast<const TFailure*>(&failure);
    if (whole != nullptr) return whole->Text();
    const bool isMemory = dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
    return isMemory ? std::string(kOutOfMemory) : failure.what();
}

std::string MessageOfCurrentException() {
    std::string message;
    try {
        throw;
    } catch (const std::exception& failure) {
        message = MessageOf(failure);
    } catch (...) {  // NOLINT(bugprone-empty-catch): it has no message
    }
    return message.empty() ? std::string(kUnknownError) : message;
}

}  // namespace tolvane
