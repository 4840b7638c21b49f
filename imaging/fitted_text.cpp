#include <tov310/fitted_text.h>

#include <tov310/device_context.h>
#include <tov310/system.h>
#include <tov310/window.h>

#include <algorithm>
#include <string_view>
#include <vector>

namespace tov {
namespace {

constexpr std::string_view separatorsOfPaths = "/\\";

// Where each character begins, and the end.
std::vector<std::size_t> CharacterBounds(std::string_view text) {
    std::vector<std::size_t> bounds;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) bounds.push_back(i);
    }
    bounds.push_back(text.size());
    return bounds;
}

int WidthOf(CDC const& dc, CString const& text) {
    return dc.GetTextExtent(text.c_str()).cx;
}

// The most characters, from `least` to `most`, of which `fits` is true; `least` - 1 where it never is, and
// where there are none to choose from (`most` one before 0). A text gets wider with each character, so few of
// them need to be measured.
template <class Fits>
std::size_t MostThatFit(std::size_t least, std::size_t most, Fits fits) {
    std::size_t good = least - 1;
    if (most == std::string_view::npos) return good;
    while (good < most) {
        std::size_t const middle = good + (most - good + 1) / 2;
        if (fits(middle)) {
            good = middle;
        } else {
            most = middle - 1;
        }
    }
    return good;
}

// The part in front of the folders: "C:\", or the separator that an absolute path begins with.
std::size_t RootLength(std::string_view path) {
    constexpr std::size_t drive = 3;  // characters
    if (path.front() == '/') return 1;
    std::vector<std::size_t> const bounds = CharacterBounds(path);
    return bounds[std::min(drive, bounds.size() - 1)];
}

}  // namespace

CString TovAdjustString(CDC const* dc, int width, char const* text) {
    CString const whole = text != nullptr ? text : "";
    if (dc == nullptr || WidthOf(*dc, whole) <= width) return whole;
    constexpr char const* dots[] = {"...", "..", "."};
    int const left = width - WidthOf(*dc, dots[0]);
    std::vector<std::size_t> const bounds = CharacterBounds(whole);
    std::size_t const fitting = MostThatFit(1, bounds.size() - 2, [&](std::size_t count) {
        return WidthOf(*dc, whole.substr(0, bounds[count])) <= left;
    });
    if (fitting > 0) return whole.substr(0, bounds[fitting]).append(dots[0]);
    for (char const* const some : dots) {
        if (WidthOf(*dc, some) <= width) return some;
    }
    return {};
}

int TovGetMaxStringLen(CDC const* dc, int width, char const* text) {
    if (text == nullptr) return 0;
    CString const whole = text;
    std::vector<std::size_t> const bounds = CharacterBounds(whole);
    std::size_t const length = bounds.size() - 1;
    if (dc == nullptr || WidthOf(*dc, whole) <= width) return static_cast<int>(length);
    return static_cast<int>(MostThatFit(1, length - 1, [&](std::size_t count) {
        return WidthOf(*dc, whole.substr(0, bounds[count])) <= width;
    }));
}

CString TovAdjustPathString(char const* path, CWnd* wnd, unsigned int width) {
    CString working = path != nullptr ? path : "";
    constexpr std::size_t shortest = 4;
    if (CharacterBounds(working).size() - 1 < shortest || wnd == nullptr || !IsWindow(wnd->GetSafeHwnd()))
        return working;
    HFONT const font = wnd->GetFont();
    auto const isTooWide = [&] {
        int const extent = TovGetSystem()->GetTextExtent(font, working.c_str()).cx;
        return extent > 0 && static_cast<unsigned int>(extent) > width;
    };
    CString const root = working.substr(0, RootLength(working));
    CString head = root;
    head.append(" ...");
    while (isTooWide()) {
        if (working.starts_with(head)) working.erase(0, root.size() + 1);
        std::size_t const first = working.find_first_of(separatorsOfPaths);
        if (first == working.npos) return head.append(working);
        working.erase(0, first + 1);
        std::size_t const next = working.find_first_of(separatorsOfPaths);
        if (next == working.npos) return head.append(working);
        working.replace(0, next, head);
    }
    return working;
}

void TovDraw3dString(CDC* dc, int x, int y, char const* text, int raised, COLORREF colour, COLORREF shadow) {
    if (dc == nullptr || text == nullptr) return;
    int const aside = raised != 0 ? -1 : 1;
    COLORREF const before = dc->SetTextColor(shadow);
    dc->TextOut(x + aside, y + aside, text);
    dc->SetTextColor(colour);
    dc->TextOut(x, y, text);
    dc->SetTextColor(before);
}

void TovDraw3dString(CDC* dc, int x, int y, char const* text, int raised, COLORREF colour) {
    TovDraw3dString(dc, x, y, text, raised, colour, TovGetSystem()->GetSysColor(COLOR_BTNSHADOW));
}

}  // namespace tov
