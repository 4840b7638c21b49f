#include <tov310/dialog_extensions.h>

#include "frame/handle_of.h"

#include <tov310/dialog_template.h>
#include <tov310/help_app.h>
#include <tov310/messages.h>
#include <tov310/styles.h>
#include <tov310/system.h>

#include <utility>

namespace tov {
namespace {

// The bits of all that has to do with frames.
constexpr unsigned long neverOfChildren = ~0x3B30FBFFUL & 0xFFFFFFFFUL;
constexpr unsigned long alwaysOfChildren = WS_CHILD | WS_CLIPSIBLINGS | DS_CONTROL;

// A child dialog must not compete for the default button.
void TakeDefaultButtonFrom(CWnd const& dialog) {
    for (HWND const child : dialog.GetChildren()) {
        CWnd* const button = CWnd::FromHandlePermanent(child);
        if (button == nullptr || button->GetClassName() != "Button") continue;
        unsigned long const style = button->GetStyle();
        if ((style & 7) != BS_DEFPUSHBUTTON) continue;
        TovSendMessage(child, BM_SETSTYLE, (style & 0xFFFF) & ~BS_DEFPUSHBUTTON, 1);
        button->ModifyStyle(BS_DEFPUSHBUTTON, 0);
    }
}

bool HasDefaultButton(CWnd const& dialog) {
    for (HWND const child : dialog.GetChildren()) {
        CWnd const* const button = CWnd::FromHandlePermanent(child);
        if (button != nullptr && button->GetClassName() == "Button" &&
            (button->GetStyle() & BS_TYPEMASK) == BS_DEFPUSHBUTTON)
            return true;
    }
    return false;
}

bool IsSameDocument(CTovPtrSmart<CTovDocument> const& held, CTovPtrSmart<CTovDocument> const& other) {
    return held && held->Compare(other.Get()) != 0;
}

CSize ClientSizeOf(CWnd const& window) {
    CRect const rect = window.GetClientRect();
    return {rect.Width(), rect.Height()};
}

}  // namespace

CTovDialogExtensions::CTovDialogExtensions(CDialog* dialog) : m_dialog(dialog) {}

CTovDialogExtensions::~CTovDialogExtensions() {
    for (ChildRecord const& child : m_children)
        child.dialog->DestroyWindow();
    m_children.clear();
    m_document = {};
}

CTovDialogExtensions* CTovDialogExtensions::Of(CWnd* window) {
    return dynamic_cast<CTovDialogExtensions*>(window);
}

// ---------------------------------------------------------------------------------------- child dialogs

void CTovDialogExtensions::ExchangeChildDialogId(unsigned placeholderId, int moveOntoPlaceholder) {
    m_placeholderId = placeholderId;
    m_movesOntoPlaceholder = moveOntoPlaceholder;
}

void CTovDialogExtensions::AddChildDialog(CRuntimeClass const* dialogClass, HINSTANCE module, unsigned id,
                                          int first) {
    std::unique_ptr<CObject> object = dialogClass != nullptr ? dialogClass->CreateObject() : nullptr;
    auto* const dialog = dynamic_cast<CDialog*>(object.get());
    if (dialog == nullptr) return;
    std::unique_ptr<CDialog> owned(dialog);
    static_cast<void>(object.release());
    if (CTovDialogExtensions* const extensions = Of(dialog); extensions != nullptr && m_document)
        extensions->SetDialogDocument(m_document);
    Add(std::move(owned), module, id, first);
}

void CTovDialogExtensions::AddChildDialog(HINSTANCE module, unsigned id, int first) {
    Add(MakePlainDialog(), module, id, first);
}

void CTovDialogExtensions::Add(std::unique_ptr<CDialog> dialog, HINSTANCE module, unsigned id, int first) {
    if (first != 0) m_first = GetChildDialogCount();
    m_children.push_back({module, id, std::move(dialog), {}});
}

std::unique_ptr<CDialog> CTovDialogExtensions::MakePlainDialog() {
    return std::make_unique<CDialog>();
}

void CTovDialogExtensions::TakePlaceholder(CWnd& placeholder) {
    placeholder.DestroyWindow();
}

int CTovDialogExtensions::CreateCheckedIndirect(HINSTANCE module, unsigned id, CDialog* dialog, CWnd* parent,
                                                int asChild) {
    CTovDialogTemplate source;
    if (dialog == nullptr || TovLoadDialogTemplate(module, id, source) == 0) return 0;
    source.style = asChild != 0 ? (source.style & ~neverOfChildren) | alwaysOfChildren
                                : (source.style & ~(DS_CONTROL | WS_CHILD | WS_POPUP)) | WS_POPUP;
    return dialog->CreateIndirect(source, parent);
}

int CTovDialogExtensions::InitChildDialogs(int moveOntoPlaceholder) {
    if (m_dialog == nullptr) return 0;
    CWnd const* const around = m_dialog->GetParent();
    m_isChildDialog = (m_dialog->GetStyle() & WS_CHILD) != 0 && around != nullptr &&
                      around->IsKindOf(&CDialog::classCDialog);
    if (m_placeholderId == none) return 1;
    CWnd* const placeholder =
        CWnd::FromHandlePermanent(m_dialog->GetDlgItem(static_cast<int>(m_placeholderId)));
    if (placeholder == nullptr) return 1;
    m_placeholderRect = TovRectWithin(*placeholder, *m_dialog);
    TakePlaceholder(*placeholder);
    bool const hasDefault = HasDefaultButton(*m_dialog);
    // A dialog that is made may add others, or end this one.
    HWND const self = m_dialog->GetSafeHwnd();
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        CDialog* const dialog = m_children[i].dialog.get();
        PrepareChildDialog(*dialog);
        CreateCheckedIndirect(m_children[i].module, m_children[i].id, dialog, m_dialog, 1);
        if (!IsWindow(self)) return 1;
        if (!dialog->GetSafeHwnd()) continue;
        m_children[i].original = dialog->GetClientRect();
        if (hasDefault) TakeDefaultButtonFrom(*dialog);
        dialog->ModifyStyle(WS_VISIBLE, 0);  // until its turn comes
        if (moveOntoPlaceholder != 0) dialog->MoveWindow(m_placeholderRect);
    }
    m_current = none;
    if (m_first < m_children.size()) SwitchChildDialog(m_first, 0);
    return 1;
}

