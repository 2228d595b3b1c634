#pragma once

#include "registry/FS_FontService.h"

#include <istream>

namespace KWFontService_NS {

/// How a font file that a document brings is read.
struct ExtraFontType {
    /// What the file counts as: one of the requests, or a type of its own.
    FS_FontFileType type = FS_FILETYPE_UNKNOWN;
    /// The class that reads it; `FS_FILETYPE_UNKNOWN` when there is none.
    FS_FontFileType concrete = FS_FILETYPE_UNKNOWN;

    /// Whether the font gets a wrapper that has the name and the style of the document.
    bool isWrapped() const;

    friend bool operator==(const ExtraFontType&, const ExtraFontType&) = default;
};

/// What a media type asks for; `FS_FILETYPE_UNKNOWN` for one that is not on the list. The list is
/// that of the types that were in use before RFC 8081 registered `font/...`, and has none of those.
FS_FontFileType fontTypeOfMedia(const UnicodeString& mediaType);

/// Settles the type of a font file.
/// @param asked      what the caller asks for; `FS_FILETYPE_UNKNOWN` leaves it to `mediaType`, and
///                   where that says nothing to the extension
/// @param extension  in lower case, with its dot
/// @param stream     the file, left where it was
ExtraFontType settleExtraFontType(const FS_FontService& service, FS_FontFileType asked,
                                  const UnicodeString& mediaType, const UnicodeString& extension,
                                  std::istream& stream);

} // namespace KWFontService_NS
