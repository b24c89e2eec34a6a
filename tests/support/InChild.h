#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <functional>
#include <string>

namespace tolvane::test {

// What `work` answers, or the text of what it throws, in a child process (Linux), which may change
// its own rights and limits. At most 4096 bytes.
inline std::string InChild(const std::function<std::string()>& work) {
    int channel[2];
    if (pipe(channel) != 0) return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        std::string text;
        try {
            text = work();
        } catch (const std::exception& error) {
            text = error.what();
        }
        const ssize_t written = write(channel[1], text.data(), text.size());
        _exit(written < 0 ? 1 : 0);
    }
    close(channel[1]);
    std::string text(4096, '\0');
    const ssize_t count = read(channel[0], text.data(), text.size());
    text.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    close(channel[0]);
    waitpid(child, nullptr, 0);
    return text;
}

}  // namespace tolvane::test
