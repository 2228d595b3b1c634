#include <KWFontService17/KWFontService.h>

#include <KWCommon15/KWMemStream.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace KWFontService_NS;

//! [face]
/// One `@font-face` rule of a style sheet.
struct FontFace {
    UnicodeString family;
    int weight = 400; // 0: the font's own
    int italic = 0;   // 1 italic, -1: the font's own
    UnicodeString url;
};

bool addFace(FS_ExtraFontManager& fonts, const FontFace& face) {
    KWError error;
    if (fonts.appendExtraFont(face.url, face.family, face.weight, face.italic,
                              FS_FILETYPE_REQUEST_TRUETYPE, &error) >= 0)
        return true;
    std::string text;
    std::fprintf(stderr, "%s\n", error.getMessage().toUTF8String(text).c_str());
    return false;
}
//! [face]

//! [local]
bool addLocalFace(FS_ExtraFontManager& fonts, const FontFace& face, const UnicodeString& name) {
    FS_FontInfo local;
    return local.createFont(name, 0, false, nullptr, false) &&
           fonts.appendLocalFont(&local, face.family, face.weight, face.italic, nullptr) >= 0;
}
//! [local]

//! [search]
bool findInDocument(FS_FontInfo& font, const FS_ExtraFontManager& fonts,
                    const UnicodeString& family) {
    return font.createFont(family, 400, false, fonts.getExtraFonts(), false);
}
//! [search]

//! [webfont]
bool writeWebFont(const FS_FontInfo& font, const std::vector<unsigned short>& glyphs,
                  const std::string& path) {
    KWCommonNS::KWMemStream output;
    if (font.getEmbedStatus() != FS_EMBED_OUTLINES || !font.makeWebFont(glyphs, output))
        return false;
    std::ofstream file(path, std::ios::binary);
    file.write(output.data(), static_cast<std::streamsize>(output.size()));
    return file.good();
}
//! [webfont]

class DocumentGuide : public testing::Test {
protected:
    FS_ExtraFontManager fonts;
    FS_FontInfo font;
};

TEST_F(DocumentGuide, AFaceIsFoundByTheNameOfTheRuleInItsDocumentAlone) {
    ASSERT_TRUE(addFace(fonts, {u"Of the Document", 400, 0, UnicodeString(KW_GUIDE_FONT)}));
    ASSERT_TRUE(findInDocument(font, fonts, u"Of the Document"));
    EXPECT_EQ(font.getFontFileType(), FS_FILETYPE_EXTRA);
    EXPECT_FALSE(findInDocument(font, FS_ExtraFontManager(), u"Of the Document"));
}

TEST_F(DocumentGuide, AFileThatIsNotThereGivesAMessageWithItsPath) {
    testing::internal::CaptureStderr();
    EXPECT_FALSE(addFace(fonts, {u"F", 400, 0, u"https://example.org/f.woff"}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Cannot open font-face font.\nhttps://example.org/f.woff\n");
}

TEST_F(DocumentGuide, ALocalFaceStandsForAFontOfTheService) {
    const std::filesystem::path folder = std::filesystem::path(KW_GUIDE_FONT).parent_path();
    ASSERT_GE(FS_AddFontFolderPath(KWUri(UnicodeString::fromUTF8(folder.string()))), 0);
    ASSERT_TRUE(addLocalFace(fonts, {u"Mine", 700, 1, {}}, u"DejaVu Sans"));
    ASSERT_TRUE(findInDocument(font, fonts, u"Mine"));
    EXPECT_EQ(font.getFontFileType(), FS_FILETYPE_LOCAL);
    int weight = 0;
    EXPECT_TRUE(font.isExtraFont(&weight, nullptr));
    EXPECT_EQ(weight, 700);
    EXPECT_FALSE(addLocalFace(fonts, {u"Mine", 700, 1, {}}, u"No Such Family"));
}

TEST_F(DocumentGuide, AWebFontIsReadBackAsAFontOfADocument) {
    const std::string path =
        (std::filesystem::temp_directory_path() / "kw_document_guide.woff").string();
    ASSERT_TRUE(addFace(fonts, {u"Whole", 400, 0, UnicodeString(KW_GUIDE_FONT)}));
    ASSERT_TRUE(findInDocument(font, fonts, u"Whole"));
    const unsigned short glyph = font.getGlyphID('A', false);
    EXPECT_FALSE(writeWebFont(font, {glyph}, path)) << "the wrapper has no such writer";
    FS_FontInfo file;
    ASSERT_TRUE(file.createFont(font.getFontFileName()));
    ASSERT_TRUE(writeWebFont(file, {glyph}, path));
    ASSERT_TRUE(addFace(fonts, {u"Part", 400, 0, UnicodeString::fromUTF8(path)}));
    std::filesystem::remove(path);
    FS_FontInfo part;
    ASSERT_TRUE(findInDocument(part, fonts, u"Part"));
    EXPECT_EQ(part.getFontFileType(), FS_FILETYPE_WOFF);
    EXPECT_EQ(part.getGlyphWidth(glyph, 0, false), font.getGlyphWidth(glyph, 0, false));
}

} // namespace
