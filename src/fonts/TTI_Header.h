#pragma once

#include "fonts/SfntReader.h"

#include <KWFontService17/FS_Types.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace KWFontService_NS {

/// The small fixed tables that describe a face (OpenType `head`, `hhea`, `OS/2`, `post`, `vhea`,
/// `maxp`), in host byte order. Each reader answers false after reporting what failed.
class TTI_Header {
public:
    /// Places of the PANOSE bytes that are looked at here.
    enum PanosePlace : std::size_t { FamilyType = 0, SerifStyle = 1, Proportion = 3 };

    bool readHead(SfntReader& reader);
    bool readHhea(SfntReader& reader);
    bool readOS2(SfntReader& reader, const TTI_TableRecord& table);
    /// What stands in for a missing `OS/2`: style from `head`, extents from `hhea`.
    void synthesizeOS2();
    /// Fonts without win metrics take those of `hhea`.
    void completeWinMetrics();
    /// Reads `isFixedPitch` only when the font has no `OS/2`, whose PANOSE decides otherwise.
    bool readPost(SfntReader& reader, const TTI_TableRecord& table);
    bool readVhea(SfntReader& reader, const TTI_TableRecord& table);
    bool readMaxp(SfntReader& reader, const TTI_TableRecord& table);

    // head
    std::int16_t unitsPerEm = 0;
    std::int16_t xMin = 0;
    std::int16_t yMin = 0;
    std::int16_t xMax = 0;
    std::int16_t yMax = 0;
    std::uint16_t macStyle = 0;
    std::int16_t indexToLocFormat = 0;

    // hhea
    std::int16_t ascender = 0;
    std::int16_t descender = 0;
    std::int16_t lineGap = 0;
    std::uint16_t numberOfHMetrics = 0;

    // OS/2
    bool hasOS2 = false;
    std::uint16_t os2Version = 0;
    std::int16_t xAvgCharWidth = 0;
    int usWeightClass = 0;
    std::uint16_t usWidthClass = 0;
    std::uint16_t fsType = 0;
    std::uint8_t familyClass = 0;
    std::uint8_t familySubclass = 0;
    std::array<std::uint8_t, 10> panose{};
    std::array<std::uint32_t, 4> ulUnicodeRange{};
    std::uint16_t fsSelection = 0;
    std::uint16_t usFirstCharIndex = 0;
    std::uint16_t usLastCharIndex = 0;
    std::int16_t sTypoAscender = 0;
    std::int16_t sTypoDescender = 0;
    std::int16_t sTypoLineGap = 0;
    std::uint16_t usWinAscent = 0;
    std::uint16_t usWinDescent = 0;
    std::uint32_t ulCodePageRange1 = 1;
    std::uint32_t ulCodePageRange2 = 0;
    std::int16_t sxHeight = 0;
    std::int16_t sCapHeight = 0;

    // post
    float italicAngle = 0.0F;
    std::int16_t underlinePosition = 0;
    std::int16_t underlineThickness = 0;
    bool isFixedPitch = false;

    // vhea
    std::int16_t vertAscender = 0;
    std::int16_t vertDescender = 0;
    std::int16_t vertLineGap = 0;
    std::uint16_t numOfLongVerMetrics = 0;

    // maxp, only of version 1.0
    struct MaxProfile {
        std::uint16_t numGlyphs = 0;
        std::uint16_t maxPoints = 0;
        std::uint16_t maxContours = 0;
        std::uint16_t maxCompositePoints = 0;
        std::uint16_t maxCompositeContours = 0;
        std::uint16_t maxZones = 0;
        std::uint16_t maxTwilightPoints = 0;
        std::uint16_t maxStorage = 0;
        std::uint16_t maxFunctionDefs = 0;
        std::uint16_t maxInstructionDefs = 0;
        std::uint16_t maxStackElements = 0;
        std::uint16_t maxSizeOfInstructions = 0;
        std::uint16_t maxComponentElements = 0;
        std::uint16_t maxComponentDepth = 0;
    } maxp;
};

} // namespace KWFontService_NS
