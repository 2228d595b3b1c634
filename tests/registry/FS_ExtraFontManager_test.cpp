#include <KWFontService17/FS_ExtraFontManager.h>

#include "common/KWLimits.h"
#include "fonts/FaceFixture.h"
#include "fonts/FontTyping.h"
#include "registry/ExtraFontFixture.h"
#include "support/WoffFile.h"

#include <KWFontService17/FS_LogFont.h>

#include <gtest/gtest.h>

#include <fstream>
#include <utility>
#include <vector>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

class ExtraFonts : public ExtraFontTest {};

// --- appending a file ---------------------------------------------------------------------------

TEST_F(ExtraFonts, AFontIsFoundByTheNameThatTheDocumentGaveIt) {
    write("a.ttf", namedFont(u"Inside", 300));
    EXPECT_EQ(append("a.ttf", u"Of the Document"), 0);
    EXPECT_FALSE(error.isError());
    EXPECT_EQ(fonts.getFontsCount(), 1);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"of-the-document", 0, false, fonts.getExtraFonts(), false));
    EXPECT_EQ(font.getFontFileType(), FS_FILETYPE_EXTRA);
    EXPECT_EQ(font.getFontFileType2(), FS_FILETYPE_TRUETYPE);
    EXPECT_EQ(font.getFontFileName(), files().uri("a.ttf"));
    EXPECT_EQ(font.getGlyphID('A', false), TestFont::kA);
    EXPECT_EQ(find(u"Inside"), nullptr) << "its own names do not count";
    EXPECT_EQ(find(u"a.ttf"), font.getFont());
    EXPECT_EQ(find(u"a"), nullptr) << "the name of the file has its extension";
}

TEST_F(ExtraFonts, ComeBeforeTheFontsOfTheServiceAndAreFoundBesideNoOtherDocument) {
    write("one/a.ttf", namedFont(u"Shared"));
    write("two/a.ttf", namedFont(u"Shared"));
    Manager other;
    EXPECT_EQ(append(fonts, "one/a.ttf", u"Shared"), 0);
    EXPECT_EQ(append(other, "two/a.ttf", u"Shared"), 0);
    EXPECT_EQ(append(other, "one/a.ttf", u"Mine"), 1);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Shared", 0, false, fonts.getExtraFonts(), false));
    EXPECT_EQ(font.getFontFileName(), files().uri("one/a.ttf"));
    ASSERT_TRUE(font.createFont(u"Shared", 0, false, other.getExtraFonts(), false));
    EXPECT_EQ(font.getFontFileName(), files().uri("two/a.ttf"));
    EXPECT_FALSE(font.createFont(u"Mine", 0, false, fonts.getExtraFonts(), false));
    EXPECT_FALSE(font.createFont(u"Mine", 0, false, nullptr, false));
    EXPECT_EQ(find(other, u"Mine")->getRefCount(), 1)
        << "each document has a font object of its own";
}

