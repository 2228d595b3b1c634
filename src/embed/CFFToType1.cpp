#include "embed/CFFToType1.h"

#include "cff/CharStringFlatten.h"
#include "cff/Type1Encode.h"
#include "cff/Type2ToType1.h"
#include "common/KWLimits.h"

#include <optional>

namespace KWFontService_NS {

namespace {

constexpr std::uint8_t kNoFontDict = 255;

/// What a translation makes of masks, at most: three tokens for a stem, of which a byte has eight.
std::size_t mostTokensOfMasks(const CharStringTokens& flat) {
    constexpr std::size_t kTokensOfByte = 24;
    constexpr std::size_t kTokensOfCall = 8;
    std::size_t count = 0;
    for (std::size_t i = 0; i + 1 < flat.size(); ++i) {
        if (flat[i] == cffKey(FS_Word::hintmask) || flat[i] == cffKey(FS_Word::cntrmask))
            count += kTokensOfCall +
                     kTokensOfByte * static_cast<std::size_t>(flat[i + 1].getIntegerValue());
    }
    return count;
}

class Conversion {
public:
    Conversion(CFFStream& table, const Type1CMap& font, Type1Glyphs& out)
        : table_(table), font_(font), out_(out),
          budget_(KWCommonNS::kFreeCharStringBytes +
                  std::size_t{table.size()} * KWCommonNS::kCharStringReads) {}

    bool readFont();
    bool convert(std::uint16_t gid);

private:
    void encodeSubrs();

    CFFStream& table_;
    const Type1CMap& font_;
    Type1Glyphs& out_;
    CharStringBudget budget_; ///< charstrings, and what becomes of their masks
    CFFIndex globals_;
    CFFIndexHead charStrings_;
    std::vector<FDRange> ranges_;
    std::vector<CFFFontDict> fontDicts_;
    /// Their number is what charstrings count on; one that is encoded is empty here.
    std::vector<CharStringTokens> subrs_ = Type2ToType1::standardSubrs();
};

bool Conversion::readFont() {
    const auto charStringsAt = static_cast<std::uint32_t>(
        font_.topDict.getNamedItem(cffKey(FS_Word::CharStrings)).getIntegerValue());
    if (!Type1CMap::readGlobalSubrs(table_, globals_) ||
        (font_.isCID && !font_.readFDSelect(table_, ranges_)) ||
        !font_.readFontDicts(table_, fontDicts_) ||
        !Type1CMap::readIndexAt(table_, charStringsAt, charStrings_))
        return false;
    for (const CFFFontDict& fontDict : fontDicts_)
        out_.privates.push_back(fontDict.privateDict);
    encodeSubrs();
    return true;
}

/// Moves the Subrs that a glyph has brought to the output.
void Conversion::encodeSubrs() {
    while (out_.subrEnds.size() < subrs_.size()) {
        CharStringTokens& subr = subrs_[out_.subrEnds.size()];
        encodeType1CharString(subr, out_.subrData);
        subr = {};
        out_.subrEnds.push_back(out_.subrData.size());
    }
}

bool Conversion::convert(std::uint16_t gid) {
    const std::uint8_t index =
        font_.isCID ? getFDOfGlyph(ranges_, gid, kNoFontDict) : std::uint8_t{0};
    std::vector<std::uint8_t> charString;
    if (index >= fontDicts_.size() ||
        !Type1CMap::readCharString(table_, charStrings_, gid, charString))
        return false;
    const CFFFontDict& fontDict = fontDicts_[index];
    CharStringTokens flat;
    FlatCounts counts;
    // Tokens take more memory than bytes, so that no glyph may take all that the table justifies.
    CharStringBudget ofGlyph(KWCommonNS::kFreeCharStringBytes);
    flattenCharString(ByteView(charString.data(), charString.size()),
                      {globals_, *fontDict.localSubrs}, flat, counts, ofGlyph);
    if (ofGlyph.isSpent() || !ofGlyph.charge(mostTokensOfMasks(flat)) ||
        !budget_.charge(KWCommonNS::kFreeCharStringBytes - ofGlyph.left()))
        return false;
    Type2ToType1 translator(fontDict.privateDict.getNamedItem(cffKey(FS_Word::defaultWidthX)),
                            fontDict.privateDict.getNamedItem(cffKey(FS_Word::nominalWidthX)));
    CharStringTokens tokens;
    if (!translator.convert(flat, subrs_, tokens))
        return false;
    encodeSubrs();
    encodeType1CharString(tokens, out_.glyphData);
    out_.glyphs.push_back({out_.glyphData.size(), index});
    return !out_.glyphData.fail() && !out_.subrData.fail();
}

} // namespace

bool convertToType1(CFFStream& table, const Type1CMap& font,
                    const std::vector<unsigned short>& glyphs, Type1Glyphs& out) {
    if (font.topDict.getNamedItem(cffKey(FS_Word::CharstringType)).getIntegerValue() == 1)
        return false;
    Conversion conversion(table, font, out);
    if (!conversion.readFont() || !conversion.convert(0))
        return false;
    std::uint16_t previous = 0;
    for (const std::uint16_t gid : glyphs) {
        if (gid != 0 && gid != previous && !conversion.convert(gid))
            return false;
        previous = gid;
    }
    return true;
}

} // namespace KWFontService_NS
