#include "common/UriText.h"

#include "common/AsciiChars.h"
#include "platform/PathText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace KWCommonNS {

namespace {

// The byte of a "%XX" at `index`; -1 when there is none.
int encodedByte(std::u16string_view text, std::size_t index) {
    if (text[index] != u'%' || text.size() - index < 3)
        return -1;
    const int high = hexValue(text[index + 1]);
    const int low = hexValue(text[index + 2]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

constexpr std::size_t kCharacterSets = 4;

constexpr unsigned bitOf(UriCharacters characters) {
    return 1U << static_cast<unsigned>(characters);
}

constexpr unsigned kUnreservedBit = 1U << kCharacterSets;

// For each ASCII character the sets that it may stand in, and whether it is unreserved.
constexpr auto kCharacterFlags = [] {
    std::array<std::uint8_t, 128> flags{};
    const auto mark = [&flags](std::u16string_view set, unsigned bits) {
        for (const char16_t c : set)
            flags[c] = static_cast<std::uint8_t>(flags[c] | bits);
    };
    const unsigned everywhere = (1U << kCharacterSets) - 1;
    mark(u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~",
         everywhere | kUnreservedBit);
    mark(u"!$&'()*+,;=@", everywhere);
    mark(u"/",
         bitOf(UriCharacters::filePath) | bitOf(UriCharacters::path) | bitOf(UriCharacters::query));
    mark(u":", bitOf(UriCharacters::path) | bitOf(UriCharacters::authority) |
                   bitOf(UriCharacters::query));
    mark(u"[]", bitOf(UriCharacters::authority));
    mark(u"?", bitOf(UriCharacters::query));
    return flags;
}();

bool mayStand(char16_t c, UriCharacters characters) {
    return c < kCharacterFlags.size() && (kCharacterFlags[c] & bitOf(characters)) != 0;
}

// Whether an encoded character means the same as the bare one. Schemes in general may tell apart
// what a file system does not.
bool mayDecode(char16_t c, UriCharacters characters) {
    if (characters == UriCharacters::filePath)
        return c != u'/' && mayStand(c, characters);
    return c < kCharacterFlags.size() && (kCharacterFlags[c] & kUnreservedBit) != 0;
}

void appendEncodedByte(std::u16string& to, unsigned byte) {
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    to.push_back(u'%');
    to.push_back(kDigits[byte >> 4]);
    to.push_back(kDigits[byte & 0x0F]);
}

std::size_t codePointLength(std::u16string_view text, std::size_t index) {
    const bool pair = text[index] >= 0xD800 && text[index] <= 0xDBFF && index + 1 < text.size() &&
                      text[index + 1] >= 0xDC00 && text[index + 1] <= 0xDFFF;
    return pair ? 2 : 1;
}

// Encodes the code point at `index` and answers its number of units.
std::size_t appendEncodedCodePoint(std::u16string& to, std::u16string_view text,
                                   std::size_t index) {
    const char16_t unit = text[index];
    if (unit < 0x80) {
        appendEncodedByte(to, unit);
        return 1;
    }
    const std::size_t length = codePointLength(text, index);
    if (const auto bytes = KWPlatform::encodeBytes(text.substr(index, length))) {
        for (const char byte : *bytes)
            appendEncodedByte(to, static_cast<unsigned char>(byte));
    } else {
        to.push_back(unit); // a lone surrogate has no bytes; some file systems have such names
    }
    return length;
}

void appendUtf8(std::string& to, std::u16string_view text) {
    if (const auto bytes = KWPlatform::encodeBytes(text)) {
        to += *bytes;
        return;
    }
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = codePointLength(text, i);
        to += KWPlatform::encodeBytes(text.substr(i, length)).value_or("\xEF\xBF\xBD"); // U+FFFD
        i += length;
    }
}

constexpr auto kBase64Values = [] {
    constexpr std::string_view kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<std::int8_t, 256> values{};
    values.fill(-1);
    for (std::size_t i = 0; i < kAlphabet.size(); ++i)
        values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::int8_t>(i);
    return values;
}();

} // namespace

std::size_t schemeLength(std::u16string_view text) {
    if (text.empty() || !isAlpha(text.front()))
        return 0;
    for (std::size_t i = 1; i < text.size(); ++i) {
        const char16_t c = text[i];
        if (c == u':')
            return i;
        if (!isAlpha(c) && !isDigit(c) && c != u'+' && c != u'-' && c != u'.')
            break;
    }
    return 0;
}

UriParts splitUri(std::u16string_view text) {
    UriParts parts;
    if (const std::size_t length = schemeLength(text); length != 0) {
        parts.scheme = text.substr(0, length);
        text.remove_prefix(length + 1);
    }
    if (const std::size_t hash = text.find(u'#'); hash != std::u16string_view::npos) {
        parts.fragment = text.substr(hash + 1);
        text = text.substr(0, hash);
    }
    if (const std::size_t mark = text.find(u'?'); mark != std::u16string_view::npos) {
        parts.query = text.substr(mark + 1);
        text = text.substr(0, mark);
    }
    if (text.starts_with(u"//")) {
        const std::size_t end = std::min(text.find(u'/', 2), text.size());
        parts.authority = text.substr(2, end - 2);
        text.remove_prefix(end);
    }
    parts.path = text;
    return parts;
}

std::u16string joinUri(const UriParts& parts) {
    std::u16string text;
    if (!parts.scheme.empty())
        text.append(parts.scheme).append(u":");
    if (parts.authority)
        text.append(u"//").append(*parts.authority);
    else if (parts.path.starts_with(u"//"))
        text.append(u"/."); // else the path would read as an authority
    text.append(parts.path);
    if (parts.query)
        text.append(u"?").append(*parts.query);
    if (parts.fragment)
        text.append(u"#").append(*parts.fragment);
    return text;
}

std::u16string encodeUriText(std::u16string_view text, UriCharacters characters) {
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (mayStand(text[i], characters))
            result.push_back(text[i++]);
        else
            i += appendEncodedCodePoint(result, text, i);
    }
    return result;
}

