#pragma once

#include "type1/Type1CharCode.h"
#include "type1/Type1CodeMap.h"
#include "type1/Type1Metrics.h"

#include <KWCommon15/KWMemStream.h>

#include <string>
#include <string_view>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// What the codes of one font program stand for. What is pointed at outlives it.
struct Type1CodeNames {
    unsigned char fontNumber = 0;
    /// Of a program with an Encoding of its own; null for one without.
    const Type1BuiltInNames* builtInNames = nullptr;
    const Type1CodeMap* codes = nullptr;   ///< null: none were handed out
    const Type1Metrics* metrics = nullptr; ///< null: nothing is known of the glyphs

    /// The first that one of these has: for program 0 the built-in names; what was handed out; the
    /// metrics; for program 0 StandardEncoding. Empty when none has the code.
    std::string nameOf(unsigned char code) const;
};

/// Appends the encrypted section of a font program with some of its CharStrings: those of
/// `.notdef`, of the codes, and of the parts of accented glyphs (`seac`), which are looked for one
/// level deep. The entries stay as they are, in their order; all else is copied but for their
/// number.
/// @param section  decrypted, its lead bytes included
/// @param codes    one byte each; one that nothing is behind selects nothing
/// @return false without "/CharStrings", when no number that is not 0, a blank and "dict dup begin"
///         follow, and when no entry comes then or one is cut short. Entries past the number stay;
///         there may be fewer
bool subsetEexecSection(std::string_view section, std::string_view codes,
                        const Type1CodeNames& names, KWMemStream& output);

} // namespace KWFontService_NS
