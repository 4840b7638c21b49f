// The contract of every control that takes data: typed get and set, may it be empty, may it be changed, has
// the user changed it, and is what it holds right. A control is a window class plus this mix-in.
//
// The container around it (input_control_container.h) keeps the focus on a control whose content is wrong.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/system.h>
#include <tov310/types.h>
#include <tov310/window.h>

#include <memory>

namespace tov {

class TOV_CORE_API CTovInputControl {
 public:
    // What a validation finds; also the answer to WM_TOV_INPUT_CONTROL_VALIDATE.
    enum eState {
        eStateValid = 0,    // or exempt from validation
        eStateEmpty = 1,    // empty, which is not allowed; the container has the text for that
        eStateInvalid = 2,  // wrong, and the control has given its own text
    };

    CTovInputControl();
    CTovInputControl(CTovInputControl const&) = delete;
    CTovInputControl& operator=(CTovInputControl const&) = delete;
    virtual ~CTovInputControl();

    // Forgets that it may be empty and that it is read-only. 0, and nothing happens, while it is hooked.
    virtual int ResetAttributes();

    // For editors within a cell; controls that can be one override them. 0: this one cannot.
    virtual int SetupInlineRect(CRect& container, CRect& control, HFONT font, unsigned long align);
    virtual int CreateInline(unsigned long style, CRect const& rect, CWnd* parent, unsigned int id,
                             HFONT font);

    // Begins to answer the container: hooks the window of GetWnd, and makes its parent the container.
    virtual void HookControl();
    virtual void UnhookControl();

    // The content as text: as it stands, in the control's own form, and that without white space at the ends.
    virtual CString GetRawString();
    virtual CString GetString();
    virtual CString GetStringTrimmed();

    // Setters answer 1, or 0 where the control has no such form or does not take the value. Getters answer 0
    // where it has none.
    virtual int SetString(char const* text);
    virtual int SetString(CString const& text);
    virtual short GetShort();
    virtual int SetShort(short value);
    virtual unsigned short GetUshort();
    virtual int SetUshort(unsigned short value);
    virtual long GetLong();
    virtual int SetLong(long value);
    virtual unsigned long GetUlong();
    virtual int SetUlong(unsigned long value);
    virtual int GetInt();
    virtual int SetInt(int value);
    virtual unsigned int GetUint();
    virtual int SetUint(unsigned int value);
    virtual float GetFloat();
    virtual int SetFloat(float value);
    virtual double GetDouble();
    virtual int SetDouble(double value);

    virtual int IsEmpty() = 0;
    virtual int GetEmptyAllowed() const;
    virtual int SetEmptyAllowed(int allowed);  // answers 1
    virtual int GetReadOnlyMode() const;
    virtual int SetReadOnlyMode(int readOnly) = 0;  // overrides call this one, which answers 1
    virtual int GetChangedByUser() const;
    virtual void SetChangedByUser(int changed);

    // The window that is told what happens here; not owned. Null for none and for one that is gone.
    virtual CWnd* GetContainer() const;
    virtual void SetContainer(CWnd* container);

    virtual int GetMinWidth() const;                  // pixels
    virtual void GetWindowBoundingRect(CRect* rect);  // of the screen; stays as it is without a window
    virtual eState OnValidate(CString* message) = 0;  // `message` may be null; only eStateInvalid sets it
    virtual int OnValidateEmpty();                    // whether it is empty and must not be
    virtual int ValidateIgnore();                     // read-only, hidden, or without a window
    virtual void SetFocusInputControl();
    virtual CWnd* GetWnd() = 0;     // the window of the control
    virtual void OnEmptyChanged();  // tells the container whether it is wrongly empty

    // Tell the container of windows in this control: one that was added, one to hook, one to unhook.
    virtual void OnDlgCtrlChildAdded(HWND child);
    virtual void OnHookDlgCtrl(HWND window);
    virtual void OnUnhookDlgCtrl(HWND window);

    // The room that an editor in a cell needs for a text in the font: height and unit of width (both the
    // height of the text and 4 pixels more) and width.
    virtual void GetInlineDimensions(long& height, long& width, long& charUnit, HFONT font, char const* text);

    // How far an editor that is higher than its cell is moved up to stay centred on it, in pixels.
    virtual long GetInlineMoveUp(long cellHeight, long controlHeight);

    // Tells the owner of an editor in a cell that the control shows a dialog, so losing the focus is no end.
    virtual void SetInlineControlContainerDialogBoxPending(int pending);

    // What the container asks. A control that is exempt is valid and not empty.
    eState Validate(CString* message);
    int ValidateEmpty();

    int IsInline() const { return m_bInline; }
    void IsInline(int isInline) { m_bInline = isInline; }
    CWnd* GetSafeWnd() { return GetWnd(); }

    // By the setter and the getter of the type. A control says `using CTovInputControl::operator=`.
    CTovInputControl& operator=(CString const& text);
    CTovInputControl& operator=(char const* text);
    CTovInputControl& operator=(short value);
    CTovInputControl& operator=(unsigned short value);
    CTovInputControl& operator=(long value);
    CTovInputControl& operator=(unsigned long value);
    CTovInputControl& operator=(int value);
    CTovInputControl& operator=(unsigned int value);
    CTovInputControl& operator=(float value);
    CTovInputControl& operator=(double value);
    CTovInputControl& operator=(char) = delete;
    CTovInputControl& operator=(bool) = delete;
    CTovInputControl& operator=(std::nullptr_t) = delete;
    operator CString() { return GetString(); }
    operator short() { return GetShort(); }
    operator unsigned short() { return GetUshort(); }
    operator long() { return GetLong(); }
    operator unsigned long() { return GetUlong(); }
    operator int() { return GetInt(); }
    operator unsigned int() { return GetUint(); }
    operator float() { return GetFloat(); }
    operator double() { return GetDouble(); }

    // While it lives, changes do not count as the user's.
    class TOV_CORE_API CTovKeepChangedByUserStatus {
     public:
        explicit CTovKeepChangedByUserStatus(CTovInputControl& control);
        CTovKeepChangedByUserStatus(CTovKeepChangedByUserStatus const&) = delete;
        CTovKeepChangedByUserStatus& operator=(CTovKeepChangedByUserStatus const&) = delete;
        ~CTovKeepChangedByUserStatus();

     private:
        CTovInputControl& m_control;
        int const m_changed;
    };

    // Stands around whatever may make the control empty or fill it: at the end of the outermost one the
    // container is told, if what ValidateEmpty answers is not what it was at the beginning. The control must
    // outlive it as long as its window lives.
    class TOV_CORE_API CTovNotifyEmptyChanged {
     public:
        explicit CTovNotifyEmptyChanged(CTovInputControl& control);
        CTovNotifyEmptyChanged(CTovNotifyEmptyChanged const&) = delete;
        CTovNotifyEmptyChanged& operator=(CTovNotifyEmptyChanged const&) = delete;
        virtual ~CTovNotifyEmptyChanged();

     private:
        CTovInputControl& m_control;
        HWND m_window;
        int m_wasEmpty;
    };

 private:
    class CTovSubclassControl;

    int SetAttribute(int& attribute, int value);
    void TellContainer(unsigned message, HWND window);

    int m_bInline = 0;
    int m_bEmptyAllowed = 0;
    int m_bReadOnlyMode = 0;
    int m_bChangedByUser = 0;
    int m_bContainerIsParent = 0;  // whichever that is
    HWND m_container;
    std::unique_ptr<CTovSubclassControl> const m_SubclassControl;
};

}  // namespace tov
