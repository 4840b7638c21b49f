#include <tov310/compare.h>
#include <tov310/messages.h>
#include <tov310/profile.h>
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>
#include <tov310/window.h>

#include "support/temporary_folder.h"
#include "support/time_zone.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <ctime>
#include <functional>
#include <random>
#include <thread>

namespace tov {
namespace {

using std::chrono::sys_days;
using test::TimeZone;

double MjdOfDay(int year, int month, int day) {
    namespace c = std::chrono;
    auto const date = c::year(year) / month / 1;
    return static_cast<double>((sys_days(date).time_since_epoch().count() + day - 1) + 40587);
}

// What the 32 formats are made of, bit by bit.
CString MadeFormat(unsigned index) {
    CString const year = (index & 4) != 0 ? "%y" : "%Y";
    CString const clock = (index & 2) != 0 ? " %#I:%M:%S %p" : " %H:%M:%S";
    if (index >= 24) return ((index & 1) != 0 ? "%#d-%b-" : "%#d. %b ") + year + clock;
    char const separator = "/-."[index / 8];
    return ((index & 1) != 0 ? CString("%d") + separator + "%m" : CString("%m") + separator + "%d") +
           separator + year + clock;
}

struct FormatBox : CTovTime::CTimeFormatComboBox {
    void ResetContent() override { items.clear(); }
    int AddString(char const* text) override {
        items.emplace_back(text);
        return static_cast<int>(items.size()) - 1;
    }
    int SetCurSel(int index) override { return selected = index; }
    int GetCurSel() const override { return selected; }
    std::vector<CString> items = {"old"};
    int selected = -1;
};

// A window with others in it.
struct Branch : CTovMessageWindow {
    explicit Branch(std::vector<CString>& where, CString called) : log(where), name(std::move(called)) {
        Create();
    }
    std::vector<HWND> GetChildren() const override { return children; }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message != WM_TOV_FORMAT_CHANGED_TIME)
            return CTovMessageWindow::WindowProc(message, wParam, lParam);
        log.push_back(name + " " + std::to_string(wParam) + ">" + std::to_string(lParam) + "=" +
                      std::to_string(CTovTime::CurrentTimeFormatIndex()));
        if (answer) answer();
        return 0;
    }
    std::vector<CString>& log;
    CString name;
    std::vector<HWND> children;
    std::function<void()> answer;
};

class TimeFormat : public testing::Test {
 protected:
    TimeFormat() { TovSetProfilePath(m_folder.File("Time.ini").c_str()); }
    ~TimeFormat() override { TovSetProfilePath(""); }

    static int Stored() {
        return static_cast<int>(CTovProfileEntries::ReadTovProfileInt("CTovTime", "Time Format (###)", -77));
    }
    static CString StoredText() {
        return CTovProfileEntries::ReadTovProfileString("CTovTime", "Time Format (str)", "none");
    }
    static void Store(int index) {
        CTovProfileEntries::WriteTovProfileInt("CTovTime", "Time Format (###)", index);
        CTovProfileEntries::WriteTovProfileString("CTovTime", "Time Format (str)", "old");
    }

 private:
    test::TemporaryFolder m_folder;
};

TEST_F(TimeFormat, IsOneOfThirtyTwo) {
    for (unsigned index = 0; index < 32; ++index) {
        auto const format = static_cast<eTimeFormat>(index);
        EXPECT_EQ(CTovTime::TimeFormat(format), MadeFormat(index));
        CTovTime::SaveSettings(format);
        EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), index);
        EXPECT_EQ(CTovTime::CurrentTimeFormat(), MadeFormat(index));
        EXPECT_EQ(Stored(), static_cast<int>(index));
        EXPECT_EQ(StoredText(), MadeFormat(index));
        EXPECT_EQ(CTovTime::DateSeparator(), index < 24         ? "/-."[index / 8]
                                             : (index & 1) != 0 ? '-'
                                                                : ' ')
            << index;
        EXPECT_EQ(CTovTime().DateOrder(), index >= 24 || (index & 1) == 0) << index;
    }
    for (unsigned const no : {32u, 40u, 0xFFFFFFFFu}) {
        CTovTime::SaveSettings(static_cast<eTimeFormat>(no));
        CTovTime::DefaultSettings(static_cast<eTimeFormat>(no));
        EXPECT_EQ(CTovTime().Format(static_cast<eTimeFormat>(no)), "");
    }
    EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), 31u);
    EXPECT_EQ(eTimeFormatDots | eTimeFormatDayFirst, 17u);
}

