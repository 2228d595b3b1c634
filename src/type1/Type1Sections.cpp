#include "type1/Type1Sections.h"

#include "common/AsciiChars.h"
#include "common/KWLimits.h"
#include "common/StreamBytes.h"
#include "type1/PfbSegment.h"

#include <algorithm>
#include <cstddef>
#include <istream>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>

namespace KWFontService_NS {

namespace {

using Bytes = std::vector<std::uint8_t>;

// --- hexadecimal text ---------------------------------------------------------------------------

constexpr std::string_view kEexecLine = "currentfile eexec";
constexpr std::size_t kClosingZeros = 512;

/// Where the line after the one that begins with "currentfile eexec" starts; npos without one.
std::size_t findHexadecimal(std::string_view text) {
    for (std::size_t line = 0; line < text.size();) {
        const bool isEexec = text.substr(line).starts_with(kEexecLine);
        std::size_t next = std::min(text.find_first_of("\r\n", line), text.size());
        if (text.substr(next).starts_with("\r\n"))
            ++next;
        line = std::min(next + 1, text.size());
        if (isEexec)
            return line;
    }
    return std::string_view::npos;
}

constexpr bool isBlank(char ch) {
    return ch == '\r' || ch == '\n' || ch == ' ' || ch == '\t';
}

/// Where the closing zeros begin that end at `end`, blanks among them; `end` when there are none.
std::size_t findClosingZeros(std::string_view text, std::size_t end) {
    std::size_t firstZero = end;
    std::size_t zeros = 0;
    for (std::size_t at = end; at > 0 && zeros < kClosingZeros; --at) {
        if (text[at - 1] == '0') {
            firstZero = at - 1;
            ++zeros;
        } else if (!isBlank(text[at - 1])) {
            break;
        }
    }
    return zeros >= KWCommonNS::kFewestClosingZeros ? firstZero : end;
}

/// Where the closing zeros begin, or what is no digit.
std::size_t findHexadecimalEnd(std::string_view text) {
    std::size_t end = 0;
    while (end < text.size() && (isBlank(text[end]) || KWCommonNS::hexValue(text[end]) >= 0))
        ++end;
    // The word begins with a digit, also where it stands in the line of the zeros.
    if (end > 0 && text.substr(end - 1).starts_with("cleartomark"))
        --end;
    // So may other words in lines behind the zeros, `end` and `def` for two.
    for (std::size_t at = end;;) {
        const std::size_t zeros = findClosingZeros(text, at);
        if (zeros < at)
            return zeros;
        while (at > 0 && isBlank(text[at - 1]))
            --at;
        const std::size_t wordEnd = at;
        while (at > 0 && !isBlank(text[at - 1]))
            --at;
        // A longer one is a line of digits.
        if (at == wordEnd || wordEnd - at >= KWCommonNS::kFewestClosingZeros)
            return end;
    }
}

void decodeHexadecimal(std::string_view text, Bytes& out) {
    out.reserve(out.size() + text.size() / 2);
    for (std::size_t at = 0; at + 1 < text.size();) {
        const int high = KWCommonNS::hexValue(text[at]);
        const int low = KWCommonNS::hexValue(text[at + 1]);
        if (high >= 0 && low >= 0) {
            out.push_back(static_cast<std::uint8_t>(high << 4 | low));
            at += 2;
        } else {
            ++at; // a line end, or a digit that one follows
        }
    }
}

} // namespace

bool readPFASections(std::istream& stream, Type1Sections& sections) {
    Bytes file;
    KWCommonNS::appendFromStream(stream, std::numeric_limits<std::size_t>::max(), file);
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    const std::size_t start = findHexadecimal(text);
    if (start == std::string_view::npos)
        return false;
    const std::size_t length = findHexadecimalEnd(text.substr(start));
    const auto place = [&file](std::size_t offset) {
        return file.begin() + static_cast<std::ptrdiff_t>(offset);
    };
    sections.clearText.assign(file.begin(), place(start));
    sections.eexec.clear();
    decodeHexadecimal(text.substr(start, length), sections.eexec);
    sections.trailer.assign(place(start + length), file.end());
    sections.isWhole = !sections.trailer.empty();
    return true;
}

bool readPFBSections(std::istream& stream, Type1Sections& sections) {
    sections = {};
    Bytes* const parts[] = {&sections.clearText, &sections.eexec, &sections.trailer};
    constexpr std::uint8_t kTypes[] = {kPfbText, kPfbBinary, kPfbText};
    std::size_t part = 0;
    bool started = false;
    Bytes header;
    const auto readHeader = [&](std::size_t count) {
        header.clear();
        return KWCommonNS::appendFromStream(stream, count, header) == count;
    };
    while (readHeader(kPfbTypeSize)) {
        const std::uint8_t type = header[1];
        const bool isMarked = header[0] == kPfbMark;
        if (isMarked && type == kPfbEnd)
            break;
        const bool isNextPart = started && part + 1 < std::size(kTypes) && type == kTypes[part + 1];
        if (isMarked && isNextPart)
            ++part;
        else if (!isMarked || type != kTypes[part]) {
            if (part + 1 == std::size(kTypes))
                break;
            return false;
        }
        started = true;
        if (!readHeader(kPfbLengthSize))
            return false;
        const std::uint32_t length = pfbLength(std::span(header).first<kPfbLengthSize>());
        sections.announced[part] += length;
        if (KWCommonNS::appendFromStream(stream, length, *parts[part]) < length) {
            parts[part]->clear();
            return false;
        }
    }
    sections.isWhole = part + 1 == std::size(kTypes);
    return part > 0;
}

} // namespace KWFontService_NS
