#include "fonts/SfntFixture.h"

#include <unicode/locid.h>

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr KWLang::LanguageID kEnglish = 1033;
constexpr KWLang::LanguageID kJapanese = 1041;
constexpr KWLang::LanguageID kGerman = 1031;

class NamesTest : public testing::Test {
protected:
    /// Reads a `name` table of these records as the table of a scanned font.
    const TTI_Names& read(std::vector<NameRecord> records, bool macFont = false) {
        return readTable(Name{.records = std::move(records)}.build(), macFont);
    }
    const TTI_Names& readTable(const Bytes& table, bool macFont = false) {
        names = TTI_Names();
        error = KWError();
        std::istringstream stream(table.str());
        const TTI_Directory directory;
        SfntReader reader(stream, directory, error, nullptr);
        ok = names.read(reader, {sfntTag("name"), 0, 0, static_cast<std::uint32_t>(table.size())},
                        macFont);
        return names;
    }
    UnicodeString family(KWLang::LanguageID language) const {
        return names.get(language, TTI_Names::Family);
    }

    TTI_Names names;
    KWError error;
    bool ok = false;
};

TEST_F(NamesTest, EachNameIdHasItsField) {
    struct Row {
        std::uint16_t nameId;
        TTI_Names::Which which;
    };
    const Row rows[] = {{1, TTI_Names::Family},
                        {2, TTI_Names::SubFamily},
                        {3, TTI_Names::UniqueId},
                        {4, TTI_Names::Full},
                        {6, TTI_Names::PostScript},
                        {16, TTI_Names::PreferredFamily},
                        {17, TTI_Names::PreferredSubFamily},
                        {20, TTI_Names::CidFindfont},
                        {0, TTI_Names::Copyright},
                        {8, TTI_Names::Manufacturer},
                        {13, TTI_Names::License}};
    std::vector<NameRecord> records;
    for (const Row& row : rows)
        records.push_back(
            windowsName(row.nameId, u"n" + std::u16string(1, char16_t('a' + row.nameId))));
    records.push_back(windowsName(5, u"version"));
    read(records);
    ASSERT_TRUE(ok);
    for (const Row& row : rows) {
        UnicodeString expected(u"n");
        expected.append(static_cast<char16_t>('a' + row.nameId));
        EXPECT_EQ(names.get(kEnglish, row.which), expected) << row.nameId;
    }
}

TEST_F(NamesTest, TheFirstRecordOfALanguageAndIdWins) {
    read({windowsName(1, u"First"), windowsName(1, u"Second")});
    EXPECT_EQ(family(kEnglish), UnicodeString("First"));
}

TEST_F(NamesTest, AnEmptyNameDoesNotKeepALaterOneOut) {
    read({windowsName(1, u""), windowsName(1, u"Second")});
    EXPECT_EQ(family(kEnglish), UnicodeString("Second"));
}

TEST_F(NamesTest, AControlCharacterDropsTheRecordAndALaterOneMayFillTheField) {
    for (const char16_t control : {u'\x09', u'\x1F', u'\x7F', u'\x9F'}) {
        read({windowsName(1, std::u16string(u"Ba") + control), windowsName(1, u"Good")});
        EXPECT_EQ(family(kEnglish), UnicodeString("Good")) << int{control};
    }
    read({windowsName(1, u"Fine\u00A0"), windowsName(1, u"Other")});
    EXPECT_EQ(family(kEnglish), UnicodeString(u"Fine\u00A0"));
}

TEST_F(NamesTest, ARecordDroppedForAControlCharacterIsNoName) {
    read({windowsName(1, u"Ba\u0009d")});
    EXPECT_FALSE(ok);
    EXPECT_EQ(complaintOf(error), fileError("'name' table has no font name"));
}

TEST_F(NamesTest, AUtf16NameEndsAtItsFirstNul) {
    read({windowsName(1, std::u16string(u"Ab\0cd", 5))});
    EXPECT_EQ(family(kEnglish), UnicodeString("Ab"));
    read({windowsName(1, std::u16string(u"Ab\0\x09", 4))});
    EXPECT_EQ(family(kEnglish), UnicodeString("Ab")) << "nothing behind the NUL is looked at";
}

