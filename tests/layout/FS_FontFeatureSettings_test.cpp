#include <KWFontService17/FS_FontFeatureSettings.h>

#include <KWFontService17/FS_Functions.h>

#include "support/Rng.h"

#include <KWCommon15/KWNameEnum.h>
#include <KWCommon15/KWParser.h>

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWCommonNS::KWNameEnum;
using KWCommonNS::KWParser;
using KWCommonNS::KWUnitType;
using KWCommonNS::KWValue;

using Features = std::map<std::string, int>;

Features namedFeatures(const FS_FontFeatureSettings& settings) {
    Features named;
    for (const auto& [tag, value] : settings.getFeatures()) {
        std::string name;
        for (int shift = 24; shift >= 0; shift -= 8)
            name.push_back(static_cast<char>(tag >> shift & 0xFF));
        named[name] = value;
    }
    return named;
}

/// What a style sheet would make of a property.
struct Parsed {
    bool valid;
    Features features;

    friend bool operator==(const Parsed&, const Parsed&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Parsed& parsed) {
        out << (parsed.valid ? "valid" : "invalid");
        for (const auto& [name, value] : parsed.features)
            out << " '" << name << "'=" << value;
        return out;
    }
};

Parsed parsed(const KWValue& value) {
    FS_FontFeatureSettings settings;
    const bool valid = settings.setValue(value);
    return {valid, namedFeatures(settings)};
}

Parsed parsed(const char16_t* css) {
    return parsed(KWParser::parse(UnicodeString(css)));
}

TEST(FontFeatureSettings, BeginEmpty) {
    const FS_FontFeatureSettings settings;
    EXPECT_TRUE(settings.isEmpty());
    EXPECT_TRUE(settings.getFeatures().empty());
}

TEST(FontFeatureSettings, SetATagOnce) {
    FS_FontFeatureSettings settings;
    EXPECT_TRUE(settings.setValue(toTAG(u"liga"), 0));
    EXPECT_FALSE(settings.isEmpty());
    EXPECT_EQ(settings.getValue(toTAG(u"liga")), 0);
    EXPECT_FALSE(settings.setValue(toTAG(u"liga"), 1));
    EXPECT_EQ(settings.getValue(toTAG(u"liga")), 0) << "the first setting stays";
    EXPECT_FALSE(settings.setValue(toTAG(u"liga"), 0)) << "the same value as well";
    EXPECT_TRUE(settings.setValue(0xFFFFFFFFU, std::numeric_limits<int>::min()));
    EXPECT_EQ(settings.getValue(0xFFFFFFFFU), std::numeric_limits<int>::min());
    EXPECT_EQ(settings.getFeatures().size(), 2U);
}

TEST(FontFeatureSettings, RefuseTag0) {
    FS_FontFeatureSettings settings;
    EXPECT_FALSE(settings.setValue(0U, 1));
    EXPECT_TRUE(settings.isEmpty());
    EXPECT_EQ(settings.getValue(0), -1);
}

TEST(FontFeatureSettings, AnUnsetTagIsMinus1AndNotOff) {
    FS_FontFeatureSettings settings;
    EXPECT_EQ(settings.getValue(toTAG(u"kern")), -1);
    EXPECT_TRUE(settings.setValue(u"kern", 0));
    EXPECT_EQ(settings.getValue(toTAG(u"kern")), 0);
}

TEST(FontFeatureSettings, SetANameAsItsTag) {
    FS_FontFeatureSettings settings;
    EXPECT_TRUE(settings.setValue(u"smcp", 1));
    EXPECT_TRUE(settings.setValue(u"ss1", 2));
    EXPECT_TRUE(settings.setValue(UnicodeString(), 3)) << "four blanks";
    EXPECT_FALSE(settings.setValue(u"ss1 ", 4)) << "the same tag";
    EXPECT_FALSE(settings.setValue(u"small", 1));
    EXPECT_FALSE(settings.setValue(u"k\u00E9rn", 1));
    EXPECT_EQ(namedFeatures(settings), (Features{{"    ", 3}, {"smcp", 1}, {"ss1 ", 2}}));
}

