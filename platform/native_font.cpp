#include "platform/native_font.h"

#include <tov310/wnd_on.h>

#include <QApplication>

#include <map>
#include <memory>

namespace tov {

HFONT TovFont(QFont const& font) {
    // A process has a handful of fonts, and handles to them live on in places that nobody knows.
    static auto& fonts = *std::make_unique<std::map<QFont, std::unique_ptr<CTovNativeFont>>>().release();
    auto& native = fonts[font];
    if (native == nullptr) native = std::make_unique<CTovNativeFont>(CTovNativeFont{font});
    return native.get();
}

QFont TovQFont(HFONT font) {
    return font != nullptr ? font->font : QApplication::font();
}

}  // namespace tov
