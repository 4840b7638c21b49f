// The classes of windows that common controls are, without a toolkit.
#pragma once

#include <tov310/window.h>

namespace tov {

class TOV_CORE_API CEdit : public CWnd {
    TOV_DYNCREATE(CEdit, CWnd)
 public:
    CEdit() = default;
    CString GetClassName() const override { return "Edit"; }
};

class TOV_CORE_API CButton : public CWnd {
    TOV_DYNCREATE(CButton, CWnd)
 public:
    CButton() = default;
    CString GetClassName() const override { return "Button"; }
};

class TOV_CORE_API CSpinButtonCtrl : public CWnd {
    TOV_DYNCREATE(CSpinButtonCtrl, CWnd)
 public:
    CSpinButtonCtrl() = default;
    CString GetClassName() const override { return "Spin"; }
};

}  // namespace tov
