#pragma once

#include <vector>

namespace KWFontService_NS {

class GlyphIDArray;
class GlyphIDPosition;
class TTI_LayoutTable;
struct FS_GSUBGPOSInfo;
struct TTI_Lookup;
struct TTI_LookupRecord;

// Lookup types by their numbers in the file.
inline constexpr int kGsubSingle = 1;
inline constexpr int kGsubExtension = 7;
inline constexpr int kGposExtension = 9;

/// One subtable of a GSUB or GPOS lookup. A format replaces the operations of its lookup type; what
/// it leaves answers that the subtable does not apply.
///
/// Subtables do not change after they are read and are shared between threads.
class TTI_SubTable {
public:
    TTI_SubTable() = default;
    TTI_SubTable(const TTI_SubTable&) = delete;
    TTI_SubTable& operator=(const TTI_SubTable&) = delete;
    virtual ~TTI_SubTable();

    /// The glyph that replaces one glyph, 0xFFFF when none does.
    virtual unsigned short substituteSingle(unsigned short gid) const;
    /// One of the glyphs that may replace a glyph, 0xFFFF when there is none.
    /// @param alternate  which, counted from 1
    virtual unsigned short substituteAlternate(unsigned short gid, int alternate) const;
    /// The ligature that starts at `position`, 0xFFFF when there is none.
    /// @param position    set behind the last component
    /// @param lookupFlag  which glyphs are passed over
    /// @param skipped     set to the indices of the glyphs passed over, ascending
    virtual unsigned short substituteLigature(const FS_GSUBGPOSInfo& info, const GlyphIDArray& run,
                                              int& position, unsigned int lookupFlag,
                                              std::vector<int>& skipped) const;
    /// Number of lookup records of the rule that matches at `position`, -1 for a match without
    /// records, 0 for no match.
    /// @param records     set to the first record; they belong to the subtable
    /// @param position    set behind the matched input
    virtual int matchContext(const FS_GSUBGPOSInfo& info, const TTI_LookupRecord*& records,
                             const GlyphIDArray& run, int& position, unsigned int lookupFlag,
                             std::vector<int>& skipped) const;
    /// The glyph that replaces the one at `index` in its context, 0xFFFF when none does.
    virtual unsigned short substituteReverse(const FS_GSUBGPOSInfo& info, const GlyphIDArray& run,
                                             int index, unsigned int lookupFlag) const;
    /// Positions the glyph at `index`; true when the subtable applied.
    /// @param index  moved when the subtable takes further glyphs
    virtual bool position(const FS_GSUBGPOSInfo& info, const TTI_LayoutTable& lookups,
                          const TTI_Lookup& lookup, std::vector<GlyphIDPosition>& positions,
                          int& index, bool rtl) const;
    /// The lookup type of the subtable itself, whatever its lookup says.
    virtual int lookupType() const = 0;
};

} // namespace KWFontService_NS
