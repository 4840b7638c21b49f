// Windows, their handles and the messages between them, without a toolkit.
//
// One thread of the process is the user-interface thread: the one that makes the first window. All windows
// are made, sent to and destroyed there; other threads may only post, send with a time limit, and ask
// IsWindow.
#pragma once

#include <tov310/export.h>
#include <tov310/geometry.h>
#include <tov310/object.h>
#include <tov310/types.h>

#include <span>
#include <stop_token>
#include <vector>

namespace tov {

class CCmdTarget;
class CCmdUI;
class CFrameWnd;
class CTovSubclassWnd;

// What OnCmdMsg is asked for: to do a command, or to tell the state of one.
inline constexpr int CN_COMMAND = 0;
inline constexpr int CN_UPDATE_COMMAND_UI = -1;

// Answers who would handle a command, for those who ask without having it done.
struct CTovCommandInfo {
    CCmdTarget* target = nullptr;
};

// What one class does for a command or a row of them; made by TovCommand in cmd_ui.h.
struct CTovCommandHandler {
    unsigned first = 0;
    unsigned last = 0;
    int (*command)(CCmdTarget& target, unsigned id) = nullptr;  // 0 lets the command go on
    void (*update)(CCmdTarget& target, CCmdUI& state) = nullptr;
};

// The handlers of one class and the table of the class that it comes from, which is asked after it.
struct CTovCommandTable {
    CTovCommandTable const* base = nullptr;
    std::span<CTovCommandHandler const> handlers;
};

// Base of everything that commands and messages are routed to.
class TOV_CORE_API CCmdTarget : public CObject {
    TOV_DYNAMIC(CCmdTarget, CObject)
 public:
    CCmdTarget() = default;
    CCmdTarget(CCmdTarget const&) = delete;
    CCmdTarget& operator=(CCmdTarget const&) = delete;

    // Has a command done (CN_COMMAND; `extra` is of no meaning) or its state told (CN_UPDATE_COMMAND_UI;
    // `extra` is the CCmdUI*). Answers 1 once somebody has. With `info` nothing is done: 1 means that there
    // is a handler and that info names it. This class asks its own table; overrides route on to others.
    virtual int OnCmdMsg(unsigned id, int code, void* extra, CTovCommandInfo* info);

 protected:
    // The handlers of the class, base classes included. The table lives as long as the class:
    //
    //   CTovCommandTable const* MyView::GetCommandTable() const {
    //       static constexpr CTovCommandHandler handlers[] = {
    //           TovCommand<MyView, &MyView::OnRefresh, &MyView::OnUpdateRefresh>(idRefresh)};
    //       static CTovCommandTable const table{CView::GetCommandTable(), handlers};
    //       return &table;
    //   }
    virtual CTovCommandTable const* GetCommandTable() const { return nullptr; }
};

// A window: an object that has a handle from its birth (a Create function) to its death and answers messages
// in WindowProc. Destroying the object destroys the window.
class TOV_CORE_API CWnd : public CCmdTarget {
    TOV_DYNAMIC(CWnd, CCmdTarget)
 public:
    CWnd() = default;
    ~CWnd() override;

    // 0 before birth and after death.
    HWND GetSafeHwnd() const { return m_handle; }

    // The same, and a window whose class can be born without a call of Create is born now.
    virtual HWND NeedHandle() { return m_handle; }

    // Ends the window, and before it those that stand in it; each is told by WM_DESTROY, the outer first,
    // while all are whole. The object stays and can be born again, under a new handle. Answers 1, or 0 when
    // there is no window. (A destructor ends the window without that message.)
    virtual int DestroyWindow();

    // Answers a message that was sent or posted to this window. Overrides pass what they do not know to their
    // base class. Here WM_COMMAND goes to OnCommand, and everything else to DefWindowProc.
    virtual LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam);

    // What the toolkit does with a message: with one that tells of an event of its own, what it would have
    // done without the library. 0 without a toolkit.
    virtual LRESULT DefWindowProc(unsigned message, WPARAM wParam, LPARAM lParam);

