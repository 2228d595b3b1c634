#include "service/FS_Startup.h"

#include "service/FS_FontService.h"

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

TEST_F(Startup, SetsNoEudcRangeWhenEudcProcessingIsOff) {
    FS_FontService service;
    service.eudcProcessing = false;
    startUp(service, {});
    EXPECT_FALSE(service.isEudcCodePoint(0xE000));
}

TEST_F(Startup, RunsItsStepsInTheirOrder) {
    const FS_StartupStep steps[] = {
        {Kind::configuration, note<'a'>}, {Kind::fonts, note<'b'>}, {Kind::fonts, note<'c'>}};
    const FS_StartupOverride replaced(steps);
    FS_FontService service;
    startUp(service, {});
    EXPECT_EQ(g_trace, (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(service.fileTypeByExtension.size(), 7U) << "the extension table comes first";
}

TEST_F(Startup, AFailingConfigurationIsThrownAndEndsStartup) {
    const FS_StartupStep steps[] = {{Kind::configuration, fail<1937>}, {Kind::fonts, note<'b'>}};
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
        {Kind::configuration, note<'a'>}, {Kind::fonts, fail<1921>}, {Kind::fonts, note<'c'>}};
    const FS_StartupOverride replaced(steps);
    FS_FontService service;
    EXPECT_NO_THROW(startUp(service, {}));
    EXPECT_EQ(g_trace, (std::vector<std::string>{"a", "fail"}));
    ASSERT_EQ(service.errors.size(), 1U);
    EXPECT_EQ(service.errors[0].getCode(), 1921);
    EXPECT_EQ(service.errors[0].getMessage(), UnicodeString(u"from a step"));
}

TEST_F(Startup, ExceptionsOfOtherTypesPassThrough) {
    const FS_StartupStep steps[] = {
        {Kind::fonts, [](FS_FontService&, const FS_OpenArguments&) { throw 7; }}};
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
    const FS_StartupStep steps[] = {{Kind::configuration, note<'a'>}, {Kind::fonts, note<'b'>}};
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
    EXPECT_EQ(scratch.errors[0].getCode(), 1938);
}

} // namespace
