// Sorting on a thread of its own.
#include <tov310/report_view_host.h>
#include <tov310/window.h>

#include "reports/report_async_sort.h"
#include "reports/report_rows.h"

#include <utility>

namespace tov {
namespace {

constexpr unsigned int sortIsOver = WM_TOV_REPORTVIEW_ITEM_SORT_ORDER;

}  // namespace

CTovReportAsyncSort::CTovReportAsyncSort(CTovReportTable& table, CTovReportSort::Items const& items,
                                         std::vector<SORT_STATE_REALCOL> const& keys,
                                         std::vector<unsigned int> rows)
    : m_table(table), m_keys(keys), m_rows(std::move(rows)), m_sort(items, keys) {}

CTovReportAsyncSort::~CTovReportAsyncSort() = default;

bool CTovReportAsyncSort::Start() {
    if (!m_sort.Prepare(m_rows) || Create() == 0) return false;
    m_worker = std::jthread([this, window = GetSafeHwnd()](std::stop_token const& stop) {
        if (m_sort.SortPrepared(m_rows, stop, m_percent)) TovPostMessage(window, sortIsOver);
    });
    return true;
}

LRESULT CTovReportAsyncSort::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != sortIsOver) return CTovMessageWindow::WindowProc(message, wParam, lParam);
    m_worker.join();
    m_table.OnAsyncSortOver();
    return 0;
}

int CTovReportTable::SortListAsync(std::vector<SORT_STATE_REALCOL> const& keys) {
    CancelSort();
    if (keys.size() > mostSortKeys) return 0;
    m_async = std::make_unique<CTovReportAsyncSort>(*this, m_vecRealItems, keys, m_vecScreenItems->Copy());
    m_asyncStamp = m_vecScreenItems->Stamp();
    m_asyncEdits = m_edits;
    if (m_async->Start()) return 1;
    m_async.reset();
    return 0;
}

int CTovReportTable::GetSortProgress() const {
    return m_async != nullptr ? static_cast<int>(m_async->Percent()) : -1;
}

void CTovReportTable::CancelSort() {
    m_async.reset();
}

// What was sorted is what the rows were; where they have changed since, it is done again.
void CTovReportTable::OnAsyncSortOver() {
    std::unique_ptr<CTovReportAsyncSort> const sort = std::move(m_async);
    if (m_asyncStamp != m_vecScreenItems->Stamp() || m_asyncEdits != m_edits) {
        if (SortListAsync(sort->Keys()) == 0) m_host.SortList(sort->Keys());
        return;
    }
    ApplySort(sort->Keys(), sort->Rows());
}

}  // namespace tov