unsigned CTovDialogExtensions::ChildDialogIndex(unsigned key, int keyIsId) const {
    if (keyIsId == 0) return key < m_children.size() ? key : none;
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        if (m_children[i].id == key) return static_cast<unsigned>(i);
    }
    return none;
}

CDialog* CTovDialogExtensions::ChildDialog(unsigned key, int keyIsId) const {
    unsigned const index = ChildDialogIndex(key, keyIsId);
    return index != none ? m_children[index].dialog.get() : nullptr;
}

CRect CTovDialogExtensions::ChildDialogRectOriginal(unsigned key, int keyIsId) const {
    unsigned const index = ChildDialogIndex(key, keyIsId);
    return index != none ? m_children[index].original : CRect{};
}

CDialog* CTovDialogExtensions::CurrentChildDialog() const {
    return IsCurrentChildDialogValid() != 0 ? m_children[m_current].dialog.get() : nullptr;
}

int CTovDialogExtensions::SwitchChildDialog(unsigned key, int keyIsId) {
    unsigned const index = ChildDialogIndex(key, keyIsId);
    if (index == none) return 0;
    if (index == m_current) return 1;
    HWND const now = m_children[index].dialog->GetSafeHwnd();
    if (CDialog* const before = CurrentChildDialog()) before->ShowWindow(0);
    m_current = index;
    if (IsWindow(now)) {
        CWnd& shown = *CWnd::FromHandlePermanent(now);
        shown.ShowWindow(1);
        shown.RedrawWindow(RDW_UPDATENOW);
    }
    return 1;
}

