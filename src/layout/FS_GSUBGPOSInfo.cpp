#include "layout/FS_GSUBGPOSInfo.h"

namespace KWFontService_NS {

namespace {

constexpr std::uint32_t kDefaultLanguage = 0;

struct Found {
    const TTI_LayoutTable* table = nullptr;
    const TTI_LangSys* langSys = nullptr;
    bool isDefault = false;
};

Found find(const TTI_LayoutTable& table, std::uint32_t scriptTag, std::uint32_t language) {
    const TTI_Script* script = table.script(scriptTag);
    if (script == nullptr)
        return {};
    Found found;
    found.langSys = language != kDefaultLanguage ? script->find(language) : nullptr;
    if (found.langSys == nullptr) {
        // Also of a script without a default language system: the caller asked in vain for more.
        found.isDefault = true;
        found.langSys = script->find(kDefaultLanguage);
    }
    if (found.langSys != nullptr)
        found.table = &table;
    return found;
}

} // namespace

FS_GSUBGPOSInfo findLayout(std::uint32_t script, std::uint32_t language, const TTI_Gdef* gdef,
                           const TTI_LayoutTable& gsub, const TTI_LayoutTable& gpos) {
    const Found substitution = find(gsub, script, language);
    const Found positioning = find(gpos, script, language);
    return {.script = script,
            .gdef = gdef,
            .gsubTable = substitution.table,
            .gposTable = positioning.table,
            .gsubLangSys = substitution.langSys,
            .gposLangSys = positioning.langSys,
            .gsubDefault = substitution.isDefault,
            .gposDefault = positioning.isDefault};
}

} // namespace KWFontService_NS
