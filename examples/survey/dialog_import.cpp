#include "dialog_import.h"

#include "files.h"
#include "window_ids.h"

#include <tov310/distance.h>
#include <tov310/qt_values.h>

#include <algorithm>

namespace survey {
namespace {

enum ImportControl {
    kFileEdit = 1401,
    kWrongLabel,
    kSeparatorBox = 1501,
    kTitlesBox,
    kColumnEdits,
    kAngleUnitBox = 1508,
    kHeightUnitBox,
    kLineLabel,
    kCountLabel,
    kPlacesList = 1601,
    kSummaryLabel,
    kSkippedBox,
    kInPlaceBox,
};

// In the order of the edits.
constexpr int ImportFormat::*columnsOf[] = {&ImportFormat::name, &ImportFormat::latitude,
                                            &ImportFormat::longitude, &ImportFormat::height,
                                            &ImportFormat::comment};
constexpr std::size_t firstOptional = 3;
constexpr std::size_t mostShown = 1000;  // places in the preview

template <class Widget>
Widget* ChildOf(tov::CWnd const& host, int id) {
    return qobject_cast<Widget*>(tov::TovWidget(host.GetDlgItem(id)));
}

tov::CTovSheetExtensions& SheetOf(tov::CTovPropPage const& page) {
    return *tov::CTovSheetExtensions::OfSheet(page.GetParentSheet());
}

QString TextOf(tov::CTovValue& value) {
    tov::CString text;
    value.GetString(text);
    return tov::TovQString(text);
}

}  // namespace

ImportFilePage::ImportFilePage(ImportModel& model)
    : CTovPropPageCV(tov::TovGetResourceHandle(), dialogFile), m_model(model) {}

int ImportFilePage::OnInitDialog() {
    CTovPropPageCV::OnInitDialog();
    m_wrong = ChildOf<QLabel>(*this, kWrongLabel);
    m_file.SubclassDlgItem(kFileEdit, this);
    m_file.Rules().Texts({}, {}, Words(textImportKinds).toStdString(), {});
    m_file.SetString(m_model.file);
    connect(&m_file, &tov::CTovEdit::textChanged, m_wrong, &QLabel::clear);
    return 1;
}

int ImportFilePage::OnSetActive() {
    SheetOf(*this).SetWizardButtons(tov::PSWIZB_NEXT);
    return CTovPropPageCV::OnSetActive();
}

int ImportFilePage::OnWizardNext() {
    std::string bytes;
    m_model.file = m_file.GetStringTrimmed();
    std::string wrong = ReadFile(m_model.file, bytes);
    if (wrong.empty() && FirstLines(bytes, 1).empty()) wrong = Words(textNoLine).toStdString();
    m_wrong->setText(tov::TovQString(wrong));
    if (!wrong.empty()) return -1;
    if (bytes != m_model.text) {
        m_model.text = std::move(bytes);
        m_model.format = GuessFormat(m_model.text);
    }
    return CTovPropPageCV::OnWizardNext();
}

ImportColumnsPage::ImportColumnsPage(ImportModel& model)
    : CTovPropPageCV(tov::TovGetResourceHandle(), dialogColumns), m_model(model) {}

int ImportColumnsPage::OnInitDialog() {
    CTovPropPageCV::OnInitDialog();
    m_separator = ChildOf<QComboBox>(*this, kSeparatorBox);
    m_hasTitles = ChildOf<QCheckBox>(*this, kTitlesBox);
    m_angleUnit = ChildOf<QComboBox>(*this, kAngleUnitBox);
    m_heightUnit = ChildOf<QComboBox>(*this, kHeightUnitBox);
    m_line = ChildOf<QLabel>(*this, kLineLabel);
    m_count = ChildOf<QLabel>(*this, kCountLabel);
    m_line->setWordWrap(true);
    for (unsigned i = 0; i < std::size(m_columns); ++i) {
        m_columns[i].SubclassDlgItem(kColumnEdits + i, this);
        m_columns[i].CreateSpinButton();
        m_columns[i].SetWrapRange(0);
        m_columns[i].SetEmptyAllowed(i >= firstOptional);
        m_columns[i].SetRange(1, mostColumns);
    }
    for (unsigned i = 0; i < importSeparators.size(); ++i)
        m_separator->addItem(Words(textSeparators + i));
    for (unsigned i = 0; i < AngleUnits().size(); ++i)
        m_angleUnit->addItem(Words(textAngleUnits + i));
    for (unsigned i = 0; i < DistanceUnits().size(); ++i)
        m_heightUnit->addItem(Words(textDistanceUnits + i));
    connect(m_separator, &QComboBox::currentIndexChanged, this, [this](int index) {
        m_model.format.separator = importSeparators[static_cast<std::size_t>(index)];
        ShowLine();
    });
    return 1;
}

int ImportColumnsPage::OnSetActive() {
    if (m_shownText != m_model.text) {
        m_shownText = m_model.text;
        ShowFormat();
    }
    SheetOf(*this).SetWizardButtons(tov::PSWIZB_BACK | tov::PSWIZB_NEXT);
    return CTovPropPageCV::OnSetActive();
}

void ImportColumnsPage::ShowFormat() {
    ImportFormat const format = m_model.format;
    m_separator->setCurrentIndex(
        static_cast<int>(std::ranges::find(importSeparators, format.separator) - importSeparators.begin()));
    m_hasTitles->setChecked(format.hasTitles);
    m_angleUnit->setCurrentIndex(static_cast<int>(format.angleUnit - AngleUnits().data()));
    m_heightUnit->setCurrentIndex(static_cast<int>(format.heightUnit - DistanceUnits().data()));
    ShowLine();
    for (std::size_t i = 0; i < std::size(m_columns); ++i) {
        if (int const column = format.*columnsOf[i]; column > 0)
            m_columns[i].SetInt(column);
        else
            m_columns[i].Empty();
    }
}

void ImportColumnsPage::ShowLine() {
    std::vector<std::string> const lines = FirstLines(m_model.text, 1);
    if (lines.empty()) return;
    std::vector<std::string> const cells = SplitLine(lines.front(), m_model.format.separator);
    QStringList shown;
    for (std::string const& cell : cells)
        shown << tov::TovQString(cell);
    m_line->setText(Words(textFirstLine).arg(shown.join(" | ")));
    m_count->setText(Words(textColumnCount).arg(cells.size()));
}

int ImportColumnsPage::OnWizardNext() {
    ImportFormat format = m_model.format;
    for (std::size_t i = 0; i < std::size(m_columns); ++i)
        format.*columnsOf[i] = m_columns[i].IsEmpty() != 0 ? 0 : m_columns[i].GetInt();
    format.hasTitles = m_hasTitles->isChecked();
    format.angleUnit = &AngleUnits()[static_cast<std::size_t>(m_angleUnit->currentIndex())];
    format.heightUnit = &DistanceUnits()[static_cast<std::size_t>(m_heightUnit->currentIndex())];
    if (!IsWhole(format)) {
        // The later one of two edits that name the same column.
        for (std::size_t i = std::size(m_columns); i-- > 1;) {
            bool const isTwice = std::any_of(columnsOf, columnsOf + i, [&](auto column) {
                return format.*column != 0 && format.*column == format.*columnsOf[i];
            });
            if (!isTwice) continue;
            m_columns[i].setFocus();
            ShowTipUnder(m_columns[i], Words(textColumnTwice).toUtf8().constData());
            break;
        }
        return -1;
    }
    m_model.format = format;
    return CTovPropPageCV::OnWizardNext();
}

ImportPreviewPage::ImportPreviewPage(ImportModel& model)
    : CTovPropPageCV(tov::TovGetResourceHandle(), dialogPreview), m_model(model) {}

int ImportPreviewPage::OnInitDialog() {
    CTovPropPageCV::OnInitDialog();
    m_places = ChildOf<QTreeWidget>(*this, kPlacesList);
    m_summary = ChildOf<QLabel>(*this, kSummaryLabel);
    m_skipped = ChildOf<QComboBox>(*this, kSkippedBox);
    m_inPlaceOfAll = ChildOf<QCheckBox>(*this, kInPlaceBox);
    m_places->setHeaderLabels({Words(textColumns), Words(textColumns + 1), Words(textColumns + 2),
                               Words(textHeight).arg("m"), Words(textColumns + 4)});
    connect(m_inPlaceOfAll, &QCheckBox::toggled, this, [this](bool inPlaceOfAll) {
        m_model.inPlaceOfAll = inPlaceOfAll;
        Show();
    });
    return 1;
}

int ImportPreviewPage::OnSetActive() {
    Show();
    SheetOf(*this).SetWizardButtons(tov::PSWIZB_BACK | tov::PSWIZB_FINISH);
    return CTovPropPageCV::OnSetActive();
}

void ImportPreviewPage::Show() {
    m_model.Read();
    Import& import = m_model.import;
    m_places->clear();
    for (std::size_t i = 0; i < std::min(import.places.size(), mostShown); ++i) {
        Place& place = import.places[i];
        QString height;
        if (place.height) height = QString::number(*place.height, 'f', 1);
        auto* const item =
            std::make_unique<QTreeWidgetItem>(
                m_places, QStringList{tov::TovQString(place.name), TextOf(place.latitude),
                                      TextOf(place.longitude), height, tov::TovQString(place.comment)})
                .release();
        for (int const column : {1, 2, 3})
            item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
    for (int column = 0; column < m_places->columnCount(); ++column)
        m_places->resizeColumnToContents(column);
    m_summary->setText(Words(textWillBeRead).arg(import.places.size()).arg(import.skipped.size()));
    m_skipped->clear();
    for (Import::Skipped const& skipped : import.skipped)
        m_skipped->addItem(Words(textSkippedLine)
                               .arg(skipped.line)
                               .arg(Words(textImportFaults + static_cast<unsigned>(skipped.fault))));
    m_skipped->setEnabled(!import.skipped.empty());
    if (import.skipped.empty()) m_skipped->addItem(Words(textNothingSkipped));
    EnableOkButton();
}

ImportWizard::ImportWizard(std::vector<Place> const& present, std::string file, QWidget* parent)
    : CTovPropSheetCV(parent), m_model{present, std::move(file), {}, {}, {}} {
    Construct(Words(textImport).toUtf8().constData(), parent);
    SetWizardMode();
    for (tov::CTovPropPage* const page :
         {static_cast<tov::CTovPropPage*>(&m_file), static_cast<tov::CTovPropPage*>(&m_columns),
          static_cast<tov::CTovPropPage*>(&m_preview)})
        AddPage(page);
}

int ImportWizard::OnEnableOkButton(int quiet) {
    return CTovPropSheetCV::OnEnableOkButton(quiet) != 0 && !m_model.import.places.empty() ? 1 : 0;
}

}  // namespace survey
