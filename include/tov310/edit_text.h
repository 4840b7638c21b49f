// What an edit does with its text, without a toolkit: which characters it
// takes, what it shows with and without the focus, undo and redo, the
// clipboard, the values that were entered last, keys and commands.
//
// An edit is a widget with one CTovEditText as a member, which works through
// the widget's CTovEditHost (edit_host.h). Positions and lengths count
// characters (code points), never bytes.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/input_control.h>
#include <tov310/last_documents.h>
#include <tov310/object.h>
#include <tov310/pixels.h>
#include <tov310/resources.h>
#include <tov310/styles.h>
#include <tov310/types.h>
#include <tov310/undo_redo.h>
#include <tov310/window.h>

#include <array>
#include <memory>
#include <optional>
#include <vector>

namespace tov {

class CCmdUI;
class CTovEditHost;

// Which characters an edit takes.
enum eTovAllowedChars : int {
    eAllowedCharsAll = 0,
    eAllowedCharsAlpha = 1,         // letters of all scripts, with their marks
    eAllowedCharsDigits = 2,        // 0 to 9
    eAllowedCharsAlphaNumeric = 3,  // letters and digits of all scripts
    eAllowedCharsCustom = 4,        // those of a text
};

inline constexpr int tovConvertNone = 0;
inline constexpr int tovConvertToUpper = 1;
inline constexpr int tovConvertToLower = 2;

inline constexpr unsigned tovNoMaxChars = 0xFFFFFFFF;
inline constexpr COLORREF tovPlatformColor = 0xFFFFFFFF;  // whatever the platform paints
inline constexpr unsigned tovEditMenu = 26269;            // the context menu of edits
inline constexpr unsigned tovFirstInsertCommand = 2024;   // puts in the value that was entered last
inline constexpr unsigned tovLastInsertCommand = 2034;

// The style that an edit over a cell is created with.
inline constexpr unsigned long tovInlineEditStyle = 0x50810080;

// The commands of an edit and the keys of its table.
enum eTovEditAction {
    eEditActionNone,
    eEditActionUndo,
    eEditActionRedo,
    eEditActionCut,
    eEditActionCopy,
    eEditActionPaste,
    eEditActionDelete,
    eEditActionBackspace,
    eEditActionSelectAll,
    eEditActionInsert,
    eEditActionSpinUp,
    eEditActionSpinDown,
};

// A state that can be brought back. The text is the edit's content.
class TOV_CORE_API CTovEditUndoRedoItem : public CObject {
    TOV_DYNCREATE(CTovEditUndoRedoItem, CObject)
 public:
    static constexpr int noSelection = -99999;

    CString m_sText;
    int m_nSelStart = noSelection;  // selected is what lies from here up to the
                                    // end; equal: the caret
    int m_nSelEnd = noSelection;
    std::optional<double> m_value;  // of an edit that keeps a number beside the text
};

// What a host sets up. A new one has the defaults.
struct TOV_CORE_API CTovEditSettings {
    // For the normal, the read-only and the disabled edit.
    std::array<COLORREF, 3> textColors{tovPlatformColor, tovPlatformColor, tovPlatformColor};
    std::array<COLORREF, 3> backColors{tovPlatformColor, tovPlatformColor, tovPlatformColor};

    HINSTANCE menuModule = TovGetTovResourceHandle();
    unsigned menuId = tovEditMenu;
    int conversion = tovConvertNone;
    eTovAllowedChars allowedChars = eAllowedCharsAll;
    CString customChars;      // for eAllowedCharsCustom
    CString notAllowedChars;  // refused whatever else is allowed
    unsigned minChars = 0;
    unsigned maxChars = tovNoMaxChars;
    int trimLeft = DefaultTrimLeft();
    int trimRight = DefaultTrimRight();
    int wrapRange = 1;      // spin steps go round the range
    int spinDelta = 1;      // one step
    CString displayFormat;  // not empty: another text is shown without the focus
    int readOnlyKeepsFocus = DefaultReadOnlyKeepsFocus();
    CRuntimeClass const* undoItemClass = &CTovEditUndoRedoItem::classCTovEditUndoRedoItem;

    // Of all edits that are made from then on; initially 1 for trimming and 0 for the focus. Not to be set
    // while other threads make edits.
    static int& DefaultTrimLeft();
    static int& DefaultTrimRight();
    static int& DefaultReadOnlyKeepsFocus();
};

// The two windows that an edit can have at its right, by their widths in
// pixels; 0 where there is none. The edit gives up as much of its own
// rectangle; the spin's frame lies over the edit's by 2 pixels.
struct TOV_CORE_API CTovEditCompanions {
    int spinWidth = 0;
    int buttonWidth = 0;

