// Formats of times and spans, and texts that are read by them, as users and translations give them: the first
// bytes choose a moment and how to round, then comes the format, and behind a line end the text.
#include "fuzz/expect.h"

#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

using Helper = tov::CTovTimeHelper;
using SpanHelper = tov::CTovTimeSpanHelper;

// What is printed is at most a date and time in words for every two bytes of the format.
void ExpectSize(tov::CString const& text, std::string const& format) {
    Expect(text.size() <= format.size() * 64 + 64);
}

void Print(tov::CTovTime const& time, std::string const& format, int round) {
    ExpectSize(time.Format(format.c_str(), round), format);
    ExpectSize(time.FormatUTC(format.c_str(), round), format);
    ExpectSize(tov::CTime(time).FormatGmt(format), format);
    tov::CTovTimeSpan const span(static_cast<double>(time) - 50000);
    ExpectSize(span.Format(format.c_str(), round), format);
    tov::CString picture = format.c_str();
    Helper::ConvertTovTimeFormatToDateTimeCtrl(picture);
    ExpectSize(picture, format);
    // Rounding twice rounds once.
    tov::CTovTime rounded = time;
    double const once = rounded.Round(round);
    Expect(rounded.Round(round) == once && rounded.GetFracSecond() >= 0 && rounded.GetFracSecond() < 1);
}

// What was read lies in the range and is what the answer tells; anything else left the time alone.
void Scan(tov::CTovTime const& before, std::string const& text, std::string const& format) {
    tov::CTovTime time = before;
    double const mjd = time.ScanTime(text, format);
    Expect(std::isfinite(mjd) && time.GetFracSecond() >= 0 && time.GetFracSecond() < 1);
    if (mjd == 0) {
        Expect(time.GetTime() == before.GetTime() && time.GetFracSecond() == before.GetFracSecond());
        return;
    }
    Expect(mjd == static_cast<double>(time));
    if (time.GetTime() < 0 || time.GetTime() > 253402300799) return;  // year 9999
    tov::CTovTime again(std::int64_t{0});
    constexpr char const* full = "%Y-%m-%d %H:%M:%S";
    again.ScanTime(time.Format(full, -1), full);
    Expect(again.Format(full, -1) == time.Format(full, -1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    constexpr std::size_t head = 6;
    if (size < head) return 0;
    std::uint32_t seconds = 0;
    std::memcpy(&seconds, data, sizeof seconds);
    tov::CTovTime time(std::int64_t{seconds} % 1'895'000'000);
    time.SetFracSecond(data[4] / 256.0);
    int const round = static_cast<std::int8_t>(data[5]);
    std::string format(reinterpret_cast<char const*>(data) + head, size - head);
    std::string text;
    if (std::size_t const end = format.find('\n'); end != format.npos) {
        text = format.substr(end + 1);
        format.resize(end);
    }
    Print(time, format, round);
    Scan(time, text, format);
    Scan(time, format, text);
    return 0;
}
