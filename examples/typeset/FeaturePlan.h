#pragma once

#include "Failure.h"

#include <KWFontService17/KWFontService.h>

#include <string>
#include <utility>

namespace typeset {

/// A tag of OpenType from its four letters.
constexpr unsigned int tagOf(const char (&letters)[5]) {
    unsigned int tag = 0;
    for (int i = 0; i < 4; ++i)
        tag = tag << 8 | static_cast<unsigned char>(letters[i]);
    return tag;
}

/// Which features a text is set with: what every text wants, and the wishes of its author.
class FeaturePlan {
public:
    FeaturePlan() = default;
    explicit FeaturePlan(KWFontService_NS::FS_FontFeatureSettings wishes)
        : wishes_(std::move(wishes)) {}

    /// 0: not wanted. Otherwise wanted, and where there are alternates the number of the one.
    int valueOf(unsigned int tag) const;

    /// The same plan with the wishes of a part of the text, which go first.
    FeaturePlan with(const KWFontService_NS::FS_FontFeatureSettings& wishes) const;

private:
    KWFontService_NS::FS_FontFeatureSettings wishes_;
};

/// The form of joined letters that a feature makes; `U_DT_NONE` when it is for every glyph.
UDecompositionType formOfFeature(unsigned int tag);

/// Reads a list as in CSS `font-feature-settings`, with or without quotes and with "=" allowed:
/// "liga=0, smcp". Throws `Failure` with the code.
KWFontService_NS::FS_FontFeatureSettings parseFeatures(ExitCode code, const std::string& list);

/// The tag of a language: "ROM" and the like. Throws `Failure` with the code.
unsigned int parseLanguage(ExitCode code, const std::string& tag);

} // namespace typeset
