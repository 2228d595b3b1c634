#include "KWCommon15/KWNamedValue.h"

#include "common/ValueText.h"

#include <gtest/gtest.h>

using namespace KWCommonNS;
using KWTest::describe;

namespace {

KWName key(int number) {
    return static_cast<KWNameEnum>(number);
}

std::string keysOf(const KWNamedValueMap& map) {
    std::string out;
    for (const KWNamedValue& entry : map)
        out += std::to_string(static_cast<int>(KWNameEnum(entry.name))) + " ";
    return out;
}

TEST(KWNamedValueMap, EntriesStandInOrderOfTheirNumbers) {
    KWNamedValueMap map;
    for (const int number : {30, 2, 100, 1, 31})
        map.set(key(number), number * 10);
    EXPECT_EQ(keysOf(map), "1 2 30 31 100 ");
    EXPECT_EQ(map.size(), 5U);
    EXPECT_EQ(map.get(key(31)).getIntegerValue(), 310);
}

TEST(KWNamedValueMap, ANameHoldsOneValue) {
    KWNamedValueMap map;
    map.set(key(5), 1);
    map.set(key(5), 2);
    EXPECT_EQ(map.size(), 1U);
    EXPECT_EQ(map.get(key(5)).getIntegerValue(), 2);
}

TEST(KWNamedValueMap, AMissingEntryIsNull) {
    KWNamedValueMap map;
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(&map.get(key(1)), &NULL_VALUE);
    map.set(key(2), 2);
    EXPECT_TRUE(map.get(key(1)).isNull());
    EXPECT_TRUE(map.get(key(3)).isNull());
}

TEST(KWNamedValueMap, SettingNullRemoves) {
    KWNamedValueMap map;
    map.set(key(1), 1);
    map.set(key(2), 2);
    map.set(key(1), KWValue());
    map.set(key(9), KWValue());
    EXPECT_EQ(keysOf(map), "2 ");
}

TEST(KWNamedValueMap, IteratorsReachFromTheFirstEntryToBehindTheLast) {
    KWNamedValueMap map;
    EXPECT_TRUE(map.begin() == map.end());
    map.set(key(7), 70);
    map.set(key(3), 30);
    EXPECT_EQ(map.begin()->name, key(3));
    EXPECT_EQ(map.end() - map.begin(), 2);
}

TEST(KWNamedValueMap, MapsCompareEntryByEntry) {
    KWNamedValueMap a;
    KWNamedValueMap b;
    a.set(key(1), 1);
    a.set(key(2), 2);
    b.set(key(2), 2);
    EXPECT_NE(a, b);
    b.set(key(1), 1.0);
    EXPECT_EQ(a, b);
    b.set(key(1), 3);
    EXPECT_NE(a, b);
}

TEST(KWNamedValueMapIterator, VisitsEveryEntryOnce) {
    KWNamedValueMap map;
    map.set(key(7), 70);
    map.set(key(3), 30);
    KWNamedValueMapIterator it(map);
    ASSERT_TRUE(it.hasNext());
    ASSERT_TRUE(it.next());
    EXPECT_EQ(it.getName(), key(3));
    EXPECT_EQ(describe(it.getValue()), "int:30");
    ASSERT_TRUE(it.hasNext());
    ASSERT_TRUE(it.next());
    EXPECT_EQ(it.getName(), key(7));
    EXPECT_EQ(describe(it.getValue()), "int:70");
    EXPECT_FALSE(it.hasNext());
    EXPECT_FALSE(it.next());
}

TEST(KWNamedValueMapIterator, HasNoEntryBeforeTheFirstAndBehindTheLast) {
    KWNamedValueMap map;
    map.set(key(7), 70);
    KWNamedValueMapIterator it(map);
    EXPECT_TRUE(it.getName().isEmpty());
    EXPECT_TRUE(it.getValue().isNull());
    it.next();
    it.next();
    EXPECT_TRUE(it.getName().isEmpty());
    EXPECT_TRUE(it.getValue().isNull());
}

TEST(KWNamedValueMapIterator, AnEmptyMapHasNothingToVisit) {
    const KWNamedValueMap map;
    KWNamedValueMapIterator it(map);
    EXPECT_FALSE(it.hasNext());
    EXPECT_FALSE(it.next());
}

} // namespace
