#include <tov310/edit_host.h>

#include <tov310/requirements.h>
#include <tov310/styles.h>
#include <tov310/window.h>

#include "frame/handle_of.h"

namespace tov {

CTovEditHost::~CTovEditHost() = default;

void CTovEditHost::GetMenu(HINSTANCE& module, unsigned& id) const {
    module = Settings().menuModule;
    id = Settings().menuId;
}

void CTovEditHost::SetMenu(HINSTANCE module, unsigned id) {
    Settings().menuModule = module;
    Settings().menuId = id;
}

void CTovEditHost::SetDisplayFormat(HINSTANCE module, unsigned id) {
    CString format;
    TovLoadResourceString(module, id, format);
    SetDisplayFormat(format);
}

void CTovEditHost::SetDisplayFormat(CString const& format) {
    Settings().displayFormat = format;
    m_text->OnFormatChanged();
}

void CTovEditHost::SetAllowedChars(eTovAllowedChars allowed, CString* characters) {
    Settings().allowedChars = allowed;
    if (characters != nullptr) Settings().customChars = *characters;
}

void CTovEditHost::SetMaxChars(unsigned count) {
    Settings().maxChars = count;
    if (HandleOf(InputControl().GetWnd())) LimitTextValue();
}

void CTovEditHost::ReadOnlyKeepsFocus(int keeps) {
    Settings().readOnlyKeepsFocus = keeps;
    bool const isReadOnly = InputControl().GetReadOnlyMode() != 0;
    if (isReadOnly && HandleOf(InputControl().GetWnd())) ApplyReadOnly(1, keeps != 0 || TovIsComCtlXP() == 0);
}

void CTovEditHost::SetColor(COLORREF& color, COLORREF value) {
    color = value;
    CWnd* const window = InputControl().GetWnd();
    if (!HandleOf(window)) return;
    PrepareColors();
    window->RedrawWindow(RDW_INVALIDATE);
}

int CTovEditHost::GetClipboardText(CString& text) {
    text.clear();
    return ReadClipboard(text) != 0 && !text.empty();
}

int CTovEditHost::SetClipboardText(char const* text) {
    return text != nullptr && *text != '\0' && WriteClipboard(text) != 0;
}

}  // namespace tov
