#pragma once

#include "registry/FS_FontPool.h"

namespace KWFontService_NS {

/// The pool of the fonts that a document brings along: without file names that lack their
/// extension, and without fresh names.
class FS_ExtraFontPool final : public FS_FontPool {
public:
    FS_ExtraFontPool();
    /// The same fonts under the same names. Takes `g_fontServiceLock`.
    FS_ExtraFontPool(const FS_ExtraFontPool& other);
    FS_ExtraFontPool& operator=(const FS_ExtraFontPool&) = delete;
    ~FS_ExtraFontPool() override;

    void registerFont(KWPtr<FS_BaseFont> font) override;
    void registerNamedFont(FS_BaseFont& font, const UnicodeString& prefix) override;

    /// The name and the style that a document declares for a font.
    struct Face {
        UnicodeString family; ///< empty: none
        int weight = 0;       ///< CSS weight; 0: the font's own
        int italic = -1;      ///< 1 italic, -1: the font's own, anything else upright
    };

    /// Reads a font file whole and takes it in, or adds a face to one that is here already. Holds
    /// `g_fontServiceLock` all the while.
    /// @param type  a request, a type of file, or 0 for what the file says of itself
    /// @return      the index of the font in `fonts`
    /// @throws KWError  why the file is not taken; nothing of it is then in the pool
    int appendFile(const KWUri& uri, const Face& face, FS_FontFileType type);
    /// Takes in a font that was found before, each time anew. Takes no lock.
    /// @param local  null is refused like a font that does not scan
    int appendLocal(KWPtr<FS_BaseFont> local, const Face& face);

    /// The font at an index; null when there is none.
    FS_BaseFont* fontAt(int index) const;

private:
    KWPtr<FS_BaseFont> readFile(const KWUri& uri, const Face& face, FS_FontFileType type) const;
    int takeIn(const KWPtr<FS_BaseFont>& font, const UnicodeString& uriText,
               const UnicodeString& family);
    void addFace(FS_BaseFont& font, const Face& face);
    bool knows(const FS_BaseFont& font, const UnicodeString& family) const;
    void forgetLast();
};

} // namespace KWFontService_NS
