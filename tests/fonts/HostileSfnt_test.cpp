#include "fonts/SfntFixture.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

#include <cmath>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

const TestFont& sampleFont(int index) {
    static const TestFont fonts[] = {TestFont::latin(), TestFont::vertical(), TestFont::openType()};
    return fonts[index];
}

/// Scans and loads, then asks the queries that reach into tables for glyphs and characters inside
/// and outside the font. True when the font opened.
bool opensAndAnswers(const Bytes& file) {
    MemoryFont<FS_OpenType> openType(file);
    MemoryFont<FS_TrueType> trueType(file);
    bool opened = false;
    for (FS_BaseFont* font :
         {static_cast<FS_BaseFont*>(&*openType), static_cast<FS_BaseFont*>(&*trueType)}) {
        std::istringstream stream(file.str());
        KWError error;
        if (!font->scanFont(error, stream))
            continue;
        opened = font->loadFont(error, 0, &stream) || opened;
        for (const unsigned short gid :
             std::initializer_list<unsigned short>{0, 1, 6, 7, 0x7FFF, 0xFFFE, 0xFFFF}) {
            for (const bool vertical : {false, true})
                EXPECT_TRUE(std::isfinite(font->getGlyphWidth(gid, -1000, vertical, 0)));
            EXPECT_TRUE(std::isfinite(font->getGlyphVertOriginY(gid, 0, 0)));
            EXPECT_TRUE(std::isfinite(font->getPairKerningValue(gid, gid, 0, false, 0)));
            font->getGlyphClassDef(gid, 0);
        }
        for (const int ch : {-1, 0, int{'A'}, 0x300C, 0xFFFF, 0x10FFFF, 0x7FFFFFFF}) {
            font->getGlyphID(ch, true, 0);
            font->variationSequence(ch, 0xFE00, 0);
        }
    }
    return opened;
}

TEST(HostileSfnt, AFileCutAtAnyByteIsRefusedOrReadAsFarAsItGoes) {
    for (int i = 0; i < 3; ++i) {
        const Bytes whole = sampleFont(i).build();
        ASSERT_TRUE(opensAndAnswers(whole)) << i;
        for (std::size_t size = 0; size < whole.size(); ++size) {
            MemoryFont font(Bytes(whole).truncate(size));
            if (!font.scan()) {
                EXPECT_TRUE(font.error.isError() || i == 2) << i << ' ' << size;
            }
            opensAndAnswers(Bytes(whole).truncate(size));
        }
    }
}

TEST(HostileSfnt, RecordsThatLieAboutTheirPlaceTouchNothingElse) {
    for (int i = 0; i < 3; ++i) {
        const Bytes whole = sampleFont(i).build();
        const std::size_t tables = std::size_t{whole.data()[4]} << 8 | whole.data()[5];
        for (std::size_t table = 0; table < tables; ++table) {
            for (const std::uint32_t lie :
                 {0U, 1U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF0U, 0xFFFFFFFFU}) {
                for (const std::size_t field : {8U, 12U}) {
                    Bytes file = whole;
                    const std::size_t at = 12 + 16 * table + field;
                    file.patchU16At(at, static_cast<std::uint16_t>(lie >> 16));
                    file.patchU16At(at + 2, static_cast<std::uint16_t>(lie));
                    opensAndAnswers(file);
                }
            }
        }
    }
}

TEST(HostileSfnt, SixtyFiveThousandTablesAreADirectoryLikeAnyOther) {
    Bytes file;
    file.u32(kTrueTypeVersion).u16(0xFFFF).u16(0).u16(0).u16(0);
    for (std::uint32_t i = 0; i < 0xFFFF; ++i)
        file.u32(i * 2654435761U).u32(0).u32(0xFFFFFFF0U).u32(0xFFFFFFFFU);
    EXPECT_EQ(scanComplaint(file), fileError("'glyf' or 'CFF' table not found"));
    file.truncate(file.size() - 1);
    EXPECT_EQ(scanComplaint(file), readError("Table directory read error"));
}

TEST(HostileSfnt, AFileThatShrinksBetweenScanAndLoadIsAReadError) {
    const TempDir dir;
    const Bytes whole = TestFont::latin().build();
    dir.write("a.ttf", Bytes(whole).truncate(64));
    KWCommonNS::KWPtr<FS_TrueType> font(new FS_TrueType(dir.uri("a.ttf")));
    KWError error;
    std::istringstream before(whole.str());
    ASSERT_TRUE(font->scanFont(error, before));
    EXPECT_FALSE(font->loadFont(error, 0, nullptr));
    EXPECT_EQ(error.getCode(), 1921);
    EXPECT_EQ(font->getGlyphWidth(TestFont::kA, 0, false, 0), 0.0F);
    EXPECT_EQ(font->getFamilyName(0, 0), UnicodeString("KWTest Latin"));
}

} // namespace
} // namespace KWFontService_NS
