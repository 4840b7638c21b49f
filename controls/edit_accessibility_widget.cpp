// How edits are read by those who do not see them.
#include "controls/edit_accessibility.h"

#include <tov310/value_edits.h>

#include <QAccessibleWidget>
#include <QFontMetrics>
#include <QLocale>

#include <cstdlib>
#include <memory>
#include <utility>

namespace tov {
namespace {

QString NameOf(QWidget* widget) {
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(widget);
    return seen != nullptr ? seen->text(QAccessible::Name) : QString();
}

// An angle in parts is a group of edits, whose value is the whole angle; every other edit is one text.
class EditSeen : public QAccessibleWidget,
                 public QAccessibleTextInterface,
                 public QAccessibleEditableTextInterface,
                 public QAccessibleValueInterface {
 public:
    explicit EditSeen(CTovEdit& edit) : QAccessibleWidget(&edit, QAccessible::EditableText) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        bool const isText = !IsSplit();
        if (type == QAccessible::TextInterface && isText) return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface && isText && !Edit().isReadOnly())
            return static_cast<QAccessibleEditableTextInterface*>(this);
        if (type == QAccessible::ValueInterface && isText && IsSpun() && HasNumber())
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessible::Role role() const override {
        if (IsSplit()) return QAccessible::Grouping;
        return IsSpun() ? QAccessible::SpinBox : QAccessible::EditableText;
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        bool const isText = !IsSplit();
        state.editable = isText && !Edit().isReadOnly();
        state.readOnly = Edit().isReadOnly();
        state.selectableText = isText;
        state.passwordEdit = Edit().echoMode() != QLineEdit::Normal;
        return state;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) return Name();
        if (kind != QAccessible::Value) return QAccessibleWidget::text(kind);
        auto* const value = dynamic_cast<CTovEditValue*>(&Edit());
        bool const isPlain = Edit().echoMode() == QLineEdit::Normal;
        return value != nullptr && isPlain ? value->valueText() : Edit().displayText();
    }
    void setText(QAccessible::Text kind, QString const& words) override {
        if (kind != QAccessible::Value) return QAccessibleWidget::setText(kind, words);
        if (!IsSplit() && !Edit().isReadOnly()) replaceText(0, characterCount(), words);
    }

    // --- The text, in UTF-16 units

    void selection(int index, int* start, int* end) const override {
        bool const isThere = index == 0 && Edit().hasSelectedText();
        *start = isThere ? Edit().selectionStart() : 0;
        *end = isThere ? Edit().selectionEnd() : 0;
    }
    int selectionCount() const override { return Edit().hasSelectedText() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int index) override {
        if (index == 0) Edit().deselect();
    }
    void setSelection(int index, int start, int end) override {
        if (index == 0) Edit().setSelection(start, end - start);
    }
    int cursorPosition() const override { return Edit().cursorPosition(); }
    void setCursorPosition(int position) override { Edit().setCursorPosition(position); }
    QString text(int start, int end) const override {
        return start <= end ? Edit().displayText().mid(start, end - start) : QString();
    }
    int characterCount() const override { return static_cast<int>(Edit().text().size()); }
    QRect characterRect(int offset) const override {
        QString const shown = Edit().displayText();
        if (offset < 0 || offset >= shown.size()) return {};
        QFontMetrics const metrics = Edit().fontMetrics();
        QRect const caret = Edit().inputMethodQuery(Qt::ImCursorRectangle).toRect();
        int const origin = caret.center().x() - metrics.horizontalAdvance(shown, Edit().cursorPosition());
        QRect const place(origin + metrics.horizontalAdvance(shown, offset), caret.top(),
                          metrics.horizontalAdvance(shown[offset]), caret.height());
        return {Edit().mapToGlobal(place.topLeft()), place.size()};
    }
    int offsetAtPoint(QPoint const& point) const override {
        QPoint const place = Edit().mapFromGlobal(point);
        return Edit().rect().contains(place) ? Edit().cursorPositionAt(place) : -1;
    }
    void scrollToSubstring(int start, int end) override {
        setCursorPosition(end);
        setCursorPosition(start);
    }
    QString attributes(int, int* start, int* end) const override {
        *start = 0;
        *end = characterCount();
        return {};
    }

    // --- Changes pass the filter as typed ones do.

    void deleteText(int start, int end) override { replaceText(start, end, {}); }
    void insertText(int offset, QString const& words) override { replaceText(offset, offset, words); }
    void replaceText(int start, int end, QString const& words) override {
        if (Edit().isReadOnly()) return;
        Edit().setCursorPosition(start);
        if (end > start) Edit().setSelection(start, end - start);
        Edit().insert(words);
    }

