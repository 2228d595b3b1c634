#include "fonts/FS_DFont.h"

#include "common/KWLimits.h"
#include "fonts/FaceFixture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <limits>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

// Failures of the resource format have a code and no detail.
const Complaint kShort{1921, "Font read error."};
const Complaint kNoFont{1928, "Font file error."};

Complaint refused(const Bytes& file) {
    return refusal<FS_DFont>(file);
}

const Bytes& twoFaces() {
    static const Bytes file = resourcesOf({firstFace(), secondFace()}).build();
    return file;
}

/// The file cut behind a place of its map.
Bytes cutAt(std::string_view label, std::size_t more) {
    Bytes file = twoFaces();
    return file.truncate(file.offsetOf(label) + more);
}

TEST(DFont, IsAClassOfItsOwn) {
    const DFontInMemory font(twoFaces());
    EXPECT_EQ(font->getClassId(), FS_CLASSID_DFONT);
    EXPECT_EQ(font->getClassName(), UnicodeString("FS_DFont"));
    for (const unsigned id : {0x972A6D12U, 0x523A46D6U, 0xD18D040AU, 0xDF537371U})
        EXPECT_TRUE(font->isKindOf(id)) << std::hex << id;
    EXPECT_FALSE(font->isKindOf(FS_CLASSID_TRUETYPE));
}

TEST(DFont, WithSeveralFacesIsNoCollection) {
    DFontInMemory font(twoFaces());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getFontCount(), 2);
    EXPECT_FALSE(font->isFontCollection());
    for (const int face : {0, 1, 2, -1}) {
        EXPECT_EQ(font->getFontFileType(face), 9) << face;
        EXPECT_TRUE(font->isTrueTypeFont(face)) << face;
        EXPECT_TRUE(font->isTrueTypeOrCID(face)) << face;
        EXPECT_FALSE(font->isType1OrNoCID(face)) << face;
        EXPECT_FALSE(font->isType1Font(face)) << face;
    }
}

TEST(DFont, EachFaceIsReadFromItsOwnResource) {
    DFontInMemory font(twoFaces());
    ASSERT_TRUE(font.scan() && font.load(0) && font.load(1)) << font.complaint();
    EXPECT_EQ(font->getFamilyName(0, 0), UnicodeString("KWTest Latin"));
    EXPECT_EQ(font->getFamilyName(0, 1), UnicodeString("KWTest Vertical"));
    EXPECT_EQ(font->getGlyphID('C', false, 0), TestFont::kC);
    EXPECT_EQ(font->getGlyphID(0x300C, true, 1), TestFont::kBracketVertical);
    EXPECT_FALSE(font.load(2));
    EXPECT_FLOAT_EQ(font->getTypoDescender(1), -0.12F);
}

TEST(DFont, OneFaceIsLoadedAtATime) {
    DFontInMemory font(twoFaces());
    ASSERT_TRUE(font.scan() && font.load(1)) << font.complaint();
    EXPECT_FALSE(font->face(0)->isLoaded());
}

TEST(DFont, OtherResourcesBeforeTheFontsArePassedOver) {
    ResourceFile resources = resourcesOf({firstFace()});
    resources.otherTypes = {"FOND", "vers"};
    DFontInMemory font(resources.build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getFontCount(), 1);
}

TEST(DFont, WithoutFontsIsAFileErrorAndThePath) {
    ResourceFile resources;
    resources.otherTypes = {"FOND"};
    resources.withSfntType = false;
    const TempDir dir;
    const KWCommonNS::KWPtr<FS_DFont> font(new FS_DFont(dir.uri("x.dfont")));
    std::istringstream stream(resources.build().str());
    KWError error;
    EXPECT_FALSE(font->scanFont(error, stream));
    EXPECT_EQ(error.getCode(), 1928);
    EXPECT_EQ(error.getMessage(), UnicodeString("Font file error.\n").append(dir.text("x.dfont")));
}

TEST(DFont, WithoutAnyTypeIsAFileError) {
    ResourceFile resources;
    resources.withSfntType = false;
    const Bytes file = resources.build();
    EXPECT_EQ(file.u16At(file.offsetOf("typeCount")), 0xFFFF);
    EXPECT_EQ(refused(file), kNoFont);
}

TEST(DFont, AShortHeaderIsAReadError) {
    for (const std::size_t size : {0U, 15U})
        EXPECT_EQ(refused(Bytes(twoFaces()).truncate(size)), kShort) << size;
}

TEST(DFont, AShortMapIsAReadError) {
    EXPECT_EQ(refused(cutAt("typeCount", 1)), kShort);
    EXPECT_EQ(refused(Bytes(twoFaces()).patchU32At("mapOffset", 0xFFFFFFFFU)), kShort);
}

TEST(DFont, AShortTypeListIsAReadError) {
    EXPECT_EQ(refused(cutAt("typeCount", 2)), kShort);
    EXPECT_EQ(refused(cutAt("sfntType", 7)), kShort);
    ResourceFile resources = resourcesOf({firstFace()});
    resources.otherTypes = {"FOND"};
    resources.withSfntType = false;
    Bytes file = resources.build();
    EXPECT_EQ(refused(file.patchU16At("typeCount", 0xFFFE)), kShort);
}

