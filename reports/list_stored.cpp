#include <tov310/list_stored.h>

#include <algorithm>

namespace tov {

bool CTovStoredActions::Mark(unsigned int item, unsigned int bits, unsigned int mask) {
    if (items.GetItemState(item, mask) == bits) return false;
    return items.SetItemState(item, bits, mask) != 0;
}

int CTovStoredActions::FocusItem(unsigned int item, int ensureVisible) {
    if (item >= items.GetItemCount()) return 0;
    unsigned int const before = m_focused;
    m_focused = item;
    if (before != item) {
        Changed(before, before);
        Changed(item, item);
    }
    if (ensureVisible != 0) Show(item);
    return 1;
}

unsigned int CTovStoredActions::SelectRange(unsigned int first, unsigned int end, int select,
                                            int evenIfDisabled) {
    unsigned int changed = 0;
    unsigned int from = end;
    unsigned int to = first;
    for (unsigned int item = first; item < end; ++item) {
        if (evenIfDisabled == 0 && GetItemDisabled(item) != 0) continue;
        if (!Mark(item, select != 0 ? LVIS_SELECTED : 0, LVIS_SELECTED)) continue;
        ++changed;
        from = std::min(from, item);
        to = item;
    }
    if (changed != 0) Changed(from, to);
    return changed;
}

int CTovStoredActions::SelectItem(unsigned int item, int select, int /*notify*/, int evenIfDisabled) {
    if (item >= items.GetItemCount()) return 0;
    return static_cast<int>(SelectRange(item, item + 1, select, evenIfDisabled));
}

unsigned int CTovStoredActions::SelectAllItems(int select, int /*notify*/, int evenIfDisabled) {
    return SelectRange(0, items.GetItemCount(), select, evenIfDisabled);
}

int CTovStoredActions::SetItemSelection(unsigned int item, int notify) {
    SelectAllItems(0, notify, 1);
    return SelectItem(item, 1, notify, 0);
}

unsigned int CTovStoredActions::SetItemSelection(unsigned int first, unsigned int last, int notify) {
    SelectAllItems(0, notify, 1);
    unsigned int const count = items.GetItemCount();
    if (std::min(first, last) >= count) return 0;
    return SelectRange(std::min(first, last), std::min(std::max(first, last), count - 1) + 1, 1, 0);
}

int CTovStoredActions::CheckItem(unsigned int item, int check, int /*notify*/) {
    if (ShowCheckboxes() == 0) return 0;
    if (!Mark(item, check != 0 ? tovStateChecked : tovStateUnchecked, tovStateChecked | tovStateUnchecked))
        return 0;
    Changed(item, item);
    return 1;
}

unsigned int CTovStoredActions::CheckSelectedItems(int check, int notify) {
    if (ShowCheckboxes() == 0) return tovNoIndex;
    unsigned int changed = 0;
    for (unsigned int item = 0; item < items.GetItemCount(); ++item)
        if (GetItemSelected(item) != 0) changed += static_cast<unsigned int>(CheckItem(item, check, notify));
    return changed;
}

}  // namespace tov
