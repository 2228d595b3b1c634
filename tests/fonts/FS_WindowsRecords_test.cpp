#include <KWFontService17/FS_WindowsRecords.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace {

using namespace KWFontService_NS;

// Programs hand over records that Windows filled.
TEST(WindowsRecords, HaveTheLayoutOfTheSystem) {
    EXPECT_EQ(sizeof(PANOSE), 10U);
    EXPECT_EQ(sizeof(tagLOGFONTW), 92U);
    EXPECT_EQ(sizeof(tagENUMLOGFONTEXW), 348U);
    EXPECT_EQ(sizeof(tagNEWTEXTMETRICW), 76U);
    EXPECT_EQ(sizeof(tagFONTSIGNATURE), 24U);
    EXPECT_EQ(offsetof(tagFONTSIGNATURE, fsCsb), 16U);
    EXPECT_EQ(sizeof(tagNEWTEXTMETRICEXW), 100U);
    EXPECT_EQ(offsetof(tagNEWTEXTMETRICEXW, ntmFontSig), 76U);
}

} // namespace
