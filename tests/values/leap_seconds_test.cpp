// links: objects
// The table belongs to the process and reads the profile once. Each test therefore asks it in processes of
// its own, which begin without one; a second process shows what the profile has kept.
#include "support/child.h"
#include "support/files.h"
#include "support/temporary_folder.h"
#include "util/sha1.h"
#include "values/leap_seconds_file.h"
#include "values/leap_seconds_rows.h"

#include <tov310/base64.h>
#include <tov310/leap_seconds.h>
#include <tov310/profile.h>
#include <tov310/system_error.h>
#include <tov310/time_helper.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace tov;
using Helper = CTovTimeHelper;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

std::string HexWords(std::array<std::uint32_t, 5> const& words) {
    std::ostringstream text;
    for (auto const& word : words)
        text << std::hex << (&word == words.data() ? "" : " ") << word;
    return text.str();
}

double Day(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    sys_days const there{std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day}};
    return static_cast<double>((there - sys_days{1858y / 11 / 17}).count());
}

int SecondsAt(double mjd, double* since = nullptr) {
    return static_cast<int>(std::lround(Helper::GetLeapSeconds(mjd, since) * 86400));
}

// The published form; the first word of the hash lacks a leading zero.
constexpr char const* publishedList =
    "# NTP seconds, TAI - UTC\n#$\t 3676924800\n#@\t3991593600\n\n"
    "2524521600      19      # 1 Jan 1980\n2571782400\t20#no blank\n  2603318400 21\n2634854400 22\n"
    "2698012800 23\n2776982400 24\n2840140800 25\n2871676800 26\n2918937600 27\n2950473600 28\n"
    "2982009600 29\n3029443200 30\n3076704000 31\n3124137600 32\n3345062400 33\n3439756800 34\n"
    "3550089600 35\n3644697600 36\n3692217600 37\n"
    "#h\t79780e7 67df07bb b1ba6573 a7036512 1de4fec3\n";

// Another list, of days and TAI - UTC, with its right hash.
std::string ListOf(std::vector<std::pair<double, int>> const& rows, double expires = 61219) {
    auto const ntp = [](double day) { return std::to_string(std::llround((day - 15020) * 86400)); };
    std::string rest, digits = ntp(expires);
    for (auto const& [day, seconds] : rows) {
        rest.append(ntp(day)).append(" ").append(std::to_string(seconds)).append("\n");
        digits.append(ntp(day)).append(std::to_string(seconds));
    }
    std::ostringstream text;
    text << "#$ 0\n#@ " << ntp(expires) << '\n' << rest << "#h " << HexWords(Sha1('0' + digits)) << '\n';
    return text.str();
}

// Holds the table against the rows of a list with at most so many leap seconds.
void ExpectRowsOf(std::string const& list, int most) {
    std::istringstream lines(list);
    int seconds = -1;
    for (std::string line; std::getline(lines, line);) {
        double time = 0, since = 0;
        int tai = 0;
        if (!(std::istringstream(line) >> time >> tai) || tai < 19 || tai > most + 19) continue;
        double const day = 15020 + time / 86400;
        EXPECT_EQ(SecondsAt(std::nextafter(day, 0), &since), std::max(seconds, 0)) << line;
        EXPECT_LT(since, day);
        seconds = tai - 19;
        EXPECT_EQ(Helper::GetLeapSeconds(day, &since), seconds / 86400.0) << line;
        EXPECT_EQ(since, day);
    }
    EXPECT_EQ(seconds, most);
    EXPECT_EQ(SecondsAt(infinite), most);
}

class LeapSeconds : public testing::Test {
 protected:
    // Runs the work with a table that was not asked for before, and the profile of this test.
    template <class Work>
    void InNewProcess(Work work) {
        pid_t const child = test::StartChild([&] {
            TovSetProfilePath(m_folder.File("leap.ini").c_str());
            work();
            std::fflush(stdout);
            return !HasFailure();
        });
        EXPECT_EQ(test::EndChild(child), 0);
    }

    int Learn(std::string_view text, unsigned long* error = nullptr, CString* message = nullptr) {
        test::PutFile(m_folder.path() / "list", text);
        return TovLearnLeapSeconds(m_folder.File("list").c_str(), error, message);
    }

    test::TemporaryFolder m_folder;
};

