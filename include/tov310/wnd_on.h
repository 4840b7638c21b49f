// Windows on the screen: CWndOn<Q, W> makes a class W of the library's windows a widget Q, so that one object
// is both.
//
//   class MyView : public tov::CWndOn<QWidget, tov::CView> { ... };
//
// Such an object is born, that is, gets its handle, when it is polished (before it is shown first) or when
// somebody asks for its handle by TovWnd, whichever comes first. What happens to the widget passes as
// messages through the hooks and WindowProc before Qt's own handlers run, and those run when a message is
// passed on to the base class. Widgets that are not the library's have a window too, made by TovWnd; it
// follows the widget by an event filter.
//
// The windows of a form are those that the user knows: group boxes, plain QWidget and QFrame, scroll areas
// and their viewports, stacks of pages, splitters and button boxes are passed through, and what stands in
// them stands in the window around. The order of the windows is that of the focus.
#pragma once

#include <tov310/export.h>
#include <tov310/window.h>

#include <QAbstractScrollArea>
#include <QFont>
#include <QPointer>
#include <QWidget>

#include <concepts>
#include <type_traits>
#include <utility>

namespace tov {

// The window of a widget; made on the first call for one that is not the library's. Null for null. It belongs
// to the widget and goes with it.
TOV_UI_API CWnd* TovWnd(QWidget* widget);
TOV_UI_API HWND TovHandle(QWidget* widget);

// The widget of a window; null where it is none.
TOV_UI_API QWidget* TovWidget(CWnd const* window);
TOV_UI_API QWidget* TovWidget(HWND window);

// A widget that is no window of the library's by itself: for a QWidget* beside an overload that takes a
// CWnd*, where a class that is both must find its way, and null too.
template <class T>
concept TovPlainWidget = std::derived_from<T, QWidget> && !std::derived_from<T, CWnd>;

// The event that a message to this window tells of, while it is on its way; null for messages that were sent
// or posted.
TOV_UI_API QEvent* TovEventOf(CWnd const& window, unsigned message);

// A font as the library hands it round. It lives as long as the process.
TOV_UI_API HFONT TovFont(QFont const& font);
TOV_UI_API QFont TovQFont(HFONT font);  // the application's for null

// Numbers by which a form knows its controls. A number can stand in a form as the dynamic property "tovId"
// too; the buttons of a QDialogButtonBox have theirs (IDOK, IDCANCEL, ID_APPLY_NOW); every other control gets
// a free one when it is asked for.
inline constexpr char const* tovIdProperty = "tovId";

namespace detail {

using NativeHandler = bool (*)(QWidget& widget, QEvent& event);

// The way of an event through messages; the native handler is Qt's own.
TOV_UI_API bool RouteEvent(CWnd& window, QWidget& widget, bool ofViewport, QEvent& event,
                           NativeHandler native);
TOV_UI_API LRESULT AnswerAsToolkit(CWnd& window, QWidget& widget, unsigned message, WPARAM wParam,
                                   LPARAM lParam);

TOV_UI_API void RegisterWidget(QWidget& widget, CWnd& window);
TOV_UI_API void ForgetWidget(QWidget& widget, CWnd& window);

TOV_UI_API CWnd* ParentOf(QWidget const& widget);
TOV_UI_API std::vector<HWND> ChildrenOf(QWidget const& widget);
TOV_UI_API int IdOf(QWidget& widget, int given);
TOV_UI_API CString ClassNameOf(QWidget const& widget);
TOV_UI_API unsigned long StyleOf(QWidget const& widget, unsigned long stored);
TOV_UI_API void ChangeStyle(QWidget& widget, unsigned long before, unsigned long after);
TOV_UI_API unsigned long ExStyleOf(QWidget const& widget, unsigned long stored);
TOV_UI_API void FocusTo(QWidget& widget);
TOV_UI_API CString TextOf(QWidget const& widget);
TOV_UI_API void SetTextOf(QWidget& widget, char const* text);
TOV_UI_API CRect ScreenRectOf(QWidget const& widget);
TOV_UI_API CRect ClientRectOf(QWidget const& widget);
TOV_UI_API void MoveWithin(QWidget& widget, CRect const& rect);
TOV_UI_API CPoint ToScreen(QWidget const& widget, CPoint const& point);
TOV_UI_API CPoint FromScreen(QWidget const& widget, CPoint const& point);
TOV_UI_API HFONT FontOf(QWidget const& widget);
TOV_UI_API void SetFontOf(QWidget& widget, HFONT font);
TOV_UI_API void Redraw(QWidget& widget, unsigned flags);
TOV_UI_API int TakePlace(QWidget& widget, CWnd& window, unsigned id, CWnd* parent);
TOV_UI_API void BearWindow(CWnd& window, QWidget& widget);

// Around the end of a window: its widget is hidden and stays its owner's; one that a dialog template made is
// deleted soon. Those in it end with it and come back when it is born again.
class TOV_UI_API DeathOfWidget {
 public:
    explicit DeathOfWidget(QWidget& widget);
    DeathOfWidget(DeathOfWidget const&) = delete;
    DeathOfWidget& operator=(DeathOfWidget const&) = delete;
    ~DeathOfWidget();

