// Commands: which of an object's functions do them, and the state in which menus show them.
#pragma once

#include <tov310/export.h>
#include <tov310/types.h>
#include <tov310/window.h>

#include <memory>
#include <type_traits>

namespace tov {

class CMenu;

// The state of one command, handed from one target to the next until somebody sets it. It writes what it is
// told into the entry of a menu; without a menu, and for a popup, only derived classes see it.
class TOV_CORE_API CCmdUI {
 public:
    CCmdUI() = default;
    CCmdUI(CCmdUI const&) = delete;
    CCmdUI& operator=(CCmdUI const&) = delete;
    virtual ~CCmdUI();

    unsigned m_nID = 0;
    CMenu* m_pMenu = nullptr;     // the menu of the entry, borrowed; null where there is none
    unsigned m_nIndex = 0;        // position of the entry in m_pMenu
    CMenu* m_pSubMenu = nullptr;  // set when the entry is a popup, which is asked by its first command
    int m_bEnableChanged = 0;     // whether Enable was called
    int m_bContinueRouting = 0;

    virtual void Enable(int on = 1);
    // 0 unchecked, everything else checked.
    virtual void SetCheck(int check = 1);
    // The same with the mark of one choice among several.
    virtual void SetRadio(int on = 1);
    virtual void SetText(char const* text);

    // An update handler that calls it lets the next target be asked.
    void ContinueRouting() { m_bContinueRouting = 1; }

    // Asks the target, and whoever it routes to, for the state. With disableIfNoHandler a command whose state
    // nobody told is enabled when somebody would do it and disabled when nobody would. Answers 1 when an
    // update handler was found. The ids 0 and 0xFFFF name no command and are done with at once.
    // A handler may change or end the menu: what is set after that goes nowhere.
    int DoUpdate(CCmdTarget* target, int disableIfNoHandler);

 private:
    CMenu* EntryMenu() const;  // null where the entry is no more

    std::weak_ptr<void const> m_menuLife;
    bool m_isUpdating = false;
};

// Has the target tell the states of all commands that stand directly in the menu; a popup is asked for by its
// first command. With disableIfNoHandler what nobody would do is disabled.
TOV_CORE_API void TovUpdateMenuStates(CMenu& menu, CCmdTarget& target, int disableIfNoHandler);

namespace detail {

template <typename Class, auto Function>
int CallCommand(CCmdTarget& target, unsigned id) {
    auto& object = static_cast<Class&>(target);
    if constexpr (std::is_invocable_v<decltype(Function), Class&>) {
        if constexpr (std::is_void_v<std::invoke_result_t<decltype(Function), Class&>>) {
            (object.*Function)();
            return 1;
        } else {
            return (object.*Function)();
        }
    } else {
        if constexpr (std::is_void_v<std::invoke_result_t<decltype(Function), Class&, unsigned>>) {
            (object.*Function)(id);
            return 1;
        } else {
            return (object.*Function)(id);
        }
    }
}

template <typename Class, auto Function>
void CallUpdate(CCmdTarget& target, CCmdUI& state) {
    (static_cast<Class&>(target).*Function)(&state);
}

}  // namespace detail

// The handler of a command, or of all from `first` to `last`, by functions of a class:
//
//   Command   takes nothing or the id; gives void, or an int that is 0 to let the command go on;
//             nullptr where the class only tells the state
//   Update    takes a CCmdUI*; may be left out
template <typename Class, auto Command, auto Update = nullptr>
constexpr CTovCommandHandler TovCommand(unsigned first, unsigned last) {
    CTovCommandHandler handler{first, last, nullptr, nullptr};
    if constexpr (!std::is_null_pointer_v<decltype(Command)>)
        handler.command = &detail::CallCommand<Class, Command>;
    if constexpr (!std::is_null_pointer_v<decltype(Update)>)
        handler.update = &detail::CallUpdate<Class, Update>;
    return handler;
}

template <typename Class, auto Command, auto Update = nullptr>
constexpr CTovCommandHandler TovCommand(unsigned id) {
    return TovCommand<Class, Command, Update>(id, id);
}

}  // namespace tov
