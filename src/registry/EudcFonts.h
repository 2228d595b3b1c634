#pragma once

#include "registry/FS_FontService.h"

/// @file
/// Where end-user-defined characters come from: which code points they are, the font that has them
/// for all others, and fonts that have them for single families. Parts of the start-up; the
/// switches of the configuration are the caller's to look at.

namespace KWFontService_NS {

/// Takes the file of the default font from the registry, by the default locale of the process,
/// where that names a file that is there.
/// @param fontsFolder  what a bare file name is taken against; empty: none is
void readSystemDefaultEudc(FS_FontService& service, const KWUri& fontsFolder);

/// Takes the code points from the registry: pairs of hexadecimal numbers, "E000-F8FF,...". A number
/// alone counts for nothing.
void readEudcRanges(FS_FontService& service);

/// Takes the families of a code page and their files from the registry. A family that has a file
/// already keeps it.
/// @param codePage  "932", "936", "949" or "950"
void readEudcLinks(FS_FontService& service, const UnicodeString& codePage,
                   const KWUri& fontsFolder);

/// Takes from the registry what the configuration left open: the file of the default font, the code
/// points, and the families of all four code pages.
void readEudcRegistry(FS_FontService& service);

/// Loads `eudcSystemDefault`, a TrueType or OpenType font, once for horizontal and once for
/// vertical text. What keeps one from opening is recorded.
void loadDefaultEudcFont(FS_FontService& service);

/// Loads the files of `eudcMap` and links each to the face of its family that sorts first: by
/// weight, upright before italic, by stretch. The family is asked for its normal style before,
/// which may fill a gap with another face. Entries that lead nowhere are passed over. A linked font
/// is opened with the first font that is bound to its family.
void linkEudcMap(FS_FontService& service);

} // namespace KWFontService_NS
