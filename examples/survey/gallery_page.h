// A page of the gallery: one control to try, what its validation finds, its options as live switches, and
// its states one below the other.
#pragma once

#include <tov310/edit.h>

#include <QBoxLayout>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <span>

namespace survey {

class GalleryPage : public QWidget {
 public:
    GalleryPage(unsigned title, QWidget* parent);

    // The control and what it checks; `unit`, if there is one, stands behind it.
    void SetControl(QWidget* control, tov::CTovInputControl& checked, QLabel* unit = nullptr);

    // What the control tells calls this.
    void ShowState();
    QString State() const { return m_state.text(); }
    void ShowValue(double value);

    // Options; what they change is applied at once, also when the page is made.
    void AddSwitch(unsigned text, bool on, std::function<void(bool)> apply);
    void AddChoice(unsigned text, QStringList const& choices, int current, std::function<void(int)> apply);
    void AddNumber(unsigned text, int minimum, int maximum, int value, std::function<void(int)> apply);

    // A further one in another state, and what is wrong with it.
    void AddSample(unsigned text, QWidget* sample, tov::CString const& wrong = {});

 protected:
    void showEvent(QShowEvent* event) override;

    // Keys that change a control without changing its value are told by no signal, but mark it as changed.
    bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
    void AddOption(unsigned text, QWidget* option);

    tov::CTovInputControl* m_checked = nullptr;
    QBoxLayout& m_row;
    QLabel& m_state;
    QLabel& m_value;
    QGridLayout& m_switches;
    QFormLayout& m_options;
    QFormLayout& m_samples;
    int m_switchCount = 0;
};

// The pages, in the order of the list.
struct GalleryEntry {
    char const* name;  // of its picture
    unsigned title;
    void (*fill)(GalleryPage& page);
};
std::span<GalleryEntry const> GalleryEntries();

}  // namespace survey
