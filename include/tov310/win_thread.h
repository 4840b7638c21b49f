// Threads as objects.
#pragma once

#include <tov310/window.h>

#include <memory>

namespace tov {

// A thread that works beside the user-interface thread. It may post messages to windows and nothing else:
// windows belong to the user-interface thread.
//
// The object outlives its thread: a class that overrides one of the three steps calls End in its destructor,
// before what its steps use is gone.
class TOV_CORE_API CWinThread : public CCmdTarget {
    TOV_DYNAMIC(CWinThread, CCmdTarget)
 public:
    CWinThread();
    ~CWinThread() override;

    // Starts the thread. 0 while it runs already and when none is to be had.
    int CreateThread();

    // Asks the thread to end. Any thread may call it, at any time; a thread that is not running yet ends at
    // once when it starts, until End takes the wish back.
    void PostQuit();

    // Waits for the end, at most so many milliseconds. 1 when the thread is not running. On the thread
    // itself: 0.
    int WaitForEnd(unsigned milliseconds);

    // PostQuit, and waits until the thread has ended. It can be started anew then. Does nothing on the thread
    // itself.
    void End();

    bool IsRunning() const;

 protected:
    // The life of the thread, on the thread. Run is called where InitInstance answers 1; by default it waits
    // for PostQuit. ExitInstance comes always. What they throw ends the thread.
    virtual int InitInstance();
    virtual int Run();
    virtual int ExitInstance();

    // Waits for PostQuit, at most so many milliseconds; whether it was called.
    bool WaitForQuit(unsigned milliseconds) const;

 private:
    struct State;
    void Live();
    std::unique_ptr<State> m_state;
};

// A thread that serves a window. Overrides of its steps call those of this class.
class TOV_CORE_API CTovWinThread : public CWinThread {
    TOV_DYNAMIC(CTovWinThread, CWinThread)
 public:
    explicit CTovWinThread(HWND window);
    ~CTovWinThread() override;

    HWND GetWindow() const { return m_window; }

    // 1 from the moment when the thread is ready to that when it ends. Any thread may ask.
    int IsInitialized() const;

    // How many of these threads are at work in the process, and a wait for the moment when none is: 1 when it
    // has come, 0 when so many milliseconds have passed before.
    static long StaticRef();
    static int StaticEventBounceThreadKilled(unsigned milliseconds);

 protected:
    // 0, which ends the thread, when the window is dead.
    int InitInstance() override;
    int ExitInstance() override;

 private:
    struct Flag;
    HWND m_window;
    std::unique_ptr<Flag> m_initialized;
};

}  // namespace tov
