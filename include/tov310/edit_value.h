// The engine of edits that hold a value with a unit: the user sees and types a number in the shown unit, the
// program reads and writes the standard one (value.h).
#pragma once

#include <tov310/export.h>
#include <tov310/input_control.h>
#include <tov310/types.h>
#include <tov310/value.h>

namespace tov {

// What the engine needs of a value edit, and what a host may override in one. The edit implements it.
class TOV_CORE_API CTovEditValueHost {
 public:
    // Converts from the standard to the shown unit and back, with the precision and the limit of the settings
    // where asked for. By default the value does it, which takes the number in and so normalises it.
    virtual double ConvertStdTo(double standard, int usePrecision, int useLimit);
    virtual double ConvertToStd(double shown, int usePrecision, int useLimit);

    // The same for a bound of the range, which is not normalised: a whole turn stays one.
    virtual double BoundToShown(double standard);
    virtual double BoundToStd(double shown);

    // The text that stands beside the edit; by default the abbreviation of the unit. It may be empty.
    virtual void GetUnitAbbreviationText(CString& text);

    // Writes that text into the label that was given to UnitAbbreviation. By default nothing.
    virtual void DisplayUnitAbbreviation();

    // The value of the edit. It knows the unit; its number is used for conversions only. Never null.
    virtual CTovValue* TovValue() = 0;

    virtual CTovInputControl& InputControl() = 0;

    // The number that the edit holds, in the shown unit.
    virtual double GetShownNumber() = 0;
    // Puts one in, as InternalSetDouble does: the edit is not empty and not changed by the user any more.
    virtual void SetShownNumber(double number) = 0;
    // Puts one in without a word on emptiness and change.
    virtual void SafeSetShownNumber(double number) = 0;

    // Empties the edit as it is in one piece.
    virtual void EmptyShownNumber() = 0;

    // The range in the shown unit. Setting answers 0 and changes nothing where it is refused.
    virtual void GetShownRange(double& minimum, double& maximum) = 0;
    virtual int SetShownRange(double minimum, double maximum) = 0;

    // What comes in as one text and may be a number with a unit. 1: it is one, in the standard unit. 0: it is
    // to be taken as it stands, and is without the word for the shown unit now. -1: it is neither, and would
    // be a number of something else. By default 0.
    virtual int ReadQuantity(CString& text, double& standard);

    // A number in the display format of the edit, or, where it has none, in its input format.
    virtual CString FormatNumber(double number) = 0;

 protected:
    CTovEditValueHost() = default;
    CTovEditValueHost(CTovEditValueHost const&) = default;
    CTovEditValueHost& operator=(CTovEditValueHost const&) = default;
    virtual ~CTovEditValueHost();
};

// Holds number and range of a value edit together in both units. What the program puts in, it gets back bit
// for bit, in every unit and after changes of the unit, until the user types: the shown number, which is
// rounded, is never converted back unless it came from the keyboard.
//
// The settings of a value may be shared, and their unit may change at any time. The number stays in the unit
// in which it is shown until UnitChanged or SetUnit.
class TOV_CORE_API CTovEditValueUnits {
 public:
    explicit CTovEditValueUnits(CTovEditValueHost& host) : m_host(host) {}
    CTovEditValueUnits(CTovEditValueUnits const&) = delete;
    CTovEditValueUnits& operator=(CTovEditValueUnits const&) = delete;

    // The value in the standard unit. A typed number at a bound of the range is that bound.
    double GetValue();
    // Puts a value in the standard unit in, normalised by the kind of value. 0 for one that is not finite,
    // which changes nothing. The safe form leaves the marks "empty" and "changed by the user".
    int SetValue(double standard);
    int SafeSetValue(double standard);

    // The user has changed the text: from now on the value comes from the shown number.
    void Typed();
    // Undo or redo has brought a number back; when it is the one that was shown, its value is known again.
    void Restored();

    // The range in the standard unit. A bound beyond what the kind of value can hold, as a whole turn, is
    // kept as it is given. 0, and nothing changes, where the minimum is above the maximum or the edit
    // refuses.
    int SetRange(double minimum, double maximum);
    void GetRange(double& minimum, double& maximum);
    bool HasRange() const { return m_bRangeKnown; }  // one was set here

    // The unit in which the number is shown.
    long Unit();
    // Gives the settings another unit and shows value and range in it. 0, and nothing changes, for what is no
    // unit of the kind of value.
    int SetUnit(long unit);
    // Turns a text with a unit (ReadQuantity) into the number in the shown one; empties what is none.
    void ReadInput(CString& text);
    // For after the settings got another unit. 0 where they have the one that is shown.
    int UnitChanged();

    // Whether the number lies within the range, and if not a message with the bounds and the unit.
    CTovInputControl::eState InternalValidate(double shown, CString* message);

    // Runs the call while the settings have the unit in which the number is shown.
    template <class Call>
    auto InShownUnit(Call call) {
        UnitScope const scope(*this);
        return call();
    }

    // From now on the number is shown in the unit that the settings have. The edit calls it when it is made;
    // later whoever puts value and range in again.
    void TakeUnit();
    // The same unless it is shown in a unit already.
    void HoldUnit();

    // Forgets value, range and unit, as an edit without a window does.
    void Reset();

    CTovEditValueHost& Host() { return m_host; }

 private:
    class TOV_CORE_API UnitScope {
     public:
        explicit UnitScope(CTovEditValueUnits& units);
        UnitScope(UnitScope const&) = delete;
        UnitScope& operator=(UnitScope const&) = delete;
        ~UnitScope();

     private:
        CTovUnitSettings& m_settings;
        long const m_unit;
        long const m_shownUnit;
    };

    struct Bound {
        double standard = 0;
        double shown = 0;
    };

    int Put(double standard, bool safe);
    double ToStandard(double shown);
    double BoundToStandard(double shown, Bound const& known);
    CTovUnitSettings& Settings() { return *m_host.TovValue()->UnitSettings(); }

    CTovEditValueHost& m_host;
    long m_lUnit = TOV_UNIT_NONE;  // none until the number is shown for the first time
    bool m_bShown = false;         // there is a pair of numbers
    bool m_bKnown = false;         // and the shown one still stands for the standard one
    double m_dStandard = 0;
    double m_dShown = 0;
    bool m_bRangeKnown = false;
    Bound m_minimum;
    Bound m_maximum;
};

// Reads a distance with a unit: metres and their decimal parts, feet ("ft", "fti", "'") and US survey feet
// ("fts", "US ft", "ftUS"), with answers as those of ReadQuantity. A number alone is taken as it stands.
TOV_CORE_API int TovReadDistance(CString& text, long shownUnit, double& metres);

// Whether settings of this kind can have the unit; those of other kinds can have any.
TOV_CORE_API bool TovIsUnitOf(CTovUnitSettings const& settings, long unit);

}  // namespace tov
