#include "cff/Type1CMap.h"

#include "cff/CffFixture.h"

#include <KWCommon15/KWNamedValue.h>

#include <gmock/gmock.h>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;

/// Four glyphs, the charset 391, 34, 392.
CffSections nameKeyed() {
    CffSections table;
    table.strings = {Bytes::ofText("first"), Bytes::ofText("second")};
    table.charset = Bytes{0}.u16s({391, 34, 392});
    table.charStrings = std::vector<Bytes>(4, Bytes{14});
    table.privateDict = CffPrivate{};
    return table;
}

CffCID cidKeyed() {
    CffCID font;
    font.glyphs = {{0, 0, {14}}, {7, 0, {14}}, {9, 0, {14}}, {8, 0, {14}}};
    return font;
}

using Ids = std::vector<unsigned short>;

Ids stringIdsOf(const Type1CMap& cff, const Ids& glyphs) {
    Ids ids;
    for (const unsigned short gid : glyphs)
        ids.push_back(cff.getSIDOfGlyph(gid));
    return ids;
}

Ids glyphsOf(const Type1CMap& cff, const Ids& values) {
    Ids glyphs;
    for (const unsigned short value : values)
        glyphs.push_back(cff.getGlyphOfCID(value));
    return glyphs;
}

TEST(Type1CMap, AnEmptyOneAnswersNothing) {
    const Type1CMap cff;
    EXPECT_FALSE(cff.isCID);
    EXPECT_EQ(stringIdsOf(cff, {0, 1}), (Ids{0, 0}));
    EXPECT_EQ(glyphsOf(cff, {0}), (Ids{0xFFFF}));
    EXPECT_EQ(cff.getStringOfSID(1), "space");
    EXPECT_EQ(cff.getStringOfSID(391), "");
}

TEST(Type1CMap, TheLoadKeepsStringsCharsetAndTopDict) {
    CffSections table = nameKeyed();
    table.topDict = Bytes{140, 1, 141, 2}; // Notice 1, FullName 2
    const LoadedCff cff(table);
    ASSERT_TRUE(cff.ok);
    EXPECT_FALSE(cff.isCID);
    EXPECT_EQ(cff.strings.size(), 2U);
    EXPECT_EQ(cff.getStringOfSID(391), "first");
    EXPECT_EQ(cff.getStringOfSID(392), "second");
    EXPECT_EQ(cff.getStringOfSID(393), "");
    EXPECT_EQ(cff.getStringOfSID(34), "A");
    EXPECT_THAT(cff.charsetSIDs, ElementsAre(391, 34, 392));
    EXPECT_THAT(cff.encodingCodes, IsEmpty());
    EXPECT_EQ(cff.topDict.getNamedItem(cffKey(FS_Word::FullName)), KWValue(2));
    EXPECT_EQ(cff.topDict.getNamedItem(cffKey(FS_Word::Private)).getNamedValueMap().size(), 2U);
}

TEST(Type1CMap, GlyphsAndValuesOfFormat0) {
    const LoadedCff cff(nameKeyed());
    EXPECT_EQ(stringIdsOf(cff, {0, 1, 2, 3, 4, 0xFFFF}), (Ids{0, 391, 34, 392, 0, 0}));
    EXPECT_EQ(glyphsOf(cff, {391, 34, 392, 35}), (Ids{1, 2, 3, 0xFFFF}));
}

TEST(Type1CMap, GlyphsAndValuesOfRanges) {
    CffSections table = nameKeyed();
    table.charset = Bytes{1}.u16(500).u8(1).u16(20).u8(0);
    const LoadedCff cff(table);
    ASSERT_TRUE(cff.ok);
    EXPECT_THAT(cff.charsetSIDs, IsEmpty());
    EXPECT_THAT(cff.charsetByValue,
                ElementsAre(CharsetRange{20, 20, 3}, CharsetRange{500, 501, 1}));
    EXPECT_THAT(cff.charsetByGlyph, ElementsAre(CharsetRange{1, 2, 500}, CharsetRange{3, 3, 20}));
    EXPECT_EQ(stringIdsOf(cff, {0, 1, 2, 3, 4, 0xFFFF}), (Ids{0, 500, 501, 20, 0, 0}));
    EXPECT_EQ(glyphsOf(cff, {500, 501, 20, 502, 19}), (Ids{1, 2, 3, 0xFFFF, 0xFFFF}));
}

TEST(Type1CMap, CIDZeroIsNotSpecial) {
    CffSections table = nameKeyed();
    EXPECT_EQ(LoadedCff(table).getGlyphOfCID(0), 0xFFFF);
    table.charset = Bytes{0}.u16s({5, 0, 6});
    EXPECT_EQ(LoadedCff(table).getGlyphOfCID(0), 2);
}

