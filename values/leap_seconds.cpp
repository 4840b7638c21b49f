// The table of leap seconds of the process. Readers see one immutable state of it through an atomic pointer
// and never wait. Writers make the next state one at a time; a state that was in use stays until the end of
// the process, for a table can grow only a hundred times.
#include <tov310/leap_seconds.h>
#include <tov310/profile.h>
#include <tov310/time_helper.h>
#include <tov310/tov_time.h>

#include "util/file_error.h"
#include "util/file_facts.h"
#include "values/leap_seconds_file.h"
#include "values/leap_seconds_rows.h"
#include "vesk/file.h"
#include "vesk/immortal.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <utility>

namespace tov {
namespace {

constexpr int leastSeconds = 17;  // fewer are built in
constexpr int mostSeconds = 50;
constexpr int taiMinusGps = 19;
constexpr std::int64_t largestListFile = 1 << 20;  // those published have some 10 kB
constexpr double lastExpiry = 2973484;             // 1 January 10000

struct LeapTable {
    LeapRows rows;
    double expires = 0;  // 0 where no file was learned
};

constinit std::atomic<LeapTable const*> presentTable{nullptr};

CString Stored(char const* entry) {
    return CTovProfileEntries::ReadTovProfileString(CTovProfileEntries::LeapSecondsSection(), entry, "");
}

// What the profile holds can only add to the table.
void AddStored(LeapTable& table) {
    AddLeapRowsFromText(Stored(CTovProfileEntries::LeapSecondsEntry()), table.rows);
    CString const text = Stored(CTovProfileEntries::LeapSecondsExpiryEntry());
    double expires = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), expires);
    bool const isDate = error == std::errc() && end == text.data() + text.size() && expires <= lastExpiry;
    if (isDate) table.expires = std::max(table.expires, expires);
}

// Writes what is not there yet: a receiver tells the same leap second again and again.
void Store(char const* entry, CString const& text) {
    if (Stored(entry) == text) return;
    CTovProfileEntries::WriteTovProfileString(CTovProfileEntries::LeapSecondsSection(), entry, text.c_str());
}

CString ExpiryText(double expires) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, expires).ptr};
}

// One writer at a time.
class LeapTableWriter {
 public:
    // The table, which is made of what is built in and what the profile holds when it is first asked for.
    LeapTable const& Present() {
        std::scoped_lock const lock(m_guard);
        return PresentLocked();
    }

    // Adds the rows that are new and answers their number. A later expiry takes the place of the present one.
    // Both are kept in the profile.
    int Add(LeapRows const& rows, double expires) {
        std::scoped_lock const lock(m_guard);
        LeapTable const& old = PresentLocked();
        auto next = std::make_unique<LeapTable>(old);
        // Another process may have learned meanwhile, and must not lose it.
        AddStored(*next);
        auto const added =
            std::ranges::count_if(rows, [&](LeapRow const& row) { return InsertLeapRow(next->rows, row); });
        next->expires = std::max(next->expires, expires);
        // The rows first: an expiry without them would promise too much.
        if (!rows.empty()) Store(CTovProfileEntries::LeapSecondsEntry(), LeapRowsText(next->rows));
        if (next->expires != 0)
            Store(CTovProfileEntries::LeapSecondsExpiryEntry(), ExpiryText(next->expires));
        if (next->rows.size() != old.rows.size() || next->expires != old.expires) Publish(std::move(next));
        return static_cast<int>(added);
    }

 private:
    LeapTable const& PresentLocked() {
        if (m_tables.empty()) {
            auto first = std::make_unique<LeapTable>(LeapTable{BuiltInLeapRows()});
            AddStored(*first);
            Publish(std::move(first));
        }
        return *m_tables.back();
    }

    void Publish(std::unique_ptr<LeapTable const> table) {
        m_tables.push_back(std::move(table));
        presentTable.store(m_tables.back().get(), std::memory_order_release);
    }

