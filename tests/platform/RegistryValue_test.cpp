#include "platform/RegistryValue.h"

#include <gtest/gtest.h>

#include <string_view>

using KWPlatform::registeredFontFile;
using KWPlatform::RegistryText;
using KWPlatform::registryTextOf;
using KWPlatform::RegistryType;
using namespace std::string_view_literals;

namespace {

std::u16string fileOf(RegistryType type, std::u16string_view data) {
    return registeredFontFile(registryTextOf(u"name", type, data));
}

} // namespace

TEST(RegistryText, AStringEndsAtItsFirstNulOrWithTheData) {
    for (const std::u16string_view data :
         {u"a.ttf"sv, u"a.ttf\0"sv, u"a.ttf\0\0\0"sv, u"a.ttf\0rest"sv}) {
        const RegistryText value = registryTextOf(u"name", RegistryType::string, data);
        EXPECT_EQ(value.name, u"name");
        EXPECT_EQ(value.type, RegistryType::string);
        EXPECT_EQ(value.text, u"a.ttf");
    }
    EXPECT_EQ(registryTextOf(u"", RegistryType::string, {}).text, u"");
}

TEST(RegistryText, AMultiStringKeepsTheNulsWithin) {
    const auto textOf = [](std::u16string_view data) {
        return registryTextOf(u"name", RegistryType::multiString, data).text;
    };
    EXPECT_EQ(textOf(u"T\0C:\\a.pfm\0C:\\a.pfb\0\0"sv), u"T\0C:\\a.pfm\0C:\\a.pfb"sv);
    EXPECT_EQ(textOf(u"\0\0\0"sv), u"");
    EXPECT_EQ(textOf({}), u"");
}

TEST(RegisteredFontFile, IsTheWholeTextOfAString) {
    EXPECT_EQ(fileOf(RegistryType::string, u"C:\\fonts\\a.ttf\0"sv), u"C:\\fonts\\a.ttf");
    EXPECT_EQ(fileOf(RegistryType::string, u"a.ttf"sv), u"a.ttf");
    EXPECT_EQ(fileOf(RegistryType::string, u""sv), u"");
}

TEST(RegisteredFontFile, OfAMultiStringIsTheOneTextBehindTheFirstTwoUnits) {
    EXPECT_EQ(fileOf(RegistryType::multiString, u"T\0C:\\a.pfm\0C:\\a.pfb\0\0"sv), u"C:\\a.pfm");
    EXPECT_EQ(fileOf(RegistryType::multiString, u"T\0C:\\a.pfm"sv), u"C:\\a.pfm");
    EXPECT_EQ(fileOf(RegistryType::multiString, u"abcd\0"sv), u"cd") << "whatever the two are";
}

TEST(RegisteredFontFile, OfAMultiStringWithoutASecondTextIsNone) {
    for (const std::u16string_view data : {u""sv, u"\0"sv, u"T"sv, u"T\0"sv, u"T\0\0"sv, u"TT"sv})
        EXPECT_EQ(fileOf(RegistryType::multiString, data), u"");
    EXPECT_EQ(fileOf(RegistryType::multiString, u"T\0\0C:\\a.pfb\0\0"sv), u"")
        << "only that one text is used";
}
