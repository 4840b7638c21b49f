#include <tov310/undo_redo.h>

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace tov {
namespace {

int livingStates = 0;

struct State : CObject {
    explicit State(int value) : number(value) { ++livingStates; }
    ~State() override { --livingStates; }
    int number;
};

// A text with a history against two vectors of numbers.
TEST(UndoRedo, RandomEditsAgreeWithAListAndLoseNoState) {
    std::mt19937 random(310);
    {
        CTovUndoRedo stacks;
        std::vector<int> undo, redo;
        int current = 0;
        for (int step = 1; step <= 5000; ++step) {
            auto const operation = random() % 40;
            if (operation == 0) {
                stacks.Empty();
                undo.clear();
                redo.clear();
            } else if (operation < 14) {
                stacks.AddPrevious(new State(current));
                undo.push_back(current);
                redo.clear();
                current = step;
            } else {
                bool const back = operation < 28;
                auto& from = back ? undo : redo;
                auto now = std::make_unique<State>(current);
                std::unique_ptr<CObject> const got(back ? stacks.Undo(now.get()) : stacks.Redo(now.get()));
                ASSERT_EQ(got != nullptr, !from.empty()) << "else the current state stays with the caller";
                if (got != nullptr) {
                    now.release();
                    ASSERT_EQ(static_cast<State&>(*got).number, from.back()) << "step " << step;
                    (back ? redo : undo).push_back(current);
                    current = from.back();
                    from.pop_back();
                }
            }
            stacks.AddPrevious(nullptr);
            ASSERT_EQ(stacks.CanUndo(), !undo.empty());
            ASSERT_EQ(stacks.CanRedo(), !redo.empty());
            ASSERT_EQ(livingStates, static_cast<int>(undo.size() + redo.size()));
        }
        stacks.AddPrevious(new State(current));
    }
    EXPECT_EQ(livingStates, 0);
}

TEST(UndoRedo, AStateThatDiesMayAskTheStacks) {
    static CTovUndoRedo stacks;
    static std::vector<int> answers;
    struct Curious : CObject {
        ~Curious() override { answers.push_back(2 * stacks.CanUndo() + stacks.CanRedo()); }
    };
    stacks.AddPrevious(new Curious);
    delete stacks.Undo(new Curious);
    stacks.AddPrevious(new Curious);
    stacks.Empty();
    EXPECT_EQ(answers, (std::vector<int>{1, 2, 0})) << "undone; forgotten by a change; emptied";
}

}  // namespace
}  // namespace tov