TEST_F(TimeFormat, ComesFromTheProfileWhereThatHoldsOne) {
    struct {
        int stored;
        unsigned loaded;
        unsigned afterDefault;  // with 5
    } const rows[] = {{0, 0, 0}, {31, 31, 31}, {32, 0, 5}, {40, 0, 5}, {-1, 0, 5}, {-5, 0, 5}, {17, 17, 17}};
    for (auto const& row : rows) {
        Store(row.stored);
        FormatBox box;
        CTovTime(2020, 2, 3, 4, 5, 6).InitializeTimeFormatComboBox(box);
        EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), row.loaded) << row.stored;
        EXPECT_EQ(box.selected, static_cast<int>(row.loaded));
        EXPECT_EQ(box.items.size(), 32u);
        EXPECT_THAT(box.items, testing::Each(testing::Not(testing::HasSubstr("%"))));
        EXPECT_EQ(Stored(), row.stored) << "loading does not write";
        CTovTime::DefaultSettings(static_cast<eTimeFormat>(5));
        EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), row.afterDefault) << row.stored;
        EXPECT_EQ(Stored(), static_cast<int>(row.afterDefault));
        EXPECT_EQ(StoredText(), row.afterDefault == row.loaded ? "old" : MadeFormat(5));
    }
}

TEST_F(TimeFormat, IsToldToAllWindowsBelowTheRootWhenItChanges) {
    std::vector<CString> log;
    Branch root(log, "root"), first(log, "first"), second(log, "second");
    auto leaf = std::make_unique<Branch>(log, "leaf");
    root.children = {first.GetSafeHwnd(), second.GetSafeHwnd(), HWND{}};
    first.children = {leaf->GetSafeHwnd()};
    CTovTime::SaveSettings(static_cast<eTimeFormat>(3));
    CTovTime const time;
    FormatBox box;
    auto const save = [&](int selection, CWnd* to) {
        log.clear();
        box.selected = selection;
        time.SaveCurrentSelection(box, to);
        return log;
    };
    using testing::ElementsAre;
    using testing::IsEmpty;
    EXPECT_THAT(save(17, &root), ElementsAre("first 3>17=17", "leaf 3>17=17", "second 3>17=17"));
    EXPECT_EQ(Stored(), 17);
    Store(9);
    EXPECT_THAT(save(17, &root), IsEmpty());
    EXPECT_EQ(Stored(), 17) << "stored although it is current";
    EXPECT_THAT(save(18, nullptr), IsEmpty());
    first.answer = [&leaf] { leaf.reset(); };
    EXPECT_THAT(save(32, &root), ElementsAre("first 18>0=0", "second 18>0=0"));
    root.DestroyWindow();
    EXPECT_THAT(save(31, &root), IsEmpty());
    EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), 31u);
    for (int const no : {-1, 32, 1000}) {
        box.selected = no;
        EXPECT_EQ(time.GetCurrentSelection(box), 0u);
    }
}

TEST(TovTime, MayBeUsedFirstByAnyThread) {
    std::vector<std::thread> threads;
    std::atomic<int> odd = 0;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&odd] {
            CTovTime const time;
            odd += time.Timezone() != CTovTime::SystemTimezone(0) ||
                   CTovTime::CurrentTimeFormatIndex() > 31 || time.Format().empty();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(odd, 0);
}

TEST(TovTime, TellsTheZoneOfTheSystemEastPositive) {
    struct {
        char const* zone;
        double hours;
        double daylight;  // -1 where it depends on the day
    } const rows[] = {
        {"UTC0", 0, 0},
        {"AAA-5:30", 5.5, 0},
        {"AAA3:30", -3.5, 0},
        {"AAA-14", 14, 0},
        {"AAA0:30", -0.5, 0},
        {"AAA-0:30", -0.5, 0},
        {"AAA5BBB,0/0,J365/25", -5, 1},
        {"AAA5BBB,J2,J180", -5, -1},
        {"AAA5BBB,J180,J2", -5, -1},
    };
    for (auto const& row : rows) {
        TimeZone const zone(row.zone);
        double daylight = 7;
        EXPECT_EQ(CTovTime::LocalTimeZone(daylight), row.hours) << row.zone;
        EXPECT_TRUE(row.daylight < 0 || daylight == row.daylight) << row.zone;
    }
    double const zone = CTovTime::SystemTimezone(0);
    EXPECT_EQ(CTovTime::SystemTimezone(1), zone + CTovTime::SystemDaylight());
    EXPECT_EQ(CTovTime::SystemTimezoneMjd(1), (zone + 24 * CTovTime::SystemDaylightMjd()) / 24);
    EXPECT_EQ(CTovTime().Timezone(), zone);
    EXPECT_NEAR(CTovTime::CurrentTime() - CTovTime::CurrentTimeUTC(0), zone / 24, 2 / 86400.0);
}

