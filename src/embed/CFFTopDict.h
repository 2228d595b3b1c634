#pragma once

#include "cff/CFFDict.h"

#include <KWCommon15/KWMemStream.h>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

// Operators of Top, Font and Private DICTs that writers treat apart.
inline constexpr CFFOperator kVersionOp = 0;
inline constexpr CFFOperator kCharsetOp = 15;
inline constexpr CFFOperator kEncodingOp = 16;
inline constexpr CFFOperator kCharStringsOp = 17;
inline constexpr CFFOperator kPrivateOp = 18;
inline constexpr CFFOperator kSubrsOp = 19;
inline constexpr CFFOperator kCIDCountOp = cffEscape(34);
inline constexpr CFFOperator kFDArrayOp = cffEscape(36);
inline constexpr CFFOperator kFDSelectOp = cffEscape(37);
inline constexpr CFFOperator kFontNameOp = cffEscape(38);

void writeCFFOperator(KWMemStream& output, CFFOperator op);

/// Appends an operand that is filled in later: 28 and two bytes, or 29 and four.
/// @param width  of the number, 2 or 4
/// @return       where the number goes in `output`
std::size_t writeBlankOperand(KWMemStream& output, std::uint8_t width);

/// True for the operators whose last operand is a string id, but for `version` and ROS.
bool namesString(CFFOperator op);

/// True for a string id that is the font's own.
bool isCustomSID(int sid);

/// The custom strings that a Top DICT names, in the order of the DICT.
std::vector<std::uint16_t> stringsOfTopDict(ByteView dict);

/// Where numbers go that are not known when the Top DICT is written.
struct TopDictBlanks {
    std::optional<std::size_t> charset;
    std::optional<std::size_t> fdSelect;
    std::optional<std::size_t> charStrings;
    std::optional<std::size_t> fdArray;
    std::optional<std::size_t> privateSize;
    std::optional<std::size_t> privateOffset;

    void move(std::size_t by);
};

/// Appends a Top DICT without `version` and Encoding and with blanks for offsets to what moves.
/// @param isCID    FDArray and FDSelect get blanks, too
/// @param offSize  2 or 4, of the blanks for offsets; sizes have two bytes
/// @param newSID   the new number of a custom string; string ids of a CID-keyed font stay
TopDictBlanks copyTopDict(ByteView dict, bool isCID, std::uint8_t offSize,
                          const std::function<std::uint16_t(std::uint16_t)>& newSID,
                          KWMemStream& output);

} // namespace KWFontService_NS
