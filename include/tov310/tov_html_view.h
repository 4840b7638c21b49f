// Views on the screen of pages of HTML, as far as QTextBrowser shows them: texts, tables and pictures,
// without scripts.
#pragma once

#include <tov310/html_page.h>
#include <tov310/tov_view.h>

#include <QTextBrowser>

namespace tov {

class TOV_UI_API CTovHtmlView : public CTovViewOn<QTextBrowser, CTovViewOf<CHtmlView>> {
    Q_OBJECT
    TOV_DYNCREATE(CTovHtmlView, CHtmlView)
 public:
    explicit CTovHtmlView(QWidget* parent = nullptr);

    void Navigate(char const* address) override;
    CPoint GetScrollPosition() const override;

    // Shows a picture, at the left top or in the middle, on a colour 0x00BBGGRR (null: the browser's own). An
    // empty path shows an empty page. Answers 1, or 0 where its page could not be written.
    int ShowGraphic(char const* path, int centered, unsigned long const* backColor);

    // The texts of such pages (html_page.h).
    static CString BuildHtmlColor(unsigned long color) { return CTovHtmlPage::Color(color); }
    static CString BuildHtmlStringEmpty(unsigned long const* backColor) {
        return CTovHtmlPage::Empty(backColor);
    }
    static CString BuildHtmlString(char const* path, int centered, unsigned long const* backColor) {
        return CTovHtmlPage::Picture(path, centered, backColor);
    }
    static CString BuildHtmlFilename(char const* path, int centered, unsigned long const* backColor) {
        return CTovHtmlPage::FileName(path, centered, backColor);
    }

    // Write such a page, unless it is there, into a folder that lasts as long as the program, and answer its
    // path; empty where that is not possible.
    static CString BuildHtmlFile(char const* path, int centered, unsigned long const* backColor);
    static CString BuildHtmlFileEmpty(unsigned long const* backColor);

 Q_SIGNALS:
    void initialUpdated();                        // behind OnPostInitialUpdate
    void documentChanged();                       // set, or unset
    void activationChanged(bool active);          // behind OnPostActivateView
    void slowDoubleClicked(QPoint const& place);  // with OnSlowDoubleClick

 protected:
    void OnNotice(eTovViewNotice notice) override;
    void OnSlowDoubleClick(WPARAM keys, CPoint const& place) override;
};

}  // namespace tov
