// Dates and times against the C and C++ libraries. Each peer is measured in the same run; the counter "ratio"
// tells how many times slower the library is, or how many times faster where it says so in the name.
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "peer.h"

namespace {

constexpr std::size_t count = 4096;

// Days of the years 1 to 9999, with a time of the day.
std::vector<double> Mjds() {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> any(-678575, 2973483);
    std::vector<double> mjds(count);
    for (double& mjd : mjds)
        mjd = any(random);
    return mjds;
}

void MjdToDate(benchmark::State& state) {
    std::vector<double> const mjds = Mjds();
    bench::AgainstPeer(
        state, count,
        [&] {
            for (double const mjd : mjds) {
                long fields[6];
                double fraction = 0;
                tov::CTovTimeHelper::Mjd2Ymd(mjd, fields[0], fields[1], fields[2], fields[3], fields[4],
                                             fields[5], fraction);
                benchmark::DoNotOptimize(fields);
                benchmark::DoNotOptimize(fraction);
            }
        },
        [&] {
            using Days = std::chrono::duration<double, std::chrono::days::period>;
            using std::chrono::floor;
            for (double const mjd : mjds) {
                auto const time = std::chrono::sys_time<Days>(Days(mjd - 40587));
                auto const day = floor<std::chrono::days>(time);
                std::chrono::year_month_day const date{day};
                std::chrono::hh_mm_ss const clock{floor<std::chrono::nanoseconds>(time - day)};
                benchmark::DoNotOptimize(date);
                benchmark::DoNotOptimize(clock);
            }
        },
        bench::Want::kWithin);
}
BENCHMARK(MjdToDate);

// The date alone from whole days, which is less than the library is asked for.
void MjdToDateAgainstDateAlone(benchmark::State& state) {
    std::vector<double> const mjds = Mjds();
    std::vector<int> days;
    for (double const mjd : mjds)
        days.push_back(static_cast<int>(mjd) - 40587);
    bench::AgainstPeer(
        state, count,
        [&] {
            for (double const mjd : mjds) {
                long fields[6];
                double fraction = 0;
                tov::CTovTimeHelper::Mjd2Ymd(mjd, fields[0], fields[1], fields[2], fields[3], fields[4],
                                             fields[5], fraction);
                benchmark::DoNotOptimize(fields);
            }
        },
        [&] {
            for (int const day : days) {
                std::chrono::year_month_day const date{std::chrono::sys_days(std::chrono::days(day))};
                benchmark::DoNotOptimize(date);
            }
        },
        bench::Want::kWithin);
}
BENCHMARK(MjdToDateAgainstDateAlone);

void DateToMjd(benchmark::State& state) {
    std::vector<std::chrono::year_month_day> dates;
    for (double const mjd : Mjds())
        dates.emplace_back(std::chrono::sys_days(std::chrono::days(static_cast<int>(mjd) - 40587)));
    bench::AgainstPeer(
        state, count,
        [&] {
            for (auto const& date : dates) {
                benchmark::DoNotOptimize(
                    tov::CTovTime::Mjd(int{date.year()}, static_cast<int>(unsigned{date.month()}),
                                       static_cast<int>(unsigned{date.day()}), 12, 34, 56.0));
            }
        },
        [&] {
            using Days = std::chrono::duration<double, std::chrono::days::period>;
            for (auto const& date : dates) {
                auto const time = std::chrono::sys_days(date) + std::chrono::hours(12) +
                                  std::chrono::minutes(34) + std::chrono::seconds(56);
                benchmark::DoNotOptimize(Days(time.time_since_epoch()).count() + 40587);
            }
        },
        bench::Want::kWithin);
}
BENCHMARK(DateToMjd);

std::vector<tov::CTime> Times() {
    std::mt19937_64 random(2);
    std::uniform_int_distribution<std::int64_t> any(86400, 1894000000);
    std::vector<tov::CTime> times;
    for (std::size_t i = 0; i < count; ++i)
        times.emplace_back(any(random));
    return times;
}

// Format 24, with the name of a month. Both read the local clock.
void FormatFasterThanStrftime(benchmark::State& state) {
    std::vector<tov::CTime> const times = Times();
    bench::AgainstPeer(
        state, count,
        [&] {
            for (tov::CTime const time : times) {
                std::string const text = time.Format("%#d. %b %Y %H:%M:%S");
                benchmark::DoNotOptimize(text.data());
            }
        },
        [&] {
            for (tov::CTime const time : times) {
                std::time_t const seconds = time.GetTime();
                std::tm fields;
                localtime_r(&seconds, &fields);
                char buffer[64];
                std::string const text(buffer,
                                       std::strftime(buffer, sizeof buffer, "%e. %b %Y %H:%M:%S", &fields));
                benchmark::DoNotOptimize(text.data());
            }
        },
        bench::Want::kFaster);
}
BENCHMARK(FormatFasterThanStrftime);

// Lines of a log, one every seven seconds. Beyond what strptime does a moment is found, and its MJD.
void Scan(benchmark::State& state) {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < count; ++i)
        texts.push_back(
            tov::CTime(1'763'700'000 + 7 * static_cast<std::int64_t>(i)).Format("%d.%m.%Y %H:%M:%S"));
    std::string const format = "%d.%m.%Y %H:%M:%S";
    bench::AgainstPeer(
        state, count,
        [&] {
            tov::CTovTime time;
            for (std::string const& text : texts)
                benchmark::DoNotOptimize(time.ScanTime(text, format));
        },
        [&] {
            for (std::string const& text : texts) {
                std::tm fields{};
                benchmark::DoNotOptimize(strptime(text.c_str(), format.c_str(), &fields));
                benchmark::DoNotOptimize(fields);
            }
        },
        bench::Want::kWithin);
}
BENCHMARK(Scan);

// Days from 1970 to 2030 in any order, against a binary search in a table that the compiler sees.
void GetLeapSeconds(benchmark::State& state) {
    struct Row {
        double day, offset;
    };
    std::vector<Row> rows;
    for (double mjd = 40587; mjd < 62502; ++mjd) {
        double since = 0;
        double const offset = tov::CTovTimeHelper::GetLeapSeconds(mjd, &since);
        if (since == mjd) rows.push_back({since, offset});
    }
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> any(40587, 62502);
    std::vector<double> mjds(count);
    for (double& mjd : mjds)
        mjd = any(random);
    bench::AgainstPeer(
        state, count,
        [&] {
            for (double const mjd : mjds) {
                double since = 0;
                benchmark::DoNotOptimize(tov::CTovTimeHelper::GetLeapSeconds(mjd, &since));
                benchmark::DoNotOptimize(since);
            }
        },
        [&] {
            for (double const mjd : mjds) {
                std::size_t low = 0;
                std::size_t high = rows.size();
                while (low < high) {
                    std::size_t const middle = (low + high) / 2;
                    if (rows[middle].day <= mjd) {
                        low = middle + 1;
                    } else {
                        high = middle;
                    }
                }
                double since = low != 0 ? rows[low - 1].day : 0.0;
                double offset = low != 0 ? rows[low - 1].offset : 0.0;
                benchmark::DoNotOptimize(since);
                benchmark::DoNotOptimize(offset);
            }
        },
        bench::Want::kWithin);
}
BENCHMARK(GetLeapSeconds);

}  // namespace

BENCHMARK_MAIN();