TEST_F(NamesTest, AnOddLengthIsReducedByOne) {
    NameRecord record = windowsName(1, u"Abc");
    record.length = 5;
    read({record});
    EXPECT_EQ(family(kEnglish), UnicodeString("Ab"));
}

TEST_F(NamesTest, AnOddByteBehindTheEndOfTheFileIsNotMissed) {
    NameRecord record = windowsName(1, u"Abc");
    record.length = 7;
    read({record});
    EXPECT_EQ(family(kEnglish), UnicodeString("Abc"));
}

TEST_F(NamesTest, WindowsRecordsWithoutALanguageAreSkipped) {
    read({windowsName(1, u"No", 0), windowsName(1, u"Yes")});
    EXPECT_EQ(names.languages(), std::vector<KWLang::LanguageID>{kEnglish});
}

TEST_F(NamesTest, WindowsEncodingTenIsNotRead) {
    read({windowsName(1, u"Full", kEnglish, 10), windowsName(6, u"Full", kEnglish, 10)});
    EXPECT_EQ(complaintOf(error), fileError("'name' table has no font name"));
}

TEST_F(NamesTest, WindowsEncodingTenWithAMacintoshFamilyIsNamedByThat) {
    read({windowsName(1, u"Full", kEnglish, 10), macName(1, "Mac")});
    EXPECT_TRUE(ok);
    EXPECT_EQ(names.get(0, TTI_Names::Family), UnicodeString("Mac"));
}

TEST_F(NamesTest, OtherPlatformsAreSkipped) {
    NameRecord unicode = windowsName(1, u"Unicode");
    unicode.platformID = 0;
    NameRecord iso = windowsName(1, u"Iso");
    iso.platformID = 2;
    read({unicode, iso});
    EXPECT_FALSE(ok);
}

TEST_F(NamesTest, LegacyEncodingsAreBytesInUnits) {
    struct Row {
        std::uint16_t encoding;
        const char* bytes;
        const char16_t* text;
    };
    const Row rows[] = {{2, "\x82\xA0", u"\u3042"},  // Shift JIS
                        {3, "\xB0\xA1", u"\u554A"},  // GB 2312
                        {4, "\xA4\xA4", u"\u4E2D"},  // Big5
                        {5, "\xB0\xA1", u"\uAC00"}}; // Wansung
    for (const Row& row : rows) {
        read({windowsBytesName(1, row.bytes, row.encoding, kJapanese)});
        EXPECT_EQ(family(kJapanese), UnicodeString(row.text)) << row.encoding;
    }
}

TEST_F(NamesTest, ALegacyEncodingWithAWideUnitIsUtf16AfterAll) {
    read({windowsName(1, u"A\u3042", kJapanese, 2)});
    EXPECT_EQ(family(kJapanese), UnicodeString(u"A\u3042"));
    read({windowsName(1, u"\u3042\u0009", kJapanese, 2), windowsName(1, u"Next", kJapanese, 2)});
    EXPECT_EQ(family(kJapanese), UnicodeString("Next"));
}

TEST_F(NamesTest, MacintoshNamesAreDecodedByTheirScript) {
    struct Row {
        std::uint16_t encoding;
        const char* bytes;
        const char16_t* text;
    };
    const Row rows[] = {{0, "Caf\xE9", u"Caf\u00E9"}, // read as Windows Latin
                        {1, "\x82\xA0", u"\u3042"},
                        {2, "\xA4\xA4", u"\u4E2D"},
                        {3, "\xB0\xA1", u"\uAC00"},
                        {25, "\xB0\xA1", u"\u554A"}};
    for (const Row& row : rows) {
        read({macName(1, row.bytes, 11, row.encoding)});
        EXPECT_EQ(family(11), UnicodeString(row.text)) << row.encoding;
    }
    read({macName(1, "Greek", 14, 6)});
    EXPECT_FALSE(ok) << "other Macintosh scripts are not read";
}

TEST_F(NamesTest, MacintoshNamesCountWithTheirFamilyAloneAtFirst) {
    read({macName(1, "Family"), macName(2, "Bold"), macName(4, "Full"), macName(6, "Post"),
          macName(20, "Cid")});
    EXPECT_TRUE(ok);
    EXPECT_EQ(names.get(0, TTI_Names::Family), UnicodeString("Family"));
    EXPECT_EQ(names.get(0, TTI_Names::CidFindfont), UnicodeString("Cid"));
    EXPECT_EQ(names.get(0, TTI_Names::SubFamily), UnicodeString());
    EXPECT_EQ(names.get(0, TTI_Names::PostScript), UnicodeString());
}

