#include "arguments.h"

#include "text.h"

#include <charconv>
#include <system_error>
#include <utility>

namespace survey {

std::string Quoted(std::string_view text) {
    if (!IsUtf8(text) || HasControls(text)) return "what was given";
    std::string quoted = "\"";
    return quoted.append(text).append("\"");
}

bool Arguments::Next() {
    if (std::exchange(m_again, false)) return true;
    if (m_rest.empty()) return false;
    m_name = m_rest.front();
    m_rest = m_rest.subspan(1);
    m_hasValue = false;
    if (m_onlyFiles) return true;
    if (m_name == "--" && !m_rest.empty()) {
        m_onlyFiles = true;
        return Next();
    }
    std::size_t const equals = m_name.find('=');
    if (m_name.starts_with("--") && equals != m_name.npos) {
        m_hasValue = true;
        m_value = m_name.substr(equals + 1);
        m_name = m_name.substr(0, equals);
    }
    return true;
}

std::string_view Arguments::Value() {
    if (m_hasValue) return m_value;
    if (m_rest.empty()) throw UsageError(std::string(m_name) + " needs a value");
    std::string_view const value = m_rest.front();
    m_rest = m_rest.subspan(1);
    return value;
}

std::string Arguments::Text() {
    std::string_view const value = Value();
    if (value.empty()) throw UsageError(std::string(m_name) + " needs a value");
    return std::string(value);
}

bool Arguments::Flag() const {
    if (m_hasValue) throw UsageError(std::string(m_name) + " takes no value");
    return true;
}

void Arguments::Unknown() const {
    throw UsageError("there is no option " + Quoted(m_name));
}

int ReadNumber(std::string_view option, int most, std::string_view text) {
    int number = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 1 || number > most) {
        throw UsageError(std::string(option) + ": a number from 1 to " + std::to_string(most) + ", not " +
                         Quoted(text));
    }
    return number;
}

}  // namespace survey
