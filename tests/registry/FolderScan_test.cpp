#include "registry/FolderScan.h"

#include "fonts/FaceFixture.h"
#include "registry/RegistryFixture.h"
#include "support/SystemDouble.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>

namespace {

using namespace KWFontService_NS;
using namespace KWTest;
namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class FolderScan : public RegistryTest {
protected:
    FS_FontAliasTarget target(const UnicodeString& name, int face = 0) {
        return {lowerFileName(name), name, face};
    }
    void alias(FS_FontFolder& folder, const UnicodeString& file, FS_FontAlias alias, int face = 0) {
        folder.fileAliases[target(file, face)].insert(std::move(alias));
    }
};

TEST_F(FolderScan, FindsTheFontsOfAFolderByNameAndByFile) {
    write("One.ttf", namedFont(u"First Family"));
    write("two.OTF", TestFont::openType());
    addFolder("", false);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), UnorderedElementsAre("One.ttf", "two.OTF"));
    EXPECT_EQ(found(u"first-family"), "One.ttf");
    EXPECT_EQ(found(u"ONE.TTF"), "One.ttf");
    EXPECT_EQ(found(u"one"), "One.ttf");
    EXPECT_EQ(found(u"Two"), "two.OTF");
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(FolderScan, LooksAtKnownExtensionsOnly) {
    write("a.ttf", namedFont(u"A"));
    write("b.txt", namedFont(u"B"));
    write("c", namedFont(u"C"));
    write("d.ttf.bak", namedFont(u"D"));
    write("e.pfb", namedFont(u"E"));
    addFolder("", false);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("a.ttf"));
    EXPECT_TRUE(service().errors.empty()) << "skipped without a report";
}

TEST_F(FolderScan, ARefusedFileIsNotedWithItsPathAndTheGoodOnesAreFound) {
    write("good.ttf", namedFont(u"Good"));
    write("bad.ttf", namedFont(u"Bad").without("head"));
    files().write("cut.ttf", "\0\1\0\0");
    files().write("empty.ttf", "");
    write("last.ttf", namedFont(u"Last"));
    addFolder("", false);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), UnorderedElementsAre("good.ttf", "last.ttf"));
    std::map<std::string, int> notes;
    for (std::size_t i = 0; i < service().errors.size(); ++i) {
        std::string text;
        const KWError error = *service().errors.get(i);
        error.getMessage().toUTF8String(text);
        notes[fs::path(text.substr(text.rfind('\n') + 1)).filename().string()] = error.getCode();
    }
    const std::map<std::string, int> expected = {
        {"bad.ttf", 1928}, {"cut.ttf", 1921}, {"empty.ttf", 1921}};
    EXPECT_EQ(notes, expected);
}

TEST_F(FolderScan, AFileThatDoesNotOpenIsSkippedWithoutAReport) {
    if (!KWTest::kSymbolicLinks)
        GTEST_SKIP() << "no symbolic links";
    fs::create_symlink("nowhere", files().path("gone.ttf"));
    write("here.ttf", namedFont(u"Here"));
    addFolder("", false);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("here.ttf"));
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(FolderScan, TheSignatureOutranksTheExtensionsOfTrueTypeAndOpenType) {
    write("glyf.otf", namedFont(u"Glyf"));
    write("cff.ttf", TestFont::openType());
    addFolder("", false);
    scanFolders(service());
    std::map<std::string, int> types;
    for (const auto& font : service().fontPool.fonts)
        types[below(font->getUri())] = font->getFontFileType(0);
    EXPECT_EQ(types, (std::map<std::string, int>{{"glyf.otf", 5}, {"cff.ttf", 7}}));
}

TEST_F(FolderScan, SubfoldersAreEnteredOnlyWhereTheFolderIsRecursive) {
    write("flat/sub/a.ttf", namedFont(u"A"));
    write("deep/sub/b.ttf", namedFont(u"B"));
    write("deep/sub/below/c.ttf", namedFont(u"C"));
    addFolder("flat", false);
    addFolder("deep", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), UnorderedElementsAre("deep/sub/b.ttf", "deep/sub/below/c.ttf"));
    EXPECT_EQ(found(u"A"), "");
}

