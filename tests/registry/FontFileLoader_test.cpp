#include "registry/FontFileLoader.h"

#include "registry/FakeFont.h"
#include "registry/RegistryFixture.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;
using testing::ElementsAre;

class FontFileLoader : public RegistryTest {
protected:
    int typed(const UnicodeString& extension, int mode = 0) {
        return fontFileType(service(), extension, mode, nullptr);
    }
    int typedWith(const UnicodeString& extension, const std::string& content, int mode = 0) {
        std::istringstream stream("before" + content);
        stream.seekg(6);
        const int type = fontFileType(service(), extension, mode, &stream);
        EXPECT_EQ(stream.tellg(), 6) << "the stream stays where it was";
        return type;
    }
};

const std::string kCff = "OTTO....";
const std::string kTrueType("\0\1\0\0....", 8);

TEST_F(FontFileLoader, TypesByTheExtension) {
    EXPECT_EQ(typed(u".afm"), 3);
    EXPECT_EQ(typed(u".pfm"), 4);
    EXPECT_EQ(typed(u".ttf"), 5);
    EXPECT_EQ(typed(u".ttc"), 6);
    EXPECT_EQ(typed(u".otf"), 7);
    EXPECT_EQ(typed(u".dfont"), 9);
    EXPECT_EQ(typed(u".woff"), 10);
}

TEST_F(FontFileLoader, AnUnknownExtensionIs4ForType1And5ForTrueTypeRequests) {
    for (const char16_t* extension : {u".pfa", u".pfb", u".tte", u""}) {
        EXPECT_EQ(typed(extension), 0);
        EXPECT_EQ(typed(extension, FS_FILETYPE_REQUEST_TYPE1), 4);
        EXPECT_EQ(typed(extension, FS_FILETYPE_REQUEST_TRUETYPE), 5);
        EXPECT_EQ(typedWith(extension, kCff), 0);
        EXPECT_EQ(typedWith(extension, kCff, FS_FILETYPE_REQUEST_TRUETYPE), 7);
    }
    EXPECT_EQ(typed(u".otf", FS_FILETYPE_REQUEST_TYPE1), 7);
    EXPECT_EQ(typed(u".afm", FS_FILETYPE_REQUEST_TRUETYPE), 3);
}

TEST_F(FontFileLoader, TheSignatureDecidesBetween5And7) {
    EXPECT_EQ(typedWith(u".ttf", kCff), 7);
    EXPECT_EQ(typedWith(u".ttf", kTrueType), 5);
    EXPECT_EQ(typedWith(u".otf", kCff), 7);
    EXPECT_EQ(typedWith(u".otf", kTrueType), 5);
    EXPECT_EQ(typedWith(u".otf", ""), 5);
}

TEST_F(FontFileLoader, ACidFontWithTrueTypeOutlinesIsTrueType) {
    service().fileTypeByExtension[u".cid"] = FS_FILETYPE_OPENTYPE_CID;
    EXPECT_EQ(typedWith(u".cid", kTrueType), 5);
    EXPECT_EQ(typedWith(u".cid", kCff), 8);
}

TEST_F(FontFileLoader, OtherTypesStayWhateverTheSignature) {
    EXPECT_EQ(typedWith(u".ttc", kCff), 6);
    EXPECT_EQ(typedWith(u".woff", kTrueType), 10);
    EXPECT_EQ(typedWith(u".afm", kCff), 3);
}

TEST_F(FontFileLoader, Mode14And15LookAtTheSignatureAlone) {
    for (const int mode : {FS_FILETYPE_REQUEST_SFNT, FS_FILETYPE_REQUEST_OPENTYPE}) {
        EXPECT_EQ(typedWith(u".woff", kCff, mode), 7);
        EXPECT_EQ(typedWith(u".afm", kTrueType, mode), 5);
        EXPECT_EQ(typed(u".otf", mode), 5);
    }
}

TEST_F(FontFileLoader, MakesNoObjectForATypeWithoutAClass) {
    for (const int type : {0, 1, 2, 11, 12, 13, 14, 15, 16, 17, 99})
        EXPECT_FALSE(
            createFontObject(nullptr, FS_FontFile(KWUri()), static_cast<FS_FontFileType>(type)))
            << type;
}

TEST_F(FontFileLoader, AnObjectWithoutAFolderHasNoSettings) {
    const auto font =
        createFontObject(nullptr, FS_FontFile(KWUri(u"/a/b.ttf")), FS_FILETYPE_TRUETYPE);
    ASSERT_TRUE(font);
    EXPECT_EQ(font->getFontEntrySettings(), nullptr);
}

TEST_F(FontFileLoader, AnEudcFontIsKeptWithItsMarkButWithoutItsNames) {
    write("eudc.tte", namedFont(u"Eudc"));
    const FS_FontFolder& folder = addFolder("", false);
    FS_BaseFont* const font =
        loadFont(service(), folder, FS_FontFile(files().uri("eudc.tte")), FS_LOAD_EUDC);
    ASSERT_NE(font, nullptr) << "an unknown extension counts as TrueType";
    EXPECT_EQ(font->getMarks(), FS_FONTMARK_EUDC);
    EXPECT_THAT(fontFiles(), ElementsAre("eudc.tte"));
    EXPECT_EQ(found(u"Eudc"), "");
    EXPECT_EQ(found(u"eudc.tte"), "");
}

TEST_F(FontFileLoader, ThePoolHoldsTheOneReference) {
    write("a.ttf", namedFont(u"Alpha"));
    const FS_BaseFont* const font = loadFont(service(), addFolder("", false),
                                             FS_FontFile(files().uri("a.ttf")), FS_LOAD_FOLDER);
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->getRefCount(), 1);
}

/// A font whose scan complains, and answers what it is told to.
class ComplainingFont : public FakeFont {
public:
    explicit ComplainingFont(bool isUsable) : usable(isUsable) {}
    bool scanFont(KWError& error, std::istream&) override {
        error = KWError(FS_ERROR_FONT_FILE, u"odd");
        return usable;
    }

    bool usable;
};

TEST_F(FontFileLoader, WhatTheScanComplainsOfIsNotedWhetherTheFontIsUsableOrNot) {
    std::istringstream stream;
    for (const bool usable : {true, false}) {
        const KWPtr<FS_BaseFont> font(new ComplainingFont(usable));
        const std::size_t notes = service().errors.size();
        EXPECT_EQ(takeFont(service(), font, stream, FS_LOAD_FOLDER) != nullptr, usable);
        EXPECT_EQ(service().errors.size(), notes + 1);
        EXPECT_EQ(font->getRefCount(), usable ? 2 : 1);
    }
    EXPECT_EQ(service().fontPool.fonts.size(), 1U);
}

TEST_F(FontFileLoader, WhatTheScanComplainsOfEndsWithThePath) {
    write("bad.ttf", namedFont(u"Bad").without("head"));
    EXPECT_EQ(loadFont(service(), addFolder("", false), FS_FontFile(files().uri("bad.ttf")),
                       FS_LOAD_FOLDER),
              nullptr);
    ASSERT_EQ(service().errors.size(), 1U);
    EXPECT_EQ(service().errors.get(0)->getCode(), 1928);
    EXPECT_TRUE(service().errors.get(0)->getMessage().endsWith(files().text("bad.ttf")));
    EXPECT_TRUE(service().fontPool.fonts.empty());
}

} // namespace
