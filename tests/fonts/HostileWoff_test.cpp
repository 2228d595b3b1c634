// What lying WOFF files may cost.

#include "common/KWLimits.h"
#include "fonts/WoffFixture.h"

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A table of zeros that unpacks to `size` bytes.
WoffTable bomb(std::size_t size) {
    return WoffTable::packed("bomb", Bytes().zero(size));
}

TEST(WoffBounds, ABombUnpacksOnlyToTheLimit) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.tables.push_back(bomb(KWCommonNS::kWoffFreeBytes / 2));
    WoffInMemory small(file.build());
    EXPECT_TRUE(small.scan()) << "some megabytes are free: " << small.complaint();

    file.tables.back() = bomb(2 * KWCommonNS::kWoffFreeBytes);
    WoffInMemory large(file.build());
    EXPECT_FALSE(large.scan());
    EXPECT_EQ(large.complaint(), fileError("Uncompress error."));
    EXPECT_LT(large.sfnt().size(), 4096U) << "the promise alone is too much";
}

TEST(WoffBounds, APromiseThatIsNotKeptMovesNothing) {
    WoffFile file = WoffFile::of(latinSfnt());
    for (const std::uint32_t promise : {0x7FFFFFFFU, 0xFFFFFFF0U, 0xFFFFFFFFU}) {
        file.table("glyf").origLength = promise;
        EXPECT_EQ(refusedWoff(file.build()), fileError("Uncompress error.")) << promise;
    }
}

TEST(WoffBounds, ALargeFileMayUnpackToAMultipleOfItself) {
    WoffFile file = WoffFile::of(latinSfnt());
    Bytes noise;
    std::uint32_t state = 1;
    for (int i = 0; i < (1 << 20); ++i) {
        state = state * 1664525 + 1013904223;
        noise.u8(state >> 24);
    }
    file.tables.push_back(WoffTable::plain("nois", noise));
    file.tables.push_back(bomb(KWCommonNS::kWoffFreeBytes + (std::size_t{10} << 20)));
    WoffInMemory font(file.build());
    EXPECT_TRUE(font.scan()) << font.complaint();
}

TEST(WoffBounds, TablesThatShareTheirBytesAreReadNoMoreThanOnceOver) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.tables.push_back(WoffTable::plain("aaaa", letters(60000)));
    const std::size_t at = file.tables.size() - 1;
    for (int i = 0; i < 30; ++i) {
        WoffTable again = file.tables[at];
        again.stored = Bytes();
        again.compLength = again.origLength;
        again.offset = 100;
        file.tables.push_back(again);
    }
    EXPECT_EQ(refusedWoff(file.build()), kShortWoff);
}

TEST(WoffBounds, EveryFieldMayLie) {
    const Bytes whole = WoffFile::of(TestFont::vertical().build()).build();
    const std::size_t directoryEnd = 44 + std::size_t{20} * whole.u16At(12);
    for (std::size_t at = 0; at < directoryEnd; at += 4) {
        for (const std::uint32_t lie : {0U, 1U, 44U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU,
                                        static_cast<std::uint32_t>(whole.size())}) {
            WoffInMemory font(Bytes(whole).patchU32At(at, lie));
            if (font.scan())
                font.load();
            // Room for the records of 65,535 tables is the most that a count takes.
            EXPECT_LT(font.sfnt().size(), std::size_t{2} << 20);
        }
    }
}

TEST(WoffBounds, AFileCutAnywhereIsRefused) {
    const Bytes whole = WoffFile::of(latinSfnt()).build();
    const std::size_t last = 44 + 20 * (whole.u16At(12) - std::size_t{1});
    const std::size_t end = whole.u32At(last + 4) + whole.u32At(last + 8);
    for (std::size_t size = 0; size < end; ++size) {
        WoffInMemory font(Bytes(whole).truncate(size));
        EXPECT_FALSE(font.scan()) << size;
        EXPECT_TRUE(font.error.isError()) << size;
    }
}

TEST(WoffBounds, SixtyFiveThousandTablesAreADirectoryLikeAnyOther) {
    WoffFile file;
    file.tables.assign(0xFFFF, WoffTable::plain("aaaa", Bytes()));
    WoffInMemory font(file.build());
    EXPECT_FALSE(font.scan());
    EXPECT_EQ(font.complaint(), fileError("'glyf' or 'CFF' table not found"));
    EXPECT_EQ(font.sfnt().u16At(4), 0xFFFF);
    EXPECT_EQ(font.sfnt().u16At(6), 0) << "what is left of 16 * 32768 in 16 bits";
    EXPECT_EQ(font.sfnt().u16At(8), 15);
    EXPECT_EQ(font.sfnt().u16At(10), 0xFFF0);
}

TEST(WoffBounds, ThePromiseMayGoToTheLimitAndNotBeyond) {
    WoffFile file = WoffFile::of(latinSfnt());
    file.tables.push_back(WoffTable::packed("zzzz", letters(1000)));
    const std::size_t size = file.build().size();
    std::uint32_t before = static_cast<std::uint32_t>(12 + 16 * file.tables.size());
    for (std::size_t i = 0; i + 1 < file.tables.size(); ++i)
        before += (file.tables[i].origLength + 3) / 4 * 4;
    const auto room = static_cast<std::uint32_t>(KWCommonNS::kWoffFreeBytes +
                                                 KWCommonNS::kWoffInflateFactor * size - before);
    file.tables.back().origLength = room;
    WoffInMemory most(file.build());
    EXPECT_TRUE(most.scan()) << most.complaint();
    file.tables.back().origLength = room + 1;
    EXPECT_EQ(refusedWoff(file.build()), fileError("Uncompress error."));
}

TEST(WoffBounds, OneFileMayBeReadOnceOverToTheLastByte) {
    WoffFile file = WoffFile::of(latinSfnt());
    std::size_t left = file.build().size() + 20;
    for (const WoffTable& table : file.tables)
        left -= table.stored.size();
    WoffTable all = WoffTable::plain("zzzz", Bytes());
    all.offset = 0;
    all.compLength = all.origLength = static_cast<std::uint32_t>(left);
    file.tables.push_back(all);
    WoffInMemory most(file.build());
    EXPECT_TRUE(most.scan()) << most.complaint();
    file.tables.back().compLength = file.tables.back().origLength =
        static_cast<std::uint32_t>(left + 1);
    EXPECT_EQ(refusedWoff(file.build()), kShortWoff);
}

} // namespace
} // namespace KWFontService_NS
