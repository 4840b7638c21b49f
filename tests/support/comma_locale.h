// A process whose numbers have a decimal comma.
#pragma once

#include <clocale>

namespace tov::test {

class CommaLocale {
 public:
    CommaLocale() = default;
    CommaLocale(CommaLocale const&) = delete;
    CommaLocale& operator=(CommaLocale const&) = delete;
    ~CommaLocale() { std::setlocale(LC_NUMERIC, "C"); }

    // False where the machine has none; LOCPATH tells where the build has made one.
    bool IsThere() const { return m_isThere; }

 private:
    bool const m_isThere = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
};

}  // namespace tov::test
