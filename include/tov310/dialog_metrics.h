// The sizes of the common controls in dialogs, for hosts that lay out by code what stands beside dialogs from
// templates.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/types.h>

#include <cstdint>

namespace tov {

// All in pixels, for the font that dialogs have at the moment of the call; the layout is the library's dialog
// 26255. Without a screen, and where the module that the host has set has a faulty one, all answer 0, null or
// an empty size. On the user-interface thread.
class TOV_CORE_API CTovDialogMetrics {
 public:
    static HFONT Font();            // of dialogs
    static std::uint8_t CharSet();  // 1: that of the system

    static int Margin();  // between the edge of a dialog and its controls

    static CSize Static();  // a label of one short word
    static CSize Edit();
    static CSize Checkbox();
    static CSize Radiobutton();
    static CSize Combobox();  // its field
    static CSize Spin();
    static CSize Slider();
    static CSize DateTime();
    static CSize IpAddress();
    static CSize ComboboxEx();  // its field

    // The header and the rows of a list: plain, with check boxes, with pictures, with both.
    static int ListCtrlHeaderHeight();
    static int ListCtrlRVItemHeight();
    static int ListCtrlRVItemHeightCheck();
    static int ListCtrlRVItemHeightIcon();
    static int ListCtrlRVItemHeightCheckAndIcon();
};

}  // namespace tov
