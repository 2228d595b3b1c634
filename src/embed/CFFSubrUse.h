#pragma once

#include "cff/CFFFontDicts.h"
#include "cff/CharStringCopy.h"

#include <KWCommon15/KWMemStream.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace KWFontService_NS {

/// A charstring and what it needs to be copied.
struct CharStringToCopy {
    ByteView bytes;
    std::uint8_t fontDict = 0;
    CharStringCounts counts{};
};

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

    /// Notes what a glyph calls. All glyphs come before the first INDEX is written.
    void add(ByteView charString, std::uint8_t fontDict);

    /// Gives the numbers out.
    void renumber();
    // These append an INDEX each. False when it would pass 4 GiB, and when too much is gone
    // through.
    bool writeGlobalSubrs(KWCommonNS::KWMemStream& output);
    bool writeLocalSubrs(KWCommonNS::KWMemStream& output, std::uint8_t fontDict);
    /// @param at  gives the charstring at a place, the same each time
    bool writeCharStrings(KWCommonNS::KWMemStream& output, std::size_t count,
                          const std::function<CharStringToCopy(std::size_t)>& at);

private:
    /// What the charstrings of one Font DICT use.
    struct User {
        SubrEntries entries;
        SubrNumbers numbers;
        std::unique_ptr<SubrWalker> walker;  ///< notes
        std::unique_ptr<SubrWalker> counter; ///< does not
    };

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
};

} // namespace KWFontService_NS
