#include "service/FontConfigReader.h"

#include "service/FakeFolders.h"
#include "service/FontConfigFixture.h"

#include <KWFontService17/FS_Functions.h>

#include <filesystem>

namespace {

using namespace KWFontService_NS;
using KWPlatform::KnownFolder;
using KWTest::ConfigRead;
using KWTest::FakeFolders;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class FontConfig : public KWTest::FontConfigTest {};

constexpr const char* kNoFolder = "1027 No <font-folder> in FILE";

// Which file

TEST_F(FontConfig, KeepsTheUriOfItsFile) {
    const ConfigRead config = read("<font-config/>");
    EXPECT_EQ(config.service->configUri, files().uri("fonts.xml"));
}

TEST_F(FontConfig, TakesARelativePathAgainstTheFolderOfTheLibrary) {
    const std::filesystem::path folder =
        KWPlatform::nativeSystem().moduleFolder(u"KWFontService17.dll");
    const std::filesystem::path file =
        files().write("relative.xml", "<font-config><font-folder path='/f'/></font-config>");
    const std::filesystem::path relative = file.lexically_relative(folder);
    if (relative.empty())
        GTEST_SKIP() << "no relative path leads to another drive";
    const ConfigRead config = readPath(relative.string());
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
    EXPECT_EQ(config.service->configUri, files().uri("relative.xml"));
}

TEST_F(FontConfig, ReadsAFileWhoseNameIsNotUtf8) {
    if (KWPlatform::preferredSeparator() != u'/')
        GTEST_SKIP() << "names are UTF-16 here";
    const std::string name = "na\xEFve.xml";
    files().write(name, "<font-config><font-folder path='/f'/><x/></font-config>");
    const ConfigRead config = readPath(files().path(name).string());
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
    EXPECT_EQ(config.complaints.size(), 2U);
}

TEST_F(FontConfig, AFolderIsNoFile) {
    const ConfigRead config = readPath(files().path().string());
    EXPECT_TRUE(config.service->configUri.isEmpty());
    EXPECT_THAT(config.complaints, IsEmpty());
}

TEST_F(FontConfig, AFileThatCannotBeReadIsThrownWithTheReason) {
    FakeFolders system;
    system.opensFiles = false;
    files().write("fonts.xml", "<font-config/>");
    const ConfigRead config = readPath(files().path("fonts.xml").string());
    EXPECT_EQ(config.thrown, "900 FILE: Permission denied");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_THAT(config.folderPaths(), IsEmpty());
}

// No file

TEST_F(FontConfig, WithoutAFileItTakesTheFoldersOfTheSystem) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/all/fonts"}, {KnownFolder::localAppData, u"/user"}};
    ConfigRead config;
    config.service->useWindowsRegistry = false;
    config.service->eudcProcessing = false;
    config.service->configUri = files().uri("old.xml");
    readFontConfig(*config.service, files().path("missing.xml").string().c_str(), nullptr);
    EXPECT_THAT(config.folderPaths(),
                ElementsAre("/user" + KWTest::userFontsBelowData(), "/all/fonts/"));
    EXPECT_FALSE(config.service->folders[0]->recursive);
    EXPECT_FALSE(config.service->folders[1]->recursive);
    EXPECT_TRUE(config.service->configUri.isEmpty());
    EXPECT_TRUE(config.service->useWindowsRegistry);
    EXPECT_TRUE(config.service->eudcProcessing);
}

TEST_F(FontConfig, AMissingFileIsNotReported) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/all/fonts"}, {KnownFolder::localAppData, u"/user"}};
    const ConfigRead config = readPath(files().path("missing.xml").string());
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.thrown, "");
}

TEST_F(FontConfig, AnUnknownFontsFolderIsReportedWithTheCallersPathAndBecomesAnEmptyOne) {
    FakeFolders system;
    system.folders = {{KnownFolder::localAppData, u"/user"}};
    const ConfigRead config = readPath("no/such.xml");
    EXPECT_THAT(config.complaints, ElementsAre("1026 FontConfig file is not found: FILE"));
    EXPECT_EQ(config.thrown, "");
    ASSERT_EQ(config.service->folders.size(), 2U);
    EXPECT_EQ(KWTest::posixPath(*config.service->folders[0]),
              "/user" + KWTest::userFontsBelowData());
    EXPECT_TRUE(config.service->folders[1]->isEmpty());
}

