#include "window_frame.h"

#include "dialog_find.h"
#include "dialog_import.h"
#include "dialog_options.h"
#include "files.h"
#include "recent.h"
#include "window_ids.h"
#include "window_shots.h"

#include <tov310/accelerator_keys.h>
#include <tov310/application.h>
#include <tov310/cmd_ui.h>
#include <tov310/messages.h>
#include <tov310/qt_values.h>

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QStatusBar>
#include <QStyle>

namespace survey {
namespace {

// The menu whose only text, or that of one of its popups, is the token.
tov::CMenu* MenuWith(tov::CMenu& menu, std::string_view token, unsigned& position) {
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        tov::CString text;
        menu.GetMenuString(i, text, tov::MF_BYPOSITION);
        position = i;
        if (text == token) return &menu;
        tov::CMenu* const popup = menu.GetSubMenu(i);
        tov::CMenu* const found = popup != nullptr ? MenuWith(*popup, token, position) : nullptr;
        if (found != nullptr) return found;
    }
    return nullptr;
}

void ShowBox(QMessageBox::Icon icon, QString const& text, QWidget* parent) {
    QMessageBox box(icon, Words(idTitle), text, QMessageBox::NoButton, parent);
    tov::CString button;
    tov::TovLoadResourceString(tov::TovGetTovResourceHandle(), 26006, button);
    box.addButton(tov::TovQString(button), QMessageBox::AcceptRole);
    box.exec();
}

}  // namespace

QString Words(unsigned id) {
    tov::CString text;
    tov::TovLoadString(id, text);
    return tov::TovQString(text);
}

tov::CTovCommandTable const* SurveyApp::GetCommandTable() const {
    using Self = SurveyApp;
    static constexpr tov::CTovCommandHandler handlers[] = {tov::TovCommand<Self, &Self::OnQuit>(idQuit),
                                                           tov::TovCommand<Self, &Self::OnAbout>(idAbout)};
    static tov::CTovCommandTable const table{CWinApp::GetCommandTable(), handlers};
    return &table;
}

void SurveyApp::OnQuit() {
    QApplication::closeAllWindows();
}

void SurveyApp::OnAbout() {
    ShowBox(QMessageBox::Information, Words(textAbout), tov::TovWidget(GetMainWnd()));
}

SurveyFrame::SurveyFrame()
    : m_document(std::make_unique<PlacesDocument>().release()),
      m_view(*std::make_unique<PlacesView>(this).release()),
      m_toolBar(*std::make_unique<tov::CTovToolBar>(this).release()),
      m_selected(*std::make_unique<QLabel>(this).release()),
      m_recent(RecentDocuments()) {
    setWindowTitle(Words(idTitle));
    resize(900, 560);
    setCentralWidget(&m_view);
    m_document->AddView(&m_view);
    statusBar()->addPermanentWidget(&m_selected);
    MakeMenu();
    MakeToolBar();
    SetAccelerators();
    m_view.onSelected = [this] { ShowSelected(); };
    tov::TovHandle(&m_view);
    SetActiveView(&m_view);
}

// The view looks at the document until its end, and as a child it would go after all members.
SurveyFrame::~SurveyFrame() {
    std::unique_ptr<PlacesView> const view(&m_view);
}

void SurveyFrame::MakeMenu() {
    auto menu = std::make_unique<tov::CMenu>();
    menu->LoadMenu(tov::TovGetResourceHandle(), menuMain);
    tov::TovMenuCustomize(menu.get());
    unsigned position = 0;
    if (tov::CMenu* const around = MenuWith(*menu, "%RECENT", position)) {
        around->ModifyMenu(position, tov::MF_BYPOSITION | tov::MF_POPUP, std::make_unique<tov::CMenu>(),
                           Words(textRecent).toUtf8().constData());
        m_recentMenu = around->GetSubMenu(position);
    }
    SetMenu(std::move(menu));
}

void SurveyFrame::MakeToolBar() {
    m_toolBar.setObjectName("toolBar");
    m_toolBar.setMovable(false);
    FillToolBar();
    addToolBar(&m_toolBar);
}

void SurveyFrame::FillToolBar() {
    constexpr std::pair<unsigned, QStyle::StandardPixmap> pictures[] = {
        {idOpen, QStyle::SP_DialogOpenButton},
        {idReload, QStyle::SP_BrowserReload},
        {tov::WM_TOV_PROPERTIES, QStyle::SP_FileDialogInfoView}};
    m_toolBar.LoadToolBar(tov::TovGetResourceHandle(), menuMain);
    for (auto const& [command, picture] : pictures)
        if (QAction* const button = m_toolBar.ButtonOf(command))
            button->setIcon(style()->standardIcon(picture));
}

void SurveyFrame::SetAccelerators() {
    using tov::ACCEL;
    constexpr unsigned f2 = 0x71, f5 = 0x74, insert = 0x2D;
    tov::HACCEL keys;
    for (ACCEL const& key :
         {ACCEL{ACCEL::eControl, 'O', idOpen}, ACCEL{0, f5, idReload}, ACCEL{ACCEL::eControl, 'W', idClose},
          ACCEL{ACCEL::eControl, 'Q', idQuit}, ACCEL{ACCEL::eControl, 'C', idCopy},
          ACCEL{ACCEL::eControl, 'A', idSelectAll}, ACCEL{0, insert, idAdd}, ACCEL{0, f2, idEdit}})
        keys.Add(key);
    tov::CTovAcceleratorHelper::AddTovAccelerators(keys);
    tov::TovSetAccelerators(this, keys);
}

