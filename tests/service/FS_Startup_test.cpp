#include "service/FS_Startup.h"

#include "registry/FS_FontService.h"
#include "registry/RegistryFixture.h"
#include "service/FakeFolders.h"
#include "support/SystemDouble.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using namespace KWFontService_NS;
using Kind = FS_StartupStep::Kind;

std::vector<std::string> g_trace;

template <char Name>
void note(FS_FontService&, const FS_OpenArguments&) {
    g_trace.emplace_back(1, Name);
}

template <unsigned short Code>
void fail(FS_FontService&, const FS_OpenArguments&) {
    g_trace.emplace_back("fail");
    throw KWError(Code, u"from a step");
}

class Startup : public testing::Test {
protected:
    void SetUp() override { g_trace.clear(); }
};

TEST_F(Startup, KnowsExactlyTheseExtensions) {
    FS_FontService service;
    startUp(service, {});
    const std::map<UnicodeString, int> known(service.fileTypeByExtension.begin(),
                                             service.fileTypeByExtension.end());
    const std::map<UnicodeString, int> expected = {{u".afm", 3},  {u".pfm", 4}, {u".ttf", 5},
                                                   {u".ttc", 6},  {u".otf", 7}, {u".dfont", 9},
                                                   {u".woff", 10}};
    EXPECT_EQ(known, expected);
}

TEST_F(Startup, PrinterFontExtensionsAreDeliberatelyUnknown) {
    FS_FontService service;
    startUp(service, {});
    EXPECT_FALSE(service.fileTypeByExtension.contains(u".pfa"));
    EXPECT_FALSE(service.fileTypeByExtension.contains(u".pfb"));
}

TEST_F(Startup, CountsThePrivateUseAreaAsEudcWhenNothingElseWasSaid) {
    FS_FontService service;
    startUp(service, {});
    EXPECT_FALSE(service.isEudcCodePoint(0xDFFF));
    EXPECT_TRUE(service.isEudcCodePoint(0xE000));
    EXPECT_TRUE(service.isEudcCodePoint(0xF8FF));
    EXPECT_FALSE(service.isEudcCodePoint(0xF900));
    EXPECT_FALSE(service.eudcRangeGiven);
}

TEST_F(Startup, LeavesTheEudcRangeThatWasGiven) {
    FS_FontService service;
    service.eudcRangeGiven = true;
    service.addEudcRange(0xE100, 0xE100);
    startUp(service, {});
    EXPECT_TRUE(service.isEudcCodePoint(0xE100));
    EXPECT_FALSE(service.isEudcCodePoint(0xE000));
}

