#pragma once

#include <KWFontService17/FS_Types.h>

#include <KWCommon15/KWLock.h>

struct FT_LibraryRec_;

namespace KWFontService_NS {

/// The little that the rooms below the service ask of it. Each call opens the service on first
/// need; none of them throws.
namespace FS_ServiceContext {

/// Whether the preferred (typographic) family counts as a family name.
bool usePreferredFamily();
/// Whether text metrics are those of Windows, without the typographic ones.
bool otfMetricsWindows();
bool isEudcCodePoint(int ch);
/// The service-wide font of end-user-defined characters; null when there is none.
FS_FontRef defaultEudcFont(bool vertical);
/// Keeps a reference to a font for the life of the service.
void keepFont(FS_BaseFont& font);

/// The one FreeType library, made on first need; null when FreeType does not start.
/// Call with `freeTypeLock` held.
FT_LibraryRec_* freeTypeLibrary();
KWCommonNS::KWLock& freeTypeLock();

} // namespace FS_ServiceContext

} // namespace KWFontService_NS