TEST_F(NamesTest, WithoutAFamilyTheSecondRoundTakesEveryMacintoshName) {
    read({macName(2, "Bold"), macName(4, "Full"), macName(6, "Post"), macName(17, "Sub")});
    EXPECT_TRUE(ok);
    EXPECT_EQ(names.get(0, TTI_Names::SubFamily), UnicodeString("Bold"));
    EXPECT_EQ(names.get(0, TTI_Names::Full), UnicodeString("Full"));
    EXPECT_EQ(names.get(0, TTI_Names::PostScript), UnicodeString("Post"));
    EXPECT_EQ(names.get(0, TTI_Names::PreferredSubFamily), UnicodeString("Sub"));
}

TEST_F(NamesTest, AMacintoshFontStartsWithTheSecondRound) {
    read({macName(1, "Family"), macName(2, "Bold"), macName(0, "Copyright")}, true);
    EXPECT_EQ(names.get(0, TTI_Names::SubFamily), UnicodeString("Bold"));
    EXPECT_EQ(names.get(0, TTI_Names::Copyright), UnicodeString()) << "never from the Macintosh";
}

TEST_F(NamesTest, OnlyFamilyUniqueIdPostScriptAndPreferredFamilyCountAsAName) {
    for (const std::uint16_t nameId : std::initializer_list<std::uint16_t>{1, 3, 6, 16}) {
        read({windowsName(nameId, u"Name")});
        EXPECT_TRUE(ok) << nameId;
    }
    for (const std::uint16_t nameId :
         std::initializer_list<std::uint16_t>{0, 2, 4, 8, 13, 17, 20}) {
        read({windowsName(nameId, u"Name")});
        EXPECT_FALSE(ok) << nameId;
    }
}

TEST_F(NamesTest, SymbolNamesOnlyWhenEveryWindowsNameIsOfTheSymbolEncoding) {
    EXPECT_TRUE(read({windowsName(1, u"Signs", kEnglish, 0)}).symbolNamesOnly());
    EXPECT_FALSE(
        read({windowsName(1, u"Signs", kEnglish, 0), windowsName(4, u"Signs", kEnglish, 1)})
            .symbolNamesOnly());
    EXPECT_FALSE(read({windowsName(1, u"Text")}).symbolNamesOnly());
    EXPECT_FALSE(read({macName(1, "Text")}).symbolNamesOnly());
}

TEST_F(NamesTest, ALanguageIsAnsweredExactlyOrNotAtAll) {
    read({windowsName(1, u"English"), windowsName(1, u"Deutsch", kGerman)});
    names.chooseDefault(kEnglish);
    EXPECT_EQ(family(kGerman), UnicodeString("Deutsch"));
    EXPECT_EQ(family(kJapanese), UnicodeString());
}

TEST_F(NamesTest, TheDefaultIsTheSystemLanguageThenEnglishThenTheLowest) {
    read({windowsName(1, u"English"), windowsName(1, u"Deutsch", kGerman)});
    names.chooseDefault(kGerman);
    EXPECT_EQ(family(0), UnicodeString("Deutsch"));
    names.chooseDefault(kJapanese);
    EXPECT_EQ(family(0), UnicodeString("English"));
    read({windowsName(1, u"Nihongo", kJapanese), windowsName(1, u"Deutsch", kGerman)});
    names.chooseDefault(kEnglish);
    EXPECT_EQ(family(0), UnicodeString("Deutsch"));
}

TEST_F(NamesTest, ASystemLanguageWithoutANumberIsNotMacintoshEnglish) {
    read({windowsName(1, u"Windows"), macName(1, "Macintosh")});
    names.chooseDefault(0);
    EXPECT_EQ(family(0), UnicodeString("Windows"));
}

TEST_F(NamesTest, AnEnglishPostScriptNameGoesBeforeTheChosenLanguage) {
    read({windowsName(6, u"English-PS"), windowsName(1, u"Deutsch", kGerman),
          windowsName(6, u"Deutsch-PS", kGerman)});
    names.chooseDefault(kGerman);
    EXPECT_EQ(names.get(0, TTI_Names::Family), UnicodeString("Deutsch"));
    EXPECT_EQ(names.get(0, TTI_Names::PostScript), UnicodeString("English-PS"));
    EXPECT_EQ(names.get(kGerman, TTI_Names::PostScript), UnicodeString("Deutsch-PS"));
}

