// Subsets of Type 1 fonts, read by others: FreeType, fontTools, t1utils and Ghostscript.

#include "fonts/FS_Type1AFM.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/MetricsFiles.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "support/Type1Font.h"
#include "type1/GlyphNames.h"

#include <KWCommon15/KWMemStream.h>
#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <ostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::FreeTypeFace;
using KWTest::ProcessResult;
using KWTest::runProgram;

std::string sourceOf(const std::string& script) {
    std::ifstream file(std::string(KW_INTEROP_SCRIPTS) + "/" + script);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

const UnicodeString& sampleText() {
    static const UnicodeString text = UnicodeString::fromUTF8(
        "Zażółć gęślą jaźń, ÁÀÂÄÅĄ Ångström ½ ﬁ ﬂ „Łódź“ – don’t §¶ €£¥ (αβ) 0123456789 @&%#");
    return text;
}

/// A metrics file and its printer font in a folder, loaded; and what was asked of it.
class Type1Pair {
public:
    Type1Pair(const Bytes& metrics, const Bytes& printerFont, const char* extension = ".pfb")
        : program(folder.write(std::string("font") + extension, printerFont)) {
        folder.write("font.afm", metrics);
        font = KWCommonNS::KWPtr<FS_Type1AFM>(new FS_Type1AFM(folder.uri("font.afm")));
        KWError error;
        std::ifstream stream(folder.path("font.afm"), std::ios::binary);
        ok = font->scanFont(error, stream) && font->getPrinterFont() != nullptr &&
             font->loadFont(error, 0, nullptr);
    }

    /// Gives the characters of a text codes, by their font programs.
    void use(const UnicodeString& text) {
        for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
            const unsigned short code = font->getType1CharCode(text.char32At(i), 0);
            if (code != 0)
                codes[static_cast<unsigned char>(code >> 8)] += static_cast<char>(code & 0xFF);
        }
    }
    /// Every character of the glyph list that the font has.
    void useAll() {
        UnicodeString text;
        for (UChar32 ch = 0x20; ch < 0x2600; ++ch) {
            if (!glyphNameOf(ch).empty())
                text.append(ch);
        }
        use(text);
    }

    Bytes subset(unsigned char fontNumber) {
        const std::string& list = codes[fontNumber];
        KWMemStream out;
        std::array<int, 3> lengths{};
        if (!font->getType1EmbedFont(fontNumber, list.data(), static_cast<int>(list.size()), out,
                                     lengths[0], lengths[1], lengths[2], 0))
            return {};
        EXPECT_EQ(out.length(), lengths[0] + lengths[1] + lengths[2] + 3 * 6 + 2);
        const auto* const data = reinterpret_cast<const std::uint8_t*>(out.data());
        return Bytes(std::vector<std::uint8_t>(data, data + out.size()));
    }

    std::string whole() const {
        KWMemStream out;
        int length = 0;
        EXPECT_TRUE(font->getType1FontStream(out, length, length, length, 0));
        return {out.data(), out.size()};
    }

    /// The names of the glyphs of a font program, where something names them.
    std::set<std::string> names(unsigned char fontNumber) {
        std::set<std::string> result{".notdef"};
        for (const char ch : codes[fontNumber]) {
            const auto code = static_cast<unsigned char>(ch);
            std::string name;
            if (!font->getType1GlyphName(fontNumber, code, name, 0) && fontNumber == 0)
                name = standardName(code);
            if (!name.empty())
                result.insert(name);
        }
        return result;
    }

    KWTest::TempDir folder;
    std::filesystem::path program;
    KWCommonNS::KWPtr<FS_Type1AFM> font;
    bool ok = false;
    std::map<unsigned char, std::string> codes;
};

std::string glyphName(const FreeTypeFace& face, FT_UInt glyph) {
    std::array<char, 256> name{};
    EXPECT_EQ(FT_Get_Glyph_Name(face.get(), glyph, name.data(), name.size()), 0);
    return name.data();
}

/// The glyphs by their names.
std::map<std::string, FT_UInt> glyphsOf(const FreeTypeFace& face) {
    std::map<std::string, FT_UInt> glyphs;
    for (FT_UInt glyph = 0; glyph < static_cast<FT_UInt>(face->num_glyphs); ++glyph)
        glyphs.emplace(glyphName(face, glyph), glyph);
    return glyphs;
}

/// Outline, not hinted, and width as text.
std::string drawn(const FreeTypeFace& face, FT_UInt glyph) {
    if (FT_Load_Glyph(face.get(), glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING) != 0)
        return "cannot load";
    const FT_GlyphSlot slot = face->glyph;
    std::ostringstream text;
    text << slot->metrics.horiAdvance;
    for (short i = 0; i < slot->outline.n_points; ++i)
        text << ' ' << slot->outline.points[i].x << ',' << slot->outline.points[i].y << ':'
             << int{slot->outline.tags[i]};
    for (short i = 0; i < slot->outline.n_contours; ++i)
        text << " end " << slot->outline.contours[i];
    return text.str();
}

