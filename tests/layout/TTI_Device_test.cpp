#include "layout/TTI_Device.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

using Deltas = std::vector<std::int8_t>;

TEST(Device, ExpandsTwoFourAndEightBitDeltas) {
    const Bytes two =
        deviceTable(10, 18, 1, {0b00'01'10'11'00'01'10'11, 0b01'00'00'00'00'00'00'00});
    const TTI_Device device = TTI_Device::read(viewOf(two));
    EXPECT_EQ(device.startSize, 10);
    EXPECT_EQ(device.endSize, 18);
    EXPECT_EQ(device.deltas, (Deltas{0, 1, -2, -1, 0, 1, -2, -1, 1}));
    const Bytes four = deviceTable(8, 12, 2, {0x0178, 0xF000});
    EXPECT_EQ(TTI_Device::read(viewOf(four)).deltas, (Deltas{0, 1, 7, -8, -1}));
    const Bytes eight = deviceTable(8, 10, 3, {0x7F80, 0xFF00});
    EXPECT_EQ(TTI_Device::read(viewOf(eight)).deltas, (Deltas{127, -128, -1}));
}

TEST(Device, AnotherDeltaFormatLeavesItEmpty) {
    for (const int format : {0, 4, 0x8000, 0xFFFF}) {
        const Bytes bytes = deviceTable(8, 10, format, {0x7F80, 0xFF00});
        const TTI_Device device = TTI_Device::read(viewOf(bytes));
        EXPECT_TRUE(device.deltas.empty()) << format;
        EXPECT_EQ(device.startSize, 8);
    }
}

TEST(Device, SizesThatRunBackwardsHaveNoDeltas) {
    const Bytes bytes = deviceTable(10, 8, 3, {0x7F80, 0xFF00});
    EXPECT_TRUE(TTI_Device::read(viewOf(bytes)).deltas.empty());
}

TEST(Device, OfATableThatIsCutOffTheWholeWordsCount) {
    const Bytes bytes = deviceTable(0, 0xFFFF, 3, {0x0102, 0x0304}).u8(5);
    const TTI_Device device = TTI_Device::read(viewOf(bytes));
    EXPECT_EQ(device.deltas, (Deltas{1, 2, 3, 4}));
    EXPECT_LE(device.deltas.capacity(), 4U);
    EXPECT_TRUE(TTI_Device::read({}).deltas.empty());
}

} // namespace
} // namespace KWFontService_NS
