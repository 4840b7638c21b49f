// What every dialog and page of the library has beside its framework base: dialogs in it that take turns at
// one place, a document, controls that grow with it, and a tip (tip.h).
//
//   class Options : public tov::CTovDialog {
//    public:
//       Options() : CTovDialog(2000) {
//           ExchangeChildDialogId(2010, 1);           // the control whose place they take
//           AddChildDialog(module, 2001);
//           AddChildDialog(&ColorsDialog::classColorsDialog, module, 2002);
//       }
//   };
//   ... SwitchChildDialog(2002, 1);
#pragma once

#include <tov310/arrange.h>
#include <tov310/control_events.h>
#include <tov310/dialog.h>
#include <tov310/document.h>
#include <tov310/edit_filename.h>
#include <tov310/ok_host.h>
#include <tov310/resources.h>
#include <tov310/tip.h>

#include <memory>
#include <vector>

namespace tov {

class CTovDlgToolBar;

// Somebody wants to know what something is.
struct HELPINFO {
    int iContextType = 1;           // 1: a window, 2: an entry of a menu
    int iCtrlId = 0;                // of the control or the entry
    HWND hItemHandle{};             // the control
    unsigned long dwContextId = 0;  // its topic; 0 where it has none
    CPoint MousePos{};              // of the screen
};
class CTovEditSwitched;

class TOV_CORE_API CTovDialogExtensions : public CTovOkHost,
                                          public CTovTipExtensions,
                                          public CTovControlEvents {
 public:
    using eEditType = eTovSwitchedType;
    static constexpr unsigned none = 0xFFFFFFFF;  // no index, and no control id

    // The dialog that it serves, commonly the object that it is a base of; null for none. Borrowed, and it
    // lives as long.
    explicit CTovDialogExtensions(CDialog* dialog);
    CTovDialogExtensions(CTovDialogExtensions const&) = delete;
    CTovDialogExtensions& operator=(CTovDialogExtensions const&) = delete;
    ~CTovDialogExtensions() override;  // ends the child dialogs

    // Those of a window; null where it is no dialog with them, and for null.
    static CTovDialogExtensions* Of(CWnd* window);

    // --- Child dialogs. They are objects from AddChildDialog on and windows from InitChildDialogs on; one of
    // --- them is shown. A key is an index in the order of adding or, with keyIsId, the number of a template.

    // Names the control, a placeholder, that the child dialogs come in the place of, and says whether they
    // are moved there; otherwise they stay where their templates put them. `none` ends it.
    virtual void ExchangeChildDialogId(unsigned placeholderId, int moveOntoPlaceholder);

    // Adds a dialog with a template of the module (null: the library's own), of a class with a default
    // constructor, or a plain one. An object that is no dialog is not added. With `first` it is the one that
    // is shown at first; otherwise that is the first one.
    virtual void AddChildDialog(CRuntimeClass const* dialogClass, HINSTANCE module, unsigned id,
                                int first = 0);
    virtual void AddChildDialog(HINSTANCE module, unsigned id, int first = 0);

    // Whether this one stands in a dialog itself; known from InitChildDialogs on.
    virtual int IsChildDialog() const { return m_isChildDialog; }

    // Hides the current one and shows another. Answers 1, also where it is the current one already, or 0 and
    // nothing happens where there is none for the key.
    virtual int SwitchChildDialog(unsigned key, int keyIsId);

    // Makes a tool bar in the dialog, as CTovDlgToolBar::Create does (dlg_tool_bar.h). Answers 1, or 0.
    virtual int CreateToolbar(HINSTANCE module, unsigned bitmapId, unsigned controlId, unsigned arrangeFlags);

    void FirstVisibleChildDialog(unsigned index) { m_first = index; }
    CDialog* ChildDialog(unsigned key, int keyIsId) const;           // null for none
    unsigned ChildDialogIndex(unsigned key, int keyIsId) const;      // `none` for none
    CRect ChildDialogRectOriginal(unsigned key, int keyIsId) const;  // its client rectangle when it was made
    CDialog* CurrentChildDialog() const;                             // null for none
    int IsCurrentChildDialogValid() const { return m_current < m_children.size(); }
    unsigned GetChildDialogCount() const { return static_cast<unsigned>(m_children.size()); }
    unsigned PlaceholderId() const { return m_placeholderId; }

    // Makes the window of a dialog from a template of the module (null: the library's own): within the parent
    // (asChild, without a frame whatever the template says), or above it, then it belongs to the parent.
    // Answers 1, or 0: there is no such template, or the dialog has a window already.
    static int CreateCheckedIndirect(HINSTANCE module, unsigned id, CDialog* dialog, CWnd* parent,
                                     int asChild);

    // --- The document, shared with the child dialogs that are dialogs of the library. One that compares as
    // --- the same changes nothing.

    virtual CTovPtrSmart<CTovDocument> GetDialogDocument() const { return m_document; }
    virtual void SetDialogDocument(CTovPtrSmart<CTovDocument> const& document);
    virtual void UnsetDialogDocument();

    // --- Edits that can become others, in the place of a control; they belong to the dialog. Defined in
    // --- libTov310 (switched_edit.h has their class).

    // The edit of that control, made now or, for a control that has one already, that one. The range is that
    // of a whole number (eTovSwitchedLong) or of a floating one (eTovSwitchedDouble). Null where there is no
    // such control.
    CTovEditSwitched* AddEdit(unsigned id, eEditType type, int readOnly = 0);
    CTovEditSwitched* AddEdit(unsigned id, long least, long most, int readOnly = 0);
    CTovEditSwitched* AddEdit(unsigned id, double least, double most, int readOnly = 0);

    // For a control without one, an edit that stands nowhere.
    CTovEditSwitched& Edit(unsigned id);

    // --- Help

    // Has the application show help: the control's topic where the user has asked for that one, by the
    // question mark of the frame or with Shift, else the dialog's, GetHelpTopic() + 0x20000. In a child
    // dialog the dialog around does it. Answers 1.
    virtual int OnHelpInfo(HELPINFO const& info);
    virtual unsigned long GetHelpTopic() const { return 0; }

    // The question mark was pressed.
    virtual void NoteHelpButton(int isPressed);

    // --- Whether OK may be pressed. In a child dialog the dialog around is asked and changed.

    int EnableOkButton() override;
    int OnEnableOkButton(int quiet) override;

 protected:
    // --- Controls that grow with the dialog (arrange.h). A number that no control has is ignored, but for
    // --- the placeholder's: that stands for all child dialogs.

    void AddItemToArrange(int moveX, int sizeX, int moveY, int sizeY, unsigned id);
    void AddItemToArrange(int flags, unsigned id);  // TovArrangeFlags
    void RemoveItemToArrange(unsigned id) { m_arrangement.Remove(id); }

    // To be called when the dialog has got another size: moves all. The original size is that which the
    // controls were registered at; below the minimum nothing moves any further. Pixels.
    void ArrangeItems(CSize current, CSize original, CSize minimum);
    void ArrangeItem(CWnd* window, ARRANGE_ITEM const& item, int dx, int dy);

    // Moves a control down and to the right.
    virtual void ShiftChildWnd(CWnd* window, long down, long right);
    virtual void ShiftDlgItem(unsigned id, long down, long right);

    // All that opens with the dialog is there, and it is laid out (a post behind OnInitDialog).
    virtual void OnPostInitDialog() {}

    // The document has come, or is about to go: told to the child dialogs.
    virtual void OnSetDialogDocument();
    virtual void OnUnsetDialogDocument();

    // Makes the child dialogs, in OnInitDialog. Answers 1, or 0 without a dialog.
    virtual int InitChildDialogs(int moveOntoPlaceholder);

    // What the current child dialog says; 1 without one.
    virtual int OnChildDialogEnableOk(int quiet);

    // Has the dialog around decide; 0 where that is none of the library's.
    virtual int EnableParentDialogOkButton();

    // A number that no control of the dialog has; 0 without a dialog.
    virtual unsigned GetNextFreeDlgItemID() const;

    // --- For classes of a toolkit

    // A dialog without a class of its own.
    virtual std::unique_ptr<CDialog> MakePlainDialog();

    // The placeholder is to go, and each child dialog, which has no window yet, to come into its place.
    virtual void TakePlaceholder(CWnd& placeholder);
    virtual void PrepareChildDialog(CDialog& /*child*/) {}

    // --- What the handlers of all hosts have in common

    // OnInitDialog, once the controls stand: makes the tip and the child dialogs, and posts
    // WM_TOV_POST_INITDIALOG to the dialog.
    void InitExtensions();

    // A message to the dialog before the dialog sees it: hides the tip in time, keeps the arrangement true to
    // the font, and calls OnPostInitDialog. Answers 1 for what is done with.
    int OnExtensionMessage(unsigned message, WPARAM wParam);

    CDialog* GetExtendedDialog() const { return m_dialog; }

    std::shared_ptr<CTovDlgToolBar> m_toolbar;

 private:
    friend class CTovHostContainer;
    class Edits;
    struct ChildRecord {
        HINSTANCE module;
        unsigned id;
        std::unique_ptr<CDialog> dialog;
        CRect original;
    };

    void Add(std::unique_ptr<CDialog> dialog, HINSTANCE module, unsigned id, int first);
    CWnd* ItemToArrange(unsigned id) const;
    void PlaceItem(ARRANGE_ITEM const& item, int dx, int dy);

    CTovPtrSmart<CTovDocument> m_document;
    int m_isChildDialog = 0;
    unsigned m_first = 0;
    unsigned m_current = none;
    unsigned m_placeholderId = none;
    int m_movesOntoPlaceholder = 1;
    std::vector<ChildRecord> m_children;
    CRect m_placeholderRect;  // client coordinates
    std::shared_ptr<Edits> m_edits;
    CTovArrangement m_arrangement;
    int m_isHelpButtonPressed = 0;
    CDialog* const m_dialog;
};

// A class of dialogs with all that, on the screen and in tests:
//
//   class CTovDialog : public CWndOn<QDialog, CTovDialogOf<CDialog>> { ... };
template <class Dialog>
class CTovDialogOf : public Dialog, public CTovDialogExtensions {
 public:
    CTovDialogOf() : CTovDialogExtensions(this) {}

    virtual operator CTovDialogExtensions*() { return this; }

    // Here a combo box or a list that tells of itself is told on when all others have heard of it.
    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        HWND const self = this->GetSafeHwnd();
        int const result = Dialog::OnCommand(wParam, lParam);
        if (IsWindow(self)) OnControlNotice(wParam, lParam);
        return result;
    }

 protected:
    int OnInitDialog() override {
        HWND const self = this->GetSafeHwnd();
        Dialog::OnInitDialog();
        if (IsWindow(self)) InitExtensions();
        return 1;
    }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (OnExtensionMessage(message, wParam) != 0) return 0;
        return Dialog::WindowProc(message, wParam, lParam);
    }
};

}  // namespace tov
