#include "registry/FS_FontFolder.h"

#include "support/Paths.h"

#include <gtest/gtest.h>

namespace {

using namespace KWFontService_NS;

TEST(FontFolder, ItsUriEndsInASlash) {
    EXPECT_EQ(FS_FontFolder(KWUri(u"/a/b"), false).getString(), UnicodeString(u"file:///a/b/"));
    EXPECT_EQ(FS_FontFolder(KWUri(u"/a/b/"), false).getString(), UnicodeString(u"file:///a/b/"));
    EXPECT_EQ(FS_FontFolder(KWUri(u"C:\\a\\B"), false).getString(),
              UnicodeString(u"file:///C:/a/B/"));
    EXPECT_TRUE(FS_FontFolder(KWUri(), false).isEmpty());
}

TEST(FontFolder, AQueryAndAFragmentAreNoPartOfIt) {
    const FS_FontFolder folder(KWUri(u"file:///a/b?q#f"), false);
    EXPECT_EQ(folder.getString(), UnicodeString(u"file:///a/b/"));
    EXPECT_EQ(folder.pathKey(), FS_FontFolder(KWUri(u"/a/b"), false).pathKey());
}

TEST(FontFolder, KeepsAFolderNameThatLooksEncoded) {
    const FS_FontFolder folder(KWUri(u"/a/100%25 #1", KWCommonNS::URISTR_LOCAL), false);
    EXPECT_EQ(KWTest::posixPath(folder), "/a/100%25 #1/");
}

TEST(FontFolder, PathsThatDifferInCaseHaveOneKey) {
    EXPECT_EQ(FS_FontFolder(KWUri(u"/Fonts/A"), false).pathKey(),
              FS_FontFolder(KWUri(u"/fonts/a/"), true).pathKey());
    EXPECT_EQ(FS_FontFolder(KWUri(u"/\u00C4"), false).pathKey(),
              FS_FontFolder(KWUri(u"/\u00E4"), false).pathKey())
        << "beyond ASCII too";
    EXPECT_NE(FS_FontFolder(KWUri(u"/fonts/a"), false).pathKey(),
              FS_FontFolder(KWUri(u"/fonts/b"), false).pathKey());
}

TEST(FontFolder, OptionsHaveTheStatedDefaultsOnFirstMention) {
    FS_FontFolder folder(KWUri(u"/a"), false);
    EXPECT_EQ(folder.findOptions(u"x.ttf"), nullptr);
    const FS_FontFileOptions& options = folder.optionsOf(u"x.ttf");
    EXPECT_EQ(folder.findOptions(u"x.ttf"), &options);
    EXPECT_TRUE(options.glyphList.isEmpty());
    EXPECT_FALSE(options.skipGlyphNameMapping);
    EXPECT_FALSE(options.fontExclude);
    EXPECT_FALSE(options.useZeroGlyphId);
    EXPECT_EQ(options.fontSizeAdjust, 1.0F);
    EXPECT_EQ(options.baselineAdjust, 0.0F);
    EXPECT_EQ(options.unicodeRange, nullptr);
    EXPECT_EQ(&folder.optionsOf(u"x.ttf"), &options);
}

TEST(FontFolder, AliasesAreOneWhenAllFourValuesAgree) {
    std::set<FS_FontAlias> aliases{{u"A"}};
    EXPECT_FALSE(aliases.insert({u"A", -1, -1, 0}).second);
    EXPECT_TRUE(aliases.insert({u"a"}).second);
    EXPECT_TRUE(aliases.insert({u"A", 400}).second);
    EXPECT_TRUE(aliases.insert({u"A", -1, 0}).second);
    EXPECT_TRUE(aliases.insert({u"A", -1, -1, 5}).second);
}

TEST(FontFolder, AliasTargetsGoByLowerCaseNameThenNameThenFace) {
    std::map<FS_FontAliasTarget, int> targets;
    targets[{u"b.ttf", u"B.ttf", 0}] = 3;
    targets[{u"a.ttf", u"a.ttf", 1}] = 2;
    targets[{u"a.ttf", u"a.ttf", 0}] = 1;
    targets[{u"a.ttf", u"A.ttf", 7}] = 0;
    int expected = 0;
    for (const auto& [target, order] : targets)
        EXPECT_EQ(order, expected++);
}

} // namespace