int CTovDialogExtensions::CreateToolbar(HINSTANCE, unsigned, unsigned, unsigned) {
    return 0;
}

// ------------------------------------------------------------------------------------------- document

void CTovDialogExtensions::SetDialogDocument(CTovPtrSmart<CTovDocument> const& document) {
    if (IsSameDocument(m_document, document)) return;
    if (m_document) UnsetDialogDocument();
    m_document = document;
    OnSetDialogDocument();
}

void CTovDialogExtensions::UnsetDialogDocument() {
    if (!m_document) return;
    OnUnsetDialogDocument();
    m_document = {};
}

void CTovDialogExtensions::OnSetDialogDocument() {
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        if (CTovDialogExtensions* const child = Of(m_children[i].dialog.get()))
            child->SetDialogDocument(m_document);
    }
}

void CTovDialogExtensions::OnUnsetDialogDocument() {
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        if (CTovDialogExtensions* const child = Of(m_children[i].dialog.get())) child->UnsetDialogDocument();
    }
}

// ------------------------------------------------------------------------------------------------- OK

int CTovDialogExtensions::OnChildDialogEnableOk(int quiet) {
    if (m_placeholderId == none) return 1;
    CTovDialogExtensions* const child = Of(CurrentChildDialog());
    return child != nullptr ? child->OnEnableOkButton(quiet) : 1;
}

int CTovDialogExtensions::EnableParentDialogOkButton() {
    CTovDialogExtensions* const around = m_dialog != nullptr ? Of(m_dialog->GetParent()) : nullptr;
    return around != nullptr ? around->EnableOkButton() : 0;
}

int CTovDialogExtensions::EnableOkButton() {
    if (IsChildDialog() != 0) return EnableParentDialogOkButton();
    if (m_dialog == nullptr) return 0;
    return EnableOkAndApply(*m_dialog, OnEnableOkButton(1));
}

int CTovDialogExtensions::OnEnableOkButton(int quiet) {
    if (OnChildDialogEnableOk(quiet) == 0) return 0;
    return m_dialog == nullptr || AskForms(*m_dialog, quiet) != 0;
}

// ----------------------------------------------------------------------------------------------- help

void CTovDialogExtensions::NoteHelpButton(int isPressed) {
    CTovDialogExtensions* const around = IsChildDialog() != 0 ? Of(m_dialog->GetParent()) : nullptr;
    if (around != nullptr)
        around->NoteHelpButton(isPressed);
    else
        m_isHelpButtonPressed = isPressed;
}

int CTovDialogExtensions::OnHelpInfo(HELPINFO const& info) {
    CTovDialogExtensions* const around = IsChildDialog() != 0 ? Of(m_dialog->GetParent()) : nullptr;
    if (around != nullptr) return around->OnHelpInfo(info);
    bool const isAskedFor = m_isHelpButtonPressed != 0 || TovGetSystem()->IsKeyDown(VK_SHIFT) != 0;
    m_isHelpButtonPressed = 0;
    constexpr unsigned long topicsOfDialogs = 0x20000;
    bool const isOfControl = isAskedFor && info.dwContextId != 0 && info.iContextType == 1;
    CTovHelpApp::ShowHelp(isOfControl ? info.dwContextId : GetHelpTopic() + topicsOfDialogs);
    return 1;
}

// --------------------------------------------------------------------------------------------- layout

CWnd* CTovDialogExtensions::ItemToArrange(unsigned id) const {
    if (m_dialog == nullptr) return nullptr;
    CWnd* const control = CWnd::FromHandlePermanent(m_dialog->GetDlgItem(static_cast<int>(id)));
    bool const hasGone = control == nullptr && id == m_placeholderId && !m_children.empty();
    return hasGone ? m_children.front().dialog.get() : control;
}

void CTovDialogExtensions::AddItemToArrange(int moveX, int sizeX, int moveY, int sizeY, unsigned id) {
    CWnd const* const item = ItemToArrange(id);
    if (!HandleOf(item)) return;
    m_arrangement.TakeUnits(*m_dialog);
    m_arrangement.Add(moveX, sizeX, moveY, sizeY, id, TovRectWithin(*item, *m_dialog));
}

