// The wizard that reads places from the text files of other programs.
#pragma once

#include "import.h"

#include <tov310/number_edits.h>
#include <tov310/prop_sheet.h>
#include <tov310/string_edits.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QTreeWidget>

#include <string>
#include <vector>

namespace survey {

// What the pages have in hand.
struct ImportModel {
    std::vector<Place> const& present;
    std::string file;
    std::string text;  // of the file
    ImportFormat format;
    Import import;
    bool inPlaceOfAll = false;

    // Reads the places by the format.
    void Read() { import = ReadImport(text, format, inPlaceOfAll ? std::vector<Place>() : present); }
};

class ImportFilePage : public tov::CTovPropPageCV {
 public:
    explicit ImportFilePage(ImportModel& model);
    int OnSetActive() override;
    int OnWizardNext() override;

 protected:
    int OnInitDialog() override;

 private:
    ImportModel& m_model;
    QLabel* m_wrong = nullptr;
    tov::CTovEditFilename m_file{tov::CTovEditFilename::eTypeFile, tov::CTovEditFilename::eExistenceMust};
};

// Begins with what the file looks like.
class ImportColumnsPage : public tov::CTovPropPageCV {
 public:
    explicit ImportColumnsPage(ImportModel& model);
    int OnSetActive() override;
    int OnWizardNext() override;

 protected:
    int OnInitDialog() override;

 private:
    void ShowFormat();
    void ShowLine();

    ImportModel& m_model;
    std::string m_shownText;  // whose format the controls show
    QComboBox* m_separator = nullptr;
    QCheckBox* m_hasTitles = nullptr;
    QComboBox* m_angleUnit = nullptr;
    QComboBox* m_heightUnit = nullptr;
    QLabel* m_line = nullptr;
    QLabel* m_count = nullptr;
    tov::CTovEditInteger m_columns[5];  // name, latitude, longitude, height, remark
};

// What will be read.
class ImportPreviewPage : public tov::CTovPropPageCV {
 public:
    explicit ImportPreviewPage(ImportModel& model);
    int OnSetActive() override;

 protected:
    int OnInitDialog() override;

 private:
    void Show();

    ImportModel& m_model;
    QTreeWidget* m_places = nullptr;
    QLabel* m_summary = nullptr;
    QComboBox* m_skipped = nullptr;
    QCheckBox* m_inPlaceOfAll = nullptr;
};

class ImportWizard : public tov::CTovPropSheetCV {
 public:
    enum Page { kFile, kColumns, kPreview };

    // The places of the table, whose names are taken, must outlive it; a file may be chosen already.
    explicit ImportWizard(std::vector<Place> const& present, std::string file = {},
                          QWidget* parent = nullptr);

    // Finish needs at least one place.
    int OnEnableOkButton(int quiet) override;

    // Behind Finish.
    ImportModel& Model() { return m_model; }

 private:
    ImportModel m_model;
    ImportFilePage m_file{m_model};
    ImportColumnsPage m_columns{m_model};
    ImportPreviewPage m_preview{m_model};
};

}  // namespace survey
