// The classes of windows that lists and their headers are, without a toolkit.
#pragma once

#include <tov310/window.h>

namespace tov {

class TOV_CORE_API CHeaderCtrl : public CWnd {
    TOV_DYNCREATE(CHeaderCtrl, CWnd)
 public:
    CHeaderCtrl() = default;
    CString GetClassName() const override { return "Header"; }
};

class TOV_CORE_API CListCtrl : public CWnd {
    TOV_DYNCREATE(CListCtrl, CWnd)
 public:
    CListCtrl() = default;
    CString GetClassName() const override { return "ListView"; }
};

}  // namespace tov
