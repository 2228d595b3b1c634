#include "embed/CFFSubrUse.h"

#include "CffOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;

struct Use {
    Use(const std::vector<Bytes>& globalSubrs, const std::vector<std::vector<Bytes>>& localSubrs,
        std::size_t budget = 1 << 20)
        : globals(indexOf(globalSubrs)) {
        for (const auto& subrs : localSubrs)
            fontDicts.emplace_back().localSubrs = std::make_shared<CFFIndex>(indexOf(subrs));
        use.emplace(globals, fontDicts, budget);
    }
    std::vector<Bytes> written(bool (CFFSubrUse::*write)(KWMemStream&)) {
        KWMemStream output;
        EXPECT_TRUE(((*use).*write)(output));
        return itemsOf(output);
    }
    std::vector<Bytes> locals(std::uint8_t fontDict) {
        KWMemStream output;
        EXPECT_TRUE(use->writeLocalSubrs(output, fontDict));
        return itemsOf(output);
    }
    static std::vector<Bytes> itemsOf(KWMemStream& output) {
        const CFFIndex index = [&output] {
            TableStream stream(joined(Bytes{0}, bytesOf(output)));
            return CFFIndex::read(stream.table, 1).value();
        }();
        std::vector<Bytes> items;
        for (std::size_t i = 0; i < index.size(); ++i)
            items.push_back(bytesOf(index[i]));
        return items;
    }

    CFFIndex globals;
    std::vector<CFFFontDict> fontDicts;
    std::optional<CFFSubrUse> use;
};

TEST(CFFSubrUse, SubrsComeInTheOrderOfTheirOldNumbers) {
    Use subrs({{140, 11}, {141, 11}, {142, 11}}, {{{143, 11}, {144, 11}}, {{145, 11}}});
    const Bytes first = joined(callOf(2, true), callOf(0, true), Bytes{14});
    const Bytes second = joined(callOf(0), Bytes{14});
    subrs.use->add(viewOf(first), 0);
    subrs.use->add(viewOf(second), 1);
    subrs.use->renumber();
    EXPECT_THAT(subrs.written(&CFFSubrUse::writeGlobalSubrs),
                ElementsAre(Bytes{140, 11}, Bytes{142, 11}));
    EXPECT_THAT(subrs.locals(0), ElementsAre());
    EXPECT_THAT(subrs.locals(1), ElementsAre(Bytes{145, 11}));
    TableStream stream(joined(Bytes{0}, cffIndex({first, second})));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    const SubsetGlyph one{.gid = 0, .key = 0, .place = 0, .fontDict = 0};
    const SubsetGlyph two{.gid = 1, .key = 0, .place = 1, .fontDict = 1};
    KWMemStream output;
    EXPECT_TRUE(subrs.use->writeCharStrings(output, reader, std::vector{two, one, two}, 0));
    EXPECT_THAT(Use::itemsOf(output),
                ElementsAre(second, joined(callOf(1, true), callOf(0, true), Bytes{14}), second));
}

TEST(CFFSubrUse, ASubrIsCopiedWithTheStemsThatItWasFirstCalledWith) {
    // Nine stems before the call: the mask in the subr has two bytes, the second of which would
    // be the start of a longer number otherwise.
    Bytes stems;
    for (int i = 0; i < 9; ++i)
        stems.bytes(Bytes{140, 141});
    const Bytes masked = joined(Bytes{19, 1, 28}, callOf(1), Bytes{11});
    Use subrs({}, {{{11}, {12, 12, 11}, masked}});
    const Bytes glyph = joined(stems, Bytes{18}, callOf(2), Bytes{14});
    subrs.use->add(viewOf(glyph), 0);
    subrs.use->renumber();
    EXPECT_THAT(subrs.locals(0),
                ElementsAre(Bytes{12, 12, 11}, joined(Bytes{19, 1, 28}, callOf(0), Bytes{11})));
}

/// The charstrings of all glyphs with the subrs that they use, in the opposite order.
std::vector<Bytes> backwards(const std::vector<Bytes>& glyphs, Use& subrs) {
    TableStream stream(joined(Bytes{0}, cffIndex(glyphs)));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    std::vector<SubsetGlyph> order;
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        subrs.use->add(viewOf(glyphs[i]), 0);
        const auto id = static_cast<std::uint16_t>(i);
        order.insert(order.begin(), {.gid = id, .key = 0, .place = id, .fontDict = 0});
    }
    subrs.use->renumber();
    KWMemStream output;
    EXPECT_TRUE(subrs.use->writeCharStrings(output, reader, order, 0));
    std::vector<Bytes> items = Use::itemsOf(output);
    std::ranges::reverse(items);
    return items;
}

