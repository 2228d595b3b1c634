#include "type1/FS_Keyword.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using namespace KWFontService_NS;

constexpr const char* kWords[] = {
    "BaseFontBlend",
    "BaseFontName",
    "BlueFuzz",
    "BlueScale",
    "BlueShift",
    "BlueValues",
    "CIDCount",
    "CIDFontRevision",
    "CIDFontType",
    "CIDFontVersion",
    "CharStrings",
    "CharstringType",
    "Copyright",
    "Encoding",
    "ExpansionFactor",
    "FDArray",
    "FDSelect",
    "FamilyBlues",
    "FamilyName",
    "FamilyOtherBlues",
    "FontBBox",
    "FontMatrix",
    "FontName",
    "ForceBold",
    "FullName",
    "ItalicAngle",
    "LanguageGroup",
    "Notice",
    "OtherBlues",
    "PaintType",
    "PostScript",
    "Private",
    "ROS",
    "StdHW",
    "StdVW",
    "StemSnapH",
    "StemSnapV",
    "StrokeWidth",
    "Subrs",
    "SyntheticBase",
    "UIDBase",
    "UnderlinePosition",
    "UnderlineThickness",
    "UniqueID",
    "Weight",
    "XUID",
    "abs",
    "add",
    "afm",
    "alias",
    "and",
    "baseline-adjust",
    "blend",
    "bold",
    "callgsubr",
    "callothersubr",
    "callsubr",
    "charset",
    "closepath",
    "cntrmask",
    "condensed",
    "default",
    "defaultWidthX",
    "demi",
    "disable",
    "div",
    "dotsection",
    "drop",
    "dup",
    "enable",
    "end",
    "endchar",
    "entry",
    "eq",
    "eudc-map",
    "eudc-processing",
    "eudc-range",
    "eudc-system-default",
    "exch",
    "expanded",
    "extra",
    "false",
    "family-name",
    "file",
    "file-path",
    "flex",
    "flex1",
    "font-alias",
    "font-config",
    "font-entry",
    "font-exclude",
    "font-folder",
    "font-size-adjust",
    "get",
    "glyph-list",
    "hflex",
    "hflex1",
    "hhcurveto",
    "hintmask",
    "hlineto",
    "hmoveto",
    "hsbw",
    "hstem",
    "hstem3",
    "hstemhm",
    "hvcurveto",
    "ifelse",
    "index",
    "initialRandomSeed",
    "isFixedPitch",
    "italic",
    "load",
    "mapping",
    "mode",
    "mul",
    "name-processing-mode",
    "neg",
    "no",
    "nominalWidthX",
    "not",
    "or",
    "otf-metrics-mode",
    "path",
    "pfm",
    "pop",
    "put",
    "random",
    "rcurveline",
    "recursive",
    "reference",
    "return",
    "rlinecurve",
    "rlineto",
    "rmoveto",
    "roll",
    "rrcurveto",
    "sbw",
    "seac",
    "semi",
    "setcurrentpoint",
    "skip-glyphname-mapping",
    "sqrt",
    "start",
    "store",
    "stretch",
    "sub",
    "true",
    "typographic",
    "ultra",
    "unicode-range",
    "use-preferred-family",
    "use-zero-glyph-id",
    "version",
    "vhcurveto",
    "vlineto",
    "vmoveto",
    "vstem",
    "vstem3",
    "vstemhm",
    "vvcurveto",
    "weight",
    "windows",
    "windows-registry",
    "yes",
    "acc-folder",
};

UnicodeString textOf(const char* word) {
    return UnicodeString(word, -1, US_INV);
}

TEST(Keyword, Holds165WordsAndTheEmptyOneInTheirOrder) {
    ASSERT_EQ(std::size(kWords), 165U);
    EXPECT_EQ(FS_Keyword::kCount, 165);
    EXPECT_TRUE(FS_Keyword::wordOf(0).isEmpty());
    for (int i = 1; i <= 165; ++i) {
        const UnicodeString word = textOf(kWords[i - 1]);
        EXPECT_EQ(FS_Keyword::wordOf(i), word) << i;
        EXPECT_EQ(FS_Keyword::indexOf(word), i) << kWords[i - 1];
    }
}

TEST(Keyword, StandsInByteOrderButForItsLastWord) {
    for (int i = 1; i < 164; ++i)
        EXPECT_LT(std::string(kWords[i - 1]), std::string(kWords[i]));
    EXPECT_EQ(FS_Keyword::wordOf(165), UnicodeString(u"acc-folder"));
}

TEST(Keyword, NumbersWithoutAWordHaveTheEmptyOne) {
    for (const int index : {166, 167, 65535, INT_MAX, -1, INT_MIN})
        EXPECT_TRUE(FS_Keyword::wordOf(index).isEmpty()) << index;
}

TEST(Keyword, AnUnknownWordHasNumberZero) {
    UnicodeString bogus;
    bogus.setToBogus();
    for (const UnicodeString& word :
         {UnicodeString(), UnicodeString(u"font"), UnicodeString(u"font-config "),
          UnicodeString(u"alia"), UnicodeString(u"aliases"), UnicodeString(u"acc-folders"),
          UnicodeString(char16_t{0xDC80}), UnicodeString(u"alias\0", 6), bogus})
        EXPECT_EQ(FS_Keyword::indexOf(word), 0);
}

TEST(Keyword, TellsCaseApart) {
    EXPECT_EQ(FS_Keyword::indexOf(u"enable"), static_cast<int>(FS_Word::enable));
    EXPECT_EQ(FS_Keyword::indexOf(u"Enable"), 0);
    EXPECT_EQ(FS_Keyword::indexOf(u"FONT-CONFIG"), 0);
    EXPECT_NE(FS_Keyword::indexOf(u"Weight"), FS_Keyword::indexOf(u"weight"));
    EXPECT_EQ(FS_Keyword::indexOf(u"notice"), 0);
}

TEST(Keyword, NamesInTheProgramStandForTheirWords) {
    EXPECT_EQ(FS_Keyword::text(FS_Word::none), UnicodeString());
    EXPECT_EQ(FS_Keyword::text(FS_Word::BaseFontBlend), UnicodeString(u"BaseFontBlend"));
    EXPECT_EQ(FS_Keyword::text(FS_Word::default_), UnicodeString(u"default"));
    EXPECT_EQ(FS_Keyword::text(FS_Word::skipGlyphnameMapping),
              UnicodeString(u"skip-glyphname-mapping"));
    EXPECT_EQ(FS_Keyword::find(u"fontConfig"), FS_Word::none);
    EXPECT_EQ(FS_Keyword::find(u"font-config"), FS_Word::fontConfig);
}

} // namespace
