#include "fonts/FS_MultiFaceFont.h"

#include "registry/FolderScan.h"
#include "registry/FontFileLoader.h"
#include "registry/RegistryFixture.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/FS_Functions.h>
#include <KWFontService17/FS_GlyphBMP.h>
#include <KWFontService17/FS_GlyphBMPSetting.h>

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;

Bytes twoFaces(const TestFont& first, const TestFont& second) {
    return SfntCollection{.fonts = {first.sfnt(), second.sfnt()}}.build();
}

class FaceRegistration : public RegistryTest {
protected:
    /// The face that a name leads to, -1 when it leads nowhere.
    int faceOf(const UnicodeString& name, int weight = 0) {
        bool inAlias = false;
        const FS_FontRef ref =
            service().findFont(name, FS_FontKey::ofRequest(weight, false, 0), inAlias, false);
        return ref ? ref.face : -1;
    }
    void scan() {
        addFolder("", false);
        scanFolders(service());
    }
};

TEST_F(FaceRegistration, EachFaceOfACollectionIsFoundByItsNames) {
    files().write("two.ttc", twoFaces(namedFont(u"Alpha"), namedFont(u"Beta", 700)));
    scan();
    EXPECT_EQ(found(u"Alpha"), "two.ttc");
    EXPECT_EQ(faceOf(u"Alpha"), 0);
    EXPECT_EQ(faceOf(u"Beta"), 1);
    EXPECT_EQ(faceOf(u"Beta Regular"), 1) << "by its full name";
    EXPECT_EQ(service().fontPool.fonts.size(), 1U);
}

TEST_F(FaceRegistration, FacesOfOneFamilyAreChosenByTheirStyle) {
    files().write("two.ttc", twoFaces(namedFont(u"Alpha"), namedFont(u"Alpha", 700)));
    scan();
    EXPECT_EQ(faceOf(u"Alpha", 400), 0);
    EXPECT_EQ(faceOf(u"Alpha", 700), 1);
    EXPECT_EQ(faceOf(u"Alpha", 900), 1);
}

TEST_F(FaceRegistration, AFileNameLeadsToTheFaceOfTheStyle) {
    files().write("two.ttc", twoFaces(namedFont(u"Alpha"), namedFont(u"Beta", 700)));
    scan();
    for (const char16_t* name : {u"two.ttc", u"TWO"}) {
        EXPECT_EQ(faceOf(name, 400), 0);
        EXPECT_EQ(faceOf(name, 700), 1);
    }
}

TEST_F(FaceRegistration, EachFaceOfADFontIsFoundByItsNames) {
    ResourceFile resources;
    resources.fonts = {namedFont(u"Alpha").sfnt(), namedFont(u"Beta").sfnt()};
    files().write("two.dfont", resources.build());
    scan();
    EXPECT_EQ(found(u"Beta"), "two.dfont");
    EXPECT_EQ(faceOf(u"Alpha"), 0);
    EXPECT_EQ(faceOf(u"Beta"), 1);
}

TEST_F(FaceRegistration, AnAliasNamesOneFace) {
    files().write("two.ttc", twoFaces(namedFont(u"Alpha"), namedFont(u"Beta")));
    FS_FontFolder& folder = addFolder("", false);
    folder.fileAliases[{u"two.ttc", u"two.ttc", 1}].insert(FS_FontAlias{u"Given", 0, -1, 0});
    scanFolders(service());
    EXPECT_EQ(faceOf(u"Given"), 1);
}

TEST_F(FaceRegistration, ACollectionThatIsRefusedIsANoteAndNoFont) {
    files().write("bad.ttc", twoFaces(namedFont(u"Alpha"), namedFont(u"Beta").without("head")));
    files().write("good.ttf", namedFont(u"Gamma").build());
    scan();
    EXPECT_EQ(faceOf(u"Alpha"), -1);
    EXPECT_EQ(found(u"Gamma"), "good.ttf");
    ASSERT_EQ(service().errors.size(), 1U);
}

// --- through the facade -------------------------------------------------------------------------

