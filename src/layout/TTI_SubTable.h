#pragma once

#include "layout/GlyphDigest.h"

#include "common/ByteView.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace KWFontService_NS {

class GlyphIDArray;
class GlyphIDPosition;
class GlyphMemo;
class LayoutBudget;
class LayoutCall;
class TTI_LookupList;
class TTI_LookupRecords;
struct TTI_Lookup;

// Lookup types by their numbers in the file.
inline constexpr int kGsubSingle = 1;
inline constexpr int kGsubMultiple = 2;
inline constexpr int kGsubAlternate = 3;
inline constexpr int kGsubLigature = 4;
inline constexpr int kGsubContext = 5;
inline constexpr int kGsubChainContext = 6;
inline constexpr int kGsubExtension = 7;
inline constexpr int kGsubReverseChaining = 8;
inline constexpr int kGposSingle = 1;
inline constexpr int kGposPair = 2;
inline constexpr int kGposCursive = 3;
inline constexpr int kGposMarkToBase = 4;
inline constexpr int kGposMarkToLigature = 5;
inline constexpr int kGposMarkToMark = 6;
inline constexpr int kGposContext = 7;
inline constexpr int kGposChainContext = 8;
inline constexpr int kGposExtension = 9;

/// One subtable of a GSUB or GPOS lookup. A format replaces the operations of its lookup type; what
/// it leaves answers that the subtable does not apply.
///
/// A subtable reads the bytes of its table in place, which the layout table keeps; of its own it
/// has a digest of the glyphs that it acts on, and little else. Subtables do not change after they
/// are read and are shared between threads.
class TTI_SubTable {
public:
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
    virtual unsigned short substituteLigature(LayoutCall& call, const GlyphIDArray& run,
                                              int& position, unsigned int lookupFlag,
                                              std::vector<int>& skipped) const;
    /// Number of lookup records of the rule that matches at `position`, -1 for a match without
    /// records, 0 for no match.
    /// @param records  set to the records, which the subtable keeps
    /// @param skipped  gets the indices of the glyphs of the input that are passed over, those of
    ///                 rules that do not match in the end among them
    virtual int matchContext(LayoutCall& call, TTI_LookupRecords& records, const GlyphIDArray& run,
                             int position, unsigned int lookupFlag,
                             std::vector<int>& skipped) const;
    /// The glyph that replaces the one at `index` in its context, 0xFFFF when none does.
    virtual unsigned short substituteReverse(LayoutCall& call, const GlyphIDArray& run, int index,
                                             unsigned int lookupFlag) const;
    /// Positions the glyph at `index`; true when the subtable applied.
    /// @param index  moved when the subtable takes further glyphs
    virtual bool position(LayoutCall& call, const TTI_LookupList& lookups, const TTI_Lookup& lookup,
                          std::vector<GlyphIDPosition>& positions, int& index, bool rtl) const;
    /// The lookup type of the subtable itself, whatever its lookup says.
    virtual int lookupType() const = 0;

    /// False when no operation can apply at this glyph. It takes a few instructions and no virtual
    /// call, and goes before every other question.
    bool mayApply(unsigned short gid) const { return digest_.mayHold(gid); }
    const GlyphDigest& digest() const { return digest_; }

    // What a `SubTableFilter` asks.

    /// True where the two questions below say more than `mayApply`.
    virtual bool isFilterable() const;
    /// False when the glyph is not covered.
    virtual bool startsWith(unsigned short gid) const;
    /// False when no operation can apply where this is the next glyph that the lookup flag does not
    /// pass over.
    virtual bool mayGoOnWith(unsigned short gid) const;

protected:
    /// @param table  from the subtable's first byte to the end of the layout table
    explicit TTI_SubTable(KWCommonNS::ByteView table)
        : data_(table.data()), size_(static_cast<std::uint32_t>(table.size())) {}

    KWCommonNS::ByteView table() const { return {data_, size_}; }
    /// Coverage index of a glyph by the coverage that nearly all formats name first; -1 when it is
    /// not covered.
    /// @param memo  remembers the answer; null searches anew
    int coverageIndex(unsigned short gid, GlyphMemo* memo = nullptr) const;
    /// True when the table names that coverage, and it is a good one.
    bool hasCoverage() const;
    /// Takes the digest of that coverage; false when it is bad or reading it is beyond the budget.
    bool digestCoverage(LayoutBudget& budget);
    /// Takes the digest of a coverage, given by its bytes.
    bool digestCoverage(LayoutBudget& budget, KWCommonNS::ByteView coverage);
    void applyEverywhere() { digest_ = GlyphDigest::everything(); }

private:
    const std::uint8_t* data_;
    std::uint32_t size_;
    GlyphDigest digest_;
};

/// Ends a subtable whose place belongs to somebody else.
struct EndSubTable {
    void operator()(TTI_SubTable* subtable) const { subtable->~TTI_SubTable(); }
};
using TTI_SubTablePtr = std::unique_ptr<TTI_SubTable, EndSubTable>;

} // namespace KWFontService_NS
