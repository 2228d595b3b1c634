#include <KWFontService17/KWFontService.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

//! [open]
using namespace KWFontService_NS;

/// @param config  path of the configuration; null for the default one
bool openFonts(const char* config) {
    KWError error;
    if (FontServiceOpen(config, std::getenv("HOME"), &error) == FS_ERROR_NONE)
        return true;
    std::string text;
    std::fprintf(stderr, "%s\n", error.getMessage().toUTF8String(text).c_str());
    return false;
}
//! [open]

//! [notes]
void printNotes() {
    const int count = FS_GetFontError(nullptr, 0);
    for (int i = 0; i < count; ++i) {
        KWError note;
        FS_GetFontError(&note, i);
        std::string text;
        std::fprintf(stderr, "%s\n", note.getMessage().toUTF8String(text).c_str());
    }
}
//! [notes]

//! [find]
enum class Found { yes, no, butItDoesNotOpen };

Found find(FS_FontInfo& font, const UnicodeString& name, int weight, bool italic, int stretch) {
    if (font.createFont(name, weight, italic, stretch, nullptr, false))
        return Found::yes;
    return font.getError().getCode() == FS_ERROR_NONE ? Found::no : Found::butItDoesNotOpen;
}
//! [find]

//! [style]
/// How much of a style the font in hand lacks, for a host that slants and emboldens by itself.
struct Lacking {
    bool italic;
    int weight;
};

Lacking lacking(const FS_FontInfo& font, int weight, bool italic) {
    int hasWeight = 0;
    bool isItalic = false;
    font.getFontStyle(&hasWeight, &isItalic, nullptr);
    return {italic && !isItalic, weight - hasWeight};
}
//! [style]

//! [where]
/// The file behind a name, empty when there is none; nothing is opened.
UnicodeString fileOf(const UnicodeString& name) {
    return FS_FontInfo::getFontFolderPath(name, 400, false, 5, nullptr).getLocalPath();
}

/// The name to show for a font that a document names in whatever way.
UnicodeString familyOf(const UnicodeString& name) {
    return FS_FontInfo::getFamilyName(0, name, nullptr);
}
//! [where]

//! [unaliased]
/// The font itself, whatever the configuration makes of its name.
bool findItself(FS_FontInfo& font, const UnicodeString& name) {
    return font.createFont(name, 400, false, nullptr, true);
}
//! [unaliased]

//! [adjust]
/// The size at which to set a font where the document asks for `size`.
double sizeOf(const FS_FontInfo& font, double size) {
    return size * static_cast<double>(font.getFontSizeAdjust());
}

/// How far up to shift its baseline, with the adjustment taken as a part of the size.
double shiftOf(const FS_FontInfo& font, double size) {
    return sizeOf(font, size) * static_cast<double>(font.getBaselindAdjust());
}
//! [adjust]

//! [add]
/// @return  how many fonts became known
int addFolder(const std::string& path) {
    return FS_AddFontFolderPath(KWUri(UnicodeString::fromUTF8(path), KWCommonNS::URISTR_LOCAL));
}
//! [add]

//! [folders]
void printFolders(const char* config) {
    std::vector<UnicodeString> folders;
    const bool hasAliases = FS_GetFontFoldPathVector(config, std::getenv("HOME"), folders);
    for (const UnicodeString& folder : folders) {
        std::string text;
        std::printf("%s\n", folder.toUTF8String(text).c_str());
    }
    if (hasAliases)
        std::printf("and some fonts go by other names\n");
}
//! [folders]

//! [dialog]
/// The families of a font dialog, each with its faces.
using Families = std::map<UnicodeString, std::vector<FS_EnumLogFontEx>>;

int addToDialog(FS_FontResourceType, const FS_EnumLogFontEx* font, const FS_NewTextMetricEx* metric,
                void* userData) {
    if (!metric->isSymbolFont())
        (*static_cast<Families*>(userData))[font->getFaceName()].push_back(*font);
    return 0; // go on
}

