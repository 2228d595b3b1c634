#include "type1/GlyphListFile.h"

#include "common/AsciiChars.h"
#include "common/KWLimits.h"
#include "type1/Type1Lines.h"
#include "type1/Type1Text.h"

#include <string_view>
#include <utility>

namespace KWFontService_NS {

namespace {

constexpr int kLastCharacter = 0x10FFFF;

/// The value that a line begins with, cut off; -1 when there is none.
int cutHexadecimal(std::string_view& line) {
    int value = -1;
    while (!line.empty() && KWCommonNS::hexValue(line.front()) >= 0) {
        value = (value < 0 ? 0 : value) * 16 + KWCommonNS::hexValue(line.front());
        if (value > kLastCharacter)
            return -1;
        line.remove_prefix(1);
    }
    return value;
}

void readLine(std::string_view line, Type1GlyphList& list) {
    const int character = cutHexadecimal(line);
    if (character < 0 || !line.starts_with(';'))
        return;
    line.remove_prefix(1);
    std::string_view name = line.substr(0, line.find(';'));
    while (!name.empty() && isType1Separator(name.back()))
        name.remove_suffix(1);
    if (name.size() <= KWCommonNS::kMaxGlyphNameLength)
        list.emplace(character, name);
}

} // namespace

bool readGlyphList(std::istream& stream, Type1GlyphList& list) {
    // What a line can have before its name has ended, and room for the mark that it has not.
    Type1Lines lines(stream, 2 * KWCommonNS::kMaxGlyphNameLength, Type1LineEnd::CROrLF);
    for (std::string_view line; lines.next(line);)
        readLine(line, list);
    return !stream.bad();
}

} // namespace KWFontService_NS
