// Font programs of Type 1 fonts in segments, whole and cut.

#include "embed/Type1Subset.h"
#include "fonts/FS_Type1PFB.h"
#include "fonts/Type1Fixture.h"
#include "type1/Type1Cipher.h"
#include "type1/Type1Sections.h"

#include <KWCommon15/KWMemStream.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace KWFontService_NS {
namespace {

using KWTest::AfmFile;
using KWTest::Bytes;
using KWTest::pfbSegment;
using KWTest::Type1Font;

/// What a writer made.
struct Written {
    bool ok = false;
    Bytes file;
    int length1 = -1;
    int length2 = -1;
    int length3 = -1;

    std::string lengths() const {
        return std::to_string(length1) + " " + std::to_string(length2) + " " +
               std::to_string(length3);
    }
    /// The encrypted section in plain bytes, its lead bytes included.
    std::string section() const {
        std::istringstream stream(file.str());
        Type1Sections sections;
        EXPECT_TRUE(readPFBSections(stream, sections));
        type1Decrypt(sections.eexec, kEexecKey);
        return {sections.eexec.begin(), sections.eexec.end()};
    }
    /// The names of the glyphs, in the order of the file.
    std::string glyphs() const {
        std::string names;
        const std::string text = section();
        for (std::size_t at = text.find("/CharStrings"); (at = text.find("\n/", at)) != text.npos;
             ++at)
            names += text.substr(at + 1, text.find(' ', at) - at - 1);
        return names;
    }
};

std::string lengthsOf(const Type1Font& font) {
    return std::to_string(font.clearText().size()) + " " + std::to_string(font.eexec().size()) +
           " " + std::to_string(font.trailer().size());
}

class Type1Embed : public KWTest::Type1Test {
protected:
    Written embed(FS_BaseFont& font, unsigned char fontNumber, std::string_view codes) const {
        return written([&](KWMemStream& out, Written& result) {
            return font.getType1EmbedFont(fontNumber, codes.data(), static_cast<int>(codes.size()),
                                          out, result.length1, result.length2, result.length3, 0);
        });
    }
    Written whole(FS_BaseFont& font) const {
        return written([&](KWMemStream& out, Written& result) {
            return font.getType1FontStream(out, result.length1, result.length2, result.length3, 0);
        });
    }
    void writePFA(const Type1Font& font = Type1Font::latin()) {
        files().write("font.pfa", font.pfa());
    }
    /// A font of the metrics file with other bytes for its printer font, since it was read.
    Written embedChanged(const Bytes& file, std::string_view codes) {
        writePrinterFont();
        const auto font = scannedAFM(); // a loaded one keeps its file open
        files().write("font.pfb", file);
        return embed(*font, 0, codes);
    }

private:
    template <class Writer>
    static Written written(const Writer& writer) {
        KWMemStream out;
        Written result;
        result.ok = writer(out, result);
        const auto* const data = reinterpret_cast<const std::uint8_t*>(out.data());
        if (data != nullptr)
            result.file = Bytes(std::vector<std::uint8_t>(data, data + out.size()));
        return result;
    }
};

// --- the whole font -----------------------------------------------------------------------------

TEST_F(Type1Embed, TheWholeFontOfAPFBIsTheFile) {
    const Type1Font source = Type1Font::latin();
    writePrinterFont(source);
    const Written result = whole(*loadedAFM());
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.file, source.pfb());
    EXPECT_EQ(result.lengths(), lengthsOf(source));
}

TEST_F(Type1Embed, TheWholeFontOfAPFAHasTheSameSegments) {
    for (const char* lineEnd : {"\n", "\r", "\r\n"}) {
        Type1Font source = Type1Font::latin();
        source.lineEnd = lineEnd;
        writePFA(source);
        const Written result = whole(*loadedAFM());
        EXPECT_TRUE(result.ok);
        EXPECT_EQ(result.file, source.pfb());
        EXPECT_EQ(result.lengths(), lengthsOf(source));
    }
}

