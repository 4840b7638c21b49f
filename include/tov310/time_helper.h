// Date arithmetic for the three kinds of times, CTime, COleDateTime and CTovTime, and for their spans:
// modified Julian dates, rounding, adding within a range, and leap seconds.
//
// A modified Julian date (MJD) counts days since 17 November 1858, 00:00. That of a CTime or CTovTime is of
// its local clock reading. The calendar is the Gregorian one for all dates. A MJD in a double resolves one
// unit of its last place, 0.6 microseconds until 2038; what lies within that of a whole or half second is
// that.
//
// What is limited is limited to
//
//   CTime, CTovTime   MinCTime to MaxCTime
//   COleDateTime      the range that is named by an eRangeType
//   spans             0 to MaxCTimeSpan, and for COleDateTimeSpan again the range that is named
//
// and nothing is done where the result would lie outside: adding answers 0 instead of 1, and what sets
// returns without a word. Sums are made in 64 bits.
#pragma once

#include <tov310/export.h>
#include <tov310/time_types.h>
#include <tov310/types.h>

#include <cstdint>

namespace tov {

class CTovTime;
class CTovTimeSpan;

class TOV_CORE_API CTovTimeHelper {
 public:
    // How to round; every other number does not. Half a second, minute or hour rounds up, and half a unit of
    // its parts to the even one.
    enum eRoundFlag : int {
        eRoundToSecond = 0,
        eRoundToMinute = 1,
        eRoundToHour = 2,
        eRoundToMillisecond = 3,
        eRoundToTenth = 4,
        eRoundToHundredth = 5,
        eRoundToMicrosecond = 6,
        eRoundNot = 0x7F,
        // Joined to a minute or an hour: leaves the fields that were rounded off out of the text.
        eRoundCut = 0x80,
    };
    friend constexpr eRoundFlag operator|(eRoundFlag a, eRoundFlag b) {
        return static_cast<eRoundFlag>(static_cast<int>(a) | static_cast<int>(b));
    }
    friend constexpr eRoundFlag operator|(eRoundFlag a, int b) { return a | static_cast<eRoundFlag>(b); }

    enum eRangeType : int { eRangeOleDateTime = 0, eRangeDateTimeCtrl = 1, eRangeCTime = 2 };
    enum eType : int { eTypeDateTime = 0, eTypeDate = 1, eTypeTime = 2 };

    // The ranges, ends included. Those of CTime are local clock readings in the zone at the first use:
    // MinCTime and MaxCTime throw std::invalid_argument where it cannot represent them.
    static CTime MinCTime();                             // 2 January 1970 00:00:00
    static CTime MaxCTime();                             // 18 January 2030 23:59:59
    static COleDateTime MinOleDateTime();                // 1 January 100 00:00:00
    static COleDateTime MaxOleDateTime();                // 31 December 9999 23:59:59
    static COleDateTime MinDateTimeCtrlAsOleDateTime();  // 1 January 1601 00:00:00
    static COleDateTime MaxDateTimeCtrlAsOleDateTime();  // 31 December 9999 23:59:59
    static double MinCTimeAsMjd();
    static double MaxCTimeAsMjd();
    static double MinOleDateTimeAsMjd();
    static double MaxOleDateTimeAsMjd();
    static double MinDateTimeCtrlAsMjd();
    static double MaxDateTimeCtrlAsMjd();

    static void GetPhysicalRange(CTime& from, CTime& to);
    static void GetPhysicalRange(CTovTime& from, CTovTime& to);
    static void GetPhysicalRange(COleDateTime& from, COleDateTime& to, eRangeType range = eRangeOleDateTime);
    static void GetPhysicalRange(double& fromMjd, double& toMjd, eRangeType range);
    static void GetPhysicalRange(SYSTEMTIME& from, SYSTEMTIME& to, eRangeType range);

