#pragma once

#include "LayoutModel.h"

#include "support/Bytes.h"

namespace KWTest::oracle {

/// Reads the layout tables of an sfnt file; a table that is absent stays empty. It believes every
/// offset: a table that lies throws std::out_of_range.
/// @param offset  of the font in its file
Font parseFont(const Bytes& file, std::size_t offset = 0);

} // namespace KWTest::oracle
