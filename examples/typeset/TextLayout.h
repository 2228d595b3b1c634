#pragma once

#include "Document.h"
#include "FeaturePlan.h"
#include "FontSet.h"
#include "Layout.h"

namespace typeset {

/// What holds for the whole document.
struct LayoutStyle {
    double size = 10.5; // of the body text
    bool justified = true;
    bool columns = false;
    unsigned int language = 0; // OpenType tag
    FeaturePlan plan{};
};

Layout layOut(const Document& document, const FontSet& fonts, const LayoutStyle& style);

} // namespace typeset
