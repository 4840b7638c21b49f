// What an edit offers to be overridden, and what its engine (edit_text.h) needs
// of a toolkit.
//
//   class CTovEdit : public <widget and CEdit>, public CTovInputControl,
//   protected CTovEditHost {
//       CTovEditText m_text{*this};
//   };
//
// A host of the library derives from the finished edit and overrides what it
// wants otherwise; the defaults here are the edit's behaviour.
#pragma once

#include <tov310/edit_text.h>
#include <tov310/export.h>
#include <tov310/types.h>

#include <memory>
#include <vector>

namespace tov {

class TOV_CORE_API CTovEditHost {
 public:
    using eAllowedChars = eTovAllowedChars;
    using enum eTovAllowedChars;

    CTovEditHost() = default;
    CTovEditHost(CTovEditHost const&) = delete;
    CTovEditHost& operator=(CTovEditHost const&) = delete;
    virtual ~CTovEditHost();

    CTovEditText& Text() const { return *m_text; }

    // --- What the toolkit's side gives

    virtual CTovInputControl& InputControl() = 0;

    // The window's text and selection. Whenever the text changes, by whomever,
    // the toolkit's side calls OnEditChanged.
    virtual CString GetEditText() = 0;
    virtual void SetEditText(CString const& text) = 0;
    virtual void GetEditSel(int& start, int& end) = 0;
    virtual void SetEditSel(int start, int end) = 0;
    virtual void LimitEditText(unsigned most) = 0;  // tovNoMaxChars: no limit

    virtual void ApplyReadOnly(int readOnly,
                               int enabled) = 0;      // of the edit's window
    virtual void EnableCompanions(int /*enable*/) {}  // of those that exist

    // The edit has changed its text by itself (paste, undo ...). Overrides do what they do when the toolkit
    // tells of a change.
    virtual void TellEditChanged(unsigned id) { OnEditChanged(id); }

    virtual int ReadClipboard(CString& text) = 0;         // 0: no text, or it cannot be opened
    virtual int WriteClipboard(CString const& text) = 0;  // never empty
    virtual void Beep() = 0;

    // --- What a host may override

    virtual operator CTovInputControl*() { return &InputControl(); }
    virtual void Empty() { m_text->Empty(); }
    virtual void SetLastItemsIniFile(char const* path) { m_text->SetLastItemsIniFile(path); }
    virtual void SetLastItemsSection(char const* section) { m_text->SetLastItemsSection(section); }

    // The resource of the context menu; id 0 or a null module for none.
    virtual void GetMenu(HINSTANCE& module, unsigned& id) const;
    virtual void SetMenu(HINSTANCE module, unsigned id);

    // Not empty: without the focus another text is shown. Which one is up to the
    // kind of edit.
    virtual CString GetDisplayFormat() const { return Settings().displayFormat; }
    virtual void SetDisplayFormat(HINSTANCE module, unsigned id);
    virtual void SetDisplayFormat(CString const& format);

    // 0x00BBGGRR, or tovPlatformColor.
    virtual void SetColorText(COLORREF color) { SetColor(Settings().textColors[0], color); }
    virtual void SetColorTextReadOnly(COLORREF color) { SetColor(Settings().textColors[1], color); }
    virtual void SetColorTextDisabled(COLORREF color) { SetColor(Settings().textColors[2], color); }
    virtual void SetColorBk(COLORREF color) { SetColor(Settings().backColors[0], color); }
    virtual void SetColorBkReadOnly(COLORREF color) { SetColor(Settings().backColors[1], color); }
    virtual void SetColorBkDisabled(COLORREF color) { SetColor(Settings().backColors[2], color); }
    virtual COLORREF GetColorText() const { return Settings().textColors[0]; }
    virtual COLORREF GetColorTextReadOnly() const { return Settings().textColors[1]; }
    virtual COLORREF GetColorTextDisabled() const { return Settings().textColors[2]; }
    virtual COLORREF GetColorBk() const { return Settings().backColors[0]; }
    virtual COLORREF GetColorBkReadOnly() const { return Settings().backColors[1]; }
    virtual COLORREF GetColorBkDisabled() const { return Settings().backColors[2]; }

    // tovConvertNone, tovConvertToUpper or tovConvertToLower.
    virtual void SetConversion(int conversion) { Settings().conversion = conversion; }
    virtual int GetConversion() const { return Settings().conversion; }
    // The characters are for eAllowedCharsCustom; null leaves them as they are.
    virtual void SetAllowedChars(eTovAllowedChars allowed, CString* characters = nullptr);
    virtual eTovAllowedChars GetAllowedChars() const { return Settings().allowedChars; }
    virtual void SetNotAllowedChars(char const* text) { Settings().notAllowedChars = text ? text : ""; }
    virtual CString GetNotAllowedChars() const { return Settings().notAllowedChars; }

