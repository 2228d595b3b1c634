#include "embed/CFFSubsetRenumbered.h"

#include "cff/CFFNumbers.h"
#include "common/KWLimits.h"
#include "embed/CFFGlyphMaps.h"
#include "embed/CFFIndexWriter.h"
#include "embed/CFFSubrUse.h"
#include "embed/CFFTopDict.h"
#include "embed/CharStringReader.h"
#include "embed/SeacFinder.h"
#include "type1/StandardStrings.h"

#include <KWCommon15/KWNamedValue.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace KWFontService_NS {

namespace {

constexpr std::uint8_t kNoFontDict = 255;

/// Makes a list ascend, without repeats. Callers mostly have them in order.
template <class T>
void sortOut(std::vector<T>& values) {
    if (!std::ranges::is_sorted(values))
        std::ranges::sort(values);
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

/// What is kept of a Private DICT but its `Subrs`, in the order of the keys.
void writePrivateEntries(KWMemStream& output, const KWValue& dict) {
    const auto rows = privateDictRows();
    for (const auto& [name, value] : dict.getNamedValueMap()) {
        const auto row = std::ranges::find(
            rows, name, [](const CFFDictRow& candidate) { return cffKey(candidate.key); });
        if (row->op == kSubrsOp)
            continue;
        if (row->entry == CFFEntry::Array) {
            // A place without an operand ends it.
            for (std::size_t place = 1; !value.getNamedItem(cffKey(place)).isNull(); ++place)
                writeDictValue(output, value.getNamedItem(cffKey(place)));
        } else {
            writeDictValue(output, value);
        }
        writeCFFOperator(output, row->op);
    }
}

/// One call of `subsetCFFRenumbered`, step by step.
class RenumberedSubset {
public:
    RenumberedSubset(CFFStream& table, const Type1CMap& font, KWMemStream& output,
                     std::uint8_t offSize)
        : table_(table), font_(font), output_(output), start_(output.size()), offSize_(offSize),
          budget_(KWCommonNS::kFreeCharStringBytes +
                  std::size_t{table.size()} * KWCommonNS::kCharStringReads) {}

    bool write(const std::vector<unsigned short>& listed) {
        return readFont() && collectGlyphs(listed) && orderGlyphs() && writeHead() &&
               subrs_->writeGlobalSubrs(output_) && writeCharset() && writeFDSelect() &&
               writeCharStrings() && writeFDArray() && writePrivates() && !subrs_->isSpent() &&
               !output_.fail();
    }
    /// True when `write` failed over an offset that two bytes do not hold.
    bool needsLongOffsets() const { return needsLongOffsets_; }

private:
    bool readFont();
    /// The StandardEncoding codes of which accented glyphs are put together.
    struct AccentParts {
        SeacFinder finder;
        std::array<bool, 256> isPart{};
    };

    bool addGlyphs(std::vector<std::uint16_t> gids, AccentParts* accents);
    bool collectGlyphs(const std::vector<unsigned short>& listed);
    bool orderGlyphs();
    void renumberStrings();
    bool writeHead();
    bool writeStrings();
    bool writeCharset();
    bool writeFDSelect();
    bool writeCharStrings();
    bool writeFDArray();
    bool writePrivates();
    bool fill(std::size_t at, std::uint8_t width, std::size_t value);
    bool fillHere(std::optional<std::size_t> blank) {
        return !blank || fill(*blank, offSize_, position());
    }

    /// From the start of the new table.
    std::size_t position() { return output_.size() - start_; }
    std::uint16_t newSID(std::uint16_t sid) const;

    struct PrivateBlanks {
        std::uint8_t fontDict = 0;
        std::size_t size = 0;
        std::size_t offset = 0;
    };

    CFFStream& table_;
    const Type1CMap& font_;
    KWMemStream& output_;
    std::size_t start_; ///< of the new table in the output
    std::uint8_t offSize_;
    std::size_t budget_; ///< of each step that goes through charstrings, in their bytes
    bool needsLongOffsets_ = false;

    std::vector<std::uint8_t> topDict_;
    std::uint64_t stringsAt_ = 0;
    CFFIndexHead charStrings_;
    CharStringReader reader_{table_, charStrings_};
    std::size_t charStringsSize_ = 0; ///< of the glyphs so far
    CFFIndex globals_;
    std::vector<CFFFontDict> fontDicts_; ///< of a name-keyed font one
    std::vector<FDRange> ranges_;

    std::vector<SubsetGlyph> glyphs_; ///< by glyph id, then by key
    std::optional<CFFSubrUse> subrs_;
    std::vector<std::uint16_t> usedSIDs_; ///< custom ones, ascending
    std::vector<std::uint8_t> usedFDs_;   ///< ascending
    TopDictBlanks blanks_;
    std::vector<PrivateBlanks> privates_;
};

bool RenumberedSubset::readFont() {
    std::uint64_t at = kNameIndexAt;
    if (!skipIndex(table_, at))
        return false;
    const auto topDicts = CFFIndexHead::read(table_, at);
    const auto item = topDicts ? topDicts->item(0) : std::nullopt;
    if (!item || !table_.read(item->offset, item->length, topDict_))
        return false;
    stringsAt_ = topDicts->end();
    const auto charStringsAt = static_cast<std::uint32_t>(
        font_.topDict.getNamedItem(cffKey(FS_Word::CharStrings)).getIntegerValue());
    if (!Type1CMap::readIndexAt(table_, charStringsAt, charStrings_) ||
        !Type1CMap::readGlobalSubrs(table_, globals_))
        return false;
    return (!font_.isCID || font_.readFDSelect(table_, ranges_)) &&
           font_.readFontDicts(table_, fontDicts_);
}

/// Adds glyphs that are not there yet, and what they use.
/// @param accents  null, or told of their charstrings
bool RenumberedSubset::addGlyphs(std::vector<std::uint16_t> gids, AccentParts* accents) {
    sortOut(gids);
    std::erase_if(gids, [this](std::uint16_t gid) {
        return std::ranges::binary_search(glyphs_, gid, {}, &SubsetGlyph::gid);
    });
    const auto size = reader_.sizeOf(gids);
    if (!size)
        return false;
    // Few glyphs lie far apart, and to read them twice would take longer than all else. Many are
    // read together, and are too much to keep beside the output.
    constexpr std::size_t kMostKept = 4;
    charStringsSize_ += *size;
    if (charStringsSize_ <= table_.size() / kMostKept)
        reader_.keep(*size);
    else
        reader_.keepNoMore();
    glyphs_.reserve(glyphs_.size() + gids.size());
    for (const std::uint16_t gid : gids) {
        const std::uint8_t fontDict =
            font_.isCID ? getFDOfGlyph(ranges_, gid, kNoFontDict) : std::uint8_t{0};
        if (fontDict >= fontDicts_.size())
            return false;
        glyphs_.push_back({.gid = gid,
                           .place = static_cast<std::uint16_t>(glyphs_.size()),
                           .fontDict = fontDict});
    }
    auto glyph = glyphs_.end() - static_cast<std::ptrdiff_t>(gids.size());
    const bool ok = reader_.visit(gids, [&](ByteView charString) {
        subrs_->add(charString, (glyph++)->fontDict,
                    accents != nullptr ? &accents->finder : nullptr);
        if (accents != nullptr)
            accents->finder.parts([accents](std::uint8_t code) { accents->isPart[code] = true; });
    });
    if (!ok)
        return false;
    const auto added = glyphs_.end() - static_cast<std::ptrdiff_t>(gids.size());
    std::ranges::inplace_merge(glyphs_, added, {}, &SubsetGlyph::gid);
    return !subrs_->isSpent();
}

/// The glyphs of the list, what they are put together of, and glyph 0.
bool RenumberedSubset::collectGlyphs(const std::vector<unsigned short>& listed) {
    subrs_.emplace(globals_, fontDicts_, budget_);
    std::vector<std::uint16_t> gids(listed.begin(), listed.end());
    if (font_.isCID || font_.getEncodingScheme() != FS_ENCODING_STANDARD) {
        gids.push_back(0);
        return addGlyphs(std::move(gids), nullptr);
    }
    CharStringBudget budget(budget_);
    AccentParts accents{.finder = {{globals_, *fontDicts_.front().localSubrs}, budget}};
    if (!addGlyphs(std::move(gids), &accents) || budget.isSpent())
        return false;
    std::vector<std::uint16_t> parts{0};
    for (unsigned code = 1; code < accents.isPart.size(); ++code) {
        if (!accents.isPart[code])
            continue;
        const std::uint16_t sid = standardEncodingSID(static_cast<std::uint8_t>(code));
        const std::uint16_t gid = sid != 0 ? font_.getGlyphOfCID(sid) : std::uint16_t{FS_NO_GLYPH};
        if (gid != FS_NO_GLYPH)
            parts.push_back(gid);
    }
    return addGlyphs(std::move(parts), nullptr);
}

std::uint16_t RenumberedSubset::newSID(std::uint16_t sid) const {
    const auto place = std::ranges::lower_bound(usedSIDs_, sid) - usedSIDs_.begin();
    return static_cast<std::uint16_t>(kStandardStringCount + place);
}

/// Gives glyphs their string ids, renumbered, or CIDs, and brings them into that order. Of glyphs
/// with one string id the first stays.
bool RenumberedSubset::orderGlyphs() {
    for (SubsetGlyph& glyph : glyphs_) {
        glyph.key = font_.isCID ? glyph.gid : font_.getSIDOfGlyph(glyph.gid);
        if (usedFDs_.empty() || usedFDs_.back() != glyph.fontDict)
            usedFDs_.push_back(glyph.fontDict);
    }
    sortOut(usedFDs_);
    if (!std::ranges::is_sorted(glyphs_, {}, &SubsetGlyph::key))
        std::ranges::stable_sort(glyphs_, {}, &SubsetGlyph::key);
    const auto sameKey = [](const SubsetGlyph& a, const SubsetGlyph& b) { return a.key == b.key; };
    glyphs_.erase(std::unique(glyphs_.begin(), glyphs_.end(), sameKey), glyphs_.end());
    if (!font_.isCID)
        renumberStrings();
    subrs_->renumber();
    return true;
}

/// The new ids ascend with the old ones: the order of the glyphs stays.
void RenumberedSubset::renumberStrings() {
    auto strings = stringsOfTopDict(ByteView(topDict_.data(), topDict_.size()));
    sortOut(strings);
    const auto custom = std::ranges::find_if(glyphs_, isCustomSID, &SubsetGlyph::key);
    std::vector<std::uint16_t> names;
    names.reserve(glyphs_.size());
    std::ranges::transform(custom, glyphs_.end(), std::back_inserter(names), &SubsetGlyph::key);
    std::ranges::set_union(names, strings, std::back_inserter(usedSIDs_));
    auto old = usedSIDs_.begin();
    for (auto glyph = custom; glyph != glyphs_.end(); ++glyph) {
        old = std::find(old, usedSIDs_.end(), glyph->key);
        glyph->key = static_cast<std::uint16_t>(kStandardStringCount + (old - usedSIDs_.begin()));
    }
}

/// Header, names, Top DICT and strings.
bool RenumberedSubset::writeHead() {
    const std::array<std::uint8_t, 4> header{1, 0, 4, offSize_};
    output_.append(header.data(), header.size());
    std::uint64_t at = kNameIndexAt;
    if (!copyIndex(table_, at, output_))
        return false;

    KWMemStream dict;
    blanks_ = copyTopDict(
        ByteView(topDict_.data(), topDict_.size()), font_.isCID, offSize_,
        [this](std::uint16_t sid) { return newSID(sid); }, dict);
    if (font_.isCID && !blanks_.charset) {
        // CIDs that are glyph ids without saying so would not survive the packing.
        blanks_.charset = writeBlankOperand(dict, offSize_);
        writeCFFOperator(dict, kCharsetOp);
    }
    writeSingleIndex(output_,
                     ByteView(reinterpret_cast<const std::uint8_t*>(dict.data()), dict.size()));
    blanks_.move(output_.size() - dict.size());
    return writeStrings();
}

bool RenumberedSubset::writeStrings() {
    if (font_.isCID)
        return copyIndex(table_, stringsAt_, output_);
    KWMemStream data;
    std::vector<std::uint32_t> offsets{0};
    for (const std::uint16_t sid : usedSIDs_) {
        const std::string_view text = font_.getStringOfSID(sid);
        if (data.size() + text.size() > table_.size())
            return false; // strings that lie over each other
        data.append(text.data(), text.size());
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
    }
    writeIndex(output_, data, offsets);
    return true;
}

bool RenumberedSubset::writeCharset() {
    std::vector<CharsetRun> runs;
    for (const SubsetGlyph& glyph : glyphs_)
        if (glyph.key != 0) // .notdef stands in no charset
            addToRuns(runs, glyph.key);
    if (runs.empty())
        runs.push_back({0, 0});
    constexpr std::uint16_t kMostInByte = 255;
    const bool wide =
        std::ranges::any_of(runs, [](const CharsetRun& run) { return run.more > kMostInByte; });

    if (!fillHere(blanks_.charset))
        return false;
    output_ += static_cast<char>(wide ? 2 : 1);
    for (const CharsetRun& run : runs) {
        appendU16(output_, run.first);
        if (wide)
            appendU16(output_, run.more);
        else
            output_ += static_cast<char>(run.more);
    }
    return true;
}

bool RenumberedSubset::writeFDSelect() {
    if (!font_.isCID)
        return true;
    if (!fillHere(blanks_.fdSelect))
        return false;
    FDSelectWriter writer;
    for (const SubsetGlyph& glyph : glyphs_)
        writer.add(static_cast<std::uint8_t>(std::ranges::lower_bound(usedFDs_, glyph.fontDict) -
                                             usedFDs_.begin()));
    writer.write(output_);
    return true;
}

bool RenumberedSubset::writeCharStrings() {
    constexpr std::size_t kDictsSize = 256; // about what a Font DICT and its Private have
    std::size_t behind = 0;
    for (const std::uint8_t fontDict : usedFDs_)
        behind += kDictsSize + subrs_->localSubrsSize(fontDict);
    behind = std::min<std::size_t>(behind, table_.size()); // subrs that lie over each other
    return fillHere(blanks_.charStrings) &&
           subrs_->writeCharStrings(output_, reader_, glyphs_, behind);
}

bool RenumberedSubset::writeFDArray() {
    if (!font_.isCID) {
        if (!fontDicts_.front().dict.isNull() && blanks_.privateSize)
            privates_.push_back({0, *blanks_.privateSize, *blanks_.privateOffset});
        return true;
    }
    if (!fillHere(blanks_.fdArray))
        return false;
    KWMemStream data;
    std::vector<std::uint32_t> offsets{0};
    for (const std::uint8_t fontDict : usedFDs_) {
        const KWValue& dict = fontDicts_[fontDict].dict;
        const KWValue& name = dict.getNamedItem(cffKey(FS_Word::FontName));
        if (!name.isNull()) {
            writeDictValue(data, name);
            writeCFFOperator(data, kFontNameOp);
        }
        if (!dict.getNamedItem(cffKey(FS_Word::Private)).isNull()) {
            const std::size_t size = writeBlankOperand(data, 2);
            privates_.push_back({fontDict, size, writeBlankOperand(data, offSize_)});
            writeCFFOperator(data, kPrivateOp);
        }
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
    }
    writeIndex(output_, data, offsets);
    const std::size_t dataAt = output_.size() - data.size();
    for (PrivateBlanks& blanks : privates_) {
        blanks.size += dataAt;
        blanks.offset += dataAt;
    }
    return true;
}

bool RenumberedSubset::writePrivates() {
    // The entry `Subrs`: its operand in three bytes, and the operator.
    constexpr std::size_t kSubrsEntrySize = 4;
    for (const PrivateBlanks& blanks : privates_) {
        KWMemStream dict;
        writePrivateEntries(dict, fontDicts_[blanks.fontDict].privateDict);
        const std::size_t size = dict.size() + kSubrsEntrySize;
        const std::size_t subrs = writeBlankOperand(dict, 2);
        writeCFFOperator(dict, kSubrsOp);
        const std::size_t at = output_.size();
        if (!fill(blanks.size, 2, size) || !fillHere(blanks.offset))
            return false;
        output_.append(dict.data(), dict.size());
        if (!fill(at + subrs, 2, size) || !subrs_->writeLocalSubrs(output_, blanks.fontDict))
            return false;
    }
    return true;
}

/// Puts a number where it was left open; false when it does not fit.
bool RenumberedSubset::fill(std::size_t at, std::uint8_t width, std::size_t value) {
    constexpr std::size_t kMostInTwo = 0x7FFF; // short integers have a sign for most readers
    constexpr std::size_t kMostInFour = 0x7FFFFFFF;
    if (value > (width == 2 ? kMostInTwo : kMostInFour)) {
        needsLongOffsets_ = width == 2;
        return false;
    }
    std::array<std::uint8_t, 4> bytes;
    if (width == 2)
        ByteView::storeU16(bytes.data(), static_cast<std::uint16_t>(value));
    else
        ByteView::storeU32(bytes.data(), static_cast<std::uint32_t>(value));
    output_.seekp(static_cast<std::streamoff>(at));
    output_.write(reinterpret_cast<const char*>(bytes.data()), width);
    return static_cast<bool>(output_.seekp(0, std::ios::end));
}

} // namespace

bool subsetCFFRenumbered(CFFStream& table, const Type1CMap& font,
                         const std::vector<unsigned short>& glyphs, KWMemStream& output) {
    if (glyphs.empty() || output.fail())
        return false;
    const int type = font.topDict.getNamedItem(cffKey(FS_Word::CharstringType)).getIntegerValue();
    if (type == 1)
        return table.copy(0, table.size(), output);
    constexpr std::uint32_t kShortTable = 0x8000;
    if (font.isCID || table.size() >= kShortTable)
        return RenumberedSubset(table, font, output, 4).write(glyphs);
    // A short table has short offsets, unless what comes out is not short.
    KWMemStream shortTable;
    RenumberedSubset subset(table, font, shortTable, 2);
    if (subset.write(glyphs))
        return output.append(shortTable.data(), shortTable.size()).good();
    return subset.needsLongOffsets() && RenumberedSubset(table, font, output, 4).write(glyphs);
}

} // namespace KWFontService_NS