    // --- The number beside the spin, in the unit that is shown

    QVariant currentValue() const override {
        if (CTovEditIntegerHost* const integer = Integer()) return Number(integer->GetRawValue());
        CTovEditFloatingHost* const floating = Floating();
        return floating != nullptr ? QVariant(floating->GetRawValue()) : QVariant();
    }
    QVariant minimumValue() const override { return Range().first; }
    QVariant maximumValue() const override { return Range().second; }
    QVariant minimumStepSize() const override {
        if (Integer() != nullptr) return std::abs(Edit().GetSpinDelta());
        CTovEditFloatingHost const* const floating = Floating();
        return floating != nullptr ? QVariant(floating->GetSpinStep()) : QVariant();
    }
    void setCurrentValue(QVariant const& value) override {
        // All digits, with the point that every edit reads.
        QString const words = Integer() != nullptr
                                  ? value.toString()
                                  : QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
        replaceText(0, characterCount(), words);
    }

 private:
    CTovEdit& Edit() const { return static_cast<CTovEdit&>(*widget()); }
    CTovEditIntegerHost* Integer() const { return dynamic_cast<CTovEditIntegerHost*>(widget()); }
    CTovEditFloatingHost* Floating() const { return dynamic_cast<CTovEditFloatingHost*>(widget()); }
    bool HasNumber() const { return Integer() != nullptr || Floating() != nullptr; }

    // The spin of an angle steps the number of the field that has the focus.
    bool IsSpun() const {
        auto const* const angle = dynamic_cast<CTovEditValueAngle*>(widget()->parentWidget());
        return Edit().GetEditSpin() != nullptr ||
               (HasNumber() && angle != nullptr && angle->GetEditSpin() != nullptr);
    }

    QVariant Number(long number) const {
        if ((Integer()->GetType() & 1) == 0) return QVariant::fromValue<qlonglong>(number);
        return QVariant::fromValue(static_cast<qulonglong>(static_cast<unsigned long>(number)));
    }

    std::pair<QVariant, QVariant> Range() const {
        if (CTovEditIntegerHost* const integer = Integer()) {
            long minimum = 0;
            long maximum = 0;
            integer->GetRange(minimum, maximum);
            return {Number(minimum), Number(maximum)};
        }
        double minimum = 0;
        double maximum = 0;
        if (auto* const value = dynamic_cast<CTovEditValueHost*>(widget()))
            value->GetShownRange(minimum, maximum);
        else if (CTovEditFloatingHost const* const floating = Floating())
            floating->GetRange(minimum, maximum);
        return {minimum, maximum};
    }

    bool IsSplit() const {
        auto const* const angle = dynamic_cast<CTovEditValueAngle const*>(widget());
        return angle != nullptr && angle->FieldEdit(eTovFieldDegrees) != nullptr;
    }

    // A field has its sign for a name, which stands behind that of the angle.
    QString Name() const {
        QString const own = QAccessibleWidget::text(QAccessible::Name);
        if (dynamic_cast<CTovEditValueAngle*>(widget()->parentWidget()) == nullptr) return own;
        return (NameOf(widget()->parentWidget()) + QLatin1Char(' ') + own).trimmed();
    }
};

class SpinSeen : public QAccessibleWidget {
 public:
    explicit SpinSeen(QWidget& spin) : QAccessibleWidget(&spin, QAccessible::Indicator) {}
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? NameOf(widget()->parentWidget()) : QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface* MakeEditSeen(QString const& className, QObject* object) {
    if (className == QLatin1String("tov::CTovEdit"))
        return std::make_unique<EditSeen>(static_cast<CTovEdit&>(*object)).release();
    if (className == QLatin1String("tov::CTovEditSpin"))
        return std::make_unique<SpinSeen>(static_cast<CTovEditSpin&>(*object)).release();
    return nullptr;
}

}  // namespace

void ShowEditsToAccessibility() {
    QAccessible::installFactory(MakeEditSeen);
}

void TellAccessibilityOfNumber(CTovEdit& edit) {
    if (!QAccessible::isActive()) return;
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&edit);
    QAccessibleValueInterface* const number = seen != nullptr ? seen->valueInterface() : nullptr;
    if (number == nullptr) return;
    QAccessibleValueChangeEvent event(&edit, number->currentValue());
    QAccessible::updateAccessibility(&event);
}

}  // namespace tov
