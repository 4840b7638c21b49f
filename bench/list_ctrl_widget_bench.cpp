// The list control against QTableView over a lean model: 1,000,000 rows of 10 columns, in the same size,
// without a display. A scroll by one row paints only what comes into sight in both.
#include <tov310/list_ctrl.h>

#include <benchmark/benchmark.h>

#include <QAbstractTableModel>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QTableView>

#include <memory>
#include <string>

#include "peer.h"

namespace {

constexpr unsigned rows = 1'000'000;
constexpr unsigned columns = 10;
constexpr int columnWidth = 80;

std::string TextOf(unsigned row, unsigned col) {
    return std::to_string(row * columns + col);
}

struct Source : tov::ITovListSource {
    unsigned GetItemCount() override { return rows; }
    int GetDispInfo(tov::TOV_DISPINFO& info) override {
        if ((info.mask & tov::LVIF_TEXT) != 0) info.strText = TextOf(info.iItem, info.iSubItem);
        return 1;
    }
};

struct Model : QAbstractTableModel {
    int rowCount(QModelIndex const&) const override { return rows; }
    int columnCount(QModelIndex const&) const override { return columns; }
    QVariant data(QModelIndex const& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        return QString::fromStdString(
            TextOf(static_cast<unsigned>(index.row()), static_cast<unsigned>(index.column())));
    }
};

template <class Widget>
void Show(Widget& widget) {
    widget.resize(820, 640);
    widget.show();
    QApplication::processEvents();
}

struct List {
    List() {
        for (unsigned col = 0; col < columns; ++col)
            list.Header().InsertColumn(col, tov::LVCFMT_LEFT, columnWidth, TextOf(0, col).c_str());
        list.SetSource(&source, nullptr);
        Show(list);
    }
    Source source;
    tov::CTovListCtrlQuickDraw list;
};

struct Table {
    explicit Table(int rowHeight) {
        table.verticalHeader()->setDefaultSectionSize(rowHeight);
        table.verticalHeader()->hide();
        table.horizontalHeader()->setDefaultSectionSize(columnWidth);
        table.setShowGrid(false);
        table.setModel(&model);
        Show(table);
    }
    Model model;
    QTableView table;
};

void Repaint(benchmark::State& state) {
    List ours;
    Table theirs(ours.list.GetRowHeight());
    bench::AgainstPeer(
        state, 1, [&] { ours.list.viewport()->repaint(); }, [&] { theirs.table.viewport()->repaint(); },
        bench::Want::kWithin);
}

void ScrollByOneRow(benchmark::State& state) {
    List ours;
    Table theirs(ours.list.GetRowHeight());
    auto const scroll = [](QAbstractScrollArea& area) {
        area.verticalScrollBar()->setValue(area.verticalScrollBar()->value() + 1);
        QApplication::processEvents();
    };
    theirs.table.setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    bench::AgainstPeer(
        state, 1, [&] { scroll(ours.list); }, [&] { scroll(theirs.table); }, bench::Want::kWithin);
}

void FirstPaint(benchmark::State& state) {
    int const height = List().list.GetRowHeight();
    bench::AgainstPeer(
        state, 1, [] { List const ours; }, [height] { Table const theirs(height); }, bench::Want::kWithin);
}

BENCHMARK(Repaint)->Iterations(100);
BENCHMARK(ScrollByOneRow)->Iterations(300);
BENCHMARK(FirstPaint)->Iterations(15);

}  // namespace
