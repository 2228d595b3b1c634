#pragma once

#include <KWFontService17/FS_Types.h>

#include <cstddef>

/// @file
/// The Windows records that the interface converts from: `tagLOGFONTW`, `tagENUMLOGFONTEXW`,
/// `tagNEWTEXTMETRICEXW` and `PANOSE`, with their members.
///
/// On Windows they are those of the system's header, which this one includes, macros and all; no
/// other public header does, since they only name the records. Elsewhere they are records of equal
/// layout with the same member names.

#if defined(_WIN32)

#if !defined(NOMINMAX)
#define NOMINMAX
#include <windows.h>
#undef NOMINMAX
#else
#include <windows.h>
#endif

namespace KWFontService_NS {

using ::NEWTEXTMETRICEXW;
using ::tagNEWTEXTMETRICEXW;

} // namespace KWFontService_NS

#else

#include <cstdint>

namespace KWFontService_NS {

/// The ten bytes of OpenType `OS/2` panose.
struct PANOSE {
    std::uint8_t bFamilyType;
    std::uint8_t bSerifStyle;
    std::uint8_t bWeight;
    std::uint8_t bProportion;
    std::uint8_t bContrast;
    std::uint8_t bStrokeVariation;
    std::uint8_t bArmStyle;
    std::uint8_t bLetterform;
    std::uint8_t bMidline;
    std::uint8_t bXHeight;
};

/// A logical font: what a program asks for.
struct tagLOGFONTW {
    std::int32_t lfHeight;
    std::int32_t lfWidth;
    std::int32_t lfEscapement;
    std::int32_t lfOrientation;
    std::int32_t lfWeight;
    std::uint8_t lfItalic;
    std::uint8_t lfUnderline;
    std::uint8_t lfStrikeOut;
    std::uint8_t lfCharSet;
    std::uint8_t lfOutPrecision;
    std::uint8_t lfClipPrecision;
    std::uint8_t lfQuality;
    std::uint8_t lfPitchAndFamily;
    char16_t lfFaceName[32];
};

/// A logical font as an enumeration reports it.
struct tagENUMLOGFONTEXW {
    tagLOGFONTW elfLogFont;
    char16_t elfFullName[64];
    char16_t elfStyle[32];
    char16_t elfScript[32];
};

/// Metrics of a face at a size, with those of its design.
struct tagNEWTEXTMETRICW {
    std::int32_t tmHeight;
    std::int32_t tmAscent;
    std::int32_t tmDescent;
    std::int32_t tmInternalLeading;
    std::int32_t tmExternalLeading;
    std::int32_t tmAveCharWidth;
    std::int32_t tmMaxCharWidth;
    std::int32_t tmWeight;
    std::int32_t tmOverhang;
    std::int32_t tmDigitizedAspectX;
    std::int32_t tmDigitizedAspectY;
    char16_t tmFirstChar;
    char16_t tmLastChar;
    char16_t tmDefaultChar;
    char16_t tmBreakChar;
    std::uint8_t tmItalic;
    std::uint8_t tmUnderlined;
    std::uint8_t tmStruckOut;
    std::uint8_t tmPitchAndFamily;
    std::uint8_t tmCharSet;
    std::uint32_t ntmFlags;
    std::uint32_t ntmSizeEM;
    std::uint32_t ntmCellHeight;
    std::uint32_t ntmAvgWidth;
};

/// Unicode ranges and code pages that a face serves (OpenType `OS/2`).
struct tagFONTSIGNATURE {
    std::uint32_t fsUsb[4];
    std::uint32_t fsCsb[2];
};

/// Metrics of a face with what it serves.
struct tagNEWTEXTMETRICEXW {
    tagNEWTEXTMETRICW ntmTm;
    tagFONTSIGNATURE ntmFontSig;
};
using NEWTEXTMETRICEXW = tagNEWTEXTMETRICEXW;

} // namespace KWFontService_NS

#endif

namespace KWFontService_NS {

static_assert(sizeof(PANOSE) == 10 && alignof(PANOSE) == 1);
static_assert(offsetof(PANOSE, bProportion) == 3 && offsetof(PANOSE, bXHeight) == 9);
static_assert(sizeof(tagLOGFONTW) == 92);
static_assert(offsetof(tagLOGFONTW, lfWeight) == 16 && offsetof(tagLOGFONTW, lfItalic) == 20);
static_assert(offsetof(tagLOGFONTW, lfFaceName) == 28);
static_assert(sizeof(tagENUMLOGFONTEXW) == 348);
static_assert(offsetof(tagENUMLOGFONTEXW, elfFullName) == 92);
static_assert(offsetof(tagENUMLOGFONTEXW, elfStyle) == 220);
static_assert(offsetof(tagENUMLOGFONTEXW, elfScript) == 284);
static_assert(sizeof(tagNEWTEXTMETRICEXW) == 100);
static_assert(offsetof(tagNEWTEXTMETRICEXW, ntmTm.tmFirstChar) == 44);
static_assert(offsetof(tagNEWTEXTMETRICEXW, ntmTm.ntmFlags) == 60);
static_assert(offsetof(tagNEWTEXTMETRICEXW, ntmFontSig) == 76);

} // namespace KWFontService_NS