TEST(DFont, AShortReferenceListIsAReadError) {
    EXPECT_EQ(refused(cutAt("reference1", 11)), kShort);
    EXPECT_EQ(refused(Bytes(twoFaces()).patchU16At("sfntCount", 0xFFFF)), kShort);
    EXPECT_EQ(refused(Bytes(twoFaces()).patchU16At("sfntReferences", 0xFFFF)), kShort);
}

TEST(DFont, MoreFacesThanAnyFontHasAreAFileError) {
    Bytes file = twoFaces();
    file.zero(std::size_t{12} * 65536);
    EXPECT_EQ(refused(Bytes(file).patchU16At("sfntCount", 0xFFFF)), kNoFont);
    EXPECT_EQ(refused(Bytes(file).patchU16At("sfntCount", KWCommonNS::kMaxFaces)), kNoFont);
    // The references of zeros all name the first font.
    DFontInMemory most(Bytes(file).patchU16At("sfntCount", KWCommonNS::kMaxFaces - 1));
    EXPECT_TRUE(most.scan()) << most.complaint();
    EXPECT_EQ(most->getFontCount(), 4096);
}

TEST(DFont, AFaceThatFailsEndsTheScanWithItsError) {
    EXPECT_EQ(refused(resourcesOf({firstFace(), secondFace().without("hhea")}).build()),
              fileError("'hhea' table not found"));
    EXPECT_EQ(refused(resourcesOf({TestFont::openType()}).build()), kNoComplaint)
        << "OTTO is no version of a dfont";
}

TEST(DFont, AFaceBeyondTheFileIsAReadError) {
    Bytes file = twoFaces();
    const std::size_t reference = file.offsetOf("reference1");
    EXPECT_EQ(refused(file.patchU32At(reference + 4, 0x00FFFFFF)),
              readError("Offset table read error"));
    EXPECT_EQ(refused(Bytes(twoFaces()).patchU32At("dataOffset", 0xFFFFFFFFU)),
              readError("Offset table read error"));
}

TEST(DFont, TheAttributesOfAResourceAreNotPartOfItsOffset) {
    Bytes file = twoFaces();
    file.patchU8At(file.offsetOf("reference1") + 4, 0xFF);
    DFontInMemory font(file);
    EXPECT_TRUE(font.scan()) << font.complaint();
}

TEST(DFont, OS2MayBeMissing) {
    DFontInMemory font(resourcesOf({firstFace().without("OS/2")}).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getWeight(0), 400);
    EXPECT_EQ(font->getPanose(0), nullptr);
}

// --- the Macintosh mode -------------------------------------------------------------------------

TEST(DFont, AllMacintoshNamesCount) {
    TestFont file = firstFace();
    file.name = {.records = {macName(1, "Family"), macName(2, "Sub"), macName(4, "Full")}};
    DFontInMemory font(resourcesOf({file}).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getSubFamilyName(0, 0), UnicodeString("Sub"));
    EXPECT_EQ(font->getFullFontName(0, 0), UnicodeString("Full"));
    CollectionInMemory other(collectionOf({file}).build());
    ASSERT_TRUE(other.scan()) << other.complaint();
    EXPECT_TRUE(other->getFullFontName(0, 0).isEmpty()) << "elsewhere the family alone counts";
}

TEST(DFont, UnicodeMapsOfAnyEncodingCount) {
    TestFont file = firstFace();
    file.cmap = {.records = {{.platformID = 0,
                              .encodingID = 0,
                              .subtable = CmapFormat4::of({{'A', TestFont::kB}}).build()},
                             {.subtable = CmapFormat4::of({{'A', TestFont::kA}}).build()}}};
    DFontInMemory font(resourcesOf({file}).build());
    ASSERT_TRUE(font.scan() && font.load(0)) << font.complaint();
    CollectionInMemory other(collectionOf({file}).build());
    ASSERT_TRUE(other.scan() && other.load(0)) << other.complaint();
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kB);
    EXPECT_EQ(other->getGlyphID('A', false, 0), TestFont::kA);
}

TEST(DFont, HasNoPreferredFamilyEvenIfTheFaceDoes) {
    TestFont file = firstFace();
    file.name.records.push_back(windowsName(16, u"Preferred"));
    file.name.records.push_back(windowsName(17, u"Preferred Sub"));
    DFontInMemory font(resourcesOf({file}).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_FALSE(font->face(0)->getPreferredFamily(0).isEmpty());
    EXPECT_TRUE(font->getPreferredFamily(0, 0).isEmpty());
    EXPECT_TRUE(font->getPreferredSubFamily(0, 0).isEmpty());
}

// --- wild offsets -------------------------------------------------------------------------------

TEST(DFont, ATablePastFourGigabytesIsPastTheFileAndDoesNotWrapAround) {
    SfntBuilder sfnt = firstFace().sfnt();
    sfnt.lie("head", {.offset = 0xFFFFFFFFU - 100});
    ResourceFile resources;
    resources.fonts = {sfnt};
    EXPECT_EQ(refused(resources.build()), readError("'head' table read error"));
}

} // namespace
} // namespace KWFontService_NS
