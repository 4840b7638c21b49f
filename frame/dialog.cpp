#include <tov310/dialog.h>

#include <tov310/application.h>
#include <tov310/messages.h>

#include <set>

namespace tov {
namespace {

constexpr unsigned firstCommandOfAll = 0x8000;

}  // namespace

int CDialog::InitDialog() {
    return static_cast<int>(TovSendMessage(GetSafeHwnd(), WM_INITDIALOG));
}

LRESULT CDialog::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    return message == WM_INITDIALOG ? OnInitDialog() : CWnd::WindowProc(message, wParam, lParam);
}

int CDialog::OnCommand(WPARAM wParam, LPARAM lParam) {
    if (TovNotificationOf(wParam) == BN_CLICKED) {
        unsigned const id = TovCommandOf(wParam);
        if (id == IDOK || id == IDCANCEL) {
            id == IDOK ? OnOK() : OnCancel();
            return 1;
        }
    }
    return CWnd::OnCommand(wParam, lParam);
}

int CDialog::OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info) {
    if (CWnd::OnCmdMsg(id, code, extra, info) != 0) return 1;
    if (id < firstCommandOfAll) return 0;
    CWnd* const owner = GetOwner();
    if (owner != nullptr && owner->OnCmdMsg(id, code, extra, info) != 0) return 1;
    CWinApp* const app = TovGetApp();
    return app != nullptr ? app->OnCmdMsg(id, code, extra, info) : 0;
}

unsigned TovFindFreeDlgItemId(CWnd const& window) {
    std::set<int> taken;
    for (HWND const child : window.GetChildren()) {
        if (CWnd const* const control = CWnd::FromHandlePermanent(child))
            taken.insert(control->GetDlgCtrlID());
    }
    constexpr int first = 0x3000;  // above what people write, below what the toolkit's controls are given
    int id = first;
    while (taken.contains(id))
        ++id;
    return static_cast<unsigned>(id);
}

}  // namespace tov
