#include "fonts/FS_ServiceContext.h"
#include "registry/FS_FontService.h"
#include "registry/FakeFont.h"
#include "support/RefusingNew.h"

#include <KWFontService17/FS_Functions.h>

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;

TEST(FontServiceWithoutMemory, OperationsAnswerAsWithoutAServiceAndALaterCallOpensIt) {
    KWTest::g_refusedSize = sizeof(FS_FontService);
    EXPECT_EQ(FontServiceOpen(nullptr, nullptr), 0);
    EXPECT_EQ(g_fontService.load(), nullptr);
    EXPECT_EQ(FS_GetFontError(nullptr, 0), -1);
    EXPECT_TRUE(FS_ServiceContext::usePreferredFamily());
    EXPECT_FALSE(FS_ServiceContext::isEudcCodePoint(0xE000));
    EXPECT_FALSE(FS_ServiceContext::defaultEudcFont(false));
    EXPECT_EQ(FS_ServiceContext::freeTypeLibrary(), nullptr);
    const KWPtr<KWTest::FakeFont> font(new KWTest::FakeFont);
    FS_ServiceContext::keepFont(*font);
    EXPECT_EQ(font->getRefCount(), 2) << "kept all the same";
    font->release();

    KWTest::g_refusedSize = 0;
    EXPECT_EQ(FS_GetFontError(nullptr, 0), 0);
    EXPECT_NE(g_fontService.load(), nullptr);
}

} // namespace
