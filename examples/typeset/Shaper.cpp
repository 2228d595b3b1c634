#include "Shaper.h"

#include "GlyphOrigins.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cmath>

namespace typeset {

using namespace KWFontService_NS;

namespace {

using Positions = std::vector<GlyphIDPosition>;

constexpr UChar32 kNonJoiner = 0x200C;

/// Source: OpenType, Script tags, which are those of ISO 15924 in small letters but for a few.
unsigned int scriptTag(UScriptCode script) {
    switch (script) {
    case USCRIPT_COMMON:
        return tagOf("DFLT");
    case USCRIPT_KATAKANA:
        return tagOf("kana");
    case USCRIPT_LAO:
        return tagOf("lao ");
    case USCRIPT_NKO:
        return tagOf("nko ");
    case USCRIPT_VAI:
        return tagOf("vai ");
    case USCRIPT_YI:
        return tagOf("yi  ");
    default:
        icu::UnicodeString name(uscript_getShortName(script), -1, US_INV);
        return toTAG(name.toLower(icu::Locale::getRoot()));
    }
}

bool isMarkCharacter(UChar32 character) {
    return (U_GET_GC_MASK(character) & (U_GC_MN_MASK | U_GC_ME_MASK)) != 0;
}

/// Characters become glyphs, one each; those that do not show become nothing, or a place without a
/// glyph where they keep their neighbours apart.
Positions mapCharacters(const Shaper::Request& request, const FS_FontInfo& font) {
    const TextRun& run = request.run;
    Positions glyphs;
    int pending = 0; // units of characters without a place before the first
    UChar32 before = 0;
    for (std::int32_t i = run.start; i < run.limit; i = request.text.moveIndex32(i, 1)) {
        UChar32 character = request.text.char32At(i);
        const int units = U16_LENGTH(character);
        const bool shows = !u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT);
        if (!shows && character != kNonJoiner) {
            if (glyphs.empty()) {
                pending += units;
                continue;
            }
            glyphs.back().addCorrespondLength(units);
            const unsigned short variant = font.hasVariationSelector()
                                               ? font.variationSequence(before, character)
                                               : FS_NO_GLYPH;
            if (variant != FS_NO_GLYPH)
                glyphs.back().setGlyphID(variant, font.getGlyphClassDef(variant));
            continue;
        }
        before = character;
        if (run.rightToLeft() && font.getGlyphID(u_charMirror(character), false) != FS_NO_GLYPH)
            character = u_charMirror(character);
        GlyphIDPosition glyph(units + pending, 0);
        pending = 0;
        if (shows) {
            unsigned short gid = font.getGlyphID(character, run.writing == Writing::upright);
            gid = gid == FS_NO_GLYPH ? static_cast<unsigned short>(0) : gid;
            const GlyphClassDef known = font.getGlyphClassDef(gid);
            glyph.setGlyphID(gid, known == GlyphClassDef::Unknown && isMarkCharacter(character)
                                      ? GlyphClassDef::Mark
                                      : known);
        }
        glyph.setDecompositionType(request.forms[static_cast<std::size_t>(i)]);
        glyph.setJoiningGroup(
            static_cast<UJoiningGroup>(u_getIntPropertyValue(character, UCHAR_JOINING_GROUP)));
        glyphs.push_back(glyph);
    }
    return glyphs;
}

bool isMark(const GlyphIDPosition& glyph) {
    return glyph.getGlyphClassDef() == GlyphClassDef::Mark;
}

/// One lookup of `GSUB` and what it takes to apply it.
struct Lookup {
    const FS_GSUBGPOSInfo* gsub;
    int index;
    int alternate;
    UDecompositionType form; // of the letters that it is for; `U_DT_NONE` for all

