// The elements `font-alias` and `alias`.

#include "service/ConfigFolderReader.h"

#include "service/FontConfigFixture.h"
#include "support/DefaultLocale.h"

#include <climits>

namespace {

using namespace KWFontService_NS;
using KWTest::ConfigRead;
using testing::ElementsAre;
using testing::IsEmpty;

class FontConfigAlias : public KWTest::FontConfigTest {
protected:
    /// The only alias of a folder's only file.
    FS_FontAlias readAlias(const std::string& attributes) {
        const ConfigRead config = readFolder("<font-alias file='a.ttf'><alias family-name='A' " +
                                             attributes + "/></font-alias>");
        complaints = config.complaints;
        const auto& files = config.service->folders.at(0)->fileAliases;
        EXPECT_EQ(files.size(), 1U);
        EXPECT_EQ(files.begin()->second.size(), 1U);
        return *files.begin()->second.begin();
    }
    /// The only target of a folder's aliases.
    FS_FontAliasTarget readTarget(const std::string& attributes) {
        const ConfigRead config = readFolder("<font-alias " + attributes + "/>");
        complaints = config.complaints;
        const auto& files = config.service->folders.at(0)->fileAliases;
        EXPECT_EQ(files.size(), 1U);
        return files.begin()->first;
    }

    std::vector<std::string> complaints;
};

TEST_F(FontConfigAlias, AnAliasTargetKeepsTheNameAsWritten) {
    const FS_FontAliasTarget target = readTarget("file='MyFont.TTF'");
    EXPECT_EQ(target.lowerFileName, UnicodeString(u"myfont.ttf"));
    EXPECT_EQ(target.fileName, UnicodeString(u"MyFont.TTF"));
    EXPECT_EQ(target.faceIndex, 0);
}

TEST_F(FontConfigAlias, AnEntryCountsFromOneInCollectionsAlone) {
    EXPECT_EQ(readTarget("file='a.ttc'").faceIndex, 0);
    EXPECT_EQ(readTarget("file='a.ttc' entry='1'").faceIndex, 0);
    EXPECT_EQ(readTarget("file='a.TTC' entry='3'").faceIndex, 2);
    EXPECT_EQ(readTarget("file='a.ttc' entry=' 4 '").faceIndex, 3);
    EXPECT_THAT(complaints, IsEmpty());
    EXPECT_EQ(readTarget("file='a.ttf' entry='x'").faceIndex, 0);
    EXPECT_THAT(complaints, IsEmpty()) << "not looked at";
    EXPECT_EQ(readTarget("file='a.dfont' entry='3'").faceIndex, 0);
}

TEST_F(FontConfigAlias, AnEntryThatIsNoIntegerIsReportedAndIsTheFirst) {
    for (const std::string entry : {"x", "1.5", "2.0", "", "1 2", "99999999999", "'1'"}) {
        EXPECT_EQ(readTarget("file='a.ttc' entry=\"" + entry + "\"").faceIndex, 0);
        EXPECT_THAT(complaints, ElementsAre("1942 Not an integer value: <font-alias entry=\"" +
                                            entry + "\"> in FILE"));
    }
}

TEST_F(FontConfigAlias, AnEntryBelowOneIsReportedAndTaken) {
    for (const auto& [entry, face] : {std::pair("0", -1),
                                      {"-4", -5},
                                      {"-2147483648", -INT_MAX - 1},
                                      {"-2147483647", -INT_MAX - 1}}) {
        EXPECT_EQ(
            readTarget(std::string("file='a.ttc' entry='").append(entry).append("'")).faceIndex,
            face);
        EXPECT_THAT(complaints, ElementsAre("1936 Invalid value: <font-alias entry=\"" +
                                            std::string(entry) + "\"> in FILE"));
    }
}

TEST_F(FontConfigAlias, TheSameAliasTargetTwiceEndsTheRead) {
    const ConfigRead config =
        readFolder("<font-alias file='a.ttc' entry='2'><alias family-name='A'/></font-alias>"
                   "<font-alias file='A.ttc' entry='2'/><font-alias file='a.ttc' entry='1'/>"
                   "<font-alias file='a.ttc' entry='2' x=''/>");
    EXPECT_EQ(config.thrown, "1940 Already registered value: <font-alias file=\"a.ttc\"> in FILE");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.service->folders[0]->fileAliases.size(), 3U)
        << "another spelling and another face are other targets";
    const auto& files = config.service->folders[0]->fileAliases;
    const auto first = files.find(FS_FontAliasTarget{u"a.ttc", u"a.ttc", 1});
    ASSERT_NE(first, files.end());
    EXPECT_EQ(first->second.size(), 1U);
}

TEST_F(FontConfigAlias, AnAliasNeedsNoMoreThanItsFamily) {
    const FS_FontAlias alias = readAlias("");
    EXPECT_EQ(alias.familyName, UnicodeString(u"A"));
    EXPECT_EQ(alias.weight, -1);
    EXPECT_EQ(alias.italic, -1);
    EXPECT_EQ(alias.stretch, 0);
}

TEST_F(FontConfigAlias, AnAliasWithoutAFamilyEndsTheRead) {
    for (const std::string attribute : {"", "family-name=''"}) {
        const ConfigRead config = readFolder("<font-alias file='a'><alias family-name='A'/><alias "
                                             "x='' weight='1' " +
                                             attribute + "/></font-alias>");
        EXPECT_EQ(config.thrown, "1937 Empty value: <alias family-name> in FILE");
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_EQ(config.service->folders[0]->fileAliases.begin()->second.size(), 1U);
    }
}

