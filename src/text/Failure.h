#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "text/Cp1251.h"
#include "text/Joined.h"

namespace tolvane {

// A failure whose text may hold zero bytes, at which what() ends.
class TFailure : public std::runtime_error {
public:
    explicit TFailure(std::string text) : std::runtime_error(text), text_(std::move(text)) {}
    const std::string& Text() const noexcept { return text_; }

private:
    std::string text_;
};

// The message of an exception that has none.
inline constexpr std::string_view kUnknownError = "Неизвестна грешка"_cp1251;

// What the user is told when memory is short.
inline constexpr std::string_view kOutOfMemory = "Няма достатъчно памет"_cp1251;

// The whole text of a TFailure, kOutOfMemory for std::bad_alloc, what() of any other exception. May
// be empty.
std::string MessageOf(const std::exception& failure);

// MessageOf the exception that is being handled; kUnknownError when it is not a std::exception or
// has no message. Only inside a catch block.
std::string MessageOfCurrentException();

// Calls `show` with `lead` and MessageOfCurrentException; when memory is too short for that, with
// kOutOfMemory alone. What that call throws is dropped. Only inside a catch block.
template <class Show>
void ShowCurrentException(std::string_view lead, Show show) noexcept {
    try {
        try {
            show(Joined({lead, MessageOfCurrentException()}));
        } catch (const std::bad_alloc&) {
            show(kOutOfMemory);
        }
    } catch (...) {  // NOLINT(bugprone-empty-catch): there is no way left to show it
    }
}

}  // namespace tolvane
