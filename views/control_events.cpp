#include <tov310/control_events.h>

#include <tov310/messages.h>

namespace tov {

void CTovControlEvents::OnControlNotice(WPARAM wParam, LPARAM lParam) {
    CWnd const* const control = CWnd::FromHandlePermanent(HWND{static_cast<std::uint64_t>(lParam)});
    CString const kind = control != nullptr ? control->GetClassName() : CString();
    unsigned const code = TovNotificationOf(wParam);
    unsigned const id = TovCommandOf(wParam);
    if (kind == "ComboBox" && code == CBN_SELCHANGE) OnComboBoxSelChange(id);
    if (kind == "ComboBox" && code == CBN_EDITCHANGE) OnComboBoxEditChange(id);
    if (kind == "ListBox" && code == LBN_SELCHANGE) OnListBoxSelChange(id);
}

}  // namespace tov
