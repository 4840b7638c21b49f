#include "window_view.h"

#include "dialog_place.h"
#include "units.h"
#include "window_document.h"
#include "window_ids.h"

#include <tov310/cmd_ui.h>
#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>

#include <algorithm>

namespace survey {
namespace {

constexpr int sortRole = Qt::UserRole;

QString TextOf(auto value) {  // a copy, for a value may note the state of its conversions while it prints
    tov::CString text;
    value.GetString(text);
    return tov::TovQString(text);
}

class PlaceMenu : public tov::CTovMenuPopUp {
 public:
    using CTovMenuPopUp::CTovMenuPopUp;
    void CustomizeMenu() override { tov::TovMenuCustomize(this); }
};

}  // namespace

void PlacesModel::SetDocument(PlacesDocument const* document) {
    beginResetModel();
    m_document = document;
    endResetModel();
}

void PlacesModel::TextsChanged() {
    if (rowCount() > 0) Q_EMIT dataChanged(index(0, kLatitude), index(rowCount() - 1, kHeight));
    TitlesChanged();
}

int PlacesModel::rowCount(QModelIndex const& parent) const {
    return parent.isValid() || m_document == nullptr ? 0 : static_cast<int>(m_document->Places().size());
}

int PlacesModel::columnCount(QModelIndex const& parent) const {
    return parent.isValid() ? 0 : kColumns;
}

QVariant PlacesModel::data(QModelIndex const& index, int role) const {
    Place const& place = m_document->Places()[static_cast<std::size_t>(index.row())];
    bool const isNumber = index.column() >= kLatitude && index.column() <= kHeight;
    if (role == Qt::TextAlignmentRole && isNumber) return int{Qt::AlignRight | Qt::AlignVCenter};
    bool const isCut = index.column() == kCountries || index.column() == kComment;
    if (role == Qt::ToolTipRole && isCut) role = Qt::DisplayRole;
    if (role != Qt::DisplayRole && role != sortRole) return {};
    switch (index.column()) {
        case kName:
            return tov::TovQString(place.name);
        case kLatitude:
            return role == sortRole ? QVariant(place.latitude.GetDouble()) : QVariant(TextOf(place.latitude));
        case kLongitude:
            return role == sortRole ? QVariant(place.longitude.GetDouble())
                                    : QVariant(TextOf(place.longitude));
        case kHeight:
            if (role != sortRole) return tov::TovQString(m_document->HeightText(place));
            return place.height ? QVariant(*place.height) : QVariant();
        case kCountries:
            return tov::TovQString(place.countries);
        default:
            return tov::TovQString(place.comment);
    }
}

QVariant PlacesModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    if (section == kHeight) {
        std::string_view const unit =
            m_document != nullptr ? m_document->CurrentSettings().distanceUnit->name : "";
        return Words(textHeight).arg(tov::TovQString(tov::CString(unit)));
    }
    return Words(textColumns + static_cast<unsigned>(section < kHeight ? section : section - 1));
}

PlacesView::PlacesView(QWidget* parent) : CWndOn(parent) {
    m_sorted.setSourceModel(&m_model);
    m_sorted.setSortRole(sortRole);
    m_sorted.setSortLocaleAware(true);
    setModel(&m_sorted);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAlternatingRowColors(true);
    setSelectionMode(ExtendedSelection);
    setSortingEnabled(true);
    header()->setSortIndicatorClearable(true);
    sortByColumn(-1, Qt::AscendingOrder);  // as the table has them
    connect(this, &QTreeView::activated, this, [this] { OnEdit(); });
}

PlacesDocument* PlacesView::Document() const {
    return static_cast<PlacesDocument*>(GetDocument());
}

std::vector<Place const*> PlacesView::Selected() const {
    std::vector<Place const*> places;
    QModelIndexList rows = selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    for (QModelIndex const& row : rows)
        places.push_back(&Document()->Places()[static_cast<std::size_t>(m_sorted.mapToSource(row).row())]);
    return places;
}

void PlacesView::selectionChanged(QItemSelection const& selected, QItemSelection const& deselected) {
    CWndOn::selectionChanged(selected, deselected);
    onSelected();
}

void PlacesView::SelectPlace(std::size_t number) {
    QModelIndex const row = m_sorted.mapFromSource(m_model.index(static_cast<int>(number), 0));
    setCurrentIndex(row);
    scrollTo(row);
}

void PlacesView::FitColumns() {
    bool const areHigh = std::ranges::any_of(Document()->Places(),
                                             [](Place const& place) { return place.height.has_value(); });
    setColumnHidden(PlacesModel::kHeight, !areHigh);
    for (int column = 0; column < PlacesModel::kComment; ++column)
        resizeColumnToContents(column);
    // One time zone may serve many countries.
    int const most = 20 * fontMetrics().averageCharWidth();
    header()->resizeSection(PlacesModel::kCountries,
                            std::min(header()->sectionSize(PlacesModel::kCountries), most));
}