TEST(Type1CMap, OfAValueThatStandsTwiceTheFirstGlyphCounts) {
    CffSections table = nameKeyed();
    table.charset = Bytes{0}.u16s({5, 6, 5});
    EXPECT_EQ(LoadedCff(table).getGlyphOfCID(5), 1);

    table.charStrings = std::vector<Bytes>(20, Bytes{14});
    // Glyphs 1 to 10 have the values from 100 on, glyphs 11 to 13 those from 102 on, 14 to 19 those
    // from 95 on.
    table.charset = Bytes{1}.u16(100).u8(9).u16(102).u8(2).u16(95).u8(5);
    const LoadedCff cff(table);
    ASSERT_TRUE(cff.ok);
    EXPECT_EQ(glyphsOf(cff, {103, 109, 100, 99, 110}), (Ids{4, 10, 1, 18, 0xFFFF}));
    EXPECT_EQ(stringIdsOf(cff, {12}), (Ids{103}));

    // One value in common, the last of a range and the first of another.
    table.charset = Bytes{1}.u16(100).u8(9).u16(109).u8(8);
    EXPECT_EQ(glyphsOf(LoadedCff(table), {108, 109, 110}), (Ids{9, 10, 12}));
}

TEST(Type1CMap, WithoutACharsetNothingIsKnown) {
    CffSections table = nameKeyed();
    table.charset.reset();
    const LoadedCff absent(table);
    table.topDict = Bytes{139, 15}; // charset 0: ISOAdobe
    const LoadedCff zero(table);
    for (const LoadedCff* cff : {&absent, &zero}) {
        EXPECT_TRUE(cff->ok);
        EXPECT_THAT(cff->charsetSIDs, IsEmpty());
        EXPECT_EQ(cff->getSIDOfGlyph(1), 0);
        EXPECT_EQ(cff->getGlyphOfCID(1), 0xFFFF);
    }
}

// 1 and 2 stand for Expert and ExpertSubset in the format.
TEST(Type1CMap, CharsetsOneAndTwoAreOffsets) {
    CffSections table = nameKeyed();
    table.charset.reset();
    table.charStrings = std::vector<Bytes>(3, Bytes{14});
    table.topDict = Bytes{140, 15};
    LoadedCff cff(table); // byte 1 is the minor version, which reads as format 0
    EXPECT_TRUE(cff.ok);
    EXPECT_THAT(cff.charsetSIDs, ElementsAre(0x0404, 0x0001));
    table.header = Bytes{1, 9, 4, 4};
    EXPECT_FALSE(LoadedCff(table).ok);
    table.topDict = Bytes{141, 15};
    EXPECT_FALSE(LoadedCff(table).ok); // byte 2 is the header's size: format 4
}

TEST(Type1CMap, EncodingOneIsAnOffset) {
    CffSections table = nameKeyed();
    table.topDict = Bytes{140, 16};
    const LoadedCff cff(table); // format 0, four codes: offSize and the Name INDEX
    EXPECT_TRUE(cff.ok);
    EXPECT_THAT(cff.encodingCodes, ElementsAre(4, 0, 1, 1));
    EXPECT_EQ(cff.getEncodingScheme(), FS_ENCODING_FONT);
}

TEST(Type1CMap, TheEncodingSchemeIsStandardWithoutAnEncoding) {
    CffSections table = nameKeyed();
    EXPECT_EQ(LoadedCff(table).getEncodingScheme(), FS_ENCODING_STANDARD);
    table.encoding = Bytes{1, 1, 65, 2};
    const LoadedCff cff(table);
    ASSERT_TRUE(cff.ok);
    EXPECT_THAT(cff.encodingCodes, ElementsAre(65, 66, 67));
    EXPECT_EQ(cff.getEncodingScheme(), FS_ENCODING_FONT);
    table.encoding = Bytes{0, 0}; // an own one without codes
    EXPECT_EQ(LoadedCff(table).getEncodingScheme(), FS_ENCODING_FONT);
}

TEST(Type1CMap, RosMakesAFontCIDKeyed) {
    const LoadedCff cff(cidKeyed().sections());
    ASSERT_TRUE(cff.ok);
    EXPECT_TRUE(cff.isCID);
    EXPECT_EQ(cff.registrySID, 391);
    EXPECT_EQ(cff.orderingSID, 392);
    EXPECT_EQ(cff.supplement, 0);
    EXPECT_EQ(cff.getSIDOfGlyph(2), 9);
    EXPECT_EQ(cff.getGlyphOfCID(8), 3);
}

