// Configurations that are no XML, are cut off, or mean harm: each is read or thrown, in bounded
// time.

#include "common/KWLimits.h"
#include "service/FontConfigFixture.h"
#include "support/Rng.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace KWFontService_NS;
using KWTest::ConfigRead;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class FontConfigHostile : public KWTest::FontConfigTest {};

/// A little of everything; two complaints, the end tags of <x> not counted.
const std::string kDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE font-config [<!ENTITY name "Entity">]>
<font-config use-preferred-family="no" windows-registry="maybe">
  <!-- a comment -->
  <eudc-processing mapping="enable"><eudc-range start="57344" end="57400"/></eudc-processing>
  <acc-folder path="x"><y/></acc-folder>
  <font-folder path="/f" recursive="yes">
    <font-alias file="a.ttc" entry="zwei"><alias family-name="&name;" weight="700"/></font-alias>
    <font-entry file="b&#xE9;.ttf" font-size-adjust="50%" unicode-range="U+41-5A"/>
    <glyph-list file="g.txt" afm="c.afm"/>
  </font-folder>
  <font-folder path="/g"/>
</font-config>
)";

TEST_F(FontConfigHostile, TheDocumentOfTheseTestsIsReadWhole) {
    const ConfigRead config = read(kDocument);
    EXPECT_EQ(config.thrown, "");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <font-config windows-registry=\"maybe\"> in FILE",
                            "1942 Not an integer value: <font-alias entry=\"zwei\"> in FILE"));
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/", "/g/"));
    EXPECT_EQ(config.service->folders[0]->fileAliases.begin()->second.begin()->familyName,
              UnicodeString(u"Entity"));
}

TEST_F(FontConfigHostile, WhatIsNoXmlIsThrownWithItsPlace) {
    for (const std::string& document :
         {std::string(), std::string(" \n "), std::string("font-config"), std::string("<"),
          std::string("<>"), std::string("\0", 1), std::string("\xEF\xBB\xBF"),
          std::string("%PDF-1.7\n"), std::string("{\"font-config\": {}}"),
          std::string("<?xml version='1.0'?>"), std::string("<!-- <font-config/> -->")}) {
        const ConfigRead config = read(document);
        EXPECT_THAT(config.thrown, StartsWith("900 FILE, line ")) << document;
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_THAT(config.folderPaths(), IsEmpty());
    }
}

TEST_F(FontConfigHostile, TheBreakIsToldByLineAndColumn) {
    const ConfigRead config = read("<font-config>\n <font-folder path='/f'>\n</font-config>");
    EXPECT_EQ(config.thrown, "900 FILE, line 3, column 3: mismatched tag");
}

TEST_F(FontConfigHostile, WhatStandsBeforeABreakIsReportedAndStands) {
    const ConfigRead config =
        read("<font-config x=''><font-folder path='/f'><font-exclude file='a'/><y");
    EXPECT_THAT(config.thrown, StartsWith("900 FILE, line 1"));
    EXPECT_THAT(config.complaints, ElementsAre("1935 Unknown attribute: <font-config x> in FILE"));
    EXPECT_TRUE(config.options(u"a").fontExclude);
}

TEST_F(FontConfigHostile, ACutAtAnyByteIsThrownBehindTheComplaintsBeforeIt) {
    const ConfigRead whole = read(kDocument);
    const std::size_t end = kDocument.find("</font-config>") + 14;
    std::size_t complaints = 0;
    for (std::size_t size = 0; size < kDocument.size(); ++size) {
        const ConfigRead config = read(kDocument.substr(0, size));
        if (size < end)
            ASSERT_THAT(config.thrown, StartsWith("900 FILE, line ")) << size;
        else
            ASSERT_EQ(config.thrown, "") << size;
        ASSERT_GE(config.complaints.size(), complaints) << size;
        complaints = config.complaints.size();
        ASSERT_TRUE(std::equal(config.complaints.begin(), config.complaints.end(),
                               whole.complaints.begin()))
            << size;
    }
    EXPECT_EQ(complaints, whole.complaints.size());
}

