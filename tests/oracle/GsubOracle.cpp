#include "GsubOracle.h"

#include <algorithm>
#include <numeric>

namespace KWTest::oracle {

namespace {

template <class T>
void insertAt(std::vector<T>& list, int index, int number, const T& value) {
    list.insert(list.begin() + index, static_cast<std::size_t>(number), value);
}
template <class T>
void eraseRange(std::vector<T>& list, int from, int to) {
    if (from < to)
        list.erase(list.begin() + from, list.begin() + to);
}

/// Replaces `out[index]`. Only a context in a context leaves less output than that.
void store(Run& out, int index, const Slot& slot) {
    if (index >= count(out))
        throw Undefined("a record writes where the output has been cut off");
    at(out, index) = slot;
}

} // namespace

/// A run under way with its words and its mask, all of one length.
struct GsubOracle::Whole {
    Run run;
    std::vector<int> words;
    std::vector<int> mask;

    bool isMasked(int i) const { return at(mask, i) != 0; }

    /// From i + 1 to before `end`, glyphs that were passed over close up behind i and keep in mind
    /// where they stood; the others are gone, with their words added to that of i.
    void keepSkipped(int i, int end, const std::vector<int>& skipped) {
        std::size_t next = 0;
        int free = i + 1;
        for (int j = i + 1; j < end; ++j) {
            if (next < skipped.size() && skipped[next] == j) {
                at(run, free) = at(run, j);
                at(words, free) = j << 16 | at(words, j);
                at(mask, free) = at(mask, j);
                ++free;
                ++next;
            } else {
                at(words, i) += at(words, j);
            }
        }
        eraseRange(run, free, end);
        eraseWords(free, end);
    }
    /// What the glyph stood for goes to the nearest glyph before it that stands for any, to the one
    /// after it where there is none: the rules leave this open, and so no length is lost.
    void deleteGlyph(int i) {
        int bearer = i - 1;
        while (bearer >= 0 && at(words, bearer) == 0)
            --bearer;
        if (bearer < 0)
            bearer = i + 1;
        if (bearer < count(words))
            at(words, bearer) += at(words, i);
        eraseRange(run, i, i + 1);
        eraseWords(i, i + 1);
    }
    void eraseWords(int from, int to) {
        eraseRange(words, from, to);
        eraseRange(mask, from, to);
    }
    void insertZeroWords(int index, int number) {
        insertAt(words, index, number, 0);
        insertAt(mask, index, number, 0);
    }
};

void GsubOracle::step() {
    if (++steps_ > kMaxSteps)
        throw Undefined("too many steps");
}

Slot GsubOracle::slotOf(Glyph glyph) const {
    return {glyph, font_.glyphClasses(glyph)};
}

// --- the types at one place ---------------------------------------------------------------------

Glyph GsubOracle::single(const Lookup& lookup, Glyph glyph) const {
    for (const SubTable& subtable : lookup.subtables) {
        Glyph result = kNone;
        if (const auto* delta = std::get_if<SingleDelta>(&subtable)) {
            if (delta->coverage.has(glyph))
                result = static_cast<Glyph>((glyph + delta->delta) & 0xFFFF);
        } else if (const auto* list = std::get_if<SingleList>(&subtable)) {
            if (const Glyph* found = find(list->substitutes, list->coverage(glyph)))
                result = *found;
        }
        if (result != kNone)
            return result;
    }
    return kNone;
}

Glyph GsubOracle::alternate(const Lookup& lookup, Glyph glyph, int number) const {
    for (const SubTable& subtable : lookup.subtables) {
        const auto* alternates = std::get_if<Alternate>(&subtable);
        if (alternates == nullptr || number < 1)
            continue;
        const std::vector<Glyph>* set = find(alternates->sets, alternates->coverage(glyph));
        const Glyph* result = set == nullptr ? nullptr : find(*set, number - 1);
        if (result != nullptr && *result != kNone)
            return *result;
    }
    return kNone;
}

const std::vector<Glyph>* GsubOracle::multiple(const Lookup& lookup, Glyph glyph) const {
    for (const SubTable& subtable : lookup.subtables) {
        const auto* sequences = std::get_if<Multiple>(&subtable);
        if (sequences == nullptr)
            continue;
        if (const std::vector<Glyph>* found =
                find(sequences->sequences, sequences->coverage(glyph)))
            return found;
    }
    return nullptr;
}

Glyph GsubOracle::ligature(const Lookup& lookup, const Run& run, int& position,
                           std::vector<int>& skipped) const {
    for (const SubTable& subtable : lookup.subtables) {
        const auto* ligatures = std::get_if<Ligatures>(&subtable);
        if (ligatures == nullptr)
            continue;
        const auto* set = find(ligatures->sets, ligatures->coverage(at(run, position).glyph));
        if (set == nullptr)
            continue;
        for (const Ligature& ligature : *set) {
            const int components = count(ligature.rest) + 1;
            if (components > count(run) - position)
                continue;
            skipped.clear();
            std::size_t matched = 0;
            int j = position + 1;
            while (matched < ligature.rest.size() && j < count(run)) {
                if (isPassedOver(font_, lookup.flag, at(run, j)))
                    skipped.push_back(j);
                else if (at(run, j).glyph == ligature.rest[matched])
                    ++matched;
                else
                    break;
                ++j;
            }
            if (matched < ligature.rest.size() || ligature.glyph == kNone)
                continue;
            position += count(skipped) + components;
            return ligature.glyph;
        }
    }
    return kNone;
}

// --- contexts -----------------------------------------------------------------------------------

int GsubOracle::context(const Lookup& lookup, const Run& run, int& position, Run& out,
                        std::vector<int>& skipped) {
    for (const SubTable& subtable : lookup.subtables) {
        const Match match = matchContext(font_, subtable, run, position, lookup.flag);
        if (match.result == 0)
            continue;
        const int start = position;
        out = run;
        int furthest = start;
        int result = 0;
        if (match.result == -1)
            return 0;
        for (const Record& record : match.records) {
            position = start + record.sequence;
            for (const int index : match.skipped) {
                if (index > position)
                    break;
                ++position;
            }
            const int before = position;
            const int produced = nested(record.lookup, run, position, out, skipped);
            if (produced > 0) {
                result = std::max(result, produced + before - start);
                furthest = std::max(furthest, position);
            }
        }
        position = furthest;
        eraseRange(out, 0, std::min(start, count(out)));
        return result;
    }
    return 0;
}

int GsubOracle::nested(int lookupIndex, const Run& run, int& position, Run& out,
                       std::vector<int>& skipped) {
    step();
    const Lookup& lookup = lookupAt(lookupIndex);
    if (position >= count(run))
        return 0;
    const Glyph glyph = at(run, position).glyph;
    int result = 0;
    switch (lookup.type) {
    case 1:
    case 3: {
        const Glyph found = lookup.type == 1 ? single(lookup, glyph) : alternate(lookup, glyph, 1);
        if (found == kNone)
            return 0;
        store(out, position++, slotOf(found));
        result = 1;
        break;
    }
    case 2: {
        const std::vector<Glyph>* found = multiple(lookup, glyph);
        if (found == nullptr || found->empty())
            return 0;
        store(out, position, slotOf(found->front()));
        for (int k = 1; k < count(*found); ++k)
            insertAt(out, position + k, 1, slotOf(at(*found, k)));
        ++position;
        result = count(*found);
        break;
    }
    case 4: {
        const int start = position;
        const Glyph found = ligature(lookup, run, position, skipped);
        if (found == kNone)
            return 0;
        store(out, start, slotOf(found));
        for (int k = start + 1; k < position; ++k)
            store(out, k, Slot());
        result = 1;
        break;
    }
    case 5:
    case 6:
        result = context(lookup, run, position, out, skipped) > 0 ? 1 : 0;
        break;
    default:
        return 0;
    }
    if (result > 0)
        applied_.push_back(lookupIndex);
    return result;
}

// --- the whole run ------------------------------------------------------------------------------

bool GsubOracle::wholeRun(const Lookup& lookup, Whole& whole, int number) {
    switch (lookup.type) {
    case 1:
    case 3:
        return wholeGlyphs(lookup, whole, number);
    case 2:
        return wholeMultiple(lookup, whole);
    case 4:
        return wholeLigature(lookup, whole);
    case 5:
    case 6:
        return wholeContext(lookup, whole);
    case 8:
        return wholeReverse(lookup, whole);
    default:
        return false;
    }
}

bool GsubOracle::wholeGlyphs(const Lookup& lookup, Whole& whole, int number) {
    bool changed = false;
    for (int i = 0; i < count(whole.run); ++i) {
        if (whole.isMasked(i))
            continue;
        const Glyph glyph = at(whole.run, i).glyph;
        const Glyph found =
            lookup.type == 1 ? single(lookup, glyph) : alternate(lookup, glyph, number);
        if (found == kNone)
            continue;
        at(whole.run, i) = slotOf(found);
        changed = true;
    }
    return changed;
}

bool GsubOracle::wholeReverse(const Lookup& lookup, Whole& whole) {
    bool changed = false;
    for (int i = count(whole.run) - 1; i >= 0; --i) {
        if (whole.isMasked(i))
            continue;
        for (const SubTable& subtable : lookup.subtables) {
            const Glyph found = substituteReverse(font_, subtable, whole.run, i, lookup.flag);
            if (found == kNone)
                continue;
            at(whole.run, i) = slotOf(found);
            changed = true;
            break;
        }
    }
    return changed;
}

bool GsubOracle::wholeMultiple(const Lookup& lookup, Whole& whole) {
    bool changed = false;
    for (int i = 0; i < count(whole.run); ++i) {
        if (whole.isMasked(i))
            continue;
        const std::vector<Glyph>* found = multiple(lookup, at(whole.run, i).glyph);
        if (found == nullptr)
            continue;
        changed = true;
        if (found->empty()) {
            whole.deleteGlyph(i--);
            continue;
        }
        at(whole.run, i) = slotOf(found->front());
        for (int k = 1; k < count(*found); ++k)
            insertAt(whole.run, i + k, 1, slotOf(at(*found, k)));
        whole.insertZeroWords(i + 1, count(*found) - 1);
        i += count(*found) - 1;
    }
    return changed;
}

bool GsubOracle::wholeLigature(const Lookup& lookup, Whole& whole) {
    bool changed = false;
    std::vector<int> skipped;
    for (int i = 0; i < count(whole.run); ++i) {
        if (whole.isMasked(i))
            continue;
        int end = i;
        const Glyph found = ligature(lookup, whole.run, end, skipped);
        if (found == kNone)
            continue;
        changed = true;
        at(whole.run, i) = slotOf(found);
        whole.keepSkipped(i, end, skipped);
    }
    return changed;
}

bool GsubOracle::wholeContext(const Lookup& lookup, Whole& whole) {
    bool changed = false;
    for (int i = 0; i < count(whole.run); ++i) {
        step();
        if (count(whole.run) > kMaxGlyphs)
            throw Undefined("too many glyphs");
        if (whole.isMasked(i))
            continue;
        int end = i;
        Run out;
        std::vector<int> skipped;
        const int produced = context(lookup, whole.run, end, out, skipped);
        if (produced == 0)
            continue;
        if (produced > count(out))
            throw Undefined("a context in a context cut off what is to be inserted");
        changed = true;
        const Glyph first = at(whole.run, i).glyph;
        int found = 0;
        if (skipped.empty()) {
            eraseRange(whole.run, i, end);
            for (int k = 0; k < produced; ++k) {
                insertAt(whole.run, i + k, 1, at(out, k));
                if (at(out, k).glyph == first)
                    found = k + 1;
            }
            int bearer = i;
            while (bearer > 0 && at(whole.words, bearer) == 0)
                --bearer;
            for (int j = i + 1; j < end; ++j)
                at(whole.words, bearer) += at(whole.words, j);
            whole.eraseWords(i + 1, end);
        } else {
            at(whole.run, i) = at(out, 0);
            for (int k = 1; k < produced; ++k)
                insertAt(whole.run, i + k, 1, at(out, k));
            whole.keepSkipped(i, end, skipped);
        }
        whole.insertZeroWords(i + 1, produced - 1);
        if (lookup.type == 5)
            i += produced - 1;
        else if (found != 0 && end == i + 1)
            i += found - 1;
    }
    return changed;
}

// --- the driver ---------------------------------------------------------------------------------

GsubOracle::AtPosition GsubOracle::processGSUB(Tag tag, const Run& run, const AtPosition& before,
                                               int number) {
    AtPosition answer = before;
    answer.result = 0;
    const int start = before.position;
    if (handle_.gsub == nullptr || start < 0 || start >= count(run))
        return answer;
    for (const int featureIndex : *handle_.gsub) {
        const Feature& feature = at(font_.gsub.features, featureIndex);
        if (feature.tag != tag)
            continue;
        for (const int lookupIndex : feature.lookups) {
            const Lookup& lookup = lookupAt(lookupIndex);
            const Glyph glyph = at(run, start).glyph;
            std::vector<int> skipped;
            int position = start;
            const auto one = [&](Glyph found) {
                answer.out = {slotOf(found)};
                answer.position = start + 1;
                answer.result = 1;
            };
            const auto passedOver = [&] {
                answer.skipped.clear();
                for (const int index : skipped)
                    answer.skipped.push_back(at(run, index));
            };
            if (lookup.type == 1 || lookup.type == 3) {
                const Glyph found =
                    lookup.type == 1 ? single(lookup, glyph) : alternate(lookup, glyph, number);
                if (found == kNone)
                    continue;
                one(found);
            } else if (lookup.type == 2) {
                const std::vector<Glyph>* found = multiple(lookup, glyph);
                if (found == nullptr)
                    continue;
                answer.out.clear();
                for (const Glyph each : *found)
                    answer.out.push_back(slotOf(each));
                answer.position = start + 1;
                answer.result = count(*found);
            } else if (lookup.type == 4) {
                const Glyph found = ligature(lookup, run, position, skipped);
                if (found == kNone)
                    continue;
                one(found);
                answer.position = position;
                passedOver();
            } else if (lookup.type == 5 || lookup.type == 6) {
                Run out;
                const int produced = context(lookup, run, position, out, skipped);
                if (produced == 0)
                    continue;
                if (produced > count(out))
                    throw Undefined("a context in a context cut off what is to be the result");
                answer.out = out;
                answer.position = position;
                answer.result = produced;
                passedOver();
            } else {
                continue;
            }
            applied_.push_back(lookupIndex);
            return answer;
        }
    }
    return answer;
}

GsubOracle::WholeRun GsubOracle::processGSUB3(int index, const Run& run,
                                              const std::vector<int>& words, const WholeRun& before,
                                              int number) {
    WholeRun answer = before;
    answer.changed = false;
    if (handle_.gsub == nullptr)
        return answer;
    const auto order = lookupOrder(font_.gsub, *handle_.gsub);
    const auto* entry = find(order, index);
    if (entry == nullptr)
        return answer;
    Whole whole{run, std::vector<int>(run.size(), 1), words};
    whole.mask.resize(run.size());
    answer.changed = wholeRun(lookupAt(entry->second), whole, number);
    answer.run = whole.run;
    answer.words = whole.words;
    if (answer.changed)
        applied_.push_back(entry->second);
    return answer;
}

} // namespace KWTest::oracle
