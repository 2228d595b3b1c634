// Every operation of the one list, asked of the faces of a collection and of a dfont, of the same
// faces as files of their own, and for faces that there are not.

#include "fonts/FaceFixture.h"
#include "fonts/FontTyping.h"
#include "fonts/OperationCalls.h"
#include "support/TempDir.h"

#include <KWCommon15/KWUtil.h>

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string_view>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;
using KWCommonNS::KWUtil;

// --- fonts --------------------------------------------------------------------------------------

/// A face that has something to say to nearly every question.
TestFont talkative() {
    TestFont font = TestFont::vertical();
    font.os2.usWeightClass = 700;
    font.os2.usWidthClass = 3;
    font.os2.fsSelection = 1;
    font.os2.fsType = 8;
    font.os2.sFamilyClass = 0x0C05;
    font.os2.panose = {3, 2};
    for (const int id : {16, 17, 20, 0, 8, 13})
        font.name.records.push_back(windowsName(static_cast<std::uint16_t>(id), u"Name"));
    font.cmap.records.push_back(
        {.platformID = 0,
         .encodingID = 5,
         .subtable =
             CmapFormat14{.selectors = {{.varSelector = 0xFE00,
                                         .mappings = {{.unicodeValue = 0xFE00, .glyphID = 4}}}}}
                 .build()});
    font.with("kern", Kern{.subtables = {{.pairs = {{2, 2, -50}, {3, 3, 20}}}}})
        .with("GDEF", Gdef{.glyphClassDef = classDefFormat2({{2, 3, 1}}), .markAttachClassDef = {}})
        .with("MATH",
              Math{.constants = MathConstants{{FS_MATHConstants::axisHeight, 250}},
                   .glyphInfo = MathGlyphInfo{.italicsCorrections = {{2, 30}}},
                   .variants = MathVariants{.vertical = {{2, {{3, 200}, {4, 300}}}},
                                            .horizontal = {{2, {{3, 200}, {4, 300}}, true}}}});
    return font;
}

/// What `talkative` cannot be at once.
TestFont serif() {
    TestFont font = TestFont::latin();
    font.os2.panose = {2, 5, 0, 9};
    return font;
}

TestFont cffFace(bool cid) {
    TestFont font = TestFont::openType();
    if (cid)
        font.with("CFF ",
                  CffCID{.glyphs = {{0, 0, {14}}, {7, 0, {14}}, {9, 0, {14}}, {8, 0, {14}}}});
    return font;
}

/// The same fonts as the faces of one file, and each in a file of its own.
struct FaceFiles {
    FaceFiles(const std::vector<TestFont>& fonts, FS_FontFileType together, FS_FontFileType alone)
        : count(static_cast<int>(fonts.size())) {
        SfntCollection collection;
        ResourceFile resources;
        for (std::size_t i = 0; i < fonts.size(); ++i) {
            // Writers copy `head` as it is: the two files have to agree on it.
            SfntBuilder sfnt = fonts[i].sfnt();
            sfnt.keepCheckSumAdjustment();
            singles.push_back(open(std::to_string(i) + ".font", sfnt.build(), alone));
            collection.fonts.push_back(sfnt);
            resources.fonts.push_back(sfnt);
        }
        const bool dfont = together == FS_FILETYPE_DFONT;
        font = open("all.font", dfont ? resources.build() : collection.build(), together);
    }

    KWPtr<FS_BaseFont> open(const std::string& name, const Bytes& bytes, FS_FontFileType type) {
        files.write(name, bytes);
        const KWPtr<FS_BaseFont> opened = createFontObject(files.uri(name), type);
        std::istringstream stream(bytes.str());
        KWError error;
        EXPECT_TRUE(opened->scanFont(error, stream)) << complaintOf(error);
        for (int face = 0; face < opened->getFontCount(); ++face)
            EXPECT_TRUE(opened->loadFont(error, face, nullptr)) << complaintOf(error);
        return opened;
    }

    TempDir files;
    int count;
    KWPtr<FS_BaseFont> font;
    std::vector<KWPtr<FS_BaseFont>> singles;
};