TEST_F(FontConfigAlias, AliasWeightsAreNumbersOrWords) {
    for (const auto& [text, weight] : {std::pair("100", 100),
                                       {"900", 900},
                                       {"550", 550},
                                       {" 300 ", 300},
                                       {"Demi", 700},
                                       {"BOLD", 700},
                                       {"SemiBold", 700},
                                       {"light", 400},
                                       {"normal", 400},
                                       {"", 400},
                                       {"400.5", 400},
                                       {"700px", 400},
                                       {"extra bold 900", 700}}) {
        EXPECT_EQ(readAlias(std::string("weight='").append(text).append("'")).weight, weight)
            << text;
        EXPECT_THAT(complaints, IsEmpty()) << text;
    }
}

TEST_F(FontConfigAlias, AnAliasWeightOutOfRangeIsReportedAndTaken) {
    for (const int weight : {50, 99, 901, 0, -1, INT_MAX}) {
        const std::string text = std::to_string(weight);
        EXPECT_EQ(readAlias("weight='" + text + "'").weight, weight);
        EXPECT_THAT(complaints,
                    ElementsAre("1936 Invalid value: <alias weight=\"" + text + "\"> in FILE"));
    }
}

TEST_F(FontConfigAlias, AnAliasMayBeItalic) {
    EXPECT_EQ(readAlias("italic='yes'").italic, 1);
    EXPECT_EQ(readAlias("italic='False'").italic, 0);
    EXPECT_THAT(complaints, IsEmpty());
    EXPECT_EQ(readAlias("italic='italic'").italic, -1);
    EXPECT_THAT(complaints, ElementsAre("1936 Invalid value: <alias italic=\"italic\"> in FILE"));
}

TEST_F(FontConfigAlias, AliasStretchesAreWords) {
    for (const auto& [text, stretch] : {std::pair("ultra-condensed", 1),
                                        {"extra-condensed", 2},
                                        {"condensed", 3},
                                        {"semi-condensed", 4},
                                        {"semi-expanded", 6},
                                        {"expanded", 7},
                                        {"extra-expanded", 8},
                                        {"ultra-expanded", 9},
                                        {"normal", 0},
                                        {"", 0},
                                        {"ultra", 0},
                                        {"Condensed", 0},
                                        {"Ultra-condensed", 3},
                                        {"extra-ultra-condensed", 1},
                                        {"semi-ultra-expanded", 9},
                                        {"semi-extra-expanded", 8},
                                        {"condensed semi", 4},
                                        {"expanded condensed", 3}}) {
        EXPECT_EQ(readAlias(std::string("stretch='").append(text).append("'")).stretch, stretch)
            << text;
        EXPECT_THAT(complaints, IsEmpty()) << text;
    }
}

TEST_F(FontConfigAlias, TheSameAliasTwiceEndsTheRead) {
    const ConfigRead config = readFolder(
        "<font-alias file='a'><alias family-name='A' weight='bold' stretch='expanded'/>"
        "<alias family-name='A' weight='bold'/><alias family-name='A' stretch='expanded'/>"
        "<alias family-name='A' weight='bold' stretch='expanded' italic='no'/>"
        "<alias family-name='a' weight='bold' stretch='expanded'/>"
        "<alias family-name='A' weight='700' stretch='expanded' x=''/></font-alias>"
        "<font-alias file='b'/>");
    EXPECT_EQ(config.thrown, "1940 Already registered value: <alias family-name=\"A\"> in FILE");
    EXPECT_THAT(config.complaints, IsEmpty());
    ASSERT_EQ(config.service->folders[0]->fileAliases.size(), 1U);
    EXPECT_EQ(config.service->folders[0]->fileAliases.begin()->second.size(), 5U);
}

TEST_F(FontConfigAlias, TheSameAliasMayStandForTwoFiles) {
    const ConfigRead config =
        readFolder("<font-alias file='a'><alias family-name='A'/></font-alias>"
                   "<font-alias file='b'><alias family-name='A'/></font-alias>");
    EXPECT_EQ(config.thrown, "");
    EXPECT_EQ(config.service->folders[0]->fileAliases.size(), 2U);
}

TEST_F(FontConfigAlias, AnAliasHasNoChildren) {
    const ConfigRead config = readFolder("<font-alias file='a'><alias family-name='A'>"
                                         "<alias family-name='B'/></alias></font-alias>");
    EXPECT_THAT(config.complaints, ElementsAre("1028 Unexpected start tag: <alias> in FILE",
                                               "1029 Unexpected end tag: </alias> in FILE",
                                               "1029 Unexpected end tag: </font-alias> in FILE",
                                               "1029 Unexpected end tag: </font-folder> in FILE"))
        << "the inner end tag ends the outer alias, and so on outwards";
}

TEST_F(FontConfigAlias, WordsFollowNoLocale) {
    const KWTest::DefaultLocale turkish("tr_TR");
    const ConfigRead config = readFolder("<font-alias file='a.ttf'><alias family-name='X' "
                                         "weight='DEMI' italic='FALSE'/></font-alias>");
    const auto& aliases = config.service->folders[0]->fileAliases.begin()->second;
    ASSERT_EQ(aliases.size(), 1U);
    EXPECT_EQ(aliases.begin()->weight, 700);
}

TEST_F(FontConfigAlias, AnEmptyItalicIsInvalidAndNotGiven) {
    const ConfigRead config =
        readFolder("<font-alias file='a.ttf'><alias family-name='X' italic=''/></font-alias>");
    EXPECT_EQ(config.complaints,
              std::vector<std::string>{"1936 Invalid value: <alias italic=\"\"> in FILE"});
    const auto& aliases = config.service->folders[0]->fileAliases.begin()->second;
    ASSERT_EQ(aliases.size(), 1U);
    EXPECT_EQ(aliases.begin()->italic, -1);
}

} // namespace
