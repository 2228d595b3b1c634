// What a CFF font leaves in its file.

#include "cff/Type1CMap.h"
#include "common/KWLimits.h"

#include <algorithm>
#include <map>
#include <utility>

namespace KWFontService_NS {

namespace {

std::uint32_t offsetIn(const KWValue& dict, KWName key) {
    return static_cast<std::uint32_t>(dict.getNamedItem(key).getIntegerValue());
}

/// Where the Private DICT lies that a Top or Font DICT names.
struct PrivatePlace {
    std::uint32_t size = 0;
    std::uint32_t offset = 0;

    static std::optional<PrivatePlace> in(const KWValue& dict) {
        const KWValue& operands = dict.getNamedItem(cffKey(FS_Word::Private));
        if (!operands.isCompound())
            return std::nullopt;
        return PrivatePlace{offsetIn(operands, cffKey(1)), offsetIn(operands, cffKey(2))};
    }
    friend auto operator<=>(const PrivatePlace&, const PrivatePlace&) = default;
};

/// Where the Local Subr INDEX of a Private DICT lies; nothing when it has none.
std::optional<std::uint64_t> localSubrsAt(const PrivatePlace& place, const KWValue& privateDict) {
    const int subrs = privateDict.getNamedItem(cffKey(FS_Word::Subrs)).getIntegerValue();
    if (subrs == 0)
        return std::nullopt;
    // A negative distance leads to before the Private DICT, or nowhere.
    const std::int64_t at = std::int64_t{place.offset} + subrs;
    return static_cast<std::uint64_t>(std::max<std::int64_t>(at, 0));
}

/// Reads the Private DICTs and subrs of Font DICTs, each place once.
///
/// Places that differ do not overlap in an honest font. Where they do, a small file could unfold to
/// gigabytes; the bytes read are therefore held against the size of the table.
class PrivateReader {
public:
    explicit PrivateReader(CFFStream& table) : table_(table), left_(table.size()) {}

    bool read(const PrivatePlace& place, CFFFontDict& out) {
        auto [known, isNew] = privates_.try_emplace(place);
        if (isNew && (!charge(place.size) ||
                      !Type1CMap::readPrivateDict(table_, place.offset, place.size, known->second)))
            return false;
        out.privateDict = known->second;
        const auto at = localSubrsAt(place, out.privateDict);
        return !at || readSubrs(*at, out.localSubrs);
    }
    bool charge(std::size_t count) {
        if (count > left_)
            return false;
        left_ -= count;
        return true;
    }

private:
    bool readSubrs(std::uint64_t at, std::shared_ptr<const CFFIndex>& out) {
        auto& known = subrs_[at];
        if (!known) {
            auto index = at != 0 ? CFFIndex::read(table_, at) : std::nullopt;
            if (!index || !charge(index->byteSize()))
                return false;
            known = std::make_shared<const CFFIndex>(std::move(*index));
        }
        out = known;
        return true;
    }

