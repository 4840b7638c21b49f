// Pages of property sheets on the screen.
//
//   class Units : public tov::CTovPropPage {
//    public:
//       Units() : CTovPropPage(module, 1200) {}
//    protected:
//       int OnInitDialog() override;  // all controls stand
//       void OnOK() override;         // take what is in them
//   };
#pragma once

#include <tov310/resources.h>
#include <tov310/sheet_container.h>
#include <tov310/wnd_on.h>

#include <memory>
#include <vector>

namespace tov {

class ChildGround;
class CTovPropSheet;

// A page is made when its sheet is; until then it has no controls but those that its host has made.
class TOV_UI_API CTovPropPage : public CWndOn<QWidget, CTovPageOf<CPropertyPage>> {
    Q_OBJECT
    TOV_DYNCREATE(CTovPropPage, CPropertyPage)
 public:
    // A page whose controls the host makes; the window title is the words of the tab, the window icon its
    // picture.
    explicit CTovPropPage(QWidget* parent = nullptr);

    // A page of the module, dialogs/ID.json or dialogs/NAME.json (docs/resources.md); null is the library's
    // own. The words of the tab are those of the string, or with 0 the title of the template. In the sheet
    // the page's number (GetDlgCtrlID) is that of its template.
    CTovPropPage(HINSTANCE module, unsigned id, unsigned caption = 0);
    CTovPropPage(HINSTANCE module, char const* name, unsigned caption = 0);
    ~CTovPropPage() override;

    // The same for a page that is there already, before it is made.
    void Construct(HINSTANCE module, unsigned id, unsigned caption = 0);
    void Construct(HINSTANCE module, char const* name, unsigned caption = 0);

    // Whether it is the page that its sheet shows.
    int IsActive();

    // Whether its sheet lets other windows work.
    int Modeless() const;

    // The sheet that it is in; null for none, and for one of another class.
    CPropertySheet* GetSafeParentPropertySheet() const { return GetParentSheet(); }
    CTovPropSheet* GetSafeParentTovPropSheet() const;

    // The words of its tab.
    CString GetWindowText() const override;
    void SetWindowText(char const* text) override;

    // The number of its template.
    unsigned long GetHelpTopic() const override { return m_helpTopic; }

    int CreateToolbar(HINSTANCE module, unsigned bitmapId, unsigned controlId,
                      unsigned arrangeFlags) override;

    int OnSetActive() override;
    int OnKillActive() override;

    int DestroyWindow() override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 Q_SIGNALS:
    void activated();                           // with OnSetActive
    void deactivated();                         // with OnKillActive, when it lets the sheet go on
    void initialized();                         // with OnPostInitDialog, behind it
    void comboBoxSelChanged(unsigned int id);   // with OnComboBoxSelChange
    void comboBoxEditChanged(unsigned int id);  // with OnComboBoxEditChange
    void listBoxSelChanged(unsigned int id);    // with OnListBoxSelChange

 protected:
    void OnComboBoxSelChange(unsigned id) override { Q_EMIT comboBoxSelChanged(id); }
    void OnComboBoxEditChange(unsigned id) override { Q_EMIT comboBoxEditChanged(id); }
    void OnListBoxSelChange(unsigned id) override { Q_EMIT listBoxSelChanged(id); }
    std::unique_ptr<CDialog> MakePlainDialog() override;
    void TakePlaceholder(CWnd& placeholder) override;
    void PrepareChildDialog(CDialog& child) override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

 private:
    friend class CTovPropSheet;

    // Makes its controls and lets the host see them, once in each life. 0 where the template is faulty.
    int Make();
    bool MakeControls();

    HINSTANCE m_module = nullptr;
    CString m_template;  // its name; empty for none
    CString m_caption;   // empty: the template's
    QSize m_size;        // of the template
    unsigned long m_helpTopic = 0;
    int m_isActive = 0;
    bool m_isReady = false;
    std::unique_ptr<ChildGround> m_childGround;
    std::vector<QPointer<QObject>> m_made;
};

// A page that keeps the OK of its sheet true to the content of its input controls (sheet_container.h).
class TOV_UI_API CTovPropPageCV : public CTovPageCVOf<CTovPropPage> {
    Q_OBJECT
    TOV_DYNCREATE(CTovPropPageCV, CTovPropPage)
 public:
    using CTovPageCVOf::CTovPageCVOf;
    ~CTovPropPageCV() override;

    void OnEmptyFieldsChanged(int emptyFields) override;

 Q_SIGNALS:
    void emptyFieldsChanged(bool empty);  // with OnEmptyFieldsChanged
};

}  // namespace tov
