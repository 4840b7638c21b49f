// The picture that a program shows while it starts.
#pragma once

#include <tov310/dib.h>
#include <tov310/draw_dib.h>
#include <tov310/styles.h>
#include <tov310/wnd_on.h>

namespace tov {

// A picture in the middle of the screen, for a time or until it is told to go.
class TOV_UI_API CTovWndSplash : public CWndOn<QWidget, CWnd> {
    Q_OBJECT
    TOV_DYNAMIC(CTovWndSplash, CWnd)
 public:
    static constexpr unsigned noTimeOut = 0xFFFFFFFF;

    // The picture is a bitmap resource, an image file (bitmap.h tells which kinds) or an image, which is
    // copied. A topmost one stays above all other windows. With a time-out, in milliseconds, it closes itself
    // then; with clickEnds also at the first key or press of a mouse button on it. Without a time-out a click
    // ends nothing.
    CTovWndSplash(HINSTANCE module, unsigned int id, int topmost = 1, unsigned int timeOut = noTimeOut,
                  int clickEnds = 1);
    explicit CTovWndSplash(char const* path, int topmost = 1, unsigned int timeOut = noTimeOut,
                           int clickEnds = 1);
    explicit CTovWndSplash(CTovDib const& image, int topmost = 1, unsigned int timeOut = noTimeOut,
                           int clickEnds = 1);
    ~CTovWndSplash() override;

    // Makes the window in the size of the picture, in the middle of the screen of the parent (null: the main
    // window of the application, if there is one), and shows it, unless the style lacks WS_VISIBLE; it stands
    // there when the call comes back, however long the program then works. With disableParent the parent
    // takes neither keys nor the mouse as long as the window lives; the window ends with it. Answers 1, or 0
    // without a picture and where the window is there already.
    int Create(CWnd* parent = nullptr, unsigned long style = WS_POPUP | WS_VISIBLE, unsigned long exStyle = 0,
               int disableParent = 0);
    int Create(TovPlainWidget auto* parent, unsigned long style = WS_POPUP | WS_VISIBLE,
               unsigned long exStyle = 0, int disableParent = 0) {
        return Create(TovWnd(parent), style, exStyle, disableParent);
    }

    // Ends the window; the object stays its owner's. Closing it is the same.
    int DestroyWindow() override;

    CTovDib const& GetImage() const { return m_dib; }

 Q_SIGNALS:
    void ended();

 protected:
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    CTovWndSplash(int topmost, unsigned int timeOut, int clickEnds);
    int LoadImage();
    void ShowNow();
    void EnableParent();

    HINSTANCE m_module = nullptr;
    unsigned int m_id = 0;
    CString m_path;
    CTovDib m_dib;
    CTovDrawDib m_drawDib;
    int m_topmost;
    unsigned int m_timeOut;
    int m_clickEnds;
    int m_isMade = 0;
    QMetaObject::Connection m_ownerEnds;
    HWND m_disabled;  // the parent, if this has disabled it
};

}  // namespace tov
