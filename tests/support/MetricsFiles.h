#pragma once

#include "Bytes.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace KWTest {

/// A metrics file of a Type 1 font as text. `latin` goes with `Type1Font::latin`.
struct AfmFile {
    std::string fontName = "KWTest-Bold";
    std::string fullName = "KWTest Bold";
    std::string familyName = "KWTest";
    std::string weight = "Bold";
    std::string italicAngle = "0";
    std::string encodingScheme = "AdobeStandardEncoding";
    std::string fontBBox = "-50 -250 1050 750";
    std::vector<std::string> extraLines{};  // behind the font box
    std::vector<std::string> charMetrics{}; // whole lines
    std::vector<std::string> kernPairs{};   // whole lines
    std::string lineEnd = "\n";

    /// space, A, B and acute with codes, Aacute without one, and two pairs.
    static AfmFile latin();

    std::string build() const;
};

/// A metrics file of a Type 1 font in the form of Windows. The parts lie behind one another.
struct PfmFile {
    struct KernPair {
        int first = 0;
        int second = 0;
        int amount = 0;
    };

    // Offsets of what a test may bend, all of them little-endian.
    static constexpr std::size_t kHeaderSize = 117;
    static constexpr std::size_t kFirstCharAt = 95;
    static constexpr std::size_t kLastCharAt = 96;
    static constexpr std::size_t kDeviceAt = 101;
    static constexpr std::size_t kExtMetricsAt = 119;
    static constexpr std::size_t kExtentTableAt = 123;
    static constexpr std::size_t kPairKernTableAt = 131;

    std::string copyright = "Copyright KWTest";
    int ascent = 800;
    int internalLeading = 30;
    bool italic = false;
    int weight = 700;
    int charSet = 0;
    int pixWidth = 0;
    int pixHeight = 1000;
    int pitchAndFamily = 0x11;
    int avgWidth = 510;
    int maxWidth = 1020;
    int firstChar = 32;
    int lastChar = 255;
    int breakChar = 0;

    bool hasTextMetrics = true;
    int masterUnits = 1000;
    int xHeight = 450;
    std::vector<KernPair> kernPairs{};

    bool hasNames = true;
    std::string deviceName = "PostScript";
    std::string faceName = "KWTest";
    std::string postScriptName = "KWTest-Bold";

    std::vector<std::uint16_t> extents{}; // none: every character is `pixWidth` wide

    /// A code is 300 and itself wide; the pairs (A, B) and (B, A) are closer.
    static PfmFile latin();

    Bytes build() const;
};

/// Writes a little-endian number of 16 or 32 bits over what is there.
Bytes& patchLittle16(Bytes& bytes, std::size_t offset, int value);
Bytes& patchLittle32(Bytes& bytes, std::size_t offset, std::uint32_t value);

} // namespace KWTest
