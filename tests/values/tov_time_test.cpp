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
#include <random>
#include <tuple>
#include <utility>

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

// A window that may have another one in it.
struct Listener : CTovMessageWindow {
    Listener() { Create(); }
    std::vector<HWND> GetChildren() const override { return {child}; }
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_TOV_FORMAT_CHANGED_TIME)
            told = std::to_string(wParam) + ">" + std::to_string(lParam);
        return 0;
    }
    HWND child{};
    CString told;
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
        CTovTime::SaveSettings(static_cast<eTimeFormat>(index));
        EXPECT_EQ(CTovTime::CurrentTimeFormat(), MadeFormat(index));
        EXPECT_EQ(StoredText(), MadeFormat(index));
        EXPECT_TRUE(CTovTime::CurrentTimeFormatIndex() == index && Stored() == static_cast<int>(index));
        bool const dayFirst = (index & 1) != 0;
        EXPECT_EQ(CTovTime::DateSeparator(), "/-. "[index < 24 ? index / 8 : dayFirst ? 1 : 3]) << index;
        EXPECT_EQ(CTovTime().DateOrder(), index >= 24 || !dayFirst) << index;
    }
    for (auto const no : {static_cast<eTimeFormat>(32), static_cast<eTimeFormat>(~0u)}) {
        CTovTime::SaveSettings(no);
        CTovTime::DefaultSettings(no);
        EXPECT_EQ(CTovTime().Format(no), "");
    }
    EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), 31u);
    EXPECT_EQ(eTimeFormatDots | eTimeFormatDayFirst, 17u);
}

TEST_F(TimeFormat, ComesFromTheProfileWhereThatHoldsOne) {
    for (int const stored : {0, 31, 32, 40, -1, -5, 17}) {
        bool const good = stored >= 0 && stored < 32;
        Store(stored);
        FormatBox box;
        CTovTime(2020, 2, 3, 4, 5, 6).InitializeTimeFormatComboBox(box);
        EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), good ? static_cast<unsigned>(stored) : 0) << stored;
        EXPECT_EQ(box.selected, good ? stored : 0);
        EXPECT_EQ(box.items.size(), 32u);
        EXPECT_THAT(box.items, testing::Each(testing::Not(testing::HasSubstr("%"))));
        EXPECT_EQ(Stored(), stored) << "loading does not write";
        CTovTime::DefaultSettings(static_cast<eTimeFormat>(5));
        EXPECT_EQ(CTovTime::CurrentTimeFormatIndex(), good ? static_cast<unsigned>(stored) : 5) << stored;
        EXPECT_EQ(Stored(), good ? stored : 5);
        EXPECT_EQ(StoredText(), good ? "old" : MadeFormat(5));
    }
}

TEST_F(TimeFormat, IsToldToTheWindowsBelowTheRootWhenItChanges) {
    Listener root, child;
    root.child = child.GetSafeHwnd();
    CTovTime::SaveSettings(static_cast<eTimeFormat>(3));
    std::tuple<int, CWnd*, char const*, int> const rows[] = {
        {17, &root, "3>17", 17}, {17, &root, "", 17}, {18, nullptr, "", 18}, {32, &root, "18>0", 0}};
    FormatBox box;
    for (auto const& [selection, to, told, now] : rows) {
        Store(9);  // is written over, though it may be current
        child.told.clear();
        box.selected = selection;
        CTovTime().SaveCurrentSelection(box, to);
        EXPECT_EQ(child.told, told);
        EXPECT_TRUE(Stored() == now && CTovTime::CurrentTimeFormatIndex() == static_cast<unsigned>(now));
    }
    EXPECT_EQ(root.told, "");
    root.DestroyWindow();
    box.selected = 31;
    CTovTime().SaveCurrentSelection(box, &root);
    EXPECT_EQ(child.told, "18>0");
}

TEST(TovTime, TellsTheZoneOfTheSystemEastPositive) {
    std::pair<char const*, double> const rows[] = {
        {"UTC0", 0},       {"AAA-5:30", 5.5},  {"AAA3:30", -3.5},       {"AAA-14", 14},
        {"AAA0:30", -0.5}, {"AAA-0:30", -0.5}, {"AAA5BBB,J2,J180", -5}, {"AAA5BBB,J180,J2", -5}};
    double daylight = 7;
    for (auto const& [name, hours] : rows) {
        TimeZone const there(name);
        EXPECT_EQ(CTovTime::LocalTimeZone(daylight), hours) << name;
    }
    TimeZone const always("AAA5BBB,0/0,J365/25");
    EXPECT_EQ(CTovTime::LocalTimeZone(daylight), -5);
    EXPECT_EQ(daylight, 1);
    double const zone = CTovTime::SystemTimezone(0);
    EXPECT_EQ(CTovTime::SystemTimezone(1), zone + CTovTime::SystemDaylight());
    EXPECT_EQ(CTovTime::SystemTimezoneMjd(1), (zone + 24 * CTovTime::SystemDaylightMjd()) / 24);
    EXPECT_EQ(CTovTime().Timezone(), zone);
    for (int const flag : {0, 1})
        EXPECT_NEAR(CTovTime::CurrentTime() - CTovTime::CurrentTimeUTC(flag),
                    (zone + flag * CTovTime::SystemDaylight()) / 24, 2 / 86400.0);
}

