#include "service/ConfigErrors.h"

#include "registry/FS_FontService.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

namespace {

using namespace KWFontService_NS;

std::string utf8(const UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

KWError made(int code) {
    return makeConfigError(static_cast<FS_ERROR>(code), u"ELEMENT", u"SECOND", u"THIRD", u"FOURTH");
}

const std::map<int, std::string> kMessages = {
    {1025, "ELEMENT is not specified."},
    {1026, "FontConfig file is not found: ELEMENT"},
    {1027, "No <font-folder> in ELEMENT"},
    {1028, "Unexpected start tag: <ELEMENT> in SECOND"},
    {1029, "Unexpected end tag: </ELEMENT> in SECOND"},
    {1035, "Invalid font file extension: <ELEMENT SECOND=\"THIRD\"> in FOURTH"},
    {1935, "Unknown attribute: <ELEMENT THIRD> in FOURTH"},
    {1936, "Invalid value: <ELEMENT SECOND=\"THIRD\"> in FOURTH"},
    {1937, "Empty value: <ELEMENT SECOND> in THIRD"},
    {1938, "No-file path is not allowed: <ELEMENT SECOND=\"THIRD\"> in FOURTH"},
    {1939, "Relative path is not allowed: <ELEMENT SECOND=\"THIRD\"> in FOURTH"},
    {1940, "Already registered value: <ELEMENT SECOND=\"THIRD\"> in FOURTH"},
    {1941, "Font file must be base file name: <ELEMENT SECOND=\"THIRD\"> in FOURTH"},
    {1942, "Not an integer value: <ELEMENT SECOND=\"THIRD\"> in FOURTH"},
};

TEST(ConfigErrors, EveryTemplateIsFilledInTheOrderOfItsPlaceholders) {
    for (const auto& [code, message] : kMessages) {
        const KWError error = made(code);
        EXPECT_EQ(error.getCode(), code);
        EXPECT_EQ(utf8(error.getMessage()), message);
    }
}

TEST(ConfigErrors, EveryOtherCodeIsRaisedAs1024WithItsNumber) {
    for (int code = 0; code <= 0xFFFF; ++code) {
        if (kMessages.contains(code))
            continue;
        const KWError error = made(code);
        ASSERT_EQ(error.getCode(), 1024) << code;
        ASSERT_EQ(utf8(error.getMessage()), "FontServiceModule error: " + std::to_string(code));
    }
}

TEST(ConfigErrors, TheOtherFieldsOfTheErrorAreEmpty) {
    const KWError error = made(1936);
    EXPECT_TRUE(error.getSecondText().isEmpty());
    EXPECT_EQ(error.getFirstValue(), -1);
    EXPECT_EQ(error.getSecondValue(), -1);
    EXPECT_TRUE(error.getThirdText().isEmpty());
}

TEST(ConfigErrors, LevelRecordedGoesToTheErrorsOfTheServiceAndReturns) {
    FS_FontService& service = *getFontService(nullptr, nullptr, nullptr);
    for (const int code : {1024, 1025, 1026, 1027, 1028, 1029, 1035, 1935, 1936, 1942, 7}) {
        const std::size_t before = service.errors.size();
        EXPECT_NO_THROW(configError(static_cast<FS_ERROR>(code), u"a", u"b", u"c", u"d"));
        ASSERT_EQ(service.errors.size(), before + 1) << code;
        EXPECT_EQ(service.errors.get(service.errors.size() - 1)->getCode(),
                  code == 7 ? 1024 : code);
    }
    EXPECT_EQ(utf8(service.errors.get(service.errors.size() - 1)->getMessage()),
              "FontServiceModule error: 7");
}

TEST(ConfigErrors, EveryOtherLevelIsThrown) {
    FS_FontService& service = *getFontService(nullptr, nullptr, nullptr);
    const std::size_t before = service.errors.size();
    for (const int code : {1937, 1938, 1939, 1940, 1941}) {
        try {
            configError(static_cast<FS_ERROR>(code), u"font-folder", u"path", u"x", u"y");
            ADD_FAILURE() << code << " was not thrown";
        } catch (const KWError& error) {
            EXPECT_EQ(error.getCode(), code);
            EXPECT_FALSE(error.getMessage().isEmpty());
        }
    }
    EXPECT_EQ(service.errors.size(), before);
}

TEST(ConfigErrorsDeathTest, WithoutAServiceARecordedErrorIsDropped) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            configError(FS_ERROR_INVALID_VALUE, u"a", u"b", u"c", u"d");
            std::_Exit(g_fontService.load() == nullptr ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