TEST_F(Type1Embed, NoListOfCodesTakesAllGlyphs) {
    writePrinterFont();
    const auto font = loadedAFM();
    KWMemStream out;
    int length = 0;
    EXPECT_TRUE(font->getType1EmbedFont(0, nullptr, 7, out, length, length, length, 0));
    EXPECT_EQ(std::string(out.data(), out.size()), Type1Font::latin().pfb().str());
}

TEST_F(Type1Embed, SegmentsInARowBecomeOne) {
    const Type1Font source = Type1Font::latin();
    const Bytes eexec = source.eexec();
    Bytes file = pfbSegment(1, Bytes::ofText(source.clearText()));
    file.bytes(pfbSegment(2, eexec.slice(0, 100)).vector());
    file.bytes(pfbSegment(2, eexec.slice(100, eexec.size() - 100)).vector());
    file.bytes(pfbSegment(1, Bytes::ofText(source.trailer())).vector()).u8(0x80).u8(3);
    files().write("font.pfb", file);
    EXPECT_EQ(whole(*scannedAFM()).file, source.pfb());
}

TEST_F(Type1Embed, BytesAreAppended) {
    writePrinterFont();
    const auto font = loadedAFM();
    KWMemStream out;
    out += "before";
    int length = 0;
    EXPECT_TRUE(font->getType1FontStream(out, length, length, length, 0));
    EXPECT_EQ(std::string(out.data(), out.size()), "before" + Type1Font::latin().pfb().str());
}

// --- a subset -----------------------------------------------------------------------------------

TEST_F(Type1Embed, ASubsetHasTheGlyphsOfItsCodes) {
    const Type1Font source = Type1Font::latin();
    writePrinterFont(source);
    const Written result = embed(*loadedAFM(), 0, "B");
    ASSERT_TRUE(result.ok);
    Type1Font expected = source;
    expected.glyphs = {source.glyphs[0], source.glyphs[2]};
    EXPECT_EQ(result.file, expected.pfb());
    EXPECT_EQ(result.lengths(), lengthsOf(expected));
}

TEST_F(Type1Embed, ASubsetOfAPFAIsThatOfThePFB) {
    writePrinterFont();
    const Written pfb = embed(*loadedAFM(), 0, "A");
    std::filesystem::remove(files().path("font.pfb"));
    writePFA();
    const auto font = loadedAFM();
    ASSERT_EQ(font->getPrinterFont()->getFontFileType(0), FS_FILETYPE_PFA);
    EXPECT_EQ(font->getPrinterFont()->metrics().records().size(), 0U) << "it is not loaded";
    const Written pfa = embed(*font, 0, "A");
    EXPECT_TRUE(pfa.ok);
    EXPECT_EQ(pfa.file, pfb.file);
    EXPECT_EQ(pfa.lengths(), pfb.lengths());
    EXPECT_EQ(pfa.glyphs(), "/.notdef/A");
}

TEST_F(Type1Embed, TheCodesOfATextSelectItsGlyphs) {
    writePrinterFont();
    const auto font = loadedAFM();
    std::string codes;
    for (const int ch : {0x41, 0xC1}) {
        const unsigned short code = font->getType1CharCode(ch, 0);
        EXPECT_EQ(code >> 8, 0);
        codes += static_cast<char>(code & 0xFF);
    }
    EXPECT_EQ(codes, "A\x80");
    EXPECT_EQ(embed(*font, 0, codes).glyphs(), "/.notdef/A/acute/Aacute");
    EXPECT_EQ(embed(*font, 0, "B").glyphs(), "/.notdef/B");
}

TEST_F(Type1Embed, ANumberedFontHasTheGlyphsOfItsOwnCodes) {
    writePrinterFont();
    const auto font = loadedAFM();
    font->nextCode = 253;
    EXPECT_EQ(font->getType1CharCode(0xC1, 0), 0x0101);
    EXPECT_EQ(embed(*font, 1, "\x01").glyphs(), "/.notdef/A/acute/Aacute");
    EXPECT_EQ(embed(*font, 0, "\x01").glyphs(), "/.notdef");
    EXPECT_EQ(embed(*font, 1, "\xC2").glyphs(), "/.notdef/acute") << "as the metrics have it";
}