TEST_F(FolderScan, HiddenFoldersAreNotEnteredButHiddenFilesAreFonts) {
    write(".hidden/a.ttf", namedFont(u"A"));
    write(".b.ttf", namedFont(u"B"));
    addFolder("", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre(".b.ttf"));
}

TEST_F(FolderScan, AHiddenFolderThatIsNamedIsScanned) {
    write(".hidden/a.ttf", namedFont(u"A"));
    addFolder(".hidden", false);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre(".hidden/a.ttf"));
}

/// Whatever the separator of the system.
bool endsWith(const std::u16string& path, std::u16string_view end) {
    return fs::path(path).generic_u16string().ends_with(end);
}

/// Directories that list what a test says, in that order; the files behind them are real.
class OrderedFolders : public SystemDouble {
public:
    std::map<std::string, std::vector<KWPlatform::DirectoryEntry>> listed;
    fs::path root;

    std::optional<std::vector<KWPlatform::DirectoryEntry>>
    listDirectory(const std::u16string& path) override {
        const auto found = listed.find(fs::path(path).lexically_relative(root).generic_string());
        if (found == listed.end())
            return std::nullopt;
        return found->second;
    }
    static KWPlatform::DirectoryEntry folder(std::u16string name) {
        return {std::move(name), true, false, false};
    }
    static KWPlatform::DirectoryEntry file(std::u16string name) {
        return {std::move(name), false, false, false};
    }
};

TEST_F(FolderScan, GoesDepthFirstInTheOrderOfTheFileSystem) {
    OrderedFolders system;
    system.root = files().path();
    system.listed = {
        {"a/",
         {system.folder(u"y"), system.file(u"2.ttf"), system.folder(u"x"), system.file(u"1.ttf")}},
        {"a/y/", {system.folder(u"in"), system.file(u"3.ttf")}},
        {"a/y/in/", {system.file(u"4.ttf")}},
        {"a/x/", {system.file(u"5.ttf")}},
        {"b/", {system.file(u"6.ttf")}}};
    for (const char* name :
         {"a/1.ttf", "a/2.ttf", "a/y/3.ttf", "a/y/in/4.ttf", "a/x/5.ttf", "b/6.ttf"})
        write(name, namedFont(u"Same"));
    addFolder("a", true);
    addFolder("b", false);
    scanFolders(service());
    EXPECT_THAT(folderNames(), ElementsAre("a/", "a/y/", "a/y/in/", "a/x/", "b/"));
    EXPECT_THAT(fontFiles(), ElementsAre("a/2.ttf", "a/1.ttf", "a/y/3.ttf", "a/y/in/4.ttf",
                                         "a/x/5.ttf", "b/6.ttf"));
    EXPECT_EQ(found(u"Same"), "a/2.ttf") << "the first one found keeps the entry";
}

TEST_F(FolderScan, EntriesWithTheSystemAttributeAreSkipped) {
    OrderedFolders system;
    system.root = files().path();
    system.listed = {{"a/", {{u"s", true, false, true}, {u"1.ttf", false, false, true}}},
                     {"a/s/", {system.file(u"2.ttf")}}};
    write("a/1.ttf", namedFont(u"One"));
    write("a/s/2.ttf", namedFont(u"Two"));
    addFolder("a", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), IsEmpty());
    EXPECT_THAT(folderNames(), ElementsAre("a/"));
}

TEST_F(FolderScan, ASubfolderThatIsNamedAsWellIsScannedOnceInItsNamedPlace) {
    write("top/sub/a.ttf", namedFont(u"A"));
    write("top/b.ttf", namedFont(u"B"));
    addFolder("top", true);
    addFolder("top/sub", false);
    scanFolders(service());
    EXPECT_THAT(folderNames(), ElementsAre("top/", "top/sub/"));
    EXPECT_THAT(fontFiles(), ElementsAre("top/b.ttf", "top/sub/a.ttf"));
    EXPECT_FALSE(service().folders[1]->recursive);
}

TEST_F(FolderScan, ANamedSubfolderThatCameFirstStaysFirst) {
    write("top/sub/a.ttf", namedFont(u"A"));
    write("top/b.ttf", namedFont(u"B"));
    addFolder("top/sub", false);
    addFolder("top", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("top/sub/a.ttf", "top/b.ttf"));
}