TEST(Sha1, GivesThePublishedDigests) {
    std::pair<std::string, char const*> const cases[] = {
        {"", "da39a3ee 5e6b4b0d 3255bfef 95601890 afd80709"},
        {"abc", "a9993e36 4706816a ba3e2571 7850c26c 9cd0d89d"},
        // At both sides of where the length begins another block.
        {std::string(55, 'a'), "c1c8bbdc 22796e28 c0e15163 d20899b6 5621d65a"},
        {std::string(56, 'a'), "c2db330f 6083854c 99d4b5bf b6e8f29f 201be699"},
        {std::string(119, 'a'), "ee971065 aaa017e0 632a8ca6 c77bb3bf 8b1dfc56"},
    };
    for (auto const& [bytes, digest] : cases)
        EXPECT_EQ(HexWords(Sha1(bytes)), digest) << bytes.size();
}

TEST_F(LeapSeconds, AreAddedAndKept) {
    InNewProcess([] {
        ExpectRowsOf(publishedList, 16);
        for (double const before : {-infinite, 44238.9, notANumber}) {
            double since = -1;
            EXPECT_EQ(Helper::GetLeapSeconds(before, &since), 0.0);
            EXPECT_EQ(since, 0.0);
        }
        struct {
            double mjd;
            int seconds, result, then;  // leap seconds afterwards
        } const cases[] = {
            // clang-format off
            {1e300, 16, 1, 16}, {Day(2018, 1, 2), 18, 0, 16}, {Day(2018, 1, 1), 51, 0, 16},
            {Day(2018, 1, 1) - 0.001, 18, 0, 16}, {Day(2030, 7, 1), 18, 0, 16}, {Day(1970, 1, 1), 18, 0, 16},
            {notANumber, 18, 0, 16}, {infinite, 18, 0, 16}, {Day(2012, 7, 1), 17, 1, 16},
            {Day(2017, 7, 1), 17, 1, 17}, {Day(2018, 1, 1) + 0.999, 18, 1, 18}, {Day(2018, 1, 1), 19, 1, 18},
            // clang-format on
        };
        for (auto const& [mjd, seconds, result, then] : cases) {
            EXPECT_EQ(Helper::AddLeapSeconds(mjd, static_cast<unsigned char>(seconds)), result) << mjd;
            EXPECT_EQ(SecondsAt(infinite), then) << mjd << ' ' << seconds;
        }
    });
    InNewProcess([] {
        double since = 0;
        EXPECT_EQ(SecondsAt(infinite, &since), 18);
        EXPECT_EQ(since, Day(2018, 1, 1));
        CString text = CTovProfileEntries::ReadTovProfileString("LeapSeconds", "KnownLeapSeconds", "");
        EXPECT_EQ(TovDecodeBase64(reinterpret_cast<unsigned char*>(text.data())), 19u * 16);
    });
}

// The leap second of 31 December 2016 in the words of the satellites: the end of day 7 of week 1929.
TEST_F(LeapSeconds, AreTakenFromANavigationMessage) {
    InNewProcess([] {
        EXPECT_EQ(Helper::AddLeapSeconds(0, 0, 0, 16), 1);
        EXPECT_EQ(Helper::AddLeapSeconds(1929, 1929 & 0xFF, 6, 18), 0);
        for (int weeks = -200; weeks <= 200; ++weeks) {
            if (std::abs(weeks) == 128) continue;  // as far from the next week of this low byte
            auto const present = static_cast<unsigned short>(1929 + weeks);
            EXPECT_EQ(Helper::AddLeapSeconds(present, 1929 & 0xFF, 7, 18), std::abs(weeks) < 128) << weeks;
        }
        double since = 0;
        EXPECT_EQ(SecondsAt(infinite, &since), 18);
        EXPECT_EQ(since, Day(2017, 1, 1));
    });
}

// All days that the table takes, behind rows of somebody else: the next start finds what was added.
TEST_F(LeapSeconds, AreKeptAsManyAsCanBeAdded) {
    InNewProcess([] {
        LeapRows strange;
        for (int i = 0; i < 189; ++i)
            strange.push_back({Day(2040, 1, 1) + 2.0 * i, 7 / 86400.0});
        CTovProfileEntries::WriteTovProfileString("LeapSeconds", "KnownLeapSeconds",
                                                  LeapRowsText(strange).c_str());
        int taken = 0;
        for (double day = 40000; day < 63000; ++day)
            taken += Helper::AddLeapSeconds(day, 40);
        EXPECT_EQ(taken, 120);
    });
    InNewProcess([] {
        for (int half = 1; half <= 120; ++half) {
            double const day = Day(1970 + half / 2, half % 2 != 0 ? 7 : 1, 1);
            double since = 0;
            Helper::GetLeapSeconds(day + 0.5, &since);
            EXPECT_EQ(since, day);
        }
        EXPECT_EQ(SecondsAt(Day(2040, 1, 1)), 7);
    });
}

