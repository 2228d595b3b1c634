#include "layout/GsubEngine.h"

#include "layout/GsubLookup.h"
#include "layout/LayoutCall.h"
#include "layout/TTI_LookupList.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace KWFontService_NS {

namespace {

// Words are sums of 16-bit halves, kept as they come: unsigned, so that none overflows.

void addWord(int& sum, int word) {
    sum = static_cast<int>(static_cast<unsigned int>(sum) + static_cast<unsigned int>(word));
}

int withSkipInfo(int word, int index) {
    return static_cast<int>(static_cast<unsigned int>(word) | static_cast<unsigned int>(index)
                                                                  << 16);
}

std::size_t place(int index) {
    return static_cast<std::size_t>(index);
}

template <class Value>
void eraseFrom(std::vector<Value>& values, int from, int to) {
    if (from < to)
        values.erase(values.begin() + from, values.begin() + to);
}

/// Copies a glyph with what goes along with it.
void copyGlyph(SubstitutedRun run, int from, int to) {
    run.glyphs[to] = run.glyphs[from];
    run.words[place(to)] = run.words[place(from)];
    run.mask[place(to)] = run.mask[place(from)];
}

/// The glyph at `index` or before it that stands for something, or the first one.
int ownerAtOrBefore(const std::vector<int>& words, int index) {
    while (index > 0 && words[place(index)] == 0)
        --index;
    return index;
}

/// The first glyph from `from` on at which a lookup may start; the length of the run when there is
/// none. Most lookups apply nowhere in a run, and this is all that they cost.
int nextStart(const TTI_Lookup& lookup, SubstitutedRun run, int from) {
    const GlyphDigest::Probe probe(lookup.digest);
    const int size = run.glyphs.size();
    while (from < size &&
           !(probe.mayHold(run.glyphs[from].getGlyphID()) && run.mask[place(from)] == 0))
        ++from;
    return from;
}

void shorten(SubstitutedRun run, int size) {
    run.glyphs.erase(size, run.glyphs.size());
    eraseFrom(run.words, size, static_cast<int>(run.words.size()));
    eraseFrom(run.mask, size, static_cast<int>(run.mask.size()));
}

/// A run that is made anew beside the one it comes from, since its length changes.
class GrowingRun {
public:
    explicit GrowingRun(SubstitutedRun run) : run_(run) {}

    /// How long it is once the glyphs of the old run up to an index are taken over.
    std::size_t lengthUpTo(int end) const { return words_.size() + place(end - taken_); }
    void keepUntil(int end) {
        for (; taken_ < end; ++taken_)
            push(run_.glyphs[taken_], run_.words[place(taken_)]);
    }
    /// Puts glyphs in the place of the next one, which they stand for through the first.
    void replace(const LayoutCall& call, const U16List& sequence) {
        int word = run_.words[place(taken_++)];
        for (const std::uint16_t gid : sequence)
            push(call.glyph(gid), std::exchange(word, 0));
    }
    /// Leaves out the next glyph; what it stood for goes to a neighbour, first of all to one before
    /// it.
    void drop() {
        const int word = run_.words[place(taken_++)];
        if (words_.empty())
            addWord(ownerless_, word);
        else
            addWord(words_[owner_], word);
    }
    /// Takes over the rest and gives all to the old run.
    void finish() {
        keepUntil(run_.glyphs.size());
        run_.glyphs = std::move(glyphs_);
        run_.words = std::move(words_);
        run_.mask.resize(run_.words.size());
    }

private:
    void push(const GlyphIDClassPair& glyph, int word) {
        glyphs_.push_back(glyph);
        words_.push_back(word);
        addWord(words_.back(), std::exchange(ownerless_, 0));
        if (words_.back() != 0)
            owner_ = words_.size() - 1;
    }

    SubstitutedRun run_;
    /// How many glyphs of the old run are done with.
    int taken_ = 0;
    GlyphIDArray glyphs_;
    std::vector<int> words_;
    /// The last glyph that stands for something, or the first one.
    std::size_t owner_ = 0;
    int ownerless_ = 0;
};

} // namespace

bool GsubEngine::substituteRun(const TTI_Lookup& lookup, SubstitutedRun run, int alternate) {
    switch (lookup.type) {
    case kGsubSingle:
        return replaceGlyphs(lookup, run,
                             [&](unsigned short gid) { return findSingle(call_, lookup, gid); });
    case kGsubMultiple:
        return replaceBySequences(lookup, run);
    case kGsubAlternate:
        return alternate >= 1 && replaceGlyphs(lookup, run, [&](unsigned short gid) {
                   return findAlternate(call_, lookup, gid, alternate);
               });
    case kGsubLigature:
        return replaceByLigatures(lookup, run);
    case kGsubContext:
    case kGsubChainContext:
        return replaceInContext(lookup, run);
    case kGsubReverseChaining:
        return replaceBackwards(lookup, run);
    default:
        return false;
    }
}

