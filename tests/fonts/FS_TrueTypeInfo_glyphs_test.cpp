#include "fonts/FS_FontFileOptions.h"
#include "fonts/SfntFixture.h"
#include "registry/FS_FontService.h"
#include "registry/FakeFont.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace KWFontService_NS {
namespace {

using namespace KWTest;

constexpr int kBracketChar = 0x300C;

struct Glyphs {
    std::vector<unsigned short> ids;
    int firstMissing = -2;
};

template <class Font>
Glyphs glyphsOf(const Font& font, const UnicodeString& text, bool vertical = false) {
    Glyphs result;
    result.ids.resize(static_cast<std::size_t>(text.length()));
    int count = 77;
    EXPECT_TRUE(
        font->getGlyphIDs(text, result.ids.data(), count, vertical, &result.firstMissing, 0));
    result.ids.resize(static_cast<std::size_t>(count));
    return result;
}

using Ids = std::vector<unsigned short>;

// --- one character ------------------------------------------------------------------------------

TEST(FaceGlyphs, BeforeTheLoadEveryQueryMisses) {
    MemoryFont font(TestFont::vertical().build());
    ASSERT_TRUE(font.scan());
    const FS_TrueTypeInfo& info = font.info();
    EXPECT_EQ(info.getGlyphID('A', false), FS_NO_GLYPH);
    EXPECT_EQ(info.getEudcGlyphID('A'), FS_NO_GLYPH);
    EXPECT_EQ(info.variationSequence('A', 0xFE00), FS_NO_GLYPH);
    EXPECT_FALSE(info.hasVariationSelector());
    EXPECT_FALSE(info.hasVerticalGlyph());
    EXPECT_EQ(info.getGlyphClassDef(1), GlyphClassDef::Unknown);
    EXPECT_EQ(info.getEmbedableCharCount(), 0U);
}

TEST(FaceGlyphs, ACharacterHasItsGlyphOrNone) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphID('A', false, 0), TestFont::kA);
    EXPECT_EQ(font->getGlyphID('A', true, 0), TestFont::kA) << "no vertical forms at all";
    EXPECT_EQ(font->getGlyphID('Q', false, 0), FS_NO_GLYPH);
    EXPECT_EQ(font->getGlyphID('Q', true, 0), FS_NO_GLYPH);
    EXPECT_GT(font->getEmbedableCharCount(0), 0U);
}

TEST(FaceGlyphs, GlyphZeroCountsOnlyWithZeroGlyphIdSet) {
    TestFont source = TestFont::latin();
    source.cmap = Cmap::unicode({{'A', 2}, {'B', 0}});
    const Bytes file = source.build();
    MemoryFont plain(file);
    ASSERT_TRUE(plain.scanAndLoad());
    EXPECT_EQ(plain->getGlyphID('B', false, 0), FS_NO_GLYPH);

    FS_FontFileOptions options;
    options.useZeroGlyphId = true;
    MemoryFont font(file);
    font->setFontEntrySettings(&options);
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphID('B', false, 0), 0);
}

// --- vertical forms -----------------------------------------------------------------------------

