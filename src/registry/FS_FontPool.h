#pragma once

#include "registry/FS_TextHash.h"
#include "type1/NameKeys.h"

#include <KWFontService17/FS_BaseFont.h>

#include <KWCommon15/KWPtr.h>

#include <compare>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWPtr;

/// The style of an entry; compared weight first, then italic, then stretch.
struct FS_FontKey {
    static constexpr int kNormalWeight = 400;
    static constexpr int kNormalStretch = 5;

    int weight = kNormalWeight;   ///< CSS weight, never 0
    bool italic = false;          ///< false sorts first
    int stretch = kNormalStretch; ///< 1 to 9, never 0

    /// The style that a request asks for; 0 is normal.
    static FS_FontKey ofRequest(int weight, bool italic, int stretch);
    /// The style that a face declares; what it leaves open is normal.
    static FS_FontKey ofFace(const FS_BaseFont& font, int faceIndex);

    friend auto operator<=>(const FS_FontKey&, const FS_FontKey&) = default;
};

/// The faces of one name. The first entry for a style stands; `emplace` drops later ones.
using FS_FontFamilyMap = std::map<FS_FontKey, FS_FontRef>;

/// Which font object and which face a name and a style mean.
///
/// The pool has no lock: who registers or searches holds `g_fontServiceLock`. Only `findFont` and
/// `registerNamedFont` take it by themselves.
class FS_FontPool {
public:
    FS_FontPool();
    virtual ~FS_FontPool();
    FS_FontPool(const FS_FontPool&) = delete;
    FS_FontPool& operator=(const FS_FontPool&) = delete;

    /// Enters a font under its file names, with and without the extension, and all its names. The
    /// pool keeps no reference by this; the owning list is `fonts`.
    virtual void registerFont(KWPtr<FS_BaseFont> font);
    /// Enters a font under one fresh name, made of `prefix` and its PostScript name, and tells the
    /// font that name.
    virtual void registerNamedFont(FS_BaseFont& font, const UnicodeString& prefix);

    /// Looks for a font name, then for a file name.
    /// @param out  the faces of that name, owned by the pool; untouched when the answer is false
    bool findName(const UnicodeString& name, FS_FontFamilyMap*& out);

    /// The face for a name and a style, under `g_fontServiceLock`; null when the name is unknown.
    /// The selection may fill gaps of the family (see FontSelection.h).
    FS_FontRef findFont(const UnicodeString& name, const FS_FontKey& key);

    /// Adds an entry to a map of the pool; an empty name is skipped.
    static void addName(FS_TextMap<FS_FontFamilyMap>& map, const UnicodeString& name,
                        const FS_FontRef& ref, const FS_FontKey& key);
    /// Adds an entry under the lower-cased file name; an empty URI and `data:` are skipped.
    void addFileName(const KWUri& uri, const FS_FontRef& ref, const FS_FontKey& key);
    /// Adds an entry under each of the names that were given to a font besides its own.
    void addExtraFamilies(const std::set<UnicodeString>& names, const FS_FontRef& ref,
                          const FS_FontKey& key);

    /// In the order of registration, which enumeration follows.
    std::vector<KWPtr<FS_BaseFont>> fonts;
    FS_TextMap<FS_FontFamilyMap> byFileName; ///< by lower-cased file name
    FS_TextMap<FS_FontFamilyMap> byName;     ///< by normalised name
    FS_TextMap<std::int32_t> byUri;          ///< URI text to an index into `fonts`
};

} // namespace KWFontService_NS
