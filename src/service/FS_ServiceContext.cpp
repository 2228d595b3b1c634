#include "fonts/FS_ServiceContext.h"

#include "registry/FS_FontService.h"

#include <new>

namespace KWFontService_NS::FS_ServiceContext {

namespace {

/// The service as it stands: one whose configuration fails at this very call is used without it.
FS_FontService* service() {
    try {
        return getFontService(nullptr, nullptr, nullptr);
    } catch (...) {
        return g_fontService.load(std::memory_order_acquire);
    }
}

} // namespace

bool usePreferredFamily() {
    const FS_FontService* const present = service();
    return present == nullptr || present->usePreferredFamily;
}

bool otfMetricsWindows() {
    const FS_FontService* const present = service();
    return present != nullptr && present->otfMetricsWindows;
}

bool isEudcCodePoint(int ch) {
    const FS_FontService* const present = service();
    return present != nullptr && present->isEudcCodePoint(ch);
}

FS_FontRef defaultEudcFont(bool vertical) {
    const FS_FontService* const present = service();
    if (present == nullptr)
        return {};
    return vertical ? present->defaultEudcFontVertical : present->defaultEudcFont;
}

void keepFont(FS_BaseFont& font) {
    const KWPtr<FS_BaseFont> kept(&font);
    if (FS_FontService* const present = service()) {
        try {
            KWCommonNS::KWMutex mutex(g_fontServiceLock);
            mutex.lock();
            present->keptFonts.push_back(kept);
            return;
        } catch (const std::bad_alloc&) {
        }
    }
    font.addRef(); // with no list to put it on the font stays alive all the same
}

FT_LibraryRec_* freeTypeLibrary() {
    FS_FontService* const present = service();
    if (present == nullptr)
        return nullptr;
    if (present->freeTypeLibrary == nullptr)
        present->freeTypeLibrary = makeFreeTypeLibrary();
    return present->freeTypeLibrary.get();
}

KWCommonNS::KWLock& freeTypeLock() {
    if (FS_FontService* const present = service())
        return present->freeTypeLock;
    static KWCommonNS::KWLock noServiceLock;
    return noServiceLock;
}

} // namespace KWFontService_NS::FS_ServiceContext