TEST(FaceGlyphs, AVerticalFormComesFromTheVertFeature) {
    MemoryFont font(TestFont::vertical().build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_TRUE(font->hasVerticalGlyph(0));
    EXPECT_EQ(font->getGlyphID(kBracketChar, false, 0), TestFont::kBracket);
    EXPECT_EQ(font->getGlyphID(kBracketChar, true, 0), TestFont::kBracketVertical);
    EXPECT_EQ(font->getGlyphID(0x3042, true, 0), TestFont::kHiraganaA) << "it has no other form";
}

TEST(FaceGlyphs, TheFirstSubtableThatAnswersWins) {
    const std::uint16_t bracket = TestFont::kBracket;
    const SingleSubstGsub gsub{
        .subtables = {{.format = 2, .pairs = {{TestFont::kHiraganaA, 1}}},
                      {.format = 2, .pairs = {{bracket, 0xFFFF}}}, // no substitution
                      {.format = 1, .pairs = {{bracket, TestFont::kBracketVertical}}},
                      {.format = 2, .pairs = {{bracket, 0}}}}};
    MemoryFont font(TestFont::vertical().with("GSUB", gsub).build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphID(kBracketChar, true, 0), TestFont::kBracketVertical);
}

TEST(FaceGlyphs, MortAnswersWithoutAVertFeature) {
    const Mort mort = Mort::vertical(
        {{TestFont::kHiraganaA, 0xFFFF}, {TestFont::kBracket, TestFont::kBracketVertical}});
    MemoryFont font(TestFont::vertical().without("GSUB").with("mort", mort).build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_TRUE(font->hasVerticalGlyph(0));
    EXPECT_EQ(font->getGlyphID(kBracketChar, true, 0), TestFont::kBracketVertical);
    EXPECT_EQ(font->getGlyphID(0x3042, true, 0), TestFont::kHiraganaA)
        << "a substitute of 0xFFFF is no answer";
}

TEST(FaceGlyphs, MortIsNotReadBesideAVertFeature) {
    const Mort mort = Mort::vertical({{TestFont::kHiraganaA, TestFont::kSpace}});
    MemoryFont font(TestFont::vertical().with("mort", mort).build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphID(0x3042, true, 0), TestFont::kHiraganaA);
}

TEST(FaceGlyphs, AnEmptyMortListIsNoVerticalForm) {
    MemoryFont font(TestFont::vertical().without("GSUB").with("mort", Mort::vertical({})).build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_FALSE(font->hasVerticalGlyph(0));
}

TEST(FaceGlyphs, AFontMayBeToldToCountAsVertical) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_FALSE(font->hasVerticalGlyph(0));
    font->setHasVerticalGlyph(0);
    EXPECT_TRUE(font->hasVerticalGlyph(0));
}

// --- variation sequences and classes ------------------------------------------------------------

TEST(FaceGlyphs, VariationSequencesAreThoseOfTheCharacterMap) {
    TestFont source = TestFont::latin();
    source.cmap.records.push_back(
        {0, 5,
         CmapFormat14{.selectors = {{.defaults = {{'A', 0}}, .mappings = {{'B', TestFont::kC}}}}}
             .build()});
    MemoryFont font(source.build());
    ASSERT_TRUE(font.scanAndLoad()) << font.complaint();
    EXPECT_TRUE(font->hasVariationSelector(0));
    EXPECT_EQ(font->variationSequence('A', 0xFE00, 0), TestFont::kA);
    EXPECT_EQ(font->variationSequence('B', 0xFE00, 0), TestFont::kC);
    EXPECT_EQ(font->variationSequence('C', 0xFE00, 0), FS_NO_GLYPH);
}

TEST(FaceGlyphs, GlyphClassesAreThoseOfGdef) {
    const Gdef gdef{.glyphClassDef = classDefFormat2({{2, 4, 1}, {5, 5, 3}})};
    MemoryFont font(TestFont::latin().with("GDEF", gdef).build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphClassDef(4, 0), GlyphClassDef::Base);
    EXPECT_EQ(font->getGlyphClassDef(5, 0), GlyphClassDef::Mark);
    EXPECT_EQ(font->getGlyphClassDef(6, 0), GlyphClassDef::Unknown) << "not class 0";
    EXPECT_EQ(font->getGlyphClassDef(0xFFFF, 0), GlyphClassDef::Unknown);
}

TEST(FaceGlyphs, NoGlyphHasNoClassThoughARangeHoldsIt) {
    const Gdef gdef{.glyphClassDef = classDefFormat2({{0, 0xFFFF, 1}})};
    MemoryFont font(TestFont::latin().with("GDEF", gdef).build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphClassDef(0xFFFE, 0), GlyphClassDef::Base);
    EXPECT_EQ(font->getGlyphClassDef(0xFFFF, 0), GlyphClassDef::Unknown);
}

TEST(FaceGlyphs, AFontWithClassDefFormat1HasNoClasses) {
    const Gdef gdef{.glyphClassDef = classDefFormat1(0, {1, 1, 1, 1, 1, 1, 1})};
    MemoryFont font(TestFont::latin().with("GDEF", gdef).build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getGlyphClassDef(2, 0), GlyphClassDef::Unknown);
}

// --- texts --------------------------------------------------------------------------------------

TEST(FaceGlyphs, ATextHasOneGlyphForEachCodePoint) {
    TestFont source = TestFont::latin();
    source.cmap = {.records = {{3, 10, CmapFormat12::of({{'A', 2}, {0x1F600, 3}}).build()}}};
    MemoryFont font(source.build());
    ASSERT_TRUE(font.scanAndLoad());
    const Glyphs glyphs = glyphsOf(font, UnicodeString(u"A\U0001F600A"));
    EXPECT_EQ(glyphs.ids, (Ids{2, 3, 2}));
    EXPECT_EQ(glyphs.firstMissing, -1);
}

TEST(FaceGlyphs, AnEmptyTextHasNoGlyphs) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    const Glyphs glyphs = glyphsOf(font, UnicodeString());
    EXPECT_TRUE(glyphs.ids.empty());
    EXPECT_EQ(glyphs.firstMissing, -1);
}

TEST(FaceGlyphs, TheFirstMissIsToldInUtf16Units) {
    TestFont source = TestFont::latin();
    source.cmap = {.records = {{3, 10, CmapFormat12::of({{'A', 2}, {0x1F600, 3}}).build()}}};
    MemoryFont font(source.build());
    ASSERT_TRUE(font.scanAndLoad());
    const Glyphs glyphs = glyphsOf(font, UnicodeString(u"\U0001F600AxAy"));
    EXPECT_EQ(glyphs.ids, (Ids{3, 2, FS_NO_GLYPH, 2, FS_NO_GLYPH}));
    EXPECT_EQ(glyphs.firstMissing, 3) << "the second miss is not told";
}

TEST(FaceGlyphs, LoneSurrogatesCountForThemselves) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    const char16_t units[] = {0xDC00, 'A', 0xD800, 'A', 0xD800};
    const Glyphs glyphs = glyphsOf(font, UnicodeString(units, 5));
    EXPECT_EQ(glyphs.ids, (Ids{FS_NO_GLYPH, 2, FS_NO_GLYPH, 2, FS_NO_GLYPH}));
    EXPECT_EQ(glyphs.firstMissing, 0);
}

