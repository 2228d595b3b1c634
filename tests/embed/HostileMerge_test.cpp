// Inputs of a merge that lie: it answers false or what is there, in time and memory that the sizes
// of the inputs bound.

#include "MergeFixture.h"

#include "common/KWLimits.h"
#include "support/Rng.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const Bytes kNothing;

/// For what it must not do.
void mergeCff(const Bytes& a, const Bytes& b) {
    const std::size_t size = a.size() + b.size();
    for (const bool isCID : {false, true})
        EXPECT_LE(mergedCff(a, b, isCID).size(), (KWCommonNS::kCharStringReads + 4) * size +
                                                     2 * KWCommonNS::kFreeCharStringBytes + 4096);
}
void mergeSfnt(const Bytes& a, const Bytes& b) {
    for (const bool ignoreCmap : {false, true})
        EXPECT_LE(mergedSfnt(a, b, ignoreCmap).size(), 8 * (a.size() + b.size()) + 4096);
}

CffSections sections(bool isCID) {
    if (isCID) {
        CffCID font = cidKeyed();
        font.fontDicts[1].privateDict->subrs = {joined(Bytes{140}, callOf(0, true), Bytes{11})};
        font.globalSubrs = {Bytes{22, 11}};
        font.glyphs[1].charstring = joined(callOf(0), Bytes{14});
        return cidSections(font);
    }
    CffSections table = namedGlyphs({{34, joined(callOf(0), Bytes{19, 0, 14})},
                                     {391, Bytes{140, 141, 12, 10, 22, 14}},
                                     {392, glyph(1)}});
    table.topDict = joined(cffInteger(391), Bytes{1});
    table.globalSubrs = {Bytes{140, 141, 1, 11}};
    table.privateDict->subrs = {joined(callOf(0, true), Bytes{11})};
    return table;
}

TEST(HostileMerge, CffTablesMayEndAnywhere) {
    for (const bool isCID : {false, true}) {
        const Bytes sound = sections(isCID).build();
        ASSERT_NE(mergedCff(sound, sound, isCID), kNothing);
        for (std::size_t size = 0; size < sound.size(); ++size) {
            const Bytes cut = Bytes(sound).truncate(size);
            mergeCff(cut, sound);
            mergeCff(sound, cut);
            mergeCff(cut, cut);
        }
    }
}

TEST(HostileMerge, EveryByteOfCffTablesMayBeAnyOther) {
    for (const bool isCID : {false, true}) {
        const Bytes sound = sections(isCID).build();
        for (std::size_t at = 0; at < sound.size(); ++at) {
            for (const int byte : {0, 1, 28, 29, 30, 127, 255}) {
                Bytes table = sound;
                table.patchU8At(at, byte);
                mergeCff(table, sound);
                mergeCff(sound, table);
                mergeCff(table, table);
            }
        }
    }
}

TEST(HostileMerge, ManyBytesOfCffTablesMayBeWrong) {
    Rng random(11);
    for (const bool isCID : {false, true}) {
        const Bytes sound = sections(isCID).build();
        for (int round = 0; round < 2000; ++round) {
            Bytes table = sound;
            for (int i = 0; i < 4; ++i)
                table.patchU8At(4 + random.below(static_cast<std::uint32_t>(table.size() - 4)),
                                random.below(256));
            mergeCff(table, random.chance(2) ? sound : table);
        }
    }
}

TEST(HostileMerge, SfntFilesMayEndAnywhere) {
    const Bytes sound = EmbeddableFont(TestFont::latin().build()).embedWithCmap({6});
    ASSERT_NE(mergedSfnt(sound, sound, false), kNothing);
    for (std::size_t size = 0; size < sound.size(); ++size) {
        const Bytes cut = Bytes(sound).truncate(size);
        mergeSfnt(cut, sound);
        mergeSfnt(sound, cut);
    }
}

TEST(HostileMerge, BytesOfSfntFilesMayBeWrong) {
    Rng random(12);
    const Bytes sound = EmbeddableFont(TestFont::latin().build()).embedWithCmap({6});
    for (std::size_t at = 0; at < sound.size(); ++at) {
        Bytes file = sound;
        file.patchU8At(at, random.below(256));
        mergeSfnt(file, sound);
        mergeSfnt(sound, file);
        mergeSfnt(file, file);
    }
}

