#include "window_shots.h"

#include "answer.h"
#include "dialog_find.h"
#include "dialog_import.h"
#include "dialog_options.h"
#include "dialog_place.h"
#include "dialog_progress.h"
#include "files.h"
#include "gallery.h"
#include "gallery_dialogs.h"
#include "gallery_page.h"
#include "window_frame.h"
#include "window_ids.h"

#include <tov310/file.h>
#include <tov310/size_gripper.h>
#include <tov310/tov_frame.h>
#include <tov310/ui.h>

#include <QApplication>
#include <QDir>
#include <QFontMetrics>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QWindow>

#include <array>
#include <functional>
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

namespace survey {
namespace {

// A window that is shown, with what pops up over it.
struct Scene {
    std::unique_ptr<QWidget> window;
    std::function<QMenu*()> popup;  // shows a menu and answers it; none where it is empty
    std::function<void()> use;      // once it is shown, as a user would
};

struct Shot {
    std::string name;
    std::function<Scene()> make;
};

std::unique_ptr<SurveyFrame> Places() {
    auto frame = std::make_unique<SurveyFrame>();
    frame->Open(DataFile("zone1970.tab").string());
    for (int const row : {2, 5}) {
        QModelIndex const index = frame->View().model()->index(row, 0);
        frame->View().selectionModel()->select(index,
                                               QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
    return frame;
}

Scene MainWindow() {
    return {Places(), {}, {}};
}

// The window with one of its menus open, or with the entry of it open that has a menu in it.
template <int menu, int entry = -1>
Scene MainMenu() {
    auto frame = Places();
    auto const show = [bar = frame->menuBar()] {
        QMenu* popup = bar->actions().at(menu)->menu();
        popup->popup(bar->mapToGlobal(bar->actionGeometry(bar->actions().at(menu)).bottomLeft()));
        if (entry < 0) return popup;
        QAction* const inner = popup->actions().at(entry);
        inner->menu()->popup(popup->mapToGlobal(popup->actionGeometry(inner).topRight()));
        return inner->menu();
    };
    return {std::move(frame), show, {}};
}

Scene FramesInAFrame() {
    auto frame = std::make_unique<tov::CTovMDIFrameWnd>();
    frame->resize(640, 420);
    frame->setWindowTitle(Words(idTitle));
    for (unsigned const text : {textColumns + 0U, textColumns + 4U}) {
        auto* const child = std::make_unique<tov::CTovMDIChildWnd>().release();
        auto* const edit = std::make_unique<QTextEdit>().release();
        edit->setPlainText(Words(textAbout));
        child->setWidget(edit);
        child->setWindowTitle(Words(text));
        frame->MdiArea()->addSubWindow(child);
        child->resize(300, 180);
    }
    frame->MdiArea()->tileSubWindows();
    return {std::move(frame), {}, {}};
}

// As from the screen: whoever guards the window sees it before any widget.
void Click(QWidget const& widget) {
    QWidget const& around = *widget.window();
    QPointF const place = widget.mapTo(&around, widget.rect().center());
    for (auto const& [type, buttons] : {std::pair(QEvent::MouseButtonPress, Qt::MouseButtons(Qt::LeftButton)),
                                        {QEvent::MouseButtonRelease, Qt::MouseButtons()}}) {
        QMouseEvent event(type, place, around.mapToGlobal(place), Qt::LeftButton, buttons, {});
        QCoreApplication::sendEvent(around.windowHandle(), &event);
    }
}

// A place whose name is taken, which a click on OK tells.
Scene PlaceWithTip() {
    auto dialog = std::make_unique<PlaceDialog>(ShippedPlaces(), std::nullopt);
    PlaceDialog* const window = dialog.get();
    return {std::move(dialog), {}, [window] {
                auto const edits = window->findChildren<tov::CTovEditString*>();
                edits.first()->SetString(tov::CString(ShippedPlaces().front().name));
                Click(*tov::TovWidget(window->GetDlgItem(tov::IDOK)));
            }};
}

Scene EditedPlace() {
    return {std::make_unique<PlaceDialog>(ShippedPlaces(), 5), {}, {}};
}

// The sheet of options, with the page of languages hidden.
template <int page>
Scene Options() {
    auto sheet = std::make_unique<OptionsSheet>(OptionsModel{ApplySettings({}), LanguageInUse(), {}, {}},
                                                page != OptionsSheet::kLanguage);
    sheet->SetFirstPage(page);
    return {std::move(sheet), {}, {}};
}

// The wizard at one of its pages, with a file whose fourth line is no place.
template <int page>
Scene Wizard() {
    auto wizard = std::make_unique<ImportWizard>(ShippedPlaces(), SampleImport().toStdString());
    ImportWizard* const shown = wizard.get();
    return {std::move(wizard), {}, [shown] {
                for (int i = 0; i < page; ++i) {
                    shown->PressButton(tov::ID_WIZNEXT);
                    QCoreApplication::processEvents();
                }
            }};
}

template <SearchProgress::eStyles style>
Scene Progress() {
    auto progress = std::make_unique<SearchProgress>(style);
    ShowSampleProgress(*progress);
    return {std::move(progress), {}, {}};
}

Scene Find() {
    return {std::make_unique<FindDialog>("/"), {}, {}};
}

Scene Gripper() {
    auto form = std::make_unique<QWidget>();
    form->resize(200, 120);
    std::make_unique<tov::CTovSizeGripper>(form.get()).release();
    return {std::move(form), {}, {}};
}

// Whatever can be seen of the library gets a line here.
Shot const shots[] = {
    {"main", MainWindow},
    {"main_file", MainMenu<0>},
    {"main_edit", MainMenu<1>},
    {"main_units", MainMenu<2>},
    {"main_distances", MainMenu<2, 9>},
    {"main_view", MainMenu<3>},
    {"frames", FramesInAFrame},
    {"size_gripper", Gripper},
    {"dialog_place", PlaceWithTip},
    {"dialog_edit", EditedPlace},
    {"dialog_options", Options<OptionsSheet::kAngles>},
    {"dialog_distances", Options<OptionsSheet::kDistances>},
    {"dialog_language", Options<OptionsSheet::kLanguage>},
    {"wizard_file", Wizard<ImportWizard::kFile>},
    {"wizard_columns", Wizard<ImportWizard::kColumns>},
    {"wizard_preview", Wizard<ImportWizard::kPreview>},
    {"progress", Progress<SearchProgress::eStylePlain>},
    {"progress22", Progress<SearchProgress::eStyleRoom22>},
    {"progress33", Progress<SearchProgress::eStyleRoom33>},
    {"progress41", Progress<SearchProgress::eStyleRoom41>},
    {"dialog_find", Find},
};

QPalette DarkPalette() {
    QPalette palette;
    QColor const ground(45, 45, 48), field(30, 30, 30), text(230, 230, 230), faint(140, 140, 140);
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::Button, ground);
    palette.setColor(QPalette::Base, field);
    palette.setColor(QPalette::AlternateBase, QColor(38, 38, 40));
    palette.setColor(QPalette::ToolTipBase, ground);
    palette.setColor(QPalette::Highlight, QColor(38, 110, 190));
    palette.setColor(QPalette::Link, QColor(100, 170, 240));
    for (auto const role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText,
                            QPalette::BrightText, QPalette::HighlightedText})
        palette.setColor(role, text);
    palette.setColor(QPalette::PlaceholderText, faint);
    for (auto const role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    for (auto const& [role, lightness] : {std::pair(QPalette::Light, 150), {QPalette::Midlight, 120}})
        palette.setColor(role, ground.lighter(lightness));
    for (auto const& [role, darkness] :
         {std::pair(QPalette::Mid, 120), {QPalette::Dark, 150}, {QPalette::Shadow, 250}})
        palette.setColor(role, ground.darker(darkness));
    return palette;
}

// The window, and the tips that are up over it or beside it.
QPixmap WithTips(QWidget& window) {
    QRect all(window.mapToGlobal(QPoint()), window.size());
    QPoint const origin = all.topLeft();
    QWidgetList tips;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible() || qobject_cast<tov::CTovWndToolTip*>(widget) == nullptr) continue;
        tips << widget;
        all |= widget->geometry();
    }
    QPixmap const plain = window.grab();
    if (tips.isEmpty()) return plain;
    QPixmap picture(all.size() * plain.devicePixelRatio());
    picture.setDevicePixelRatio(plain.devicePixelRatio());
    picture.fill(window.palette().color(QPalette::Window));
    QPainter painter(&picture);
    painter.drawPixmap(origin - all.topLeft(), plain);
    for (QWidget* const tip : tips)
        painter.drawPixmap(tip->pos() - all.topLeft(), tip->grab());
    return picture;
}

QImage Take(Shot const& shot) {
    Scene const scene = shot.make();
    scene.window->show();
    QApplication::setActiveWindow(scene.window.get());
    for (int round = 0; round < 3; ++round)
        QCoreApplication::processEvents();
    if (scene.use) scene.use();
    QPixmap picture = WithTips(*scene.window);
    if (scene.popup) {
        QPainter painter(&picture);
        for (QWidget* open = scene.popup(); qobject_cast<QMenu*>(open) != nullptr;
             open = open->parentWidget()) {
            QCoreApplication::processEvents();
            painter.drawPixmap(scene.window->mapFromGlobal(open->pos()), open->grab());
        }
    }
    while (QWidget* const open = QApplication::activePopupWidget())
        open->close();
    return picture.toImage();
}

std::vector<Shot> AllShots() {
    std::vector<Shot> all(std::begin(shots), std::end(shots));
    for (std::size_t page = 0; page < GalleryEntries().size(); ++page) {
        all.push_back({std::string("gallery_") + GalleryEntries()[page].name, [page] {
                           auto gallery = std::make_unique<Gallery>();
                           gallery->ShowPage(static_cast<int>(page));
                           return Scene{std::move(gallery), {}, {}};
                       }});
    }
    all.push_back({"gallery_dialogs", [] {
                       auto gallery = std::make_unique<Gallery>();
                       gallery->ShowPage(gallery->Count());
                       return Scene{std::move(gallery), {}, {}};
                   }});
    return all;
}

bool WriteShots(QDir const& folder, std::string const& profile, int scale) {
    QPalette const light = QApplication::palette();
    for (char const* const language : {"zh_CN", "en"}) {
        UseLanguage(language);
        OpenProfile({.language = language, .profile = profile, .reset = true});
        for (auto const& [name, palette] : {std::pair("light", light), std::pair("dark", DarkPalette())}) {
            QApplication::setPalette(palette);
            for (Shot const& shot : AllShots()) {
                QString const file = QString("%1-%2-%3-%4.png")
                                         .arg(QString::fromStdString(shot.name), language, name)
                                         .arg(scale);
                if (Take(shot).save(folder.filePath(file))) continue;
                Complain() << folder.filePath(file).toStdString() << ": cannot be written\n";
                return false;
            }
        }
    }
    return true;
}

// The scale is settled before Qt starts, so each has a run of the program of its own.
int RunForScale(QString const& folder, int scale) {
    QProcess run;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_SCALE_FACTOR", QString::number(scale));
    run.setProcessEnvironment(environment);
    run.setProcessChannelMode(QProcess::ForwardedChannels);
    tov::CString program;
    tov::TovGetModulePath(nullptr, program);
    run.start(QString::fromStdString(program), {"shots", "--scale", QString::number(scale), "--", folder});
    constexpr int patience = 300'000;  // ms
    bool const isDone = run.waitForFinished(patience) && run.exitStatus() == QProcess::NormalExit;
    return isDone ? run.exitCode() : kUnreadable;
}

// Nobody expects a screen from what draws without one.
void PassOn(QtMsgType, QMessageLogContext const&, QString const& text) {
    if (!text.startsWith("This plugin does not support")) Complain() << text.toStdString() << '\n';
}

int TakeShots(QString const& folder, int scale) {
    qInstallMessageHandler(PassOn);
    int count = 1;
    std::array<char, 7> program{"survey"};
    std::array<char*, 2> arguments{program.data(), nullptr};
    QApplication const application(count, arguments.data());
    QApplication::setStyle("fusion");
    if (!QFontMetrics(QApplication::font()).inFontUcs4(U'字')) {
        Complain() << "no font has Chinese characters\n";
        return kUnreadable;
    }
    QTemporaryDir const profile;
    SurveyApp app;
    return WriteShots(QDir(folder), profile.filePath("shots.ini").toStdString(), scale) ? kFine : kUnreadable;
}

}  // namespace

std::string ShotsHelp() {
    return R"(Writes pictures of all windows and controls into DIR, as WINDOW-LANGUAGE-PALETTE-SCALE.png:
in Chinese and English, in light and dark colours, at scale 1 and 2.

  --scale N              only at scale N, 1 to 4
)";
}

int RunShots(Arguments& arguments, CommonOptions& common) {
    std::string folder;
    int scale = 0;
    constexpr int mostScale = 4;
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        if (arguments.IsFile()) {
            if (!folder.empty()) throw UsageError("shots: more than one folder");
            folder = arguments.Name();
        } else if (arguments.Name() == "--scale") {
            scale = ReadNumber("--scale", mostScale, arguments.Value());
        } else {
            arguments.Unknown();
        }
    }
    LoadLanguage(common.language);
    if (common.help) return kFine;
    if (folder.empty()) throw UsageError("shots needs a folder");
    QString const path = QString::fromStdString(folder);
    if (!QDir().mkpath(path)) {
        Complain() << folder << ": cannot be made\n";
        return kUnreadable;
    }
    if (scale == 0) {
        int const first = RunForScale(path, 1);
        return first != kFine ? first : RunForScale(path, 2);
    }
    return TakeShots(path, scale);
}

}  // namespace survey
