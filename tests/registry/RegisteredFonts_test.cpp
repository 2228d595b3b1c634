#include "registry/RegisteredFonts.h"

#include "registry/FolderScan.h"
#include "registry/RegistryFixture.h"
#include "support/SystemDouble.h"

#include <gmock/gmock.h>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;
using testing::ElementsAre;
using testing::IsEmpty;

class RegisteredFonts : public RegistryTest {
protected:
    std::u16string path(std::string_view name) const { return files().path(name).u16string(); }
};

TEST_F(RegisteredFonts, AreLoadedWithTheRegistryMark) {
    write("a.ttf", namedFont(u"Alpha"));
    readRegistryFonts(service(), {path("a.ttf")});
    EXPECT_THAT(fontFiles(), ElementsAre("a.ttf"));
    EXPECT_EQ(service().fontPool.fonts[0]->getMarks(), FS_FONTMARK_REGISTRY);
    EXPECT_EQ(found(u"Alpha"), "a.ttf");
}

TEST_F(RegisteredFonts, OfFoldersHaveNoMark) {
    write("a.ttf", namedFont(u"Alpha"));
    addFolder("", false);
    scanFolders(service());
    EXPECT_EQ(service().fontPool.fonts[0]->getMarks(), 0U);
}

TEST_F(RegisteredFonts, AValueThatIsNoFullPathOfAFileIsSkipped) {
    write("a.ttf", namedFont(u"Alpha"));
    readRegistryFonts(service(), {u"", u"a.ttf", u"sub/a.ttf", path("absent.ttf"), path("."),
                                  std::u16string(u"a\0b.ttf", 7)});
    EXPECT_THAT(fontFiles(), IsEmpty());
    EXPECT_THAT(folderNames(), IsEmpty());
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(RegisteredFonts, ABareFileNameIsNotFollowedEvenIfItIsThere) {
    class EveryFile : public SystemDouble {
        bool isRegularFile(const std::u16string&) override { return true; }
    } system;
    readRegistryFonts(service(), {u"a.ttf", u"sub/a.ttf"});
    EXPECT_THAT(folderNames(), IsEmpty());
}

TEST_F(RegisteredFonts, AnUnknownExtensionIsSkipped) {
    write("a.fon", namedFont(u"Alpha"));
    readRegistryFonts(service(), {path("a.fon")});
    EXPECT_THAT(fontFiles(), IsEmpty());
    EXPECT_THAT(folderNames(), IsEmpty()) << "before its folder is taken in";
}

TEST_F(RegisteredFonts, TheirFolderJoinsTheFoldersOnceAndIsNotRecursive) {
    write("x/a.ttf", namedFont(u"Alpha"));
    write("x/b.ttf", namedFont(u"Beta"));
    write("y/c.ttf", namedFont(u"Gamma"));
    readRegistryFonts(service(), {path("x/a.ttf"), path("y/c.ttf"), path("x/b.ttf")});
    EXPECT_THAT(folderNames(), ElementsAre("x/", "y/"));
    EXPECT_FALSE(service().folders[0]->recursive);
    EXPECT_THAT(fontFiles(), ElementsAre("x/a.ttf", "y/c.ttf", "x/b.ttf"));
}

TEST_F(RegisteredFonts, FontExcludeOfTheirFolderCounts) {
    write("a.ttf", namedFont(u"Alpha"));
    write("b.ttf", namedFont(u"Beta"));
    FS_FontFolder& folder = addFolder("", false);
    folder.optionsOf(u"a.ttf").fontExclude = true;
    folder.optionsOf(u"b.ttf").baselineAdjust = 0.5F;
    readRegistryFonts(service(), {path("a.ttf"), path("b.ttf")});
    EXPECT_THAT(fontFiles(), ElementsAre("b.ttf"));
    EXPECT_EQ(service().fontPool.fonts[0]->getFontEntrySettings()->baselineAdjust, 0.5F);
}

TEST_F(RegisteredFonts, AFileFoundBothWaysIsDeliberatelyLoadedTwice) {
    write("a.ttf", namedFont(u"Alpha"));
    addFolder("", false);
    scanFolders(service());
    readRegistryFonts(service(), {path("a.ttf")});
    ASSERT_THAT(fontFiles(), ElementsAre("a.ttf", "a.ttf"));
    bool inAlias = false;
    EXPECT_EQ(service().findFont(u"Alpha", {}, inAlias, false).font,
              service().fontPool.fonts[0].get())
        << "the names stay with the first";
}

TEST_F(RegisteredFonts, AFileOfAFolderWhoseNameDiffersInCaseIsOpenedByItsOwnPath) {
    write("Fonts/a.ttf", namedFont(u"Alpha"));
    files().makeFolder("fonts");
    addFolder("fonts", false);
    readRegistryFonts(service(), {path("Fonts/a.ttf")});
    EXPECT_THAT(fontFiles(), ElementsAre("Fonts/a.ttf"));
    EXPECT_THAT(folderNames(), ElementsAre("fonts/"));
}

} // namespace