TEST(HostileMerge, SubrsThatFanOutEndTheMerge) {
    // 50^9 calls.
    CffSections table = namedGlyphs({{34, joined(callOf(0), Bytes{14})}});
    for (int i = 0; i < 10; ++i) {
        Bytes subr{140, 141, 1};
        for (int k = 0; k < 50; ++k)
            subr.bytes(callOf(i + 1));
        table.privateDict->subrs.push_back(subr.u8(11));
    }
    EXPECT_EQ(mergedNames(table, table), kNothing);
    table.charStrings[1] = joined(Bytes{140, 140, 12, 10}, callOf(0), Bytes{14});
    EXPECT_EQ(mergedNames(table, table), kNothing) << "with arithmetic";
}

TEST(HostileMerge, CharstringsThatLieOverEachOtherEndTheMerge) {
    constexpr int kGlyphs = 4000;
    std::vector<std::pair<int, Bytes>> glyphs;
    for (int i = 0; i < kGlyphs; ++i)
        glyphs.emplace_back(i < 390 ? i + 1 : 34, Bytes{0, 0});
    CffSections source = namedGlyphs(glyphs);
    source.charset = Bytes{1}.u16(1).u8(255);
    for (int i = 256; i < kGlyphs; i += 256)
        source.charset->u16(static_cast<std::uint16_t>(1 + i)).u8(255);
    source.strings.clear();
    for (int i = 0; i < 5000; ++i)
        source.strings.push_back(Bytes::ofText(std::to_string(i)));
    Bytes table = source.build();
    const WrittenCff written(table);
    ASSERT_EQ(written.charStrings.offSize, 2u);
    // Each glyph but the first begins at the start, and the next one behind the end.
    const std::size_t offsets = written.offset(17) + 3;
    for (std::size_t i = 1; i < kGlyphs; ++i)
        table.patchU16At(offsets + 2 * i, static_cast<std::uint16_t>(i % 2 == 1 ? 1 : 7900));
    mergeCff(table, table);
}

TEST(HostileMerge, StringsThatLieOverEachOtherEndTheMerge) {
    CffSections source = namedGlyphs({{34, glyph(1)}});
    source.strings.clear();
    for (int i = 0; i < 8; ++i)
        source.strings.push_back(Bytes().fill(30, static_cast<std::uint8_t>('a' + i)));
    Bytes table = source.build();
    ASSERT_NE(mergedCff(table, table, false), kNothing);
    // Every other one is all of them.
    const std::size_t offsets = table.offsetOf("strings") + 3;
    for (std::size_t i = 1; i < 8; ++i)
        table.patchU8At(offsets + i, i % 2 == 1 ? 1 : 241);
    EXPECT_EQ(mergedCff(table, table, false), kNothing);
}

TEST(HostileMerge, LongStringsThatLieOverEachOtherAreNotAllLookedAt) {
    constexpr std::size_t kStrings = 65535;
    CffSections source = namedGlyphs({{34, glyph(1)}});
    source.strings = std::vector<Bytes>(kStrings, Bytes{'x'});
    source.strings.back() = Bytes().fill(1000000, 'x');
    Bytes table = source.build();
    const WrittenCff written(table);
    ASSERT_EQ(written.strings.offSize, 4u);
    const std::size_t offsets = table.offsetOf("strings") + 3;
    for (std::size_t i = 1; i < kStrings; ++i)
        table.patchU32At(offsets + 4 * i, i % 2 == 1 ? 1 : 1000000);
    EXPECT_EQ(mergedCff(table, table, false), kNothing);
}

TEST(HostileMerge, TablesThatClaimMoreThanTheFileHasEndTheMerge) {
    const Bytes sound = TestFont::latin().build();
    for (const char* const tag : {"glyf", "loca", "hmtx", "hhea", "maxp", "head"}) {
        const Bytes file = TestFont::latin().sfnt().lie(tag, {.length = 0xFFFFFFF0}).build();
        EXPECT_EQ(mergedSfnt(file, sound), kNothing) << tag;
        EXPECT_EQ(mergedSfnt(sound, file), kNothing) << tag;
        EXPECT_EQ(mergedSfnt(file, file), kNothing) << tag;
    }
}

TEST(HostileMerge, ATableOfAllFormatsIsNoTable) {
    for (const int byte : {0, 1, 2, 3, 4, 127, 255}) {
        const Bytes rubbish = Bytes().fill(5000, static_cast<std::uint8_t>(byte));
        mergeCff(rubbish, rubbish);
        EXPECT_EQ(mergedSfnt(rubbish, rubbish), kNothing);
    }
}

} // namespace
} // namespace KWFontService_NS
