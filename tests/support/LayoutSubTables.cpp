#include "LayoutSubTables.h"

namespace KWTest {

namespace {

using Records = std::vector<std::pair<std::uint16_t, std::uint16_t>>;

Bytes recordBytes(const Records& records) {
    Bytes bytes;
    for (const auto& [sequenceIndex, lookup] : records)
        bytes.u16(sequenceIndex).u16(lookup);
    return bytes;
}

Bytes counted(const std::vector<std::uint16_t>& values) {
    return Bytes().u16(values.size()).u16s(values);
}

Bytes valueBytes(const ValueBytes& value) {
    Bytes bytes;
    for (const int field : value)
        bytes.u16(field);
    return bytes;
}

std::vector<Bytes> coverages(const CoverageBytes& glyphs) {
    std::vector<Bytes> tables;
    for (const std::vector<std::uint16_t>& list : glyphs)
        tables.push_back(coverageTable(list));
    return tables;
}

std::vector<Bytes> ruleSetTables(const RuleSetBytes& sets, Bytes (RuleBytes::*build)() const) {
    std::vector<Bytes> tables;
    for (const std::vector<RuleBytes>& set : sets) {
        std::vector<Bytes> rules;
        for (const RuleBytes& rule : set)
            rules.push_back((rule.*build)());
        tables.push_back(set.empty() ? Bytes() : OffsetTable().counted(rules).build());
    }
    return tables;
}

/// The glyphs of records that each have one.
template <class Record>
Bytes coverageOf(const std::vector<Record>& records) {
    std::vector<std::uint16_t> glyphs;
    for (const Record& record : records) {
        if constexpr (requires { record.glyph; })
            glyphs.push_back(record.glyph);
        else if constexpr (requires { record.from; })
            glyphs.push_back(record.from);
        else
            glyphs.push_back(record.first);
    }
    return coverageTable(glyphs);
}

Bytes markArray(const std::vector<MarkBytes>& marks) {
    OffsetTable table;
    table.u16(marks.size());
    for (const MarkBytes& mark : marks)
        table.u16(mark.markClass).offset(mark.anchor);
    return table.build();
}

} // namespace

OffsetTable& OffsetTable::offset(const Bytes& object) {
    if (!object.empty())
        objects_.push_back({head_.size(), object});
    head_.u16(0);
    return *this;
}

OffsetTable& OffsetTable::offsets(const std::vector<Bytes>& objects) {
    for (const Bytes& object : objects)
        offset(object);
    return *this;
}

OffsetTable& OffsetTable::counted(const std::vector<Bytes>& objects) {
    return u16(objects.size()).offsets(objects);
}

Bytes OffsetTable::build() const {
    Bytes table = head_;
    for (const Object& object : objects_)
        table.patchU16At(object.field, table.size()).bytes(object.bytes);
    return table;
}

Bytes glyphSets(const std::vector<std::pair<std::uint16_t, std::vector<std::uint16_t>>>& sets,
                int coverageFormat) {
    std::vector<std::uint16_t> glyphs;
    std::vector<Bytes> tables;
    for (const auto& [glyph, set] : sets) {
        glyphs.push_back(glyph);
        tables.push_back(counted(set));
    }
    return OffsetTable()
        .u16(1)
        .offset(coverageTable(glyphs, coverageFormat))
        .counted(tables)
        .build();
}

Bytes LigatureBytes::build() const {
    return Bytes().u16(glyph).u16(components.size() + 1).u16s(components);
}

Bytes ligatureSubst(
    const std::vector<std::pair<std::uint16_t, std::vector<LigatureBytes>>>& ligatureSets) {
    std::vector<Bytes> sets;
    for (const auto& [glyph, ligatures] : ligatureSets) {
        std::vector<Bytes> tables;
        for (const LigatureBytes& ligature : ligatures)
            tables.push_back(ligature.build());
        sets.push_back(OffsetTable().counted(tables).build());
    }
    return OffsetTable().u16(1).offset(coverageOf(ligatureSets)).counted(sets).build();
}

Bytes RuleBytes::context() const {
    return Bytes()
        .u16(input.size() + 1)
        .u16(records.size())
        .u16s(input)
        .bytes(recordBytes(records));
}

Bytes RuleBytes::chain() const {
    return Bytes()
        .bytes(counted(backtrack))
        .u16(input.size() + 1)
        .u16s(input)
        .bytes(counted(lookahead))
        .u16(records.size())
        .bytes(recordBytes(records));
}

Bytes contextFormat1(const std::vector<std::uint16_t>& glyphs, const RuleSetBytes& ruleSets) {
    return OffsetTable()
        .u16(1)
        .offset(coverageTable(glyphs))
        .counted(ruleSetTables(ruleSets, &RuleBytes::context))
        .build();
}

Bytes contextFormat2(const std::vector<std::uint16_t>& glyphs, const Bytes& classDef,
                     const RuleSetBytes& classSets) {
    return OffsetTable()
        .u16(2)
        .offset(coverageTable(glyphs))
        .offset(classDef)
        .counted(ruleSetTables(classSets, &RuleBytes::context))
        .build();
}

Bytes contextFormat3(const CoverageBytes& input, const Records& records) {
    return OffsetTable()
        .u16(3)
        .u16(input.size())
        .u16(records.size())
        .offsets(coverages(input))
        .bytes(recordBytes(records))
        .build();
}

Bytes chainContextFormat1(const std::vector<std::uint16_t>& glyphs, const RuleSetBytes& ruleSets) {
    return OffsetTable()
        .u16(1)
        .offset(coverageTable(glyphs))
        .counted(ruleSetTables(ruleSets, &RuleBytes::chain))
        .build();
}

Bytes chainContextFormat2(const std::vector<std::uint16_t>& glyphs, const Bytes& backtrackClasses,
                          const Bytes& inputClasses, const Bytes& lookaheadClasses,
                          const RuleSetBytes& classSets) {
    return OffsetTable()
        .u16(2)
        .offset(coverageTable(glyphs))
        .offset(backtrackClasses)
        .offset(inputClasses)
        .offset(lookaheadClasses)
        .counted(ruleSetTables(classSets, &RuleBytes::chain))
        .build();
}

Bytes chainContextFormat3(const CoverageBytes& backtrack, const CoverageBytes& input,
                          const CoverageBytes& lookahead, const Records& records) {
    return OffsetTable()
        .u16(3)
        .counted(coverages(backtrack))
        .counted(coverages(input))
        .counted(coverages(lookahead))
        .u16(records.size())
        .bytes(recordBytes(records))
        .build();
}

Bytes reverseChaining(const std::vector<GlyphSubstitution>& pairs, const CoverageBytes& backtrack,
                      const CoverageBytes& lookahead) {
    OffsetTable table;
    table.u16(1)
        .offset(coverageOf(pairs))
        .counted(coverages(backtrack))
        .counted(coverages(lookahead))
        .u16(pairs.size());
    for (const GlyphSubstitution& pair : pairs)
        table.u16(pair.to);
    return table.build();
}

Bytes deviceTable(int startSize, int endSize, int deltaFormat,
                  const std::vector<std::uint16_t>& words) {
    return Bytes().u16(startSize).u16(endSize).u16(deltaFormat).u16s(words);
}

Bytes anchorTable(int x, int y) {
    return Bytes().u16(1).u16(x).u16(y);
}

Bytes anchorFormat2(int x, int y, int anchorPoint) {
    return Bytes().u16(2).u16(x).u16(y).u16(anchorPoint);
}

Bytes anchorFormat3(int x, int y, const Bytes& xDevice, const Bytes& yDevice) {
    return OffsetTable().u16(3).u16(x).u16(y).offset(xDevice).offset(yDevice).build();
}

Bytes singlePosFormat1(const std::vector<std::uint16_t>& glyphs, int valueFormat,
                       const ValueBytes& value) {
    return OffsetTable()
        .u16(1)
        .offset(coverageTable(glyphs))
        .u16(valueFormat)
        .bytes(valueBytes(value))
        .build();
}

Bytes singlePosFormat2(const std::vector<std::uint16_t>& glyphs, int valueFormat,
                       const std::vector<ValueBytes>& values) {
    OffsetTable table;
    table.u16(2).offset(coverageTable(glyphs)).u16(valueFormat).u16(values.size());
    for (const ValueBytes& value : values)
        table.bytes(valueBytes(value));
    return table.build();
}

Bytes pairSet(const std::vector<PairBytes>& pairs) {
    Bytes table;
    table.u16(pairs.size());
    for (const PairBytes& pair : pairs)
        table.u16(pair.second).bytes(valueBytes(pair.value1)).bytes(valueBytes(pair.value2));
    return table;
}

Bytes pairPosFormat1(int valueFormat1, int valueFormat2,
                     const std::vector<std::pair<std::uint16_t, std::vector<PairBytes>>>& sets) {
    std::vector<Bytes> tables;
    for (const auto& [glyph, pairs] : sets)
        tables.push_back(pairSet(pairs));
    return OffsetTable()
        .u16(1)
        .offset(coverageOf(sets))
        .u16(valueFormat1)
        .u16(valueFormat2)
        .counted(tables)
        .build();
}

Bytes pairPosFormat2(const std::vector<std::uint16_t>& glyphs, int valueFormat1, int valueFormat2,
                     const Bytes& classDef1, const Bytes& classDef2, int class1Count,
                     int class2Count, const ValueBytes& matrix) {
    return OffsetTable()
        .u16(2)
        .offset(coverageTable(glyphs))
        .u16(valueFormat1)
        .u16(valueFormat2)
        .offset(classDef1)
        .offset(classDef2)
        .u16(class1Count)
        .u16(class2Count)
        .bytes(valueBytes(matrix))
        .build();
}

Bytes cursivePos(const std::vector<CursiveBytes>& glyphs) {
    OffsetTable table;
    table.u16(1).offset(coverageOf(glyphs)).u16(glyphs.size());
    for (const CursiveBytes& glyph : glyphs)
        table.offset(glyph.entry).offset(glyph.exit);
    return table.build();
}

Bytes markBasePos(const std::vector<MarkBytes>& marks, const std::vector<BaseBytes>& bases,
                  int classCount) {
    OffsetTable baseArray;
    baseArray.u16(bases.size());
    for (const BaseBytes& base : bases)
        baseArray.offsets(base.anchors);
    return OffsetTable()
        .u16(1)
        .offset(coverageOf(marks))
        .offset(coverageOf(bases))
        .u16(classCount)
        .offset(markArray(marks))
        .offset(baseArray.build())
        .build();
}

Bytes markLigPos(const std::vector<MarkBytes>& marks,
                 const std::vector<LigatureAnchorBytes>& ligatures, int classCount) {
    std::vector<Bytes> tables;
    for (const LigatureAnchorBytes& ligature : ligatures) {
        OffsetTable table;
        table.u16(ligature.components.size());
        for (const std::vector<Bytes>& anchors : ligature.components)
            table.offsets(anchors);
        tables.push_back(table.build());
    }
    return OffsetTable()
        .u16(1)
        .offset(coverageOf(marks))
        .offset(coverageOf(ligatures))
        .u16(classCount)
        .offset(markArray(marks))
        .offset(OffsetTable().counted(tables).build())
        .build();
}

} // namespace KWTest