    // A command, or what a control tells of itself; the parameters are those of WM_COMMAND. Answers 1 once
    // somebody has dealt with it. Here a command goes to OnCmdMsg.
    virtual int OnCommand(WPARAM wParam, LPARAM lParam);

    // Told when the window has got its handle.
    virtual void PreSubclassWindow();

    // Makes this object, which has no window yet, the control with that number in the parent: it takes its
    // place, and what stood there is gone. Answers 1, or 0 where there is no such control, and without a
    // toolkit.
    virtual int SubclassDlgItem(unsigned id, CWnd* parent);

    // The window that this one stands in; null for none.
    virtual CWnd* GetParent() const;

    // The frame that this one stands in, at any depth; null for none.
    virtual CFrameWnd* GetParentFrame() const;

    // The windows that stand directly in this one, in their order (that in which the focus goes round).
    // Classes with children override it.
    virtual std::vector<HWND> GetChildren() const;

    // Whether the window stands in this one, at any depth.
    int IsChild(HWND window) const;

    // The number by which a window knows its child; 0 where none was given. GetDlgItem answers the first
    // direct child with that number.
    virtual int GetDlgCtrlID() const { return m_id; }
    virtual void SetDlgCtrlID(int id) { m_id = id; }
    HWND GetDlgItem(int id) const;

    // The kind of the window by its common name: "Edit", "ComboBox", "Button" ...; by default the name of the
    // run-time class.
    virtual CString GetClassName() const;

    // Bits of styles.h. Setting answers 1 when something changed.
    virtual unsigned long GetStyle() const { return m_style; }
    virtual unsigned long GetExStyle() const { return m_exStyle; }
    virtual int ModifyStyle(unsigned long remove, unsigned long add);
    virtual int ModifyStyleEx(unsigned long remove, unsigned long add);

    // Gives the window the focus of the keyboard. Without a screen there is none.
    virtual void SetFocus() {}

    // Shows or hides it, and lets it take keys and the mouse or not. Answer how it was before.
    int ShowWindow(int show);
    int EnableWindow(int enable);

    // Its text: the title of a frame, the words of a label or a button, the content of an edit.
    virtual CString GetWindowText() const { return {}; }
    virtual void SetWindowText(char const* /*text*/) {}

    // In pixels of the screen, and of the window itself.
    virtual CRect GetWindowRect() const { return {}; }
    virtual CRect GetClientRect() const { return {}; }

    // Moves it within the window it stands in, without one on the screen; pixels.
    virtual void MoveWindow(CRect const& /*rect*/) {}

    // From its own pixels to those of the screen, and back.
    virtual CPoint ClientToScreen(CPoint const& point) const { return point; }
    virtual CPoint ScreenToClient(CPoint const& point) const { return point; }

    // The font of its texts; setting null brings the usual one back.
    virtual HFONT GetFont() const { return nullptr; }
    virtual void SetFont(HFONT /*font*/) {}

    // Sends WM_TIMER with this id as wParam every so many milliseconds until it is killed or the window dies.
    // A second one with the same id takes the place of the first. Answer 1, or 0 where there is no such
    // timer, the window is dead or there is no screen.
    int SetTimer(WPARAM id, unsigned milliseconds);
    int KillTimer(WPARAM id);

    // Has it painted anew; the flags are the RDW_ bits of styles.h.
    virtual void RedrawWindow(unsigned /*flags*/) {}

    // The window of a handle; null for 0 and for a dead one. Only on the user-interface thread.
    static CWnd* FromHandlePermanent(HWND window);

 protected:
    // Gives the object a handle. Answers 1, or 0 when it has one already, when the caller is not on the
    // user-interface thread or when no handle is left.
    int Attach();

    // Takes the handle away; posts that are under way to it are dropped.
    void Detach();

 private:
    friend class CTovSubclassWnd;
    friend struct TovWindowLife;
    friend LRESULT TovSendMessage(HWND, unsigned, WPARAM, LPARAM);
    friend unsigned TovDispatchPosts();

    // Through the hooks, if there are any.
    LRESULT Answer(unsigned message, WPARAM wParam, LPARAM lParam);

