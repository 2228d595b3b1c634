#pragma once

#include "Document.h"
#include "FontFile.h"
#include "Layout.h"

namespace typeset {

Layout layOut(const Document& document, const FontFile& font, double size, bool justified);

} // namespace typeset