Families families(FS_ExtraFontManager* document) {
    Families found;
    FS_EnumFontFamilies(UnicodeString(), addToDialog, &found, document, 0);
    return found;
}
//! [dialog]

//! [columns]
/// Whether a name has a face for text in columns.
bool goesInColumns(const UnicodeString& name) {
    constexpr int kFound = 2; // an error answers 1
    const auto stop = [](FS_FontResourceType, const FS_EnumLogFontEx*, const FS_NewTextMetricEx*,
                         void*) { return kFound; };
    return FS_EnumFontFamilies(u"@" + name, stop, nullptr, nullptr, 0) == kFound;
}
//! [columns]

//! [lines]
/// From one baseline to the next, for text of a size in units per em.
float lineDistance(const FS_FontInfo& font, int size) {
    FS_NewTextMetricEx metric;
    if (!font.getOutlineTextMetrics(metric, -size))
        return 0;
    return metric.getAscent() + metric.getDescent() + metric.getExternalLeading();
}
//! [lines]

/// One opening for all tests, as for all of a host, with the configuration of the demo.
class GuideService : public testing::Test {
protected:
    static void SetUpTestSuite() { ASSERT_TRUE(openFonts(KW_GUIDE_CONFIG)); }

    FS_FontInfo font;
};

std::string text(const UnicodeString& from) {
    std::string out;
    return from.toUTF8String(out);
}

TEST_F(GuideService, AFontIsFoundByItsFamilyAndStyle) {
    ASSERT_EQ(find(font, u"DejaVu Sans", 700, false, 5), Found::yes);
    EXPECT_EQ(text(font.getFullFontName(0)), "DejaVu Sans Bold");
    EXPECT_EQ(find(font, u"No Such Family", 400, false, 5), Found::no);
    EXPECT_EQ(text(font.getFullFontName(0)), "DejaVu Sans Bold") << "the object is as it was";
}

TEST_F(GuideService, ANameMayBeAnyOfTheFontOrThatOfItsFile) {
    for (const char16_t* name :
         {u"dejavu-sans", u"DEJAVUSANS", u"DejaVuSans", u"DejaVuSans.ttf", u"Specimen Text"})
        EXPECT_EQ(find(font, name, 400, false, 5), Found::yes) << text(name);
}

TEST_F(GuideService, TheConfigurationLeavesFilesOut) {
    EXPECT_EQ(find(font, u"DejaVuSansMono.ttf", 400, false, 5), Found::no);
}

TEST_F(GuideService, WhatAFamilyLacksIsLeftToTheHost) {
    ASSERT_EQ(find(font, u"DejaVuSans-Bold.ttf", 900, true, 5), Found::yes);
    const Lacking missing = lacking(font, 900, true);
    EXPECT_TRUE(missing.italic);
    EXPECT_EQ(missing.weight, 200);
}

TEST_F(GuideService, ANameIsTracedToItsFileAndItsFamily) {
    EXPECT_EQ(text(fileOf(u"dejavusans")), KW_GUIDE_FONT);
    EXPECT_EQ(text(fileOf(u"Specimen Text")), KW_GUIDE_FONT);
    EXPECT_EQ(text(familyOf(u"Specimen Text")), "DejaVu Sans");
    EXPECT_EQ(text(fileOf(u"No Such Family")), "");
    EXPECT_EQ(text(familyOf(u"No Such Family")), "");
}

TEST_F(GuideService, AliasesAreLeftOutOnRequest) {
    EXPECT_TRUE(findItself(font, u"DejaVu Sans"));
    EXPECT_FALSE(findItself(font, u"Specimen Text"));
}

