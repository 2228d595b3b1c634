#pragma once

#include "LayoutMatcher.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace KWTest::oracle {

/// A positioned glyph.
struct Placed {
    static constexpr unsigned kOutside = 0x0002;
    static constexpr unsigned kZeroWidthBase = 0x1000;
    static constexpr unsigned kSkipComponentBase = 0x2000;
    static constexpr unsigned kComponentInfo = 0x4000;
    static constexpr unsigned kStrict = 0x8000;

    std::int16_t length = 0;
    std::int16_t width = 0;
    std::int16_t x1 = 0;
    std::int16_t x2 = 0;
    std::int16_t y = 0;
    std::uint16_t flag = 0;
    Slot slot{};
    std::int16_t decomposition = 0;
    std::int16_t joining = 0;
    std::int16_t height = 0;
    std::int16_t y2 = 0;
    std::int16_t skipInfo = 0;
    std::int16_t compInfo = 0;

    bool has(unsigned bit) const { return (flag & bit) != 0; }
    bool isStrict() const { return has(kStrict); }

    /// Forgets positions that come from elsewhere.
    void resetOutside();
    /// Adds, as values do. What is absent adds nothing.
    void add(std::optional<int> dx1, std::optional<int> dy, std::optional<int> dx2,
             std::optional<int> dy2);
    /// As attachments do: a strict glyph is put there, any other moved by as much.
    void attach(int newX1, int newY);

    bool operator==(const Placed&) const = default;
};
using Line = std::vector<Placed>;

/// Positioning by the lookups of one font.
class GposOracle {
public:
    explicit GposOracle(const Handle& handle) : handle_(handle), font_(*handle.font) {}

    /// The lookups of a feature at one place.
    bool processGPOS(Tag tag, Line& line, int index, bool rtl);
    /// One entry of the lookup order over the whole line.
    int processGPOS3(int index, Line& line, bool rtl);

    /// Lookups that applied, by index: what a test was about.
    const std::vector<int>& applied() const { return applied_; }

private:
    bool apply(int lookupIndex, Line& line, int& i, bool rtl);

    Handle handle_;
    const Font& font_;
    std::vector<int> applied_{};
};

} // namespace KWTest::oracle
