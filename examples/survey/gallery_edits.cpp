// The pages of the edits.
#include "gallery_page.h"

#include "window_ids.h"

#include <tov310/switched_edit.h>
#include <tov310/value_edits.h>

#include <span>
#include <type_traits>

namespace survey {
namespace {

using tov::CTovEdit;

// Texts with ids one behind the other.
QStringList WordsFrom(unsigned first, unsigned count) {
    QStringList words;
    for (unsigned id = first; id < first + count; ++id)
        words << Words(id);
    return words;
}

// The last lines of the texts of commands.
QStringList NamesFrom(unsigned first, unsigned count) {
    QStringList names = WordsFrom(first, count);
    for (QString& name : names)
        name = name.section('\n', -1);
    return names;
}

// 0x00BBGGRR; light grounds get dark texts, so that both can be read in every palette.
struct Colors {
    tov::COLORREF text;
    tov::COLORREF back;
};
constexpr Colors colorsOf[] = {{tov::tovPlatformColor, tov::tovPlatformColor},
                               {0x00303030, 0x00C8F0FF},
                               {0x00FFFFFF, 0x00603010},
                               {0x002020C0, 0x00E0E0FF}};

// What all edits have.
void AddEditOptions(GalleryPage& page, CTovEdit& edit) {
    page.AddSwitch(optionReadOnly, false, [&edit](bool on) { edit.SetReadOnlyMode(on); });
    page.AddSwitch(optionKeepsFocus, false, [&edit](bool on) {
        edit.ReadOnlyKeepsFocus(on);
        if (edit.GetReadOnlyMode() == 0) return;
        edit.SetReadOnlyMode(0);
        edit.SetReadOnlyMode(1);
    });
    page.AddSwitch(optionEmptyAllowed, false, [&edit](bool on) { edit.SetEmptyAllowed(on); });
    page.AddSwitch(optionSpin, false,
                   [&edit](bool on) { on ? void(edit.CreateSpinButton()) : edit.DeleteSpinButton(); });
    page.AddSwitch(optionButton, edit.GetEditButton() != nullptr,
                   [&edit](bool on) { on ? void(edit.CreateEditButton("...")) : edit.DeleteEditButton(); });
    page.AddChoice(optionColors, WordsFrom(textColors, std::size(colorsOf)), 0, [&edit](int index) {
        Colors const& colors = colorsOf[index];
        edit.SetColorText(colors.text);
        edit.SetColorTextReadOnly(colors.text);
        edit.SetColorTextDisabled(colors.text);
        edit.SetColorBk(colors.back);
        edit.SetColorBkReadOnly(colors.back);
        edit.SetColorBkDisabled(colors.back);
    });
}

// Lengths and characters.
void AddTextOptions(GalleryPage& page, CTovEdit& edit) {
    page.AddSwitch(optionTrim, true, [&edit](bool on) {
        edit.SetTrimLeft(on);
        edit.SetTrimRight(on);
    });
    page.AddChoice(optionConversion, WordsFrom(textConversions, 3), 0,
                   [&edit](int index) { edit.SetConversion(index); });
    page.AddChoice(optionAllowed, WordsFrom(textAllowed, 5), 0, [&edit](int index) {
        tov::CString characters = "0123456789ABCDEF";
        edit.SetAllowedChars(static_cast<tov::eTovAllowedChars>(index), &characters);
    });
    page.AddNumber(optionMinChars, 0, 50, 0,
                   [&edit](int count) { edit.SetMinChars(static_cast<unsigned>(count)); });
    page.AddNumber(optionMaxChars, 1, 200, 200,
                   [&edit](int count) { edit.SetMaxChars(static_cast<unsigned>(count)); });
}

// Each shows its value in a unit of its own.
template <class Edit>
std::unique_ptr<Edit> MakeEdit(GalleryPage& page) {
    auto edit = std::make_unique<Edit>(&page);
    if constexpr (std::is_base_of_v<tov::CTovEditValueAngle, Edit>)
        edit->TovValue()->UnitSettings(
            std::make_unique<tov::CTovUnitSettingsAngle>(tov::TOV_UNIT_DMS, nullptr).release(), 1);
    else if constexpr (std::is_base_of_v<tov::CTovEditValue, Edit>)
        edit->TovValue()->UnitSettings(
            std::make_unique<tov::CTovUnitSettingsDistance>(tov::TOV_UNIT_METRES, nullptr).release(), 1);
    return edit;
}

constexpr int idUnitLabel = 900;  // by which a switched edit knows its label

constexpr char const* displayFormats[] = {"", "%.1f", "≈ %.2f", "[%.0f]"};

// Has the page show what the signals tell of, once all is settled: a step of the spin counts as the user's
// after it has been told.
template <class Edit, class... Signals>
void Follow(GalleryPage& page, Edit& edit, Signals... signals) {
    (QObject::connect(&edit, signals, &page, &GalleryPage::ShowState, Qt::QueuedConnection), ...);
    QObject::connect(&edit, &Edit::valueChanged, &page, &GalleryPage::ShowValue, Qt::QueuedConnection);
}

// Makes the control of the page, and five more in the states that there are. A preparation is told what is
// wanted: a content that is right, or one that is wrong.
template <class Edit, class Prepare>
Edit& AddEdit(GalleryPage& page, Prepare const& prepare) {
    constexpr bool hasUnit = std::is_base_of_v<tov::CTovEditValue, Edit>;
    Edit& edit = *MakeEdit<Edit>(page).release();
    QLabel* const unit = hasUnit ? std::make_unique<QLabel>(&page).release() : nullptr;
    page.SetControl(&edit, edit, unit);
    if constexpr (hasUnit) edit.UnitAbbreviation(tov::TovHandle(unit));
    Follow(page, edit, &CTovEdit::textChanged, &CTovEdit::editingDone);
    tov::TovHandle(&edit);
    prepare(edit, true);
    for (unsigned state = 0; state < sampleStates; ++state) {
        Edit& sample = *MakeEdit<Edit>(page).release();
        tov::TovHandle(&sample);
        if (state != sampleEmpty) prepare(sample, state != sampleWrong);
        if (state == sampleReadOnly) sample.SetReadOnlyMode(1);
        if (state == sampleDisabled) sample.setEnabled(false);
        if (state == sampleSpin) {
            sample.CreateSpinButton();
            sample.CreateEditButton("...");
        }
        tov::CString wrong;
        if (state == sampleWrong) sample.OnValidate(&wrong);
        page.AddSample(textSamples + state, &sample, wrong);
    }
    AddEditOptions(page, edit);
    return edit;
}

void FillString(GalleryPage& page) {
    using Edit = tov::CTovEditString;
    Edit& edit = AddEdit<Edit>(page, [](Edit& made, bool isRight) {
        made.SetMaxChars(20);
        made.SetString(isRight ? "Tov310 测量" : "Tov310 测量 Tov310 测量 Tov310 测量");
    });
    AddTextOptions(page, edit);
    Edit& secret = *std::make_unique<Edit>(&page).release();
    secret.setEchoMode(QLineEdit::Password);
    secret.SetString("Tov310");
    page.AddSample(textPassword, &secret);
}

void FillFilename(GalleryPage& page) {
    using Edit = tov::CTovEditFilename;
    Edit& edit = AddEdit<Edit>(page, [](Edit& made, bool isRight) {
        made.Rules().Existence(Edit::eExistenceMust);
        if (isRight) made.Rules().Type(Edit::eTypeDirectory);
        made.SetString(isRight ? "/" : "/none.txt");
    });
    page.AddSwitch(optionSeveral, false, [&edit](bool on) { edit.Rules().SingleName(!on); });
    page.AddSwitch(optionNoPath, false, [&edit](bool on) { edit.Rules().NameWithoutPath(on); });
    page.AddSwitch(optionNoRemovable, false, [&edit](bool on) { edit.Rules().NoRemovableDrive(on); });
    page.AddChoice(optionFileType, WordsFrom(textFileTypes, 5), Edit::eTypeDirectory,
                   [&edit](int index) { edit.Rules().Type(static_cast<Edit::eType>(index)); });
    page.AddChoice(optionExistence, WordsFrom(textExistences, 3), Edit::eExistenceMust,
                   [&edit](int index) { edit.Rules().Existence(static_cast<Edit::eExistence>(index)); });
}

void FillInteger(GalleryPage& page) {
    using Edit = tov::CTovEditInteger;
    Edit& edit = AddEdit<Edit>(page, [](Edit& made, bool isRight) {
        made.SetRange(1, 60);
        made.SetLong(isRight ? 33 : 61);
    });
    page.AddSwitch(optionWrap, true, [&edit](bool on) { edit.SetWrapRange(on); });
    page.AddNumber(optionStep, 1, 1000, 1, [&edit](int step) { edit.SetSpinDelta(step); });
    page.AddNumber(optionMaximum, 1, 30000, 60, [&edit](int most) { edit.SetRange(1, most); });
    QStringList const types{"short", "unsigned short", "long", "unsigned long", "int", "unsigned int"};
    page.AddChoice(optionNumberType, types, Edit::eLong, [&edit](int type) {
        edit.SetType(type);
        edit.SetRange(1, 60);
    });
}

void AddFloatingOptions(GalleryPage& page, tov::CTovEditFloating& edit, int decimals) {
    page.AddSwitch(optionWrap, true, [&edit](bool on) { edit.SetWrapRange(on); });
    page.AddSwitch(optionTrimZeros, true, [&edit](bool on) {
        edit.SetTrimTrailingZeros(on);
        edit.ShowValue();
    });
    page.AddNumber(optionDecimals, 0, 9, decimals, [&edit](int count) {
        edit.SetInputFormat(static_cast<unsigned>(count));
        edit.ShowValue();
    });
}

void AddDisplayFormats(GalleryPage& page, tov::CTovEditFloating& edit) {
    QStringList names{Words(textNoFormat)};
    for (char const* const format : std::span(displayFormats).subspan(1))
        names << QString::fromUtf8(format);
    page.AddChoice(optionDisplayFormat, names, 0,
                   [&edit](int index) { edit.SetDisplayFormat(tov::CString(displayFormats[index])); });
}

void FillFloating(GalleryPage& page) {
    using Edit = tov::CTovEditFloating;
    Edit& edit = AddEdit<Edit>(page, [](Edit& made, bool isRight) {
        made.SetRange(-100, 100);
        made.SetDouble(isRight ? 12.3456 : 123.456);
    });
    AddFloatingOptions(page, edit, 4);
    AddDisplayFormats(page, edit);
}

void AddUnits(GalleryPage& page, unsigned firstName, int const* units, long current) {
    unsigned count = 0;
    int index = 0;
    for (; units[count] != -1; ++count) {
        if (units[count] == current) index = static_cast<int>(count);
    }
    page.AddChoice(optionUnit, NamesFrom(firstName, count), index, [&page, units](int chosen) {
        for (CTovEdit* const edit : page.findChildren<CTovEdit*>()) {
            auto* const value = dynamic_cast<tov::CTovEditValue*>(edit);
            if (value == nullptr) continue;
            value->SetUnit(static_cast<unsigned>(units[chosen]));
            value->DisplayUnitAbbreviation();
        }
    });
}

void FillDistance(GalleryPage& page) {
    using Edit = tov::CTovEditValueDistance;
    Edit& edit = AddEdit<Edit>(page, [](Edit& made, bool isRight) {
        made.SetRange(0, 9000);
        made.SetInputFormat(3U);
        made.SetValue(isRight ? 8848.86 : 10000.0);
    });
    AddFloatingOptions(page, edit, 3);
    AddDisplayFormats(page, edit);
    AddUnits(page, idDistanceUnit, tov::CTovUnitSettingsDistance::Units(), tov::TOV_UNIT_METRES);
}

template <class Edit>
void FillAngle(GalleryPage& page) {
    constexpr double right = 0.61086523819801535;  // 35 degrees
    constexpr double wrong = 1.5271630954950384;   // 87.5 degrees
    constexpr double most = 1.3962634015954636;    // 80 degrees
    Edit& edit = AddEdit<Edit>(page, [](Edit& made, bool isRight) {
        made.SetRange(-most, most);
        made.SetValue(isRight ? -right : wrong);
    });
    page.AddSwitch(optionSecOnly, false, [&edit](bool on) { edit.SetSecOnly(on); });
    page.AddSwitch(optionCircle, false, [&edit](bool on) { edit.SetLimitToCircle(on); });
    AddFloatingOptions(page, edit, 5);
    page.AddChoice(optionSignType, WordsFrom(textSignTypes, 3), edit.GetSignType(),
                   [&edit](int type) { edit.SetSignType(static_cast<tov::eSignType>(type)); });
    AddUnits(page, idAngleUnit, tov::CTovUnitSettingsAngle::Units(), tov::TOV_UNIT_DMS);
}

void FillSwitched(GalleryPage& page) {
    using Edit = tov::CTovEditSwitched;
    Edit& edit = *std::make_unique<Edit>(&page).release();
    QLabel* const unit = std::make_unique<QLabel>(&page).release();
    page.SetControl(&edit, edit, unit);
    unit->setProperty(tov::tovIdProperty, idUnitLabel);
    edit.UnitAbbreviation(idUnitLabel);
    tov::TovHandle(&edit);
    Follow(page, edit, &Edit::validityChanged, &Edit::emptyChanged, &Edit::editingDone);
    page.AddSwitch(optionReadOnly, false, [&edit](bool on) { edit.SetReadOnlyMode(on); });
    page.AddSwitch(optionEmptyAllowed, false, [&edit](bool on) { edit.SetEmptyAllowed(on); });
    constexpr unsigned kinds = tov::eTovSwitchedLongitude;
    page.AddChoice(optionKind, WordsFrom(textSwitched, kinds), tov::eTovSwitchedLatitude - 1,
                   [&edit](int index) { edit.Switch(static_cast<tov::eTovSwitchedType>(index + 1)); });
    for (unsigned kind = 0; kind < kinds; ++kind) {
        auto const type = static_cast<tov::eTovSwitchedType>(kind + 1);
        Edit& sample = *std::make_unique<Edit>(type, &page).release();
        tov::TovHandle(&sample);
        sample.SetString("/Tov310");
        sample.SetInt(33);
        sample.SetDouble(12.5);
        if (auto* const value = dynamic_cast<tov::CTovEditValue*>(&sample.GetEdit())) value->SetValue(0.75);
        page.AddSample(textSwitched + kind, &sample);
    }
}

}  // namespace

std::span<GalleryEntry const> GalleryEntries() {
    static constexpr GalleryEntry entries[] = {
        {"text", pageText, FillString},
        {"filename", pageFilename, FillFilename},
        {"integer", pageInteger, FillInteger},
        {"floating", pageFloating, FillFloating},
        {"distance", pageDistance, FillDistance},
        {"angle", pageAngle, FillAngle<tov::CTovEditValueAngle>},
        {"latitude", pageLatitude, FillAngle<tov::CTovEditLatitude>},
        {"longitude", pageLongitude, FillAngle<tov::CTovEditLongitude>},
        {"switched", pageSwitched, FillSwitched},
    };
    return entries;
}

}  // namespace survey
