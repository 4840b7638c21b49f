// Reading of times. The codes of a format say what is read one after the other; how the text is divided is up
// to the text: behind every field it is moved on to where the next one can begin.
#include <tov310/tov_time.h>

#include "values/calendar.h"
#include "vesk/clock.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace tov {
namespace {

constexpr char SmallLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

// What a character can be in a text of a time.
enum TimeChar : unsigned char {
    kTimeBlank = 1,
    kTimeDigit = 2,
    kTimeLetter = 4,
    kTimeField = 8,   // belongs to a field
    kTimePoint = 16,  // belongs to a field with decimals
};

constexpr auto timeChars = [] {
    std::array<unsigned char, 256> kinds{};
    for (unsigned i = 0; i < kinds.size(); ++i) {
        char const c = static_cast<char>(i);
        if (c == ' ' || (c >= '\t' && c <= '\r')) kinds[i] = kTimeBlank;
        if (c >= '0' && c <= '9') kinds[i] = kTimeDigit | kTimeField;
        if ((SmallLetter(c) >= 'a' && SmallLetter(c) <= 'z') || i >= 0x80) kinds[i] = kTimeLetter;
        if (c == 'A' || c == 'P' || c == 'M') kinds[i] |= kTimeField;
        if (c == '.') kinds[i] = kTimePoint;
    }
    return kinds;
}();

// Whether the text begins with the word, whatever the case of its letters.
bool BeginsWith(std::string_view text, std::string_view word) {
    return !word.empty() && text.size() >= word.size() &&
           std::equal(word.begin(), word.end(), text.begin(),
                      [](char a, char b) { return SmallLetter(a) == SmallLetter(b); });
}

constexpr char const* englishMonths[] = {"January",   "February", "March",    "April",
                                         "May",       "June",     "July",     "August",
                                         "September", "October",  "November", "December"};

// Whether a number that no double holds is too small for that, and not too large.
bool IsTiny(std::string_view number) {
    std::istringstream text{std::string(number)};
    text.imbue(std::locale::classic());
    double nearest = 0;
    text >> nearest;
    return nearest < 1;
}

class TimeText {
 public:
    explicit TimeText(CString const& text) : m_at(text.c_str()), m_end(m_at + text.size()) {
        Skip(kTimeBlank);
    }

    bool IsAtEnd() const { return m_at == m_end; }

    // A whole number; what is above 10^9 may be any such number.
    bool Read(std::int64_t& value) {
        Advance();
        bool const negative = *m_at == '-';
        char const* const digits = AfterSign();
        char const* at = digits;
        std::int64_t number = 0;
        for (unsigned digit = 0; (digit = static_cast<unsigned>(*at - '0')) < 10; ++at)
            number = number < 1'000'000'000 ? number * 10 + digit : number;
        if (at == digits) return false;
        value = negative ? -number : number;
        Take(at, kTimeField);
        return true;
    }

    // A number with decimals.
    bool Read(double& value) {
        Advance();
        bool const negative = *m_at == '-';
        char const* const digits = AfterSign();
        if (!Is(digits, kTimeDigit | kTimePoint)) return false;
        double number = 0;
        auto const [behind, error] = std::from_chars(digits, m_end, number);
        if (error == std::errc::invalid_argument) return false;
        if (error == std::errc::result_out_of_range) number = IsTiny({digits, behind}) ? 0 : HUGE_VAL;
        value = negative ? -number : number;
        Take(behind, kTimeField | kTimePoint);
        return true;
    }

    // The longest name that is one, in the locale's language or English.
    bool ReadMonth(std::int64_t& month) {
        SkipToWord();
        std::size_t longest = 0;
        auto const consider = [&](std::string_view name, int number) {
            if (name.size() <= longest || !BeginsWith(Rest(), name)) return;
            longest = name.size();
            month = number + 1;
        };
        for (int number = 0; number < 12; ++number) {
            for (bool const full : {true, false}) {
                std::string_view name = VeskMonthName(number, full);
                name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
                consider(name, number);
            }
            std::string_view const english = englishMonths[number];
            consider(english, number);
            consider(english.substr(0, 3), number);
        }
        if (longest != 0) Take(m_at + longest, kTimeField);
        return longest != 0;
    }

    // A name of the half of the day, in the locale's language or English; else any two characters.
    bool ReadHalfDay(bool& afternoon) {
        char const* const before = m_at;
        for (SkipToWord(); !IsAtEnd(); SkipToWord()) {
            for (bool const candidate : {false, true}) {
                if (!TakeWord(candidate ? "PM" : "AM") && !TakeWord(VeskHalfDayName(candidate))) continue;
                afternoon = candidate;
                return true;
            }
            Skip(Is(m_at, kTimeDigit) ? kTimeDigit : kTimeLetter);
        }
        m_at = before;
        Advance();
        char const* at = m_at;
        while (at != m_end && at - m_at < 2 && !Is(at, kTimeBlank))
            ++at;
        if (at == m_at) return false;
        Take(at, kTimeField);
        return true;
    }

 private:
    // A zero, which also closes the text, is of no kind.
    static bool Is(char const* at, int kinds) {
        return (timeChars[static_cast<unsigned char>(*at)] & kinds) != 0;
    }

    std::string_view Rest() const { return {m_at, m_end}; }

    void Skip(int kinds) {
        while (Is(m_at, kinds))
            ++m_at;
    }

    void SkipToWord() {
        while (!IsAtEnd() && !Is(m_at, kTimeDigit | kTimeLetter))
            ++m_at;
    }

