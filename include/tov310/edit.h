// The line of text that all edits of the library are.
//
//   auto* const name = new tov::CTovEdit(this);
//   name->SetMaxChars(20);
//   name->SetConversion(tov::tovConvertToUpper);
//   connect(name, &tov::CTovEdit::validityChanged, ...);
//
// What comes in, by keys, paste, drop or an input method, passes one filter; undo remembers selections; the
// values that were entered last stand in the context menu; without the focus another text may be shown than
// with it. To its right, within its rectangle, an edit can have a spin and a button. edit_host.h says what
// may be overridden, edit_text.h what it does.
#pragma once

#include <tov310/controls.h>
#include <tov310/edit_host.h>
#include <tov310/edit_text.h>
#include <tov310/input_control.h>
#include <tov310/wnd_on.h>

#include <QLineEdit>
#include <QPalette>
#include <QPointer>
#include <QPushButton>
#include <QString>

#include <memory>

namespace tov {

class CTovEditButton;
class CTovEditSpin;

class TOV_UI_API CTovEdit : public CWndOn<QLineEdit, CEdit>, public CTovInputControl, public CTovEditHost {
    Q_OBJECT
    TOV_DYNCREATE(CTovEdit, CEdit)
 public:
    explicit CTovEdit(QWidget* parent = nullptr);
    ~CTovEdit() override;

    using CTovInputControl::operator=;

    // --- The contract of input controls

    CWnd* GetWnd() override { return this; }
    int ResetAttributes() override { return m_text.ResetAttributes(); }
    int SetupInlineRect(CRect& container, CRect& control, HFONT font, unsigned long align) override;
    int CreateInline(unsigned long style, CRect const& rect, CWnd* parent, unsigned int id,
                     HFONT font) override;
    void UnhookControl() override;
    CString GetRawString() override { return m_text.GetRawString(); }
    int IsEmpty() override { return m_text.IsEmpty(); }
    int SetReadOnlyMode(int readOnly) override;
    int GetMinWidth() const override { return m_text.companions.MinWidth(); }
    void GetWindowBoundingRect(CRect* rect) override;
    eState OnValidate(CString* message) override;
    void OnEmptyChanged() override;

    // --- The companions. Creating answers 1, also where there is one.

    int CreateEditButton(char const* text) override;
    void DeleteEditButton() override;
    int CreateSpinButton() override;
    void DeleteSpinButton() override;
    CTovEditButton* GetEditButton() const;  // null for none; the edit's
    CTovEditSpin* GetEditSpin() const;

    void Undo() override;
    void Redo() override;
    void DispatchSpinDeltapos(int up, int delta) override;

    // Whether an event of its own is under way, as while the user types.
    bool IsAtWork() const { return m_eventsUnderWay > 0; }

    // As if it had been typed, but by the program.
    void setText(QString const& text);

 Q_SIGNALS:
    // All four come as the last of what a key or a call does: whoever is told may delete the edit. In what
    // the toolkit tells by itself, such as textChanged(), that takes deleteLater().

    // It has become wrongly empty, or is so no longer.
    void emptyChanged(bool empty);
    // What a validation finds now, a CTovInputControl::eState, and the words for it. Told when it is another
    // than before, after every change and when the focus leaves.
    void validityChanged(int state, QString const& message);
    // The focus has left, and the user had changed something since it came.
    void editingDone();
    // A number is another, by the user or by the program; in the standard unit where there is one.
    void valueChanged(double value);

 protected:
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    void PreSubclassWindow() override;
    CTovCommandTable const* GetCommandTable() const override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

    // The user has changed something that stands in the edit, and the focus has left it with all that does.
    void NoteChange() { m_changedSinceFocus = true; }
    void ForgetChange() { m_changedSinceFocus = false; }
    void TellDone();

