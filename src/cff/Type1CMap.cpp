#include "cff/Type1CMap.h"

#include "type1/StandardStrings.h"

#include <algorithm>
#include <utility>

namespace KWFontService_NS {

namespace {

constexpr CFFOperator kCharset = 15;
constexpr CFFOperator kEncoding = 16;
constexpr CFFOperator kCharStrings = 17;
constexpr CFFOperator kROS = cffEscape(30);

/// What the load takes from the Top DICT for itself: the first operands of some operators.
struct TopDict {
    KWValue dict;
    bool isCID = false;
    int registry = 0;
    int ordering = 0;
    int supplement = 0;
    int charset = 0;
    int encoding = 0;
    int charStrings = 0;

    explicit TopDict(ByteView bytes) {
        for (CFFDictWalker walk(bytes); walk.next();) {
            const auto operand = [&walk](std::size_t place) {
                const auto operands = walk.operands();
                return place < operands.size() ? operands[place].getIntegerValue() : 0;
            };
            switch (walk.op()) {
            case kCharset:
                charset = operand(0);
                break;
            case kEncoding:
                encoding = operand(0);
                break;
            case kCharStrings:
                charStrings = operand(0);
                break;
            case kROS:
                isCID = true;
                registry = operand(0);
                ordering = operand(1);
                supplement = operand(2);
                break;
            default:
                break;
            }
            storeCFFEntry(walk, topDictRows(), dict);
        }
    }
};

bool rangesOverlap(const std::vector<CharsetRange>& sorted) {
    const auto overlap = [](const CharsetRange& a, const CharsetRange& b) {
        return b.first <= a.last;
    };
    return std::ranges::adjacent_find(sorted, overlap) != sorted.end();
}

} // namespace

Type1CMap::~Type1CMap() = default;

bool Type1CMap::readCFFTable(CFFStream& table) {
    if (isCID)
        return true;
    const auto names = CFFIndexHead::read(table, kNameIndexAt);
    const auto topDicts = names ? CFFIndexHead::read(table, names->end()) : std::nullopt;
    const auto topItem = topDicts ? topDicts->item(0) : std::nullopt;
    std::vector<std::uint8_t> topBytes;
    if (!topItem || !table.read(topItem->offset, topItem->length, topBytes))
        return false;
    TopDict top(ByteView(topBytes.data(), topBytes.size()));
    auto texts = CFFIndex::read(table, topDicts->end());
    if (!texts)
        return false;

    std::vector<std::uint8_t> codes;
    if (top.encoding != 0) {
        auto encoding = readEncoding(table, static_cast<std::uint32_t>(top.encoding));
        if (!encoding)
            return false;
        codes = std::move(*encoding);
    }
    CFFCharset glyphs;
    if (top.charset != 0) {
        const auto count = readIndexCount(table, static_cast<std::uint32_t>(top.charStrings));
        if (!count)
            return false;
        auto charset = readCharset(table, static_cast<std::uint32_t>(top.charset), *count);
        if (!charset)
            return false;
        glyphs = std::move(*charset);
    }

    isCID = top.isCID;
    registrySID = static_cast<std::uint16_t>(top.registry);
    orderingSID = static_cast<std::uint16_t>(top.ordering);
    supplement = top.supplement;
    strings = std::move(*texts);
    encodingCodes = std::move(codes);
    charsetSIDs = std::move(glyphs.values);
    charsetByValue = std::move(glyphs.byValue);
    charsetByGlyph = std::move(glyphs.byGlyph);
    charsetRepeats_ = rangesOverlap(charsetByValue);
    topDict = std::move(top.dict);
    return true;
}

// --- lookups ------------------------------------------------------------------------------------

unsigned short Type1CMap::getSIDOfGlyph(unsigned short gid) const {
    if (gid == 0)
        return 0;
    if (gid <= charsetSIDs.size())
        return charsetSIDs[gid - std::size_t{1}];
    return findInRanges(charsetByGlyph, gid, 0);
}

unsigned short Type1CMap::getGlyphOfCID(unsigned short cid) const {
    const auto found = std::ranges::find(charsetSIDs, cid);
    if (found != charsetSIDs.end())
        return static_cast<unsigned short>(found - charsetSIDs.begin() + 1);
    if (!charsetRepeats_)
        return findInRanges(charsetByValue, cid, FS_NO_GLYPH);
    for (const CharsetRange& range : charsetByGlyph) {
        const int place = cid - range.start;
        if (place >= 0 && place <= range.last - range.first)
            return static_cast<unsigned short>(range.first + place);
    }
    return FS_NO_GLYPH;
}

std::string_view Type1CMap::getStringOfSID(unsigned short sid) const {
    if (sid < kStandardStringCount)
        return standardString(sid);
    return strings.text(sid - std::size_t{kStandardStringCount});
}

bool Type1CMap::getCIDSystemInfo(FS_CIDSystemInfo& info) const {
    if (!isCID || registrySID == 0 || orderingSID == 0)
        return false;
    info.Registry = getStringOfSID(registrySID);
    info.Ordering = getStringOfSID(orderingSID);
    info.Supplement = supplement;
    return true;
}

FS_EncodingScheme Type1CMap::getEncodingScheme() const {
    return topOffset(FS_Word::Encoding) == 0 ? FS_ENCODING_STANDARD : FS_ENCODING_FONT;
}

std::uint32_t Type1CMap::topOffset(FS_Word key) const {
    return static_cast<std::uint32_t>(topDict.getNamedItem(cffKey(key)).getIntegerValue());
}

} // namespace KWFontService_NS
