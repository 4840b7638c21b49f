#include "values/leap_seconds_file.h"

#include "util/sha1.h"
#include "values/calendar.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <utility>

namespace tov {
namespace {

constexpr int dayOfNtpEpoch = 15020;                                               // 1 January 1900
constexpr std::int64_t lastNtpSecond = 2958464 * std::int64_t{secondsPerDay} - 1;  // 31 December 9999
constexpr std::int64_t mostTaiSeconds = 999;

class LeapSecondsParser {
 public:
    bool Parse(std::string_view text);
    LeapSecondsFile TakeFile() { return std::move(m_file); }
    std::string Reason() const { return m_reason; }

 private:
    bool Line(std::string_view line);
    bool Time(std::string_view words, bool& isThere, std::int64_t& time);
    bool Hash(std::string_view words);
    bool Row(std::string_view words);
    bool Number(std::string_view word, std::int64_t most, std::int64_t& number);
    bool Fail(std::string_view why) {
        m_reason = "line " + std::to_string(m_line) + ": ";
        m_reason += why;
        return false;
    }
    bool Lacks(std::string_view what) {
        m_reason = "there is no ";
        m_reason += what;
        return false;
    }

    // Takes the next word off the front; empty at the end.
    static std::string_view Word(std::string_view& words) {
        constexpr std::string_view blanks = " \t";
        words.remove_prefix(std::min(words.find_first_not_of(blanks), words.size()));
        std::string_view const word = words.substr(0, words.find_first_of(blanks));
        words.remove_prefix(word.size());
        return word;
    }

    LeapSecondsFile m_file;
    std::string m_reason;
    int m_line = 0;
    bool m_hasUpdate = false;
    bool m_hasExpiry = false;
    bool m_hasHash = false;
};

bool LeapSecondsParser::Parse(std::string_view text) {
    while (!text.empty()) {
        std::size_t const end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end != text.npos ? end + 1 : text.size());
        if (line.ends_with('\r')) line.remove_suffix(1);
        ++m_line;
        if (!Line(line)) return false;
    }
    if (m_file.rows.empty()) return Lacks("row");
    if (!m_hasUpdate) return Lacks("time of the last update");
    if (!m_hasExpiry) return Lacks("time of expiry");
    return m_hasHash || Lacks("hash");
}

bool LeapSecondsParser::Line(std::string_view line) {
    std::int64_t time = 0;
    if (line.starts_with("#$")) return Time(line.substr(2), m_hasUpdate, time);
    if (line.starts_with("#@")) {
        if (!Time(line.substr(2), m_hasExpiry, time)) return false;
        m_file.expires = dayOfNtpEpoch + static_cast<double>(time) / secondsPerDay;
        return true;
    }
    if (line.starts_with("#h")) return Hash(line.substr(2));
    line = line.substr(0, line.find('#'));
    return line.find_first_not_of(" \t") == line.npos || Row(line);
}

// Notes the digits for the hash.
bool LeapSecondsParser::Number(std::string_view word, std::int64_t most, std::int64_t& number) {
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size() || number < 0 || number > most ||
        word.starts_with('-'))
        return Fail("not a number in its range");
    m_file.digits += word;
    return true;
}

bool LeapSecondsParser::Time(std::string_view words, bool& isThere, std::int64_t& time) {
    if (std::exchange(isThere, true)) return Fail("stands twice");
    return Number(Word(words), lastNtpSecond, time) && (Word(words).empty() || Fail("more than one time"));
}

bool LeapSecondsParser::Hash(std::string_view words) {
    if (std::exchange(m_hasHash, true)) return Fail("stands twice");
    for (std::uint32_t& value : m_file.hash) {
        std::string_view const word = Word(words);
        auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), value, 16);
        if (error != std::errc() || end != word.data() + word.size())
            return Fail("not five hexadecimal words of a hash");
    }
    return Word(words).empty() || Fail("not five hexadecimal words of a hash");
}

bool LeapSecondsParser::Row(std::string_view words) {
    std::int64_t time = 0;
    std::int64_t seconds = 0;
    if (!Number(Word(words), lastNtpSecond, time) || !Number(Word(words), mostTaiSeconds, seconds))
        return false;
    if (!Word(words).empty()) return Fail("more than two numbers");
    if (time % secondsPerDay != 0) return Fail("not the beginning of a day");
    int const day = dayOfNtpEpoch + static_cast<int>(time / secondsPerDay);
    if (!m_file.rows.empty() && day <= m_file.rows.back().day) return Fail("not later than the row before");
    m_file.rows.push_back({m_line, day, static_cast<int>(seconds)});
    return true;
}

}  // namespace

bool LeapSecondsFile::HasRightHash() const {
    return Sha1(digits) == hash;
}

std::optional<LeapSecondsFile> ParseLeapSecondsFile(std::string_view text, std::string& reason) {
    LeapSecondsParser parser;
    if (parser.Parse(text)) return parser.TakeFile();
    reason = parser.Reason();
    return std::nullopt;
}

}  // namespace tov
