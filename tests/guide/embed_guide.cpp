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

TEST(Guide, ASubsetIsASmallFont) {
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(KWUri(UnicodeString(KW_GUIDE_FONT))));
    const std::string subset =
        subsetOf(font, {font.getGlyphID('A', false), font.getGlyphID('B', false)});
    EXPECT_EQ(subset.substr(0, 4), std::string("\0\1\0\0", 4));
    EXPECT_LT(subset.size(), std::filesystem::file_size(KW_GUIDE_FONT) / 4)
        << "what is left is mostly hinting and tables over all glyph ids";
}

} // namespace
