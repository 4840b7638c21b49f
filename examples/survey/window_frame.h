// The program's window.
#pragma once

#include "window_document.h"
#include "window_view.h"

#include <tov310/application.h>
#include <tov310/last_documents.h>
#include <tov310/tool_bar.h>
#include <tov310/tov_frame.h>

#include <QLabel>

#include <memory>
#include <string>

namespace survey {

using tov::CTovFrameWnd;
using tov::CWinApp;

// The application: what can be done without a window.
class SurveyApp : public CWinApp {
    TOV_DYNAMIC(SurveyApp, CWinApp)
 protected:
    tov::CTovCommandTable const* GetCommandTable() const override;

 private:
    void OnQuit();
    void OnAbout();
};

class SurveyFrame : public CTovFrameWnd {
    TOV_DYNAMIC(SurveyFrame, CTovFrameWnd)
 public:
    SurveyFrame();
    ~SurveyFrame() override;

    // Uses and remembers a language from now on.
    void Speak(std::string const& language);

    // With a language that the call told, the user has none to choose.
    void FixLanguage() { m_isLanguageFixed = true; }

    // Shows a table. Answers 1, or 0 where it cannot be read, of which the user has been told.
    int Open(std::string const& file);

    PlacesView& View() { return m_view; }

    tov::LRESULT WindowProc(unsigned message, tov::WPARAM wParam, tov::LPARAM lParam) override;

 protected:
    tov::CTovCommandTable const* GetCommandTable() const override;

 private:
    void MakeMenu();
    void MakeToolBar();
    void FillToolBar();
    void ShowTitle();
    void SetAccelerators();
    void ShowSelected();
    void Tell(QString const& text);

    void OnOpen();
    void OnRecent(unsigned id);
    void OnReload();
    void OnImport();
    void OnFind();
    void OnOptions();
    void OnClose();
    void OnToggle(unsigned id);
    void OnUpdateToggle(tov::CCmdUI* state);
    QWidget& BarOf(unsigned id);

    tov::CTovPtrSmart<PlacesDocument> m_document;
    PlacesView& m_view;
    tov::CTovToolBar& m_toolBar;
    QLabel& m_selected;
    bool m_isLanguageFixed = false;
    std::unique_ptr<tov::CTovLastDocuments> m_recent;
    tov::CMenu* m_recentMenu = nullptr;  // the popup in the frame's menu
};

}  // namespace survey
