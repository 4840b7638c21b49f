// One line on the terminal that is written again and again. What only the system knows of a terminal is asked
// here and nowhere else.
#pragma once

#include <string>

namespace survey {

class StatusLine {
 public:
    // On standard error. Where that is no terminal nothing is ever written.
    StatusLine();
    ~StatusLine() { Clear(); }
    StatusLine(StatusLine const&) = delete;
    StatusLine& operator=(StatusLine const&) = delete;

    bool IsShown() const { return m_isTerminal; }

    // Writes the line, or over it. Where there is no room for all, `detail` loses its middle. Both are in
    // UTF-8 without control characters.
    void Show(std::string const& text, std::string const& detail);

    // Takes the line away. The next output begins where it stood.
    void Clear();

 private:
    bool m_isTerminal;
    bool m_isWritten = false;
};

}  // namespace survey
