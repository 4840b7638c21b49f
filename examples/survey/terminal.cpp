#include "terminal.h"

#include "text.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace survey {
namespace {

constexpr char const* eraseLine = "\r\x1B[K";

// Asked each time, for windows change their size.
std::size_t Columns() {
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

}  // namespace

StatusLine::StatusLine() : m_isTerminal(::isatty(STDERR_FILENO) == 1) {}

void StatusLine::Show(std::string const& text, std::string const& detail) {
    if (!m_isTerminal) return;
    std::size_t const room = Columns() - 1;  // some terminals begin a new line behind the last column
    std::string const head = Shortened(text, room);
    std::string const tail = Shortened(detail, room - std::min(room, DisplayWidth(head)));
    std::cerr << eraseLine + head + tail << std::flush;
    m_isWritten = true;
}

void StatusLine::Clear() {
    if (m_isWritten) std::cerr << eraseLine << std::flush;
    m_isWritten = false;
}

}  // namespace survey
