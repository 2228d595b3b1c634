#include "support/MetricsFiles.h"

#include <gtest/gtest.h>

namespace KWTest {
namespace {

TEST(MetricsFiles, AnAfmFileHasItsSectionsAnnounced) {
    AfmFile file;
    file.charMetrics = {"C 1"};
    file.kernPairs = {"KPX a b 1"};
    file.lineEnd = "|";
    const std::string text = file.build();
    EXPECT_NE(text.find("|StartCharMetrics 1|C 1|EndCharMetrics|"), std::string::npos);
    EXPECT_NE(text.find("|StartKernPairs 1|KPX a b 1|EndKernPairs|"), std::string::npos);
}

TEST(MetricsFiles, ThePartsOfAPfmFileAreWhereItSays) {
    const PfmFile file = PfmFile::latin();
    const Bytes bytes = file.build();
    const auto little32 = [&](std::size_t at) {
        return std::size_t{bytes[at]} | std::size_t{bytes[at + 1]} << 8;
    };
    EXPECT_EQ(little32(2), bytes.size());
    EXPECT_EQ(bytes[PfmFile::kFirstCharAt], 32);
    EXPECT_EQ(bytes[PfmFile::kLastCharAt], 255);
    EXPECT_EQ(bytes[little32(PfmFile::kExtMetricsAt)], 52);
    EXPECT_EQ(bytes.slice(little32(PfmFile::kDeviceAt), 10).str(), "PostScript");
    EXPECT_EQ(little32(little32(PfmFile::kExtentTableAt)), 332U);
    EXPECT_EQ(bytes[little32(PfmFile::kPairKernTableAt) + 2], 'A');
}

TEST(MetricsFiles, NumbersArePatchedLowByteFirst) {
    Bytes bytes = Bytes().zero(6);
    patchLittle16(bytes, 0, -2);
    patchLittle32(bytes, 2, 0x01020304);
    EXPECT_EQ(bytes.hex(), "FE FF 04 03 02 01");
}

} // namespace
} // namespace KWTest