// The fuzz target does the rest.
TEST(LeapRows, TakeNoGarbageFromTheProfile) {
    LeapRow const good[] = {{Day(2017, 1, 1), 18 / 86400.0}, {57760, 50 / 86400.0}};
    LeapRow const bad[] = {{notANumber, 0},     {infinite, 0},        {57755.5, 0},
                           {57756, notANumber}, {57757, -1e-9},       {57758, 50.001 / 86400},
                           {57759, infinite},   {56109, 30 / 86400.0}};
    LeapRows mixed(std::begin(bad), std::end(bad));
    mixed.insert(mixed.end(), std::begin(good), std::end(good));
    LeapRows rows = BuiltInLeapRows();
    AddLeapRowsFromText(LeapRowsText(mixed) + "ends in a row", rows);
    CString const text = LeapRowsText(rows);
    rows = BuiltInLeapRows();
    for (LeapRow const& row : good)
        EXPECT_TRUE(InsertLeapRow(rows, row));
    EXPECT_EQ(text, LeapRowsText(rows));
}

TEST(LeapSecondsList, IsRefusedCutOrAltered) {
    std::string const text = publishedList;
    auto const isTaken = [](std::string const& changed) {
        std::string reason;
        auto const file = ParseLeapSecondsFile(changed, reason);
        EXPECT_NE(file.has_value(), !reason.empty());
        return file && file->HasRightHash();
    };
    std::string lines = "# comment\n\n";
    for (char const c : text)
        (c == '\n' ? lines += '\r' : lines) += c;
    EXPECT_TRUE(isTaken(lines));
    EXPECT_FALSE(isTaken(text + text.substr(text.find("#h"))));
    for (std::size_t size = 0; size + 1 < text.size(); ++size)
        EXPECT_FALSE(isTaken(text.substr(0, size))) << size;

    for (std::size_t at = text.find('$') + 1; at < text.size(); ++at) {
        bool const isComment = text.rfind('#', at) > text.rfind('\n', at) + 1 && text[at] != '\n';
        if (isComment || std::isspace(static_cast<unsigned char>(text[at])) != 0) continue;
        for (char const other : {'0', '9', ' ', 'x', '-', '\0'}) {
            std::string changed = text;
            changed[at] = other;
            EXPECT_EQ(isTaken(changed), changed == text) << changed;
        }
    }
}

TEST_F(LeapSeconds, AreLearnedFromAListWholeOrNotAtAll) {
    std::string wrongHash = publishedList;
    wrongHash[wrongHash.size() - 2] ^= 1;
    double const year2017 = Day(2017, 1, 1), year2028 = Day(2028, 1, 1);
    struct {
        std::string text;
        int learned, now;  // leap seconds afterwards
        double expires;
        char const* reason;
    } const cases[] = {
        // clang-format off
        {"", -1, 16, 0, "there is no row"},
        {wrongHash, -1, 16, 0, "the hash is wrong"},
        {ListOf({{year2017, 37}, {Day(2027, 4, 1), 38}}), -1, 16, 0, "line 4: not a 1 January or 1 July"},
        {ListOf({{year2017, 37}, {year2028, 70}}), -1, 16, 0, "line 4: too many leap seconds"},
        {ListOf({{year2017, 37}, {Day(2016, 1, 1), 37}}), -1, 16, 0, "line 4: not later"},
        {ListOf({{year2017 + 0.5, 37}}), -1, 16, 0, "line 3: not the beginning of a day"},
        {ListOf({{62518, 38}}), -1, 16, 0, "line 3: not a 1 January or 1 July"},
        {std::string(2 << 20, '#'), -1, 16, 0, "too large"},
        {ListOf({{40500, 99}, {Day(1999, 1, 1), 32}, {62519, 38}}, 51000), 0, 16, 51000, ""},  // expired too
        {publishedList, 2, 18, 61219, ""},
        {publishedList, 0, 18, 61219, ""},
        {ListOf({{year2028, 38}, {Day(2035, 3, 1), 39}}, 61000), 1, 19, 61219, ""},
        {ListOf({{year2028, 40}}, 66000.25), 0, 19, 66000.25, ""},  // what is known stays
        {wrongHash, -1, 19, 66000.25, "the hash is wrong"},
        // clang-format on
    };
    InNewProcess([&] {
        unsigned long error = 1;
        for (auto const& [text, learned, now, expires, reason] : cases) {
            CString message = "old";
            EXPECT_EQ(Learn(text, &error, &message), learned) << text.substr(0, 400);
            EXPECT_EQ(error, learned < 0 ? TOV_ERROR_INVALID_PARAMETER : TOV_ERROR_NONE);
            EXPECT_THAT(message, testing::HasSubstr(reason));
            EXPECT_EQ(message.empty(), learned >= 0);
            EXPECT_EQ(SecondsAt(infinite), now);
            EXPECT_EQ(TovLeapSecondsExpire(), expires);
        }
        EXPECT_EQ(TovLearnLeapSeconds(m_folder.File("none").c_str(), &error), -1);
        EXPECT_EQ(error, TOV_ERROR_NOT_FOUND);
        EXPECT_EQ(TovLearnLeapSeconds(nullptr), -1);
    });
    InNewProcess([] {
        EXPECT_EQ(SecondsAt(infinite), 19);
        EXPECT_EQ(TovLeapSecondsExpire(), 66000.25);
        CTovProfileEntries::WriteTovProfileString("LeapSeconds", "KnownUntil", "1e400");
    });
    InNewProcess([] { EXPECT_EQ(TovLeapSecondsExpire(), 0.0); });
}

