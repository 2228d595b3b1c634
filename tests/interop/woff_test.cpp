// WOFF files of packaged fonts: those of fontTools, read by us, and ours, read by others.

#include "embed/WoffWriter.h"
#include "fonts/FS_WOFF.h"
#include "support/FontPackages.h"
#include "support/FreeTypeFace.h"
#include "support/ProcessRunner.h"
#include "support/SfntBuilder.h"
#include "support/TempDir.h"
#include "support/WoffFile.h"

#include <KWFontService17/KWFontService.h>

#include <KWCommon15/KWPtr.h>

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::Bytes;
using KWTest::ProcessResult;

ProcessResult runScript(const std::vector<std::string>& arguments) {
    std::ifstream file(std::string(KW_INTEROP_SCRIPTS) + "/woff.py");
    std::ostringstream text;
    text << file.rdbuf();
    return KWTest::runPython(text.str(), arguments);
}

/// The sfnt that comes out of a WOFF file; empty when it does not.
Bytes unpacked(const Bytes& woff) {
    const KWCommonNS::KWPtr<FS_WOFF> font(new FS_WOFF(KWUri()));
    std::istringstream stream(woff.str());
    KWError error;
    if (!font->scanFont(error, stream) || !font->loadFont(error, 0, nullptr))
        return {};
    KWMemStream& sfnt = *font->getFontStream();
    const auto* data = reinterpret_cast<const std::uint8_t*>(sfnt.data());
    return Bytes(std::vector<std::uint8_t>(data, data + sfnt.size()));
}

/// The tables of an sfnt as the script lists them.
std::string tableLines(const Bytes& sfnt) {
    std::map<std::string, std::string> lines;
    for (std::size_t i = 0; i < sfnt.u16At(4); ++i) {
        const std::size_t record = 12 + 16 * i;
        const std::uint32_t at = sfnt.u32At(record + 8);
        const std::uint32_t length = sfnt.u32At(record + 12);
        const std::string tag(sfnt.begin() + static_cast<std::ptrdiff_t>(record),
                              sfnt.begin() + static_cast<std::ptrdiff_t>(record + 4));
        const std::span<const std::uint8_t> table =
            std::span(sfnt.data(), sfnt.size()).subspan(at, length);
        lines[tag] = tag + ' ' + std::to_string(length) + ' ' +
                     std::to_string(KWTest::tableChecksum(table)) + '\n';
    }
    std::string text;
    for (const auto& [tag, line] : lines)
        text += line;
    return text;
}

class WoffOf : public testing::TestWithParam<const char*> {
protected:
    std::string source() { return KWTest::packagedFont(GetParam()).string(); }
    KWTest::TempDir folder;
};

/// An sfnt with no checkSumAdjustment, which sfnt2woff sets right where it is wrong.
Bytes withoutAdjustment(Bytes sfnt) {
    for (std::size_t record = 12; record < 12 + 16 * std::size_t{sfnt.u16At(4)}; record += 16) {
        if (sfnt.str().compare(record, 4, "head") == 0)
            sfnt.patchU32At(sfnt.u32At(record + 8) + 8, 0);
    }
    return sfnt;
}

TEST_P(WoffOf, Sfnt2woffIsReadAsItsSource) {
    ASSERT_TRUE(KWTest::hasProgram("sfnt2woff")) << "install woff-tools";
    const Bytes sfnt = KWTest::readFile(source());
    const std::string copy = folder.write("font", sfnt).string();
    const ProcessResult wrote = KWTest::runProgram("sfnt2woff", {copy});
    ASSERT_TRUE(wrote.ok()) << wrote.describe();
    const Bytes read = unpacked(KWTest::readFile(copy + ".woff"));
    ASSERT_GT(read.size(), 0U);
    EXPECT_EQ(tableLines(withoutAdjustment(read)), tableLines(withoutAdjustment(sfnt)));
}

TEST_P(WoffOf, AFontAnswersAsWoffWhatItAnswersAsItIs) {
    ASSERT_TRUE(KWTest::hasProgram("sfnt2woff")) << "install woff-tools";
    const std::string copy = folder.write("font", KWTest::readFile(source())).string();
    const std::string byFontTools = folder.path("tools.woff").string();
    ASSERT_TRUE(KWTest::runProgram("sfnt2woff", {copy}).ok());
    ASSERT_TRUE(runScript({"pack", source(), byFontTools}).ok());
    FS_FontInfo sfnt;
    ASSERT_TRUE(sfnt.createFont(KWTest::fileUri(source())));
    FS_ExtraFontManager document;
    for (const std::string& file : {copy + ".woff", byFontTools}) {
        const UnicodeString path = UnicodeString::fromUTF8(file);
        ASSERT_GE(document.appendExtraFont(path, path, 0, -1, FS_FILETYPE_UNKNOWN, nullptr), 0);
        FS_FontInfo font;
        ASSERT_TRUE(font.createFont(path, 0, false, document.getExtraFonts(), false));
        EXPECT_EQ(font.getFontFileType2(), sfnt.getFontFileType());
        EXPECT_EQ(font.getUnitsPerEm(), sfnt.getUnitsPerEm());
        EXPECT_EQ(font.getXHeight(), sfnt.getXHeight());
        EXPECT_EQ(font.getTypoAscender(), sfnt.getTypoAscender());
        int glyphs = 0;
        for (int ch = 0x20; ch < 0x10000; ch += ch < 0x600 ? 1 : 7) {
            const unsigned short gid = sfnt.getGlyphID(ch, false);
            ASSERT_EQ(font.getGlyphID(ch, false), gid) << std::hex << ch;
            ASSERT_EQ(font.getGlyphWidth(gid, 0, false), sfnt.getGlyphWidth(gid, 0, false)) << gid;
            glyphs += gid != FS_NO_GLYPH ? 1 : 0;
        }
        EXPECT_GT(glyphs, 50);
        for (const char16_t ch : u"Ag\u3042") {
            const unsigned short gid = sfnt.getGlyphID(ch, false);
            FS_GlyphDrawInfo ours;
            FS_GlyphDrawInfo theirs;
            if (gid == FS_NO_GLYPH || !sfnt.getGlyphDrawInfo(gid, theirs, false))
                continue;
            ASSERT_TRUE(font.getGlyphDrawInfo(gid, ours, false));
            ASSERT_EQ(ours.contours.size(), theirs.contours.size());
            for (std::size_t i = 0; i < ours.contours.size(); ++i)
                EXPECT_EQ(ours.contours[i].points, theirs.contours[i].points) << i;
        }
    }
}

