#include "gallery_dialogs.h"

#include "dialog_import.h"
#include "dialog_options.h"
#include "dialog_place.h"
#include "files.h"
#include "window_ids.h"
#include "window_shots.h"

#include <QLabel>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace survey {
namespace {

constexpr int sampleSteps = 200;

void WorkALittle(SearchProgress::eStyles style, QWidget* parent) {
    SearchProgress progress(style, parent);
    progress.Steps(sampleSteps);
    constexpr unsigned long stepTime = 20;  // ms
    for (int i = 1; i <= sampleSteps && progress.CheckAbort() == 0; ++i) {
        progress.Tell(static_cast<std::size_t>(i), static_cast<std::size_t>(i / 7), "*.tab");
        progress.Comment(ShippedPlaces()[static_cast<std::size_t>(i)].name.c_str(), 1, 1);
        QThread::msleep(stepTime);
    }
}

}  // namespace

GalleryDialogs::GalleryDialogs(QWidget* parent) : QWidget(parent) {
    auto* const whole = std::make_unique<QVBoxLayout>(this).release();
    auto* const about = std::make_unique<QLabel>(Words(textDialogsAbout), this).release();
    about->setWordWrap(true);
    whole->addWidget(about);
    auto const add = [this, whole](unsigned words, std::function<void()> const& open) {
        auto* const button = std::make_unique<QPushButton>(Words(words), this).release();
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, open);
        whole->addWidget(button, 0, Qt::AlignLeft);
    };
    add(textAPlace, [this] { PlaceDialog(ShippedPlaces(), std::nullopt, window()).exec(); });
    add(textHiddenPage, [this] {
        auto const nothing = [](auto const&) {};
        OptionsSheet({ApplySettings({}), LanguageInUse(), nothing, nothing}, true, window()).DoModal();
    });
    add(textWizard,
        [this] { ImportWizard(ShippedPlaces(), SampleImport().toStdString(), window()).DoModal(); });
    for (unsigned style = 0; style < 4; ++style)
        add(textProgress + style,
            [this, style] { WorkALittle(static_cast<SearchProgress::eStyles>(style), window()); });
    whole->addStretch();
}

std::vector<Place> const& ShippedPlaces() {
    static std::vector<Place> const places = [] {
        std::string bytes;
        ReadFile(DataFile("zone1970.tab"), bytes);
        return ReadPlaces(bytes).places;
    }();
    return places;
}

QString SampleImport() {
    return QString::fromStdString(DataFile("points.csv").string());
}

void ShowSampleProgress(SearchProgress& progress) {
    progress.Steps(sampleSteps);
    for (int i = 0; i < sampleSteps / 2; ++i)
        progress.StepIt();
    progress.Tell(sampleSteps / 2, 7, "*.tab");
    progress.Comment("/usr/share/zoneinfo", 0, 1);
}

}  // namespace survey
