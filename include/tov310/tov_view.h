// Views on the screen.
//
//   class PlanView : public tov::CTovView {
//    protected:
//       void OnDraw(tov::CDC* dc) override;              // or paintEvent
//       void OnPostInitialUpdate() override;             // all stands and is laid out
//   };
//   frame.setCentralWidget(std::make_unique<PlanView>().release());
//
// A view that nobody has told of its initial update (WM_INITIALUPDATE) hears of it when it is shown first.
#pragma once

#include <tov310/styles.h>
#include <tov310/view_extensions.h>
#include <tov310/wnd_on.h>

#include <QAbstractScrollArea>
#include <QPoint>

namespace tov {

namespace detail {

// Makes the window of a view that has none: in the parent, a frame's view in its middle. Answers 1, or 0.
TOV_UI_API int CreateView(QWidget& widget, CView& view, unsigned long style, CRect const& rect, CWnd* parent,
                          unsigned id, CCreateContext const* context);

}  // namespace detail

// What the classes of views on the screen have in common.
template <class Q, class W>
class CTovViewOn : public CWndOn<Q, W> {
 public:
    using CWndOn<Q, W>::CWndOn;

    // Makes the window in the parent at the rectangle, in pixels of the parent; in a frame it is the view in
    // its middle. The style is bits of styles.h; 0 are those of a visible child with a border. A document in
    // the context gets the view. Answers 1, or 0 where the view has its window already.
    virtual int Create(unsigned long style, CRect const& rect, CWnd* parent, unsigned id,
                       CCreateContext const* context = nullptr) {
        return detail::CreateView(*this, *this, style, rect, parent, id, context);
    }

    // The same in any widget of a host as in a dialog.
    using CTovViewExtensions::ExchangeDlgItem;
    int ExchangeDlgItem(TovPlainWidget auto* parent, unsigned id, int initialUpdate = 1,
                        unsigned showCommand = SW_SHOW, CTovPtrSmart<CTovDocument> const& document = {}) {
        return ExchangeDlgItem(TovWnd(parent), id, initialUpdate, showCommand, document);
    }
};

class TOV_UI_API CTovView : public CTovViewOn<QAbstractScrollArea, CTovViewOf<CView>> {
    Q_OBJECT
    TOV_DYNCREATE(CTovView, CView)
 public:
    explicit CTovView(QWidget* parent = nullptr);

    CPoint GetScrollPosition() const override;

 Q_SIGNALS:
    void initialUpdated();                        // behind OnPostInitialUpdate
    void documentChanged();                       // set, or unset
    void activationChanged(bool active);          // behind OnPostActivateView
    void slowDoubleClicked(QPoint const& place);  // with OnSlowDoubleClick

 protected:
    void OnNotice(eTovViewNotice notice) override;
    void OnSlowDoubleClick(WPARAM keys, CPoint const& place) override;
    void paintEvent(QPaintEvent* event) override;  // by OnEraseBkgnd, OnPrepareDC and OnDraw
};

}  // namespace tov
