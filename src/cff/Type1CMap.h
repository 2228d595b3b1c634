#pragma once

#include "cff/CFFCharset.h"
#include "cff/CFFDict.h"
#include "cff/CFFFontDicts.h"
#include "cff/CFFIndex.h"
#include "type1/Type1CodeMap.h"

#include <KWFontService17/FS_Types.h>

#include <KWCommon15/KWValue.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace KWFontService_NS {

/// What a font keeps of its `CFF ` table (Adobe Technical Note 5176): the character collection, the
/// strings, the codes and names or CIDs of its glyphs, the Top DICT. Outlines, subrs, Private and
/// Font DICTs stay in the file; the `read...` operations get them from there at each call.
///
/// The load fills it once; after that it does not change, and any thread may ask. What changes are
/// the codes that it hands out.
class Type1CMap : public Type1CodeMap {
public:
    Type1CMap() = default;
    virtual ~Type1CMap();

    /// The load. False on a short read and for contents that cannot be read, which leaves
    /// everything as it was. The header's size byte is not looked at, and offsets 1 and 2 to
    /// Encoding and charset are offsets like any other. A table already known as CID-keyed is not
    /// read again.
    bool readCFFTable(CFFStream& table);

    // --- lookups --------------------------------------------------------------------------------

    /// The string id of a glyph's name, or in a CID-keyed font its CID; 0 for glyph 0, for one
    /// without an entry, and in a font without a charset of its own.
    unsigned short getSIDOfGlyph(unsigned short gid) const;
    /// The glyph of a CID, or in a name-keyed font of a string id, the first where there are more;
    /// 0xFFFF when there is none.
    unsigned short getGlyphOfCID(unsigned short cid) const;
    /// One of the standard strings or of the font's own, alive as long as this object; empty when
    /// the font has none of that id.
    std::string_view getStringOfSID(unsigned short sid) const;
    /// False, with `info` as it was, for a font that is not CID-keyed or whose ROS lacks a name.
    bool getCIDSystemInfo(FS_CIDSystemInfo& info) const;
    /// Whether the Top DICT asks for StandardEncoding or has an Encoding of its own.
    FS_EncodingScheme getEncodingScheme() const;

    // --- codes ----------------------------------------------------------------------------------
    // A glyph of a name-keyed font holds one code, which it gets with the first question; all
    // characters that lead to it share that. A glyph without a name has none, and so CID-keyed
    // fonts have none: what a code stands for is a name.

    /// The two-byte code of a glyph; 0 when it has none. In font program 0, a code of the font's
    /// own Encoding; else one that is handed out.
    unsigned short giveGlyphCode(unsigned short gid);
    /// The same for a character whose glyph that is. One that StandardEncoding has for the glyph's
    /// name is its own code, in font program 0, and that is not listed among the names of codes.
    unsigned short giveCharCode(int ch, unsigned short gid);

    // --- what stays in the file -----------------------------------------------------------------
    // False on a short read and where the table does not have what is asked for.

    /// Steps over names, Top DICTs and strings to the Global Subr INDEX.
    static bool readGlobalSubrs(CFFStream& table, CFFIndex& subrs);
    /// False for the offset 0, too.
    static bool readIndexAt(CFFStream& table, std::uint32_t offset, CFFIndexHead& head);
    static bool readCharString(CFFStream& table, const CFFIndexHead& head, std::size_t glyph,
                               std::vector<std::uint8_t>& charString);
    /// Makes `dict` null first. False for the size 0, too.
    static bool readPrivateDict(CFFStream& table, std::uint32_t offset, std::uint32_t size,
                                KWValue& dict);
    /// Private DICT and subrs of a name-keyed font; no subrs where it names none. False when the
    /// Top DICT has no `Private`.
    bool readLocalSubrs(CFFStream& table, KWValue& privateDict, CFFIndex& subrs) const;
    /// The Font DICTs of a CID-keyed font, in the order of their numbers.
    bool readFDArray(CFFStream& table, std::vector<CFFFontDict>& fontDicts) const;
    /// As `readFDArray` for a CID-keyed font; for a name-keyed one a single entry of the Private
    /// DICT that the Top DICT names, or of none.
    bool readFontDicts(CFFStream& table, std::vector<CFFFontDict>& fontDicts) const;
    /// False for format 0 although `ranges` is filled, but for the last glyph.
    bool readFDSelect(CFFStream& table, std::vector<FDRange>& ranges) const;

    bool isCID = false;
    std::uint16_t registrySID = 0;
    std::uint16_t orderingSID = 0;
    std::int32_t supplement = 0;
    CFFIndex strings; ///< string ids from 391 on
    std::vector<std::uint8_t> encodingCodes;
    std::vector<std::uint16_t> charsetSIDs;
    std::vector<CharsetRange> charsetByValue;
    std::vector<CharsetRange> charsetByGlyph;
    KWValue topDict;

private:
    std::uint32_t topOffset(FS_Word key) const;
    std::string_view nameOfGlyph(unsigned short gid) const;

    bool charsetRepeats_ = false; ///< ranges share values, so that their order is no guide
};

} // namespace KWFontService_NS
