#include "LayoutParser.h"

#include "support/SfntBuilder.h"

#include <string_view>

namespace KWTest::oracle {

namespace {

/// A place in a file, read from field by field. Offsets count from where the object starts.
class Reader {
public:
    explicit Reader(const Bytes& file, std::size_t start = 0)
        : file_(&file), start_(start), place_(start) {}

    int u16() {
        place_ += 2;
        return file_->u16At(place_ - 2);
    }
    int i16() {
        place_ += 2;
        return file_->i16At(place_ - 2);
    }
    std::uint32_t u32() {
        place_ += 4;
        return file_->u32At(place_ - 4);
    }
    Glyph glyph() { return static_cast<Glyph>(u16()); }
    Reader& skip(std::size_t bytes) {
        place_ += bytes;
        return *this;
    }

    Reader object(std::size_t offset) const { return Reader(*file_, start_ + offset); }
    Reader object16() { return object(static_cast<std::size_t>(u16())); }
    Reader object32() { return object(u32()); }
    /// Nothing at offset 0.
    std::optional<Reader> maybe16() {
        const int offset = u16();
        if (offset == 0)
            return std::nullopt;
        return object(static_cast<std::size_t>(offset));
    }

private:
    const Bytes* file_;
    std::size_t start_;
    std::size_t place_;
};

template <class Read>
auto list(int size, Read read) {
    std::vector<decltype(read())> items;
    items.reserve(static_cast<std::size_t>(size));
    for (int i = 0; i < size; ++i)
        items.push_back(read());
    return items;
}

std::vector<Glyph> glyphs(Reader& in, int size) {
    return list(size, [&] { return in.glyph(); });
}
std::vector<int> numbers(Reader& in, int size) {
    return list(size, [&] { return in.u16(); });
}
std::vector<Record> records(Reader& in, int size) {
    return list(size, [&] {
        const int sequence = in.u16();
        return Record{sequence, in.u16()};
    });
}

Coverage coverage(Reader in) {
    Coverage result;
    const int format = in.u16();
    const int size = in.u16();
    for (int i = 0; i < size; ++i) {
        const int first = in.u16();
        const int last = format == 1 ? first : in.u16();
        const int index = format == 1 ? i : in.u16();
        for (int glyph = first; glyph <= last; ++glyph)
            result.indices.emplace(static_cast<Glyph>(glyph), index + glyph - first);
    }
    return result;
}
std::vector<Coverage> coverages(Reader& in, int size) {
    return list(size, [&] { return coverage(in.object16()); });
}
std::vector<Coverage> coverages(Reader& in) {
    const int size = in.u16();
    return coverages(in, size);
}

ClassDef classDef(std::optional<Reader> table) {
    ClassDef result;
    if (!table)
        return result;
    Reader& in = *table;
    result.format = in.u16();
    if (result.format == 1) {
        int glyph = in.u16();
        for (const int value : numbers(in, in.u16()))
            result.classes.emplace(static_cast<Glyph>(glyph++), value);
        return result;
    }
    const int size = in.u16();
    for (int i = 0; i < size; ++i) {
        const int first = in.u16();
        const int last = in.u16();
        const int value = in.u16();
        for (int glyph = first; glyph <= last; ++glyph)
            result.classes.emplace(static_cast<Glyph>(glyph), value);
    }
    return result;
}

// --- contexts -----------------------------------------------------------------------------------

Rule rule(Reader in, bool chain) {
    Rule result;
    if (chain)
        result.backtrack = numbers(in, in.u16());
    const int inputSize = in.u16();
    const int recordSize = chain ? 0 : in.u16();
    result.input = numbers(in, inputSize - 1);
    if (chain)
        result.lookahead = numbers(in, in.u16());
    result.records = records(in, chain ? in.u16() : recordSize);
    return result;
}

RuleSets ruleSets(Reader& in, bool chain) {
    const int size = in.u16();
    return list(size, [&] {
        std::vector<Rule> rules;
        if (std::optional<Reader> set = in.maybe16()) {
            const int ruleSize = set->u16();
            rules = list(ruleSize, [&] { return rule(set->object16(), chain); });
        }
        return rules;
    });
}

SubTable context(Reader in, bool chain) {
    const int format = in.u16();
    if (format == 1) {
        Coverage covered = coverage(in.object16());
        return ContextGlyphs{chain, std::move(covered), ruleSets(in, chain)};
    }
    if (format == 2 && !chain) {
        ContextClasses result{.coverage = coverage(in.object16()),
                              .classes = classDef(in.maybe16())};
        result.sets = ruleSets(in, chain);
        return result;
    }
    if (format == 2) {
        ChainClasses result{.coverage = coverage(in.object16()),
                            .backtrack = classDef(in.maybe16()),
                            .input = classDef(in.maybe16()),
                            .lookahead = classDef(in.maybe16())};
        result.sets = ruleSets(in, chain);
        return result;
    }
    if (format == 3 && !chain) {
        const int inputSize = in.u16();
        const int recordSize = in.u16();
        ContextCoverages result{.input = coverages(in, inputSize)};
        result.records = records(in, recordSize);
        return result;
    }
    if (format == 3) {
        ChainCoverages result{
            .backtrack = coverages(in), .input = coverages(in), .lookahead = coverages(in)};
        result.records = records(in, in.u16());
        return result;
    }
    return Unknown{};
}

// --- GSUB ---------------------------------------------------------------------------------------

std::vector<std::vector<Glyph>> glyphLists(Reader& in) {
    const int size = in.u16();
    return list(size, [&] {
        Reader set = in.object16();
        return glyphs(set, set.u16());
    });
}

std::vector<Ligature> ligatureSet(Reader in) {
    const int size = in.u16();
    return list(size, [&] {
        Reader table = in.object16();
        Ligature ligature{.glyph = table.glyph()};
        ligature.rest = glyphs(table, table.u16() - 1);
        return ligature;
    });
}

SubTable single(Reader in) {
    const int format = in.u16();
    Coverage covered = coverage(in.object16());
    if (format == 1)
        return SingleDelta{std::move(covered), in.i16()};
    return SingleList{std::move(covered), glyphs(in, in.u16())};
}

SubTable substitution(int type, Reader in) {
    const int format = Reader(in).u16();
    if (type == 5 || type == 6)
        return context(in, type == 6);
    if (type == 1 && (format == 1 || format == 2))
        return single(in);
    if (format != 1)
        return Unknown{};
    Coverage covered = coverage(in.skip(2).object16());
    switch (type) {
    case 2:
        return Multiple{std::move(covered), glyphLists(in)};
    case 3:
        return Alternate{std::move(covered), glyphLists(in)};
    case 4: {
        const int size = in.u16();
        return Ligatures{std::move(covered),
                         list(size, [&] { return ligatureSet(in.object16()); })};
    }
    case 8: {
        ReverseChain result{
            .coverage = std::move(covered), .backtrack = coverages(in), .lookahead = coverages(in)};
        result.substitutes = glyphs(in, in.u16());
        return result;
    }
    default:
        return Unknown{};
    }
}

// --- GPOS ---------------------------------------------------------------------------------------

Value value(Reader& in, int format) {
    Value result;
    int* const fields[] = {&result.xPlacement, &result.yPlacement, &result.xAdvance,
                           &result.yAdvance};
    for (int bit = 0; bit < 8; ++bit) {
        if ((format & 1 << bit) == 0)
            continue;
        if (bit < 4)
            *fields[bit] = in.i16();
        else
            in.skip(2); // a device table
    }
    return result;
}

MaybeAnchor anchor(std::optional<Reader> table) {
    if (!table)
        return std::nullopt;
    const int format = table->u16();
    if (format < 1 || format > 3)
        return std::nullopt;
    const int x = table->i16();
    return Anchor{x, table->i16()};
}
AnchorRow anchorRow(Reader& in, int size) {
    return list(size, [&] { return anchor(in.maybe16()); });
}

std::vector<MarkAnchor> markArray(Reader in) {
    const int size = in.u16();
    return list(size, [&] {
        const int markClass = in.u16();
        return MarkAnchor{markClass, anchor(in.maybe16())};
    });
}

SubTable singlePos(Reader in) {
    SinglePos result{.format = in.u16(), .coverage = coverage(in.object16())};
    result.valueFormat = in.u16();
    const int size = result.format == 1 ? 1 : in.u16();
    result.values = list(size, [&] { return value(in, result.valueFormat); });
    return result;
}

SubTable pairPos(Reader in) {
    const int format = in.u16();
    Coverage covered = coverage(in.object16());
    const int format1 = in.u16();
    const int format2 = in.u16();
    if (format == 1) {
        PairGlyphs result{std::move(covered), format1, format2};
        const int size = in.u16();
        result.sets = list(size, [&] {
            Reader set = in.object16();
            const int pairs = set.u16();
            return list(pairs, [&] {
                Pair pair{.second = set.glyph()};
                pair.value1 = value(set, format1);
                pair.value2 = value(set, format2);
                return pair;
            });
        });
        return result;
    }
    PairClasses result{std::move(covered), format1, format2};
    result.classes1 = classDef(in.maybe16());
    result.classes2 = classDef(in.maybe16());
    const int count1 = in.u16();
    const int count2 = in.u16();
    result.matrix = list(count1, [&] {
        return list(count2, [&] {
            const Value first = value(in, format1);
            return std::pair(first, value(in, format2));
        });
    });
    return result;
}

SubTable cursive(Reader in) {
    Cursive result{.coverage = coverage(in.skip(2).object16())};
    const int size = in.u16();
    result.anchors = list(size, [&] {
        const MaybeAnchor entry = anchor(in.maybe16());
        return std::pair(entry, anchor(in.maybe16()));
    });
    return result;
}

SubTable markAttach(int type, Reader in) {
    MarkAttach result{
        .type = type, .marks = coverage(in.skip(2).object16()), .bases = coverage(in.object16())};
    result.classCount = in.u16();
    result.markAnchors = markArray(in.object16());
    Reader bases = in.object16();
    const int size = bases.u16();
    result.baseAnchors = list(size, [&] { return anchorRow(bases, result.classCount); });
    return result;
}

SubTable markLigature(Reader in) {
    MarkLigature result{.marks = coverage(in.skip(2).object16()),
                        .ligatures = coverage(in.object16())};
    result.classCount = in.u16();
    result.markAnchors = markArray(in.object16());
    Reader ligatures = in.object16();
    const int size = ligatures.u16();
    result.components = list(size, [&] {
        Reader ligature = ligatures.object16();
        const int components = ligature.u16();
        return list(components, [&] { return anchorRow(ligature, result.classCount); });
    });
    return result;
}

SubTable positioning(int type, Reader in) {
    const int format = Reader(in).u16();
    if (type == 7 || type == 8)
        return context(in, type == 8);
    if ((type == 1 || type == 2) && (format == 1 || format == 2))
        return type == 1 ? singlePos(in) : pairPos(in);
    if (format != 1)
        return Unknown{};
    switch (type) {
    case 3:
        return cursive(in);
    case 4:
    case 6:
        return markAttach(type, in);
    case 5:
        return markLigature(in);
    default:
        return Unknown{};
    }
}

// --- tables -------------------------------------------------------------------------------------

Lookup lookup(Reader in, Kind kind) {
    Lookup result{.type = in.u16(), .flag = in.u16()};
    const int extensionType = kind == Kind::Gsub ? 7 : 9;
    result.extension = result.type == extensionType;
    const int size = in.u16();
    for (int i = 0; i < size; ++i) {
        Reader table = in.object16();
        int type = result.type;
        if (result.extension) {
            Reader wrapper = table;
            type = wrapper.skip(2).u16();
            table = wrapper.object32();
        }
        result.subtables.push_back(kind == Kind::Gsub ? substitution(type, table)
                                                      : positioning(type, table));
        if (result.extension && i + 1 == size)
            result.type = type;
    }
    return result;
}

Layout layout(Reader in, Kind kind) {
    Layout result;
    in.skip(4);
    std::optional<Reader> scripts = in.maybe16();
    std::optional<Reader> features = in.maybe16();
    std::optional<Reader> lookups = in.maybe16();
    if (features) {
        const int size = features->u16();
        result.features = list(size, [&] {
            Feature feature{.tag = features->u32()};
            Reader table = features->object16();
            table.skip(2);
            feature.lookups = numbers(table, table.u16());
            return feature;
        });
    }
    if (lookups) {
        const int size = lookups->u16();
        result.lookups = list(size, [&] { return lookup(lookups->object16(), kind); });
    }
    const auto system = [](Reader table) {
        table.skip(4);
        return numbers(table, table.u16());
    };
    const int scriptSize = scripts ? scripts->u16() : 0;
    for (int i = 0; i < scriptSize; ++i) {
        std::map<Tag, LangSys>& languages = result.scripts[scripts->u32()];
        Reader script = scripts->object16();
        if (const std::optional<Reader> table = script.maybe16())
            languages[0] = system(*table);
        const int languageSize = script.u16();
        for (int k = 0; k < languageSize; ++k) {
            const Tag language = script.u32();
            languages[language] = system(script.object16());
        }
    }
    return result;
}

} // namespace

Font parseFont(const Bytes& file, std::size_t offset) {
    Font font;
    Reader directory(file, offset);
    directory.skip(4);
    const int tables = directory.u16();
    directory.skip(6);
    for (int i = 0; i < tables; ++i) {
        const Tag tag = directory.u32();
        Reader table(file, directory.skip(4).u32());
        directory.skip(4);
        if (tag == tagValue("GSUB")) {
            font.gsub = layout(table, Kind::Gsub);
        } else if (tag == tagValue("GPOS")) {
            font.gpos = layout(table, Kind::Gpos);
        } else if (tag == tagValue("GDEF")) {
            font.glyphClasses = classDef(table.skip(4).maybe16());
            font.markAttachClasses = classDef(table.skip(4).maybe16());
        }
    }
    return font;
}

} // namespace KWTest::oracle
