// Leap seconds that were announced after the library was made.
//
// The table itself is asked and extended in time_helper.h (CTovTimeHelper::GetLeapSeconds, AddLeapSeconds).
// The one that is built in ends with the 16 s of 1 July 2012. What is added is kept in the profile and
// belongs to the table from then on, in this process and the next ones.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>

namespace tov {

// Learns from a file in the published form, the leap-seconds.list of the IERS, NIST and the tz database. Its
// TAI minus UTC, less 19 s, is GPS time minus UTC. Passed over are rows below 17 s, rows of days before
// 2 January 1970 or from 18 January 2030 on, and those whose day the table knows, in this process or in the
// profile: what is known stays. Answers the number of rows that were new.
//
// The file is learned whole or not at all. Answers -1 and fills the pair where it cannot be read (as the file
// functions do, file.h), and where it is refused (87, the text says why): for a line that is not of the form,
// without update, expiry, hash or rows, with a wrong hash, or with a row that would not be passed over but
// has more than 50 s or another day than a 1 January or 1 July. A file whose time of expiry has passed is as
// good as any other.
//
// May be called from any thread, while others read the table.
TOV_CORE_API int TovLearnLeapSeconds(char const* path, unsigned long* error = nullptr,
                                     CString* message = nullptr);

// The modified Julian date, in UTC, until which the table is known to hold: the latest expiry of all learned
// files, kept in the profile too. 0.0 where none was learned; then, and behind the date, later leap seconds
// may have been announced.
TOV_CORE_API double TovLeapSecondsExpire();

}  // namespace tov
