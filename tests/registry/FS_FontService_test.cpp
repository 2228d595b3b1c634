#include "registry/FS_FontService.h"

#include "registry/FakeFont.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

using namespace KWFontService_NS;

TEST(FontService, StartsWithTheStatedSettings) {
    const auto service = std::make_unique<FS_FontService>();
    EXPECT_TRUE(service->fileTypeByExtension.empty());
    EXPECT_GE(service->fileTypeByExtension.bucket_count(), 8U);
    EXPECT_TRUE(service->configUri.isEmpty());
    EXPECT_TRUE(service->folderByPath.empty());
    EXPECT_TRUE(service->folders.empty());
    EXPECT_TRUE(service->useWindowsRegistry);
    EXPECT_TRUE(service->eudcProcessing);
    EXPECT_TRUE(service->eudcSystemDefault.isEmpty());
    EXPECT_TRUE(service->eudcMap.empty());
    EXPECT_FALSE(service->eudcRangeGiven);
    EXPECT_FALSE(service->otfMetricsWindows);
    EXPECT_TRUE(service->usePreferredFamily);
    EXPECT_TRUE(service->fontPool.fonts.empty());
    EXPECT_TRUE(service->aliasPool.fonts.empty());
    EXPECT_TRUE(service->errors.empty());
    EXPECT_FALSE(service->defaultEudcFont);
    EXPECT_FALSE(service->defaultEudcFontVertical);
    EXPECT_EQ(service->freeTypeLibrary, nullptr);
}

std::unique_ptr<FS_FontFolder> folderAt(const char16_t* path) {
    return std::make_unique<FS_FontFolder>(KWUri(path), false);
}

TEST(FontService, FoldersComeInTheOrderTheyWereAdded) {
    const auto service = std::make_unique<FS_FontService>();
    FS_FontFolder* const first = service->addFolder(folderAt(u"/b"));
    FS_FontFolder* const second = service->addFolder(folderAt(u"/a"));
    ASSERT_EQ(service->folders.size(), 2U);
    EXPECT_EQ(service->folders[0].get(), first);
    EXPECT_EQ(service->folders[1].get(), second);
}

TEST(FontService, AFolderThatIsKnownIsNotTakenAgain) {
    const auto service = std::make_unique<FS_FontService>();
    FS_FontFolder* const known = service->addFolder(folderAt(u"/Fonts"));
    EXPECT_EQ(service->addFolder(folderAt(u"/fonts/")), nullptr);
    EXPECT_EQ(service->folders.size(), 1U);
    EXPECT_EQ(service->findFolder(folderAt(u"/FONTS")->pathKey()), known);
    EXPECT_EQ(service->findFolder(folderAt(u"/other")->pathKey()), nullptr);
}

TEST(FontService, EudcBitsLieAtBitCAnd7OfByteCShiftedBy3) {
    const auto service = std::make_unique<FS_FontService>();
    service->addEudcRange(0xE00A, 0xE00A);
    EXPECT_EQ(service->eudcBitmap[0xE00A >> 3], 1U << 2);
    int bits = 0;
    for (const std::uint8_t byte : service->eudcBitmap)
        bits += byte != 0;
    EXPECT_EQ(bits, 1);
}

TEST(FontService, EudcRangesOutsideTheBitmapFallOutHarmlessly) {
    const auto service = std::make_unique<FS_FontService>();
    service->addEudcRange(-5, 1);
    service->addEudcRange(0xFFFE, 0x7FFFFFFF);
    service->addEudcRange(0x10000, 0x10FFFF);
    service->addEudcRange(20, 10);
    EXPECT_TRUE(service->isEudcCodePoint(0));
    EXPECT_TRUE(service->isEudcCodePoint(1));
    EXPECT_FALSE(service->isEudcCodePoint(2));
    EXPECT_FALSE(service->isEudcCodePoint(15));
    EXPECT_FALSE(service->isEudcCodePoint(0xFFFD));
    EXPECT_TRUE(service->isEudcCodePoint(0xFFFE));
    EXPECT_TRUE(service->isEudcCodePoint(0xFFFF));
}

TEST(FontService, AnEudcRangeSetsItsBitsAndNoOthers) {
    for (const auto& [first, last] : {std::pair(0xE000, 0xE000), std::pair(0xE003, 0xE005),
                                      std::pair(0xE007, 0xE008), std::pair(0xE001, 0xE02F)}) {
        const auto service = std::make_unique<FS_FontService>();
        service->addEudcRange(first, last);
        for (int ch = 0xDFF0; ch < 0xE040; ++ch)
            EXPECT_EQ(service->isEudcCodePoint(ch), ch >= first && ch <= last) << ch;
    }
}

TEST(FontService, ALookupTellsWhetherAnAliasAnswered) {
    const auto service = std::make_unique<FS_FontService>();
    const KWPtr<KWTest::FakeFont> font(new KWTest::FakeFont);
    FS_FontPool::addName(service->aliasPool.byName, u"ALIAS", {font.get(), 0}, {});
    FS_FontPool::addName(service->fontPool.byName, u"REAL", {font.get(), 0}, {});
    bool foundInAlias = false;
    EXPECT_TRUE(service->findFont(u"Real", {}, foundInAlias, false));
    EXPECT_FALSE(foundInAlias);
    EXPECT_FALSE(service->findFont(u"Alias", {}, foundInAlias, true));
    EXPECT_FALSE(foundInAlias);
    EXPECT_TRUE(service->findFont(u"Alias", {}, foundInAlias, false));
    EXPECT_TRUE(foundInAlias);
}

TEST(FontService, CodePointsOutsideTheBasicPlaneAreNeverEudc) {
    const auto service = std::make_unique<FS_FontService>();
    service->addEudcRange(0, 0xFFFF);
    EXPECT_FALSE(service->isEudcCodePoint(0x10000));
    EXPECT_FALSE(service->isEudcCodePoint(0x7FFFFFFF));
    EXPECT_FALSE(service->isEudcCodePoint(-1));
    EXPECT_FALSE(service->isEudcCodePoint(-0x7FFFFFFF - 1));
}

} // namespace
