#pragma once

#include "Document.h"
#include "FontSet.h"
#include "Layout.h"

namespace typeset {

/// @param fonts  not empty
Layout layOut(const Document& document, const FontSet& fonts, double size, bool justified);

} // namespace typeset
