#include "FeaturePlan.h"

#include <algorithm>
#include <array>

namespace typeset {

using namespace KWFontService_NS;

namespace {

/// What OpenType's list of features calls on by default, for the scripts that are set here.
constexpr auto kDefaults = std::to_array<unsigned int>({
    // substitutions
    tagOf("ccmp"),
    tagOf("locl"),
    tagOf("isol"),
    tagOf("init"),
    tagOf("medi"),
    tagOf("fina"),
    tagOf("rlig"),
    tagOf("liga"),
    tagOf("clig"),
    tagOf("calt"),
    tagOf("rclt"),
    // positions
    tagOf("kern"),
    tagOf("mark"),
    tagOf("mkmk"),
    tagOf("curs"),
});

} // namespace

int FeaturePlan::valueOf(unsigned int tag) const {
    if (const int wish = wishes_.getValue(tag); wish >= 0)
        return wish;
    return std::find(kDefaults.begin(), kDefaults.end(), tag) != kDefaults.end() ? 1 : 0;
}

FeaturePlan FeaturePlan::with(const FS_FontFeatureSettings& wishes) const {
    FS_FontFeatureSettings all = wishes;
    for (const auto& [tag, value] : wishes_.getFeatures())
        all.setValue(tag, value); // refused for what is there already
    return FeaturePlan(all);
}

UDecompositionType formOfFeature(unsigned int tag) {
    switch (tag) {
    case tagOf("isol"):
        return U_DT_ISOLATED;
    case tagOf("init"):
        return U_DT_INITIAL;
    case tagOf("medi"):
        return U_DT_MEDIAL;
    case tagOf("fina"):
        return U_DT_FINAL;
    default:
        return U_DT_NONE;
    }
}

FS_FontFeatureSettings parseFeatures(ExitCode code, const std::string& list) {
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(list);
    text.findAndReplace(u"=", u" ");
    FS_FontFeatureSettings features;
    if (!features.setValue(KWCommonNS::KWValue(text)) || features.isEmpty())
        throw Failure(code, "'" + list +
                                "' is no list of features; one looks like "
                                "\"liga=0, smcp\", each feature once");
    return features;
}

unsigned int parseLanguage(ExitCode code, const std::string& tag) {
    const unsigned int language = toTAG(icu::UnicodeString::fromUTF8(tag));
    if (language == 0)
        throw Failure(code, "'" + tag + "' is no tag of a language; one looks like ROM");
    return language;
}

} // namespace typeset
