#include <tov310/smart_ptr.h>

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <thread>

namespace tov {
namespace {

struct Counted {
    static inline std::atomic<int> alive = 0;
    Counted() { ++alive; }
    virtual ~Counted() { --alive; }
    CTovPtrSmart<Counted> next;
};

using Pointer = CTovPtrSmart<Counted>;

class SmartPointer : public testing::Test {
 protected:
    void TearDown() override { EXPECT_EQ(Counted::alive, 0) << "objects are left over"; }
};

// Every way to assign, the pointer itself and the empty one included.
TEST_F(SmartPointer, SharesAsTheStandardOneDoes) {
    Pointer pointers[5];
    std::shared_ptr<int> mirror[5];
    std::mt19937 random(310);
    for (int step = 0; step < 20'000 && !HasFailure(); ++step) {
        auto const way = random() % 6;
        auto const i = random() % 5;
        auto const k = random() % 5;
        auto const assign = [way](auto& to, auto& from) {
            if (way == 0) to = from;
            if (way == 1) to = std::move(from);
            if (way == 2) to = std::remove_reference_t<decltype(to)>(from);
            if (way == 3) to = nullptr;
        };
        assign(pointers[i], pointers[k]);
        assign(mirror[i], mirror[k]);
        if (way == 4) pointers[i] = pointers[i].Get();
        if (way == 5) {
            pointers[i] = new Counted;
            mirror[i] = std::make_shared<int>();
        }
        std::set<int*> alive = {nullptr};
        for (int n = 0; n < 5; ++n) {
            alive.insert(mirror[n].get());
            EXPECT_EQ(pointers[n].Count(), mirror[n].use_count());
            EXPECT_EQ(bool(pointers[n]), bool(mirror[n]));
            EXPECT_EQ(pointers[n] == pointers[i], mirror[n] == mirror[i]);
        }
        EXPECT_EQ(Counted::alive + 1, static_cast<int>(alive.size()));
    }
}

// Walking a list by `node = node->next` releases the object that holds the pointer which is assigned.
TEST_F(SmartPointer, AnObjectThatHoldsTheAssignedPointerMayDieOfTheAssignment) {
    Pointer node;
    for (int i = 0; i < 100; ++i) {
        Pointer front(new Counted);
        front->next = std::exchange(node, front);
    }
    for (int left = 98; node; left -= 2) {
        node = node->next;
        node = std::move(node->next);
        EXPECT_EQ(Counted::alive, left);
    }
}

// The object's destructor finds the pointer that let go of it already set to the new object.
TEST_F(SmartPointer, ADestructorSeesTheFinishedAssignment) {
    static Pointer slot;
    static int looked;
    struct Looker : Counted {
        ~Looker() override { looked += slot.Get() != this; }
    };
    looked = 0;
    Pointer const other(new Counted);
    slot = new Looker;
    slot = other;
    slot = new Looker;
    slot = Pointer(new Looker);
    slot = nullptr;
    EXPECT_EQ(looked, 3);
}

TEST_F(SmartPointer, CopiesMayBeMadeInManyThreadsAndTheLastOneDeletes) {
    for (int i = 0; i < 2000 && !HasFailure(); ++i) {
        auto const work = [](Pointer mine) {
            for (int copy = 0; copy < 50; ++copy)
                mine = Pointer(Pointer(mine));
        };
        Pointer shared(new Counted);
        std::jthread other(work, shared);
        work(std::move(shared));
        other.join();
        EXPECT_EQ(Counted::alive, 0);
    }
}

}  // namespace
}  // namespace tov