TEST_F(GuideService, AdjustmentsOfTheConfigurationAreForTheHostToApply) {
    ASSERT_EQ(find(font, u"Specimen Headings", 700, false, 5), Found::yes);
    EXPECT_NEAR(sizeOf(font, 10), 11.8, 1e-5);
    EXPECT_NEAR(shiftOf(font, 10), -0.472, 1e-5);
    ASSERT_EQ(find(font, u"Specimen Text", 400, false, 5), Found::yes);
    EXPECT_EQ(sizeOf(font, 10), 10);
    EXPECT_EQ(shiftOf(font, 10), 0);
}

TEST_F(GuideService, ADialogHasEachFamilyWithItsFaces) {
    const Families found = families(nullptr);
    const auto sans = found.find(u"DejaVu Sans");
    ASSERT_NE(sans, found.end());
    bool hasBold = false;
    for (const FS_EnumLogFontEx& face : sans->second)
        hasBold = hasBold || face.getWeight() == 700;
    EXPECT_TRUE(hasBold);
    EXPECT_EQ(found.count(u"Specimen Text"), 0U) << "an alias is no family";
}

TEST_F(GuideService, VerticalFacesAreToldByName) {
    EXPECT_TRUE(goesInColumns(u"IPAMincho"));
    EXPECT_FALSE(goesInColumns(u"DejaVu Sans"));
    EXPECT_FALSE(goesInColumns(u"No Such Family"));
}

TEST_F(GuideService, LinesAreAsFarApartAsTheFontAsks) {
    ASSERT_EQ(find(font, u"DejaVu Sans", 400, false, 5), Found::yes);
    FS_NewTextMetricEx metric;
    ASSERT_TRUE(FS_FontInfo::getNewTextMetricEx(u"DejaVu Sans", 0, false, metric, nullptr));
    const auto units = metric.getAscent() + metric.getDescent() + metric.getExternalLeading();
    EXPECT_GT(units, 2048);
    EXPECT_FLOAT_EQ(lineDistance(font, 12), units * 12 / 2048);
    EXPECT_EQ(lineDistance(FS_FontInfo(), 12), 0);
}

TEST_F(GuideService, AFolderMayBeAddedLater) {
    EXPECT_EQ(find(font, u"IPAGothic", 400, false, 5), Found::no);
    EXPECT_EQ(addFolder(KW_GUIDE_OTHER_FONTS), 2);
    EXPECT_EQ(find(font, u"IPAGothic", 400, false, 5), Found::yes);
    EXPECT_EQ(find(font, u"IPA\u30B4\u30B7\u30C3\u30AF", 400, false, 5), Found::yes)
        << "its Japanese name";
    EXPECT_EQ(addFolder(KW_GUIDE_OTHER_FONTS), 0) << "known already";
}

TEST_F(GuideService, TheFoldersOfAConfigurationAreListed) {
    testing::internal::CaptureStdout();
    printFolders(KW_GUIDE_CONFIG);
    const std::string fonts = "/usr/share/fonts/";
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              fonts + "truetype/dejavu/\n" + fonts + "truetype/liberation2/\n" + fonts +
                  "opentype/linux-libertine/\n" + fonts + "opentype/fonts-hosny-amiri/\n" + fonts +
                  "opentype/ipafont-mincho/\n" + "and some fonts go by other names\n");
}

TEST_F(GuideService, ConfigurationsWithoutFaultLeaveNoNotesAndOthersDo) {
    testing::internal::CaptureStderr();
    printNotes();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");

    const std::filesystem::path odd =
        std::filesystem::temp_directory_path() /
        ("kw-guide-" + std::to_string(std::random_device()()) + ".xml");
    std::ofstream(odd) << "<font-config><font-folder path=\"/usr/share/fonts\" "
                          "colour=\"red\"/></font-config>";
    testing::internal::CaptureStdout();
    printFolders(odd.string().c_str());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "/usr/share/fonts/\n");
    testing::internal::CaptureStderr();
    printNotes();
    EXPECT_NE(
        testing::internal::GetCapturedStderr().find("Unknown attribute: <font-folder colour> in "),
        std::string::npos);
    std::filesystem::remove(odd);
}

} // namespace
