#include "embed/CFFSubrUse.h"

#include "cff/CFFNumbers.h"
#include "embed/CFFIndexWriter.h"

#include <array>
#include <limits>

namespace KWFontService_NS {

namespace {

/// An offset in an INDEX counts from 1.
constexpr std::uint64_t kMostData = std::numeric_limits<std::uint32_t>::max() - 1;

SubrNumbers numbersFor(const SubrEntries& entries) {
    SubrNumbers numbers;
    int next = -subrBias(entries.size());
    for (const auto& entry : entries)
        numbers.emplace_hint(numbers.end(), entry.first, next++);
    return numbers;
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
        accents->begin(*user.walker);
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
    // Sizes first: there are too many bytes to make them twice.
    std::vector<std::uint32_t> offsets{0};
    offsets.reserve(places.size() + 1);
    std::uint64_t end = 0;
    for (const std::size_t place : places) {
        end += charStrings[place].size();
        for (const Call& call : callsOf(place))
            if (call.isRenumbered)
                end += encodeCFFInteger(call.number, number) - (call.numberEnd - call.numberBegin);
        if (end >= kMostData)
            return false;
        offsets.push_back(static_cast<std::uint32_t>(end));
    }
    writeIndexHead(output, offsets);

    constexpr std::size_t kPieceSize = std::size_t{64} << 10;
    std::vector<std::uint8_t> piece;
    for (const std::size_t place : places) {
        const ByteView charString = charStrings[place];
        std::size_t copied = 0;
        for (const Call& call : callsOf(place)) {
            if (!call.isRenumbered)
                continue;
            appendBytes(piece, charString.sub(copied, call.numberBegin - copied));
            appendBytes(piece, ByteView(number.data(), encodeCFFInteger(call.number, number)));
            copied = call.numberEnd;
        }
        appendBytes(piece, charString.from(copied));
        if (piece.size() >= kPieceSize) {
            output.append(piece.data(), piece.size());
            piece.clear();
        }
    }
    output.append(piece.data(), piece.size());
    return true;
}

bool CFFSubrUse::writeSubrs(KWCommonNS::KWMemStream& output, const CFFIndex& subrs,
                            const SubrEntries& entries, std::optional<std::uint8_t> fontDict) {
    std::vector<std::uint32_t> offsets{0};
    offsets.reserve(entries.size() + 1);
    std::vector<std::uint8_t> data;
    const int bias = subrBias(subrs.size());
    for (const auto& [operand, entry] : entries) {
        const ByteView subr = subrs[static_cast<std::size_t>(std::int64_t{operand} + bias)];
        if (!copyBudget_.charge(subr.size()))
            return false;
        User& user = userOf(fontDict.value_or(entry.fontDict));
        copyCharString(data, subr, *user.counter, globalNumbers_, user.numbers, entry.counts);
        if (data.size() >= kMostData)
            return false;
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
    }
    writeIndexHead(output, offsets);
    output.append(data.data(), data.size());
    return true;
}

bool CFFSubrUse::writeGlobalSubrs(KWCommonNS::KWMemStream& output) {
    return writeSubrs(output, globals_, globalEntries_, std::nullopt);
}

bool CFFSubrUse::writeLocalSubrs(KWCommonNS::KWMemStream& output, std::uint8_t fontDict) {
    return writeSubrs(output, *fontDicts_[fontDict].localSubrs, users_[fontDict].entries, fontDict);
}

} // namespace KWFontService_NS