TEST(TovTime, TakesReadingsOfTheClockAsTheRunTimeTakesThem) {
    std::mt19937 random(4);
    for (char const* name : {"Europe/Berlin", "Pacific/Apia", "Australia/Lord_Howe", "Africa/Casablanca"}) {
        TimeZone const zone(name);
        for (int i = 0; i < 150'000; ++i) {
            std::tm fields{};
            bool const odd = i % 100 == 0;  // fields that carry
            fields.tm_year = static_cast<int>(60 + random() % 90);
            fields.tm_mon = static_cast<int>(random() % 12) + (odd ? 5 : 0);
            fields.tm_mday = static_cast<int>(random() % 31) + 1;
            fields.tm_hour = static_cast<int>(random() % 24);
            fields.tm_min = static_cast<int>(random() % 60);
            fields.tm_isdst = i % 50 == 0 ? 1 : -1;
            CTime const time(fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                             fields.tm_min, 0, fields.tm_isdst);
            ASSERT_EQ(time.GetTime(), std::mktime(&fields)) << name << " " << std::asctime(&fields);
        }
    }
}

TEST(TovTime, IsMadeFromWhatOthersKeep) {
    TimeZone const zone("AAA5BBB,0/0,J365/25");
    auto const text = [](CTovTime const& time) {
        return time.Format("%Y-%m-%d %H:%M:%S") + time.FormatFracSec(3);
    };
    CTime const half(2020, 2, 29, 12, 30, 15);
    EXPECT_EQ(text(half), "2020-02-29 12:30:15.000");
    EXPECT_EQ(text(CTovTime(half.GetTime())), text(half));
    EXPECT_EQ(text(CTovTime(2020, 2, 29, 12, 30, 15)), text(half));
    EXPECT_EQ(text(CTovTime(2020, 2, 29, 12, 30, 15, 0)), "2020-02-29 13:30:15.000")
        << "no daylight saving time";
    EXPECT_EQ(text(CTovTime(SYSTEMTIME{2020, 2, 0, 29, 12, 30, 15, 999})), text(half));
    EXPECT_EQ(text(CTovTime(
                  FILETIME{(static_cast<std::uint64_t>(half.GetTime()) + 11644473600) * 10000000 + 9999999})),
              text(half));
    EXPECT_EQ(text(CTovTime(static_cast<unsigned short>(40 << 9 | 2 << 5 | 29),
                            static_cast<unsigned short>(12 << 11 | 30 << 5 | 7))),
              "2020-02-29 12:30:14.000");
    EXPECT_EQ(text(CTovTime(static_cast<unsigned short>(0), static_cast<unsigned short>(0))),
              "1979-12-31 00:00:00.000");
    EXPECT_EQ(text(CTovTime("29 2 2020 12:30:15.25", "%d %m %Y %H:%M:%s")), "2020-02-29 12:30:15.250");
    EXPECT_EQ(text(CTovTime(2094, 563415.5)), "2020-02-29 12:30:15.500");
    EXPECT_EQ(text(CTovTime(58908.5 + 900.125 / 86400)), "2020-02-29 12:15:00.125");
    EXPECT_EQ(CTovTime(100000.0).GetTime(), 0) << "beyond the range";
    CTovTime time(half);
    time.Timezone(3);
    time = 58908.75;
    time.SetFracSecond(0.5);
    time.SetFracSecond(1);
    time.SetFracSecond(std::nan(""));
    EXPECT_EQ(time.GetMilliSeconds(), 500);
    time = half;
    EXPECT_EQ(time.GetFracSecond(), 0);
    EXPECT_EQ(time.Timezone(), 3);
    for (double const no : {40587.5, 62520.0, -1e300, std::nan(""), HUGE_VAL})
        EXPECT_EQ(text(time = no), text(half)) << no;
    auto const made = CTovTime::classCTovTime.CreateObject();
    EXPECT_TRUE(made->IsKindOf(&CTovTime::classCTovTime));
}

