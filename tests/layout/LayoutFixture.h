#pragma once

#include "common/ByteView.h"
#include "layout/LayoutBudget.h"
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

inline constexpr unsigned short kNoGlyph = 0xFFFF;

} // namespace KWTest