TEST(FontFeatureSettings, CopiesAreValuesOfTheirOwn) {
    FS_FontFeatureSettings settings;
    settings.setValue(u"liga", 0);
    FS_FontFeatureSettings copy(settings);
    EXPECT_TRUE(copy.setValue(u"smcp", 1));
    EXPECT_EQ(namedFeatures(settings), (Features{{"liga", 0}}));
    EXPECT_EQ(namedFeatures(copy), (Features{{"liga", 0}, {"smcp", 1}}));
    settings = copy;
    EXPECT_EQ(settings.getFeatures(), copy.getFeatures());
    const FS_FontFeatureSettings taken(std::move(copy));
    EXPECT_EQ(taken.getFeatures(), settings.getFeatures());
}

TEST(FontFeatureSettings, NormalIsValidAndChangesNothing) {
    FS_FontFeatureSettings settings;
    settings.setValue(u"liga", 0);
    EXPECT_TRUE(settings.setValue(KWValue(KWNameEnum::Normal)));
    EXPECT_TRUE(settings.setValue(KWParser::parse(u" NORMAL ")));
    EXPECT_EQ(namedFeatures(settings), (Features{{"liga", 0}}));
}

TEST(FontFeatureSettings, AListOfAValueAndALoneName) {
    EXPECT_EQ(parsed(u"\"liga\" 0, \"smcp\""), (Parsed{true, {{"liga", 0}, {"smcp", 1}}}));
    EXPECT_EQ(parsed(u"liga 0, smcp"), (Parsed{true, {{"liga", 0}, {"smcp", 1}}}));
    EXPECT_EQ(parsed(u"'liga' 0,'smcp'"), (Parsed{true, {{"liga", 0}, {"smcp", 1}}}));
}

