#include "platform/Platform.h"
#include "platform/windows/WindowsHeader.h"
#include "support/RegistrySandbox.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

using KWPlatform::RegistryHive;
using KWPlatform::RegistryText;
using KWPlatform::RegistryType;
using KWTest::RegistrySandbox;
using namespace std::string_view_literals;

namespace {

constexpr auto kMachine = RegistrySandbox::Hive::localMachine;
constexpr auto kUser = RegistrySandbox::Hive::currentUser;

const std::u16string kFonts = u"software\\microsoft\\windows nt\\currentversion\\Fonts";
const std::u16string kType1 =
    u"software\\microsoft\\windows nt\\currentversion\\Type 1 Installer\\Type 1 Fonts";

KWPlatform::System& native() {
    return KWPlatform::nativeSystem();
}

std::vector<std::u16string> textsOf(const std::vector<RegistryText>& values) {
    std::vector<std::u16string> texts;
    for (const RegistryText& value : values)
        texts.push_back(value.text);
    return texts;
}

} // namespace

TEST(Registry, AMissingKeyOrValueIsNoText) {
    const RegistrySandbox registry;
    EXPECT_TRUE(native().registryTexts(RegistryHive::localMachine, kFonts).empty());
    EXPECT_FALSE(native().registryText(RegistryHive::currentUser, u"EUDC\\932", u"x"));
    registry.makeKey(kUser, u"EUDC\\932");
    EXPECT_FALSE(native().registryText(RegistryHive::currentUser, u"EUDC\\932", u"x"));
    EXPECT_TRUE(native().registryTexts(RegistryHive::currentUser, u"EUDC\\932").empty());
    EXPECT_TRUE(native()
                    .registryTexts(RegistryHive::currentUser, std::u16string(u"EUDC\0\\932", 9))
                    .empty());
}

TEST(Registry, ValuesOfOtherTypesArePassedOver) {
    const RegistrySandbox registry;
    registry.setText(kMachine, kFonts, u"expanded", u"%WINDIR%\\a.ttf", REG_EXPAND_SZ);
    registry.setBytes(kMachine, kFonts, u"number", REG_DWORD, "\1\0\0\0"sv);
    registry.setBytes(kMachine, kFonts, u"binary", REG_BINARY, "C\0:\0"sv);
    registry.setBytes(kMachine, kFonts, u"none", REG_NONE, "");
    registry.setText(kMachine, kFonts, u"text", u"C:\\a.ttf");
    const auto values = native().registryTexts(RegistryHive::localMachine, kFonts);
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(values[0].name, u"text");
    EXPECT_EQ(values[0].type, RegistryType::string);
    EXPECT_EQ(values[0].text, u"C:\\a.ttf");
    for (const char16_t* name : {u"expanded", u"number", u"binary", u"none"})
        EXPECT_FALSE(native().registryText(RegistryHive::localMachine, kFonts, name));
}

TEST(Registry, DataNeedNeitherEndInNulNorHaveAnEvenLength) {
    const RegistrySandbox registry;
    registry.setBytes(kUser, u"k", u"open", REG_SZ, "a\0b\0"sv);
    registry.setBytes(kUser, u"k", u"odd", REG_SZ, "a\0b\0c"sv);
    registry.setBytes(kUser, u"k", u"empty", REG_SZ, "");
    registry.setBytes(kUser, u"k", u"multi", REG_MULTI_SZ, "T\0\0\0a\0"sv);
    const auto textOf = [](const char16_t* name) {
        return native().registryText(RegistryHive::currentUser, u"k", name).value().text;
    };
    EXPECT_EQ(textOf(u"open"), u"ab");
    EXPECT_EQ(textOf(u"odd"), u"ab");
    EXPECT_EQ(textOf(u"empty"), u"");
    EXPECT_EQ(textOf(u"multi"), u"T\0a"sv);
    EXPECT_EQ(textsOf(native().registryTexts(RegistryHive::currentUser, u"k")).size(), 4U);
}

TEST(Registry, NamesAndTextsHaveAnyLengthAndAnyCharacters) {
    const RegistrySandbox registry;
    const std::u16string longName(200, u'\u540D');
    const std::u16string longText = u"C:\\" + std::u16string(5000, u'\u8868') + u"\U0001F600";
    registry.setText(kMachine, kFonts, u"", u"default value");
    registry.setText(kMachine, kFonts, longName, longText);
    const auto values = native().registryTexts(RegistryHive::localMachine, kFonts);
    ASSERT_EQ(values.size(), 2U);
    EXPECT_EQ(values[0].name, u"");
    EXPECT_EQ(values[1].name, longName);
    EXPECT_EQ(values[1].text, longText);
    EXPECT_EQ(native().registryText(RegistryHive::localMachine, kFonts, longName)->text, longText);
}

TEST(Registry, EudcLinksOfEveryCodePageAndTheRangesAreRead) {
    const RegistrySandbox registry;
    for (const char16_t* codePage : {u"932", u"936", u"949", u"950"}) {
        const std::u16string key = std::u16string(u"EUDC\\") + codePage;
        registry.setText(kUser, key, u"SystemDefaultEUDCFont", u"EUDC.TTE");
        registry.setText(kUser, key, u"\uFF2D\uFF33 \u660E\u671D", u"C:\\mincho.tte");
        const auto system =
            native().registryText(RegistryHive::currentUser, key, u"systemdefaulteudcfont");
        ASSERT_TRUE(system) << "names have no case";
        EXPECT_EQ(system->text, u"EUDC.TTE");
        EXPECT_EQ(textsOf(native().registryTexts(RegistryHive::currentUser, key)),
                  (std::vector<std::u16string>{u"EUDC.TTE", u"C:\\mincho.tte"}));
    }
    const std::u16string ranges =
        u"System\\CurrentControlSet\\Control\\NLS\\CodePage\\EUDCCodeRange";
    registry.setText(kMachine, ranges, u"Unicode", u"E000-E7FF,F000");
    EXPECT_EQ(native().registryText(RegistryHive::localMachine, ranges, u"Unicode")->text,
              u"E000-E7FF,F000");
}

TEST(RegisteredFontFiles, AreTheTextsOfBothListsWhateverTheyName) {
    const RegistrySandbox registry;
    registry.setText(kMachine, kFonts, u"Absolute (TrueType)", u"C:\\fonts\\a.ttf");
    registry.setText(kMachine, kFonts, u"Bare (TrueType)", u"arial.ttf");
    registry.setText(kMachine, kFonts, u"Missing (TrueType)", u"Q:\\nowhere\\b.ttf");
    registry.setText(kMachine, kFonts, u"Multi", u"T\0C:\\c.ttf\0C:\\d.ttf\0"sv, REG_MULTI_SZ);
    registry.setText(kMachine, kFonts, u"Empty", u"");
    registry.setBytes(kMachine, kFonts, u"Number", REG_DWORD, "\1\0\0\0"sv);
    registry.setText(kMachine, kType1, u"One", u"T\0C:\\one.pfm\0C:\\one.pfb\0"sv, REG_MULTI_SZ);
    registry.setText(kMachine, kType1, u"Two", u"C:\\two.pfm");
    const std::vector<std::u16string> fonts{u"C:\\fonts\\a.ttf", u"arial.ttf",
                                            u"Q:\\nowhere\\b.ttf", u"C:\\c.ttf"};
    const std::vector<std::u16string> type1{u"C:\\one.pfm", u"C:\\two.pfm"};
    const KWPlatform::RegisteredFontFiles files = native().registeredFontFiles();
    EXPECT_EQ(files.fonts, fonts);
    EXPECT_EQ(files.type1, type1);
}
