// Dialogs as resource modules describe them, in dialogs/ID.json or in the bytes of dialogs/ID.dlg
// (docs/resources.md). They are read here and made into windows by the layer of the toolkit.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/resources.h>
#include <tov310/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace tov {

class CWnd;

// One control. Places and sizes are in dialog units: a quarter of the mean width of a letter in the dialog's
// font, and an eighth of the height of its lines.
struct CTovControlTemplate {
    CString className;           // one of the common classes, or any other name, which a factory must know
    unsigned id = 0;             // 1 to 65535; 0 where it has none
    unsigned long style = 0;     // bits of styles.h
    CString text;                // "&" before the letter that leads to it
    std::vector<CString> items;  // of a list, a combo box or tabs
    CRect rect;
};

struct CTovDialogTemplate {
    CString name;  // of the file, for messages
    CString title;
    bool hasPlace = false;  // otherwise the toolkit chooses it, and only the size of rect holds
    CRect rect;             // within the window that the dialog belongs to, without its frame
    unsigned long style = 0;
    CString fontFamily;                         // empty: the application's
    double fontSize = 0;                        // points; 0: the application's
    std::vector<CTovControlTemplate> controls;  // in the order of the Tab key
};

// Reads dialogs/ID.json, or dialogs/NAME.json, of the module; where it has none, dialogs/ID.dlg with
// dialogs/ID.dlginit; the built-in one answers what it lacks. Null is the module that the library takes its
// own resources from. Answers 1, or 0 with an empty template: every fault goes to the fault handler
// (window.h) and into a line of `message`, by file, control and key.
TOV_CORE_API int TovLoadDialogTemplate(HINSTANCE module, unsigned id, CTovDialogTemplate& dialog,
                                       CString* message = nullptr);
TOV_CORE_API int TovLoadDialogTemplate(HINSTANCE module, char const* name, CTovDialogTemplate& dialog,
                                       CString* message = nullptr);

// Reads a template of bytes in either form (dlg_template.h) that the host has from elsewhere, and the words
// for the lists in it, which may be empty. Answers and faults as above; `dialog.name` is the given one.
TOV_CORE_API int TovReadDialogTemplate(char const* name, std::string_view bytes, std::string_view init,
                                       CTovDialogTemplate& dialog, CString* message = nullptr);

// Makes the controls of a host's own classes when a dialog names them.
class ITovControlFactory {
 public:
    // Makes a control of the class in the parent, pixels, and answers its window; it belongs to the parent.
    // Null for a class that the factory does not know. Text, id, style and place are set by the caller.
    virtual CWnd* CreateControl(char const* className, unsigned long style, CRect const& rect,
                                CWnd* parent) = 0;

 protected:
    ITovControlFactory() = default;
    ITovControlFactory(ITovControlFactory const&) = default;
    ITovControlFactory& operator=(ITovControlFactory const&) = default;
    virtual ~ITovControlFactory() = default;
};

// The newest factory is asked first. A factory stays its owner's and must live until it is removed. All on
// the user-interface thread.
TOV_CORE_API void TovAddControlFactory(ITovControlFactory* factory);
TOV_CORE_API void TovRemoveControlFactory(ITovControlFactory* factory);

// Asks the factories. Null where none knows the class.
TOV_CORE_API CWnd* TovCreateControl(char const* className, unsigned long style, CRect const& rect,
                                    CWnd* parent);

}  // namespace tov
