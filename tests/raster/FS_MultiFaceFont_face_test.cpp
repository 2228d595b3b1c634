#include "fonts/FS_DFont.h"
#include "fonts/FS_TrueTypeCollection.h"
#include "raster/DrawFixture.h"

#include <KWCommon15/KWPtr.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;

template <class Font>
KWPtr<Font> scanned(const KWUri& uri, const Bytes& file) {
    const KWPtr<Font> font(new Font(uri));
    std::istringstream stream(file.str());
    KWError error;
    EXPECT_TRUE(font->scanFont(error, stream)) << CreatedFont::messageOf(error);
    return font;
}

Bytes twoFaces() {
    return SfntCollection{.fonts = {TestFont::latin().sfnt(), TestFont::vertical().sfnt()}}.build();
}
Bytes twoResources() {
    ResourceFile file;
    file.fonts = {TestFont::latin().sfnt(), TestFont::vertical().sfnt()};
    return file.build();
}

template <class Font>
void expectAFaceForEach(const Bytes& file, const std::string& name) {
    const TempDir folder;
    folder.write(name, file);
    const KWPtr<Font> font = scanned<Font>(folder.uri(name), file);
    FT_Face second = font->getFTFace(1);
    FT_Face first = font->getFTFace(0);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(first->num_glyphs, TestFont::kLatinGlyphs);
    EXPECT_EQ(second->num_glyphs, TestFont::kVerticalGlyphs);
    EXPECT_EQ(font->getFTFace(0), first) << "the same every time";
    EXPECT_EQ(font->getFTFace(1), second);
    for (const int face : {-1, 2, 99, 0x10000, std::numeric_limits<int>::min()})
        EXPECT_EQ(font->getFTFace(face), nullptr) << face;
}

TEST(MultiFaceFTFace, EachFaceOfACollectionHasItsOwn) {
    expectAFaceForEach<FS_TrueTypeCollection>(twoFaces(), "two.ttc");
}

TEST(MultiFaceFTFace, EachFaceOfADFontHasItsOwn) {
    expectAFaceForEach<FS_DFont>(twoResources(), "two.dfont");
}

TEST(MultiFaceFTFace, ThereIsNoneBeforeTheScan) {
    const TempDir folder;
    folder.write("two.ttc", twoFaces());
    const KWPtr<FS_TrueTypeCollection> font(new FS_TrueTypeCollection(folder.uri("two.ttc")));
    EXPECT_EQ(font->getFTFace(0), nullptr);
}

TEST(MultiFaceFTFace, ASecondScanForgetsThem) {
    const TempDir folder;
    folder.write("two.ttc", twoFaces());
    const KWPtr<FS_TrueTypeCollection> font =
        scanned<FS_TrueTypeCollection>(folder.uri("two.ttc"), twoFaces());
    ASSERT_NE(font->getFTFace(0), nullptr);
    EXPECT_EQ(font->getFTFace(0)->num_glyphs, TestFont::kLatinGlyphs);
    const Bytes other = SfntCollection{.fonts = {TestFont::vertical().sfnt()}}.build();
    font->getFTFace(1);
    std::istringstream stream(other.str());
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream));
    EXPECT_EQ(font->getFTFace(1), nullptr);
    folder.write("two.ttc", other);
    ASSERT_NE(font->getFTFace(0), nullptr);
    EXPECT_EQ(font->getFTFace(0)->num_glyphs, TestFont::kVerticalGlyphs);
}

TEST(MultiFaceFTFace, FacesOfACollectionHavePlacesAlsoAfterAScanThatFailed) {
    const TempDir folder;
    const Bytes file = SfntCollection{.fonts = {TestFont::latin().sfnt(),
                                                TestFont::latin().without("head").sfnt()}}
                           .build();
    folder.write("two.ttc", file);
    const KWPtr<FS_TrueTypeCollection> font(new FS_TrueTypeCollection(folder.uri("two.ttc")));
    std::istringstream stream(file.str());
    KWError error;
    ASSERT_FALSE(font->scanFont(error, stream));
    EXPECT_NE(font->getFTFace(0), nullptr);
}

TEST(MultiFaceFTFace, AFaceThatDidNotOpenIsNotTriedAgain) {
    const TempDir folder;
    const KWPtr<FS_TrueTypeCollection> font =
        scanned<FS_TrueTypeCollection>(folder.uri("two.ttc"), twoFaces());
    EXPECT_EQ(font->getFTFace(0), nullptr);
    folder.write("two.ttc", twoFaces());
    EXPECT_EQ(font->getFTFace(0), nullptr);
    EXPECT_NE(font->getFTFace(1), nullptr) << "each face counts for itself";
}

TEST(MultiFaceFTFace, FacesInMemoryShareTheBytesOfTheFile) {
    const Bytes file = twoFaces();
    KWUri::setFetcher([&file](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        return std::make_unique<std::istringstream>(file.str());
    });
    {
        const KWPtr<FS_TrueTypeCollection> font = scanned<FS_TrueTypeCollection>(
            KWUri(UnicodeString("test:two"), KWCommonNS::URISTR_URI), file);
        FT_Face first = font->getFTFace(0);
        FT_Face second = font->getFTFace(1);
        ASSERT_NE(first, nullptr);
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(first->num_glyphs, TestFont::kLatinGlyphs);
        EXPECT_EQ(second->num_glyphs, TestFont::kVerticalGlyphs);
    }
    KWUri::setFetcher({});
}

} // namespace
} // namespace KWFontService_NS
