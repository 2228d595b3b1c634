#pragma once

#include "FeaturePlan.h"
#include "TextRuns.h"

#include <KWFontService17/KWFontService.h>

#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace typeset {

/// Turns runs of text into positioned glyphs, with the OpenType layout of their fonts.
class Shaper {
public:
    explicit Shaper(const FontSet& fonts) : fonts_(fonts) {}

    struct Request {
        const icu::UnicodeString& text;
        const TextRun& run;
        const std::vector<UDecompositionType>& forms; // `joiningForms` of the text
        const FeaturePlan& plan;
        unsigned int language = 0; // OpenType tag; 0 for the default of the script
    };
    /// In the order of the text, in font units. A correspond length counts UTF-16 units; together
    /// they come to the length of the run, but for a run without any glyph, which is empty. What
    /// the font lacks is glyph 0.
    std::vector<KWFontService_NS::GlyphIDPosition> shape(const Request& request);

private:
    struct Free {
        void operator()(KWFontService_NS::FS_GSUBGPOSInfo* info) const {
            KWFontService_NS::FS_FontInfo::deleteGSUBGPOSInfo(info);
        }
    };
    using Handle = std::unique_ptr<KWFontService_NS::FS_GSUBGPOSInfo, Free>;
    /// Null where the font has nothing for the script.
    struct Tables {
        Handle gsub;
        Handle gpos;
    };
    const Tables& tablesOf(const TextRun& run, unsigned int language);

    const FontSet& fonts_;
    std::map<std::tuple<std::size_t, UScriptCode, unsigned int>, Tables> tables_;
};

} // namespace typeset
