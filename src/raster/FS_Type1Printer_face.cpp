#include "fonts/FS_ServiceContext.h"
#include "fonts/FS_Type1Printer.h"
#include "raster/RenderLock.h"
#include "raster/Type1LoadBudget.h"

#include <KWCommon15/KWLock.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace KWFontService_NS {

using KWCommonNS::KWMutex;

namespace {

/// The name of a glyph, 63 bytes of it at most; empty when FreeType has none.
std::string glyphName(FT_Face face, FT_UInt glyph) {
    std::array<char, 64> name{};
    if (!FT_HAS_GLYPH_NAMES(face) ||
        FT_Get_Glyph_Name(face, glyph, name.data(), name.size()) != FT_Err_Ok)
        return {};
    return name.data();
}

} // namespace

FT_FaceRec_* FS_Type1Printer::openFace() const {
    // Opening the face changes nothing that a caller could see.
    return const_cast<FS_Type1Printer*>(this)->getFTFace(0);
}

bool FS_Type1Printer::readGlyphs(KWError& error) {
    KWMutex mutex(g_glyphRenderLock);
    mutex.lock();
    FT_Face face = openFace();
    if (face == nullptr)
        return fontError(error, FS_ERROR_FONT_INFORMATION, UnicodeString());
    if (face->num_glyphs <= 0)
        return fontError(error, FS_ERROR_FONT_FILE, UnicodeString("No glyphs"));
    metrics_ =
        Type1Metrics(std::vector<Type1CharMetric>(static_cast<std::size_t>(face->num_glyphs)));

    FT_CharMap const unicode = face->charmap;
    const bool isCustom = FT_Select_Charmap(face, FT_ENCODING_ADOBE_CUSTOM) == FT_Err_Ok;
    readEncodedGlyphs(face, isCustom);
    // Characters are looked up by what they are, and only then by the codes of the font.
    if (isCustom && unicode != nullptr)
        FT_Set_Charmap(face, unicode);
    return true;
}

void FS_Type1Printer::readEncodedGlyphs(FT_FaceRec_* face, bool isCustom) {
    Type1LoadBudget budget(face);
    FT_UInt glyph = 0;
    for (FT_ULong charCode = FT_Get_First_Char(face, &glyph); glyph != 0;
         charCode = FT_Get_Next_Char(face, charCode, &glyph)) {
        const int code = static_cast<int>(charCode);
        std::string name = glyphName(face, glyph);
        if (isCustom && !name.empty())
            builtInNames_.emplace(code, name);
        if (glyph >= metrics_.records().size() || !budget.take(glyph) || !loadGlyph(glyph, false))
            continue;
        ++encodedGlyphs_;
        Type1CharMetric& record = metrics_.record(glyph);
        if (record.name.empty()) {
            record.code = code;
            record.WX = static_cast<int>(face->glyph->metrics.horiAdvance);
            record.WY = static_cast<int>(face->glyph->metrics.vertAdvance);
            if (name.empty())
                continue;
            record.name = std::move(name);
            metrics_.addName(glyph);
        }
        metrics_.addCode(code, glyph);
    }
    metrics_.sort();
}

bool FS_Type1Printer::loadGlyph(unsigned int index, bool unscaled) const {
    FT_Face face = openFace();
    if (face == nullptr)
        return false;
    const FT_Int32 flags = unscaled ? FT_LOAD_NO_SCALE | FT_LOAD_VERTICAL_LAYOUT : FT_LOAD_NO_SCALE;
    return FT_Load_Glyph(face, index, flags) == FT_Err_Ok;
}

UnicodeString FS_Type1Printer::getPostScriptName(KWLang::LanguageID, int) const {
    // FreeType makes the names of some formats when they are first asked for.
    KWMutex mutex(g_glyphRenderLock);
    mutex.lock();
    FT_Face face = openFace();
    const char* const name = face != nullptr ? FT_Get_Postscript_Name(face) : nullptr;
    return name != nullptr ? textOfBytes(name) : UnicodeString();
}

unsigned short FS_Type1Printer::getGlyphID(int ch, bool vertical, int) const {
    KWMutex mutex(g_glyphRenderLock);
    mutex.lock();
    FT_Face face = openFace();
    if (face == nullptr || ch < 0 || (vertical && !FT_HAS_VERTICAL(face)))
        return FS_NO_GLYPH;
    FT_UInt glyph = FT_Get_Char_Index(face, static_cast<FT_ULong>(ch));
    if (glyph == 0) {
        const auto builtIn = builtInNames_.find(ch);
        if (builtIn != builtInNames_.end())
            glyph = FT_Get_Name_Index(face, builtIn->second.c_str());
    }
    return glyph != 0 && glyph < FS_NO_GLYPH ? static_cast<unsigned short>(glyph) : FS_NO_GLYPH;
}

float FS_Type1Printer::getGlyphWidth(unsigned short gid, int size, bool, int) const {
    KWMutex mutex(g_glyphRenderLock);
    mutex.lock();
    if (gid == FS_NO_GLYPH || !loadGlyph(gid, false))
        return 0;
    FT_Face face = openFace();
    const auto advance = static_cast<double>(face->glyph->metrics.horiAdvance);
    if (size == 0)
        return static_cast<float>(advance);
    const double divisor = size < 0 ? static_cast<double>(face->units_per_EM)
                                    : static_cast<double>(head_.fontBBox.height());
    if (divisor == 0 || !std::isfinite(divisor))
        return 0;
    return static_cast<float>(advance / divisor * std::abs(static_cast<double>(size)));
}

int FS_Type1Printer::getUnitsPerEm(int) const {
    KWMutex mutex(FS_ServiceContext::freeTypeLock());
    mutex.lock();
    FT_Face face = ftFace.get(); // asking opens nothing
    return face != nullptr ? face->units_per_EM : kType1UnitsPerEm;
}

bool FS_Type1Printer::hasPairKerningInfo(bool, int) const {
    FT_Face face = openFace();
    return face != nullptr && FT_HAS_KERNING(face);
}

float FS_Type1Printer::getPairKerningValue(unsigned short left, unsigned short right, int size,
                                           bool, int) const {
    KWMutex mutex(g_glyphRenderLock);
    mutex.lock();
    FT_Face face = openFace();
    FT_Vector kerning{};
    if (face == nullptr || face->units_per_EM == 0 ||
        FT_Get_Kerning(face, left, right, FT_KERNING_UNSCALED, &kerning) != FT_Err_Ok)
        return 0;
    const double scale = std::abs(static_cast<double>(size)) / face->units_per_EM;
    return static_cast<float>(static_cast<double>(kerning.x) * scale);
}

} // namespace KWFontService_NS