// What another process has stored meanwhile is neither lost nor replaced nor learned again.
TEST_F(LeapSeconds, AreNotLostToAnotherProcess) {
    InNewProcess([&] {
        EXPECT_EQ(SecondsAt(infinite), 16);
        InNewProcess([] {
            EXPECT_EQ(Helper::AddLeapSeconds(Day(2017, 1, 1), 18), 1);
            EXPECT_EQ(Helper::AddLeapSeconds(Day(2028, 1, 1), 19), 1);
        });
        EXPECT_EQ(Learn(ListOf({{Day(2015, 7, 1), 36}, {Day(2028, 1, 1), 41}})), 1);
        EXPECT_EQ(SecondsAt(infinite), 19);
    });
    InNewProcess([] {
        EXPECT_EQ(SecondsAt(infinite), 19);
        EXPECT_EQ(SecondsAt(Day(2016, 1, 1)) * 100 + SecondsAt(Day(2017, 1, 1)), 1718);
    });
}

TEST_F(LeapSeconds, AreLearnedFromTheListOfTheTimeZones) {
    std::filesystem::path const path = "/usr/share/zoneinfo/leap-seconds.list";
    if (!exists(path)) GTEST_SKIP() << "there is no " << path;
    InNewProcess([&] {
        CString message;
        int const learned = TovLearnLeapSeconds(path.c_str(), nullptr, &message);
        EXPECT_GE(learned, 2) << message;
        ExpectRowsOf(test::GetFile(path), 16 + learned);
        EXPECT_GT(TovLeapSecondsExpire(), Day(2017, 6, 1));
    });
}

// First use on many threads at once, while one of them learns. Each second comes on the day of its row.
TEST_F(LeapSeconds, AreReadWhileTheyAreLearned) {
    auto const dayOf = [](int seconds) {
        return seconds == 16 ? Day(2012, 7, 1) : Day(2000 + seconds, seconds % 2 != 0 ? 1 : 7, 1);
    };
    InNewProcess([&] {
        std::atomic<bool> ends = false;
        std::vector<std::thread> readers(4);
        for (std::thread& reader : readers) {
            reader = std::thread([&] {
                for (int before = 16; !ends;) {
                    double since = 0;
                    int const seconds = SecondsAt(infinite, &since);
                    EXPECT_GE(seconds, before);
                    EXPECT_EQ(since, dayOf(seconds));
                    before = seconds;
                }
            });
        }
        EXPECT_EQ(Learn(ListOf({{dayOf(17), 36}, {dayOf(18), 37}})), 2);
        for (int seconds = 19; seconds < 28; ++seconds)
            Helper::AddLeapSeconds(dayOf(seconds), static_cast<unsigned char>(seconds));
        ends = true;
        for (std::thread& reader : readers)
            reader.join();
    });
}

}  // namespace
