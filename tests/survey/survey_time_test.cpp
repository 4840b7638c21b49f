// The sample host's clocks, as a user in Berlin asks for them.
#include "support/files.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <sstream>

namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

struct SurveyTime : testing::Test {
    // What the program prints, and its exit code.
    std::string Run(std::string const& arguments) {
        std::string const command =
            "TZ=CET-1CEST,M3.5.0,M10.5.0/3 LC_ALL=C XDG_CONFIG_HOME=" + m_folder.path().string() +
            " '" SURVEY_PROGRAM "' --lang en time " + arguments + " 2>&1";
        std::FILE* const pipe = ::popen(command.c_str(), "r");
        std::string text;
        for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
            text += static_cast<char>(c);
        return text + std::to_string(WEXITSTATUS(::pclose(pipe)));
    }

    tov::test::TemporaryFolder m_folder;
    std::string const m_list = m_folder.File("leap-seconds.list");
};

// 18 leap seconds from 2017 on; the hash was made by another program.
constexpr char const* list =
    "#$ 3676924800\n#@ 3991593600\n3644697600 36\n3692217600 37\n"
    "#h 68b0813e 684eb2c6 909e1111 29c604d5 abb20817\n";

TEST_F(SurveyTime, ShowsMomentsInAllClocks) {
    EXPECT_THAT(Run("2014-01-01"), AllOf(HasSubstr("\nLeap seconds: 16 since 2012-07-01; the table ends with "
                                                   "2012-07-01, later ones may be missing (see --learn).\n"),
                                         EndsWith("\n0")));
    tov::test::PutFile(m_list, list);
    EXPECT_THAT(Run("--learn " + m_list), AllOf(StartsWith("Leap seconds learned from " + m_list + ": 2.\n"),
                                                HasSubstr("\nUTC "), EndsWith("\n0")));
    EXPECT_THAT(Run("--learn " + m_list), StartsWith("All leap seconds in " + m_list + " were known.\n"));

    struct {
        char const* text;
        char const* utc;
        char const* local;
        char const* gps;
    } const cases[] = {
        {"2026-07-01 12:30:15.25", "2026-07-01 10:30:15.25", "2026-07-01 12:30:15.25",
         "week 2425, second 297033.25"},
        {"61222.4376765625", "2026-07-01 10:30:15.255", "2026-07-01 12:30:15.255",
         "week 2425, second 297033.255"},
        {"2425 297033.9999999", "2026-07-01 10:30:16", "2026-07-01 12:30:16", "week 2425, second 297034"},
        {"2026-03-29T02:30z", "2026-03-29 02:30:00", "2026-03-29 04:30:00", "week 2412, second 9018"},
        {"1930 16.5", "2016-12-31 23:59:59.5", "2017-01-01 00:59:59.5", "week 1930, second 16.5"},
        {"1930 17.5", "2016-12-31 23:59:60.5", "2017-01-01 00:59:60.5", "week 1930, second 17.5"},
        {"1930 18", "2017-01-01 00:00:00", "2017-01-01 01:00:00", "week 1930, second 18"},
        {"2016-12-31 23:59:60Z", "2016-12-31 23:59:60", "2017-01-01 00:59:60", "week 1930, second 17"},
        {"0 0", "1980-01-06 00:00:00", "1980-01-06 01:00:00", "week 0, second 0"},
        {"1980-01-05", "1980-01-04 23:00:00", "1980-01-05 00:00:00", "begins on 1980-01-06"},
        {"29. Mar 2026 12:05:06.5 AM", "2026-03-28 23:05:06.5", "2026-03-29 00:05:06.5",
         "week 2411, second 601524.5"},  // the clock changes at two
        {"31-1-26", "2026-01-30 23:00:00", "2026-01-31 00:00:00", "week 2403, second 514818"},
    };
    for (auto const& [text, utc, local, gps] : cases) {
        std::string const answer = Run(text);
        EXPECT_THAT(answer, AllOf(HasSubstr(std::string("\nUTC    ").append(utc).append(" ")),
                                  HasSubstr(std::string("\nlocal  ").append(local).append(" ")),
                                  HasSubstr(std::string("\nGPS    ").append(gps)), EndsWith("\n0")))
            << text;
    }
    EXPECT_THAT(Run("2030-01-01"), HasSubstr("holds until 2026-06-28, later ones may be missing"));
    EXPECT_THAT(Run("2030-01-01 --reset"), HasSubstr("Leap seconds: 16 "));
}

TEST_F(SurveyTime, ReadsAllItsFormatsBack) {
    std::string const answer = Run("2026-11-21 13:05:06");
    std::string const utc =
        answer.substr(answer.find("\nUTC"), answer.find("\nlocal") - answer.find("\nUTC"));
    std::istringstream rows(answer.substr(answer.find("Number")));
    std::string row;
    std::getline(rows, row);
    std::size_t const column = row.find("Time");
    int count = 0;
    for (; std::getline(rows, row) && row.size() > column; ++count) {
        EXPECT_THAT(Run(row.substr(column)), HasSubstr(utc)) << row;
        // With a fraction, without seconds, without the time of the day.
        std::string const text = row.substr(column);
        std::size_t const seconds = text.rfind(':');
        std::string const before = text.substr(0, seconds), behind = text.substr(seconds + 3);
        std::ostringstream fraction;
        fraction << before << ":06.25" << behind;
        EXPECT_THAT(Run(fraction.str()), HasSubstr(":06.25 ")) << row;
        EXPECT_THAT(Run(before + behind), HasSubstr("2026-11-21 12:05:00 ")) << row;
        EXPECT_THAT(Run(text.substr(0, text.rfind(' ', text.find(':')))), HasSubstr("2026-11-20 23:00:00 "))
            << row;
    }
    EXPECT_EQ(count, 32);
}

TEST_F(SurveyTime, TellsWhatIsWrong) {
    std::string cut = list;
    tov::test::PutFile(m_list, cut.erase(cut.size() - 2));
    std::pair<std::string, char const*> const cases[] = {
        {"hello", "\"hello\" is no time"},
        {"''", "the time is empty"},
        {"2026-02-30", "no such day"},
        {"2026-02-01 24:00", "no such time of the day"},
        {"2026-06-30 23:59:60z", "no leap second is known there"},
        {"2026-03-29 02:30", "left out"},
        {"2026-11-21 12", "is no time"},
        {"31.31.2026", "is no time"},
        {"61365.5 -- -1", "is no time"},
        {"99999", "not within 2 January 1970"},
        {"1e300", "is no time"},
        {"9999999999999999999999", "not within"},
        {"2031-01-01", "not within"},
        {"2400 604800", "below 604800"},
        {"2400.5 0", "whole number"},
        {"10000 0", "whole number"},
        {"--bad", "there is no option"},
    };
    for (auto const& [arguments, reason] : cases)
        EXPECT_THAT(Run(arguments), AllOf(StartsWith("survey: "), HasSubstr(reason), EndsWith("called.\n2")))
            << arguments;
    EXPECT_THAT(Run("--learn " + m_list),
                AllOf(StartsWith("survey: " + m_list), HasSubstr("the hash is wrong\n3")));
    EXPECT_THAT(Run("--learn " + m_list + "x"), EndsWith("\n3"));
}

}  // namespace
