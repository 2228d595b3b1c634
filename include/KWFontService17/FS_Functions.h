#pragma once

#include <KWFontService17/FS_Error.h>
#include <KWFontService17/FS_Export.h>
#include <KWFontService17/FS_Types.h>

#include <KWCommon15/KWError.h>
#include <KWCommon15/KWUri.h>

#include <vector>

namespace KWFontService_NS {

class FS_EnumLogFontEx;
class FS_ExtraFontManager;
class FS_NewTextMetricEx;

/// Opens the service: the one object of the process that knows the fonts. Every operation that
/// needs it opens it by itself, with the defaults; a host calls this to say which configuration
/// counts and to hear what is wrong with it. May be called from any thread; a thread that comes
/// while another opens waits for it.
///
/// Only the first opening of the process does anything. Every later one ignores its arguments and
/// answers 0, even when the first one failed: the service then stands without fonts.
/// @param configPath  UTF-8; null or empty for "font-config.xml". A relative path is taken against
///                    the folder of the library
/// @param homePath    UTF-8, what "@@HOME@@" in the configuration stands for; may be null
/// @param error       receives the error, empty when there is none; may be null
/// @return            the code of the error, 0 when there is none
/// @throws KWCommonNS::KWError  the error, when there is one and `error` is null
KWFONTSERVICE_API FS_ERROR FontServiceOpen(const char* configPath, const char* homePath,
                                           KWCommonNS::KWError* error);
/// The same without a home folder.
KWFONTSERVICE_API FS_ERROR FontServiceOpen(const char* configPath, KWCommonNS::KWError* error);

/// Does nothing and answers 0, however often it is called: the service and its fonts live until
/// the library is unloaded.
KWFONTSERVICE_API FS_ERROR FontServiceClose();

/// Reads what went wrong without stopping the service: while it started up, in folders that were
/// added since, and in configurations that `FS_GetFontFoldPathVector` read. There are ten thousand
/// entries at most. Opens the service on first need; waits for no other thread's font work.
/// @param error  receives the entry; null asks for the number of entries
/// @param index  of the entry, from 0 on; not looked at when `error` is null
/// @return       the number of entries, or `index`; -1 when there is no such entry or no service
KWFONTSERVICE_API int FS_GetFontError(KWCommonNS::KWError* error, int index);

/// Full local path of the configuration file that `FontServiceOpen` would read. Opens nothing.
/// @param configPath    as in `FontServiceOpen`
/// @param mayBeMissing  false answers an empty text when there is no such file
KWFONTSERVICE_API UnicodeString FS_GetFontConfigPath(const char* configPath, bool mayBeMissing);

/// Adds a folder after the opening and reads the fonts in it, not in the folders below it. No
/// option and no alias of the configuration applies to them. The folder counts as known from then
/// on, also when it does not exist. May be called from any thread; other threads go on finding
/// fonts meanwhile.
/// @return  number of fonts added; 0 for a folder that is known already (paths that differ only in
///          case are the same) and for what is no folder of a file system
KWFONTSERVICE_API int FS_AddFontFolderPath(const KWCommonNS::KWUri& folder);

/// Reads a configuration for its folders alone: no font is looked at, and an open service stays as
/// it is, but that problems which do not end the reading join its notes (see `FS_GetFontError`).
/// @param configPath  as in `FontServiceOpen`
/// @param homePath    as in `FontServiceOpen`
/// @param paths       emptied, then filled with the local path of each folder in scan order
/// @return            true exactly when some folder has an alias for one of its files: that is what
///                    hosts ask this function for. False also when the configuration fails
KWFONTSERVICE_API bool FS_GetFontFoldPathVector(const char* configPath, const char* homePath,
                                                std::vector<UnicodeString>& paths);
/// The same without a home folder.
KWFONTSERVICE_API bool FS_GetFontFoldPathVector(const char* configPath,
                                                std::vector<UnicodeString>& paths);

/// What `FS_EnumFontFamilies` calls for each face. The records last as long as the call.
/// @return  0 to go on; anything else ends the enumeration
using FS_EnumFontFamiliesCallback = int (*)(FS_FontResourceType type, const FS_EnumLogFontEx* font,
                                            const FS_NewTextMetricEx* metric, void* userData);

/// Calls a function for each face that goes by a name, or for all there are: the faces of the
/// document, then those under an alias of the configuration, then those of the service. Opens the
/// service on first need, and no font unless it is asked for vertical faces.
///
/// The service's lock is held while the faces of one place are gone through, also during the
/// callback. That may call the service, this function included, but must not wait for another
/// thread that does. Faces that come in meanwhile are not seen in the place that is being gone
/// through.
/// @param family      any name of a font, of its file, or an alias, as in
/// `FS_FontInfo::createFont`;
///                    of a name that begins with "@" only the faces with vertical forms are
///                    reported, and opened to tell. A face comes once for each style that it has
///                    stood in for by then. Empty: every face once, of aliases none
/// @param callback    must not be null. A KWError that it throws ends the enumeration; whatever
///                    else it throws passes through
/// @param userData    handed to the callback
/// @param extraFonts  the fonts of the document; may be null
/// @return            the first answer of the callback that is not 0; 0 when there was none; 1 when
///                    a KWError was raised
KWFONTSERVICE_API int FS_EnumFontFamilies(const UnicodeString& family,
                                          FS_EnumFontFamiliesCallback callback, void* userData,
                                          FS_ExtraFontManager* extraFonts, int reserved);

/// The folder of the fonts of all users, "@@WINFONTS@@" itself where the system knows none.
KWFONTSERVICE_API UnicodeString getWinFontsPath();
/// The folder of the user's own fonts; it begins with "@@LOCALAPPDATA@@" where the system knows no
/// such folder.
KWFONTSERVICE_API UnicodeString getUserWinFontsPath();

/// A four-character tag as a number, the first character in the top byte (OpenType Tag).
/// @param text  up to four characters from U+0020 to U+007E, padded with blanks on the right
/// @return      0 for a longer text and for any other character
KWFONTSERVICE_API unsigned int toTAG(const UnicodeString& text);

} // namespace KWFontService_NS