    std::mutex m_guard;
    std::vector<std::unique_ptr<LeapTable const>> m_tables;
};

LeapTableWriter& TableWriter() {
    static Immortal<LeapTableWriter> writer;
    return *writer;
}

LeapTable const& PresentTable() {
    LeapTable const* const table = presentTable.load(std::memory_order_acquire);
    return table != nullptr ? *table : TableWriter().Present();
}

// The rows of a file that the table takes; false with a reason for one that it cannot.
bool RowsOf(LeapSecondsFile const& file, LeapRows& rows, CString& reason) {
    for (auto const& [line, day, taiSeconds] : file.rows) {
        int const seconds = taiSeconds - taiMinusGps;
        if (seconds < leastSeconds || day < firstTableDay || day >= lastTableDay) continue;
        if (seconds > mostSeconds || !IsLeapDay(day)) {
            reason = "line " + std::to_string(line) + ": " +
                     (seconds > mostSeconds ? "too many leap seconds" : "not a 1 January or 1 July");
            return false;
        }
        rows.push_back({static_cast<double>(day), OffsetOfSeconds(seconds)});
    }
    return true;
}

}  // namespace

double CTovTimeHelper::GetLeapSeconds(double const& mjd, double* since) {
    LeapRows const& rows = PresentTable().rows;
    // Steps without branches: which way a search goes cannot be foretold. What is no number is before all
    // days.
    LeapRow const* first = rows.data();
    for (std::size_t count = rows.size(); count > 1;) {
        std::size_t const half = count / 2;
        first = first[half].day <= mjd ? first + half : first;
        count -= half;
    }
    bool const isCovered = first->day <= mjd;
    if (since != nullptr) *since = isCovered ? first->day : 0.0;
    return isCovered ? first->offset : 0.0;
}

int CTovTimeHelper::AddLeapSeconds(double const& mjd, unsigned char seconds) {
    if (seconds < leastSeconds) return 1;
    double const day = std::floor(mjd);
    if (seconds > mostSeconds || !IsLeapDay(day)) return 0;
    TableWriter().Add({{day, OffsetOfSeconds(seconds)}}, 0);
    return 1;
}

int CTovTimeHelper::AddLeapSeconds(unsigned short week, unsigned char weekLow8, unsigned char dayNumber,
                                   unsigned char seconds) {
    if (seconds < leastSeconds) return 1;
    // The message has the low byte of a week that lies less than 128 weeks from the present one.
    int full = (week & ~0xFF) | weekLow8;
    if (full - week >= 128) {
        full -= 256;
    } else if (full - week < -127) {
        full += 256;
    }
    return AddLeapSeconds(CTovTime::GpsTime(full, 0.0) + dayNumber, seconds);
}

int TovLearnLeapSeconds(char const* path, unsigned long* error, CString* message) {
    FileReport const report(error, message);
    std::string const system = SystemPath(path);
    auto const fail = [&](unsigned long code, CString const& reason = {}) {
        report.Result(code);
        if (message != nullptr && !reason.empty()) *message += " " + reason;
        return -1;
    };
    FileStamp stamp;
    std::string text;
    std::error_code failure = StatFile(system.c_str(), stamp);
    if (!failure && stamp.size > largestListFile) return fail(TOV_ERROR_INVALID_PARAMETER, "too large");
    if (!failure) failure = ReadWholeFile(system.c_str(), text);
    if (failure) return fail(PathErrorCode(failure, system));

    CString reason;
    LeapRows rows;
    auto const file = ParseLeapSecondsFile(text, reason);
    if (!file || !RowsOf(*file, rows, reason)) return fail(TOV_ERROR_INVALID_PARAMETER, reason);
    if (!file->HasRightHash()) return fail(TOV_ERROR_INVALID_PARAMETER, "the hash is wrong");
    return TableWriter().Add(rows, file->expires);
}

double TovLeapSecondsExpire() {
    return PresentTable().expires;
}

}  // namespace tov