/// Every glyph of the subset is drawn as in the source. Answers their names.
std::set<std::string> expectSameForFreeType(const Bytes& source, const Bytes& subset) {
    const FreeTypeFace sourceFace(source);
    const FreeTypeFace subsetFace(subset);
    const auto sourceGlyphs = glyphsOf(sourceFace);
    std::set<std::string> names;
    for (const auto& [name, glyph] : glyphsOf(subsetFace)) {
        names.insert(name);
        EXPECT_TRUE(sourceGlyphs.contains(name)) << name;
        EXPECT_EQ(drawn(subsetFace, glyph), drawn(sourceFace, sourceGlyphs.at(name))) << name;
    }
    return names;
}

bool isSubset(const std::set<std::string>& names, const std::set<std::string>& of) {
    return std::ranges::includes(of, names);
}

// --- fonts that every machine has ---------------------------------------------------------------

struct Sample {
    const char* name; ///< with "-AFM" and "-PFB" a packaged font; "Built" the one of the tests
};
void PrintTo(const Sample& sample, std::ostream* out) {
    *out << sample.name;
}

class Type1SubsetOf : public testing::TestWithParam<Sample> {
protected:
    Type1SubsetOf() : pair_(metrics(), program()) {}
    void SetUp() override {
        ASSERT_TRUE(pair_.ok);
        pair_.use(sampleText());
        ASSERT_GT(pair_.codes.size(), 0U);
    }

    static bool isBuilt() { return std::string_view(GetParam().name) == "Built"; }
    static Bytes packaged(const char* suffix) {
        return KWTest::readFile(KWTest::packagedFont(std::string(GetParam().name) + suffix));
    }
    static Bytes metrics() {
        return isBuilt() ? Bytes::ofText(KWTest::AfmFile::latin().build()) : packaged("-AFM");
    }
    static Bytes program() {
        if (!isBuilt())
            return packaged("-PFB");
        KWTest::Type1Font font = KWTest::Type1Font::latin();
        font.subrs = {KWTest::Type1CharString().op({}, 11)}; // fontTools relies on there being some
        return font.pfb();
    }

    Type1Pair pair_;
};

TEST_P(Type1SubsetOf, FreeTypeSeesTheSameGlyphs) {
    for (const auto& [fontNumber, codes] : pair_.codes) {
        const auto names = expectSameForFreeType(program(), pair_.subset(fontNumber));
        const auto wanted = pair_.names(fontNumber);
        EXPECT_TRUE(isSubset(wanted, names));
        // What else there is are parts of accented glyphs.
        if (isBuilt())
            EXPECT_EQ(names, (std::set<std::string>{".notdef", "A", "Aacute", "acute", "space"}));
        else
            EXPECT_EQ(names, wanted);
        EXPECT_LT(pair_.subset(fontNumber).size(), program().size());
    }
}

TEST_P(Type1SubsetOf, FontToolsSeesTheSameGlyphs) {
    for (const auto& [fontNumber, codes] : pair_.codes) {
        const auto file = pair_.folder.write("subset.pfb", pair_.subset(fontNumber));
        const ProcessResult result = KWTest::runPython(sourceOf("type1_subset_compare.py"),
                                                       {pair_.program.string(), file.string()});
        EXPECT_TRUE(result.ok()) << result.describe();
        EXPECT_TRUE(result.output.starts_with("same ")) << result.describe();
    }
}

TEST_P(Type1SubsetOf, T1utilsTakesItApartAndPutsItTogether) {
    for (const auto& [fontNumber, codes] : pair_.codes) {
        const Bytes subset = pair_.subset(fontNumber);
        const std::string text = pair_.folder.path("subset.txt").string();
        const auto again = pair_.folder.path("again.pfb");
        const ProcessResult apart =
            runProgram("t1disasm", {pair_.folder.write("subset.pfb", subset).string(), text});
        EXPECT_TRUE(apart.ok() && apart.errors.empty()) << apart.describe();
        const ProcessResult together = runProgram("t1asm", {"-b", text, again.string()});
        EXPECT_TRUE(together.ok() && together.errors.empty()) << together.describe();
        EXPECT_EQ(expectSameForFreeType(subset, KWTest::readFile(again)).size(),
                  static_cast<std::size_t>(FreeTypeFace(subset)->num_glyphs));
    }
}

