#pragma once

#include "LayoutModel.h"

#include "support/Bytes.h"
#include "support/Rng.h"

namespace KWTest::oracle {

/// A whole font file with the layout tables of a model. What has two formats (coverage) or further
/// ones (anchors) gets one of them by chance.
Bytes writeFont(const Font& font, Rng& rng);

} // namespace KWTest::oracle
