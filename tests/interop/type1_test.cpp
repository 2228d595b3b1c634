// Type 1 programs and glyph names, as we, fontTools and t1utils read them.

#include "support/Bytes.h"
#include "support/FontPackages.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"
#include "type1/GlyphNames.h"
#include "type1/Type1CharString.h"
#include "type1/Type1Cipher.h"
#include "type1/Type1Sections.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::ProcessResult;

constexpr const char* kPrograms[] = {"NimbusSans-PFB", "C059-PFB", "LMRoman10-PFB", "LMMono10-PFB"};

/// Lines of a word and the words behind it.
std::map<std::string, std::string> linesOf(const std::string& text) {
    std::map<std::string, std::string> lines;
    std::istringstream stream(text);
    std::string key;
    std::string rest;
    while (stream >> key && std::getline(stream, rest))
        lines.emplace(key, rest.substr(1));
    return lines;
}

TEST(GlyphNamesInterop, EveryNameIsInTheAdobeGlyphList) {
    const ProcessResult result = KWTest::runPython("from fontTools.agl import LEGACY_AGL2UV\n"
                                                   "for name, uv in LEGACY_AGL2UV.items():\n"
                                                   "  print(name, *uv)\n");
    ASSERT_TRUE(result.ok()) << result.describe();
    const auto published = linesOf(result.output);
    std::size_t count = 0;
    for (const auto& [name, character] : published) {
        const int own = characterOf(name);
        if (own < 0)
            continue;
        ++count;
        EXPECT_EQ(std::to_string(own), character) << name;
    }
    EXPECT_EQ(count, kFirstGlyphNames + kSecondGlyphNames);
}

TEST(GlyphNamesInterop, EveryNameOfTheListForNewFontsIsKnown) {
    const ProcessResult result = KWTest::runPython("from fontTools.agl import _aglfnText\n"
                                                   "for line in _aglfnText.splitlines():\n"
                                                   "  if line and line[0] != '#':\n"
                                                   "    value, name = line.split(';')[:2]\n"
                                                   "    print(name, int(value, 16))\n");
    ASSERT_TRUE(result.ok()) << result.describe();
    const auto published = linesOf(result.output);
    EXPECT_GT(published.size(), 500U);
    for (const auto& [name, character] : published)
        EXPECT_EQ(std::to_string(characterOf(name)), character) << name;
}

TEST(GlyphNamesInterop, StandardEncodingIsThePublishedOne) {
    const ProcessResult result =
        KWTest::runPython("from fontTools.encodings.StandardEncoding import StandardEncoding\n"
                          "for code, name in enumerate(StandardEncoding):\n"
                          "  print(code, name)\n");
    ASSERT_TRUE(result.ok()) << result.describe();
    const auto published = linesOf(result.output);
    ASSERT_EQ(published.size(), 256U);
    for (const auto& [code, name] : published) {
        const std::string_view own = standardName(static_cast<std::uint8_t>(std::stoi(code)));
        EXPECT_EQ(own.empty() ? ".notdef" : own, name) << code;
    }
}

class Type1Programs : public testing::TestWithParam<const char*> {};

TEST_P(Type1Programs, BothFormsHaveTheSameSections) {
    const auto pfbPath = KWTest::packagedFont(GetParam());
    const KWTest::TempDir folder;
    const auto pfaPath = folder.path("font.pfa");
    const ProcessResult result =
        KWTest::runProgram("t1ascii", {pfbPath.string(), pfaPath.string()});
    ASSERT_TRUE(result.ok()) << result.describe();

    std::ifstream pfbStream(pfbPath, std::ios::binary);
    std::ifstream pfaStream(pfaPath, std::ios::binary);
    Type1Sections pfb;
    Type1Sections pfa;
    ASSERT_TRUE(readPFBSections(pfbStream, pfb));
    ASSERT_TRUE(readPFASections(pfaStream, pfa));
    EXPECT_TRUE(pfa.eexec == pfb.eexec);

    type1Decrypt(pfb.eexec, kEexecKey);
    const std::string text(pfb.eexec.begin() + kType1LeadBytes, pfb.eexec.end());
    EXPECT_NE(text.find("/CharStrings"), std::string::npos);
    EXPECT_NE(text.find("mark currentfile closefile"), std::string::npos);
}

std::string tokensOf(const std::string& hexadecimal) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at + 1 < hexadecimal.size(); at += 2)
        bytes.push_back(
            static_cast<std::uint8_t>(std::stoi(hexadecimal.substr(at, 2), nullptr, 16)));
    std::vector<KWCommonNS::KWValue> tokens;
    scanCharString(bytes, tokens);
    std::string text;
    for (const KWCommonNS::KWValue& token : tokens) {
        std::string word;
        token.toString().toUTF8String(word);
        text += (text.empty() ? "" : " ") + word.substr(word.find_first_not_of(' '));
    }
    return text;
}

TEST_P(Type1Programs, CharstringsHaveTheTokensThatFontToolsSees) {
    const ProcessResult result =
        KWTest::runPython("import sys\n"
                          "from fontTools.t1Lib import T1Font\n"
                          "font = T1Font(sys.argv[1])\n"
                          "font.parse()\n"
                          "for name, cs in font['CharStrings'].items():\n"
                          "  bytecode = cs.bytecode.hex()\n"
                          "  cs.decompile()\n"
                          "  print(name, bytecode, *(str(t) for t in cs.program))\n",
                          {KWTest::packagedFont(GetParam()).string()});
    ASSERT_TRUE(result.ok()) << result.describe();
    const auto glyphs = linesOf(result.output);
    EXPECT_GT(glyphs.size(), 100U);
    for (const auto& [name, line] : glyphs) {
        const std::size_t blank = line.find(' ');
        EXPECT_EQ(tokensOf(line.substr(0, blank)), line.substr(blank + 1)) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Fonts, Type1Programs, testing::ValuesIn(kPrograms),
                         [](const auto& instance) {
                             std::string name = instance.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
