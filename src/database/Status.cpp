#include "database/Status.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "database/DatabaseError.h"

namespace tolvane {
namespace {

constexpr std::size_t kLineBuffer = 2048;

std::string MessageLines(const TClientFunctions& functions, const ISC_STATUS* vector) {
    std::string message;
    std::array<char, kLineBuffer> line{};
    const ISC_STATUS* next = vector;
    // Each line takes at least one element.
    for (int lines = 0; lines < ISC_STATUS_LENGTH; ++lines) {
        const ISC_LONG length =
            functions.interpret != nullptr
                ? functions.interpret(line.data(), kLineBuffer, &next)
                : functions.interpretUnbounded(line.data(), const_cast<ISC_STATUS**>(&next));
        if (length <= 0) break;
        line.back() = '\0';
        message.append(message.empty() ? "" : "\n").append(line.data());
    }
    return message;
}

std::string TextAt(const ISC_STATUS* element) {
    const auto* const text = reinterpret_cast<const char*>(*element);
    return text != nullptr ? text : std::string();
}

// The texts are in buffers that the client library soon reuses, so they are copied.
std::vector<TStatusArgument> CopyArguments(std::span<const ISC_STATUS> vector) {
    std::vector<TStatusArgument> arguments;
    for (std::size_t i = 0; i + 1 < vector.size() && vector[i] != isc_arg_end;) {
        TStatusArgument argument;
        argument.kind = static_cast<std::int32_t>(vector[i]);
        switch (vector[i]) {
            case isc_arg_cstring:
                if (i + 2 >= vector.size()) return arguments;
                if (vector[i + 2] != 0 && vector[i + 1] > 0)
                    argument.text.assign(reinterpret_cast<const char*>(vector[i + 2]),
                                         static_cast<std::size_t>(vector[i + 1]));
                i += 3;
                break;
            case isc_arg_string:
            case isc_arg_interpreted:
            case isc_arg_sql_state:
                argument.text = TextAt(&vector[i + 1]);
                i += 2;
                break;
            default:
                argument.number = vector[i + 1];
                i += 2;
        }
        arguments.push_back(std::move(argument));
    }
    return arguments;
}

}  // namespace

void TStatus::Throw() const {
    std::vector<TStatusArgument> arguments = CopyArguments(vector_);
    const ISC_LONG sqlCode = functions_.sqlCode(vector_);
    throw TDatabaseError(MessageLines(functions_, vector_), std::move(arguments),
                         static_cast<std::int32_t>(sqlCode));
}

}  // namespace tolvane
