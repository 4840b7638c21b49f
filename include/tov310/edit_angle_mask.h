// The engine of edits for angles. Where the unit has three parts (12: degrees, minutes, seconds; 15: gon, c,
// cc) the edit shows a mask, and up to four child edits stand over its digits: the fields.
#pragma once

#include <tov310/edit_value.h>
#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/input_control.h>
#include <tov310/types.h>

#include <functional>
#include <vector>

namespace tov {

// How the sign is shown and typed.
enum eSignType {
    eSignPlusMinus = 0,   // in the field of degrees
    eSignNorthSouth = 1,  // as a letter in a field of its own
    eSignEastWest = 2,
};

enum eSetChildEditFocus {
    eFocusKeep = 0,   // the child that had it, or by the keys that are down
    eFocusFirst = 1,  // the first child
    eFocusLast = 2,   // the edit button, where there is one, or the last child
};

// What an angle is, which decides how large it may be.
enum eTovAngleKind {
    eTovAnglePlain = 0,      // below a whole turn
    eTovAngleLatitude = 1,   // to a quarter
    eTovAngleLongitude = 2,  // to a half
};

enum eTovAngleField {
    eTovFieldDegrees = 0,  // or gon
    eTovFieldMinutes = 1,  // or c
    eTovFieldSeconds = 2,  // or cc
    eTovFieldSign = 3,     // the letter of a hemisphere
};

// Movements of the caret through the fields as through one text.
enum eTovCaretMove {
    eTovCaretLeft,      // Left, and Backspace at the beginning of a field
    eTovCaretRight,     // Right, and Delete at the end of a field
    eTovCaretPrevious,  // to the beginning of this field, or from there of the one before: Ctrl+Left
    eTovCaretNext,      // to the beginning of the next field: Ctrl+Right
    eTovCaretHome,
    eTovCaretEnd,
};

// A field as the engine asks for it.
struct CTovAngleFieldSetup {
    eTovAngleField field = eTovFieldDegrees;
    unsigned long style = 0;  // 0x40010002 (child, tab stop, right), 0x40010000 for the letter
    CRect rect;               // in the edit, in pixels
    double minimum = 0;       // of the numbers
    double maximum = 0;
    int inputDecimals = 0;  // of the seconds
    int displayDecimals = 0;
    CString allowedChars;  // of the letter, which is converted to upper case
};

// The child edit of a field. Positions count characters (code points).
class TOV_CORE_API ITovAngleField {
 public:
    virtual CTovInputControl& InputControl() = 0;

    // The text as it is seen. What the program sets cannot be undone.
    virtual CString GetText() = 0;
    virtual void SetText(CString const& text) = 0;

    // The number; -0.0 stands for "-0" in the field of degrees.
    virtual double GetNumber() = 0;
    virtual void SetNumber(double number) = 0;

    // The same as if the user had typed it in place of all.
    virtual void TypeText(CString const& text) = 0;
    virtual void TypeNumber(double number) = 0;
    virtual void ForgetUndo() {}  // of what was typed until now
    virtual void Empty() = 0;

    virtual void SetDecimals(int input, int display) = 0;
    virtual void Move(CRect const& rect) = 0;
    virtual void Spin(int up, int delta) = 0;

    virtual bool HasFocus() = 0;
    virtual void GetSelection(int& start, int& end) = 0;
    virtual void SetSelection(int start, int end) = 0;  // -1 as the end: to the end of the text

 protected:
    ITovAngleField() = default;
    ITovAngleField(ITovAngleField const&) = default;
    ITovAngleField& operator=(ITovAngleField const&) = default;
    virtual ~ITovAngleField();
};

// What the engine needs of an angle edit beyond what it needs of every value edit.
class TOV_CORE_API CTovEditAngleHost {
 public:
    // The largest degrees or gon of the field in unit 12 or 15, and the smallest: 0, or with eSignPlusMinus
    // the negative of the largest. By default those of the kind (TovRangeDegree).
    virtual void OnRangeDegree(eSignType sign, int unit, long& minimum, long& maximum);
    virtual eTovAngleKind GetAngleKind() const;

