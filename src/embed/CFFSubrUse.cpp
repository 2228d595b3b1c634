#include "embed/CFFSubrUse.h"

#include "cff/CFFNumbers.h"
#include "embed/CFFIndexWriter.h"

#include <array>
#include <limits>

namespace KWFontService_NS {

namespace {

SubrNumbers numbersFor(const SubrEntries& entries) {
    SubrNumbers numbers;
    int next = -subrBias(entries.size());
    for (const auto& entry : entries)
        numbers.emplace_hint(numbers.end(), entry.first, next++);
    return numbers;
}

/// Writes an INDEX of `count` items without making them twice.
/// @param sizeOf  the size of an item; nothing ends it all
/// @param append  appends an item
template <class SizeOf, class Append>
bool writeItems(KWCommonNS::KWMemStream& output, std::size_t count, const SizeOf& sizeOf,
                const Append& append) {
    std::vector<std::uint32_t> offsets{0};
    offsets.reserve(count + 1);
    std::uint64_t end = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::optional<std::size_t> size = sizeOf(i);
        if (!size || end + *size >= std::numeric_limits<std::uint32_t>::max())
            return false;
        end += *size;
        offsets.push_back(static_cast<std::uint32_t>(end));
    }
    writeIndexHead(output, offsets);

    constexpr std::size_t kPieceSize = std::size_t{64} << 10;
    std::vector<std::uint8_t> piece;
    for (std::size_t i = 0; i < count; ++i) {
        append(piece, i);
        if (piece.size() >= kPieceSize || i + 1 == count) {
            output.append(piece.data(), piece.size());
            piece.clear();
        }
    }
    return true;
}

void appendBytes(std::vector<std::uint8_t>& to, ByteView bytes) {
    to.insert(to.end(), bytes.data(), bytes.data() + bytes.size());
}

} // namespace

CFFSubrUse::User& CFFSubrUse::userOf(std::uint8_t fontDict) {
    User& user = users_[fontDict];
    if (!user.counter) {
        user.walker = std::make_unique<SubrWalker>(subrsOf(fontDict), findBudget_, &globalEntries_,
                                                   &user.entries, fontDict);
        user.counter = std::make_unique<SubrWalker>(subrsOf(fontDict), copyBudget_);
    }
    return user;
}

void CFFSubrUse::add(ByteView charString, std::uint8_t fontDict, SeacFinder* accents) {
    User& user = userOf(fontDict);
    if (accents != nullptr)
        accents->begin();
    bool hasEnded = !findBudget_.charge(charString.size());
    CharStringCounts counts;
    CharStringScanner scan(charString, counts);
    while (scan.next()) {
        if (scan.isNumber()) {
            if (accents != nullptr && !hasEnded)
                accents->number(scan.number());
            continue;
        }
        if (!hasEnded && scan.op() == FS_Word::endchar) {
            if (accents != nullptr)
                accents->endchar();
            // What stands behind is not used, only renumbered.
            hasEnded = true;
        }
        if (!scan.isCall())
            continue;
        const auto operand = scan.callOperand();
        if (accents != nullptr && !hasEnded)
            accents->call(scan.isGlobalCall(), operand, counts);
        if (!operand)
            continue;
        calls_.push_back({static_cast<std::uint32_t>(scan.numberStart()),
                          static_cast<std::uint32_t>(scan.start()), *operand, scan.isGlobalCall(),
                          false});
        (hasEnded ? user.counter : user.walker)->call(scan.isGlobalCall(), *operand, counts);
    }
    glyphs_.push_back({calls_.size(), fontDict});
}

void CFFSubrUse::renumber() {
    globalNumbers_ = numbersFor(globalEntries_);
    for (User& user : users_) {
        user.walker.reset();
        user.numbers = numbersFor(user.entries);
    }
    std::size_t next = 0;
    for (const Glyph& glyph : glyphs_) {
        for (; next < glyph.callsEnd; ++next) {
            Call& call = calls_[next];
            const SubrNumbers& numbers =
                call.isGlobal ? globalNumbers_ : users_[glyph.fontDict].numbers;
            const auto found = numbers.find(call.number);
            call.isRenumbered = found != numbers.end();
            if (call.isRenumbered)
                call.number = found->second;
        }
    }
}

bool CFFSubrUse::writeCharStrings(KWCommonNS::KWMemStream& output,
                                  const CharStringStore& charStrings,
                                  std::span<const std::size_t> places) {
    std::array<std::uint8_t, 5> number;
    const auto sizeOf = [&](std::size_t i) {
        std::size_t size = charStrings[places[i]].size();
        for (const Call& call : callsOf(places[i])) {
            if (call.isRenumbered)
                size += encodeCFFInteger(call.number, number) - (call.numberEnd - call.numberBegin);
        }
        return std::optional(size);
    };
    const auto append = [&](std::vector<std::uint8_t>& piece, std::size_t i) {
        const ByteView charString = charStrings[places[i]];
        std::size_t copied = 0;
        for (const Call& call : callsOf(places[i])) {
            if (!call.isRenumbered)
                continue;
            appendBytes(piece, charString.sub(copied, call.numberBegin - copied));
            appendBytes(piece, ByteView(number.data(), encodeCFFInteger(call.number, number)));
            copied = call.numberEnd;
        }
        appendBytes(piece, charString.from(copied));
    };
    return writeItems(output, places.size(), sizeOf, append);
}

bool CFFSubrUse::writeSubrs(KWCommonNS::KWMemStream& output, const CFFIndex& subrs,
                            const SubrEntries& entries, std::optional<std::uint8_t> fontDict) {
    struct Source {
        ByteView bytes;
        const SubrEntryState* entry;
    };
    std::vector<Source> sources;
    sources.reserve(entries.size());
    const int bias = subrBias(subrs.size());
    for (const auto& [operand, entry] : entries)
        sources.push_back({subrs[static_cast<std::size_t>(operand + bias)], &entry});
    const auto userFor = [&](const Source& source) -> User& {
        return userOf(fontDict.value_or(source.entry->fontDict));
    };
    const auto sizeOf = [&](std::size_t i) -> std::optional<std::size_t> {
        const Source& source = sources[i];
        if (!copyBudget_.charge(source.bytes.size()))
            return std::nullopt;
        User& user = userFor(source);
        return copiedSize(source.bytes, *user.counter, globalNumbers_, user.numbers,
                          source.entry->counts);
    };
    const auto append = [&](std::vector<std::uint8_t>& piece, std::size_t i) {
        User& user = userFor(sources[i]);
        copyCharString(piece, sources[i].bytes, *user.counter, globalNumbers_, user.numbers,
                       sources[i].entry->counts);
    };
    return writeItems(output, sources.size(), sizeOf, append);
}

bool CFFSubrUse::writeGlobalSubrs(KWCommonNS::KWMemStream& output) {
    return writeSubrs(output, globals_, globalEntries_, std::nullopt);
}

bool CFFSubrUse::writeLocalSubrs(KWCommonNS::KWMemStream& output, std::uint8_t fontDict) {
    return writeSubrs(output, *fontDicts_[fontDict].localSubrs, users_[fontDict].entries, fontDict);
}

} // namespace KWFontService_NS
