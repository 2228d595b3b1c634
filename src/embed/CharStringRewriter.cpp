#include "embed/CharStringRewriter.h"

#include "cff/CFFDict.h"
#include "cff/CFFNumbers.h"
#include "cff/CharStringArithmetic.h"
#include "cff/CharStringFlatten.h"
#include "common/KWLimits.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KWFontService_NS {

namespace {

constexpr std::uint8_t kEscape = 12;
constexpr std::uint8_t kFixed = 255;

/// Copies bytes as long as each call has its number right before it and nothing is calculated,
/// which is so in nearly every charstring.
class Splicer {
public:
    Splicer(std::string& out, const CharStringSubrs& subrs, CharStringBudget& budget)
        : out_(out), subrs_(subrs), budget_(budget) {}

    /// False for a charstring that has to be interpreted; what was appended is of no use then.
    bool splice(ByteView charString) { return splice(charString, 0) != Outcome::isInvolved; }

private:
    enum class Outcome { goesOn, hasEnded, isInvolved };

    Outcome splice(ByteView charString, int depth) {
        if (!budget_.charge(charString.size()))
            return Outcome::hasEnded;
        std::size_t copied = 0;
        const auto copyTo = [&](std::size_t end) {
            out_.append(reinterpret_cast<const char*>(charString.data()) + copied, end - copied);
        };
        CharStringScanner scanner(charString, counts_);
        while (scanner.nextOperator([](std::size_t, std::size_t) {})) {
            switch (scanner.op()) {
            case FS_Word::callsubr:
            case FS_Word::callgsubr: {
                const auto operand = scanner.callOperand();
                if (!operand || charString.data()[scanner.numberStart()] == kFixed)
                    return Outcome::isInvolved;
                copyTo(scanner.numberStart());
                copied = scanner.end();
                const auto subr = subrs_.find(scanner.isGlobalCall(), *operand);
                if (!subr || depth == KWCommonNS::kMaxSubrDepth)
                    break;
                const Outcome outcome = splice(*subr, depth + 1);
                if (outcome != Outcome::goesOn)
                    return outcome;
                break;
            }
            case FS_Word::return_:
                copyTo(scanner.start());
                return Outcome::goesOn;
            case FS_Word::endchar:
                copyTo(scanner.end());
                return Outcome::hasEnded;
            default:
                if (charString.data()[scanner.start()] == kEscape &&
                    CharStringArithmetic::has(scanner.op()))
                    return Outcome::isInvolved;
            }
        }
        copyTo(scanner.end());
        return Outcome::goesOn;
    }

    std::string& out_;
    const CharStringSubrs& subrs_;
    CharStringBudget& budget_;
    CharStringCounts counts_;
};

void appendOperator(std::string& out, FS_Word op) {
    const auto byte = std::ranges::find(kCharStringOperators, op);
    // Word `none` is found as well: byte 0, which readers pass by, stands for what they do not
    // know.
    if (byte != kCharStringOperators.end()) {
        out += static_cast<char>(byte - kCharStringOperators.begin());
        return;
    }
    std::uint8_t second = 0;
    while (charStringEscape(second) != op)
        ++second;
    out += static_cast<char>(kEscape);
    out += static_cast<char>(second);
}

void appendNumber(std::string& out, const KWValue& value) {
    constexpr int kMost = 0x7FFF;
    constexpr double kFixedOne = 65536;
    std::array<std::uint8_t, 5> bytes{kFixed};
    std::size_t size = bytes.size();
    const double number = value.getRealValue();
    if (number == std::trunc(number) && std::fabs(number) <= kMost) {
        size = encodeCFFInteger(static_cast<int>(number), bytes);
    } else {
        // Nothing larger can be said.
        const double most = std::numeric_limits<std::int32_t>::max();
        const double scaled = std::isnan(number) ? 0 : std::round(number * kFixedOne);
        ByteView::storeU32(&bytes[1], static_cast<std::uint32_t>(static_cast<std::int32_t>(
                                          std::clamp(scaled, -most, most))));
    }
    out.append(reinterpret_cast<const char*>(bytes.data()), size);
}

void appendTokens(std::string& out, const CharStringTokens& tokens) {
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isName()) {
            appendNumber(out, tokens[i]);
            continue;
        }
        const auto op = static_cast<FS_Word>(KWCommonNS::KWNameEnum(tokens[i].getNameValue()));
        appendOperator(out, op);
        if (op != FS_Word::hintmask && op != FS_Word::cntrmask)
            continue;
        for (int left = tokens[++i].getIntegerValue(); left > 0; --left)
            out += static_cast<char>(tokens[++i].getIntegerValue());
    }
}

} // namespace

void makeNewCharString(std::string& out, ByteView data, const CharStringSubrs& subrs,
                       CharStringBudget& budget) {
    const std::size_t start = out.size();
    if (Splicer(out, subrs, budget).splice(data))
        return;
    out.resize(start);
    CharStringTokens tokens;
    FlatCounts counts;
    // Tokens take more memory than bytes, so that no glyph may take all that the table justifies.
    const std::size_t most = std::min(budget.left(), KWCommonNS::kFreeCharStringBytes);
    CharStringBudget ofGlyph(most);
    flattenCharString(data, subrs, tokens, counts, ofGlyph);
    budget.charge(ofGlyph.isSpent() ? budget.left() + 1 : most - ofGlyph.left());
    appendTokens(out, tokens);
}

} // namespace KWFontService_NS
