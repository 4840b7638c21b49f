#include "moment.h"

#include "arguments.h"

#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <optional>
#include <system_error>
#include <utility>

namespace survey {
namespace {

using std::chrono::sys_days;
using Helper = tov::CTovTimeHelper;

constexpr std::string_view allDigits = "0123456789";
constexpr std::int64_t weekSeconds = 604'800;

// A plain decimal number and nothing else.
std::optional<double> Number(std::string_view word) {
    double number = 0;
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    bool const isPlain = word.find_first_not_of("0123456789.") == word.npos;
    return isPlain && error == std::errc() && end == word.data() + word.size() ? std::optional(number)
                                                                               : std::nullopt;
}

// Whole microseconds, so that what is printed is what is meant.
void SetFraction(Moment& moment, double fraction) {
    moment.fraction = std::round(fraction * 1e6) / 1e6;
    if (moment.fraction < 1) return;
    moment.fraction = 0;
    ++moment.seconds;
}

void CheckRange(double seconds) {
    if (seconds < static_cast<double>(Helper::MinCTime().GetTime()) ||
        seconds > static_cast<double>(Helper::MaxCTime().GetTime()))
        throw UsageError("time: not within 2 January 1970 and 18 January 2030");
}

Moment OfMjd(double mjd) {
    CheckRange((mjd - unixEpochMjd) * 86400);
    // The library takes it apart, so that whole seconds come out whole.
    long year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    double fraction = 0;
    Helper::Mjd2Ymd(mjd, year, month, day, hour, minute, second, fraction);
    sys_days const date =
        std::chrono::year(static_cast<int>(year)) / static_cast<int>(month) / static_cast<int>(day);
    Moment moment;
    moment.seconds = date.time_since_epoch().count() * 86400 + (hour * 60 + minute) * 60 + second;
    moment.readAs = "a modified Julian date in UTC";
    SetFraction(moment, fraction);
    return moment;
}

Moment OfGps(double week, double second) {
    if (week != std::floor(week) || week > 9999)
        throw UsageError("time: the GPS week is a whole number up to 9999");
    if (second >= static_cast<double>(weekSeconds))
        throw UsageError("time: the second of a GPS week is below 604800");
    Moment moment;
    moment.readAs = "week and second of GPS";
    moment.seconds =
        gpsEpoch + static_cast<std::int64_t>(week) * weekSeconds + static_cast<std::int64_t>(second);
    SetFraction(moment, second - std::floor(second));
    // The number that holds behind a leap second leads to just before it and the other one to just behind:
    // what neither leads to is the leap second.
    std::int64_t const gps = moment.seconds;
    int const later = LeapSecondsAt(gps);
    int const earlier = LeapSecondsAt(gps - later);
    moment.seconds = gps - later;
    if (earlier == later) return moment;
    moment.isLeapSecond = LeapSecondsAt(gps - earlier) != earlier;
    if (!moment.isLeapSecond) moment.seconds = gps - earlier;
    return moment;
}

// Takes decimals off the end, or those before a last "Z".
double TakeFraction(std::string& text) {
    std::size_t const point = text.rfind('.');
    std::size_t const colon = text.rfind(':');
    if (point == text.npos || colon == text.npos || point < colon || text.find(':') == colon) return 0;
    std::size_t const end = std::min(text.find_first_not_of(allDigits, point + 1), text.size());
    double const fraction = Number(text.substr(point, end - point)).value_or(0);
    text.erase(point, end - point);
    return fraction;
}

// ISO 8601 with a blank or a "T".
std::optional<Moment> ReadIso(std::string_view text) {
    constexpr std::pair<char const*, std::size_t> shape[] = {{"", 4},    {"-", 2}, {"-", 2},
                                                             {" Tt", 2}, {":", 2}, {":", 2}};
    int fields[std::size(shape)] = {};
    bool const isUtc = text.ends_with('Z') || text.ends_with('z');
    if (isUtc) text.remove_suffix(1);
    std::size_t count = 0;
    for (auto const& [before, digits] : shape) {
        if (text.empty()) break;
        if (count != 0 && std::string_view(before).find(text.front()) == std::string_view::npos) return {};
        if (count != 0) text.remove_prefix(1);
        std::string_view const field = text.substr(0, text.find_first_not_of(allDigits));
        if (field.empty() || field.size() > digits || (count == 0 && field.size() < digits)) return {};
        std::from_chars(field.data(), field.data() + field.size(), fields[count++]);
        text.remove_prefix(field.size());
    }
    if (!text.empty() || count < 3 || count == 4) return {};

    auto const [year, month, day, hour, minute, second] = fields;
    auto const date = std::chrono::year(year) / month / day;
    if (!date.ok()) throw UsageError("time: there is no such day");
    if (hour > 23 || minute > 59 || second > (isUtc ? 60 : 59))
        throw UsageError("time: there is no such time of the day");
    Moment moment;
    moment.readAs = isUtc ? "UTC" : "local time";
    moment.isLeapSecond = second == 60;
    moment.seconds =
        sys_days(date).time_since_epoch().count() * 86400 + (hour * 60 + minute) * 60 + std::min(second, 59);
    if (isUtc) {
        if (moment.isLeapSecond && LeapSecondsAt(moment.seconds + 1) == LeapSecondsAt(moment.seconds))
            throw UsageError("time: no leap second is known there");
        return moment;
    }
    tov::CTime const local(year, month, day, hour, minute, second);
    moment.seconds = local.GetTime();
    if (local.GetHour() != hour || local.GetMinute() != minute || local.GetDay() != day)
        throw UsageError("time: the clocks left out this local time");
    return moment;
}

// Small letters, numbers without leading zeros and one blank for many: what is the same to a reader.
std::string Plain(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        std::string_view run = text.substr(0, std::min(text.find_first_not_of(allDigits), text.size()));
        char const c = text.front();
        text.remove_prefix(std::max<std::size_t>(run.size(), 1));
        if (!run.empty()) {
            run.remove_prefix(std::min(run.find_first_not_of('0'), run.size() - 1));
            plain += run;
        } else if (c != ' ' || !plain.ends_with(' ')) {
            plain += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
    }
    return plain;
}

// A text is in a format when it prints like that again.
std::optional<Moment> ReadIn(std::string const& format, std::string const& text) {
    tov::CTovTime time(std::int64_t{0});
    auto const isTheSame = [&] { return Plain(time.Format(format.c_str(), -1)) == Plain(text); };
    if (time.ScanTime(text, format) == 0) return {};
    // Half past midnight, "12:30 AM", is scanned as half past noon. Between the two readings lies another
    // time where the clock changes.
    if (!isTheSame()) time.Mjd(time - 0.5);
    if (!isTheSame()) return {};
    Moment moment;
    moment.seconds = time.GetTime();
    moment.readAs = "local time in the format " + format;
    return moment;
}

std::optional<Moment> ReadInAnyFormat(std::string const& text) {
    // Who writes a date with dots writes the day first.
    auto const dayFirstWithDots = [](unsigned number) {
        return (number & tov::eTimeFormatMonthName) == tov::eTimeFormatDots
                   ? number ^ tov::eTimeFormatDayFirst
                   : number;
    };
    for (unsigned i = 0; i <= tov::tovTimeFormatCount; ++i) {
        unsigned const index = i == 0 ? tov::CTovTime::CurrentTimeFormatIndex() : dayFirstWithDots(i - 1);
        std::string const format = tov::CTovTime::TimeFormat(static_cast<tov::eTimeFormat>(index));
        std::string withoutSeconds = format;
        withoutSeconds.erase(format.find(":%S"), 3);
        std::string const date = format.substr(0, std::min(format.find(" %H"), format.find(" %#I")));
        for (std::string const& shape : {format, withoutSeconds, date}) {
            if (std::optional<Moment> const moment = ReadIn(shape, text)) return moment;
        }
    }
    return {};
}

}  // namespace

int LeapSecondsAt(std::int64_t seconds, double* since) {
    double const mjd = unixEpochMjd + static_cast<double>(seconds) / 86400;
    return static_cast<int>(std::lround(Helper::GetLeapSeconds(mjd, since) * 86400));
}

Moment ReadMoment(std::string const& text) {
    std::size_t const blank = text.find(' ');
    std::optional<double> const first = Number(text.substr(0, blank));
    if (first && blank == text.npos) return OfMjd(*first);
    std::optional<double> const second = blank != text.npos ? Number(text.substr(blank + 1)) : std::nullopt;
    std::optional<Moment> moment;
    if (first && second) {
        moment = OfGps(*first, *second);
    } else {
        std::string whole = text;
        double const fraction = TakeFraction(whole);
        moment = ReadIso(whole);
        if (!moment) moment = ReadInAnyFormat(whole);
        if (!moment)
            throw UsageError("time: " + Quoted(text) + " is no time; survey time --help shows what is");
        SetFraction(*moment, fraction);
    }
    CheckRange(static_cast<double>(moment->seconds));
    return *moment;
}

}  // namespace survey
