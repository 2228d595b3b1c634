#pragma once

#include <KWCommon15/KWUri.h>

#include <istream>
#include <memory>

namespace KWFontService_NS {

/// Opens a file for reading once from its start to its end. Null when it does not open; a fetcher
/// of the host that throws does not open. Reading it throws nothing, and what fails leaves it bad.
/// @param info  receives what is known about the file; may be null
std::unique_ptr<std::istream> openTextStream(const KWCommonNS::KWUri& uri,
                                             KWCommonNS::KWUri::ContentInfo* info = nullptr);

/// Opens a font file for reading by absolute offsets: a local file as it is, anything else through
/// a window, since the stream of a host may not seek. Otherwise as `openTextStream`, but that what
/// fails reads as the end of the file.
std::unique_ptr<std::istream> openFontStream(const KWCommonNS::KWUri& uri,
                                             KWCommonNS::KWUri::ContentInfo* info = nullptr);

} // namespace KWFontService_NS
