#pragma once

#include <exception>
#include <string>
#include <system_error>

namespace tolvane {

// The system's own words for an error and its number, in code page 1251: "Connection refused
// (111)". On Windows in the user's language; what the code page lacks becomes '?'.
std::string SystemErrorText(const std::error_code& error);

// SystemErrorText of a system error, the whole text of a TFailure, otherwise the exception's own
// message.
std::string FailureText(const std::exception& failure);

}  // namespace tolvane