    // Compare the dates, or the times of the day with their fractions, of two local readings. What has none,
    // an invalid date, comes before all that have one.
    static int DatePartLess(CTime const& a, CTime const& b) { return CompareDates(a, b) < 0; }
    static int DatePartEqual(CTime const& a, CTime const& b) { return CompareDates(a, b) == 0; }
    static int DatePartGreater(CTime const& a, CTime const& b) { return CompareDates(a, b) > 0; }
    static int TimePartLess(CTime const& a, CTime const& b) { return CompareTimes(a, b) < 0; }
    static int TimePartEqual(CTime const& a, CTime const& b) { return CompareTimes(a, b) == 0; }
    static int TimePartGreater(CTime const& a, CTime const& b) { return CompareTimes(a, b) > 0; }
    static int DatePartLess(COleDateTime const& a, COleDateTime const& b) { return CompareDates(a, b) < 0; }
    static int DatePartEqual(COleDateTime const& a, COleDateTime const& b) { return CompareDates(a, b) == 0; }
    static int DatePartGreater(COleDateTime const& a, COleDateTime const& b) {
        return CompareDates(a, b) > 0;
    }
    static int TimePartLess(COleDateTime const& a, COleDateTime const& b) { return CompareTimes(a, b) < 0; }
    static int TimePartEqual(COleDateTime const& a, COleDateTime const& b) { return CompareTimes(a, b) == 0; }
    static int TimePartGreater(COleDateTime const& a, COleDateTime const& b) {
        return CompareTimes(a, b) > 0;
    }
    static int DatePartLess(CTovTime const& a, CTovTime const& b) { return CompareDates(a, b) < 0; }
    static int DatePartEqual(CTovTime const& a, CTovTime const& b) { return CompareDates(a, b) == 0; }
    static int DatePartGreater(CTovTime const& a, CTovTime const& b) { return CompareDates(a, b) > 0; }
    static int TimePartLess(CTovTime const& a, CTovTime const& b) { return CompareTimes(a, b) < 0; }
    static int TimePartEqual(CTovTime const& a, CTovTime const& b) { return CompareTimes(a, b) == 0; }
    static int TimePartGreater(CTovTime const& a, CTovTime const& b) { return CompareTimes(a, b) > 0; }

    // GPS time minus UTC in days (leap seconds / 86400) at a moment in UTC; 0.0 before 1 January 1980.
    // `since`, which may be null, gets the MJD of the first day of this offset, or 0.0. The built-in table ends
    // with the 16 s of 1 July 2012: TovLearnLeapSeconds (leap_seconds.h) adds the later ones from the published
    // list, and TovLeapSecondsExpire tells until when that holds.
    static double GetLeapSeconds(double const& mjd, double* since = nullptr);
    // Tells of an offset from a day on, which must be a 1 January or 1 July in the range of CTime, and keeps
    // it in the profile. What is known of a day stays. Below 17 seconds nothing is done, since those are all
    // known. Answers 0 for another day and above 50 seconds, else 1.
    static int AddLeapSeconds(double const& mjd, unsigned char seconds);
    // The same with the fields of a GPS navigation message: the full week of the present, the low eight bits
    // of the week of the change and the number of its day.
    static int AddLeapSeconds(unsigned short week, unsigned char weekLow8, unsigned char dayNumber,
                              unsigned char seconds);

    // 0.0 for what has no reading: a year that fits no int, a date that is not valid.
    static double GetMjd(CTime const& time);
    static double GetMjd(COleDateTime const& time);
    static double GetMjd(CTovTime const& time);
    // Sets what lies in the range; a CTime drops the fraction of the second.
    static void SetMjd(double mjd, CTime& time);
    static void SetMjd(double mjd, COleDateTime& time);
    static void SetMjd(double mjd, CTovTime& time);
    // For moments finer than a MJD in one number: the day and its fraction. The part below the second is
    // rounded to a multiple of the divisor, 0 < divisor <= 1 s, of which the nearest whole number to
    // 1 / divisor make a second. `second` gets the second of the minute with that part, or 0 where nothing is
    // set.
    static void SetMjd(unsigned long day, double fraction, double secondDivisor, CTovTime& time,
                       double& second);
    // The date and time of a MJD; before the epoch its whole part is the day before. Zeros for a number that
    // is not finite or beyond 5 * 10^11 days.
    static void Mjd2Ymd(double const& mjd, long& year, long& month, long& day, long& hour, long& minute,
                        long& second, double& fraction);

    // The second of the minute with its fraction.
    static double GetSecond(CTovTime const& time);

