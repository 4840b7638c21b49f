#include <tov310/undo_redo.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace tov {
namespace {

struct State : CObject {
    explicit State(int value, int& living) : number(value), count(living) { ++count; }
    ~State() override { --count; }
    int number;
    int& count;
};

int NumberOf(std::unique_ptr<CObject> const& state) {
    return state != nullptr ? static_cast<State&>(*state).number : -1;
}

TEST(UndoRedo, AnEmptyStackLeavesTheCurrentStateWithTheCaller) {
    int living = 0;
    CTovUndoRedo stacks;
    State current(1, living);
    EXPECT_EQ(stacks.Undo(&current), nullptr);
    EXPECT_EQ(stacks.Redo(&current), nullptr);
    EXPECT_FALSE(stacks.CanUndo());
    EXPECT_FALSE(stacks.CanRedo());
    stacks.AddPrevious(nullptr);
    EXPECT_FALSE(stacks.CanUndo());
}

// A text with a history against two vectors of numbers.
TEST(UndoRedo, RandomEditsAgreeWithAListAndLoseNoState) {
    std::mt19937 random(310);
    int living = 0;
    {
        CTovUndoRedo stacks;
        std::vector<int> undo;
        std::vector<int> redo;
        int current = 0;
        int next = 0;
        for (int step = 0; step < 5000; ++step) {
            auto const operation = random() % 40;
            if (operation == 0) {
                stacks.Empty();
                undo.clear();
                redo.clear();
            } else if (operation < 14) {
                stacks.AddPrevious(new State(current, living));
                undo.push_back(current);
                redo.clear();
                current = ++next;
            } else {
                bool const back = operation < 28;
                auto& from = back ? undo : redo;
                auto& to = back ? redo : undo;
                auto now = std::make_unique<State>(current, living);
                std::unique_ptr<CObject> const state(back ? stacks.Undo(now.get()) : stacks.Redo(now.get()));
                ASSERT_EQ(NumberOf(state), from.empty() ? -1 : from.back()) << "step " << step;
                if (state != nullptr) {
                    now.release();
                    to.push_back(current);
                    current = from.back();
                    from.pop_back();
                }
            }
            ASSERT_EQ(stacks.CanUndo(), !undo.empty());
            ASSERT_EQ(stacks.CanRedo(), !redo.empty());
            ASSERT_EQ(living, static_cast<int>(undo.size() + redo.size()));
        }
        stacks.AddPrevious(new State(current, living));
        delete stacks.Undo(new State(current, living));
        stacks.AddPrevious(new State(current, living));
        EXPECT_GT(living, 0);
    }
    EXPECT_EQ(living, 0);
}

TEST(UndoRedo, AStateThatDiesMayAskTheStacks) {
    struct Curious : CObject {
        Curious(CTovUndoRedo& stacks, std::vector<int>& told) : owner(stacks), answers(told) {}
        ~Curious() override { answers.push_back(2 * owner.CanUndo() + owner.CanRedo()); }
        CTovUndoRedo& owner;
        std::vector<int>& answers;
    };
    CTovUndoRedo stacks;
    std::vector<int> answers;
    auto const state = [&] { return new Curious(stacks, answers); };
    stacks.AddPrevious(state());
    delete stacks.Undo(state());
    stacks.AddPrevious(state());
    stacks.Empty();
    EXPECT_EQ(answers, (std::vector<int>{1, 2, 0})) << "undone; forgotten by a change; emptied";
}

}  // namespace
}  // namespace tov