    bool TakeWord(std::string_view word) {
        if (!BeginsWith(Rest(), word) || Is(m_at + word.size(), kTimeLetter)) return false;
        Take(m_at + word.size(), kTimeField);
        return true;
    }

    char const* AfterSign() const { return m_at + (*m_at == '-' || *m_at == '+' ? 1 : 0); }

    // Past the rest of the field that was read, and past anything else to where a field can begin.
    void Advance() {
        if (m_field == 0) return;
        Skip(m_field);
        while (!IsAtEnd() && !Is(m_at, m_field))
            ++m_at;
        m_field = 0;
    }

    void Take(char const* behind, int field) {
        m_at = behind;
        m_field = field;
    }

    char const* m_at;
    char const* m_end;
    int m_field = 0;  // what belongs to the field behind which m_at stands; 0 where it stands before one
};

constexpr int firstYear = 100;  // as of COleDateTime
constexpr int lastYear = 9999;

// The fields of a moment as they are read, and what became of them.
class ScannedFields {
 public:
    void Read(TimeText& text, char code) {
        switch (code) {
            case 'd':
            case 'j':
                if (text.Read(m_day)) m_dayOfYear = code == 'j';
                break;
            case 'D':
                text.Read(m_days);
                break;
            case 'H':
            case 'I':
                text.Read(m_hour);
                break;
            case 'M':
                text.Read(m_minute);
                break;
            case 'S':
                text.Read(m_second);
                break;
            case 's':
                text.Read(m_seconds);
                break;
            case 'm':
                m_monthRead = text.Read(m_month) || m_monthRead;
                break;
            case 'b':
            case 'B':
                m_monthRead = text.ReadMonth(m_month) || m_monthRead;
                break;
            case 'Y':
            case 'y':
                m_longYear = (text.Read(m_year) && code == 'Y') || m_longYear;
                break;
            case 'p':
                text.ReadHalfDay(m_afternoon);
                break;
            default:
                break;
        }
    }

    // The reading of the clock, with the fraction of the second; false where there is no such date or time of
    // the day. The fields carry: a second 60 is the first one of the next minute, which is what the clock
    // makes of a leap second, and days of the year stand in January.
    bool GetReading(std::tm& reading, double& fraction) {
        if (!m_longYear && m_year >= 0 && m_year < 100) m_year += m_year > 70 ? 1900 : 2000;
        if (m_afternoon && m_hour >= 0 && m_hour < 12) m_hour += 12;
        if (!SplitDecimals()) return false;
        auto const within = [](std::int64_t number, int from, int to) {
            return number >= from && number <= to;
        };
        if (!within(m_year, firstYear, lastYear) || !within(m_month, 1, 12) || !within(m_hour, 0, 23) ||
            !within(m_minute, 0, 59) || !within(m_second, 0, 60))
            return false;
        bool const ofYear = m_dayOfYear && !m_monthRead;
        int const days =
            ofYear ? 337 + DaysOfMonth(m_year, 2) : DaysOfMonth(m_year, static_cast<int>(m_month));
        if (!within(m_day, 1, days)) return false;
        reading.tm_year = static_cast<int>(m_year - 1900);
        reading.tm_mon = static_cast<int>(m_month - 1);
        reading.tm_mday = static_cast<int>(m_day);
        reading.tm_hour = static_cast<int>(m_hour);
        reading.tm_min = static_cast<int>(m_minute);
        reading.tm_sec = static_cast<int>(m_second);
        reading.tm_isdst = -1;
        fraction = m_fraction;
        return true;
    }

 private:
    bool SplitDecimals() {
        if (m_days != notRead) {
            if (!(m_days >= 0 && m_days < 400)) return false;
            ClockReading const part = SplitMjd(m_days);
            m_day = part.day;
            m_hour = part.Hour();
            m_minute = part.Minute();
            m_second = part.second % 60;
            m_fraction = part.fraction;
        }
        if (m_seconds != notRead) {
            if (!(m_seconds >= 0 && m_seconds < 61)) return false;
            m_second = static_cast<std::int64_t>(m_seconds);
            m_fraction = m_seconds - static_cast<double>(m_second);
        }
        return true;
    }

    static constexpr double notRead = -HUGE_VAL;

    std::int64_t m_year = 0;
    std::int64_t m_month = 1;
    std::int64_t m_day = 1;
    std::int64_t m_hour = 0;
    std::int64_t m_minute = 0;
    std::int64_t m_second = 0;
    double m_fraction = 0;
    double m_days = notRead;
    double m_seconds = notRead;
    bool m_afternoon = false;
    bool m_longYear = false;
    bool m_monthRead = false;
    bool m_dayOfYear = false;
};

}  // namespace

double CTovTime::ScanTime(CString const& text, CString const& format) {
    TimeText rest(text);
    ScannedFields fields;
    for (char const* at = format.c_str(); *at != 0; ++at) {
        if (*at != '%') continue;
        char const* code = at + 1;
        while (*code == '#')
            ++code;
        if (rest.IsAtEnd()) break;
        fields.Read(rest, *code);
    }
    std::tm reading{};
    double fraction = 0;
    if (!fields.GetReading(reading, fraction)) return 0;
    long east = 0;
    std::optional<std::int64_t> const moment = VeskLocalMoment(reading, &east);
    if (!moment) return 0;
    CTime::operator=(CTime(*moment));
    m_dFracSecond = fraction;
    // A clock time that does not exist comes out as another.
    return ClockReading::OfSeconds(mjdOfUnixEpoch * secondsPerDay + *moment + east, fraction).Mjd();
}

}  // namespace tov