TEST(Type1CMap, RosNeedHaveNoOperands) {
    CffSections table = cidKeyed().sections();
    table.topDict = Bytes{12, 30};
    const LoadedCff cff(table);
    ASSERT_TRUE(cff.ok);
    EXPECT_TRUE(cff.isCID);
    FS_CIDSystemInfo info;
    EXPECT_FALSE(cff.getCIDSystemInfo(info));
}

TEST(Type1CMap, TheCollectionOfACIDKeyedFont) {
    CffSections table = cidKeyed().sections();
    table.topDict = cffROS(391, 392, -3);
    FS_CIDSystemInfo info;
    ASSERT_TRUE(LoadedCff(table).getCIDSystemInfo(info));
    EXPECT_EQ(info.Registry, "Adobe");
    EXPECT_EQ(info.Ordering, "Identity");
    EXPECT_EQ(info.Supplement, -3);
}

TEST(Type1CMap, TheCollectionIsUntouchedWithoutOne) {
    CffSections noRegistry = cidKeyed().sections();
    noRegistry.topDict = cffROS(0, 392, 0);
    CffSections noOrdering = cidKeyed().sections();
    noOrdering.topDict = cffROS(391, 0, 0);
    for (const CffSections& table : {nameKeyed(), noRegistry, noOrdering}) {
        FS_CIDSystemInfo info{"r", "o", 7};
        EXPECT_FALSE(LoadedCff(table).getCIDSystemInfo(info));
        EXPECT_EQ(info.Registry, "r");
        EXPECT_EQ(info.Ordering, "o");
        EXPECT_EQ(info.Supplement, 7);
    }
}

// The offsets are the first operands, what is kept of them is the last.
TEST(Type1CMap, OffsetsAreTheFirstOperands) {
    CffSections table = nameKeyed();
    // ROS with four operands, charset with two.
    table.charset.reset();
    table.topDict = Bytes{139 + 5}.bytes(cffROS(391, 392, 1)).u8(139).u8(140).u8(15);
    const LoadedCff cff(table);
    ASSERT_TRUE(cff.ok);
    EXPECT_EQ(cff.registrySID, 5);
    EXPECT_EQ(cff.orderingSID, 391);
    EXPECT_EQ(cff.supplement, 392);
    EXPECT_THAT(cff.charsetSIDs, IsEmpty());
    EXPECT_EQ(cff.topDict.getNamedItem(cffKey(FS_Word::charset)), KWValue(1));

    table.topDict = Bytes{140, 139, 16};
    const LoadedCff encoded(table);
    ASSERT_TRUE(encoded.ok);
    EXPECT_THAT(encoded.encodingCodes, ElementsAre(4, 0, 1, 1));
    EXPECT_EQ(encoded.getEncodingScheme(), FS_ENCODING_STANDARD);
}

TEST(Type1CMap, TheGlyphsOfACharsetAreCountedAtTheFirstOperand) {
    Bytes bytes = nameKeyed().build();
    // "offset CharStrings size offset Private" becomes "offset 0 size offset CharStrings".
    const std::size_t places = bytes.offsetOf("strings") - 12;
    ASSERT_EQ(bytes[places], 17);
    ASSERT_EQ(bytes[places + 11], 18);
    const LoadedCff cff(bytes.patchU8At(places, 139).patchU8At(places + 11, 17));
    ASSERT_TRUE(cff.ok);
    EXPECT_THAT(cff.charsetSIDs, ElementsAre(391, 34, 392));
}

// The names are taken to begin at byte 4 whatever the header says.
TEST(Type1CMap, TheHeadersSizeIsNotLookedAt) {
    CffSections table = nameKeyed();
    table.header = Bytes{1, 0, 17, 4};
    EXPECT_TRUE(LoadedCff(table).ok);
    table.header = Bytes{9, 9, 0, 0};
    EXPECT_TRUE(LoadedCff(table).ok);
    table.header = Bytes{1, 0, 6, 4, 0x55, 0x55};
    EXPECT_FALSE(LoadedCff(table).ok);
}

TEST(Type1CMap, EmptyNamesAndStringsAreSteppedOver) {
    CffSections table = nameKeyed();
    table.names.clear();
    table.strings.clear();
    table.charset = Bytes{0}.u16s({1, 2, 3});
    const LoadedCff cff(table);
    ASSERT_TRUE(cff.ok);
    EXPECT_TRUE(cff.strings.empty());
    EXPECT_EQ(cff.getSIDOfGlyph(3), 3);
}

TEST(Type1CMap, ACIDKeyedTableIsReadOnce) {
    LoadedCff cff(cidKeyed().sections());
    TableStream nonsense(Bytes{1, 2, 3});
    EXPECT_TRUE(cff.readCFFTable(nonsense.table));
    EXPECT_EQ(cff.getGlyphOfCID(8), 3);
}

