// Plain values of time: a moment, a date as a number of days, the spans of both, and the structures in which
// times come from outside.
//
// CTovTime (tov_time.h) and the arithmetic of time_helper.h stand on these.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

#include <compare>
#include <cstdint>
#include <ctime>

namespace tov {

// A moment in units of 100 ns since 1601-01-01 00:00 UTC; as the time of a file, 0 is none.
struct FILETIME {
    std::uint64_t ticks = 0;

    friend constexpr auto operator<=>(FILETIME const&, FILETIME const&) = default;
};

// A reading of the local clock and calendar.
struct SYSTEMTIME {
    unsigned short wYear = 0;
    unsigned short wMonth = 0;      // from 1
    unsigned short wDayOfWeek = 0;  // from 0, Sunday; not read by anything
    unsigned short wDay = 0;        // from 1
    unsigned short wHour = 0;
    unsigned short wMinute = 0;
    unsigned short wSecond = 0;
    unsigned short wMilliseconds = 0;

    friend constexpr bool operator==(SYSTEMTIME const&, SYSTEMTIME const&) = default;
};

// A span of whole seconds, of either sign. What is too large for 64 bits stops at their ends.
class TOV_CORE_API CTimeSpan {
 public:
    constexpr CTimeSpan() = default;
    explicit constexpr CTimeSpan(std::int64_t seconds) : m_timeSpan(seconds) {}
    // The sum of all; each of them may be of any size and sign.
    CTimeSpan(long days, int hours, int minutes, int seconds);

    constexpr std::int64_t GetTimeSpan() const { return m_timeSpan; }

    // The whole span in full units.
    constexpr std::int64_t GetDays() const { return m_timeSpan / 86400; }
    constexpr std::int64_t GetTotalHours() const { return m_timeSpan / 3600; }
    constexpr std::int64_t GetTotalMinutes() const { return m_timeSpan / 60; }
    constexpr std::int64_t GetTotalSeconds() const { return m_timeSpan; }

    // What it has beyond the next larger unit, with the sign of the span.
    constexpr int GetHours() const { return static_cast<int>(m_timeSpan / 3600 % 24); }
    constexpr int GetMinutes() const { return static_cast<int>(m_timeSpan / 60 % 60); }
    constexpr int GetSeconds() const { return static_cast<int>(m_timeSpan % 60); }

    // Puts in %D the days and %H, %M, %S what is beyond them, in two digits; "%%" is a percent sign, and
    // everything else stands for itself. A negative span has its sign before the first of these. With the
    // flag "#" leading zeros are left out.
    CString Format(char const* format) const;
    CString Format(CString const& format) const { return Format(format.c_str()); }

    CTimeSpan& operator+=(CTimeSpan span);
    CTimeSpan& operator-=(CTimeSpan span);
    friend CTimeSpan operator+(CTimeSpan a, CTimeSpan b) { return a += b; }
    friend CTimeSpan operator-(CTimeSpan a, CTimeSpan b) { return a -= b; }
    friend constexpr auto operator<=>(CTimeSpan const&, CTimeSpan const&) = default;

 private:
    std::int64_t m_timeSpan = 0;
};

// A moment: seconds since 1970-01-01 00:00 UTC without leap seconds, in 64 bits. Sums that are too large stop
// at the ends of these.
//
// Fields are those of the local clock, by the rules of the process's time zone: the environment's TZ as the
// library found it when it was loaded. A later change of it holds from the next tzset on, or from when fields
// are given here. Of these,
//
//   isDst   tells whether daylight saving time is in force: 1 yes, 0 no, -1 as the rules say. A clock time
//           that comes twice is then the earlier one, and one that the clocks leave out is as much behind
//           what they left out as it was within it: 02:30 is 03:30
//   fields  that are too large or small are carried into the next larger ones
//
// and what cannot be represented gives the moment 0.
class TOV_CORE_API CTime {
 public:
    constexpr CTime() = default;
    explicit constexpr CTime(std::int64_t seconds) : m_time(seconds) {}
    CTime(int year, int month, int day, int hour, int minute, int second, int isDst = -1);
    // Packed as in a directory of the FAT file system: the year from 1980 in 7 bits, the month in 4 (0 is
    // January) and the day in 5; the hour in 5, the minute in 6 and half the second in 5.
    CTime(unsigned short dosDate, unsigned short dosTime, int isDst = -1);
    // Milliseconds are dropped.
    explicit CTime(SYSTEMTIME const& time, int isDst = -1);
    // What is below the second is dropped. Being UTC, it needs no flag.
    explicit CTime(FILETIME const& time, int isDst = -1);

