#pragma once

#include <KWFontService17/FS_Export.h>

#include <KWCommon15/KWValue.h>

#include <map>

namespace KWFontService_NS {

/// The wishes of a style sheet: which OpenType feature has which value.
///
/// A plain value that the host keeps and asks while it shapes; the library itself never looks at
/// it. The first setting of a tag stays, and a later one is refused. Tags are OpenType tags as
/// `toTAG` makes them, the first letter in the high byte.
class KWFONTSERVICE_API FS_FontFeatureSettings {
public:
    /// Sets a feature.
    /// @return false, and nothing changes, for tag 0 and for a tag that is set already
    bool setValue(unsigned int tag, int value);
    /// The same for the tag of a name; a name that `toTAG` refuses is refused.
    bool setValue(const UnicodeString& name, int value);
    /// Sets what the value of a CSS `font-feature-settings` property asks for: a list like
    /// `"liga" 0, "smcp"`, where `off` is 0, and `on` and nothing are 1. Names may do without
    /// quotes, and a number may be of any kind: its whole part counts. `normal` sets nothing.
    /// Source: CSS Fonts Module Level 4, font-feature-settings.
    /// @return false when a part of the list cannot be taken; the reading ends there, and what was
    ///         read up to there is set
    bool setValue(const KWCommonNS::KWValue& value);

    /// The value of a feature; -1 when it is not set, which is not the same as off.
    int getValue(unsigned int tag) const;
    /// All that is set, by ascending tag.
    const std::map<unsigned int, int>& getFeatures() const { return features_; }
    bool isEmpty() const { return features_.empty(); }

private:
    std::map<unsigned int, int> features_;
};

} // namespace KWFontService_NS
