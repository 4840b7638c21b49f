// The list control: it paints what an ITovListSource answers, in the four styles of list_layout.h, and does
// what keys and clicks want by ITovListActions. Only cells in sight are asked for, so that a million rows
// cost what fifty do.
//
//   tov::CTovListCtrlQuickDraw list;                       // keeps rows itself
//   list.GetHeaderCtrl().InsertColumn(0, tov::LVCFMT_LEFT, 120, "Point");
//   list.Items().InsertItem(0, "P1");
//   list.RowsChanged();
//
// Pixels are those of the area of the rows, below the header. The states of rows are the source's.
#pragma once

#include <tov310/export.h>
#include <tov310/header_ctrl.h>
#include <tov310/image_list.h>
#include <tov310/list_controls.h>
#include <tov310/list_input.h>
#include <tov310/list_layout.h>
#include <tov310/list_port.h>
#include <tov310/list_source.h>
#include <tov310/wnd_on.h>

#include <QAbstractScrollArea>
#include <QBasicTimer>
#include <QPoint>

#include <memory>

class QPainter;

namespace tov {

class CDC;

class TOV_UI_API CTovListCtrlQuickDraw : public CWndOn<QAbstractScrollArea, CListCtrl>, public ITovListPort {
    Q_OBJECT
    TOV_DYNCREATE(CTovListCtrlQuickDraw, CListCtrl)
 public:
    explicit CTovListCtrlQuickDraw(QWidget* parent = nullptr);
    ~CTovListCtrlQuickDraw() override;

    // Rows of somebody else's, and who selects and checks them. Both are borrowed; null: those kept here, as
    // at first.
    void SetSource(ITovListSource* source, ITovListActions* actions);
    ITovListSource& GetSource() const { return *m_source; }
    ITovListActions& GetActions() const { return *m_actions; }
    CTovStoredItems& Items();  // RowsChanged tells the control what was done to them

    CTovHeaderCtrlSort& GetHeaderCtrl() const { return *m_header; }
    CTovListLayout const& GetLayout() const { return m_layout; }

    // One of the styles; LVS_REPORT at first.
    void SetViewType(unsigned long style);
    unsigned long GetViewType() const { return m_layout.GetStyle(); }
    void SetImageList(CImageList const* images);  // borrowed; null: none, as at first
    // Of an icon with its label; its width is that of the columns of a list too.
    void SetCellSize(CSize const& size) { m_layout.SetCellSize(size), LayOut(); }

    // 1 at first: several rows can be selected, whole rows are clicked and painted as selected.
    int MultilineSelection() const { return m_input.multilineSelection; }
    void MultilineSelection(int on) { m_input.multilineSelection = on; }
    int FullRowSelect() const { return m_input.fullRowSelect; }
    void FullRowSelect(int on) { m_input.fullRowSelect = on, viewport()->update(); }
    // 0 at first.
    int ShowCheckboxes() const { return m_showCheckboxes; }
    void ShowCheckboxes(int show) { m_showCheckboxes = show, LayOut(); }
    int ShowGridlines() const { return m_showGridlines; }
    void ShowGridlines(int show) { m_showGridlines = show, viewport()->update(); }
    // Keys scroll and leave focus and selection alone.
    int ScrollWithoutSelchange() const { return m_scrollWithoutSelchange; }
    void ScrollWithoutSelchange(int on) { m_scrollWithoutSelchange = on; }

    // Hold painting back until they have been undone, in turn, by ContinueWindowUpdate with what
    // StopWindowUpdate answered. 0 paints the list anew.
    int StopWindowUpdate();
    void ContinueWindowUpdate(int before);

    CString GetItemText(unsigned int item, unsigned int col) const;
    TOV_LISTHIT HitTest(CPoint const& point) const { return m_layout.HitTest(point); }
    CRect GetItemRect(unsigned int item) const { return m_layout.GetItemRect(item); }

    // ITovListPort
    ITovHeaderPort& Header() override { return *m_header; }
    void RowsChanged() override;
    void InvalidateRows(unsigned int first, unsigned int last) override;
    void InvalidateStrip(int left, int right) override;
    CRect GetRowsRect() override;
    int GetRowHeight() override { return m_layout.GetRowHeight(); }
    unsigned int GetTopRow() override { return m_layout.GetTopRow(); }
    int GetRowLeft() override { return m_layout.GetLeft(); }
    int GetTextWidth(char const* text) override;
    int GetCharacterWidth(char32_t character) override;
    int GetImageWidth() override;
    void Scroll(int dx, int dy) override;
    int EnsureRowVisible(unsigned int row) override;
    int EnsureColumnVisible(unsigned int col) override;

 Q_SIGNALS:
    void itemActivated(unsigned int item);  // by a double click or Enter
    void itemClicked(unsigned int item, unsigned int col);
    void headerClicked(unsigned int col);
    void dragStarted(unsigned int item);  // of what is selected
    void scrolled(bool across);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    class Stored;
    struct Row;

    void LayOut();        // measures, margins and bars
    void TakeColumns();   // widths and order
    void ShowPosition();  // bars and header follow the layout
    void PlaceHeader();
    void MoveBy(CPoint const& before);  // what has moved since rows stood there
    CPoint Origin() const;
    void PaintRow(QPainter& painter, CDC& dc, unsigned int item, QRect const& part);
    void PaintCell(QPainter& painter, CDC& dc, Row const& row, unsigned int col);
    int GetImageHeight() const;
    void TrackBand(QPoint const& point);

    std::unique_ptr<Stored> m_stored;
    ITovListSource* m_source;
    ITovListActions* m_actions;
    CTovHeaderCtrlSort* m_header;  // a child
    CTovListLayout m_layout;
    CTovListInput m_input;
    std::unique_ptr<CTovListBand> m_band;
    CImageList const* m_images = nullptr;
    QBasicTimer m_bandTimer;
    QPoint m_pressedAt;
    unsigned int m_pressedItem = tovNoIndex;
    int m_showCheckboxes = 0;
    int m_showGridlines = 0;
    int m_scrollWithoutSelchange = 0;
    int m_nStopCount = 0;
    bool m_isMoving = false;  // the bars follow the layout at the moment
};

}  // namespace tov
