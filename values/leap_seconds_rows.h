// The rows of the leap-second table, and the text in which the profile keeps them.
#pragma once

#include <tov310/types.h>

#include <vector>

namespace tov {

struct LeapRow {
    double day;     // modified Julian date of the first day with this offset
    double offset;  // GPS time minus UTC, in days
};

constexpr double OffsetOfSeconds(int seconds) {
    return seconds / 86400.0;
}

// In the order of their days, each day once.
using LeapRows = std::vector<LeapRow>;

// What the library knows by itself.
LeapRows BuiltInLeapRows();

// The days for which the table takes rows lie in the range of CTime: 2 January 1970 to 18 January 2030.
inline constexpr int firstTableDay = 40588;
inline constexpr int lastTableDay = 62519;

// Whether the table takes new rows for this day: a 1 January or 1 July from 1970 to 2030, the only days
// before which a leap second was ever inserted. There are 120 of them.
bool IsLeapDay(double day);

// A row whose day is there already changes nothing and gives false.
bool InsertLeapRow(LeapRows& rows, LeapRow const& row);

// Base64 of pairs of little-endian doubles.
CString LeapRowsText(LeapRows const& rows);

// Adds the rows of such a text. What is no row counts for nothing: a day must be finite and whole, and an
// offset one of 0 to 50 s.
void AddLeapRowsFromText(CString text, LeapRows& rows);

}  // namespace tov