TEST_F(FolderScan, PathsThatDifferOnlyInCaseAreDeliberatelyOneFolder) {
    write("Fonts/a.ttf", namedFont(u"A"));
    if (std::filesystem::exists(files().path("fonts")))
        GTEST_SKIP() << "they are one for this file system as well";
    write("fonts/b.ttf", namedFont(u"B"));
    addFolder("Fonts", false);
    EXPECT_EQ(service().addFolder(std::make_unique<FS_FontFolder>(files().uri("fonts"), false)),
              nullptr);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("Fonts/a.ttf"));
}

TEST_F(FolderScan, FoldersThatLinkToThemselvesAreEnteredOnce) {
    if (!KWTest::kSymbolicLinks)
        GTEST_SKIP() << "no symbolic links";
    write("a/1.ttf", namedFont(u"One"));
    write("a/b/2.ttf", namedFont(u"Two"));
    fs::create_directory_symlink(files().path("a"), files().path("a/b/up"));
    fs::create_directory_symlink(".", files().path("a/self"));
    addFolder("a", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), UnorderedElementsAre("a/1.ttf", "a/b/2.ttf"));
}

TEST_F(FolderScan, ALinkToAFolderOutsideIsEntered) {
    if (!KWTest::kSymbolicLinks)
        GTEST_SKIP() << "no symbolic links";
    write("outside/1.ttf", namedFont(u"One"));
    files().makeFolder("a");
    fs::create_directory_symlink(files().path("outside"), files().path("a/link"));
    addFolder("a", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("a/link/1.ttf"));
}

TEST_F(FolderScan, ALinkToARecursiveFolderIsNotEntered) {
    if (!KWTest::kSymbolicLinks)
        GTEST_SKIP() << "no symbolic links";
    write("named/1.ttf", namedFont(u"One"));
    files().makeFolder("a");
    fs::create_directory_symlink(files().path("named"), files().path("a/link"));
    addFolder("a", true);
    addFolder("named", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("named/1.ttf"));
}

TEST_F(FolderScan, AFolderThatALinkNamesFlatHidesNothingBelowIt) {
    if (!KWTest::kSymbolicLinks)
        GTEST_SKIP() << "no symbolic links";
    write("top/sub/deep/1.ttf", namedFont(u"One"));
    fs::create_directory_symlink(files().path("top/sub"), files().path("short"));
    addFolder("short", false);
    addFolder("top", true);
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("top/sub/deep/1.ttf"));
}

TEST_F(FolderScan, AFolderThatDoesNotExistStaysInTheLists) {
    addFolder("missing", true);
    scanFolders(service());
    EXPECT_THAT(folderNames(), ElementsAre("missing/"));
    EXPECT_TRUE(service().errors.empty());
}

TEST_F(FolderScan, NamesThatAreNotUtf8AreFound) {
    const std::string name = "caf\xE9.ttf";
    try {
        files().write(name, namedFont(u"Cafe").build());
    } catch (const std::exception&) {
        GTEST_SKIP() << "this file system takes UTF-8 names only";
    }
    addFolder("", false);
    scanFolders(service());
    ASSERT_EQ(service().fontPool.fonts.size(), 1U);
    EXPECT_TRUE(service().findFolder(service().folders[0]->pathKey()) != nullptr);
    bool inAlias = false;
    const FS_FontRef ref = service().findFont(u"Cafe", {}, inAlias, false);
    ASSERT_TRUE(ref);
    KWError error;
    EXPECT_TRUE(ref.font->loadFont(error, 0, nullptr)) << "opened by its real name";
}

TEST_F(FolderScan, AFileIsOpenedByItsRealNameAndKnownByItsLowerCaseOne) {
    write("MiXed.TTF", namedFont(u"Mixed"));
    FS_FontFolder& folder = addFolder("", false);
    folder.optionsOf(u"mixed.ttf").useZeroGlyphId = true;
    scanFolders(service());
    ASSERT_THAT(fontFiles(), ElementsAre("MiXed.TTF"));
    const FS_BaseFont& font = *service().fontPool.fonts[0];
    EXPECT_EQ(font.getFontEntrySettings(), &folder.fileOptions.at(u"mixed.ttf"));
    EXPECT_TRUE(service().fontPool.byFileName.contains(u"mixed.ttf"));
}