void CTovDialogExtensions::AddItemToArrange(int flags, unsigned id) {
    CWnd const* const item = ItemToArrange(id);
    if (!HandleOf(item)) return;
    m_arrangement.TakeUnits(*m_dialog);
    m_arrangement.Add(flags, id, TovRectWithin(*item, *m_dialog));
}

void CTovDialogExtensions::PlaceItem(ARRANGE_ITEM const& item, int dx, int dy) {
    if (item.id != m_placeholderId) {
        CWnd* const control = CWnd::FromHandlePermanent(m_dialog->GetDlgItem(static_cast<int>(item.id)));
        ArrangeItem(control, item, dx, dy);
        return;
    }
    CRect const place = CTovArrangement::Place(item, dx, dy);
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        if (m_children[i].dialog->GetSafeHwnd()) m_children[i].dialog->MoveWindow(place);
    }
}

void CTovDialogExtensions::ArrangeItems(CSize current, CSize original, CSize minimum) {
    if (m_dialog == nullptr) return;
    m_arrangement.Arrange(current, original, minimum,
                          [this](ARRANGE_ITEM const& item, int dx, int dy) { PlaceItem(item, dx, dy); });
}

void CTovDialogExtensions::ArrangeItem(CWnd* window, ARRANGE_ITEM const& item, int dx, int dy) {
    if (!HandleOf(window)) return;
    window->MoveWindow(CTovArrangement::Place(item, dx, dy));
    window->RedrawWindow(RDW_INVALIDATE);
}

void CTovDialogExtensions::ShiftChildWnd(CWnd* window, long down, long right) {
    if (!HandleOf(window) || m_dialog == nullptr || (down == 0 && right == 0)) return;
    CRect rect = TovRectWithin(*window, *m_dialog);
    rect.left += static_cast<int>(right);
    rect.right += static_cast<int>(right);
    rect.top += static_cast<int>(down);
    rect.bottom += static_cast<int>(down);
    window->MoveWindow(rect);
    window->RedrawWindow(RDW_INVALIDATE);
}

void CTovDialogExtensions::ShiftDlgItem(unsigned id, long down, long right) {
    if (m_dialog == nullptr) return;
    ShiftChildWnd(CWnd::FromHandlePermanent(m_dialog->GetDlgItem(static_cast<int>(id))), down, right);
}

unsigned CTovDialogExtensions::GetNextFreeDlgItemID() const {
    return m_dialog != nullptr ? TovFindFreeDlgItemId(*m_dialog) : 0;
}

// ------------------------------------------------------------------------------------------- handlers

void CTovDialogExtensions::InitExtensions() {
    if (!HandleOf(m_dialog)) return;
    HWND const self = m_dialog->GetSafeHwnd();
    CreateTip(*m_dialog);
    InitChildDialogs(m_movesOntoPlaceholder);
    if (IsWindow(self)) TovPostMessage(self, WM_TOV_POST_INITDIALOG);
}

int CTovDialogExtensions::OnExtensionMessage(unsigned message, WPARAM wParam) {
    switch (message) {
        case WM_TIMER:
            return OnTipTimer(wParam);
        case WM_MOVE:
        case WM_SIZE:
        case WM_SHOWWINDOW:
            HideTooltip();
            return 0;
        case WM_TOV_POST_INITDIALOG:
            OnPostInitDialog();
            return 1;
        case WM_FONTCHANGE:
            if (m_arrangement.IsEmpty()) return 0;
            m_arrangement.TakeUnits(*m_dialog);
            m_arrangement.ArrangeAgain(ClientSizeOf(*m_dialog), [this](ARRANGE_ITEM const& item, int dx,
                                                                       int dy) { PlaceItem(item, dx, dy); });
            return 0;
        default:
            return 0;
    }
}

}  // namespace tov
