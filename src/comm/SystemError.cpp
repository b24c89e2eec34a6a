#include "comm/SystemError.h"

namespace tolvane {

std::string FailureText(const std::exception& failure) {
    const auto* system = dynamic_cast<const std::system_error*>(&failure);
    return system != nullptr ? SystemErrorText(system->code()) : failure.what();
}

}  // namespace tolvane