TEST(CFFSubrUse, CallsMayBeFarApart) {
    // The calls are of the last of 108 subrs, whose number is 0.
    std::vector<Bytes> locals(108, Bytes{11});
    for (const std::size_t gap : {0U, 1U, 4093U, 4094U, 4095U, 4096U, 8190U, 8191U, 20000U}) {
        Use subrs({}, {locals});
        const Bytes between = Bytes().fill(gap, 21);
        const auto glyph = [&between](int number) {
            return joined(between, Bytes{139 + number, 10}, between, Bytes{139 + number, 10, 14});
        };
        EXPECT_TRUE(backwards({glyph(0)}, subrs) == std::vector<Bytes>{glyph(-107)}) << gap;
    }
}

TEST(CFFSubrUse, NumbersOfEveryFormAreReplaced) {
    Use subrs({}, {std::vector<Bytes>(108, Bytes{11})});
    const Bytes glyph{28, 0, 0, 10, 255, 0, 0, 0, 0, 10, 139, 10, 14};
    EXPECT_EQ(backwards({glyph}, subrs), (std::vector<Bytes>{Bytes{32, 10, 32, 10, 32, 10, 14}}));
}

TEST(CFFSubrUse, CallsOfSubrsThatAreNotThereStay) {
    Use subrs({}, {{{11}, {11}}});
    // Cut to 16 bits the third would be the number of a subr.
    const Bytes glyph =
        joined(callOf(1), Bytes{140, 10, 255, 0, 0, 0xFF, 0x96, 10}, callOf(1), Bytes{10, 14});
    EXPECT_EQ(backwards({glyph}, subrs),
              (std::vector<Bytes>{joined(callOf(0), Bytes{140, 10, 255, 0, 0, 0xFF, 0x96, 10},
                                         callOf(0), Bytes{10, 14})}));
}

TEST(CFFSubrUse, ASubrIsCopiedByItsMaskWhereAnotherEntryCutsThatOff) {
    // Behind 33 stems the mask would be longer than the subr, but the first entry has none.
    Use subrs({}, {{{11}, {11}, joined(Bytes{19, 200}, callOf(1), Bytes{11})}});
    Bytes stems;
    for (int i = 0; i < 33; ++i)
        stems.bytes(Bytes{140, 141});
    const Bytes first = joined(callOf(2), Bytes{14});
    const Bytes second = joined(stems, Bytes{18}, callOf(2), Bytes{14});
    subrs.use->add(viewOf(first), 0);
    subrs.use->add(viewOf(second), 0);
    subrs.use->renumber();
    EXPECT_THAT(subrs.locals(0),
                ElementsAre(Bytes{11}, joined(Bytes{19, 200}, callOf(0), Bytes{11})));
}

TEST(CFFSubrUse, CallsBehindEndcharAreRenumberedButUseNothing) {
    Use subrs({}, {{{11}, {11}, {11}}});
    const Bytes first = joined(callOf(1), Bytes{14}, callOf(1), callOf(2), Bytes{14});
    EXPECT_EQ(backwards({first}, subrs),
              (std::vector<Bytes>{joined(callOf(0), Bytes{14}, callOf(0), callOf(2), Bytes{14})}));
    EXPECT_EQ(subrs.locals(0).size(), 1U);
}

TEST(CFFSubrUse, CallsBehindEndcharOfASubrUseNothing) {
    Use subrs({}, {{joined(Bytes{14}, callOf(1), callOf(2)), {11}, {11}}});
    const Bytes glyph = joined(callOf(0), callOf(2));
    EXPECT_EQ(backwards({glyph}, subrs), std::vector<Bytes>{joined(callOf(0), callOf(1))});
    EXPECT_THAT(subrs.locals(0), ElementsAre(joined(Bytes{14}, callOf(1), callOf(1)), Bytes{11}));
}

TEST(CFFSubrUse, GlyphsAreWrittenInAnyOrderAndNumber) {
    std::vector<Bytes> glyphs;
    for (int i = 0; i < 300; ++i)
        glyphs.push_back(Bytes().u16(i).fill(static_cast<std::size_t>(i % 7) * 200, 5).u8(14));
    glyphs.push_back(Bytes().fill(100000, 5)); // longer than what is written at once
    glyphs.push_back(Bytes{14});
    Use subrs({}, {{}});
    EXPECT_TRUE(backwards(glyphs, subrs) == glyphs);
}