TEST_F(NamesTest, AnEmptyDefaultFallsBackToEnglishThenToTheLowestLanguage) {
    read({windowsName(1, u"Deutsch", kGerman), windowsName(1, u"English"),
          windowsName(4, u"English Full"), windowsName(2, u"Futsuu", kJapanese),
          windowsName(4, u"Full J", kJapanese)});
    names.chooseDefault(kGerman);
    EXPECT_EQ(names.get(0, TTI_Names::Full), UnicodeString("English Full"));
    EXPECT_EQ(names.get(0, TTI_Names::SubFamily), UnicodeString("Futsuu"));
    EXPECT_EQ(names.get(0, TTI_Names::License), UnicodeString());
    EXPECT_EQ(names.getDefault(TTI_Names::Full), UnicodeString()) << "no fallback";
}

TEST_F(NamesTest, AGivenPostScriptNameReplacesTheDefaultOneAlone) {
    read({windowsName(6, u"Own-PS")});
    names.chooseDefault(kEnglish);
    names.setDefaultPostScript("Given-PS");
    EXPECT_EQ(names.get(0, TTI_Names::PostScript), UnicodeString("Given-PS"));
    EXPECT_EQ(names.get(kEnglish, TTI_Names::PostScript), UnicodeString("Own-PS"));
}

TEST_F(NamesTest, ATableCutOffInItsHeaderIsAReadError) {
    readTable(Name::english(u"A").build().truncate(5));
    EXPECT_EQ(complaintOf(error), readError("'name' table read error"));
}

TEST_F(NamesTest, ATableWithoutRecordsIsNamedSo) {
    readTable(Name{}.build());
    EXPECT_EQ(complaintOf(error), fileError("nameTable.count = 0"));
}

TEST_F(NamesTest, RecordsCutOffAreAReadError) {
    readTable(Name::english(u"A").build().truncate(6 + 12 * 4 + 11));
    EXPECT_EQ(complaintOf(error), readError("nameRecord read error"));
}

TEST_F(NamesTest, AStringOutsideTheFileIsNoName) {
    NameRecord outside = windowsName(1, u"Outside");
    outside.offset = 0xFFFF;
    read({outside, windowsName(1, u"Inside")});
    EXPECT_EQ(family(kEnglish), UnicodeString("Inside"));
}

TEST_F(NamesTest, RecordsThatShareTheirBytesDoNotMultiplyThem) {
    // 60,000 records of 60,000 bytes each, all the same bytes: 3.6 GB of names if taken at face
    // value.
    Bytes table;
    constexpr std::uint16_t kCount = 60000;
    table.u16(0).u16(kCount).u16(0);
    for (std::uint32_t i = 0; i < kCount; ++i)
        table.u16(3).u16(1).u16(i + 1).u16(1).u16(60000).u16(0);
    readTable(table);
    std::size_t units = 0;
    for (const KWLang::LanguageID language : names.languages())
        units += static_cast<std::size_t>(family(language).length());
    EXPECT_LE(units * 2, std::size_t{4} << 20);
}

TEST(TrueTypeNames, TheDefaultLanguageIsThatOfTheProcess) {
    TestFont file = TestFont::latin();
    file.name = {.records = {windowsName(1, u"English"), windowsName(6, u"English"),
                             windowsName(1, u"Deutsch", kGerman)}};
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale before = icu::Locale::getDefault();
    icu::Locale::setDefault(icu::Locale::getGermany(), status);
    MemoryFont german(file.build());
    EXPECT_TRUE(german.scan());
    icu::Locale::setDefault(icu::Locale::getUS(), status);
    MemoryFont english(file.build());
    EXPECT_TRUE(english.scan());
    icu::Locale::setDefault(before, status);
    EXPECT_EQ(german->getFamilyName(0, 0), UnicodeString("Deutsch"));
    EXPECT_EQ(english->getFamilyName(0, 0), UnicodeString("English"));
}

} // namespace
} // namespace KWFontService_NS
