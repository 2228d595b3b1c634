#include "embed/CFFSubsetInPlace.h"

#include "common/KWLimits.h"
#include "embed/CFFDictScanner.h"
#include "embed/CFFIndexWriter.h"
#include "embed/CFFTopDict.h"
#include "embed/CharStringReader.h"

#include <algorithm>
#include <array>
#include <limits>

namespace KWFontService_NS {

namespace {

constexpr std::array<std::uint8_t, kNameIndexAt> kHeader{1, 0, 4, 3};
constexpr std::uint8_t kShortInteger = 28;
constexpr std::uint8_t kLongInteger = 29;
constexpr std::size_t kLongIntegerSize = 5;
constexpr std::uint8_t kEndchar = 14;

bool holdsOffset(CFFOperator op) {
    switch (op) {
    case kCharsetOp:
    case kEncodingOp:
    case kCharStringsOp:
    case kPrivateOp:
    case kFDArrayOp:
    case kFDSelectOp:
        return true;
    default:
        return false;
    }
}

/// An operand with a new value in its own form; nothing when it does not fit. Forms that hold no
/// offset stay as they are.
std::optional<std::vector<std::uint8_t>> inSameForm(ByteView operand, std::int64_t value) {
    const std::uint8_t form = *operand.u8(0);
    const auto within = [value](std::int64_t least, std::int64_t most) {
        return value >= least && value <= most;
    };
    std::vector<std::uint8_t> bytes(operand.data(), operand.data() + operand.size());
    if (form == kShortInteger) {
        if (!within(0, 0xFFFF))
            return std::nullopt;
        ByteView::storeU16(&bytes[1], static_cast<std::uint16_t>(value));
    } else if (form == kLongInteger) {
        if (!within(0, 0x7FFFFFFF))
            return std::nullopt;
        ByteView::storeU32(&bytes[1], static_cast<std::uint32_t>(value));
    } else if (form >= 32 && form <= 246) {
        // 22 less than the form asks for, which only a Private DICT right at the start would show.
        constexpr int kZero = 117;
        if (!within(-kZero, 0xFF - kZero))
            return std::nullopt;
        bytes[0] = static_cast<std::uint8_t>(value + kZero);
    } else if (form >= 247 && form <= 250) {
        constexpr int kLeastInTwoBytes = 108;
        if (!within(-107, 1131))
            return std::nullopt;
        if (value < kLeastInTwoBytes)
            bytes = {static_cast<std::uint8_t>(value + 139)};
        else
            ByteView::storeU16(bytes.data(),
                               static_cast<std::uint16_t>((247 << 8) + (value - kLeastInTwoBytes)));
    }
    return bytes;
}

} // namespace

bool CFFInPlaceSubset::plan(const std::vector<unsigned short>& glyphs, std::uint16_t space) {
    if (glyphs.empty() || !readTopDict() || !planCharStrings(glyphs, space))
        return false;
    const std::uint64_t oldSize = charStrings_.end() - charStringsAt_;
    const std::uint64_t newSize =
        indexHeadSize(newOffsets_.size() - 1, indexOffSize(newOffsets_.back())) +
        newOffsets_.back();
    behindCharStrings_ = static_cast<std::int64_t>(newSize) - static_cast<std::int64_t>(oldSize);
    // Offsets whose form has no room for another number get one that has, and all others with
    // them, since that moves everything behind the Top DICT.
    if (!fillTopDict(false) && !fillTopDict(true))
        return false;
    const std::int64_t size = moved(table_.size());
    if (size > std::numeric_limits<std::uint32_t>::max())
        return false;
    size_ = static_cast<std::uint32_t>(size);
    return true;
}

bool CFFInPlaceSubset::readTopDict() {
    topDictsAt_ = kNameIndexAt;
    if (!skipIndex(table_, topDictsAt_))
        return false;
    const auto head = CFFIndexHead::read(table_, topDictsAt_);
    const auto item = head ? head->item(0) : std::nullopt;
    if (!item || !table_.read(item->offset, item->length, sourceTopDict_))
        return false;
    topDictsEnd_ = head->end();
    topOffSize_ = head->offSize();

    std::uint32_t fontDictsAt = 0;
    std::uint32_t privateAt = 0;
    std::uint32_t privateSize = 0;
    const ByteView dict(sourceTopDict_.data(), sourceTopDict_.size());
    for (CFFDictScanner scan(dict); scan.next();) {
        const auto& operand = scan.last();
        const int number = operand.value.getIntegerValue();
        const auto value = static_cast<std::uint32_t>(std::max(number, 0));
        if (!holdsOffset(scan.op()) || !operand.value.isInteger() || value < topDictsEnd_)
            continue;
        offsets_.push_back({operand.begin, operand.end, value});
        if (scan.op() == kCharStringsOp) {
            charStringsAt_ = value;
        } else if (scan.op() == kFDArrayOp) {
            fontDictsAt = value;
        } else if (scan.op() == kPrivateOp) {
            privateAt = value;
            privateSize =
                static_cast<std::uint32_t>(std::max(scan.lastButOne().value.getIntegerValue(), 0));
        }
    }
    auto charStrings =
        charStringsAt_ != 0 ? CFFIndexHead::read(table_, charStringsAt_) : std::nullopt;
    if (!charStrings)
        return false;
    charStrings_ = std::move(*charStrings);
    if (privateSize > 0 && (std::uint64_t{privateAt} + privateSize > table_.size() ||
                            (privateAt >= charStringsAt_ && privateAt < charStrings_.end())))
        return false;
    return charStrings_.end() <= table_.size() && (fontDictsAt == 0 || readFDArray(fontDictsAt));
}

bool CFFInPlaceSubset::readFDArray(std::uint32_t at) {
    auto index = CFFIndex::read(table_, at);
    if (!index)
        return false;
    if (index->empty())
        return true;
    if (index->size() > KWCommonNS::kMaxFontDicts || index->end() > table_.size() ||
        (at < charStrings_.end() && index->end() > charStringsAt_))
        return false;
    fontDicts_ = std::move(*index);
    fontDictsAt_ = at;
    fontDictsEnd_ = fontDicts_.end();
    std::uint64_t size = 0;
    for (std::size_t i = 0; i < fontDicts_.size(); ++i) {
        // Items that lie over each other would have all of the data written again and again.
        size += fontDicts_[i].size();
        if (size > fontDicts_.dataSize())
            return false;
        for (CFFDictScanner scan(fontDicts_[i]); scan.next();) {
            const auto& operand = scan.last();
            if (scan.op() == kPrivateOp && operand.value.isInteger() &&
                operand.value.getIntegerValue() >= 0)
                privateOffsets_.push_back(
                    {i, operand.begin, operand.end,
                     static_cast<std::uint32_t>(operand.value.getIntegerValue())});
        }
    }
    return true;
}

bool CFFInPlaceSubset::planCharStrings(const std::vector<unsigned short>& glyphs,
                                       std::uint16_t space) {
    glyphs_.assign(glyphs.begin(), glyphs.end());
    glyphs_.push_back(0);
    std::ranges::sort(glyphs_);
    glyphs_.erase(std::unique(glyphs_.begin(), glyphs_.end()), glyphs_.end());
    CharStringReader reader(table_, charStrings_);
    if (!reader.sizeOf(glyphs_))
        return false;
    const auto item = charStrings_.item(space);
    if (!item)
        filler_ = {kEndchar};
    else if (!table_.read(item->offset, item->length, filler_))
        return false;

    const std::size_t count = std::size_t{glyphs_.back()} + 1;
    if ((count - glyphs_.size()) * std::uint64_t{filler_.size()} >
        table_.size() * KWCommonNS::kMaxFillers)
        return false;
    std::uint64_t size = 0;
    newOffsets_.reserve(count + 1);
    newOffsets_.push_back(0);
    for (const std::uint16_t gid : glyphs_) {
        while (newOffsets_.size() <= gid)
            newOffsets_.push_back(static_cast<std::uint32_t>(size += filler_.size()));
        newOffsets_.push_back(static_cast<std::uint32_t>(size += charStrings_.item(gid)->length));
    }
    return size < std::numeric_limits<std::uint32_t>::max();
}

/// Where something at an old offset comes to be.
std::int64_t CFFInPlaceSubset::moved(std::int64_t offset) const {
    const auto isBehind = [offset](std::uint64_t end) {
        return offset >= static_cast<std::int64_t>(end);
    };
    return offset + (isBehind(topDictsEnd_) ? behindTopDict_ : 0) +
           (fontDictsAt_ != 0 && isBehind(fontDictsEnd_) ? behindFontDicts_ : 0) +
           (isBehind(charStrings_.end()) ? behindCharStrings_ : 0);
}

/// Writes the Font DICTs with new offsets, as far as what they point at moves at present.
bool CFFInPlaceSubset::patchFontDicts() {
    newFontDicts_.clear();
    // In front of CharStrings they are left alone unless something moves.
    const bool isBehind = fontDictsAt_ > charStringsAt_;
    const bool stay =
        !isBehind && std::ranges::all_of(privateOffsets_, [this](const PrivateOffset& offset) {
            return moved(offset.value) == offset.value;
        });
    auto offset = stay ? privateOffsets_.end() : privateOffsets_.begin();
    for (std::size_t i = 0; i < fontDicts_.size(); ++i) {
        const ByteView source = fontDicts_[i];
        auto& dict = newFontDicts_.emplace_back();
        dict.reserve(source.size());
        std::size_t copied = 0;
        const auto copyTo = [&](std::size_t end) {
            dict.insert(dict.end(), source.data() + copied, source.data() + end);
        };
        for (; offset != privateOffsets_.end() && offset->fontDict == i; ++offset) {
            const auto bytes = inSameForm(source.sub(offset->begin, offset->end - offset->begin),
                                          moved(offset->value));
            if (!bytes)
                return false;
            copyTo(offset->begin);
            dict.insert(dict.end(), bytes->begin(), bytes->end());
            copied = offset->end;
        }
        copyTo(source.size());
    }
    return true;
}

/// The same until nothing moves any more: a DICT that shrinks moves what lies behind it, and that
/// may shrink another one.
bool CFFInPlaceSubset::fillFontDicts() {
    behindFontDicts_ = 0;
    if (fontDictsAt_ == 0)
        return true;
    const std::uint64_t oldSize = fontDictsEnd_ - fontDictsAt_;
    for (std::size_t round = 0; round <= privateOffsets_.size() + 1; ++round) {
        if (!patchFontDicts())
            return false;
        std::uint64_t size = indexHeadSize(newFontDicts_.size(), fontDicts_.offSize());
        for (const auto& dict : newFontDicts_)
            size += dict.size();
        const std::int64_t moves =
            static_cast<std::int64_t>(size) - static_cast<std::int64_t>(oldSize);
        if (moves == behindFontDicts_)
            return true;
        behindFontDicts_ = moves;
    }
    return false;
}

/// Makes the new Top DICT, and the Font DICTs with it.
/// @param rewrite  puts every offset into five bytes
/// @return         false when that is needed and not asked for, and when Font DICTs do not hold
///                 their offsets
bool CFFInPlaceSubset::fillTopDict(bool rewrite) {
    topDict_.clear();
    std::vector<std::size_t> places;
    std::size_t copied = 0;
    const auto copyTo = [&](std::size_t end) {
        topDict_.insert(topDict_.end(),
                        sourceTopDict_.begin() + static_cast<std::ptrdiff_t>(copied),
                        sourceTopDict_.begin() + static_cast<std::ptrdiff_t>(end));
        copied = end;
    };
    for (const Offset& offset : offsets_) {
        copyTo(offset.begin);
        places.push_back(topDict_.size());
        if (rewrite) {
            topDict_.push_back(kLongInteger);
            topDict_.resize(topDict_.size() + kLongIntegerSize - 1);
            copied = offset.end;
        }
    }
    copyTo(sourceTopDict_.size());
    topOffSize_ = std::max(topOffSize_, indexOffSize(static_cast<std::uint32_t>(topDict_.size())));
    behindTopDict_ =
        static_cast<std::int64_t>(topDictsAt_ + indexHeadSize(1, topOffSize_) + topDict_.size()) -
        static_cast<std::int64_t>(topDictsEnd_);
    if (!fillFontDicts())
        return false;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::int64_t value = moved(offsets_[i].value);
        if (value == offsets_[i].value && !rewrite)
            continue;
        if (topDict_[places[i]] != kLongInteger || value > 0x7FFFFFFF)
            return false;
        ByteView::storeU32(&topDict_[places[i] + 1], static_cast<std::uint32_t>(value));
    }
    return true;
}

