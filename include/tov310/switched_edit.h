// A place in a form that can become any of the other edits while the program runs, so that a table of
// settings has one control in each row, whatever is set there.
//
//   auto* const setting = new tov::CTovEditSwitched(tov::eTovSwitchedInt, this);
//   setting->SetInt(3);
//   setting->Switch(tov::eTovSwitchedLatitude);
//   setting->SetEmptyAllowed(1);
#pragma once

#include <tov310/number_edits.h>
#include <tov310/string_edits.h>
#include <tov310/value_edits.h>

#include <QPointer>

#include <memory>

namespace tov {

// A window that owns the present edit, which fills it. To the form around it is one control, with one number;
// all that the contract of input controls has is answered by the present edit, which is made when it is
// needed first.
class TOV_UI_API CTovEditSwitched : public CWndOn<QWidget, CWnd>, public CTovInputControl {
    Q_OBJECT
    TOV_DYNCREATE(CTovEditSwitched, CWnd)
 public:
    using eType = eTovSwitchedType;
    using CTovInputControl::operator=;
    using CTovInputControl::SetString;

    explicit CTovEditSwitched(QWidget* parent = nullptr) : CTovEditSwitched(eTovSwitchedString, parent) {}
    explicit CTovEditSwitched(eType type, QWidget* parent = nullptr);
    ~CTovEditSwitched() override;

    // Puts it into the parent; the bits of the style are those of CreateInline. 1, or 0 without a parent.
    int Create(unsigned long style, CRect const& rect, CWnd* parent, unsigned int id);

    // Becomes another edit, at the same place, with the same number, hooked to the same container. The value
    // is lost; whether it may be empty or changed stays, and so does the focus. With the present type nothing
    // happens. 1, or 0 for a type that is none.
    virtual int Switch(eType type);
    eType GetType() const { return m_type; }

    // The present edit, which belongs to this window until it is switched, and it as a number; null where it
    // is none. Values with units are floating numbers.
    CTovEdit& GetEdit() const;
    CTovEditInteger* GetEditInteger() const { return dynamic_cast<CTovEditInteger*>(&GetEdit()); }
    CTovEditFloating* GetEditFloating() const { return dynamic_cast<CTovEditFloating*>(&GetEdit()); }

    // Shows the unit of the present edit, also after a switch, in this control of the parent. What has no
    // unit empties it.
    virtual void UnitAbbreviation(unsigned id);

    // --- The contract of input controls

    CWnd* GetWnd() override { return this; }
    int ResetAttributes() override;
    int SetupInlineRect(CRect& container, CRect& control, HFONT font, unsigned long align) override;
    int CreateInline(unsigned long style, CRect const& rect, CWnd* parent, unsigned int id,
                     HFONT font) override;
    CString GetRawString() override { return GetEdit().GetRawString(); }
    CString GetString() override { return GetEdit().GetString(); }
    CString GetStringTrimmed() override { return GetEdit().GetStringTrimmed(); }
    int SetString(CString const& text) override { return GetEdit().SetString(text); }
    short GetShort() override { return GetEdit().GetShort(); }
    int SetShort(short value) override { return GetEdit().SetShort(value); }
    unsigned short GetUshort() override { return GetEdit().GetUshort(); }
    int SetUshort(unsigned short value) override { return GetEdit().SetUshort(value); }
    long GetLong() override { return GetEdit().GetLong(); }
    int SetLong(long value) override { return GetEdit().SetLong(value); }
    unsigned long GetUlong() override { return GetEdit().GetUlong(); }
    int SetUlong(unsigned long value) override { return GetEdit().SetUlong(value); }
    int GetInt() override { return GetEdit().GetInt(); }
    int SetInt(int value) override { return GetEdit().SetInt(value); }
    unsigned int GetUint() override { return GetEdit().GetUint(); }
    int SetUint(unsigned int value) override { return GetEdit().SetUint(value); }
    float GetFloat() override { return GetEdit().GetFloat(); }
    int SetFloat(float value) override { return GetEdit().SetFloat(value); }
    double GetDouble() override { return GetEdit().GetDouble(); }
    int SetDouble(double value) override { return GetEdit().SetDouble(value); }
    int IsEmpty() override { return GetEdit().IsEmpty(); }
    int GetEmptyAllowed() const override { return GetEdit().GetEmptyAllowed(); }
    int SetEmptyAllowed(int allowed) override { return GetEdit().SetEmptyAllowed(allowed); }
    int GetReadOnlyMode() const override { return GetEdit().GetReadOnlyMode(); }
    int SetReadOnlyMode(int readOnly) override { return GetEdit().SetReadOnlyMode(readOnly); }
    int GetChangedByUser() const override { return GetEdit().GetChangedByUser(); }
    void SetChangedByUser(int changed) override { GetEdit().SetChangedByUser(changed); }
    int GetMinWidth() const override { return GetEdit().GetMinWidth(); }
    eState OnValidate(CString* message) override { return GetEdit().OnValidate(message); }
    void OnEmptyChanged() override;

    // --- The window

    CString GetWindowText() const override { return GetEdit().GetWindowText(); }
    void SetWindowText(char const* text) override { GetEdit().SetWindowText(text); }
    int SubclassDlgItem(unsigned id, CWnd* parent) override { return SubclassDlgItemIntern(id, parent); }
    QSize sizeHint() const override { return GetEdit().sizeHint(); }
    QSize minimumSizeHint() const override { return GetEdit().minimumSizeHint(); }

 Q_SIGNALS:
    // Those of the present edit (edit.h).
    void emptyChanged(bool empty);
    void validityChanged(int state, QString const& message);
    void editingDone();
    void valueChanged(double value);

 protected:
    // Makes the edit of a type, without a parent. A host that wants another one, say with units of its own,
    // overrides it.
    virtual std::unique_ptr<CTovEdit> CreateEditField(eType type);

    // Ends the present edit and its window, or only lets go of it: it stays where it is, as a child of this
    // window. The next one is made when it is needed.
    virtual void DestroyEditFields();
    virtual void DetachEditFields();

    // Takes the place of a control of the parent.
    virtual int SubclassDlgItemIntern(unsigned id, CWnd* parent);

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    void PreSubclassWindow() override;
    void resizeEvent(QResizeEvent* event) override;
    bool focusNextPrevChild(bool next) override;

 private:
    CTovEdit& MakeEdit(int emptyAllowed);
    void BeBorn(CTovEdit& edit);
    void ShowUnit();

    eType m_type;
    QPointer<CTovEdit> m_edit;  // a child
    HWND m_unitLabel;
};

}  // namespace tov
