#include "service/ConfigEudcReader.h"

#include "service/FontConfigFixture.h"

namespace {

using namespace KWFontService_NS;
using KWTest::ConfigRead;
using KWTest::utf8;
using testing::ElementsAre;
using testing::IsEmpty;

class FontConfigEudc : public KWTest::FontConfigTest {};

TEST_F(FontConfigEudc, MappingSwitchesTheProcessing) {
    EXPECT_FALSE(readRoot("<eudc-processing mapping='disable'/>").service->eudcProcessing);
    EXPECT_TRUE(readRoot("<eudc-processing mapping='enable'/>").service->eudcProcessing);
    EXPECT_TRUE(readRoot("<eudc-processing/>").service->eudcProcessing);

    ConfigRead config;
    config.service->eudcProcessing = false;
    const std::string path =
        files()
            .write("f.xml", "<font-config><eudc-processing mapping='yes'/></font-config>")
            .string();
    readFontConfig(*config.service, path.c_str(), nullptr);
    EXPECT_FALSE(config.service->eudcProcessing) << "an invalid value leaves the setting";
}

TEST_F(FontConfigEudc, UnknownAttributesAndChildrenAreReported) {
    const ConfigRead config = readRoot("<font-folder path='/f'/><eudc-processing mode='x'>"
                                       "<font-folder path='/g'/></eudc-processing>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1935 Unknown attribute: <eudc-processing mode> in FILE",
                            "1028 Unexpected start tag: <font-folder> in FILE",
                            "1029 Unexpected end tag: </font-folder> in FILE",
                            "1029 Unexpected end tag: </eudc-processing> in FILE"));
    EXPECT_THAT(config.folderPaths(), ElementsAre("/f/"));
}

// eudc-map

TEST_F(FontConfigEudc, MapsFamiliesToFilesBesideTheConfiguration) {
    const ConfigRead config =
        readEudc("<eudc-map family-name='MS Mincho' file-path='e.tte'/>"
                 "<eudc-map family-name='ms mincho' file-path='/abs/e 2.tte'/>"
                 "<eudc-map family-name=' ' file-path='file:///x%20y'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    ASSERT_EQ(config.service->eudcMap.size(), 3U);
    EXPECT_EQ(config.service->eudcMap.at(u"MS Mincho"), files().uri("e.tte"));
    EXPECT_EQ(KWTest::posixPath(config.service->eudcMap.at(u"ms mincho")), "/abs/e 2.tte");
    EXPECT_EQ(KWTest::posixPath(config.service->eudcMap.at(u" ")), "/x y");
}

TEST_F(FontConfigEudc, TheFirstFileOfAFamilyStays) {
    const ConfigRead config = readEudc("<eudc-map family-name='A' file-path='1.tte'/>"
                                       "<eudc-map family-name='A' file-path='2.tte'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.thrown, "");
    EXPECT_EQ(config.service->eudcMap.at(u"A"), files().uri("1.tte"));
}

TEST_F(FontConfigEudc, RequiredAttributesThatAreMissingOrEmptyEndTheRead) {
    for (const auto& [element, attribute] :
         {std::pair("eudc-map file-path='e'", "family-name"),
          {"eudc-map family-name='' file-path='e'", "family-name"},
          {"eudc-map family-name='A'", "file-path"},
          {"eudc-map family-name='A' file-path=''", "file-path"},
          {"eudc-map", "family-name"},
          {"eudc-range end='5'", "start"},
          {"eudc-range start='' end='x'", "start"},
          {"eudc-system-default", "file-path"},
          {"eudc-system-default file-path=''", "file-path"}}) {
        const std::string text(element);
        const ConfigRead config =
            readEudc("<eudc-range start='9'/><" + text + " x=''/><eudc-range start='10'/>");
        EXPECT_EQ(config.thrown, "1937 Empty value: <" + text.substr(0, text.find(' ')) + " " +
                                     attribute + "> in FILE");
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_THAT(config.service->eudcMap, IsEmpty());
        EXPECT_TRUE(config.service->eudcSystemDefault.isEmpty());
        EXPECT_TRUE(config.service->isEudcCodePoint(9)) << "what was read before stands";
        EXPECT_FALSE(config.service->isEudcCodePoint(10));
    }
}

TEST_F(FontConfigEudc, ElementsInsideHaveNoChildren) {
    for (const std::string element :
         {"eudc-map family-name='A' file-path='e'", "eudc-range start='5'",
          "eudc-system-default file-path='e'"}) {
        const std::string name = element.substr(0, element.find(' '));
        const ConfigRead config = readEudc("<" + element + "><eudc-map/></" + name + ">");
        EXPECT_EQ(config.complaints.front(), "1028 Unexpected start tag: <eudc-map> in FILE");
    }
}

// eudc-system-default

TEST_F(FontConfigEudc, TheSystemDefaultLiesBesideTheConfiguration) {
    EXPECT_EQ(readEudc("<eudc-system-default file-path='d.tte'/>").service->eudcSystemDefault,
              files().uri("d.tte"));
}

TEST_F(FontConfigEudc, TheSystemDefaultStandsOnce) {
    const ConfigRead config = readEudc("<eudc-system-default file-path='d.tte'/>"
                                       "<eudc-range start='7'/>"
                                       "<eudc-system-default file-path='e.tte'/>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1028 Unexpected start tag: <eudc-system-default> in FILE",
                            "1029 Unexpected end tag: </eudc-system-default> in FILE",
                            "1029 Unexpected end tag: </eudc-processing> in FILE"));
    EXPECT_EQ(config.service->eudcSystemDefault, files().uri("d.tte"));
}

// eudc-range

TEST_F(FontConfigEudc, ARangeWithoutAnEndIsOneCodePoint) {
    const ConfigRead config = readEudc("<eudc-range start='57344'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_TRUE(config.service->eudcRangeGiven);
    EXPECT_TRUE(config.service->isEudcCodePoint(0xE000));
    EXPECT_EQ(config.eudcCount(), 1);
}

TEST_F(FontConfigEudc, ARangeCoversBothItsLimitsInEitherOrder) {
    for (const std::string limits : {"start='57344' end='57360'", "start='57360' end='57344'"}) {
        const ConfigRead config = readEudc("<eudc-range " + limits + "/>");
        EXPECT_THAT(config.complaints, IsEmpty());
        EXPECT_TRUE(config.service->isEudcCodePoint(57344));
        EXPECT_TRUE(config.service->isEudcCodePoint(57360));
        EXPECT_EQ(config.eudcCount(), 17);
    }
}

TEST_F(FontConfigEudc, RangesAddUp) {
    const ConfigRead config =
        readEudc("<eudc-range start='1' end='3'/>"
                 "<eudc-range start='3' end='4'/><eudc-range start='65535'/>");
    EXPECT_THAT(config.complaints, IsEmpty());
    EXPECT_EQ(config.eudcCount(), 5);
}

TEST_F(FontConfigEudc, WithoutARangeNoneIsGiven) {
    const ConfigRead config = readEudc("");
    EXPECT_FALSE(config.service->eudcRangeGiven);
    EXPECT_EQ(config.eudcCount(), 0);
}

TEST_F(FontConfigEudc, LimitsOutOfRangeAreReportedAndTheRestOfTheRangeCounts) {
    const ConfigRead config = readEudc("<eudc-range start='0' end='2'/>"
                                       "<eudc-range start='-2147483648' end='2147483647'/>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <eudc-range start=\"0\"> in FILE",
                            "1936 Invalid value: <eudc-range start=\"-2147483648\"> in FILE",
                            "1936 Invalid value: <eudc-range end=\"2147483647\"> in FILE"));
    EXPECT_EQ(config.eudcCount(), 0x10000);
}

TEST_F(FontConfigEudc, ARangeOutsideTheBitmapCountsAsGiven) {
    const ConfigRead config = readEudc("<eudc-range start='65536'/>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1936 Invalid value: <eudc-range start=\"65536\"> in FILE"));
    EXPECT_TRUE(config.service->eudcRangeGiven);
    EXPECT_EQ(config.eudcCount(), 0);
}