    // The width of a button for a text of that extent.
    static int ButtonWidth(CSize const& text);

    // What the whole must be grown to before a button (an edit in a cell gets one
    // pixel more at the right) or a spin is put in; the metrics are the system's
    // for vertical scroll bars.
    static CRect BoundsForButton(CRect const& whole, int buttonWidth, bool isInline);
    static CRect BoundsForSpin(CRect const& whole, CSize const& scrollBar);

    int MinWidth() const;
    CRect Edit(CRect const& whole) const;
    CRect Spin(CRect const& whole) const;
    CRect Button(CRect const& whole) const;
};

// Colours to paint with; tovPlatformColor where the platform's is to stay.
struct CTovEditColors {
    COLORREF text = tovPlatformColor;
    COLORREF back = tovPlatformColor;
};

class TOV_CORE_API CTovEditText {
 public:
    // The host is borrowed and finds the engine by its Text().
    explicit CTovEditText(CTovEditHost& host);
    CTovEditText(CTovEditText const&) = delete;
    CTovEditText& operator=(CTovEditText const&) = delete;
    ~CTovEditText();

    CTovEditHost& Host() const { return m_host; }

    CTovEditSettings settings;
    CTovEditCompanions companions;  // kept by whoever creates the windows

    // To be called once the window is born. Puts right what depends on it and on
    // its parent, and hooks the control. ResetAttributes brings back all
    // defaults; 0, and nothing happens, while there is a window.
    void InitializeEdit();
    int ResetAttributes();
    int SetReadOnlyMode(int readOnly);
    int IsPassword() const;  // as the style of the window says

    // What WM_GETDLGCODE answers beyond the platform's.
    LRESULT DialogCode() const;

    // --- The filter

    void Convert(CString& text) const;
    void Convert(char32_t& character) const;
    bool CharAllowed(char32_t character) const;
    void RemoveNotAllowedChars(CString& text) const;

    // Converts, filters and, if wanted, trims as the settings say. Answers
    // whether that changed the text.
    int TrimString(CString& text, int trim) const;

    // A character that is typed. 1: it goes into the text, converted as may be.
    // 0: it does not; a refused one has beeped, a control character is dropped
    // silently.
    int OnChar(char32_t& character) const;

    // The one gate for what comes in by other ways (input methods, drops, the
    // toolkit's own paste): a whole proposed text with the caret behind what is
    // new. Makes of both what the edit takes: new characters are converted,
    // filtered, brought to one line and cut to the room there is. 1, or 0 when
    // nothing of what is new can be taken; text and caret are then those of
    // before. What the edit itself writes passes as it is.
    int AcceptInput(CString& text, int& caret);

    // --- Content

    // The length alone: too short, too long, empty. eStateInvalid gives a text.
    CTovInputControl::eState InternalValidate(char const* text, CString* message) const;

    CString const& GetRawString() const { return m_rawString; }
    int IsRawEmpty() const { return m_rawEmpty; }
    int IsEmpty() const;
    void Empty();

    // A new content by the program, which the user can undo.
    int SetString(CString const& text);

    // The content by whoever keeps it elsewhere, a number say; neither shown nor
    // for undo.
    void SetRawString(CString const& text);

    // The window's text has changed.
    void OnEditChanged();

    // The window was there before the edit, with a text that becomes the content.
    void AdoptWindowText();

    // Whether it changes because blanks and refused characters go as the focus
    // leaves, which is no new value.
    int IsTrimming() const { return m_trimming; }

    int IgnoreEditChanged() const { return m_ignoreEditChanged; }
    void IgnoreEditChanged(int ignore) { m_ignoreEditChanged = ignore; }
    int IgnoreKillFocusAction() const { return m_ignoreKillFocusAction; }
    void IgnoreKillFocusAction(int ignore) { m_ignoreKillFocusAction = ignore; }

    // Puts a text and a selection into the window; it counts as a change, but not
    // for undo.
    void InternalSetWindowTextNoTrimNoUndoRedo(char const* text);

    void ShowValue();
    void OnFormatChanged();              // shows it anew, unless somebody is typing
    void ShowText(CString const& text);  // as it is; no change
    void LimitTextValue();
    void LimitTextInputValue();
    void LimitTextDisplayValue();
    int ControlOrChildHasFocus() const;

    // --- The focus and the mouse

    void OnSetFocus(bool byMnemonic = false);
    void OnKillFocus();

    // Around the platform's own handling of a press of the left button at a
    // character of what is shown. A selection that the platform has made may stay.
    void BeginLeftButton(int position);
    void EndLeftButton(bool keepsSelection = false);

