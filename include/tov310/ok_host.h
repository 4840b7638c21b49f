// Windows whose OK depends on what stands in them: dialogs, pages, sheets and forms.
#pragma once

#include <tov310/export.h>

namespace tov {

class CWnd;

class TOV_CORE_API CTovOkHost {
 public:
    // Lets OK and Apply be pressed, here or in the window around that has them, or not; answers whether they
    // can be.
    virtual int EnableOkButton() = 0;

    // Whether OK may be pressed as far as this window and those in it are concerned. With `quiet` 0 the user
    // is shown why not.
    virtual int OnEnableOkButton(int quiet) = 0;

    // The window as such a host; null where it is none, and for null.
    static CTovOkHost* Of(CWnd* window);

 protected:
    CTovOkHost() = default;
    CTovOkHost(CTovOkHost const&) = default;
    CTovOkHost& operator=(CTovOkHost const&) = default;
    virtual ~CTovOkHost();

    // Enables the controls IDOK and ID_APPLY_NOW of the window, where they exist, or disables them. Answers
    // `enable`.
    static int EnableOkAndApply(CWnd& window, int enable);

    // EnableOkButton of a form: the dialog or page that it stands in directly decides, else its own controls
    // are enabled as it says itself.
    static int EnableOkOfForm(CWnd& form, CTovOkHost& host);

    // Asks the forms that stand directly in the window, in their order, until one says 0.
    static int AskForms(CWnd const& window, int quiet);
};

}  // namespace tov
