#pragma once

#include "FeaturePlan.h"
#include "FontSet.h"

#include <string>
#include <vector>

namespace typeset {

struct Options {
    FontChoice fonts;
    std::string textPath;    // "-": standard input
    std::string pdfPath;     // empty: no PDF, which takes a PostScript file
    std::string psPath;      // empty: none
    std::string pngPath;     // empty: no picture
    std::string webFontPath; // empty: none
    double size = 10.5;      // of the body text, in points
    unsigned dpi = 150;      // of the picture
    bool justified = true;
    bool wholeFont = false;
    bool merge = false;     // subsets of two parts of the document
    bool wholePage = false; // in the picture
    bool columns = false;
    unsigned int language = 0; // OpenType tag
    KWFontService_NS::FS_FontFeatureSettings features;
    bool help = false;
};

/// Throws `Failure` (usage) when the arguments make no sense.
Options parseOptions(const std::vector<std::string>& arguments);

extern const char* const kUsage;

} // namespace typeset
