#include "type1/Type1CharString.h"

#include "common/StreamBytes.h"
#include "type1/Type1Cipher.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;
using KWCommonNS::KWName;
using KWCommonNS::KWValue;

namespace {

constexpr int kEscape = 12;
constexpr int kFirstNumber = 32;

struct OperatorRow {
    int op;
    const char* name;
};
// The blank of " hstem3" is part of its name here: what compares names relies on it.
constexpr OperatorRow kOperators[] = {
    {1, "hstem"},
    {3, "vstem"},
    {4, "vmoveto"},
    {5, "rlineto"},
    {6, "hlineto"},
    {7, "vlineto"},
    {8, "rrcurveto"},
    {9, "closepath"},
    {10, "callsubr"},
    {11, "return"},
    {13, "hsbw"},
    {14, "endchar"},
    {21, "rmoveto"},
    {22, "hmoveto"},
    {30, "vhcurveto"},
    {31, "hvcurveto"},
    {type1Escape(0), "dotsection"},
    {type1Escape(1), "vstem3"},
    {type1Escape(2), " hstem3"},
    {type1Escape(6), "seac"},
    {type1Escape(7), "sbw"},
    {type1Escape(12), "div"},
    {type1Escape(16), "callothersubr"},
    {type1Escape(17), "pop"},
    {type1Escape(33), "setcurrentpoint"},
};

/// The names of all operators, known and unknown, made once.
class OperatorNames {
public:
    OperatorNames() {
        for (int byte = 0; byte < 256; ++byte) {
            const std::string number = std::to_string(byte);
            if (byte < kFirstNumber)
                name(byte) = nameOf("?" + number);
            name(kEscape << 8 | byte) = nameOf("?12-" + number);
        }
        for (const OperatorRow& row : kOperators)
            name(row.op) = nameOf(row.name);
    }
    KWName of(int op) const {
        const auto byte = static_cast<std::size_t>(op & 0xFF);
        return op < kFirstNumber ? single_[byte] : escaped_[byte];
    }

private:
    static KWName nameOf(const std::string& text) { return KWName(UnicodeString(text.c_str())); }
    KWName& name(int op) {
        const auto byte = static_cast<std::size_t>(op & 0xFF);
        return op < kFirstNumber ? single_[byte] : escaped_[byte];
    }

    std::array<KWName, kFirstNumber> single_;
    std::array<KWName, 256> escaped_;
};

const OperatorNames& operatorNames() {
    static const OperatorNames names;
    return names;
}

class Bytes {
public:
    explicit Bytes(std::span<const std::uint8_t> bytes) : left_(bytes) {}

    std::optional<int> next() {
        if (left_.empty())
            return std::nullopt;
        const int byte = left_.front();
        left_ = left_.subspan(1);
        return byte;
    }

    /// The number that `first` begins; nothing when it is cut off.
    std::optional<int> number(int first) {
        if (first <= 246)
            return first - 139;
        const auto second = next();
        if (!second)
            return std::nullopt;
        if (first <= 250)
            return (first - 247) * 256 + *second + 108;
        if (first <= 254)
            return -(first - 251) * 256 - *second - 108;
        auto value = static_cast<std::uint32_t>(*second);
        for (int i = 0; i < 3; ++i) {
            const auto byte = next();
            if (!byte)
                return std::nullopt;
            value = value << 8 | static_cast<std::uint32_t>(*byte);
        }
        return static_cast<std::int32_t>(value);
    }

private:
    std::span<const std::uint8_t> left_;
};

/// Gives each number and each operator to a function, until that of operators answers false.
template <class OnNumber, class OnOperator>
void walk(std::span<const std::uint8_t> charString, OnNumber onNumber, OnOperator onOperator) {
    Bytes bytes(charString);
    while (const auto first = bytes.next()) {
        if (*first >= kFirstNumber) {
            const auto number = bytes.number(*first);
            if (!number)
                return;
            onNumber(*number);
            continue;
        }
        int op = *first;
        if (op == kEscape) {
            const auto second = bytes.next();
            if (!second)
                return;
            op = type1Escape(static_cast<std::uint8_t>(*second));
        }
        if (!onOperator(op))
            return;
    }
}

} // namespace

std::optional<Type1Seac> findType1Seac(std::span<const std::uint8_t> charString) {
    std::optional<Type1Seac> seac;
    Type1Seac last;
    int numbers = 0;
    walk(
        charString,
        [&](int number) {
            last = {.base = last.accent, .accent = number};
            numbers = std::min(numbers + 1, 2);
        },
        [&](int op) {
            if (op == kType1Seac && numbers == 2)
                seac = last;
            numbers = 0;
            return op != kType1Seac;
        });
    return seac;
}

int scanCharString(std::span<const std::uint8_t> charString, std::vector<KWValue>& tokens) {
    const OperatorNames& names = operatorNames();
    int last = -1;
    walk(
        charString, [&](int number) { tokens.emplace_back(number); },
        [&](int op) {
            tokens.emplace_back(names.of(op));
            last = op;
            return true;
        });
    return last;
}

int scanCharString(KWMemStream& stream, std::vector<KWValue>& tokens, bool plain) {
    if (!plain) {
        charStringDecrypt(stream);
        if (stream.size() < kType1LeadBytes)
            return -1;
        stream.seekg(kType1LeadBytes);
    }
    std::vector<std::uint8_t> bytes;
    const std::streamoff left = stream.length() - stream.tellg();
    if (left > 0)
        KWCommonNS::appendFromStream(stream, static_cast<std::size_t>(left), bytes);
    return scanCharString(bytes, tokens);
}

} // namespace KWFontService_NS
