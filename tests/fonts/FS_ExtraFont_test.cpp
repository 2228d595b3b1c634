#include "fonts/FS_ExtraFont.h"

#include "fonts/OperationCalls.h"
#include "fonts/SfntFixture.h"
#include "support/TempDir.h"

#include <KWCommon15/KWUtil.h>

#include <gtest/gtest.h>

#include <set>
#include <string_view>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;
using KWCommonNS::KWUtil;

/// A face that answers what a font without data does not, and a wrapper around it.
class ExtraFont : public testing::Test {
protected:
    static TestFont face() {
        TestFont font = TestFont::vertical();
        font.os2.usWeightClass = 700;
        font.os2.fsSelection = 1;
        font.os2.fsType = 8;
        font.os2.panose = {3, 2};
        font.os2.sFamilyClass = 0x0C00;
        for (const int id : {0, 8, 13, 16, 17, 20})
            font.name.records.push_back(windowsName(static_cast<std::uint16_t>(id), u"Name"));
        font.with("kern", Kern{.subtables = {{.pairs = {{2, 2, -50}, {3, 3, 20}}}}});
        return font;
    }

    ExtraFont() : inner(open(face())), font(new FS_ExtraFont(inner)) {}

    KWPtr<FS_BaseFont> open(const TestFont& source) {
        files.write("inner.ttf", source.build());
        const KWPtr<FS_BaseFont> opened(new FS_TrueType(files.uri("inner.ttf")));
        std::istringstream stream(source.build().str());
        KWError error;
        EXPECT_TRUE(opened->scanFont(error, stream) && opened->loadFont(error, 0, nullptr));
        return opened;
    }
    bool describe(const UnicodeString& family, int weight, int italic) {
        std::istringstream stream(face().build().str());
        KWError error;
        return font->scanNamedFont(error, stream, family, weight, italic);
    }

    TempDir files;
    KWPtr<FS_BaseFont> inner;
    KWPtr<FS_ExtraFont> font;
    KWPtr<FS_ExtraFont> empty{new FS_ExtraFont(KWPtr<FS_BaseFont>())};
};

TEST_F(ExtraFont, IsAClassOfItsOwn) {
    EXPECT_EQ(font->getClassId(), FS_CLASSID_EXTRA_FONT);
    EXPECT_EQ(font->getClassName(), UnicodeString("FS_ExtraFont"));
    for (const unsigned id : {0x2E8D3159U, 0x523A46D6U, 0xD18D040AU, 0xDF537371U})
        EXPECT_TRUE(font->isKindOf(id)) << std::hex << id;
    EXPECT_FALSE(font->isKindOf(FS_CLASSID_TRUETYPE));
}

TEST_F(ExtraFont, HasTheFileAndTheKindOfTheFontInside) {
    EXPECT_EQ(font->getUri().getString(), inner->getUri().getString());
    EXPECT_EQ(font->getFontFileType(0), 12);
    EXPECT_EQ(font->getFontFileType2(0), 5);
    EXPECT_TRUE(font->isTrueTypeFont(0));
    EXPECT_TRUE(font->isTrueTypeOrCID(0));
    EXPECT_FALSE(font->isType1Font(0));
    EXPECT_FALSE(font->isType1OrNoCID(0));
    EXPECT_EQ(font->getFontCount(), 1);
    EXPECT_NE(font->getFTFace(0), nullptr);
    EXPECT_EQ(font->getFTFace(0), inner->getFTFace(0));
    EXPECT_EQ(font->getFontStream(), nullptr);
}

TEST_F(ExtraFont, WithoutAFontInsideItIsOfNoKind) {
    EXPECT_TRUE(empty->getUri().isEmpty());
    EXPECT_EQ(empty->getFontFileType2(0), 0);
    EXPECT_FALSE(empty->isTrueTypeFont(0));
    EXPECT_FALSE(empty->isTrueTypeOrCID(0));
    EXPECT_FALSE(empty->isType1Font(0));
    EXPECT_FALSE(empty->isType1OrNoCID(0));
    EXPECT_EQ(empty->getFTFace(0), nullptr);
    std::istringstream stream;
    KWError error;
    EXPECT_FALSE(empty->scanFont(error, stream));
    EXPECT_FALSE(empty->loadFont(error, 0, nullptr));
    EXPECT_FALSE(error.isError());
}

/// Operations that the wrapper answers by what the document declared.
const std::set<std::string_view> kDeclared = {"getWeight", "isItalic", "getLogFont"};

