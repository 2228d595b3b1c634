#include "fonts/FS_MultiFaceFont.h"

#include "embed/EmbedFixture.h"
#include "fonts/FS_DFont.h"
#include "fonts/FS_OpenType.h"
#include "fonts/FS_TrueTypeCollection.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;

/// The tables of a font, `head` as the builder leaves it.
SfntBuilder builder(TestFont font) {
    SfntBuilder sfnt = font.sfnt();
    return sfnt.keepCheckSumAdjustment();
}

template <class Font>
class Faces {
public:
    explicit Faces(const Bytes& file) : stream(file.str()), font(new Font(KWUri())) {
        KWError error;
        EXPECT_TRUE(font->scanFont(error, stream));
    }
    Bytes embedStream(int face) {
        KWMemStream output;
        return font->getEmbedFontStream(output, &stream, face) ? bytesOf(output) : Bytes();
    }

    std::istringstream stream;
    KWPtr<Font> font;
};

/// What the table directory of a file has: each table by its tag.
std::map<std::string, Bytes> tablesOf(const Bytes& sfnt) {
    std::map<std::string, Bytes> tables;
    for (std::size_t i = 0; i < sfnt.u16At(4); ++i) {
        const std::size_t record = 12 + 16 * i;
        const std::uint32_t at = sfnt.u32At(record + 8);
        const std::uint32_t length = sfnt.u32At(record + 12);
        const std::string tag(sfnt.str(), record, 4);
        tables[tag] =
            Bytes(std::vector<std::uint8_t>(sfnt.begin() + at, sfnt.begin() + at + length));
    }
    return tables;
}

TEST(MultiFaceEmbed, AFaceOfACollectionBecomesAFileOfItsOwn) {
    Faces<FS_TrueTypeCollection> faces(
        SfntCollection{.fonts = {builder(TestFont::latin()), builder(TestFont::vertical())}}
            .build());
    EXPECT_EQ(tablesOf(faces.embedStream(0)), tablesOf(builder(TestFont::latin()).build()));
    EXPECT_EQ(tablesOf(faces.embedStream(1)), tablesOf(builder(TestFont::vertical()).build()));
}

TEST(MultiFaceEmbed, SoDoesAFaceWithCff) {
    Faces<FS_TrueTypeCollection> faces(
        SfntCollection{.fonts = {builder(TestFont::openType())}}.build());
    const Bytes written = faces.embedStream(0);
    EXPECT_EQ(tablesOf(written), tablesOf(builder(TestFont::openType()).build()));
    EXPECT_EQ(written.u32At(0), kOttoVersion);
    const KWPtr<FS_OpenType> again(new FS_OpenType(KWUri()));
    std::istringstream stream(written.str());
    KWError error;
    EXPECT_TRUE(again->scanFont(error, stream) && again->loadFont(error, 0, &stream));
}

TEST(MultiFaceEmbed, SoDoesAFaceOfADFont) {
    ResourceFile resources;
    resources.fonts = {builder(TestFont::latin()), builder(TestFont::vertical())};
    Faces<FS_DFont> faces(resources.build());
    EXPECT_EQ(tablesOf(faces.embedStream(1)), tablesOf(builder(TestFont::vertical()).build()));
}

TEST(MultiFaceEmbed, AFaceOutOfRangeGivesNothing) {
    Faces<FS_TrueTypeCollection> faces(
        SfntCollection{.fonts = {builder(TestFont::latin())}}.build());
    for (const int face : {-1, 1, 99}) {
        KWMemStream output;
        EXPECT_FALSE(faces.font->getEmbedFontStream(output, &faces.stream, face)) << face;
        EXPECT_EQ(output.size(), 0U);
    }
}

TEST(MultiFaceEmbed, WithoutAStreamTheFontOpensItsFile) {
    const TempDir dir;
    const Bytes file = SfntCollection{.fonts = {builder(TestFont::latin())}}.build();
    dir.write("one.ttc", file);
    const KWPtr<FS_TrueTypeCollection> font(new FS_TrueTypeCollection(dir.uri("one.ttc")));
    std::istringstream stream(file.str());
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream));
    KWMemStream output;
    ASSERT_TRUE(font->getEmbedFontStream(output, nullptr, 0));
    EXPECT_EQ(tablesOf(bytesOf(output)), tablesOf(builder(TestFont::latin()).build()));
    std::filesystem::remove(dir.path("one.ttc"));
    EXPECT_FALSE(font->getEmbedFontStream(output, nullptr, 0));
}

} // namespace
} // namespace KWFontService_NS
