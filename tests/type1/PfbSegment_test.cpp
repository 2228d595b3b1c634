#include "type1/PfbSegment.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

TEST(PfbSegment, ALengthIsLittleEndian) {
    constexpr std::array<std::uint8_t, kPfbLengthSize> kBytes = {0x01, 0x02, 0x03, 0xF4};
    EXPECT_EQ(pfbLength(kBytes), 0xF4030201U);
}

} // namespace
} // namespace KWFontService_NS