int SurveyFrame::Open(std::string const& file) {
    std::string const reason = m_document->Open(file);
    if (!reason.empty()) {
        Tell(tov::TovQString(file) + "\n\n" + tov::TovQString(reason));
        return 0;
    }
    ShowTitle();
    if (std::size_t const skipped = m_document->SkippedLines(); skipped != 0)
        statusBar()->showMessage(Words(textSkipped).arg(skipped), 10'000);
    return 1;
}

void SurveyFrame::ShowTitle() {
    setWindowTitle(tov::TovQString(m_document->GetTitle()) + " - " + Words(idTitle));
}

void SurveyFrame::Speak(std::string const& language) {
    RememberLanguage(language);
    UseLanguage(language);
    m_recentMenu = nullptr;
    MakeMenu();
    FillToolBar();
    ShowTitle();
    ShowSelected();
    m_view.LanguageChanged();
}

void SurveyFrame::OnImport() {
    ImportWizard wizard(m_document->Places(), {}, this);
    if (wizard.DoModal() != tov::ID_WIZFINISH) return;
    std::vector<Place>& places = wizard.Model().import.places;
    statusBar()->showMessage(Words(textImported).arg(places.size()), 10'000);
    m_document->PutPlaces(std::move(places), wizard.Model().inPlaceOfAll);
    m_view.SelectPlace(m_document->Places().size() - 1);
}

void SurveyFrame::OnFind() {
    FindDialog dialog(QFileInfo(tov::TovQString(m_document->File())).path().toStdString(), this);
    if (dialog.exec() == QDialog::Accepted) Open(dialog.ChosenFile());
}

void SurveyFrame::OnOptions() {
    OptionsModel model{m_document->CurrentSettings(), LanguageInUse(),
                       [this](Choice const& choice) { m_document->Choose(choice); },
                       [this](std::string const& language) { Speak(language); }};
    OptionsSheet(std::move(model), m_isLanguageFixed, this).DoModal();
}

void SurveyFrame::ShowSelected() {
    std::vector<Place const*> const places = m_view.Selected();
    std::size_t const count = m_document->Places().size();
    if (places.size() == 2) {
        m_selected.setText(Words(textDistance)
                               .arg(tov::TovQString(places[0]->name), tov::TovQString(places[1]->name),
                                    tov::TovQString(m_document->Distance(*places[0], *places[1]))));
    } else if (places.empty()) {
        m_selected.setText(Words(textCount).arg(count));
    } else {
        m_selected.setText(Words(textSelected).arg(places.size()).arg(count));
    }
}

void SurveyFrame::Tell(QString const& text) {
    ShowBox(QMessageBox::Warning, text, this);
}

tov::LRESULT SurveyFrame::WindowProc(unsigned message, tov::WPARAM wParam, tov::LPARAM lParam) {
    // Another program may have opened tables meanwhile.
    if (message == tov::WM_INITMENUPOPUP && m_recentMenu != nullptr &&
        reinterpret_cast<tov::CMenu*>(wParam) == m_recentMenu) {
        m_recentMenu->DestroyMenu();
        int command = idRecent;
        m_recent->CreateLastDocItem(&command, m_recentMenu);
    }
    return CTovFrameWnd::WindowProc(message, wParam, lParam);
}

tov::CTovCommandTable const* SurveyFrame::GetCommandTable() const {
    using Self = SurveyFrame;
    static constexpr tov::CTovCommandHandler handlers[] = {
        tov::TovCommand<Self, &Self::OnOpen>(idOpen),
        tov::TovCommand<Self, &Self::OnReload>(idReload),
        tov::TovCommand<Self, &Self::OnClose>(idClose),
        tov::TovCommand<Self, &Self::OnOptions>(idOptions),
        tov::TovCommand<Self, &Self::OnImport>(idImport),
        tov::TovCommand<Self, &Self::OnFind>(idFind),
        tov::TovCommand<Self, &Self::OnRecent>(idRecent, idRecent + mostRecent - 1),
        tov::TovCommand<Self, &Self::OnToggle, &Self::OnUpdateToggle>(idToolBar, idStatusBar)};
    static tov::CTovCommandTable const table{CTovFrameWnd::GetCommandTable(), handlers};
    return &table;
}

void SurveyFrame::OnOpen() {
    QString const folder = QFileInfo(tov::TovQString(m_document->File())).path();
    QString const file = QFileDialog::getOpenFileName(this, Words(textOpenTable), folder, Words(textKinds));
    if (!file.isEmpty()) Open(QFile::encodeName(file).toStdString());
}

void SurveyFrame::OnRecent(unsigned id) {
    tov::CString kept;
    if (m_recent->GetCurrentDocument(id, kept) != 0) Open(TableOf(kept));
}

void SurveyFrame::OnReload() {
    Open(std::string(m_document->File()));
}

void SurveyFrame::OnClose() {
    tov::TovSendMessage(GetSafeHwnd(), tov::WM_CLOSE);
}

QWidget& SurveyFrame::BarOf(unsigned id) {
    if (id == idToolBar) return m_toolBar;
    return *statusBar();
}

void SurveyFrame::OnToggle(unsigned id) {
    BarOf(id).setVisible(BarOf(id).isHidden());
}

void SurveyFrame::OnUpdateToggle(tov::CCmdUI* state) {
    state->SetCheck(!BarOf(state->m_nID).isHidden());
}

}  // namespace survey