TEST_F(Type1Embed, AFontNumberThatWasNotHandedOutHasTheMetricsAlone) {
    writePrinterFont();
    AfmFile metrics = AfmFile::latin();
    metrics.charMetrics = {"C 66 ; WX 600 ; N A ; B 0 0 1 1 ;"};
    EXPECT_EQ(embed(*loadedAFM(metrics), 7, "AB").glyphs(), "/.notdef/A");
}

TEST_F(Type1Embed, OfAnEncodingOfTheFontsOwnTheNamesComeFirst) {
    writePrinterFont(Type1Font::symbols());
    AfmFile metrics = AfmFile::latin();
    metrics.charMetrics = {"C 65 ; WX 600 ; N bar ; B 0 0 1 1 ;"};
    const auto font = loadedAFM(metrics);
    EXPECT_EQ(embed(*font, 0, "A").glyphs(), "/.notdef/foo");
    EXPECT_EQ(embed(*font, 1, "A").glyphs(), "/.notdef/bar") << "program 0 alone has it";
}

TEST_F(Type1Embed, AFontOfAPFMTakesTheNamesOfItsProgram) {
    writePrinterFont();
    EXPECT_EQ(embed(*loadedPFM(), 0, "AB").glyphs(), "/.notdef/A/B");
    std::filesystem::remove(files().path("font.pfb"));
    writePFA();
    EXPECT_EQ(embed(*loadedPFM(), 0, "AB").glyphs(), "/.notdef/A/B")
        << "those of StandardEncoding, since the program is not loaded";
}

TEST_F(Type1Embed, FewerCodesThanNoneAreNone) {
    writePrinterFont();
    const auto font = loadedAFM();
    KWMemStream out;
    int length = 0;
    EXPECT_TRUE(font->getType1EmbedFont(0, "AB", -5, out, length, length, length, 0));
    Type1Font expected = Type1Font::latin();
    expected.glyphs.resize(1);
    EXPECT_EQ(std::string(out.data(), out.size()), expected.pfb().str());
}

// --- lead bytes ---------------------------------------------------------------------------------

/// A PFA file whose encrypted section begins with these bytes, before they are written as digits.
std::string pfaWithLead(const Type1Font& font, std::string_view cipherLead) {
    std::vector<std::uint8_t> lead(cipherLead.begin(), cipherLead.end());
    type1Decrypt(lead, kEexecKey);
    std::vector<std::uint8_t> section = lead;
    const Bytes text = font.privateText();
    section.insert(section.end(), text.begin(), text.end());
    type1Encrypt(section, kEexecKey);
    EXPECT_EQ(std::string(section.begin(), section.begin() + 4), cipherLead);
    return font.clearText() + KWTest::pfaDigits(Bytes(section)) + font.trailer();
}

TEST_F(Type1Embed, ASectionFromTextThatWouldBeTakenForTextGetsOtherLeadBytes) {
    const Type1Font source = Type1Font::latin();
    for (const char* lead : {"09aF", " xyz", "\txyz", "\rxyz", "\nxyz"}) {
        files().write("font.pfa", pfaWithLead(source, lead));
        for (const Written& result : {whole(*loadedAFM()), embed(*loadedAFM(), 0, "AB \xC2\x80")}) {
            ASSERT_TRUE(result.ok);
            const std::size_t at = source.clearText().size() + 12;
            EXPECT_EQ(result.file.u8At(at), 0xD9) << "no digit, no white space";
            EXPECT_EQ(result.section().substr(0, 4), std::string(4, '\0'));
        }
        EXPECT_EQ(whole(*loadedAFM()).section().substr(4), source.privateText().str());
    }
}

TEST_F(Type1Embed, OtherLeadBytesStay) {
    for (const char* lead : {"09az", "G000", "0 00"}) {
        files().write("font.pfa", pfaWithLead(Type1Font::latin(), lead));
        const Written result = embed(*loadedAFM(), 0, "A");
        const std::size_t at = Type1Font::latin().clearText().size() + 12;
        EXPECT_EQ(result.file.slice(at, 4).str(), lead);
    }
}

// --- failures -----------------------------------------------------------------------------------

