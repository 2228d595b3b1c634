#include "registry/FS_ExtraFontPool.h"

#include "registry/FakeFont.h"

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

KWPtr<FakeFont> fakeFont(const UnicodeString& file, const UnicodeString& family) {
    KWPtr<FakeFont> font(new FakeFont(file));
    font->family = family;
    return font;
}

FS_BaseFont* fontOf(FS_FontPool& pool, const UnicodeString& name) {
    return pool.findFont(name, FS_FontKey()).font;
}

TEST(ExtraFontPool, EntersNoFileNameWithoutItsExtension) {
    FS_ExtraFontPool pool;
    const auto font = fakeFont(u"/a/doc.ttf", u"Own");
    pool.registerFont(font);
    EXPECT_EQ(fontOf(pool, u"DOC.TTF"), font.get());
    EXPECT_EQ(fontOf(pool, u"doc"), nullptr);
    EXPECT_EQ(fontOf(pool, u"own"), font.get());
}

TEST(ExtraFontPool, RegisterNamedFontDoesNothing) {
    FS_ExtraFontPool pool;
    const KWPtr<FakeFont> font(new FakeFont);
    pool.registerNamedFont(*font, u"X");
    EXPECT_EQ(font->postScript, UnicodeString(u"Fake-PS"));
    EXPECT_TRUE(pool.byName.empty());
}

TEST(ExtraFontPool, ACopyHasReferencesOfItsOwnAndAllThreeMaps) {
    FS_ExtraFontPool pool;
    const auto font = fakeFont(u"/a/doc.ttf", u"Own");
    pool.fonts.push_back(font);
    pool.byUri.emplace(u"file:///a/doc.ttf", 0);
    pool.registerFont(font);
    {
        const FS_ExtraFontPool copy(pool);
        EXPECT_EQ(font->getRefCount(), 3);
        EXPECT_EQ(copy.fonts, pool.fonts);
        EXPECT_EQ(copy.byName, pool.byName);
        EXPECT_EQ(copy.byFileName, pool.byFileName);
        EXPECT_EQ(copy.byUri, pool.byUri);
    }
    EXPECT_EQ(font->getRefCount(), 2);
}

TEST(ExtraFontPool, FontAtAnIndexThatIsNoneIsNull) {
    FS_ExtraFontPool pool;
    pool.fonts.push_back(fakeFont(u"/a.ttf", u"A"));
    pool.fonts.push_back(nullptr);
    EXPECT_EQ(pool.fontAt(0), pool.fonts[0].get());
    for (const int index : {-1, 1, 2, 0x7FFFFFFF})
        EXPECT_EQ(pool.fontAt(index), nullptr) << index;
}

} // namespace
