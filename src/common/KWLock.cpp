#include "KWCommon15/KWLock.h"

namespace KWCommonNS {

KWLock::KWLock() = default;
KWLock::~KWLock() = default;

void KWLock::lock() {
    mutex_.lock();
}

bool KWLock::tryLock() {
    return mutex_.try_lock();
}

void KWLock::unlock() {
    mutex_.unlock();
}

KWMutex::~KWMutex() {
    unlock();
}

void KWMutex::lock() {
    if (taken_)
        return;
    lock_.lock();
    taken_ = true;
}

void KWMutex::unlock() {
    if (!taken_)
        return;
    taken_ = false;
    lock_.unlock();
}

} // namespace KWCommonNS