TEST_P(WoffOf, FontToolsIsReadAsFontToolsReadsIt) {
    const std::string packed = folder.path("font.woff").string();
    const ProcessResult wrote = runScript({"pack", source(), packed});
    ASSERT_TRUE(wrote.ok()) << wrote.describe();
    const ProcessResult theirs = runScript({"tables", packed});
    ASSERT_TRUE(theirs.ok()) << theirs.describe();
    const Bytes sfnt = unpacked(KWTest::readFile(packed));
    ASSERT_GT(sfnt.size(), 0U);
    EXPECT_EQ(tableLines(sfnt), theirs.output);
}

/// A font as our WOFF.
Bytes packedByUs(const Bytes& sfnt) {
    KWMemStream input;
    input.append(sfnt.data(), sfnt.size());
    KWMemStream output;
    EXPECT_TRUE(makeWOFF(output, input));
    const auto* data = reinterpret_cast<const std::uint8_t*>(output.data());
    return Bytes(std::vector<std::uint8_t>(data, data + output.size()));
}

bool opensInFreeType(const Bytes& file) {
    try {
        return KWTest::FreeTypeFace(file)->num_glyphs > 0;
    } catch (const std::runtime_error&) {
        return false;
    }
}

TEST_P(WoffOf, OursHasTheTablesOfTheSourceForUsAndForFontTools) {
    const Bytes sfnt = KWTest::readFile(source());
    const Bytes woff = packedByUs(sfnt);
    EXPECT_LT(woff.size(), sfnt.size());
    EXPECT_EQ(tableLines(unpacked(woff)), tableLines(sfnt));
    const ProcessResult theirs = runScript({"tables", folder.write("ours.woff", woff).string()});
    ASSERT_TRUE(theirs.ok()) << theirs.describe();
    EXPECT_EQ(tableLines(sfnt), theirs.output);
}

// Tables that do not start at multiples of four are what these two refuse.
TEST_P(WoffOf, OursIsTakenByFreeTypeAndTheSanitizerOnlyOncePadded) {
    ASSERT_TRUE(KWTest::hasProgram("ots-sanitize")) << "install opentype-sanitizer";
    const auto sanitize = [this](const Bytes& file) {
        return KWTest::runProgram("ots-sanitize", {folder.write("x.woff", file).string()});
    };
    const Bytes sfnt = KWTest::readFile(source());
    const Bytes ours = packedByUs(sfnt);
    EXPECT_FALSE(opensInFreeType(ours));
    EXPECT_FALSE(sanitize(ours).ok());
    // The same tables, by the packer of the tests.
    const Bytes padded = KWTest::WoffFile::of(unpacked(ours)).build();
    EXPECT_TRUE(opensInFreeType(padded));
    const ProcessResult taken = sanitize(padded);
    EXPECT_EQ(taken.ok(), sanitize(sfnt).ok()) << "as its source: " << taken.describe();
}

TEST(WoffOfPackage, IsReadAsFontToolsReadsIt) {
    const std::filesystem::path packed = KWTest::packagedFont("DejaVuSans-WOFF");
    const ProcessResult theirs = runScript({"tables", packed.string()});
    ASSERT_TRUE(theirs.ok()) << theirs.describe();
    EXPECT_EQ(tableLines(unpacked(KWTest::readFile(packed))), theirs.output);
}

TEST(WoffOfPackage, EveryPackagedFontComesBackFromOursForUsAndForFontTools) {
    const KWTest::TempDir folder;
    std::vector<std::string> arguments{"tables"};
    std::string expected;
    int fonts = 0;
    for (const KWTest::PackagedFont& packaged : KWTest::packagedFonts()) {
        if (!packaged.path.ends_with(".ttf") && !packaged.path.ends_with(".otf"))
            continue;
        const Bytes sfnt = KWTest::readFile(KWTest::packagedFont(packaged.name));
        const Bytes woff = packedByUs(sfnt);
        const std::string lines = tableLines(sfnt);
        EXPECT_EQ(tableLines(unpacked(woff)), lines) << packaged.name;
        arguments.push_back(folder.write(std::string(packaged.name) + ".woff", woff).string());
        expected += lines;
        ++fonts;
    }
    EXPECT_GT(fonts, 20);
    const ProcessResult theirs = runScript(arguments);
    ASSERT_TRUE(theirs.ok()) << theirs.describe();
    EXPECT_EQ(theirs.output, expected);
}

INSTANTIATE_TEST_SUITE_P(PackagedFonts, WoffOf,
                         testing::Values("DejaVuSans", "DejaVuSansMono", "LiberationSerif",
                                         "IPAGothic", "ARPLSungtiL", "LMRoman10",
                                         "TeXGyreTermesMath", "LinLibertine", "Amiri"),
                         [](const auto& parameter) {
                             std::string name = parameter.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace KWFontService_NS
