#pragma once

#include "common/ByteView.h"
#include "layout/TTI_LayoutTable.h"
#include "support/LayoutSubTables.h"
#include "support/LayoutTables.h"

namespace KWTest {

inline KWCommonNS::ByteView viewOf(const Bytes& bytes) {
    return KWCommonNS::ByteView(bytes.data(), bytes.size());
}

/// What an object list starts with: its count, then the offset of each object from the list's
/// start, then the objects.
inline Bytes offsetList(Bytes head, const std::vector<Bytes>& objects) {
    head.u16(objects.size());
    std::size_t offset = head.size() + 2 * objects.size();
    Bytes tail;
    for (const Bytes& object : objects) {
        head.u16(offset + tail.size());
        tail.bytes(object);
    }
    return head.bytes(tail);
}

/// The same with a tag before each offset.
inline Bytes taggedList(Bytes head, const std::vector<std::pair<std::string, Bytes>>& objects) {
    head.u16(objects.size());
    std::size_t offset = head.size() + 6 * objects.size();
    Bytes tail;
    for (const auto& [tag, object] : objects) {
        head.tag(tag).u16(offset + tail.size());
        tail.bytes(object);
    }
    return head.bytes(tail);
}

inline Bytes lookupTable(int type, const std::vector<Bytes>& subtables, int flag = 0) {
    return offsetList(Bytes().u16(type).u16(flag), subtables);
}
/// A lookup that names 12000 times a chain context of coverages for the glyphs of a range in front
/// of one other, which calls lookup 1.
inline Bytes lookupOfOneContext(int type, std::uint16_t first, std::uint16_t last,
                                std::uint16_t next) {
    constexpr std::size_t kTimes = 12000;
    Bytes table = Bytes().u16(type).u16(0).u16(kTimes);
    for (std::size_t i = 0; i < kTimes; ++i)
        table.u16(6 + 2 * kTimes);
    const Bytes range = Bytes().u16s({2, 1, first, last, 0});
    const Bytes context = OffsetTable()
                              .u16s({3, 0, 1})
                              .offset(range)
                              .u16(1)
                              .offset(coverageTable({next}))
                              .u16s({1, 0, 1})
                              .build();
    return table.bytes(context);
}
inline Bytes lookupList(const std::vector<Bytes>& lookups) {
    return offsetList({}, lookups);
}

inline Bytes featureTable(const std::vector<std::uint16_t>& lookups) {
    return Bytes().u16(0).u16(lookups.size()).u16s(lookups);
}
inline Bytes featureList(const std::vector<std::pair<std::string, Bytes>>& features) {
    return taggedList({}, features);
}

inline Bytes langSysTable(const std::vector<std::uint16_t>& features, int required = 0xFFFF) {
    return Bytes().u16(0).u16(required).u16(features.size()).u16s(features);
}
/// An empty default language system has offset 0.
inline Bytes scriptTable(const Bytes& defaultLangSys,
                         const std::vector<std::pair<std::string, Bytes>>& languages = {}) {
    Bytes table = taggedList(Bytes().u16(0, "default"), languages);
    if (!defaultLangSys.empty())
        table.patchU16At("default", table.size()).bytes(defaultLangSys);
    return table;
}
inline Bytes scriptList(const std::vector<std::pair<std::string, Bytes>>& scripts) {
    return taggedList({}, scripts);
}

/// An extension subtable with the subtable it wraps.
inline Bytes extension(int wrappedType, const Bytes& wrapped, int format = 1) {
    return Bytes().u16(format).u16(wrappedType).u32(8).bytes(wrapped);
}

/// A layout table; an empty list has offset 0.
struct LayoutBytes {
    Bytes scripts{};
    Bytes features{};
    Bytes lookups{};

    Bytes build() const {
        Bytes table;
        table.u32(0x00010000).u16(0, "scripts").u16(0, "features").u16(0, "lookups");
        const auto add = [&table](const char* field, const Bytes& list) {
            if (!list.empty())
                table.patchU16At(field, table.size()).bytes(list);
        };
        add("scripts", scripts);
        add("features", features);
        add("lookups", lookups);
        return table;
    }
};

/// A layout table with one lookup of one subtable.
class OneSubTable {
public:
    using Kind = KWFontService_NS::TTI_LayoutTable::Kind;

    OneSubTable(Kind kind, int lookupType, const Bytes& subtable) {
        const LayoutBytes bytes{.lookups = lookupList({lookupTable(lookupType, {subtable})})};
        table_.read(bytes.build().vector(), kind);
    }
    static OneSubTable gsub(int lookupType, const Bytes& subtable) {
        return OneSubTable(Kind::Gsub, lookupType, subtable);
    }
    static OneSubTable gpos(int lookupType, const Bytes& subtable) {
        return OneSubTable(Kind::Gpos, lookupType, subtable);
    }

    const KWFontService_NS::TTI_Lookup& lookup() const { return *table_.lookup(0); }
    /// Null when the subtable is unknown or bad.
    const KWFontService_NS::TTI_SubTable* get() const { return lookup().subtables[0].get(); }
    /// Null when the subtable is of another class.
    template <class SubTable>
    const SubTable* as() const {
        return dynamic_cast<const SubTable*>(get());
    }

private:
    KWFontService_NS::TTI_LayoutTable table_;
};

/// The numbers of a list that is read in place.
inline std::vector<std::uint16_t> values(const KWFontService_NS::U16List& list) {
    return {list.begin(), list.end()};
}

using Records = std::vector<std::pair<std::uint16_t, std::uint16_t>>;
/// Lookup records as pairs of sequence index and lookup.
template <class RecordList>
Records pairs(const RecordList& list) {
    Records found;
    for (std::size_t i = 0; i < list.size(); ++i)
        found.emplace_back(list[i].sequenceIndex, list[i].lookupListIndex);
    return found;
}

inline constexpr unsigned short kNoGlyph = 0xFFFF;

} // namespace KWTest