    static CTime GetCurrentTime();

    constexpr std::int64_t GetTime() const { return m_time; }

    // Fields of the local clock; 0 where the year of the moment fits no int.
    int GetYear() const;
    int GetMonth() const;      // 1 to 12
    int GetDay() const;        // 1 to 31
    int GetHour() const;       // 0 to 23
    int GetMinute() const;     // 0 to 59
    int GetSecond() const;     // 0 to 59
    int GetDayOfWeek() const;  // 1, Sunday, to 7

    // All fields, of the local clock or of UTC. Answer their argument, or null for a null one and where the
    // year fits no int.
    std::tm* GetLocalTm(std::tm* fields) const;
    std::tm* GetGmtTm(std::tm* fields) const;

    // The local reading. Answers false, and zeros, for years beyond 0 to 65535.
    bool GetAsSystemTime(SYSTEMTIME& time) const;
    // Answers false, and 0, for moments before 1601 and beyond the 64 bits.
    bool GetAsFileTime(FILETIME& time) const;

    // The local reading, or that of UTC, as text by the codes of strftime:
    //
    //   %Y %y %C     year, its last two digits, century    %H %I %p  hours of 24, of 12, AM or PM
    //   %m %d %e     month, day, with a blank for its 0    %M %S     minutes, seconds
    //   %b %h %B     name of the month, short, long        %a %A     name of the day, short, long
    //   %U %W        week of the year from Sunday, Monday  %V %G %g  week and year of ISO 8601
    //   %j %u %w     day of the year, of the week from Monday 1, from Sunday 0
    //   %z %Z        zone as +hhmm, by its name            %n %t %%  line end, tab, percent sign
    //   %D %F %T %R  are %m/%d/%y, %Y-%m-%d, %H:%M:%S and %H:%M
    //   %c %x %X %r  date and time, date, time, time of 12 hours in the manner of the locale
    //
    // The flag "#" leaves out leading zeros and blanks (%#d) and makes %#c and %#x long; elsewhere it does
    // nothing, like "E" and "O". Names and manners are those of the locale's LC_TIME at the time of the call.
    // Anything that is not such a code stands for itself. Empty where the year fits no int.
    CString Format(char const* format) const;
    CString Format(CString const& format) const { return Format(format.c_str()); }
    CString FormatGmt(char const* format) const;
    CString FormatGmt(CString const& format) const { return FormatGmt(format.c_str()); }

    CTime& operator+=(CTimeSpan span);
    CTime& operator-=(CTimeSpan span);
    friend CTime operator+(CTime time, CTimeSpan span) { return time += span; }
    friend CTime operator-(CTime time, CTimeSpan span) { return time -= span; }
    friend CTimeSpan operator-(CTime a, CTime b) { return CTimeSpan(a.m_time) - CTimeSpan(b.m_time); }
    friend constexpr auto operator<=>(CTime const&, CTime const&) = default;

 private:
    std::int64_t m_time = 0;
};

// A span in days, of either sign. What is not finite is invalid.
class TOV_CORE_API COleDateTimeSpan {
 public:
    enum DateTimeSpanStatus { valid = 0, invalid = 1, null = 2 };

    constexpr COleDateTimeSpan() = default;
    explicit COleDateTimeSpan(double days);
    // The sum of all; each of them may be of any size and sign.
    COleDateTimeSpan(long days, int hours, int minutes, int seconds) {
        SetDateTimeSpan(days, hours, minutes, seconds);
    }
    void SetDateTimeSpan(long days, int hours, int minutes, int seconds);

    constexpr DateTimeSpanStatus GetStatus() const { return m_status; }
    constexpr void SetStatus(DateTimeSpanStatus status) { m_status = status; }

    // The whole span in a unit.
    double GetTotalDays() const { return m_span; }
    double GetTotalHours() const { return m_span * 24; }
    double GetTotalMinutes() const { return m_span * 1440; }
    double GetTotalSeconds() const { return m_span * 86400; }

    // Full days, and what the span has beyond the next larger unit, with the sign of the span. What lies
    // within the resolution of a whole second is that second.
    std::int64_t GetDays() const;
    int GetHours() const;
    int GetMinutes() const;
    int GetSeconds() const;

    // As of CTimeSpan, of the full seconds; empty for a span that is not valid.
    CString Format(char const* format) const;
    CString Format(CString const& format) const { return Format(format.c_str()); }

    operator double() const { return m_span; }