template <class Substitute>
bool GsubEngine::replaceGlyphs(const TTI_Lookup& lookup, SubstitutedRun run,
                               Substitute substitute) {
    bool changed = false;
    const int size = run.glyphs.size();
    for (int i = nextStart(lookup, run, 0); i < size; i = nextStart(lookup, run, i + 1)) {
        const unsigned short other = substitute(run.glyphs[i].getGlyphID());
        if (other != FS_NO_GLYPH) {
            run.glyphs[i] = call_.glyph(other);
            changed = true;
        }
    }
    return changed;
}

bool GsubEngine::replaceBackwards(const TTI_Lookup& lookup, SubstitutedRun run) {
    bool changed = false;
    for (int i = run.glyphs.size() - 1; i >= 0; --i) {
        if (run.mask[place(i)] != 0)
            continue;
        const unsigned short other = findReverse(call_, lookup, run.glyphs, i);
        if (other != FS_NO_GLYPH) {
            run.glyphs[i] = call_.glyph(other);
            changed = true;
        }
    }
    return changed;
}

bool GsubEngine::replaceBySequences(const TTI_Lookup& lookup, SubstitutedRun run) {
    bool changed = false;
    std::optional<GrowingRun> grown; // once the length differs
    const int size = run.glyphs.size();
    for (int i = nextStart(lookup, run, 0); i < size; i = nextStart(lookup, run, i + 1)) {
        const auto sequence = findSequence(call_, lookup, run.glyphs[i].getGlyphID());
        if (!sequence)
            continue;
        const std::size_t length = grown ? grown->lengthUpTo(i) : place(i);
        if (!call_.mayGrowTo(length + sequence->size() + place(size - i - 1)))
            break;
        changed = true;
        if (sequence->size() == 1) {
            run.glyphs[i] = call_.glyph((*sequence)[0]);
            continue;
        }
        if (!grown)
            grown.emplace(run);
        grown->keepUntil(i);
        if (sequence->empty())
            grown->drop();
        else
            grown->replace(call_, *sequence);
    }
    if (grown)
        grown->finish();
    return changed;
}

bool GsubEngine::replaceByLigatures(const TTI_Lookup& lookup, SubstitutedRun run) {
    bool changed = false;
    // What is done goes to `to`, which falls behind `from` as ligatures shorten the run. The glyphs
    // between the two are done with.
    int to = 0;
    int from = 0;
    const auto keepUntil = [&](int end) {
        for (; from < end; ++from, ++to) {
            if (to != from)
                copyGlyph(run, from, to);
        }
    };
    while (from < run.glyphs.size()) {
        keepUntil(nextStart(lookup, run, from));
        if (from == run.glyphs.size())
            break;
        int end = from;
        const unsigned short ligature = findLigature(call_, lookup, run.glyphs, end, skipped_);
        if (ligature == FS_NO_GLYPH) {
            keepUntil(from + 1);
            continue;
        }
        changed = true;
        int word = run.words[place(from)];
        int next = end;
        // Backwards, since the glyphs passed over move up to those that follow.
        for (int i = end - 1; i > from; --i) {
            if (!skipped_.empty() && skipped_.back() == i) {
                skipped_.pop_back();
                --next;
                if (next != i)
                    copyGlyph(run, i, next);
                int& moved = run.words[place(next)];
                moved = withSkipInfo(moved, i - from + to);
            } else {
                addWord(word, run.words[place(i)]);
            }
        }
        run.glyphs[to] = call_.glyph(ligature);
        run.words[place(to)] = word;
        run.mask[place(to)] = 0;
        ++to;
        from = next;
    }
    shorten(run, to);
    return changed;
}

bool GsubEngine::replaceInContext(const TTI_Lookup& lookup, SubstitutedRun run) {
    bool changed = false;
    for (int i = nextStart(lookup, run, 0); i < run.glyphs.size();
         i = nextStart(lookup, run, i + 1)) {
        skipped_.clear();
        int end = i;
        const int count = context_.apply(lookup, run.glyphs, end, skipped_);
        if (count == 0)
            continue;
        const bool moves = count != 1 || end != i + 1;
        if (moves && (!call_.mayGrowTo(place(run.glyphs.size()) + place(count)) ||
                      !call_.spendMoves(place(run.glyphs.size()))))
            break;
        changed = true;
        const int written = skipped_.empty() ? replaceMatch(run, i, end, count)
                                             : replaceAroundSkipped(run, i, end, count);
        run.words.insert(run.words.begin() + i + 1, place(count - 1), 0);
        run.mask.insert(run.mask.begin() + i + 1, place(count - 1), 0);
        // A chain context deliberately comes back to what it has written.
        if (lookup.type == kGsubContext)
            i += count - 1;
        else if (written != 0 && end == i + 1)
            i += written - 1;
    }
    return changed;
}

