// A report without a screen: a control that only remembers, and a log of everything that was told.
#pragma once

#include <tov310/report_view_host.h>
#include <tov310/window.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tov::test {

// Something that was told or asked, with up to three numbers.
struct Told {
    char const* what = "";
    std::array<int, 3> with{};

    friend bool operator==(Told const& a, Told const& b) {
        return std::string_view(a.what) == b.what && a.with == b.with;
    }
    friend std::ostream& operator<<(std::ostream& out, Told const& told) {
        return out << told.what << '(' << told.with[0] << ' ' << told.with[1] << ' ' << told.with[2] << ')';
    }
};

// Writes down what comes, and answers vetoes: the same ones to whoever is told the same in the same step.
struct ToldLog {
    template <class... Numbers>
    int Tell(char const* what, Numbers... numbers) {
        return Note(what, {static_cast<unsigned>(numbers)...});
    }
    int Note(char const* what, std::array<unsigned, 3> with) {
        auto const [a, b, c] = with;
        Told const told{what, {static_cast<int>(a), static_cast<int>(b), static_cast<int>(c)}};
        entries.push_back(told);
        if (meddle) meddle();
        if (vetoOneIn == 0) return 1;
        unsigned hash = step * 2654435761u;
        for (unsigned const part : {static_cast<unsigned>(what[0]), static_cast<unsigned>(what[2]), a, b, c})
            hash = (hash ^ part) * 16777619u;
        return (hash >> 8) % vetoOneIn != 0;
    }

    std::vector<Told> entries;
    unsigned step = 0;
    unsigned vetoOneIn = 0;  // 0: none
    std::function<void()> meddle;
};

// A header and a list of rows 20 pixels high.
struct FakeList final : ITovListPort, ITovHeaderPort {
    struct Column {
        CString label;
        int width = 0;
        int alignment = 0;
    };

    ITovHeaderPort& Header() override { return *this; }
    void InsertColumn(unsigned col, int alignment, int width, char const* label) override {
        for (unsigned& place : order)
            place += place >= col ? 1 : 0;
        order.insert(order.begin() + static_cast<int>(col), col);
        columns.insert(columns.begin() + static_cast<int>(col), {label, width, alignment});
    }
    void DeleteColumn(unsigned col) override {
        std::erase(order, col);
        for (unsigned& place : order)
            place -= place > col ? 1 : 0;
        columns.erase(columns.begin() + static_cast<int>(col));
    }
    void SetColumnLabel(unsigned col, char const* label) override { columns.at(col).label = label; }
    void SetColumnAlignment(unsigned col, int alignment) override { columns.at(col).alignment = alignment; }
    int GetColumnWidth(unsigned col) override { return columns.at(col).width; }
    void SetColumnWidth(unsigned col, int width) override { columns.at(col).width = width; }
    std::vector<unsigned> GetColumnOrder() override { return order; }
    void SetColumnOrder(std::vector<unsigned> const& to) override { order = to; }
    void SetSortColumns(std::vector<SORT_STATE_SCREENCOL> const& keys) override { marks = keys; }
    void Invalidate() override {}

    void RowsChanged() override {
        ++calls;
        top = std::min(top, LastRow());
    }
    void InvalidateRows(unsigned first, unsigned last) override {
        ++calls;
        painted = {first, last};
    }
    void InvalidateStrip(int from, int to) override { strip = {from, to}; }
    CRect GetRowsRect() override { return {0, 0, 100, 100}; }
    int GetRowHeight() override { return 20; }
    unsigned GetTopRow() override { return top; }
    int GetRowLeft() override { return left; }
    int GetHeaderWidth(unsigned col) override { return static_cast<int>(columns.at(col).label.size()) * 9; }
    int GetTextWidth(char const* text) override {
        ++measured;
        int width = 0;
        for (; *text != '\0'; ++text)
            width += GetCharacterWidth(static_cast<unsigned char>(*text));
        return width;
    }
    int GetCharacterWidth(char32_t c) override { return c == '1' ? 3 : c < 0x80 ? 7 : 14; }
    int GetImageWidth() override { return 18; }
    void Scroll(int dx, int dy) override {
        left -= dx;
        top = static_cast<unsigned>(
            std::clamp(static_cast<int>(top) + dy / 20, 0, static_cast<int>(LastRow())));
    }
    int EnsureRowVisible(unsigned row) override { return row <= LastRow(); }
    int EnsureColumnVisible(unsigned) override { return 1; }
    unsigned LastRow() const { return rows() == 0 ? 0 : rows() - 1; }

