// Views on the screen of something that may be larger than they are.
#pragma once

#include <tov310/tov_view.h>

namespace tov {

// Draws in places of all there is to see (SetScrollSizes); what stands in it scrolls along.
class TOV_UI_API CTovScrollView : public CTovViewOn<QAbstractScrollArea, CTovViewOf<CScrollView>> {
    Q_OBJECT
    TOV_DYNCREATE(CTovScrollView, CScrollView)
 public:
    explicit CTovScrollView(QWidget* parent = nullptr);

    void SetScrollSizes(CSize total) override;
    void ScrollToPosition(CPoint place) override;
    CPoint GetScrollPosition() const override;

 Q_SIGNALS:
    void initialUpdated();                        // behind OnPostInitialUpdate
    void documentChanged();                       // set, or unset
    void activationChanged(bool active);          // behind OnPostActivateView
    void slowDoubleClicked(QPoint const& place);  // with OnSlowDoubleClick

 protected:
    void OnNotice(eTovViewNotice notice) override;
    void OnSlowDoubleClick(WPARAM keys, CPoint const& place) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

 private:
    void SetRanges();
};

}  // namespace tov
