#include "type1/PfbSegment.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

TEST(PfbSegment, ALengthIsLittleEndian) {
    constexpr std::array<std::uint8_t, kPfbLengthSize> kBytes = {0x01, 0x02, 0x03, 0xF4};
    EXPECT_EQ(pfbLength(kBytes), 0xF4030201U);
}

TEST(PfbSegment, AHeaderIsAMarkATypeAndTheLength) {
    EXPECT_EQ(pfbHeader(kPfbBinary, 0xF4030201U),
              (std::array<std::uint8_t, kPfbHeaderSize>{0x80, 2, 0x01, 0x02, 0x03, 0xF4}));
}

} // namespace
} // namespace KWFontService_NS