TEST(TovTime, CountsDaysAsTheCalendarDoes) {
    std::mt19937 random(5);
    for (int i = 0; i < 100'000; ++i) {
        int const year = static_cast<int>(random() % 9999) + 1;
        int const month = static_cast<int>(random() % 12) + 1;
        int const day = static_cast<int>(random() % 31) + 1;
        int const second = static_cast<int>(random() % 86400);
        double const date = MjdOfDay(year, month, day);
        unsigned long whole = 9;
        double part = 9;
        double const mjd =
            CTovTime::Mjd(year, month, day, second / 3600, second / 60 % 60, second % 60 + 0.25, whole, part);
        ASSERT_EQ(mjd, date + (second + 0.25) / 86400) << year << " " << month << " " << day;
        ASSERT_EQ(static_cast<double>(whole) + part, mjd);
        ASSERT_TRUE(date < 0 || part == (second + 0.25) / 86400);
    }
    EXPECT_EQ(CTovTime::Mjd(2000, 1, 1, 0, 0, 0), 51544);
    EXPECT_EQ(CTovTime::Mjd(1999, 13, 1, 24, -60, 3600), 51545) << "fields carry";
    unsigned long whole = 0;
    double part = 0;
    CTovTime::Mjd(2000, 1, 1, 23, 59, 60, whole, part);
    EXPECT_EQ(whole, 51545u);
    EXPECT_EQ(part, 0);
    TimeZone const zone("UTC0");
    CTovTime time(0.0);
    double second = 0;
    time.Mjd(51544, 0.5 + 1.0000004 / 86400, 1e-6, second);
    EXPECT_EQ(time.Format("%H:%M:%S") + " " + std::to_string(second), "12:00:01 1.000000");
    time.Mjd(51544, 0.5 + 61.25 / 86400, 0.01, second);
    EXPECT_EQ(time.GetFracSecond(), 0.25);
    EXPECT_EQ(second, 1.25);
}

TEST(TovTime, CountsUtcWithTheZoneWestPositive) {
    TimeZone const zone("UTC0");
    CTovTime time(2020, 2, 29, 23, 30, 0);
    time.Timezone(5.5);
    EXPECT_NEAR(time.MjdUTC(), MjdOfDay(2020, 3, 1) + 5.0 / 24, 1e-11);
    char const* const format = "%d %H:%M:%S";
    EXPECT_EQ(time.FormatUTC(format), "01 05:00:00");
    EXPECT_EQ(time.FormatUTC(eTimeFormatDots | eTimeFormatDayFirst), "01.03.2020 05:00:00");
    CTovTime::SaveSettings(eTimeFormatDashes | eTimeFormatDayFirst | eTimeFormatShortYear);
    EXPECT_EQ(time.FormatUTC(), "01-03-20 05:00:00");
    EXPECT_EQ(time.FormatUTC(-0.5), "29-02-20 23:00:00");
    EXPECT_EQ(time.FormatDateUTC() + "|" + time.FormatTimeUTC(), "01-03-20|05:00:00");
    EXPECT_EQ(time.FormatDateUTC(1.0) + "|" + time.FormatTimeUTC(1.0), "01-03-20|00:30:00");
    EXPECT_EQ(time.FormatDate() + "|" + time.FormatTime(0x82), "29-02-20|00");
    time.MjdUTC(MjdOfDay(2020, 3, 1) + 5.0 / 24);
    EXPECT_EQ(time.Format(format), "29 23:30:00");
    CTovTime other(2020, 3, 1, 5, 0, 0);
    other.Timezone(0);
    EXPECT_TRUE(time == other && !(time < other) && !(time > other) && time <= other && !(time != other));
    EXPECT_EQ(TovCompare(time, other), 0);
    other.SetFracSecond(1e-7);
    EXPECT_TRUE(time == other) << "within the tolerance";
    other.SetFracSecond(1e-5);
    EXPECT_TRUE(time < other && other > time && time != other && other >= time);
    EXPECT_EQ(TovCompare(other, time), 1);
    EXPECT_EQ(CTovTime(2030, 1, 18, 23, 0, 0).FormatUTC(5.0), "19-01-30 04:00:00") << "beyond the range";
    EXPECT_EQ(CTovTime(2030, 1, 18, 23, 0, 0).FormatUTC(HUGE_VAL), "18-01-30 23:00:00");
    CTovTime far(CTime(std::int64_t{1} << 62));
    EXPECT_EQ(far.MjdUTC(), 0) << "no local reading";
}

