#include "tests/command/program/Terminal_posix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <system_error>

namespace tolvane::test {
namespace {

constexpr char kEscape = '\x1b';

std::string TextOf(const std::vector<std::string>& letters) {
    std::string text;
    for (const std::string& letter : letters)
        text += letter;
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

TScreen::TScreen(std::string_view bytes) {
    while (!bytes.empty()) {
        switch (bytes.front()) {
            case '\r':
                column_ = 0;
                bytes.remove_prefix(1);
                break;
            case '\n':
                ended_.push_back(TextOf(Row()));
                ++row_;
                top_ = std::max(top_, row_ + 1 - std::min(row_ + 1, kTerminalRows));
                bytes.remove_prefix(1);
                break;
            case kEscape:
                Escape(bytes);
                break;
            default:
                Letter(bytes);
        }
    }
}

std::vector<std::string> TScreen::Rows() const {
    std::vector<std::string> rows;
    for (const TRow& row : rows_)
        rows.push_back(TextOf(row));
    return rows;
}

TScreen::TRow& TScreen::Row() {
    if (row_ >= rows_.size()) rows_.resize(row_ + 1);
    return rows_[row_];
}

// "ESC [ number letter"; the number may be missing.
void TScreen::Escape(std::string_view& bytes) {
    const std::size_t end = bytes.find_first_not_of("[0123456789", 1);
    ASSERT_NE(end, std::string_view::npos);
    ASSERT_EQ(bytes.substr(1, 1), "[");
    std::size_t number = 0;
    std::from_chars(bytes.data() + 2, bytes.data() + end, number);
    switch (bytes[end]) {
        case 'A':
            EXPECT_LE(number, row_ - top_) << "above the first row";
            row_ -= std::min(number, row_ - top_);
            break;
        case 'J':
            rows_.resize(std::min(rows_.size(), row_ + 1));
            Row().resize(std::min(Row().size(), column_));
            break;
        case 'K':
            Row().resize(std::min(Row().size(), column_));
            break;
        default:
            ADD_FAILURE() << "an escape that no terminal needs: " << bytes.substr(1, end);
    }
    bytes.remove_prefix(end + 1);
}

void TScreen::Letter(std::string_view& bytes) {
    std::size_t length = 1;
    while (length < bytes.size() && (static_cast<unsigned char>(bytes[length]) & 0xC0U) == 0x80U)
        ++length;
    TRow& row = Row();
    if (row.size() <= column_) row.resize(column_ + 1, " ");
    row[column_++] = bytes.substr(0, length);
    widest_ = std::max(widest_, row.size());
    bytes.remove_prefix(length);
}

TTerminal::TTerminal(unsigned short columns) : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    const winsize size{.ws_row = kTerminalRows, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    std::array<char, 64> name{};
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0 ||
        ioctl(master_, TIOCSWINSZ, &size) != 0 || ptsname_r(master_, name.data(), name.size()) != 0)
        throw std::system_error(errno, std::system_category());
    device_ = name.data();
}

TTerminal::~TTerminal() {
    if (reader_.joinable()) reader_.join();
    close(master_);
}

void TTerminal::Listen() {
    reader_ = std::thread(&TTerminal::Read, this);
}

// Ends with an error when nobody has the device open any more.
void TTerminal::Read() {
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = read(master_, buffer.data(), buffer.size())) > 0)
        text_.append(buffer.data(), static_cast<std::size_t>(count));
}

std::string TTerminal::Text() {
    if (reader_.joinable()) reader_.join();
    return text_;
}

}  // namespace tolvane::test
