#include "embed/CFFSubrUse.h"

#include "embed/CFFIndexWriter.h"

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

} // namespace

void CFFSubrUse::add(ByteView charString, std::uint8_t fontDict) {
    User& user = users_[fontDict];
    if (!user.walker)
        user.walker = std::make_unique<SubrWalker>(subrsOf(fontDict), findBudget_, &globalEntries_,
                                                   &user.entries, fontDict);
    CharStringCounts counts;
    user.walker->walk(charString, counts);
}

void CFFSubrUse::renumber() {
    globalNumbers_ = numbersFor(globalEntries_);
    for (std::size_t i = 0; i < users_.size(); ++i) {
        User& user = users_[i];
        user.walker.reset();
        user.numbers = numbersFor(user.entries);
    }
}

bool CFFSubrUse::writeCharStrings(KWCommonNS::KWMemStream& output, std::size_t count,
                                  const std::function<CharStringToCopy(std::size_t)>& at) {
    const auto userOf = [this](const CharStringToCopy& source) -> User& {
        User& user = users_[source.fontDict];
        if (!user.counter)
            user.counter = std::make_unique<SubrWalker>(subrsOf(source.fontDict), copyBudget_);
        return user;
    };
    std::vector<std::uint32_t> offsets{0};
    offsets.reserve(count + 1);
    std::uint64_t size = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const CharStringToCopy source = at(i);
        if (!copyBudget_.charge(source.bytes.size()))
            return false;
        User& user = userOf(source);
        size +=
            copiedSize(source.bytes, *user.counter, globalNumbers_, user.numbers, source.counts);
        if (size >= std::numeric_limits<std::uint32_t>::max())
            return false;
        offsets.push_back(static_cast<std::uint32_t>(size));
    }
    writeIndexHead(output, offsets);

    constexpr std::size_t kPieceSize = std::size_t{64} << 10;
    std::vector<std::uint8_t> piece;
    for (std::size_t i = 0; i < count; ++i) {
        const CharStringToCopy source = at(i);
        User& user = userOf(source);
        copyCharString(piece, source.bytes, *user.counter, globalNumbers_, user.numbers,
                       source.counts);
        if (piece.size() >= kPieceSize || i + 1 == count) {
            output.append(piece.data(), piece.size());
            piece.clear();
        }
    }
    return true;
}

bool CFFSubrUse::writeSubrs(KWCommonNS::KWMemStream& output, const CFFIndex& subrs,
                            const SubrEntries& entries, std::optional<std::uint8_t> fontDict) {
    std::vector<CharStringToCopy> used;
    used.reserve(entries.size());
    const int bias = subrBias(subrs.size());
    for (const auto& [operand, entry] : entries)
        used.push_back({subrs[static_cast<std::size_t>(operand + bias)],
                        fontDict.value_or(entry.fontDict), entry.counts});
    return writeCharStrings(output, used.size(), [&used](std::size_t i) { return used[i]; });
}

bool CFFSubrUse::writeGlobalSubrs(KWCommonNS::KWMemStream& output) {
    return writeSubrs(output, globals_, globalEntries_, std::nullopt);
}

bool CFFSubrUse::writeLocalSubrs(KWCommonNS::KWMemStream& output, std::uint8_t fontDict) {
    return writeSubrs(output, *fontDicts_[fontDict].localSubrs, users_[fontDict].entries, fontDict);
}

} // namespace KWFontService_NS
