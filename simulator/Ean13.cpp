#include "simulator/Ean13.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tolvane::simulator {

namespace {

constexpr std::size_t kHalf = 6;  // digits on either side of the middle guard
constexpr int kQuietLeft = 11;    // modules without a bar that readers need
constexpr int kQuietRight = 7;
constexpr int kModules = 95;
constexpr std::string_view kSideGuard = "101";
constexpr std::string_view kMiddleGuard = "01010";

// The left half with an odd number of bar modules. The right half is its inverse, and the left half
// with an even number the right half read backwards.
constexpr std::array<std::string_view, 10> kOdd = {"0001101", "0011001", "0010011", "0111101",
                                                   "0100011", "0110001", "0101111", "0111011",
                                                   "0110111", "0001011"};

// Which of the left half's digits are even ('1'), by the first digit, which has no bars of its own.
constexpr std::array<std::string_view, 10> kParity = {"000000", "001011", "001101", "001110",
                                                      "010011", "011001", "011100", "010101",
                                                      "010110", "011010"};

bool AreDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::size_t Digit(char c) {
    return static_cast<std::size_t>(c - '0');
}

std::string Right(char digit) {
    std::string modules(kOdd[Digit(digit)]);
    for (char& module : modules)
        module = module == '0' ? '1' : '0';
    return modules;
}

std::string Left(char digit, bool even) {
    if (!even) return std::string(kOdd[Digit(digit)]);
    std::string modules = Right(digit);
    std::reverse(modules.begin(), modules.end());
    return modules;
}

// Bars as rectangles of one path. Guards reach further down, between the digits.
std::string BarPath(const std::string& modules) {
    std::string path;
    for (std::size_t i = 0; i < modules.size();) {
        const std::size_t end = std::min(modules.find('0', i), modules.size());
        if (end > i) {
            const bool guard = i < 3 || i >= 92 || (i >= 45 && i < 50);
            const std::string width = std::to_string(end - i);
            path += "M";
            path += std::to_string(i + kQuietLeft);
            path += " 0h";
            path += width;
            path += guard ? "v52h-" : "v46h-";
            path += width;
            path += "z";
        }
        i = std::max(end, i + 1);
    }
    return path;
}

std::string DigitsAt(int x, int width, std::string_view digits) {
    const std::string length =
        width == 0 ? std::string() : " textLength=\"" + std::to_string(width) + "\"";
    return "<text x=\"" + std::to_string(x) + "\" y=\"56\"" + length + ">" + std::string(digits) +
           "</text>";
}

}  // namespace

std::optional<char> Ean13CheckDigit(std::string_view twelve) {
    if (twelve.size() != 2 * kHalf || !AreDigits(twelve)) return std::nullopt;
    std::size_t sum = 0;
    for (std::size_t i = 0; i < twelve.size(); ++i)
        sum += Digit(twelve[i]) * (i % 2 == 0 ? 1 : 3);
    return static_cast<char>('0' + (10 - sum % 10) % 10);
}

std::optional<std::string> Ean13Modules(std::string_view digits) {
    if (digits.empty() || Ean13CheckDigit(digits.substr(0, digits.size() - 1)) != digits.back())
        return std::nullopt;
    const std::string_view parity = kParity[Digit(digits[0])];
    std::string modules(kSideGuard);
    for (std::size_t i = 0; i < kHalf; ++i)
        modules += Left(digits[1 + i], parity[i] == '1');
    modules += kMiddleGuard;
    for (std::size_t i = 0; i < kHalf; ++i)
        modules += Right(digits[1 + kHalf + i]);
    return modules += kSideGuard;
}

std::string Ean13Svg(std::string_view digits) {
    const auto modules = Ean13Modules(digits);
    if (!modules) return {};
    constexpr int kWidth = kQuietLeft + kModules + kQuietRight;
    return "<svg class=\"bars\" viewBox=\"0 0 " + std::to_string(kWidth) +
           " 58\" role=\"img\" aria-label=\"Barcode " + std::string(digits) + "\"><path d=\"" +
           BarPath(*modules) + "\"/>" + DigitsAt(2, 0, digits.substr(0, 1)) +
           DigitsAt(15, 40, digits.substr(1, kHalf)) + DigitsAt(62, 40, digits.substr(1 + kHalf)) +
           "</svg>";
}

}  // namespace tolvane::simulator
