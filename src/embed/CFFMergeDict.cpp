#include "embed/CFFMergeDict.h"

#include "cff/CFFNumbers.h"
#include "embed/CFFDictScanner.h"
#include "embed/CFFTopDict.h"
#include "type1/StandardStrings.h"

#include <array>

namespace KWFontService_NS {

namespace {

constexpr CFFOperator kCharstringTypeOp = cffEscape(6);
constexpr CFFOperator kSyntheticBaseOp = cffEscape(20);
constexpr CFFOperator kROSOp = cffEscape(30);

void addBytes(std::string& out, ByteView dict, std::size_t begin, std::size_t end) {
    out.append(reinterpret_cast<const char*>(dict.data()) + begin, end - begin);
}

std::uint32_t offsetOf(const CFFDictScanner::Operand& operand) {
    return static_cast<std::uint32_t>(operand.value.getIntegerValue());
}

/// Copies an entry, a string id at its end renewed. False where there is no string for it.
bool addEntry(std::string& out, ByteView dict, const CFFDictScanner& scan, const MergedSIDs& sids) {
    if (scan.op() != kVersionOp && !namesString(scan.op())) {
        addBytes(out, dict, scan.begin(), scan.end());
        return true;
    }
    const auto sid = sids.find(scan.last().value.getIntegerValue());
    if (!sid)
        return false;
    addBytes(out, dict, scan.begin(), scan.last().begin);
    addDictDataInteger(out, *sid);
    addDictDataOperator(out, scan.op());
    return true;
}

/// False for another number of operands and where a string is missing.
bool addROS(std::string& out, ByteView dict, const CFFDictScanner& scan, const MergedSIDs& sids) {
    constexpr std::size_t kOperands = 3;
    std::size_t at = scan.begin();
    KWValue registry;
    if (scan.operandCount() != kOperands || !readCFFOperand(dict, at, registry))
        return false;
    const auto registrySID = sids.find(registry.getIntegerValue());
    const auto orderingSID = sids.find(scan.lastButOne().value.getIntegerValue());
    if (!registrySID || !orderingSID)
        return false;
    addDictDataInteger(out, *registrySID);
    addDictDataInteger(out, *orderingSID);
    addDictDataInteger(out, scan.last().value.getIntegerValue());
    addDictDataOperator(out, kROSOp);
    return true;
}

} // namespace

std::optional<std::uint16_t> MergedSIDs::find(int sid) const {
    if (sid < 0)
        return std::nullopt;
    if (sid < kStandardStringCount)
        return static_cast<std::uint16_t>(sid);
    const auto place = static_cast<std::size_t>(sid - kStandardStringCount);
    if (place >= custom_.size())
        return std::nullopt;
    return custom_[place];
}

void addDictDataInteger(std::string& out, int value) {
    std::array<std::uint8_t, 5> bytes;
    const std::size_t size = encodeDictInteger(value, bytes);
    out.append(reinterpret_cast<const char*>(bytes.data()), size);
}

void addDictDataOffset(std::string& out, std::uint32_t value, std::uint8_t width) {
    constexpr char kShort = 28;
    constexpr char kLong = 29;
    out += width == 2 ? kShort : kLong;
    for (unsigned shift = 8U * width; shift > 0;) {
        shift -= 8;
        out += static_cast<char>(value >> shift & 0xFF);
    }
}

void addDictDataOperator(std::string& out, CFFOperator op) {
    if (op > 0xFF)
        out += static_cast<char>(op >> 8);
    out += static_cast<char>(op & 0xFF);
}

FS_MergeEmbeddedFonts::TopDICT getTopDictData(ByteView dict, const MergedSIDs& sids, bool isCID) {
    constexpr int kExpertEncoding = 1; // higher ones are offsets
    constexpr int kType2 = 2;
    FS_MergeEmbeddedFonts::TopDICT out;
    bool hasROS = false;
    const auto carry = [&out](bool can) { out.cannotCarry = out.cannotCarry || !can; };
    for (CFFDictScanner scan(dict); scan.next();) {
        const int value = scan.last().value.getIntegerValue();
        // One without operands leaves what an earlier one said, as for readers of the table.
        const auto note = [&scan](std::uint32_t& place, const auto& operand) {
            if (scan.operandCount() != 0)
                place = offsetOf(operand);
        };
        switch (scan.op()) {
        case kCharsetOp:
            note(out.charset, scan.last());
            break;
        case kCharStringsOp:
            note(out.charStrings, scan.last());
            break;
        case kPrivateOp:
            note(out.privateSize, scan.lastButOne());
            note(out.privateOffset, scan.last());
            break;
        case kFDArrayOp:
            note(out.fdArray, scan.last());
            break;
        case kFDSelectOp:
            note(out.fdSelect, scan.last());
            break;
        case kCIDCountOp:
            out.cidCount = value;
            break;
        case kROSOp:
            carry(addROS(out.data, dict, scan, sids));
            hasROS = true;
            break;
        case kEncodingOp:
            carry(value >= 0 && value <= kExpertEncoding && addEntry(out.data, dict, scan, sids));
            break;
        case kCharstringTypeOp:
            carry(value == kType2 && addEntry(out.data, dict, scan, sids));
            break;
        case kSyntheticBaseOp:
            carry(false);
            break;
        default:
            carry(addEntry(out.data, dict, scan, sids));
        }
    }
    carry(hasROS == isCID);
    return out;
}

std::optional<std::string> getFontDictData(ByteView dict, const MergedSIDs& sids) {
    std::string data;
    for (CFFDictScanner scan(dict); scan.next();)
        if (scan.op() != kPrivateOp && !addEntry(data, dict, scan, sids))
            return std::nullopt;
    return data;
}

std::string getPrivateDictData(ByteView dict) {
    std::string data;
    for (CFFDictScanner scan(dict); scan.next();)
        if (scan.op() != kSubrsOp)
            addBytes(data, dict, scan.begin(), scan.end());
    return data;
}

} // namespace KWFontService_NS