TEST_F(Startup, RunsItsStepsInTheirOrder) {
    const FS_StartupStep steps[] = {
        {Kind::configuration, note<'a'>}, {Kind::later, note<'b'>}, {Kind::later, note<'c'>}};
    const FS_StartupOverride replaced(steps);
    FS_FontService service;
    startUp(service, {});
    EXPECT_EQ(g_trace, (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(service.fileTypeByExtension.size(), 7U) << "the extension table comes first";
}

TEST_F(Startup, AFailingConfigurationIsThrownAndEndsStartup) {
    const FS_StartupStep steps[] = {{Kind::configuration, fail<1937>}, {Kind::later, note<'b'>}};
    const FS_StartupOverride replaced(steps);
    FS_FontService service;
    try {
        startUp(service, {});
        ADD_FAILURE() << "nothing was thrown";
    } catch (const KWError& error) {
        EXPECT_EQ(error.getCode(), 1937);
    }
    EXPECT_EQ(g_trace, (std::vector<std::string>{"fail"}));
    EXPECT_TRUE(service.errors.empty());
}

TEST_F(Startup, AFailingLaterStepIsRecordedAndEndsTheRest) {
    const FS_StartupStep steps[] = {
        {Kind::configuration, note<'a'>}, {Kind::later, fail<1921>}, {Kind::later, note<'c'>}};
    const FS_StartupOverride replaced(steps);
    FS_FontService service;
    EXPECT_NO_THROW(startUp(service, {}));
    EXPECT_EQ(g_trace, (std::vector<std::string>{"a", "fail"}));
    ASSERT_EQ(service.errors.size(), 1U);
    EXPECT_EQ(service.errors.get(0)->getCode(), 1921);
    EXPECT_EQ(service.errors.get(0)->getMessage(), UnicodeString(u"from a step"));
}

TEST_F(Startup, ExceptionsOfOtherTypesPassThrough) {
    const FS_StartupStep steps[] = {
        {Kind::later, [](FS_FontService&, const FS_OpenArguments&) { throw 7; }}};
    const FS_StartupOverride replaced(steps);
    FS_FontService service;
    EXPECT_THROW(startUp(service, {}), int);
    EXPECT_TRUE(service.errors.empty());
}

TEST_F(Startup, HandsTheArgumentsToEveryStep) {
    const FS_StartupStep steps[] = {
        {Kind::configuration, [](FS_FontService&, const FS_OpenArguments& arguments) {
             g_trace = {arguments.configPath, arguments.homePath};
         }}};
    const FS_StartupOverride replaced(steps);
    FS_FontService service;
    startUp(service, {"config", "home"});
    EXPECT_EQ(g_trace, (std::vector<std::string>{"config", "home"}));
}

TEST_F(Startup, AScratchObjectRunsTheConfigurationAlone) {
    const FS_StartupStep steps[] = {{Kind::configuration, note<'a'>}, {Kind::later, note<'b'>}};
    const FS_StartupOverride replaced(steps);
    FS_FontService scratch;
    EXPECT_EQ(getFontService("config", nullptr, &scratch), &scratch);
    EXPECT_EQ(g_trace, (std::vector<std::string>{"a"}));
    EXPECT_TRUE(scratch.fileTypeByExtension.empty());
}

TEST_F(Startup, AFailingConfigurationOfAScratchObjectIsRecordedThere) {
    const FS_StartupStep steps[] = {{Kind::configuration, fail<1938>},
                                    {Kind::configuration, note<'b'>}};
    const FS_StartupOverride replaced(steps);
    FS_FontService scratch;
    EXPECT_EQ(getFontService(nullptr, nullptr, &scratch), nullptr);
    EXPECT_EQ(g_trace, (std::vector<std::string>{"fail"}));
    ASSERT_EQ(scratch.errors.size(), 1U);
    EXPECT_EQ(scratch.errors.get(0)->getCode(), 1938);
}

/// A system whose font folders are those of a test.
class OwnFonts : public KWTest::SystemDouble {
public:
    std::u16string fonts;
    std::u16string userFonts;
    KWPlatform::RegisteredFontFiles registered;
    int registryReads = 0;

    std::u16string knownFolder(KWPlatform::KnownFolder folder) override {
        return folder == KWPlatform::KnownFolder::fonts ? fonts : userFonts;
    }
    KWPlatform::RegisteredFontFiles registeredFontFiles() override {
        ++registryReads;
        return registered;
    }
};

/// Start-up as it is, on a service of the test's own.
class WholeStartup : public KWTest::RegistryTest {
protected:
    void start(const std::string& config) {
        files().write("config.xml", config);
        startUp(service(), {files().path("config.xml").string().c_str(), nullptr});
    }
    std::string folder(std::string_view name, const char* attributes = "") {
        return "<font-folder path='" + files().path(name).string() + "' " + attributes + "/>";
    }
    std::u16string path(std::string_view name) { return files().path(name).u16string(); }
};

TEST_F(WholeStartup, ReadsTheConfigurationThenTheFoldersThenTheRegistry) {
    OwnFonts system;
    system.registered.fonts = {path("listed/b.ttf")};
    system.registered.type1 = {path("listed/c.ttf")};
    write("named/a.ttf", KWTest::namedFont(u"Same"));
    write("listed/b.ttf", KWTest::namedFont(u"Same"));
    write("listed/c.ttf", KWTest::namedFont(u"Same"));
    start("<font-config>" + folder("named") + "</font-config>");
    EXPECT_EQ(fontFiles(),
              (std::vector<std::string>{"named/a.ttf", "listed/b.ttf", "listed/c.ttf"}));
    EXPECT_EQ(found(u"Same"), "named/a.ttf");
    EXPECT_EQ(system.registryReads, 1) << "both lists come from one reading";
}

TEST_F(WholeStartup, LeavesTheRegistryAloneWhenItIsOff) {
    OwnFonts system;
    system.registered.fonts = {path("b.ttf")};
    write("b.ttf", KWTest::namedFont(u"Listed"));
    start("<font-config windows-registry='disable'>" + folder("named") + "</font-config>");
    EXPECT_TRUE(fontFiles().empty());
    EXPECT_EQ(system.registryReads, 0);
}

TEST_F(WholeStartup, WithoutAFileItTakesTheFoldersOfTheUserAndTheSystemAndTheRegistry) {
    OwnFonts system;
    system.fonts = path("all");
    system.userFonts = path("own");
    system.registered.fonts = {path("far/c.ttf")};
    write("own" + KWTest::userFontsBelowData() + "a.ttf", KWTest::namedFont(u"Own"));
    write("all/b.ttf", KWTest::namedFont(u"All"));
    write("all/below/d.ttf", KWTest::namedFont(u"Below"));
    write("far/c.ttf", KWTest::namedFont(u"Far"));
    startUp(service(), {files().path("absent.xml").string().c_str(), nullptr});
    EXPECT_EQ(fontFiles(), (std::vector<std::string>{"own" + KWTest::userFontsBelowData() + "a.ttf",
                                                     "all/b.ttf", "far/c.ttf"}));
    EXPECT_TRUE(service().configUri.isEmpty());
}

TEST_F(WholeStartup, SetsNoEudcRangeWhenEudcProcessingIsOff) {
    start("<font-config><eudc-processing mapping='disable'/>" + folder("none") + "</font-config>");
    EXPECT_FALSE(service().isEudcCodePoint(0xE000));
}

/// A font that has one end-user-defined character.
KWTest::TestFont privateFont(std::u16string_view family, char16_t character) {
    KWTest::TestFont font = KWTest::namedFont(family);
    font.cmap = KWTest::Cmap::unicode({{character, KWTest::TestFont::kA}});
    return font;
}

TEST_F(WholeStartup, LinksTheEndUserDefinedFontsOfTheConfiguration) {
    write("fonts/a.ttf", KWTest::namedFont(u"Alpha"));
    write("own/linked.tte", privateFont(u"Linked", 0xE000));
    write("own/default.tte", privateFont(u"Default", 0xE001));
    start("<font-config windows-registry='disable'>" + folder("fonts") +
          "<eudc-processing><eudc-map family-name='Alpha' file-path='own/linked.tte'/>"
          "<eudc-system-default file-path='own/default.tte'/></eudc-processing></font-config>");
    EXPECT_EQ(fontFiles(), (std::vector<std::string>{"fonts/a.ttf", "own/default.tte",
                                                     "own/default.tte", "own/linked.tte"}))
        << "the default font, for both directions, before the linked ones";
    const FS_FontRef link = service().fontPool.fonts[0]->getEudcFont(0);
    ASSERT_TRUE(link);
    EXPECT_EQ(below(link.font->getUri()), "own/linked.tte");
    EXPECT_EQ(service().defaultEudcFont.font, service().fontPool.fonts[1].get());
    EXPECT_EQ(service().defaultEudcFontVertical.font, service().fontPool.fonts[2].get());
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(WholeStartup, LoadsNoEndUserDefinedFontWhenEudcProcessingIsOff) {
    write("own/default.tte", privateFont(u"Default", 0xE001));
    start("<font-config windows-registry='disable'>" + folder("fonts") +
          "<eudc-processing mapping='disable'>"
          "<eudc-map family-name='Alpha' file-path='own/default.tte'/><eudc-range start='57600'/>"
          "<eudc-system-default file-path='own/default.tte'/></eudc-processing></font-config>");
    EXPECT_TRUE(fontFiles().empty());
    EXPECT_FALSE(service().isEudcCodePoint(0xE000));
    EXPECT_TRUE(service().isEudcCodePoint(57600)) << "the reader sets ranges as it reads";
}

/// A system that has its say on end-user-defined characters.
class OwnCharacters : public OwnFonts {
public:
    std::optional<KWPlatform::RegistryText> registryText(KWPlatform::RegistryHive,
                                                         const std::u16string&,
                                                         const std::u16string& name) override {
        ++textReads;
        if (name == u"Unicode")
            return KWPlatform::RegistryText{name, KWPlatform::RegistryType::string, u"E100-E1FF"};
        return std::nullopt;
    }
    int textReads = 0;
};

TEST_F(WholeStartup, AsksTheRegistryForWhatTheConfigurationLeavesOpen) {
    OwnCharacters system;
    start("<font-config>" + folder("fonts") + "</font-config>");
    EXPECT_TRUE(service().isEudcCodePoint(0xE100));
    EXPECT_FALSE(service().isEudcCodePoint(0xE000)) << "there is a range now";
}

TEST_F(WholeStartup, LeavesTheCharactersOfTheRegistryAloneWhenItIsOff) {
    OwnCharacters system;
    start("<font-config windows-registry='disable'>" + folder("fonts") + "</font-config>");
    EXPECT_EQ(system.textReads, 0);
    EXPECT_TRUE(service().isEudcCodePoint(0xE000));
}

TEST_F(WholeStartup, LeavesTheCharactersOfTheRegistryAloneWhenEudcProcessingIsOff) {
    OwnCharacters system;
    start("<font-config><eudc-processing mapping='disable'/>" + folder("fonts") + "</font-config>");
    EXPECT_EQ(system.textReads, 0);
    EXPECT_FALSE(service().isEudcCodePoint(0xE100));
}

TEST_F(WholeStartup, AFontIsFoundByEveryNameAndStyle) {
    KWTest::TestFont bold = KWTest::namedFont(u"Book Face", 700, true, 3);
    bold.name.records.push_back(KWTest::windowsName(1, u"\u672C", 1041));
    bold.name.records.push_back(KWTest::windowsName(16, u"Book Typographic"));
    write("fonts/sub/BookBI.ttf", bold);
    write("fonts/book.ttf", KWTest::namedFont(u"Book Face"));
    write("fonts/draft.ttf", KWTest::namedFont(u"Book Face", 300));
    start("<font-config windows-registry='disable'><font-folder path='" +
          files().path("fonts").string() +
          "' recursive='true'><font-exclude file='draft.ttf'/>"
          "<font-alias file='book.ttf'><alias family-name='Brochure'/></font-alias>"
          "</font-folder></font-config>");
    EXPECT_EQ(found(u"Book Face", 700, true, 3), "fonts/sub/BookBI.ttf");
    EXPECT_EQ(found(u"\u672C"), "fonts/sub/BookBI.ttf");
    EXPECT_EQ(found(u"book typographic"), "fonts/sub/BookBI.ttf");
    EXPECT_EQ(found(u"bookbi"), "fonts/sub/BookBI.ttf");
    EXPECT_EQ(found(u"Book-Face", 300), "fonts/book.ttf") << "the light one is left out";
    EXPECT_EQ(found(u"brochure"), "fonts/book.ttf");
}

} // namespace
