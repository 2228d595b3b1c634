#pragma once

#include "cff/CFFFontDicts.h"
#include "cff/CharStringCopy.h"
#include "embed/CharStringReader.h"
#include "embed/SeacFinder.h"

#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace KWFontService_NS {

/// A glyph of a subset.
struct SubsetGlyph {
    std::uint16_t gid = 0;   ///< in the source
    std::uint16_t key = 0;   ///< string id or CID, which orders the glyphs
    std::uint16_t place = 0; ///< among those whose calls were noted
    std::uint8_t fontDict = 0;
};

/// The subrs that some glyphs use, and the numbers that they get: in the order of the old ones,
/// from the front of the new INDEX on.
///
/// A global subr that calls local ones goes with the Font DICT whose glyphs led there first. Of
/// charstrings nothing is kept but where they call: they are read again to be written.
class CFFSubrUse {
public:
    /// @param globals,fontDicts  alive as long as this object
    /// @param budget             bytes to go through when uses are found, and again when copying
    CFFSubrUse(const CFFIndex& globals, const std::vector<CFFFontDict>& fontDicts,
               std::size_t budget)
        : globals_(globals), fontDicts_(fontDicts), findBudget_(budget), copyBudget_(budget),
          users_(fontDicts.size()) {}

    /// True once what was to be gone through was too much: what was found or written is not whole.
    bool isSpent() const { return findBudget_.isSpent() || copyBudget_.isSpent(); }

    /// Notes what a glyph calls. Glyphs have places in the order that they come in.
    /// @param accents  null, or told what the charstring holds
    void add(ByteView charString, std::uint8_t fontDict, SeacFinder* accents = nullptr);

    /// Gives the numbers out, when all glyphs have come.
    void renumber();
    // These append an INDEX each. False when it would pass 4 GiB, and when too much is gone
    // through.
    bool writeGlobalSubrs(KWCommonNS::KWMemStream& output);
    bool writeLocalSubrs(KWCommonNS::KWMemStream& output, std::uint8_t fontDict);
    /// False on a short read, too.
    /// @param charStrings  where the glyphs that were added come from
    /// @param behind       about how many bytes the output gets after that
    bool writeCharStrings(KWCommonNS::KWMemStream& output, CharStringReader& charStrings,
                          std::span<const SubsetGlyph> glyphs, std::size_t behind);
    /// About the bytes that the local subrs of a Font DICT take.
    std::size_t localSubrsSize(std::uint8_t fontDict) const;

private:
    /// What the charstrings of one Font DICT use.
    struct User {
        SubrEntries entries;
        SubrNumbers numbers;
        std::unique_ptr<SubrWalker> walker;  ///< notes what is called, until all glyphs have come
        std::unique_ptr<SubrWalker> counter; ///< never does
    };

    /// A call in a glyph. Fonts have a million, so it has four bytes.
    struct Call {
        static constexpr std::size_t kMostGap = 0xFFF;

        std::int16_t number;
        std::uint16_t layout; ///< gap, number size and `isGlobal`

        /// Behind the number of the call before.
        std::size_t gap() const { return layout >> 4; }
        /// Of its own number; 0 for what is no call and only leads on.
        std::size_t numberSize() const { return layout >> 1 & 7; }
        bool isGlobal() const { return (layout & 1) != 0; }
    };

    void note(std::size_t gap, std::size_t numberSize, bool isGlobal, int number);
    std::span<const Call> callsOf(std::size_t place) const {
        const std::size_t begin = place == 0 ? 0 : callEnds_[place - 1];
        return std::span(calls_).subspan(begin, callEnds_[place] - begin);
    }
    /// Null for a number that stays.
    const int* newNumber(const Call& call, const User& user) const {
        return call.numberSize() != 0
                   ? (call.isGlobal() ? globalNumbers_ : user.numbers).find(call.number)
                   : nullptr;
    }
    std::int64_t growthOf(std::span<const Call> calls, const User& user) const;
    std::uint8_t* copy(ByteView charString, std::span<const Call> calls, const User& user,
                       std::uint8_t* to) const;
    bool writePiece(KWCommonNS::KWMemStream& output, CharStringReader& charStrings,
                    std::span<const SubsetGlyph> glyphs, std::span<const std::uint32_t> offsets);

    User& userOf(std::uint8_t fontDict);
    SubrWalker& counterOf(std::uint8_t fontDict);
    CharStringSubrs subrsOf(std::uint8_t fontDict) const {
        return {globals_, *fontDicts_[fontDict].localSubrs};
    }
    bool writeSubrs(KWCommonNS::KWMemStream& output, const CFFIndex& subrs,
                    const SubrEntries& entries, std::optional<std::uint8_t> fontDict);

    const CFFIndex& globals_;
    const std::vector<CFFFontDict>& fontDicts_;
    CharStringBudget findBudget_;
    CharStringBudget copyBudget_;
    SubrEntries globalEntries_;
    SubrNumbers globalNumbers_;
    std::vector<User> users_;
    std::vector<std::uint32_t> callEnds_; ///< by glyph, in `calls_`
    std::vector<Call> calls_;
    std::vector<std::uint8_t> piece_;
};

} // namespace KWFontService_NS
