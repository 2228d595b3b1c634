#include "fonts/FS_Type1PFA.h"
#include "fonts/FS_Type1PFB.h"
#include "raster/RenderLock.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/TempDir.h"
#include "support/TestFont.h"
#include "support/Type1Font.h"
#include "support/Utf8.h"

#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWCommonNS::KWPtr;
using KWTest::Bytes;
using KWTest::TestFont;
using KWTest::Type1CharString;
using KWTest::Type1Font;
using KWTest::utf8;

/// A font of a file of its own.
template <class Font>
class FileFont {
public:
    explicit FileFont(const Bytes& file) {
        folder_.write("font.pf", file);
        font_ = KWPtr<Font>(new Font(folder_.uri("font.pf")));
    }
    Font* operator->() const { return font_.get(); }
    bool load() {
        error = KWError();
        return font_->loadFont(error, 0, nullptr);
    }
    std::string path() const { return utf8(folder_.text("font.pf")); }

    KWError error;

private:
    KWTest::TempDir folder_;
    KWPtr<Font> font_;
};
using PFBFile = FileFont<FS_Type1PFB>;
using PFAFile = FileFont<FS_Type1PFA>;

template <class Font>
void expectLatinGlyphs(FileFont<Font>& font) {
    ASSERT_TRUE(font.load());
    EXPECT_FALSE(font.error.isError());
    const Type1Metrics& metrics = font->metrics();
    ASSERT_EQ(metrics.records().size(), 6U);
    const Type1CharMetric& a = metrics.records()[1];
    EXPECT_EQ(a.name, "A");
    EXPECT_EQ(a.code, 'A');
    EXPECT_EQ(a.WX, 600);
    EXPECT_EQ(metrics.findName("A"), &a);
    EXPECT_EQ(metrics.findCode('A'), &a);
    EXPECT_EQ(metrics.findName("space")->WX, 250);
    EXPECT_EQ(metrics.findCode(0xC1), &metrics.records()[5]);
    EXPECT_EQ(metrics.findName("missing"), nullptr);
}

TEST(Type1PrinterFace, TheLoadReadsCodesNamesAndAdvances) {
    PFBFile pfbFont(Type1Font::latin().pfb());
    expectLatinGlyphs(pfbFont);
    PFAFile pfaFont(Type1Font::latin().pfa());
    expectLatinGlyphs(pfaFont);
}

TEST(Type1PrinterFace, OfStandardEncodingTheCodesAreCharacters) {
    PFBFile font(Type1Font::latin().pfb());
    ASSERT_TRUE(font.load());
    EXPECT_TRUE(font->builtInNames().empty());
    EXPECT_NE(font->metrics().findCode(0xB4), nullptr);
    // The space is the no-break space as well.
    EXPECT_EQ(font->metrics().findCode(0xA0), font->metrics().findName("space"));
    EXPECT_EQ(font->metrics().findName("space")->code, ' ');
}

TEST(Type1PrinterFace, OfAnEncodingOfTheFontsOwnTheCodesAreItsOwn) {
    PFBFile font(Type1Font::symbols().pfb());
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->builtInNames(), (Type1BuiltInNames{{0x41, "foo"}, {0x80, "bar"}}));
    EXPECT_EQ(font->metrics().findCode(0x80)->name, "bar");
    EXPECT_EQ(font->metrics().findName("foo")->code, 0x41);
    EXPECT_EQ(font->getEmbedableCharCount(0), 2U);
}

TEST(Type1PrinterFace, GlyphsWithoutACodeHaveEmptyRecords) {
    Type1Font built = Type1Font::symbols();
    built.glyphs.resize(1);
    built.encoding.clear();
    for (int i = 0; i < 299; ++i) {
        const std::string name = "g" + std::to_string(i);
        built.glyphs.push_back({name, Type1CharString::rectangle(500 + i, 0, 0, 100, 100)});
        if (i < 200)
            built.encoding.emplace(i + 1, name);
    }
    PFBFile font(built.pfb());
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->metrics().records().size(), 300U);
    EXPECT_EQ(font->getEmbedableCharCount(0), 200U);
    int empty = 0;
    for (const Type1CharMetric& record : font->metrics().records())
        empty += record.name.empty() && record.code == -1 && record.WX == 0 ? 1 : 0;
    EXPECT_EQ(empty, 100);
    EXPECT_EQ(font->metrics().findCode(200)->WX, 699);
}

