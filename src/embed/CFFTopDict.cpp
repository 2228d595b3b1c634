#include "embed/CFFTopDict.h"

#include "cff/CFFNumbers.h"
#include "embed/CFFDictScanner.h"
#include "type1/StandardStrings.h"

namespace KWFontService_NS {

bool namesString(CFFOperator op) {
    switch (op) {
    case 1:             // Notice
    case 2:             // FullName
    case 3:             // FamilyName
    case 4:             // Weight
    case cffEscape(0):  // Copyright
    case cffEscape(21): // PostScript
    case cffEscape(22): // BaseFontName
    case kFontNameOp:
        return true;
    default:
        return false;
    }
}

namespace {

/// The place in `blanks` for the offset of an operator; null for one that stays as it is.
std::optional<std::size_t>* blankFor(CFFOperator op, bool isCID, TopDictBlanks& blanks) {
    switch (op) {
    case kCharsetOp:
        return &blanks.charset;
    case kCharStringsOp:
        return &blanks.charStrings;
    case kPrivateOp:
        return &blanks.privateOffset;
    case kFDArrayOp:
        return isCID ? &blanks.fdArray : nullptr;
    case kFDSelectOp:
        return isCID ? &blanks.fdSelect : nullptr;
    default:
        return nullptr;
    }
}

} // namespace

void writeCFFOperator(KWMemStream& output, CFFOperator op) {
    if (op > 0xFF)
        output += static_cast<char>(op >> 8);
    output += static_cast<char>(op & 0xFF);
}

std::size_t writeBlankOperand(KWMemStream& output, std::uint8_t width) {
    constexpr std::uint8_t kShort = 28;
    constexpr std::uint8_t kLong = 29;
    const std::array<std::uint8_t, 5> bytes{width == 2 ? kShort : kLong};
    const std::size_t at = output.size() + 1;
    output.append(bytes.data(), std::size_t{1} + width);
    return at;
}

bool isCustomSID(int sid) {
    return sid >= kStandardStringCount && sid <= 0xFFFF;
}

std::vector<std::uint16_t> stringsOfTopDict(ByteView dict) {
    std::vector<std::uint16_t> sids;
    for (CFFDictScanner scan(dict); scan.next();) {
        const int sid = scan.last().value.getIntegerValue();
        if (namesString(scan.op()) && isCustomSID(sid))
            sids.push_back(static_cast<std::uint16_t>(sid));
    }
    return sids;
}

void TopDictBlanks::move(std::size_t by) {
    for (std::optional<std::size_t>* const blank :
         {&charset, &fdSelect, &charStrings, &fdArray, &privateSize, &privateOffset})
        if (*blank)
            **blank += by;
}

TopDictBlanks copyTopDict(ByteView dict, bool isCID, std::uint8_t offSize,
                          const std::function<std::uint16_t(std::uint16_t)>& newSID,
                          KWMemStream& output) {
    TopDictBlanks blanks;
    const std::size_t start = output.size();
    for (CFFDictScanner scan(dict); scan.next();) {
        const auto copy = [&](std::size_t begin, std::size_t end) {
            output.append(dict.data() + begin, end - begin);
        };
        const CFFOperator op = scan.op();
        const int sid = scan.last().value.getIntegerValue();
        if (op == kVersionOp || op == kEncodingOp) {
            copy(scan.begin(), scan.last().begin);
        } else if (!isCID && namesString(op) && isCustomSID(sid)) {
            copy(scan.begin(), scan.last().begin);
            writeDictValue(output, int{newSID(static_cast<std::uint16_t>(sid))});
            writeCFFOperator(output, op);
        } else if (std::optional<std::size_t>* const blank = blankFor(op, isCID, blanks)) {
            const bool isPrivate = op == kPrivateOp;
            copy(scan.begin(), isPrivate ? scan.lastButOne().begin : scan.last().begin);
            if (isPrivate)
                blanks.privateSize = writeBlankOperand(output, 2) - start;
            *blank = writeBlankOperand(output, offSize) - start;
            writeCFFOperator(output, op);
        } else {
            copy(scan.begin(), scan.end());
        }
    }
    return blanks;
}

} // namespace KWFontService_NS
