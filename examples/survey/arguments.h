// The words of the command line.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace survey {

// The message says what is wrong, in one line.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What a user gave, for a message: in quotes, or "what was given" where a terminal should not show it.
std::string Quoted(std::string_view text);

// Walks through the arguments.
class Arguments {
 public:
    explicit Arguments(std::span<char const* const> arguments) : m_rest(arguments) {}

    bool Next();

    // The next call of Next() gives the same one again.
    void Back() { m_again = true; }

    std::string_view Name() const { return m_name; }

    // What is no option: a file, or a command. Behind "--" everything is a file.
    bool IsFile() const { return m_onlyFiles || !m_name.starts_with('-'); }
    bool MayBeCommand() const { return !m_onlyFiles; }

    // "--name value" or "--name=value". These throw UsageError where there is none.
    std::string_view Value();
    std::string Text();  // not empty

    // True; UsageError where the option has a value.
    bool Flag() const;

    [[noreturn]] void Unknown() const;  // throws the UsageError for an option that nobody takes

 private:
    std::span<char const* const> m_rest;
    std::string_view m_name;
    std::string_view m_value;  // behind a "="
    bool m_hasValue = false;
    bool m_onlyFiles = false;
    bool m_again = false;
};

// A whole number from 1 on.
int ReadNumber(std::string_view option, int most, std::string_view text);

}  // namespace survey