    // Between the two nothing is told; then once, as the last thing that is done, since whoever is told may
    // delete the edit. They may be nested.
    void HoldChanges() { ++m_held; }
    void TellChanges(bool byUser);
    bool IsHolding() const { return m_held > 0; }
    // What the user puts in by one event is held until the toolkit is done with the event.
    virtual void BeginInput();
    virtual void EndInput();
    // Whether changes are held for more than such events.
    bool IsChanging() const { return m_held > m_inputsUnderWay; }
    // Calls OnContentChanged, now or at the end.
    void TellContent();
    // Tells valueChanged where the number, or whether there is one, is not what was told last.
    void TellValue(double value);
    // Tells emptyChanged and the container where it is not what was told last.
    void TellEmpty();

    // Whether the text may be that of the window; another one does not stay there.
    virtual bool IsTextAllowed(CString const& /*text*/) { return true; }
    virtual void PutAllowedText() {}

    // What it is painted with where no colour is set.
    virtual QPalette UsualPalette() const { return m_hostPalette; }

    bool IsOfCompanion(QPoint const& place) const;  // in the edit's pixels

    // Ends an edit that is part of another one: it is seen no more, and goes when nothing of it is under way.
    static void EndSoon(std::unique_ptr<CTovEdit> edit);

    // What changes with the content: validity, and in derived classes the value.
    virtual void OnContentChanged();

    // --- What the engine asks of the toolkit

    CTovInputControl& InputControl() override { return *this; }
    CString GetEditText() override;
    void SetEditText(CString const& text) override;
    void GetEditSel(int& start, int& end) override;
    void SetEditSel(int start, int end) override;
    void LimitEditText(unsigned most) override;
    void ApplyReadOnly(int readOnly, int enabled) override;
    void EnableCompanions(int enable) override;
    void TellEditChanged(unsigned) override { OnTextChanged(); }
    int ReadClipboard(CString& text) override;
    int WriteClipboard(CString const& text) override;
    void Beep() override;
    void PrepareColors() override;

 private:
    class Gate;
    friend class CTovEditSwitched;

    void OnEditCommand(unsigned id) { m_text.DoCommand(id); }
    void OnUpdateEditCommand(CCmdUI* state) { m_text.UpdateCommand(*state); }
    void OnTextChanged();
    void GainFocus(LRESULT& result, WPARAM wParam, LPARAM lParam);
    void ApplyColors();
    void PlaceCompanions();
    void TellValidity();
    int CharacterAt(QPoint const& place) const;

    CTovEditText m_text{*this};
    QPointer<CTovEditButton> m_button;  // its children
    QPointer<CTovEditSpin> m_spin;
    int m_companionMargin = 0;  // what they take of the text's room
    int m_lastState = eStateValid;
    int m_held = 0;
    int m_eventsUnderWay = 0;
    int m_inputsUnderWay = 0;
    bool m_contentHeld = false;  // to be told at the end
    bool m_emptyHeld = false;
    int m_lastEmpty = 0;  // as it was told
    double m_lastValue = 0;
    bool m_lastHadValue = false;
    QString m_lastWords;
    QString m_hostDescription;
    QPalette m_hostPalette;
    CTovEditColors m_painted;
    bool m_paintsOwnColors = false;
    bool m_disabledByReadOnly = false;
    bool m_changedSinceFocus = false;
    bool m_pressGivesFocus = false;
    bool m_isApplyingColors = false;
};

// The push button at the right of an edit; it never becomes the default button of a dialog.
class TOV_UI_API CTovEditButton : public CWndOn<QPushButton, CButton> {
    Q_OBJECT
    TOV_DYNAMIC(CTovEditButton, CButton)
 public:
    CTovEditButton(CTovEdit& edit, QString const& text);
};

// The two arrows at the right of an edit. They step once for a press, again while it lasts, and for the
// wheel.
class TOV_UI_API CTovEditSpin : public CWndOn<QWidget, CSpinButtonCtrl> {
    Q_OBJECT
    TOV_DYNAMIC(CTovEditSpin, CSpinButtonCtrl)
 public:
    explicit CTovEditSpin(CTovEdit& edit);
    int WidthOf(int height) const;  // as the style wants it

 protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

 private:
    void Step(bool up);
    void Stop();

    CTovEdit& m_edit;
    int m_timer = 0;
    int m_pressed = 0;  // 1 up, -1 down, 0 none
    int m_wheel = 0;    // what is left of a notch
};

}  // namespace tov
