#pragma once

#include "support/FontPackages.h"

#include <KWFontService17/FS_FontInfo.h>

#include <KWCommon15/KWPtr.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace KWBench {

template <auto Destroy>
struct Deleter {
    template <class T>
    void operator()(T* object) const {
        Destroy(object);
    }
};
using HbBlob = std::unique_ptr<hb_blob_t, Deleter<hb_blob_destroy>>;
using HbFace = std::unique_ptr<hb_face_t, Deleter<hb_face_destroy>>;
using HbFont = std::unique_ptr<hb_font_t, Deleter<hb_font_destroy>>;

/// The same font file in our hands, HarfBuzz's and FreeType's.
struct Subject {
    explicit Subject(const std::filesystem::path& path);
    ~Subject();
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    std::filesystem::path path;
    KWFontService_NS::FS_FontInfo ours;
    HbBlob blob;
    HbFace face;
    HbFont font;
    FT_Library ftLibrary = nullptr;
    FT_Face ftFace = nullptr;
};

/// One subject a font, made on first use and kept to the end.
Subject& latinSubject();
Subject& cjkSubject();
/// A CJK font that the peer's subsetter takes for any set of glyphs.
Subject& cjkSubsetSubject();
/// Fonts with `CFF ` outlines: one with glyph names, and the first member of a collection with
/// CIDs.
Subject& nameKeyedSubject();
Subject& cidKeyedSubject();

/// Texts of a few thousand characters that the subjects cover.
const KWFontService_NS::UnicodeString& latinText();
const KWFontService_NS::UnicodeString& cjkText();
std::vector<hb_codepoint_t> codePoints(const KWFontService_NS::UnicodeString& text);

/// Glyph ids spread over a whole font.
std::vector<unsigned short> spreadGlyphs(hb_face_t* face, std::size_t count);

/// A font that was scanned and not loaded; null when the file is not usable.
KWCommonNS::KWPtr<KWFontService_NS::FS_BaseFont> scanFile(const KWCommonNS::KWUri& uri);

/// Every sfnt file with one face under the system's font folder.
const std::vector<std::filesystem::path>& installedFonts();

} // namespace KWBench
