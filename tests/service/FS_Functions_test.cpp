#include <KWFontService17/FS_Functions.h>

#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace KWFontService_NS;
using KWTest::TempDir;

TEST(ToTag, PacksFourCharactersBigEndian) {
    EXPECT_EQ(toTAG(u"GSUB"), 0x47535542U);
    EXPECT_EQ(toTAG(u"~~~~"), 0x7E7E7E7EU);
}

TEST(ToTag, PadsAShortTextWithBlanks) {
    EXPECT_EQ(toTAG(u"ab"), 0x61622020U);
    EXPECT_EQ(toTAG(UnicodeString()), 0x20202020U);
}

TEST(ToTag, ALongTextIs0) {
    EXPECT_EQ(toTAG(u"abcde"), 0U);
}

TEST(ToTag, AnyCharacterOutsidePrintableAsciiGives0) {
    EXPECT_EQ(toTAG(u"ab\u00E9d"), 0U);
    EXPECT_EQ(toTAG(u"ab\u001Fd"), 0U);
    EXPECT_EQ(toTAG(u"abc\u007F"), 0U);
    EXPECT_EQ(toTAG(u"\u0147SUB"), 0U) << "the low byte alone is a G";
    EXPECT_EQ(toTAG(u"\U00010000a"), 0U);
}

TEST(FontServiceOpen, OpensWithTheDefaultsForANullOrEmptyPath) {
    EXPECT_EQ(FontServiceOpen(nullptr, nullptr), FS_ERROR_NONE);
    EXPECT_EQ(FontServiceOpen("", nullptr), FS_ERROR_NONE);
    EXPECT_EQ(FontServiceOpen("", "", nullptr), FS_ERROR_NONE);
}

TEST(GetFontError, AServiceWithoutProblemsHasNone) {
    EXPECT_EQ(FS_GetFontError(nullptr, 0), 0);
    KWCommonNS::KWError error;
    EXPECT_EQ(FS_GetFontError(&error, 0), -1);
    EXPECT_FALSE(error.isError());
}

TEST(GetFontConfigPath, TakesARelativePathAgainstTheFolderOfTheLibrary) {
    const UnicodeString path = FS_GetFontConfigPath("sub/other.xml", true);
    EXPECT_TRUE(path.endsWith(UnicodeString(u"/sub/other.xml"))) << path.length();
    EXPECT_TRUE(path.startsWith(u"/", 1));
}

TEST(GetFontConfigPath, NullAndEmptyMeanFontConfigXmlBesideTheLibrary) {
    const UnicodeString path = FS_GetFontConfigPath(nullptr, true);
    EXPECT_TRUE(path.endsWith(UnicodeString(u"/font-config.xml")));
    EXPECT_EQ(FS_GetFontConfigPath("", true), path);
    EXPECT_EQ(FS_GetFontConfigPath("font-config.xml", true), path);
}

TEST(GetFontConfigPath, KeepsAnAbsolutePath) {
    EXPECT_EQ(FS_GetFontConfigPath("/no/such/config.xml", true),
              UnicodeString(u"/no/such/config.xml"));
}

TEST(GetFontConfigPath, AMissingFileIsEmptyUnlessItMayBeMissing) {
    const TempDir folder;
    const std::string present = folder.write("a b.xml", "<font-config/>").string();
    EXPECT_EQ(FS_GetFontConfigPath(present.c_str(), false), folder.text("a b.xml"));
    const std::string missing = folder.path("c.xml").string();
    EXPECT_TRUE(FS_GetFontConfigPath(missing.c_str(), false).isEmpty());
    EXPECT_EQ(FS_GetFontConfigPath(missing.c_str(), true), folder.text("c.xml"));
}

} // namespace