    // Makes the child edit of a field, which stays the host's. Null where it cannot.
    virtual ITovAngleField* CreateField(CTovAngleFieldSetup const& setup) = 0;
    virtual void DestroyFields() = 0;

    virtual bool HasWindow() = 0;
    // The window text, past the gate for the user's and other programs' texts.
    virtual void SetMaskText(CString const& text) = 0;
    virtual CRect GetMaskRect() = 0;  // the client rectangle of the edit
    // How far to the right the text of the edit begins in its client rectangle.
    virtual int GetMaskIndent();
    // The width of a text in the font of the edit, in pixels.
    virtual int GetTextWidth(CString const& text) = 0;

    // The button at the right of the edit; a width of 0 is none.
    virtual int GetEditButtonWidth();
    virtual void FocusEditButton();
    // Of all that stands at the right of the edit.
    virtual int GetCompanionsWidth() { return GetEditButtonWidth(); }

    // Gives the focus to the control after or before this one.
    virtual void PostNextDlgCtl(int previous) = 0;

    // Several fields are going to change as one, and have done so: only then anybody is told.
    virtual void HoldChanges() {}
    virtual void TellChanges(bool /*byUser*/) {}

 protected:
    CTovEditAngleHost() = default;
    CTovEditAngleHost(CTovEditAngleHost const&) = default;
    CTovEditAngleHost& operator=(CTovEditAngleHost const&) = default;
    virtual ~CTovEditAngleHost();
};

TOV_CORE_API void TovRangeDegree(eTovAngleKind kind, eSignType sign, int unit, long& minimum, long& maximum);

// The edit is split while its unit is 12 or 15, SecOnly is off and it has a window. Split, its value is that
// of its fields; in one piece it is that of its number (CTovEditValueUnits). Either way what the program puts
// in comes out bit for bit until somebody types.
//
// The edit (edit_value_on.h) calls from its operations what has the same name here, OnSize when it is sized
// or its font changes, OnSetFocus when it gets the focus itself and OnFieldFocus when a child does; a child
// asks here first when a key moves the caret, a character is typed, or a text is copied or pasted.
class TOV_CORE_API CTovEditAngleMask {
 public:
    using eState = CTovInputControl::eState;

    // A whole turn as a bound: the largest but one below 2 pi, which no conversion brings to 0.
    static constexpr double wholeTurn = 6.2831853071795845;

    CTovEditAngleMask(CTovEditAngleHost& host, CTovEditValueUnits& units) : m_host(host), m_units(units) {}
    CTovEditAngleMask(CTovEditAngleMask const&) = delete;
    CTovEditAngleMask& operator=(CTovEditAngleMask const&) = delete;

    // Sign types other than by the kind are set before. Gives the edit the range of its kind and splits it
    // where it is to be split; to be called when the window is there.
    void Initialize();

    // As a new one, of an edit without a window.
    void Reset();

    // Radians.
    double GetValue();
    int SetValue(double radians);
    int SafeSetValue(double radians);
    int SetRange(double minimum, double maximum) { return m_units.SetRange(minimum, maximum); }
    void GetRange(double& minimum, double& maximum);

    // The number of the edit in the shown unit, packed where it is split.
    double GetShown();
    int SetShown(double shown, bool safe);

    // Between radians and the shown unit. With SecOnly that is seconds (units 11 to 13) or thousandths of a
    // gon (15, 16); the limit then takes off whole 360 or 400 of them, as it always has.
    double ConvertStdTo(double radians, int usePrecision, int useLimit);
    double ConvertToStd(double shown, int usePrecision, int useLimit);
    double BoundToShown(double radians);
    double BoundToStd(double shown);
    void GetUnitAbbreviationText(CString& text);

