#include "frame/string_table.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

namespace tov {
namespace {

// Takes the events of the parser, so that a faulty table is refused at the place of its fault and no tree of
// arbitrary depth is ever built.
class TableReader : public nlohmann::json_sax<nlohmann::json> {
 public:
    explicit TableReader(StringTable& table) : m_table(table) {}

    bool Complete() const { return m_complete; }
    std::string const& Reason() const { return m_reason; }

    bool null() override { return Refuse("a value is not a text"); }
    bool boolean(bool) override { return Refuse("a value is not a text"); }
    bool number_integer(number_integer_t) override { return Refuse("a value is not a text"); }
    bool number_unsigned(number_unsigned_t) override { return Refuse("a value is not a text"); }
    bool number_float(number_float_t, string_t const&) override { return Refuse("a value is not a text"); }
    bool binary(binary_t&) override { return Refuse("a value is not a text"); }
    bool start_array(std::size_t) override {
        return Refuse("there is a list where an object or text belongs");
    }
    bool end_array() override { return true; }

    bool string(string_t& text) override {
        if (!m_open) return Refuse("the table is not an object");
        m_table.insert_or_assign(m_id, std::move(text));
        return true;
    }

    bool start_object(std::size_t) override {
        if (m_open) return Refuse("an object stands where a text belongs");
        m_open = true;
        return true;
    }

    bool key(string_t& text) override {
        char const* const end = text.data() + text.size();
        auto const [stop, failure] = std::from_chars(text.data(), end, m_id);
        if (failure != std::errc() || stop != end) return Refuse("\"" + text + "\" is not an id");
        if (m_table.contains(m_id)) return Refuse("the id " + text + " stands twice");
        return true;
    }

    bool end_object() override {
        m_complete = true;
        return true;
    }

    bool parse_error(std::size_t, std::string const&, nlohmann::json::exception const& fault) override {
        // The exception's text begins with its class in brackets and a place, which is told in one form for
        // all faults.
        std::string_view words = fault.what();
        if (auto const bracket = words.find("] "); bracket != words.npos) words.remove_prefix(bracket + 2);
        if (words.starts_with("parse error at "))
            words.remove_prefix(std::min(words.find(": "), words.size() - 2) + 2);
        m_reason = words;
        // It quotes what was read last, which need not be whole characters.
        std::replace_if(
            m_reason.begin(), m_reason.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; },
            '?');
        return false;
    }

 private:
    bool Refuse(std::string reason) {
        m_reason = std::move(reason);
        return false;
    }

    StringTable& m_table;
    std::string m_reason;
    unsigned m_id = 0;
    bool m_open = false;
    bool m_complete = false;
};

// Iterates over the text and notes how far the parser has come, since it tells a place only for some faults.
struct Counter {
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const*;
    using reference = char const&;

    char const* at;
    char const** furthest;

    reference operator*() const { return *at; }
    Counter& operator++() {
        *furthest = std::max(*furthest, ++at);
        return *this;
    }
    Counter operator++(int) {
        Counter const old = *this;
        ++*this;
        return old;
    }
    bool operator==(Counter const& other) const { return at == other.at; }
    bool operator!=(Counter const& other) const { return at != other.at; }
};

}  // namespace

bool ParseStringTable(std::string_view json, StringTable& table, std::string& reason) {
    table.clear();
    reason.clear();
    char const* furthest = json.data();
    TableReader reader(table);
    bool const parsed = nlohmann::json::sax_parse(Counter{json.data(), &furthest},
                                                  Counter{json.data() + json.size(), &furthest}, &reader);
    if (parsed && reader.Complete()) return true;
    table.clear();
    reason = reader.Reason().empty() ? "the table is not an object" : reader.Reason();
    // The last character may be the one behind a number, and a line end.
    auto const line = std::count(json.data(), furthest != json.data() ? furthest - 1 : furthest, '\n') + 1;
    reason = "line " + std::to_string(line) + ": " + reason;
    return false;
}

}  // namespace tov
