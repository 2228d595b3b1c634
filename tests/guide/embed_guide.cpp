#include <KWFontService17/KWFontService.h>

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace KWFontService_NS;

//! [embed]
std::string subsetOf(const FS_FontInfo& font, const std::vector<unsigned short>& glyphs) {
    if (font.getEmbedStatus() != FS_EMBED_OUTLINES)
        return {}; // the licence does not allow it
    KWCommonNS::KWMemStream output;
    if (!font.getEmbedFont(glyphs, output))
        return {};
    return std::string(output.data(), output.size());
}
//! [embed]

//! [cidfont]
std::string cidFontOf(const FS_FontInfo& font, const std::vector<unsigned short>& glyphs,
                      icu::UnicodeString& fontName, FS_CIDSystemInfo& characters) {
    KWCommonNS::KWMemStream output;
    if (font.getEmbedStatus() != FS_EMBED_OUTLINES ||
        !font.makePostScriptCIDFontType0(glyphs, output, fontName, characters))
        return {};
    return std::string(output.data(), output.size());
}
//! [cidfont]

TEST(Guide, ASubsetIsASmallFont) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_FONT))));
    const std::string subset =
        subsetOf(font, {font.getGlyphID('A', false), font.getGlyphID('B', false)});
    EXPECT_EQ(subset.substr(0, 4), std::string("\0\1\0\0", 4));
    EXPECT_LT(subset.size(), std::filesystem::file_size(KW_GUIDE_FONT) / 4)
        << "what is left is mostly hinting and tables over all glyph ids";
}

TEST(Guide, ACidFontIsAResourceForAPage) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_CFF_FONT))));
    UnicodeString name;
    FS_CIDSystemInfo characters;
    const std::string text = cidFontOf(
        font, {font.getGlyphID('A', false), font.getGlyphID('B', false)}, name, characters);
    EXPECT_NE(text.find("\n/CIDCount 3 def\n"), std::string::npos);
    EXPECT_TRUE(name.endsWith("-LinLibertineO"));
    EXPECT_EQ(characters.Supplement, 1);
}

} // namespace
