#include "registry/FS_FontService.h"

#include "fonts/FS_ServiceContext.h"
#include "registry/FakeFont.h"
#include "service/FS_Startup.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_Functions.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

using namespace KWFontService_NS;
using KWTest::FakeFont;
using Kind = FS_StartupStep::Kind;

/// In a child process: ends it with exit code 1 when the claim does not hold.
void require(bool holds, const char* claim) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", claim);
    std::_Exit(1);
}

int g_configurationReads = 0;

void failingConfiguration(FS_FontService&, const FS_OpenArguments&) {
    ++g_configurationReads;
    throw KWError(FS_ERROR_EMPTY_VALUE, u"Empty value");
}

void failingScan(FS_FontService&, const FS_OpenArguments&) {
    throw KWError(FS_ERROR_FONT_READ, u"Font read error.");
}

void throwingStep(FS_FontService&, const FS_OpenArguments&) {
    throw 7;
}

void askingStep(FS_FontService& service, const FS_OpenArguments&) {
    require(getFontService(nullptr, nullptr, nullptr) == &service,
            "the object is there during its own start-up");
}

constexpr FS_StartupStep kFailingConfiguration[] = {{Kind::configuration, failingConfiguration}};
constexpr FS_StartupStep kFailingScan[] = {{Kind::later, failingScan}};
constexpr FS_StartupStep kThrowing[] = {{Kind::later, throwingStep}};
constexpr FS_StartupStep kAsking[] = {{Kind::later, askingStep}};

bool extensionTableIsFilled(const FS_FontService* service) {
    return service != nullptr && service->fileTypeByExtension.size() == 7;
}

TEST(FontService, EveryCallFindsTheSameObject) {
    FS_FontService* const service = getFontService(nullptr, nullptr, nullptr);
    ASSERT_TRUE(extensionTableIsFilled(service));
    EXPECT_EQ(getFontService("other.xml", "/home", nullptr), service);
    EXPECT_EQ(g_fontService.load(), service);
}