    // Changes of how the angle is shown; value, range, emptiness and the mark "changed by the user" stay.
    void SetSecOnly(int secOnly);
    int GetSecOnly() const { return m_bSecOnly; }
    void SetSignType(eSignType type);
    eSignType GetSignType() const { return m_eSignType; }
    void SetLimitToCircle(int limit) { m_bLimitToCircle = limit; }
    int GetLimitToCircle() const { return m_bLimitToCircle; }
    void SetUnit(long unit);
    // For after the settings got another unit; 0 where they have the one that is shown.
    int UnitChanged();
    // Runs the call, and lets the host tell of all that it changes as of one change, at the very end.
    template <class Call>
    auto AsOneChange(bool byUser, Call call) {
        struct Scope {
            CTovEditAngleHost& host;
            bool const byUser;
            ~Scope() { host.TellChanges(byUser); }
        };
        m_host.HoldChanges();
        Scope const scope{m_host, byUser};
        return call();
    }

    // Decimals of the number in one piece; the seconds have 5 at the most. Initially 6.
    void SetInputDecimals(int decimals);
    void SetDisplayDecimals(int decimals);

    // Splits the edit when the unit is 12 or 15. 0 where it is not or a child edit could not be made.
    int CreateAdditionalEditFields(int unit);
    void DestroyAdditionalEditFields();
    bool IsSplit() const { return !m_fields.empty(); }
    // Null for a field that is not there.
    ITovAngleField* Field(eTovAngleField field) const;
    // Whether a text may become that of the window; while it is split only its mask may.
    bool IsTextAllowed() const { return !IsSplit() || m_bSettingMask; }

    void ShowMask();  // as the text of the window

    eState InternalValidate(CString* message);
    int IsEmpty() const;  // all fields; the letter that stands there from the beginning is no content
    void Empty();
    void SetEmptyAllowed(int allowed);
    void SetReadOnlyMode(int readOnly);
    int GetChangedByUser() const;  // of any field
    void SetChangedByUser(int changed);

    // The mask of sign type and unit, and where its fields stand: empty rectangles for those that it has not.
    CString MaskText() const;
    CString FieldSign(eTovAngleField field) const;  // that stands behind it; empty for the letter's
    void GetChildRect(CRect const& client, CRect& degrees, CRect& minutes, CRect& seconds, CRect& sign);
    void OnSize();
    // What the whole mask needs, with the button and the spin.
    int GetMinEditWidth();
    int GetMinEditWidth(HFONT font);

    // The fields in their order, by index.
    int ActiveChildEdit() const { return m_active; }
    int GetChildEditFocus() const;  // of the field that has the focus; -1 for none
    void OnSetFocus();
    int FailingField() const;  // the first whose content is wrong; -1 for none
    void OnFieldFocus(int index) { m_active = index; }
    void SetChildEditFocus(eSetChildEditFocus focus);
    int FindClosestChildEdit(POINT const& point) const;
    bool IsChildEdit(CWnd const* window) const;
    void NextChildEdit() { StepChildEdit(1); }
    void PrevChildEdit() { StepChildEdit(-1); }

    // Moves the caret where it leaves the active field; 0: that field does it itself.
    int MoveCaret(eTovCaretMove move);
    // A character typed into a field that stands for another one: signs and blanks lead to the next field,
    // the letter of a hemisphere goes into its own. 0: it is the field's.
    int OnFieldChar(char32_t character);
    // Whether a typed digit goes into the active field: not beyond those of the mask, which would not be
    // seen. The seconds take any.
    bool HasRoomFor(char32_t character);

