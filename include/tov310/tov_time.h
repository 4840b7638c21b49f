// Times and spans to a fraction of a second, and the format in which an application shows them.
#pragma once

#include <tov310/export.h>
#include <tov310/object.h>
#include <tov310/resources.h>
#include <tov310/time_types.h>
#include <tov310/types.h>

#include <compare>
#include <cstdint>

namespace tov {

class CWnd;

// One of the 32 date and time layouts, a number from 0 to 31 made of these parts, one of each row:
//
//   month before day          day before month
//   24-hour clock             12-hour clock with AM or PM
//   year with four digits     year with two
//   between them "/"          "-", "." or a name for the month: "21. Nov 2026", with the day first
//                             "21-Nov-2026"
//
// So eTimeFormatDots | eTimeFormatDayFirst is "%d.%m.%Y %H:%M:%S".
enum eTimeFormat : unsigned {
    eTimeFormatSlashes = 0,
    eTimeFormatDayFirst = 1,
    eTimeFormat12Hours = 2,
    eTimeFormatShortYear = 4,
    eTimeFormatDashes = 8,
    eTimeFormatDots = 16,
    eTimeFormatMonthName = 24,
};
constexpr eTimeFormat operator|(eTimeFormat a, eTimeFormat b) {
    return static_cast<eTimeFormat>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

inline constexpr unsigned tovTimeFormatCount = 32;

// A point in time: whole seconds in the CTime base, a fraction of a second, and a time zone in hours.
//
// Its modified Julian date (MJD: days since 17 November 1858, 00:00) is that of its local clock reading. A
// MJD in a double resolves 0.6 microseconds; what comes within that of a whole or half second is that.
// Setting takes moments from MinCTime to MaxCTime of CTovTimeHelper (2 January 1970 to 18 January 2030);
// others leave the object as it is.
//
// What prints takes a round flag, a value of CTovTimeHelper::eRoundFlag, with 0x80 added to cut the fields
// that were rounded off; eRoundNot does not round. Formats are those of CTime::Format. The current format is
// one for the process and may be asked for from any thread; changing it is for the user-interface thread.
class TOV_CORE_API CTovTime : public CObject, public CTime {
    TOV_DYNCREATE(CTovTime, CObject)
 public:
    class CTimeFormatComboBox;

    // All begin with the fraction 0 and the system's zone. The flag tells whether daylight saving time is in
    // force, as in mktime: 1 yes, 0 no, -1 as the zone's rules say. What cannot be taken leaves the time 0.
    CTovTime();  // now, to the second
    CTovTime(CTime const& time);
    explicit CTovTime(std::int64_t seconds);  // since 1 January 1970 UTC
    explicit CTovTime(int seconds) : CTovTime(std::int64_t{seconds}) {}
    CTovTime(int year, int month, int day, int hour, int minute, int second, int isDst = -1);
    // Packed as in a directory of the FAT file system: 2-second steps since 1980, local time.
    CTovTime(unsigned short dosDate, unsigned short dosTime, int isDst = -1);
    CTovTime(SYSTEMTIME const& time, int isDst = -1);      // local; the milliseconds are dropped
    CTovTime(FILETIME const& time, int isDst = -1);        // UTC; what is below the second is dropped
    CTovTime(CString const& text, CString const& format);  // as ScanTime reads it
    CTovTime(int gpsWeek, double seconds);                 // as SetGpsTime takes it
    explicit CTovTime(double mjd);

    CTovTime(CTovTime const&) = default;
    CTovTime& operator=(CTovTime const&) = default;
    CTovTime& operator=(CTime const& time);  // fraction 0; keeps the zone
    CTovTime& operator=(double const& mjd);  // as Mjd
    operator double() const;                 // the MJD

    // By MjdUTC, with the tolerance of TovCompare: what is equal is neither less nor greater.
    friend bool operator==(CTovTime const& a, CTovTime const& b) { return Compare(a, b) == 0; }
    friend bool operator==(CTovTime const& a, CTime const& b) { return Compare(a, CTovTime(b)) == 0; }
    friend std::weak_ordering operator<=>(CTovTime const& a, CTovTime const& b) {
        return Compare(a, b) <=> 0;
    }
    friend std::weak_ordering operator<=>(CTovTime const& a, CTime const& b) {
        return Compare(a, CTovTime(b)) <=> 0;
    }

    // The part below the second, 0 <= f < 1 s; the same in milliseconds. Setting ignores what is outside.
    double GetFracSecond() const { return m_dFracSecond; }
    double GetMilliSeconds() const { return m_dFracSecond * 1000.0; }
    void SetFracSecond(double fraction) {
        if (fraction >= 0 && fraction < 1) m_dFracSecond = fraction;
    }

    // The zone in hours. MjdUTC and FormatUTC add it to the local time to get UTC, so a zone given here for
    // them counts west as positive, unlike that of the system.
    double Timezone() const { return m_dTimezone; }
    void Timezone(double hours) { m_dTimezone = hours; }

    // The system's zone as it was at the first use, in hours or days (MJD), east positive; with the flag not
    // 0 the daylight saving time of that moment is added. A zone of less than one hour east comes out
    // negative.
    static double SystemTimezone(int includeDaylight);
    static double SystemTimezoneMjd(int includeDaylight);
    // 1 hour while daylight saving time is in force at the first use, else 0.
    static double SystemDaylight();
    static double SystemDaylightMjd();
    // The present state of both, in hours.
    static double LocalTimeZone(double& daylight);

    void Mjd(double mjd);
    // For moments finer than a MJD in one number: the day and its fraction. The part below the second is
    // rounded to a multiple of the divisor, 0 < divisor <= 1 s. `second` is the second of the minute with
    // that part.
    void Mjd(unsigned long day, double fraction, double secondDivisor, double& second);

    // The MJD of a date in the Gregorian calendar, years 1 to 9999 (also before 1582); fields that are too
    // large or too small carry. The second form gives it in two parts, which hold nanoseconds; before 17
    // November 1858 the whole day is 0 and the fraction negative.
    static double Mjd(int year, int month, int day, int hour, int minute, double second);
    static double Mjd(int year, int month, int day, int hour, int minute, double second,
                      unsigned long& wholeDay, double& dayFraction);

    // MJD + Timezone / 24; 0 for a time that has no local reading. Setting takes the zone off. Give the object
    // its zone first, west positive: the one that it begins with is east positive and without daylight saving
    // time. UTC whatever the zone says is that of the seconds: 40587.0 + GetTime() / 86400.0 (+ fraction).
    double MjdUTC() const;
    void MjdUTC(double mjd);

    // The MJD of the local clock now, to the second; less SystemTimezoneMjd.
    static double CurrentTime();
    static double CurrentTimeUTC(int includeDaylight);

    // GPS time: weeks since 6 January 1980 (MJD 44244) and seconds of the week. No leap seconds are applied:
    // see CTovTimeHelper::GetLeapSeconds. Both setters answer the MJD.
    double SetGpsTime(int week, double seconds);
    static double GpsTime(int week, double seconds);
    // Answers 1; 0 before the epoch, where the week is negative. 0 <= seconds < 604800.
    int GetGpsTime(int& week, double& seconds) const;

    // File stamps are numbers YYMMDD.hhmmss. The first form gives the MJD, with years below 50 in 2000, up to
    // 99 in 1900, and others as they stand; it is exact to 1 ms (10 ms for years from 100 on). The second
    // stores, with years below 71 in 2000 and all others in 1900. Both answer the MJD; a number below 0,
    // of 10^8 or more, or not finite gives 0.
    static double CduFilestamp(double stamp);
    double SetCduFilestamp(double stamp);

    // Texts in the current format, in another one, or in one from a resource module (null for the current).
    CString Format(int round = 0) const;
    CString Format(char const* format, int round = 0) const;
    CString Format(CString const& format, int round = 0) const { return Format(format.c_str(), round); }
    CString Format(eTimeFormat format, int round = 0) const;
    CString Format(HINSTANCE module, unsigned int id, int round = 0) const;
    CString FormatDate(int round = 0) const;
    CString FormatTime(int round = 0) const;

    // The same of the local reading plus Timezone (see MjdUTC; FormatGmt prints UTC whatever the zone says), or plus the hours, to the second. Hours that lead to no
    // date count as 0.
    CString FormatUTC(int round = 0) const;
    CString FormatUTC(char const* format, int round = 0) const;
    CString FormatUTC(CString const& format, int round = 0) const { return FormatUTC(format.c_str(), round); }
    CString FormatUTC(eTimeFormat format, int round = 0) const;
    CString FormatUTC(double hours, int round = 0) const;
    CString FormatDateUTC(int round = 0) const;
    CString FormatDateUTC(double hours, int round = 0) const;
    CString FormatTimeUTC(int round = 0) const;
    CString FormatTimeUTC(double hours, int round = 0) const;

    // The fraction from its point on: ".5" to a tenth, ".25" to a hundredth, else ".125". What would print as
    // a whole second stays below it; to a microsecond the three decimals are cut, not rounded.
    CString FormatFracSec(int round = 0) const;

    // Rounds the object and answers its new MJD.
    double Round(int round);

    // Reads a text. The format tells, by its codes alone, what is to be read one after the other; what else
    // it holds does not count.
    //
    //   %d %m %Y    day, month, year; %y is a year in two digits, above 70 in 1900
    //   %H %I %M %S hour, hour, minute, second
    //   %s %D       second and day with decimals; those of the day are the time
    //   %j          day, of the year where no month is read
    //   %b %B       name of a month, in English or the LC_TIME locale
    //   %p          AM or PM, in English or the locale: PM takes 12 hours on before noon, "12 AM" stays 12
    //
    // A flag "#" and other codes do not count. Behind a field everything is skipped up to the next digit or
    // capital A, P or M (behind %s and %D also "."), where the next one is read. A number must stand there,
    // or at the text's begin behind blanks: a word before the first number, or a capital A, P or M before a
    // later one, stops all numbers until a name is read. Names of months and %p skip to where they find a
    // word.
    //
    // A code that finds nothing to read is passed over; the text's end ends the reading. What is not read is
    // 1 January 2000, 00:00:00, so that a text without any field is that moment. Takes local time of the
    // years 100 to 9999 and answers its MJD. An impossible date or clock time answers 0 and leaves the
    // object.
    double ScanTime(CString const& text, CString const& format);

    // The current format: the one in the profile, at first, or eTimeFormatSlashes where that holds none.
    static CString CurrentTimeFormat();
    static unsigned int CurrentTimeFormatIndex();

    // The text of one of the 32, in the form of CTime::Format; empty for other numbers.
    static char const* TimeFormat(eTimeFormat format);

    // What stands between the fields of a date in the current format: '/', '-', '.' or ' '.
    static char DateSeparator();
    // 1 where the current format has the month first, or by name; 0 where it has the day first.
    int DateOrder() const;

    // At the start of an application: makes the stored format current or, where there is none, stores the
    // given one and makes that current. Others than the 32 do nothing.
    static void DefaultSettings(eTimeFormat format);
    // Makes the format current and stores it.
    static void SaveSettings(eTimeFormat format);

    // Fills the box with the present time in each of the 32 formats, reads the current format afresh and
    // selects it.
    void InitializeTimeFormatComboBox(CTimeFormatComboBox& box) const;
    // What is selected; 0 where nothing is.
    unsigned int GetCurrentSelection(CTimeFormatComboBox const& box) const;
    // Makes what is selected current and stores it. Where that is a change, all windows below `root` (null
    // for none) are sent WM_TOV_FORMAT_CHANGED_TIME with the old index and the new one before this returns.
    void SaveCurrentSelection(CTimeFormatComboBox const& box, CWnd* root) const;

 private:
    static int Compare(CTovTime const& a, CTovTime const& b);
    CTovTime InZone(double hours) const;

    double m_dFracSecond = 0;
    double m_dTimezone;
};

// A list of texts of which one is selected, as the format's box needs it.
class TOV_CORE_API CTovTime::CTimeFormatComboBox {
 public:
    virtual ~CTimeFormatComboBox();
    virtual void ResetContent() = 0;              // takes all items out
    virtual int AddString(char const* text) = 0;  // answers the item's index
    virtual int SetCurSel(int index) = 0;
    virtual int GetCurSel() const = 0;  // -1 for none
};

// A duration: whole seconds in the CTimeSpan base and a fraction of a second.
class TOV_CORE_API CTovTimeSpan : public CObject, public CTimeSpan {
    TOV_DYNCREATE(CTovTimeSpan, CObject)
 public:
    CTovTimeSpan() = default;
    CTovTimeSpan(CTimeSpan const& span) : CTimeSpan(span) {}
    explicit CTovTimeSpan(std::int64_t seconds);
    explicit CTovTimeSpan(int seconds) : CTovTimeSpan(std::int64_t{seconds}) {}
    CTovTimeSpan(long days, int hours, int minutes, int seconds);
    explicit CTovTimeSpan(double days);
    CTovTimeSpan(int gpsWeeks, double const& seconds);

    CTovTimeSpan(CTovTimeSpan const&) = default;
    CTovTimeSpan& operator=(CTovTimeSpan const&) = default;
    CTovTimeSpan& operator=(CTimeSpan const& span);
    operator double() const;  // in days

    // By their days, with the tolerance of TovCompare.
    friend bool operator==(CTovTimeSpan const& a, CTovTimeSpan const& b) { return Compare(a, b) == 0; }
    friend bool operator==(CTovTimeSpan const& a, CTimeSpan const& b) { return a == CTovTimeSpan(b); }
    friend std::weak_ordering operator<=>(CTovTimeSpan const& a, CTovTimeSpan const& b) {
        return Compare(a, b) <=> 0;
    }
    friend std::weak_ordering operator<=>(CTovTimeSpan const& a, CTimeSpan const& b) {
        return a <=> CTovTimeSpan(b);
    }

    // The part below the second, with the sign of the span: -1 < f < 1 s. Setting ignores what is outside,
    // and a sign against that of the seconds.
    double GetFracSecond() const { return m_dFracSecond; }
    void SetFracSecond(double fraction) {
        bool const isAgainst = GetTimeSpan() > 0 ? fraction < 0 : GetTimeSpan() < 0 && fraction > 0;
        if (fraction > -1 && fraction < 1 && !isAgainst) m_dFracSecond = fraction;
    }

    // Of either sign; beyond 10^14 days nothing is set.
    void Mjd(double mjd);

    // Weeks and seconds of the week.
    void SetGpsTimeSpan(int week, double const& seconds);
    // Answers 1; 0, and zeros, for more weeks than an int counts.
    int GetGpsTimeSpan(int& week, double& seconds) const;

    // Rounds the object and answers its days.
    double Round(int round);

    // Formats are those of CTimeSpan::Format; "%H" and "%h" are the hours of the day beside "%D", else all.
    CString Format(char const* format, int round = 0) const;
    CString Format(CString const& format, int round = 0) const { return Format(format.c_str(), round); }
    CString Format(HINSTANCE module, unsigned int id, int round = 0) const;

 private:
    static int Compare(CTovTimeSpan const& a, CTovTimeSpan const& b);

    double m_dFracSecond = 0;
};

}  // namespace tov