    // --- Undo and redo

    void AddPreviousToUndoRedo();
    std::unique_ptr<CTovEditUndoRedoItem> CopyUndoRedoItem(CTovEditUndoRedoItem const& item) const;
    void FillUndoRedoItemWithCurrent(CTovEditUndoRedoItem& item) const;
    void RefreshUndoRedoItem();  // what undo comes back to after the next change
                                 // is the state of now
    void ForgetUndoRedo();       // the same, and nothing can be undone or redone

    // --- Operations. Without the focus nothing happens; what is refused beeps
    // and changes nothing.

    unsigned CanInsert() const;  // how many values there are to put in
    int CanUndo() const;
    int CanRedo() const;
    int CanCut() const;
    int CanCopy() const;
    int CanPaste() const;
    int CanDelete() const;
    int CanBackspace() const;
    int CanSelectAll() const;
    void Insert(unsigned index);
    void Undo();
    void Redo();
    void Cut();
    void Copy();
    void Paste();
    void Delete();
    void Backspace();
    void SelectAll();

    // A key that goes down, as VK_ number. 1: done. 0: the platform's.
    int OnKeyDown(int virtualKey);

    // Commands by id. 1: it was one of an edit.
    int DoCommand(unsigned id);
    void UpdateCommand(CCmdUI& state);

    // The spin was pressed: up for a negative delta of the platform's.
    void OnSpinNotification(int platformDelta);
    void DispatchSpinDeltapos(int up, int delta);

    // --- Values that were entered last, the newest first

    void SetLastItemsIniFile(char const* path);  // null or empty: the profile
    void SetLastItemsSection(char const* section);
    CString const& GetLastItemsSection() const { return m_lastItemsSection; }
    CString GetLastItem(unsigned index);
    std::vector<CString> GetAllLastItems();
    void AddCurrentToLastItems();
    void RemoveAllLastItems();

    // --- The context menu; points are the screen's

    // Takes the focus; (-1, -1) is the middle of the edit.
    void OnContextMenu(CPoint point);
    int ContextMenu(CWnd* window, CPoint point);

    // --- Painting and places

    void PrepareColors();  // anew when a colour has changed, the system's included
    CTovEditColors CtlColor() const;

    // The rectangle of an edit over a cell; the control's rectangle is the same.
    // Answers 1.
    int SetupInlineRect(CRect& container, CRect& control, HFONT font) const;

 private:
    struct Selection {
        int start = 0;
        int end = 0;
    };

    bool HasWindow() const;
    bool CanChange() const;  // has the focus and is not read-only
    Selection GetSel() const;
    void ChangeText(CString const& text, Selection const& selection);
    void Replace(Selection const& range, std::string_view text);
    int PreparePaste(CString& text, Selection& range, bool& loses) const;
    bool FilterInput(CString& text) const;
    void Do(eTovEditAction action, unsigned index);
    int Can(eTovEditAction action, unsigned index) const;
    void Restore(CObject* (CTovUndoRedo::*step)(CObject*), int can);
    std::unique_ptr<CTovEditUndoRedoItem> NewUndoRedoItem() const;

    CTovEditHost& m_host;
    CString m_rawString;
    int m_rawEmpty = 1;
    CString m_shown;  // what the window holds, as far as is known
    std::unique_ptr<CTovEditUndoRedoItem> m_current;
    CTovUndoRedo m_undoRedo;
    CTovLastDocuments m_lastItems{nullptr, 10};
    CString m_lastItemsFile;
    CString m_lastItemsSection;
    std::array<COLORREF, 3> m_brushes{tovPlatformColor, tovPlatformColor, tovPlatformColor};
    int m_clickPosition = -1;
    int m_leftButtonGoingDown = 0;
    int m_settingInternally = 0;
    int m_trimming = 0;
    int m_parentIsDialog = 0;
    int m_parentIsFormView = 0;
    int m_parentIsEdit = 0;
    int m_selectAllAtNextFocus = 1;
    int m_insideShowValue = 0;
    int m_ignoreEditChanged = 0;
    int m_ignoreKillFocusAction = 0;
};

// What a command id does, and what a key does with these keys down. Ctrl with
// the numbers of the small letters (F7, F9 to F11, the keypad's 1 and 3) does
// what it does with those of the capital ones.
TOV_CORE_API eTovEditAction TovEditCommandAction(unsigned id);
TOV_CORE_API eTovEditAction TovEditKeyAction(int virtualKey, bool control, bool shift, bool insert,
                                             bool hasSpin);

}  // namespace tov