std::u16string canonicalUriText(std::u16string_view text, UriCharacters characters) {
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (const int byte = encodedByte(text, i); byte >= 0) {
            const auto c = static_cast<char16_t>(byte);
            if (mayDecode(c, characters))
                result.push_back(c);
            else
                appendEncodedByte(result, static_cast<unsigned>(byte));
            i += 3;
        } else if (mayStand(text[i], characters)) {
            result.push_back(text[i++]);
        } else {
            i += appendEncodedCodePoint(result, text, i);
        }
    }
    return result;
}

std::u16string decodeUriText(std::u16string_view text) {
    std::u16string result;
    std::string bytes;
    const auto flush = [&] {
        result += KWPlatform::decodeBytes(bytes);
        bytes.clear();
    };
    for (std::size_t i = 0; i < text.size();) {
        if (const int byte = encodedByte(text, i); byte >= 0) {
            bytes.push_back(static_cast<char>(byte));
            i += 3;
        } else if (text[i] < 0x80) {
            bytes.push_back(static_cast<char>(text[i++]));
        } else {
            flush();
            result.push_back(text[i++]);
        }
    }
    flush();
    return result;
}

std::string decodeUriBytes(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        if (const int byte = encodedByte(text, i); byte >= 0) {
            bytes.push_back(static_cast<char>(byte));
            i += 3;
            continue;
        }
        std::size_t end = i + 1;
        while (end < text.size() && text[end] != u'%')
            ++end;
        appendUtf8(bytes, text.substr(i, end - i));
        i = end;
    }
    return bytes;
}

std::u16string removeDotSegments(std::u16string_view path, bool collapseSeparators) {
    const bool absolute = path.starts_with(u'/');
    std::vector<std::u16string_view> kept;
    bool folder = false; // the path ends in a separator
    std::size_t i = absolute ? 1 : 0;
    for (;;) {
        const std::size_t end = std::min(path.find(u'/', i), path.size());
        const std::u16string_view segment = path.substr(i, end - i);
        const bool last = end == path.size();
        folder = last && (segment.empty() || segment == u"." || segment == u"..");
        if (segment == u"..") {
            if (!kept.empty() && kept.back() != u"..")
                kept.pop_back();
            else if (!absolute)
                kept.push_back(segment);
        } else if (segment != u"." && !(segment.empty() && (last || collapseSeparators))) {
            kept.push_back(segment);
        }
        if (last)
            break;
        i = end + 1;
    }
    std::u16string result;
    result.reserve(path.size() + 2);
    if (absolute)
        result.push_back(u'/');
    for (std::size_t k = 0; k < kept.size(); ++k) {
        result.append(kept[k]);
        if (k + 1 < kept.size() || folder)
            result.push_back(u'/');
    }
    if (result.empty() && !path.empty())
        result = u"./";
    return result;
}

UriParts resolveUri(const UriParts& base, const UriParts& reference) {
    UriParts result = reference;
    result.scheme = base.scheme;
    if (reference.authority)
        return result;
    result.authority = base.authority;
    if (reference.path.empty()) {
        result.path = base.path;
        if (!reference.query)
            result.query = base.query;
    } else if (!reference.path.starts_with(u'/')) {
        const std::size_t folder = base.path.rfind(u'/') + 1; // 0 when there is no separator
        result.path = base.path.substr(0, folder);
        if (result.path.empty() && base.authority)
            result.path = u"/";
        result.path += reference.path;
    }
    return result;
}

std::u16string lowerHost(std::u16string_view text) {
    std::u16string lower(text);
    for (std::size_t i = 0; i < lower.size(); ++i) {
        if (encodedByte(lower, i) >= 0)
            i += 2;
        else
            lower[i] = static_cast<char16_t>(toAsciiLower(lower[i]));
    }
    return lower;
}

bool startsWithDrive(std::u16string_view text) {
    return text.size() >= 2 && isAlpha(text[0]) && text[1] == u':' &&
           (text.size() == 2 || text[2] == u'/' || text[2] == u'\\');
}

std::optional<std::string> decodeBase64(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 3);
    std::uint32_t group = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    for (const char ch : text) {
        if (ch == ' ' || ch == '\t' || ch == '\n' || ch == '\f' || ch == '\r')
            continue;
        if (ch == '=') {
            ++padding;
            continue;
        }
        const std::int8_t value = kBase64Values[static_cast<unsigned char>(ch)];
        if (value < 0 || padding != 0)
            return std::nullopt;
        group = (group << 6) | static_cast<std::uint32_t>(value);
        if (++digits % 4 == 0) {
            bytes.push_back(static_cast<char>(group >> 16));
            bytes.push_back(static_cast<char>(group >> 8));
            bytes.push_back(static_cast<char>(group));
        }
    }
    const std::size_t open = digits % 4;
    if (open == 1 || (padding != 0 && (open == 0 || open + padding != 4)))
        return std::nullopt;
    if (open == 2) {
        bytes.push_back(static_cast<char>(group >> 4));
    } else if (open == 3) {
        bytes.push_back(static_cast<char>(group >> 10));
        bytes.push_back(static_cast<char>(group >> 2));
    }
    return bytes;
}

} // namespace KWCommonNS