TEST(FaceGlyphs, TheNonCharacterFFFFIsAMissThatIsNotTold) {
    TestFont source = TestFont::latin();
    source.cmap = {.records = {{3, 10, CmapFormat12::of({{'A', 2}, {0xFFFF, 3}}).build()}}};
    MemoryFont font(source.build());
    ASSERT_TRUE(font.scanAndLoad());
    const char16_t units[] = {'A', 0xFFFF, 'x'};
    const Glyphs glyphs = glyphsOf(font, UnicodeString(units, 3));
    EXPECT_EQ(glyphs.ids, (Ids{2, FS_NO_GLYPH, FS_NO_GLYPH}));
    EXPECT_EQ(glyphs.firstMissing, -1) << "and the miss behind it counts as a second one";
}

TEST(FaceGlyphs, ATextTakesVerticalFormsWhenAsked) {
    MemoryFont font(TestFont::vertical().build());
    ASSERT_TRUE(font.scanAndLoad());
    const UnicodeString text(u"\u300C\u3042x");
    EXPECT_EQ(glyphsOf(font, text, false).ids,
              (Ids{TestFont::kBracket, TestFont::kHiraganaA, FS_NO_GLYPH}));
    EXPECT_EQ(glyphsOf(font, text, true).ids,
              (Ids{TestFont::kBracketVertical, TestFont::kHiraganaA, FS_NO_GLYPH}));
}

TEST(FaceGlyphs, ThePlaceOfTheFirstMissNeedNotBeAsked) {
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    unsigned short glyphs[2] = {};
    int count = 0;
    EXPECT_TRUE(font->getGlyphIDs(UnicodeString(u"xA"), glyphs, count, false, nullptr, 0));
    EXPECT_EQ(count, 2);
    EXPECT_EQ(glyphs[0], FS_NO_GLYPH);
    EXPECT_EQ(glyphs[1], TestFont::kA);
}

// --- end-user-defined characters ----------------------------------------------------------------

/// A font that has some end-user-defined characters and counts who asks.
class EudcFont : public FakeFont {
public:
    explicit EudcFont(std::vector<int> characters) : characters_(std::move(characters)) {}
    unsigned short getEudcGlyphID(int ch, int faceIndex) const override {
        ++asked;
        face = faceIndex;
        for (const int mine : characters_) {
            if (mine == ch)
                return 5;
        }
        return FS_NO_GLYPH;
    }
    mutable int asked = 0;
    mutable int face = -1;

private:
    std::vector<int> characters_;
};

class FaceEudc : public testing::Test {
protected:
    FaceEudc()
        : service_(getFontService(nullptr, nullptr, nullptr)), bitmap_(service_->eudcBitmap) {
        service_->eudcBitmap = {};
        service_->addEudcRange(0xE000, 0xE0FF);
    }
    ~FaceEudc() override {
        service_->eudcBitmap = bitmap_;
        service_->defaultEudcFont = {};
        service_->defaultEudcFontVertical = {};
    }
    static FS_FontRef ref(EudcFont& font, std::int16_t face) { return {&font, face}; }

    FS_FontService* service_;

private:
    decltype(FS_FontService::eudcBitmap) bitmap_;
};

TEST_F(FaceEudc, ACharacterOfTheFacesOwnEudcFontIsStoredAsZero) {
    KWCommonNS::KWPtr<EudcFont> own(new EudcFont({0xE000}));
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    font->setEudcFont(ref(*own, 3), 0);
    const Glyphs glyphs = glyphsOf(font, UnicodeString(u"\uE000A\uE000"));
    EXPECT_EQ(glyphs.ids, (Ids{0, TestFont::kA, 0}));
    EXPECT_EQ(glyphs.firstMissing, -1) << "what an end-user font has is not missing";
    EXPECT_EQ(own->face, 3);
}

