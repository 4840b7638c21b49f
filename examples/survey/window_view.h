// The places in a list on the screen.
#pragma once

#include "places.h"

#include <tov310/view.h>
#include <tov310/wnd_on.h>

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>
#include <QTreeView>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace survey {

class PlacesDocument;

// The document's places as rows. It asks the values for their texts each time, so that they follow the units.
class PlacesModel : public QAbstractTableModel {
 public:
    enum Column { kName, kLatitude, kLongitude, kHeight, kCountries, kComment, kColumns };

    using QAbstractTableModel::QAbstractTableModel;

    void SetDocument(PlacesDocument const* document);  // or that its places are others
    void TextsChanged();

    // Titles follow unit and language.
    void TitlesChanged() { Q_EMIT headerDataChanged(Qt::Horizontal, 0, kColumns - 1); }

    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
    PlacesDocument const* m_document = nullptr;
};

using tov::CView;

class PlacesView : public tov::CWndOn<QTreeView, CView> {
    TOV_DYNCREATE(PlacesView, CView)
 public:
    explicit PlacesView(QWidget* parent = nullptr);

    // Those that are selected, in the order in which they are shown.
    std::vector<Place const*> Selected() const;

    tov::LRESULT WindowProc(unsigned message, tov::WPARAM wParam, tov::LPARAM lParam) override;

    // Selects that place alone, and brings it into sight.
    void SelectPlace(std::size_t number);

    void LanguageChanged() { m_model.TitlesChanged(); }

    // Told when other places are selected, or how far apart they are is told in another unit.
    std::function<void()> onSelected = [] {};

 protected:
    tov::CTovCommandTable const* GetCommandTable() const override;
    void selectionChanged(QItemSelection const& selected, QItemSelection const& deselected) override;

 private:
    PlacesDocument* Document() const;
    void ShowMenu(QPoint place);
    void FitColumns();
    void EditPlace(std::optional<std::size_t> number);
    void OnAdd();
    void OnEdit();
    void OnCopy();
    void OnUpdateSelected(tov::CCmdUI* state);
    void OnSelectAll();
    void OnProperties();

    PlacesModel m_model;
    QSortFilterProxyModel m_sorted;
};

}  // namespace survey
