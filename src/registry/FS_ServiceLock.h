#pragma once

#include <KWCommon15/KWLock.h>

namespace KWFontService_NS {

/// Guards the registry and the start-up of the service. Start-up holds it while pool operations
/// take it again, so it is re-entrant. It lives longer than the service.
extern KWCommonNS::KWLock g_fontServiceLock;

} // namespace KWFontService_NS
