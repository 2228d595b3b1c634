#include "layout/TTI_Gdef.h"

#include "layout/LayoutFixture.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using Result = TTI_Gdef::Result;

struct Reading {
    TTI_Gdef gdef;
    Result result;
    explicit Reading(const Bytes& bytes) : result(gdef.read(viewOf(bytes))) {}
};

const Bytes kGood = classDefFormat2({{1, 2, 3}});
const Bytes kBad = Bytes().u16(3).u16(0);

TEST(GdefTable, HoldsBothClassDefinitions) {
    const Reading reading(
        Gdef{.glyphClassDef = kGood, .markAttachClassDef = classDefFormat2({{2, 2, 9}})}.build());
    EXPECT_EQ(reading.result, Result::Ok);
    EXPECT_EQ(reading.gdef.glyphClass->classOf(2), 3);
    EXPECT_EQ(reading.gdef.markAttachClass->classOf(2), 9);
}

TEST(GdefTable, AnOffsetOfZeroIsAnAbsentPart) {
    const Reading none(Gdef{}.build());
    EXPECT_EQ(none.result, Result::Ok);
    EXPECT_EQ(none.gdef.glyphClass, nullptr);
    EXPECT_EQ(none.gdef.markAttachClass, nullptr);
    const Reading marks(Gdef{.markAttachClassDef = kGood}.build());
    EXPECT_EQ(marks.gdef.glyphClass, nullptr);
    EXPECT_NE(marks.gdef.markAttachClass, nullptr);
}

TEST(GdefTable, TheVersionDoesNotMatter) {
    Bytes bytes = Gdef{.glyphClassDef = kGood}.build();
    bytes.patchU32At(0, 0xDEADBEEF);
    EXPECT_EQ(Reading(bytes).result, Result::Ok);
}

TEST(GdefTable, ABadGlyphClassDefinitionEndsTheReading) {
    const Reading reading(Gdef{.glyphClassDef = kBad, .markAttachClassDef = kGood}.build());
    EXPECT_EQ(reading.result, Result::GlyphClassError);
    EXPECT_EQ(reading.gdef.glyphClass, nullptr);
    EXPECT_EQ(reading.gdef.markAttachClass, nullptr);
}

TEST(GdefTable, ABadMarkAttachmentDefinitionIsDroppedAlone) {
    const Reading reading(Gdef{.glyphClassDef = kGood, .markAttachClassDef = kBad}.build());
    EXPECT_EQ(reading.result, Result::MarkAttachClassError);
    EXPECT_NE(reading.gdef.glyphClass, nullptr);
    EXPECT_EQ(reading.gdef.markAttachClass, nullptr);
}

TEST(GdefTable, ADefinitionOutsideTheTableIsABadOne) {
    Bytes bytes = Gdef{.glyphClassDef = kGood}.build();
    bytes.patchU16At("glyphClassDefOffset", 0xFFFF);
    EXPECT_EQ(Reading(bytes).result, Result::GlyphClassError);
}

TEST(GdefTable, EveryLengthCanBeRead) {
    const Bytes whole = Gdef{.glyphClassDef = kGood, .markAttachClassDef = kGood}.build();
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const Reading reading(whole.slice(0, size));
        if (reading.gdef.glyphClass)
            (void)reading.gdef.glyphClass->classOf(1);
    }
    EXPECT_EQ(Reading(Bytes{}).result, Result::Ok) << "without offsets there are no parts";
}

} // namespace
} // namespace KWFontService_NS