bool CFFInPlaceSubset::copyUpTo(std::uint64_t& from, std::uint64_t to, KWMemStream& output) const {
    const std::uint64_t begin = from;
    from = to;
    return table_.copy(begin, to - begin, output);
}

bool CFFInPlaceSubset::write(KWMemStream& output) {
    output.append(kHeader.data(), kHeader.size());
    std::uint64_t at = kNameIndexAt;
    if (!copyUpTo(at, topDictsAt_, output))
        return false;
    writeIndexHead(output,
                   std::array{std::uint32_t{0}, static_cast<std::uint32_t>(topDict_.size())},
                   topOffSize_);
    output.append(topDict_.data(), topDict_.size());
    at = topDictsEnd_;

    const auto fontDicts = [&] {
        const bool ok = copyUpTo(at, fontDictsAt_, output) && writeFontDicts(output);
        at = fontDictsEnd_;
        return ok;
    };
    if (fontDictsAt_ != 0 && fontDictsAt_ < charStringsAt_ && !fontDicts())
        return false;
    if (!copyUpTo(at, charStringsAt_, output) || !writeCharStrings(output))
        return false;
    at = charStrings_.end();
    if (fontDictsAt_ > charStringsAt_ && !fontDicts())
        return false;
    return copyUpTo(at, table_.size(), output);
}

