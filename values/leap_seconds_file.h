// The published form of the list of leap seconds (leap-seconds.list of NIST and the IERS).
//
//   #$ 3992312697               last update
//   #@ 4023129600               the list is known to hold until then
//   #h a9bad145 84c31c70 ...    SHA-1 in five hexadecimal words, which may lack leading zeros
//   2272060800  10  # 1 Jan 1972
//   # a comment
//
// Times are seconds since 1 January 1900, as NTP counts them; a row has TAI minus UTC in seconds from its
// time on. The hash is that of all digits of these times and rows in a row, without anything between them.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

struct LeapSecondsFile {
    struct Row {
        int line;     // in the file, from 1
        int day;      // modified Julian date
        int seconds;  // TAI minus UTC
    };

    std::vector<Row> rows;  // at least one, in ascending order of the days
    double expires = 0;     // modified Julian date
    std::string digits;     // what the hash is taken over
    std::array<std::uint32_t, 5> hash{};

    bool HasRightHash() const;
};

// Reads the text of a file. All of its lines must be sound, and none of the four kinds may be missing;
// whether the hash is right remains to be asked. Otherwise gives nothing, and the reason in English.
std::optional<LeapSecondsFile> ParseLeapSecondsFile(std::string_view text, std::string& reason);

}  // namespace tov
