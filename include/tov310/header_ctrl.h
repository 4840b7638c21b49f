// The headers of lists, on QHeaderView.
//
// A header keeps its columns itself; columns are counted by their screen index (list_port.h), wherever the
// user has dragged them. Qt's own signals tell of dragging (sectionMoved) and of widths (sectionResized).
#pragma once

#include <tov310/export.h>
#include <tov310/header_marks.h>
#include <tov310/list_controls.h>
#include <tov310/list_port.h>
#include <tov310/wnd_on.h>
#include <tov310/wnd_tool_tip.h>

#include <QBasicTimer>
#include <QHeaderView>

#include <memory>
#include <vector>

namespace tov {

// A header whose painting can be held back.
class TOV_UI_API CTovHeaderCtrlQuickDraw : public CWndOn<QHeaderView, CHeaderCtrl> {
    Q_OBJECT
    TOV_DYNCREATE(CTovHeaderCtrlQuickDraw, CHeaderCtrl)
 public:
    explicit CTovHeaderCtrlQuickDraw(QWidget* parent = nullptr);

    // Hold painting back until they have been undone, in turn, by ContinueWindowUpdate with what
    // StopWindowUpdate answered. 0 paints the header anew.
    int StopWindowUpdate();
    void ContinueWindowUpdate(int before);

 private:
    int m_nStopCount = 0;
};

class TOV_UI_API CTovHeaderCtrl : public CTovHeaderCtrlQuickDraw, public ITovHeaderPort {
    Q_OBJECT
    TOV_DYNCREATE(CTovHeaderCtrl, CTovHeaderCtrlQuickDraw)
 public:
    explicit CTovHeaderCtrl(QWidget* parent = nullptr);
    ~CTovHeaderCtrl() override;

    unsigned int GetColumns() const { return m_marks.GetColumns(); }
    // An index beyond the last column is the one behind it; the alignment is LVCFMT_.
    void InsertColumn(unsigned int col, int alignment, int width, char const* label) override;
    // For a column that is none these do nothing, and answer 0, an empty text or -1 (GetHeaderWidth).
    void DeleteColumn(unsigned int col) override;
    void SetColumnLabel(unsigned int col, char const* label) override;
    CString GetColumnLabel(unsigned int col) const;
    void SetColumnAlignment(unsigned int col, int alignment) override;
    int GetColumnAlignment(unsigned int col) const;
    int GetColumnWidth(unsigned int col) override;
    void SetColumnWidth(unsigned int col, int width) override;
    std::vector<unsigned int> GetColumnOrder() override;
    void SetColumnOrder(std::vector<unsigned int> const& order) override;  // nothing but a permutation does
    void SetSortColumns(std::vector<SORT_STATE_SCREENCOL> const& keys) override;
    void Invalidate() override;

    // Clicks on cells do nothing; 0 at first.
    int IgnoreLButtonClick() const { return m_ignoreLButtonClick; }
    void IgnoreLButtonClick(int ignore) { m_ignoreLButtonClick = ignore; }
    int IgnoreRButtonClick() const { return m_ignoreRButtonClick; }
    void IgnoreRButtonClick(int ignore) { m_ignoreRButtonClick = ignore; }
    // A click on a cell tells its column; 1 at first.
    virtual int SortAllowed() const { return m_sortAllowed; }
    virtual void SortAllowed(int allowed) { m_sortAllowed = allowed; }
    // The user may change widths; 1 at first.
    virtual int ColSizingAllowed() const { return m_colSizingAllowed; }
    virtual void ColSizingAllowed(int allowed);
    // Tips of columns, and whether only labels that are cut have one; both 1 at first.
    virtual int ColumnTooltips(int* longTextOnly) const;
    virtual void ColumnTooltips(int show, int longTextOnly);

    // The mark of a column and the number behind it; 0 shows none.
    void SetInbuildIcon(unsigned int col, eInbuildIcon icon, unsigned int number);
    int GetInbuildIcon(unsigned int col, eInbuildIcon& icon, unsigned int& number) const;

    virtual CSize GetHeaderTextExtent(char const* text) const;
    virtual int GetHeaderIconExtent() const;
    int GetHeaderWidth(unsigned int col) override;

 Q_SIGNALS:
    void columnClicked(unsigned int col);

 protected:
    virtual void OnHeaderMouseMove(CPoint const& point);
    virtual void OnHeaderMouseLeave();
    virtual void OnShowColumnToolTip(CPoint const& point);  // in pixels of the header
    virtual void OnShowColumnToolTip(unsigned int col);
    virtual int OnGetColumnToolTip(unsigned int col, CString& text);  // 0: none

    CTovHeaderMarks m_marks;

    void paintSection(QPainter* painter, QRect const& rect, int logicalIndex) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void changeEvent(QEvent* event) override;

 private:
    class Columns;
    TOV_HEADERMEASURES const& Measures() const;
    bool IsOnDivider(int x) const;

    std::unique_ptr<Columns> m_columns;
    mutable TOV_HEADERMEASURES m_measures;  // -1: not known
    int m_ignoreLButtonClick = 0;
    int m_ignoreRButtonClick = 0;
    int m_sortAllowed = 1;
    int m_colSizingAllowed = 1;
    int m_columnTooltips = 1;
    int m_tooltipsLongTextOnly = 1;
    unsigned int m_toolTipCol = tovNoIndex;
    CTovWndToolTip m_toolTip;
    QBasicTimer m_toolTipTimer;
};

// A header whose marks are those of up to three keys of a sort.
class TOV_UI_API CTovHeaderCtrlSort : public CTovHeaderCtrl {
    Q_OBJECT
    TOV_DYNCREATE(CTovHeaderCtrlSort, CTovHeaderCtrl)
 public:
    using CTovHeaderCtrl::CTovHeaderCtrl;

    virtual void NoSort();
    virtual void UpdateCurrentSortedColumns();
    virtual void SetSortColumn(unsigned int col, int descending);
    void SetSortColumns(std::vector<SORT_STATE_SCREENCOL> const& keys) override;
};

}  // namespace tov
