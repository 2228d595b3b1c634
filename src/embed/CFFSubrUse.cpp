#include "embed/CFFSubrUse.h"

#include "cff/CFFNumbers.h"
#include "embed/CFFIndexWriter.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <numeric>

namespace KWFontService_NS {

namespace {

/// An offset in an INDEX counts from 1.
constexpr std::uint64_t kMostData = std::numeric_limits<std::uint32_t>::max() - 1;

SubrNumbers numbersFor(const SubrEntries& entries) {
    SubrNumbers numbers;
    int next = -subrBias(entries.size());
    entries.visit(
        [&](int operand, const SubrEntryState&) { return numbers.insert(operand, next++); });
    return numbers;
}

ByteView subrOf(const CFFIndex& subrs, int operand) {
    return subrs[static_cast<std::size_t>(std::int64_t{operand} + subrBias(subrs.size()))];
}

std::uint8_t* append(std::uint8_t* to, const std::uint8_t* bytes, std::size_t count) {
    if (count > 0)
        std::memcpy(to, bytes, count);
    return to + count;
}

} // namespace

CFFSubrUse::User& CFFSubrUse::userOf(std::uint8_t fontDict) {
    User& user = users_[fontDict];
    if (!user.walker)
        user.walker = std::make_unique<SubrWalker>(subrsOf(fontDict), findBudget_, &globalEntries_,
                                                   &user.entries, fontDict);
    return user;
}

SubrWalker& CFFSubrUse::counterOf(std::uint8_t fontDict) {
    auto& counter = users_[fontDict].counter;
    if (!counter)
        counter = std::make_unique<SubrWalker>(subrsOf(fontDict), copyBudget_);
    return *counter;
}

void CFFSubrUse::add(ByteView charString, std::uint8_t fontDict, SeacFinder* accents) {
    User& user = userOf(fontDict);
    if (accents != nullptr)
        accents->begin(*user.walker);
    bool hasEnded = !findBudget_.charge(charString.size());
    if (hasEnded)
        accents = nullptr;
    std::size_t noted = 0;
    CharStringCounts counts;
    CharStringScanner scan(charString, counts);
    NumberRun run;
    while (scan.nextOperator([&run](std::size_t at, std::size_t count) { run.add(at, count); })) {
        const bool isEnd = scan.op() == FS_Word::endchar;
        if (!isEnd && !scan.isCall())
            continue;
        if (accents != nullptr)
            accents->numbers(run, charString);
        run.clear();
        if (isEnd) {
            if (accents != nullptr)
                accents->endchar();
            // What stands behind is not used, only renumbered.
            hasEnded = true;
            accents = nullptr;
            continue;
        }
        const auto operand = scan.callOperand();
        if (accents != nullptr)
            accents->call(scan.isGlobalCall(), operand, counts);
        if (!operand)
            continue;
        if (*operand == static_cast<std::int16_t>(*operand)) { // no other subr exists
            note(scan.numberStart() - noted, scan.start() - scan.numberStart(), scan.isGlobalCall(),
                 *operand);
            noted = scan.start();
        }
        if (accents == nullptr)
            (hasEnded ? counterOf(fontDict) : *user.walker)
                .call(scan.isGlobalCall(), *operand, counts);
    }
    callEnds_.push_back(static_cast<std::uint32_t>(calls_.size()));
}

void CFFSubrUse::note(std::size_t gap, std::size_t numberSize, bool isGlobal, int number) {
    for (; gap > Call::kMostGap; gap -= Call::kMostGap)
        calls_.push_back({0, Call::kMostGap << 4});
    calls_.push_back(
        {static_cast<std::int16_t>(number),
         static_cast<std::uint16_t>(gap << 4 | numberSize << 1 | (isGlobal ? 1U : 0U))});
}

void CFFSubrUse::renumber() {
    calls_.shrink_to_fit(); // they stay while the output is made
    callEnds_.shrink_to_fit();
    globalNumbers_ = numbersFor(globalEntries_);
    for (User& user : users_) {
        user.numbers = numbersFor(user.entries);
        if (!user.walker)
            continue;
        user.walker->stopNoting(copyBudget_);
        user.counter = std::move(user.walker);
    }
}

/// How many more bytes a charstring has with the new numbers.
std::int64_t CFFSubrUse::growthOf(std::span<const Call> calls, const User& user) const {
    std::array<std::uint8_t, 5> bytes;
    std::int64_t growth = 0;
    for (const Call& call : calls)
        if (const int* const number = newNumber(call, user))
            growth += static_cast<std::int64_t>(encodeCFFInteger(*number, bytes)) -
                      static_cast<std::int64_t>(call.numberSize());
    return growth;
}

/// Writes a charstring with the new numbers; answers where it ends.
std::uint8_t* CFFSubrUse::copy(ByteView charString, std::span<const Call> calls, const User& user,
                               std::uint8_t* to) const {
    std::array<std::uint8_t, 5> bytes;
    std::size_t at = 0;
    std::size_t copied = 0;
    for (const Call& call : calls) {
        at += call.gap();
        if (const int* const number = newNumber(call, user)) {
            to = append(to, charString.data() + copied, at - copied);
            to = append(to, bytes.data(), encodeCFFInteger(*number, bytes));
            copied = at + call.numberSize();
        }
        at += call.numberSize();
    }
    return append(to, charString.data() + copied, charString.size() - copied);
}

bool CFFSubrUse::writeCharStrings(KWCommonNS::KWMemStream& output, CharStringReader& charStrings,
                                  std::span<const SubsetGlyph> glyphs, std::size_t behind) {
    // Sizes first, so that the charstrings go straight to their place.
    std::vector<std::uint32_t> offsets;
    offsets.reserve(glyphs.size() + 1);
    offsets.push_back(0);
    std::int64_t end = 0;
    for (const SubsetGlyph& glyph : glyphs) {
        end += charStrings.lengthOf(glyph.gid) +
               growthOf(callsOf(glyph.place), users_[glyph.fontDict]);
        if (end >= static_cast<std::int64_t>(kMostData))
            return false;
        offsets.push_back(static_cast<std::uint32_t>(end));
    }
    output.rdbuf()->reserve(output.size() +
                            indexHeadSize(glyphs.size(), indexOffSize(offsets.back())) +
                            offsets.back() + behind);
    writeIndexHead(output, offsets);

    const std::uint32_t pieceSize = charStrings.pieceSize();
    for (std::size_t begin = 0; begin < glyphs.size();) {
        std::size_t next = begin + 1;
        while (next < glyphs.size() && offsets[next + 1] - offsets[begin] <= pieceSize)
            ++next;
        if (!writePiece(output, charStrings, glyphs.subspan(begin, next - begin),
                        std::span(offsets).subspan(begin, next - begin + 1)))
            return false;
        begin = next;
    }
    // Subrs are all that is left to write.
    calls_ = {};
    callEnds_ = {};
    piece_ = {};
    return true;
}

/// Writes some glyphs that are read in the order that the source has them in.
bool CFFSubrUse::writePiece(KWCommonNS::KWMemStream& output, CharStringReader& charStrings,
                            std::span<const SubsetGlyph> glyphs,
                            std::span<const std::uint32_t> offsets) {
    std::vector<std::size_t> order(glyphs.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto gidOf = [glyphs](std::size_t i) { return glyphs[i].gid; };
    if (!std::ranges::is_sorted(order, {}, gidOf))
        std::ranges::sort(order, {}, gidOf);
    std::vector<std::uint16_t> gids;
    gids.reserve(glyphs.size());
    for (const std::size_t i : order)
        gids.push_back(glyphs[i].gid);

    const std::size_t size = offsets.back() - offsets.front();
    piece_.reserve(std::max<std::size_t>(size, charStrings.pieceSize()));
    piece_.resize(size);
    auto place = order.begin();
    const bool ok = charStrings.visit(gids, [&](ByteView charString) {
        const std::size_t i = *place++;
        copy(charString, callsOf(glyphs[i].place), users_[glyphs[i].fontDict],
             piece_.data() + (offsets[i] - offsets.front()));
    });
    output.append(piece_.data(), piece_.size());
    return ok;
}

std::size_t CFFSubrUse::localSubrsSize(std::uint8_t fontDict) const {
    const CFFIndex& subrs = *fontDicts_[fontDict].localSubrs;
    std::size_t size = indexHeadSize(users_[fontDict].entries.size(), subrs.offSize());
    users_[fontDict].entries.visit([&](int operand, const SubrEntryState&) {
        size += subrOf(subrs, operand).size();
        return true;
    });
    return std::min(size, subrs.byteSize()); // subrs may lie over each other
}

bool CFFSubrUse::writeSubrs(KWCommonNS::KWMemStream& output, const CFFIndex& subrs,
                            const SubrEntries& entries, std::optional<std::uint8_t> fontDict) {
    std::size_t size = 0;
    const bool isWithin = entries.visit([&](int operand, const SubrEntryState&) {
        const std::size_t one = subrOf(subrs, operand).size();
        size += one;
        return copyBudget_.charge(one);
    });
    if (!isWithin)
        return false;
    std::vector<std::uint32_t> offsets{0};
    offsets.reserve(entries.size() + 1);
    std::vector<std::uint8_t> data;
    data.reserve(size);
    const bool fits = entries.visit([&](int operand, const SubrEntryState& entry) {
        const std::uint8_t owner = fontDict.value_or(entry.fontDict);
        SubrWalker& counter = counterOf(owner);
        const ByteView subr = subrOf(subrs, operand);
        if (counter.isLeaf(!fontDict, operand))
            data.insert(data.end(), subr.data(), subr.data() + subr.size());
        else
            copyCharString(data, subr, counter, globalNumbers_, users_[owner].numbers,
                           entry.counts);
        offsets.push_back(static_cast<std::uint32_t>(data.size()));
        return data.size() < kMostData;
    });
    if (!fits)
        return false;
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
