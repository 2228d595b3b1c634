// `makePostScriptCIDFontType0` as fonts of each kind answer it.

#include "PackedFonts.h"
#include "fonts/FS_DFont.h"
#include "fonts/FS_TrueTypeCollection.h"
#include "fonts/FS_WOFF.h"
#include "fonts/FaceFixture.h"
#include "support/TempDir.h"
#include "support/WoffFile.h"

#include <KWFontService17/FS_FontInfo.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <stdexcept>

namespace KWFontService_NS {
namespace {

using namespace KWTest;
using KWCommonNS::KWPtr;
using testing::HasSubstr;

/// A font in a file of its own, which the operation opens by itself.
template <class Font>
class FontOnDisk {
public:
    explicit FontOnDisk(const Bytes& file) : path(folder_.write("font", file)) {
        font_ = KWPtr<Font>(new Font(folder_.uri("font")));
        std::ifstream stream(path, std::ios::binary);
        KWError error;
        if (!font_->scanFont(error, stream)) {
            std::string text;
            throw std::runtime_error("the fixture does not scan: " +
                                     error.getMessage().toUTF8String(text));
        }
        for (int face = 0; face < font_->getFontCount(); ++face)
            if (!font_->loadFont(error, face, nullptr))
                throw std::runtime_error("the fixture does not load");
    }
    Font& operator*() const { return *font_; }

private:
    TempDir folder_;

public:
    const std::filesystem::path path;

private:
    KWPtr<Font> font_;
};

/// What one call gives.
struct CIDFont {
    bool ok = false;
    std::string text;
    std::string name;
    FS_CIDSystemInfo info{.Registry = "before", .Ordering = "before", .Supplement = 9};

