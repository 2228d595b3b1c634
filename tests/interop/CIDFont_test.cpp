// PostScript CIDFonts made of packaged fonts: their data section taken apart by its own rule, their
// glyphs as Ghostscript shows them, and the procedures of OtherSubrs as Ghostscript runs them.

#include "cff/ContourCompare.h"
#include "cff/Type1Bytes.h"
#include "embed/OtherSubrs.h"
#include "fonts/FontTyping.h"
#include "interop/PagePicture.h"
#include "support/FontPackages.h"
#include "support/FontTables.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

// --- the text taken apart -----------------------------------------------------------------------

/// A CIDFont of type 0 as text, read by the rule of its maps: entries of FDBytes + GDBytes say
/// where charstrings lie, entries of SDBytes where Subrs do.
class CIDFontText {
public:
    explicit CIDFontText(std::string text) : text_(std::move(text)) {
        const std::size_t start = text_.find(" StartData\n") + 11;
        const std::size_t end = text_.find('>', start);
        std::string digits = text_.substr(start, end - start);
        std::erase(digits, '\n');
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
            data.u8(std::stoi(digits.substr(i, 2), nullptr, 16));
        before_ = text_.substr(0, start);
        behind_ = text_.substr(end);
        EXPECT_EQ(data.size(), number("(Hex) "));
    }

    std::size_t number(const std::string& key) const {
        return std::stoul(text_.substr(text_.find(key) + key.size()));
    }
    std::string fontName() const {
        const std::string key = "/CIDFontName /";
        const std::size_t at = text_.find(key) + key.size();
        return text_.substr(at, text_.find(' ', at) - at);
    }
    std::size_t count() const { return number("/CIDCount "); }
    std::size_t subrCount() const { return number("/SubrCount "); }

    struct Place {
        std::size_t begin;
        std::size_t end;
        std::size_t fontDict;
    };
    Place glyph(std::size_t cid) const {
        const std::size_t fdBytes = number("/FDBytes ");
        const std::size_t gdBytes = number("/GDBytes ");
        const std::size_t at = cid * (fdBytes + gdBytes);
        return {numberAt(at + fdBytes, gdBytes),
                numberAt(at + fdBytes + gdBytes + fdBytes, gdBytes), numberAt(at, fdBytes)};
    }
    Place subr(std::size_t index) const {
        const std::size_t width = number("/SDBytes ");
        const std::size_t at = number("/SubrMapOffset ") + index * width;
        return {numberAt(at, width), numberAt(at + width, width), 0};
    }
    Bytes bytes(Place place) const { return data.slice(place.begin, place.end - place.begin); }

    const std::string& plain() const { return text_; }
    /// The text with every charstring enciphered, as readers expect of `lenIV` 0 (Adobe Type 1 Font
    /// Format, chapter 7).
    std::string enciphered() const {
        Bytes cipher = data;
        const auto encipher = [&](Place place) {
            unsigned key = 4330;
            for (std::size_t i = place.begin; i < place.end; ++i) {
                const unsigned byte = data.u8At(i) ^ (key >> 8);
                cipher.patchU8At(i, byte);
                key = ((byte + key) * 52845 + 22719) & 0xFFFF;
            }
        };
        for (std::size_t cid = 0; cid < count(); ++cid)
            encipher(glyph(cid));
        for (std::size_t i = 0; i < subrCount(); ++i)
            encipher(subr(i));
        std::ostringstream digits;
        digits << std::hex << std::setfill('0');
        for (std::size_t i = 0; i < cipher.size(); ++i)
            digits << std::setw(2) << int{cipher.u8At(i)} << (i % 32 == 31 ? "\n" : "");
        return before_ + digits.str() + behind_;
    }

    Bytes data;

private:
    std::size_t numberAt(std::size_t at, std::size_t width) const {
        std::size_t value = 0;
        for (std::size_t i = 0; i < width; ++i)
            value = value << 8 | data.u8At(at + i);
        return value;
    }

    std::string text_;
    std::string before_;
    std::string behind_;
};

/// Adds a rendered glyph whose origin is at (x, y), counted from the upper left corner.
void draw(FT_GlyphSlot slot, unsigned x, unsigned y, PagePicture& page) {
    const FT_Bitmap& bitmap = slot->bitmap;
    for (unsigned row = 0; row < bitmap.rows; ++row) {
        for (unsigned column = 0; column < bitmap.width; ++column) {
            const int px = static_cast<int>(x + column) + slot->bitmap_left;
            const int py = static_cast<int>(y + row) - slot->bitmap_top;
            const auto at =
                static_cast<std::size_t>(py) * page.width + static_cast<std::size_t>(px);
            page.ink.at(at) =
                std::max(page.ink.at(at),
                         bitmap.buffer[static_cast<std::ptrdiff_t>(row) * bitmap.pitch + column]);
        }
    }
}

// --- fonts --------------------------------------------------------------------------------------

