#include "KWCommon15/KWValue.h"

#include "KWCommon15/KWEmptyString.h"
#include "KWCommon15/KWNamedValue.h"
#include "common/CssText.h"
#include "common/UnitTable.h"

#include <atomic>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>

namespace KWCommonNS {

constinit const KWValue NULL_VALUE;

struct KWValue::SharedText {
    std::atomic<std::uint32_t> count{1};
    UnicodeString text;
};

struct KWValue::SharedMap {
    std::atomic<std::uint32_t> count{1};
    KWNamedValueMap map;
};

namespace {

/// Both numbers in one unit, for a comparison; empty when they have none in common.
std::optional<std::pair<double, double>> comparable(const KWValue& a, const KWValue& b) {
    const KWUnitType unit = a.getUnitType();
    const auto other = convertUnit(b.getRealValue(), b.getUnitType(), unit);
    if (!other)
        return std::nullopt;
    return std::pair(a.getRealValue(), *other);
}

KWValue wholeOrReal(std::int64_t value) {
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max())
        return static_cast<double>(value);
    return static_cast<int>(value);
}

KWValue addNumbers(const KWValue& a, const KWValue& b, int sign) {
    if (!a.isNumber() || !b.isNumber())
        return {};
    if (a.isInteger() && b.isInteger())
        return wholeOrReal(std::int64_t{a.getIntegerValue()} +
                           std::int64_t{sign} * b.getIntegerValue());
    const KWUnitType unit = a.getUnitType() == KWUnitType::None ? b.getUnitType() : a.getUnitType();
    const KWUnitType from = b.getUnitType() == KWUnitType::None ? unit : b.getUnitType();
    const auto addend = convertUnit(b.getRealValue(), from, unit);
    if (!addend)
        return {};
    return KWValue(a.getRealValue() + sign * *addend, unit);
}

template <typename Print>
UnicodeString joinEntries(const KWNamedValueMap& map, Print print) {
    UnicodeString out;
    bool first = true;
    for (const KWNamedValue& entry : map) {
        if (!first)
            out.append(u' ');
        first = false;
        out.append(print(entry.value));
    }
    return out;
}

} // namespace

KWValue::KWValue(const UnicodeString& text, KWUnitType unit)
    : kind_(Kind::String), unit_(unit), bits_{.text = new SharedText{.text = text}} {}

void KWValue::retainShared() const noexcept {
    auto& count = kind_ == Kind::String ? bits_.text->count : bits_.map->count;
    count.fetch_add(1, std::memory_order_relaxed);
}

void KWValue::releaseShared() noexcept {
    auto& count = kind_ == Kind::String ? bits_.text->count : bits_.map->count;
    if (count.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    if (kind_ == Kind::String)
        delete bits_.text;
    else
        delete bits_.map;
}

int KWValue::getIntegerValue() const {
    if (isInteger())
        return bits_.integer;
    if (!isReal() || std::isnan(bits_.real))
        return 0;
    if (bits_.real >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (bits_.real <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return static_cast<int>(bits_.real);
}

double KWValue::getRealValue(KWUnitType unit) const {
    if (isInteger())
        return bits_.integer;
    if (!isReal())
        return 0;
    if (unit == KWUnitType::None || unit_ == KWUnitType::None)
        return bits_.real;
    return convertUnit(bits_.real, unit_, unit).value_or(std::numeric_limits<double>::quiet_NaN());
}

const UnicodeString& KWValue::getStringValue() const {
    return isString() ? bits_.text->text : KWEmptyString::getEmptyString();
}

const KWValue& KWValue::getNamedItem(KWName name) const {
    return isCompound() ? bits_.map->map.get(name) : NULL_VALUE;
}

void KWValue::setNamedItem(KWName name, KWValue item) {
    if (!isCompound() || bits_.map->count.load(std::memory_order_acquire) != 1) {
        KWValue own;
        own.bits_.map = new SharedMap{.map = getNamedValueMap()};
        own.kind_ = Kind::Compound;
        swap(own);
    }
    bits_.map->map.set(name, std::move(item));
}

const KWNamedValueMap& KWValue::getNamedValueMap() const {
    static const KWNamedValueMap kNoEntries;
    return isCompound() ? bits_.map->map : kNoEntries;
}

UnicodeString KWValue::toString() const {
    switch (kind_) {
    case Kind::Null:
        break;
    case Kind::Bool:
        return bits_.boolean ? u"true" : u"false";
    case Kind::Integer:
        return KWUtil::toString(bits_.integer);
    case Kind::Real: {
        const std::u16string_view unit = unitText(unit_);
        return KWUtil::toString(bits_.real)
            .append(unit.data(), static_cast<std::int32_t>(unit.size()));
    }
    case Kind::String:
        return bits_.text->text;
    case Kind::Name:
        return bits_.name.toString();
    case Kind::Compound:
        return joinEntries(bits_.map->map, [](const KWValue& item) { return item.toString(); });
    }
    return {};
}

UnicodeString KWValue::toQuotedString(KWUtil::QuoteMode mode) const {
    if (isName())
        return toCssIdentifier(bits_.name.toString());
    if (isCompound())
        return joinEntries(bits_.map->map,
                           [mode](const KWValue& item) { return item.toQuotedString(mode); });
    if (!isString())
        return toString();
    const UnicodeString& text = bits_.text->text;
    switch (unit_) {
    case KWUnitType::Ident:
        return toCssIdentifier(text);
    case KWUnitType::Function:
        return toCssIdentifier(text.tempSubString(0, text.length() - 1)).append(u'(');
    case KWUnitType::AtKeyword:
        return UnicodeString(u'@').append(toCssIdentifier(text.tempSubString(1)));
    case KWUnitType::Hash:
        return UnicodeString(u'#').append(toCssName(text.tempSubString(1)));
    case KWUnitType::Url:
        return toCssUrl(text);
    case KWUnitType::Delimiter:
        // Only before a line end is a backslash a token of its own.
        return text == UnicodeString(u'\\') ? UnicodeString(u"\\\n") : text;
    case KWUnitType::UnicodeRange:
    case KWUnitType::Dimension:
    case KWUnitType::List:
        return text;
    default:
        return toCssString(text, mode);
    }
}

bool operator==(const KWValue& a, const KWValue& b) {
    if (a.isNumber() && b.isNumber()) {
        const auto both = comparable(a, b);
        return both && both->first == both->second;
    }
    if (a.kind_ != b.kind_)
        return false;
    switch (a.kind_) {
    case KWValue::Kind::Bool:
        return a.bits_.boolean == b.bits_.boolean;
    case KWValue::Kind::String:
        return a.unit_ == b.unit_ &&
               (a.bits_.text == b.bits_.text || a.bits_.text->text == b.bits_.text->text);
    case KWValue::Kind::Name:
        return a.bits_.name == b.bits_.name;
    case KWValue::Kind::Compound:
        return a.bits_.map->map == b.bits_.map->map;
    default:
        return true;
    }
}

bool operator>=(const KWValue& a, const KWValue& b) {
    if (!a.isNumber() || !b.isNumber())
        return false;
    const auto both = comparable(a, b);
    return both && both->first >= both->second;
}

KWValue operator+(const KWValue& a, const KWValue& b) {
    return addNumbers(a, b, 1);
}

KWValue operator-(const KWValue& a, const KWValue& b) {
    return addNumbers(a, b, -1);
}

KWValue KWValue::operator-() const {
    if (isInteger())
        return wholeOrReal(-std::int64_t{bits_.integer});
    return isReal() ? KWValue(-bits_.real, unit_) : KWValue();
}

} // namespace KWCommonNS