    CIDFont(FS_BaseFont& font, const Glyphs& glyphs, int faceIndex = 0) {
        KWMemStream out;
        out += "%!";
        UnicodeString fontName("before");
        ok = font.makePostScriptCIDFontType0(glyphs, out, fontName, info, faceIndex);
        text = bytesOf(out).str();
        fontName.toUTF8String(name);
    }
    /// Names and text as they were before the call.
    bool isUntouched() const {
        return !ok && text == "%!" && name == "before" && info.Registry == "before" &&
               info.Ordering == "before" && info.Supplement == 9;
    }
};

/// The text without what differs from call to call.
std::string withoutTag(const std::string& text) {
    return std::regex_replace(text, std::regex("KW[0-9A-F]{4}-"), "KW0000-");
}

TestFont withPostScriptName(std::u16string_view name) {
    TestFont font = TestFont::openType();
    font.name.records.back() = windowsName(6, name);
    return font;
}

TEST(CIDFont, ListsGiveAsManyCIDs) {
    const FontOnDisk<FS_OpenType> font(TestFont::openType().build());
    EXPECT_THAT(CIDFont(*font, {0}).text, HasSubstr("/CIDCount 1 def\n"));
    EXPECT_THAT(CIDFont(*font, {}).text, HasSubstr("/CIDCount 1 def\n"));
    EXPECT_THAT(CIDFont(*font, {2, 2, 3, 2}).text, HasSubstr("/CIDCount 4 def\n"));
}

TEST(CIDFont, IsAppendedAndNamedByTheTag) {
    const FontOnDisk<FS_OpenType> font(TestFont::openType().build());
    const CIDFont made(*font, {2});
    ASSERT_TRUE(made.ok);
    EXPECT_EQ(withoutTag(made.name), "KW0000-KWTestOpenType-Regular");
    EXPECT_THAT(made.text, testing::StartsWith("%!/CIDInit /ProcSet findresource begin\n"));
    EXPECT_THAT(made.text, HasSubstr("/CIDFontName /" + made.name + " def\n"));
    EXPECT_EQ(made.info.Registry, "Kestrelworks");
    EXPECT_EQ(made.info.Ordering, made.name.substr(0, 7) + "Subset");
    EXPECT_EQ(made.info.Supplement, 1);
    EXPECT_THAT(made.text, HasSubstr("/Registry (Kestrelworks) def\n/Ordering (" +
                                     made.info.Ordering + ") def\n/Supplement 1 def\n"));
}

TEST(CIDFont, TheFontsOwnCollectionDoesNotShow) {
    CffCID table;
    table.glyphs = {{0, 0, {14}}, {7, 0, {14}}, {9, 0, {14}}, {8, 0, {14}}};
    TestFont source = TestFont::openType();
    source.with("CFF ", table);
    const FontOnDisk<FS_OpenType> font(source.build());
    const CIDFont made(*font, {1, 2});
    ASSERT_TRUE(made.ok);
    EXPECT_THAT(made.text, testing::Not(HasSubstr("Adobe")));
}

TEST(CIDFont, CallsRarelyAgreeOnATag) {
    const FontOnDisk<FS_OpenType> font(TestFont::openType().build());
    std::set<std::string> names;
    constexpr std::size_t kCalls = 200;
    for (std::size_t i = 0; i < kCalls; ++i)
        names.insert(CIDFont(*font, {2}).name);
    // Of 200 tags out of 65,536 fewer than one is expected to come again.
    EXPECT_GT(names.size(), kCalls - 20);
}

TEST(CIDFont, BlanksOfTheNameAreLowLines) {
    const FontOnDisk<FS_OpenType> font(withPostScriptName(u"My Own Font").build());
    EXPECT_EQ(CIDFont(*font, {2}).name.substr(7), "My_Own_Font");
}

TEST(CIDFont, ANameCannotSmuggleInPostScript) {
    const FontOnDisk<FS_OpenType> font(withPostScriptName(u"A def(x)<y>[z]{q}/n%c-\u00E9").build());
    EXPECT_EQ(CIDFont(*font, {2}).name.substr(7), "A_def_x__y__z__q__n_c-\u00E9");
    (*font).setPostScriptName(UnicodeString(u"A\ndef\t\x7F"), 0);
    EXPECT_EQ(CIDFont(*font, {2}).name.substr(7), "A_def__");
}

TEST(CIDFont, OfACollectionIsThatOfTheMember) {
    const FontOnDisk<FS_TrueTypeCollection> font(
        collectionOf({withPostScriptName(u"First"), withPostScriptName(u"Second")}).build());
    EXPECT_EQ(CIDFont(*font, {2}, 0).name.substr(7), "First");
    EXPECT_EQ(CIDFont(*font, {2}, 1).name.substr(7), "Second");
    EXPECT_TRUE(CIDFont(*font, {2}, 2).isUntouched());
    const FontOnDisk<FS_TrueTypeCollection> glyf(collectionOf({firstFace()}).build());
    EXPECT_TRUE(CIDFont(*glyf, {2}).isUntouched());
}

TEST(CIDFont, OfAWoffIsThatOfTheFontInside) {
    const Bytes sfnt = TestFont::openType().build();
    const FontOnDisk<FS_OpenType> plain(sfnt);
    const FontOnDisk<FS_WOFF> packed(WoffFile::of(sfnt).build());
    const CIDFont made(*packed, {3, 2});
    ASSERT_TRUE(made.ok);
    EXPECT_EQ(withoutTag(made.text), withoutTag(CIDFont(*plain, {3, 2}).text));
    const FontOnDisk<FS_WOFF> glyf(WoffFile::of(TestFont::latin().build()).build());
    EXPECT_TRUE(CIDFont(*glyf, {2}).isUntouched());
}

TEST(CIDFont, OtherFontsHaveNone) {
    const FontOnDisk<FS_TrueType> trueType(TestFont::latin().build());
    EXPECT_TRUE(CIDFont(*trueType, {2}).isUntouched());
    const FontOnDisk<FS_DFont> dfont(resourcesOf({firstFace()}).build());
    EXPECT_TRUE(CIDFont(*dfont, {2}).isUntouched());
}

TEST(CIDFont, NothingIsWrittenOnFailure) {
    const FontOnDisk<FS_OpenType> font(TestFont::openType().build());
    EXPECT_TRUE(CIDFont(*font, {2, 99}).isUntouched());
    std::filesystem::remove(font.path);
    EXPECT_TRUE(CIDFont(*font, {2}).isUntouched());
}

TEST(CIDFont, ATableBeyondTheFileGivesNothing) {
    const FontOnDisk<FS_OpenType> font(TestFont::openType().build());
    const TTI_TableRecord* const table = (*font).face(0)->getTableEntry(sfntTag("CFF "));
    std::filesystem::resize_file(font.path, table->offset + table->length);
    EXPECT_TRUE(CIDFont(*font, {2}).ok);
    std::filesystem::resize_file(font.path, table->offset + table->length - 1);
    EXPECT_TRUE(CIDFont(*font, {2}).isUntouched());
}

} // namespace
} // namespace KWFontService_NS
