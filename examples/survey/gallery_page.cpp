#include "gallery_page.h"

#include "window_ids.h"

#include <tov310/qt_values.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QGroupBox>
#include <QSpinBox>

#include <utility>

namespace survey {
namespace {

// What a layout takes belongs to the widget around it.
template <class T, class... Arguments>
T& Make(Arguments&&... arguments) {
    return *std::make_unique<T>(std::forward<Arguments>(arguments)...).release();
}

QGroupBox& MakeGroup(unsigned title, QWidget& page) {
    auto& group = Make<QGroupBox>(Words(title));
    page.layout()->addWidget(&group);
    return group;
}

}  // namespace

GalleryPage::GalleryPage(unsigned title, QWidget* parent)
    : QWidget(parent),
      m_row(Make<QHBoxLayout>()),
      m_state(Make<QLabel>()),
      m_value(Make<QLabel>()),
      m_switches(Make<QGridLayout>()),
      m_options(Make<QFormLayout>()),
      m_samples(Make<QFormLayout>()) {
    QCoreApplication::instance()->installEventFilter(this);
    auto& whole = Make<QVBoxLayout>(this);
    auto& about = Make<QLabel>(Words(title + galleryAbout));
    about.setWordWrap(true);
    whole.addWidget(&about);
    whole.addLayout(&m_row);
    for (QLabel* const label : {&m_state, &m_value}) {
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->setWordWrap(true);
        whole.addWidget(label);
    }
    QGroupBox& options = MakeGroup(textOptions, *this);
    auto& both = Make<QVBoxLayout>(&options);
    both.addLayout(&m_switches);
    both.addLayout(&m_options);
    m_options.setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    MakeGroup(textStates, *this).setLayout(&m_samples);
    whole.addStretch();
}

void GalleryPage::SetControl(QWidget* control, tov::CTovInputControl& checked, QLabel* unit) {
    m_checked = &checked;
    control->setAccessibleName(windowTitle());
    m_row.addWidget(control, 1);
    if (unit != nullptr) m_row.addWidget(unit);
    m_row.addStretch(1);
}

void GalleryPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    ShowState();
}

bool GalleryPage::eventFilter(QObject* receiver, QEvent* event) {
    bool const isKey = event->type() == QEvent::KeyPress && receiver->isWidgetType();
    if (isKey && isAncestorOf(static_cast<QWidget*>(receiver)))
        QMetaObject::invokeMethod(
            this, [this] { ShowState(); }, Qt::QueuedConnection);
    return QWidget::eventFilter(receiver, event);
}

void GalleryPage::ShowState() {
    tov::CString message;
    int const state = m_checked->Validate(&message);
    QString words = Words(textValid + static_cast<unsigned>(state));
    if (state == tov::CTovInputControl::eStateInvalid) words = words.arg(tov::TovQString(message));
    if (m_checked->GetChangedByUser() != 0) words += Words(textChanged);
    m_state.setText(words);
    if (m_checked->IsEmpty() != 0) m_value.clear();
}

void GalleryPage::ShowValue(double value) {
    constexpr int digits = 15;
    m_value.setText(Words(textValue).arg(value, 0, 'g', digits));
    ShowState();
}

void GalleryPage::AddSwitch(unsigned text, bool on, std::function<void(bool)> apply) {
    auto& box = Make<QCheckBox>(Words(text));
    box.setChecked(on);
    connect(&box, &QCheckBox::toggled, this, [this, apply](bool isOn) {
        apply(isOn);
        ShowState();
    });
    constexpr int columns = 3;
    m_switches.addWidget(&box, m_switchCount / columns, m_switchCount % columns);
    ++m_switchCount;
    apply(on);
}

void GalleryPage::AddOption(unsigned text, QWidget* option) {
    m_options.addRow(Words(text), option);
}

void GalleryPage::AddChoice(unsigned text, QStringList const& choices, int current,
                            std::function<void(int)> apply) {
    auto& box = Make<QComboBox>();
    box.addItems(choices);
    box.setCurrentIndex(current);
    connect(&box, &QComboBox::currentIndexChanged, this, [this, apply](int index) {
        apply(index);
        ShowState();
    });
    AddOption(text, &box);
    apply(current);
}

void GalleryPage::AddNumber(unsigned text, int minimum, int maximum, int value,
                            std::function<void(int)> apply) {
    auto& box = Make<QSpinBox>();
    box.setRange(minimum, maximum);
    box.setValue(value);
    connect(&box, &QSpinBox::valueChanged, this, [this, apply](int number) {
        apply(number);
        ShowState();
    });
    AddOption(text, &box);
    apply(value);
}

void GalleryPage::AddSample(unsigned text, QWidget* sample, tov::CString const& wrong) {
    m_samples.addRow(Words(text), sample);
    if (wrong.empty()) return;
    auto& why = Make<QLabel>(tov::TovQString(wrong));
    why.setWordWrap(true);
    m_samples.addRow({}, &why);
}

}  // namespace survey
