// The commands that an edit answers.
#pragma once

#include <tov310/cmd_ui.h>
#include <tov310/edit_text.h>
#include <tov310/messages.h>

#include <array>
#include <cstddef>
#include <iterator>

namespace tov {

// A row of commands that do the same; the index of tovFirstInsertCommand and
// those behind it is the value's.
struct CTovEditCommand {
    unsigned first;
    unsigned last;
    eTovEditAction action;
};

// Those of menus and toolbars, and the messages of the platform's edits used as
// such.
inline constexpr CTovEditCommand tovEditCommands[] = {
    {tovFirstInsertCommand, tovLastInsertCommand, eEditActionInsert},
    {0xE12B, 0xE12B, eEditActionUndo},    // ID_EDIT_UNDO
    {0x0304, 0x0304, eEditActionUndo},    // WM_UNDO
    {0x00C7, 0x00C7, eEditActionUndo},    // EM_UNDO
    {0xE12C, 0xE12C, eEditActionRedo},    // ID_EDIT_REDO
    {0x0454, 0x0454, eEditActionRedo},    // EM_REDO
    {0xE123, 0xE123, eEditActionCut},     // ID_EDIT_CUT
    {0x0300, 0x0300, eEditActionCut},     // WM_CUT
    {0xE122, 0xE122, eEditActionCopy},    // ID_EDIT_COPY
    {0x0301, 0x0301, eEditActionCopy},    // WM_COPY
    {0xE125, 0xE125, eEditActionPaste},   // ID_EDIT_PASTE
    {0x0302, 0x0302, eEditActionPaste},   // WM_PASTE
    {0xE120, 0xE120, eEditActionDelete},  // ID_EDIT_CLEAR
    {WM_TOV_EDIT_DELETE, WM_TOV_EDIT_DELETE, eEditActionDelete},
    {0xE12A, 0xE12A, eEditActionSelectAll},  // ID_EDIT_SELECT_ALL
    {WM_TOV_EDIT_SELECT_ALL, WM_TOV_EDIT_SELECT_ALL, eEditActionSelectAll},
};

// The handlers of an edit's commands for the command table of its class, whose
// functions call DoCommand and UpdateCommand of the engine:
//
//   static constexpr auto handlers = TovEditCommandHandlers<CTovEdit,
//   &CTovEdit::OnEditCommand,
//                                                           &CTovEdit::OnUpdateEditCommand>();
template <typename Edit, auto Command, auto Update>
constexpr auto TovEditCommandHandlers() {
    std::array<CTovCommandHandler, std::size(tovEditCommands)> handlers{};
    for (std::size_t i = 0; i < handlers.size(); ++i)
        handlers[i] = TovCommand<Edit, Command, Update>(tovEditCommands[i].first, tovEditCommands[i].last);
    return handlers;
}

}  // namespace tov
