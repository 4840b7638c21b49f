// How high the header and the rows of a list are, for those that lay out what holds a list.
#pragma once

#include <tov310/export.h>

namespace tov {

// Pixels, of a list in the font that dialogs have at the moment; 0 without a screen. A list is measured at
// the first call, and again when the font has become another. On the user-interface thread.
class TOV_CORE_API CTovListCtrlMetrics {
 public:
    static int HeaderHeight();
    static int RVItemHeight();
    static int RVItemHeightCheck();  // with check boxes
    static int RVItemHeightIcon();   // with images of one pixel
    static int RVItemHeightCheckAndIcon();

    struct Heights {
        int header = 0;
        int item = 0;
        int itemCheck = 0;
        int itemIcon = 0;
        int itemCheckAndIcon = 0;
    };
    // Who measures a list; null for nobody, as without a screen. Forgets what was measured.
    static void SetMeasure(Heights (*measure)());
};

}  // namespace tov