    void apply(Positions& glyphs) const;
    void applyToJoined(Positions& glyphs) const;
};

void Lookup::apply(Positions& glyphs) const {
    GlyphIDArray2 run;
    GlyphIDArray2 result;
    run.readGIDs(glyphs, true);
    if (FS_FontInfo::processGSUB3(gsub, index, run, result, alternate))
        glyphs = followSubstitution(glyphs, result);
}

/// Where letters join, vowel signs must not come between them: a lookup that passes them over is
/// applied to the letters alone. That it does so shows when it also takes the run with its marks;
/// one that would rather not have marks between its letters does not. Then the marks have their
/// turn. A word other than 0 keeps a lookup from starting at its glyph.
void Lookup::applyToJoined(Positions& glyphs) const {
    GlyphIDArray2 run;
    GlyphIDArray2 result;
    GlyphIDArray2 letters = withoutMarks(glyphs);
    run.readGIDs(glyphs, true);
    for (const GlyphIDPosition& glyph : glyphs) {
        const bool masked = form != U_DT_NONE && glyph.getDecompositionType() != form;
        run.words().push_back(isMark(glyph) || masked ? 1 : 0);
        if (!isMark(glyph))
            letters.words().push_back(masked ? 1 : 0);
    }
    if (FS_FontInfo::processGSUB3(gsub, index, run, result, alternate) &&
        FS_FontInfo::processGSUB3(gsub, index, letters, result, alternate))
        glyphs = followSubstitution(glyphs, withMarks(glyphs, result));

    run.readGIDs(glyphs, true);
    for (const GlyphIDPosition& glyph : glyphs)
        run.words().push_back(isMark(glyph) && form == U_DT_NONE ? 0 : 1);
    if (FS_FontInfo::processGSUB3(gsub, index, run, result, alternate))
        glyphs = followSubstitution(glyphs, result);
}

/// Walks the lookups of `GSUB` in the font's order and applies those of features that are wanted.
void substitute(const FS_GSUBGPOSInfo* gsub, const FeaturePlan& plan, Positions& glyphs) {
    const bool joined = std::any_of(glyphs.begin(), glyphs.end(), [](const auto& glyph) {
        return glyph.getDecompositionType() != U_DT_NONE;
    });
    for (int i = 0; FS_FontInfo::getGSUBFeatureTag(gsub, i) != 0; ++i) {
        const unsigned int tag = FS_FontInfo::getGSUBFeatureTag(gsub, i);
        const Lookup lookup{gsub, i, plan.valueOf(tag), formOfFeature(tag)};
        if (lookup.alternate == 0)
            continue;
        if (joined)
            lookup.applyToJoined(glyphs);
        else if (lookup.form == U_DT_NONE)
            lookup.apply(glyphs);
    }
    dropEmpty(glyphs);
}

/// Gives the glyphs their advances. A mark takes no room of its own.
void setWidths(const FS_FontInfo& font, const TextRun& run, Positions& glyphs) {
    const bool upright = run.writing == Writing::upright;
    for (GlyphIDPosition& glyph : glyphs) {
        const int component = glyph.getSkipInfo();
        const int components = glyph.getCompInfo();
        const int width =
            static_cast<int>(std::lround(font.getGlyphWidth(glyph.getGlyphID(), 0, false)));
        const bool mark = isMark(glyph);
        glyph.setGlyph2(glyph.getGlyphIDClassPair(), mark ? 0 : width);
        glyph.setSkipInfo(component);
        glyph.setCompInfo(components);
        // Lookup flags count, and marks find their component of a ligature.
        glyph.setFlag(GLYPH_FLAG_LOOKUP_SKIP | GLYPH_FLAG_COMPONENT_INFO);
        if (mark && !run.rightToLeft() && width > 0) {
            // Until an anchor says better, a mark that has room stands over what is before it.
            glyph.setMoveX1(-width);
            glyph.setMoveX2(width);
            glyph.setFlag(GLYPH_FLAG_OUTSIDE_GPOS);
        }
        if (upright) {
            glyph.setVertGlyph(
                static_cast<int>(std::lround(font.getGlyphWidth(glyph.getGlyphID(), 0, true))));
        }
    }
}

/// The pairs of the `kern` table or of a Type 1 font, for fonts that have no `GPOS` feature of that
/// name.
void kernByTable(const FS_FontInfo& font, Positions& glyphs) {
    GlyphIDPosition* left = nullptr;
    const int fontUnits = -font.getUnitsPerEm();
    for (GlyphIDPosition& glyph : glyphs) {
        if (glyph.getWidth() == 0)
            continue;
        if (left != nullptr) {
            left->setMoveX2(left->getMoveX2() +
                            static_cast<int>(std::lround(font.getPairKerningValue(
                                left->getGlyphID(), glyph.getGlyphID(), fontUnits, false))));
        }
        left = &glyph;
    }
}

/// The same walk through the lookups of `GPOS`.
void position(const FS_GSUBGPOSInfo* gpos, const FeaturePlan& plan, bool rightToLeft,
              Positions& glyphs) {
    for (int i = 0; FS_FontInfo::getGPOSFeatureTag(gpos, i) != 0; ++i) {
        const unsigned int tag = FS_FontInfo::getGPOSFeatureTag(gpos, i);
        if (plan.valueOf(tag) != 0)
            FS_FontInfo::processGPOS3(gpos, i, glyphs, rightToLeft);
    }
}

} // namespace

std::vector<GlyphIDPosition> Shaper::shape(const Request& request) {
    const TextRun& run = request.run;
    const FS_FontInfo& font = fonts_[run.font].info;
    const Tables& tables = tablesOf(run, request.language);
    Positions glyphs = mapCharacters(request, font);
    substitute(tables.gsub.get(), request.plan, glyphs);
    setWidths(font, run, glyphs);
    if (run.writing == Writing::upright)
        return glyphs; // the features of the plan are for horizontal lines
    position(tables.gpos.get(), request.plan, run.rightToLeft(), glyphs);
    const unsigned int kern = tagOf("kern");
    const bool kerned =
        tables.gpos != nullptr && FS_FontInfo::hasGPOSFeature(tables.gpos.get(), kern);
    if (!kerned && !run.rightToLeft() && request.plan.valueOf(kern) != 0)
        kernByTable(font, glyphs);
    return glyphs;
}

/// Asks for the script, and in its absence for what serves any script, since the library answers
/// for the very script alone. A font may have the one table and lack the other.
const Shaper::Tables& Shaper::tablesOf(const TextRun& run, unsigned int language) {
    const auto [found, isNew] = tables_.try_emplace({run.font, run.script, language});
    Tables& tables = found->second;
    if (!isNew)
        return tables;
    const FS_FontInfo& font = fonts_[run.font].info;
    for (const unsigned int script : {scriptTag(run.script), tagOf("DFLT"), tagOf("latn")}) {
        Handle gsub(font.getGSUBGPOSInfo(script, language));
        Handle gpos(font.getGSUBGPOSInfo(script, language));
        if (tables.gsub == nullptr && FS_FontInfo::hasGSUBInfo(gsub.get()))
            tables.gsub = std::move(gsub);
        if (tables.gpos == nullptr && FS_FontInfo::hasGPOSInfo(gpos.get()))
            tables.gpos = std::move(gpos);
    }
    return tables;
}

} // namespace typeset
