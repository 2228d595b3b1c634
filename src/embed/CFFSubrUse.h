#pragma once

#include "cff/CFFFontDicts.h"
#include "cff/CharStringCopy.h"
#include "embed/CharStringStore.h"
#include "embed/SeacFinder.h"

#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace KWFontService_NS {

/// The subrs that some glyphs use, and the numbers that they get: in the order of the old ones,
/// from the front of the new INDEX on.
///
/// A global subr that calls local ones goes with the Font DICT whose glyphs led there first.
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
    /// @param charStrings  as they were added
    /// @param places       of the glyphs that are written, in their order
    bool writeCharStrings(KWCommonNS::KWMemStream& output, const CharStringStore& charStrings,
                          std::span<const std::size_t> places);

private:
    /// What the charstrings of one Font DICT use.
    struct User {
        SubrEntries entries;
        SubrNumbers numbers;
        std::unique_ptr<SubrWalker> walker;  ///< notes what is called
        std::unique_ptr<SubrWalker> counter; ///< does not
    };

    /// A call in a glyph: the number right before it, and the one that takes its place.
    struct Call {
        std::uint32_t numberBegin;
        std::uint32_t numberEnd;
        int number;
        bool isGlobal;
        bool isRenumbered;
    };
    struct Glyph {
        std::size_t callsEnd;
        std::uint8_t fontDict;
    };

    std::span<const Call> callsOf(std::size_t place) const {
        const std::size_t begin = place == 0 ? 0 : glyphs_[place - 1].callsEnd;
        return std::span(calls_).subspan(begin, glyphs_[place].callsEnd - begin);
    }
    User& userOf(std::uint8_t fontDict);
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
    std::vector<Glyph> glyphs_;
    std::vector<Call> calls_;
};

} // namespace KWFontService_NS
