#pragma once

#include "cff/CFFDict.h"

#include <KWFontService17/FS_MergeEmbeddedFonts.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace KWFontService_NS {

/// From the string ids of an input to those of the merged font. Standard strings stay.
class MergedSIDs {
public:
    MergedSIDs() = default;
    /// @param custom  the new ids of the input's own strings, in their order
    explicit MergedSIDs(std::vector<std::uint16_t> custom) : custom_(std::move(custom)) {}

    /// Nothing for an id that the input has no string for.
    std::optional<std::uint16_t> find(int sid) const;

private:
    std::vector<std::uint16_t> custom_;
};

struct FS_MergeEmbeddedFonts::TopDICT {
    std::string data; ///< the DICT without offsets and CIDCount, with merged string ids
    std::uint32_t charset = 0;
    std::uint32_t charStrings = 0;
    std::uint32_t privateSize = 0;
    std::uint32_t privateOffset = 0;
    std::uint32_t fdArray = 0;
    std::uint32_t fdSelect = 0;
    std::optional<int> cidCount;
    bool cannotCarry = false; ///< it has an entry that would not be true of the merged font
};

/// Appends an integer operand.
void addDictDataInteger(std::string& out, int value);
/// Appends an operand of a width that does not depend on its value: 28 and two bytes, or 29 and
/// four.
void addDictDataOffset(std::string& out, std::uint32_t value, std::uint8_t width);
void addDictDataOperator(std::string& out, CFFOperator op);

/// Takes a Top DICT apart.
/// @param isCID  whether it should be that of a CID-keyed font, which cannot be carried otherwise
FS_MergeEmbeddedFonts::TopDICT getTopDictData(ByteView dict, const MergedSIDs& sids, bool isCID);

/// A Font DICT without `Private`, with merged string ids; nothing where there is no string for one.
std::optional<std::string> getFontDictData(ByteView dict, const MergedSIDs& sids);

/// A Private DICT without `Subrs`.
std::string getPrivateDictData(ByteView dict);

} // namespace KWFontService_NS
