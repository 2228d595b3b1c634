#include "platform/Platform.h"

#include <atomic>

namespace KWPlatform {

namespace {

std::atomic<System*> replacedSystem{nullptr};

} // namespace

System& system() {
    System* const replaced = replacedSystem.load(std::memory_order_acquire);
    return replaced != nullptr ? *replaced : nativeSystem();
}

char16_t System::preferredSeparator() {
    return nativeSystem().preferredSeparator();
}

char16_t preferredSeparator() {
    return system().preferredSeparator();
}

SystemOverride::SystemOverride(System& replacement)
    : previous_(replacedSystem.exchange(&replacement)) {}

SystemOverride::~SystemOverride() {
    replacedSystem.store(previous_);
}

} // namespace KWPlatform
