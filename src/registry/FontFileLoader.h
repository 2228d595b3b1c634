#pragma once

#include "registry/FS_FontService.h"

#include <istream>

namespace KWFontService_NS {

/// Why a font file is loaded; bits.
enum FS_LoadFlags : unsigned int {
    FS_LOAD_FOLDER = 0,   ///< found in a folder
    FS_LOAD_EUDC = 1,     ///< holds end-user-defined characters: kept without its names
    FS_LOAD_REGISTRY = 4, ///< listed by the operating system
};

/// A file that may be a font: opened by its URI, known by its lower-case name.
struct FS_FontFile {
    explicit FS_FontFile(const KWUri& uri);
    /// @param fileName  as the file system gave it
    FS_FontFile(const FS_FontFolder& folder, const UnicodeString& fileName);

    /// In lower case, with its dot; empty when there is none.
    UnicodeString extension() const;

    KWUri uri;
    UnicodeString lowerName;
};

/// The folder that a file lies in; one that the service does not know yet joins its folders,
/// without those below it.
const FS_FontFolder& folderOfFile(FS_FontService& service, const KWUri& file);

/// The type of a font file.
/// @param extension  with its dot, in lower case
/// @param mode       how to type: a request (`FS_FILETYPE_REQUEST_...`), or 0 for the extension
/// @param stream     the file, left where it was; null for the extension's word alone. Its
///                   signature outranks an extension of TrueType or OpenType
FS_FontFileType fontFileType(const FS_FontService& service, const UnicodeString& extension,
                             int mode, std::istream* stream);

/// A font object of a type, with what the configuration says of its file; null for a type that has
/// no class, and when there is no memory.
/// @param folder  null for a file that belongs to no folder
KWPtr<FS_BaseFont> createFontObject(const FS_FontFolder* folder, const FS_FontFile& file,
                                    FS_FontFileType type);

/// Scans a font file and takes it into the font pool, under its names unless `FS_LOAD_EUDC` says
/// otherwise. What the scan complains of is recorded, whether the font is usable or not.
///
/// The file is read without a lock; `g_fontServiceLock` is taken to register the font.
/// @param folder  whose options count; the file is opened by its own URI
/// @return  null when the file does not open or is not a usable font. The pool keeps the font
/// @throws KWError  what a reader throws outright
FS_BaseFont* loadFont(FS_FontService& service, const FS_FontFolder& folder, const FS_FontFile& file,
                      unsigned int flags);

/// Scans a font object that was just made and takes it into the font pool: what `loadFont` does
/// with a file that opens.
FS_BaseFont* takeFont(FS_FontService& service, KWPtr<FS_BaseFont> font, std::istream& stream,
                      unsigned int flags);

/// True when the scan takes a file: its extension is known and the configuration does not leave it
/// out.
bool isFontFile(const FS_FontService& service, const FS_FontFolder& folder,
                const FS_FontFile& file);

} // namespace KWFontService_NS