TEST(Type1PrinterFace, AGlyphOfTwoCodesKeepsTheFirstAndHasBoth) {
    Type1Font built = Type1Font::symbols();
    built.encoding = {{0x41, "foo"}, {0x42, "foo"}};
    PFBFile font(built.pfb());
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->metrics().findName("foo")->code, 0x41);
    EXPECT_EQ(font->metrics().findCode(0x41), font->metrics().findName("foo"));
    EXPECT_EQ(font->metrics().findCode(0x42), font->metrics().findName("foo"));
    EXPECT_EQ(font->getEmbedableCharCount(0), 2U);
}

TEST(Type1PrinterFace, AGlyphThatDoesNotLoadIsPassedBy) {
    Type1Font built = Type1Font::symbols();
    built.glyphs[1].charString = Type1CharString().op({}, 0x0C06); // operands are missing
    PFBFile font(built.pfb());
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->metrics().findName("foo"), nullptr);
    EXPECT_EQ(font->metrics().findCode(0x41), nullptr);
    EXPECT_EQ(font->builtInNames().at(0x41), "foo");
    EXPECT_EQ(font->getEmbedableCharCount(0), 1U);
}

TEST(Type1PrinterFace, GlyphsThatUnfoldToTooMuchArePassedBy) {
    Type1Font built = Type1Font::symbols();
    built.encoding = {{0x20, "foo"}};
    for (int level = 1; level <= 5; ++level) {
        Type1CharString subr;
        for (int call = 0; call < 8; ++call)
            subr.op({level}, 10);
        built.subrs.push_back(subr.op({}, 11));
    }
    built.subrs.push_back(Type1CharString().op({0, 0}, 21).op({}, 11));
    for (int code = 0x21; code < 0xFF; ++code) {
        const std::string name = "g" + std::to_string(code);
        built.glyphs.push_back({name, Type1CharString().hsbw(0, 500).op({0}, 10).endchar()});
        built.encoding.emplace(code, name);
    }
    PFBFile font(built.pfb());
    ASSERT_TRUE(font.load());
    EXPECT_NE(font->metrics().findCode(0x20), nullptr);
    EXPECT_NE(font->metrics().findCode(0x21), nullptr) << "one alone is not too much";
    EXPECT_EQ(font->metrics().findCode(0xFE), nullptr);
    EXPECT_LT(font->getEmbedableCharCount(0), 100U);
    EXPECT_EQ(font->builtInNames().at(0xFE), "g254");
}

TEST(Type1PrinterFace, TheVerticalAdvanceIsOfTheCharstring) {
    constexpr int kSbw = 0x0C07;
    Type1Font built = Type1Font::symbols();
    built.glyphs[1].charString = Type1CharString().op({0, 0, 600, -900}, kSbw).endchar();
    PFBFile font(built.pfb());
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->metrics().findName("foo")->WX, 600);
    EXPECT_EQ(font->metrics().findName("foo")->WY, -900);
    EXPECT_EQ(font->metrics().findName("bar")->WY, 0);
}

TEST(Type1PrinterFace, AFontWithoutCodesHasRecordsWithoutMetrics) {
    Type1Font built = Type1Font::symbols();
    built.encoding = {{0x41, "absent"}};
    PFBFile font(built.pfb());
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->metrics().records().size(), 4U);
    EXPECT_EQ(font->getEmbedableCharCount(0), 0U);
}

TEST(Type1PrinterFace, CharactersAreFoundByWhatTheyAre) {
    PFBFile font(Type1Font::latin().pfb());
    EXPECT_EQ(font->getGlyphID('B', false, 0), 2);
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->getGlyphID('B', false, 0), 2);
    EXPECT_EQ(font->getGlyphID(0x00C1, false, 0), 5);
    EXPECT_EQ(font->getGlyphID('C', false, 0), 0xFFFF);
    EXPECT_EQ(font->getGlyphID(-1, false, 0), 0xFFFF);
}

