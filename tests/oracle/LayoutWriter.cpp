#include "LayoutWriter.h"

#include "layout/LayoutFixture.h"
#include "support/LayoutSubTables.h"
#include "support/LayoutTables.h"
#include "support/TestFont.h"

#include <string>

namespace KWTest::oracle {

namespace {

class Writer {
public:
    Writer(Kind kind, Rng& rng) : kind_(kind), rng_(&rng) {}

    Bytes operator()(const Unknown&) const { return Bytes().u16(9); }

    // --- GSUB -----------------------------------------------------------------------------------

    Bytes operator()(const SingleDelta& s) const {
        return OffsetTable().u16(1).offset(coverage(s.coverage)).u16(s.delta).build();
    }
    Bytes operator()(const SingleList& s) const {
        return OffsetTable()
            .u16(2)
            .offset(coverage(s.coverage))
            .u16(s.substitutes.size())
            .u16s(s.substitutes)
            .build();
    }
    Bytes operator()(const Multiple& s) const { return glyphLists(s.coverage, s.sequences); }
    Bytes operator()(const Alternate& s) const { return glyphLists(s.coverage, s.sets); }
    Bytes operator()(const Ligatures& s) const {
        std::vector<Bytes> sets;
        for (const std::vector<Ligature>& set : s.sets) {
            std::vector<Bytes> tables;
            for (const Ligature& ligature : set) {
                const auto components = static_cast<int>(ligature.rest.size()) + 1;
                tables.push_back(Bytes().u16(ligature.glyph).u16(components).u16s(ligature.rest));
            }
            sets.push_back(OffsetTable().counted(tables).build());
        }
        return OffsetTable().u16(1).offset(coverage(s.coverage)).counted(sets).build();
    }
    Bytes operator()(const ReverseChain& s) const {
        return OffsetTable()
            .u16(1)
            .offset(coverage(s.coverage))
            .counted(coverages(s.backtrack))
            .counted(coverages(s.lookahead))
            .u16(s.substitutes.size())
            .u16s(s.substitutes)
            .build();
    }

    // --- contexts -------------------------------------------------------------------------------

    Bytes operator()(const ContextGlyphs& s) const {
        return OffsetTable()
            .u16(1)
            .offset(coverage(s.coverage))
            .counted(ruleSets(s.sets, s.chain))
            .build();
    }
    Bytes operator()(const ContextClasses& s) const {
        return OffsetTable()
            .u16(2)
            .offset(coverage(s.coverage))
            .offset(classDef(s.classes))
            .counted(ruleSets(s.sets, false))
            .build();
    }
    Bytes operator()(const ContextCoverages& s) const {
        return OffsetTable()
            .u16(3)
            .u16(s.input.size())
            .u16(s.records.size())
            .offsets(coverages(s.input))
            .bytes(records(s.records))
            .build();
    }
    Bytes operator()(const ChainClasses& s) const {
        return OffsetTable()
            .u16(2)
            .offset(coverage(s.coverage))
            .offset(classDef(s.backtrack))
            .offset(classDef(s.input))
            .offset(classDef(s.lookahead))
            .counted(ruleSets(s.sets, true))
            .build();
    }
    Bytes operator()(const ChainCoverages& s) const {
        return OffsetTable()
            .u16(3)
            .counted(coverages(s.backtrack))
            .counted(coverages(s.input))
            .counted(coverages(s.lookahead))
            .u16(s.records.size())
            .bytes(records(s.records))
            .build();
    }

    // --- GPOS -----------------------------------------------------------------------------------

