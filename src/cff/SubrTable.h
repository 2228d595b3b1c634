#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace KWFontService_NS {

/// Something for each of some subrs, by the operands of their calls, which are those of existing
/// subrs and have 16 bits and a sign. It is looked up as in an array, and takes the memory of those
/// parts of one that are in use: fonts call ten thousand subrs for every line of text.
template <class T>
class SubrTable {
public:
    SubrTable() = default;
    SubrTable(std::initializer_list<std::pair<int, T>> entries) {
        for (const auto& [operand, value] : entries)
            insert(operand, value);
    }

    /// Null where there is nothing.
    const T* find(int operand) const {
        const std::size_t key = keyOf(operand);
        const std::size_t page = key / kPageSize - firstPage_;
        if (page >= pages_.size() || !pages_[page])
            return nullptr;
        const std::size_t place = key % kPageSize;
        return (pages_[page]->present >> place & 1) != 0 ? &pages_[page]->values[place] : nullptr;
    }

    /// What `insert` takes of the heap beyond what is taken already.
    std::size_t costOf(int operand) const {
        const std::size_t page = keyOf(operand) / kPageSize - firstPage_;
        return page < pages_.size() && pages_[page] ? 0 : sizeof(Page);
    }

    /// Puts something where there is nothing yet. False where there is, and beyond 16 bits.
    bool insert(int operand, const T& value) {
        const std::size_t key = keyOf(operand);
        if (key >= kKeys)
            return false;
        auto& page = pageAt(key / kPageSize);
        if (!page)
            page = std::make_unique<Page>();
        const std::uint64_t bit = std::uint64_t{1} << key % kPageSize;
        if ((page->present & bit) != 0)
            return false;
        page->present |= bit;
        page->values[key % kPageSize] = value;
        return true;
    }

    std::size_t size() const {
        std::size_t count = 0;
        for (const auto& page : pages_)
            count += page ? static_cast<std::size_t>(std::popcount(page->present)) : 0;
        return count;
    }

    /// Calls `each(operand, value)`, operands ascending, until it answers false; answers whether it
    /// never did.
    template <class Each>
    bool visit(const Each& each) const {
        for (std::size_t i = 0; i < pages_.size(); ++i) {
            std::uint64_t left = pages_[i] ? pages_[i]->present : 0;
            for (; left != 0; left &= left - 1) {
                const auto place = static_cast<std::size_t>(std::countr_zero(left));
                if (!each(static_cast<int>((firstPage_ + i) * kPageSize + place) - kZero,
                          pages_[i]->values[place]))
                    return false;
            }
        }
        return true;
    }

    friend bool operator==(const SubrTable& a, const SubrTable& b) {
        return a.size() == b.size() && a.visit([&b](int operand, const T& value) {
            const T* const other = b.find(operand);
            return other != nullptr && *other == value;
        });
    }

private:
    static constexpr int kZero = 0x8000;
    static constexpr std::size_t kKeys = 0x10000;
    static constexpr std::size_t kPageSize = 64;

    struct Page {
        std::uint64_t present = 0;
        std::array<T, kPageSize> values{};
    };

    /// `kKeys` and more beyond 16 bits.
    static std::size_t keyOf(int operand) {
        return static_cast<std::size_t>(std::int64_t{operand} + kZero);
    }

    std::unique_ptr<Page>& pageAt(std::size_t number) {
        if (pages_.empty())
            firstPage_ = number;
        if (number < firstPage_) {
            std::vector<std::unique_ptr<Page>> more(firstPage_ - number + pages_.size());
            std::ranges::move(pages_, more.end() - static_cast<std::ptrdiff_t>(pages_.size()));
            pages_ = std::move(more);
            firstPage_ = number;
        }
        if (number - firstPage_ >= pages_.size())
            pages_.resize(number - firstPage_ + 1);
        return pages_[number - firstPage_];
    }

    std::size_t firstPage_ = 0; ///< that is in `pages_`
    std::vector<std::unique_ptr<Page>> pages_;
};

} // namespace KWFontService_NS
