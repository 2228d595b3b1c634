#include <KWFontService17/KWFontService.h>

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sstream>
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

//! [merge]
enum class Outlines { trueType, cffWithCids, cffWithNames };

/// Two subsets of one font as one; empty when they have to stay two.
std::string merged(const std::string& first, const std::string& second, Outlines outlines) {
    std::istringstream a(first);
    std::istringstream b(second);
    KWCommonNS::KWMemStream output;
    const bool ok =
        outlines == Outlines::trueType
            ? FS_MergeEmbeddedFonts::mergeTrueType(output, &a, &b, true)
            : FS_MergeEmbeddedFonts::mergeCFF(output, &a, &b, outlines == Outlines::cffWithCids);
    return ok ? std::string(output.data(), output.size()) : std::string();
}
//! [merge]

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

TEST(Guide, TwoSubsetsBecomeOne) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_FONT))));
    const auto cut = [&font](char16_t character) {
        return subsetOf(font, {font.getGlyphID(character, false)});
    };
    const std::string both = merged(cut('A'), cut('B'), Outlines::trueType);
    EXPECT_GT(both.size(), cut('A').size() / 2);
    EXPECT_EQ(both.substr(0, 4), std::string("\0\1\0\0", 4));
    EXPECT_EQ(merged(cut('A'), cut('B'), Outlines::cffWithNames), "");
    EXPECT_EQ(merged(cut('A'), both.substr(0, 100), Outlines::trueType), "");
}

} // namespace
