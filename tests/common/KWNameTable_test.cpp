#include "KWCommon15/KWNameTable.h"

#include "KWCommon15/KWTokenizer.h"
#include "common/ValueText.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

using namespace KWCommonNS;
using KWTest::utf8;

namespace {

struct CommonName {
    int number;
    KWNameEnum name;
    const char* text;
};

constexpr CommonName kNames[] = {
    {1098, KWNameEnum::Normal, "normal"}, {1120, KWNameEnum::False, "false"},
    {1121, KWNameEnum::No, "no"},         {1122, KWNameEnum::True, "true"},
    {1123, KWNameEnum::Yes, "yes"},       {2358, KWNameEnum::Off, "off"},
    {2360, KWNameEnum::On, "on"},
};

TEST(KWNameTable, CommonNamesHaveTheirNumbersAndTexts) {
    for (const CommonName& row : kNames) {
        EXPECT_EQ(static_cast<int>(row.name), row.number);
        EXPECT_EQ(utf8(KWNameTable::getSharedNameString(row.name)), row.text);
        EXPECT_EQ(KWNameTable::findCommonName(row.text), row.name);
        EXPECT_EQ(KWNameTable::intern(row.text), row.name);
    }
}

TEST(KWNameTable, OtherNumbersHaveNoText) {
    for (const int number : {0, 1, 165, 1023, 1097, 2359, 0xFFFF, 0x7FFFFFFF, -1})
        EXPECT_TRUE(KWNameTable::getSharedNameString(static_cast<KWNameEnum>(number)).isEmpty())
            << number;
}

TEST(KWNameTable, CommonNamesAreFoundExactlyKeywordsInEitherCase) {
    EXPECT_EQ(KWNameTable::findCommonName(u"Normal"), KWNameEnum::None);
    EXPECT_EQ(KWNameTable::findKeyword(u"NorMAL"), KWNameEnum::Normal);
    EXPECT_EQ(KWNameTable::findKeyword(u"normally"), KWNameEnum::None);
    EXPECT_EQ(KWNameTable::findKeyword(u""), KWNameEnum::None);
}

TEST(KWNameTable, KeywordsFoldAsciiOnly) {
    EXPECT_EQ(KWNameTable::findKeyword(u"fal\u017Fe"), KWNameEnum::None); // long s
}

TEST(KWNameTable, InternedNamesBeginBehindTheFixedOnes) {
    const KWNameEnum name = KWNameTable::intern(u"a word that is interned");
    EXPECT_GE(static_cast<int>(name), 0x10000);
    EXPECT_EQ(KWNameTable::intern(u"a word that is interned"), name);
    EXPECT_EQ(KWNameTable::intern(u""), KWNameEnum::None);
}

TEST(KWNameTable, LookingUpInternsNothing) {
    const auto before = static_cast<int>(KWNameTable::intern(u"one word before"));
    EXPECT_EQ(KWNameTable::findCommonName(u"a word nobody interned"), KWNameEnum::None);
    EXPECT_EQ(KWNameTable::findKeyword(u"a word nobody interned"), KWNameEnum::None);
    KWTokenizer tokenizer(u"words from outside 'and strings' #and-hashes");
    while (!tokenizer.nextTokenValue().isNull()) {
    }
    EXPECT_EQ(static_cast<int>(KWNameTable::intern(u"the next word")), before + 1);
}

TEST(KWNameTable, ManyThreadsAgreeOnEveryName) {
    constexpr int kWords = 500;
    std::vector<std::vector<KWNameEnum>> names(4);
    std::vector<std::thread> threads;
    for (auto& own : names) {
        threads.emplace_back([&own] {
            for (int i = 0; i < kWords; ++i) {
                const UnicodeString word(("thread word " + std::to_string(i)).c_str());
                own.push_back(KWNameTable::intern(word));
                if (KWNameTable::getSharedNameString(own.back()) != word)
                    own.push_back(KWNameEnum::None);
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    ASSERT_EQ(names[0].size(), std::size_t{kWords});
    for (const auto& own : names)
        EXPECT_EQ(own, names[0]);
}

} // namespace