TEST(Type1PrinterFace, CharactersThatAreCodesAreFoundByTheirNames) {
    PFBFile font(Type1Font::symbols().pfb());
    EXPECT_EQ(font->getGlyphID(0x80, false, 0), 0xFFFF);
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->getGlyphID(0x41, false, 0), 1);
    EXPECT_EQ(font->getGlyphID(0x80, false, 0), 2);
    EXPECT_EQ(font->getGlyphID(0x81, false, 0), 0xFFFF);
}

// An encoding of the font's own does not get in the way of its characters.
TEST(Type1PrinterFace, CharactersOutrankCodes) {
    Type1Font built = Type1Font::latin();
    built.encoding = {{'A', "B"}, {'B', "A"}, {'Z', "space"}};
    PFBFile font(built.pfb());
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->getGlyphID('A', false, 0), 1);
    EXPECT_EQ(font->getGlyphID('Z', false, 0), 3);
    EXPECT_EQ(font->metrics().findCode('A')->name, "B");
}

TEST(Type1PrinterFace, ThereIsNoVerticalWriting) {
    PFBFile font(Type1Font::latin().pfb());
    EXPECT_EQ(font->getGlyphID('A', true, 0), 0xFFFF);
}

TEST(Type1PrinterFace, UnitsPerEmAre1000UntilTheFaceIsOpen) {
    Type1Font built = Type1Font::latin();
    Bytes file = built.pfb();
    const std::string text = file.str();
    const auto place = text.find("[0.001 0 0 0.001 0 0]");
    ASSERT_NE(place, std::string::npos);
    const std::string matrix = "[0.002 0 0 0.002 0 0]"; // 500 units
    for (std::size_t i = 0; i < matrix.size(); ++i)
        file.patchU8At(place + i, static_cast<unsigned char>(matrix[i]));
    PFBFile font(file);
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->getUnitsPerEm(0), 500);
}

TEST(Type1PrinterFace, ThePostScriptNameIsThatOfTheFace) {
    PFBFile font(Type1Font::latin().pfb());
    EXPECT_EQ(utf8(font->getPostScriptName(0, 0)), "KWTest-Bold");
    PFBFile none(Bytes::ofText("no font"));
    EXPECT_EQ(utf8(none->getPostScriptName(0, 0)), "");
}

TEST(Type1PrinterFace, AskingForThePostScriptNameTakesTheRenderingLock) {
    bool isHeld = false;
    KWUri::setFetcher([&](const KWUri&, KWUri::ContentInfo&, UnicodeString&) {
        std::thread([&] {
            isHeld = !g_glyphRenderLock.tryLock();
            if (!isHeld)
                g_glyphRenderLock.unlock();
        }).join();
        return std::unique_ptr<std::istream>(
            std::make_unique<std::istringstream>(Type1Font::latin().pfb().str()));
    });
    const KWPtr<FS_Type1PFB> font(new FS_Type1PFB(KWUri(u"http://host/font.pfb")));
    EXPECT_EQ(utf8(font->getPostScriptName(0, 0)), "KWTest-Bold");
    KWUri::setFetcher({});
    EXPECT_TRUE(isHeld);
}

TEST(Type1PrinterFace, AProgramHasNoKerning) {
    PFBFile font(Type1Font::latin().pfb());
    EXPECT_FALSE(font->hasPairKerningInfo(false, 0));
    EXPECT_EQ(font->getPairKerningValue(1, 2, -1000, false, 0), 0);
    EXPECT_EQ(font->getPairKerningValue(1, 60000, -1000, false, 0), 0);
}

