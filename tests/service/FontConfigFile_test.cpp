// What a configuration says of single files: the elements inside of `font-folder`.

#include "service/ConfigFolderReader.h"

#include "service/FontConfigFixture.h"

#include <limits>
#include <set>

namespace {

using namespace KWFontService_NS;
using KWTest::ConfigRead;
using KWTest::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

class FontConfigFile : public KWTest::FontConfigTest {};

TEST_F(FontConfigFile, AttributesOfOtherElementsAreUnknown) {
    const struct {
        const char* element;
        const char* required;
        std::set<std::string> own;
    } elements[] = {
        {"font-entry",
         "file='a.ttf'",
         {"file", "font-size-adjust", "unicode-range", "baseline-adjust", "glyph-list",
          "skip-glyphname-mapping", "font-exclude", "use-zero-glyph-id"}},
        {"font-exclude", "file='a.ttf'", {"file"}},
        {"use-zero-glyph-id", "file='a.ttf'", {"file"}},
        {"glyph-list", "file='l.txt' afm='a.afm'", {"file", "afm", "pfm"}},
        {"skip-glyphname-mapping", "afm='a.afm'", {"afm", "pfm"}},
        {"font-alias", "file='a.ttf'", {"file", "entry"}},
    };
    for (const auto& [element, required, own] : elements) {
        for (const std::string attribute : {"file",
                                            "afm",
                                            "pfm",
                                            "path",
                                            "recursive",
                                            "weight",
                                            "italic",
                                            "stretch",
                                            "entry",
                                            "family-name",
                                            "file-path",
                                            "mode",
                                            "mapping",
                                            "reference",
                                            "start",
                                            "end",
                                            "font-size-adjust",
                                            "unicode-range",
                                            "baseline-adjust",
                                            "glyph-list",
                                            "skip-glyphname-mapping",
                                            "font-exclude",
                                            "use-zero-glyph-id"}) {
            if (own.contains(attribute))
                continue;
            const ConfigRead config = readFolder(std::string("<") + element + " " + required + " " +
                                                 attribute + "='1'/>");
            EXPECT_THAT(config.complaints,
                        ElementsAre("1935 Unknown attribute: <" + std::string(element) + " " +
                                    attribute + "> in FILE"));
        }
    }
}

TEST_F(FontConfigFile, AFileNameWithAColonIsNoUri) {
    const ConfigRead config = readFolder(
        "<font-entry file='ab:c.AFM' skip-glyphname-mapping='yes'/>"
        "<glyph-list file='l.txt' afm='http:x.afm'/><font-alias file='file:I.TTC' entry='2'/>");
    EXPECT_TRUE(config.options(u"ab:c.afm").skipGlyphNameMapping);
    EXPECT_TRUE(config.options(u"ab:c.pfm").skipGlyphNameMapping);
    EXPECT_FALSE(config.options(u"http:x.pfm").glyphList.isEmpty());
    ASSERT_EQ(config.service->folders[0]->fileAliases.size(), 1U);
    EXPECT_EQ(config.service->folders[0]->fileAliases.begin()->first.faceIndex, 1);
}

TEST_F(FontConfigFile, GlyphListsMayBeGivenAsUris) {
    const ConfigRead config = readFolder("<font-entry file='a.afm' glyph-list='file:///l%20a.txt'/>"
                                         "<glyph-list file='file:///l%20b.txt' afm='b.afm'/>");
    EXPECT_EQ(config.options(u"a.afm").glyphList, KWUri(u"/l a.txt"));
    EXPECT_EQ(config.options(u"b.pfm").glyphList, KWUri(u"/l b.txt"));
}

TEST_F(FontConfigFile, AnEmptyGlyphListClearsThatOfBothRecords) {
    const ConfigRead config = readFolder("<font-entry file='a.afm' glyph-list='l.txt'/>"
                                         "<font-entry file='a.pfm' glyph-list=''/>");
    EXPECT_TRUE(config.options(u"a.afm").glyphList.isEmpty());
    EXPECT_TRUE(config.options(u"a.pfm").glyphList.isEmpty());
}

TEST_F(FontConfigFile, AnEntryWithoutPairedSettingsMakesOneRecord) {
    const ConfigRead config = readFolder("<font-entry file='a.afm' baseline-adjust='1'/>");
    EXPECT_NE(config.service->folders[0]->findOptions(u"a.afm"), nullptr);
    EXPECT_EQ(config.service->folders[0]->findOptions(u"a.pfm"), nullptr);
}

TEST_F(FontConfigFile, OnlyOnePercentSignDivides) {
    EXPECT_EQ(readFolder("<font-entry file='a.ttf' font-size-adjust='150%%'/>")
                  .options(u"a.ttf")
                  .fontSizeAdjust,
              1.5F);
}

// What all elements with a file name share

TEST_F(FontConfigFile, AMissingOrEmptyFileEndsTheRead) {
    for (const std::string element :
         {"font-alias", "font-entry", "font-exclude", "glyph-list", "use-zero-glyph-id"}) {
        for (const std::string attribute : {"", " file=''"}) {
            const ConfigRead config =
                readFolder("<font-exclude file='before.ttf'/><" + element + attribute +
                           " x=''/><font-exclude file='behind.ttf'/>");
            EXPECT_EQ(config.thrown, "1937 Empty value: <" + element + " file> in FILE");
            EXPECT_THAT(config.complaints, IsEmpty());
            EXPECT_TRUE(config.options(u"before.ttf").fontExclude);
            EXPECT_FALSE(config.options(u"behind.ttf").fontExclude);
        }
    }
}

TEST_F(FontConfigFile, AFileWithAFolderPartEndsTheRead) {
    for (const std::string element :
         {"font-alias", "font-entry", "font-exclude", "use-zero-glyph-id"}) {
        for (const std::string file :
             {"sub/a.ttf", "/a.ttf", "./a.ttf", "a/", ".", "..", "C:\\a.ttf", "http://h/a.ttf"}) {
            const ConfigRead config = readFolder("<" + element + " file='" + file + "' x=''/>");
            EXPECT_EQ(config.thrown, "1941 Font file must be base file name: <" + element +
                                         " file=\"" + file + "\"> in FILE");
            EXPECT_THAT(config.complaints, IsEmpty());
            EXPECT_TRUE(config.service->folders[0]->fileOptions.empty());
            EXPECT_TRUE(config.service->folders[0]->fileAliases.empty());
        }
    }
}

TEST_F(FontConfigFile, AnAfmOrPfmWithAFolderPartEndsTheRead) {
    for (const std::string element : {"glyph-list file='g.txt'", "skip-glyphname-mapping"}) {
        const std::string name = element.substr(0, element.find(' '));
        for (const std::string attributes :
             {"afm='s/a.afm'", "pfm='s/a.afm'", "afm='a.afm' pfm='s/a.afm'",
              "afm='s/a.afm' pfm='t/a.pfm'"}) {
            const ConfigRead config = readFolder("<" + element + " " + attributes + "/>");
            const std::string wrong = attributes.starts_with("afm='s") ? "afm" : "pfm";
            EXPECT_EQ(config.thrown, "1941 Font file must be base file name: <" + name + " " +
                                         wrong + "=\"s/a.afm\"> in FILE");
            EXPECT_TRUE(config.service->folders[0]->fileOptions.empty());
        }
    }
}

TEST_F(FontConfigFile, FileNamesKeepTheCharactersThatAUriWouldReadOtherwise) {
    const ConfigRead config = readFolder("<font-exclude file='a%20b#c?d: e.ttf'/>");
    EXPECT_EQ(config.thrown, "");
    EXPECT_TRUE(config.options(u"a%20b#c?d: e.ttf").fontExclude);
}

TEST_F(FontConfigFile, ElementsOfFilesHaveNoChildrenButFontAlias) {
    for (const std::string element :
         {"font-entry file='a'", "font-exclude file='a'", "glyph-list file='g' afm='a.afm'",
          "skip-glyphname-mapping afm='a.afm'", "use-zero-glyph-id file='a'",
          "font-alias file='a'"}) {
        const std::string name = element.substr(0, element.find(' '));
        const ConfigRead config = readFolder("<" + element + "><font-folder/></" + name + ">");
        EXPECT_THAT(config.complaints,
                    ElementsAre("1028 Unexpected start tag: <font-folder> in FILE",
                                "1029 Unexpected end tag: </font-folder> in FILE",
                                "1029 Unexpected end tag: </" + name + "> in FILE",
                                "1029 Unexpected end tag: </font-folder> in FILE"));
    }
}

TEST_F(FontConfigFile, SwitchesAreSetForTheLowerCasedName) {
    const ConfigRead config =
        readFolder("<font-exclude file='A.TTF'/><use-zero-glyph-id file='\xC3\x84.otf'/>"
                   "<font-exclude file='A.ttf'/>");
    EXPECT_EQ(config.service->folders[0]->fileOptions.size(), 2U);
    EXPECT_TRUE(config.options(u"a.ttf").fontExclude);
    EXPECT_FALSE(config.options(u"a.ttf").useZeroGlyphId);
    EXPECT_TRUE(config.options(u"\u00E4.otf").useZeroGlyphId);
    EXPECT_FALSE(config.options(u"\u00E4.otf").fontExclude);
}

// font-entry

TEST_F(FontConfigFile, AFontEntryMakesARecordWithTheDefaults) {
    const ConfigRead config = readFolder("<font-entry file='A.ttf'/>");
    ASSERT_EQ(config.service->folders[0]->fileOptions.count(u"a.ttf"), 1U);
    const FS_FontFileOptions& options = config.options(u"a.ttf");
    EXPECT_TRUE(options.glyphList.isEmpty());
    EXPECT_FALSE(options.skipGlyphNameMapping);
    EXPECT_FALSE(options.fontExclude);
    EXPECT_FALSE(options.useZeroGlyphId);
    EXPECT_EQ(options.fontSizeAdjust, 1.0F);
    EXPECT_EQ(options.baselineAdjust, 0.0F);
    EXPECT_EQ(options.unicodeRange, nullptr);
}

TEST_F(FontConfigFile, AFontEntrySetsWhatItsAttributesSay) {
    const ConfigRead config =
        readFolder("<font-entry file='a.ttf' font-size-adjust='1.25' baseline-adjust='-0.5' "
                   "unicode-range='U+41-5A, U+3?\?' font-exclude='Yes' use-zero-glyph-id='TRUE'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    const FS_FontFileOptions& options = config.options(u"a.ttf");
    EXPECT_EQ(options.fontSizeAdjust, 1.25F);
    EXPECT_EQ(options.baselineAdjust, -0.5F);
    ASSERT_NE(options.unicodeRange, nullptr);
    EXPECT_TRUE(options.unicodeRange->inRange(0x41));
    EXPECT_TRUE(options.unicodeRange->inRange(0x3FF));
    EXPECT_FALSE(options.unicodeRange->inRange(0x40));
    EXPECT_TRUE(options.fontExclude);
    EXPECT_TRUE(options.useZeroGlyphId);
}

TEST_F(FontConfigFile, ALaterFontEntryChangesTheSameRecord) {
    const ConfigRead config =
        readFolder("<font-exclude file='a.ttf'/><font-entry file='A.ttf' font-size-adjust='2'/>"
                   "<font-entry file='a.TTF' font-exclude='no'/>");
    EXPECT_EQ(config.service->folders[0]->fileOptions.size(), 1U);
    EXPECT_FALSE(config.options(u"a.ttf").fontExclude);
    EXPECT_EQ(config.options(u"a.ttf").fontSizeAdjust, 2.0F);
}

TEST_F(FontConfigFile, NumbersMayBePercentages) {
    for (const auto& [text, number] : {std::pair("50%", 0.5F),
                                       {"0.5", 0.5F},
                                       {" 2", 2.0F},
                                       {"1e1", 10.0F},
                                       {"50 %", 50.0F},
                                       {".5%", 0.005F},
                                       {"3em", 3.0F},
                                       {"1e999", std::numeric_limits<float>::max()},
                                       {"+7%x", 0.07F}}) {
        const ConfigRead config = readFolder(std::string("<font-entry file='a' font-size-adjust='")
                                                 .append(text)
                                                 .append("' baseline-adjust='")
                                                 .append(text)
                                                 .append("'/>"));
        EXPECT_FLOAT_EQ(config.options(u"a").fontSizeAdjust, number) << text;
        EXPECT_FLOAT_EQ(config.options(u"a").baselineAdjust, number) << text;
        EXPECT_THAT(config.complaints, IsEmpty()) << text;
    }
}

TEST_F(FontConfigFile, ASizeThatIsNotAboveTheSmallestStepIsReportedAndTaken) {
    for (const auto& [text, number] : {std::pair("0", 0.0F),
                                       {"-2", -2.0F},
                                       {"0%", 0.0F},
                                       {"1.1920929e-07", 0x1p-23F},
                                       {"-1e999", std::numeric_limits<float>::lowest()}}) {
        const ConfigRead config = readFolder(
            std::string("<font-entry file='a' font-size-adjust='").append(text).append("'/>"));
        EXPECT_THAT(config.complaints,
                    ElementsAre("1936 Invalid value: <font-entry font-size-adjust=\"" +
                                std::string(text) + "\"> in FILE"));
        EXPECT_EQ(config.options(u"a").fontSizeAdjust, number);
    }
    EXPECT_THAT(readFolder("<font-entry file='a' font-size-adjust='1.193e-07'/>").complaints,
                IsEmpty());
}

TEST_F(FontConfigFile, BaselineAdjustTakesAnyNumber) {
    for (const auto& [text, number] : {std::pair("0", 0.0F), {"-25%", -0.25F}}) {
        const ConfigRead config = readFolder(
            std::string("<font-entry file='a' baseline-adjust='").append(text).append("'/>"));
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_EQ(config.options(u"a").baselineAdjust, number);
    }
}

TEST_F(FontConfigFile, InvalidValuesAreReportedAndLeaveTheRecord) {
    const ConfigRead config = readFolder(
        "<font-entry file='a.pfm' font-size-adjust='2' unicode-range='U+41' baseline-adjust='3' "
        "skip-glyphname-mapping='yes' font-exclude='yes' use-zero-glyph-id='yes'/>"
        "<font-entry file='a.pfm' font-size-adjust='big' unicode-range='U+42,' "
        "baseline-adjust='' skip-glyphname-mapping='0' font-exclude='' use-zero-glyph-id='on'/>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <font-entry font-size-adjust=\"big\"> in FILE",
                            "1936 Invalid value: <font-entry unicode-range=\"U+42,\"> in FILE",
                            "1936 Invalid value: <font-entry baseline-adjust=\"\"> in FILE",
                            "1936 Invalid value: <font-entry skip-glyphname-mapping=\"0\"> in FILE",
                            "1936 Invalid value: <font-entry font-exclude=\"\"> in FILE",
                            "1936 Invalid value: <font-entry use-zero-glyph-id=\"on\"> in FILE"));
    const FS_FontFileOptions& options = config.options(u"a.pfm");
    EXPECT_EQ(options.fontSizeAdjust, 2.0F);
    ASSERT_NE(options.unicodeRange, nullptr);
    EXPECT_TRUE(options.unicodeRange->inRange(0x41));
    EXPECT_FALSE(options.unicodeRange->inRange(0x42));
    EXPECT_EQ(options.baselineAdjust, 3.0F);
    EXPECT_TRUE(options.skipGlyphNameMapping);
    EXPECT_TRUE(options.fontExclude);
    EXPECT_TRUE(options.useZeroGlyphId);
}

TEST_F(FontConfigFile, AnInvalidUnicodeRangeIsQuotedAsAValue) {
    for (const auto& [text, quoted] : {std::pair("\"latin\"", "\"latin\""),
                                       {"'latin'", "\"latin\""},
                                       {" latin ", "latin"},
                                       {"0041", "41"},
                                       {"", ""},
                                       {"U+5A-41", "U+5A-41"},
                                       {"U+41 U+42", "U+41 U+42"}}) {
        const char quote = text[0] == '\'' ? '"' : '\'';
        const ConfigRead config = readFolder(std::string("<font-entry file='a' unicode-range=") +
                                             quote + text + quote + "/>");
        EXPECT_THAT(config.complaints, ElementsAre("1936 Invalid value: <font-entry unicode-range="
                                                   "\"" +
                                                   std::string(quoted) + "\"> in FILE"));
        EXPECT_EQ(config.options(u"a").unicodeRange, nullptr);
    }
}

// AFM and PFM

TEST_F(FontConfigFile, AFontEntryOfAMetricsFileSetsBothRecords) {
    for (const std::string file : {"a.afm", "A.PFM", "a.Afm"}) {
        const ConfigRead config = readFolder("<font-entry file='" + file +
                                             "' glyph-list='g.txt' skip-glyphname-mapping='yes' "
                                             "font-exclude='yes'/>");
        for (const char16_t* const name : {u"a.afm", u"a.pfm"}) {
            EXPECT_EQ(KWTest::posixPath(config.options(name).glyphList), "/f/g.txt");
            EXPECT_TRUE(config.options(name).skipGlyphNameMapping);
        }
        EXPECT_EQ(config.service->folders[0]->fileOptions.size(), 2U);
        const bool isPfm = file == "A.PFM";
        EXPECT_EQ(config.options(u"a.pfm").fontExclude, isPfm) << "the others are of one file";
        EXPECT_EQ(config.options(u"a.afm").fontExclude, !isPfm);
    }
}

TEST_F(FontConfigFile, AFontEntryReplacesTheGlyphListOfBothRecords) {
    const ConfigRead config = readFolder("<glyph-list file='old.txt' afm='a.afm'/>"
                                         "<font-entry file='a.pfm' glyph-list='/abs/new.txt' "
                                         "skip-glyphname-mapping='no'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(KWTest::posixPath(config.options(u"a.afm").glyphList), "/abs/new.txt");
    EXPECT_EQ(KWTest::posixPath(config.options(u"a.pfm").glyphList), "/abs/new.txt");
}

TEST_F(FontConfigFile, GlyphSettingsOfOtherFilesHaveNoEffect) {
    for (const std::string file : {"a.ttf", "a.pfb", "afm", "a.afm.otf"}) {
        const ConfigRead config = readFolder("<font-entry file='" + file +
                                             "' glyph-list='g.txt' "
                                             "skip-glyphname-mapping='maybe'/>");
        EXPECT_THAT(config.complaints, IsEmpty());
        ASSERT_EQ(config.service->folders[0]->fileOptions.size(), 1U);
        const auto& [name, options] = *config.service->folders[0]->fileOptions.begin();
        EXPECT_TRUE(options.glyphList.isEmpty());
        EXPECT_FALSE(options.skipGlyphNameMapping);
    }
}

TEST_F(FontConfigFile, AGlyphListIsForBothMetricsFiles) {
    for (const std::string attributes : {"afm='A.afm'", "pfm='A.PFM'", "afm='a.AFM' pfm=''",
                                         "afm='' pfm='a.pfm'", "afm='a.afm' pfm='a.pfm'"}) {
        const ConfigRead config = readFolder("<glyph-list file='lists/g.txt' " + attributes + "/>" +
                                             "<skip-glyphname-mapping " + attributes + "/>");
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_EQ(config.thrown, "");
        EXPECT_EQ(config.service->folders[0]->fileOptions.size(), 2U);
        for (const char16_t* const name : {u"a.afm", u"a.pfm"}) {
            EXPECT_EQ(KWTest::posixPath(config.options(name).glyphList), "/f/lists/g.txt");
            EXPECT_TRUE(config.options(name).skipGlyphNameMapping);
        }
    }
}

TEST_F(FontConfigFile, GivenMetricsFilesAreUsedAsWritten) {
    const ConfigRead config = readFolder("<glyph-list file='g.txt' afm='x.dat' pfm='y.dat'/>"
                                         "<skip-glyphname-mapping afm='u.afm' pfm='v.pfm'/>");
    EXPECT_FALSE(config.options(u"x.dat").glyphList.isEmpty());
    EXPECT_FALSE(config.options(u"y.dat").glyphList.isEmpty());
    EXPECT_TRUE(config.options(u"u.afm").skipGlyphNameMapping);
    EXPECT_TRUE(config.options(u"v.pfm").skipGlyphNameMapping);
    EXPECT_EQ(config.service->folders[0]->fileOptions.size(), 4U);
}

TEST_F(FontConfigFile, WithoutAMetricsFileTheReadEnds) {
    for (const std::string element : {"glyph-list file='g'", "glyph-list file='g' afm='' pfm=''",
                                      "skip-glyphname-mapping", "skip-glyphname-mapping pfm=''"}) {
        const ConfigRead config = readFolder("<" + element + " x=''/>");
        EXPECT_EQ(config.thrown,
                  "1937 Empty value: <" + element.substr(0, element.find(' ')) + " afm> in FILE");
        EXPECT_THAT(config.complaints, IsEmpty());
    }
}

TEST_F(FontConfigFile, ASecondGlyphListOfAnAfmEndsTheReadBeforeItsPfm) {
    const ConfigRead config = readFolder("<glyph-list file='1.txt' afm='a.afm' pfm='x.pfm'/>"
                                         "<glyph-list file='2.txt' afm='A.afm' pfm='b.pfm' y=''/>");
    EXPECT_EQ(config.thrown, "1940 Already registered value: <glyph-list afm=\"A.afm\"> in FILE");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(utf8(config.options(u"a.afm").glyphList.getFileName()), "1.txt");
    EXPECT_TRUE(config.options(u"b.pfm").glyphList.isEmpty());
}

TEST_F(FontConfigFile, ASecondGlyphListOfAPfmEndsTheReadBehindItsAfm) {
    const ConfigRead config = readFolder("<glyph-list file='1.txt' afm='a.afm' pfm='x.pfm'/>"
                                         "<glyph-list file='2.txt' afm='x.afm'/>");
    EXPECT_EQ(config.thrown, "1940 Already registered value: <glyph-list pfm=\"x.pfm\"> in FILE");
    EXPECT_EQ(utf8(config.options(u"x.pfm").glyphList.getFileName()), "1.txt");
    EXPECT_EQ(utf8(config.options(u"x.afm").glyphList.getFileName()), "2.txt");
}

TEST_F(FontConfigFile, AGlyphListBehindThatOfAFontEntryEndsTheRead) {
    const ConfigRead config = readFolder("<font-entry file='a.afm' glyph-list='1.txt'/>"
                                         "<glyph-list file='2.txt' pfm='a.pfm'/>");
    EXPECT_EQ(config.thrown, "1940 Already registered value: <glyph-list afm=\"a.afm\"> in FILE");
}

TEST_F(FontConfigFile, SkippingMayBeSaidTwice) {
    const ConfigRead config = readFolder("<skip-glyphname-mapping afm='a.afm'/>"
                                         "<skip-glyphname-mapping pfm='a.pfm'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.thrown, "");
}

TEST_F(FontConfigFile, EachFolderHasRecordsOfItsOwn) {
    const ConfigRead config =
        readRoot("<font-folder path='/f'><glyph-list file='g' afm='a.afm'/>"
                 "<font-alias file='a.afm'/></font-folder><font-folder path='/g'>"
                 "<glyph-list file='g' afm='a.afm'/><font-alias file='a.afm'/></font-folder>");
    EXPECT_EQ(config.thrown, "");
    const auto* const options = config.service->folders[1]->findOptions(u"a.afm");
    ASSERT_NE(options, nullptr);
    EXPECT_EQ(KWTest::posixPath(options->glyphList), "/g/g");
}

} // namespace
