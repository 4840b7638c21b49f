// Undo and redo.
#pragma once

#include <tov310/export.h>
#include <tov310/object.h>

#include <memory>
#include <vector>

namespace tov {

// Two stacks of states. A state is any object that the user of the stacks can restore from; the stacks own
// what they hold and delete it when it can no longer be reached.
//
//     stacks.AddPrevious(StateOfNow());              // before every change
//     CObject* now = StateOfNow();
//     if (CObject* state = stacks.Undo(now)) { Restore(*state); delete state; } else { delete now; }
class TOV_CORE_API CTovUndoRedo : public CObject {
    TOV_DYNCREATE(CTovUndoRedo, CObject)
 public:
    CTovUndoRedo() = default;
    CTovUndoRedo(CTovUndoRedo const&) = delete;
    CTovUndoRedo& operator=(CTovUndoRedo const&) = delete;
    ~CTovUndoRedo() override;

    // Takes the state before a change and forgets everything that could be redone. Null is no state: nothing
    // happens.
    virtual void AddPrevious(CObject* state);

    // 1 when Undo has something to give, else 0.
    virtual int CanUndo() const;
    virtual int CanRedo() const;

    // Gives the state to restore, which is the caller's now, and takes the current one for redo; a null
    // current state is not kept. Null when there is nothing to undo: the current state then stays with the
    // caller.
    virtual CObject* Undo(CObject* current);
    virtual CObject* Redo(CObject* current);

    // Deletes everything on both stacks.
    virtual void Empty();

 private:
    using Stack = std::vector<std::unique_ptr<CObject>>;
    static CObject* Exchange(Stack& from, Stack& to, CObject* current);

    Stack m_undo;
    Stack m_redo;
};

}  // namespace tov
