#include "dialog_options.h"

#include "window_ids.h"

#include <tov310/angle.h>
#include <tov310/distance.h>
#include <tov310/qt_values.h>

#include <iterator>

namespace survey {
namespace {

enum OptionControl { kUnitBox = 1101, kDecimalsEdit, kExampleLabel };

struct Language {
    char const* name;
    char const* title;  // in itself, so that whoever needs it can read it
};

constexpr Language languages[] = {{"zh_CN", "中文"}, {"en", "English"}};

constexpr double exampleAngle = 0.841471;    // radians
constexpr double exampleDistance = 8848.86;  // metres

template <class Widget>
Widget* Item(tov::CWnd const& host, int id) {
    return qobject_cast<Widget*>(tov::TovWidget(host.GetDlgItem(id)));
}

}  // namespace

UnitPage::UnitPage(OptionsModel& model, bool isOfAngles)
    : OptionsPage(tov::TovGetResourceHandle(), isOfAngles ? dialogAngles : dialogDistances),
      m_model(model),
      m_isOfAngles(isOfAngles) {}

std::span<Unit const> UnitPage::Units() const {
    return m_isOfAngles ? AngleUnits() : DistanceUnits();
}

Unit const& UnitPage::Chosen() const {
    return Units()[static_cast<std::size_t>(m_unit->currentIndex())];
}

int UnitPage::OnInitDialog() {
    OptionsPage::OnInitDialog();
    m_unit = Item<QComboBox>(*this, kUnitBox);
    m_example = Item<QLabel>(*this, kExampleLabel);
    m_decimals.SubclassDlgItem(kDecimalsEdit, this);
    m_decimals.SetRange(1, mostDecimals);
    m_decimals.CreateSpinButton();

    Unit const* const now = m_isOfAngles ? m_model.settings.unit : m_model.settings.distanceUnit;
    unsigned const words = m_isOfAngles ? textAngleUnits : textDistanceUnits;
    for (unsigned i = 0; i < Units().size(); ++i)
        m_unit->addItem(Words(words + i));
    m_unit->setCurrentIndex(static_cast<int>(now - Units().data()));
    m_decimals.SetInt(m_isOfAngles ? m_model.settings.decimals : m_model.settings.distanceDecimals);
    ShowExample();

    connect(m_unit, &QComboBox::currentIndexChanged, this, [this] {
        ShowDecimals();
        NoteChange();
    });
    connect(&m_decimals, &tov::CTovEdit::valueChanged, this, [this] {
        ShowExample();
        NoteChange();
    });
    return 1;
}

// What suits one unit seldom suits another.
void UnitPage::ShowDecimals() {
    m_decimals.SetInt(Chosen().decimals);
    ShowExample();
}

void UnitPage::ShowExample() {
    if (m_decimals.Validate(nullptr) != tov::CTovInputControl::eStateValid) return;
    tov::CString text;
    if (m_isOfAngles) {
        tov::CTovUnitSettingsAngleLatLon settings;
        settings.Unit(Chosen().id);
        settings.Precision(PrecisionFor(Chosen().id, m_decimals.GetInt()));
        tov::CTovValueAngleLat value(&settings);
        value.SetDouble(exampleAngle);
        value.GetString(text);
    } else {
        tov::CTovUnitSettingsDistance settings(Chosen().id, nullptr);
        settings.Precision(m_decimals.GetInt());
        tov::CTovValueDistance value(&settings);
        value.SetDouble(exampleDistance);
        value.StdFormat(text);
    }
    m_example->setText(tov::TovQString(text).trimmed());
}

void UnitPage::Apply() {
    Choice choice;
    (m_isOfAngles ? choice.unit : choice.distanceUnit) = &Chosen();
    (m_isOfAngles ? choice.decimals : choice.distanceDecimals) = m_decimals.GetInt();
    m_model.choose(choice);
}

LanguagePage::LanguagePage(OptionsModel& model)
    : OptionsPage(tov::TovGetResourceHandle(), dialogLanguage), m_model(model) {}

int LanguagePage::OnInitDialog() {
    OptionsPage::OnInitDialog();
    m_language = Item<QComboBox>(*this, kUnitBox);
    for (Language const& language : languages) {
        m_language->addItem(QString::fromUtf8(language.title));
        if (m_model.language == language.name) m_language->setCurrentIndex(m_language->count() - 1);
    }
    connect(m_language, &QComboBox::currentIndexChanged, this, [this] { NoteChange(); });
    return 1;
}

void LanguagePage::Apply() {
    m_model.speak(languages[m_language->currentIndex()].name);
}

OptionsSheet::OptionsSheet(OptionsModel model, bool isLanguageFixed, QWidget* parent)
    : CTovPropSheetCV(parent), m_model(std::move(model)), m_isLanguageFixed(isLanguageFixed) {
    Construct(Words(textOptionsTitle).toUtf8().constData(), parent);
    for (tov::CTovPropPage* const page :
         {static_cast<tov::CTovPropPage*>(&m_angles), static_cast<tov::CTovPropPage*>(&m_distances),
          static_cast<tov::CTovPropPage*>(&m_language)})
        AddPage(page);
}

int OptionsSheet::EnableOkButton() {
    int const ok = CTovPropSheetCV::EnableOkButton();
    m_angles.TellModified();
    return ok;
}

void OptionsSheet::OnPostInitDialog() {
    CTovPropSheetCV::OnPostInitDialog();
    if (m_isLanguageFixed) HidePage(kLanguage, 1);
}

}  // namespace survey