tov::LRESULT PlacesView::WindowProc(unsigned message, tov::WPARAM wParam, tov::LPARAM lParam) {
    switch (message) {
        case tov::WM_TOV_POST_INITIALUPDATE:
            m_model.SetDocument(Document());
            FitColumns();
            onSelected();
            return 0;
        case tov::WM_TOV_UNIT_CHANGED_ANGLE:
            m_model.TextsChanged();
            FitColumns();
            return 0;
        case tov::WM_TOV_UNIT_CHANGED_DISTANCE:
            m_model.TextsChanged();
            onSelected();
            return 0;
        case tov::WM_CONTEXTMENU: {
            QPoint place = tov::TovQPoint(tov::TovPointOf(lParam));
            if (place == QPoint(-1, -1))
                place = viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft());
            ShowMenu(place);
            return 0;
        }
        default:
            return CWndOn::WindowProc(message, wParam, lParam);
    }
}

// The frame gets the commands, so that it asks for their states and routes them.
void PlacesView::ShowMenu(QPoint place) {
    PlaceMenu(tov::TovGetResourceHandle(), menuPlace, GetParentFrame())
        .Activate(tov::TovPoint(place), tov::TPM_RIGHTBUTTON);
}

tov::CTovCommandTable const* PlacesView::GetCommandTable() const {
    using Self = PlacesView;
    static constexpr tov::CTovCommandHandler handlers[] = {
        tov::TovCommand<Self, &Self::OnCopy, &Self::OnUpdateSelected>(idCopy),
        tov::TovCommand<Self, &Self::OnSelectAll>(idSelectAll), tov::TovCommand<Self, &Self::OnAdd>(idAdd),
        tov::TovCommand<Self, &Self::OnEdit, &Self::OnUpdateSelected>(idEdit),
        tov::TovCommand<Self, &Self::OnProperties, &Self::OnUpdateSelected>(tov::WM_TOV_PROPERTIES)};
    static tov::CTovCommandTable const table{CView::GetCommandTable(), handlers};
    return &table;
}

void PlacesView::OnUpdateSelected(tov::CCmdUI* state) {
    bool const isAny = selectionModel()->hasSelection();
    bool const isOne = isAny && selectionModel()->selectedRows().size() == 1;
    state->Enable(state->m_nID == idCopy ? isAny : isOne);
}

// As text with tabs, for a table in another program.
void PlacesView::OnCopy() {
    QString text;
    for (Place const* const place : Selected()) {
        text += QStringList{tov::TovQString(place->name), TextOf(place->latitude), TextOf(place->longitude),
                            tov::TovQString(place->countries), tov::TovQString(place->comment)}
                    .join('\t') +
                '\n';
    }
    QGuiApplication::clipboard()->setText(text);
}

void PlacesView::OnSelectAll() {
    selectAll();
}

void PlacesView::OnAdd() {
    EditPlace({});
}

void PlacesView::OnEdit() {
    std::vector<Place const*> const places = Selected();
    if (places.size() == 1) EditPlace(static_cast<std::size_t>(places.front() - Document()->Places().data()));
}

void PlacesView::EditPlace(std::optional<std::size_t> number) {
    PlaceDialog dialog(Document()->Places(), number, window());
    if (dialog.exec() != QDialog::Accepted) return;
    Document()->PutPlace(dialog.Result(), number);
    SelectPlace(number.value_or(Document()->Places().size() - 1));
}

// The place in every unit.
void PlacesView::OnProperties() {
    std::vector<Place const*> const places = Selected();
    if (places.empty()) return;
    Place const& place = *places.front();
    QString text = tov::TovQString(place.name).toHtmlEscaped();
    text = "<h3>" + text + "</h3><p>" + tov::TovQString(place.comment).toHtmlEscaped() + "</p><table>";
    for (Unit const& unit : AngleUnits()) {
        tov::CTovUnitSettingsAngleLatLon settings;
        settings.Unit(unit.id);
        settings.Precision(PrecisionFor(unit.id, unit.decimals));
        tov::CTovValueAngleLat latitude(&settings);
        tov::CTovValueAngleLon longitude(&settings);
        latitude.SetDouble(place.latitude.GetDouble());
        longitude.SetDouble(place.longitude.GetDouble());
        text += "<tr><td align=right>" + TextOf(latitude).toHtmlEscaped() +
                "</td><td>&nbsp;</td><td align=right>" + TextOf(longitude).toHtmlEscaped() + "</td></tr>";
    }
    QMessageBox box(QMessageBox::NoIcon, Words(idTitle), text + "</table>", QMessageBox::NoButton, window());
    tov::CString close;
    tov::TovLoadResourceString(tov::TovGetTovResourceHandle(), 26006, close);
    box.addButton(tov::TovQString(close), QMessageBox::AcceptRole);
    box.exec();
}

}  // namespace survey