TEST(TovTime, ComparesItsParts) {
    TimeZone const zone("UTC0");
    CTovTime early(2020, 2, 29, 23, 0, 0), late(2020, 3, 1, 1, 0, 0), later(late);
    later.SetFracSecond(0.5);
    auto const check = [](auto const& a, auto const& b, int date, int time) {
        EXPECT_EQ(TovCompareDatePart(a, b), date);
        EXPECT_EQ(TovCompareDatePart(b, a), -date);
        EXPECT_EQ(TovCompareTimePart(a, b), time);
        EXPECT_EQ(TovCompareTimePart(b, a), -time);
        int const whole = date != 0 ? date : time;
        EXPECT_EQ(TovCompare(a, b), whole);
        EXPECT_EQ(TovCompare(b, a), -whole);
    };
    check(early, late, -1, 1);
    check(late, later, 0, -1);
    check(static_cast<CTime const&>(early), static_cast<CTime const&>(late), -1, 1);
    check(static_cast<CTime const&>(late), static_cast<CTime const&>(later), 0, 0);
    check(COleDateTime(early), COleDateTime(late), -1, 1);
    check(COleDateTime(1899, 12, 29, 18, 0, 0), COleDateTime(1899, 12, 29, 6, 0, 0), 0, 1);
    COleDateTime const none(2020, 13, 1, 0, 0, 0);
    EXPECT_EQ(TovCompare(none, COleDateTime(early)), -1);
    EXPECT_EQ(TovCompare(none, none), 0);
}

