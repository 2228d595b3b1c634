#include "layout/FS_GSUBGPOSInfo.h"

#include <KWFontService17/FS_FontInfo.h>

namespace KWFontService_NS {

namespace {

bool hasFeature(const TTI_LangSys* langSys, unsigned int tag) {
    return langSys != nullptr && !langSys->featuresOf(tag).empty();
}

unsigned int featureTag(const TTI_LangSys* langSys, int index) {
    if (langSys == nullptr || index < 0)
        return 0;
    const auto& order = langSys->lookupOrder;
    const auto place = static_cast<std::size_t>(index);
    return place < order.size() ? order[place].tag() : 0;
}

} // namespace

void FS_FontInfo::deleteGSUBGPOSInfo(FS_GSUBGPOSInfo* info) {
    delete info;
}

bool FS_FontInfo::hasGSUBInfo(const FS_GSUBGPOSInfo* info) {
    return info != nullptr && info->gsubTable != nullptr;
}

bool FS_FontInfo::hasGPOSInfo(const FS_GSUBGPOSInfo* info) {
    return info != nullptr && info->gposTable != nullptr;
}

bool FS_FontInfo::hasMorxInfo(const FS_GSUBGPOSInfo*) {
    return false;
}

bool FS_FontInfo::isGSUBDefaultLangSys(const FS_GSUBGPOSInfo* info) {
    return info != nullptr && info->gsubDefault;
}

bool FS_FontInfo::isGPOSDefaultLangSys(const FS_GSUBGPOSInfo* info) {
    return info != nullptr && info->gposDefault;
}

bool FS_FontInfo::hasGSUBFeature(const FS_GSUBGPOSInfo* info, unsigned int tag) {
    return info != nullptr && hasFeature(info->gsubLangSys, tag);
}

bool FS_FontInfo::hasGPOSFeature(const FS_GSUBGPOSInfo* info, unsigned int tag) {
    return info != nullptr && hasFeature(info->gposLangSys, tag);
}

unsigned int FS_FontInfo::getGSUBFeatureTag(const FS_GSUBGPOSInfo* info, int index) {
    return info != nullptr ? featureTag(info->gsubLangSys, index) : 0;
}

unsigned int FS_FontInfo::getGPOSFeatureTag(const FS_GSUBGPOSInfo* info, int index) {
    return info != nullptr ? featureTag(info->gposLangSys, index) : 0;
}

bool FS_FontInfo::processMorx(const FS_GSUBGPOSInfo*, const GlyphIDArray&, GlyphIDArray&) {
    return false;
}

} // namespace KWFontService_NS
