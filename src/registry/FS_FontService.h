#pragma once

#include "raster/FreeTypeLibrary.h"
#include "registry/FS_ErrorList.h"
#include "registry/FS_FontFolder.h"
#include "registry/FS_FontPool.h"
#include "registry/FS_ServiceLock.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace KWFontService_NS {

/// The one object behind the library: the fonts there are, and the settings that they follow.
///
/// It is written during start-up, under `g_fontServiceLock`, and read without a lock afterwards;
/// the pools, the folders, `keptFonts` and `freeTypeLibrary` go on growing under their locks.
class FS_FontService {
public:
    FS_FontService();
    ~FS_FontService();
    FS_FontService(const FS_FontService&) = delete;
    FS_FontService& operator=(const FS_FontService&) = delete;

    /// The folder of a path key; null when it is not known. `g_fontServiceLock` is held.
    FS_FontFolder* findFolder(const UnicodeString& pathKey) const;
    /// Takes a folder in at the end of `folders`, unless one with the same path is known.
    /// `g_fontServiceLock` is held.
    /// @return  the folder as it is stored from now on; null when the path was known
    FS_FontFolder* addFolder(std::unique_ptr<FS_FontFolder> folder);

    /// The face for a name and a style: from the aliases, then from all fonts. Takes
    /// `g_fontServiceLock` for one pool at a time.
    /// @param foundInAlias  set to true when an alias answers, else untouched
    /// @param skipAliases   leaves the aliases out
    FS_FontRef findFont(const UnicodeString& name, const FS_FontKey& key, bool& foundInAlias,
                        bool skipAliases);

    /// Counts the code points from `first` to `last` as end-user-defined; those outside the Basic
    /// Multilingual Plane are left out.
    void addEudcRange(int first, int last);
    bool isEudcCodePoint(int ch) const;

    FS_TextMap<FS_FontFileType> fileTypeByExtension;      ///< by lower-case extension with its dot
    KWUri configUri;                                      ///< empty when no file was used
    std::map<UnicodeString, FS_FontFolder*> folderByPath; ///< by path key
    std::vector<std::unique_ptr<FS_FontFolder>> folders;  ///< in scan order
    bool useWindowsRegistry = true;
    bool eudcProcessing = true;
    KWUri eudcSystemDefault;
    std::map<UnicodeString, KWUri> eudcMap;      ///< by family name
    std::array<std::uint8_t, 8192> eudcBitmap{}; ///< bit `c & 7` of byte `c >> 3`
    bool eudcRangeGiven = false;
    bool otfMetricsWindows = false;
    bool usePreferredFamily = true;
    FS_FontPool fontPool;
    FS_FontPool aliasPool; ///< alias names of fonts that `fontPool` holds
    FS_ErrorList errors;   ///< what went wrong without stopping the service
    FS_FontRef defaultEudcFont;
    FS_FontRef defaultEudcFontVertical;
    FreeTypeLibrary freeTypeLibrary;
    KWCommonNS::KWLock freeTypeLock;

    /// Fonts that belong to no pool and live as long as the service.
    std::vector<KWPtr<FS_BaseFont>> keptFonts;
};

/// Null before the first call and after the unload. Start-up may still be at work on it.
extern std::atomic<FS_FontService*> g_fontService;

/// The object to work on.
///
/// The first call without `scratch` makes the service and starts it up, and passes on the KWError
/// of a failing configuration; every other one answers what that call left, and waits for it
/// where it is still going on. With `scratch` only the configuration is read, into that object.
/// @param configPath  null or empty for the default one
/// @param homePath    what "@@HOME@@" stands for; may be null
/// @return  null when there is no memory for the service, after the unload, and for a `scratch`
///          whose configuration fails, which is then recorded in its `errors`
FS_FontService* getFontService(const char* configPath, const char* homePath,
                               FS_FontService* scratch);

/// What happens when the library is unloaded: the service goes, for good.
void unloadFontService();

} // namespace KWFontService_NS
