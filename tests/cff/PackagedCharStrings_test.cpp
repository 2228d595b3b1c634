// The charstrings of packaged fonts: what we make of them draws what FreeType draws, and
// renumbering subrs changes nothing.

#include "cff/CharStringCopy.h"
#include "cff/CharStringFixture.h"
#include "cff/CharStringFlatten.h"
#include "cff/ContourCompare.h"
#include "cff/Type2ToType1.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"
#include "support/FreeTypeFace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr std::size_t kPlenty = std::size_t{1} << 30;

struct Sample {
    const char* font;
    unsigned step; ///< every how many glyphs

    friend std::ostream& operator<<(std::ostream& out, const Sample& sample) {
        return out << sample.font;
    }
};

/// A CFF font with all that its charstrings need.
class OpenCff {
public:
    explicit OpenCff(const char* name)
        : file(packagedFont(name)), cff_(fontTable(file, "CFF ")), budget_(kPlenty) {
        EXPECT_TRUE(cff_.ok);
        EXPECT_TRUE(Type1CMap::readGlobalSubrs(cff_.file(), globals));
        const auto at = cff_.topDict.getNamedItem(cffKey(FS_Word::CharStrings)).getIntegerValue();
        EXPECT_TRUE(
            Type1CMap::readIndexAt(cff_.file(), static_cast<std::uint32_t>(at), charStrings_));
        EXPECT_TRUE(!cff_.isCID || cff_.readFDSelect(cff_.file(), ranges_));
        EXPECT_TRUE(cff_.readFontDicts(cff_.file(), fontDicts));
    }

    unsigned glyphCount() const { return charStrings_.count(); }
    Bytes charString(unsigned gid) {
        std::vector<std::uint8_t> bytes;
        EXPECT_TRUE(Type1CMap::readCharString(cff_.file(), charStrings_, gid, bytes));
        return Bytes(std::move(bytes));
    }
    std::size_t fontDictOf(unsigned gid) const {
        return cff_.isCID ? getFDOfGlyph(ranges_, static_cast<std::uint16_t>(gid), 255) : 0;
    }
    CharStringSubrs subrsOf(std::size_t fontDict) const {
        return {globals, *fontDicts.at(fontDict).localSubrs};
    }
    KWValue privateEntry(std::size_t fontDict, FS_Word key) const {
        return fontDicts.at(fontDict).privateDict.getNamedItem(cffKey(key));
    }
    CharStringBudget& budget() { return budget_; }

    std::filesystem::path file;
    CFFIndex globals;
    std::vector<CFFFontDict> fontDicts;

private:
    LoadedCff cff_;
    CharStringBudget budget_;
    CFFIndexHead charStrings_;
    std::vector<FDRange> ranges_;
};

CharStringTokens flatOf(const Bytes& charString, const CharStringSubrs& subrs,
                        CharStringBudget& budget) {
    CharStringTokens tokens;
    FlatCounts counts;
    flattenCharString(viewOf(charString), subrs, tokens, counts, budget);
    return tokens;
}

/// A glyph whose vertical stems stand before a mask, with no operator before that, is not
/// translated.
bool startsWithMask(const CharStringTokens& tokens) {
    const auto first = std::ranges::find_if(tokens, &KWValue::isName);
    return first != tokens.end() &&
           (*first == cffKey(FS_Word::hintmask) || *first == cffKey(FS_Word::cntrmask));
}

class PackagedCharStrings : public testing::TestWithParam<Sample> {};

