#include <tov310/html_page.h>

#include <string_view>

namespace tov {
namespace {

constexpr std::string_view hexadecimal = "0123456789abcdef";

CString BackgroundOf(unsigned long const* color) {
    if (color == nullptr) return {};
    CString attribute = "BGCOLOR=\"#";
    return attribute.append(CTovHtmlPage::Color(*color)).append("\"");
}

// A path as an address within a page (RFC 3986): all but plain characters in hexadecimal.
CString AddressOf(std::string_view path) {
    CString address;
    for (char const c : path) {
        auto const byte = static_cast<unsigned char>(c);
        constexpr std::string_view markup = "\"<>&%#?'";
        if (byte > ' ' && byte < 0x7F && markup.find(c) == markup.npos) {
            address += c;
        } else {
            address.append(1, '%').append(1, hexadecimal[byte >> 4]).append(1, hexadecimal[byte & 15]);
        }
    }
    return address;
}

}  // namespace

CString CTovHtmlPage::Color(unsigned long color) {
    CString text;
    for (int shift : {0, 8, 16}) {
        auto const byte = static_cast<unsigned>(color >> shift & 0xFF);
        text.append(1, hexadecimal[byte >> 4]).append(1, hexadecimal[byte & 15]);
    }
    return text;
}

CString CTovHtmlPage::Empty(unsigned long const* backColor) {
    if (backColor == nullptr) return "<HTML></HTML>";
    CString page = "<HTML><BODY ";
    return page.append(BackgroundOf(backColor)).append("></BODY></HTML>");
}

CString CTovHtmlPage::Picture(char const* path, int centered, unsigned long const* backColor) {
    CString page = "<HTML><BODY ";
    page.append(BackgroundOf(backColor));
    page.append(centered != 0
                    ? "><TABLE border=\"0\" width=\"100%\" height=\"100%\"><TR><TD align=\"center\" "
                      "valign=\"middle\"><IMG SRC=\""
                    : "><P><IMG SRC=\"");
    page.append(AddressOf(path != nullptr ? path : ""));
    return page.append(centered != 0 ? "\" ></TD></TR></TABLE></BODY></HTML>" : "\" ></P></BODY></HTML>");
}

CString CTovHtmlPage::FileName(char const* path, int centered, unsigned long const* backColor) {
    CString name = "CTovHtmlView_";
    std::string_view const given = path != nullptr ? path : "";
    for (char const c : given.empty() ? std::string_view("Empty") : given)
        name += c == '\\' || c == '/' || c == ':' ? '_' : c;
    if (centered != 0) name.append("_Center");
    if (backColor != nullptr) name.append("_").append(Color(*backColor));
    return name;
}

}  // namespace tov