TEST_F(FontConfig, AnUnknownUserFolderKeepsItsWord) {
    FakeFolders system;
    system.folders = {{KnownFolder::fonts, u"/all/fonts"}};
    const ConfigRead config = readPath("no/such.xml");
    EXPECT_THAT(config.folderPaths(),
                ElementsAre("@@LOCALAPPDATA@@" + KWTest::userFontsBelowData(), "/all/fonts/"));
    EXPECT_THAT(config.complaints, IsEmpty());
}

TEST_F(FontConfig, NullAndEmptyPathsMeanTheDefaultName) {
    FakeFolders system;
    for (const char* const path : {static_cast<const char*>(nullptr), ""}) {
        FS_FontService service;
        readFontConfig(service, path, nullptr);
        KWError error;
        ASSERT_GE(FS_GetFontError(&error, FS_GetFontError(nullptr, 0) - 1), 0);
        EXPECT_EQ(KWTest::utf8(error.getMessage()),
                  "FontConfig file is not found: font-config.xml");
    }
}

// The root

TEST_F(FontConfig, AnEmptyRootIsReportedAsHavingNoFolder) {
    const ConfigRead config = read("<font-config/>");
    EXPECT_THAT(config.complaints, ElementsAre(kNoFolder));
    EXPECT_EQ(config.thrown, "");
    EXPECT_THAT(config.folderPaths(), IsEmpty());
}

TEST_F(FontConfig, KeepsTheDefaultsOfWhatIsNotSaid) {
    const ConfigRead config = readRoot("");
    EXPECT_TRUE(config.service->useWindowsRegistry);
    EXPECT_TRUE(config.service->eudcProcessing);
    EXPECT_TRUE(config.service->usePreferredFamily);
    EXPECT_FALSE(config.service->otfMetricsWindows);
    EXPECT_FALSE(config.service->eudcRangeGiven);
    EXPECT_TRUE(config.service->eudcSystemDefault.isEmpty());
    EXPECT_THAT(config.service->eudcMap, IsEmpty());
}

TEST_F(FontConfig, AnotherRootIsReportedAndNotRead) {
    const ConfigRead config = read("<Font-config><font-folder path='/f'/></Font-config>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1028 Unexpected start tag: <Font-config> in FILE", kNoFolder));
    EXPECT_THAT(config.folderPaths(), IsEmpty());
}

TEST_F(FontConfig, NothingBehindTheRootIsLookedAt) {
    const ConfigRead config = read("<font-config><font-folder path='/f'/></font-config><broken");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.thrown, "");
}

TEST_F(FontConfig, RootAttributesChangeTheirSettings) {
    ConfigRead config = read("<font-config otf-metrics-mode='windows' use-preferred-family='no' "
                             "windows-registry='disable'><font-folder path='/f'/></font-config>");
    EXPECT_TRUE(config.service->otfMetricsWindows);
    EXPECT_FALSE(config.service->usePreferredFamily);
    EXPECT_FALSE(config.service->useWindowsRegistry);
    EXPECT_THAT(config.complaints, IsEmpty());

    const std::string path = files()
                                 .write("other.xml", "<font-config otf-metrics-mode='typographic' "
                                                     "use-preferred-family='TRUE' "
                                                     "windows-registry='enable'/>")
                                 .string();
    readFontConfig(*config.service, path.c_str(), nullptr);
    EXPECT_FALSE(config.service->otfMetricsWindows);
    EXPECT_TRUE(config.service->usePreferredFamily);
    EXPECT_TRUE(config.service->useWindowsRegistry);
}

TEST_F(FontConfig, BooleansAreReadInAnyCase) {
    for (const auto& [text, expected] : {std::pair("false", false),
                                         {"No", false},
                                         {"FALSE", false},
                                         {"true", true},
                                         {"Yes", true},
                                         {"yES", true}}) {
        const ConfigRead config =
            read(std::string("<font-config use-preferred-family='").append(text).append("'/>"));
        EXPECT_EQ(config.service->usePreferredFamily, expected) << text;
        EXPECT_THAT(config.complaints, ElementsAre(kNoFolder)) << text;
    }
}

TEST_F(FontConfig, SwitchesAndMetricModesTellCaseApart) {
    const ConfigRead config =
        read("<font-config otf-metrics-mode='typographic' windows-registry='Enable'>"
             "<font-folder path='/f'/><eudc-processing mapping='DISABLE'/></font-config>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <font-config windows-registry=\"Enable\"> in FILE",
                            "1936 Invalid value: <eudc-processing mapping=\"DISABLE\"> in FILE"));
    EXPECT_TRUE(config.service->eudcProcessing);
}

