#include "GlyphOrigins.h"

#include "ArabicJoining.h"

#include <algorithm>
#include <cstddef>

namespace typeset {

using namespace KWFontService_NS;

namespace {

using Positions = std::vector<GlyphIDPosition>;

bool isMark(const GlyphIDPosition& glyph) {
    return glyph.getGlyphClassDef() == GlyphClassDef::Mark;
}

int componentsOf(const GlyphIDPosition& glyph) {
    return std::max(1, glyph.getCompInfo());
}

/// A context counts all its glyphs for its first one. Where as many came out as went in, let each
/// stand for one.
void spreadContexts(GlyphIDArray2& run) {
    std::vector<int>& words = run.words();
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::size_t end = i + 1;
        while (end < words.size() && words[end] == 0)
            ++end;
        if (words[i] > 1 && static_cast<std::size_t>(words[i]) == end - i)
            std::fill(words.begin() + static_cast<std::ptrdiff_t>(i),
                      words.begin() + static_cast<std::ptrdiff_t>(end), 1);
    }
}

/// A glyph in the place of another, or of several.
GlyphIDPosition replaced(const GlyphIDPosition& old, const GlyphIDClassPair& glyph) {
    GlyphIDPosition position = old;
    position.setGlyph2(glyph, 0);
    position.setSkipInfo(old.getSkipInfo());
    position.setCompInfo(old.getCompInfo());
    return position;
}

/// One glyph of the run after, and what stood in its place before.
class Origin {
public:
    Origin(const Positions& before, std::size_t from) : before_(before), from_(from) {}

    /// @param index    of the glyph in `after`
    /// @param skipped  how many marks behind it a ligature passed over
    void take(const GlyphIDArray2& after, int index, int skipped, Positions& result) const;

private:
    /// Where the marks behind the ligature stood, counted from it. Their words have the index in
    /// the run as it was when the ligature was made, at which time all before it was done.
    std::vector<std::size_t> placesOf(const GlyphIDArray2& after, int index, int skipped,
                                      std::size_t count) const;

    const Positions& before_;
    std::size_t from_;
};

std::vector<std::size_t> Origin::placesOf(const GlyphIDArray2& after, int index, int skipped,
                                          std::size_t count) const {
    std::vector<std::size_t> places;
    for (int i = index + 1; i <= index + skipped; ++i) {
        const int place = int{after.skipInfo(i)} - index;
        const auto least = places.empty() ? 1 : static_cast<int>(places.back()) + 1;
        const int most = static_cast<int>(count) - (index + skipped - i) - 1;
        // Lookups that were applied to their own result leave no such index.
        places.push_back(static_cast<std::size_t>(place < least || place > most ? most : place));
    }
    return places;
}

void Origin::take(const GlyphIDArray2& after, int index, int skipped, Positions& result) const {
    const std::size_t count = std::min<std::size_t>(
        after.ligaInfo(index) + static_cast<std::size_t>(skipped), before_.size() - from_);
    const std::vector<std::size_t> places = placesOf(after, index, skipped, count);
    GlyphIDPosition whole = replaced(before_[from_], after[index]);
    Positions marks;
    int components = componentsOf(before_[from_]);
    int before = 0; // components before the last part of the ligature
    for (std::size_t i = 1; i < count; ++i) {
        const GlyphIDPosition& part = before_[from_ + i];
        if (marks.size() < places.size() && places[marks.size()] == i) {
            const int mark = index + 1 + static_cast<int>(marks.size());
            marks.push_back(replaced(part, after[mark]));
            // A mark of a ligature that became a part keeps its place in that.
            marks.back().setSkipInfo(part.getSkipInfo() > 0 ? before + part.getSkipInfo()
                                                            : components);
        } else {
            whole.addCorrespondLength(part.getCorrespondLength());
            whole.setDecompositionType(
                formOfLigature(whole.getDecompositionType(), part.getDecompositionType()));
            before = components;
            components += componentsOf(part);
            whole.setCompInfo(components);
        }
    }
    for (int i = static_cast<int>(marks.size()); i < skipped; ++i)
        marks.push_back(replaced(GlyphIDPosition(), after[index + 1 + i]));
    result.push_back(whole);
    result.insert(result.end(), marks.begin(), marks.end());
}

} // namespace

Positions followSubstitution(const Positions& before, GlyphIDArray2 after) {
    spreadContexts(after);
    Positions result;
    result.reserve(static_cast<std::size_t>(after.size()));
    std::size_t from = 0; // what is not yet accounted for
    for (int i = 0; i < after.size();) {
        if (after.ligaInfo(i) == 0 || from == before.size()) {
            // One more glyph for the characters of the one before.
            GlyphIDPosition more = result.empty() ? GlyphIDPosition() : result.back();
            more.setGlyph2(after[i], 0);
            more.clrLen();
            result.push_back(more);
            ++i;
            continue;
        }
        int skipped = 0;
        while (i + 1 + skipped < after.size() && after.skipInfo(i + 1 + skipped) != 0)
            ++skipped;
        const std::size_t count = after.ligaInfo(i) + static_cast<std::size_t>(skipped);
        Origin(before, from).take(after, i, skipped, result);
        from = std::min(before.size(), from + count);
        i += 1 + skipped;
    }
    // Glyphs that were deleted leave their characters.
    for (; from < before.size() && !result.empty(); ++from)
        result.back().addCorrespondLength(before[from].getCorrespondLength());
    return result;
}

GlyphIDArray2 withoutMarks(const Positions& glyphs) {
    Positions letters = glyphs;
    for (GlyphIDPosition& glyph : letters) {
        if (isMark(glyph))
            glyph.ignoreGlyph();
    }
    GlyphIDArray2 run;
    run.readGIDs(letters, true);
    return run;
}

GlyphIDArray2 withMarks(const Positions& before, GlyphIDArray2 letters) {
    spreadContexts(letters);
    GlyphIDArray2 run;
    const auto add = [&](const GlyphIDClassPair& glyph, int word) {
        run.push_back(glyph);
        run.words().push_back(word);
    };
    std::size_t from = 0;
    const auto addMarks = [&] {
        for (; from < before.size() && isMark(before[from]); ++from)
            add(before[from].getGlyphIDClassPair(), 1);
    };
    addMarks();
    for (int i = 0; i < letters.size(); ++i) {
        const int first = run.size();
        const std::size_t start = from;
        const int count = letters.ligaInfo(i);
        add(letters[i], count);
        for (int part = 0; part < count && from < before.size(); ++part, ++from) {
            // Marks before this part stay behind the ligature and remember their place.
            for (; from < before.size() && isMark(before[from]); ++from)
                add(before[from].getGlyphIDClassPair(),
                    (first + static_cast<int>(from - start)) << 16 | 1);
        }
        // Further glyphs for the same letter come before its marks.
        if (i + 1 == letters.size() || letters.ligaInfo(i + 1) != 0)
            addMarks();
    }
    return run;
}

void dropEmpty(Positions& glyphs) {
    int pending = 0; // characters without a glyph before them
    std::size_t kept = 0;
    for (const GlyphIDPosition& glyph : glyphs) {
        if (glyph.hasGlyph()) {
            glyphs[kept] = glyph;
            glyphs[kept].addCorrespondLength(pending);
            pending = 0;
            ++kept;
        } else if (kept > 0) {
            glyphs[kept - 1].addCorrespondLength(glyph.getCorrespondLength());
        } else {
            pending += glyph.getCorrespondLength();
        }
    }
    glyphs.resize(kept);
}

} // namespace typeset
