// Painting without flicker: a window is painted in memory and copied to the screen in one piece.
#pragma once

#include <tov310/device_context.h>
#include <tov310/export.h>
#include <tov310/hooks.h>

#include <memory>

namespace tov {

class CView;

// The device of a window while a message to paint it (WM_PAINT) is on its way. While it is open the toolkit
// cannot paint the window by itself.
class TOV_CORE_API CPaintDC {
 public:
    explicit CPaintDC(CWnd const& window);
    CPaintDC(CPaintDC const&) = delete;
    CPaintDC& operator=(CPaintDC const&) = delete;
    ~CPaintDC();

    CDC* GetDC() const { return m_dc.get(); }  // null where nothing is to be painted, and without a screen
    CRect const& GetPaintRect() const { return m_rcPaint; }  // around what is to be painted

 private:
    CRect m_rcPaint;  // told by what makes the device
    std::unique_ptr<CDC> m_dc;
};

// A hook that paints its window in memory, in the dots of the screen. Whoever answers WM_PAINT finds the
// memory device as its wParam, filled with the background within the part that is to be painted; a window
// that leaves the painting to the toolkit gets the same. Painting can be held back: then the window keeps its
// picture.
//
// The object must not outlive the window, or be uninstalled before; deleting it uninstalls it.
class TOV_CORE_API CTovQuickDraw : public CTovSubclassWnd {
    TOV_DYNAMIC(CTovQuickDraw, CTovSubclassWnd)
 public:
    CTovQuickDraw();
    ~CTovQuickDraw() override;

    // With a view, which must be born, its OnPrepareDC and OnDraw are called instead of sending WM_PAINT on.
    // Null for none, as at first, and for one that is gone.
    void SetNotifyWnd(CView const* view);
    CView* GetNotifyWnd() const;

    // Puts the hook on a window, which must be born: that of a widget is once it was shown, or by TovWnd.
    // Answers 1, or 0 where that is not possible.
    virtual int Install(CWnd* window);
    // Answers 1, or 0 where it is on none. What was painted in memory is given up.
    virtual int Uninstall();

    // Hold painting back until they have been undone, in turn, by ContinueWindowUpdate with what
    // StopWindowUpdate answered. 0 paints the window anew.
    virtual int StopWindowUpdate();
    virtual void ContinueWindowUpdate(int before);

    // The size of the picture in memory, in pixels. It follows the window; painting in a window of size 0 is
    // left as it is. Negative sizes are passed over.
    virtual void SetSize(SIZE const& size);

    // Fills the picture in memory with the background; not while painting is held back. Answers 1, or 0
    // without a size.
    virtual int EraseBkgnd(CWnd* window);

    // The memory device, made when it is first asked for; null without a size, and without a screen. It lives
    // until the size changes, and as long as a message to paint is on its way.
    virtual CDC* GetCompDC(CWnd* window);

    // The colour of the background, 0x00BBGGRR; until it is set, it is that of the window.
    virtual void SetCustomBkColor(COLORREF const& color);
    virtual void LoadSystemColors();

    // Rows at the top that are never copied to the screen; 0 at first.
    virtual void SetExcludeFromTop(unsigned int rows);
    virtual unsigned int GetExcludeFromTop() const;

    void OnDestroyWindow() override;

    // Copies the picture in memory to what is to be painted.
    void Draw(CPaintDC& paint);

 protected:
    virtual void Clean();
    virtual int Initialize(CWnd* window);
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

 private:
    LRESULT OnPaint(LPARAM lParam);
    void PaintInMemory(CRect const& part, LPARAM lParam);
    COLORREF Background() const;

    HWND m_notify;
    int m_nStopCount = 0;
    SIZE m_size;
    std::shared_ptr<CDC> m_memory;  // whoever paints on it may change the size
    bool m_isPainted = false;       // the memory shows the window
    unsigned int m_nExcludeFromTop = 0;
    COLORREF m_customBkColor = 0;
    bool m_hasCustomBkColor = false;
    std::shared_ptr<char> const m_life = std::make_shared<char>();  // ends with the object
};

}  // namespace tov
