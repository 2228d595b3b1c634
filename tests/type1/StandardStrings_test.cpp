#include "type1/StandardStrings.h"

#include <gtest/gtest.h>

#include <set>
#include <string_view>

namespace KWFontService_NS {
namespace {

TEST(StandardStrings, TheyAreThoseOfTheFormat) {
    EXPECT_EQ(standardString(0), ".notdef");
    EXPECT_EQ(standardString(1), "space");
    EXPECT_EQ(standardString(34), "A");
    EXPECT_EQ(standardString(149), "germandbls");
    EXPECT_EQ(standardString(150), "onesuperior");
    EXPECT_EQ(standardString(228), "zcaron");
    EXPECT_EQ(standardString(229), "exclamsmall");
    EXPECT_EQ(standardString(378), "Ydieresissmall");
    EXPECT_EQ(standardString(379), "001.000");
    EXPECT_EQ(standardString(390), "Semibold");
    EXPECT_EQ(standardString(391), "");
    EXPECT_EQ(standardString(0xFFFF), "");
}

TEST(StandardStrings, NoneStandsTwice) {
    std::set<std::string_view> all;
    for (std::uint16_t sid = 0; sid < kStandardStringCount; ++sid)
        all.insert(standardString(sid));
    EXPECT_EQ(all.size(), kStandardStringCount);
}

TEST(StandardStrings, StandardEncodingNamesTheFirstOnesInTheirOrder) {
    EXPECT_EQ(standardString(standardEncodingSID(0x20)), "space");
    EXPECT_EQ(standardString(standardEncodingSID('A')), "A");
    EXPECT_EQ(standardString(standardEncodingSID(0x7E)), "asciitilde");
    EXPECT_EQ(standardString(standardEncodingSID(0xC1)), "grave");
    EXPECT_EQ(standardString(standardEncodingSID(0xC9)), ".notdef");
    EXPECT_EQ(standardString(standardEncodingSID(0xF5)), "dotlessi");
    EXPECT_EQ(standardString(standardEncodingSID(0xFB)), "germandbls");
    EXPECT_EQ(standardEncodingSID(0), 0);
    EXPECT_EQ(standardEncodingSID(0xFF), 0);
    std::uint16_t next = 1;
    for (int code = 0; code < 256; ++code) {
        const std::uint16_t sid = standardEncodingSID(static_cast<std::uint8_t>(code));
        if (sid != 0) {
            EXPECT_EQ(sid, next++) << code;
        }
    }
    EXPECT_EQ(next, 150);
}

} // namespace
} // namespace KWFontService_NS
