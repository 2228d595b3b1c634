#include "registry/FS_FontService.h"

#include "service/FS_Startup.h"

#include <new>

namespace KWFontService_NS {

// The first object of this file with a destructor, and so the last one to go.
KWCommonNS::KWLock g_fontServiceLock;

std::atomic<FS_FontService*> g_fontService = nullptr;

namespace {

/// The same object once its start-up is over, for the way without a lock.
std::atomic<FS_FontService*> g_startedService = nullptr;
std::atomic<bool> g_unloaded = false;

/// Tables that other rooms make on first need are function-local statics. They are made later than
/// this object and therefore gone before the service goes.
struct UnloadGuard {
    ~UnloadGuard() { unloadFontService(); }
};
const UnloadGuard g_unloadGuard;

FS_FontService* newFontService() {
    try {
        return new FS_FontService;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

FS_FontService* openFontService(const FS_OpenArguments& arguments) {
    FS_FontService* const service = newFontService();
    if (service == nullptr)
        return nullptr;
    g_fontService.store(service, std::memory_order_release);
    // However start-up ends: a service whose configuration failed stays, without fonts.
    const struct Publisher {
        FS_FontService* started;
        ~Publisher() { g_startedService.store(started, std::memory_order_release); }
    } publisher{service};
    startUp(*service, arguments);
    return service;
}

} // namespace

FS_FontService* getFontService(const char* configPath, const char* homePath,
                               FS_FontService* scratch) {
    const FS_OpenArguments arguments{configPath, homePath};
    if (scratch != nullptr)
        return readConfiguration(*scratch, arguments) ? scratch : nullptr;

    if (FS_FontService* started = g_startedService.load(std::memory_order_acquire))
        return started;
    if (g_unloaded.load(std::memory_order_acquire))
        return nullptr;
    KWCommonNS::KWMutex mutex(g_fontServiceLock);
    mutex.lock();
    if (FS_FontService* present = g_fontService.load(std::memory_order_relaxed))
        return present; // another thread was first, or start-up itself asks
    return openFontService(arguments);
}

void unloadFontService() {
    g_unloaded.store(true, std::memory_order_release);
    // Fonts still reach the service while they are being destroyed.
    delete g_fontService.load(std::memory_order_acquire);
    g_fontService.store(nullptr, std::memory_order_release);
    g_startedService.store(nullptr, std::memory_order_release);
}

} // namespace KWFontService_NS
