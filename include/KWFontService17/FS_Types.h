#pragma once

#include <KWFontService17/FS_Export.h>

#include <cstdint>
#include <string>

// The Windows records that the interface speaks of; FS_WindowsRecords.h has their members.
#if defined(_WIN32)
struct tagENUMLOGFONTEXW;
struct tagLOGFONTW;
struct tagNEWTEXTMETRICEXW;
struct tagPANOSE;
typedef struct tagPANOSE PANOSE;
#endif

namespace KWFontService_NS {

#if defined(_WIN32)
using ::PANOSE;
using ::tagENUMLOGFONTEXW;
using ::tagLOGFONTW;
using ::tagNEWTEXTMETRICEXW;
#else
struct PANOSE;
struct tagENUMLOGFONTEXW;
struct tagLOGFONTW;
struct tagNEWTEXTMETRICEXW;
#endif

/// No glyph: the answer of every query that finds none.
inline constexpr unsigned short FS_NO_GLYPH = 0xFFFF;

/// The format of a font file, or how a caller asks for a font to be read.
enum FS_FontFileType : std::int32_t {
    FS_FILETYPE_UNKNOWN = 0,
    FS_FILETYPE_PFA = 1, ///< Type 1 font program in hexadecimal text
    FS_FILETYPE_PFB = 2, ///< Type 1 font program in segments
    FS_FILETYPE_AFM = 3,
    FS_FILETYPE_PFM = 4,
    FS_FILETYPE_TRUETYPE = 5,
    FS_FILETYPE_COLLECTION = 6,
    FS_FILETYPE_OPENTYPE = 7,     ///< sfnt with name-keyed `CFF ` outlines
    FS_FILETYPE_OPENTYPE_CID = 8, ///< sfnt with CID-keyed `CFF ` outlines
    FS_FILETYPE_DFONT = 9,
    FS_FILETYPE_WOFF = 10,
    FS_FILETYPE_EXTRA = 12, ///< a font that the caller brought
    FS_FILETYPE_LOCAL = 13, ///< a font of the caller that stands for a local font

    // Requests: how the type of a font that the caller brings is to be found.
    FS_FILETYPE_REQUEST_SFNT = 14,     ///< the signature picks 5 or 7
    FS_FILETYPE_REQUEST_OPENTYPE = 15, ///< the signature picks 5 or 7
    FS_FILETYPE_REQUEST_TYPE1 = 16,    ///< by extension, 4 where it is unknown
    FS_FILETYPE_REQUEST_TRUETYPE = 17, ///< by extension, 5 where it is unknown
};

/// How a font came into the service, as bits.
enum FS_FontMark : std::uint32_t {
    FS_FONTMARK_REGISTRY = 4, ///< listed by the operating system
    FS_FONTMARK_EUDC = 8,     ///< holds end-user-defined characters
};

/// Where an enumeration found a face.
enum FS_FontResourceType : std::int32_t {
    FS_RESOURCE_FONT = 0,  ///< among the fonts of the service
    FS_RESOURCE_ALIAS = 1, ///< under an alias of the configuration
    FS_RESOURCE_EXTRA = 2, ///< among the fonts of the document
    FS_RESOURCE_WOFF = 3,  ///< a WOFF file, found by name in any of these places
    FS_RESOURCE_EUDC = 4,  ///< holds end-user-defined characters; told in a walk of all fonts alone
    FS_RESOURCE_REGISTRY = 5, ///< listed by the operating system; told in a walk of all fonts alone
};

/// Whether a document may carry the font's outlines (OpenType `OS/2` fsType).
enum FS_EMBEDSTATUS : std::int32_t {
    FS_EMBED_OUTLINES = 0,
    FS_EMBED_BITMAP_ONLY = 1,
    FS_EMBED_RESTRICTED = 2,
};

/// The encoding of a CFF-flavoured sfnt (Adobe Technical Note 5176, Encoding) or of a Type 1 font.
enum FS_EncodingScheme : std::int32_t {
    FS_ENCODING_NONE = 0,     ///< not applicable: every sfnt without `CFF ` outlines
    FS_ENCODING_STANDARD = 1, ///< the Top DICT asks for StandardEncoding; a Type 1 font for another
                              ///< one than those below
    FS_ENCODING_WINANSI = 2,  ///< WinAnsiEncoding, of Type 1 fonts alone, as are the next two
    FS_ENCODING_MACROMAN = 3, ///< MacRomanEncoding
    FS_ENCODING_MACEXPERT = 4, ///< MacExpertEncoding
    FS_ENCODING_FONT = 5,      ///< an encoding of the font's own
};

/// The character collection of a CID-keyed font (PostScript CIDSystemInfo).
struct FS_CIDSystemInfo {
    std::string Registry;
    std::string Ordering;
    int Supplement = 0;
};

/// The code pages that a font declares (OpenType `OS/2` ulCodePageRange1 and 2).
struct FS_CodePageRange {
    std::uint32_t codePageRange1 = 0;
    std::uint32_t codePageRange2 = 0;

    friend bool operator==(const FS_CodePageRange&, const FS_CodePageRange&) = default;
};

/// The class of a glyph, as OpenType `GDEF` has it, and two marks of a glyph run.
enum class GlyphClassDef : std::int16_t {
    Ignored = -2, ///< dropped from the run by the caller, its slot kept
    Unknown = -1, ///< no glyph, or no class known
    None = 0,
    Base = 1,
    Ligature = 2,
    Mark = 3,
    Component = 4,
};

class FS_BaseFont;

/// One face of a font: a plain pointer, not counted, and the index of the face in its file.
struct FS_FontRef {
    FS_BaseFont* font = nullptr;
    std::int16_t face = 0;

    explicit operator bool() const { return font != nullptr; }
    friend bool operator==(const FS_FontRef&, const FS_FontRef&) = default;
};

} // namespace KWFontService_NS
