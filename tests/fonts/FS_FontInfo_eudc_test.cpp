#include "fonts/SfntFixture.h"
#include "registry/FS_FontService.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// A font of end-user-defined characters; U+E010 has no advance.
Bytes eudcFile(std::u16string_view family, std::initializer_list<std::uint32_t> characters) {
    TestFont file = TestFont::latin();
    CmapMap map;
    for (const std::uint32_t ch : characters)
        map[ch] = ch == 0xE010 ? TestFont::kB : TestFont::kA;
    file.cmap = Cmap::unicode(map);
    file.hmtx.metrics[TestFont::kB].advance = 0;
    file.name = Name::english(family);
    file.os2.usWeightClass = 700;
    file.os2.fsSelection = 1;
    return file.build();
}

/// A font with a link of its own, and the service's two default fonts.
class EudcTest : public testing::Test {
protected:
    EudcTest() {
        for (MemoryFont<>* font : {&linked, &horizontal, &vertical})
            EXPECT_TRUE(font->scanAndLoad()) << font->complaint();
        service().defaultEudcFont = {&*horizontal, 0};
        service().defaultEudcFontVertical = {&*vertical, 0};
    }
    ~EudcTest() override {
        service().defaultEudcFont = {};
        service().defaultEudcFontVertical = {};
    }

    FS_FontInfo create(const TestFont& file, bool withLink) {
        FS_FontInfo info;
        folder.write("font.ttf", file.build());
        EXPECT_TRUE(info.createFont(folder.uri("font.ttf")));
        if (withLink)
            info.getFont()->setEudcFont({&*linked, 0}, 0);
        return info;
    }
    static std::string nameOf(const FS_FontInfo& info, int code) {
        UnicodeString name = "untouched";
        int weight = -3;
        bool italic = false;
        const bool found = info.getEudcFontName(code, name, weight, italic);
        EXPECT_EQ(weight, found ? 700 : -3);
        EXPECT_EQ(italic, found);
        std::string text;
        return name.toUTF8String(text);
    }
    static FS_FontService& service() { return *getFontService(nullptr, nullptr, nullptr); }

    TempDir folder;
    MemoryFont<> linked{eudcFile(u"Linked", {0xE000, 0xE010})};
    MemoryFont<> horizontal{eudcFile(u"Horizontal", {0xE000, 0xE001, 0xE010})};
    MemoryFont<> vertical{eudcFile(u"Vertical", {0xE002})};
};

TEST_F(EudcTest, TheDefaultRangeIsThePrivateUseArea) {
    EXPECT_FALSE(FS_FontInfo::isEUDC(0xDFFF));
    EXPECT_TRUE(FS_FontInfo::isEUDC(0xE000));
    EXPECT_TRUE(FS_FontInfo::isEUDC(0xF8FF));
    EXPECT_FALSE(FS_FontInfo::isEUDC(0xF900));
    EXPECT_FALSE(FS_FontInfo::isEUDC(0x10000));
    EXPECT_FALSE(FS_FontInfo::isEUDC(0x1E000));
    EXPECT_FALSE(FS_FontInfo::isEUDC(-1));
}

TEST_F(EudcTest, TheFontsOwnLinkAnswersFirst) {
    const FS_FontInfo info = create(TestFont::latin(), true);
    EXPECT_EQ(info.getEudcGlyphID(0xE000), TestFont::kA);
    EXPECT_EQ(nameOf(info, 0xE000), "Linked-Regular");
}

TEST_F(EudcTest, TheServicesFontAnswersWhatTheLinkDoesNotHave) {
    const FS_FontInfo info = create(TestFont::latin(), true);
    EXPECT_EQ(info.getEudcGlyphID(0xE001), TestFont::kA);
    EXPECT_EQ(nameOf(info, 0xE001), "Horizontal-Regular");
    const FS_FontInfo bare = create(TestFont::latin(), false);
    EXPECT_EQ(nameOf(bare, 0xE000), "Horizontal-Regular");
}

TEST_F(EudcTest, AFontWithVerticalFormsTakesTheVerticalOne) {
    const FS_FontInfo info = create(TestFont::vertical(), true);
    EXPECT_EQ(info.getEudcGlyphID(0xE002), TestFont::kA);
    EXPECT_EQ(nameOf(info, 0xE002), "Vertical-Regular");
    EXPECT_EQ(info.getEudcGlyphID(0xE001), 0xFFFF);
}

TEST_F(EudcTest, WhatNoFontHasIsMissingAndLeavesTheOutputsAlone) {
    const FS_FontInfo info = create(TestFont::latin(), true);
    for (const int code : {0xE005, 0xE010, 0x41, 0x10000, -1}) {
        EXPECT_EQ(info.getEudcGlyphID(code), 0xFFFF) << code;
        EXPECT_EQ(nameOf(info, code), "untouched") << code;
    }
    service().defaultEudcFont = {};
    EXPECT_EQ(info.getEudcGlyphID(0xE001), 0xFFFF);
    EXPECT_EQ(FS_FontInfo().getEudcGlyphID(0xE000), 0xFFFF);
    EXPECT_EQ(nameOf(FS_FontInfo(), 0xE000), "untouched");
}

} // namespace
} // namespace KWFontService_NS
