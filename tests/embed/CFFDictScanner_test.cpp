#include "embed/CFFDictScanner.h"

#include "CffOutput.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

TEST(CFFDictScanner, TellsWhereOperatorsAndOperandsStand) {
    const Bytes dict{140, 28, 1, 2, 247, 0, 18, 12, 36, 141, 12, 37};
    CFFDictScanner scan(viewOf(dict));
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.op(), 18);
    EXPECT_EQ(scan.begin(), 0u);
    EXPECT_EQ(scan.end(), 7u);
    EXPECT_EQ(scan.last().begin, 4u);
    EXPECT_EQ(scan.last().end, 6u);
    EXPECT_EQ(scan.last().value, KWValue(108));
    EXPECT_EQ(scan.lastButOne().begin, 1u);
    EXPECT_EQ(scan.lastButOne().value, KWValue(258));
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.op(), cffEscape(36));
    EXPECT_EQ(scan.begin(), 7u);
    EXPECT_EQ(scan.end(), 9u);
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.op(), cffEscape(37));
    EXPECT_EQ(scan.last().value, KWValue(2));
    EXPECT_FALSE(scan.next());
}

TEST(CFFDictScanner, WithoutOperandsTheirPlaceIsThatOfTheOperator) {
    const Bytes dict{140, 1, 16};
    CFFDictScanner scan(viewOf(dict));
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.lastButOne().begin, 0u);
    ASSERT_TRUE(scan.next());
    EXPECT_EQ(scan.begin(), 2u);
    EXPECT_EQ(scan.last().begin, 2u);
    EXPECT_EQ(scan.lastButOne().begin, 2u);
    EXPECT_TRUE(scan.last().value.isNull());
}

TEST(CFFDictScanner, EndsWhereSomethingIsCutOff) {
    for (const Bytes& rest : {Bytes{28, 1}, Bytes{29, 0, 0, 0}, Bytes{30, 0x11}, Bytes{247},
                              Bytes{12}, Bytes{140, 140}, Bytes{}}) {
        const Bytes dict = joined(Bytes{140, 17}, rest);
        CFFDictScanner scan(viewOf(dict));
        EXPECT_TRUE(scan.next());
        EXPECT_FALSE(scan.next());
    }
}

} // namespace
} // namespace KWFontService_NS
