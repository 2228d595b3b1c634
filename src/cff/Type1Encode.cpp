#include "cff/Type1Encode.h"

#include "cff/CFFDict.h"
#include "cff/CFFNumbers.h"

#include <algorithm>
#include <array>

namespace KWFontService_NS {

namespace {

using KWCommonNS::KWMemStream;

struct Encoding {
    FS_Word word;
    std::uint8_t byte;
    bool isEscaped = false;
};

constexpr std::array kEncodings{
    Encoding{FS_Word::hstem, 1},
    Encoding{FS_Word::vstem, 3},
    Encoding{FS_Word::vmoveto, 4},
    Encoding{FS_Word::rlineto, 5},
    Encoding{FS_Word::hlineto, 6},
    Encoding{FS_Word::vlineto, 7},
    Encoding{FS_Word::rrcurveto, 8},
    Encoding{FS_Word::closepath, 9},
    Encoding{FS_Word::callsubr, 10},
    Encoding{FS_Word::return_, 11},
    Encoding{FS_Word::hsbw, 13},
    Encoding{FS_Word::endchar, 14},
    Encoding{FS_Word::rmoveto, 21},
    Encoding{FS_Word::hmoveto, 22},
    Encoding{FS_Word::vhcurveto, 30},
    Encoding{FS_Word::hvcurveto, 31},
    Encoding{FS_Word::dotsection, 0, true},
    Encoding{FS_Word::vstem3, 1, true},
    Encoding{FS_Word::hstem3, 2, true},
    Encoding{FS_Word::seac, 6, true},
    Encoding{FS_Word::sbw, 7, true},
    Encoding{FS_Word::div, 12, true},
    Encoding{FS_Word::callothersubr, 16, true},
    Encoding{FS_Word::pop, 17, true},
    Encoding{FS_Word::setcurrentpoint, 33, true},
};

void encodeNumber(int value, KWMemStream& output) {
    constexpr int kMostInTwoBytes = 1131;
    // The forms of one byte and two are those of CFF, but there are no others than the longest.
    if (value >= -kMostInTwoBytes && value <= kMostInTwoBytes) {
        writeCFFInteger(output, value);
        return;
    }
    std::array<std::uint8_t, 5> bytes{255};
    ByteView::storeU32(&bytes[1], static_cast<std::uint32_t>(value));
    output.append(bytes.data(), bytes.size());
}

} // namespace

void encodeType1CharString(const CharStringTokens& tokens, KWMemStream& output) {
    constexpr char kEscape = 12;
    for (const KWValue& token : tokens) {
        if (token.isInteger()) {
            encodeNumber(token.getIntegerValue(), output);
            continue;
        }
        if (!token.isName())
            continue;
        const KWName name = token.getNameValue();
        const auto found = std::ranges::find(kEncodings, name,
                                             [](const Encoding& row) { return cffKey(row.word); });
        if (found == kEncodings.end())
            continue;
        if (found->isEscaped)
            output += kEscape;
        output += static_cast<char>(found->byte);
    }
}

} // namespace KWFontService_NS
