// Where the tool bar of a dialog or a sheet stands.
#pragma once

#include <tov310/geometry.h>

#include <optional>

namespace tov {

inline CPoint ToolBarPlaceInDialog(CRect const& client, CSize const& bar, int margin, bool isTop,
                                   bool isLeft) {
    return {isLeft ? client.left + margin : client.right - bar.cx - margin + 1,
            isTop ? client.top + margin - 2 : client.bottom - bar.cy - margin};
}

// Left of the buttons: they begin at that height, and the first page at that place across.
inline CPoint ToolBarPlaceInSheet(CRect const& client, CSize const& bar, int margin,
                                  std::optional<int> buttonTop, std::optional<int> pageLeft) {
    return {pageLeft.has_value() ? *pageLeft - 4 : client.left + margin / 2,
            buttonTop.has_value() ? *buttonTop - 2 : client.bottom - margin / 2 - bar.cy};
}

}  // namespace tov
