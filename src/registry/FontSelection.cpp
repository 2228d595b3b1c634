#include "registry/FontSelection.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace KWFontService_NS {

namespace {

constexpr int kStep = 100;
constexpr int kLightest = 100;
constexpr int kHeaviest = 900;
constexpr std::size_t kSlots = kHeaviest / kStep;
/// Below this slot a lighter face stands in for a missing one, from it on a heavier one.
constexpr std::size_t kFirstHeavySlot = 600 / kStep - 1;

constexpr int weightOf(std::size_t slot) {
    return static_cast<int>(slot + 1) * kStep;
}

constexpr std::size_t slotOf(int weight) {
    return static_cast<std::size_t>(weight / kStep - 1);
}

int roundedDown(int weight) {
    return std::clamp(weight, kLightest, kHeaviest) / kStep * kStep;
}

int roundedUp(int weight) {
    return roundedDown(std::clamp(weight, kLightest, kHeaviest) + kStep - 1);
}

FS_FontRef find(const FS_FontFamilyMap& family, const FS_FontKey& key) {
    const auto found = family.find(key);
    return found != family.end() ? found->second : FS_FontRef();
}

/// The faces of a family by hundreds of weight, upright or italic; empty slots are null.
class WeightTable {
public:
    void take(int weight, const FS_FontRef& ref) {
        const std::size_t up = slotOf(roundedUp(weight));
        const std::size_t down = slotOf(roundedDown(weight));
        slots_[up] = ref;
        if (down != up && !slots_[down])
            slots_[down] = ref;
    }

    bool empty() const {
        return std::none_of(slots_.begin(), slots_.end(),
                            [](const FS_FontRef& ref) { return static_cast<bool>(ref); });
    }

    /// Fills the gaps: a light weight from the next lighter face, a heavy one from the next
    /// heavier; where there is none from the nearest on the other side; a half without any face
    /// from the nearest face of the other half.
    void fill() {
        const auto middle = slots_.begin() + kFirstHeavySlot;
        const auto endOfHeavy = slots_.rbegin() + (kSlots - kFirstHeavySlot);
        const FS_FontRef heaviestLight = lastIn(slots_.begin(), middle);
        const FS_FontRef lightestHeavy = firstIn(middle, slots_.end());
        fillHalf(slots_.begin(), middle, lightestHeavy);
        fillHalf(slots_.rbegin(), endOfHeavy, heaviestLight);
    }

    void store(FS_FontFamilyMap& family, bool italic) const {
        for (std::size_t slot = 0; slot < kSlots; ++slot) {
            if (slots_[slot])
                family.emplace(FS_FontKey{weightOf(slot), italic, FS_FontKey::kNormalStretch},
                               slots_[slot]);
        }
    }

private:
    template <class Iterator>
    static FS_FontRef firstIn(Iterator begin, Iterator end) {
        const auto found =
            std::find_if(begin, end, [](const FS_FontRef& ref) { return static_cast<bool>(ref); });
        return found != end ? *found : FS_FontRef();
    }
    template <class Iterator>
    static FS_FontRef lastIn(Iterator begin, Iterator end) {
        return firstIn(std::make_reverse_iterator(end), std::make_reverse_iterator(begin));
    }

    /// Goes from the outermost weight inwards.
    template <class Iterator>
    static void fillHalf(Iterator begin, Iterator end, const FS_FontRef& ofOtherHalf) {
        FS_FontRef nearest = firstIn(begin, end);
        if (!nearest)
            nearest = ofOtherHalf;
        for (Iterator slot = begin; slot != end; ++slot) {
            if (*slot)
                nearest = *slot;
            else
                *slot = nearest;
        }
    }

    std::array<FS_FontRef, kSlots> slots_{};
};

/// A family without upright faces takes its italic ones for them, and the other way round.
void copyAcross(FS_FontFamilyMap& family, bool fromItalic) {
    for (std::size_t slot = 0; slot < kSlots; ++slot) {
        FS_FontKey key{weightOf(slot), fromItalic, FS_FontKey::kNormalStretch};
        if (const FS_FontRef ref = find(family, key)) {
            key.italic = !fromItalic;
            family.emplace(key, ref);
        }
    }
}

/// Afterwards the family has a face for each hundred of weight, upright and italic.
void fillGaps(FS_FontFamilyMap& family) {
    WeightTable upright;
    WeightTable italic;
    // Of the faces that share a slot the last counts, whatever their stretch.
    for (const auto& [key, ref] : family)
        (key.italic ? italic : upright).take(key.weight, ref);
    const bool noUpright = upright.empty();
    const bool noItalic = italic.empty();
    upright.fill();
    italic.fill();
    upright.store(family, false);
    italic.store(family, true);
    if (noUpright)
        copyAcross(family, true);
    if (noItalic)
        copyAcross(family, false);
}

} // namespace

FS_FontRef selectFont(FS_FontFamilyMap& family, const FS_FontKey& key) {
    constexpr int kNormal = FS_FontKey::kNormalStretch;
    const auto [weight, italic, stretch] = key;
    if (const FS_FontRef exact = find(family, key))
        return exact;
    if (stretch != kNormal) {
        if (const FS_FontRef unstretched = find(family, {weight, italic, kNormal}))
            return unstretched;
    }
    // The upright face of the right weight goes before an italic one of another. Not so the other
    // way round: an italic face for an upright request is the last resort.
    if (italic) {
        for (const int width : {stretch, kNormal}) {
            if (const FS_FontRef plain = find(family, {weight, false, width}))
                return plain;
        }
    }
    const FS_FontKey rounded{roundedUp(weight), italic, kNormal};
    if (const FS_FontRef found = find(family, rounded))
        return found;
    fillGaps(family);
    return find(family, rounded);
}

} // namespace KWFontService_NS
