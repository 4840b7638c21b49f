// Fonts behind their handles.
#pragma once

#include <QFont>

namespace tov {

struct CTovNativeFont {
    QFont font;
};

}  // namespace tov