    COleDateTimeSpan& operator+=(COleDateTimeSpan const& span);
    COleDateTimeSpan& operator-=(COleDateTimeSpan const& span);
    COleDateTimeSpan operator-() const;
    friend COleDateTimeSpan operator+(COleDateTimeSpan a, COleDateTimeSpan const& b) { return a += b; }
    friend COleDateTimeSpan operator-(COleDateTimeSpan a, COleDateTimeSpan const& b) { return a -= b; }

    // A span that is not valid has no order, and equals those of its status.
    friend bool operator==(COleDateTimeSpan const& a, COleDateTimeSpan const& b) {
        return a.m_status == b.m_status && (a.m_status != valid || a.m_span == b.m_span);
    }
    friend std::partial_ordering operator<=>(COleDateTimeSpan const& a, COleDateTimeSpan const& b) {
        bool const ordered = a.m_status == valid && b.m_status == valid;
        return ordered ? a.m_span <=> b.m_span : std::partial_ordering::unordered;
    }

    double m_span = 0;  // days
    DateTimeSpanStatus m_status = valid;
};

// A reading of the calendar and clock, without a zone, from 1 January 100 to 31 December 9999, as a number of
// days since 30 December 1899, 00:00, in the form of automation dates: before that day the whole part counts
// days backwards, and what is behind the point is the time of the day all the same, so -1.25 is 29 December
// 1899, 06:00. It resolves 40 microseconds at worst; what lies within its resolution of a whole or half
// second is that.
class TOV_CORE_API COleDateTime {
 public:
    enum DateTimeStatus { error = -1, valid = 0, invalid = 1, null = 2 };

    constexpr COleDateTime() = default;
    // A number outside the range is invalid and kept.
    explicit COleDateTime(double date) { *this = date; }
    // Fields that are no date or time of the day make it invalid, with the number 0.
    COleDateTime(int year, int month, int day, int hour, int minute, int second) {
        SetDateTime(year, month, day, hour, minute, second);
    }
    explicit COleDateTime(SYSTEMTIME const& time);
    // The local reading.
    explicit COleDateTime(CTime const& time);
    explicit COleDateTime(FILETIME const& time);
    // As CTime takes them, so that the date 0 is a day in 1979.
    COleDateTime(unsigned short dosDate, unsigned short dosTime);

    static COleDateTime GetCurrentTime() { return COleDateTime(CTime::GetCurrentTime()); }

    COleDateTime& operator=(double date);
    // Answer the status.
    int SetDateTime(int year, int month, int day, int hour, int minute, int second);
    int SetDate(int year, int month, int day) { return SetDateTime(year, month, day, 0, 0, 0); }
    int SetTime(int hour, int minute, int second) { return SetDateTime(1899, 12, 30, hour, minute, second); }

    constexpr DateTimeStatus GetStatus() const { return m_status; }
    constexpr void SetStatus(DateTimeStatus status) { m_status = status; }

    // -1 (error) unless valid.
    int GetYear() const;
    int GetMonth() const;      // 1 to 12
    int GetDay() const;        // 1 to 31
    int GetHour() const;       // 0 to 23
    int GetMinute() const;     // 0 to 59
    int GetSecond() const;     // 0 to 59
    int GetDayOfWeek() const;  // 1, Sunday, to 7
    int GetDayOfYear() const;  // from 1

    // The fraction of the second is given in full milliseconds. Answers false, and zeros, unless valid.
    bool GetAsSystemTime(SYSTEMTIME& time) const;

    // By the codes of CTime::Format, without a zone; empty unless valid.
    CString Format(char const* format) const;
    CString Format(CString const& format) const { return Format(format.c_str()); }

    operator double() const { return m_dt; }

    // The result is invalid where it leaves the range or an operand is invalid, and null where one is null.
    COleDateTime& operator+=(COleDateTimeSpan const& span);
    COleDateTime& operator-=(COleDateTimeSpan const& span) { return *this += -span; }
    friend COleDateTime operator+(COleDateTime date, COleDateTimeSpan const& span) { return date += span; }
    friend COleDateTime operator-(COleDateTime date, COleDateTimeSpan const& span) { return date -= span; }
    TOV_CORE_API friend COleDateTimeSpan operator-(COleDateTime const& a, COleDateTime const& b);

    // A date that is not valid has no order, and equals those of its status.
    friend bool operator==(COleDateTime const& a, COleDateTime const& b) {
        return a.m_status == b.m_status && (a <=> b == 0 || a.m_status != valid);
    }
    TOV_CORE_API friend std::partial_ordering operator<=>(COleDateTime const& a, COleDateTime const& b);

    double m_dt = 0;
    DateTimeStatus m_status = valid;
};

}  // namespace tov
