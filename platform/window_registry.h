// Which window a widget has, and which widget a window.
#pragma once

#include <tov310/wnd_on.h>

#include <QHash>
#include <QSet>

#include <memory>

namespace tov {

// The window of a widget that is not the library's. It follows it by an event filter, since the widget's own
// handlers are out of reach.
class ForeignWindow final : public QObject, public CTovWidgetWnd<CWnd> {
 public:
    explicit ForeignWindow(QWidget& widget);
    ~ForeignWindow() override;

    QWidget& Widget() const override { return m_widget; }
    bool eventFilter(QObject* receiver, QEvent* event) override;

    // Whether somebody outside has asked for this window, and so means it by name.
    bool IsNamed() const { return m_isNamed; }
    void Name() { m_isNamed = true; }

 private:
    QWidget& m_widget;
    bool m_isNamed = false;
};

class WindowRegistry {
 public:
    static WindowRegistry& Instance();

    // The window that the widget has already, born or not. A viewport has that of its area.
    CWnd* Find(QWidget const* widget) const;

    // Whether that window was made for a widget which is not the library's.
    bool IsForeign(QWidget const& widget) const { return m_foreign.contains(&widget); }

    // The number that was given to a widget which states none, while it stands in the same window; 0 for
    // none.
    int GivenId(QWidget const& widget, QWidget const* around) const {
        auto const given = m_givenIds.find(&widget);
        return given != m_givenIds.end() && given->second == around ? given->first : 0;
    }
    void GiveId(QWidget const& widget, QWidget const* around, int id) { m_givenIds[&widget] = {id, around}; }

    // The window of the widget, made and born if need be.
    CWnd* Of(QWidget* widget);

    QWidget* WidgetOf(CWnd const* window) const;

    // The nearest living window from the widget outwards, up to its top-level window; null for none.
    CWnd* Nearest(QWidget const* widget) const;

    void Add(QWidget& widget, CWnd& window);
    void Remove(QWidget const& widget, CWnd const& window);

    // Widgets whose window was destroyed are no windows again before somebody asks for them by themselves.
    void NoteDeath(QWidget const& widget) { m_dead.insert(&widget); }
    void NoteBirth(QWidget const& widget) { m_dead.remove(&widget); }
    bool IsDead(QWidget const& widget) const { return m_dead.contains(&widget); }

 private:
    friend class ForeignWindow;
    void Drop(QWidget const& widget);

    QHash<QWidget const*, CWnd*> m_windows;
    QHash<CWnd const*, QWidget*> m_widgets;
    QSet<QWidget const*> m_dead;
    QHash<QWidget const*, std::pair<int, QWidget const*>> m_givenIds;
    QSet<QWidget const*> m_ending;
    std::unordered_map<QWidget const*, std::unique_ptr<ForeignWindow>> m_foreign;
};

}  // namespace tov