/// The one service, with the files that a test loads.
class CollectionLookup : public testing::Test {
protected:
    CollectionLookup() {
        // The fonts of another test are still there; nothing finds them.
        for (FS_FontPool* const pool : {&service().fontPool, &service().aliasPool}) {
            pool->byName.clear();
            pool->byFileName.clear();
        }
    }
    static FS_FontService& service() { return *getFontService(nullptr, nullptr, nullptr); }
    FS_BaseFont* load(const std::filesystem::path& file) {
        const FS_FontFolder folder(fileUri(file.parent_path()), false);
        return loadFont(service(), folder, FS_FontFile(fileUri(file)), FS_LOAD_FOLDER);
    }
};

TEST_F(CollectionLookup, AFontInfoStandsForTheFaceThatItFound) {
    const TempDir files;
    TestFont beta = TestFont::vertical();
    beta.name = Name::english(u"Beta");
    ASSERT_NE(load(files.write("two.ttc", twoFaces(namedFont(u"Alpha"), beta))), nullptr);
    FS_FontInfo font;
    ASSERT_TRUE(font.createFont(u"Beta", 400, false, nullptr, false));
    EXPECT_TRUE(font.isFontCollection());
    EXPECT_EQ(font.getFontFileType(), FS_FILETYPE_COLLECTION);
    EXPECT_EQ(font.getFamilyName(0), UnicodeString(u"Beta"));
    EXPECT_EQ(font.getGlyphID(0x3042, false), TestFont::kHiraganaA);
    EXPECT_EQ(font.getGlyphID('A', false), 0xFFFF);
    EXPECT_LT(font.getTypoDescender(), 0.0F);
    FS_GlyphBMP bitmap;
    KWError error;
    EXPECT_TRUE(font.drawGlyph(TestFont::kHiraganaA, 20, 72, &bitmap, {}, error));
    EXPECT_TRUE(bitmap.hasBMP());
}

/// A collection of a package, and a text that each of its faces can set.
struct PackagedCollection {
    const char* name;
    char16_t sample;
};

class PackagedCollections : public CollectionLookup,
                            public testing::WithParamInterface<PackagedCollection> {};

TEST_P(PackagedCollections, EveryFaceIsFoundMappedMeasuredAndDrawnAsFreeTypeHasIt) {
    const std::filesystem::path path = packagedFont(GetParam().name);
    const FS_BaseFont* const loaded = load(path);
    ASSERT_NE(loaded, nullptr);
    const Bytes file = readFile(path);
    ASSERT_EQ(loaded->getFontCount(), FreeTypeFace(file)->num_faces);
    for (int face = 0; face < loaded->getFontCount(); ++face) {
        const UnicodeString full = loaded->getFullFontName(1033, face);
        FS_FontInfo font;
        ASSERT_TRUE(
            font.createFont(full, loaded->getWeight(face), loaded->isItalic(face), nullptr, false))
            << face;
        EXPECT_EQ(font.getFullFontName(1033), full) << face;

        const FreeTypeFace freeType(file, face);
        const unsigned short gid = font.getGlyphID(GetParam().sample, false);
        EXPECT_EQ(gid, freeType.glyphOf(GetParam().sample)) << face;
        EXPECT_EQ(font.getGlyphWidth(gid, 0, false), static_cast<float>(freeType.advance(gid)));
        FS_CIDSystemInfo collection;
        if (font.getFontFileType() == FS_FILETYPE_OPENTYPE_CID) {
            EXPECT_TRUE(font.getCIDSystemInfo(collection));
            EXPECT_EQ(collection.Registry, "Adobe");
            EXPECT_EQ(font.getGlyphIDfromCID(gid), gid) << "its charset is the identity";
        } else {
            EXPECT_EQ(font.getFontFileType(), FS_FILETYPE_COLLECTION);
            EXPECT_FALSE(font.getCIDSystemInfo(collection));
        }
        FS_GlyphBMP bitmap;
        KWError error;
        EXPECT_TRUE(font.drawGlyph(gid, 20, 72, &bitmap, {}, error));
        EXPECT_TRUE(bitmap.hasBMP()) << face;
    }
}

INSTANTIATE_TEST_SUITE_P(Packages, PackagedCollections,
                         testing::Values(PackagedCollection{"NotoSansCJK", u'\u76F4'},
                                         PackagedCollection{"NotoSerifCJK", u'\u76F4'},
                                         PackagedCollection{"UMing", u'\u76F4'},
                                         PackagedCollection{"WenQuanYiZenHei", u'\u76F4'}),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

} // namespace