    // Round, and answer the new MJD. A time closer to an end of the range than a second, minute or hour is
    // not rounded to that (to the lower end it is the full minute or hour that counts), nor to parts of the
    // second where a full one would leave the range. The range of COleDateTime is that of eRangeOleDateTime.
    static double Round(CTime& time, eRoundFlag flag);
    static double Round(COleDateTime& time, eRoundFlag flag);
    static double Round(CTovTime& time, eRoundFlag flag);
    // To a multiple of a part of the second; 0 < unit <= 1, else nothing is done.
    static double Round(CTovTime& time, double unit);
    // A whole number is a flag.
    static double Round(CTovTime& time, int flag) { return Round(time, static_cast<eRoundFlag>(flag)); }

    // The rounded time as text, by the codes of CTime::Format. With eRoundCut and minutes the first "%S" is
    // taken out with the separator before it, with hours also the first "%M". Without a format the current
    // one of CTovTime is taken, or its date or time.
    static CString Format(CTime const& time, char const* format, eRoundFlag flag);
    static CString Format(CTime const& time, CString const& format, eRoundFlag flag) {
        return Format(time, format.c_str(), flag);
    }
    static CString Format(COleDateTime const& time, char const* format, eRoundFlag flag);
    static CString Format(COleDateTime const& time, CString const& format, eRoundFlag flag) {
        return Format(time, format.c_str(), flag);
    }
    static CString Format(CTovTime const& time, char const* format, eRoundFlag flag);
    static CString Format(CTovTime const& time, CString const& format, eRoundFlag flag) {
        return Format(time, format.c_str(), flag);
    }
    static CString Format(CTime const& time, eRoundFlag flag);
    static CString Format(COleDateTime const& time, eRoundFlag flag);
    static CString Format(CTovTime const& time, eRoundFlag flag);
    static CString FormatDate(CTime const& time, eRoundFlag flag);
    static CString FormatDate(COleDateTime const& time, eRoundFlag flag);
    static CString FormatDate(CTovTime const& time, eRoundFlag flag);
    static CString FormatTime(CTime const& time, eRoundFlag flag);
    static CString FormatTime(COleDateTime const& time, eRoundFlag flag);
    static CString FormatTime(CTovTime const& time, eRoundFlag flag);

    // The current format, or its date or time, as a date-time control takes it: "dd.MM.yyyy HH:mm:ss".
    static CString GetTovTimeFormat(eType type);
    // Turns the codes of CTime::Format into those of a date-time control; codes that it does not have go.
    static void ConvertTovTimeFormatToDateTimeCtrl(CString& format);

    // Add or subtract a span. Its own fraction of a second counts for a COleDateTime only; a CTovTime keeps
    // the one that it has. Answer 1, or 0 and leave the time where the result would be out of range.
    static int AddTimeSpan(CTime& time, CTimeSpan const& span);
    static int AddTimeSpan(CTovTime& time, CTovTimeSpan const& span);
    static int AddTimeSpan(COleDateTime& time, COleDateTimeSpan const& span,
                           eRangeType range = eRangeOleDateTime);
    static int SubtractTimeSpan(CTime& time, CTimeSpan const& span);
    static int SubtractTimeSpan(CTovTime& time, CTovTimeSpan const& span);
    static int SubtractTimeSpan(COleDateTime& time, COleDateTimeSpan const& span,
                                eRangeType range = eRangeOleDateTime);

    // Add a number of units of this length, which may be negative; 0 answers 1 and does nothing.
    static int AddSeconds(CTime& time, long n) { return Add(time, n, 1); }
    static int AddMinutes(CTime& time, long n) { return Add(time, n, 60); }
    static int AddHours(CTime& time, long n) { return Add(time, n, 3600); }
    static int AddDays(CTime& time, long n) { return Add(time, n, 86400); }
    static int AddWeeks(CTime& time, long n) { return Add(time, n, 604800); }
    static int AddSeconds(CTovTime& time, long n) { return Add(time, n, 1); }
    static int AddMinutes(CTovTime& time, long n) { return Add(time, n, 60); }
    static int AddHours(CTovTime& time, long n) { return Add(time, n, 3600); }
    static int AddDays(CTovTime& time, long n) { return Add(time, n, 86400); }
    static int AddWeeks(CTovTime& time, long n) { return Add(time, n, 604800); }
    static int AddSeconds(COleDateTime& time, long n, eRangeType range = eRangeOleDateTime) {
        return Add(time, n, 1, range);
    }
    static int AddMinutes(COleDateTime& time, long n, eRangeType range = eRangeOleDateTime) {
        return Add(time, n, 60, range);
    }
    static int AddHours(COleDateTime& time, long n, eRangeType range = eRangeOleDateTime) {
        return Add(time, n, 3600, range);
    }
    static int AddDays(COleDateTime& time, long n, eRangeType range = eRangeOleDateTime) {
        return Add(time, n, 86400, range);
    }
    static int AddWeeks(COleDateTime& time, long n, eRangeType range = eRangeOleDateTime) {
        return Add(time, n, 604800, range);
    }

