#include "values/leap_seconds_rows.h"

#include <tov310/base64.h>

#include "values/calendar.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

namespace tov {
namespace {

constexpr std::size_t leapRowSize = 16;

// A profile gives back no more than 4095 bytes of a text from a file, which hold this many rows. The leap
// days always find room: rows for other days, which only somebody else can have stored, get what they leave.
constexpr std::size_t mostLeapRows = 191;
constexpr std::size_t allLeapDays = 120;
constexpr std::size_t mostOtherRows = mostLeapRows - allLeapDays;

void PutLittleEndian(std::string& bytes, double number) {
    auto bits = std::bit_cast<std::uint64_t>(number);
    for (std::size_t i = 0; i < sizeof bits; ++i, bits >>= 8)
        bytes += static_cast<char>(bits & 0xFF);
}

double GetLittleEndian(unsigned char const* bytes) {
    std::uint64_t bits = 0;
    for (std::size_t i = sizeof bits; i-- > 0;)
        bits = bits << 8 | bytes[i];
    return std::bit_cast<double>(bits);
}

}  // namespace

LeapRows BuiltInLeapRows() {
    // 1 January and 1 July of these years, from IERS Bulletin C. The list ends here and does not grow: later
    // rows are learned, and then kept by the profile.
    constexpr struct {
        double day;
        int seconds;
    } known[] = {
        {44239, 0},   // 1 January 1980
        {44786, 1},   // 1 July 1981
        {45151, 2},   // 1 July 1982
        {45516, 3},   // 1 July 1983
        {46247, 4},   // 1 July 1985
        {47161, 5},   // 1 January 1988
        {47892, 6},   // 1 January 1990
        {48257, 7},   // 1 January 1991
        {48804, 8},   // 1 July 1992
        {49169, 9},   // 1 July 1993
        {49534, 10},  // 1 July 1994
        {50083, 11},  // 1 January 1996
        {50630, 12},  // 1 July 1997
        {51179, 13},  // 1 January 1999
        {53736, 14},  // 1 January 2006
        {54832, 15},  // 1 January 2009
        {56109, 16},  // 1 July 2012
    };
    LeapRows rows;
    for (auto const& [day, seconds] : known)
        rows.push_back({day, OffsetOfSeconds(seconds)});
    return rows;
}

bool IsLeapDay(double day) {
    if (!(day >= firstTableDay && day <= lastTableDay) || day != std::floor(day)) return false;
    CalendarDate const date = DateOfMjd(static_cast<std::int64_t>(day));
    return date.day == 1 && (date.month == 1 || date.month == 7);
}

bool InsertLeapRow(LeapRows& rows, LeapRow const& row) {
    auto const place = std::ranges::lower_bound(rows, row.day, {}, &LeapRow::day);
    if (place != rows.end() && place->day == row.day) return false;
    rows.insert(place, row);
    return true;
}

CString LeapRowsText(LeapRows const& rows) {
    std::string bytes;
    for (auto const& [day, offset] : rows) {
        PutLittleEndian(bytes, day);
        PutLittleEndian(bytes, offset);
    }
    return TovEncodeBase64(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(), 0);
}

void AddLeapRowsFromText(CString text, LeapRows& rows) {
    auto* const bytes = reinterpret_cast<unsigned char*>(text.data());
    std::size_t const size = TovDecodeBase64(bytes);
    auto others = static_cast<std::size_t>(
        std::ranges::count_if(rows, [](LeapRow const& row) { return !IsLeapDay(row.day); }));
    for (std::size_t at = 0; at + leapRowSize <= size; at += leapRowSize) {
        LeapRow const row{GetLittleEndian(bytes + at), GetLittleEndian(bytes + at + sizeof(double))};
        bool const isDay = std::isfinite(row.day) && row.day == std::floor(row.day);
        bool const isOffset = row.offset >= 0 && row.offset <= OffsetOfSeconds(50);
        if (!isDay || !isOffset) continue;
        if (IsLeapDay(row.day)) {
            InsertLeapRow(rows, row);
        } else if (others < mostOtherRows && InsertLeapRow(rows, row)) {
            ++others;
        }
    }
}

}  // namespace tov
