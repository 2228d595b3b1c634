#include "cff/NumberRun.h"

#include "CharStringFixture.h"

#include <gmock/gmock.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> lastOf(const Bytes& charString, const NumberRun& run) {
    std::vector<int> numbers;
    run.visitLast(viewOf(charString), [&numbers](int number) { numbers.push_back(number); });
    return numbers;
}
/// All numbers of a charstring.
NumberRun runOf(const Bytes& charString) {
    NumberRun run;
    CharStringCounts counts;
    CharStringScanner scan(viewOf(charString), counts);
    while (scan.nextOperator([&run](std::size_t at, std::size_t count) { run.add(at, count); })) {
    }
    return run;
}
std::vector<int> lastOf(const Bytes& charString) {
    return lastOf(charString, runOf(charString));
}

TEST(NumberRun, TheLastEightAreVisitedInTheirOrder) {
    EXPECT_THAT(lastOf(Bytes{14}), IsEmpty());
    EXPECT_THAT(lastOf({140, 141, 142, 14}), ElementsAre(1, 2, 3));
    EXPECT_THAT(lastOf({140, 141, 142, 143, 144, 145, 146, 147, 14}),
                ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_THAT(lastOf({139, 140, 141, 142, 143, 144, 145, 146, 147, 14}),
                ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_EQ(runOf({139, 140, 141, 142, 143, 144, 145, 146, 147, 14}).size(), 9U);
}

TEST(NumberRun, OperatorsStandBetweenStretches) {
    EXPECT_THAT(lastOf({140, 21, 141, 142, 143, 5, 5, 144, 145, 146, 147, 148, 14}),
                ElementsAre(2, 3, 4, 5, 6, 7, 8, 9));
    // A stretch for each number, and more of them than are kept.
    Bytes alone;
    for (int i = 1; i <= 20; ++i)
        alone.u8(static_cast<std::uint32_t>(139 + i)).u8(22);
    EXPECT_THAT(lastOf(alone), ElementsAre(13, 14, 15, 16, 17, 18, 19, 20));
}

TEST(NumberRun, NumbersOfEveryFormArePassedAndRead) {
    const Bytes charString{140, 28,  1,  0,   255, 0,   1, 0,   0, 250, 255, 254,
                           255, 142, 28, 255, 255, 247, 0, 251, 0, 145, 146, 14};
    EXPECT_THAT(lastOf(charString), ElementsAre(1131, -1131, 3, -1, 108, -108, 6, 7));
    EXPECT_EQ(runOf(charString).size(), 11U);
}

TEST(NumberRun, ANumberThatIsCutOffIsNone) {
    EXPECT_THAT(lastOf({140, 141, 247}), ElementsAre(1, 2));
    EXPECT_THAT(lastOf({140, 141, 28, 0}), ElementsAre(1, 2));
}

TEST(NumberRun, ClearedItIsEmpty) {
    NumberRun run = runOf({140, 141, 5, 142, 14});
    run.clear();
    EXPECT_EQ(run.size(), 0U);
    EXPECT_THAT(lastOf({143, 14}, run), IsEmpty());
    run.add(0, 1);
    EXPECT_THAT(lastOf({143, 14}, run), ElementsAre(4));
}

} // namespace
} // namespace KWFontService_NS