enum class Wrapper { INNER, SOURCE, FILE, WOFF, OWN };

constexpr bool isForwarded(Wrapper wrapper) {
    return wrapper == Wrapper::INNER || wrapper == Wrapper::SOURCE || wrapper == Wrapper::FILE;
}

TEST_F(ExtraFont, AnswersEachOperationByTheFontInsideOrNotAtAll) {
    int heard = 0;
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    if constexpr (!std::is_void_v<result>) {                                                       \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        const Comparison comparison = compare(*font, 0, *inner, Operation(&FS_BaseFont::name),     \
                                              []() -> result { return missing; });                 \
        if (isForwarded(Wrapper::wrapper)) {                                                       \
            EXPECT_TRUE(comparison.likeTheFace) << #name;                                          \
            heard += comparison.faceHasAnswer ? 1 : 0;                                             \
        } else if (!kDeclared.contains(#name)) {                                                   \
            EXPECT_TRUE(comparison.likeNoData) << #name;                                           \
        }                                                                                          \
    }
#include "fonts/FS_FaceOperations.inc"
    EXPECT_GE(heard, 30) << "equal answers prove nothing where the font inside has none";
}

TEST_F(ExtraFont, WithoutAFontInsideAnswersNoData) {
#define FS_OPERATION(faces, wrapper, facade, result, name, parameters, arguments, qualifier,       \
                     missing)                                                                      \
    if constexpr (!std::is_void_v<result>) {                                                       \
        using Operation = result (FS_BaseFont::*)(FS_PARAMETERS parameters int) qualifier;         \
        EXPECT_TRUE(answersNoData(*empty, 0, Operation(&FS_BaseFont::name), []() -> result {       \
            return missing;                                                                        \
        })) << #name;                                                                              \
    }
#include "fonts/FS_FaceOperations.inc"
}

TEST_F(ExtraFont, WithoutADeclarationHasTheStyleOfTheFontInside) {
    EXPECT_EQ(font->getWeight(0), 700);
    EXPECT_TRUE(font->isItalic(0));
    int weight = 0;
    bool italic = false;
    EXPECT_TRUE(font->isExtraFont(&weight, &italic, 0));
    EXPECT_EQ(weight, 700);
    EXPECT_TRUE(italic);
    EXPECT_TRUE(font->isExtraFont(nullptr, nullptr, 0));
    EXPECT_FALSE(inner->isExtraFont(nullptr, nullptr, 0));
}

TEST_F(ExtraFont, ADeclaredStyleGoesFirst) {
    ASSERT_TRUE(describe(u"Declared", 300, 0));
    EXPECT_EQ(font->getWeight(0), 300);
    EXPECT_FALSE(font->isItalic(0));
    int weight = 0;
    bool italic = true;
    EXPECT_TRUE(font->isExtraFont(&weight, &italic, 0));
    EXPECT_EQ(weight, 300);
    EXPECT_FALSE(italic);
    ASSERT_TRUE(describe(u"Declared", 0, 1));
    EXPECT_EQ(font->getWeight(0), 700) << "0 is the font's own";
    EXPECT_TRUE(font->isItalic(0));
    ASSERT_TRUE(describe(u"Declared", 0, 2));
    EXPECT_FALSE(font->isItalic(0)) << "only 1 is italic";
    ASSERT_TRUE(describe(u"Declared", 0, -1));
    EXPECT_TRUE(font->isItalic(0));
}

TEST_F(ExtraFont, TheRecordOfAFontHasTheDeclaredNameTwice) {
    ASSERT_TRUE(describe(u"Declared", 300, 0));
    FS_EnumLogFontEx record;
    ASSERT_TRUE(font->getLogFont(record, 0));
    EXPECT_EQ(record.getFaceName(), UnicodeString(u"Declared"));
    EXPECT_EQ(record.getFullName(), UnicodeString(u"Declared"));
    EXPECT_EQ(record.getWeight(), 300);
    EXPECT_FALSE(record.isItalic());
}

TEST_F(ExtraFont, AWidthIsNotDeclaredAndNotAskedFor) {
    TestFont narrow = face();
    narrow.os2.usWidthClass = 3;
    const KWPtr<FS_ExtraFont> wrapper(new FS_ExtraFont(open(narrow)));
    EXPECT_EQ(wrapper->getWidth(0), 5);
}

} // namespace
} // namespace KWFontService_NS
