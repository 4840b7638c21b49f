#include <tov310/accelerator_keys.h>

#include "platform/native_messages.h"

#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/wnd_on.h>

#include <QPointer>
#include <QShortcut>

#include <memory>
#include <vector>

namespace tov {
namespace {

// The keys of the toolkit that have this number.
std::vector<QKeyCombination> ToolkitKeys(int virtualKey, Qt::KeyboardModifiers modifiers) {
    std::vector<QKeyCombination> keys;
    auto const look = [&](int first, int last) {
        for (int key = first; key <= last; ++key) {
            // Plain ones serve for the keypad as well.
            bool const isPlain = VirtualKeyOf(key, false) == virtualKey;
            if (!isPlain && VirtualKeyOf(key, true) != virtualKey) continue;
            keys.emplace_back(modifiers | (isPlain ? Qt::NoModifier : Qt::KeypadModifier),
                              static_cast<Qt::Key>(key));
        }
    };
    if (virtualKey == 0) return keys;
    look(Qt::Key_Space, Qt::Key_AsciiTilde);
    look(Qt::Key_Escape, Qt::Key_Direction_R);  // all that have no letter
    return keys;
}

class AcceleratorKey final : public QShortcut {
 public:
    AcceleratorKey(QKeyCombination keys, ACCEL const& entry, QWidget& window)
        : QShortcut(QKeySequence(keys), &window), m_entry(entry) {
        setAutoRepeat(false);
        connect(this, &QShortcut::activated, &window,
                [&window, command = entry.command] { Press(window, command); });
    }

    ACCEL const& Entry() const { return m_entry; }

 private:
    static void Press(QWidget& widget, unsigned command) {
        QPointer<QWidget> const alive(&widget);
        CWnd* const window = TovWnd(&widget);
        HWND const self = window->GetSafeHwnd();
        CTovMenuPopUp::CCmdUIPopUp state;
        state.m_nID = command;
        state.DoUpdate(window, 0);
        if (!alive || (state.m_bEnableChanged != 0 && state.m_bEnabled == 0)) return;
        TovSendMessage(self, WM_COMMAND, TovCommandParam(command, 0));
    }

    ACCEL const m_entry;
};

Qt::KeyboardModifiers ModifiersOf(ACCEL const& entry) {
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, (entry.modifiers & ACCEL::eShift) != 0);
    modifiers.setFlag(Qt::ControlModifier, (entry.modifiers & ACCEL::eControl) != 0);
    modifiers.setFlag(Qt::AltModifier, (entry.modifiers & ACCEL::eAlt) != 0);
    return modifiers;
}

}  // namespace

void TovSetAccelerators(QWidget* window, HACCEL const& keys) {
    if (window == nullptr) return;
    // One of them may be what is being done.
    for (QObject* const child : QObjectList(window->children())) {
        auto* const key = dynamic_cast<AcceleratorKey*>(child);
        if (key == nullptr) continue;
        key->setEnabled(false);
        key->deleteLater();
    }
    for (ACCEL const& entry : keys.Entries()) {
        for (QKeyCombination const key : ToolkitKeys(static_cast<int>(entry.key), ModifiersOf(entry)))
            std::make_unique<AcceleratorKey>(key, entry, *window).release();
    }
}

HACCEL TovGetAccelerators(QWidget const* window) {
    HACCEL keys;
    for (QObject const* const child : window != nullptr ? window->children() : QObjectList()) {
        auto const* const key = dynamic_cast<AcceleratorKey const*>(child);
        if (key != nullptr && key->isEnabled()) keys.Add(key->Entry());  // one of two keys is enough
    }
    return keys;
}

}  // namespace tov