TEST_F(ExtraFonts, AreReadWholeWhenTheyAreAppendedSoThatCreateFontOpensNothing) {
    write("a.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u"Document"), 0);
    std::filesystem::remove(files().path("a.ttf"));
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Document", 0, false, fonts.getExtraFonts(), false));
    EXPECT_EQ(font.getGlyphID('B', false), TestFont::kB);
    EXPECT_EQ(font.getGlyphWidth(TestFont::kB, 0, false), 650);
}

TEST_F(ExtraFonts, DeclaredStylesAreThoseOfTheRequest) {
    write("a.ttf", namedFont(u"Inside", 300, true));
    write("b.ttf", namedFont(u"Inside", 300, true));
    ASSERT_EQ(append("a.ttf", u"Family", 700, 0), 0);
    ASSERT_EQ(append("b.ttf", u"Family"), 1);
    EXPECT_EQ(find(u"Family", 700, false), at(0));
    EXPECT_EQ(find(u"Family", 300, true), at(1)) << "0 and -1 mean the font's own";
    EXPECT_EQ(at(0)->getWidth(0), 5) << "a wrapper declares no stretch";
    FS_EnumLogFontEx record;
    ASSERT_TRUE(at(0)->getLogFont(record, 0));
    EXPECT_EQ(record.getFaceName(), Text(u"Family"));
    EXPECT_EQ(record.getFullName(), Text(u"Family"));
    EXPECT_EQ(record.getWeight(), 700);
    EXPECT_FALSE(record.isItalic());
}

TEST_F(ExtraFonts, AnEmptyFamilyLeavesAFontToItsFileName) {
    write("a.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u""), 0);
    ASSERT_NE(fonts.getExtraFontFamilies(0), nullptr);
    EXPECT_TRUE(fonts.getExtraFontFamilies(0)->empty());
    EXPECT_TRUE(fonts.getExtraFonts()->byName.empty());
    EXPECT_EQ(find(u"A.TTF"), at(0));
}

TEST_F(ExtraFonts, ATtfFileWithTheCffSignatureIsAnOpenTypeFontInAWrapper) {
    write("a.ttf", TestFont::openType());
    ASSERT_EQ(append("a.ttf", u"Document"), 0);
    EXPECT_EQ(at(0)->getClassId(), FS_CLASSID_EXTRA_FONT);
    EXPECT_EQ(at(0)->getFontFileType2(0), FS_FILETYPE_OPENTYPE);
}

TEST_F(ExtraFonts, AMediaTypeOfADataUrlSaysHowItIsRead) {
    ASSERT_EQ(append(dataUrl("application/font-ttf", TestFont::latin().build()), u"Plain"), 0);
    ASSERT_EQ(
        append(dataUrl("application/font-woff", WoffFile::of(TestFont::latin().build()).build()),
               u"Packed"),
        1);
    EXPECT_EQ(at(0)->getClassId(), FS_CLASSID_EXTRA_FONT);
    EXPECT_EQ(at(1)->getClassId(), FS_CLASSID_WOFF);
    EXPECT_EQ(find(u"Plain"), at(0));
    EXPECT_EQ(find(u"Packed"), at(1));
    EXPECT_EQ(at(1)->getGlyphID('A', false, 0), TestFont::kA);
    EXPECT_TRUE(fonts.getExtraFonts()->byFileName.empty()) << "data has no file name";
}

TEST_F(ExtraFonts, AnAppendedCollectionIsWrappedAndItsFirstFaceIsTheFont) {
    files().write("a.ttc", collectionOf({firstFace(), secondFace()}).build());
    ASSERT_EQ(append("a.ttc", u"Document", 400), 0);
    EXPECT_EQ(at(0)->getFontCount(), 1);
    EXPECT_EQ(at(0)->getFontFileType2(0), FS_FILETYPE_COLLECTION);
    EXPECT_EQ(find(u"Document")->getGlyphID('A', false, 0), TestFont::kA);
}

TEST_F(ExtraFonts, ATypeOfAFileMakesABareFontThatKeepsItsNamesAndItsStyle) {
    write("a.bin", namedFont(u"Inside", 300));
    ASSERT_EQ(append("a.bin", u"Document", 700, 1, 5), 0);
    EXPECT_EQ(at(0)->getClassId(), FS_CLASSID_TRUETYPE);
    EXPECT_EQ(at(0)->getWeight(0), 300);
    EXPECT_EQ(find(u"Document"), at(0));
    EXPECT_EQ(find(u"Inside"), at(0));
}

TEST_F(ExtraFonts, EveryFaceOfABareCollectionIsReadAndFound) {
    files().write("a.ttc", collectionOf({firstFace(), secondFace()}).build());
    files().write("a.dfont", resourcesOf({firstFace(), secondFace()}).build());
    for (const auto& [file, type] : {std::pair("a.ttc", 6), std::pair("a.dfont", 0)}) {
        Manager manager;
        ASSERT_EQ(append(manager, file, u"Document", 0, -1, type), 0) << file;
        std::filesystem::remove(files().path(file));
        FS_FontInfo font;
        ASSERT_TRUE(
            font.createFont(u"KWTest Vertical", 700, false, manager.getExtraFonts(), false));
        EXPECT_EQ(font.getGlyphID(0x3042, false), TestFont::kHiraganaA) << file;
        EXPECT_EQ(manager.getFontsCount(), 1) << "a file counts once";
    }
}

// --- a URL again --------------------------------------------------------------------------------

TEST_F(ExtraFonts, TheSameUrlUnderTwoFamiliesIsOneFontWithTwoNames) {
    write("a.ttf", namedFont(u"Inside"));
    EXPECT_EQ(append("a.ttf", u"Second"), 0);
    EXPECT_EQ(append("a.ttf", u"First"), 0);
    EXPECT_EQ(fonts.getFontsCount(), 1);
    ASSERT_NE(fonts.getExtraFontFamilies(0), nullptr);
    EXPECT_EQ(*fonts.getExtraFontFamilies(0), (std::set<Text>{u"First", u"Second"}));
    EXPECT_EQ(find(u"First"), at(0));
    EXPECT_EQ(find(u"Second"), at(0));
}

TEST_F(ExtraFonts, ANewStyleOfAKnownUrlTakesThePlaceOfTheOldOneWhichStillFindsTheFont) {
    write("a.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u"Family", 300, 0), 0);
    EXPECT_EQ(append("a.ttf", u"Family", 800, 1), 0);
    EXPECT_FALSE(error.isError()) << "code 1930 is of no use";
    EXPECT_EQ(at(0)->getWeight(0), 800);
    EXPECT_TRUE(at(0)->isItalic(0));
    const FS_FontFamilyMap& faces = fonts.getExtraFonts()->byName.at(u"FAMILY");
    EXPECT_EQ(faces.size(), 2U);
    EXPECT_TRUE(faces.contains({300, false, 5}));
    EXPECT_TRUE(faces.contains({800, true, 5}));
    EXPECT_EQ(append("a.ttf", u"Family", 800, 0), 0);
    EXPECT_FALSE(at(0)->isItalic(0)) << "the italic flag alone";
    EXPECT_EQ(append("a.ttf", u"Family", 500, 0), 0);
    EXPECT_EQ(at(0)->getWeight(0), 500) << "the weight alone";
}

TEST_F(ExtraFonts, ANewFamilyWithANewStyleIsKnownUnderTheOldStyleToo) {
    // The name is entered before the style is declared anew.
    write("a.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u"One", 300, 0), 0);
    ASSERT_EQ(append("a.ttf", u"Two", 800, 0), 0);
    const FS_FontFamilyMap& faces = fonts.getExtraFonts()->byName.at(u"TWO");
    EXPECT_TRUE(faces.contains({300, false, 5}));
    EXPECT_TRUE(faces.contains({800, false, 5}));
}

TEST_F(ExtraFonts, AKnownUrlWithAnEmptyFamilyChangesNothing) {
    write("a.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u"Family", 300, 0), 0);
    EXPECT_EQ(append("a.ttf", u"", 800, 1), 0);
    EXPECT_EQ(at(0)->getWeight(0), 300);
    EXPECT_EQ(fonts.getExtraFontFamilies(0)->size(), 1U);
}

TEST_F(ExtraFonts, AKnownUrlOfABareFontGetsANameAndKeepsItsStyle) {
    write("a.ttf", namedFont(u"Inside", 300));
    ASSERT_EQ(append("a.ttf", u"One", 0, -1, 5), 0);
    EXPECT_EQ(append("a.ttf", u"Two", 800, 1), 0);
    EXPECT_EQ(at(0)->getWeight(0), 300);
    EXPECT_EQ(find(u"Two"), at(0));
}

TEST_F(ExtraFonts, AKnownUrlOfAWoffFileGetsANewStyle) {
    files().write("a.woff", WoffFile::of(namedFont(u"Inside", 300).build()).build());
    ASSERT_EQ(append("a.woff", u"Family", 300), 0);
    EXPECT_EQ(append("a.woff", u"Family", 800), 0);
    EXPECT_EQ(at(0)->getFontFileType(0), FS_FILETYPE_WOFF);
    EXPECT_EQ(at(0)->getWeight(0), 800);
}

TEST_F(ExtraFonts, UrlsThatMeanOneFileAreOneFontAndAKnownOneIsNotReadAgain) {
    write("a b.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a b.ttf", u"One"), 0);
    const Text url = files().uri("a b.ttf").getString();
    std::filesystem::remove(files().path("a b.ttf"));
    EXPECT_EQ(fonts.appendExtraFont(u" " + url + u"\n", u"Two", 0, -1, FS_FILETYPE_UNKNOWN, &error),
              0)
        << "a URL is read as style sheets have it";
    EXPECT_EQ(fonts.getFontsCount(), 1);
}

// --- failures -----------------------------------------------------------------------------------

TEST_F(ExtraFonts, AFileThatIsNotThereIs1931) {
    expectRefusal(append("none.ttf", u"Family"), 1931,
                  u"Cannot open font-face font.\n" + files().uri("none.ttf").getLocalPath());
    expectRefusal(append("", u"Family"), 1931, u"Cannot open font-face font.\n");
    expectRefusal(append("data:application/font-ttf;base64", u"Family"), 1931,
                  u"Cannot open font-face font.\ndata:application/font-ttf;base64");
    expectRefusal(append("https://fonts.test/a.ttf", u"Family"), 1931,
                  u"Cannot open font-face font.\nhttps://fonts.test/a.ttf");
}

TEST_F(ExtraFonts, ATypeThatHasNoClassIs1932) {
    write("a.bin", TestFont::latin());
    const Text message = u"Cannot create font-face font.\n" + files().uri("a.bin").getLocalPath();
    expectRefusal(append("a.bin", u"Family"), 1932, message);
    for (const int type : {1, 2, 11, 12, 13, 18, -1})
        expectRefusal(append("a.bin", u"Family", 0, -1, type), 1932, message);
    expectRefusal(append(dataUrl("font/ttf", TestFont::latin().build()), u"Family"), 1932,
                  u"Cannot create font-face font.\ndata:font/ttf");
}

TEST_F(ExtraFonts, AFileOfAnotherKindIs1933) {
    TestFont font = TestFont::latin();
    font.version = 0x12345678;
    write("a.ttf", font);
    expectRefusal(append("a.ttf", u"Family"), 1933,
                  u"Cannot read font-face font information.\n" +
                      files().uri("a.ttf").getLocalPath());
    expectRefusal(append("a.ttf", u"Family", 0, -1, 5), 1933,
                  u"Cannot read font-face font information.\n" +
                      files().uri("a.ttf").getLocalPath());
}

TEST_F(ExtraFonts, WhatAReaderSaysIsPassedOnAsItStands) {
    write("scan.ttf", TestFont::latin().without("head"));
    EXPECT_EQ(append("scan.ttf", u"Family"), -1);
    EXPECT_EQ(error.getCode(), FS_ERROR_FONT_FILE);
    expectNothingAppended();
    write("load.ttf", TestFont::latin().without("hmtx"));
    EXPECT_EQ(append("load.ttf", u"Family"), -1) << "each face is loaded";
    EXPECT_EQ(error.getCode(), FS_ERROR_FONT_FILE);
    expectNothingAppended();
    files().write("second.ttc",
                  collectionOf({firstFace(), TestFont::latin().without("hmtx")}).build());
    EXPECT_EQ(append("second.ttc", u"Family", 0, -1, 6), -1) << "the second face as well";
    EXPECT_EQ(error.getCode(), FS_ERROR_FONT_FILE);
    expectNothingAppended();
}

TEST_F(ExtraFonts, TheWoffMediaTypeLeavesItToTheWoffReaderToRefuse) {
    expectRefusal(append(dataUrl("application/font-woff", TestFont::latin().build()), u"Family"),
                  1928, u"Font file error: Invalid WOFF header.\ndata:application/font-woff");
}

TEST_F(ExtraFonts, WithoutAnErrorRecordAFailureIsTheAnswerAlone) {
    EXPECT_EQ(fonts.appendExtraFont(u"/no/such.ttf", u"F", 0, -1, FS_FILETYPE_UNKNOWN, nullptr),
              -1);
    EXPECT_EQ(fonts.appendLocalFont(nullptr, u"F", 0, -1, nullptr), -1);
    expectNothingAppended();
}

TEST_F(ExtraFonts, ARefusedUrlMayBeAppendedAgain) {
    files().write("a.ttf", "not yet");
    EXPECT_EQ(append("a.ttf", u"Family"), -1);
    write("a.ttf", TestFont::latin());
    EXPECT_EQ(append("a.ttf", u"Family"), 0);
}

// --- local fonts --------------------------------------------------------------------------------

class LocalExtraFonts : public ExtraFontTest {
protected:
    LocalExtraFonts() {
        write("local.ttf", namedFont(u"Local", 300));
        EXPECT_TRUE(local.createFont(files().uri("local.ttf")));
    }
    FS_FontInfo local;
};

TEST_F(LocalExtraFonts, StandForAFontOfTheServiceUnderANameOfTheDocument) {
    ASSERT_EQ(fonts.appendLocalFont(&local, u"Family", 700, 1, &error), 0);
    EXPECT_EQ(at(0)->getClassId(), FS_CLASSID_LOCAL_FONT);
    EXPECT_EQ(find(u"Family", 700, true), at(0));
    EXPECT_EQ(find(u"Local"), nullptr);
    EXPECT_EQ(find(u"local.ttf"), at(0)) << "the file name counts as for every font";
    EXPECT_EQ(at(0)->getWeight(0), 700);
    EXPECT_EQ(local.getFont()->getWeight(0), 300);
    EXPECT_TRUE(local.getFont()->getFontAliases().empty())
        << "the font of the service is as it was";
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Family", 700, true, fonts.getExtraFonts(), false));
    EXPECT_EQ(font.getGlyphID('A', false), TestFont::kA);
    EXPECT_EQ(font.getFontFileType(), FS_FILETYPE_LOCAL);
}

TEST_F(LocalExtraFonts, EachAppendTakesAPlaceOfItsOwn) {
    EXPECT_EQ(fonts.appendLocalFont(&local, u"Family", 700, 1, &error), 0);
    EXPECT_EQ(fonts.appendLocalFont(&local, u"Family", 700, 1, &error), 1);
    EXPECT_EQ(fonts.getFontsCount(), 2);
    EXPECT_EQ(find(u"Family", 700, true), at(0)) << "the first one stands";
    EXPECT_TRUE(fonts.getExtraFonts()->byUri.empty());
    EXPECT_EQ(append("local.ttf", u"Family"), 2) << "its URL was not appended";
}

TEST_F(LocalExtraFonts, NoFontIs1932) {
    FS_FontInfo none;
    expectRefusal(fonts.appendLocalFont(&none, u"Family", 0, -1, &error), 1932,
                  u"Cannot create font-face font.\n");
    error = KWError();
    expectRefusal(fonts.appendLocalFont(nullptr, u"Family", 0, -1, &error), 1932,
                  u"Cannot create font-face font.\n");
}

TEST_F(LocalExtraFonts, HoldTheFontAsLongAsTheDocument) {
    const int before = local.getFont()->getRefCount();
    {
        Manager manager;
        ASSERT_EQ(manager.appendLocalFont(&local, u"Family", 0, -1, &error), 0);
        EXPECT_EQ(local.getFont()->getRefCount(), before + 1);
    }
    EXPECT_EQ(local.getFont()->getRefCount(), before);
}

TEST_F(LocalExtraFonts, AFaceOfACollectionIsTakenAsTheFirstOne) {
    // The wrapper knows the font and not the face that the caller found.
    files().write("a.ttc", collectionOf({firstFace(), secondFace()}).build());
    Manager other;
    ASSERT_EQ(append(other, "a.ttc", u"X", 0, -1, 6), 0);
    FS_FontInfo second;
    ASSERT_TRUE(second.createFont(u"KWTest Vertical", 700, false, other.getExtraFonts(), false));
    ASSERT_EQ(second.getGlyphID(0x3042, false), TestFont::kHiraganaA);
    ASSERT_EQ(fonts.appendLocalFont(&second, u"Family", 0, -1, &error), 0);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Family", 0, false, fonts.getExtraFonts(), false));
    EXPECT_EQ(font.getGlyphID(0x3042, false), FS_NO_GLYPH);
    EXPECT_EQ(font.getGlyphID('A', false), TestFont::kA);
}

TEST_F(LocalExtraFonts, TheFirstFaceIsLoadedWhicheverTheCallerFound) {
    const auto path = files().write("a.ttc", collectionOf({firstFace(), secondFace()}).build());
    const auto font = createFontObject(fileUri(path), FS_FILETYPE_COLLECTION);
    std::ifstream stream(path, std::ios::binary);
    KWError scanError;
    ASSERT_TRUE(font->scanFont(scanError, stream));
    ASSERT_TRUE(font->loadFont(scanError, 1, nullptr));
    FS_ExtraFontPool& pool = *fonts.getExtraFonts();
    ASSERT_EQ(pool.appendLocal(font, {u"Family", 0, -1}), 0);
    EXPECT_EQ(find(u"Family")->getGlyphID('A', false, 0), TestFont::kA);
}

TEST_F(LocalExtraFonts, StandInsideEachOtherUpToALimit) {
    write("a.ttf", namedFont(u"Alpha"));
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(files().uri("a.ttf")));
    for (int depth = 1; depth <= KWCommonNS::kMaxLocalFontDepth; ++depth) {
        ASSERT_GE(fonts.appendLocalFont(&font, u"Family", depth, -1, &error), 0) << depth;
        ASSERT_TRUE(font.createFont(u"Family", depth, false, fonts.getExtraFonts(), false));
    }
    EXPECT_EQ(fonts.appendLocalFont(&font, u"Family", 900, -1, &error), -1);
    EXPECT_EQ(error.getCode(), 1932);
    EXPECT_EQ(fonts.getFontsCount(), KWCommonNS::kMaxLocalFontDepth);
}

// --- limits -------------------------------------------------------------------------------------

// Each name is entered under each style, and rules for both are short.
TEST_F(ExtraFonts, AFontHasAsManyNamesAsTheLimitSaysAndAnyNumberOfStyles) {
    write("a.ttf", namedFont(u"Alpha"));
    const auto name = [](std::size_t i) {
        return Text(u"F") + Text(static_cast<char16_t>('0' + i));
    };
    for (std::size_t i = 0; i < KWCommonNS::kMaxFontFaceNames; ++i)
        ASSERT_EQ(append("a.ttf", name(i)), 0) << i;
    EXPECT_EQ(append("a.ttf", u"One more"), -1);
    EXPECT_EQ(error.getCode(), 1932);
    EXPECT_EQ(find(u"One more"), nullptr);
    EXPECT_EQ(fonts.getExtraFontFamilies(0)->size(), KWCommonNS::kMaxFontFaceNames);
    for (int weight = 1; weight < 1000; weight += 111)
        EXPECT_EQ(append("a.ttf", name(3), weight, 1), 0);
    EXPECT_EQ(find(name(3), 112, true), at(0));
}

// --- queries ------------------------------------------------------------------------------------

/// What `getExtraFontFaceName` fills, with values that it has to replace.
struct FaceName {
    icu::UnicodeString name{u"untouched"};
    int weight = 77;
    bool italic = true;
    int stretch = 77;

    int ask(FS_ExtraFontManager& fonts, int index) {
        return fonts.getExtraFontFaceName(index, &name, &weight, &italic, &stretch);
    }
    friend bool operator==(const FaceName&, const FaceName&) = default;
};

TEST_F(ExtraFonts, AFaceNameIsTheFirstFamilyWithTheStyle) {
    write("a.ttf", namedFont(u"Inside", 300, true));
    files().write("a.woff", WoffFile::of(namedFont(u"Inside", 300, true).build()).build());
    FS_FontInfo local;
    ASSERT_TRUE(local.createFont(files().uri("a.ttf")));
    ASSERT_EQ(append("a.ttf", u"B", 700), 0);
    ASSERT_EQ(append("a.ttf", u"A", 700), 0);
    ASSERT_EQ(append("a.woff", u"C"), 1);
    ASSERT_EQ(fonts.appendLocalFont(&local, u"D", 0, 0, &error), 2);
    FaceName answer;
    EXPECT_EQ(answer.ask(fonts, 0), 12);
    EXPECT_EQ(answer, (FaceName{u"A", 700, true, 5}));
    EXPECT_EQ(answer.ask(fonts, 1), 10);
    EXPECT_EQ(answer, (FaceName{u"C", 300, true, 5}));
    EXPECT_EQ(answer.ask(fonts, 2), 13);
    EXPECT_EQ(answer, (FaceName{u"D", 300, false, 5}));
}

TEST_F(ExtraFonts, ABareFontHasItsOwnFamilyAsItsFaceNameAndNoStyle) {
    write("a.ttf", namedFont(u"Inside", 300, true));
    ASSERT_EQ(append("a.ttf", u"Document", 700, 1, 5), 0);
    FaceName answer;
    EXPECT_EQ(answer.ask(fonts, 0), 5);
    EXPECT_EQ(answer, (FaceName{u"Inside", 0, false, 0}));
}

TEST_F(ExtraFonts, AFontWithoutAFamilyHasATypeAndNoFaceName) {
    write("a.ttf", namedFont(u"Inside", 300, true));
    ASSERT_EQ(append("a.ttf", u"", 700, 1), 0);
    FaceName answer;
    EXPECT_EQ(answer.ask(fonts, 0), 12);
    EXPECT_EQ(answer, (FaceName{u"", 0, false, 0}));
}

TEST_F(ExtraFonts, AnIndexThatIsNoneHasNoFaceNameAndNoFamilies) {
    write("a.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u"Family"), 0);
    fonts.getExtraFonts()->fonts.push_back(nullptr);
    for (const int index : {-1, 1, 2, 1000}) {
        FaceName answer;
        EXPECT_EQ(answer.ask(fonts, index), 0) << index;
        EXPECT_EQ(answer, (FaceName{u"", 0, false, 0})) << index;
        EXPECT_EQ(fonts.getExtraFontFamilies(index), nullptr) << index;
    }
}

TEST_F(ExtraFonts, FaceNameOutputsMayBeLeftOut) {
    write("a.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u"Family"), 0);
    EXPECT_EQ(fonts.getExtraFontFaceName(0, nullptr, nullptr, nullptr, nullptr), 12);
    EXPECT_EQ(fonts.getExtraFontFaceName(9, nullptr, nullptr, nullptr, nullptr), 0);
}

// --- several managers ---------------------------------------------------------------------------

TEST_F(ExtraFonts, AManagerMadeFromAnotherSharesItsFontsAndGrowsByItself) {
    write("a.ttf", namedFont(u"Inside"));
    write("b.ttf", namedFont(u"Inside"));
    ASSERT_EQ(append("a.ttf", u"Family"), 0);
    Manager copy(&fonts);
    EXPECT_NE(copy.getExtraFonts(), fonts.getExtraFonts());
    EXPECT_EQ(find(copy, u"Family"), at(0));
    EXPECT_EQ(append(copy, "a.ttf", u"Family"), 0) << "the URL is known there, too";
    EXPECT_EQ(append(copy, "b.ttf", u"Other"), 1);
    ASSERT_EQ(append("a.ttf", u"Later"), 0);
    EXPECT_EQ(find(copy, u"Later"), nullptr);
    EXPECT_EQ(append(copy, "a.ttf", u"Later"), 0) << "a name that the font has from elsewhere";
    EXPECT_EQ(find(copy, u"Later"), at(0));
    EXPECT_EQ(fonts.getFontsCount(), 1);
    EXPECT_EQ(find(u"Other"), nullptr);
    EXPECT_EQ(append(copy, "a.ttf", u"Family", 800), 0);
    EXPECT_EQ(at(0)->getWeight(0), 800) << "the font object is one";
    EXPECT_EQ(at(0)->getRefCount(), 2);
}

TEST_F(ExtraFonts, AManagerMadeFromAnotherOutlivesIt) {
    write("a.ttf", namedFont(u"Inside"));
    auto first = std::make_unique<Manager>();
    ASSERT_EQ(append(*first, "a.ttf", u"Family"), 0);
    const Manager copy(first.get());
    first.reset();
    ASSERT_NE(find(copy, u"Family"), nullptr);
    EXPECT_EQ(find(copy, u"Family")->getGlyphID('A', false, 0), TestFont::kA);
}

TEST_F(ExtraFonts, AnAssignedManagerSharesTheSetWhichGoesWithTheLastOfThem) {
    write("a.ttf", namedFont(u"Inside"));
    write("b.ttf", namedFont(u"Inside"));
    write("old.ttf", namedFont(u"Inside"));
    auto first = std::make_unique<Manager>();
    Manager second;
    ASSERT_EQ(append(second, "old.ttf", u"Old"), 0);
    second = *first;
    EXPECT_EQ(second.getExtraFonts(), first->getExtraFonts());
    EXPECT_EQ(find(second, u"Old"), nullptr) << "the set it had is gone";
    ASSERT_EQ(append(*first, "a.ttf", u"Family"), 0);
    ASSERT_EQ(append(second, "b.ttf", u"Family", 700), 1);
    EXPECT_EQ(first->getFontsCount(), 2);
    const KWPtr<FS_BaseFont> font(second.getExtraFonts()->fontAt(0));
    first.reset();
    EXPECT_EQ(second.getFontsCount(), 2);
    EXPECT_EQ(find(second, u"Family"), font.get());
    second = second; // NOLINT(clang-diagnostic-self-assign-overloaded)
    EXPECT_EQ(second.getFontsCount(), 2);
    second = Manager();
    EXPECT_EQ(second.getFontsCount(), 0);
    EXPECT_EQ(font->getRefCount(), 1) << "the set is destroyed, and once";
}

TEST_F(ExtraFonts, ManagersMayBeKeptInAContainer) {
    write("a.ttf", namedFont(u"Inside"));
    std::vector<Manager> managers(1);
    ASSERT_EQ(append(managers[0], "a.ttf", u"Family"), 0);
    for (int i = 0; i < 10; ++i)
        managers.emplace_back();
    EXPECT_NE(find(managers[0], u"Family"), nullptr);
    EXPECT_EQ(find(managers[5], u"Family"), nullptr);
    managers.push_back(managers[0]);
    EXPECT_EQ(managers.back().getExtraFonts(), managers[0].getExtraFonts());
}

} // namespace