TEST(CFFSubrUse, CharStringsThatCannotBeReadAgainFail) {
    Use subrs({}, {{}});
    TableStream stream(joined(Bytes{0}, cffIndex({Bytes{14}, Bytes{14}})));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    subrs.use->add(viewOf(Bytes{14}), 0);
    subrs.use->renumber();
    const SubsetGlyph glyph{.gid = 1, .key = 0, .place = 0, .fontDict = 0};
    CharStringReader reader(stream.table, head);
    KWMemStream output;
    EXPECT_TRUE(subrs.use->writeCharStrings(output, reader, std::vector{glyph}, 0));
    stream.lose();
    EXPECT_FALSE(subrs.use->writeCharStrings(output, reader, std::vector{glyph}, 0));
}

TEST(CFFSubrUse, TheOutputDoesNotMoveWhileGlyphsAreWritten) {
    Use subrs({}, {{}});
    const std::vector<Bytes> glyphs(500, Bytes().fill(1000, 5));
    TableStream stream(joined(Bytes{0}, cffIndex(glyphs)));
    const CFFIndexHead head = CFFIndexHead::read(stream.table, 1).value();
    CharStringReader reader(stream.table, head);
    std::vector<SubsetGlyph> order;
    for (std::uint16_t i = 0; i < glyphs.size(); ++i) {
        subrs.use->add(viewOf(glyphs[i]), 0);
        order.push_back({.gid = i, .key = 0, .place = i, .fontDict = 0});
    }
    subrs.use->renumber();
    KWMemStream output;
    ASSERT_TRUE(subrs.use->writeCharStrings(output, reader, order, 600000));
    const char* const before = output.data();
    const std::string more(600000, 'x');
    output.append(more);
    EXPECT_EQ(output.data(), before);
    EXPECT_GT(output.size(), 500u * 1000u + 600000u);
}

TEST(CFFSubrUse, LocalSubrsAreAboutAsLargeAsTheUsedOnes) {
    Use subrs({}, {{{11}, Bytes().fill(500, 140), Bytes().fill(900, 140)}});
    subrs.use->add(viewOf(callOf(1)), 0);
    subrs.use->renumber();
    KWMemStream output;
    EXPECT_TRUE(subrs.use->writeLocalSubrs(output, 0));
    EXPECT_EQ(subrs.use->localSubrsSize(0), output.size());
}

TEST(CFFSubrUse, SubrsThatLieOverEachOtherAreNoLargerThanTheirIndex) {
    Use subrs({}, {{}});
    // The first and the third are the whole data, the second would end before it begins.
    const Bytes index = Bytes().u16(3).u8(1).u8(1).u8(101).u8(1).u8(101).fill(100, 139);
    TableStream stream(joined(Bytes{0}, index));
    const auto locals = std::make_shared<CFFIndex>(CFFIndex::read(stream.table, 1).value());
    subrs.fontDicts.front().localSubrs = locals;
    subrs.use->add(viewOf(joined(callOf(0), callOf(2))), 0);
    EXPECT_EQ(subrs.use->localSubrsSize(0), locals->byteSize());
}

TEST(CFFSubrUse, TooMuchToGoThroughIsSaid) {
    Use finding({}, {{Bytes().fill(50, 140)}}, 40);
    const Bytes glyph = joined(callOf(0), Bytes{14});
    finding.use->add(viewOf(glyph), 0);
    EXPECT_TRUE(finding.use->isSpent());
    Use one({}, {{}}, 2);
    one.use->add(viewOf(Bytes{22, 14}), 0);
    EXPECT_FALSE(one.use->isSpent());
    one.use->add(viewOf(Bytes{14}), 0);
    EXPECT_TRUE(one.use->isSpent());

    // Copying has a budget of its own.
    constexpr std::size_t kLength = 4000;
    Use copying({}, {{joined(Bytes{11}, Bytes().fill(kLength - 1, 140)), Bytes{11}}}, 3 * kLength);
    copying.use->add(viewOf(glyph), 0);
    EXPECT_FALSE(copying.use->isSpent());
    copying.use->renumber();
    KWMemStream output;
    EXPECT_TRUE(copying.use->writeLocalSubrs(output, 0));
    EXPECT_TRUE(copying.use->writeLocalSubrs(output, 0));
    EXPECT_TRUE(copying.use->writeLocalSubrs(output, 0));
    EXPECT_FALSE(copying.use->writeLocalSubrs(output, 0));
    EXPECT_TRUE(copying.use->isSpent());
}

} // namespace
} // namespace KWFontService_NS
