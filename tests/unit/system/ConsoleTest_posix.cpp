#include "system/Console.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdint>
#include <initializer_list>

namespace tolvane::test {
namespace {

// Standard error is something else while this lives.
class TOtherError {
public:
    explicit TOtherError(int file) : kept_(dup(STDERR_FILENO)) { dup2(file, STDERR_FILENO); }
    TOtherError(const TOtherError&) = delete;
    TOtherError& operator=(const TOtherError&) = delete;
    ~TOtherError() {
        dup2(kept_, STDERR_FILENO);
        close(kept_);
    }

private:
    int kept_;
};

std::size_t ColumnsOf(int file) {
    const TConsole console;
    const TOtherError error(file);
    return console.ErrorColumns();
}

TEST(Console, TellsTheColumnsOfATerminalAsTheyAreNow) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    ASSERT_NE(master, -1);
    ASSERT_EQ(grantpt(master), 0);
    ASSERT_EQ(unlockpt(master), 0);
    const int terminal = open(ptsname(master), O_RDWR | O_NOCTTY);
    ASSERT_NE(terminal, -1);
    EXPECT_EQ(ColumnsOf(terminal), 80U) << "it knows no size yet";
    for (const std::uint16_t columns : std::initializer_list<std::uint16_t>{40, 132}) {
        const winsize size{.ws_row = 25, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        ASSERT_EQ(ioctl(terminal, TIOCSWINSZ, &size), 0);
        EXPECT_EQ(ColumnsOf(terminal), columns);
    }
    close(terminal);
    close(master);
}

TEST(Console, AFileHasTheUsualColumns) {
    const int file = open("/dev/null", O_WRONLY);
    EXPECT_EQ(ColumnsOf(file), 80U);
    close(file);
}

}  // namespace
}  // namespace tolvane::test
