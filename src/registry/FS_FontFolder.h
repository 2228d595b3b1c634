#pragma once

#include "fonts/FS_FontFileOptions.h"

#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWUri.h>

#include <map>
#include <set>

namespace KWFontService_NS {

using KWCommonNS::KWUri;

/// Which face of which file of a folder gets alias names.
struct FS_FontAliasTarget {
    UnicodeString lowerFileName;
    UnicodeString fileName; ///< as it was written
    int faceIndex = 0;

    friend bool operator<(const FS_FontAliasTarget& a, const FS_FontAliasTarget& b);
};

/// One alias name. Two that agree in all four values are one.
struct FS_FontAlias {
    UnicodeString familyName;
    int weight = -1; ///< -1 when not given
    int italic = -1; ///< -1 when not given, else 0 or 1
    int stretch = 0; ///< 0 when not given

    friend bool operator<(const FS_FontAlias& a, const FS_FontAlias& b);
};

/// A folder with fonts, and what the configuration says of the files in it. Its URI ends in "/".
class FS_FontFolder : public KWUri {
public:
    /// @param folder     a missing "/" at its end is supplied
    /// @param recursive  whether the folders below it are scanned too
    FS_FontFolder(const KWUri& folder, bool recursive);
    ~FS_FontFolder() override;
    FS_FontFolder(const FS_FontFolder&) = delete;
    FS_FontFolder& operator=(const FS_FontFolder&) = delete;

    /// What tells folders apart: the path in lower case, so that paths that differ only in case are
    /// one folder.
    UnicodeString pathKey() const;
    /// The options of a file; null when the configuration says nothing of it. Fonts keep the
    /// pointer: it is good as long as the folder.
    const FS_FontFileOptions* findOptions(const UnicodeString& lowerFileName) const;
    /// The same, made on first mention.
    FS_FontFileOptions& optionsOf(const UnicodeString& lowerFileName);

    const bool recursive;
    std::map<UnicodeString, FS_FontFileOptions> fileOptions; ///< by lower-cased file name
    std::map<FS_FontAliasTarget, std::set<FS_FontAlias>> fileAliases;
};

} // namespace KWFontService_NS
