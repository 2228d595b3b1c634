#pragma once

#include <KWFontService17/FS_FontInfo.h>

#include <memory>
#include <set>

namespace KWFontService_NS {

/// The fonts of one document: those of its CSS `@font-face` rules.
///
/// A host keeps one for each document, appends what the rules name, and passes `getExtraFonts` to
/// `FS_FontInfo::createFont` and the other by-name operations, which search these fonts first. No
/// other document finds them. They live as long as the last manager that holds them, which has to
/// outlive every `FS_FontInfo` that stands for one.
///
/// A manager is used by one thread at a time while fonts are appended, and so are all managers that
/// share fonts with it, together. After that any number of threads may search the fonts.
class KWFONTSERVICE_API FS_ExtraFontManager {
public:
    /// A set of its own.
    /// @param other  whose fonts are the first ones in it, under the names they have there; may be
    ///               null. Each set grows by itself from then on, but the fonts in both are the
    ///               same objects: a name or a style that one gives them anew is theirs in the
    ///               other, too
    explicit FS_ExtraFontManager(const FS_ExtraFontManager* other = nullptr);
    /// A second manager of the same set: what one appends the other finds.
    FS_ExtraFontManager(const FS_ExtraFontManager& other);
    /// Leaves the set it had and becomes a second manager of that of `other`.
    FS_ExtraFontManager& operator=(const FS_ExtraFontManager& other);
    ~FS_ExtraFontManager();

    /// The set, as by-name operations take it. Owned by its managers; never null.
    FS_ExtraFonts* getExtraFonts() const;
    /// Number of fonts, a file with several faces counting as one.
    int getFontsCount() const;

    /// Takes in the font file of a rule, read to its end at once: later it is opened again for
    /// embedding and drawing alone. A URL that was appended before is not read again; its font
    /// gets the family name beside those it has and, unless it was taken in as a bare font object,
    /// the weight and the italic flag in the place of its former ones. What it was found under
    /// before it is still found under.
    ///
    /// The fonts of the service wait while the file is read, so a slow fetcher holds up other
    /// threads.
    /// @param url     of a local file, `data:`, or a scheme that the host's fetcher reads
    ///                (KWUri::setFetcher); as style sheets write it (`URISTR_URL`)
    /// @param family  the name that the document gives the font; its only name, besides that of
    ///                the file with its extension. Empty gives it none, and declares no style for a
    ///                URL that was appended before
    /// @param weight  declared CSS weight; 0 for the font's own
    /// @param italic  1 italic, -1 for the font's own, anything else upright
    /// @param type    how to read the file:
    ///                0 by its media type, where that is one of the `application/...` types that
    ///                were in use for fonts (`font/ttf` and its like are none of them), otherwise
    ///                by its extension;
    ///                a request (`FS_FILETYPE_REQUEST_...`) by extension or signature;
    ///                `FS_FILETYPE_WOFF` as WOFF; any other type of a file as a bare font object
    ///                that goes by its own names and style as well
    /// @param error   receives the reason for a -1, else untouched; may be null. 1931 the file does
    ///                not open, 1932 there is no class for its type or no memory, 1933 it is no
    ///                font; or what its reader says
    /// @return        index of the font; -1 on failure, which leaves nothing behind
    int appendExtraFont(const UnicodeString& url, const UnicodeString& family, int weight,
                        int italic, FS_FontFileType type, KWError* error);
    /// Takes in a font of the service under a name and a style of the document: `src: local(...)`.
    /// Each call gives it another place. Takes no lock.
    /// @param local   stands for the font, whose file's first face is meant whatever face `local`
    ///                has; 1932 without a font
    /// @param family  as in `appendExtraFont`, as are `weight`, `italic` and `error`
    /// @return        index of the font; -1 on failure
    int appendLocalFont(FS_FontInfo* local, const UnicodeString& family, int weight, int italic,
                        KWError* error);

    /// How the document knows a font. Each output may be null. They become empty, 0, false and 0,
    /// and are filled for a font that has a family name of the document: with the first of these
    /// in code unit order and the font's style; for a bare font object with the family name of its
    /// own, and no style.
    /// @return  the type of the font, 0 when there is none at `index`
    FS_FontFileType getExtraFontFaceName(int index, UnicodeString* name, int* weight, bool* italic,
                                         int* stretch) const;
    /// The family names that the document gave a font; null when there is none at `index`. Lives
    /// as long as the font.
    const std::set<UnicodeString>* getExtraFontFamilies(int index) const;

private:
    std::shared_ptr<FS_ExtraFonts> extraFonts;
};

} // namespace KWFontService_NS
