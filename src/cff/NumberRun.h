#pragma once

#include "cff/CharString.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace KWFontService_NS {

/// The numbers of a charstring up to a place, for who may want the last of them: where they stand,
/// one stretch after the other. To note that costs less than to read what is not asked for.
class NumberRun {
public:
    static constexpr std::size_t kKept = 8;

    /// Numbers that stand side by side, as `CharStringScanner::nextOperator` tells them.
    void add(std::size_t begin, std::size_t count) {
        last_[stretches_++ % kKept] = {begin, count};
        size_ += count;
    }
    void clear() { stretches_ = size_ = 0; }
    std::size_t size() const { return size_; }

    /// Calls `each(number)` for the last `kKept`, or for all when there are fewer, the last one
    /// last.
    /// @param charString  where they stand
    template <class Each>
    void visitLast(ByteView charString, const Each& each) const {
        std::size_t wanted = std::min(size_, kKept);
        std::size_t stretch = stretches_;
        std::size_t passed = 0; // of the first stretch
        while (wanted > 0) {
            const std::size_t count = last_[--stretch % kKept].count;
            passed = count - std::min(count, wanted);
            wanted -= count - passed;
        }
        for (; stretch < stretches_; ++stretch) {
            auto [at, count] = last_[stretch % kKept];
            for (; count > 0; --count) {
                const std::uint8_t* const number = charString.data() + at;
                at += charStringNumberSize(*number);
                if (passed > 0)
                    --passed;
                else
                    each(charStringNumber(number));
            }
        }
    }

private:
    struct Stretch {
        std::size_t begin;
        std::size_t count;
    };

    std::array<Stretch, kKept> last_; ///< in turns; those that were added
    std::size_t stretches_ = 0;
    std::size_t size_ = 0;
};

} // namespace KWFontService_NS