TEST_F(FolderScan, AnExcludedFileIsNotLoaded) {
    write("In.ttf", namedFont(u"In"));
    write("Out.ttf", namedFont(u"Out"));
    addFolder("", false).optionsOf(u"out.ttf").fontExclude = true;
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("In.ttf"));
}

TEST_F(FolderScan, ASubfolderInheritsNoOptions) {
    write("sub/Out.ttf", namedFont(u"Out"));
    addFolder("", true).optionsOf(u"out.ttf").fontExclude = true;
    scanFolders(service());
    EXPECT_THAT(fontFiles(), ElementsAre("sub/Out.ttf"));
}

TEST_F(FolderScan, AnAliasFindsTheFileAndWinsOverARealFamily) {
    write("a.ttf", namedFont(u"Alpha"));
    write("b.ttf", namedFont(u"Beta"));
    FS_FontFolder& folder = addFolder("", false);
    alias(folder, u"A.ttf", {u"Be-ta"});
    alias(folder, u"a.ttf", {u"Other Name", 700, 1, 3});
    scanFolders(service());
    EXPECT_EQ(found(u"beta"), "a.ttf");
    EXPECT_EQ(found(u"beta", 0, false, 0, true), "b.ttf") << "unless aliases are skipped";
    EXPECT_EQ(found(u"OTHERNAME"), "a.ttf");
    const FS_FontFamilyMap& entries = service().aliasPool.byName.at(u"OTHERNAME");
    EXPECT_TRUE(entries.contains({700, true, 3}));
    EXPECT_TRUE(service().aliasPool.fonts.empty());
}

TEST_F(FolderScan, AnAliasStyleThatIsNotGivenIsNormal) {
    write("a.ttf", namedFont(u"Alpha", 900, true, 2));
    FS_FontFolder& folder = addFolder("", false);
    alias(folder, u"a.ttf", {u"Not Given"});
    alias(folder, u"a.ttf", {u"Zero", 0, 0, 0});
    scanFolders(service());
    for (const char16_t* name : {u"NOTGIVEN", u"ZERO"}) {
        const FS_FontFamilyMap& entries = service().aliasPool.byName.at(name);
        ASSERT_EQ(entries.size(), 1U);
        EXPECT_TRUE(entries.contains({400, false, 5}));
    }
}

TEST_F(FolderScan, AnAliasWeightOutOfRangeIsTakenAsGiven) {
    write("a.ttf", namedFont(u"Alpha"));
    FS_FontFolder& folder = addFolder("", false);
    alias(folder, u"a.ttf", {u"Odd", -5});
    alias(folder, u"a.ttf", {u"Odd", 50});
    scanFolders(service());
    const FS_FontFamilyMap& entries = service().aliasPool.byName.at(u"ODD");
    EXPECT_EQ(entries.size(), 2U);
    EXPECT_TRUE(entries.contains({-5, false, 5}));
    EXPECT_TRUE(entries.contains({50, false, 5}));
}

TEST_F(FolderScan, AnAliasNameThatNormalisesToNothingIsSkipped) {
    write("a.ttf", namedFont(u"Alpha"));
    alias(addFolder("", false), u"a.ttf", {u" - "});
    scanFolders(service());
    EXPECT_TRUE(service().aliasPool.byName.empty());
}

TEST_F(FolderScan, TheFirstAliasOfANameAndStyleStands) {
    write("a.ttf", namedFont(u"Alpha"));
    write("b.ttf", namedFont(u"Beta"));
    FS_FontFolder& folder = addFolder("", false);
    alias(folder, u"b.ttf", {u"Name"});
    alias(folder, u"a.ttf", {u"Name"});
    scanFolders(service());
    EXPECT_EQ(found(u"Name"), "a.ttf") << "files go in the order of their lower-case names";
}

