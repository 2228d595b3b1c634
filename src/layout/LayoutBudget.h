#pragma once

#include "common/KWLimits.h"

#include <cstddef>
#include <limits>

namespace KWFontService_NS {

/// What is left to one layout table of the reading that it may cause, in bytes of the file counted
/// as often as they are read.
class LayoutBudget {
public:
    explicit LayoutBudget(std::size_t tableSize)
        : left_(
              tableSize > (kMax - KWCommonNS::kLayoutFreeBytes) / KWCommonNS::kLayoutReadsOfEachByte
                  ? kMax
                  : KWCommonNS::kLayoutFreeBytes + KWCommonNS::kLayoutReadsOfEachByte * tableSize) {
    }

    /// False when the rest does not cover `bytes`; from then on nothing is covered.
    bool spend(std::size_t bytes) {
        if (bytes > left_) {
            left_ = 0;
            exhausted_ = true;
        } else {
            left_ -= bytes;
        }
        return !exhausted_;
    }
    /// The same for an object that is kept.
    /// @param bytes  read for it
    bool spendObject(std::size_t bytes) { return spend(KWCommonNS::kLayoutObjectCost + bytes); }
    bool exhausted() const { return exhausted_; }
    std::size_t left() const { return left_; }

private:
    static constexpr std::size_t kMax = std::numeric_limits<std::size_t>::max();

    std::size_t left_;
    bool exhausted_ = false;
};

} // namespace KWFontService_NS
