#pragma once

#include "layout/FS_GSUBGPOSInfo.h"
#include "layout/LayoutFixture.h"
#include "layout/TTI_Gdef.h"
#include "support/SfntBuilder.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/GlyphIDArray2.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace KWTest {

// Lookup types of GSUB and a lookup flag.
inline constexpr int kSingle = 1;
inline constexpr int kMultiple = 2;
inline constexpr int kAlternate = 3;
inline constexpr int kLigature = 4;
inline constexpr int kContext = 5;
inline constexpr int kChain = 6;
inline constexpr int kReverse = 8;
inline constexpr int kIgnoreMarksFlag = 8;

// Runs are spelt: the glyph id of a letter is its character code. Small letters are base glyphs,
// digits ligatures, capital letters marks and "+" a component; other glyphs have no class.

inline std::vector<std::uint16_t> spelt(std::string_view letters) {
    return {letters.begin(), letters.end()};
}

inline Bytes speltGdef(const Bytes& markAttachClasses = {}) {
    return Gdef{.glyphClassDef =
                    classDefFormat2({{'+', '+', 4}, {'0', '9', 2}, {'A', 'Z', 3}, {'a', 'z', 1}}),
                .markAttachClassDef = markAttachClasses}
        .build();
}

inline Bytes single(const std::vector<GlyphSubstitution>& pairs) {
    return SingleSubst{.pairs = pairs}.build();
}

/// Ligature glyphs and components, spelt: {"ffi", '3'}. Ascending by the first letter.
inline Bytes speltLigatures(const std::vector<std::pair<std::string, char>>& ligatures) {
    std::vector<std::pair<std::uint16_t, std::vector<LigatureBytes>>> sets;
    for (const auto& [components, glyph] : ligatures) {
        const auto first = static_cast<std::uint16_t>(components[0]);
        if (sets.empty() || sets.back().first != first)
            sets.push_back({first, {}});
        sets.back().second.push_back({.glyph = static_cast<std::uint16_t>(glyph),
                                      .components = spelt(components.substr(1))});
    }
    return ligatureSubst(sets);
}

/// Subtables of a ligature lookup: a and b have a ligature that is no glyph, a and c one that is 1.
inline std::vector<Bytes> noLigatureThenOne() {
    return {ligatureSubst({{'a', {{.glyph = 0xFFFF, .components = {'b'}}}}}),
            speltLigatures({{"ac", '1'}})};
}

/// Ranges of classes, one letter each: {{"ab", 1}, {"c", 2}}. Letters ascending.
inline Bytes speltClasses(const std::vector<std::pair<std::string, int>>& classes) {
    std::vector<ClassRange> ranges;
    for (const auto& [letters, number] : classes) {
        for (const std::uint16_t letter : spelt(letters))
            ranges.push_back({letter, letter, static_cast<std::uint16_t>(number)});
    }
    return classDefFormat2(ranges);
}

inline CoverageBytes speltCoverages(const std::vector<std::string>& coverages) {
    CoverageBytes lists;
    for (const std::string& letters : coverages)
        lists.push_back(spelt(letters));
    return lists;
}

/// What comes of a run, each glyph a letter and no glyph a full stop.
inline std::string letters(const KWFontService_NS::GlyphIDArray& run) {
    std::string text;
    for (const auto& glyph : run)
        text += glyph.hasGlyph() ? static_cast<char>(glyph.getGlyphID()) : '.';
    return text;
}

/// A font's GSUB of some lookups. Each is a feature of its own, "ft00", "ft01" and so on, and has
/// its place in the lookup order by its index.
class SpeltGsub {
public:
    using Array = KWFontService_NS::GlyphIDArray;
    using Array2 = KWFontService_NS::GlyphIDArray2;

    /// @param lookups  what `lookupTable` makes
    explicit SpeltGsub(const std::vector<Bytes>& lookups, const Bytes& gdef = speltGdef()) {
        gdef_.read(viewOf(gdef));
        std::vector<std::pair<std::string, Bytes>> features;
        std::vector<std::uint16_t> indices;
        for (std::size_t i = 0; i < lookups.size(); ++i) {
            features.emplace_back("ft0" + std::to_string(i), featureTable({featureIndex(i)}));
            indices.push_back(featureIndex(i));
        }
        const LayoutBytes bytes{.scripts =
                                    scriptList({{"latn", scriptTable(langSysTable(indices))}}),
                                .features = featureList(features),
                                .lookups = lookupList(lookups)};
        gsub_.read(bytes.build().vector(), KWFontService_NS::TTI_LayoutTable::Kind::Gsub);
        info_ = findLayout(tagValue("latn"), 0, &gdef_, gsub_, gpos_);
    }

    const KWFontService_NS::FS_GSUBGPOSInfo* info() const { return &info_; }

    /// The glyphs of a text with the classes that the font gives them.
    Array run(std::string_view text) const {
        Array glyphs;
        for (const std::uint16_t letter : spelt(text))
            glyphs.push_back(letter, gdef_.classOf(letter));
        return glyphs;
    }

    struct Result {
        bool changed = false;
        std::string text{};
        std::vector<int> words{};
        friend bool operator==(const Result&, const Result&) = default;
    };
    /// @param mask  a letter for each glyph that takes no part; others are blanks
    Result whole(std::string_view text, int lookup = 0, std::string_view mask = {},
                 int alternate = 1) const {
        Array2 in;
        in.glyphs() = run(text);
        for (const char masked : mask)
            in.words().push_back(masked == ' ' ? 0 : 1);
        Array2 out;
        const bool changed =
            KWFontService_NS::FS_FontInfo::processGSUB3(info(), lookup, in, out, alternate);
        return {changed, letters(out.glyphs()), out.words()};
    }

    struct At {
        int result = 0;
        int position = 0;
        std::string out{};
        std::string skipped{};
        friend bool operator==(const At&, const At&) = default;
    };
    /// The one-position call with "-" in both arrays before.
    At at(std::string_view text, int position, std::string_view feature = "ft00",
          int alternate = 1) const {
        Array out;
        out.push_back('-', KWFontService_NS::GlyphClassDef::None);
        Array skipped = out;
        const int result = KWFontService_NS::FS_FontInfo::processGSUB(
            info(), tagValue(feature), run(text), position, out, skipped, alternate);
        return {result, position, letters(out), letters(skipped)};
    }

private:
    static std::uint16_t featureIndex(std::size_t i) { return static_cast<std::uint16_t>(i); }

    KWFontService_NS::TTI_Gdef gdef_;
    KWFontService_NS::TTI_LayoutTable gsub_;
    KWFontService_NS::TTI_LayoutTable gpos_;
    KWFontService_NS::FS_GSUBGPOSInfo info_;
};

inline SpeltGsub one(int type, const Bytes& subtable, int flag = 0) {
    return SpeltGsub({lookupTable(type, {subtable}, flag)});
}

/// The word of a glyph that a ligature passed over while it stood at `index`.
constexpr int skippedAt(int index) {
    return index << 16 | 1;
}

inline void PrintTo(const SpeltGsub::Result& result, std::ostream* stream) {
    *stream << (result.changed ? "changed \"" : "same \"") << result.text << "\" words";
    for (const int word : result.words)
        *stream << ' ' << (word >> 16) << '|' << (word & 0xFFFF);
}
inline void PrintTo(const SpeltGsub::At& at, std::ostream* stream) {
    *stream << at.result << " at " << at.position << " \"" << at.out << "\" skipped \""
            << at.skipped << '"';
}

} // namespace KWTest