TEST_P(PackagedCharStrings, DrawAsType1WhatFreeTypeDraws) {
    OpenCff font(GetParam().font);
    // The table alone, so that widths come from the charstrings.
    const FreeTypeFace face(fontTable(font.file, "CFF "));
    std::vector<CharStringTokens> subrs = Type2ToType1::standardSubrs();
    unsigned drawn = 0;
    for (unsigned gid = 0; gid < font.glyphCount(); gid += GetParam().step) {
        const std::size_t fontDict = font.fontDictOf(gid);
        const CharStringTokens flat =
            flatOf(font.charString(gid), font.subrsOf(fontDict), font.budget());
        Type2ToType1 translator(font.privateEntry(fontDict, FS_Word::defaultWidthX),
                                font.privateEntry(fontDict, FS_Word::nominalWidthX));
        CharStringTokens type1;
        ASSERT_EQ(translator.convert(flat, subrs, type1), !startsWithMask(flat))
            << gid << ": " << textOf(flat);
        if (startsWithMask(flat))
            continue;
        const Type1Drawing drawing(type1);
        ASSERT_TRUE(drawing.ok()) << gid << ": " << textOf(type1);
        const FT_GlyphSlot slot = face.load(gid);
        ASSERT_EQ(difference(normal(drawing.contours()), normal(contoursOf(slot->outline))), "")
            << gid << ": " << textOf(flat);
        EXPECT_NEAR(drawing.width(), static_cast<double>(slot->metrics.horiAdvance), 0.51) << gid;
        drawn += drawing.contours().empty() ? 0U : 1U;
    }
    EXPECT_GT(drawn, 100U);
}

/// The subrs of an INDEX in the opposite order, their calls rewritten.
CFFIndex reversed(const CFFIndex& subrs, SubrWalker& walker, const SubrNumbers& globalNumbers,
                  const SubrNumbers& localNumbers, const SubrEntries& entries) {
    std::vector<Bytes> copies;
    for (std::size_t i = subrs.size(); i-- > 0;) {
        const SubrEntryState* const entry =
            entries.find(static_cast<int>(i) - subrBias(subrs.size()));
        KWCommonNS::KWMemStream copy;
        copyCharString(copy, subrs[i], walker, globalNumbers, localNumbers,
                       entry != nullptr ? entry->counts : CharStringCounts());
        copies.push_back(Bytes::ofText({copy.data(), copy.size()}));
    }
    return indexOf(copies);
}

SubrNumbers reversal(std::size_t count) {
    SubrNumbers numbers;
    const int bias = subrBias(count);
    const int last = static_cast<int>(count) - 1;
    for (int i = 0; i <= last; ++i)
        numbers.insert(i - bias, last - i - bias);
    return numbers;
}

TEST_P(PackagedCharStrings, StayTheSameWhenTheirSubrsAreRenumbered) {
    OpenCff font(GetParam().font);
    // Global subrs may call local ones, so each Font DICT has its own copy of them.
    for (std::size_t fontDict = 0; fontDict < font.fontDicts.size(); ++fontDict) {
        const CharStringSubrs subrs = font.subrsOf(fontDict);
        SubrEntries globalEntries;
        SubrEntries localEntries;
        SubrWalker walker(subrs, font.budget(), &globalEntries, &localEntries);
        std::vector<unsigned> glyphs;
        for (unsigned gid = 0; gid < font.glyphCount(); gid += GetParam().step) {
            if (font.fontDictOf(gid) != fontDict)
                continue;
            glyphs.push_back(gid);
            CharStringCounts counts;
            const Bytes charString = font.charString(gid);
            walker.walk(viewOf(charString), counts);
        }
        const SubrNumbers globalNumbers = reversal(subrs.global.size());
        const SubrNumbers localNumbers = reversal(subrs.local.size());
        SubrWalker counter(subrs, font.budget());
        const CFFIndex globals =
            reversed(subrs.global, counter, globalNumbers, localNumbers, globalEntries);
        const CFFIndex locals =
            reversed(subrs.local, counter, globalNumbers, localNumbers, localEntries);
        for (const unsigned gid : glyphs) {
            const Bytes charString = font.charString(gid);
            KWCommonNS::KWMemStream copy;
            copyCharString(copy, viewOf(charString), counter, globalNumbers, localNumbers, {});
            const Bytes renumbered = Bytes::ofText({copy.data(), copy.size()});
            ASSERT_EQ(textOf(flatOf(renumbered, {globals, locals}, font.budget())),
                      textOf(flatOf(charString, subrs, font.budget())))
                << gid;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, PackagedCharStrings,
                         testing::Values(Sample{"LMRoman10", 1}, Sample{"LMMono10", 1},
                                         Sample{"C059-Roman", 1}, Sample{"D050000L", 1},
                                         Sample{"TeXGyreTermesMath", 3}, Sample{"LinLibertine", 1},
                                         Sample{"NotoSansCJK", 197}, Sample{"NotoSerifCJK", 197}),
                         [](const auto& parameter) {
                             std::string name = parameter.param.font;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
