#include <tov310/form_guard.h>

#include <tov310/hooks.h>
#include <tov310/messages.h>

namespace tov {

// Sees what reaches the form.
class CTovFormGuard::Watch : public CTovSubclassWnd {
 public:
    explicit Watch(CTovFormGuard& guard) : m_guard(&guard) {}

    void Leave() {
        m_guard = nullptr;
        UnhookWindow();
    }

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (m_guard != nullptr && message == WM_TIMER && m_guard->OnTipTimer(wParam) != 0) return 0;
        if (m_guard != nullptr && (message == WM_MOVE || message == WM_SIZE)) m_guard->HideTooltip();
        std::shared_ptr<Watch> const keep = m_guard != nullptr ? m_guard->m_watch : nullptr;
        LRESULT const result = CTovSubclassWnd::WindowProc(message, wParam, lParam);
        if (keep != nullptr && m_guard != nullptr) m_guard->OnHostMessage(message, lParam);
        return result;
    }

 private:
    CTovFormGuard* m_guard;
};

CTovFormGuard::CTovFormGuard(QWidget* form)
    : CTovHostContainer(eKindForm, TovWnd(form), this, nullptr), m_watch(std::make_shared<Watch>(*this)) {}

CTovFormGuard::~CTovFormGuard() {
    m_watch->Leave();
}

void CTovFormGuard::Begin() {
    CWnd* const form = GetContainerWnd();
    if (form == nullptr) return;
    CreateTip(*form);
    m_watch->HookWindow(form->GetSafeHwnd());
    HookContainer();
    HostIsReady();
}

int CTovFormGuard::EnableOkButton() {
    CWnd* const form = GetContainerWnd();
    return form != nullptr ? EnableOkAndApply(*form, OnEnableOkButton(1)) : 0;
}

void CTovFormGuard::OnEmptyFieldsChanged(int emptyFields) {
    QPointer<CTovFormGuard> const alive(this);
    CTovHostContainer::OnEmptyFieldsChanged(emptyFields);
    if (alive) Q_EMIT emptyFieldsChanged(emptyFields != 0);
}

void CTovFormGuard::OnDisabledOkButtonClicked(unsigned id) {
    QPointer<CTovFormGuard> const alive(this);
    CTovHostContainer::OnDisabledOkButtonClicked(id);
    if (alive) Q_EMIT disabledOkButtonClicked(id);
}

void CTovFormGuard::ShowHostTip(char const* text, int x, int y, unsigned milliseconds) {
    ShowToolTipLeftTop(text, x, y, milliseconds);
}

}  // namespace tov
