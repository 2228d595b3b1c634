#include "KWCommon15/KWLock.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace KWCommonNS;

namespace {

bool isFreeForOthers(KWLock& lock) {
    bool taken = false;
    std::thread([&] {
        taken = lock.tryLock();
        if (taken)
            lock.unlock();
    }).join();
    return taken;
}

} // namespace

TEST(Lock, ReentersOnItsOwnThread) {
    KWLock lock;
    lock.lock();
    lock.lock();
    EXPECT_TRUE(lock.tryLock());
    lock.unlock();
    lock.unlock();
    EXPECT_FALSE(isFreeForOthers(lock));
    lock.unlock();
    EXPECT_TRUE(isFreeForOthers(lock));
}

TEST(Mutex, TakesTheLockWhenToldAndLetsItGoAtTheEnd) {
    KWLock lock;
    {
        KWMutex mutex(lock);
        EXPECT_FALSE(mutex.isLocked());
        EXPECT_TRUE(isFreeForOthers(lock)); // being made does not take it
        mutex.lock();
        EXPECT_TRUE(mutex.isLocked());
        mutex.lock(); // no second time
        EXPECT_FALSE(isFreeForOthers(lock));
    }
    EXPECT_TRUE(isFreeForOthers(lock));
}

TEST(Mutex, ThatNeverTookTheLockLeavesItAlone) {
    KWLock lock;
    lock.lock();
    { const KWMutex mutex(lock); }
    EXPECT_FALSE(isFreeForOthers(lock));
    lock.unlock();
}

TEST(Mutex, LetsGoEarlyAndNestsAndUnwinds) {
    KWLock lock;
    KWMutex outer(lock);
    outer.lock();
    try {
        KWMutex inner(lock);
        inner.lock();
        throw 1;
    } catch (int) {
    }
    EXPECT_FALSE(isFreeForOthers(lock));
    outer.unlock();
    outer.unlock(); // nothing left to give back
    EXPECT_TRUE(isFreeForOthers(lock));
    outer.lock();
    EXPECT_TRUE(outer.isLocked());
}

TEST(Lock, KeepsThreadsApart) {
    KWLock lock;
    int count = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 5000; ++i) {
                KWMutex mutex(lock);
                mutex.lock();
                ++count;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 20000);
}