TEST_F(FolderScan, AnAliasTakesTheFaceOfItsEntry) {
    write("a.ttf", namedFont(u"Alpha"));
    alias(addFolder("", false), u"a.ttf", {u"Third"}, 2);
    alias(*service().folders[0], u"a.ttf", {u"Far"}, 0x7FFFFFFF);
    scanFolders(service());
    EXPECT_EQ(service().aliasPool.byName.at(u"THIRD").begin()->second.face, 2);
    EXPECT_EQ(service().aliasPool.byName.at(u"FAR").begin()->second.face, 0x7FFF);
}

TEST_F(FolderScan, AnAliasOfEntryZeroIsAFaceThatNoFontHas) {
    files().write("a.ttc", collectionOf({namedFont(u"Alpha"), namedFont(u"Beta")}).build());
    alias(addFolder("", false), u"a.ttc", {u"None"}, -1);
    alias(*service().folders[0], u"a.ttc", {u"Deep"}, -0x7FFFFFFF);
    scanFolders(service());
    for (const char16_t* const name : {u"NONE", u"DEEP"}) {
        const FS_FontRef ref = service().aliasPool.byName.at(name).begin()->second;
        EXPECT_EQ(ref.face, -1);
        KWError error;
        EXPECT_FALSE(ref.font->loadFont(error, ref.face, nullptr));
    }
}

TEST_F(FolderScan, AnAliasOfAFileThatFailedToLoadHasNoEffectAndNoReport) {
    write("bad.ttf", namedFont(u"Bad").without("head"));
    FS_FontFolder& folder = addFolder("", false);
    alias(folder, u"bad.ttf", {u"Name"});
    alias(folder, u"absent.ttf", {u"Name"});
    scanFolders(service());
    EXPECT_EQ(found(u"Name"), "");
    EXPECT_EQ(service().errors.size(), 1U) << "that of the scan alone";
}

TEST_F(FolderScan, AnAliasIsServedByAFileOfThatNameFromAnEarlierFolder) {
    write("one/a.ttf", namedFont(u"Alpha"));
    files().makeFolder("two");
    addFolder("one", false);
    alias(addFolder("two", false), u"a.ttf", {u"Name"});
    scanFolders(service());
    EXPECT_EQ(found(u"Name"), "one/a.ttf");
}

TEST_F(FolderScan, AnAliasIsNotServedByAFileFromALaterFolder) {
    files().makeFolder("one");
    write("two/a.ttf", namedFont(u"Alpha"));
    alias(addFolder("one", false), u"a.ttf", {u"Name"});
    addFolder("two", false);
    scanFolders(service());
    EXPECT_EQ(found(u"Name"), "");
}

class AddFontFolder : public FolderScan {};

TEST_F(AddFontFolder, AnswersTheNumberOfFontsAdded) {
    write("new/a.ttf", namedFont(u"Alpha"));
    write("new/b.otf", TestFont::openType());
    write("new/bad.ttf", namedFont(u"Bad").without("head"));
    files().write("new/readme.txt", "no font");
    write("new/below/c.ttf", namedFont(u"Gamma"));
    EXPECT_EQ(addFontFolder(service(), files().uri("new")), 2);
    EXPECT_EQ(found(u"Alpha"), "new/a.ttf");
    EXPECT_EQ(found(u"Gamma"), "") << "the folders below are not entered";
    EXPECT_EQ(service().errors.size(), 1U);
    EXPECT_THAT(folderNames(), ElementsAre("new/"));
}

TEST_F(AddFontFolder, AFolderThatIsKnownAnswers0EvenIfItLayEmpty) {
    files().makeFolder("known");
    addFolder("known", false);
    scanFolders(service());
    write("known/late.ttf", namedFont(u"Late"));
    EXPECT_EQ(addFontFolder(service(), files().uri("known")), 0);
    EXPECT_EQ(addFontFolder(service(), files().uri("KNOWN")), 0) << "case does not count";
    EXPECT_EQ(addFontFolder(service(), KWUri(files().text("known") + u"/")), 0);
    EXPECT_EQ(found(u"Late"), "");
}

TEST_F(AddFontFolder, WhatIsNoFolderOfAFileSystemAnswers0) {
    EXPECT_EQ(addFontFolder(service(), KWUri()), 0);
    EXPECT_EQ(addFontFolder(service(), KWUri(u"https://example.com/fonts/")), 0);
    EXPECT_EQ(addFontFolder(service(), KWUri(u"data:,x")), 0);
    EXPECT_TRUE(service().folders.empty());
    EXPECT_EQ(addFontFolder(service(), files().uri("absent")), 0);
}

