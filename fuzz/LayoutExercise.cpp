#include "LayoutExercise.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/GlyphIDArray2.h>
#include <KWFontService17/GlyphIDPosition.h>

#include <vector>

namespace KWFuzz {

using namespace KWFontService_NS;

namespace {

// Those of the seeds, and some that they do not have.
constexpr unsigned short kGlyphs[] = {12, 10, 11, 13, 10, 10, 11, 13, 2, 3, 4, 0, 0xFFFF};
/// A call may take a hundredth of a second and more, and a table can list thousands of lookups.
constexpr int kMostEntries = 3;

GlyphClassDef classAt(int index) {
    return static_cast<GlyphClassDef>(1 + index % 3);
}

GlyphIDArray2 run() {
    GlyphIDArray2 glyphs;
    int index = 0;
    for (const unsigned short gid : kGlyphs)
        glyphs.push_back(gid, classAt(index++));
    return glyphs;
}

std::vector<GlyphIDPosition> positions(bool strict) {
    std::vector<GlyphIDPosition> glyphs;
    int index = 0;
    for (const unsigned short gid : kGlyphs) {
        const GlyphClassDef glyphClass = classAt(index);
        GlyphIDPosition& glyph = glyphs.emplace_back();
        glyph.setGlyph(gid, glyphClass, glyphClass == GlyphClassDef::Mark ? 0 : 32767);
        glyph.setSkipInfo(index++);
        if (strict)
            glyph.setFlag(GLYPH_FLAG_LOOKUP_SKIP | GLYPH_FLAG_COMPONENT_INFO);
    }
    return glyphs;
}

void substitute(const FS_GSUBGPOSInfo* handle, int entry, unsigned int tag) {
    const GlyphIDArray2 in = run();
    GlyphIDArray2 out;
    FS_FontInfo::processGSUB3(handle, entry, in, out, 1);
    // In place, with words that stand for a mask.
    FS_FontInfo::processGSUB3(handle, entry, out, out, 2);
    for (const int index : {0, 1, 5}) {
        int position = index;
        GlyphIDArray replacement;
        GlyphIDArray skipped;
        FS_FontInfo::processGSUB(handle, tag, in.glyphs(), position, replacement, skipped, 1);
    }
}

void position(const FS_GSUBGPOSInfo* handle, int entry, unsigned int tag) {
    for (const bool strict : {false, true}) {
        std::vector<GlyphIDPosition> glyphs = positions(strict);
        for (const bool rtl : {false, true}) {
            FS_FontInfo::processGPOS3(handle, entry, glyphs, rtl);
            for (const int index : {0, 1, 5})
                FS_FontInfo::processGPOS(handle, tag, glyphs, index, rtl);
        }
    }
}

} // namespace

void exerciseLayout(const FS_GSUBGPOSInfo* handle) {
    if (handle == nullptr)
        return;
    for (int entry = 0; entry < kMostEntries; ++entry) {
        if (const unsigned int tag = FS_FontInfo::getGSUBFeatureTag(handle, entry))
            substitute(handle, entry, tag);
        if (const unsigned int tag = FS_FontInfo::getGPOSFeatureTag(handle, entry))
            position(handle, entry, tag);
    }
}

} // namespace KWFuzz
