// The button that answers while the user-interface thread is at work.
#pragma once

#include <tov310/sync_event.h>
#include <tov310/win_thread.h>
#include <tov310/wnd_on.h>

#include <QAbstractButton>
#include <QPixmap>

#include <atomic>
#include <memory>

namespace tov {

// Stands for the button as long as that lies there: its end takes the button away. Widgets belong to the
// user-interface thread, so no thread runs; instead the work there calls Pump every now and then, every 50 ms
// for a button that is felt to answer at once. GetWindow is the button.
class TOV_UI_API CTovButtonEventThread : public CTovWinThread {
    TOV_DYNAMIC(CTovButtonEventThread, CTovWinThread)
 public:
    explicit CTovButtonEventThread(HWND button);
    ~CTovButtonEventThread() override;

    // Deals with what the user has done to the button, and with nothing else (pump.h).
    void Pump();
};

// Lies over a button of a dialog, wherever that goes, looks like it and is named like it. When it is pressed,
// by the mouse or by a key while it has the focus (Space, Enter and Escape), it raises a counter and sets an
// event, and does nothing else: the work, on whatever thread, looks at them.
class TOV_UI_API CTovButtonEvent : public CWndOn<QAbstractButton, CWnd> {
    Q_OBJECT
    TOV_DYNAMIC(CTovButtonEvent, CWnd)
 public:
    // Lays one over the control with that number in the dialog. Either of the last two may be null; they must
    // live until the answered object has ended. Null where there is no such control.
    static std::unique_ptr<CTovButtonEventThread> CreateThread(unsigned int id, CWnd* dialog, CEvent* event,
                                                               std::atomic<long>* abortCounter);

    // Made by CreateThread.
    CTovButtonEvent(QWidget& real, CEvent* event, std::atomic<long>* abortCounter);
    ~CTovButtonEvent() override;

    // Copies how the real button looks and what it is called now, a part of it in its own pixels or, for
    // null, the whole; also done by WM_TOV_BTNEVENT_CREATEIMAGE. Answers 1, or 0 where the real button has
    // gone.
    int CreateImage(CRect const* rect);

 protected:
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    void LieOverReal();
    void FollowReal();
    void LookDown(bool isDown);

    QPointer<QWidget> m_real;
    CEvent* m_event;
    std::atomic<long>* m_abortCounter;
    QPixmap m_image;
    QPoint m_imagePlace;
    bool m_isCopying = false;
};

}  // namespace tov
