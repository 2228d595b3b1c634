#include "layout/FS_GSUBGPOSInfo.h"
#include "layout/GposEngine.h"
#include "layout/GsubEngine.h"
#include "layout/LayoutCall.h"

#include "common/TagText.h"

#include <KWFontService17/FS_FontInfo.h>
#include <KWFontService17/GlyphIDArray2.h>
#include <KWFontService17/GlyphIDPosition.h>

#include <algorithm>

namespace KWFontService_NS {

namespace {

using KWCommonNS::sfntTag;

constexpr std::uint32_t kArabic = sfntTag("arab");
constexpr std::uint32_t kHebrew = sfntTag("hebr");

/// Index in the lookup list of an entry of the lookup order, -1 when there is no such entry.
int lookupIndexAt(const TTI_LangSys* langSys, int entry) {
    if (langSys == nullptr || entry < 0 ||
        static_cast<std::size_t>(entry) >= langSys->lookupOrder.size())
        return -1;
    return langSys->lookupOrder[static_cast<std::size_t>(entry)].lookupIndex();
}

/// The mask that the words of a run are read as, one entry for each of its glyphs.
std::vector<int> maskOf(const GlyphIDArray2& run) {
    std::vector<int> mask = run.words();
    mask.resize(static_cast<std::size_t>(run.size()));
    return mask;
}

/// False when a lookup starts at no glyph of a run, which is all that most lookups come to.
bool mayStartIn(const TTI_Lookup& lookup, const GlyphIDArray& run) {
    const GlyphDigest::Probe probe(lookup.digest);
    return std::ranges::any_of(
        run, [&](const GlyphIDClassPair& glyph) { return probe.mayHold(glyph.getGlyphID()); });
}

/// Applies the lookups of a feature at one position.
bool positionByFeature(LayoutCall& call, const FS_GSUBGPOSInfo& info, const TTI_Feature& feature,
                       std::vector<GlyphIDPosition>& positions, int index, bool rtl) {
    const TTI_LookupList& lookups = info.gposTable->lookups();
    const U16List& indices = feature.lookupIndices;
    bool applied = false;
    for (std::size_t i = 0; i < indices.size() && call.spend(1); ++i) {
        // In Arabic the last lookup goes first.
        const std::size_t place = info.script == kArabic ? indices.size() - 1 - i : i;
        const TTI_Lookup* lookup = lookups.find(indices[place]);
        int at = index; // where a lookup moves it to is deliberately not carried to the next
        if (lookup == nullptr || !positionAt(call, lookups, *lookup, positions, at, rtl))
            continue;
        applied = true;
        if (info.script == kArabic || info.script == kHebrew)
            break;
    }
    return applied;
}

} // namespace

int FS_FontInfo::processGSUB(const FS_GSUBGPOSInfo* info, unsigned int tag, const GlyphIDArray& run,
                             int& position, GlyphIDArray& out, GlyphIDArray& skipped,
                             int alternate) {
    if (info == nullptr || info->gsubLangSys == nullptr || position < 0 || position >= run.size())
        return 0;
    // The run is read while the arrays are written.
    if (&run == &out || &run == &skipped)
        return processGSUB(info, tag, GlyphIDArray(run), position, out, skipped, alternate);
    const TTI_LookupList& lookups = info->gsubTable->lookups();
    LayoutCall call(*info->gdef, static_cast<std::size_t>(run.size()), info->gsubTable->memo());
    GsubEngine engine(call, lookups);
    for (const TTI_Feature* feature : info->gsubLangSys->featuresOf(tag)) {
        for (const std::uint16_t index : feature->lookupIndices) {
            if (!call.spend(1))
                return 0;
            const TTI_Lookup* lookup = lookups.find(index);
            if (lookup == nullptr)
                continue;
            const GsubEngine::Hit hit =
                engine.substituteAt(*lookup, run, position, out, skipped, alternate);
            if (hit.applies)
                return hit.count;
        }
    }
    return 0;
}

bool FS_FontInfo::processGSUB3(const FS_GSUBGPOSInfo* info, int index, const GlyphIDArray2& in,
                               GlyphIDArray2& out, int alternate) {
    const int lookupIndex = info != nullptr ? lookupIndexAt(info->gsubLangSys, index) : -1;
    if (lookupIndex < 0)
        return false;
    const TTI_LookupList& lookups = info->gsubTable->lookups();
    const TTI_Lookup* lookup = lookups.find(static_cast<std::size_t>(lookupIndex));
    const bool mayStart = lookup != nullptr && mayStartIn(*lookup, in.glyphs());
    std::vector<int> mask;
    if (mayStart)
        mask = maskOf(in);
    if (&out != &in)
        out.glyphs() = in.glyphs();
    out.words().assign(static_cast<std::size_t>(out.size()), 1);
    if (!mayStart)
        return false;
    LayoutCall call(*info->gdef, static_cast<std::size_t>(out.size()), info->gsubTable->memo());
    return GsubEngine(call, lookups)
        .substituteRun(*lookup, {out.glyphs(), out.words(), mask}, alternate);
}

bool FS_FontInfo::processGPOS(const FS_GSUBGPOSInfo* info, unsigned int tag,
                              std::vector<GlyphIDPosition>& positions, int index, bool rtl) {
    if (info == nullptr || info->gposLangSys == nullptr)
        return false;
    LayoutCall call(*info->gdef, positions.size(), info->gposTable->memo());
    const auto features = info->gposLangSys->featuresOf(tag);
    return std::ranges::any_of(features, [&](const TTI_Feature* feature) {
        return positionByFeature(call, *info, *feature, positions, index, rtl);
    });
}

int FS_FontInfo::processGPOS3(const FS_GSUBGPOSInfo* info, int index,
                              std::vector<GlyphIDPosition>& positions, bool rtl) {
    const int lookupIndex = info != nullptr ? lookupIndexAt(info->gposLangSys, index) : -1;
    if (lookupIndex < 0)
        return -1;
    const TTI_LookupList& lookups = info->gposTable->lookups();
    const TTI_Lookup* lookup = lookups.find(static_cast<std::size_t>(lookupIndex));
    if (lookup == nullptr)
        return -1;
    LayoutCall call(*info->gdef, positions.size(), info->gposTable->memo());
    const bool fromRight = rtl || (lookup->flag & kRightToLeft) != 0;
    const GlyphDigest::Probe probe(lookup->digest);
    int found = -1;
    for (int i = 0; i < static_cast<int>(positions.size()); ++i) {
        const unsigned short gid = positions[static_cast<std::size_t>(i)].getGlyphID();
        if (probe.mayHold(gid) && positionAt(call, lookups, *lookup, positions, i, fromRight) &&
            found == -1)
            found = i;
    }
    return found;
}

} // namespace KWFontService_NS
