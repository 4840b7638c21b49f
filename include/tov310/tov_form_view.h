// Forms on the screen: views that hold controls, from a template or from a host's own code.
//
//   auto* const form = std::make_unique<tov::CTovFormView>(dialog).release();
//   auto* const rows = std::make_unique<QFormLayout>(form->Form()).release();
//   rows->addRow(tr("Name"), nameEdit);
#pragma once

#include <tov310/resources.h>
#include <tov310/tov_view.h>

#include <QPointer>
#include <QScrollArea>

#include <vector>

namespace tov {

class TOV_UI_API CTovFormView : public CTovViewOn<QScrollArea, CTovFormViewOf<CFormView>> {
    Q_OBJECT
    TOV_DYNCREATE(CTovFormView, CFormView)
 public:
    // A form whose controls the host makes in Form().
    explicit CTovFormView(QWidget* parent = nullptr);

    // A form with a template, dialogs/ID.json or dialogs/NAME.json (docs/resources.md), of the module (null:
    // the library's own). It is read when the form gets its window, which is before it is shown.
    CTovFormView(HINSTANCE module, unsigned id, QWidget* parent = nullptr);
    CTovFormView(HINSTANCE module, char const* name, QWidget* parent = nullptr);
    ~CTovFormView() override;

    // What holds the controls; it scrolls in the form when that is smaller. It stays the form's.
    QWidget* Form() const;

    // The same with the template from another module. Answers 1, or 0 where it is faulty too.
    virtual int Create(HINSTANCE module, unsigned long style, CRect const& rect, CWnd* parent, unsigned id,
                       CCreateContext const* context = nullptr);
    int Create(unsigned long style, CRect const& rect, CWnd* parent, unsigned id,
               CCreateContext const* context = nullptr) override;

    int SubclassDlgItem(unsigned id, CWnd* parent) override;
    int DestroyWindow() override;
    void PreSubclassWindow() override;
    void SetScrollSizes(CSize total) override;
    void ScrollToPosition(CPoint place) override;
    CPoint GetScrollPosition() const override;
    QSize sizeHint() const override;

 Q_SIGNALS:
    void initialUpdated();                        // behind OnPostInitialUpdate
    void documentChanged();                       // set, or unset
    void activationChanged(bool active);          // behind OnPostActivateView
    void slowDoubleClicked(QPoint const& place);  // with OnSlowDoubleClick
    void comboBoxSelChanged(unsigned int id);     // with OnComboBoxSelChange
    void comboBoxEditChanged(unsigned int id);    // with OnComboBoxEditChange
    void listBoxSelChanged(unsigned int id);      // with OnListBoxSelChange

 protected:
    void OnNotice(eTovViewNotice notice) override;
    void OnSlowDoubleClick(WPARAM keys, CPoint const& place) override;
    void OnComboBoxSelChange(unsigned id) override { Q_EMIT comboBoxSelChanged(id); }
    void OnComboBoxEditChange(unsigned id) override { Q_EMIT comboBoxEditChanged(id); }
    void OnListBoxSelChange(unsigned id) override { Q_EMIT listBoxSelChanged(id); }
    void changeEvent(QEvent* event) override;

 private:
    void MakeForm();
    void TakeTemplateSize();

    HINSTANCE m_module = nullptr;
    CString m_template;  // its name; empty for none
    CRect m_extent;      // of the template, in dialog units
    bool m_isFaulty = false;
    bool m_isFilled = false;
    std::vector<QPointer<QObject>> m_made;
};

}  // namespace tov
