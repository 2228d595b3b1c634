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
    EXPECT_EQ(reading.gdef.glyphClass.classOf(2), 3);
    EXPECT_EQ(reading.gdef.markAttachClass.classOf(2), 9);
}

TEST(GdefTable, AnOffsetOfZeroIsAnAbsentPart) {
    const Reading none(Gdef{}.build());
    EXPECT_EQ(none.result, Result::Ok);
    EXPECT_FALSE(none.gdef.glyphClass);
    EXPECT_FALSE(none.gdef.markAttachClass);
    const Reading marks(Gdef{.markAttachClassDef = kGood}.build());
    EXPECT_FALSE(marks.gdef.glyphClass);
    EXPECT_TRUE(marks.gdef.markAttachClass);
}

TEST(GdefTable, TheVersionDoesNotMatter) {
    Bytes bytes = Gdef{.glyphClassDef = kGood}.build();
    bytes.patchU32At(0, 0xDEADBEEF);
    EXPECT_EQ(Reading(bytes).result, Result::Ok);
}

TEST(GdefTable, ABadGlyphClassDefinitionEndsTheReading) {
    const Reading reading(Gdef{.glyphClassDef = kBad, .markAttachClassDef = kGood}.build());
    EXPECT_EQ(reading.result, Result::GlyphClassError);
    EXPECT_FALSE(reading.gdef.glyphClass);
    EXPECT_FALSE(reading.gdef.markAttachClass);
}

TEST(GdefTable, ABadMarkAttachmentDefinitionIsDroppedAlone) {
    const Reading reading(Gdef{.glyphClassDef = kGood, .markAttachClassDef = kBad}.build());
    EXPECT_EQ(reading.result, Result::MarkAttachClassError);
    EXPECT_TRUE(reading.gdef.glyphClass);
    EXPECT_FALSE(reading.gdef.markAttachClass);
}

TEST(GdefTable, ADefinitionOutsideTheTableIsABadOne) {
    Bytes bytes = Gdef{.glyphClassDef = kGood}.build();
    bytes.patchU16At("glyphClassDefOffset", 0xFFFF);
    EXPECT_EQ(Reading(bytes).result, Result::GlyphClassError);
}

TEST(GdefTable, KeepsItsClassesWhenTheTableIsGone) {
    TTI_Gdef gdef;
    {
        const Bytes bytes = Gdef{.glyphClassDef = kGood, .markAttachClassDef = kGood}.build();
        gdef.read(viewOf(bytes));
    }
    const TTI_Gdef moved = std::move(gdef);
    EXPECT_EQ(moved.glyphClass.classOf(2), 3);
    EXPECT_EQ(moved.markAttachClass.classOf(2), 3);
}

TEST(GdefTable, AClassDefinitionOfFormat1LeavesEveryGlyphUnknown) {
    const Reading reading(Gdef{.glyphClassDef = classDefFormat1(1, {1, 2, 3})}.build());
    EXPECT_EQ(reading.result, Result::Ok);
    ASSERT_TRUE(reading.gdef.glyphClass);
    for (const unsigned short gid : std::initializer_list<unsigned short>{0, 1, 2, 3})
        EXPECT_EQ(reading.gdef.glyphClass.classOf(gid), -1);
}

TEST(GdefTable, EveryLengthCanBeRead) {
    const Bytes whole = Gdef{.glyphClassDef = kGood, .markAttachClassDef = kGood}.build();
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const Reading reading(whole.slice(0, size));
        if (reading.gdef.glyphClass)
            (void)reading.gdef.glyphClass.classOf(1);
    }
    EXPECT_EQ(Reading(Bytes{}).result, Result::Ok) << "without offsets there are no parts";
}

} // namespace
} // namespace KWFontService_NS
