#include "NumberText.h"

#include <charconv>

namespace typeset {

std::string decimalText(double value) {
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 3);
    std::string out(digits, end.ptr);
    out.erase(out.find_last_not_of('0') + 1);
    if (out.back() == '.')
        out.pop_back();
    return out == "-0" ? "0" : out;
}

std::string hexText(unsigned value, int bytes) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string out;
    for (int shift = 8 * bytes; shift > 0; shift -= 4)
        out += kDigits[(value >> (shift - 4)) & 0xFU];
    return out;
}

std::string hexLines(const std::string& bytes, std::size_t bytesInLine) {
    std::string out;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        out += hexText(static_cast<unsigned char>(bytes[i]), 1);
        if (i % bytesInLine == bytesInLine - 1)
            out += '\n';
    }
    return out;
}

std::string bytesOfHex(const std::string& digits) {
    std::string out;
    unsigned pending = 1; // a mark above the digits that have come
    for (const char c : digits) {
        unsigned value = 0;
        if (std::from_chars(&c, &c + 1, value, 16).ec != std::errc{})
            continue;
        pending = pending << 4 | value;
        if (pending >= 0x100) {
            out += static_cast<char>(pending & 0xFF);
            pending = 1;
        }
    }
    return out;
}

} // namespace typeset
