// Rows that a list keeps itself, with what keys and clicks do to them. Their states are bits of the stored
// items.
#pragma once

#include <tov310/export.h>
#include <tov310/list_input.h>
#include <tov310/list_source.h>

namespace tov {

class TOV_CORE_API CTovStoredActions : public ITovListActions {
 public:
    CTovStoredActions() = default;
    virtual ~CTovStoredActions() = default;

    CTovStoredItems items;

    unsigned int GetFocusedItem() const override { return m_focused; }
    int FocusItem(unsigned int item, int ensureVisible) override;
    unsigned int GetSelectionAnchor() const override { return m_anchor; }
    void SetSelectionAnchor(unsigned int item) override { m_anchor = item; }
    int GetItemSelected(unsigned int item) const override { return Has(item, LVIS_SELECTED); }
    int GetItemDisabled(unsigned int item) const override { return Has(item, LVIS_CUT); }
    int GetItemChecked(unsigned int item) const override { return Has(item, tovStateChecked); }
    int ShowCheckboxes() const override { return 1; }
    int SelectItem(unsigned int item, int select, int notify, int evenIfDisabled) override;
    unsigned int SelectAllItems(int select, int notify, int evenIfDisabled) override;
    int SetItemSelection(unsigned int item, int notify) override;
    unsigned int SetItemSelection(unsigned int first, unsigned int last, int notify) override;
    int CheckItem(unsigned int item, int check, int notify) override;
    unsigned int CheckSelectedItems(int check, int notify) override;

 protected:
    // Rows from first to last have other states; a row is to be seen.
    virtual void Changed(unsigned int /*first*/, unsigned int /*last*/) {}
    virtual void Show(unsigned int /*item*/) {}

 private:
    int Has(unsigned int item, unsigned int bit) const { return items.GetItemState(item, bit) != 0; }
    bool Mark(unsigned int item, unsigned int bits, unsigned int mask);
    // Selects rows in a range; answers how many have changed.
    unsigned int SelectRange(unsigned int first, unsigned int end, int select, int evenIfDisabled);

    unsigned int m_focused = tovNoIndex;
    unsigned int m_anchor = tovNoIndex;
};

}  // namespace tov
