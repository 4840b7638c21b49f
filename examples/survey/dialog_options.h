// What the program remembers, behind tabs.
#pragma once

#include "settings.h"

#include <tov310/number_edits.h>
#include <tov310/prop_sheet.h>

#include <QComboBox>
#include <QLabel>

#include <functional>
#include <span>
#include <string>
#include <utility>

namespace survey {

// What the pages have in hand: what is chosen so far, and who is told of it when it is applied.
struct OptionsModel {
    Settings settings;
    std::string language;                           // that of the window
    std::function<void(Choice const&)> choose;      // answers nothing: what cannot be kept is used anyway
    std::function<void(std::string const&)> speak;  // another language
};

// A page that knows whether there is something to apply.
class OptionsPage : public tov::CTovPropPageCV {
 public:
    using CTovPropPageCV::CTovPropPageCV;
    void TellModified() { SetModified(m_isChanged); }

 protected:
    void NoteChange() {
        m_isChanged = true;
        TellModified();
    }
    virtual void Apply() = 0;
    void OnOK() override {
        if (std::exchange(m_isChanged, false)) Apply();
        CTovPropPageCV::OnOK();
    }

 private:
    bool m_isChanged = false;
};

// A unit and how many decimals are shown in it, with an example.
class UnitPage : public OptionsPage {
 public:
    UnitPage(OptionsModel& model, bool isOfAngles);

 protected:
    int OnInitDialog() override;
    void Apply() override;

 private:
    std::span<Unit const> Units() const;
    Unit const& Chosen() const;
    void ShowDecimals();
    void ShowExample();

    OptionsModel& m_model;
    bool const m_isOfAngles;
    QComboBox* m_unit = nullptr;
    QLabel* m_example = nullptr;
    tov::CTovEditInteger m_decimals;
};

class LanguagePage : public OptionsPage {
 public:
    explicit LanguagePage(OptionsModel& model);

 protected:
    int OnInitDialog() override;
    void Apply() override;

 private:
    OptionsModel& m_model;
    QComboBox* m_language = nullptr;
};

class OptionsSheet : public tov::CTovPropSheetCV {
 public:
    enum Page { kAngles, kDistances, kLanguage };

    // With a language that was told by the call of the program there is nothing to choose, so that its page
    // is hidden.
    OptionsSheet(OptionsModel model, bool isLanguageFixed, QWidget* parent = nullptr);

    // Apply waits for a change, however right all is.
    int EnableOkButton() override;

 protected:
    void OnPostInitDialog() override;

 private:
    OptionsModel m_model;
    bool const m_isLanguageFixed;
    UnitPage m_angles{m_model, true};
    UnitPage m_distances{m_model, false};
    LanguagePage m_language{m_model};
};

}  // namespace survey