TEST(FontFeatureSettings, ASettingIsOnOffANumberOrNothing) {
    EXPECT_EQ(parsed(u"\"swsh\" 2"), (Parsed{true, {{"swsh", 2}}}));
    EXPECT_EQ(parsed(u"\"liga\" off"), (Parsed{true, {{"liga", 0}}}));
    EXPECT_EQ(parsed(u"\"liga\" on"), (Parsed{true, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"\"liga\" OFF, \"dlig\" On"), (Parsed{true, {{"liga", 0}, {"dlig", 1}}}));
    EXPECT_EQ(parsed(u"\"liga\""), (Parsed{true, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"liga"), (Parsed{true, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"a /* of */ off /* course */, b"),
              (Parsed{true, {{"a   ", 0}, {"b   ", 1}}}));
}

TEST(FontFeatureSettings, ANumberOfAnyKindCountsByItsWholePart) {
    EXPECT_EQ(parsed(u"\"a\" 2.9, \"b\" -3, \"c\" -3.9, \"d\" +4"),
              (Parsed{true, {{"a   ", 2}, {"b   ", -3}, {"c   ", -3}, {"d   ", 4}}}));
    EXPECT_EQ(parsed(u"\"a\" 5px, \"b\" 70%"), (Parsed{true, {{"a   ", 5}, {"b   ", 70}}}));
    EXPECT_EQ(parsed(u"\"a\" 99999999999999"), (Parsed{true, {{"a   ", 2147483647}}}));
}

TEST(FontFeatureSettings, AnyOtherKeywordIsInvalidAndSets1) {
    EXPECT_EQ(parsed(u"\"liga\" yes, \"smcp\""), (Parsed{false, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"\"liga\" normal"), (Parsed{false, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"\"kern\" 0, \"liga\" true"), (Parsed{false, {{"kern", 0}, {"liga", 1}}}));
}

TEST(FontFeatureSettings, AnythingElseBehindANameSets1AndIsNoComma) {
    EXPECT_EQ(parsed(u"\"liga\" \"smcp\""), (Parsed{false, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"\"liga\" strong"), (Parsed{false, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"\"liga\" 1e3"), (Parsed{false, {{"liga", 1}}})) << "no exponents";
    EXPECT_EQ(parsed(u"\"liga\"; \"smcp\""), (Parsed{false, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"liga=0"), (Parsed{false, {{"liga", 1}}}));
}

TEST(FontFeatureSettings, OnlyACommaFollowsASetting) {
    EXPECT_EQ(parsed(u"\"liga\" 0 \"smcp\""), (Parsed{false, {{"liga", 0}}}));
    EXPECT_EQ(parsed(u"\"liga\" 0 1"), (Parsed{false, {{"liga", 0}}}));
    EXPECT_EQ(parsed(u"\"liga\" off on"), (Parsed{false, {{"liga", 0}}}));
    EXPECT_EQ(parsed(u"\"liga\" 0 /, \"smcp\""), (Parsed{false, {{"liga", 0}}}));
    EXPECT_EQ(parsed(u"\"liga\" 0 \",\""), (Parsed{false, {{"liga", 0}}}))
        << "a quoted comma is none";
}

TEST(FontFeatureSettings, AnEndAfterACommaIsFine) {
    EXPECT_EQ(parsed(u"\"liga\" 0,"), (Parsed{true, {{"liga", 0}}}));
    EXPECT_EQ(parsed(u"\"liga\" , "), (Parsed{true, {{"liga", 1}}}));
}

TEST(FontFeatureSettings, NothingIsValidAndEmpty) {
    EXPECT_EQ(parsed(KWValue()), (Parsed{true, {}}));
    EXPECT_EQ(parsed(u""), (Parsed{true, {}}));
    EXPECT_EQ(parsed(KWValue(UnicodeString(u" /**/ "))), (Parsed{true, {}}));
    EXPECT_EQ(parsed(KWValue(KWNameEnum::None)), (Parsed{true, {}}));
}

// An empty quoted string counts as the end of the text.
TEST(FontFeatureSettings, AnEmptyStringEndsTheListWhereverItStands) {
    EXPECT_EQ(parsed(u"\"\", \"liga\""), (Parsed{true, {}}));
    EXPECT_EQ(parsed(u"\"liga\" \"\", \"smcp\""), (Parsed{true, {{"liga", 1}}}));
    EXPECT_EQ(parsed(u"\"liga\" 0 \"\" nonsense"), (Parsed{true, {{"liga", 0}}}));
    EXPECT_EQ(parsed(u"\"liga\" 0, '' nonsense"), (Parsed{true, {{"liga", 0}}}));
}

TEST(FontFeatureSettings, ARepeatedTagEndsTheListAndTheFirstStays) {
    EXPECT_EQ(parsed(u"\"liga\" 0, \"liga\" 1, \"smcp\""), (Parsed{false, {{"liga", 0}}}));
    FS_FontFeatureSettings settings;
    settings.setValue(u"liga", 0);
    EXPECT_FALSE(settings.setValue(KWParser::parse(u"\"smcp\", \"liga\", \"kern\"")));
    EXPECT_EQ(namedFeatures(settings), (Features{{"liga", 0}, {"smcp", 1}}));
}

TEST(FontFeatureSettings, ANameThatIsNoTagEndsTheList) {
    EXPECT_EQ(parsed(u"\"kern\", \"toolong\" 1, \"smcp\""), (Parsed{false, {{"kern", 1}}}));
    EXPECT_EQ(parsed(u"\"k\u00E9rn\""), (Parsed{false, {}}));
    EXPECT_EQ(parsed(u"normal, \"liga\""), (Parsed{false, {}}));
    EXPECT_EQ(parsed(KWValue(UnicodeString(u"normal"))), (Parsed{false, {}}))
        << "only the keyword is the property's own";
}

TEST(FontFeatureSettings, ANameIsATokenOfAnyKindByItsText) {
    EXPECT_EQ(parsed(u"on on, off off"), (Parsed{true, {{"on  ", 1}, {"off ", 0}}}));
    EXPECT_EQ(parsed(u"ON"), (Parsed{true, {{"on  ", 1}}})) << "keywords have one spelling";
    EXPECT_EQ(parsed(u"12 3, #ab, @cd"), (Parsed{true, {{"12  ", 3}, {"#ab ", 1}, {"@cd ", 1}}}));
    EXPECT_EQ(parsed(u"ss\\31  2"), (Parsed{true, {{"ss1 ", 2}}})) << "escapes are resolved";
    EXPECT_EQ(parsed(u", liga"), (Parsed{false, {{",   ", 1}}})) << "a comma in a name's place";
}

// The property may have been a lone string; its quotes are gone by then.
TEST(FontFeatureSettings, ALoneStringIsReadAsAListOfItsOwn) {
    EXPECT_EQ(parsed(u"\"liga 0, smcp\""), (Parsed{true, {{"liga", 0}, {"smcp", 1}}}));
    EXPECT_EQ(parsed(KWValue(UnicodeString(u"liga off"))), (Parsed{true, {{"liga", 0}}}));
}

TEST(FontFeatureSettings, ValuesOfOtherKindsAreReadByTheirText) {
    EXPECT_EQ(parsed(KWValue(12)), (Parsed{true, {{"12  ", 1}}}));
    EXPECT_EQ(parsed(KWValue(true)), (Parsed{true, {{"true", 1}}}));
    EXPECT_EQ(parsed(KWValue(5.0, KWUnitType::Px)), (Parsed{true, {{"5px ", 1}}}));
    EXPECT_EQ(parsed(KWValue(KWNameEnum::On)), (Parsed{true, {{"on  ", 1}}}));
    KWValue list;
    list.setNamedItem(KWNameEnum::On, UnicodeString(u"liga"));
    list.setNamedItem(KWNameEnum::True, 0);
    EXPECT_FALSE(list.isNull());
    EXPECT_EQ(parsed(list).features.size(), 1U);
}

TEST(FontFeatureSettings, ALongListIsReadInOnePass) {
    UnicodeString css;
    constexpr int kCount = 60'000;
    constexpr std::u16string_view kLetters = u"abcdefghijklmnopqrstuvwxyz";
    for (int i = 0; i < kCount; ++i) {
        if (i > 0)
            css.append(u',');
        for (int place = 0, rest = i; place < 4; ++place, rest /= 26)
            css.append(kLetters[static_cast<std::size_t>(rest % 26)]);
        css.append(u' ').append(u'7');
    }
    FS_FontFeatureSettings settings;
    EXPECT_TRUE(settings.setValue(KWParser::parse(css)));
    EXPECT_EQ(settings.getFeatures().size(), static_cast<std::size_t>(kCount));
    EXPECT_FALSE(settings.setValue(KWParser::parse(css))) << "stops at the first";
}

TEST(FontFeatureSettings, NoTextLeavesATag0OrChangesWhatIsSet) {
    constexpr std::u16string_view kPieces[] = {
        u"liga", u"\"smcp\"", u"''",   u",", u",",      u" ",  u"0",  u"1.5",
        u"on",   u"off",      u"yes",  u"(", u"url(x",  u"\\", u"\"", u"normal",
        u"/*",   u"\xD800",   u"U+4?", u";", u"\xFFFF", u"-",  u"@x", u"\"toolong\"",
    };
    KWTest::Rng rng(7);
    for (int round = 0; round < 3000; ++round) {
        UnicodeString css;
        for (std::uint32_t count = rng.below(9); count > 0; --count) {
            const auto piece = kPieces[rng.below(static_cast<std::uint32_t>(std::size(kPieces)))];
            css.append(piece.data(), static_cast<std::int32_t>(piece.size()));
        }
        FS_FontFeatureSettings settings;
        settings.setValue(u"liga", 5);
        const bool valid = settings.setValue(KWValue(css, KWUnitType::List));
        EXPECT_EQ(settings.getValue(toTAG(u"liga")), 5);
        EXPECT_EQ(settings.getFeatures().count(0), 0U);
        FS_FontFeatureSettings again;
        again.setValue(u"liga", 5);
        EXPECT_EQ(again.setValue(KWValue(css, KWUnitType::List)), valid);
        EXPECT_EQ(again.getFeatures(), settings.getFeatures());
    }
}

} // namespace
} // namespace KWFontService_NS