    // Characters; an empty text is not too short.
    virtual void SetMinChars(unsigned count) { Settings().minChars = count; }
    virtual unsigned GetMinChars() const { return Settings().minChars; }
    virtual void SetMaxChars(unsigned count);
    virtual unsigned GetMaxChars() const { return Settings().maxChars; }
    virtual void SetTrimLeft(int trim) { Settings().trimLeft = trim; }
    virtual int GetTrimLeft() const { return Settings().trimLeft; }
    virtual void SetTrimRight(int trim) { Settings().trimRight = trim; }
    virtual int GetTrimRight() const { return Settings().trimRight; }
    virtual void SetWrapRange(int wrap) { Settings().wrapRange = wrap; }
    virtual int GetWrapRange() const { return Settings().wrapRange; }
    virtual void SetSpinDelta(int delta) { Settings().spinDelta = delta; }
    virtual int GetSpinDelta() const { return Settings().spinDelta; }

    // While set, changes of the window's text, and the loss of the focus, are of
    // no meaning.
    virtual void IgnoreEditChanged(int ignore) { m_text->IgnoreEditChanged(ignore); }
    virtual int IgnoreEditChanged() const { return m_text->IgnoreEditChanged(); }
    virtual void IgnoreKillFocusAction(int ignore) { m_text->IgnoreKillFocusAction(ignore); }
    virtual int IgnoreKillFocusAction() const { return m_text->IgnoreKillFocusAction(); }

    virtual unsigned CanInsert() { return m_text->CanInsert(); }
    virtual int CanUndo() { return m_text->CanUndo(); }
    virtual int CanRedo() { return m_text->CanRedo(); }
    virtual int CanCut() { return m_text->CanCut(); }
    virtual int CanCopy() { return m_text->CanCopy(); }
    virtual int CanPaste() { return m_text->CanPaste(); }
    virtual int CanDelete() { return m_text->CanDelete(); }
    virtual int CanBackspace() { return m_text->CanBackspace(); }
    virtual int CanSelectAll() { return m_text->CanSelectAll(); }
    virtual void Insert(unsigned index) { m_text->Insert(index); }
    virtual void Undo() { m_text->Undo(); }
    virtual void Redo() { m_text->Redo(); }
    virtual void Cut() { m_text->Cut(); }
    virtual void Copy() { m_text->Copy(); }
    virtual void Paste() { m_text->Paste(); }
    virtual void Delete() { m_text->Delete(); }
    virtual void Backspace() { m_text->Backspace(); }
    virtual void SelectAll() { m_text->SelectAll(); }
    virtual void RemoveAllLastItems() { m_text->RemoveAllLastItems(); }
    virtual int ContextMenu(CWnd* window, CPoint point) { return m_text->ContextMenu(window, point); }

    virtual void DispatchSpinDeltapos(int up, int delta) { m_text->DispatchSpinDeltapos(up, delta); }
    virtual void DispatchButtonClicked() { OnButtonClicked(); }
    virtual void OnEditChanged(unsigned /*id*/) { m_text->OnEditChanged(); }
    virtual void OnButtonClicked() {}
    virtual void OnSpinDeltapos(int /*up*/, int /*delta*/) {}
    virtual void InitializeEdit() { m_text->InitializeEdit(); }
    virtual CTovInputControl::eState InternalValidate(char const* text, CString* message) {
        return m_text->InternalValidate(text, message);
    }

    virtual CString GetLastItem(unsigned index) { return m_text->GetLastItem(index); }
    virtual std::vector<CString> GetAllLastItems() { return m_text->GetAllLastItems(); }
    virtual void AddCurrentToLastItems() { m_text->AddCurrentToLastItems(); }

    // A host with states of its own overrides all four and sets the class of the
    // items in the settings. The last one is told of a state that undo or redo
    // has brought back.
    virtual void AddPreviousToUndoRedo() { m_text->AddPreviousToUndoRedo(); }
    virtual std::unique_ptr<CTovEditUndoRedoItem> CopyUndoRedoItem(CTovEditUndoRedoItem const* item) {
        return m_text->CopyUndoRedoItem(*item);
    }
    virtual void FillUndoRedoItemWithCurrent(CTovEditUndoRedoItem* item) {
        m_text->FillUndoRedoItemWithCurrent(*item);
    }
    virtual void OnUndoRedoItemRestored(CTovEditUndoRedoItem const* /*item*/) {}