TEST_F(FaceEudc, TheSharedFontIsAskedAfterTheFacesOwn) {
    KWCommonNS::KWPtr<EudcFont> own(new EudcFont({0xE000}));
    KWCommonNS::KWPtr<EudcFont> shared(new EudcFont({0xE000, 0xE001}));
    KWCommonNS::KWPtr<EudcFont> upright(new EudcFont({0xE002}));
    service_->defaultEudcFont = ref(*shared, 0);
    service_->defaultEudcFontVertical = ref(*upright, 0);
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    font->setEudcFont(ref(*own, 0), 0);
    const Glyphs glyphs = glyphsOf(font, UnicodeString(u"\uE000\uE001\uE002"));
    EXPECT_EQ(glyphs.ids, (Ids{0, 0, FS_NO_GLYPH}));
    EXPECT_EQ(glyphs.firstMissing, 2);
    EXPECT_EQ(shared->asked, 2) << "not for what the own font has";
}

TEST_F(FaceEudc, AFaceWithVerticalFormsAsksTheVerticalSharedFont) {
    KWCommonNS::KWPtr<EudcFont> shared(new EudcFont({0xE001}));
    KWCommonNS::KWPtr<EudcFont> upright(new EudcFont({0xE002}));
    service_->defaultEudcFont = ref(*shared, 0);
    service_->defaultEudcFontVertical = ref(*upright, 0);
    MemoryFont font(TestFont::vertical().build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(glyphsOf(font, UnicodeString(u"\uE002\uE001")).ids, (Ids{0, FS_NO_GLYPH}));
}

TEST_F(FaceEudc, OnlyTheFirstMissIsSought) {
    KWCommonNS::KWPtr<EudcFont> own(new EudcFont({0xE000}));
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    font->setEudcFont(ref(*own, 0), 0);
    const Glyphs glyphs = glyphsOf(font, UnicodeString(u"x\uE000"));
    EXPECT_EQ(glyphs.ids, (Ids{FS_NO_GLYPH, FS_NO_GLYPH}));
    EXPECT_EQ(glyphs.firstMissing, 0);
    EXPECT_EQ(own->asked, 0);
}

TEST_F(FaceEudc, CharactersOutsideTheRangesAreNotSought) {
    KWCommonNS::KWPtr<EudcFont> own(new EudcFont({'x', 0xE100, 0x1E000}));
    MemoryFont font(TestFont::latin().build());
    ASSERT_TRUE(font.scanAndLoad());
    font->setEudcFont(ref(*own, 0), 0);
    for (const char32_t ch : {U'x', U'\uE100', U'\U0001E000'}) {
        const Glyphs glyphs = glyphsOf(font, UnicodeString(static_cast<UChar32>(ch)));
        EXPECT_EQ(glyphs.ids, Ids{FS_NO_GLYPH});
        EXPECT_EQ(glyphs.firstMissing, 0);
    }
    EXPECT_EQ(own->asked, 0);
}

TEST_F(FaceEudc, ACharacterThatTheFaceHasIsNotSought) {
    KWCommonNS::KWPtr<EudcFont> own(new EudcFont({0xE000}));
    TestFont source = TestFont::latin();
    source.cmap = Cmap::unicode({{0xE000, 4}});
    MemoryFont font(source.build());
    ASSERT_TRUE(font.scanAndLoad());
    font->setEudcFont(ref(*own, 0), 0);
    EXPECT_EQ(glyphsOf(font, UnicodeString(u"\uE000")).ids, Ids{4});
    EXPECT_EQ(own->asked, 0);
}

TEST_F(FaceEudc, AGlyphWithoutAnAdvanceIsNoEndUserCharacter) {
    TestFont source = TestFont::latin();
    source.cmap = Cmap::unicode({{0xE000, 3}, {0xE001, 4}});
    source.hmtx.metrics[3].advance = 0;
    MemoryFont font(source.build());
    ASSERT_TRUE(font.scanAndLoad());
    EXPECT_EQ(font->getEudcGlyphID(0xE000, 0), FS_NO_GLYPH);
    EXPECT_EQ(font->getEudcGlyphID(0xE001, 0), 4);
    EXPECT_EQ(font->getEudcGlyphID(0xE002, 0), FS_NO_GLYPH);
    EXPECT_EQ(font->getGlyphID(0xE000, false, 0), 3) << "but it is a glyph";
}

} // namespace
} // namespace KWFontService_NS