TEST_F(FontConfig, AnInvalidRootValueIsReportedAndLeavesTheSetting) {
    const ConfigRead config = read("<font-config use-preferred-family='maybe' "
                                   "windows-registry='' otf-metrics-mode='Windows'>"
                                   "<font-folder path='/f'/></font-config>");
    EXPECT_THAT(
        config.complaints,
        ElementsAre("1936 Invalid value: <font-config name-processing-mode=\"Windows\"> in FILE",
                    "1936 Invalid value: <font-config use-preferred-family=\"maybe\"> in FILE",
                    "1936 Invalid value: <font-config windows-registry=\"\"> in FILE"));
    EXPECT_TRUE(config.service->usePreferredFamily);
    EXPECT_TRUE(config.service->useWindowsRegistry);
    EXPECT_FALSE(config.service->otfMetricsWindows);
}

TEST_F(FontConfig, AnInvalidOtfMetricsModeOfTheRootIsReportedAsNameProcessingMode) {
    const ConfigRead config = read("<font-config otf-metrics-mode='hhea' "
                                   "name-processing-mode='x'><font-folder path='/f'/>"
                                   "</font-config>");
    EXPECT_THAT(
        config.complaints,
        ElementsAre("1936 Invalid value: <font-config name-processing-mode=\"hhea\"> in FILE"));
}

TEST_F(FontConfig, AnInvalidOtfMetricsModeOfTheElementIsReportedAsItsMode) {
    const ConfigRead config = readRoot("<otf-metrics-mode mode='hhea'/><font-folder path='/f'/>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <otf-metrics-mode mode=\"hhea\"> in FILE"));
}

TEST_F(FontConfig, UnknownRootAttributesAreReportedBehindItsInvalidValues) {
    const ConfigRead config = read("<font-config mode='x' windows-registry='on' Weight='1' "
                                   "xml:lang='en'><font-folder path='/f'/></font-config>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <font-config windows-registry=\"on\"> in FILE",
                            "1935 Unknown attribute: <font-config mode> in FILE",
                            "1935 Unknown attribute: <font-config Weight> in FILE",
                            "1935 Unknown attribute: <font-config xml:lang> in FILE"));
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
}

// Settings as elements

TEST_F(FontConfig, SettingsMayBeElements) {
    const ConfigRead config = readRoot("<name-processing-mode mode='anything'/>"
                                       "<otf-metrics-mode mode='windows'/>"
                                       "<windows-registry reference='disable'/>"
                                       "<font-folder path='/f'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_TRUE(config.service->otfMetricsWindows);
    EXPECT_FALSE(config.service->useWindowsRegistry);
}

TEST_F(FontConfig, AnOtfMetricsModeWithoutAModeIsTypographic) {
    ConfigRead config;
    config.service->otfMetricsWindows = true;
    const std::string path =
        files().write("f.xml", "<font-config><otf-metrics-mode/></font-config>").string();
    readFontConfig(*config.service, path.c_str(), nullptr);
    EXPECT_FALSE(config.service->otfMetricsWindows);
}

TEST_F(FontConfig, AnInvalidElementValueIsReportedAndLeavesTheSetting) {
    ConfigRead config;
    config.service->otfMetricsWindows = true;
    config.service->useWindowsRegistry = false;
    const std::string path = files()
                                 .write("f.xml", "<font-config><otf-metrics-mode mode=''/>"
                                                 "<windows-registry reference='yes'/>"
                                                 "<font-folder path='/f'/></font-config>")
                                 .string();
    readFontConfig(*config.service, path.c_str(), nullptr);
    EXPECT_TRUE(config.service->otfMetricsWindows);
    EXPECT_FALSE(config.service->useWindowsRegistry);
    EXPECT_THAT(readPath(path).complaints,
                ElementsAre("1936 Invalid value: <otf-metrics-mode mode=\"\"> in FILE",
                            "1936 Invalid value: <windows-registry reference=\"yes\"> in FILE"));
}

TEST_F(FontConfig, ARegistryElementWithoutAReferenceEndsTheRead) {
    for (const char* const attribute : {"", " reference=''"}) {
        const ConfigRead config = readRoot(std::string("<otf-metrics-mode mode='windows'/>"
                                                       "<windows-registry x=''")
                                               .append(attribute)
                                               .append("/><font-folder path='/f'/>"));
        EXPECT_EQ(config.thrown, "1937 Empty value: <windows-registry reference> in FILE");
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_THAT(config.folderPaths(), IsEmpty());
        EXPECT_TRUE(config.service->otfMetricsWindows) << "what was read before stands";
        EXPECT_TRUE(config.service->useWindowsRegistry);
    }
}

TEST_F(FontConfig, UnknownAttributesOfSettingsAreReported) {
    const ConfigRead config = readRoot("<name-processing-mode mode='a' x='1'/>"
                                       "<otf-metrics-mode MODE='windows'/>"
                                       "<windows-registry reference='enable' mode=''/>"
                                       "<font-folder path='/f'/>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1935 Unknown attribute: <name-processing-mode x> in FILE",
                            "1935 Unknown attribute: <otf-metrics-mode MODE> in FILE",
                            "1935 Unknown attribute: <windows-registry mode> in FILE"));
    EXPECT_FALSE(config.service->otfMetricsWindows);
}

