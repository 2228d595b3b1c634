#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace KWFontService_NS {

/// Remembers what searches for glyphs in the coverages and class definitions of a layout table came
/// to: a text has few glyphs, and a font asks the same of them again and again. What falls into a
/// full place drives out what was there. All memos of a thread share its places, and threads share
/// none, so that nobody waits.
class GlyphMemo {
public:
    /// Remembers nothing.
    GlyphMemo() = default;
    /// @param tableNumber  tells the layout table from any other, also from those that are gone;
    ///                     from `newTableNumber`
    explicit GlyphMemo(std::uint32_t tableNumber);

    /// A number that no table has had before; a multiple of four, which leaves room for the kind.
    static std::uint32_t newTableNumber();

    /// False when every answer is searched for.
    bool remembers() const { return entries_ != nullptr; }

    /// A search among so few entries is as quick as remembering it.
    static constexpr std::size_t kNotWorthIt = 16;

    /// What is asked. A font may have the bytes of one place read as a coverage and as a class
    /// definition too, and these are two questions. The others are put to a whole lookup.
    enum class Kind : std::uint32_t { Coverage, ClassDef, LookupStart, LookupNext };

    /// What `search` answers for a glyph.
    /// @param place  where in the table the search begins
    template <class Search>
    int answer(Kind kind, const std::uint8_t* place, unsigned short gid, Search search) {
        if (entries_ == nullptr)
            return search();
        const Slot slot = slotOf(kind, place, gid);
        if (!slot.isFilled())
            slot.fill(search());
        return slot.entry->answer;
    }
    /// The same of a search that may be given up: nothing then, which is not remembered.
    template <class Search>
    std::optional<int> answerIfAny(Kind kind, const std::uint8_t* place, unsigned short gid,
                                   Search search) {
        if (entries_ == nullptr)
            return search();
        const Slot slot = slotOf(kind, place, gid);
        if (!slot.isFilled()) {
            const std::optional<int> found = search();
            if (!found)
                return std::nullopt;
            slot.fill(*found);
        }
        return slot.entry->answer;
    }

private:
    static constexpr std::size_t kEntries = 4096;
    static constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15; // 2^64 over the golden ratio

    struct Entry {
        std::uint64_t key = 0;
        std::uint32_t tableAndKind = 0; // 0 where nothing is remembered yet
        std::int32_t answer = 0;
    };
    /// Where the answer to a question is, or goes.
    struct Slot {
        bool isFilled() const { return entry->key == key && entry->tableAndKind == tableAndKind; }
        void fill(int answer) const {
            *entry = {.key = key, .tableAndKind = tableAndKind, .answer = answer};
        }

        Entry* entry;
        std::uint64_t key;
        std::uint32_t tableAndKind;
    };

    Slot slotOf(Kind kind, const std::uint8_t* place, unsigned short gid) const {
        const std::uint64_t address = reinterpret_cast<std::uintptr_t>(place);
        const auto which = static_cast<std::uint32_t>(kind);
        // The glyphs of one search, which often follow each other, get entries of their own, and
        // so do the two questions to a lookup.
        Entry& entry = entries_[(((address + which) * kSpread >> 40) + gid) % kEntries];
        // Of an address the upper 16 bits are the same everywhere.
        return {&entry, address << 16 | gid, tableNumber_ + which};
    }
    static Entry* entriesOfThread();

    std::uint32_t tableNumber_ = 0;
    /// Null remembers nothing.
    Entry* entries_ = nullptr;
};

} // namespace KWFontService_NS