FaceFiles glyfCollection() {
    return {{talkative(), serif()}, FS_FILETYPE_COLLECTION, FS_FILETYPE_TRUETYPE};
}
FaceFiles cffCollection() {
    return {{cffFace(true), cffFace(false)}, FS_FILETYPE_COLLECTION, FS_FILETYPE_OPENTYPE};
}
FaceFiles dfont() {
    return {{talkative(), serif()}, FS_FILETYPE_DFONT, FS_FILETYPE_TRUETYPE};
}

// --- the list -----------------------------------------------------------------------------------

enum class Faces { ALL, NODFONT, CFF, OWN };

/// What the classes write by hand, tested by name elsewhere.
const std::set<std::string_view> kByHand = {"getTypoDescender", "getEmbedFontStream"};

/// Operations that ask for `CFF ` outlines.
const std::set<std::string_view> kOfCff = {
    "getEncodingScheme", "getCIDSystemInfo",    "makePostScriptCIDFontType0",
    "getType1CharCode",  "getType1GlyphIDCode", "getType1CMapArray",
    "getType1CMapPair",  "getType1GlyphName",   "getType1EmbedFont"};
/// Those of them that answer for codes which the calls here do not happen to name.
const std::set<std::string_view> kOfGivenCodes = {"getType1GlyphName", "getType1EmbedFont"};

