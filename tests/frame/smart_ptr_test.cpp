#include <tov310/smart_ptr.h>

#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace tov {
namespace {

struct Counted {
    static inline std::atomic<int> alive = 0;
    Counted() { ++alive; }
    Counted(Counted const&) = delete;
    Counted& operator=(Counted const&) = delete;
    virtual ~Counted() { --alive; }
    CTovPtrSmart<Counted> next;
};

struct Derived : Counted {
    static inline int destroyed = 0;
    ~Derived() override { ++destroyed; }
};

using Pointer = CTovPtrSmart<Counted>;

class SmartPointer : public testing::Test {
 protected:
    void TearDown() override { EXPECT_EQ(Counted::alive, 0) << "objects are left over"; }
};

TEST_F(SmartPointer, CountsItsSharers) {
    Pointer a(new Derived);
    EXPECT_EQ(a.Count(), 1);
    {
        Pointer b(a);
        Pointer c;
        c = b;
        EXPECT_EQ(a.Count(), 3);
        EXPECT_TRUE(a == c);
        Pointer d(std::move(b));
        EXPECT_EQ(a.Count(), 3) << "moving shares nothing";
        EXPECT_EQ(b.Count(), 0);
        EXPECT_FALSE(b);
        c = std::move(d);
        EXPECT_EQ(a.Count(), 2) << "moving onto a sharer gives one up";
        EXPECT_EQ(c.Get(), a.Get());
    }
    EXPECT_EQ(a.Count(), 1);
    int const before = Derived::destroyed;
    a = Pointer();
    EXPECT_EQ(Derived::destroyed, before + 1) << "through the virtual destructor";
}

TEST_F(SmartPointer, NullIsEmptyAndReleasesNothing) {
    for (int i = 0; i < 2; ++i) {
        Pointer a(nullptr);
        EXPECT_EQ(a.Count(), 0);
        EXPECT_EQ(a.Get(), nullptr);
        EXPECT_TRUE(a == Pointer());
        Pointer const b(a);
        a = b;
        a = nullptr;
        EXPECT_EQ(b.Count(), 0);
    }
}

TEST_F(SmartPointer, AssigningWhatItHoldsKeepsTheCount) {
    Pointer a(new Counted);
    Pointer b(a);
    Pointer& same = a;
    a = same;
    EXPECT_EQ(a.Count(), 2);
    a = b;
    EXPECT_EQ(a.Count(), 2);
    a = a.Get();
    EXPECT_EQ(a.Count(), 2);
    a = std::move(same);
    EXPECT_EQ(a.Count(), 2);
    a = new Counted;
    EXPECT_EQ(a.Count(), 1);
    EXPECT_EQ(b.Count(), 1);
    EXPECT_EQ(Counted::alive, 2);
}

// Walking a list by `node = node->next` releases the object that holds the pointer which is assigned.
TEST_F(SmartPointer, AnObjectThatHoldsTheAssignedPointerMayDieOfTheAssignment) {
    Pointer node;
    for (int i = 0; i < 100; ++i) {
        Pointer front(new Counted);
        front->next = node;
        node = front;
    }
    for (int left = 99; node; --left) {
        node = node->next;
        EXPECT_EQ(Counted::alive, left);
    }
    node = Pointer(new Counted);
    node->next = Pointer(new Counted);
    node = std::move(node->next);
    EXPECT_EQ(Counted::alive, 1);
}

// The object's destructor finds the pointer that let go of it already set to the new object.
TEST_F(SmartPointer, ADestructorSeesTheFinishedAssignment) {
    static Pointer slot;
    static int looked = 0;
    struct Looker : Counted {
        ~Looker() override {
            ++looked;
            EXPECT_NE(slot.Get(), this);
        }
    };
    looked = 0;
    Pointer const other(new Counted);
    slot = Pointer(new Looker);
    slot = other;
    slot = Pointer(new Looker);
    slot = Pointer(new Counted);
    slot = new Looker;
    slot = nullptr;
    EXPECT_EQ(looked, 3);
}

TEST_F(SmartPointer, CopiesOfOnePointerLiveInManyThreads) {
    Pointer const shared(new Counted);
    auto const work = [&shared] {
        for (int i = 0; i < 50'000; ++i) {
            Pointer const copy(shared);
            Pointer other;
            other = copy;
        }
    };
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
    EXPECT_EQ(shared.Count(), 1);
}

TEST_F(SmartPointer, TheLastOfTwoThreadsDeletesTheObject) {
    for (int i = 0; i < 2000; ++i) {
        Pointer a(new Counted);
        std::thread other([b = a]() mutable { b = Pointer(); });
        a = Pointer();
        other.join();
        ASSERT_EQ(Counted::alive, 0);
    }
}

}  // namespace
}  // namespace tov
