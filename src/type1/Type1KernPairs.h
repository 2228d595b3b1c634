#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>

namespace KWFontService_NS {

/// Kerning by pairs of characters: Unicode values of an AFM file, codes of a PFM file, in units of
/// the font. Of equal pairs the first one stays.
class Type1KernPairs {
public:
    /// What is beyond 16 bits is no character of a pair and passed by.
    void add(int first, int second, int amount) {
        if (isCharacter(first) && isCharacter(second))
            amounts_.emplace(keyOf(first, second), amount);
    }
    /// 0 for a pair that is not there.
    int find(int first, int second) const {
        if (!isCharacter(first) || !isCharacter(second))
            return 0;
        const auto found = amounts_.find(keyOf(first, second));
        return found != amounts_.end() ? found->second : 0;
    }
    bool empty() const { return amounts_.empty(); }
    std::size_t size() const { return amounts_.size(); }

private:
    static bool isCharacter(int ch) { return ch >= 0 && ch <= 0xFFFF; }
    static std::uint32_t keyOf(int first, int second) {
        return static_cast<std::uint32_t>(first) << 16 | static_cast<std::uint32_t>(second);
    }

    std::unordered_map<std::uint32_t, int> amounts_;
};

} // namespace KWFontService_NS
