#include "vesk/print.h"

#include <locale.h>

#include <cstdio>

namespace tov {
namespace {

// For the calling thread only, and only for the length of a block.
class NeutralLocale {
 public:
    NeutralLocale() : m_before(::uselocale(Neutral())) {}
    NeutralLocale(NeutralLocale const&) = delete;
    NeutralLocale& operator=(NeutralLocale const&) = delete;
    ~NeutralLocale() { ::uselocale(m_before); }

 private:
    static locale_t Neutral() {
        static locale_t const locale = [] {
            locale_t const unicode = ::newlocale(LC_ALL_MASK, "C.UTF-8", locale_t{});
            return unicode != locale_t{} ? unicode : ::newlocale(LC_ALL_MASK, "C", locale_t{});
        }();
        return locale;
    }

    locale_t m_before;
};

}  // namespace

bool VeskPrint(std::string& text, char const* format, std::va_list arguments) {
    text.clear();
    NeutralLocale const neutral;
    std::va_list again;
    va_copy(again, arguments);
    int const length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (length < 0) return false;
    text.resize(static_cast<std::size_t>(length));
    if (std::vsnprintf(text.data(), text.size() + 1, format, arguments) == length) return true;
    text.clear();  // an argument changed between the two
    return false;
}

}  // namespace tov