TEST(Type1CMap, AFailureLeavesEverythingAsItWas) {
    LoadedCff cff(nameKeyed());
    TableStream nonsense(Bytes{1, 2, 3});
    EXPECT_FALSE(cff.readCFFTable(nonsense.table));
    EXPECT_EQ(cff.getSIDOfGlyph(1), 391);
    EXPECT_EQ(cff.getStringOfSID(391), "first");
}

// --- tables that lie ----------------------------------------------------------------------------

TEST(Type1CMap, ATableCutBeforeWhatTheLoadNeedsIsRefused) {
    CffSections table = nameKeyed();
    table.encoding = Bytes{0, 1, 65};
    const Bytes whole = table.build();
    const std::size_t needed = whole.offsetOf("charStrings") + 2;
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_EQ(LoadedCff(Bytes(whole).truncate(size)).ok, size >= needed) << size;
}

TEST(Type1CMap, NoTopDictIsRefused) {
    EXPECT_FALSE(LoadedCff(Bytes{1, 0, 4, 1, 0, 1, 1, 1, 2, 'F', 0, 0, 0, 0, 0, 0}).ok);
}

TEST(Type1CMap, OfSeveralTopDictsTheFirstCounts) {
    Bytes bytes{1, 0, 4, 1, 0, 1, 1, 1, 2, 'F'};
    bytes.bytes(cffIndex({Bytes{140, 1}, Bytes{141, 1}})); // Notice 1, Notice 2
    bytes.bytes(cffIndex({Bytes::ofText("behind both")})).u16(0);
    const LoadedCff cff(bytes);
    ASSERT_TRUE(cff.ok);
    EXPECT_EQ(cff.topDict.getNamedItem(cffKey(FS_Word::Notice)), KWValue(1));
    EXPECT_EQ(cff.getStringOfSID(391), "behind both");
}

TEST(Type1CMap, AnEmptyTopDictHasNothing) {
    const LoadedCff cff(Bytes{1, 0, 4, 1, 0, 1, 1, 1, 2, 'F', 0, 1, 1, 1, 1, 0, 0, 0, 0});
    EXPECT_TRUE(cff.ok);
    EXPECT_TRUE(cff.topDict.isNull());
    EXPECT_EQ(cff.getEncodingScheme(), FS_ENCODING_STANDARD);
}

TEST(Type1CMap, OffsetsOutsideTheTableAreRefused) {
    for (const std::int32_t lie : {-1, -1000, 0x7FFFFFFF, std::int32_t{-0x7FFFFFFF} - 1, 100000}) {
        for (const int op : {15, 16}) {
            CffSections table = nameKeyed();
            table.charset.reset();
            table.topDict = cffInteger(lie).u8(op);
            EXPECT_FALSE(LoadedCff(table).ok) << lie << ' ' << op;
        }
    }
}

TEST(Type1CMap, ACharsetNeedsTheNumberOfGlyphs) {
    Bytes bytes = nameKeyed().build();
    // Make the operator CharStrings something else.
    std::size_t at = bytes.offsetOf("topDict");
    while (bytes[at] != 17)
        ++at;
    bytes.patchU8At(at, 6);
    EXPECT_FALSE(LoadedCff(bytes).ok);
}

TEST(Type1CMap, ATopDictOf64KilobytesIsRead) {
    CffSections table = nameKeyed();
    table.topDict = Bytes{140, 1}.fill(65000, 141);
    const LoadedCff cff(table);
    EXPECT_FALSE(cff.ok); // the charset's first operand is one of them
    table.topDict.u8(6);
    EXPECT_TRUE(LoadedCff(table).ok);
}

TEST(Type1CMap, NoByteThatIsWrongDoesHarm) {
    CffSections table = cidKeyed().sections();
    table.encoding = Bytes{0, 1, 65};
    const Bytes whole = table.build();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const int value : {0, 1, 5, 0x7F, 0x80, 0xFF}) {
            LoadedCff cff(Bytes(whole).patchU8At(at, value));
            for (unsigned i = 0; i < 0x10000; i += 0xFFF) {
                const auto id = static_cast<unsigned short>(i);
                cff.getSIDOfGlyph(id);
                cff.getGlyphOfCID(id);
                EXPECT_LE(cff.getStringOfSID(id).size(), whole.size());
            }
            CFFIndex subrs;
            KWValue dict;
            std::vector<CFFFontDict> fontDicts;
            std::vector<FDRange> ranges;
            Type1CMap::readGlobalSubrs(cff.file(), subrs);
            cff.readLocalSubrs(cff.file(), dict, subrs);
            cff.readFDArray(cff.file(), fontDicts);
            cff.readFDSelect(cff.file(), ranges);
            EXPECT_LE(fontDicts.size(), 256U);
        }
    }
}

} // namespace
} // namespace KWFontService_NS