TEST_F(FontConfigHostile, AnyChangedBytesAreReadOrThrown) {
    KWTest::Rng random(20);
    for (int round = 0; round < 1000; ++round) {
        std::string document = kDocument;
        for (int change = 0; change < 1 + round % 3; ++change)
            document[random.next() % document.size()] = static_cast<char>(random.byte());
        const ConfigRead config = read(document);
        ASSERT_LE(config.service->folders.size(), 2U);
    }
}

// Encodings

TEST_F(FontConfigHostile, BytesThatAreNotInTheDeclaredEncodingAreThrown) {
    for (const std::string head : {"", "<?xml version='1.0' encoding='UTF-8'?>"}) {
        const ConfigRead config =
            read(head + "<font-config><font-folder path='/na\xEFve'/></font-config>");
        EXPECT_THAT(config.thrown, StartsWith("900 FILE, line 1"));
        EXPECT_THAT(config.folderPaths(), IsEmpty());
    }
}

TEST_F(FontConfigHostile, EncodingsThatCannotBeAreThrown) {
    for (const std::string encoding : {"UTF-16", "UTF-32", "no-such-encoding", ""}) {
        const ConfigRead config = read("<?xml version='1.0' encoding='" + encoding +
                                       "'?><font-config><font-folder path='/f'/></font-config>");
        EXPECT_THAT(config.thrown, StartsWith("900 FILE, line 1")) << encoding;
    }
}

TEST_F(FontConfigHostile, OtherEncodingsAreRead) {
    EXPECT_THAT(read("<?xml version='1.0' encoding='windows-1252'?><font-config>"
                     "<font-folder path='/na\xEFve'/></font-config>")
                    .folderPaths(),
                ElementsAre("/na\xC3\xAFve/"));
    std::string wide = "\xFF\xFE";
    for (const char c : std::string("<font-config><font-folder path='/f'/></font-config>"))
        wide.append({c, '\0'});
    EXPECT_THAT(read(wide).folderPaths(), ElementsAre("/f/"));
    wide.resize(wide.size() - 1);
    EXPECT_EQ(read(wide).thrown.substr(0, 3), "900") << "half a character";
}

TEST_F(FontConfigHostile, NulsAreThrown) {
    for (const std::string& document :
         {std::string("<font-config><font-folder path='/a\0b'/></font-config>", 50),
          std::string("<font-config>\0</font-config>", 28),
          std::string("<font-config x\0=''/>", 20),
          std::string("<font-config><font-folder path='/a&#0;b'/></font-config>")}) {
        const ConfigRead config = read(document);
        EXPECT_THAT(config.thrown, StartsWith("900 FILE, line 1"));
        EXPECT_THAT(config.folderPaths(), IsEmpty());
    }
}

// Size and depth

std::string repeated(const std::string& piece, std::size_t count) {
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        text += piece;
    return text;
}

TEST_F(FontConfigHostile, AMillionNestedElementsAreThrown) {
    for (const std::string around : {"", "<acc-folder>", "<font-folder path='/f'>"}) {
        const ConfigRead config = read("<font-config>" + around + repeated("<x>", 1000000));
        EXPECT_THAT(config.thrown, testing::HasSubstr("elements nested too deeply"));
        EXPECT_LE(config.complaints.size(), KWCommonNS::kXmlMaxDepth);
        EXPECT_EQ(config.complaints.empty(), around == "<acc-folder>");
    }
}

TEST_F(FontConfigHostile, EntityBombsAreThrown) {
    std::string bomb = "<!DOCTYPE font-config [<!ENTITY e0 'aaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 30; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        bomb += "<!ENTITY e" + std::to_string(i) + " '" + inner + inner + "'>";
    }
    bomb += "]><font-config>";
    for (const std::string use : {"<font-folder path='/&e29;'/>", "&e29;"}) {
        const ConfigRead config = read(bomb + use + "</font-config>");
        EXPECT_THAT(config.thrown, StartsWith("900 FILE, line 1"));
    }
}