    CFFStream& table_;
    std::size_t left_;
    std::map<PrivatePlace, KWValue> privates_;
    std::map<std::uint64_t, std::shared_ptr<const CFFIndex>> subrs_;
};

} // namespace

bool Type1CMap::readGlobalSubrs(CFFStream& table, CFFIndex& subrs) {
    std::uint64_t at = kNameIndexAt;
    constexpr int kIndexesBefore = 3; // names, Top DICTs, strings
    for (int i = 0; i < kIndexesBefore; ++i) {
        const auto head = CFFIndexHead::read(table, at);
        if (!head)
            return false;
        at = head->end();
    }
    auto index = CFFIndex::read(table, at);
    if (!index)
        return false;
    subrs = std::move(*index);
    return true;
}

bool Type1CMap::readIndexAt(CFFStream& table, std::uint32_t offset, CFFIndexHead& head) {
    auto found = offset != 0 ? CFFIndexHead::read(table, offset) : std::nullopt;
    if (!found)
        return false;
    head = std::move(*found);
    return true;
}

bool Type1CMap::readCharString(CFFStream& table, const CFFIndexHead& head, std::size_t glyph,
                               std::vector<std::uint8_t>& charString) {
    const auto item = head.item(glyph);
    return item && table.read(item->offset, item->length, charString);
}

bool Type1CMap::readPrivateDict(CFFStream& table, std::uint32_t offset, std::uint32_t size,
                                KWValue& dict) {
    dict = KWValue();
    std::vector<std::uint8_t> bytes;
    if (size == 0 || !table.read(offset, size, bytes))
        return false;
    dict = readCFFDict(ByteView(bytes.data(), bytes.size()), privateDictRows());
    return true;
}

bool Type1CMap::readLocalSubrs(CFFStream& table, KWValue& privateDict, CFFIndex& subrs) const {
    subrs = CFFIndex();
    const auto place = PrivatePlace::in(topDict);
    if (!place || !readPrivateDict(table, place->offset, place->size, privateDict))
        return false;
    const auto at = localSubrsAt(*place, privateDict);
    if (!at)
        return true;
    auto index = *at != 0 ? CFFIndex::read(table, *at) : std::nullopt;
    if (!index)
        return false;
    subrs = std::move(*index);
    return true;
}

bool Type1CMap::readFDArray(CFFStream& table, std::vector<CFFFontDict>& fontDicts) const {
    fontDicts.clear();
    const std::uint32_t offset = topOffset(FS_Word::FDArray);
    const auto items = offset != 0 ? CFFIndex::read(table, offset) : std::nullopt;
    if (!items || items->size() > KWCommonNS::kMaxFontDicts)
        return false;
    static const auto kNoSubrs = std::make_shared<const CFFIndex>();
    PrivateReader reader(table);
    for (std::size_t i = 0; i < items->size(); ++i) {
        const ByteView item = (*items)[i];
        CFFFontDict& fontDict = fontDicts.emplace_back();
        fontDict.localSubrs = kNoSubrs;
        if (!reader.charge(item.size()))
            return false;
        fontDict.dict = readCFFDict(item, fontDictRows());
        const auto place = PrivatePlace::in(fontDict.dict);
        if (place && !reader.read(*place, fontDict))
            return false;
    }
    return true;
}

bool Type1CMap::readFontDicts(CFFStream& table, std::vector<CFFFontDict>& fontDicts) const {
    if (isCID)
        return readFDArray(table, fontDicts);
    fontDicts.clear();
    CFFFontDict& only = fontDicts.emplace_back();
    CFFIndex locals;
    const KWValue& place = topDict.getNamedItem(cffKey(FS_Word::Private));
    if (place.getNamedItem(cffKey(1)).getIntegerValue() != 0) {
        if (!readLocalSubrs(table, only.privateDict, locals))
            return false;
        only.dict.setNamedItem(cffKey(FS_Word::Private), place);
    }
    only.localSubrs = std::make_shared<const CFFIndex>(std::move(locals));
    return true;
}

bool Type1CMap::readFDSelect(CFFStream& table, std::vector<FDRange>& ranges) const {
    ranges.clear();
    const std::uint32_t offset = topOffset(FS_Word::FDSelect);
    if (offset == 0)
        return false;
    CFFCursor cursor(table, offset);
    const auto format = cursor.u8();
    if (!format)
        return false;
    constexpr std::uint8_t kBytes = 0;
    constexpr std::uint8_t kRanges = 3;
    if (*format == kBytes) {
        const unsigned count = readIndexCount(table, topOffset(FS_Word::CharStrings)).value_or(0);
        for (unsigned glyph = 0; glyph + 1 < count; ++glyph) {
            const auto fontDict = cursor.u8();
            if (!fontDict)
                break;
            const auto gid = static_cast<std::uint16_t>(glyph);
            ranges.push_back({gid, gid, *fontDict});
        }
        // Such a font cannot be cut down: who asks stops here.
        return false;
    }
    if (*format != kRanges)
        return false;
    const auto count = cursor.u16();
    auto first = cursor.u16();
    if (!count || *count == 0 || !first)
        return false;
    for (unsigned i = 0; i < *count; ++i) {
        const auto fontDict = cursor.u8();
        const auto next = cursor.u16();
        if (!next)
            return false;
        if (*next > *first) // one that ends before it begins holds no glyph
            ranges.push_back({*first, static_cast<std::uint16_t>(*next - 1), *fontDict});
        first = next;
    }
    return true;
}

std::uint8_t getFDOfGlyph(const std::vector<FDRange>& ranges, std::uint16_t gid,
                          std::uint8_t missing) {
    const auto behind = std::ranges::upper_bound(ranges, gid, {}, &FDRange::first);
    if (behind == ranges.begin() || gid > std::prev(behind)->last)
        return missing;
    return std::prev(behind)->fontDict;
}

} // namespace KWFontService_NS
