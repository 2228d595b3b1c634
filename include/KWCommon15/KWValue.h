#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWName.h"
#include "KWCommon15/KWUnitType.h"
#include "KWCommon15/KWUtil.h"

#include <cstdint>
#include <utility>

namespace KWCommonNS {

class KWNamedValueMap;

/// A tagged value of 16 bytes: null, `bool`, `int`, real with a unit, string with a unit, name, or
/// compound (an ordered map of names to values).
///
/// A plain value: copied, moved, assigned and compared. Strings and compounds are shared among
/// copies until one of them is changed, which no one can observe; copies of one value may live on
/// different threads. A moved-from value is null. Compounds may nest; destroying, comparing and
/// printing them recurses once per level.
///
/// A list of several tokens, as in a CSS property, is one string of the unit `KWUnitType::List`
/// that holds the source text; `KWTokenizer` takes it apart again.
class KWCOMMON_API KWValue {
public:
    /// Null.
    constexpr KWValue() noexcept : bits_{.integer = 0} {}
    KWValue(bool value) noexcept : kind_(Kind::Bool), bits_{.boolean = value} {}
    KWValue(int value) noexcept : kind_(Kind::Integer), bits_{.integer = value} {}
    KWValue(double value, KWUnitType unit = KWUnitType::None) noexcept
        : kind_(Kind::Real), unit_(unit), bits_{.real = value} {}
    KWValue(const UnicodeString& text, KWUnitType unit = KWUnitType::None);
    KWValue(KWName name) noexcept : kind_(Kind::Name), bits_{.name = name} {}
    KWValue(KWNameEnum name) noexcept : KWValue(KWName(name)) {}
    /// A pointer would quietly become a `bool`.
    KWValue(const void*) = delete;

    KWValue(const KWValue& other) noexcept
        : kind_(other.kind_), unit_(other.unit_), bits_(other.bits_) {
        retain();
    }
    KWValue(KWValue&& other) noexcept
        : kind_(std::exchange(other.kind_, Kind::Null)),
          unit_(std::exchange(other.unit_, KWUnitType::None)), bits_(other.bits_) {}
    KWValue& operator=(const KWValue& other) noexcept {
        KWValue(other).swap(*this);
        return *this;
    }
    KWValue& operator=(KWValue&& other) noexcept {
        KWValue(std::move(other)).swap(*this);
        return *this;
    }
    ~KWValue() { release(); }

    void swap(KWValue& other) noexcept {
        std::swap(kind_, other.kind_);
        std::swap(unit_, other.unit_);
        std::swap(bits_, other.bits_);
    }

    bool isNull() const { return kind_ == Kind::Null; }
    bool isBool() const { return kind_ == Kind::Bool; }
    bool isInteger() const { return kind_ == Kind::Integer; }
    bool isReal() const { return kind_ == Kind::Real; }
    /// An integer or a real.
    bool isNumber() const { return isInteger() || isReal(); }
    bool isString() const { return kind_ == Kind::String; }
    bool isName() const { return kind_ == Kind::Name; }
    bool isCompound() const { return kind_ == Kind::Compound; }

    /// The unit of a real or a string; `None` for the other kinds.
    KWUnitType getUnitType() const { return unit_; }

    /// The stored `bool`; false for the other kinds.
    bool getBoolValue() const { return kind_ == Kind::Bool && bits_.boolean; }

    /// An integer, or a real cut toward zero, its unit ignored. A real beyond the range of `int`
    /// gives the nearest `int`, not-a-number 0.
    /// @return 0 for the other kinds
    int getIntegerValue() const;

    /// A number in the unit asked for.
    ///
    /// A plain number is taken to be in that unit already, and `None` asks for the stored number as
    /// it stands. Absolute lengths (px, pt, pc, in, cm, mm, q) convert among themselves by the CSS
    /// rule 96 px = 1 in; so do angles, times, frequencies and resolutions.
    /// @return not-a-number for any other conversion; 0 for the other kinds
    double getRealValue(KWUnitType unit = KWUnitType::None) const;

    /// The stored text, shared by this value; empty for the other kinds.
    const UnicodeString& getStringValue() const;

    /// The stored name; no name for the other kinds.
    KWName getNameValue() const { return isName() ? bits_.name : KWName(); }

    /// The entry of a compound.
    /// @return the entry, alive until this value is changed; `NULL_VALUE` when it is missing and
    ///         for the other kinds
    const KWValue& getNamedItem(KWName name) const;

    /// Sets an entry. A value of another kind becomes an empty compound first; a null `item`
    /// removes the entry.
    void setNamedItem(KWName name, KWValue item);

    /// The entries of a compound in ascending order of their names' numbers, alive until this value
    /// is changed; no entries for the other kinds.
    const KWNamedValueMap& getNamedValueMap() const;

    /// The value as text: a number with its unit, "true" or "false", a string as it is stored, a
    /// name's shared text, the entries of a compound in their order with one blank between them,
    /// nothing for null.
    UnicodeString toString() const;

    /// The value as CSS text that `KWTokenizer::nextTokenValueExp` reads back as the same token: as
    /// `toString`, except that a string without unit stands in quotation marks with those marks,
    /// backslashes and control characters escaped, and that names, identifiers, functions, hashes
    /// and urls are escaped where they must be (CSSOM, "Serializing"). Lists, ranges and delimiters
    /// stand as they are. A lone "url(" before a quoted url has no such text.
    UnicodeString toQuotedString(KWUtil::QuoteMode mode) const;

    /// Equal kinds with equal contents; an integer and a real compare as numbers. Reals of
    /// different units are equal when the one converts to the other and plain numbers only equal
    /// plain ones. Strings compare by text and unit, compounds entry by entry.
    KWCOMMON_API friend bool operator==(const KWValue& a, const KWValue& b);

    /// Compares numbers by the rules of `==`; false for other kinds and units that do not convert.
    KWCOMMON_API friend bool operator>=(const KWValue& a, const KWValue& b);

    /// Adds numbers. Two integers give an integer, or a real when the sum is beyond `int`; any
    /// other pair gives a real in the unit of `a`, or of `b` when `a` is plain.
    /// @return null when either is no number or when their units do not convert
    KWCOMMON_API friend KWValue operator+(const KWValue& a, const KWValue& b);
    /// As `+` with `b` negated.
    KWCOMMON_API friend KWValue operator-(const KWValue& a, const KWValue& b);
    /// Negates a number, by the rules of `+`.
    KWValue operator-() const;
    KWValue& operator+=(const KWValue& b) { return *this = *this + b; }

private:
    enum class Kind : std::uint8_t { Null, Bool, Integer, Real, String, Name, Compound };
    struct SharedText;
    struct SharedMap;
    union Bits {
        bool boolean;
        int integer;
        double real;
        KWName name;
        SharedText* text;
        SharedMap* map;
    };

    bool isShared() const { return kind_ == Kind::String || kind_ == Kind::Compound; }
    void retain() const noexcept {
        if (isShared())
            retainShared();
    }
    void release() noexcept {
        if (isShared())
            releaseShared();
    }
    void retainShared() const noexcept;
    void releaseShared() noexcept;

    Kind kind_ = Kind::Null;
    KWUnitType unit_ = KWUnitType::None;
    Bits bits_;
};

/// The null value.
KWCOMMON_API extern const KWValue NULL_VALUE;

} // namespace KWCommonNS
