// A list of leap seconds as others publish it, and the text of rows as a profile gives it back. A list that
// is taken has sound rows, and with any digit less its hash is another one; what is no row adds nothing to
// what is built in, and what was added is stored and read alike.
#include "fuzz/expect.h"
#include "util/sha1.h"
#include "values/leap_seconds_file.h"
#include "values/leap_seconds_rows.h"

#include <tov310/base64.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace {

void ReadList(std::string const& text) {
    std::string reason;
    auto file = tov::ParseLeapSecondsFile(text, reason);
    Expect(file.has_value() == reason.empty());
    if (!file) return;
    Expect(!file->rows.empty() && file->expires >= 15020 && file->expires < 2973484);
    int before = 0;
    for (auto const& [line, day, seconds] : file->rows) {
        Expect(day > before && day < 2973484 && seconds >= 0 && seconds <= 999);
        before = day;
    }
    file->hash = tov::Sha1(file->digits);
    Expect(file->HasRightHash());
    file->digits.pop_back();
    Expect(!file->HasRightHash());
}

void ReadRows(tov::CString const& text) {
    tov::LeapRows rows = tov::BuiltInLeapRows();
    tov::AddLeapRowsFromText(text, rows);
    for (auto const& [day, offset] : rows)
        Expect(std::isfinite(day) && day == std::floor(day) && offset >= 0 && offset <= 50 / 86400.0);
    Expect(std::ranges::adjacent_find(rows, std::ranges::greater_equal{}, &tov::LeapRow::day) == rows.end());
    for (tov::LeapRow const& row : tov::BuiltInLeapRows())
        Expect(std::ranges::find(rows, row.day, &tov::LeapRow::day)->offset == row.offset);

    tov::CString const stored = tov::LeapRowsText(rows);
    Expect(stored.size() < 4096);  // what a profile gives back
    tov::LeapRows again = tov::BuiltInLeapRows();
    tov::AddLeapRowsFromText(stored, again);
    Expect(tov::LeapRowsText(again) == stored);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    ReadList(bytes);
    ReadRows(bytes);
    ReadRows(tov::TovEncodeBase64(data, size, 0));
    return 0;
}
