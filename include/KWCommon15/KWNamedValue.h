#pragma once

#include "KWCommon15/KWExport.h"
#include "KWCommon15/KWName.h"
#include "KWCommon15/KWValue.h"

#include <cstddef>
#include <vector>

namespace KWCommonNS {

/// One entry of a compound value.
struct KWNamedValue {
    KWName name;
    KWValue value;

    friend bool operator==(const KWNamedValue&, const KWNamedValue&) = default;
};

/// The entries of a compound value, in ascending order of their names' numbers.
class KWCOMMON_API KWNamedValueMap {
public:
    using const_iterator = std::vector<KWNamedValue>::const_iterator;

    /// The value of an entry; `NULL_VALUE` when there is none.
    const KWValue& get(KWName name) const;
    /// Sets an entry, or removes it when `value` is null. Setting names in ascending order takes
    /// constant time each.
    void set(KWName name, KWValue value);

    /// How many entries there are.
    std::size_t size() const { return entries_.size(); }
    bool empty() const { return entries_.empty(); }
    const_iterator begin() const { return entries_.begin(); }
    const_iterator end() const { return entries_.end(); }

    friend bool operator==(const KWNamedValueMap&, const KWNamedValueMap&) = default;

private:
    std::vector<KWNamedValue> entries_;
};

/// Walks the entries of a map: `while (it.hasNext()) { it.next(); ... it.getName() ... }`.
///
/// It refers to the map, which must live as long and should not change meanwhile.
class KWCOMMON_API KWNamedValueMapIterator {
public:
    /// Stands before the first entry of `map`.
    explicit KWNamedValueMapIterator(const KWNamedValueMap& map) : map_(&map) {}

    /// True while `next` has an entry to go to.
    bool hasNext() const { return next_ < map_->size(); }
    /// Goes to the next entry, the first one at the first call; false at the end.
    bool next();
    /// The name of the entry that `next` went to; no name before the first and behind the last.
    KWName getName() const;
    /// The value of that entry; `NULL_VALUE` before the first and behind the last.
    const KWValue& getValue() const;

private:
    const KWNamedValue* current() const;

    const KWNamedValueMap* map_;
    std::size_t next_ = 0;
    bool atEnd_ = false;
};

} // namespace KWCommonNS
