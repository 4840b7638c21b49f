#include <tov310/messages.h>
#include <tov310/window.h>

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace tov {
namespace {

// The numbers are compiled into every host, so this list only ever grows at its end.
constexpr char const* order =
    "PROPERTIES DBLCLK_SLOW FILESEARCHTHREAD_BEGIN FILESEARCHTHREAD_TERMINATE FILESEARCHTHREAD_ABORT "
    "FILESEARCHTHREAD_SEARCHDIRECTORY FILESEARCHTHREAD_FILESEARCHINDIRECTORY COMBO_BOX_MULTI_LISTHSCROLL "
    "BUTTON_OWNER_DRAW_DRAWBUTTON VIEW_DLGITEM_EXCHANGED POST_INITIALUPDATE POST_SETFOCUS "
    "POST_ACTIVATEVIEW POST_ACTIVATECHILDVIEW TABCTRL_SEL TABCTRL_PRE_SEL TABCTRL_PRE_REMOVE "
    "DLGCUSTOMFILE_FILENAME_CHANGED SWITCHEDVIEW_MEMBER_CREATED LISTVIEW_NO_SUBITEM_IMAGES "
    "REPORTVIEW_COLUMNS_DLG REPORTVIEW_VIEW_ALL_COLS REPORTVIEW_HIDE_ALL_COLS REPORTVIEW_AUTO_ARRANGE "
    "REPORTVIEW_SORT_ASCENDING REPORTVIEW_SORT_DESCENDING REPORTVIEW_SORT_UNSORTED "
    "REPORTVIEW_SORT_MULTIPLE REPORTVIEW_MODIFY REPORTVIEW_SAVE_AS REPORTVIEW_DELETE_SELECTED "
    "REPORTVIEW_FIND REPORTVIEW_FIND_NEXT REPORTVIEW_FIND_PREV REPORTVIEW_SELECT_ALL "
    "REPORTVIEW_INVERT_SELECTION REPORTVIEW_SELECT_CHECKED_ITEMS REPORTVIEW_CHECK_ALL "
    "REPORTVIEW_INVERT_CHECKED REPORTVIEW_ITEM_DISPLAY_BEGIN REPORTVIEW_ITEM_DISPLAY_END "
    "REPORTVIEW_ITEM_CLEANUP REPORTVIEW_ITEM_REFRESH REPORTVIEW_ITEM_HIDE REPORTVIEW_ITEM_VIEW "
    "REPORTVIEW_ITEM_DELETE REPORTVIEW_ITEM_APPEND REPORTVIEW_ITEM_SELECT REPORTVIEW_ITEM_DESELECT "
    "REPORTVIEW_ITEM_CHECK REPORTVIEW_ITEM_UNCHECK REPORTVIEW_ITEM_DISABLE REPORTVIEW_ITEM_ENABLE "
    "REPORTVIEW_ITEM_SORT_ORDER REPORTVIEW_POST_HDN_ENDDRAG SPLITTERVIEW_POST_SPLITTERLBUTTONUP "
    "HDR_LISTBOX_DRAW HDR_LISTBOX_ITEM_SELECTED HDR_LISTBOX_CANCELED HDR_LISTBOX_INITIALIZE EDIT_DELETE "
    "EDIT_SELECT_ALL INPUT_CONTROL_VALIDATE INPUT_CONTROL_VALIDATE_EMPTY INPUT_CONTROL_EMPTY_CHANGED "
    "INPUT_CONTROL_CHILD_ADDED INPUT_CONTROL_SAVE_VALUE_INLINE INPUT_CONTROL_CANCEL_INLINE "
    "INPUT_CONTROL_HOOK_DLG_CTRL INPUT_CONTROL_UNHOOK_DLG_CTRL UNIT_CHANGED_DISTANCE UNIT_CHANGED_ANGLE "
    "FORMAT_CHANGED_TIME POST_INITDIALOG DOCUMENT_CLOSE TREEVIEW_POST_ITEM_CHECKED TREEVIEW_ITEM_DELETE "
    "TREEVIEW_ITEM_SELECT TREEVIEW_ITEM_CHECK_BEGIN TREEVIEW_ITEM_CHECK TREEVIEW_ITEM_UNCHECK "
    "TREEVIEW_ITEM_CHECK_END TREEVIEW_ITEM_EXPAND TREEVIEW_ITEM_COLLAPSE DRIVE_VIEW_CONTENT_CHANGED "
    "EVENTCHANNELS_ENABLE SHORTCUT_LCLICKED KEYDOWN_EE FOLDER_CONTENT_CHANGED "
    "FOLDER_CONTENT_SELECTIONCHANGED FOLDER_CONTENT_SHOWAS_LARGEICONS FOLDER_CONTENT_SHOWAS_SMALLICONS "
    "FOLDER_CONTENT_SHOWAS_LIST FOLDER_CONTENT_SHOWAS_DETAILS FOLDER_CONTENT_SELECT "
    "FOLDER_CONTENT_REFRESH FOLDER_CONTENT_ENTRY_SELECTED TREECTRL_FOLDER_DIRCHANGED "
    "TREECTRL_FOLDER_SELECTIONCHANGED TREECTRL_LCLICKED_ON_SELECTED BTNEVENT_CREATEIMAGE ";

TEST(Messages, NamesAndNumbersNeverMove) {
    std::vector<std::string> expected;
    std::istringstream list(order);
    for (std::string name; list >> name;)
        expected.push_back("WM_TOV_" + name);
    ASSERT_EQ(expected.size(), 101u);
    ASSERT_EQ(tovMessageCount, 101u);

    struct Declared {
        char const* name;
        unsigned number;
    };
#define TOV_DECLARED(name) {#name, name},
    Declared const declared[] = {TOV_FOR_EACH_MESSAGE(TOV_DECLARED)};
#undef TOV_DECLARED
    for (unsigned i = 0; i < tovMessageCount; ++i) {
        EXPECT_EQ(declared[i].name, expected[i]);
        EXPECT_EQ(declared[i].number, 0xC000 + i) << expected[i];
        EXPECT_EQ(TovRegisterMessage(expected[i].c_str()), 0xC000 + i) << expected[i];
    }
}

TEST(Messages, AMissingNameHasNoNumber) {
    EXPECT_EQ(TovRegisterMessage(nullptr), 0u);
    EXPECT_EQ(TovRegisterMessage(""), 0u);
}

// One test, since the numbers of a process can be used up only once.
TEST(Messages, FurtherNamesGetNumbersFromManyThreadsUntilNoneIsLeft) {
    constexpr unsigned shared = 500;
    auto const name = [](unsigned i) { return "HOST_MESSAGE_" + std::to_string(i); };
    std::vector<std::vector<unsigned>> got(4, std::vector<unsigned>(shared));
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < got.size(); ++t) {
        threads.emplace_back([&, t] {
            for (unsigned i = 0; i < shared; ++i) {
                unsigned const mine = (i + t * 125) % shared;
                got[t][mine] = TovRegisterMessage(name(mine).c_str());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (auto const& numbers : got)
        EXPECT_EQ(numbers, got[0]);

    std::set<unsigned> given(got[0].begin(), got[0].end());
    for (unsigned i = shared;; ++i) {
        unsigned const number = TovRegisterMessage(name(i).c_str());
        if (number == 0) break;
        ASSERT_TRUE(given.insert(number).second) << number << " was given twice";
    }
    EXPECT_EQ(*given.begin(), 0xC000u + 101);
    EXPECT_EQ(*given.rbegin(), 0xDFFFu);
    EXPECT_EQ(given.size(), 0x2000u - 101);

    EXPECT_EQ(TovRegisterMessage(name(7).c_str()), got[0][7]);
    EXPECT_EQ(TovRegisterMessage("WM_TOV_PROPERTIES"), WM_TOV_PROPERTIES);
    EXPECT_EQ(TovRegisterMessage("ONE_MORE"), 0u);
}

}  // namespace
}  // namespace tov