TEST_F(AddFontFolder, NamesThatAreTakenStayWithTheFirstFont) {
    write("old/a.ttf", namedFont(u"Same"));
    write("new/b.ttf", namedFont(u"Same"));
    addFolder("old", false);
    scanFolders(service());
    EXPECT_EQ(addFontFolder(service(), files().uri("new")), 1);
    EXPECT_EQ(found(u"Same"), "old/a.ttf");
    EXPECT_EQ(found(u"b"), "new/b.ttf");
    EXPECT_THAT(fontFiles(), ElementsAre("old/a.ttf", "new/b.ttf"));
}

TEST_F(FolderScan, AWalkThatIsBrokenOffKeepsEveryFolder) {
    class Breaking : public OrderedFolders {
    public:
        std::optional<std::vector<KWPlatform::DirectoryEntry>>
        listDirectory(const std::u16string& path) override {
            if (endsWith(path, u"b/"))
                throw KWError(FS_ERROR_FONT_READ, u"broken off");
            return OrderedFolders::listDirectory(path);
        }
    } system;
    system.root = files().path();
    system.listed = {{"a/", {system.folder(u"below")}}, {"a/below/", {}}};
    addFolder("a", true);
    addFolder("b", false);
    addFolder("c", false);
    EXPECT_THROW(scanFolders(service()), KWError);
    EXPECT_THAT(folderNames(), ElementsAre("a/", "a/below/", "b/", "c/"));
    EXPECT_EQ(service().folderByPath.size(), 4U);
}

TEST_F(FolderScan, AFolderThatIsBrokenOffHalfwayKeepsItsSubfolders) {
    class Breaking : public OrderedFolders {
    public:
        std::optional<KWPlatform::DirectoryIdentity>
        directoryIdentity(const std::u16string& path) override {
            if (endsWith(path, u"worse/"))
                throw KWError(FS_ERROR_FONT_READ, u"broken off");
            return std::nullopt;
        }
    } system;
    system.root = files().path();
    system.listed = {{"a/", {system.folder(u"below"), system.folder(u"worse")}}};
    addFolder("a", true);
    addFolder("b", false);
    EXPECT_THROW(scanFolders(service()), KWError);
    EXPECT_THAT(folderNames(), ElementsAre("a/", "a/below/", "b/"));
    for (const auto& [key, folder] : service().folderByPath)
        EXPECT_EQ(folder->pathKey(), key);
}

TEST_F(FolderScan, ATreeOfManyFoldersIsWalkedInLinearTime) {
    class Wide : public OrderedFolders {
    public:
        std::optional<std::vector<KWPlatform::DirectoryEntry>>
        listDirectory(const std::u16string& path) override {
            if (endsWith(path, u"wide/"))
                return many;
            if (endsWith(path, u"x/"))
                return std::vector<KWPlatform::DirectoryEntry>();
            return std::vector{folder(u"x")};
        }
        std::vector<KWPlatform::DirectoryEntry> many;
    } system;
    for (int i = 0; i < 20000; ++i) {
        const std::string name = std::to_string(i);
        system.many.push_back(system.folder(std::u16string(name.begin(), name.end())));
    }
    addFolder("wide", true);
    scanFolders(service());
    EXPECT_EQ(service().folders.size(), 40001U);
}

TEST_F(FolderScan, AFolderOfAHundredThousandEntriesIsWalked) {
    OrderedFolders system;
    system.root = files().path();
    auto& entries = system.listed["many/"];
    for (int i = 0; i < 100000; ++i) {
        const std::string name = "file" + std::to_string(i) + ".txt";
        entries.push_back(system.file(std::u16string(name.begin(), name.end())));
    }
    entries.push_back(system.file(u"font.ttf"));
    write("many/font.ttf", namedFont(u"Found"));
    addFolder("many", true);
    scanFolders(service());
    EXPECT_EQ(found(u"Found"), "many/font.ttf");
}

} // namespace
