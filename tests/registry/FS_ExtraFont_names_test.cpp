#include "fonts/FS_WOFF.h"
#include "registry/FolderScan.h"
#include "registry/FontFileLoader.h"
#include "registry/RegistryFixture.h"
#include "support/WoffFile.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_GlyphBMP.h>
#include <KWFontService17/FS_GlyphBMPSetting.h>

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

Bytes woff(const TestFont& font) {
    return WoffFile::of(font.build()).build();
}

class ExtraFontNames : public RegistryTest {
protected:
    KWPtr<FS_WOFF> scanned(const TestFont& source) {
        KWPtr<FS_WOFF> font(new FS_WOFF(files().uri("web.woff")));
        std::istringstream stream(woff(source).str());
        KWError error;
        EXPECT_TRUE(font->scanNamedFont(error, stream, u"Declared", 300, 1));
        return font;
    }
};

TEST_F(ExtraFontNames, AreThoseThatWereGivenAlone) {
    const auto font = scanned(namedFont(u"Inside"));
    FS_FontPool pool;
    font->registerFontNames(pool);
    EXPECT_TRUE(pool.byName.empty());
    font->addFontAlias(u"Given Name");
    font->registerFontNames(pool);
    ASSERT_EQ(pool.byName.size(), 1U);
    const FS_FontFamilyMap& faces = pool.byName.begin()->second;
    ASSERT_EQ(faces.size(), 1U);
    EXPECT_EQ(faces.begin()->first, (FS_FontKey{300, true, 5})) << "by the declared style";
    EXPECT_EQ(faces.begin()->second, (FS_FontRef{font.get(), 0}));
}

TEST_F(ExtraFontNames, TheFileNameLeadsToTheFont) {
    const auto font = scanned(namedFont(u"Inside"));
    FS_FontPool pool;
    font->registerFileName(pool, font->getUri());
    EXPECT_EQ(pool.findFont(u"web.woff", {}).font, font.get());
}

TEST_F(ExtraFontNames, AWoffFileInAFolderIsFoundByItsFileName) {
    files().write("web.woff", woff(namedFont(u"Inside")));
    files().write("bad.woff", "wOFF");
    addFolder("", false);
    scanFolders(service());
    EXPECT_EQ(found(u"web.woff"), "web.woff");
    EXPECT_EQ(found(u"WEB"), "web.woff");
    EXPECT_EQ(found(u"Inside"), "") << "its own name is not asked for";
    EXPECT_EQ(service().fontPool.fonts.size(), 1U);
    EXPECT_EQ(service().errors.size(), 1U);
}

TEST_F(ExtraFontNames, AFontInfoStandsForTheFontInside) {
    FS_FontService& service = *getFontService(nullptr, nullptr, nullptr);
    service.fontPool.byFileName.clear();
    const FS_FontFolder folder(fileUri(files().path()), false);
    const auto file = files().write("drawn.woff", woff(TestFont::vertical()));
    ASSERT_NE(loadFont(service, folder, FS_FontFile(fileUri(file)), FS_LOAD_FOLDER), nullptr);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"drawn", 400, false, nullptr, false));
    EXPECT_EQ(font.getFontFileType(), FS_FILETYPE_WOFF);
    EXPECT_EQ(font.getFontFileType2(), FS_FILETYPE_TRUETYPE);
    int weight = 0;
    EXPECT_TRUE(font.isExtraFont(&weight, nullptr));
    EXPECT_EQ(weight, 400);
    EXPECT_EQ(font.getGlyphID(0x3042, false), TestFont::kHiraganaA);
    FS_GlyphBMP bitmap;
    KWError error;
    EXPECT_TRUE(font.drawGlyph(TestFont::kHiraganaA, 20, 72, &bitmap, {}, error));
    EXPECT_TRUE(bitmap.hasBMP());
    KWCommonNS::KWMemStream subset;
    EXPECT_TRUE(font.getEmbedFont({TestFont::kHiraganaA}, subset));
}

} // namespace
