#pragma once

#include "registry/FS_FontPool.h"

#include <map>
#include <utility>

namespace KWTest {

/// The choice of a face within a family, stated a second time and as plainly as it goes. Nothing is
/// shared with the library but the types, so an error has to be made twice to stay unseen.
class SelectionOracle {
public:
    using Faces = KWFontService_NS::FS_FontFamilyMap;
    using Key = KWFontService_NS::FS_FontKey;
    using Ref = KWFontService_NS::FS_FontRef;

    explicit SelectionOracle(Faces faces) : faces_(std::move(faces)) {}

    /// The faces of the family and all fills up to now.
    const Faces& faces() const { return faces_; }

    /// Registers one more face; the first for a style stands.
    void add(const Key& key, const Ref& ref) {
        if (!faces_.contains(key))
            faces_[key] = ref;
    }

    Ref select(const Key& request) {
        const int w = request.weight;
        const bool i = request.italic;
        const int s = request.stretch;

        if (has(w, i, s))
            return at(w, i, s);
        if (s != 5 && has(w, i, 5))
            return at(w, i, 5);
        if (i && has(w, false, s))
            return at(w, false, s);
        if (i && has(w, false, 5))
            return at(w, false, 5);
        const int r = roundedUp(w);
        if (has(r, i, 5))
            return at(r, i, 5);

        Slots upright;
        Slots italic;
        for (const auto& [key, ref] : faces_) {
            Slots& slots = key.italic ? italic : upright;
            const int c = roundedUp(key.weight);
            const int f = roundedDown(key.weight);
            slots[c] = ref;
            if (f != c && !slots.contains(f))
                slots[f] = ref;
        }

        fill(upright, false);
        fill(italic, true);
        if (upright.empty())
            copyStyle(true, false);
        if (italic.empty())
            copyStyle(false, true);

        return has(r, i, 5) ? at(r, i, 5) : Ref();
    }

private:
    /// Weight to face; an empty slot is absent.
    using Slots = std::map<int, Ref>;

    // Written so that no weight overflows; what is held to 100 or 900 need not be rounded.
    static int roundedUp(int weight) {
        if (weight <= 100)
            return 100;
        if (weight >= 900)
            return 900;
        while (weight % 100 != 0)
            ++weight;
        return weight;
    }
    static int roundedDown(int weight) {
        if (weight <= 100)
            return 100;
        if (weight >= 900)
            return 900;
        while (weight % 100 != 0)
            --weight;
        return weight;
    }

    bool has(int weight, bool italic, int stretch) const {
        return faces_.contains(Key{weight, italic, stretch});
    }
    Ref at(int weight, bool italic, int stretch) const {
        return faces_.at(Key{weight, italic, stretch});
    }
    /// An entry that is there already stays.
    void insert(int weight, bool italic, const Ref& ref) {
        if (!has(weight, italic, 5))
            faces_[Key{weight, italic, 5}] = ref;
    }

    void fill(const Slots& slots, bool italic) {
        bool lightHalf = false;
        bool heavyHalf = false;
        for (const auto& [weight, ref] : slots)
            (weight <= 500 ? lightHalf : heavyHalf) = true;
        if (!lightHalf && !heavyHalf)
            return;
        const Ref lightest = slots.begin()->second;
        const Ref heaviest = slots.rbegin()->second;

        if (lightHalf) {
            Ref last = lightest; // also for what is lighter than the first filled slot
            for (int weight = 100; weight <= 500; weight += 100) {
                if (slots.contains(weight))
                    last = slots.at(weight);
                insert(weight, italic, last);
            }
        } else {
            for (int weight = 100; weight <= 500; weight += 100)
                insert(weight, italic, lightest);
        }

        if (heavyHalf) {
            Ref last = heaviest;
            for (int weight = 900; weight >= 600; weight -= 100) {
                if (slots.contains(weight))
                    last = slots.at(weight);
                insert(weight, italic, last);
            }
        } else {
            for (int weight = 900; weight >= 600; weight -= 100)
                insert(weight, italic, heaviest);
        }
    }

    void copyStyle(bool from, bool to) {
        for (int weight = 100; weight <= 900; weight += 100) {
            if (has(weight, from, 5))
                insert(weight, to, at(weight, from, 5));
        }
    }

    Faces faces_;
};

} // namespace KWTest