    Bytes operator()(const SinglePos& s) const {
        OffsetTable table;
        table.u16(s.format).offset(coverage(s.coverage)).u16(s.valueFormat);
        if (s.format == 2)
            table.u16(s.values.size());
        for (const Value& each : s.values)
            table.bytes(value(each, s.valueFormat));
        return table.build();
    }
    Bytes operator()(const PairGlyphs& s) const {
        std::vector<Bytes> sets;
        for (const std::vector<Pair>& set : s.sets) {
            Bytes table = Bytes().u16(set.size());
            for (const Pair& pair : set) {
                table.u16(pair.second)
                    .bytes(value(pair.value1, s.valueFormat1))
                    .bytes(value(pair.value2, s.valueFormat2));
            }
            sets.push_back(table);
        }
        return OffsetTable()
            .u16(1)
            .offset(coverage(s.coverage))
            .u16(s.valueFormat1)
            .u16(s.valueFormat2)
            .counted(sets)
            .build();
    }
    Bytes operator()(const PairClasses& s) const {
        OffsetTable table;
        table.u16(2)
            .offset(coverage(s.coverage))
            .u16(s.valueFormat1)
            .u16(s.valueFormat2)
            .offset(classDef(s.classes1))
            .offset(classDef(s.classes2))
            .u16(s.matrix.size())
            .u16(s.matrix.front().size());
        for (const auto& row : s.matrix) {
            for (const auto& [first, second] : row)
                table.bytes(value(first, s.valueFormat1)).bytes(value(second, s.valueFormat2));
        }
        return table.build();
    }
    Bytes operator()(const Cursive& s) const {
        OffsetTable table;
        table.u16(1).offset(coverage(s.coverage)).u16(s.anchors.size());
        for (const auto& [entry, exit] : s.anchors)
            table.offset(anchor(entry)).offset(anchor(exit));
        return table.build();
    }
    Bytes operator()(const MarkAttach& s) const {
        OffsetTable bases;
        bases.u16(s.baseAnchors.size());
        for (const AnchorRow& row : s.baseAnchors)
            bases.offsets(anchors(row));
        return OffsetTable()
            .u16(1)
            .offset(coverage(s.marks))
            .offset(coverage(s.bases))
            .u16(s.classCount)
            .offset(markArray(s.markAnchors))
            .offset(bases.build())
            .build();
    }
    Bytes operator()(const MarkLigature& s) const {
        std::vector<Bytes> ligatures;
        for (const std::vector<AnchorRow>& components : s.components) {
            OffsetTable table;
            table.u16(components.size());
            for (const AnchorRow& row : components)
                table.offsets(anchors(row));
            ligatures.push_back(table.build());
        }
        return OffsetTable()
            .u16(1)
            .offset(coverage(s.marks))
            .offset(coverage(s.ligatures))
            .u16(s.classCount)
            .offset(markArray(s.markAnchors))
            .offset(OffsetTable().counted(ligatures).build())
            .build();
    }

    // --- tables ---------------------------------------------------------------------------------

    static Bytes classDef(const ClassDef& classes) {
        if (classes.format == 0)
            return {};
        std::vector<ClassRange> ranges;
        std::vector<std::uint16_t> values;
        for (const auto& [glyph, number] : classes.classes) {
            const auto value = static_cast<std::uint16_t>(number);
            values.push_back(value);
            if (!ranges.empty() && ranges.back().end + 1 == glyph &&
                ranges.back().classValue == value)
                ranges.back().end = glyph;
            else
                ranges.push_back({glyph, glyph, value});
        }
        if (classes.format == 2)
            return classDefFormat2(ranges);
        return classDefFormat1(classes.classes.begin()->first, values);
    }

    Bytes layout(const Layout& layout) const {
        std::vector<std::pair<std::string, Bytes>> scripts;
        for (const auto& [script, languages] : layout.scripts) {
            Bytes standard;
            std::vector<std::pair<std::string, Bytes>> others;
            for (const auto& [language, system] : languages) {
                const Bytes table = langSysTable(shorts(system));
                if (language == 0)
                    standard = table;
                else
                    others.emplace_back(tagText(language), table);
            }
            scripts.emplace_back(tagText(script), scriptTable(standard, others));
        }
        std::vector<std::pair<std::string, Bytes>> features;
        for (const Feature& feature : layout.features)
            features.emplace_back(tagText(feature.tag), featureTable(shorts(feature.lookups)));
        std::vector<Bytes> lookups;
        for (const Lookup& each : layout.lookups)
            lookups.push_back(lookup(each));
        return LayoutBytes{scriptList(scripts), featureList(features), lookupList(lookups)}.build();
    }

private:
    static std::vector<std::uint16_t> shorts(const std::vector<int>& values) {
        return {values.begin(), values.end()};
    }
    static std::string tagText(Tag tag) {
        return {static_cast<char>(tag >> 24), static_cast<char>(tag >> 16 & 0xFF),
                static_cast<char>(tag >> 8 & 0xFF), static_cast<char>(tag & 0xFF)};
    }