/// A font with the kerning that FreeType was given beside the program.
TEST(Type1PrinterFace, KerningIsScaledByTheSizeWithoutItsSign) {
    PFBFile font(Type1Font::latin().pfb());
    const KWTest::TempDir folder;
    const auto afm = folder.write("font.afm", "StartFontMetrics 2.0\nFontName KWTest-Bold\n"
                                              "FontBBox 0 0 1 1\nStartKernData\nStartKernPairs 1\n"
                                              "KPX A B -80\nEndKernPairs\nEndKernData\n"
                                              "EndFontMetrics\n");
    FT_Face face = font->getFTFace(0);
    ASSERT_NE(face, nullptr);
    ASSERT_EQ(FT_Attach_File(face, afm.string().c_str()), 0);
    EXPECT_TRUE(font->hasPairKerningInfo(false, 0));
    EXPECT_EQ(font->getPairKerningValue(1, 2, -500, false, 0), -40);
    EXPECT_EQ(font->getPairKerningValue(1, 2, 500, false, 0), -40);
    EXPECT_EQ(font->getPairKerningValue(1, 2, 0, false, 0), 0);
    EXPECT_EQ(font->getPairKerningValue(2, 1, -500, false, 0), 0);
}

TEST(Type1PrinterFace, AGlyphIsLoadedInUnitsOfTheFont) {
    PFBFile font(Type1Font::latin().pfb());
    EXPECT_TRUE(font->loadGlyph(2, false));
    EXPECT_EQ(font->getFTFace(0)->glyph->metrics.horiAdvance, 650);
    EXPECT_TRUE(font->loadGlyph(1, true));
    EXPECT_EQ(font->getFTFace(0)->glyph->metrics.width, 560);
    EXPECT_NE(font->getFTFace(0)->glyph->metrics.vertAdvance, 0) << "of vertical writing";
    EXPECT_TRUE(font->loadGlyph(1, false));
    EXPECT_EQ(font->getFTFace(0)->glyph->metrics.vertAdvance, 0);
    EXPECT_FALSE(font->loadGlyph(6, false));
    EXPECT_FALSE(font->loadGlyph(6, true));
    PFBFile none(Bytes::ofText("no font"));
    EXPECT_FALSE(none->loadGlyph(0, false));
}

TEST(Type1PrinterFace, WidthsAreOfTheEmOrOfTheBox) {
    Type1Font built = Type1Font::latin();
    built.fontBBox = "{0 -250 1000 1000}";
    PFBFile font(built.pfb());
    KWError error;
    std::istringstream stream(built.pfb().str());
    ASSERT_TRUE(font->scanFont(error, stream));
    EXPECT_EQ(font->getGlyphWidth(1, 0, false, 0), 600);
    EXPECT_EQ(font->getGlyphWidth(1, -10, false, 0), 6);
    EXPECT_FLOAT_EQ(font->getGlyphWidth(1, 10, false, 0), 4.8F);
    EXPECT_EQ(font->getGlyphWidth(1, 0, true, 0), 600) << "there is no vertical one";
    EXPECT_EQ(font->getGlyphWidth(6, 0, false, 0), 0);
    PFBFile unscanned(built.pfb());
    EXPECT_EQ(unscanned->getGlyphWidth(1, 10, false, 0), 0) << "the box is not known";
    PFBFile none(Bytes::ofText("no font"));
    EXPECT_EQ(none->getGlyphWidth(0, 0, false, 0), 0);
}

// --- files that FreeType does not read ----------------------------------------------------------

TEST(Type1PrinterFace, AFileThatFreeTypeRefusesIsToldWithoutDetail) {
    PFBFile font(Bytes::ofText("no font"));
    EXPECT_FALSE(font.load());
    EXPECT_EQ(font.error.getCode(), 1926);
    EXPECT_EQ(utf8(font.error.getMessage()), "Cannot read font information.\n" + font.path());
    EXPECT_EQ(font->getGlyphID('A', false, 0), 0xFFFF);
    EXPECT_EQ(font->getUnitsPerEm(0), 1000);
    EXPECT_FALSE(font->hasPairKerningInfo(false, 0));
    EXPECT_EQ(font->getPairKerningValue(1, 2, -1000, false, 0), 0);
}