TEST_F(Type1Embed, WithoutAPrinterFontThereIsNoProgram) {
    const auto font = loadedAFM();
    ASSERT_EQ(font->getPrinterFont(), nullptr);
    for (const Written& result : {embed(*font, 0, "A"), whole(*font)}) {
        EXPECT_FALSE(result.ok);
        EXPECT_TRUE(result.file.empty());
        EXPECT_EQ(result.lengths(), "-1 -1 -1");
    }
}

TEST_F(Type1Embed, ThePrinterFontByItselfHasNone) {
    writePrinterFont();
    const auto font = loadedAFM();
    EXPECT_FALSE(embed(*font->getPrinterFont(), 0, "A").ok) << "codes are its owner's";
    EXPECT_FALSE(whole(*font->getPrinterFont()).ok);
}

TEST_F(Type1Embed, APrinterFontThatIsGoneIsNone) {
    writePrinterFont();
    const auto font = scannedAFM();
    std::filesystem::remove(files().path("font.pfb"));
    EXPECT_FALSE(embed(*font, 0, "A").ok);
    EXPECT_EQ(whole(*font).lengths(), "-1 -1 -1");
}

TEST_F(Type1Embed, AFileThatIsCutShortTellsWhatWasReached) {
    const Type1Font source = Type1Font::latin();
    const Bytes file = source.pfb();
    const auto cutTo = [&](std::size_t size) { return embedChanged(file.slice(0, size), "A"); };
    const Written whole = cutTo(file.size());
    ASSERT_TRUE(whole.ok);

    const std::size_t binaryAt = 6 + source.clearText().size();
    const std::size_t trailerAt = binaryAt + 6 + source.eexec().size();
    EXPECT_FALSE(cutTo(0).ok);
    EXPECT_FALSE(cutTo(4).ok);
    EXPECT_EQ(cutTo(4).lengths(), "-1 -1 -1");
    EXPECT_EQ(cutTo(binaryAt).lengths(), std::to_string(whole.length1) + " -1 -1");
    EXPECT_EQ(cutTo(binaryAt - 1).lengths(), std::to_string(whole.length1) + " -1 -1")
        << "what the file says, before the bytes come";
    for (const std::size_t size : {binaryAt + 40, trailerAt - 1})
        EXPECT_EQ(cutTo(size).lengths(), std::to_string(whole.length1) + " -1 -1") << size;
    const std::string twoLengths =
        std::to_string(whole.length1) + " " + std::to_string(whole.length2) + " ";
    for (const std::size_t size : {trailerAt, trailerAt + 3, trailerAt + 20, file.size() - 3}) {
        const Written result = cutTo(size);
        EXPECT_FALSE(result.ok) << size;
        EXPECT_EQ(result.lengths(),
                  twoLengths + (size < trailerAt + 6 ? "-1" : std::to_string(whole.length3)));
    }
    EXPECT_EQ(cutTo(file.size() - 2).file, whole.file) << "the end mark says nothing new";
}

TEST_F(Type1Embed, SegmentsOutOfOrderAreRefused) {
    const Type1Font source = Type1Font::latin();
    Bytes file = pfbSegment(2, source.eexec());
    file.bytes(pfbSegment(1, Bytes::ofText(source.clearText())).vector());
    EXPECT_FALSE(embedChanged(file, "A").ok);
}

TEST_F(Type1Embed, AProgramWithoutCharStringsHasNoSubset) {
    const Type1Font source = Type1Font::latin();
    Bytes file = pfbSegment(1, Bytes::ofText(source.clearText()));
    file.bytes(
        pfbSegment(2, KWTest::type1Encrypted(Bytes::ofText("/Private"), kEexecKey)).vector());
    file.bytes(pfbSegment(1, Bytes::ofText(source.trailer())).vector());
    const Written result = embedChanged(file, "A");
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(result.lengths(), std::to_string(source.clearText().size()) + " -1 -1");
}

TEST_F(Type1Embed, AFontThatIsOnlyScannedKnowsStandardEncoding) {
    writePrinterFont();
    EXPECT_EQ(embed(*scannedAFM(), 0, "A").glyphs(), "/.notdef/A");
}

} // namespace
} // namespace KWFontService_NS