    Bytes lookup(const Lookup& lookup) const {
        std::vector<Bytes> subtables;
        for (const SubTable& subtable : lookup.subtables) {
            const Bytes table = std::visit(*this, subtable);
            subtables.push_back(lookup.extension ? KWTest::extension(typeOf(subtable, kind_), table)
                                                 : table);
        }
        const int extensionType = kind_ == Kind::Gsub ? 7 : 9;
        return lookupTable(lookup.extension ? extensionType : lookup.type, subtables, lookup.flag);
    }

    Bytes coverage(const Coverage& coverage) const {
        std::vector<std::uint16_t> glyphs;
        for (const auto& [glyph, index] : coverage.indices)
            glyphs.push_back(glyph);
        return coverageTable(glyphs, rng_->chance(2) ? 2 : 1);
    }
    std::vector<Bytes> coverages(const std::vector<Coverage>& list) const {
        std::vector<Bytes> tables;
        tables.reserve(list.size());
        for (const Coverage& each : list)
            tables.push_back(coverage(each));
        return tables;
    }
    Bytes glyphLists(const Coverage& covered, const std::vector<std::vector<Glyph>>& lists) const {
        std::vector<Bytes> tables;
        tables.reserve(lists.size());
        for (const std::vector<Glyph>& glyphs : lists)
            tables.push_back(Bytes().u16(glyphs.size()).u16s(glyphs));
        return OffsetTable().u16(1).offset(coverage(covered)).counted(tables).build();
    }

    static Bytes records(const std::vector<Record>& records) {
        Bytes bytes;
        for (const Record& record : records)
            bytes.u16(record.sequence).u16(record.lookup);
        return bytes;
    }
    static std::vector<Bytes> ruleSets(const RuleSets& sets, bool chain) {
        std::vector<Bytes> tables;
        for (const std::vector<Rule>& set : sets) {
            std::vector<Bytes> rules;
            for (const Rule& rule : set) {
                RuleBytes bytes{shorts(rule.backtrack), shorts(rule.input), shorts(rule.lookahead)};
                for (const Record& record : rule.records) {
                    bytes.records.emplace_back(static_cast<std::uint16_t>(record.sequence),
                                               static_cast<std::uint16_t>(record.lookup));
                }
                rules.push_back(chain ? bytes.chain() : bytes.context());
            }
            tables.push_back(set.empty() ? Bytes() : OffsetTable().counted(rules).build());
        }
        return tables;
    }

    /// The fields of a device are offsets of 0.
    static Bytes value(const Value& value, int format) {
        Bytes bytes;
        const int fields[] = {value.xPlacement, value.yPlacement, value.xAdvance, value.yAdvance};
        for (int bit = 0; bit < 8; ++bit) {
            if ((format & 1 << bit) != 0)
                bytes.u16(bit < 4 ? fields[bit] : 0);
        }
        return bytes;
    }
    Bytes anchor(const MaybeAnchor& anchor) const {
        if (!anchor)
            return {};
        switch (rng_->below(3)) {
        case 0:
            return anchorTable(anchor->x, anchor->y);
        case 1:
            return anchorFormat2(anchor->x, anchor->y, 3);
        default:
            return anchorFormat3(anchor->x, anchor->y, deviceTable(11, 14, 1, {0x5400}), {});
        }
    }
    std::vector<Bytes> anchors(const AnchorRow& row) const {
        std::vector<Bytes> tables;
        tables.reserve(row.size());
        for (const MaybeAnchor& each : row)
            tables.push_back(anchor(each));
        return tables;
    }
    Bytes markArray(const std::vector<MarkAnchor>& marks) const {
        OffsetTable table;
        table.u16(marks.size());
        for (const MarkAnchor& mark : marks)
            table.u16(mark.markClass).offset(anchor(mark.anchor));
        return table.build();
    }

    Kind kind_;
    Rng* rng_;
};

} // namespace

Bytes writeFont(const Font& font, Rng& rng) {
    TestFont file = TestFont::latin();
    const Gdef gdef{Writer::classDef(font.glyphClasses), Writer::classDef(font.markAttachClasses)};
    if (!gdef.glyphClassDef.empty() || !gdef.markAttachClassDef.empty())
        file.with("GDEF", gdef);
    if (!font.gsub.lookups.empty())
        file.with("GSUB", Writer(Kind::Gsub, rng).layout(font.gsub));
    if (!font.gpos.lookups.empty())
        file.with("GPOS", Writer(Kind::Gpos, rng).layout(font.gpos));
    return file.build();
}

} // namespace KWTest::oracle
