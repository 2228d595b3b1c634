#include "fonts/FS_FaceForwarder.h"
#include "fonts/OperationSamples.h"
#include "fonts/SfntFixture.h"
#include "support/UnixPaths.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;
using KWCommonNS::KWUtil;

/// A font of a format that has no data at all.
class EmptyFont : public FS_BaseFont {
public:
    explicit EmptyFont(const KWUri& file = KWUri()) : FS_BaseFont(file) {}
    FS_FontFileType getFontFileType(int) const override { return FS_FILETYPE_AFM; }
    bool isType1Font(int) const override { return true; }
    bool isTrueTypeFont(int) const override { return false; }
    bool isType1OrNoCID(int) const override { return true; }
    bool isTrueTypeOrCID(int) const override { return false; }
    bool scanFont(KWError&, std::istream&) override {
        ++scans;
        return true;
    }
    int scans = 0;
};

/// A collection without faces: every index is out of range.
class NoFaces : public FS_FullFaceForwarder<NoFaces> {
public:
    NoFaces() : FS_FullFaceForwarder(KWUri()) {}
    FS_FontFileType getFontFileType(int) const override { return FS_FILETYPE_COLLECTION; }
    bool isType1Font(int) const override { return false; }
    bool isTrueTypeFont(int) const override { return true; }
    bool isType1OrNoCID(int) const override { return false; }
    bool isTrueTypeOrCID(int) const override { return true; }
    bool scanFont(KWError&, std::istream&) override { return true; }
    FS_TrueTypeInfo* face(int) { return nullptr; }
    const FS_TrueTypeInfo* face(int) const { return nullptr; }
};

/// Calls every operation of the list and compares its answer with the one stated there.
int expectEveryOperationAnswersMissing(FS_BaseFont& font) {
    int operations = 0;
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    {                                                                                              \
        ++operations;                                                                              \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        const Operation operation = &FS_BaseFont::name;                                            \
        EXPECT_TRUE(answersAs([&] { return callWithSamples(font, operation); },                    \
                              []() -> result { return missing; }))                                 \
            << #name;                                                                              \
    }
#include "fonts/FS_FaceOperations.inc"
    return operations;
}

TEST(BaseFont, EveryOperationOfTheListHasItsDefault) {
    const KWPtr<EmptyFont> font(new EmptyFont);
    EXPECT_EQ(expectEveryOperationAnswersMissing(*font), 78);
}

TEST(BaseFont, EveryOperationOfACollectionAnswersAFaceOutOfRange) {
    const KWPtr<NoFaces> font(new NoFaces);
    EXPECT_EQ(expectEveryOperationAnswersMissing(*font), 78);
}

TEST(BaseFont, DefaultsOutsideTheList) {
    const KWPtr<EmptyFont> font(new EmptyFont);
    int weight = 1;
    bool italic = true;
    EXPECT_FALSE(font->isOpenType());
    EXPECT_FALSE(font->isFontCollection());
    EXPECT_FALSE(font->isExtraFont(&weight, &italic, 0));
    EXPECT_EQ(weight, 1);
    EXPECT_EQ(font->getFontCount(), 1);
    EXPECT_EQ(font->getFontStream(), nullptr);
    EXPECT_EQ(font->getFontEntrySettings(), nullptr);
    EXPECT_TRUE(font->getFontAliases().empty());
    KWError error;
    EXPECT_TRUE(font->loadFont(error, 0, nullptr));
    EXPECT_EQ(error.getCode(), 0);
}

TEST(BaseFont, FileType2IsTheFileType) {
    const KWPtr<EmptyFont> font(new EmptyFont);
    EXPECT_EQ(font->getFontFileType2(0), FS_FILETYPE_AFM);
}

TEST(BaseFont, ScanNamedFontScans) {
    const KWPtr<EmptyFont> font(new EmptyFont);
    KWError error;
    std::istringstream stream;
    EXPECT_TRUE(font->scanNamedFont(error, stream, "Family", 700, 1));
    EXPECT_EQ(font->scans, 1);
}

TEST(BaseFont, AliasesAreASet) {
    const KWPtr<EmptyFont> font(new EmptyFont);
    font->addFontAlias("B");
    font->addFontAlias("A");
    font->addFontAlias("B");
    EXPECT_EQ(font->getFontAliases(), (std::set<UnicodeString>{"A", "B"}));
}