struct Sample {
    const char* font;
    bool isCollection;
    unsigned step; ///< every how many glyphs are taken apart

    friend std::ostream& operator<<(std::ostream& out, const Sample& sample) {
        return out << sample.font;
    }
};

class CIDFontOf : public testing::TestWithParam<Sample> {
protected:
    void SetUp() override {
        path_ = packagedFont(GetParam().font);
        font_ = createFontObject(fileUri(path_), GetParam().isCollection ? FS_FILETYPE_COLLECTION
                                                                         : FS_FILETYPE_OPENTYPE);
        std::ifstream stream(path_, std::ios::binary);
        KWError error;
        ASSERT_TRUE(font_->scanFont(error, stream));
        ASSERT_TRUE(font_->loadFont(error, 0, &stream));
        // The table alone, so that widths come from the charstrings.
        face_.emplace(fontTable(path_, "CFF "));
    }

    unsigned glyphCount() const { return static_cast<unsigned>((*face_)->num_glyphs); }
    CIDFontText make(const std::vector<unsigned short>& glyphs) {
        KWMemStream out;
        UnicodeString name;
        FS_CIDSystemInfo info;
        EXPECT_TRUE(font_->makePostScriptCIDFontType0(glyphs, out, name, info, 0));
        return CIDFontText(std::string(out.data(), out.size()));
    }

    std::filesystem::path path_;
    KWCommonNS::KWPtr<FS_BaseFont> font_;
    std::optional<FreeTypeFace> face_;
};

TEST_P(CIDFontOf, ThePlainCharstringsDrawWhatTheSourceDraws) {
    std::vector<unsigned short> glyphs;
    for (unsigned gid = 1; gid < glyphCount(); gid += GetParam().step)
        glyphs.push_back(static_cast<unsigned short>(gid));
    const CIDFontText text = make(glyphs);
    ASSERT_EQ(text.count(), glyphs.size() + 1);
    glyphs.insert(glyphs.begin(), 0);
    unsigned drawn = 0;
    for (std::size_t cid = 0; cid < glyphs.size(); ++cid) {
        const Type1Drawing drawing(type1Tokens(text.bytes(text.glyph(cid))));
        ASSERT_TRUE(drawing.ok()) << cid;
        const FT_GlyphSlot slot = face_->load(glyphs[cid]);
        ASSERT_EQ(difference(normal(drawing.contours()), normal(contoursOf(slot->outline))), "")
            << cid;
        EXPECT_NEAR(drawing.width(), static_cast<double>(slot->metrics.horiAdvance), 0.51) << cid;
        drawn += drawing.contours().empty() ? 0U : 1U;
    }
    EXPECT_GT(drawn, 100U);
    // The last ends where the maps of Subrs begin, and the last of those ends the data.
    EXPECT_EQ(text.glyph(glyphs.size() - 1).end, text.number("/SubrMapOffset "));
    EXPECT_EQ(text.subr(text.subrCount() - 1).end, text.data.size());
}

// Readers decipher what stands there plain. With the cipher put on they show the glyphs.
TEST_P(CIDFontOf, EncipheredItIsShownByGhostscriptAsTheSourceByFreeType) {
    if (!kForeignPrograms)
        GTEST_SKIP();
    constexpr unsigned kCell = 160;
    constexpr unsigned kSize = 100;
    constexpr unsigned kColumns = 8;
    constexpr unsigned kRows = 6;
    std::vector<unsigned short> glyphs;
    const unsigned step = glyphCount() / (kColumns * kRows);
    for (unsigned i = 1; i <= kColumns * kRows; ++i)
        glyphs.push_back(static_cast<unsigned short>(i * step - 1));
    const CIDFontText text = make(glyphs);

    std::ostringstream page;
    page << "%%EndResource\n/F /Identity-H [/" << text.fontName()
         << "] composefont pop\n/F findfont " << kSize << " scalefont setfont\n";
    PagePicture expected(kColumns * kCell, kRows * kCell);
    ASSERT_EQ(FT_Set_Pixel_Sizes(face_->get(), 0, kSize), 0);
    for (unsigned i = 0; i < glyphs.size(); ++i) {
        const unsigned x = i % kColumns * kCell + (kCell - kSize) / 2;
        const unsigned y = i / kColumns * kCell + (kCell - kSize) / 2;
        page << x << ' ' << y << " moveto <" << std::hex << std::setw(4) << std::setfill('0')
             << i + 1 << std::dec << "> show\n";
        ASSERT_EQ(FT_Load_Glyph(face_->get(), glyphs[i], FT_LOAD_RENDER | FT_LOAD_NO_HINTING), 0);
        draw((*face_)->glyph, x, kRows * kCell - y, expected);
    }
    page << "showpage\n";
    const auto shownBy = [&](const std::string& font) {
        const TempDir folder;
        const std::string out = folder.path("page.pgm").string();
        const std::string size =
            std::to_string(expected.width) + "x" + std::to_string(expected.height);
        const ProcessResult result =
            runProgram("gs", {"-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-sDEVICE=pgmraw",
                              "-dTextAlphaBits=4", "-r72", "-g" + size, "-sOutputFile=" + out,
                              folder.write("page.ps", "%!PS\n" + font + page.str()).string()});
        return result.ok() ? readPgm(out) : PagePicture(expected.width, expected.height);
    };
    const PagePicture shown = shownBy(text.enciphered());
    EXPECT_GT(expected.totalInk(), 1000000U);
    // Ghostscript draws with hints, which move edges by a part of a pixel.
    EXPECT_LT(KWTest::difference(shown, expected), 0.1);
    EXPECT_GT(KWTest::difference(shownBy(text.plain()), expected), 0.5);
    EXPECT_NEAR(static_cast<double>(shown.totalInk()) / static_cast<double>(expected.totalInk()), 1,
                0.05);
}

