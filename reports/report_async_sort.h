// A sort on a thread of its own: the rows and their keys as they were at the beginning.
#pragma once

#include <tov310/window.h>

#include "reports/report_sort.h"

#include <atomic>
#include <thread>
#include <vector>

namespace tov {

class CTovReportTable;

// Posts a message to itself when it is over. Ending it stops the sort.
class CTovReportAsyncSort final : public CTovMessageWindow {
 public:
    CTovReportAsyncSort(CTovReportTable& table, CTovReportSort::Items const& items,
                        std::vector<SORT_STATE_REALCOL> const& keys, std::vector<unsigned int> rows);
    ~CTovReportAsyncSort() override;

    // False where the rows do not tell what they sort by.
    bool Start();

    unsigned int Percent() const { return m_percent; }
    std::vector<SORT_STATE_REALCOL> const& Keys() const { return m_keys; }
    std::vector<unsigned int> const& Rows() const { return m_rows; }

    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

 private:
    CTovReportTable& m_table;
    std::vector<SORT_STATE_REALCOL> const m_keys;
    std::vector<unsigned int> m_rows;
    CTovReportSort m_sort;
    std::atomic<unsigned int> m_percent = 0;
    std::jthread m_worker;  // the last one: it ends before what it works on
};

}  // namespace tov