// Order

/// What a child out of its order gives: as an unknown one it is reported, and its end tag ends the
/// root.
std::vector<std::string> outOfOrder(const std::string& name) {
    return {"1028 Unexpected start tag: <" + name + "> in FILE",
            "1029 Unexpected end tag: </" + name + "> in FILE"};
}

TEST_F(FontConfig, SettingsAndEudcProcessingStandOnce) {
    for (const std::string name :
         {"eudc-processing", "otf-metrics-mode", "windows-registry", "name-processing-mode"}) {
        const std::string element = "<" + name + " reference='enable'/>";
        ConfigRead config = readRoot(element + element + "<font-folder path='/f'/>");
        std::erase_if(config.complaints, [](const std::string& complaint) {
            return complaint.starts_with("1935") || complaint.starts_with("1027");
        });
        EXPECT_EQ(config.complaints, outOfOrder(name));
    }
}

TEST_F(FontConfig, ASettingGivenByTheRootMayNotBeAnElement) {
    for (const auto& [name, value] : {std::pair("otf-metrics-mode", "windows"),
                                      {"windows-registry", "disable"},
                                      {"name-processing-mode", ""}}) {
        const std::string element(name);
        const ConfigRead config =
            read("<font-config " + element + "='" + value + "'><" + element + "/></font-config>");
        std::vector<std::string> expected = outOfOrder(element);
        expected.emplace_back(kNoFolder);
        EXPECT_EQ(config.complaints, expected);
    }
}

TEST_F(FontConfig, ARegistryElementBehindTheRootsAttributeLeavesTheRegistryOff) {
    const ConfigRead config = read("<font-config windows-registry='disable'>"
                                   "<font-folder path='/f'/>"
                                   "<windows-registry reference='enable'/></font-config>");
    EXPECT_EQ(config.complaints, outOfOrder("windows-registry"));
    EXPECT_FALSE(config.service->useWindowsRegistry);
}

TEST_F(FontConfig, AnInvalidRootValueStillCountsAsGiven) {
    const ConfigRead config = read("<font-config windows-registry='off'><font-folder path='/f'/>"
                                   "<windows-registry reference='disable'/></font-config>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <font-config windows-registry=\"off\"> in FILE",
                            "1028 Unexpected start tag: <windows-registry> in FILE",
                            "1029 Unexpected end tag: </windows-registry> in FILE"));
    EXPECT_TRUE(config.service->useWindowsRegistry);
}

TEST_F(FontConfig, AnInvalidMetricsModeStillCountsAsGiven) {
    const ConfigRead config = read("<font-config otf-metrics-mode='x'><font-folder path='/f'/>"
                                   "<otf-metrics-mode mode='windows'/></font-config>");
    EXPECT_EQ(config.complaints.size(), 3U);
    EXPECT_FALSE(config.service->otfMetricsWindows);
}

TEST_F(FontConfig, NameProcessingModeMayNotStandBehindAFolder) {
    const ConfigRead config = readRoot("<font-folder path='/f'/><name-processing-mode/>");
    EXPECT_EQ(config.complaints, outOfOrder("name-processing-mode"));
}

TEST_F(FontConfig, NameProcessingModeMayStandBehindAnAccFolder) {
    const ConfigRead config =
        readRoot("<acc-folder/><name-processing-mode/><font-folder path='/f'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
}

TEST_F(FontConfig, OtherElementsMayStandBehindAFolder) {
    const ConfigRead config = readRoot("<font-folder path='/f'/><eudc-processing/>"
                                       "<otf-metrics-mode/><windows-registry reference='enable'/>"
                                       "<font-folder path='/g'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/", "/g/"));
}

// Tags in wrong places

