#include "KWCommon15/KWPtr.h"

#include "KWCommon15/KWRCObject.h"

#include <gtest/gtest.h>

#include <utility>

using namespace KWCommonNS;

namespace {

struct Counted : KWRCObject {
    explicit Counted(int& destroyedCount) : destroyed(destroyedCount) {}
    ~Counted() override { ++destroyed; }
    int& destroyed;
    int value = 7;
};

} // namespace

TEST(Ptr, KeepsItsObjectForAsLongAsItPointsThere) {
    int destroyed = 0;
    {
        KWPtr<Counted> first(new Counted(destroyed));
        EXPECT_EQ(first->getRefCount(), 1);
        const KWPtr<Counted> second = first;
        EXPECT_EQ(first->getRefCount(), 2);
        EXPECT_TRUE(first == second);
        first.reset();
        EXPECT_FALSE(first);
        EXPECT_EQ(second->getRefCount(), 1);
        EXPECT_EQ((*second).value, 7);
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(Ptr, AMoveTakesTheReferenceAlong) {
    int destroyed = 0;
    KWPtr<Counted> from(new Counted(destroyed));
    KWPtr<Counted> to(std::move(from));
    EXPECT_EQ(to->getRefCount(), 1);
    EXPECT_TRUE(from == nullptr);
    from = std::move(to);
    EXPECT_EQ(from->getRefCount(), 1);
    EXPECT_TRUE(to == nullptr);
    from = nullptr;
    EXPECT_EQ(destroyed, 1);
}

TEST(Ptr, AssignmentToItselfKeepsTheObject) {
    int destroyed = 0;
    KWPtr<Counted> pointer(new Counted(destroyed));
    KWPtr<Counted>& same = pointer;
    pointer = same;
    EXPECT_EQ(pointer->getRefCount(), 1);
    pointer = std::move(same);
    ASSERT_TRUE(pointer);
    EXPECT_EQ(pointer->getRefCount(), 1);
    pointer = pointer.get();
    EXPECT_EQ(destroyed, 0);
    pointer = new Counted(destroyed);
    EXPECT_EQ(destroyed, 1);
}

TEST(Ptr, SwapExchangesTheObjectsWithTheirReferences) {
    int destroyed = 0;
    KWPtr<Counted> full(new Counted(destroyed));
    KWPtr<Counted> empty;
    full.swap(empty);
    EXPECT_FALSE(full);
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->getRefCount(), 1);
    EXPECT_EQ(destroyed, 0);
}

TEST(Ptr, ConvertsToAPointerToTheBase) {
    int destroyed = 0;
    const KWPtr<Counted> derived(new Counted(destroyed));
    const KWPtr<KWRCObject> base = derived;
    EXPECT_EQ(base->getRefCount(), 2);
    EXPECT_TRUE(base == derived);
    EXPECT_TRUE(KWPtr<KWRCObject>() == nullptr);
    EXPECT_EQ(KWPtr<Counted>(nullptr).get(), nullptr);
}