/// @param forwards  whether the class forwards the operations of a column of the list
/// @param speaks    whether the faces of the fixture have something to say to an operation: where
///                  none has, equal answers prove nothing
template <class Forwards, class Speaks>
void expectTheTable(FaceFiles& files, const Forwards& forwards, const Speaks& speaks) {
    std::set<std::string> heard;
    std::set<std::string> asked;
    for (int face = 0; face < files.count; ++face) {
        FS_BaseFont& single = *files.singles[static_cast<std::size_t>(face)];
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    if constexpr (!std::is_void_v<result>) {                                                       \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        const Operation operation = &FS_BaseFont::name;                                            \
        const Comparison comparison =                                                              \
            compare(*files.font, face, single, operation, []() -> result { return missing; });     \
        if (kByHand.contains(#name)) {                                                             \
        } else if (forwards(Faces::faces)) {                                                       \
            EXPECT_TRUE(comparison.likeTheFace) << #name << " of face " << face;                   \
            asked.insert(#name);                                                                   \
            if (comparison.faceHasAnswer)                                                          \
                heard.insert(#name);                                                               \
        } else {                                                                                   \
            EXPECT_TRUE(comparison.likeNoData) << #name << " of face " << face;                    \
        }                                                                                          \
    }
#include "fonts/FS_FaceOperations.inc"
    }
    for (const std::string& name : asked)
        EXPECT_TRUE(heard.contains(name) || !speaks(name)) << name;
}

void expectNoDataOutOfRange(FaceFiles& files) {
    for (const int face :
         {-1, files.count, 99, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    if constexpr (!std::is_void_v<result>) {                                                       \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        const Operation operation = &FS_BaseFont::name;                                            \
        EXPECT_TRUE(                                                                               \
            answersNoData(*files.font, face, operation, []() -> result { return missing; }))       \
            << #name << " of face " << face;                                                       \
    }
#include "fonts/FS_FaceOperations.inc"
        files.font->setPostScriptName("Given", face);
        files.font->setHasVerticalGlyph(face);
        files.font->setEudcFont({files.font.get(), 0}, face);
    }
    for (int face = 0; face < files.count; ++face)
        EXPECT_EQ(files.font->getEudcFont(face), FS_FontRef());
}

// The tests here and those of the wrappers go by the list. This holds the list to what is asked of
// the classes: a row that moves to another column is not seen by them.
TEST(FaceForwarding, TheListSaysOfWhichOperationsADfontAndAWrapperHaveNoAnswerOfTheirFaces) {
    enum class Wrapper { INNER, SOURCE, FILE, WOFF, OWN };
    using Names = std::set<std::string_view>;
    Names notOfDfonts;
    Names notOfWrappers;
    Names ofWoffAlone;
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    if (Faces::faces != Faces::ALL)                                                                \
        notOfDfonts.insert(#name);                                                                 \
    if (Wrapper::wrapper == Wrapper::OWN)                                                          \
        notOfWrappers.insert(#name);                                                               \
    if (Wrapper::wrapper == Wrapper::WOFF)                                                         \
        ofWoffAlone.insert(#name);
#include "fonts/FS_FaceOperations.inc"
    EXPECT_EQ(notOfDfonts,
              (Names{"getCFFInfo",         "getCIDSystemInfo",      "getDefaultVertOriginY",
                     "getEmbedFontStream", "getEncodingScheme",     "getFamilyClass",
                     "getFamilySubclass",  "getGlyphVertOriginY",   "getItalicsCorrection",
                     "getMATHConstant",    "getMATHVariantH",       "getMATHVariantV",
                     "getPreferredFamily", "getPreferredSubFamily", "getStringID",
                     "getType1CMapArray",  "getType1CMapPair",      "getType1CharCode",
                     "getType1EmbedFont",  "getType1FontStream",    "getType1GlyphIDCode",
                     "getType1GlyphName",  "getTypoDescender",      "getWidth",
                     "hasMATHInfo",        "hasVariationSelector",  "makePostScriptCIDFontType0",
                     "makeSubsetFont",     "makeWebFont",           "setHasVerticalGlyph",
                     "setPostScriptName",  "variationSequence"}));
    EXPECT_EQ(notOfWrappers, (Names{"getCFFInfo",
                                    "getDefaultVertOriginY",
                                    "getEudcFont",
                                    "getEudcGlyphID",
                                    "getFamilyClass",
                                    "getFamilyName",
                                    "getFamilySubclass",
                                    "getFullFontName",
                                    "getGlyphVertOriginY",
                                    "getLogFont",
                                    "getPostScriptCIDFindfontName",
                                    "getPostScriptName",
                                    "getPreferredFamily",
                                    "getPreferredSubFamily",
                                    "getSubFamilyName",
                                    "getWeight",
                                    "getWidth",
                                    "hasVariationSelector",
                                    "isItalic",
                                    "setEudcFont",
                                    "setHasVerticalGlyph",
                                    "setPostScriptName",
                                    "variationSequence"}));
    EXPECT_EQ(ofWoffAlone, (Names{"makeSubsetFont", "makeWebFont"}));
}

TEST(FaceForwarding, ACollectionAnswersAsItsFacesDo) {
    FaceFiles files = glyfCollection();
    for (int face = 0; face < files.count; ++face) {
        const FS_FontRef link{files.font.get(), 1};
        files.font->setEudcFont(link, face);
        files.singles[static_cast<std::size_t>(face)]->setEudcFont(link, 0);
    }
    expectTheTable(
        files, [](Faces faces) { return faces != Faces::OWN; },
        [](std::string_view name) { return !kOfCff.contains(name); });
}

TEST(FaceForwarding, ACffCollectionAnswersAsItsFacesDo) {
    FaceFiles files = cffCollection();
    const std::set<std::string_view> writers = {"getEmbedFont", "makeSubsetFont", "makeWebFont"};
    expectTheTable(
        files, [](Faces faces) { return faces != Faces::OWN; },
        [&writers](std::string_view name) {
            return (kOfCff.contains(name) && !kOfGivenCodes.contains(name)) ||
                   writers.contains(name);
        });
}

TEST(FaceForwarding, ADFontAnswersAsItsFacesDoWithoutWhatItHasNot) {
    FaceFiles files = dfont();
    for (int face = 0; face < files.count; ++face) {
        const FS_FontRef link{files.font.get(), 1};
        files.font->setEudcFont(link, face);
        files.singles[static_cast<std::size_t>(face)]->setEudcFont(link, 0);
    }
    expectTheTable(
        files, [](Faces faces) { return faces == Faces::ALL; },
        [](std::string_view) { return true; });
}

TEST(FaceForwarding, AFaceOutOfRangeAnswersNoData) {
    FaceFiles collection = glyfCollection();
    expectNoDataOutOfRange(collection);
    FaceFiles cff = cffCollection();
    expectNoDataOutOfRange(cff);
    FaceFiles resources = dfont();
    expectNoDataOutOfRange(resources);
}

// What the calls are made with are references, so `void` operations are asked here.
TEST(FaceForwarding, OnlySingleFacesTakeANameOrVerticalForms) {
    FaceFiles files = glyfCollection();
    const UnicodeString own = files.font->getPostScriptName(0, 1);
    files.font->setPostScriptName("Given", 1);
    EXPECT_EQ(files.font->getPostScriptName(0, 1), own);
    files.font->setHasVerticalGlyph(1);
    EXPECT_FALSE(files.font->hasVerticalGlyph(1));
}

} // namespace
} // namespace KWFontService_NS