    // The whole angle as a text that Paste takes: `-12° 34' 56.78900"`. Empty while all fields are.
    CString GetWholeText();
    // The same for the value of an edit in one piece that will have fields; empty for others.
    CString GetFutureText();
    // What a copy in a field gives: a part of it that is selected, else the whole angle.
    CString TextToCopy();
    // Whether a text is an angle rather than the text of the active field alone, and puts it into all fields.
    bool CanPaste(char const* text);
    int Paste(char const* text);
    // Takes a pasted angle back from all fields, or puts it in again, while they are as they were left.
    bool CanUndoPaste() { return m_pasted.CanBeUndone() && Content().texts == m_pasted.after.texts; }
    bool CanRedoPaste() { return m_pasted.isUndone && Content().texts == m_pasted.before.texts; }
    int UndoPaste();
    int RedoPaste();
    // Reads an angle in any of the usual forms, for the unit and sign type of this edit: "12°34'56.7\"",
    // "12 34 56.7 S", "12-34-56.7", "12.5823" (degrees or gon, as the unit), "13.9803 gon", "0.2196 rad",
    // "45296.7\"", with the letters of hemispheres in English, Chinese and those of the library. 0 for what
    // is none: minutes of 60, letters of the other pair, a letter and a "-".
    int ReadAngle(char const* text, double& radians);
    // The same for an edit in one piece, as CTovEditValueHost::ReadQuantity.
    int ReadQuantity(CString& text, double& radians);

    void DispatchSpinDeltapos(int up, int delta);
    void ToggleSign();
    // The value that a spin step of the edit in one piece leads to; `wrap` as GetWrapRange, `spinDelta` as
    // GetSpinDeltaFloating, `permitted` the next of the permitted values in radians, null where there are
    // none. 0: beyond the range, where it does not wrap.
    int SpinTarget(int up, int delta, double spinDelta, int wrap, double const* permitted, double& radians);

 private:
    struct Shown {
        double fields[3] = {0, 0, 0};
        CString sign;

        bool operator==(Shown const&) const;
    };
    struct MaskSpan {
        std::size_t begin = 0;  // bytes
        std::size_t end = 0;
    };

    // All fields, with the value that they stand for where it is known.
    struct Whole {
        std::vector<CString> texts;
        bool isKnown = false;
        double value = 0;
    };
    struct Pasted {
        Whole before;
        Whole after;
        bool isUndone = false;

        bool CanBeUndone() const { return !after.texts.empty() && !isUndone; }
    };

    static constexpr int defaultDecimals = 6;

    void DropFields();
    int Put(double radians, bool safe);
    int Fill(double radians, bool safe);
    bool RoundsBeforeFields();
    void PasteFields(char const* text);
    Whole Content();
    void TypeContent(Whole const& whole);
    void SetSecondsDecimals();
    void DisplayDmsValue(int sign, int degrees, int minutes, double seconds);
    double JoinFields();
    Shown FieldsShown();
    void Rearrange(std::function<void()> const& change);
    void RearrangeFields(std::function<void()> const& change);
    void StepChildEdit(int step);
    bool FocusButtonFirst();
    void FocusField(int index, int start, int end);
    std::vector<MaskSpan> MaskSpans(CString const& mask) const;
    int MaskWidth(std::function<int(CString const&)> const& width) const;
    CString SignLetter(bool negative) const;
    int Base() const;  // of the fields: 60 or 100
    CTovUnitSettings& Settings() { return *m_units.Host().TovValue()->UnitSettings(); }

    CTovEditAngleHost& m_host;
    CTovEditValueUnits& m_units;
    bool m_bSettingMask = false;
    int m_bSecOnly = 0;
    int m_bLimitToCircle = 0;
    eSignType m_eSignType = eSignPlusMinus;
    int m_inputDecimals = defaultDecimals;
    int m_displayDecimals = defaultDecimals;
    int m_unit = 0;                         // 12 or 15 while it is split
    std::vector<ITovAngleField*> m_fields;  // by eTovAngleField
    std::vector<CRect> m_rects;
    int m_active = -1;
    bool m_buttonPassed = false;  // Shift+Tab stopped at the edit button
    bool m_bKnown = false;        // the fields still show m_dValue
    double m_dValue = 0;
    Shown m_shown;
    Pasted m_pasted;
};

}  // namespace tov