    // What comes in as one text, before the filter: other spellings of what the edit takes. And whether it
    // goes elsewhere.
    virtual void ReadInput(CString& /*text*/) const {}
    virtual int TakeInput(CString const& /*text*/) { return 0; }
    // The filter has taken characters out of such a text, other than white space, and the rest is in.
    virtual void OnInputLost() {}

    virtual void PrepareColors() { m_text->PrepareColors(); }
    virtual void Convert(CString& text) const { m_text->Convert(text); }
    virtual void Convert(char32_t& character) const { m_text->Convert(character); }
    virtual int CharAllowed(char32_t character) const { return m_text->CharAllowed(character); }
    virtual void RemoveNotAllowedChars(CString& text) const { m_text->RemoveNotAllowedChars(text); }
    virtual void InternalSetWindowTextNoTrimNoUndoRedo(char const* text) {
        m_text->InternalSetWindowTextNoTrimNoUndoRedo(text);
    }
    virtual int TrimString(CString& text, int trim) const { return m_text->TrimString(text, trim); }
    virtual int GetClipboardText(CString& text);
    virtual int SetClipboardText(char const* text);  // 0 for null and an empty text
    virtual int ControlOrChildHasFocus() const { return m_text->ControlOrChildHasFocus(); }

    // From a character of what is shown without the focus to one of what is
    // typed.
    virtual void ConvertDisplayToInputPos(int& /*position*/) {}

    virtual void ShowValue() { m_text->ShowValue(); }
    virtual void ShowDisplayValue() { m_text->ShowText(m_text->GetRawString()); }
    virtual void ShowInputValue() { m_text->ShowText(m_text->GetRawString()); }
    virtual void LimitTextValue() { m_text->LimitTextValue(); }
    virtual void LimitTextDisplayValue() { m_text->LimitTextDisplayValue(); }
    virtual void LimitTextInputValue() { m_text->LimitTextInputValue(); }

    // The companions, where the toolkit has some. Creating answers 1, also when
    // there is one already.
    virtual int CreateEditButton(char const* /*text*/) { return 0; }
    virtual void DeleteEditButton() {}
    virtual int CreateSpinButton() { return 0; }
    virtual void DeleteSpinButton() {}
    virtual void SpinButtonSetBuddy() {}

    static int GetTrimLeftDefault() { return CTovEditSettings::DefaultTrimLeft(); }
    static void SetTrimLeftDefault(int trim) { CTovEditSettings::DefaultTrimLeft() = trim; }
    static int GetTrimRightDefault() { return CTovEditSettings::DefaultTrimRight(); }
    static void SetTrimRightDefault(int trim) { CTovEditSettings::DefaultTrimRight() = trim; }

    // A read-only edit is disabled; with this on it keeps focus, selection, copy
    // and menu.
    void ReadOnlyKeepsFocus(int keeps);
    int ReadOnlyKeepsFocus() const { return Settings().readOnlyKeepsFocus; }
    static int GetReadOnlyKeepsFocusDefault() { return CTovEditSettings::DefaultReadOnlyKeepsFocus(); }
    static void SetReadOnlyKeepsFocusDefault(int keeps) {
        CTovEditSettings::DefaultReadOnlyKeepsFocus() = keeps;
    }

    // While it lives, changes of the window's text are the program's.
    class CTovIgnoreEditChange {
     public:
        explicit CTovIgnoreEditChange(CTovEditHost& edit) : m_edit(edit), m_before(edit.IgnoreEditChanged()) {
            m_edit.IgnoreEditChanged(1);
        }
        CTovIgnoreEditChange(CTovIgnoreEditChange const&) = delete;
        CTovIgnoreEditChange& operator=(CTovIgnoreEditChange const&) = delete;
        ~CTovIgnoreEditChange() { m_edit.IgnoreEditChanged(m_before); }

     private:
        CTovEditHost& m_edit;
        int const m_before;
    };

    // Writes back the value that a flag has now.
    class CTovKeepFlag {
     public:
        explicit CTovKeepFlag(int* flag) : m_flag(*flag), m_before(*flag) {}
        CTovKeepFlag(CTovKeepFlag const&) = delete;
        CTovKeepFlag& operator=(CTovKeepFlag const&) = delete;
        ~CTovKeepFlag() { m_flag = m_before; }

     private:
        int& m_flag;
        int const m_before;
    };

 private:
    friend class CTovEditText;

    CTovEditSettings& Settings() const { return m_text->settings; }
    void SetColor(COLORREF& color, COLORREF value);

    CTovEditText* m_text = nullptr;
};

}  // namespace tov
