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

void shorten(SubstitutedRun run, int size) {
    run.glyphs.erase(size, run.glyphs.size());
    eraseFrom(run.words, size, static_cast<int>(run.words.size()));
    eraseFrom(run.mask, size, static_cast<int>(run.mask.size()));
}

/// A run that is made anew beside the one it comes from, since its length changes.
class GrowingRun {
public:
    /// Starts with the first `count` glyphs.
    GrowingRun(SubstitutedRun run, int count)
        : words_(run.words.begin(), run.words.begin() + count) {
        for (int i = 0; i < count; ++i)
            glyphs_.push_back(run.glyphs[i]);
    }

    std::size_t size() const { return words_.size(); }
    void push(const GlyphIDClassPair& glyph, int word) {
        glyphs_.push_back(glyph);
        words_.push_back(word);
        addWord(words_.back(), std::exchange(ownerless_, 0));
    }
    /// Leaves out a glyph; what it stood for goes to a neighbour, first of all to one before it.
    void drop(int word) {
        if (words_.empty())
            addWord(ownerless_, word);
        else
            addWord(words_[place(ownerAtOrBefore(words_, static_cast<int>(size()) - 1))], word);
    }
    void moveTo(SubstitutedRun run) {
        run.glyphs = std::move(glyphs_);
        run.words = std::move(words_);
        run.mask.resize(run.words.size());
    }

private:
    GlyphIDArray glyphs_;
    std::vector<int> words_;
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
    for (int i = 0; i < run.glyphs.size(); ++i) {
        const unsigned short gid = run.glyphs[i].getGlyphID();
        if (!lookup.mayApply(gid) || run.mask[place(i)] != 0)
            continue;
        const unsigned short other = substitute(gid);
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
    for (int i = 0; i < run.glyphs.size(); ++i) {
        const GlyphIDClassPair glyph = run.glyphs[i];
        const int word = run.words[place(i)];
        std::optional<U16List> sequence;
        if (lookup.mayApply(glyph.getGlyphID()) && run.mask[place(i)] == 0)
            sequence = findSequence(call_, lookup, glyph.getGlyphID());
        const std::size_t length = grown ? grown->size() : place(i);
        if (sequence &&
            !call_.mayGrowTo(length + sequence->size() + place(run.glyphs.size() - i - 1)))
            sequence.reset();
        if (!sequence) {
            if (grown)
                grown->push(glyph, word);
            continue;
        }
        changed = true;
        if (!grown && sequence->size() == 1) {
            run.glyphs[i] = call_.glyph((*sequence)[0]);
            continue;
        }
        if (!grown)
            grown.emplace(run, i);
        if (sequence->empty())
            grown->drop(word);
        for (std::size_t k = 0; k < sequence->size(); ++k)
            grown->push(call_.glyph((*sequence)[k]), k == 0 ? word : 0);
    }
    if (grown)
        grown->moveTo(run);
    return changed;
}

bool GsubEngine::replaceByLigatures(const TTI_Lookup& lookup, SubstitutedRun run) {
    bool changed = false;
    // What is done goes to `to`, which falls behind `from` as ligatures shorten the run. The glyphs
    // between the two are done with.
    int to = 0;
    int from = 0;
    while (from < run.glyphs.size()) {
        const unsigned short gid = run.glyphs[from].getGlyphID();
        int end = from;
        unsigned short ligature = FS_NO_GLYPH;
        if (lookup.mayApply(gid) && run.mask[place(from)] == 0)
            ligature = findLigature(call_, lookup, run.glyphs, end, skipped_);
        if (ligature == FS_NO_GLYPH) {
            if (to != from)
                copyGlyph(run, from, to);
            ++from;
            ++to;
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
    for (int i = 0; i < run.glyphs.size(); ++i) {
        const unsigned short gid = run.glyphs[i].getGlyphID();
        if (!lookup.mayApply(gid) || run.mask[place(i)] != 0)
            continue;
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
    std::rotate(glyphs.begin() + at + replaced, glyphs.end() - (count - replaced), glyphs.end());
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
