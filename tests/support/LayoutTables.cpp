#include "LayoutTables.h"

#include "BinarySearchFields.h"

#include <stdexcept>

namespace KWTest {

namespace {

/// `head`, then an offset from its start to each of the objects, then the objects.
Bytes withOffsets(Bytes head, const std::vector<Bytes>& objects) {
    std::size_t offset = head.size() + 2 * objects.size();
    Bytes tail;
    for (const Bytes& object : objects) {
        head.u16(offset + tail.size());
        tail.bytes(object);
    }
    return head.bytes(tail);
}

Bytes scriptList(std::string_view script) {
    return Bytes()
        .u16(1)
        .tag(script)
        .u16(8)      // to the Script table
        .u16(4)      // its default LangSys
        .u16(0)      // no other LangSys
        .u16(0)      // lookupOrderOffset
        .u16(0xFFFF) // no required feature
        .u16(1)
        .u16(0); // feature 0
}

Bytes featureList(std::string_view feature) {
    return Bytes()
        .u16(1)
        .tag(feature)
        .u16(8) // to the Feature table
        .u16(0) // no parameters
        .u16(1)
        .u16(0); // lookup 0
}

std::vector<std::uint16_t> sources(const std::vector<GlyphSubstitution>& pairs) {
    std::vector<std::uint16_t> glyphs;
    for (const GlyphSubstitution& pair : pairs)
        glyphs.push_back(pair.from);
    return glyphs;
}

std::uint16_t commonDelta(const std::vector<GlyphSubstitution>& pairs) {
    std::optional<std::uint16_t> delta;
    for (const GlyphSubstitution& pair : pairs) {
        const auto distance = static_cast<std::uint16_t>(pair.to - pair.from);
        if (delta.value_or(distance) != distance)
            throw std::invalid_argument("single substitution format 1 has one delta for all");
        delta = distance;
    }
    return delta.value_or(0);
}

} // namespace

Bytes coverageTable(const std::vector<std::uint16_t>& glyphs, int format) {
    if (format == 1)
        return Bytes().u16(1).u16(glyphs.size()).u16s(glyphs);

    std::vector<ClassRange> ranges; // the class is the coverage index of the first glyph
    for (std::size_t i = 0; i < glyphs.size(); ++i) {
        if (!ranges.empty() && ranges.back().end + 1 == glyphs[i])
            ranges.back().end = glyphs[i];
        else
            ranges.push_back({glyphs[i], glyphs[i], static_cast<std::uint16_t>(i)});
    }
    return classDefFormat2(ranges); // the same layout
}

Bytes SingleSubst::build() const {
    Bytes head;
    head.u16(format);
    const std::size_t coverageOffset = format == 1 ? 6 : 6 + 2 * pairs.size();
    head.u16(coverageOffset);
    if (format == 1) {
        head.u16(commonDelta(pairs));
    } else {
        head.u16(pairs.size());
        for (const GlyphSubstitution& pair : pairs)
            head.u16(pair.to);
    }
    return head.bytes(coverageTable(sources(pairs), coverageFormat));
}

SingleSubstGsub SingleSubstGsub::vert(std::vector<GlyphSubstitution> pairs, int format) {
    return {.subtables = {{.format = format, .pairs = std::move(pairs)}}};
}

Bytes SingleSubstGsub::build() const {
    std::vector<Bytes> built;
    for (const SingleSubst& subtable : subtables)
        built.push_back(subtable.build());
    const Bytes lookup = withOffsets(Bytes().u16(1).u16(0).u16(built.size()), built);
    return withOffsets(Bytes().u32(0x00010000), {scriptList(script), featureList(feature),
                                                 withOffsets(Bytes().u16(1), {lookup})});
}

Bytes Gdef::build() const {
    constexpr std::size_t kHeaderSize = 12;
    return Bytes()
        .u32(0x00010000)
        .u16(glyphClassDef.empty() ? 0 : kHeaderSize, "glyphClassDefOffset")
        .u16(0, "attachListOffset")
        .u16(0, "ligCaretListOffset")
        .u16(markAttachClassDef.empty() ? 0 : kHeaderSize + glyphClassDef.size(),
             "markAttachClassDefOffset")
        .bytes(glyphClassDef)
        .bytes(markAttachClassDef);
}

Bytes classDefFormat2(const std::vector<ClassRange>& ranges) {
    Bytes table;
    table.u16(2).u16(ranges.size());
    for (const ClassRange& range : ranges)
        table.u16(range.start).u16(range.end).u16(range.classValue);
    return table;
}

Bytes classDefFormat1(std::uint16_t start, const std::vector<std::uint16_t>& classes) {
    return Bytes().u16(1).u16(start).u16(classes.size()).u16s(classes);
}

Bytes MortSubtable::build() const {
    Bytes lookup;
    lookup.u16(lookupFormat);
    if (lookupFormat == 6) {
        lookup.u16(4).u16(nUnits.value_or(static_cast<std::uint16_t>(pairs.size())), "nUnits");
        writeBinarySearchFields(lookup, pairs.size(), 4);
        for (const GlyphSubstitution& pair : pairs)
            lookup.u16(pair.from).u16(pair.to);
        lookup.u16(0xFFFF).u16(0xFFFF); // the end mark that Apple's binary searches ask for
    }
    constexpr std::size_t kHeaderSize = 8;
    return Bytes()
        .u16(length.value_or(static_cast<std::uint16_t>(kHeaderSize + lookup.size())))
        .u16(coverage)
        .u32(subFeatureFlags)
        .bytes(lookup);
}

Bytes MortChain::build() const {
    Bytes content;
    for (std::uint16_t i = 0; i < featureCount; ++i) {
        content
            .u16(4)            // vertical substitution
            .u16(0)            // substitute vertical forms
            .u32(defaultFlags) // enable
            .u32(0xFFFFFFFFu); // disable
    }
    for (const MortSubtable& subtable : subtables)
        content.bytes(subtable.build());
    constexpr std::size_t kHeaderSize = 12;
    return Bytes()
        .u32(defaultFlags)
        .u32(chainLength.value_or(static_cast<std::uint32_t>(kHeaderSize + content.size())))
        .u16(featureCount)
        .u16(subtables.size())
        .bytes(content);
}

Mort Mort::vertical(std::vector<GlyphSubstitution> pairs) {
    return {.chains = {{.subtables = {{.pairs = std::move(pairs)}}}}};
}

Bytes Mort::build() const {
    Bytes table;
    table.u32(version).u32(nChains.value_or(static_cast<std::uint32_t>(chains.size())), "nChains");
    for (const MortChain& chain : chains)
        table.bytes(chain.build());
    return table;
}

} // namespace KWTest
