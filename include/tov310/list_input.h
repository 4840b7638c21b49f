// What keys and clicks in a list do to its focus, its selection and its check marks. Without a toolkit: the
// control tells what the user does, a CTovListLayout where the rows are, and ITovListActions does it.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/list_layout.h>
#include <tov310/list_source.h>

#include <vector>

namespace tov {

// What a view does with its rows, by their screen indexes. Answers are 1 for done and 0 for refused or
// nothing to do, or a number of rows; `notify` tells the view's events of it.
class TOV_CORE_API ITovListActions {
 public:
    virtual unsigned int GetFocusedItem() const = 0;  // tovNoIndex: none
    virtual int FocusItem(unsigned int item, int ensureVisible) = 0;
    virtual unsigned int GetSelectionAnchor() const = 0;  // where a range begins; tovNoIndex: nowhere yet
    virtual void SetSelectionAnchor(unsigned int item) = 0;

    virtual int GetItemSelected(unsigned int item) const = 0;
    virtual int GetItemDisabled(unsigned int item) const = 0;
    virtual int GetItemChecked(unsigned int item) const = 0;
    virtual int ShowCheckboxes() const = 0;

    virtual int SelectItem(unsigned int item, int select, int notify, int evenIfDisabled) = 0;
    virtual unsigned int SelectAllItems(int select, int notify, int evenIfDisabled) = 0;
    virtual int SetItemSelection(unsigned int item, int notify) = 0;
    virtual unsigned int SetItemSelection(unsigned int first, unsigned int last, int notify) = 0;
    virtual int CheckItem(unsigned int item, int check, int notify) = 0;
    virtual unsigned int CheckSelectedItems(int check, int notify) = 0;

 protected:
    ITovListActions() = default;
    ITovListActions(ITovListActions const&) = default;
    ITovListActions& operator=(ITovListActions const&) = default;
    virtual ~ITovListActions();
};

struct TOV_LISTKEYS {
    bool shift = false;
    bool ctrl = false;
};

// What a press of the left button has begun.
enum eTovListPress {
    eListPressDone,  // nothing more
    eListPressBand,  // a rubber band, see CTovListBand
    eListPressRow,   // on a row; moving the mouse drags what is selected
};

class TOV_CORE_API CTovListInput {
 public:
    // Both are borrowed.
    CTovListInput(CTovListLayout const& layout, ITovListActions& actions)
        : m_layout(layout), m_actions(&actions) {}
    void SetActions(ITovListActions& actions) { m_actions = &actions; }

    int multilineSelection = 1;
    int fullRowSelect = 1;  // 0: in a report only the first column counts

    // Keys (VK_). Answer 1 where the key was one of theirs.
    int HandleNavigation(int key, TOV_LISTKEYS keys);
    // Blank: turns check marks round, of all selected rows with a selected one; without check boxes, or with
    // Ctrl, it selects the row of the focus, which Ctrl turns round.
    int HandleSpace(TOV_LISTKEYS keys);

    // How far a key scrolls a list whose keys leave the selection alone, in pixels; {0, 0} for all others.
    // The height is that of the whole control.
    static CSize GetScrollStep(int key, int rowHeight, int clientHeight);

    eTovListPress OnLButtonDown(TOV_LISTHIT hit, TOV_LISTKEYS keys);
    // A band that was not dragged, or a click on the background.
    void OnBackgroundClick();

 private:
    unsigned int Target(unsigned int from, int key) const;
    void TurnCheck(unsigned int item);

    CTovListLayout const& m_layout;
    ITovListActions* m_actions;
};

// The rubber band: what lies under it is selected while it is dragged, and what it leaves again deselected.
// Without Shift and Ctrl it first deselects all.
class TOV_CORE_API CTovListBand {
 public:
    // Both are borrowed.
    CTovListBand(CTovListLayout const& layout, ITovListActions& actions)
        : m_layout(layout), m_actions(actions) {}

    void Begin(CPoint const& point, TOV_LISTKEYS keys);
    // The mouse is there, or the list was scrolled below it. It counts from the first point that is further
    // than the threshold from the beginning.
    void Track(CPoint const& point, int threshold = 0);
    void End();

    bool IsActive() const { return m_isActive; }
    bool IsDragged() const { return m_isDragged; }
    CRect GetRect() const;  // of what is seen of it; empty where it is not dragged

    // What a mouse outside of the area scrolls by, where the list still can: -1, 0 or 1 lines.
    CSize GetScrollLines(CPoint const& point) const;

 private:
    CTovRect<std::int64_t> Covered() const;

    CTovListLayout const& m_layout;
    ITovListActions& m_actions;
    TOV_LISTKEYS m_keys;
    CTovPoint<std::int64_t> m_anchor;  // in the content
    CTovPoint<std::int64_t> m_end;
    std::vector<unsigned int> m_marked;
    bool m_isActive = false;
    bool m_isDragged = false;
};

}  // namespace tov
