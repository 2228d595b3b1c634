#pragma once

#include "KWCommon15/KWExport.h"

#include <mutex>

namespace KWCommonNS {

/// A re-entrant lock: the thread that holds it may take it again, and lets it go as often as it
/// took it. Usually taken through KWMutex.
class KWCOMMON_API KWLock {
public:
    KWLock();
    ~KWLock();
    KWLock(const KWLock&) = delete;
    KWLock& operator=(const KWLock&) = delete;

    /// Waits until the lock is free or the thread's own, and takes it.
    void lock();
    /// Takes the lock if that needs no waiting.
    bool tryLock();
    /// Gives back one lock() or successful tryLock() of the calling thread.
    void unlock();

private:
    std::recursive_mutex mutex_;
};

/// Scoped holder of a KWLock: made without taking the lock, lets it go at the end of its life if
/// it took it. One holder belongs to one thread.
class KWCOMMON_API KWMutex {
public:
    /// Binds to `lock`, which outlives the holder. The lock is not taken yet.
    explicit KWMutex(KWLock& lock) noexcept : lock_(lock) {}
    ~KWMutex();
    KWMutex(const KWMutex&) = delete;
    KWMutex& operator=(const KWMutex&) = delete;

    /// Takes the lock; nothing happens when this holder has it already.
    void lock();
    /// Lets the lock go before the end of the holder's life; nothing happens when it is not taken.
    void unlock();
    /// True while this holder has the lock.
    bool isLocked() const noexcept { return taken_; }

private:
    KWLock& lock_;
    bool taken_ = false;
};

} // namespace KWCommonNS