TEST_F(FontConfig, ChildrenOfAnUnknownElementAreReadAsThoseOfItsParent) {
    const ConfigRead config = readRoot("<fonts><font-folder path='/f'/><more/></fonts>"
                                       "<font-folder path='/g'/>");
    EXPECT_THAT(config.complaints, ElementsAre("1028 Unexpected start tag: <fonts> in FILE",
                                               "1028 Unexpected start tag: <more> in FILE",
                                               "1029 Unexpected end tag: </more> in FILE"));
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/")) << "the end tag of <more> ended the root";
}

TEST_F(FontConfig, AnUnknownElementEndsEveryElementAroundIt) {
    const ConfigRead config =
        readRoot("<font-folder path='/f'><font-alias file='a.ttf'><alias family-name='A'><x/>"
                 "</alias></font-alias><font-exclude file='b.ttf'/></font-folder>"
                 "<font-folder path='/g'/>");
    EXPECT_THAT(config.complaints, ElementsAre("1028 Unexpected start tag: <x> in FILE",
                                               "1029 Unexpected end tag: </x> in FILE",
                                               "1029 Unexpected end tag: </alias> in FILE",
                                               "1029 Unexpected end tag: </font-alias> in FILE",
                                               "1028 Unexpected start tag: <font-exclude> in FILE",
                                               "1029 Unexpected end tag: </font-exclude> in FILE"));
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
    EXPECT_TRUE(config.service->folders[0]->fileOptions.empty());
}

TEST_F(FontConfig, SettingsHaveNoChildren) {
    for (const std::string name :
         {"name-processing-mode", "otf-metrics-mode", "windows-registry"}) {
        const std::string attribute = name == "windows-registry" ? " reference='enable'" : "";
        const ConfigRead config = readRoot("<" + name + attribute + "><alias/></" + name + ">");
        EXPECT_THAT(config.complaints,
                    ElementsAre("1028 Unexpected start tag: <alias> in FILE",
                                "1029 Unexpected end tag: </alias> in FILE",
                                "1029 Unexpected end tag: </" + name + "> in FILE", kNoFolder));
    }
}

TEST_F(FontConfig, FoldersAndSettingsMayNotStandInsideEachOther) {
    const ConfigRead config =
        readRoot("<font-folder path='/f'><font-folder path='/g'/></font-folder>");
    EXPECT_THAT(config.complaints, ElementsAre("1028 Unexpected start tag: <font-folder> in FILE",
                                               "1029 Unexpected end tag: </font-folder> in FILE"))
        << "the inner end tag ends the folder, and the outer one the root";
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
}