constexpr char const* shownTime = "%Y-%m-%d %H:%M:%S";

// What is given of whole seconds is held against the clock in all zones elsewhere.
TEST(TovTime, TakesWhatLiesInItsRange) {
    TimeZone const zone("AAA5BBB,0/0,J365/25");
    auto const none = static_cast<unsigned short>(0);
    std::pair<CTovTime, char const*> const rows[] = {
        {CTovTime(2020, 2, 29, 12, 30, 14, 0), "2020-02-29 13:30:14.000"},
        {{none, none}, "1979-12-31 00:00:00.000"},
        {{"29 2 2020 12:30:15.25", "%d %m %Y %H:%M:%s"}, "2020-02-29 12:30:15.250"},
        {{2094, 563415.5}, "2020-02-29 12:30:16.500"},
        {CTovTime(58908.5 + 900.125 / 86400), "2020-02-29 12:15:00.125"},
    };
    for (auto const& [time, text] : rows)
        EXPECT_EQ(time.Format(shownTime) + time.FormatFracSec(3), text);
    CTovTime time(2020, 2, 29, 12, 30, 14);
    time.Timezone(3);
    time.SetFracSecond(0.5);
    for (double const no : {40587.5, 62520.0, -1e300, std::nan(""), HUGE_VAL}) {
        time.SetFracSecond(no);
        time = no;
        EXPECT_EQ(time.Format(shownTime, -1), "2020-02-29 12:30:14") << no;
        EXPECT_EQ(time.GetMilliSeconds(), 500);
        EXPECT_EQ(CTovTime(no).GetTime(), 0);
    }
    time = CTime(time);
    EXPECT_EQ(time.GetFracSecond(), 0);
    EXPECT_EQ(time.Timezone(), 3);
    EXPECT_TRUE(CTovTime::classCTovTime.CreateObject()->IsKindOf(&CTovTime::classCTovTime));
}