    std::function<unsigned()> rows = [] { return 0u; };
    std::vector<Column> columns;
    std::vector<unsigned> order;
    std::vector<SORT_STATE_SCREENCOL> marks;
    unsigned top = 0;
    int left = 0;
    int calls = 0;
    int measured = 0;
    std::pair<unsigned, unsigned> painted;
    std::pair<int, int> strip;
};

// A window that writes down the messages about rows.
struct ToldWindow : CTovMessageWindow {
    explicit ToldWindow(ToldLog& itsLog) : log(itsLog) { Create(); }
    LRESULT WindowProc(unsigned message, WPARAM, LPARAM lParam) override {
        log.Tell("message", message, static_cast<unsigned>(lParam));
        return 0;
    }
    ToldLog& log;
};

struct FakeReport : CTovReportViewHost {
    FakeReport() {
        list.rows = [this] { return GetItemCount(); };
    }

    CTovReportTable& Table() const override { return table; }
    ITovListPort* ListPort() override { return &list; }

    void OnSelectItemsBegin(unsigned a, unsigned b) override { log.Tell("SelectItemsBegin", a, b); }
    void OnSelectItemsEnd(unsigned a, unsigned b) override { log.Tell("SelectItemsEnd", a, b); }
    void OnDeleteItemsBegin(unsigned count) override { log.Tell("DeleteItemsBegin", count); }
    int OnDeleteItem(unsigned screen) override { return log.Tell("DeleteItem", screen); }
    void OnDeleteItemsEnd(unsigned count) override { log.Tell("DeleteItemsEnd", count); }
    void OnCheckItemsBegin(unsigned a, unsigned b) override { log.Tell("CheckItemsBegin", a, b); }
    void OnCheckItemsEnd(unsigned a, unsigned b) override { log.Tell("CheckItemsEnd", a, b); }
    void OnScrolledVert() override { log.Tell("ScrolledVert"); }
    void OnScrolledHorz() override { log.Tell("ScrolledHorz"); }
    int OnInsertRealCol(unsigned r, unsigned s) override { return log.Tell("InsertRealCol", r, s); }
    int OnHideRealCol(unsigned r, unsigned s, int on) override { return log.Tell("HideRealCol", r, s, on); }
    int OnDeleteRealCol(unsigned r, unsigned s) override { return log.Tell("DeleteRealCol", r, s); }
    void OnDisplayItemsBegin(unsigned count) override {
        log.Tell("DisplayItemsBegin", count);
        CTovReportViewHost::OnDisplayItemsBegin(count);
    }
    void OnDisplayItemsEnd(unsigned count) override {
        log.Tell("DisplayItemsEnd", count);
        CTovReportViewHost::OnDisplayItemsEnd(count);
    }
    void OnAppendRealItem(unsigned r, unsigned s) override {
        log.Tell("AppendRealItem", r, s);
        CTovReportViewHost::OnAppendRealItem(r, s);
    }
    void OnCleanupRealItems() override {
        log.Tell("CleanupRealItems");
        CTovReportViewHost::OnCleanupRealItems();
    }
    void OnRefreshRealItem(unsigned r) override {
        log.Tell("RefreshRealItem", r);
        CTovReportViewHost::OnRefreshRealItem(r);
    }
    void OnSelectRealItem(unsigned r, unsigned s, int on) override { log.Tell("SelectRealItem", r, s, on); }
    int OnHideRealItem(unsigned r, unsigned s, int on) override {
        int const allowed = log.Tell("HideRealItem", r, s, on);
        CTovReportViewHost::OnHideRealItem(r, s, on);
        return allowed;
    }
    int OnDeleteRealItem(unsigned r, unsigned s) override { return log.Tell("DeleteRealItem", r, s); }
    int OnCheckingRealItem(unsigned r, unsigned s, int on) override {
        return log.Tell("CheckingRealItem", r, s, on);
    }
    void OnCheckRealItem(unsigned r, unsigned s, int on) override { log.Tell("CheckRealItem", r, s, on); }
    void OnDisableItemsBegin(unsigned a, unsigned b) override { log.Tell("DisableItemsBegin", a, b); }
    void OnDisableRealItem(unsigned r, unsigned s, int on) override { log.Tell("DisableRealItem", r, s, on); }
    void OnDisableItemsEnd(unsigned a, unsigned b) override { log.Tell("DisableItemsEnd", a, b); }
    void OnSortOrderChanged() override {
        log.Tell("SortOrderChanged");
        CTovReportViewHost::OnSortOrderChanged();
    }
    void ReadReportViewIntVector(char const*, char const* key, std::vector<int>& values) const override {
        values = stored[key];
    }
    int WriteReportViewIntVector(char const*, char const* key,
                                 std::vector<int> const& values) const override {
        stored[key] = values;
        return 1;
    }