TEST_F(FontConfigHostile, AnEntityThatHoldsItselfIsThrown) {
    const ConfigRead config = read("<!DOCTYPE font-config [<!ENTITY a '&b;'><!ENTITY b '&a;'>]>"
                                   "<font-config><font-folder path='/&a;'/></font-config>");
    EXPECT_THAT(config.thrown, StartsWith("900 FILE, line 1"));
}

TEST_F(FontConfigHostile, FilesOutsideAreNotRead) {
    files().write("other.xml", "<font-folder path='/other'/>");
    const std::string head = "<!DOCTYPE font-config SYSTEM 'other.xml' "
                             "[<!ENTITY other SYSTEM 'other.xml'>]>";
    EXPECT_THAT(
        read(head + "<font-config>&other;<font-folder path='/f'/></font-config>").folderPaths(),
        ElementsAre("/f/"));
    EXPECT_THAT(read(head + "<font-config><font-folder path='/&other;'/></font-config>").thrown,
                StartsWith("900 FILE, line 1"));
}

TEST_F(FontConfigHostile, ATagWithoutEndIsThrown) {
    const ConfigRead config =
        read("<font-config><font-folder path='/" + std::string(1 << 20, 'a') + "'/></font-config>");
    EXPECT_THAT(config.thrown, StartsWith("900 FILE, line 1"));
}

TEST_F(FontConfigHostile, ManyAttributesAreAllReported) {
    std::string attributes;
    for (int i = 0; i < 1000; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    const ConfigRead config =
        read("<font-config><font-folder path='/f'" + attributes + "/></font-config>");
    EXPECT_EQ(config.thrown, "");
    EXPECT_EQ(config.complaints.size(), 1000U);
}

using FontConfigHostileDeathTest = FontConfigHostile;

TEST_F(FontConfigHostileDeathTest, ComplaintsBeyondWhatIsKeptDoNotStopTheRead) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::size_t count = 2 * KWCommonNS::kMaxRecordedErrors;
    // In a process of its own, since the service never forgets.
    EXPECT_EXIT(
        {
            const ConfigRead config = readRoot("<font-folder path='/f'>" +
                                               repeated("<font-exclude file='a' x=''/>", count) +
                                               "</font-folder><font-folder path='/g'/>");
            const bool whole = config.thrown.empty() && config.service->folders.size() == 2 &&
                               config.complaints.size() <= KWCommonNS::kMaxRecordedErrors;
            std::_Exit(whole ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FontConfigHostile, ALargeFileIsReadWhole) {
    constexpr int kFolders = 10000;
    std::string document = "<font-config><eudc-processing>";
    for (int i = 1; i <= kFolders; ++i) {
        const std::string number = std::to_string(i);
        document += "<eudc-map family-name='F" + number + "' file-path='f" + number +
                    ".tte'/><eudc-range start='" + number + "'/>\n";
    }
    document += "</eudc-processing>";
    for (int i = 0; i < kFolders; ++i) {
        const std::string number = std::to_string(i);
        document += "<font-folder path='/fonts/" + number + "' recursive='yes'>";
        for (const char* const file : {"a", "b", "c", "d"})
            document += std::string("<font-entry file='")
                            .append(file)
                            .append(".ttf' font-size-adjust='50%' unicode-range='U+0-5A'/>"
                                    "<font-alias file='") +
                        file + ".ttf'><alias family-name='A" + number +
                        "' weight='bold' italic='no' stretch='condensed'/></font-alias>\n";
        document += "<glyph-list file='g.txt' afm='e.afm'/></font-folder>";
    }
    document += "</font-config>";
    ASSERT_GT(document.size(), std::size_t{8} << 20);
    const ConfigRead config = read(document);
    EXPECT_EQ(config.thrown, "");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.service->eudcMap.size(), static_cast<std::size_t>(kFolders));
    EXPECT_EQ(config.eudcCount(), kFolders);
    ASSERT_EQ(config.service->folders.size(), static_cast<std::size_t>(kFolders));
    EXPECT_EQ(config.service->folders.back()->fileOptions.size(), 6U);
    EXPECT_EQ(config.service->folders.back()->fileAliases.size(), 4U);
}

} // namespace
