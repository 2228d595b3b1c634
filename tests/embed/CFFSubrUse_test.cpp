#include "embed/CFFSubrUse.h"

#include "CffOutput.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
    CharStringStore store;
    ASSERT_TRUE(store.add(reader, std::vector<std::uint16_t>{0, 1}));
    KWMemStream output;
    EXPECT_TRUE(subrs.use->writeCharStrings(output, store, std::vector<std::size_t>{1, 0, 1}));
    EXPECT_THAT(Use::itemsOf(output),
                ElementsAre(second, joined(callOf(1, true), callOf(0, true), Bytes{14}), second));
}

TEST(CFFSubrUse, ASubrIsCopiedWithTheStemsThatItWasFirstCalledWith) {
    // Nine stems before the call: the mask in the subr has two bytes, the second of which would
    // be a number for another call otherwise.
    Bytes stems;
    for (int i = 0; i < 9; ++i)
        stems.bytes(Bytes{140, 141});
    const Bytes masked = joined(Bytes{19, 139 + subrNumber(1), 10}, callOf(1), Bytes{11});
    Use subrs({}, {{{11}, {12, 12, 11}, masked}});
    const Bytes glyph = joined(stems, Bytes{18}, callOf(2), Bytes{14});
    subrs.use->add(viewOf(glyph), 0);
    subrs.use->renumber();
    EXPECT_THAT(subrs.locals(0),
                ElementsAre(Bytes{12, 12, 11},
                            joined(Bytes{19, 139 + subrNumber(1), 10}, callOf(0), Bytes{11})));
}

TEST(CFFSubrUse, TooMuchToGoThroughIsSaid) {
    Use finding({}, {{Bytes().fill(50, 140)}}, 40);
    const Bytes glyph = joined(callOf(0), Bytes{14});
    finding.use->add(viewOf(glyph), 0);
    EXPECT_TRUE(finding.use->isSpent());

    // Enough to copy the subr twice.
    Use copying({}, {{joined(Bytes{11}, Bytes().fill(40, 140)), Bytes{11}}}, 41 + 64 + 3);
    copying.use->add(viewOf(glyph), 0);
    EXPECT_FALSE(copying.use->isSpent());
    copying.use->renumber();
    KWMemStream output;
    EXPECT_TRUE(copying.use->writeLocalSubrs(output, 0));
    EXPECT_TRUE(copying.use->writeLocalSubrs(output, 0));
    EXPECT_FALSE(copying.use->writeLocalSubrs(output, 0));
    EXPECT_TRUE(copying.use->isSpent());
}

} // namespace
} // namespace KWFontService_NS
