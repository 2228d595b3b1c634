// The examples of docs/configuration.md are read without a complaint, and leave nothing out.

#include "service/FakeFolders.h"
#include "service/FontConfigFixture.h"

#include <KWCommon15/KWXmlUtil.h>

#include <set>
#include <sstream>

namespace {

using namespace KWFontService_NS;
using KWCommonNS::KWXmlEvent;
using KWPlatform::KnownFolder;
using KWTest::ConfigRead;
using KWTest::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

/// The XML blocks of the page.
std::vector<std::string> examples() {
    const std::string page = KWTest::readFile(KW_CONFIGURATION_PAGE).str();
    const std::string fence = "```xml\n";
    std::vector<std::string> blocks;
    for (std::size_t at = page.find(fence); at != std::string::npos; at = page.find(fence, at)) {
        at += fence.size();
        blocks.push_back(page.substr(at, page.find("```", at) - at));
    }
    return blocks;
}

/// "element" and "element attribute" of everything in a document.
std::set<std::string> wordsOf(const std::string& document) {
    std::istringstream input(document);
    const auto parser = KWCommonNS::KWXmlUtil::createXmlParser(nullptr);
    parser->open(input, UnicodeString(), u"page");
    std::set<std::string> words;
    for (KWXmlEvent event{}; event != KWXmlEvent::endOfInput;) {
        event = parser->nextEvent();
        if (event != KWXmlEvent::startTag)
            continue;
        const std::string element = utf8(parser->getName());
        words.insert(element);
        for (const auto& attribute : parser->getAttributes())
            words.insert(element + " " + utf8(attribute.first));
    }
    return words;
}

const std::set<std::string> kSchema = {
    "font-config",
    "font-config otf-metrics-mode",
    "font-config use-preferred-family",
    "font-config windows-registry",
    "eudc-processing",
    "eudc-processing mapping",
    "eudc-map",
    "eudc-map family-name",
    "eudc-map file-path",
    "eudc-range",
    "eudc-range start",
    "eudc-range end",
    "eudc-system-default",
    "eudc-system-default file-path",
    "font-folder",
    "font-folder path",
    "font-folder recursive",
    "acc-folder",
    "font-alias",
    "font-alias file",
    "font-alias entry",
    "alias",
    "alias family-name",
    "alias weight",
    "alias italic",
    "alias stretch",
    "font-entry",
    "font-entry file",
    "font-entry font-size-adjust",
    "font-entry unicode-range",
    "font-entry baseline-adjust",
    "font-entry glyph-list",
    "font-entry skip-glyphname-mapping",
    "font-entry font-exclude",
    "font-entry use-zero-glyph-id",
    "font-exclude",
    "font-exclude file",
    "glyph-list",
    "glyph-list file",
    "glyph-list afm",
    "glyph-list pfm",
    "skip-glyphname-mapping",
    "skip-glyphname-mapping afm",
    "skip-glyphname-mapping pfm",
    "use-zero-glyph-id",
    "use-zero-glyph-id file",
    "name-processing-mode",
    "name-processing-mode mode",
    "otf-metrics-mode",
    "otf-metrics-mode mode",
    "windows-registry",
    "windows-registry reference",
};

class FontConfigPage : public KWTest::FontConfigTest {
protected:
    FontConfigPage() {
        system_.folders = {{KnownFolder::fonts, u"/usr/share/fonts"},
                           {KnownFolder::localAppData, u"/home/me/.local/share"}};
    }

private:
    KWTest::FakeFolders system_;
};

TEST_F(FontConfigPage, TheWholeFileMeansWhatItSays) {
    const std::vector<std::string> blocks = examples();
    ASSERT_FALSE(blocks.empty());
    const ConfigRead config = read(blocks.front(), "/home/me");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.thrown, "");

    const FS_FontService& service = *config.service;
    EXPECT_FALSE(service.otfMetricsWindows);
    EXPECT_TRUE(service.usePreferredFamily);
    EXPECT_FALSE(service.useWindowsRegistry);
    EXPECT_TRUE(service.eudcProcessing);
    EXPECT_EQ(config.eudcCount(), 0xF8FF - 0xE000 + 1);
    EXPECT_TRUE(service.isEudcCodePoint(0xE000));
    EXPECT_EQ(service.eudcSystemDefault, files().uri("eudc/EUDC.TTE"));
    EXPECT_EQ(service.eudcMap.at(u"MS Mincho"), files().uri("eudc/mincho.tte"));

