#include "raster/Type1LoadBudget.h"

#include "common/KWLimits.h"
#include "type1/GlyphNames.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TYPE1_TABLES_H

#include <limits>
#include <string>

namespace KWFontService_NS {

namespace {

// Operators of Type 1 charstrings, those of two bytes with their escape.
constexpr int kEscape = 12;
constexpr int kCallSubr = 10;
constexpr int kReturn = 11;
constexpr int kEndChar = 14;
constexpr int kSeac = 0x0C06;
constexpr int kDiv = 0x0C0C;
constexpr int kCallOtherSubr = 0x0C10;
constexpr int kPop = 0x0C11;

/// FreeType takes these for operators of Type 2, with bytes behind them that are no operators.
constexpr bool isOfType2(int op) {
    return op == 19 || op == 20 || op == 28;
}

/// The procedure that changes hints; it gives back the number of a subr that does.
constexpr int kReplaceHints = 3;

/// What a call costs beside the operators of the subr: it has to be found.
constexpr std::size_t kCallSteps = 8;

std::optional<std::vector<std::uint8_t>> valueOf(FT_Face face, PS_Dict_Keys key, FT_UInt index) {
    const FT_Long size = FT_Get_PS_Font_Value(face, key, index, nullptr, 0);
    if (size <= 0)
        return std::nullopt;
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (FT_Get_PS_Font_Value(face, key, index, bytes.data(), size) != size)
        return std::nullopt;
    bytes.pop_back(); // the zero that FreeType adds
    return bytes;
}

/// Reads the number that begins with `first`, and moves `at` behind it; unknown when it is cut.
std::optional<int> readNumber(const std::vector<std::uint8_t>& bytes, std::uint8_t first,
                              std::size_t& at) {
    if (first <= 246)
        return first - 139;
    const std::size_t size = first == 255 ? 4 : 1;
    if (size > bytes.size() - at) {
        at = bytes.size();
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | bytes[at++];
    if (first == 255)
        return static_cast<int>(value);
    const int high = first <= 250 ? first - 247 : first - 251;
    const int number = high * 256 + static_cast<int>(value) + 108;
    return first <= 250 ? number : -number;
}

} // namespace

Type1LoadBudget::Type1LoadBudget(FT_FaceRec_* face) : face_(face) {
    std::size_t bytes = 0;
    bool isType1 = false;
    for (FT_UInt glyph = 0; static_cast<FT_Long>(glyph) < face->num_glyphs; ++glyph) {
        const FT_Long size = FT_Get_PS_Font_Value(face, PS_DICT_CHAR_STRING, glyph, nullptr, 0);
        if (size > 0) {
            bytes += static_cast<std::size_t>(size);
            isType1 = true;
        }
    }
    if (isType1)
        left_ = KWCommonNS::kType1FreeSteps + bytes * KWCommonNS::kType1StepsOfAByte;
}

bool Type1LoadBudget::take(unsigned int glyph) {
    const auto bytes = charString(glyph);
    operands_.clear();
    keepsHintSubr_ = false;
    isAccented_ = false;
    return bytes && walk(*bytes, 0) != End::refused;
}

bool Type1LoadBudget::pay(std::size_t steps) {
    const bool isEnough = steps <= left_;
    left_ = isEnough ? left_ - steps : 0;
    return isEnough;
}

std::optional<Type1LoadBudget::Bytes> Type1LoadBudget::charString(unsigned int glyph) const {
    return valueOf(face_, PS_DICT_CHAR_STRING, glyph);
}

const Type1LoadBudget::Bytes* Type1LoadBudget::subr(int number) {
    if (number < 0)
        return nullptr;
    auto found = subrs_.find(number);
    if (found == subrs_.end()) {
        auto bytes = valueOf(face_, PS_DICT_SUBR, static_cast<FT_UInt>(number));
        if (!bytes)
            return nullptr;
        found = subrs_.emplace(number, std::move(bytes)).first;
    }
    return &*found->second;
}

std::optional<int> Type1LoadBudget::pop() {
    if (operands_.empty())
        return std::nullopt;
    const std::optional<int> value = operands_.back();
    operands_.pop_back();
    return value;
}

Type1LoadBudget::End Type1LoadBudget::walk(const Bytes& bytes, int depth) {
    for (std::size_t at = 0; at < bytes.size();) {
        if (!pay(1))
            return End::refused;
        const std::uint8_t first = bytes[at++];
        if (first >= 32) {
            operands_.push_back(readNumber(bytes, first, at));
            continue;
        }
        int op = first;
        if (op == kEscape) {
            if (at == bytes.size())
                return End::finished;
            op = op << 8 | bytes[at++];
        }
        if (op == kReturn)
            return End::returned;
        if (const End end = runOperator(op, depth); end != End::returned)
            return end;
    }
    return End::returned;
}

/// `returned` to go on behind the operator.
Type1LoadBudget::End Type1LoadBudget::runOperator(int op, int depth) {
    const bool keptHintSubr = keepsHintSubr_;
    keepsHintSubr_ = false;
    if (isOfType2(op))
        return End::refused;
    switch (op) {
    case kEndChar:
        return End::finished;
    case kCallSubr:
        return callSubr(depth);
    case kSeac:
        return addAccent();
    case kDiv:
        pop();
        pop();
        operands_.emplace_back();
        break;
    case kCallOtherSubr:
        callOtherSubr();
        break;
    case kPop:
        if (!keptHintSubr)
            operands_.emplace_back();
        break;
    default:
        operands_.clear();
    }
    return End::returned;
}

Type1LoadBudget::End Type1LoadBudget::callSubr(int depth) {
    const std::optional<int> number = pop();
    if (!number || !pay(kCallSteps))
        return End::refused;
    // FreeType allows one level more than there are subrs inside subrs.
    if (depth > KWCommonNS::kMaxSubrDepth)
        return End::finished;
    const Bytes* const bytes = subr(*number);
    return bytes != nullptr ? walk(*bytes, depth + 1) : End::finished;
}

void Type1LoadBudget::callOtherSubr() {
    const std::optional<int> procedure = pop();
    const std::optional<int> count = pop();
    keepsHintSubr_ = procedure == kReplaceHints && count == 1;
    if (!keepsHintSubr_)
        operands_.clear();
}

Type1LoadBudget::End Type1LoadBudget::addAccent() {
    const std::optional<int> accent = pop();
    const std::optional<int> base = pop();
    // FreeType searches all glyphs for the two names.
    if (isAccented_ || !pay(static_cast<std::size_t>(face_->num_glyphs)))
        return isAccented_ ? End::finished : End::refused;
    isAccented_ = true;
    for (const std::optional<int> part : {base, accent}) {
        if (walkStandardGlyph(part) == End::refused)
            return End::refused;
    }
    return End::finished;
}

Type1LoadBudget::End Type1LoadBudget::walkStandardGlyph(std::optional<int> code) {
    if (!code)
        return End::refused;
    if (*code < 0 || *code > std::numeric_limits<std::uint8_t>::max())
        return End::finished;
    std::string name(standardName(static_cast<std::uint8_t>(*code)));
    const FT_UInt glyph = FT_Get_Name_Index(face_, name.c_str());
    const auto bytes = charString(glyph);
    operands_.clear();
    keepsHintSubr_ = false;
    return bytes ? walk(*bytes, 0) : End::finished;
}

} // namespace KWFontService_NS
