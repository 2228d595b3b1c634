#include "fonts/FS_TrueTypeCollection.h"

#include "common/KWLimits.h"
#include "fonts/FaceFixture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

/// The sound OpenType font with a CID-keyed table: glyphs 1 to 3 are CIDs 7, 9 and 8.
TestFont cidKeyed() {
    CffCID cff;
    cff.glyphs = {{0, 0, {14}}, {7, 0, {14}}, {9, 0, {14}}, {8, 0, {14}}};
    TestFont font = TestFont::openType();
    font.with("CFF ", cff);
    return font;
}

Complaint refused(const Bytes& file) {
    return refusal<FS_TrueTypeCollection>(file);
}

const Bytes& twoFaces() {
    static const Bytes file = collectionOf({firstFace(), secondFace()}).build();
    return file;
}

// --- identity -----------------------------------------------------------------------------------

TEST(Collection, IsAClassOfItsOwn) {
    const CollectionInMemory font(twoFaces());
    EXPECT_EQ(font->getClassId(), FS_CLASSID_COLLECTION);
    EXPECT_EQ(font->getClassName(), UnicodeString("FS_TrueTypeCollection"));
    for (const unsigned id : {0x0C261001U, 0x523A46D6U, 0xD18D040AU, 0xDF537371U})
        EXPECT_TRUE(font->isKindOf(id)) << std::hex << id;
    EXPECT_FALSE(font->isKindOf(FS_CLASSID_TRUETYPE));
    EXPECT_TRUE(font->isFontCollection());
    EXPECT_FALSE(font->isOpenType());
}

TEST(Collection, CountsItsFaces) {
    CollectionInMemory font(twoFaces());
    EXPECT_EQ(font->getFontCount(), 0);
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getFontCount(), 2);
}

TEST(Collection, OfGlyfFacesIsTypeSix) {
    CollectionInMemory font(twoFaces());
    ASSERT_TRUE(font.scan()) << font.complaint();
    for (const int face : {0, 1, 2, -1, 99}) {
        EXPECT_EQ(font->getFontFileType(face), 6) << face;
        EXPECT_EQ(font->getFontFileType2(face), 6) << face;
        EXPECT_TRUE(font->isTrueTypeFont(face)) << face;
        EXPECT_TRUE(font->isTrueTypeOrCID(face)) << face;
        EXPECT_FALSE(font->isType1OrNoCID(face)) << face;
        EXPECT_FALSE(font->isType1Font(face)) << face;
    }
}

TEST(Collection, OfCffFacesIsTypeSevenOrEightByFace) {
    CollectionInMemory font(collectionOf({TestFont::openType(), cidKeyed()}).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getFontFileType(1), 7) << "only a load tells";
    ASSERT_TRUE(font.load(0)) << font.complaint();
    ASSERT_TRUE(font.load(1)) << font.complaint();
    EXPECT_EQ(font->getFontFileType(0), 7);
    EXPECT_TRUE(font->isType1OrNoCID(0));
    EXPECT_FALSE(font->isTrueTypeOrCID(0));
    EXPECT_EQ(font->getFontFileType(1), 8);
    EXPECT_FALSE(font->isType1OrNoCID(1));
    EXPECT_TRUE(font->isTrueTypeOrCID(1));
    EXPECT_TRUE(font->isTrueTypeFont(0));
}

