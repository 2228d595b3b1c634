// Subsets of packaged fonts, read by others: fontTools, FreeType and OpenType Sanitizer.

#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/Rng.h"
#include "support/TempDir.h"

#include <KWFontService17/FS_FontInfo.h>

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <ranges>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::FreeTypeFace;
using KWTest::ProcessResult;

std::string sourceOf(const std::string& script) {
    std::ifstream file(std::string(KW_INTEROP_SCRIPTS) + "/" + script);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class SubsetOf : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        path_ = KWTest::packagedFont(GetParam());
        ASSERT_TRUE(font_.createFont(KWTest::fileUri(path_)));
        // The text covers Latin with marks, and kana and Han where the font has them.
        const UnicodeString text = UnicodeString::fromUTF8(
            "Zażółć gęślą jaźń, Ångström ½ ﬁ Ǻ Ễ 書体の部分を埋め込む。ガギグゲゴ");
        for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
            const unsigned short gid = font_.getGlyphID(text.char32At(i), false);
            if (gid != FS_NO_GLYPH)
                glyphs_.push_back(gid);
        }
        ASSERT_GT(glyphs_.size(), 20u);
        // And some from everywhere, empty and composite ones among them.
        KWTest::Rng random(1);
        const FreeTypeFace source(KWTest::readFile(path_));
        for (int i = 0; i < 200; ++i)
            glyphs_.push_back(static_cast<unsigned short>(
                random.below(static_cast<std::uint32_t>(source->num_glyphs))));
    }

    template <class Writer>
    Bytes written(const Writer& writer) {
        KWMemStream out;
        if (!writer(out))
            return {};
        const auto* data = reinterpret_cast<const std::uint8_t*>(out.data());
        return Bytes(std::vector<std::uint8_t>(data, data + out.size()));
    }

    Bytes embedded() {
        return written([&](KWMemStream& out) { return font_.getEmbedFont(glyphs_, out); });
    }
    Bytes subset() {
        return written([&](KWMemStream& out) { return font_.makeSubsetFont(glyphs_, out); });
    }

    void expectSameForFontTools(const Bytes& file) {
        std::vector<std::string> arguments{path_.string(), folder_.write("subset.ttf", file)};
        for (const unsigned short gid : glyphs_)
            arguments.push_back(std::to_string(gid));
        const ProcessResult result = KWTest::runPython(sourceOf("subset_compare.py"), arguments);
        EXPECT_TRUE(result.ok()) << result.describe();
        EXPECT_TRUE(result.output.starts_with("same ")) << result.describe();
    }

    std::filesystem::path path_;
    KWTest::TempDir folder_;
    FS_FontInfo font_;
    std::vector<unsigned short> glyphs_;
};

TEST_P(SubsetOf, HasTheSourcesGlyphsForFontTools) {
    const Bytes file = embedded();
    ASSERT_FALSE(file.empty());
    EXPECT_LT(file.size(), std::filesystem::file_size(path_));
    expectSameForFontTools(file);
}

TEST_P(SubsetOf, WithEveryTableHasTheSourcesGlyphsForFontTools) {
    const Bytes file = subset();
    ASSERT_FALSE(file.empty());
    expectSameForFontTools(file);
}

TEST_P(SubsetOf, OpensInFreeTypeWithTheSourcesOutlinesAndAdvances) {
    const FreeTypeFace source(KWTest::readFile(path_));
    const FreeTypeFace cut(embedded());
    ASSERT_EQ(cut->num_glyphs, source->num_glyphs);
    for (const unsigned short gid : glyphs_) {
        const FT_GlyphSlot a = source.load(gid);
        const FT_GlyphSlot b = cut.load(gid);
        EXPECT_EQ(a->metrics.horiAdvance, b->metrics.horiAdvance) << gid;
        ASSERT_EQ(a->outline.n_points, b->outline.n_points) << gid;
        ASSERT_EQ(a->outline.n_contours, b->outline.n_contours) << gid;
        for (int i = 0; i < a->outline.n_points; ++i) {
            EXPECT_EQ(a->outline.points[i].x, b->outline.points[i].x) << gid;
            EXPECT_EQ(a->outline.points[i].y, b->outline.points[i].y) << gid;
            EXPECT_EQ(a->outline.tags[i], b->outline.tags[i]) << gid;
        }
    }
}

TEST_P(SubsetOf, WithEveryTablePassesTheSanitizerWhereItsSourceDoes) {
    ASSERT_TRUE(KWTest::hasProgram("ots-sanitize")) << "install opentype-sanitizer";
    const ProcessResult source = KWTest::runProgram("ots-sanitize", {path_.string()});
    ASSERT_TRUE(source.ok()) << source.describe();
    const ProcessResult cut =
        KWTest::runProgram("ots-sanitize", {folder_.write("subset.ttf", subset()).string()});
    EXPECT_TRUE(cut.ok()) << cut.describe();
}

// The sanitizer wants `cmap` and `name`, which subsets for documents leave out.
TEST_P(SubsetOf, WithTheTablesThatTheSanitizerAsksForPassesIt) {
    const unsigned int tags[] = {0x4F532F32, 0x636D6170, 0x63767420, 0x6670676D,
                                 0x68656164, 0x68686561, 0x686D7478, 0x6D617870,
                                 0x6E616D65, 0x706F7374, 0x70726570, 0};
    const Bytes file =
        written([&](KWMemStream& out) { return font_.getEmbedFont(glyphs_, out, tags); });
    ASSERT_FALSE(file.empty());
    const ProcessResult result =
        KWTest::runProgram("ots-sanitize", {folder_.write("subset.ttf", file).string()});
    EXPECT_TRUE(result.ok()) << result.describe();
}

TEST_P(SubsetOf, KeepsItsCharacterMapForFreeTypeWhenAskedTo) {
    const FreeTypeFace source(KWTest::readFile(path_));
    const FreeTypeFace cut(
        written([&](KWMemStream& out) { return font_.getEmbedFontWithCmap(glyphs_, out); }));
    for (const FT_ULong character : {FT_ULong{'A'}, FT_ULong{0xE9}, FT_ULong{0x3042}})
        EXPECT_EQ(cut.glyphOf(character), source.glyphOf(character));
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, SubsetOf,
                         testing::Values("DejaVuSans", "DejaVuSerif-Bold", "LiberationSans",
                                         "LiberationMono", "IPAGothic", "IPAPMincho"),
                         [](const auto& test) {
                             std::string name = test.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
