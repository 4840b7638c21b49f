// One running copy of a program.
#pragma once

#include <tov310/export.h>
#include <tov310/object.h>
#include <tov310/resources.h>
#include <tov310/types.h>

#include <memory>

namespace tov {

// Tells whether a program runs already in the session of the user, and brings the copy that does to the
// front.
//
//     CTovSingleInstance instance;
//     instance.SetObjectName("Survey");
//     if (instance.IsAlreadyExisting()) { instance.ActivateMainWindow(); return 0; }
//     ... make the main window ...
//     instance.RegisterMainWindowClass(nullptr, frame.GetSafeHwnd());
//
// The first copy keeps the name until its object dies or the process ends, in whatever way. To be used on the
// user-interface thread.
class TOV_CORE_API CTovSingleInstance : public CObject {
    TOV_DYNCREATE(CTovSingleInstance, CObject)
 public:
    CTovSingleInstance();
    CTovSingleInstance(CTovSingleInstance const&) = delete;
    CTovSingleInstance& operator=(CTovSingleInstance const&) = delete;
    ~CTovSingleInstance() override;

    // Sets the name of the program, any text, and the class name of its main window: the name and " Class".
    // Answers 1, or 0 when this object holds a name already or the text is not there.
    int SetObjectName(CString name);
    int SetObjectName(HINSTANCE module, unsigned int id);
    CString const& GetObjectName() const { return m_objectName; }
    CString const& GetMainWindowClassName() const { return m_className; }

    // 1 when somebody else holds the name: another process of the user or another object in this one.
    // Otherwise 0, and the name is this object's from now on. With an empty name or one that is held by this
    // object, 0 and nothing happens. What failed is in the error, with the result 0: without the lock file
    // nothing is known and nothing held; without the socket beside it the name is held but no other copy can
    // activate this one.
    int IsAlreadyExisting(unsigned long* error = nullptr);

    // Puts the main window under the class name, where FindMainWindow and other copies of the program find it
    // as long as it lives. 0 without a class name or with a dead window, else 1. The module is not looked at.
    int RegisterMainWindowClass(HINSTANCE module, HWND mainWindow);

    // The main window under the class name when it is in this process; 0 for another process and for none.
    HWND FindMainWindow() const;

    // Posts ActivateMessage to the main window of the copy that runs. 1 when its process has posted it, 0
    // when there is none, it has no main window yet or does not answer.
    int ActivateMainWindow() const;

    // What the main window gets when it is to come to the front. Any thread may ask.
    static unsigned int ActivateMessage();

 private:
    struct Name;  // what is held

    CString m_objectName;
    CString m_className;
    HWND m_mainWindow;
    bool m_exists = false;
    std::unique_ptr<Name> m_name;
};

}  // namespace tov