TEST(TovTime, CountsDaysInTwoParts) {
    std::mt19937 random(5);
    for (int i = 0; i < 100'000; ++i) {
        int const year = static_cast<int>(random() % 9999) + 1;
        int const month = static_cast<int>(random() % 12) + 1;
        int const second = static_cast<int>(random() % 90'000);
        double const date = MjdOfDay(year, month, 31);
        unsigned long whole = 9;
        double part = 9;
        double const mjd = CTovTime::Mjd(year + 1, month - 12, 31, 0, second / 60, second % 60, whole, part);
        ASSERT_EQ(mjd, date + second / 86400.0) << year << " " << month;
        ASSERT_EQ(static_cast<double>(whole) + part, mjd);
        ASSERT_TRUE(date < 0 || part == second % 86400 / 86400.0);
    }
    CTovTime time;
    double second = 0;
    time.Mjd(51544, 0.5 + 61.2504 / 86400, 0.001, second);
    EXPECT_EQ(time.GetFracSecond(), 0.25);
    EXPECT_EQ(second, 1.25);
}

TEST(TovTime, CountsUtcWithTheZoneWestPositive) {
    TimeZone const zone("UTC0");
    CTovTime::SaveSettings(eTimeFormatDashes | eTimeFormatDayFirst | eTimeFormatShortYear);
    CTovTime time(2020, 2, 29, 23, 30, 0), last(2030, 1, 18, 23, 0, 0);
    time.Timezone(5.5);
    EXPECT_NEAR(time.MjdUTC(), MjdOfDay(2020, 3, 1) + 5.0 / 24, 1e-11);
    std::pair<CString, char const*> const rows[] = {
        // clang-format off
        {time.FormatUTC(CString("%d %H")), "01 05"}, {time.FormatUTC(-0.5), "29-02-20 23:00:00"},
        {time.FormatUTC(eTimeFormatDots | eTimeFormatDayFirst), "01.03.2020 05:00:00"},
        {time.FormatUTC(), "01-03-20 05:00:00"}, {time.FormatDateUTC(), "01-03-20"},
        {time.FormatTimeUTC(), "05:00:00"}, {time.FormatDateUTC(1.0), "01-03-20"},
        {time.FormatTimeUTC(1.0), "00:30:00"}, {time.FormatDate(), "29-02-20"}, {time.FormatTime(0x82), "00"},
        {time.Format(CTovTime::CurrentTimeFormat()), "29-02-20 23:30:00"},
        {last.FormatUTC(5.0), "19-01-30 04:00:00"}, {last.FormatUTC(HUGE_VAL), "18-01-30 23:00:00"},
        {CTovTime(std::int64_t{1} << 62).FormatUTC(), ""},
        // clang-format on
    };
    for (auto const& [text, expected] : rows)
        EXPECT_EQ(text, expected);
    time.MjdUTC(MjdOfDay(2020, 3, 1) + 6.0 / 24);
    EXPECT_EQ(time.Format(), "01-03-20 00:30:00");
    EXPECT_EQ(CTovTime(std::int64_t{1} << 62).MjdUTC(), 0) << "no local reading";
    for (int second = 0; second < 86400; ++second) {
        CTovTime const half(MjdOfDay(2026, 11, 21) + (second + 0.5) / 86400);
        ASSERT_EQ(half.Format("%T"), half.FormatUTC(0.0, 0).substr(9)) << second;
    }
}

TEST(TovTime, ComparesWithAToleranceAndByParts) {
    TimeZone const zone("UTC0");
    auto const check = [](auto const& a, auto const& b, int date, int time) {
        EXPECT_EQ(TovCompareDatePart(a, b), date);
        EXPECT_EQ(TovCompareDatePart(b, a), -date);
        EXPECT_EQ(TovCompareTimePart(a, b), time);
        EXPECT_EQ(TovCompareTimePart(b, a), -time);
        int const whole = date != 0 ? date : time;
        EXPECT_EQ(TovCompare(a, b), whole);
        EXPECT_EQ(TovCompare(b, a), -whole);
        EXPECT_TRUE((a < b) == (whole < 0) && (a > b) == (whole > 0) && (a == b) == (whole == 0));
        EXPECT_TRUE((a <= b) == (whole <= 0) && (a >= b) == (whole >= 0) && (a != b) == (whole != 0));
    };
    CTovTime const early(2020, 2, 29, 23, 0, 0), late(2020, 3, 1, 1, 0, 0);
    CTovTime later(late);
    later.SetFracSecond(1e-5);
    check(early, late, -1, 1);
    check(late, later, 0, -1);
    check(CTime(early), CTime(late), -1, 1);
    check(CTime(late), CTime(later), 0, 0);
    check(COleDateTime(early), COleDateTime(late), -1, 1);
    check(COleDateTime(1899, 12, 29, 18, 0, 0), COleDateTime(1899, 12, 29, 6, 0, 0), 0, 1);
    later.SetFracSecond(1e-7);
    EXPECT_TRUE(late == later && !(late < later) && TovCompare(late, later) == 0);
    later.Timezone(later.Timezone() + 1);
    EXPECT_TRUE(late < later && later == CTime(late) + CTimeSpan(3600));
    EXPECT_TRUE(TovCompare(CTime(late), later) == -1 && TovCompare(later, CTime(late)) == 1);
    COleDateTime const none(2020, 13, 1, 0, 0, 0), old(1800, 1, 1, 0, 0, 0);
    EXPECT_EQ(TovCompare(none, old) + TovCompareDatePart(none, old) + TovCompareTimePart(none, old), -3);
    EXPECT_EQ(TovCompare(none, none) + TovCompareDatePart(none, none), 0);
}

TEST(TovTime, CountsGpsWeeksFromTheirEpoch) {
    TimeZone const zone("UTC0");
    EXPECT_EQ(CTovTime::GpsTime(1, 43200), 44251.5);
    CTovTime time(1980, 1, 5, 23, 59, 59);
    EXPECT_EQ(time.SetGpsTime(100'000, 1), 744244 + 1 / 86400.0) << "beyond the range nothing is set";
    int week = 0;
    double seconds = 0;
    EXPECT_EQ(time.GetGpsTime(week, seconds), 0);
    EXPECT_EQ(week * 1000000.0 + seconds, -1000000.0 + 604799);
    time.SetGpsTime(2400, 604799.25);
    EXPECT_EQ(time.GetGpsTime(week, seconds), 1);
    EXPECT_EQ(week, 2400);
    EXPECT_NEAR(seconds, 604799.25, 7e-7);
    time.SetFracSecond(std::nextafter(1.0, 0));
    EXPECT_EQ(time.GetGpsTime(week, seconds), 1);
    EXPECT_LT(seconds, 604800);
}

TEST(TovTime, ReadsFileStamps) {
    TimeZone const zone("UTC0");
    CTovTime time(2001, 2, 3, 4, 5, 6);
    EXPECT_EQ(CTovTime::CduFilestamp(500101.0), MjdOfDay(1950, 1, 1));
    EXPECT_EQ(CTovTime::CduFilestamp(491231.0), MjdOfDay(2049, 12, 31));
    EXPECT_EQ(time.SetCduFilestamp(500101.0), MjdOfDay(2050, 1, 1));
    EXPECT_EQ(time.GetYear(), 2001);
    for (double const no : {-1.0, 1e8, HUGE_VAL, std::nan("")})
        EXPECT_TRUE(CTovTime::CduFilestamp(no) == 0 && time.SetCduFilestamp(no) == 0);
    EXPECT_EQ(time.SetCduFilestamp(710101.0), MjdOfDay(1971, 1, 1));
    for (int second = 0; second < 86400; ++second) {
        int const digits = second / 3600 * 10'000 + second / 60 % 60 * 100 + second % 60;
        double const mjd = MjdOfDay(2026, 11, 21) + second / 86400.0;
        ASSERT_EQ(CTovTime::CduFilestamp(261121 + digits / 1e6), mjd) << digits;
        ASSERT_EQ(CTovTime::CduFilestamp(20261121 + digits / 1e6), mjd) << digits;
        ASSERT_NEAR(time.SetCduFilestamp(261121 + (digits + 0.123) / 1e6), mjd + 0.123 / 86400, 1e-11);
        ASSERT_EQ(time.GetFracSecond(), 0.123);
    }
}

TEST(TovTime, PrintsTheFractionOfTheSecond) {
    std::tuple<double, int, char const*> const rows[] = {
        {0, 0, ".000"},         {0.7, 0, ".000"},       {0.25, 4, ".2"},        {0.36, 4, ".4"},
        {0.96, 4, ".0"},        {0.125, 5, ".12"},      {0.996, 5, ".00"},      {0.0625, 3, ".062"},
        {0.0625, 7, ".062"},    {0.0625, -1, ".062"},   {0.9996, 3, ".000"},    {0.9996, 6, ".999"},
        {0.123, 6, ".123"},     {0.1239996, 6, ".124"}, {0.9999996, 6, ".000"}, {0.1236, 9, ".124"},
        {0.9996, 0x7F, ".999"}, {0.05, 4 + 0x80, ".0"},
    };
    for (auto const& [fraction, round, text] : rows) {
        CTovTime time(2020, 2, 29, 23, 59, 59);
        time.SetFracSecond(fraction);
        EXPECT_EQ(time.FormatFracSec(round), text) << fraction << " " << round;
        EXPECT_EQ(time.Format("%H%M%S"), fraction < 0.5 ? "235959" : "000000");
        double const rounded = time.Round(0);
        EXPECT_EQ(rounded, time);
    }
    EXPECT_EQ(CTovTime().Format(TovBuiltInResourceModule(), 26017), "真");
    EXPECT_EQ(CTovTime().Format(nullptr, 1u, 0), "");
}

TEST(TovTimeSpan, HoldsFractionsOfASecond) {
    CTovTimeSpan span(8, 1, 2, 3);
    span.SetFracSecond(0.5);
    int week = 9;
    double seconds = 0;
    EXPECT_EQ(span.GetGpsTimeSpan(week, seconds), 1);
    EXPECT_EQ(week, 1);
    EXPECT_EQ(seconds, 86400 + 3723.5);
    EXPECT_EQ(CTovTimeSpan(week, seconds), span);
    EXPECT_EQ(CTovTimeSpan(std::int64_t{1} << 62).GetGpsTimeSpan(week, seconds) + week, 0);
    EXPECT_TRUE(span > CTimeSpan(8, 1, 2, 3) && CTimeSpan(8, 1, 2, 4) > span && span != CTimeSpan(5));
    span.SetFracSecond(-0.5);
    EXPECT_EQ(span.GetFracSecond(), 0.5) << "against the sign of the span";
    EXPECT_EQ(CTovTimeSpan(8 + 3723.5 / 86400), span);
    EXPECT_LT(CTovTimeSpan(std::int64_t{8 * 86400 + 3723}), span);
    EXPECT_EQ(span.Format("%D %H:%M:%S") + "|" + span.Format("%H:%M"), "8 1:02:04|193:02");
    EXPECT_EQ(span.Format(TovBuiltInResourceModule(), 26017), "真");
    EXPECT_EQ(span.Round(0), 8 + 3724.0 / 86400);
    span.Mjd(1e200);
    span.Mjd(-HUGE_VAL);
    EXPECT_EQ(span.Format("%D"), "8");
}

}  // namespace
}  // namespace tov
