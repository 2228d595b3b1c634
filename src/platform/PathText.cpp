#include "platform/PathText.h"

#include <cstddef>

namespace KWPlatform {

namespace {

constexpr char16_t kEscapeBase = 0xDC00;

unsigned byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

// Length of the well-formed UTF-8 sequence at `index` (Unicode, table 3-7); 0 when there is none.
std::size_t sequenceLength(std::string_view bytes, std::size_t index) {
    const unsigned lead = byteAt(bytes, index);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead < 0xC2   ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || bytes.size() - index < length)
        return 0;
    const unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    const unsigned second = byteAt(bytes, index + 1);
    if (second < low || second > high)
        return 0;
    for (std::size_t i = 2; i < length; ++i) {
        if ((byteAt(bytes, index + i) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

void appendCodePoint(std::string& to, char32_t c) {
    const auto put = [&to](char32_t byte) { to.push_back(static_cast<char>(byte)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    }
}

} // namespace

std::u16string decodeBytes(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const unsigned lead = byteAt(bytes, i);
        const std::size_t length = sequenceLength(bytes, i);
        if (length == 0) {
            text.push_back(static_cast<char16_t>(kEscapeBase + lead));
            ++i;
            continue;
        }
        char32_t c = length == 1 ? lead : lead & (0x7FU >> length);
        for (std::size_t k = 1; k < length; ++k)
            c = (c << 6) | (byteAt(bytes, i + k) & 0x3F);
        if (c < 0x10000) {
            text.push_back(static_cast<char16_t>(c));
        } else {
            text.push_back(static_cast<char16_t>(0xD7C0 + (c >> 10)));
            text.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
        }
        i += length;
    }
    return text;
}

std::optional<std::string> encodeBytes(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit < 0xD800 || unit > 0xDFFF) {
            appendCodePoint(bytes, unit);
        } else if (unit < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                   text[i + 1] <= 0xDFFF) {
            appendCodePoint(bytes, 0x10000 + ((char32_t{unit} - 0xD800) << 10) +
                                       (char32_t{text[i + 1]} - 0xDC00));
            ++i;
        } else if (unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF) {
            bytes.push_back(static_cast<char>(unit - kEscapeBase));
        } else {
            return std::nullopt;
        }
    }
    return bytes;
}

} // namespace KWPlatform
