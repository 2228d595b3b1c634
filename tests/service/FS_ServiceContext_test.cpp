#include "fonts/FS_ServiceContext.h"

#include "registry/FS_FontService.h"
#include "registry/FakeFont.h"

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;
using KWTest::FakeFont;

FS_FontService& service() {
    return *getFontService(nullptr, nullptr, nullptr);
}

TEST(ServiceContext, AnswersTheSettingsOfTheService) {
    EXPECT_TRUE(FS_ServiceContext::usePreferredFamily());
    service().usePreferredFamily = false;
    EXPECT_FALSE(FS_ServiceContext::usePreferredFamily());
    service().usePreferredFamily = true;

    service().addEudcRange(0xE000, 0xE000);
    EXPECT_TRUE(FS_ServiceContext::isEudcCodePoint(0xE000));
    EXPECT_FALSE(FS_ServiceContext::isEudcCodePoint('A'));
    EXPECT_FALSE(FS_ServiceContext::isEudcCodePoint(0x1E000));
}

TEST(ServiceContext, AnswersTheDefaultEudcFontOfEachDirection) {
    EXPECT_FALSE(FS_ServiceContext::defaultEudcFont(false));
    EXPECT_FALSE(FS_ServiceContext::defaultEudcFont(true));
    const KWPtr<FakeFont> font(new FakeFont);
    service().defaultEudcFont = {font.get(), 0};
    service().defaultEudcFontVertical = {font.get(), 1};
    EXPECT_EQ(FS_ServiceContext::defaultEudcFont(false), (FS_FontRef{font.get(), 0}));
    EXPECT_EQ(FS_ServiceContext::defaultEudcFont(true), (FS_FontRef{font.get(), 1}));
    service().defaultEudcFont = {};
    service().defaultEudcFontVertical = {};
}

TEST(ServiceContext, KeepsAFontAlive) {
    const KWPtr<FakeFont> font(new FakeFont);
    const std::size_t pooled = service().fontPool.fonts.size();
    FS_ServiceContext::keepFont(*font);
    EXPECT_EQ(font->getRefCount(), 2);
    EXPECT_EQ(service().keptFonts.back(), font);
    EXPECT_EQ(service().fontPool.fonts.size(), pooled) << "it belongs to no pool";
}

TEST(ServiceContext, MakesOneFreeTypeLibraryOnFirstNeed) {
    KWCommonNS::KWMutex mutex(FS_ServiceContext::freeTypeLock());
    mutex.lock();
    FT_LibraryRec_* const library = FS_ServiceContext::freeTypeLibrary();
    EXPECT_NE(library, nullptr);
    EXPECT_EQ(FS_ServiceContext::freeTypeLibrary(), library);
    EXPECT_EQ(service().freeTypeLibrary.get(), library);
    EXPECT_EQ(&FS_ServiceContext::freeTypeLock(), &service().freeTypeLock);
}

} // namespace
