#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWNameEnum.h"

#include <compare>

namespace KWCommonNS {

/// An interned name: one number, copied and compared in constant time.
///
/// Names are ordered by number, not by text. Names may be made and compared on any thread.
class KWCOMMON_API KWName {
public:
    /// No name.
    constexpr KWName() = default;

    /// The name of a number. Any number is taken, also one without a text (see `KWNameEnum`).
    constexpr KWName(KWNameEnum name) : name_(name) {}

    /// The name of a text, interned for the life of the process when it is not a common name; an
    /// empty text is no name.
    explicit KWName(const UnicodeString& text);

    /// The number of the name.
    constexpr operator KWNameEnum() const { return name_; }

    /// True for the name of number 0.
    constexpr bool isEmpty() const { return name_ == KWNameEnum::None; }

    /// The shared text; empty for a number without one.
    const UnicodeString& toString() const;

    friend constexpr bool operator==(KWName a, KWName b) { return a.name_ == b.name_; }
    friend constexpr bool operator==(KWName a, KWNameEnum b) { return a.name_ == b; }
    friend constexpr std::strong_ordering operator<=>(KWName a, KWName b) {
        return a.name_ <=> b.name_;
    }

private:
    KWNameEnum name_ = KWNameEnum::None;
};

} // namespace KWCommonNS
