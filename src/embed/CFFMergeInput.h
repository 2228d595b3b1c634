#pragma once

#include "cff/CFFFontDicts.h"
#include "cff/CFFIndex.h"
#include "cff/CharString.h"
#include "embed/CFFMergeDict.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace KWFontService_NS {

/// The glyphs of a charset of format 0 or 1 but for glyph 0, by ascending value, each value once:
/// where the file has one twice, its first glyph counts.
struct MergeCharset {
    struct Entry {
        std::uint16_t value = 0; ///< SID or CID
        std::uint16_t gid = 0;

        friend bool operator==(const Entry&, const Entry&) = default;
    };

    std::vector<Entry> entries;
    bool hasZero = false; ///< a range begins at value 0, which gets no entry
};

/// False for format 2 and any higher one, which leave it empty, and on a short read.
bool getCharsets(CFFStream& table, std::uint32_t offset, std::size_t glyphCount,
                 MergeCharset& charset);

/// False for formats other than 0 and 3 and on a short read.
bool getFDSelect(CFFStream& table, std::uint32_t offset, std::size_t glyphCount,
                 std::vector<FDRange>& ranges);

/// One of two CFF tables that become one, read step by step; each step answers false on a short
/// read and for contents that contradict themselves.
class CFFMergeInput {
public:
    struct FontDict {
        std::string data;                               ///< all but `Private`
        std::shared_ptr<const std::string> privateDict; ///< null where there is none
        std::shared_ptr<const CFFIndex> localSubrs;     ///< never null
    };

    /// @param table  alive as long as this object
    explicit CFFMergeInput(CFFStream& table);

    /// Header, names, Top DICT, strings and Global Subrs.
    bool readHead();
    /// What the Top DICT leads to, when it is known what strings are called.
    bool readGlyphs(const MergedSIDs& sids, bool isCID);

    /// The name without its subset tag.
    std::string_view fontName() const;
    std::uint8_t fontDictOf(std::uint16_t gid) const;
    /// Appends the charstring of a glyph as `makeNewCharString`; false for one that has no Font
    /// DICT or unfolds too far.
    bool addCharString(std::uint16_t gid, std::string& out);

    std::array<std::uint8_t, 4> header{};
    std::vector<std::uint8_t> nameIndex; ///< the INDEX as it stands
    CFFIndex names;
    CFFIndex strings;
    FS_MergeEmbeddedFonts::TopDICT topDict;
    MergeCharset charset;
    CFFIndex charStrings;
    std::vector<FontDict> fontDicts; ///< of a name-keyed font one

private:
    bool getGlobalSubr(std::uint64_t at);
    bool getFontDicts(const MergedSIDs& sids);
    bool getPrivateDict(const KWValue& dict, std::shared_ptr<const std::string>& out);

    CFFStream& table_;
    bool isCID_ = false;
    std::vector<std::uint8_t> topDictBytes_;
    CFFIndex globals_;
    std::vector<FDRange> ranges_;
    CharStringBudget budget_;
    struct KnownPrivate {
        std::uint32_t size = 0;
        std::uint32_t offset = 0;
        std::shared_ptr<const std::string> data;
    };

    std::vector<KnownPrivate> privates_; ///< Font DICTs may share them
};

} // namespace KWFontService_NS