// FreeType refuses a program without glyphs itself, and leaves an sfnt without any to its callers.
TEST(Type1PrinterFace, AFaceWithoutGlyphsIsTold) {
    TestFont empty = TestFont::latin();
    empty.maxp.numGlyphs = 0;
    PFBFile font(empty.build());
    EXPECT_FALSE(font.load());
    EXPECT_EQ(font.error.getCode(), 1928);
    EXPECT_EQ(utf8(font.error.getMessage()), "Font file error: No glyphs\n" + font.path());
}

// Its glyphs have no charstrings whose work could be told.
TEST(Type1PrinterFace, OfWhatIsNoType1ProgramNoGlyphIsRead) {
    PFBFile font(TestFont::latin().build());
    EXPECT_TRUE(font.load());
    EXPECT_EQ(font->metrics().records().size(), 7U);
    EXPECT_EQ(font->getEmbedableCharCount(0), 0U);
}

TEST(Type1PrinterFace, TheLoadRunsOnceAndKeepsItsError) {
    PFBFile none(Bytes::ofText("no font"));
    EXPECT_FALSE(none.load());
    EXPECT_FALSE(none.load());
    EXPECT_EQ(none.error.getCode(), 1926);
    PFBFile font(Type1Font::latin().pfb());
    ASSERT_TRUE(font.load());
    const Type1CharMetric* const a = font->metrics().findName("A");
    const unsigned int count = font->getEmbedableCharCount(0);
    ASSERT_TRUE(font.load());
    EXPECT_EQ(font->metrics().findName("A"), a);
    EXPECT_EQ(font->getEmbedableCharCount(0), count);
}

