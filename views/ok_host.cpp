#include <tov310/ok_host.h>

#include <tov310/dialog_extensions.h>
#include <tov310/messages.h>

#include <initializer_list>

namespace tov {

CTovOkHost::~CTovOkHost() = default;

CTovOkHost* CTovOkHost::Of(CWnd* window) {
    return dynamic_cast<CTovOkHost*>(window);
}

int CTovOkHost::EnableOkAndApply(CWnd& window, int enable) {
    for (int const id : {IDOK, ID_APPLY_NOW}) {
        if (CWnd* const button = CWnd::FromHandlePermanent(window.GetDlgItem(id)))
            button->EnableWindow(enable);
    }
    return enable;
}

int CTovOkHost::EnableOkOfForm(CWnd& form, CTovOkHost& host) {
    CTovDialogExtensions* const around = CTovDialogExtensions::Of(form.GetParent());
    return around != nullptr ? around->EnableOkButton() : EnableOkAndApply(form, host.OnEnableOkButton(1));
}

int CTovOkHost::AskForms(CWnd const& window, int quiet) {
    for (HWND const handle : window.GetChildren()) {
        CWnd* const child = CWnd::FromHandlePermanent(handle);
        if (child == nullptr || child->IsKindOf(&CDialog::classCDialog)) continue;
        if (CTovOkHost* const form = Of(child); form != nullptr && form->OnEnableOkButton(quiet) == 0)
            return 0;
    }
    return 1;
}

}  // namespace tov
