#pragma once

#include <KWCommon15/KWMemStream.h>

namespace KWFontService_NS {

using KWCommonNS::KWMemStream;

/// Appends an sfnt as a WOFF 1.0 file (W3C, "WOFF File Format 1.0"): tables in the order of its
/// directory, each deflated where that makes it shorter, without metadata and private data. Tables
/// follow each other without padding.
/// @return false for an sfnt that is not all there, and when there is no memory
bool makeWOFF(KWMemStream& output, KWMemStream& sfnt);

} // namespace KWFontService_NS