int GsubEngine::replaceMatch(SubstitutedRun run, int at, int end, int count) {
    const unsigned short first = run.glyphs[at].getGlyphID();
    int lastSame = 0;
    const ContextOutput& output = context_.output();
    for (int k = 0; k < count; ++k) {
        if (output[k].getGlyphID() == first)
            lastSame = k + 1;
    }
    writeOutput(run.glyphs, at, end, count);
    if (end > at + 1) {
        const int owner = ownerAtOrBefore(run.words, at);
        for (int i = at + 1; i < end; ++i)
            addWord(run.words[place(owner)], run.words[place(i)]);
        eraseFrom(run.words, at + 1, end);
        eraseFrom(run.mask, at + 1, end);
    }
    return lastSame;
}

int GsubEngine::replaceAroundSkipped(SubstitutedRun run, int at, int end, int count) {
    // What was matched is read behind the glyphs that are inserted, deliberately by the indices it
    // had before.
    writeOutput(run.glyphs, at, at + 1, count);
    int to = at + 1;
    auto next = skipped_.begin();
    for (int i = at + 1; i < end; ++i) {
        if (next != skipped_.end() && *next == i) {
            copyGlyph(run, i, to);
            int& word = run.words[place(to)];
            word = withSkipInfo(word, i);
            ++to;
            ++next;
        } else {
            addWord(run.words[place(at)], run.words[place(i)]);
        }
    }
    run.glyphs.erase(to, end);
    eraseFrom(run.words, to, end);
    eraseFrom(run.mask, to, end);
    return 0;
}

void GsubEngine::writeOutput(GlyphIDArray& glyphs, int at, int end, int count) {
    const ContextOutput& output = context_.output();
    const int replaced = std::min(end - at, count);
    // The output may still read from the run.
    output_.clear();
    for (int k = 0; k < count; ++k)
        output_.push_back(output[k]);
    std::copy_n(output_.begin(), replaced, glyphs.begin() + at);
    glyphs.erase(at + replaced, end);
    for (int k = replaced; k < count; ++k)
        glyphs.push_back(output_[place(k)]);
    std::move_backward(glyphs.begin() + at + replaced, glyphs.end() - (count - replaced),
                       glyphs.end());
    std::copy(output_.begin() + replaced, output_.end(), glyphs.begin() + at + replaced);
}

GsubEngine::Hit GsubEngine::substituteAt(const TTI_Lookup& lookup, const GlyphIDArray& run,
                                         int& position, GlyphIDArray& out, GlyphIDArray& skipped,
                                         int alternate) {
    const unsigned short gid = run[position].getGlyphID();
    const auto single = [&](unsigned short other) -> Hit {
        if (other == FS_NO_GLYPH)
            return {};
        out.clear();
        out.push_back(call_.glyph(other));
        return {true, 1};
    };
    const auto listSkipped = [&] {
        skipped.clear();
        for (const int index : skipped_)
            skipped.push_back(run[index]);
    };
    switch (lookup.type) {
    case kGsubSingle: {
        const Hit hit = single(findSingle(call_, lookup, gid));
        position += hit.count;
        return hit;
    }
    case kGsubAlternate: {
        const Hit hit = single(findAlternate(call_, lookup, gid, alternate));
        position += hit.count;
        return hit;
    }
    case kGsubMultiple: {
        const auto sequence = findSequence(call_, lookup, gid);
        if (!sequence)
            return {};
        out.clear();
        for (const std::uint16_t other : *sequence)
            out.push_back(call_.glyph(other));
        ++position;
        return {true, out.size()};
    }
    case kGsubLigature: {
        const Hit hit = single(findLigature(call_, lookup, run, position, skipped_));
        if (hit.applies)
            listSkipped();
        return hit;
    }
    case kGsubContext:
    case kGsubChainContext: {
        skipped_.clear();
        const int count = context_.apply(lookup, run, position, skipped_);
        if (count == 0)
            return {};
        out.clear();
        for (int i = 0; i < context_.output().size(); ++i)
            out.push_back(context_.output()[i]);
        listSkipped();
        return {true, count};
    }
    default:
        return {};
    }
}

} // namespace KWFontService_NS