TEST(BaseFont, AnErrorIsTheMessageTheDetailAndThePath) {
    const KWTest::UnixPaths system;
    const KWPtr<EmptyFont> font(new EmptyFont(KWUri("/fonts/a.ttf")));
    KWError error;
    EXPECT_FALSE(font->fontError(error, FS_ERROR_FONT_READ, "'head' table read error"));
    EXPECT_EQ(error.getCode(), 1921);
    EXPECT_EQ(error.getMessage(),
              UnicodeString("Font read error: 'head' table read error\n/fonts/a.ttf"));
    EXPECT_EQ(error.getSecondText(), UnicodeString());
    EXPECT_EQ(error.getFirstValue(), -1);
    EXPECT_EQ(error.getSecondValue(), -1);
    EXPECT_EQ(error.getThirdText(), UnicodeString());
}

TEST(BaseFont, AnErrorWithoutDetailEndsInAFullStop) {
    const KWTest::UnixPaths system;
    const KWPtr<EmptyFont> font(new EmptyFont(KWUri("/fonts/a.ttf")));
    KWError error;
    EXPECT_FALSE(font->fontError(error, FS_ERROR_UNSUPPORTED_FONT, UnicodeString()));
    EXPECT_EQ(error.getMessage(), UnicodeString("Unsupported font.\n/fonts/a.ttf"));
}

struct Identity {
    unsigned int id;
    const char* name;
    std::set<unsigned int> kinds;
};

void expectIdentity(const FS_BaseFont& font, const Identity& identity) {
    EXPECT_EQ(font.getClassId(), identity.id);
    EXPECT_EQ(font.getClassName(), UnicodeString(identity.name));
    for (unsigned int id :
         {0xDF537371U, 0xD18D040AU, 0x523A46D6U, 0xD8D7409BU, 0x0E4266F1U, 0x0C261001U, 0x972A6D12U,
          0xA76A5E02U, 0xE0D8C304U, 0xEE4D2140U, 0xCE603D8DU, 0xB5FC60DEU, 0x5D163695U, 0x2E8D3159U,
          0x80E87634U, 0x5726A54CU, 0U})
        EXPECT_EQ(font.isKindOf(id), identity.kinds.contains(id)) << std::hex << id;
}

TEST(BaseFont, KindsFollowTheClassTree) {
    const KWPtr<EmptyFont> base(new EmptyFont);
    const KWPtr<FS_BaseFont> trueType(new FS_TrueType(KWUri()));
    const KWPtr<FS_BaseFont> openType(new FS_OpenType(KWUri()));
    expectIdentity(*base, {0x523A46D6, "FS_BaseFont", {0xDF537371, 0xD18D040A, 0x523A46D6}});
    expectIdentity(*trueType,
                   {0xD8D7409B, "FS_TrueType", {0xDF537371, 0xD18D040A, 0x523A46D6, 0xD8D7409B}});
    expectIdentity(
        *openType,
        {0x0E4266F1, "FS_OpenType", {0xDF537371, 0xD18D040A, 0x523A46D6, 0xD8D7409B, 0x0E4266F1}});
}

TEST(BaseFont, TheNumberingOfClassesIsFixed) {
    EXPECT_EQ(FS_CLASSID_COLLECTION, 0x0C261001U);
    EXPECT_EQ(FS_CLASSID_DFONT, 0x972A6D12U);
    EXPECT_EQ(FS_CLASSID_TYPE1, 0xA76A5E02U);
    EXPECT_EQ(FS_CLASSID_TYPE1_AFM, 0xE0D8C304U);
    EXPECT_EQ(FS_CLASSID_TYPE1_PFM, 0xEE4D2140U);
    EXPECT_EQ(FS_CLASSID_TYPE1_PRINTER, 0xCE603D8DU);
    EXPECT_EQ(FS_CLASSID_TYPE1_PFA, 0xB5FC60DEU);
    EXPECT_EQ(FS_CLASSID_TYPE1_PFB, 0x5D163695U);
    EXPECT_EQ(FS_CLASSID_EXTRA_FONT, 0x2E8D3159U);
    EXPECT_EQ(FS_CLASSID_LOCAL_FONT, 0x80E87634U);
    EXPECT_EQ(FS_CLASSID_WOFF, 0x5726A54CU);
}

} // namespace
} // namespace KWFontService_NS