bool CFFInPlaceSubset::writeFontDicts(KWMemStream& output) {
    std::vector<std::uint32_t> offsets{0};
    for (const auto& dict : newFontDicts_)
        offsets.push_back(offsets.back() + static_cast<std::uint32_t>(dict.size()));
    writeIndexHead(output, offsets, fontDicts_.offSize());
    for (const auto& dict : newFontDicts_)
        output.append(dict.data(), dict.size());
    return !output.fail();
}

bool CFFInPlaceSubset::writeCharStrings(KWMemStream& output) {
    writeIndexHead(output, newOffsets_);
    constexpr std::size_t kPieceSize = std::size_t{16} << 10;
    std::vector<std::uint8_t> piece;
    const auto append = [&](ByteView bytes) {
        piece.insert(piece.end(), bytes.data(), bytes.data() + bytes.size());
        if (piece.size() >= kPieceSize) {
            output.append(piece.data(), piece.size());
            piece.clear();
        }
    };
    std::size_t place = 0;
    std::size_t next = 0;
    CharStringReader reader(table_, charStrings_);
    const bool ok = reader.visit(glyphs_, [&](ByteView charString) {
        const std::uint16_t gid = glyphs_[place++];
        for (; next < gid; ++next)
            append(ByteView(filler_.data(), filler_.size()));
        append(charString);
        ++next;
    });
    output.append(piece.data(), piece.size());
    return ok && !output.fail();
}

bool subsetCFFInPlace(CFFStream& table, const std::vector<unsigned short>& glyphs,
                      std::uint16_t space, KWMemStream& output) {
    CFFInPlaceSubset subset(table);
    return subset.plan(glyphs, space) && subset.write(output);
}

} // namespace KWFontService_NS
