#include "cff/CFFDict.h"

#include <array>

namespace KWFontService_NS {

namespace {

using enum CFFEntry;
using Word = FS_Word;

constexpr auto kTopDictRows = std::to_array<CFFDictRow>({
    {0, Word::version, Integer},    // an SID
    {1, Word::Notice, Integer},     // an SID
    {2, Word::FullName, Integer},   // an SID
    {3, Word::FamilyName, Integer}, // an SID
    {4, Word::Weight, Integer},     // an SID
    {5, Word::FontBBox, Array},
    {13, Word::UniqueID, Integer},
    {14, Word::XUID, Integer},                // of an array, the last
    {15, Word::charset, Integer},             // an offset
    {16, Word::Encoding, Integer},            // an offset
    {17, Word::CharStrings, Integer},         // an offset
    {18, Word::Private, Array},               // size, offset
    {cffEscape(0), Word::Copyright, Integer}, // an SID
    {cffEscape(1), Word::isFixedPitch, IntegerFlag},
    {cffEscape(2), Word::ItalicAngle, Integer}, // cut, also where it is a real
    {cffEscape(3), Word::UnderlinePosition, Integer},
    {cffEscape(4), Word::UnderlineThickness, Integer},
    {cffEscape(5), Word::PaintType, Integer},
    {cffEscape(6), Word::CharstringType, Integer},
    {cffEscape(7), Word::FontMatrix, Array},
    {cffEscape(8), Word::StrokeWidth, Integer},
    {cffEscape(20), Word::SyntheticBase, Integer},
    {cffEscape(21), Word::PostScript, Integer},   // an SID
    {cffEscape(22), Word::BaseFontName, Integer}, // an SID
    {cffEscape(23), Word::BaseFontBlend, Array},
    {cffEscape(30), Word::ROS, Array}, // SID, SID, number
    {cffEscape(31), Word::CIDFontVersion, Integer},
    {cffEscape(32), Word::CIDFontRevision, Integer},
    {cffEscape(33), Word::CIDFontType, Integer},
    {cffEscape(34), Word::CIDCount, Integer},
    {cffEscape(35), Word::UIDBase, Integer},
    {cffEscape(36), Word::FDArray, Integer},  // an offset
    {cffEscape(37), Word::FDSelect, Integer}, // an offset
    {cffEscape(38), Word::FontName, Integer}, // an SID
});

constexpr auto kPrivateDictRows = std::to_array<CFFDictRow>({
    {6, Word::BlueValues, Array},
    {7, Word::OtherBlues, Array},
    {8, Word::FamilyBlues, Array},
    {9, Word::FamilyOtherBlues, Array},
    {10, Word::StdHW, Number},
    {11, Word::StdVW, Number},
    {19, Word::Subrs, Number}, // an offset from the Private DICT
    {20, Word::defaultWidthX, Number},
    {21, Word::nominalWidthX, Number},
    {cffEscape(9), Word::BlueScale, Number},
    {cffEscape(10), Word::BlueShift, Number},
    {cffEscape(11), Word::BlueFuzz, Number},
    {cffEscape(12), Word::StemSnapH, Array},
    {cffEscape(13), Word::StemSnapV, Array},
    {cffEscape(14), Word::ForceBold, NumberFlag},
    {cffEscape(17), Word::LanguageGroup, Number},
    {cffEscape(18), Word::ExpansionFactor, Number},
    {cffEscape(19), Word::initialRandomSeed, Number},
});

constexpr auto kFontDictRows = std::to_array<CFFDictRow>({
    {18, Word::Private, Array},               // size, offset
    {cffEscape(38), Word::FontName, Integer}, // an SID
});

} // namespace

std::span<const CFFDictRow> topDictRows() {
    return kTopDictRows;
}
std::span<const CFFDictRow> privateDictRows() {
    return kPrivateDictRows;
}
std::span<const CFFDictRow> fontDictRows() {
    return kFontDictRows;
}

} // namespace KWFontService_NS