 private:
    QPointer<QWidget> m_widget;
};

// Abstract widgets, which nobody can ask, are made from their parent.
template <class Q, class... Arguments>
inline constexpr bool isMadeFrom = std::is_constructible_v<Q, Arguments...>;
template <class Q, class Parent>
requires std::is_abstract_v<Q>
inline constexpr bool isMadeFrom<Q, Parent> = std::is_convertible_v<Parent, QWidget*>;

// Scroll areas get what happens on their viewport by a function of its own.
template <class Q, bool IsArea = std::is_base_of_v<QAbstractScrollArea, Q>>
class ViewportEvents : public Q {
 protected:
    using Q::Q;
    virtual bool RouteViewportEvent(QEvent&) { return false; }
};

template <class Q>
class ViewportEvents<Q, true> : public Q {
 protected:
    using Q::Q;
    virtual bool RouteViewportEvent(QEvent& event) { return Q::viewportEvent(&event); }
    bool viewportEvent(QEvent* event) override { return RouteViewportEvent(*event); }
};

}  // namespace detail

// What a window does through its widget.
template <class W>
class CTovWidgetWnd : public W {
 public:
    virtual QWidget& Widget() const = 0;

    CWnd* GetParent() const override { return detail::ParentOf(Widget()); }
    std::vector<HWND> GetChildren() const override { return detail::ChildrenOf(Widget()); }
    int GetDlgCtrlID() const override { return detail::IdOf(Widget(), W::GetDlgCtrlID()); }
    CString GetClassName() const override { return detail::ClassNameOf(Widget()); }
    unsigned long GetStyle() const override { return detail::StyleOf(Widget(), W::GetStyle()); }
    unsigned long GetExStyle() const override { return detail::ExStyleOf(Widget(), W::GetExStyle()); }
    int ModifyStyle(unsigned long remove, unsigned long add) override {
        unsigned long const before = GetStyle();
        W::ModifyStyle(remove, add);
        detail::ChangeStyle(Widget(), before, (before & ~remove) | add);
        return before != GetStyle();
    }
    void SetFocus() override { detail::FocusTo(Widget()); }
    CString GetWindowText() const override { return detail::TextOf(Widget()); }
    void SetWindowText(char const* text) override { detail::SetTextOf(Widget(), text); }
    CRect GetWindowRect() const override { return detail::ScreenRectOf(Widget()); }
    CRect GetClientRect() const override { return detail::ClientRectOf(Widget()); }
    void MoveWindow(CRect const& rect) override { detail::MoveWithin(Widget(), rect); }
    CPoint ClientToScreen(CPoint const& point) const override { return detail::ToScreen(Widget(), point); }
    CPoint ScreenToClient(CPoint const& point) const override { return detail::FromScreen(Widget(), point); }
    HFONT GetFont() const override { return detail::FontOf(Widget()); }
    void SetFont(HFONT font) override { detail::SetFontOf(Widget(), font); }
    void RedrawWindow(unsigned flags) override { detail::Redraw(Widget(), flags); }
    int SubclassDlgItem(unsigned id, CWnd* parent) override {
        return detail::TakePlace(Widget(), *this, id, parent);
    }
    LRESULT DefWindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override {
        return detail::AnswerAsToolkit(*this, Widget(), message, wParam, lParam);
    }

    HWND NeedHandle() override {
        detail::BearWindow(*this, Widget());
        return this->GetSafeHwnd();
    }
    int DestroyWindow() override {
        if (!this->GetSafeHwnd()) return 0;
        detail::DeathOfWidget const death(Widget());
        return W::DestroyWindow();
    }

 protected:
    using W::W;
};

template <class Q, class W>
class CWndOn : public detail::ViewportEvents<Q>, public CTovWidgetWnd<W> {
    static_assert(std::is_base_of_v<QWidget, Q>, "Q is a widget");
    static_assert(std::is_base_of_v<CWnd, W>, "W is a class of windows");
    using Events = detail::ViewportEvents<Q>;

 public:
    template <class... Arguments>
    requires detail::isMadeFrom<Q, Arguments...>
    explicit CWndOn(Arguments&&... arguments) : Events(std::forward<Arguments>(arguments)...) {
        detail::RegisterWidget(*this, *this);
    }
    CWndOn(CWndOn const&) = delete;
    CWndOn(CWndOn&&) = delete;  // or it would count as an argument of Q's
    CWndOn& operator=(CWndOn const&) = delete;
    ~CWndOn() override { detail::ForgetWidget(*this, *this); }

    QWidget& Widget() const override { return const_cast<CWndOn&>(*this); }

 protected:
    bool event(QEvent* event) override {
        return detail::RouteEvent(*this, *this, false, *event, [](QWidget& widget, QEvent& e) {
            return static_cast<CWndOn&>(widget).Q::event(&e);
        });
    }
    bool RouteViewportEvent(QEvent& event) override {
        return detail::RouteEvent(*this, *this, true, event, [](QWidget& widget, QEvent& e) {
            return static_cast<CWndOn&>(widget).Events::RouteViewportEvent(e);
        });
    }
};

}  // namespace tov