    // Add months or years of the calendar at the same clock time, without the fraction of the second. A day
    // that the month does not have becomes its last one.
    static int AddMonths(CTime& time, int n) { return AddCalendarMonths(time, n); }
    static int AddMonths(CTovTime& time, int n) { return AddCalendarMonths(time, n); }
    static int AddMonths(COleDateTime& time, int n, eRangeType range = eRangeOleDateTime) {
        return AddCalendarMonths(time, n, range);
    }
    static int AddYears(CTime& time, int n) { return AddCalendarMonths(time, 12L * n); }
    static int AddYears(CTovTime& time, int n) { return AddCalendarMonths(time, 12L * n); }
    static int AddYears(COleDateTime& time, int n, eRangeType range = eRangeOleDateTime) {
        return AddCalendarMonths(time, 12L * n, range);
    }

 protected:
    // Takes the first occurrence of a code like "%S", flagged or not, out of a format with the separator
    // before it, a blank or sign, and trims the format.
    static void CutString(char const* code, CString& format);

 private:
    static int CompareDates(CTime const& a, CTime const& b);
    static int CompareDates(COleDateTime const& a, COleDateTime const& b);
    static int CompareDates(CTovTime const& a, CTovTime const& b);
    static int CompareTimes(CTime const& a, CTime const& b);
    static int CompareTimes(COleDateTime const& a, COleDateTime const& b);
    static int CompareTimes(CTovTime const& a, CTovTime const& b);
    static int Add(CTime& time, long n, long unit);
    static int Add(CTovTime& time, long n, long unit);
    static int Add(COleDateTime& time, long n, long unit, eRangeType range);
    static int AddCalendarMonths(CTime& time, long n);
    static int AddCalendarMonths(CTovTime& time, long n);
    static int AddCalendarMonths(COleDateTime& time, long n, eRangeType range);
};

// The same for spans, of which the MJD is the number of days.
class TOV_CORE_API CTovTimeSpanHelper {
 public:
    using eRoundFlag = CTovTimeHelper::eRoundFlag;
    using eRangeType = CTovTimeHelper::eRangeType;

    // The ranges, ends included.
    static CTimeSpan MinCTimeSpan();                                 // 0
    static CTimeSpan MaxCTimeSpan();                                 // 2147483647 s
    static COleDateTimeSpan MinOleDateTimeSpan();                    // 0
    static COleDateTimeSpan MaxOleDateTimeSpan();                    // the largest double
    static COleDateTimeSpan MinDateTimeSpanCtrlAsOleDateTimeSpan();  // 0
    static COleDateTimeSpan MaxDateTimeSpanCtrlAsOleDateTimeSpan();  // 23:59:59
    static double MinCTimeSpanAsMjd();
    static double MaxCTimeSpanAsMjd();  // 2147483647.0: the seconds of MaxCTimeSpan, here taken as days
    static double MinOleDateTimeSpanAsMjd();
    static double MaxOleDateTimeSpanAsMjd();
    static double MinDateTimeSpanCtrlAsMjd();
    static double MaxDateTimeSpanCtrlAsMjd();

    static void GetPhysicalRange(CTimeSpan& from, CTimeSpan& to);
    static void GetPhysicalRange(CTovTimeSpan& from, CTovTimeSpan& to);
    static void GetPhysicalRange(COleDateTimeSpan& from, COleDateTimeSpan& to,
                                 eRangeType range = CTovTimeHelper::eRangeOleDateTime);
    static void GetPhysicalRangeMjd(double& from, double& to, eRangeType range = CTovTimeHelper::eRangeCTime);