TEST_F(FontConfigEudc, ALimitThatIsNoIntegerEndsTheReadWithoutAFurtherMessage) {
    for (const auto& [attributes, complaint] : {std::pair("start='x' end='y'", "start=\"x\""),
                                                {"start='0xE000'", "start=\"0xE000\""},
                                                {"start='1.5'", "start=\"1.5\""},
                                                {"start='99999999999'", "start=\"99999999999\""},
                                                {"start='5' end=''", "end=\"\""},
                                                {"start='5' end='1 2'", "end=\"1 2\""}}) {
        const ConfigRead config =
            readRoot(std::string("<eudc-processing><eudc-range start='9'/><eudc-range z='' ")
                         .append(attributes)
                         .append("/><eudc-range start='10'/></eudc-processing>"
                                 "<font-folder path='/f'/>"));
        EXPECT_THAT(config.complaints, ElementsAre("1942 Not an integer value: <eudc-range " +
                                                   std::string(complaint) + "> in FILE"));
        EXPECT_EQ(config.thrown, "");
        EXPECT_THAT(config.folderPaths(), IsEmpty());
        EXPECT_EQ(config.eudcCount(), 1) << "what was read before stands";
    }
}

TEST_F(FontConfigEudc, UnknownAttributesOfItsElementsAreReported) {
    const ConfigRead config = readEudc("<eudc-map family-name='A' file-path='e' start='1'/>"
                                       "<eudc-range start='1' file-path='e'/>"
                                       "<eudc-system-default file-path='e' family-name='A'/>");
    EXPECT_THAT(config.complaints,
                ElementsAre("1935 Unknown attribute: <eudc-map start> in FILE",
                            "1935 Unknown attribute: <eudc-range file-path> in FILE",
                            "1935 Unknown attribute: <eudc-system-default family-name> in FILE"));
    EXPECT_EQ(config.service->eudcMap.size(), 1U);
}

TEST_F(FontConfigEudc, TheSystemDefaultMayBeGivenAsAUri) {
    EXPECT_EQ(
        readEudc("<eudc-system-default file-path='file:///e%20f.tte'/>").service->eudcSystemDefault,
        KWUri(u"/e f.tte"));
}

} // namespace
