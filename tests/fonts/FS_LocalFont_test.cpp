#include "fonts/FS_LocalFont.h"

#include "fonts/SfntFixture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;

/// A font of a registry, scanned and loaded, and what stands for it in a document.
class LocalFont : public testing::Test {
protected:
    LocalFont() {
        files.write("local.ttf", TestFont::latin().build());
        std::istringstream stream(TestFont::latin().build().str());
        KWError error;
        EXPECT_TRUE(registry->scanFont(error, stream) && registry->loadFont(error, 0, nullptr));
    }

    TempDir files;
    KWPtr<FS_BaseFont> registry{new FS_TrueType(files.uri("local.ttf"))};
    KWPtr<FS_LocalFont> font{new FS_LocalFont(registry)};
};

TEST_F(LocalFont, IsAClassOfItsOwn) {
    EXPECT_EQ(font->getClassId(), FS_CLASSID_LOCAL_FONT);
    EXPECT_EQ(font->getClassName(), UnicodeString("FS_LocalFont"));
    for (const unsigned id : {0x80E87634U, 0x2E8D3159U, 0x523A46D6U, 0xD18D040AU, 0xDF537371U})
        EXPECT_TRUE(font->isKindOf(id)) << std::hex << id;
    EXPECT_FALSE(font->isKindOf(FS_CLASSID_WOFF));
    EXPECT_EQ(font->getFontFileType(0), 13);
    EXPECT_EQ(font->getFontFileType2(0), 5);
}

TEST_F(LocalFont, AnswersByTheFontOfTheRegistry) {
    EXPECT_EQ(font->getUri(), registry->getUri());
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kA);
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
}

TEST_F(LocalFont, HoldsTheFontOfTheRegistryAsLongAsItself) {
    EXPECT_EQ(registry->getRefCount(), 2);
    font.reset();
    EXPECT_EQ(registry->getRefCount(), 1);
}

TEST_F(LocalFont, ItsScanReadsNothingAndKeepsWhatIsDeclared) {
    std::istream noStream(nullptr);
    KWError error;
    EXPECT_TRUE(font->scanNamedFont(error, noStream, u"Declared", 300, 1));
    EXPECT_FALSE(error.isError());
    EXPECT_EQ(font->getWeight(0), 300);
    EXPECT_TRUE(font->isItalic(0));
    EXPECT_EQ(registry->getWeight(0), 400) << "the font of the registry keeps its own";
}

TEST_F(LocalFont, WithoutAFontOfTheRegistryItsScanFailsInSilence) {
    const KWPtr<FS_LocalFont> empty(new FS_LocalFont(nullptr));
    std::istream noStream(nullptr);
    KWError error;
    EXPECT_FALSE(empty->scanNamedFont(error, noStream, u"Declared", 300, 1));
    EXPECT_FALSE(error.isError());
}

} // namespace
} // namespace KWFontService_NS
