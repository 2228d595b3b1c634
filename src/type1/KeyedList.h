#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace KWFontService_NS {

/// A list that is filled, sorted once and then searched; the first of equal keys stays. Unlike a
/// hash table it takes no longer with keys that somebody has chosen.
template <class Key, class Value>
class KeyedList {
public:
    void reserve(std::size_t count) { rows_.reserve(count); }
    void add(Key key, Value value) { rows_.emplace_back(key, value); }
    void sort() {
        std::ranges::stable_sort(rows_, {}, &Row::first);
        const auto isRepeat = [](const Row& a, const Row& b) { return a.first == b.first; };
        rows_.erase(std::unique(rows_.begin(), rows_.end(), isRepeat), rows_.end());
    }
    /// The value of a key, after the last `sort`.
    Value find(Key key, Value missing) const {
        const auto found = std::ranges::lower_bound(rows_, key, {}, &Row::first);
        return found != rows_.end() && found->first == key ? found->second : missing;
    }

private:
    using Row = std::pair<Key, Value>;
    std::vector<Row> rows_;
};

} // namespace KWFontService_NS
