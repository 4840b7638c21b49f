#include <tov310/undo_redo.h>

#include <utility>

namespace tov {

CTovUndoRedo::~CTovUndoRedo() = default;

void CTovUndoRedo::AddPrevious(CObject* state) {
    if (state == nullptr) return;
    m_undo.emplace_back(std::unique_ptr<CObject>(state));
    // Out of the way first: a state that dies may ask these stacks.
    Stack const forgotten = std::exchange(m_redo, {});
}

int CTovUndoRedo::CanUndo() const {
    return !m_undo.empty();
}

int CTovUndoRedo::CanRedo() const {
    return !m_redo.empty();
}

CObject* CTovUndoRedo::Undo(CObject* current) {
    return Exchange(m_undo, m_redo, current);
}

CObject* CTovUndoRedo::Redo(CObject* current) {
    return Exchange(m_redo, m_undo, current);
}

void CTovUndoRedo::Empty() {
    Stack const undone = std::exchange(m_undo, {});
    Stack const redone = std::exchange(m_redo, {});
}

CObject* CTovUndoRedo::Exchange(Stack& from, Stack& to, CObject* current) {
    if (from.empty()) return nullptr;
    if (current != nullptr) {
        to.emplace_back();  // may fail; until here nothing has changed hands
        to.back().reset(current);
    }
    CObject* const state = from.back().release();
    from.pop_back();
    return state;
}

}  // namespace tov
