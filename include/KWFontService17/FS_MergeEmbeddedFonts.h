#pragma once

#include <KWFontService17/FS_Export.h>

#include <istream>

namespace KWCommonNS {
class KWMemStream;
}

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// Joins two subsets of one font into one font program, so that a document that was made in parts
/// carries the font once. The subsets are those that `FS_FontInfo::getEmbedFont` writes; no font of
/// the service takes part.
///
/// What the two do not have in common beside their glyphs ends a merge: the answer is then false,
/// nothing is changed for the better, and the caller embeds the two as they are. Fonts are told
/// apart by the comparisons named here and no others, and a glyph that both have is taken to be the
/// same in both: it comes from `a`.
///
/// The streams are read from their starts, whatever their positions and states, and are left
/// anywhere; they may be one and the same. They must seek. Merges may run in any number of threads,
/// each over streams of its own.
class KWFONTSERVICE_API FS_MergeEmbeddedFonts {
public:
    FS_MergeEmbeddedFonts() = delete;

    /// Joins two bare CFF tables (Adobe Technical Note 5176). The result has no subrs: what a
    /// charstring calls stands in its place, and arithmetic has become the numbers that it comes
    /// to.
    ///
    /// The two need equal headers and fonts of one name, once the subset tag ("ABCDEF+") is off;
    /// with it the names need one length. Glyphs are the same by their CIDs or by their names.
    /// The Top DICT and glyph 0 come from `a`. Of a CID-keyed font each glyph keeps the entries of
    /// its Private DICT; the Private DICT of a name-keyed font is the longer one of the two, that
    /// of `a` where they are of one length.
    ///
    /// The charset counts a run of values that follow each other in one byte: a result in which
    /// more than 256 do has a charset that readers take for a shorter one.
    /// @param output  appended to; must not be one of the inputs. As it was after a false
    /// @param isCID   true for CID-keyed fonts, false for name-keyed ones
    /// @return        false for a null stream, for fonts that differ, of another kind than `isCID`
    ///                says, with a charset of format 2 or a predefined one, with an Encoding of
    ///                their own, a SyntheticBase or charstrings of type 1, without a glyph beside
    ///                glyph 0, with more than 65,535 glyphs or 256 Font DICTs together; for tables
    ///                that are cut off or contradict themselves, or whose subrs unfold to more than
    ///                honest ones do; and when the output takes no more
    static bool mergeCFF(KWMemStream& output, std::istream* a, std::istream* b, bool isCID);

    /// Joins two sfnt files with `glyf` outlines. Glyphs keep their ids; glyphs without bytes in
    /// `a` come from `b`. All other tables are those of `a`: `cvt `, `fpgm`, `head`, `hhea`,
    /// `hmtx`, `maxp`, `post`, `prep`, and `cmap` unless it is to be ignored.
    ///
    /// `hhea`, `hmtx` and `maxp` have to be there and to be equal, `cvt `, `fpgm` and `prep` to be
    /// equal or absent, and `head` to be equal but for its revision, check sum and
    /// `indexToLocFormat`. Where that differs, the result has long offsets; `head` says so only
    /// with `ignoreCmap`.
    /// @param output      appended to; must not be one of the inputs. After a false it may have
    ///                    part of a file at its end
    /// @param ignoreCmap  true leaves `cmap` out; false asks for one in both and takes that of `a`
    /// @return            false for a null stream, for files that do not load as fonts from a
    ///                    document, that differ or are cut off, whose glyphs together pass what
    ///                    their offsets hold or lie over each other; and when the output takes no
    ///                    more
    static bool mergeTrueType(KWMemStream& output, std::istream* a, std::istream* b,
                              bool ignoreCmap);

    /// What the Top DICT of an input gives to a merge; of no use to a host.
    struct TopDICT;

private:
    static bool mergeCIDFontType0C(KWMemStream& output, std::istream& a, std::istream& b);
    static bool mergeType1C(KWMemStream& output, std::istream& a, std::istream& b);
};

} // namespace KWFontService_NS
