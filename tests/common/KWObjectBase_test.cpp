#include "KWCommon15/KWObjectBase.h"

#include "KWCommon15/KWRCObject.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>
#include <vector>

using namespace KWCommonNS;

namespace {

struct Plain : KWObjectBase {};

struct Counted : KWRCObject {
    Counted() = default;
    explicit Counted(int& destroyedCount) : destroyed(&destroyedCount) {}
    Counted(const Counted&) = default;
    ~Counted() override {
        if (destroyed != nullptr)
            ++*destroyed;
    }
    int* destroyed = nullptr;
};

} // namespace

TEST(ObjectBase, KnowsItsClass) {
    const Plain object;
    EXPECT_EQ(object.getClassId(), 0xDF537371U);
    EXPECT_TRUE(object.isKindOf(0xDF537371U));
    EXPECT_FALSE(object.isKindOf(0xD18D040AU));
    EXPECT_EQ(object.getClassName(), UnicodeString(u"KWObjectBase"));
}

TEST(RCObject, IsKindOfItselfAndItsBase) {
    const Counted object;
    EXPECT_EQ(object.getClassId(), 0xD18D040AU);
    EXPECT_TRUE(object.isKindOf(0xD18D040AU));
    EXPECT_TRUE(object.isKindOf(0xDF537371U));
    EXPECT_FALSE(object.isKindOf(0));
    EXPECT_EQ(object.getClassName(), UnicodeString(u"KWRCObject"));
}

TEST(RCObject, StartsWithoutReferencesAndEndsAtTheLastRelease) {
    int destroyed = 0;
    const Counted* const object = new Counted(destroyed);
    EXPECT_EQ(object->getRefCount(), 0);
    EXPECT_EQ(object->addRef(), 1);
    EXPECT_EQ(object->addRef(), 2);
    EXPECT_EQ(object->release(), 1);
    EXPECT_EQ(destroyed, 0);
    EXPECT_EQ(object->release(), 0);
    EXPECT_EQ(destroyed, 1);
}

TEST(RCObject, ReleaseOfAnObjectThatNobodyHeldDestroysIt) {
    int destroyed = 0;
    EXPECT_EQ((new Counted(destroyed))->release(), 0);
    EXPECT_EQ(destroyed, 1);
}

TEST(RCObject, ACopyHasNoReferences) {
    Counted object;
    object.addRef();
    Counted copy(object);
    EXPECT_EQ(copy.getRefCount(), 0);
    copy = object;
    EXPECT_EQ(copy.getRefCount(), 0);
    EXPECT_EQ(object.getRefCount(), 1);
}

TEST(RCObject, TheCountHoldsWhenManyThreadsChangeIt) {
    int destroyed = 0;
    const Counted* const object = new Counted(destroyed);
    object->addRef();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([object] {
            for (int i = 0; i < 20000; ++i) {
                object->addRef();
                object->release();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(object->getRefCount(), 1);
    EXPECT_EQ(destroyed, 0);
    object->release();
    EXPECT_EQ(destroyed, 1);
}
