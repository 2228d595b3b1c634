#include "type1/Type1CodePage.h"

#include <gtest/gtest.h>

#include <map>
#include <thread>
#include <vector>

namespace KWFontService_NS {
namespace {

struct CharSetRow {
    int charSet;
    int character; // one that no other row has at this code
    int code;
};

class Type1CodePages : public testing::TestWithParam<CharSetRow> {};

TEST_P(Type1CodePages, CharactersGoToTheCodesOfTheCharacterSet) {
    const auto& [charSet, character, code] = GetParam();
    const Type1CodePage& page = Type1CodePage::ofCharSet(static_cast<std::uint8_t>(charSet));
    EXPECT_EQ(page.codeOf(character), code);
    EXPECT_EQ(page.codeOf('A'), 'A');
    EXPECT_EQ(page.codeOf(0x3042), -1);
}

INSTANTIATE_TEST_SUITE_P(
    CharSets, Type1CodePages,
    testing::Values(CharSetRow{161, 0x03B1, 0xE1}, CharSetRow{162, 0x0131, 0xFD},
                    CharSetRow{163, 0x20AB, 0xFE}, CharSetRow{177, 0x05D0, 0xE0},
                    CharSetRow{178, 0x0627, 0xC7}, CharSetRow{186, 0x0101, 0xE2},
                    CharSetRow{204, 0x0410, 0xC0}, CharSetRow{222, 0x0E01, 0xA1},
                    CharSetRow{238, 0x0141, 0xA3}, CharSetRow{0, 0x00F0, 0xF0},
                    CharSetRow{2, 0x00F0, 0xF0}, CharSetRow{128, 0x00F0, 0xF0},
                    CharSetRow{255, 0x00F0, 0xF0}),
    [](const auto& row) { return "charSet" + std::to_string(row.param.charSet); });

TEST(Type1CodePage, CharacterSetsHaveTheirBitsOfOpenType) {
    const std::map<int, int> bits{{0, 0},    {2, 31},   {77, 29}, {128, 17}, {129, 19}, {130, 21},
                                  {134, 18}, {136, 20}, {161, 3}, {162, 4},  {163, 8},  {177, 5},
                                  {178, 6},  {186, 7},  {204, 2}, {222, 16}, {238, 1}};
    for (int charSet = 0; charSet < 256; ++charSet) {
        const auto bit = bits.find(charSet);
        EXPECT_EQ(Type1CodePage::rangeBitOfCharSet(static_cast<std::uint8_t>(charSet)),
                  bit != bits.end() ? 1U << bit->second : 0U)
            << charSet;
    }
}

TEST(Type1CodePage, ACharacterThatDoesNotComeBackHasNoCode) {
    const Type1CodePage& western = Type1CodePage::ofCharSet(0);
    EXPECT_EQ(western.codeOf(0x20AC), 0x80);
    EXPECT_EQ(western.codeOf(0x0101), -1);
    EXPECT_EQ(western.codeOf(0xFFFD), -1);
    EXPECT_EQ(western.codeOf(0x1F600), -1);
    EXPECT_EQ(western.codeOf(0xD83D), -1);
    EXPECT_EQ(western.codeOf(-1), -1);
    // The mark that stands for what is missing is a character as well.
    EXPECT_EQ(western.codeOf(0x1A), 0x1A);
}

TEST(Type1CodePage, APageThatIsNotKnownHasNoCharacters) {
    EXPECT_EQ(Type1CodePage("no such page").codeOf('A'), -1);
}

TEST(Type1CodePage, ThreadsGetTheSamePage) {
    std::vector<const Type1CodePage*> pages(4);
    std::vector<std::thread> threads;
    for (const Type1CodePage*& page : pages)
        threads.emplace_back([&page] { page = &Type1CodePage::ofCharSet(204); });
    for (std::thread& thread : threads)
        thread.join();
    for (const Type1CodePage* page : pages)
        EXPECT_EQ(page, pages[0]);
}

} // namespace
} // namespace KWFontService_NS
