// The messages that the library's windows send and post to one another and to their hosts.
//
// Each message has one number, the same in every program: the names below count up from 0xC000 in this order,
// and TovRegisterMessage (window.h) hands out the numbers behind them to further names.
#pragma once

#include <tov310/dialog.h>
#include <tov310/types.h>
#include <tov310/window_messages.h>

namespace tov {

inline constexpr unsigned tovFirstRegisteredMessage = 0xC000;
inline constexpr unsigned tovLastRegisteredMessage = 0xDFFF;

// Calls X(name) for every message in the order of the numbers.
#define TOV_FOR_EACH_MESSAGE(X)                      \
    X(WM_TOV_PROPERTIES)                             \
    X(WM_TOV_DBLCLK_SLOW)                            \
    X(WM_TOV_FILESEARCHTHREAD_BEGIN)                 \
    X(WM_TOV_FILESEARCHTHREAD_TERMINATE)             \
    X(WM_TOV_FILESEARCHTHREAD_ABORT)                 \
    X(WM_TOV_FILESEARCHTHREAD_SEARCHDIRECTORY)       \
    X(WM_TOV_FILESEARCHTHREAD_FILESEARCHINDIRECTORY) \
    X(WM_TOV_COMBO_BOX_MULTI_LISTHSCROLL)            \
    X(WM_TOV_BUTTON_OWNER_DRAW_DRAWBUTTON)           \
    X(WM_TOV_VIEW_DLGITEM_EXCHANGED)                 \
    X(WM_TOV_POST_INITIALUPDATE)                     \
    X(WM_TOV_POST_SETFOCUS)                          \
    X(WM_TOV_POST_ACTIVATEVIEW)                      \
    X(WM_TOV_POST_ACTIVATECHILDVIEW)                 \
    X(WM_TOV_TABCTRL_SEL)                            \
    X(WM_TOV_TABCTRL_PRE_SEL)                        \
    X(WM_TOV_TABCTRL_PRE_REMOVE)                     \
    X(WM_TOV_DLGCUSTOMFILE_FILENAME_CHANGED)         \
    X(WM_TOV_SWITCHEDVIEW_MEMBER_CREATED)            \
    X(WM_TOV_LISTVIEW_NO_SUBITEM_IMAGES)             \
    X(WM_TOV_REPORTVIEW_COLUMNS_DLG)                 \
    X(WM_TOV_REPORTVIEW_VIEW_ALL_COLS)               \
    X(WM_TOV_REPORTVIEW_HIDE_ALL_COLS)               \
    X(WM_TOV_REPORTVIEW_AUTO_ARRANGE)                \
    X(WM_TOV_REPORTVIEW_SORT_ASCENDING)              \
    X(WM_TOV_REPORTVIEW_SORT_DESCENDING)             \
    X(WM_TOV_REPORTVIEW_SORT_UNSORTED)               \
    X(WM_TOV_REPORTVIEW_SORT_MULTIPLE)               \
    X(WM_TOV_REPORTVIEW_MODIFY)                      \
    X(WM_TOV_REPORTVIEW_SAVE_AS)                     \
    X(WM_TOV_REPORTVIEW_DELETE_SELECTED)             \
    X(WM_TOV_REPORTVIEW_FIND)                        \
    X(WM_TOV_REPORTVIEW_FIND_NEXT)                   \
    X(WM_TOV_REPORTVIEW_FIND_PREV)                   \
    X(WM_TOV_REPORTVIEW_SELECT_ALL)                  \
    X(WM_TOV_REPORTVIEW_INVERT_SELECTION)            \
    X(WM_TOV_REPORTVIEW_SELECT_CHECKED_ITEMS)        \
    X(WM_TOV_REPORTVIEW_CHECK_ALL)                   \
    X(WM_TOV_REPORTVIEW_INVERT_CHECKED)              \
    X(WM_TOV_REPORTVIEW_ITEM_DISPLAY_BEGIN)          \
    X(WM_TOV_REPORTVIEW_ITEM_DISPLAY_END)            \
    X(WM_TOV_REPORTVIEW_ITEM_CLEANUP)                \
    X(WM_TOV_REPORTVIEW_ITEM_REFRESH)                \
    X(WM_TOV_REPORTVIEW_ITEM_HIDE)                   \
    X(WM_TOV_REPORTVIEW_ITEM_VIEW)                   \
    X(WM_TOV_REPORTVIEW_ITEM_DELETE)                 \
    X(WM_TOV_REPORTVIEW_ITEM_APPEND)                 \
    X(WM_TOV_REPORTVIEW_ITEM_SELECT)                 \
    X(WM_TOV_REPORTVIEW_ITEM_DESELECT)               \
    X(WM_TOV_REPORTVIEW_ITEM_CHECK)                  \
    X(WM_TOV_REPORTVIEW_ITEM_UNCHECK)                \
    X(WM_TOV_REPORTVIEW_ITEM_DISABLE)                \
    X(WM_TOV_REPORTVIEW_ITEM_ENABLE)                 \
    X(WM_TOV_REPORTVIEW_ITEM_SORT_ORDER)             \
    X(WM_TOV_REPORTVIEW_POST_HDN_ENDDRAG)            \
    X(WM_TOV_SPLITTERVIEW_POST_SPLITTERLBUTTONUP)    \
    X(WM_TOV_HDR_LISTBOX_DRAW)                       \
    X(WM_TOV_HDR_LISTBOX_ITEM_SELECTED)              \
    X(WM_TOV_HDR_LISTBOX_CANCELED)                   \
    X(WM_TOV_HDR_LISTBOX_INITIALIZE)                 \
    X(WM_TOV_EDIT_DELETE)                            \
    X(WM_TOV_EDIT_SELECT_ALL)                        \
    X(WM_TOV_INPUT_CONTROL_VALIDATE)                 \
    X(WM_TOV_INPUT_CONTROL_VALIDATE_EMPTY)           \
    X(WM_TOV_INPUT_CONTROL_EMPTY_CHANGED)            \
    X(WM_TOV_INPUT_CONTROL_CHILD_ADDED)              \
    X(WM_TOV_INPUT_CONTROL_SAVE_VALUE_INLINE)        \
    X(WM_TOV_INPUT_CONTROL_CANCEL_INLINE)            \
    X(WM_TOV_INPUT_CONTROL_HOOK_DLG_CTRL)            \
    X(WM_TOV_INPUT_CONTROL_UNHOOK_DLG_CTRL)          \
    X(WM_TOV_UNIT_CHANGED_DISTANCE)                  \
    X(WM_TOV_UNIT_CHANGED_ANGLE)                     \
    X(WM_TOV_FORMAT_CHANGED_TIME)                    \
    X(WM_TOV_POST_INITDIALOG)                        \
    X(WM_TOV_DOCUMENT_CLOSE)                         \
    X(WM_TOV_TREEVIEW_POST_ITEM_CHECKED)             \
    X(WM_TOV_TREEVIEW_ITEM_DELETE)                   \
    X(WM_TOV_TREEVIEW_ITEM_SELECT)                   \
    X(WM_TOV_TREEVIEW_ITEM_CHECK_BEGIN)              \
    X(WM_TOV_TREEVIEW_ITEM_CHECK)                    \
    X(WM_TOV_TREEVIEW_ITEM_UNCHECK)                  \
    X(WM_TOV_TREEVIEW_ITEM_CHECK_END)                \
    X(WM_TOV_TREEVIEW_ITEM_EXPAND)                   \
    X(WM_TOV_TREEVIEW_ITEM_COLLAPSE)                 \
    X(WM_TOV_DRIVE_VIEW_CONTENT_CHANGED)             \
    X(WM_TOV_EVENTCHANNELS_ENABLE)                   \
    X(WM_TOV_SHORTCUT_LCLICKED)                      \
    X(WM_TOV_KEYDOWN_EE)                             \
    X(WM_TOV_FOLDER_CONTENT_CHANGED)                 \
    X(WM_TOV_FOLDER_CONTENT_SELECTIONCHANGED)        \
    X(WM_TOV_FOLDER_CONTENT_SHOWAS_LARGEICONS)       \
    X(WM_TOV_FOLDER_CONTENT_SHOWAS_SMALLICONS)       \
    X(WM_TOV_FOLDER_CONTENT_SHOWAS_LIST)             \
    X(WM_TOV_FOLDER_CONTENT_SHOWAS_DETAILS)          \
    X(WM_TOV_FOLDER_CONTENT_SELECT)                  \
    X(WM_TOV_FOLDER_CONTENT_REFRESH)                 \
    X(WM_TOV_FOLDER_CONTENT_ENTRY_SELECTED)          \
    X(WM_TOV_TREECTRL_FOLDER_DIRCHANGED)             \
    X(WM_TOV_TREECTRL_FOLDER_SELECTIONCHANGED)       \
    X(WM_TOV_TREECTRL_LCLICKED_ON_SELECTED)          \
    X(WM_TOV_BTNEVENT_CREATEIMAGE)

namespace detail {
enum MessageOrdinal : unsigned {
#define TOV_MESSAGE_ORDINAL(name) ordinal_##name,
    TOV_FOR_EACH_MESSAGE(TOV_MESSAGE_ORDINAL)
#undef TOV_MESSAGE_ORDINAL
        messageCount
};
}  // namespace detail

inline constexpr unsigned tovMessageCount = detail::messageCount;

// What controls tell in WM_COMMAND.
inline constexpr unsigned EN_CHANGE = 0x0300;  // an edit: its text has changed
inline constexpr unsigned CBN_SELCHANGE = 1;   // a combo box: another item is selected
inline constexpr unsigned CBN_EDITCHANGE = 5;  // a combo box: the text in it has changed
inline constexpr unsigned LBN_SELCHANGE = 1;   // a list box: other items are selected
inline constexpr unsigned BN_CLICKED = 0;      // a button, and every command

// The halves of WM_COMMAND's wParam.
constexpr unsigned TovCommandOf(WPARAM wParam) {
    return static_cast<unsigned>(wParam & 0xFFFF);
}
constexpr unsigned TovNotificationOf(WPARAM wParam) {
    return static_cast<unsigned>(wParam >> 16 & 0xFFFF);
}
constexpr WPARAM TovCommandParam(unsigned id, unsigned notification) {
    return (id & 0xFFFF) | static_cast<WPARAM>(notification) << 16;
}

// What a window tells another in WM_NOTIFY.
struct NMHDR {
    HWND hwndFrom;
    int idFrom = 0;
    int code = 0;
};
inline constexpr int CDN_FILEOK = -606;  // a file dialog: its OK button

#define TOV_MESSAGE_NUMBER(name) \
    inline constexpr unsigned name = tovFirstRegisteredMessage + detail::ordinal_##name;
TOV_FOR_EACH_MESSAGE(TOV_MESSAGE_NUMBER)
#undef TOV_MESSAGE_NUMBER

}  // namespace tov