TEST(Collection, TheTypeOfAFaceOutOfRangeIsSixAlsoOfACffCollection) {
    CollectionInMemory font(collectionOf({TestFont::openType()}).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_EQ(font->getFontFileType(99), 6);
    EXPECT_EQ(font->getFontFileType(-1), 6);
}

// --- the scan -----------------------------------------------------------------------------------

TEST(CollectionScan, AShortHeaderIsAReadError) {
    for (const std::size_t size : {0U, 4U, 11U})
        EXPECT_EQ(refused(Bytes(twoFaces()).truncate(size)), readError("TTC header read error"));
}

TEST(CollectionScan, AnotherTagIsTold) {
    EXPECT_EQ(refused(firstFace().build()), fileError("Unknown TTC tag 00010000"));
    EXPECT_EQ(refused(Bytes(twoFaces()).patchU8At(0, 'T')), fileError("Unknown TTC tag 54746366"));
    EXPECT_EQ(refused(Bytes(twoFaces()).patchU32At(0, 0xABCDEF01U)),
              fileError("Unknown TTC tag ABCDEF01"));
}

TEST(CollectionScan, TheVersionIsNotLookedAt) {
    for (const std::uint32_t version : {0x00020000U, 0U, 0xFFFFFFFFU}) {
        CollectionInMemory font(Bytes(twoFaces()).patchU32At(4, version));
        EXPECT_TRUE(font.scan()) << font.complaint();
    }
}

// The text keeps a field's name that it does not count.
TEST(CollectionScan, NoFacesAreAFileErrorOfNumTables) {
    EXPECT_EQ(refused(Bytes(twoFaces()).patchU32At(8, 0)), fileError("numTables = 0"));
}

TEST(CollectionScan, AShortOffsetTableIsAReadError) {
    for (const std::size_t size : {12U, 15U, 19U})
        EXPECT_EQ(refused(Bytes(twoFaces()).truncate(size)), readError("Offset table read error"));
}

TEST(CollectionScan, AFileMayEndWithItsOffsetTable) {
    // The header itself reads as a face of one table.
    EXPECT_EQ(refused(Bytes().tag("ttcf").u32(0x00010000).u32(1).u32(0)),
              readError("Table directory read error"));
}

TEST(CollectionScan, ANumberOfFacesPastTheFileIsAShortOffsetTable) {
    for (const std::uint32_t count : {0x10000U, 0x40000000U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_EQ(refused(Bytes(twoFaces()).patchU32At(8, count)),
                  readError("Offset table read error"))
            << count;
}

TEST(CollectionScan, MoreFacesThanAnyFontHasAreRefusedByTheirNumber) {
    Bytes file = twoFaces();
    file.patchU32At(8, KWCommonNS::kMaxFaces + 1).zero(std::size_t{4} * KWCommonNS::kMaxFaces);
    EXPECT_EQ(refused(file), fileError("numTables = 4097"));
    file.patchU32At(8, KWCommonNS::kMaxFaces);
    EXPECT_NE(refused(file), fileError("numTables = 4096"));
}

TEST(CollectionScan, ABadFaceFailsTheFileWithItsOwnError) {
    EXPECT_EQ(refused(collectionOf({firstFace(), secondFace().without("head")}).build()),
              fileError("'head' table not found"));
    EXPECT_EQ(
        refused(collectionOf({firstFace().without("name"), secondFace().without("head")}).build()),
        fileError("'name' table not found"))
        << "in the order of the file";
}

TEST(CollectionScan, AFaceBeyondTheFileIsAReadError) {
    for (const std::uint32_t offset : {static_cast<std::uint32_t>(twoFaces().size()),
                                       static_cast<std::uint32_t>(twoFaces().size() - 11),
                                       0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_EQ(refused(Bytes(twoFaces()).patchU32At(16, offset)),
                  readError("Offset table read error"))
            << offset;
}

TEST(CollectionScan, AFaceWithoutCffInACffCollectionFailsWithoutAMessage) {
    EXPECT_EQ(refused(collectionOf({TestFont::openType(), firstFace()}).build()), kNoComplaint)
        << "by its version";
    TestFont glyfInOtto = firstFace();
    glyfInOtto.version = kOttoVersion;
    EXPECT_EQ(refused(collectionOf({TestFont::openType(), glyfInOtto}).build()), kNoComplaint)
        << "by its tables";
}

TEST(CollectionScan, AFaceWithCffInAGlyfCollectionFailsWithoutAMessage) {
    EXPECT_EQ(refused(collectionOf({firstFace(), TestFont::openType()}).build()), kNoComplaint);
    TestFont cffInTrueType = TestFont::openType();
    cffInTrueType.version = kTrueTypeVersion;
    EXPECT_EQ(refused(collectionOf({firstFace(), cffInTrueType}).build()), kNoComplaint);
}

TEST(CollectionScan, TheFirstFaceIsJudgedByItsOwnTables) {
    TestFont cffInTrueType = TestFont::openType();
    cffInTrueType.version = kTrueTypeVersion;
    EXPECT_EQ(refused(collectionOf({cffInTrueType}).build()), kNoComplaint);
    TestFont glyfInOtto = firstFace();
    glyfInOtto.version = kOttoVersion;
    EXPECT_EQ(refused(collectionOf({glyfInOtto}).build()), kNoComplaint);
}

TEST(CollectionScan, OnlyCffFacesMayLackOS2) {
    EXPECT_EQ(refused(collectionOf({firstFace().without("OS/2")}).build()),
              fileError("'OS/2' table not found"));
    CollectionInMemory cff(
        collectionOf({TestFont::openType().without("OS/2"), cidKeyed().without("OS/2")}).build());
    ASSERT_TRUE(cff.scan()) << cff.complaint();
    EXPECT_EQ(cff->getWeight(0), 400);
    EXPECT_EQ(cff->getPanose(1), nullptr);
}

TEST(CollectionScan, FacesMayShareTheirTablesAndTheirDirectory) {
    Bytes file = collectionOf({firstFace(), secondFace()}).build();
    file.patchU32At(16, file.u32At(12));
    CollectionInMemory font(file);
    ASSERT_TRUE(font.scan()) << font.complaint();
    ASSERT_TRUE(font.load(0) && font.load(1)) << font.complaint();
    EXPECT_EQ(font->getFamilyName(0, 1), UnicodeString("KWTest Latin"));
    EXPECT_EQ(font->getGlyphID('A', false, 1), TestFont::kA);
}

TEST(CollectionScan, AnErrorNamesTheFile) {
    const TempDir dir;
    const KWCommonNS::KWPtr<FS_TrueTypeCollection> font(
        new FS_TrueTypeCollection(dir.uri("x.ttc")));
    std::istringstream stream(collectionOf({firstFace().without("hhea")}).build().str());
    KWError error;
    EXPECT_FALSE(font->scanFont(error, stream));
    EXPECT_TRUE(error.getMessage().endsWith(UnicodeString(u"\n").append(dir.text("x.ttc"))));
}

TEST(CollectionScan, AStreamThatCameToItsEndIsReadAgain) {
    CollectionInMemory font(twoFaces());
    font.stream().setstate(std::ios::eofbit | std::ios::failbit);
    EXPECT_TRUE(font.scan()) << font.complaint();
}

TEST(CollectionScan, ASecondScanStartsAnew) {
    CollectionInMemory font(twoFaces());
    ASSERT_TRUE(font.scan());
    std::istringstream one(collectionOf({secondFace()}).build().str());
    ASSERT_TRUE(font->scanFont(font.error, one)) << font.complaint();
    EXPECT_EQ(font->getFontCount(), 1);
    EXPECT_EQ(font->getFamilyName(0, 0), UnicodeString("KWTest Vertical"));
    EXPECT_EQ(font->face(1), nullptr);
    std::istringstream none("none");
    EXPECT_FALSE(font->scanFont(font.error, none));
    EXPECT_EQ(font->getFontCount(), 0);
}

// --- the load -----------------------------------------------------------------------------------

TEST(CollectionLoad, LoadsTheFaceAskedForAlone) {
    CollectionInMemory font(twoFaces());
    ASSERT_TRUE(font.scan());
    ASSERT_TRUE(font.load(1)) << font.complaint();
    EXPECT_FALSE(font->face(0)->isLoaded());
    EXPECT_TRUE(font->face(1)->isLoaded());
    EXPECT_EQ(font->getGlyphID(0x3042, false, 1), TestFont::kHiraganaA);
    EXPECT_EQ(font->getGlyphID('A', false, 0), 0xFFFF);
}

TEST(CollectionLoad, AFaceOutOfRangeIsNotLoadedAndNoError) {
    CollectionInMemory font(twoFaces());
    ASSERT_TRUE(font.scan());
    for (const int face : {-1, 2, 99})
        EXPECT_FALSE(font.load(face)) << face;
    EXPECT_FALSE(font.error.isError());
}

TEST(CollectionLoad, OneBadFaceLeavesTheOthersUsable) {
    CollectionInMemory font(collectionOf({firstFace().without("hmtx"), secondFace()}).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_FALSE(font.load(0));
    EXPECT_EQ(font.complaint(), fileError("'hmtx' table not found"));
    EXPECT_TRUE(font.load(1));
}

TEST(CollectionLoad, AFaceWithoutACharacterMapDoesNotLoad) {
    CollectionInMemory font(collectionOf({firstFace().without("cmap")}).build());
    ASSERT_TRUE(font.scan()) << font.complaint();
    EXPECT_FALSE(font.load(0));
    EXPECT_EQ(font.complaint(), fileError("'cmap' table not found"));
}

TEST(CollectionLoad, AFaceOpensTheFileByItself) {
    const TempDir dir;
    dir.write("two.ttc", twoFaces());
    const KWCommonNS::KWPtr<FS_TrueTypeCollection> font(
        new FS_TrueTypeCollection(dir.uri("two.ttc")));
    std::istringstream stream(twoFaces().str());
    KWError error;
    ASSERT_TRUE(font->scanFont(error, stream));
    EXPECT_TRUE(font->loadFont(error, 1, nullptr)) << complaintOf(error);
    EXPECT_EQ(font->getGlyphID(0x3042, false, 1), TestFont::kHiraganaA);
}

TEST(CollectionLoad, ACffFaceAnswersItsCIDs) {
    CollectionInMemory font(collectionOf({TestFont::openType(), cidKeyed()}).build());
    ASSERT_TRUE(font.scan() && font.load(0) && font.load(1)) << font.complaint();
    ASSERT_NE(font->getCFFInfo(1), nullptr);
    EXPECT_EQ(font->getCFFInfo(1)->getGlyphOfCID(8), 3);
    FS_CIDSystemInfo info;
    EXPECT_TRUE(font->getCIDSystemInfo(info, 1));
    EXPECT_EQ(info.Ordering, "Identity");
    EXPECT_FALSE(font->getCIDSystemInfo(info, 0));
    EXPECT_EQ(font->getEncodingScheme(0), FS_ENCODING_STANDARD);
    EXPECT_EQ(font->getEncodingScheme(2), FS_ENCODING_NONE);
    EXPECT_EQ(font->getStringID(1, 0), 0) << "asked of a collection, there is none";
}

TEST(CollectionLoad, AGlyfFaceHasNoEncodingScheme) {
    CollectionInMemory font(twoFaces());
    ASSERT_TRUE(font.scan() && font.load(0)) << font.complaint();
    EXPECT_EQ(font->getEncodingScheme(0), FS_ENCODING_NONE);
}

// Files with one face answer their ascender.
TEST(Collection, TheTypoDescenderOfAFaceIsItsDescender) {
    CollectionInMemory font(twoFaces());
    ASSERT_TRUE(font.scan());
    EXPECT_FLOAT_EQ(font->getTypoDescender(0), -0.2F);
    EXPECT_EQ(font->getTypoDescender(2), 0.0F);
}

} // namespace
} // namespace KWFontService_NS