    ASSERT_THAT(config.folderPaths(), ElementsAre("/usr/share/fonts/truetype/liberation2/",
                                                  "/usr/share/fonts/opentype/noto/",
                                                  "/usr/share/fonts/", "/home/me/fonts/"));
    EXPECT_FALSE(service.folders[1]->recursive);
    EXPECT_TRUE(service.folders[2]->recursive);
    EXPECT_TRUE(service.folders[1]->findOptions(u"notosanscjk-black.ttc")->fontExclude);
    EXPECT_TRUE(service.folders[1]->fileAliases.contains(
        FS_FontAliasTarget{u"notosanscjk-regular.ttc", u"NotoSansCJK-Regular.ttc", 1}));
    const auto& targets = service.folders[0]->fileAliases;
    ASSERT_EQ(targets.size(), 2U);
    const FS_FontAliasTarget bold{u"liberationsans-bold.ttf", u"LiberationSans-Bold.ttf", 0};
    ASSERT_TRUE(targets.contains(bold));
    EXPECT_TRUE(targets.at(bold).contains(FS_FontAlias{u"Helvetica", 700, -1, 0}));
    EXPECT_TRUE(targets.at(bold).contains(FS_FontAlias{u"Helvetica Black", 900, 0, 7}));

    const FS_FontFolder& own = *service.folders[3];
    const auto* const house = own.findOptions(u"house.ttf");
    ASSERT_NE(house, nullptr);
    EXPECT_FLOAT_EQ(house->fontSizeAdjust, 0.95F);
    EXPECT_FLOAT_EQ(house->baselineAdjust, 0.02F);
    ASSERT_NE(house->unicodeRange, nullptr);
    EXPECT_TRUE(house->unicodeRange->inRange(0x3FF));
    EXPECT_FALSE(house->unicodeRange->inRange(0x400));
    for (const auto& [file, list] : {std::pair(u"logo.afm", "logo-glyphs.txt"),
                                     {u"logo.pfm", "logo-glyphs.txt"},
                                     {u"dingbats.afm", "dingbats.txt"},
                                     {u"dingb.pfm", "dingbats.txt"}}) {
        const auto* const options = own.findOptions(file);
        ASSERT_NE(options, nullptr);
        EXPECT_EQ(KWTest::posixPath(options->glyphList), std::string("/home/me/fonts/") + list);
    }
    EXPECT_TRUE(own.findOptions(u"symbols.pfm")->skipGlyphNameMapping);
    EXPECT_TRUE(own.findOptions(u"barcode.ttf")->useZeroGlyphId);
}

TEST_F(FontConfigPage, EveryOtherExampleIsReadWithoutAComplaint) {
    const std::vector<std::string> blocks = examples();
    ASSERT_GT(blocks.size(), 10U);
    for (std::size_t i = 1; i < blocks.size(); ++i) {
        ConfigRead config = readRoot(blocks[i] + "<font-folder path='/last'/>");
        EXPECT_THAT(config.complaints, IsEmpty()) << blocks[i];
        EXPECT_EQ(config.thrown, "") << blocks[i];
        EXPECT_THAT(config.folderPaths().back(), "/last/") << blocks[i];
    }
}

TEST_F(FontConfigPage, ShowsEveryElementWithEveryAttribute) {
    std::set<std::string> shown;
    const std::vector<std::string> blocks = examples();
    for (std::size_t i = 0; i < blocks.size(); ++i)
        shown.merge(wordsOf(i == 0 ? blocks[i] : "<font-config>" + blocks[i] + "</font-config>"));
    for (const std::string& word : kSchema)
        EXPECT_TRUE(shown.contains(word)) << word;
}

TEST_F(FontConfigPage, NamesEveryElementAttributeWordAndCode) {
    const std::string page = KWTest::readFile(KW_CONFIGURATION_PAGE).str();
    for (const std::string& entry : kSchema) {
        const std::string word = entry.substr(entry.find(' ') + 1);
        EXPECT_TRUE(page.find("`" + word + "`") != std::string::npos ||
                    page.find("### " + word + "\n") != std::string::npos)
            << word;
    }
    for (const char* const text :
         {"`name-processing-mode`", "@@WINFONTS@@", "@@USERWINFONTS@@", "@@APPDATA@@",
          "@@LOCALAPPDATA@@", "@@HOME@@", "| 900 |", "| 1026 |", "| 1027 |", "| 1028 |", "| 1029 |",
          "| 1935 |", "| 1936 |", "| 1937 |", "| 1938 |", "| 1939 |", "| 1940 |", "| 1941 |",
          "| 1942 |"})
        EXPECT_NE(page.find(text), std::string::npos) << text;
}

} // namespace
