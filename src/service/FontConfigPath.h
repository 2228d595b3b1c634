#pragma once

#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWUri.h>

namespace KWFontService_NS {

/// The path that is meant: null and empty stand for "font-config.xml".
UnicodeString fontConfigPath(const char* configPath);

/// The configuration file of a path; a relative one is taken against the folder of the library.
KWCommonNS::KWUri fontConfigUri(const char* configPath);

/// `text` with its macro words replaced, each everywhere, in this order: "@@WINFONTS@@",
/// "@@USERWINFONTS@@", "@@APPDATA@@", "@@LOCALAPPDATA@@" and "@@HOME@@". What replaces a word may
/// hold later ones. A word whose folder is not known stays.
/// @param homePath  what "@@HOME@@" stands for; null and empty: not known
UnicodeString expandFontPath(const UnicodeString& text, const char* homePath = nullptr);

} // namespace KWFontService_NS