INSTANTIATE_TEST_SUITE_P(Packaged, CIDFontOf,
                         testing::Values(Sample{"C059-Roman", false, 1},
                                         Sample{"NotoSansCJK", true, 29},
                                         Sample{"NotoSerifCJK", true, 97}),
                         [](const auto& parameter) {
                             std::string name = parameter.param.font;
                             std::erase(name, '-');
                             return name;
                         });

// --- OtherSubrs ---------------------------------------------------------------------------------

/// What Ghostscript prints for a program that finds the procedures in `OtherSubrs`.
std::string ghostscript(const std::string& program) {
    std::string procedures = kOtherSubrs;
    const std::string noAccess = " noaccess";
    procedures.erase(procedures.rfind(noAccess), noAccess.size());
    const TempDir folder;
    const auto file = folder.write(
        "program.ps", "%!PS\n20 dict begin\n" + procedures +
                          "\n/run {OtherSubrs exch get exec} def\n"
                          "/n {round cvi 20 string cvs print ( ) print} def\n"
                          "/path {{(m ) print exch n n} {(l ) print exch n n}\n"
                          "{(c ) print 6 -1 1 {-1 roll n} for} {(z ) print} pathforall} def\n"
                          "[1 0 0 1 0 0] setmatrix\n" +
                          program + "\n");
    const ProcessResult result =
        runProgram("gs", {"-q", "-dNOPAUSE", "-dBATCH", "-dSAFER", "-dNODISPLAY", file.string()});
    EXPECT_TRUE(result.ok()) << result.describe();
    return result.output;
}

/// The moves of a flex whose joint lies 35 above its reference point, and its end.
std::string flex(int flatness) {
    return "newpath 10 20 moveto 1 run 50 0 rmoveto 2 run -30 10 rmoveto 2 run "
           "10 20 rmoveto 2 run 20 5 rmoveto 2 run 20 0 rmoveto 2 run 10 -20 rmoveto 2 run "
           "20 -15 rmoveto 2 run 20 110 " +
           std::to_string(flatness) + " 0 run (end ) print n n count n path";
}

class OtherSubrs : public testing::Test {
protected:
    void SetUp() override {
        if (!kForeignPrograms)
            GTEST_SKIP();
    }
};

TEST_F(OtherSubrs, AFlexIsTwoCurvesFromWhereThePathWas) {
    const std::string curves = "end 110 20 0 m 10 20 c 30 30 40 50 60 55 c 80 55 90 35 110 20 ";
    EXPECT_EQ(ghostscript(flex(50)), curves);
    EXPECT_EQ(ghostscript(flex(3499)), curves);
}

TEST_F(OtherSubrs, AFlexThatIsFlatOnTheDeviceIsALine) {
    EXPECT_EQ(ghostscript(flex(3501)), "end 110 20 0 m 10 20 l 110 20 ");
    EXPECT_EQ(ghostscript("0.01 0.01 scale " + flex(50)), "end 110 20 0 m 10 20 l 110 20 ");
}

TEST_F(OtherSubrs, HintReplacementAsksTheInterpreterAndIsNoneWithoutIt) {
    EXPECT_EQ(ghostscript("7 3 run n count n"), "3 0 ");
    // As an interpreter that replaces hints itself has it.
    for (const char* const name : {"startlock", "strtlck"})
        EXPECT_EQ(ghostscript(std::string("1183615869 systemdict /internaldict get exec /") + name +
                              " {10 add} put 7 3 run n count n"),
                  "17 0 ")
            << name;
}

TEST_F(OtherSubrs, CounterControlTakesItsOperandsAndTheRestIsEmpty) {
    EXPECT_EQ(ghostscript("OtherSubrs length n"), "14 ");
    EXPECT_EQ(ghostscript("99 1 1 22 {} for 12 run count n n"), "1 99 ");
    EXPECT_EQ(ghostscript("5 6 13 run count n n n"), "2 6 5 ");
    EXPECT_EQ(ghostscript("4 1 11 {run} for count n"), "0 ");
}

} // namespace
} // namespace KWFontService_NS