TEST_P(Type1SubsetOf, GhostscriptShowsTheSameGlyphs) {
    const auto shown = [this](const std::string& font, const std::set<std::string>& names) {
        const std::string pfa = pair_.folder.path("shown.pfa").string();
        const ProcessResult text = runProgram("t1ascii", {font, pfa});
        EXPECT_TRUE(text.ok()) << text.describe();
        std::ostringstream page;
        page << "%!PS\n(" << pfa << ") run\n/"
             << FT_Get_Postscript_Name(FreeTypeFace(KWTest::readFile(font)).get())
             << " findfont 40 scalefont setfont\n";
        int count = 0;
        for (const std::string& name : names) {
            page << 10 + count % 10 * 60 << ' ' << 20 + count / 10 * 60 << " moveto /" << name
                 << " glyphshow\n";
            ++count;
        }
        page << "showpage\n";
        const auto picture = pair_.folder.path("page.pgm");
        const ProcessResult result = runProgram(
            "gs", {"-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "--permit-file-read=" + pfa,
                   "-sDEVICE=pgmraw", "-r72", "-g620x800", "-sOutputFile=" + picture.string(),
                   pair_.folder.write("page.ps", page.str()).string()});
        EXPECT_TRUE(result.ok()) << result.describe();
        return KWTest::readFile(picture);
    };
    for (const auto& [fontNumber, codes] : pair_.codes) {
        const auto names = pair_.names(fontNumber);
        const auto file = pair_.folder.write("subset.pfb", pair_.subset(fontNumber));
        const Bytes expected = shown(pair_.program.string(), names);
        EXPECT_EQ(shown(file.string(), names), expected);
        EXPECT_GT(std::ranges::count(expected, std::uint8_t{0}), 100) << "there is ink";
    }
}

TEST_P(Type1SubsetOf, OfHexadecimalTextItIsTheSame) {
    const auto text = pair_.folder.path("text.pfa");
    const ProcessResult result = runProgram("t1ascii", {pair_.program.string(), text.string()});
    ASSERT_TRUE(result.ok()) << result.describe();
    Type1Pair other(metrics(), KWTest::readFile(text), ".pfa");
    ASSERT_TRUE(other.ok);
    other.use(sampleText()); // which hands out the codes anew, in the same order
    for (const auto& [fontNumber, codes] : pair_.codes)
        EXPECT_EQ(other.subset(fontNumber), pair_.subset(fontNumber));
    EXPECT_EQ(other.whole(), program().str());
}

TEST_P(Type1SubsetOf, TheWholeFontIsTheFile) {
    EXPECT_EQ(pair_.whole(), program().str());
}

INSTANTIATE_TEST_SUITE_P(Fonts, Type1SubsetOf,
                         testing::Values(Sample{"Built"}, Sample{"NimbusSans"}, Sample{"C059"},
                                         Sample{"LMRoman10"}),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST(Type1SubsetBuilt, FontsWithOtherLeadBytesKeepTheirAccentedGlyphs) {
    for (const int lenIV : {-1, 0, 1, 4}) {
        KWTest::Type1Font source = KWTest::Type1Font::latin();
        source.lenIV = lenIV;
        Type1Pair pair(Bytes::ofText(KWTest::AfmFile::latin().build()), source.pfb());
        ASSERT_TRUE(pair.ok);
        pair.use(UnicodeString(static_cast<UChar32>(0xC1)));
        EXPECT_EQ(expectSameForFreeType(source.pfb(), pair.subset(0)),
                  (std::set<std::string>{".notdef", "A", "Aacute", "acute"}));
    }
}

// --- fonts that some machines have --------------------------------------------------------------

TEST(Type1SubsetInstalled, EveryFontWithMetricsKeepsItsGlyphs) {
    namespace fs = std::filesystem;
    const fs::path root("/usr/share/texlive/texmf-dist/fonts");
    if (!fs::exists(root / "type1" / "public" / "txfonts"))
        GTEST_SKIP() << "apt-get install texlive-fonts-recommended";
    std::map<std::string, fs::path> metrics;
    for (const auto& entry : fs::recursive_directory_iterator(root / "afm")) {
        if (entry.path().extension() == ".afm")
            metrics.emplace(entry.path().stem().string(), entry.path());
    }
    std::size_t fonts = 0;
    std::size_t accented = 0;
    for (const auto& entry : fs::recursive_directory_iterator(root / "type1")) {
        const auto found = metrics.find(entry.path().stem().string());
        if (entry.path().extension() != ".pfb" || found == metrics.end())
            continue;
        SCOPED_TRACE(entry.path().string());
        const Bytes source = KWTest::readFile(entry.path());
        Type1Pair pair(KWTest::readFile(found->second), source);
        ASSERT_TRUE(pair.ok);
        pair.useAll();
        if (pair.codes.empty())
            continue; // a font of symbols
        ++fonts;
        std::set<std::string> present;
        for (const auto& [name, glyph] : glyphsOf(FreeTypeFace(source)))
            present.insert(name);
        for (const auto& [fontNumber, codes] : pair.codes) {
            const Bytes subset = pair.subset(fontNumber);
            ASSERT_FALSE(subset.empty());
            const auto names = expectSameForFreeType(source, subset);
            EXPECT_TRUE(names.contains(".notdef"));
            if (pair.font->getEncodingScheme(0) == FS_ENCODING_STANDARD) {
                // Some metrics files know of glyphs that their program lacks.
                std::set<std::string> wanted = pair.names(fontNumber);
                std::erase_if(wanted, [&](const auto& name) { return !present.contains(name); });
                EXPECT_TRUE(isSubset(wanted, names));
                accented += std::size_t{names.size() > wanted.size()};
            }
        }
    }
    EXPECT_GT(fonts, 100U);
    EXPECT_GT(accented, 0U) << "no font had parts besides its characters";
}

} // namespace
} // namespace KWFontService_NS