    static double GetMjd(CTimeSpan const& span);
    static double GetMjd(COleDateTimeSpan const& span);
    static double GetMjd(CTovTimeSpan const& span);
    // Set what lies in the range of GetPhysicalRangeMjd for the kind of span; a CTimeSpan drops the fraction
    // of the second.
    static void SetMjd(double days, CTimeSpan& span);
    static void SetMjd(double days, COleDateTimeSpan& span);
    static void SetMjd(double days, CTovTimeSpan& span);
    // All parts have the sign of the span. Days beyond 10^14 count as these, NaN as 0.
    static void Mjd2Hms(double const& mjd, long& days, long& hours, long& minutes, long& seconds,
                        double& fraction);

    // Round, and answer the new number of days. What lies within one second, minute or hour of the upper end
    // of the range is not rounded to that. Negative spans round as the positive ones of their size.
    static double Round(CTimeSpan& span, eRoundFlag flag);
    static double Round(COleDateTimeSpan& span, eRoundFlag flag);
    static double Round(CTovTimeSpan& span, eRoundFlag flag);

    // The rounded span as text, by the codes of CTimeSpan::Format, but for the hours: "%h", or "%H" where
    // there is no "%h", is replaced by the hours without leading zeros, those of the day where the format has
    // "%D", else all hours. With eRoundCut fields are left out as in CTovTimeHelper::Format.
    static CString Format(CTimeSpan const& span, char const* format, eRoundFlag flag);
    static CString Format(CTimeSpan const& span, CString const& format, eRoundFlag flag) {
        return Format(span, format.c_str(), flag);
    }
    static CString Format(COleDateTimeSpan const& span, char const* format, eRoundFlag flag);
    static CString Format(COleDateTimeSpan const& span, CString const& format, eRoundFlag flag) {
        return Format(span, format.c_str(), flag);
    }
    static CString Format(CTovTimeSpan const& span, char const* format, eRoundFlag flag);
    static CString Format(CTovTimeSpan const& span, CString const& format, eRoundFlag flag) {
        return Format(span, format.c_str(), flag);
    }

    // Add to the span, fractions of the second included.
    static int AddTimeSpan(CTimeSpan& span, CTimeSpan const& other);
    static int AddTimeSpan(CTovTimeSpan& span, CTovTimeSpan const& other);
    static int AddTimeSpan(COleDateTimeSpan& span, COleDateTimeSpan const& other,
                           eRangeType range = CTovTimeHelper::eRangeOleDateTime);
    static int SubtractTimeSpan(CTimeSpan& span, CTimeSpan const& other);
    static int SubtractTimeSpan(CTovTimeSpan& span, CTovTimeSpan const& other);
    static int SubtractTimeSpan(COleDateTimeSpan& span, COleDateTimeSpan const& other,
                                eRangeType range = CTovTimeHelper::eRangeOleDateTime);

    static int AddSeconds(CTimeSpan& span, long n) { return Add(span, n, 1); }
    static int AddMinutes(CTimeSpan& span, long n) { return Add(span, n, 60); }
    static int AddHours(CTimeSpan& span, long n) { return Add(span, n, 3600); }
    static int AddDays(CTimeSpan& span, long n) { return Add(span, n, 86400); }
    static int AddSeconds(CTovTimeSpan& span, long n) { return Add(span, n, 1); }
    static int AddMinutes(CTovTimeSpan& span, long n) { return Add(span, n, 60); }
    static int AddHours(CTovTimeSpan& span, long n) { return Add(span, n, 3600); }
    static int AddDays(CTovTimeSpan& span, long n) { return Add(span, n, 86400); }
    static int AddSeconds(COleDateTimeSpan& span, long n,
                          eRangeType range = CTovTimeHelper::eRangeOleDateTime) {
        return Add(span, n, 1, range);
    }
    static int AddMinutes(COleDateTimeSpan& span, long n,
                          eRangeType range = CTovTimeHelper::eRangeOleDateTime) {
        return Add(span, n, 60, range);
    }
    static int AddHours(COleDateTimeSpan& span, long n,
                        eRangeType range = CTovTimeHelper::eRangeOleDateTime) {
        return Add(span, n, 3600, range);
    }
    static int AddDays(COleDateTimeSpan& span, long n, eRangeType range = CTovTimeHelper::eRangeOleDateTime) {
        return Add(span, n, 86400, range);
    }

 private:
    static int Add(CTimeSpan& span, long n, long unit);
    static int Add(CTovTimeSpan& span, long n, long unit);
    static int Add(COleDateTimeSpan& span, long n, long unit, eRangeType range);
};

}  // namespace tov
