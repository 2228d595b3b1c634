#include "embed/CFFMerge.h"

#include "common/KWLimits.h"
#include "embed/CFFGlyphMaps.h"
#include "embed/CFFIndexWriter.h"
#include "embed/CFFMergeInput.h"
#include "embed/CFFTopDict.h"
#include "type1/StandardStrings.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

namespace KWFontService_NS {

namespace {

ByteView viewOf(std::string_view bytes) {
    return ByteView(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

/// One merge, step by step.
class CFFMerge {
public:
    CFFMerge(CFFStream& a, CFFStream& b, bool isCID) : a_(a), b_(b), isCID_(isCID) {}

    bool read() {
        return a_.readHead() && b_.readHead() && isOneFont() && mergeStrings() &&
               a_.readGlyphs(sidsOfA_, isCID_) && b_.readGlyphs(sidsOfB_, isCID_) &&
               mergeGlyphs() && mergeFontDicts();
    }
    bool write(KWMemStream& output);

private:
    struct Glyph {
        CFFMergeInput* input = nullptr;
        std::uint16_t value = 0;
        std::uint16_t gid = 0;
    };
    /// A Font DICT of the merged font, or the one Private DICT of a name-keyed one.
    struct FontDict {
        std::string_view data;
        std::optional<std::size_t> privateDict;
    };
    /// Where sections begin, from the start of the table.
    struct Places {
        std::uint64_t charset = 0;
        std::uint64_t fdSelect = 0;
        std::uint64_t charStrings = 0;
        std::uint64_t fdArray = 0;
        std::uint64_t privates = 0;
        std::uint64_t end = 0;
    };

    bool isOneFont() const;
    bool mergeStrings();
    bool mergeGlyphs();
    bool mergeFontDicts();
    std::optional<std::size_t> addPrivate(const CFFMergeInput::FontDict& fontDict);
    bool writeCharStrings(KWMemStream& output);
    void writeCharset(KWMemStream& output) const;
    void writeStrings(KWMemStream& output) const;
    void writeFDArray(std::uint64_t privatesAt, KWMemStream& output) const;
    void writeTopDict(const Places& places, std::uint8_t offSize, KWMemStream& output) const;
    void addPrivatePlace(std::size_t index, std::uint64_t privatesAt, std::uint8_t offSize,
                         std::string& out) const;

    CFFMergeInput a_;
    CFFMergeInput b_;
    bool isCID_;
    MergedSIDs sidsOfA_;
    MergedSIDs sidsOfB_;
    std::vector<std::string_view> strings_;
    std::vector<Glyph> glyphs_; ///< in their new order
    std::vector<FontDict> fontDicts_;
    std::map<const CFFMergeInput*, std::vector<std::uint8_t>> newFontDicts_; ///< by old number
    std::vector<std::string_view> privates_;
    std::vector<std::uint64_t> privateStarts_; ///< from the first one on
    std::uint64_t privatesSize_ = 0;
};

/// Whether header and name tell of subsets of one font.
bool CFFMerge::isOneFont() const {
    constexpr std::uint8_t kMostHeader = 4;
    const auto offsetsOf = [](const CFFIndex& index) {
        return index.byteSize() - index.dataSize();
    };
    return a_.header == b_.header && a_.header[2] <= kMostHeader && !a_.names.empty() &&
           offsetsOf(a_.names) == offsetsOf(b_.names) && a_.names[0].size() == b_.names[0].size() &&
           a_.fontName() == b_.fontName();
}

/// The strings of A, and those that B has besides.
bool CFFMerge::mergeStrings() {
    constexpr std::size_t kMost = 0x10000 - kStandardStringCount;
    std::map<std::string_view, std::uint16_t> ids;
    const auto add = [&](const CFFIndex& strings, bool isFirst, MergedSIDs& out) {
        std::vector<std::uint16_t> sids;
        sids.reserve(strings.size());
        std::size_t size = 0;
        for (std::size_t i = 0; i < strings.size(); ++i) {
            const std::string_view text = strings.text(i);
            size += text.size();
            if (size > strings.dataSize())
                return false; // strings that lie over each other
            const auto next = static_cast<std::uint16_t>(kStandardStringCount + strings_.size());
            const auto [known, isNew] = ids.try_emplace(text, next);
            if (isNew || isFirst)
                strings_.push_back(text);
            sids.push_back(isFirst ? next : known->second);
        }
        out = MergedSIDs(std::move(sids));
        return strings_.size() <= kMost;
    };
    return add(a_.strings, true, sidsOfA_) && add(b_.strings, false, sidsOfB_);
}

/// Glyph 0 of A, then the glyphs of both by value.
bool CFFMerge::mergeGlyphs() {
    const auto& ofA = a_.charset.entries;
    const auto& ofB = b_.charset.entries;
    glyphs_.reserve(1 + ofA.size() + ofB.size());
    glyphs_.push_back({&a_, 0, 0});
    auto nextB = ofB.begin();
    const auto addFromB = [&](std::uint32_t end) {
        for (; nextB != ofB.end() && nextB->value < end; ++nextB)
            glyphs_.push_back({&b_, nextB->value, nextB->gid});
    };
    for (const MergeCharset::Entry& entry : ofA) {
        addFromB(entry.value);
        glyphs_.push_back({&a_, entry.value, entry.gid});
        if (nextB != ofB.end() && nextB->value == entry.value)
            ++nextB;
    }
    addFromB(0x10000);
    return glyphs_.size() > 1 && glyphs_.size() <= 0xFFFF;
}

/// Keeps each Private DICT once; nothing where there is none.
std::optional<std::size_t> CFFMerge::addPrivate(const CFFMergeInput::FontDict& fontDict) {
    // Readers of Font DICTs, ours among them, do not take one without entries.
    static constexpr std::string_view kDefaultWidth("\x8B\x14", 2);
    if (!fontDict.privateDict)
        return std::nullopt;
    std::string_view data = *fontDict.privateDict;
    if (isCID_ && data.empty())
        data = kDefaultWidth;
    for (std::size_t i = 0; i < privates_.size(); ++i)
        if (privates_[i].size() == data.size() &&
            (privates_[i].data() == data.data() || privates_[i] == data))
            return i;
    privateStarts_.push_back(privatesSize_);
    privatesSize_ += data.size();
    privates_.push_back(data);
    return privates_.size() - 1;
}

/// The Font DICTs of A, and those of B that A does not have with the same entries and Private.
bool CFFMerge::mergeFontDicts() {
    if (!isCID_) {
        const CFFMergeInput::FontDict& ofA = a_.fontDicts.front();
        const CFFMergeInput::FontDict& ofB = b_.fontDicts.front();
        const auto size = [](const CFFMergeInput::FontDict& fontDict) {
            return fontDict.privateDict ? fontDict.privateDict->size() : 0;
        };
        fontDicts_.push_back({{}, addPrivate(size(ofB) > size(ofA) ? ofB : ofA)});
        return true;
    }
    std::map<std::pair<std::string_view, std::optional<std::size_t>>, std::uint8_t> known;
    for (const CFFMergeInput* const input : {&a_, &b_}) {
        std::vector<std::uint8_t>& numbers = newFontDicts_[input];
        for (const CFFMergeInput::FontDict& fontDict : input->fontDicts) {
            const FontDict merged{fontDict.data, addPrivate(fontDict)};
            const auto [place, isNew] =
                known.try_emplace(std::pair(merged.data, merged.privateDict),
                                  static_cast<std::uint8_t>(fontDicts_.size()));
            if (isNew)
                fontDicts_.push_back(merged);
            numbers.push_back(place->second);
        }
    }
    return fontDicts_.size() <= KWCommonNS::kMaxFontDicts;
}

bool CFFMerge::writeCharStrings(KWMemStream& output) {
    std::string data;
    data.reserve(a_.charStrings.dataSize() + b_.charStrings.dataSize());
    std::vector<std::uint32_t> offsets{0};
    offsets.reserve(glyphs_.size() + 1);
    for (const Glyph& glyph : glyphs_) {
        if (!glyph.input->addCharString(glyph.gid, data) || data.size() > 0x7FFFFFFF)
            return false;
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
    }
    writeIndex(output, viewOf(data), offsets);
    return true;
}

void CFFMerge::writeCharset(KWMemStream& output) const {
    std::vector<CharsetRun> runs;
    for (const Glyph& glyph : std::span(glyphs_).subspan(1))
        addToRuns(runs, glyph.value);
    constexpr char kFormat = 1;
    output += kFormat;
    for (const CharsetRun& run : runs) {
        appendU16(output, run.first);
        output += static_cast<char>(run.more & 0xFF); // a longer run wraps and is not split
    }
}

void CFFMerge::writeStrings(KWMemStream& output) const {
    std::string data;
    std::vector<std::uint32_t> offsets{0};
    for (const std::string_view text : strings_) {
        data += text;
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
    }
    writeIndex(output, viewOf(data), offsets);
}

void CFFMerge::addPrivatePlace(std::size_t index, std::uint64_t privatesAt, std::uint8_t offSize,
                               std::string& out) const {
    addDictDataOffset(out, static_cast<std::uint32_t>(privates_[index].size()), offSize);
    addDictDataOffset(out, static_cast<std::uint32_t>(privatesAt + privateStarts_[index]), offSize);
    addDictDataOperator(out, kPrivateOp);
}

void CFFMerge::writeFDArray(std::uint64_t privatesAt, KWMemStream& output) const {
    constexpr std::uint8_t kOffSize = 4;
    std::string data;
    std::vector<std::uint32_t> offsets{0};
    for (const FontDict& fontDict : fontDicts_) {
        data += fontDict.data;
        if (fontDict.privateDict)
            addPrivatePlace(*fontDict.privateDict, privatesAt, kOffSize, data);
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
    }
    writeIndex(output, viewOf(data), offsets);
}

void CFFMerge::writeTopDict(const Places& places, std::uint8_t offSize, KWMemStream& output) const {
    constexpr int kDefaultCIDCount = 8720;
    std::string dict = a_.topDict.data;
    const auto add = [&](std::uint64_t offset, CFFOperator op) {
        addDictDataOffset(dict, static_cast<std::uint32_t>(offset), offSize);
        addDictDataOperator(dict, op);
    };
    if (a_.topDict.cidCount || b_.topDict.cidCount) {
        addDictDataInteger(dict, std::max(a_.topDict.cidCount.value_or(kDefaultCIDCount),
                                          b_.topDict.cidCount.value_or(kDefaultCIDCount)));
        addDictDataOperator(dict, kCIDCountOp);
    }
    add(places.charset, kCharsetOp);
    if (isCID_)
        add(places.fdSelect, kFDSelectOp);
    add(places.charStrings, kCharStringsOp);
    if (isCID_)
        add(places.fdArray, kFDArrayOp);
    else if (fontDicts_.front().privateDict)
        addPrivatePlace(0, places.privates, offSize, dict);
    writeSingleIndex(output, viewOf(dict));
}

/// Nothing is appended unless all is there.
bool CFFMerge::write(KWMemStream& output) {
    KWMemStream head; // behind the Top DICT, up to the charset
    writeStrings(head);
    appendU16(head, 0); // no Global Subrs
    KWMemStream charset;
    writeCharset(charset);
    KWMemStream fdSelect;
    KWMemStream charStrings;
    KWMemStream fdArray;
    if (!writeCharStrings(charStrings))
        return false;
    if (isCID_) {
        FDSelectWriter writer;
        for (const Glyph& glyph : glyphs_)
            writer.add(newFontDicts_[glyph.input][glyph.input->fontDictOf(glyph.gid)]);
        writer.write(fdSelect);
        writeFDArray(0, fdArray);
    }

    Places places;
    const auto place = [&](std::uint8_t offSize) {
        KWMemStream dict;
        writeTopDict({}, offSize, dict);
        places.charset = a_.header.size() + a_.nameIndex.size() + dict.size() + head.size();
        places.fdSelect = places.charset + charset.size();
        places.charStrings = places.fdSelect + fdSelect.size();
        places.fdArray = places.charStrings + charStrings.size();
        places.privates = places.fdArray + fdArray.size();
        places.end = places.privates + privatesSize_;
    };
    constexpr std::uint64_t kMostInTwo = 0x7FFF; // short integers have a sign for most readers
    constexpr std::uint64_t kMostInFour = 0x7FFFFFFF;
    std::uint8_t offSize = !isCID_ && a_.header[3] == 1 ? 2 : 4;
    place(offSize);
    if (offSize == 2 && places.end > kMostInTwo)
        place(offSize = 4);
    if (places.end > kMostInFour)
        return false;

    output.rdbuf()->reserve(output.size() + static_cast<std::size_t>(places.end));
    output.append(a_.header.data(), a_.header.size() - 1);
    output += static_cast<char>(offSize);
    output.append(a_.nameIndex.data(), a_.nameIndex.size());
    writeTopDict(places, offSize, output);
    for (KWMemStream* const section : {&head, &charset, &fdSelect, &charStrings})
        output.append(section->data(), section->size());
    if (isCID_)
        writeFDArray(places.privates, output);
    for (const std::string_view privateDict : privates_)
        output.append(privateDict.data(), privateDict.size());
    return output.good();
}

} // namespace

bool mergeCFFTables(CFFStream& a, CFFStream& b, bool isCID, KWMemStream& output) {
    CFFMerge merge(a, b, isCID);
    return !output.fail() && merge.read() && merge.write(output);
}

} // namespace KWFontService_NS