TEST(TovTime, CountsGpsWeeksToTheSecond) {
    TimeZone const zone("UTC0");
    EXPECT_EQ(CTovTime::GpsTime(1, 43200), 44251.5);
    std::mt19937 random(6);
    CTovTime time(0.0);
    int week = 0;
    double seconds = 0;
    for (int i = 0; i < 100'000; ++i) {
        int const weeks = static_cast<int>(random() % 2600);
        int const second = static_cast<int>(random() % 604800);
        double const fraction = i % 2 == 0 ? 0 : 0.5;
        ASSERT_EQ(time.SetGpsTime(weeks, second + fraction), CTovTime::GpsTime(weeks, second + fraction));
        ASSERT_EQ(time.GetGpsTime(week, seconds), 1);
        ASSERT_EQ(week, weeks);
        ASSERT_NEAR(seconds, second + fraction, fraction == 0 ? 0 : 7e-7);
    }
    CTovTime before(1980, 1, 5, 23, 59, 59);
    EXPECT_EQ(before.GetGpsTime(week, seconds), 0);
    EXPECT_EQ(week, -1);
    EXPECT_EQ(seconds, 604799);
    EXPECT_EQ(time.SetGpsTime(100'000, 1), 44244 + 700'000 + 1 / 86400.0);
    EXPECT_GT(time.GetGpsTime(week, seconds), 0) << "beyond the range nothing is set";
    EXPECT_LT(week, 2600);
}

TEST(TovTime, ReadsFileStamps) {
    EXPECT_EQ(CTovTime::CduFilestamp(500101.0), MjdOfDay(1950, 1, 1));
    EXPECT_EQ(CTovTime::CduFilestamp(491231.0), MjdOfDay(2049, 12, 31));
    EXPECT_EQ(CTovTime::CduFilestamp(20200229.12), MjdOfDay(2020, 2, 29) + 0.5);
    TimeZone const zone("UTC0");
    CTovTime time(2001, 2, 3, 4, 5, 6);
    EXPECT_EQ(time.SetCduFilestamp(500101.0), MjdOfDay(2050, 1, 1));
    EXPECT_EQ(time.Format("%Y"), "2001");
    for (double const no : {-1.0, 1e8, HUGE_VAL, std::nan("")}) {
        EXPECT_EQ(CTovTime::CduFilestamp(no), 0);
        EXPECT_EQ(time.SetCduFilestamp(no), 0);
    }
    time.SetCduFilestamp(710101.000001);
    EXPECT_EQ(time.Format("%Y %S"), "1971 01");
    for (int second = 0; second < 86400; ++second) {
        int const digits = second / 3600 * 10'000 + second / 60 % 60 * 100 + second % 60;
        double const mjd = MjdOfDay(2026, 11, 21) + second / 86400.0;
        ASSERT_EQ(CTovTime::CduFilestamp(261121 + digits / 1e6), mjd) << digits;
        ASSERT_EQ(CTovTime::CduFilestamp(20261121 + digits / 1e6), mjd) << digits;
        ASSERT_NEAR(time.SetCduFilestamp(261121 + (digits + 0.123) / 1e6), mjd + 0.123 / 86400, 1e-11);
        ASSERT_EQ(time.GetFracSecond(), 0.123);
        ASSERT_NEAR(time, mjd + 0.123 / 86400, 1e-11);
    }
}

TEST(TovTime, PrintsTheFractionOfTheSecond) {
    struct {
        double fraction;
        int round;
        char const* text;
    } const rows[] = {
        {0, 0, ".000"},         {0.7, 0, ".000"},    {0.25, 4, ".2"},        {0.36, 4, ".4"},
        {0.96, 4, ".0"},        {0.125, 5, ".12"},   {0.996, 5, ".00"},      {0.0625, 3, ".062"},
        {0.9996, 3, ".000"},    {0.9996, 6, ".999"}, {0.123, 6, ".123"},     {0.1239996, 6, ".124"},
        {0.9999996, 6, ".000"}, {0.1236, 9, ".124"}, {0.9996, 0x7F, ".999"}, {0.05, 4 + 0x80, ".0"},
    };
    for (auto const& row : rows) {
        CTovTime time(2020, 2, 29, 12, 0, 0);
        time.SetFracSecond(row.fraction);
        EXPECT_EQ(time.FormatFracSec(row.round), row.text) << row.fraction << " " << row.round;
    }
    CTovTime time(2020, 2, 29, 23, 59, 59);
    time.SetFracSecond(0.6);
    EXPECT_EQ(time.Format("%d %H:%M:%S", -1) + time.FormatFracSec(-1), "29 23:59:59.600");
    EXPECT_EQ(time.Format("%d %H:%M:%S"), "01 00:00:00");
    double const rounded = time.Round(0);
    EXPECT_EQ(rounded, time);
    EXPECT_EQ(time.GetFracSecond(), 0);
    EXPECT_EQ(time.Format(TovBuiltInResourceModule(), 26017), "真");
    EXPECT_EQ(time.Format(nullptr, 1u, 0), "");
}

TEST(TovTimeSpan, HoldsFractionsOfASecond) {
    CTovTimeSpan span(8, 1, 2, 3);
    EXPECT_EQ(static_cast<double>(span), 8 + 3723.0 / 86400);
    span.SetFracSecond(0.5);
    int week = 9;
    double seconds = 0;
    EXPECT_EQ(span.GetGpsTimeSpan(week, seconds), 1);
    EXPECT_EQ(week, 1);
    EXPECT_EQ(seconds, 86400 + 3723.5);
    EXPECT_EQ(CTovTimeSpan(1, 86400 + 3723.5), span);
    EXPECT_EQ(CTovTimeSpan(static_cast<double>(span)), span);
    EXPECT_LT(CTovTimeSpan(std::int64_t{8 * 86400 + 3723}), span);
    EXPECT_EQ(span.Format("%D %H:%M:%S"), "8 1:02:04");
    EXPECT_EQ(span.Format("%H:%M"), "193:02");
    EXPECT_EQ(span.Format(TovBuiltInResourceModule(), 26017), "真");
    EXPECT_EQ(span.Round(0), 8 + 3724.0 / 86400);
    span = CTimeSpan(60);
    EXPECT_EQ(span.GetFracSecond(), 0);
    std::mt19937 random(7);
    for (int i = 0; i < 100'000; ++i) {
        auto const whole = static_cast<std::int64_t>(random() % 2147483647);
        CTovTimeSpan const days(static_cast<double>(whole) / 86400);
        ASSERT_EQ(days.GetTimeSpan(), whole);
        ASSERT_EQ(days.GetFracSecond(), 0);
    }
}

}  // namespace
}  // namespace tov
