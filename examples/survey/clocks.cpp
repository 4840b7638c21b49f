#include "clocks.h"

#include "answer.h"
#include "moment.h"
#include "table.h"
#include "text.h"

#include <tov310/leap_seconds.h>
#include <tov310/profile.h>
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <limits>

namespace survey {
namespace {

struct TimeOptions {
    std::string text;   // empty for now
    std::string learn;  // a file with leap seconds, or empty
};

TimeOptions ReadTimeOptions(Arguments& arguments, CommonOptions& common) {
    TimeOptions options;
    bool isGiven = false;
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        if (arguments.IsFile()) {
            // A shell need not be told that the words belong together.
            if (isGiven) options.text += ' ';
            options.text += arguments.Name();
            isGiven = true;
        } else if (arguments.Name() == "--learn") {
            options.learn = arguments.Text();
        } else {
            arguments.Unknown();
        }
    }
    std::size_t const begin = options.text.find_first_not_of(' ');
    if (isGiven && begin == options.text.npos) throw UsageError("time: the time is empty");
    options.text.erase(0, begin).erase(options.text.find_last_not_of(' ') + 1);
    return options;
}

Moment Now() {
    using namespace std::chrono;
    auto const now = floor<milliseconds>(system_clock::now().time_since_epoch());
    Moment moment;
    moment.seconds = floor<seconds>(now).count();
    moment.fraction = static_cast<double>(now.count() % 1000) / 1000;
    return moment;
}

std::string Decimals(double number, int count) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", count, number);
    return text;
}

// ".25", or nothing.
std::string FractionText(double fraction) {
    std::string text = Decimals(fraction, 6).substr(1);
    return text.erase(text.find_last_not_of("0.") + 1);
}

std::string DateText(double mjd) {
    long year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    double fraction = 0;
    tov::CTovTimeHelper::Mjd2Ymd(mjd, year, month, day, hour, minute, second, fraction);
    char text[64];
    std::snprintf(text, sizeof text, "%04ld-%02ld-%02ld", year, month, day);
    return text;
}

// Date and time as a clock shows them that may have printed ":59" for ":60".
std::string ClockText(std::string text, Moment const& moment) {
    if (moment.isLeapSecond) text.replace(text.size() - 2, 2, "60");
    return text + FractionText(moment.fraction);
}

void ShowClocks(Moment const& moment, tov::CTovTime const& time) {
    constexpr char const* clock = "%Y-%m-%d %H:%M:%S";
    int const leapSeconds = LeapSecondsAt(moment.seconds);
    std::int64_t const gps = moment.seconds + leapSeconds + (moment.isLeapSecond ? 1 : 0) - gpsEpoch;
    double const sinceGpsEpoch = static_cast<double>(gps) + moment.fraction;

    Table table({{"Clock"}, {"Time"}, {"MJD", Table::Align::kNumber}, {"Zone"}});
    table.Add({"UTC", ClockText(time.FormatGmt(clock), moment), Decimals(moment.Mjd(), 9), ""});
    table.Add(
        {"local", ClockText(time.Format(clock, -1), moment), Decimals(time, 9), time.Format("%z (%Z)", -1)});
    if (gps >= 0) {
        table.Add({"GPS",
                   "week " + std::to_string(gps / 604800) + ", second " + std::to_string(gps % 604800) +
                       FractionText(moment.fraction),
                   Decimals(44244 + sinceGpsEpoch / 86400, 9),
                   "UTC + " + std::to_string(leapSeconds) + " s"});
    } else {
        table.Add({"GPS", "begins on 1980-01-06", "", ""});
    }
    table.Print(std::cout);
}

// What the table knows of the moment, and how well.
void ShowLeapSeconds(Moment const& moment) {
    double since = 0, last = 0;
    int const seconds = LeapSecondsAt(moment.seconds, &since);
    tov::CTovTimeHelper::GetLeapSeconds(std::numeric_limits<double>::max(), &last);
    double const expires = tov::TovLeapSecondsExpire();

    std::cout << "Leap seconds: " << seconds;
    if (since != 0) std::cout << " since " << DateText(since);
    if (expires != 0) {
        std::cout << "; the table holds until " << DateText(expires);
    } else {
        std::cout << "; the table ends with " << DateText(last);
    }
    if (moment.Mjd() >= std::max(last, expires)) std::cout << ", later ones may be missing (see --learn)";
    std::cout << ".\n";
}

void ShowFormats(tov::CTovTime const& time) {
    Table table({{"Number", Table::Align::kNumber}, {"Format"}, {"Time"}});
    for (unsigned i = 0; i < tov::tovTimeFormatCount; ++i) {
        auto const format = static_cast<tov::eTimeFormat>(i);
        table.Add({std::to_string(i), tov::CTovTime::TimeFormat(format), time.Format(format, -1)});
    }
    table.Print(std::cout);
}

bool Learn(std::string const& file) {
    tov::CString why;
    int const learned = tov::TovLearnLeapSeconds(file.c_str(), nullptr, &why);
    if (learned < 0) {
        Complain() << Shown(file) << ": " << Shown(why) << '\n';
        return false;
    }
    if (learned == 0) {
        std::cout << "All leap seconds in " << Shown(file) << " were known.\n\n";
    } else {
        std::cout << "Leap seconds learned from " << Shown(file) << ": " << learned << ".\n\n";
    }
    return true;
}

}  // namespace

std::string TimeHelp() {
    return R"(Shows a moment, or without TEXT the present one, as UTC, in local time, as week and second
of GPS, as modified Julian date (MJD), and in the 32 formats of the library. TEXT is one of

  2026-11-21 12:30:15.25   local time, or UTC with a "Z" behind it; the seconds, or the
                           whole time of the day, may be missing
  21.11.2026 12:30         local time in the current format, else in any of the 32
  2400 345600.5            week and second of GPS
  61365.521                MJD of UTC

  --learn FILE           learn leap seconds from FILE, a leap-seconds.list as the IERS and
                         the tz database publish it; they are remembered
)";
}

void ForgetLeapSeconds() {
    using Profile = tov::CTovProfileEntries;
    Profile::WriteTovProfileString(Profile::LeapSecondsSection(), nullptr, nullptr);
}

int RunTime(Arguments& arguments, CommonOptions& common) {
    TimeOptions const options = ReadTimeOptions(arguments, common);
    LoadLanguage(common.language);
    if (common.help) return kFine;
    OpenProfile(common);
    if (!options.learn.empty() && !Learn(options.learn)) return kUnreadable;
    Moment const moment = options.text.empty() ? Now() : ReadMoment(options.text);

    tov::CTovTime time(moment.seconds);
    time.SetFracSecond(moment.fraction);
    ShowClocks(moment, time);
    std::cout << '\n';
    if (!moment.readAs.empty()) std::cout << "Read as " << moment.readAs << ".\n";
    ShowLeapSeconds(moment);
    std::cout << '\n';
    ShowFormats(time);
    return kFine;
}

}  // namespace survey