TEST(Type1PrinterFace, ThreadsMayLoadAtOnce) {
    PFBFile font(Type1Font::latin().pfb());
    std::vector<std::thread> threads;
    std::vector<int> glyphs(4);
    for (int& glyph : glyphs) {
        threads.emplace_back([&] {
            KWError error;
            font->loadFont(error, 0, nullptr);
            glyph = font->getGlyphID('B', false, 0);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(glyphs, std::vector<int>(4, 2));
}

/// Loads a damaged font and asks it all; whether it loads is up to FreeType.
void exercise(const Bytes& file) {
    PFBFile font(file);
    if (!font.load()) {
        EXPECT_TRUE(font.error.getCode() == 1926 || font.error.getCode() == 1928);
    }
    for (int ch = 0; ch < 256; ++ch)
        font->getGlyphID(ch, false, 0);
    EXPECT_LE(font->metrics().records().size(), file.size());
    for (const Type1CharMetric& record : font->metrics().records())
        EXPECT_LE(record.name.size(), 63U);
}

Bytes withPrivateText(const Type1Font& font, const Bytes& privateText) {
    Bytes file = KWTest::pfbSegment(1, Bytes::ofText(font.clearText()));
    file.bytes(KWTest::pfbSegment(2, KWTest::type1Encrypted(privateText, 55665)).vector());
    file.bytes(KWTest::pfbSegment(1, Bytes::ofText(font.trailer())).vector());
    return file.u8(0x80).u8(3);
}

TEST(Type1PrinterFace, AProgramWithoutCharStringsIsNoFont) {
    const Type1Font font = Type1Font::latin();
    PFBFile file(withPrivateText(font, Bytes::ofText("dup /Private 1 dict dup begin end\n")));
    EXPECT_FALSE(file.load());
    EXPECT_EQ(file.error.getCode(), 1926);
}

TEST(Type1PrinterFace, CountsThatLieNeedNoMemory) {
    for (const int count : {0, 1, 7, 1000000, 2147483647}) {
        Type1Font font = Type1Font::latin();
        font.announcedGlyphs = count;
        exercise(font.pfb());
    }
}

TEST(Type1PrinterFace, EntriesThatOverlapAreRead) {
    const Type1Font font = Type1Font::latin();
    std::string text = font.privateText().str();
    // The charstring of A claims the entry behind it, too.
    const auto entry = text.find("/A ");
    ASSERT_NE(entry, std::string::npos);
    text.replace(entry + 3, text.find(' ', entry + 3) - entry - 3, "60");
    exercise(withPrivateText(font, Bytes::ofText(text)));
}

TEST(Type1PrinterFace, NamesOfAMegabyteAreCut) {
    Type1Font font = Type1Font::symbols();
    const std::string longName(std::size_t{1} << 20, 'x');
    font.glyphs[1].name = longName;
    font.encoding = {{0x41, longName}, {0x80, "bar"}};
    exercise(font.pfb());
    PFBFile file(font.pfb());
    ASSERT_TRUE(file.load());
    EXPECT_EQ(file->metrics().records()[1].name, std::string(63, 'x'));
}

TEST(Type1PrinterFace, AnAccentedGlyphOfItselfEnds) {
    Type1Font font = Type1Font::latin();
    font.glyphs[1].charString = Type1CharString().hsbw(0, 500).seac(0, 0, 0, 'A', 'A');
    exercise(font.pfb());
}

TEST(Type1PrinterFace, SegmentsThatLieAreRefusedOrRead) {
    const Bytes whole = Type1Font::latin().pfb();
    const std::size_t second = 6 + Type1Font::latin().clearText().size();
    for (const std::size_t header : {std::size_t{0}, second}) {
        for (int type = 0; type < 5; ++type)
            exercise(Bytes(whole).patchU8At(header + 1, type));
        exercise(Bytes(whole).patchU32At(header + 2, 0xFFFFFFFF));
        exercise(Bytes(whole).patchU32At(header + 2, 0));
    }
    for (std::size_t size = 0; size < whole.size(); size += 97)
        exercise(Bytes(whole).truncate(size));
}

// --- packaged fonts -----------------------------------------------------------------------------

class PackagedType1 : public testing::TestWithParam<const char*> {};

TEST_P(PackagedType1, RecordsAreWhatFreeTypeSays) {
    const auto file = KWTest::packagedFont(GetParam());
    const KWPtr<FS_Type1PFB> font(new FS_Type1PFB(KWTest::fileUri(file)));
    KWError error;
    std::ifstream stream(file, std::ios::binary);
    ASSERT_TRUE(font->scanFont(error, stream)) << utf8(error.getMessage());
    ASSERT_TRUE(font->loadFont(error, 0, nullptr)) << utf8(error.getMessage());

    const KWTest::FreeTypeFace face(KWTest::readFile(file));
    EXPECT_EQ(utf8(font->getFamilyName(0, 0)), face->family_name);
    EXPECT_EQ(utf8(font->head().postScriptName), utf8(font->getPostScriptName(0, 0)));
    ASSERT_EQ(font->metrics().records().size(), static_cast<std::size_t>(face->num_glyphs));
    std::size_t characters = 0;
    FT_UInt index = 0;
    FT_Select_Charmap(face.get(), FT_ENCODING_ADOBE_CUSTOM);
    for (FT_ULong ch = FT_Get_First_Char(face.get(), &index); index != 0;
         ch = FT_Get_Next_Char(face.get(), ch, &index))
        ++characters;
    FT_Select_Charmap(face.get(), FT_ENCODING_UNICODE);
    EXPECT_EQ(font->getEmbedableCharCount(0), characters) << "each glyph loads";
    std::size_t encoded = 0;
    for (const Type1CharMetric& record : font->metrics().records()) {
        if (record.name.empty())
            continue;
        ++encoded;
        const auto glyph = static_cast<FT_UInt>(&record - font->metrics().records().data());
        EXPECT_EQ(record.WX, face.advance(glyph)) << record.name;
        EXPECT_EQ(FT_Get_Name_Index(face.get(), record.name.c_str()), glyph);
    }
    EXPECT_GT(encoded, 100U);
    EXPECT_EQ(font->getGlyphID('A', false, 0), face.glyphOf('A'));
}

INSTANTIATE_TEST_SUITE_P(Fonts, PackagedType1,
                         testing::Values("NimbusSans-PFB", "C059-PFB", "LMRoman10-PFB",
                                         "LMMono10-PFB"),
                         [](const auto& instance) {
                             std::string name = instance.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