TEST_F(FontConfig, TextCommentsAndInstructionsAreNothing) {
    const ConfigRead config =
        readRoot("text &amp; more <!-- <x/> --><?x y?>"
                 "<font-folder path='/f'> text <![CDATA[<x/>]]></font-folder>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
}

// acc-folder

TEST_F(FontConfig, AnAccFolderIsSkippedWhole) {
    const ConfigRead config =
        readRoot("<acc-folder path='relative' x='1'><font-folder path='/inner'/><font-alias/>"
                 "<unknown attribute='y'><eudc-range start='x'/></unknown>text</acc-folder>"
                 "<acc-folder/><font-folder path='/f'/><acc-folder path=''/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.thrown, "");
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
}

TEST_F(FontConfig, AccFoldersInsideAnAccFolderAreSkippedWithIt) {
    const ConfigRead config = readRoot("<acc-folder><acc-folder><acc-folder/>"
                                       "<font-folder path='/a'/></acc-folder>"
                                       "<font-folder path='/b'/></acc-folder>"
                                       "<font-folder path='/f'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
}

TEST_F(FontConfig, AnAccFolderIsNoFolder) {
    EXPECT_THAT(readRoot("<acc-folder path='/f'/>").complaints, ElementsAre(kNoFolder));
}

// Everything at once

TEST_F(FontConfig, ReportsEveryRecordedComplaintOfOneFileInItsOrder) {
    const ConfigRead config = read(R"(
<font-config otf-metrics-mode="a" use-preferred-family="b" windows-registry="c" d="">
  <name-processing-mode e=""/>
  <eudc-processing mapping="f" g="">
    <eudc-range start="0" end="65536" h=""/>
    <eudc-map family-name="i" file-path="i.tte" i=""/>
    <eudc-system-default file-path="j.tte" j=""/>
  </eudc-processing>
  <acc-folder k="k"/>
  <font-folder path="/f" recursive="l" l="">
    <font-alias file="m.ttc" entry="m" m="">
      <alias family-name="n" weight="50" italic="n" stretch="n" n=""/>
    </font-alias>
    <font-alias file="o.ttc" entry="0"/>
    <font-entry file="p.afm" font-size-adjust="p" unicode-range="p" baseline-adjust="p"
                skip-glyphname-mapping="p" font-exclude="p" use-zero-glyph-id="p" p=""/>
    <font-entry file="q.ttf" font-size-adjust="0"/>
    <font-exclude file="r.ttf" r=""/>
    <glyph-list file="s.txt" afm="s.afm" s=""/>
    <skip-glyphname-mapping afm="t.afm" t=""/>
    <use-zero-glyph-id file="u.ttf" u=""/>
    <v/>
  </font-folder>
</font-config>)");
    EXPECT_EQ(config.thrown, "");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <font-config name-processing-mode=\"a\"> in FILE",
                            "1936 Invalid value: <font-config use-preferred-family=\"b\"> in FILE",
                            "1936 Invalid value: <font-config windows-registry=\"c\"> in FILE",
                            "1935 Unknown attribute: <font-config d> in FILE",
                            "1935 Unknown attribute: <name-processing-mode e> in FILE",
                            "1936 Invalid value: <eudc-processing mapping=\"f\"> in FILE",
                            "1935 Unknown attribute: <eudc-processing g> in FILE",
                            "1936 Invalid value: <eudc-range start=\"0\"> in FILE",
                            "1936 Invalid value: <eudc-range end=\"65536\"> in FILE",
                            "1935 Unknown attribute: <eudc-range h> in FILE",
                            "1935 Unknown attribute: <eudc-map i> in FILE",
                            "1935 Unknown attribute: <eudc-system-default j> in FILE",
                            "1935 Unknown attribute: <font-folder l> in FILE",
                            "1942 Not an integer value: <font-alias entry=\"m\"> in FILE",
                            "1935 Unknown attribute: <font-alias m> in FILE",
                            "1936 Invalid value: <alias weight=\"50\"> in FILE",
                            "1936 Invalid value: <alias italic=\"n\"> in FILE",
                            "1935 Unknown attribute: <alias n> in FILE",
                            "1936 Invalid value: <font-alias entry=\"0\"> in FILE",
                            "1936 Invalid value: <font-entry font-size-adjust=\"p\"> in FILE",
                            "1936 Invalid value: <font-entry unicode-range=\"p\"> in FILE",
                            "1936 Invalid value: <font-entry baseline-adjust=\"p\"> in FILE",
                            "1936 Invalid value: <font-entry skip-glyphname-mapping=\"p\"> in FILE",
                            "1936 Invalid value: <font-entry font-exclude=\"p\"> in FILE",
                            "1936 Invalid value: <font-entry use-zero-glyph-id=\"p\"> in FILE",
                            "1935 Unknown attribute: <font-entry p> in FILE",
                            "1936 Invalid value: <font-entry font-size-adjust=\"0\"> in FILE",
                            "1935 Unknown attribute: <font-exclude r> in FILE",
                            "1935 Unknown attribute: <glyph-list s> in FILE",
                            "1935 Unknown attribute: <skip-glyphname-mapping t> in FILE",
                            "1935 Unknown attribute: <use-zero-glyph-id u> in FILE",
                            "1028 Unexpected start tag: <v> in FILE",
                            "1029 Unexpected end tag: </v> in FILE",
                            "1029 Unexpected end tag: </font-folder> in FILE"));
}

TEST_F(FontConfig, ComplaintsOfAScratchReadGoToTheRunningService) {
    const std::string path = files().write("f.xml", "<font-config x=''/>").string();
    const int before = FS_GetFontError(nullptr, 0);
    std::vector<UnicodeString> paths;
    EXPECT_FALSE(FS_GetFontFoldPathVector(path.c_str(), paths));
    EXPECT_EQ(FS_GetFontError(nullptr, 0), before + 2);
    EXPECT_THAT(paths, IsEmpty());
}

TEST_F(FontConfig, AStopMakesTheScratchReadAnswerFalse) {
    const std::string path =
        files()
            .write("f.xml", "<font-config><font-folder path='/f'><font-alias file='a'/>"
                            "</font-folder><font-folder path='g'/></font-config>")
            .string();
    std::vector<UnicodeString> paths;
    EXPECT_FALSE(FS_GetFontFoldPathVector(path.c_str(), paths));
    EXPECT_THAT(paths, IsEmpty());
}

} // namespace
