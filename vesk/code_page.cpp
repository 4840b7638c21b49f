#include "vesk/code_page.h"

#include <iconv.h>

#include <memory>

namespace tov {
namespace {

struct CloseConversion {
    void operator()(void* conversion) const { iconv_close(conversion); }
};

}  // namespace

std::string VeskFromCodePage(std::string_view bytes, char const* set) {
    iconv_t const opened = iconv_open("UTF-8", set);
    auto const unknown = reinterpret_cast<iconv_t>(-1);
    std::unique_ptr<void, CloseConversion> const conversion(opened != unknown ? opened : nullptr);
    std::string text;
    while (!bytes.empty()) {
        char buffer[256];
        char* from = const_cast<char*>(bytes.data());  // is not written to
        std::size_t left = bytes.size();
        char* to = buffer;
        std::size_t room = sizeof(buffer);
        if (conversion != nullptr) iconv(conversion.get(), &from, &left, &to, &room);
        text.append(buffer, to);
        bool const isStuck = left == bytes.size();
        bytes.remove_prefix(bytes.size() - left);
        if (!isStuck) continue;
        bool const isPlain = static_cast<unsigned char>(bytes.front()) < 0x80;
        text.append(isPlain ? std::string(1, bytes.front()) : std::string("\uFFFD"));
        bytes.remove_prefix(1);
    }
    return text;
}

}  // namespace tov