    HWND m_handle;
    CTovSubclassWnd* m_hook = nullptr;  // the newest one
    unsigned long m_style = 0;
    unsigned long m_exStyle = 0;
    int m_id = 0;
    bool m_isDying = false;
};

// For the layer of the toolkit, whose windows are born and die with its objects.
struct TovWindowLife {
    static int Begin(CWnd& window) { return window.Attach(); }
    static void End(CWnd& window) { window.Detach(); }
};

// A window without anything to see, for hosts that only want to be told. Derive from it and override
// WindowProc.
class TOV_CORE_API CTovMessageWindow : public CWnd {
    TOV_DYNCREATE(CTovMessageWindow, CWnd)
 public:
    // Answers 1, or 0 as Attach does.
    int Create() { return Attach(); }
};

// Whether the handle names a living window. Any thread may ask.
TOV_CORE_API int IsWindow(HWND window);

// Whether the caller is on the user-interface thread; true for everybody while there is no window.
TOV_CORE_API bool TovIsUserInterfaceThread();

// Has the window answer the message now. 0 for a dead handle and, as a fault of the caller, from another
// thread.
TOV_CORE_API LRESULT TovSendMessage(HWND window, unsigned message, WPARAM wParam = 0, LPARAM lParam = 0);

// Sends the message to all windows that stand in the given one, each before its own children; with deep 0
// only to those that stand in it directly. Windows that die meanwhile get nothing.
TOV_CORE_API void TovSendMessageToDescendants(HWND window, unsigned message, WPARAM wParam = 0,
                                              LPARAM lParam = 0, int deep = 1);

// Queues the message for the window and answers 1; 0 for a dead handle. Any thread may post. Messages are
// delivered in the order of their posts by TovDispatchPosts; a window that is dead by then gets nothing.
TOV_CORE_API int TovPostMessage(HWND window, unsigned message, WPARAM wParam = 0, LPARAM lParam = 0);

// Sends a message that carries a text: its address is the lParam, and it lives until the window has answered.
// On the user-interface thread this is a plain send. From another thread the message waits its turn among the
// posts, and the caller waits for the answer: at most so many milliseconds, and no longer than until somebody
// asks `stop` to stop. Answers 1 and the window's answer in `result`, or 0: there is no such window, it has
// died, or the wait is over. A message that the window has not begun to answer by then is taken back.
TOV_CORE_API int TovSendMessageTimeout(HWND window, unsigned message, WPARAM wParam, CString text,
                                       unsigned milliseconds, LRESULT* result = nullptr,
                                       std::stop_token stop = {});

// The same with a plain lParam. What that points to, if anything, must outlive the answer, however late.
TOV_CORE_API int TovSendMessageTimeout(HWND window, unsigned message, WPARAM wParam, LPARAM lParam,
                                       unsigned milliseconds, LRESULT* result = nullptr,
                                       std::stop_token stop = {});

// Delivers what was queued when the call began, so that windows which post to themselves cannot hold it up,
// and answers the number of messages that reached a window. A host without a toolkit calls it in its main
// loop; with a toolkit the platform layer does.
TOV_CORE_API unsigned TovDispatchPosts();

// Waits until something is queued, at most so many milliseconds. Answers whether something is.
TOV_CORE_API bool TovWaitForPosts(unsigned milliseconds);

// Sets a function that tells the host's own loop to call TovDispatchPosts. It is called by the posting thread
// whenever the empty queue gets its first message, by a dispatch that leaves messages in the queue, and at
// once when some are waiting already. Null for none.
TOV_CORE_API void TovSetPostWaker(void (*wake)());

// Sets a function that is told of faults of the caller that have no other way to be seen, such as a send from
// the wrong thread. Null puts the default back, which writes the text to the standard error output.
TOV_CORE_API void TovSetFaultHandler(void (*report)(char const* text));

// Tells that function of a fault. Any thread may.
TOV_CORE_API void TovReportFault(char const* text);

// The number of a message by name: that of messages.h for the library's own, otherwise a new one up to 0xDFFF
// that stays fixed in the process. The same name always gives the same number. 0 for an empty name or when
// all numbers are given away. Any thread may ask.
TOV_CORE_API unsigned TovRegisterMessage(char const* name);

}  // namespace tov
