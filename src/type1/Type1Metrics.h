#pragma once

#include "type1/KeyedList.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace KWFontService_NS {

/// Units of the em, unless a font program says otherwise.
inline constexpr int kType1UnitsPerEm = 1000;

/// What a font says of one of its glyphs (an AFM `C` line, Adobe Technical Note 5004). Lengths are
/// in units of the font, y up.
struct Type1CharMetric {
    static constexpr int kUnencoded = -1;

    int code = kUnencoded;
    int WX = 0;
    int WY = 0;
    std::string name{}; ///< empty for a glyph that nothing is known of
    int left = 0;
    int bottom = 0;
    int right = 0;
    int top = 0;
};

/// The glyphs of a font, found by code and by name. A record is only changed before it is entered
/// under its name, and the answers live as long as this object.
class Type1Metrics {
public:
    Type1Metrics() = default;
    /// Takes the records and enters nothing.
    explicit Type1Metrics(std::vector<Type1CharMetric> records);
    Type1Metrics(const Type1Metrics&) = delete;
    Type1Metrics& operator=(const Type1Metrics&) = delete;
    /// Records keep their places.
    Type1Metrics(Type1Metrics&&) = default;
    Type1Metrics& operator=(Type1Metrics&&) = default;

    const std::vector<Type1CharMetric>& records() const { return records_; }
    Type1CharMetric& record(std::size_t place) { return records_[place]; }

    /// Enters a record under a code, unless another one has that.
    void addCode(int code, std::size_t place);
    /// Enters a record under its name, unless another one has that.
    void addName(std::size_t place);
    /// Makes what was entered found.
    void sort();
    /// Enters all records, in their order, under their names and under those codes that they have,
    /// to be found.
    void addAll();

    /// Null when there is none.
    const Type1CharMetric* findCode(int code) const;
    const Type1CharMetric* findName(std::string_view name) const;

private:
    const Type1CharMetric* recordAt(std::size_t place) const {
        return place < records_.size() ? &records_[place] : nullptr;
    }

    std::vector<Type1CharMetric> records_;
    KeyedList<int, std::size_t> byCode_;
    KeyedList<std::string_view, std::size_t> byName_;
};

} // namespace KWFontService_NS