// Each of these wants a process in which nothing was opened yet: a death test runs in a new one.
class FontServiceDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(FontServiceDeathTest, CloseBeforeAnyOpenAnswers0AndMakesNothing) {
    EXPECT_EXIT(
        {
            require(FontServiceClose() == 0, "close answers 0");
            require(g_fontService.load() == nullptr, "there is no service");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, AFirstCallOfAnyKindOpensTheService) {
    EXPECT_EXIT(
        {
            require(FS_GetFontError(nullptr, 0) == 0, "there are no problems");
            require(extensionTableIsFilled(g_fontService.load()), "the service is open");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EXIT(
        {
            require(FS_FontInfo::isEUDC(0xE000), "the private use area is EUDC");
            require(extensionTableIsFilled(g_fontService.load()), "the service is open");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, AFirstOpenThatFailsIsReportedAndLeavesAServiceWithoutFonts) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kFailingConfiguration);
            KWError error;
            require(FontServiceOpen("bad.xml", &error) == 1937, "the code is the answer");
            require(error.getCode() == 1937, "the error is copied");
            require(error.getMessage() == UnicodeString(u"Empty value"), "with its text");
            const FS_FontService* const service = g_fontService.load();
            require(extensionTableIsFilled(service), "the object stays");
            require(service->fontPool.fonts.empty(), "without fonts");

            require(FontServiceOpen("good.xml", "/home", &error) == 0, "a second open answers 0");
            require(error.getCode() == 0, "and clears the error");
            require(FontServiceOpen(nullptr, nullptr) == 0, "without an error to fill too");
            require(g_fontService.load() == service, "it is the same object");
            require(g_configurationReads == 1, "nothing is read again");
            require(FS_GetFontError(nullptr, 0) == 0, "the error is not a note");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, WithoutAnErrorToFillTheErrorIsThrown) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kFailingConfiguration);
            try {
                FontServiceOpen("bad.xml", nullptr, nullptr);
                require(false, "something is thrown");
            } catch (const KWError& error) {
                require(error.getCode() == 1937, "it is the error of the configuration");
            }
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, AFailingScanIsANoteAndTheOpenSucceeds) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kFailingScan);
            KWError error(FS_ERROR_FONT_FILE, u"stale");
            require(FontServiceOpen(nullptr, nullptr, &error) == 0, "the open succeeds");
            require(error.getCode() == 0, "and clears the error");
            require(FS_GetFontError(nullptr, -9) == 1, "one note");
            require(FS_GetFontError(&error, 0) == 0, "which is the first");
            require(error.getCode() == 1921, "with its code");
            require(error.getMessage() == UnicodeString(u"Font read error."), "and its text");
            KWError other;
            require(FS_GetFontError(&other, 1) == -1, "there is no second");
            require(FS_GetFontError(&other, -1) == -1, "nor one before the first");
            require(other.getCode() == 0, "which changes nothing");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, FontErrorsOfAServiceThatFailsToOpenAreMinus1AndThrowNothing) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kFailingConfiguration);
            require(FS_GetFontError(nullptr, 0) == -1, "the failure is swallowed");
            require(FS_GetFontError(nullptr, 0) == 0, "later the service is there");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, QueriesOfLowerRoomsNeverThrow) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kFailingConfiguration);
            require(FS_ServiceContext::usePreferredFamily(), "the default setting counts");
            require(g_configurationReads == 1, "this call opened the service");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, ExceptionsOfOtherTypesPassThroughTheOpen) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kThrowing);
            KWError error;
            try {
                FontServiceOpen(nullptr, &error);
                require(false, "something is thrown");
            } catch (int thrown) {
                require(thrown == 7, "it is what the step threw");
            }
            require(FontServiceOpen(nullptr, &error) == 0, "the object stays");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, StartupMayAskForTheServiceItself) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kAsking);
            require(getFontService(nullptr, nullptr, nullptr) != nullptr, "it opens");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontServiceDeathTest, CloseKeepsServiceAndErrors) {
    EXPECT_EXIT(
        {
            const FS_StartupOverride replaced(kFailingScan);
            FontServiceOpen(nullptr, nullptr);
            const FS_FontService* const service = g_fontService.load();
            require(FontServiceClose() == 0 && FontServiceClose() == 0, "close answers 0");
            require(g_fontService.load() == service, "the object stays");
            require(FS_GetFontError(nullptr, 0) == 1, "the errors stay");
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

struct LazyTable {
    ~LazyTable() { std::fprintf(stderr, "table,"); }
};

TEST_F(FontServiceDeathTest, UnloadFreesLazyTablesThenPooledFontsThenKeptFontsWhileTheLockStands) {
    EXPECT_EXIT(
        {
            FS_FontService& service = *getFontService(nullptr, nullptr, nullptr);
            static const LazyTable table;
            auto* const pooled = new FakeFont;
            pooled->onDestroy = [&service] {
                require(g_fontService.load() == &service, "the service is reached meanwhile");
                require(service.fontPool.byName.empty(), "names are forgotten first");
                require(service.fontPool.byFileName.empty(), "file names too");
                require(service.fontPool.byUri.empty(), "and URIs");
                require(service.freeTypeLibrary != nullptr, "FreeType still runs");
                KWCommonNS::KWMutex mutex(g_fontServiceLock);
                mutex.lock();
                std::fprintf(stderr, "pooled,");
            };
            service.fontPool.fonts.emplace_back(pooled);
            service.fontPool.registerFont(service.fontPool.fonts.front());
            service.fontPool.byUri.emplace(u"file:///fonts/fake.ttf", 0);
            auto* const kept = new FakeFont;
            kept->onDestroy = [] { std::fprintf(stderr, "kept,"); };
            FS_ServiceContext::keepFont(*kept);
            require(FS_ServiceContext::freeTypeLibrary() != nullptr, "FreeType starts");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "^table,pooled,kept,$");
}

TEST_F(FontServiceDeathTest, AfterTheUnloadThereIsNoServiceAnyMore) {
    EXPECT_EXIT(
        {
            FontServiceOpen(nullptr, nullptr);
            unloadFontService();
            require(getFontService(nullptr, nullptr, nullptr) == nullptr, "no service");
            require(FS_GetFontError(nullptr, 0) == -1, "no errors");
            require(FS_ServiceContext::freeTypeLibrary() == nullptr, "no FreeType");
            require(!FS_FontInfo::isEUDC(0xE000), "no EUDC");
            FS_ServiceContext::freeTypeLock().lock();
            FS_ServiceContext::freeTypeLock().unlock();
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
