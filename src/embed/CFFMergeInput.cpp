#include "embed/CFFMergeInput.h"

#include "cff/Type1CMap.h"
#include "common/KWLimits.h"
#include "embed/CFFIndexWriter.h"
#include "embed/CharStringRewriter.h"

#include <algorithm>

namespace KWFontService_NS {

namespace {

constexpr std::uint8_t kNoFontDict = 255;

/// An INDEX, and the place behind it: one without items ends behind its count.
bool readIndex(CFFStream& table, std::uint64_t& at, CFFIndex& out) {
    auto index = CFFIndex::read(table, at);
    if (!index)
        return false;
    at = index->empty() ? at + indexHeadSize(0, 0) : index->end();
    out = std::move(*index);
    return true;
}

/// The values of ranges, as far as there are glyphs. A range says how many it has in one byte.
bool readRanges(CFFCursor& cursor, std::size_t glyphCount, MergeCharset& charset) {
    // A subset of glyph 0 alone has a range, too, which is for no glyph.
    std::size_t gid = 1;
    do {
        const auto first = cursor.u16();
        const auto more = first ? cursor.u8() : std::nullopt;
        if (!more)
            return gid >= glyphCount;
        charset.hasZero = charset.hasZero || *first == 0;
        for (std::size_t i = 0; i <= *more && gid < glyphCount; ++i, ++gid) {
            const std::size_t value = *first + i;
            if (value != 0 && value <= 0xFFFF)
                charset.entries.push_back(
                    {static_cast<std::uint16_t>(value), static_cast<std::uint16_t>(gid)});
        }
    } while (gid < glyphCount);
    return true;
}

bool readValues(CFFCursor& cursor, std::size_t glyphCount, MergeCharset& charset) {
    for (std::size_t gid = 1; gid < glyphCount; ++gid) {
        const auto value = cursor.u16();
        if (!value)
            return false;
        charset.entries.push_back({*value, static_cast<std::uint16_t>(gid)});
    }
    return true;
}

/// By value, each once.
void sortOut(std::vector<MergeCharset::Entry>& entries) {
    if (!std::ranges::is_sorted(entries, {}, &MergeCharset::Entry::value))
        std::ranges::stable_sort(entries, {}, &MergeCharset::Entry::value);
    const auto sameValue = [](const auto& a, const auto& b) { return a.value == b.value; };
    entries.erase(std::unique(entries.begin(), entries.end(), sameValue), entries.end());
}

} // namespace

bool getCharsets(CFFStream& table, std::uint32_t offset, std::size_t glyphCount,
                 MergeCharset& charset) {
    charset = {};
    CFFCursor cursor(table, offset);
    const auto format = cursor.u8();
    if (!format || *format > 1)
        return false;
    if (!(*format == 0 ? readValues : readRanges)(cursor, glyphCount, charset))
        return false;
    sortOut(charset.entries);
    return true;
}

bool getFDSelect(CFFStream& table, std::uint32_t offset, std::size_t glyphCount,
                 std::vector<FDRange>& ranges) {
    ranges.clear();
    CFFCursor cursor(table, offset);
    const auto format = offset != 0 ? cursor.u8() : std::nullopt;
    if (!format)
        return false;
    if (*format != 0) {
        Type1CMap font;
        font.topDict.setNamedItem(cffKey(FS_Word::FDSelect), static_cast<int>(offset));
        return font.readFDSelect(table, ranges);
    }
    for (std::size_t glyph = 0; glyph < glyphCount; ++glyph) {
        const auto fontDict = cursor.u8();
        if (!fontDict)
            return false;
        const auto gid = static_cast<std::uint16_t>(glyph);
        if (ranges.empty() || ranges.back().fontDict != *fontDict)
            ranges.push_back({gid, gid, *fontDict});
        else
            ranges.back().last = gid;
    }
    return true;
}

CFFMergeInput::CFFMergeInput(CFFStream& table)
    : table_(table), budget_(KWCommonNS::kFreeCharStringBytes +
                             std::size_t{table.size()} * KWCommonNS::kCharStringReads) {}

bool CFFMergeInput::readHead() {
    std::uint64_t at = kNameIndexAt;
    if (!table_.read(0, header) || !readIndex(table_, at, names) ||
        !table_.read(kNameIndexAt, static_cast<std::size_t>(at - kNameIndexAt), nameIndex))
        return false;
    CFFIndex topDicts;
    if (!readIndex(table_, at, topDicts) || topDicts.empty())
        return false;
    const ByteView first = topDicts[0];
    topDictBytes_.assign(first.data(), first.data() + first.size());
    return readIndex(table_, at, strings) && getGlobalSubr(at);
}

bool CFFMergeInput::getGlobalSubr(std::uint64_t at) {
    return readIndex(table_, at, globals_);
}

bool CFFMergeInput::readGlyphs(const MergedSIDs& sids, bool isCID) {
    constexpr std::uint32_t kPredefinedCharsets = 3; // 0, 1 and 2 are no offsets
    isCID_ = isCID;
    topDict = getTopDictData(ByteView(topDictBytes_.data(), topDictBytes_.size()), sids, isCID);
    if (topDict.cannotCarry || topDict.charset < kPredefinedCharsets || topDict.charStrings == 0)
        return false;
    auto index = CFFIndex::read(table_, topDict.charStrings);
    if (!index || index->empty())
        return false;
    charStrings = std::move(*index);
    if (!getCharsets(table_, topDict.charset, charStrings.size(), charset) ||
        (isCID && !getFDSelect(table_, topDict.fdSelect, charStrings.size(), ranges_)) ||
        !getFontDicts(sids))
        return false;
    if (isCID)
        return true;
    for (MergeCharset::Entry& entry : charset.entries) {
        const auto sid = sids.find(entry.value);
        if (!sid)
            return false;
        entry.value = *sid;
    }
    sortOut(charset.entries);
    return true;
}

bool CFFMergeInput::getFontDicts(const MergedSIDs& sids) {
    Type1CMap font;
    font.isCID = isCID_;
    font.topDict = readCFFDict(ByteView(topDictBytes_.data(), topDictBytes_.size()), topDictRows());
    std::vector<CFFFontDict> dicts;
    if (!font.readFontDicts(table_, dicts))
        return false;
    std::optional<CFFIndex> items;
    if (isCID_ && !(items = CFFIndex::read(table_, topDict.fdArray)))
        return false;
    // Items that lie over each other would come to more than there is.
    std::uint64_t left = table_.size();
    for (std::size_t i = 0; i < dicts.size(); ++i) {
        const std::uint64_t size = items ? (*items)[i].size() : 0;
        if (size > left)
            return false;
        left -= size;
        FontDict& fontDict = fontDicts.emplace_back();
        fontDict.localSubrs = dicts[i].localSubrs;
        auto data = items ? getFontDictData((*items)[i], sids) : std::string();
        if (!data || !getPrivateDict(dicts[i].dict, fontDict.privateDict))
            return false;
        fontDict.data = std::move(*data);
    }
    return true;
}

/// The Private DICT that a Top or Font DICT names, without its subrs.
bool CFFMergeInput::getPrivateDict(const KWValue& dict, std::shared_ptr<const std::string>& out) {
    const KWValue& place = dict.getNamedItem(cffKey(FS_Word::Private));
    if (!place.isCompound())
        return true;
    const auto operand = [&place](std::size_t i) {
        return static_cast<std::uint32_t>(place.getNamedItem(cffKey(i)).getIntegerValue());
    };
    const KnownPrivate wanted{operand(1), operand(2), nullptr};
    const auto known = std::ranges::find_if(privates_, [&wanted](const KnownPrivate& candidate) {
        return candidate.size == wanted.size && candidate.offset == wanted.offset;
    });
    if (known != privates_.end()) {
        out = known->data;
        return true;
    }
    std::vector<std::uint8_t> bytes;
    if (!table_.read(wanted.offset, wanted.size, bytes))
        return false;
    out = std::make_shared<const std::string>(
        getPrivateDictData(ByteView(bytes.data(), bytes.size())));
    privates_.push_back({wanted.size, wanted.offset, out});
    return true;
}

std::string_view CFFMergeInput::fontName() const {
    const std::string_view name = names.text(0);
    const std::size_t plus = name.find('+');
    return plus == 0 || plus == std::string_view::npos ? name : name.substr(plus + 1);
}

std::uint8_t CFFMergeInput::fontDictOf(std::uint16_t gid) const {
    return isCID_ ? getFDOfGlyph(ranges_, gid, kNoFontDict) : std::uint8_t{0};
}

bool CFFMergeInput::addCharString(std::uint16_t gid, std::string& out) {
    const std::uint8_t fontDict = fontDictOf(gid);
    if (fontDict >= fontDicts.size())
        return false;
    makeNewCharString(out, charStrings[gid], {globals_, *fontDicts[fontDict].localSubrs}, budget_);
    return !budget_.isSpent();
}

} // namespace KWFontService_NS
