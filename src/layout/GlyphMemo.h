#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace KWFontService_NS {

/// Remembers what searches in the tables of a font have come to, for as long as one call takes: a
/// text has few glyphs, and asks the same of them again and again. What falls into a full place
/// drives out what was there.
class GlyphMemo {
public:
    /// What `search` answers for a glyph.
    /// @param table  which table is searched; two searches never go to tables of one address
    template <class Search>
    int answer(const std::uint8_t* table, unsigned short gid, Search search) {
        if (!ready_) {
            places_.fill({});
            ready_ = true;
        }
        const std::uint64_t address = reinterpret_cast<std::uintptr_t>(table);
        // Of an address the upper 16 bits are the same everywhere.
        const std::uint64_t key = address << 16 | gid;
        // The glyphs of one table, which often follow each other, get places of their own.
        Place& place = places_[((address * kSpread >> 56) + gid) % kPlaces];
        if (place.key != key)
            place = {key, search()};
        return place.answer;
    }

private:
    static constexpr std::size_t kPlaces = 256;
    static constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15; // 2^64 over the golden ratio

    struct Place {
        std::uint64_t key; // 0 in an empty place: no table is at address 0
        int answer;
    };

    bool ready_ = false;
    std::array<Place, kPlaces> places_; // left as it is until the first question
};

} // namespace KWFontService_NS
