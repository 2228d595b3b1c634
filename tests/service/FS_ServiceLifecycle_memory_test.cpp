#include "fonts/FS_ServiceContext.h"
#include "registry/FS_FontService.h"
#include "registry/FakeFont.h"

#include <KWFontService17/FS_Functions.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

// A program of its own, since it replaces the allocation functions.

namespace {

bool g_refuseService = false;

} // namespace

void* operator new(std::size_t size) {
    if (g_refuseService && size == sizeof(KWFontService_NS::FS_FontService))
        throw std::bad_alloc();
    if (void* const memory = std::malloc(size != 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using namespace KWFontService_NS;

TEST(FontServiceWithoutMemory, OperationsAnswerAsWithoutAServiceAndALaterCallOpensIt) {
    g_refuseService = true;
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

    g_refuseService = false;
    EXPECT_EQ(FS_GetFontError(nullptr, 0), 0);
    EXPECT_NE(g_fontService.load(), nullptr);
}

} // namespace
