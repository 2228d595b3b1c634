#include "support/Type1Font.h"

#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace KWTest {
namespace {

void expectLatin(const Bytes& file) {
    const FreeTypeFace face(file);
    EXPECT_EQ(face->num_glyphs, 6);
    EXPECT_STREQ(face->family_name, "KWTest");
    EXPECT_EQ(face.advance(face.glyphOf('B')), 650);
    EXPECT_EQ(face.load(face.glyphOf('A'))->outline.n_points, 4);
    EXPECT_EQ(face.load(face.glyphOf(0x00C1))->outline.n_points, 8);
    EXPECT_EQ(face.load(face.glyphOf(' '))->outline.n_points, 0);
}

TEST(Type1Font, FreeTypeReadsBothForms) {
    expectLatin(Type1Font::latin().pfb());
    expectLatin(Type1Font::latin().pfa());
}

TEST(Type1Font, FreeTypeReadsOtherLineEndsAndLeadBytes) {
    Type1Font font = Type1Font::latin();
    for (const char* lineEnd : {"\r", "\r\n"}) {
        font.lineEnd = lineEnd;
        expectLatin(font.pfb());
        expectLatin(font.pfa());
    }
    for (const int lenIV : {0, 1}) {
        font.lenIV = lenIV;
        expectLatin(font.pfb());
    }
}

TEST(Type1Font, FreeTypeReadsAnEncodingOfTheFontsOwn) {
    const FreeTypeFace face(Type1Font::symbols().pfb());
    ASSERT_EQ(FT_Select_Charmap(face.get(), FT_ENCODING_ADOBE_CUSTOM), 0);
    EXPECT_EQ(face.glyphOf(0x41), 1U);
    EXPECT_EQ(face.glyphOf(0x80), 2U);
}

TEST(Type1Font, TheDisassemblerReadsIt) {
    if (!kForeignPrograms)
        GTEST_SKIP() << "a posix program";
    const TempDir folder;
    for (const Bytes& file : {Type1Font::latin().pfb(), Type1Font::latin().pfa()}) {
        const auto result = runProgram("t1disasm", {folder.write("font", file).string()});
        ASSERT_TRUE(result.ok()) << result.describe();
        EXPECT_EQ(result.errors, "");
        EXPECT_NE(result.output.find("100 250 0 65 194 seac"), std::string::npos);
    }
}

} // namespace
} // namespace KWTest
