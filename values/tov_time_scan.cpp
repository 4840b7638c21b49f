// Reading of times. The codes of a format say what is read one after the other; how the text is divided is up
// to the text: behind every field it is moved on to where the next one can begin.
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "values/calendar.h"
#include "vesk/clock.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace tov {
namespace {

constexpr bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool IsTimeDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr char SmallLetter(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

constexpr bool IsLetter(char c) {
    return (SmallLetter(c) >= 'a' && SmallLetter(c) <= 'z') || (c & 0x80) != 0;
}

constexpr bool BeginsWord(char c) {
    return IsTimeDigit(c) || IsLetter(c);
}

// Whether the text begins with the word, whatever the case of its letters.
bool BeginsWith(std::string_view text, std::string_view word) {
    return !word.empty() && text.size() >= word.size() &&
           std::equal(word.begin(), word.end(), text.begin(),
                      [](char a, char b) { return SmallLetter(a) == SmallLetter(b); });
}

constexpr char const* englishMonths[] = {"January",   "February", "March",    "April",
                                         "May",       "June",     "July",     "August",
                                         "September", "October",  "November", "December"};

class TimeText {
 public:
    explicit TimeText(std::string_view text) : m_rest(text) { SkipBlanks(); }

    bool IsAtEnd() const { return m_rest.empty(); }

    // A whole number; what is above 10^9 stays there.
    bool Read(std::int64_t& value) {
        Advance();
        auto const [negative, start] = Sign();
        std::size_t at = start;
        std::int64_t number = 0;
        for (; at < m_rest.size() && IsTimeDigit(m_rest[at]); ++at)
            number = std::min<std::int64_t>(number * 10 + (m_rest[at] - '0'), 1'000'000'000);
        if (at == start) return false;
        value = negative ? -number : number;
        Take(at, false);
        return true;
    }

    // A number with decimals; too large ones are infinite.
    bool Read(double& value) {
        Advance();
        auto const [negative, start] = Sign();
        char const* const begin = m_rest.data() + start;
        char const* const end = m_rest.data() + m_rest.size();
        if (begin == end || !(IsTimeDigit(*begin) || *begin == '.')) return false;
        double number = HUGE_VAL;
        auto const [behind, error] = std::from_chars(begin, end, number);
        if (error == std::errc::invalid_argument) return false;
        value = negative ? -number : number;
        Take(static_cast<std::size_t>(behind - m_rest.data()), true);
        return true;
    }

    bool ReadMonth(std::int64_t& month) {
        SkipToWord();
        std::size_t longest = 0;
        auto const consider = [&](std::string_view name, int number) {
            if (name.size() <= longest || !BeginsWith(m_rest, name)) return;
            longest = name.size();
            month = number + 1;
        };
        for (int number = 0; number < 12; ++number) {
            for (bool const full : {true, false}) {
                std::string_view name = VeskMonthName(number, full);
                name.remove_prefix(std::min(name.find_first_not_of(' '), name.size()));
                consider(name, number);
            }
        }
        for (int number = 0; number < 12; ++number) {
            std::string_view const name = englishMonths[number];
            consider(name, number);
            consider(name.substr(0, 3), number);
        }
        if (longest != 0) Take(longest, false);
        return longest != 0;
    }

    // A name of the half of the day, in the locale's language or English; else any two characters.
    bool ReadHalfDay(bool& afternoon) {
        std::string_view const before = m_rest;
        for (SkipToWord(); !m_rest.empty(); SkipWord(), SkipToWord()) {
            for (bool const candidate : {false, true}) {
                if (!TakeWord(VeskHalfDayName(candidate)) && !TakeWord(candidate ? "PM" : "AM")) continue;
                afternoon = candidate;
                return true;
            }
        }
        m_rest = before;
        Advance();
        std::size_t at = 0;
        while (at < 2 && at < m_rest.size() && !IsBlank(m_rest[at]))
            ++at;
        if (at != 0) Take(at, false);
        return at != 0;
    }

 private:
    bool TakeWord(std::string_view word) {
        bool const found =
            BeginsWith(m_rest, word) && (m_rest.size() == word.size() || !IsLetter(m_rest[word.size()]));
        if (found) Take(word.size(), false);
        return found;
    }

    void SkipBlanks() {
        while (!m_rest.empty() && IsBlank(m_rest.front()))
            m_rest.remove_prefix(1);
    }

    void SkipToWord() {
        while (!m_rest.empty() && !BeginsWord(m_rest.front()))
            m_rest.remove_prefix(1);
    }

    // Past digits, or past what is none.
    void SkipWord() {
        bool const digits = !m_rest.empty() && IsTimeDigit(m_rest.front());
        while (!m_rest.empty() && BeginsWord(m_rest.front()) && IsTimeDigit(m_rest.front()) == digits)
            m_rest.remove_prefix(1);
    }

    bool BelongsToField(char c) const {
        return IsTimeDigit(c) || c == 'A' || c == 'P' || c == 'M' || (c == '.' && m_decimals);
    }

    // Past the rest of the field that was read, and past anything else to where a field can begin.
    void Advance() {
        if (!m_behindField) return;
        m_behindField = false;
        std::size_t at = 0;
        while (at < m_rest.size() && BelongsToField(m_rest[at]))
            ++at;
        while (at < m_rest.size() && !BelongsToField(m_rest[at]))
            ++at;
        m_rest.remove_prefix(at);
    }

    // Whether a number begins with "-", and where its digits begin.
    std::pair<bool, std::size_t> Sign() const {
        bool const sign = !m_rest.empty() && (m_rest.front() == '-' || m_rest.front() == '+');
        return {sign && m_rest.front() == '-', sign ? 1 : 0};
    }

    void Take(std::size_t length, bool decimals) {
        m_rest.remove_prefix(length);
        m_behindField = true;
        m_decimals = decimals;
    }

    std::string_view m_rest;
    bool m_behindField = false;
    bool m_decimals = false;  // whether the field had some: then "." belongs to it
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

    // The reading of the clock; false where there is no such date or time of the day.
    bool GetReading(ClockReading& reading) {
        if (!m_longYear && m_year >= 0 && m_year < 100) m_year += m_year > 70 ? 1900 : 2000;
        if (m_afternoon && m_hour >= 0 && m_hour < 12) m_hour += 12;
        if (!SplitDecimals()) return false;
        // A second 60 is the first one of the next minute, which is what the clock makes of a leap second.
        bool const time =
            m_hour >= 0 && m_hour < 24 && m_minute >= 0 && m_minute < 60 && m_second >= 0 && m_second <= 60;
        bool const months = m_year >= firstYear && m_year <= lastYear && m_month >= 1 && m_month <= 12;
        if (!time || !months) return false;
        bool const ofYear = m_dayOfYear && !m_monthRead;
        int const days =
            ofYear ? 337 + DaysOfMonth(m_year, 2) : DaysOfMonth(m_year, static_cast<int>(m_month));
        if (m_day < 1 || m_day > days) return false;
        std::int64_t const day = MjdOfDate(m_year, static_cast<int>(m_month), m_day);
        reading = ClockReading::OfSeconds(((day * 24 + m_hour) * 60 + m_minute) * 60 + m_second, m_fraction);
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
    TimeText rest(text.c_str());
    std::string_view const codes(format.c_str());
    ScannedFields fields;
    for (std::size_t at = codes.find('%'); at != codes.npos && !rest.IsAtEnd();
         at = codes.find('%', at + 1)) {
        std::size_t const code = codes.find_first_not_of('#', at + 1);
        if (code == codes.npos) break;
        fields.Read(rest, codes[code]);
    }
    ClockReading reading;
    if (!fields.GetReading(reading)) return 0;
    CalendarDate const date = DateOfMjd(reading.day);
    std::tm local{};
    local.tm_year = static_cast<int>(date.year - 1900);
    local.tm_mon = date.month - 1;
    local.tm_mday = date.day;
    local.tm_hour = reading.Hour();
    local.tm_min = reading.Minute();
    local.tm_sec = reading.second % 60;
    local.tm_isdst = -1;
    std::optional<std::int64_t> const moment = VeskLocalMoment(local);
    if (!moment) return 0;
    CTime::operator=(CTime(*moment));
    m_dFracSecond = reading.fraction;
    return CTovTimeHelper::GetMjd(*this);
}

}  // namespace tov