    mutable ToldLog log;
    FakeList list;
    bool tellsKeys = false;
    mutable std::map<std::string, std::vector<int>> stored;
    mutable CTovReportTable table{*this};
};

// A row with a number, a text and a third value, which are its sort keys and its cells.
struct FakeRow : CTovReportViewItem {
    FakeRow(FakeReport* itsReport, int itsId, std::array<int, 3> itsKeys = {}, unsigned states = 0)
        : CTovReportViewItem(itsReport, states & 1, states >> 1 & 1, states >> 2 & 1, states >> 3 & 1),
          report(*itsReport),
          id(itsId),
          keys(itsKeys) {
        ++alive;
    }
    ~FakeRow() override { --alive; }

    unsigned Id() const { return static_cast<unsigned>(id); }
    int OnHideItem(int on) override { return report.log.Tell("row hides", Id(), on); }
    int OnDeleteItem() override { return report.log.Tell("row goes", Id()); }
    void OnCheckItem(int on) override { report.log.Tell("row checks", Id(), on); }
    void OnSelectItem(int on) override { report.log.Tell("row selects", Id(), on); }
    void OnDisableItem(int on) override { report.log.Tell("row disables", Id(), on); }

    using CTovReportViewItem::OnGetItemText;
    static std::string Text(int key) { return "P" + std::to_string(key); }
    int OnGetItemText(unsigned, unsigned col, CString& text) const override {
        ++reads;
        text = Text(keys.at(std::min(col, 2u)));
        return noText ? 0 : 1;
    }
    int OnCompareItem(CTovReportViewItem const* other, unsigned col) const override {
        if (col > 2) return 0;
        int const theirs = static_cast<FakeRow const*>(other)->keys[col];
        if (col == 1) return CompareIS(Text(keys[1]).c_str(), Text(theirs).c_str());
        return Compare(static_cast<double>(keys[col]), static_cast<double>(theirs));
    }
    eTovSortKey OnGetItemSortKey(unsigned col, double& number, CString& text) const override {
        if (!report.tellsKeys || col > 1) return eSortKeyNone;
        number = keys[0];
        text = Text(keys[1]);
        return col == 0 ? eSortKeyNumber : eSortKeyTextIS;
    }

    FakeReport& report;
    int id;
    std::array<int, 3> keys;
    bool noText = false;
    mutable int reads = 0;
    static inline int alive = 0;
};

struct FakeCol : CTovReportViewCol {
    FakeCol(FakeReport* itsReport, unsigned itsId, int hidden, int width)
        : CTovReportViewCol(itsReport, hidden, "", 0, width, nullptr, tovNoIndex, 0),
          log(itsReport->log),
          id(itsId) {}
    int OnHideCol(int on) override { return log.Tell("col hides", id, on); }
    int OnDeleteCol() override { return log.Tell("col goes", id); }
    ToldLog& log;
    unsigned id;
};

}  // namespace tov::test
