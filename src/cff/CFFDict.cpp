#include "cff/CFFDict.h"

#include "common/KWLimits.h"

#include <KWCommon15/KWTokenizer.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace KWFontService_NS {

namespace {

constexpr std::uint8_t kShortInteger = 28;
constexpr std::uint8_t kLongInteger = 29;
constexpr std::uint8_t kReal = 30;
constexpr std::uint8_t kFirstOperand = 28;

/// The text of a real: its digits and signs, written by nibbles.
KWValue numberOf(std::u16string_view text) {
    KWCommonNS::KWTokenizer tokens(
        UnicodeString(text.data(), static_cast<std::int32_t>(text.size())));
    KWValue number = tokens.nextTokenValueExp();
    return number.isNumber() ? number : KWValue();
}

bool readReal(ByteView dict, std::size_t& cursor, KWValue& out) {
    constexpr unsigned kEnd = 15;
    static constexpr std::u16string_view kNibbles[kEnd] = {
        u"0", u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u".", u"E", u"E-", u"", u"-"};
    std::u16string text;
    while (cursor < dict.size()) {
        const unsigned byte = dict.data()[cursor++];
        for (const unsigned nibble : {byte >> 4, byte & 0x0F}) {
            if (nibble == kEnd) {
                out = numberOf(text);
                return true;
            }
            if (text.size() < KWCommonNS::kMaxDictRealLength)
                text.append(kNibbles[nibble]);
        }
    }
    return false;
}

/// The operand of a one-byte or two-byte form; a byte that starts neither is no value.
KWValue smallInteger(unsigned first, unsigned second) {
    const auto number = [](unsigned value) { return static_cast<int>(value); };
    if (first >= 32 && first <= 246)
        return number(first) - 139;
    if (first >= 247 && first <= 250)
        return number((first - 247) * 256 + second) + 108;
    if (first >= 251 && first <= 254)
        return -number((first - 251) * 256 + second) - 108;
    return {};
}

} // namespace

bool readCFFOperand(ByteView dict, std::size_t& cursor, KWValue& out) {
    out = KWValue();
    const auto first = dict.u8(cursor);
    if (!first)
        return false;
    ++cursor;
    if (*first == kReal)
        return readReal(dict, cursor, out);
    const std::size_t more = *first == kShortInteger          ? 2
                             : *first == kLongInteger         ? 4
                             : *first >= 247 && *first <= 254 ? 1
                                                              : 0;
    if (!dict.contains(cursor, more)) {
        cursor = dict.size();
        return false;
    }
    const std::uint8_t* const rest = dict.data() + cursor;
    cursor += more;
    if (*first == kShortInteger)
        out = int{ByteView::loadU16(rest)};
    else if (*first == kLongInteger)
        out = static_cast<int>(ByteView::loadU32(rest));
    else
        out = smallInteger(*first, more > 0 ? *rest : 0);
    return true;
}

bool CFFDictWalker::next() {
    operands_.clear();
    last_ = KWValue();
    while (at_ < dict_.size()) {
        const std::uint8_t byte = dict_.data()[at_];
        if (byte >= kFirstOperand) {
            if (!readCFFOperand(dict_, at_, last_))
                return false;
            if (operands_.size() < KWCommonNS::kMaxDictOperands)
                operands_.push_back(last_);
            continue;
        }
        ++at_;
        op_ = byte;
        if (byte == kCFFEscape) {
            if (at_ == dict_.size())
                return false;
            op_ = cffEscape(dict_.data()[at_++]);
        }
        return true;
    }
    return false;
}

void storeCFFEntry(const CFFDictWalker& walk, std::span<const CFFDictRow> rows, KWValue& dict) {
    const auto row = std::ranges::find(rows, walk.op(), &CFFDictRow::op);
    if (row == rows.end() || walk.operands().empty())
        return;
    const KWValue& last = walk.last();
    const auto flag = [](bool set) {
        return KWValue(cffKey(set ? FS_Word::true_ : FS_Word::false_));
    };
    KWValue entry;
    switch (row->entry) {
    case CFFEntry::Integer:
        entry = last.getIntegerValue();
        break;
    case CFFEntry::IntegerFlag:
        entry = flag(last.getIntegerValue() != 0);
        break;
    case CFFEntry::Number:
        entry = last;
        break;
    case CFFEntry::NumberFlag:
        entry = flag(!last.isInteger() || last.getIntegerValue() != 0);
        break;
    case CFFEntry::Array: {
        std::size_t place = 0;
        for (const KWValue& operand : walk.operands())
            entry.setNamedItem(cffKey(++place), operand);
        break;
    }
    }
    dict.setNamedItem(cffKey(row->key), std::move(entry));
}

KWValue readCFFDict(ByteView dict, std::span<const CFFDictRow> rows) {
    KWValue out;
    for (CFFDictWalker walk(dict); walk.next();)
        storeCFFEntry(walk, rows, out);
    return out;
}

} // namespace KWFontService_NS
