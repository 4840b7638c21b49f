// How wide columns must be for what stands in them.
#include <tov310/report_view_host.h>
#include <tov310/wait_cursor.h>

#include "reports/report_rows.h"
#include "util/code_points.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tov {
namespace {

constexpr int checkBoxWidth = 16;

// At least as wide as the text. Characters beyond ASCII are asked for one by one.
class TextBound {
 public:
    explicit TextBound(ITovListPort& port) : m_port(port) {
        for (char32_t c = 0; c < m_ascii.size(); ++c)
            m_ascii[c] = port.GetCharacterWidth(c);
    }

    int Of(std::string_view text) const {
        int width = 0;
        while (!text.empty()) {
            auto const c = static_cast<unsigned char>(text.front());
            if (c < m_ascii.size()) {
                width += m_ascii[c];
                text.remove_prefix(1);
            } else {
                width += m_port.GetCharacterWidth(TakeCharacter(text));
            }
        }
        return width;
    }

 private:
    ITovListPort& m_port;
    std::array<int, 128> m_ascii{};
};

}  // namespace

// Measuring a text takes long: one that cannot be the widest is not measured.
int CTovReportTable::GetColMaxWidth(unsigned int screenCol) {
    ITovListPort* const port = Port();
    unsigned int const realCol = ScreenColToReal(screenCol);
    if (port == nullptr || realCol == tovNoIndex || m_vecScreenItems->empty()) return 0;
    Operation const operation(*this);
    CTovWaitCursor const wait;
    TextBound const bound(*port);
    int widest = -1;
    CString text;
    unsigned int const generation = m_generation;
    for (unsigned int const real : m_vecScreenItems->Copy()) {
        if (generation != m_generation) break;
        text.clear();
        if (InternalGetItemText(realCol, real, m_vecRealItems[real].get(), text) == 0) text.assign(1, '-');
        if (text.empty() || bound.Of(text) <= widest) continue;
        widest = std::max(widest, port->GetTextWidth(text.c_str()));
    }
    int const space = port->GetTextWidth(" ");
    int width = widest < 0 ? 0 : widest + 2 * space + 2 + (screenCol != 0 ? space + 1 : 0);
    if (m_host.ShowRealItemImage(realCol) != 0) width += port->GetImageWidth() + (screenCol != 0 ? 2 : 0);
    if (screenCol == 0 && m_host.ShowCheckboxes() != 0) width += checkBoxWidth;
    return width;
}

void CTovReportTable::AutoArrangeColumns(std::vector<unsigned int> screenCols, int includeHeader) {
    ITovListPort* const port = Port();
    if (port == nullptr) return;
    Operation const operation(*this);
    if (screenCols.empty()) screenCols = port->Header().GetColumnOrder();
    std::erase_if(screenCols, [this](unsigned int col) { return col >= GetColumns(); });
    ++m_bArrangingColumns;
    std::vector<int> widths;
    for (unsigned int const col : screenCols) {
        int const header = includeHeader != 0 ? port->Header().GetHeaderWidth(col) : 0;
        widths.push_back(std::max(header, GetColMaxWidth(col)));
    }
    --m_bArrangingColumns;
    for (std::size_t i = 0; i < screenCols.size(); ++i)
        if (screenCols[i] < GetColumns()) port->Header().SetColumnWidth(screenCols[i], widths[i]);
    OnColumnWidthChanged();
}

int CTovReportTable::SetRealColWidth(unsigned int real, int width) {
    CTovReportViewCol* const col = GetRealCol(real);
    if (col == nullptr) return 0;
    ITovListPort* const port = Port();
    bool const automatic = width == tovAutoWidth || width == tovAutoWidthWithHeader;
    if (port == nullptr || !IsInHeader(real)) {
        if (width < 0) return 0;
        col->m_nWidth = width;
        return 1;
    }
    unsigned int const screen = PlaceInHeader(real);
    if (automatic) width = std::max(GetColMaxWidth(screen), port->Header().GetHeaderWidth(screen));
    if (width < 0) return 0;
    port->Header().SetColumnWidth(screen, width);
    HoldAllColInfos();
    return 1;
}

}  // namespace tov
