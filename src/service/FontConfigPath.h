#pragma once

#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWUri.h>

namespace KWFontService_NS {

/// The configuration file that a path means: null and empty stand for "font-config.xml", and a
/// relative path is taken against the folder of the library.
KWCommonNS::KWUri fontConfigUri(const char* configPath);

/// `text` with "@@WINFONTS@@", "@@USERWINFONTS@@" and "@@LOCALAPPDATA@@" replaced by their folders;
/// a word whose folder is not known stays.
UnicodeString expandFontPath(const UnicodeString& text);

} // namespace KWFontService_NS
