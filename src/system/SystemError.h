#pragma once

#include <exception>
#include <string>
#include <system_error>

namespace tolvane {

// What happens to the full stop at the end of the system's words.
enum class TFullStop { Dropped, Kept };

// The system's own words for an error and its number, in code page 1251: "Connection refused
// (111)". On Windows in the user's language; what the code page lacks becomes '?'.
std::string SystemErrorText(const std::error_code& error, TFullStop fullStop = TFullStop::Dropped);

// SystemErrorText of a std::system_error, MessageOf any other exception. Any thread.
std::string FailureText(const std::exception& failure);

}  // namespace tolvane
