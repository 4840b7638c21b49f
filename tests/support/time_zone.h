// Another time zone for a while.
#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace tov::test {

class TimeZone {
 public:
    explicit TimeZone(char const* zone) {
        char const* const before = std::getenv("TZ");
        m_had = before != nullptr;
        if (m_had) m_before = before;
        setenv("TZ", zone, 1);
        tzset();
    }
    TimeZone(TimeZone const&) = delete;
    TimeZone& operator=(TimeZone const&) = delete;
    ~TimeZone() {
        m_had ? setenv("TZ", m_before.c_str(), 1) : unsetenv("TZ");
        tzset();
    }

 private:
    bool m_had = false;
    std::string m_before;
};

}  // namespace tov::test
