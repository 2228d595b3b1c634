#pragma once

#include "registry/FS_FontPool.h"

#include <KWFontService17/FS_Functions.h>

namespace KWFontService_NS {

/// Reports the faces of a name, or all faces, pool by pool. What it was made with is not looked at
/// again, so the callback may do with that what it likes.
class FontEnumeration {
public:
    /// @param family  a name; "@" before it asks for vertical faces alone, empty for all faces
    FontEnumeration(const UnicodeString& family, FS_EnumFontFamiliesCallback callback,
                    void* userData);

    /// Goes through the faces that the pool has at the start, under `g_fontServiceLock`. The pool
    /// has to live on whatever the callback does.
    /// @return  the first answer of the callback that is not 0, 0 when there was none
    int walk(FS_FontPool& pool, FS_FontResourceType type) const;

private:
    struct Face;

    int walkAll(const FS_FontPool& pool, FS_FontResourceType type) const;
    int walkName(FS_FontPool& pool, FS_FontResourceType type) const;
    int report(FS_FontResourceType type, const Face& face) const;

    bool isVertical_;
    bool isOfAll_;
    UnicodeString name_;
    FS_EnumFontFamiliesCallback callback_;
    void* userData_;
};

} // namespace KWFontService_NS
