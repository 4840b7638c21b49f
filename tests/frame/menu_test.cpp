// links: objects
#include <tov310/cmd_ui.h>
#include <tov310/menu.h>
#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/resources.h>
#include <tov310/window.h>

#include "frame/menu_resource.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/menu_text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

namespace tov {
namespace {

using test::Told;

// Made from its text.
struct Menu : CMenu {
    explicit Menu(std::string const& told) : Menu(std::istringstream(told)) {}
    explicit Menu(std::istream&& words) {
        for (std::string word; words >> word && word != ")";) {
            std::string const name = word.substr(0, word.find_first_of("(="));
            if (word == "-")
                AppendMenu(MF_SEPARATOR);
            else if (word.back() == '(')
                AppendMenu(MF_POPUP, std::make_unique<Menu>(std::move(words)), name.c_str());
            else
                AppendMenu(MF_STRING, static_cast<unsigned>(std::stoul(word.substr(name.size() + 1))),
                           name.c_str());
        }
    }
};

std::string RandomMenu(std::minstd_rand& random, int depth) {
    std::string told;
    for (auto n = random() % 6; n > 0; --n) {
        auto const dice = random() % 10;
        told += dice < 4                ? "- "
                : dice < 7 && depth > 0 ? "p( " + RandomMenu(random, depth - 1) + ") "
                                        : "c=7 ";
    }
    return told;
}

// How often something was replaced until it is found no more.
unsigned Replace(std::string& text, std::string_view what, std::string_view by) {
    unsigned count = 0;
    for (std::size_t at; (at = text.find(what)) != text.npos; ++count)
        text.erase(at, what.size()).insert(at, by);
    return count;
}

// A screen that notes what it was asked to show and to fill.
struct Screen : ITovMenuPort {
    Screen() { TovSetMenuPort(this); }
    ~Screen() override { TovSetMenuPort(nullptr); }

    int Track(CMenu& menu, POINT const& point, unsigned flags, CWnd& window) override {
        shown = Told(menu);
        tracked = {point.x, point.y, static_cast<int>(flags)};
        return owner == &window;
    }
    void FillRect(CDC*, CRect const& rect, unsigned long color) override { fills.emplace_back(rect, color); }

    std::string shown;
    std::vector<int> tracked;
    CWnd* owner = nullptr;
    std::vector<std::pair<CRect, unsigned long>> fills;
};

std::string const properties = "属性...\tAlt+Enter(&R)=" + std::to_string(WM_TOV_PROPERTIES) + ' ';

struct Window : CTovMessageWindow {
    Window() { Create(); }
};

struct HostMenu : CTovMenuPopUp {
    using CTovMenuPopUp::CTovMenuPopUp;
    using CTovMenuPopUp::LoadMenu;

    void CustomizeMenu() override {
        ++customized;
        TovMenuCustomize(this);
    }
    int customized = 0;
};

TEST(Menu, EntriesAreReachedByPositionAndByCommandInPopupsToo) {
    Menu menu("a=1 p( b=2 q( c=3 ) ) - d=4");
    CString text;
    for (bool const isThere : {true, false}) {
        EXPECT_EQ(menu.GetMenuString(isThere ? 3 : 9, text, MF_BYCOMMAND), isThere);
        EXPECT_EQ(text, isThere ? "c" : "");
    }
    constexpr unsigned off = MF_GRAYED | MF_DISABLED;
    EXPECT_EQ(menu.EnableMenuItem(3, off) + menu.CheckMenuItem(3, MF_CHECKED), 0u);
    EXPECT_EQ(Told(menu), "a=1 p( b=2 q( c=3!+ ) ) - d=4 ");
    EXPECT_EQ(menu.CheckMenuItem(3, MF_UNCHECKED), MF_CHECKED);
    EXPECT_EQ(menu.EnableMenuItem(3, MF_ENABLED), off);
    EXPECT_EQ(menu.EnableMenuItem(9, MF_BYCOMMAND), tovNoMenuItem);
    EXPECT_EQ(menu.GetMenuState(1, MF_BYPOSITION), MF_POPUP | 2u << 8);
    EXPECT_EQ(menu.GetMenuItemID(1), tovNoMenuItem);

    EXPECT_EQ(menu.InsertMenu(3, MF_BYCOMMAND, 5, "e") + menu.InsertMenu(99, MF_BYPOSITION, 7, nullptr), 2);
    EXPECT_EQ(menu.ModifyMenu(2, MF_BYCOMMAND | MF_SEPARATOR) + menu.DeleteMenu(1, MF_BYCOMMAND), 2);
    EXPECT_EQ(menu.InsertMenu(9, MF_BYCOMMAND, 6, "f") + menu.DeleteMenu(9, MF_BYCOMMAND), 0);
    EXPECT_EQ(Told(menu), "p( - q( e=5 c=3 ) ) - d=4 =7 ");

    Menu row("a=1 b=2 - c=3 d=4");
    for (unsigned const command : {2u, 3u, 4u})
        EXPECT_EQ(row.CheckMenuRadioItem(1, 3, command, MF_BYCOMMAND), command < 4);
    EXPECT_EQ(row.CheckMenuRadioItem(0, 2, 2, MF_BYPOSITION), 0) << "a separator";
    EXPECT_EQ(Told(row), "a=1 b=2 - c=3+o d=4 ");
}

TEST(Menu, APopupBelongsToOneMenuAndNeverToItself) {
    std::unique_ptr<CMenu> root = std::make_unique<Menu>("p( q( ) )");
    CMenu& inner = *root->GetSubMenu(0)->GetSubMenu(0);
    std::unique_ptr<CMenu> taken;
    EXPECT_EQ(root->RemoveMenu(7, MF_BYPOSITION, &taken), 0);
    EXPECT_EQ(root->RemoveMenu(0, MF_BYPOSITION, &taken), 1);
    ASSERT_NE(taken, nullptr);
    EXPECT_EQ(inner.TakeEntries(*taken), 0);
    // A menu that stood in another is free of it: this would otherwise be a ring.
    EXPECT_EQ(taken->AppendMenu(MF_POPUP, std::move(root), "r"), 1);
    EXPECT_EQ(taken->AppendMenu(MF_POPUP, std::unique_ptr<CMenu>(), "n"), 0);
    EXPECT_EQ(Told(*taken), "q( ) r( ) ");
    EXPECT_EQ(taken->TakeEntries(*taken->GetSubMenu(0)), 1);
    EXPECT_EQ(Told(*taken), "");
    CMenu& alone = *taken;
    EXPECT_EQ(alone.AppendMenu(MF_POPUP, std::move(taken), "self"), 0);
}

TEST(Menu, RandomTreesAreTidiedAsTheirMirror) {
    std::minstd_rand random(680);
    Screen screen;
    Window window;
    EXPECT_EQ(TovMenuCheckEmptyPopupMenus(nullptr) + TovMenuCheckSeparators(nullptr), 0u);
    for (int round = 0; round < 3000; ++round) {
        std::string mirror = "( " + RandomMenu(random, 4) + ") ";
        Menu whole(mirror);
        CMenu& menu = *whole.GetSubMenu(0);
        HostMenu popup;
        popup.LoadMenu(menu);
        popup.SetWindow(&window);
        popup.Activate(CPoint(), 0);
        for (unsigned popups = 1, separators = 1; popups + separators != 0;) {
            popups = Replace(mirror, "p( ) ", "");
            ASSERT_EQ(TovMenuCheckEmptyPopupMenus(&menu), popups);
            ASSERT_EQ(Told(whole), mirror);
            separators =
                Replace(mirror, "- - ", "- ") + Replace(mirror, "( - ", "( ") + Replace(mirror, "- ) ", ") ");
            ASSERT_EQ(TovMenuCheckSeparators(&menu), separators);
            ASSERT_EQ(Told(whole), mirror);
        }
        ASSERT_EQ("( " + screen.shown + ") ", mirror) << "Activate tidies until nothing is left to do";
    }
}

TEST(Menu, CopiesHoldTheWholeTreeAndStandApart) {
    std::string const told = "a=1 p( b=2+ - q( ) ) - ";
    Menu from("a=1 p( b=2 - q( ) ) -");
    from.CheckMenuItem(2, MF_BYCOMMAND | MF_CHECKED);
    EXPECT_EQ(from.SetMenuItemData(2, 42, MF_BYCOMMAND), 1);
    for (unsigned const position : {0u, 1u, 2u, 7u, ~1u, ~0u}) {
        Menu to("x=8 y=9");
        EXPECT_EQ(TovMenuCopyRecursive(&from, &to, position), 3u);
        std::string whole = "x=8 y=9 ";
        EXPECT_EQ(Told(to), whole.insert(position < 2 ? position * 4 : 8, told)) << position;
        EXPECT_EQ(to.GetMenuItemData(2, MF_BYCOMMAND), 42u);
        to.DeleteMenu(2, MF_BYCOMMAND);
        EXPECT_EQ(Told(from), told);
    }
    EXPECT_EQ(TovMenuCopyRecursive(&from, &from, 1), 3u) << "into itself";
    EXPECT_EQ(Told(from), "a=1 " + told + "p( b=2+ - q( ) ) - ");
    EXPECT_EQ(TovMenuCopyRecursive(&from, from.GetSubMenu(2)->GetSubMenu(2), 0), 6u) << "into its popup";
    EXPECT_EQ(TovMenuCopyRecursive(nullptr, &from, 0) + TovMenuCopyRecursive(&from, nullptr, 0), 0u);

    std::string longText;
    for (int i = 0; i < 1025; ++i)
        longText += "字";
    Menu const wide(longText + "( ) " + longText + "=1");
    CMenu cut;
    TovMenuCopyRecursive(&wide, &cut, 0);
    EXPECT_EQ(Told(cut), longText.substr(3) + "( ) " + longText + "=1 ") << "texts of popups are cut";

    Menu drawn("p( )");
    drawn.GetSubMenu(0)->AppendMenu(MF_OWNERDRAW | MF_CHECKED, 5, "words");
    CMenu plain;
    plain.InsertCopies(drawn, 0);
    EXPECT_EQ(Told(plain), "p( words=5+ ) ") << "nobody would draw it";
}

TEST(Menu, TokensAreReplacedInEveryPlace) {
    std::string const rows[][2] = {
        {"a=1 %properties=7 b=2 ", "a=1 " + properties + "b=2 "},
        {"a=1 %Properties( DUMMY=0 ) ", "a=1 " + properties},
        {"%PROPERTIES=0 p( q( %PROPERTIES=0 ) ) ", properties + "p( q( " + properties + ") ) "},
        {"%PROPERTIE=1 %PROPERTIESS=2 - p( ) ", "%PROPERTIE=1 %PROPERTIESS=2 - p( ) "},
    };
    for (auto const& [before, after] : rows) {
        Menu menu(before);
        EXPECT_EQ(TovMenuCustomize(&menu), before != after) << before;
        EXPECT_EQ(Told(menu), after);
    }
    EXPECT_EQ(TovMenuCustomize(nullptr), 0);
}

TEST(MenuResource, FormsAndFaults) {
    std::string const popup = R"([{"text": "p", "items": )";
    std::string deep = "[]", told;
    for (int i = 0; i < 16; ++i) {
        deep = popup + deep + "}]";
        told.insert(told.size() / 5 * 3, "p( ) ");
    }
    std::string const good[][2] = {
        {"[]", ""},
        {R"([{"text": "a", "id": 65535}, {"separator": true}, {"text": ""}])", "a=65535 - =0 "},
        {R"([{"text": "p", "items": [{"text": "字", "id": 1}]}])", "p( 字=1 ) "},
        {R"([{"text": "a", "checked": true}, {"text": "p", "grayed": true, "items": []}])", "a=0+ p!( ) "},
        {deep, told},
    };
    for (auto const& [json, entries] : good) {
        CMenu menu;
        EXPECT_TRUE(ParseMenu(json, menu)) << json;
        EXPECT_EQ(Told(menu), entries);
    }
    std::string const faulty[] = {
        // clang-format off
        "", "{}", "[", "[] x", "[{}]", "[[]]", R"([{"text": 1}])", R"([{"id": 1}])",
        R"([{"text": "a", "id": 65536}])", R"([{"text": "a", "id": -1}])", R"([{"text": "a", "id": 1.0}])",
        R"([{"text": "a", "check": true}])", R"([{"text": "a", "checked": false}])",
        R"([{"text": "a", "text": "b"}])", R"([{"text": "a\u0000b"}])", "[{\"text\": \"\xff\"}]",
        R"([{"text": "p", "items": {}}])", R"([{"text": "p", "items": [], "id": 1}])",
        R"([{"separator": true, "text": "a"}])", R"([{"separator": false}])",
        popup + deep + "}]", std::string(100'000, '['),
        // clang-format on
    };
    for (std::string const& json : faulty) {
        CMenu menu;
        std::string fault;
        EXPECT_FALSE(ParseMenu(json, menu, &fault)) << json.substr(0, 200);
        EXPECT_NE(fault, "") << json.substr(0, 200);
    }
}

TEST(MenuResource, OfTheHostsModuleAndOfTheLibrary) {
    test::TemporaryFolder const folder;
    std::filesystem::create_directory(folder.path() / "menus");
    test::PutFile(folder.File("strings.json"), "{}");
    test::PutFile(folder.File("menus/7.json"), R"([{"text": "p", "items": [{"text": "a", "id": 1}]}])");
    test::PutFile(folder.File("menus/named.json"), R"([{"text": "a", "id": 2}])");
    test::PutFile(folder.File("menus/8.json"), R"([{"text": )");
    test::PutFile(folder.File("menus/10.json"),
                  R"([{"separator": true}, {"text": "p", "items": [{"text": "a", "id": -1}]}])");
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    CMenu menu;
    CTovMenuPopUp popup;
    EXPECT_EQ(menu.LoadMenu(module, 7) + popup.LoadMenu(module, 7), 2);
    EXPECT_EQ(Told(menu), "p( a=1 ) ");
    EXPECT_EQ(menu.LoadMenu(module, "named"), 1);
    testing::internal::CaptureStderr();
    for (unsigned const id : {8u, 9u, 10u})
        EXPECT_EQ(menu.LoadMenu(module, id) + popup.LoadMenu(module, id), 0) << id;
    std::vector<std::string> const told = test::TakeFaults();
    ASSERT_EQ(told.size(), 4u) << "none for a menu that is not there";
    EXPECT_TRUE(told[0].starts_with("menus/8.json: parse error")) << told[0];
    EXPECT_EQ(told[2], "menus/10.json: entry 2: entry 1: \"id\" is no number from 0 to 65535");
    EXPECT_EQ(menu.LoadMenu(module, nullptr) + menu.LoadMenu(nullptr, 7), 0);
    EXPECT_EQ(popup.LoadMenu(module, "named"), 0) << "its first entry is no popup";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(Told(menu) + Told(popup), "a=2 a=1 ") << "the earlier menus stay";

    for (auto const& language : std::filesystem::directory_iterator(TOV_TEST_SOURCE_DIR "/res")) {
        for (auto const& file : std::filesystem::directory_iterator(language.path() / "menus")) {
            CMenu own, builtIn;
            EXPECT_TRUE(ParseMenu(test::GetFile(file.path()), own)) << file.path();
            EXPECT_EQ(builtIn.LoadMenu(nullptr, file.path().stem().c_str()), 1) << file.path();
            EXPECT_EQ(Told(own, false), Told(builtIn, false)) << "translations differ in words only";
        }
    }
}

TEST(MenuPopUp, ShowsWhatIsLoadedAndBoundAndCustomisesOnce) {
    Menu const source("- a=1 %PROPERTIES=0 p( - q( ) ) -");
    Screen screen;
    Window window;
    CTovMessageWindow unborn;
    HostMenu menu;
    EXPECT_EQ(menu.SetWindow(&window) + menu.Activate(CPoint(), 0), 0) << "nothing is loaded";
    for (int round = 1; round <= 2; ++round) {
        EXPECT_EQ(menu.LoadMenu(source), 1);
        EXPECT_EQ(menu.SetWindow(nullptr) + menu.SetWindow(&unborn), 0);
        EXPECT_EQ(menu.VerifyCommand(1) == ~0UL, round == 1) << "the window is that of the earlier menu";
        if (round == 1) {
            EXPECT_EQ(menu.Activate(CPoint(), 0) + menu.SetWindow(screen.owner = &window), 1);
        }
        EXPECT_EQ(menu.Activate(CPoint(1, 2), 0) + menu.Activate(POINT{3, 4}, TPM_RIGHTBUTTON), 2);
        EXPECT_EQ(menu.customized, round);
    }
    EXPECT_EQ(screen.shown, "a=1 " + properties);
    EXPECT_EQ(screen.tracked, (std::vector<int>{3, 4, TPM_RIGHTBUTTON}));
    for (ITovMenuPort* const port :
         {static_cast<ITovMenuPort*>(nullptr), static_cast<ITovMenuPort*>(&screen)}) {
        TovSetMenuPort(port);
        EXPECT_EQ(menu.Activate(CPoint(), 0), 0) << "no screen, and then a window that is dead";
        window.DestroyWindow();
    }
    EXPECT_EQ(menu.VerifyCommand(1), ~0UL);
}

TEST(MenuPopUp, CommandsAreFoundBehindThePopupsOpenedOnTheWay) {
    Window window;
    HostMenu menu;
    menu.LoadMenu(Menu("a=1 p( b=2 q( c=3 ) ) - r( d=4 ) e=5 f=2 l=0"));
    menu.SetWindow(&window);
    unsigned long const places[] = {~0UL, 0x00000, 0x10000, 0x20000, 0x30000, 0x30004, ~0UL};
    for (unsigned command = 0; command < 7; ++command)
        EXPECT_EQ(menu.VerifyCommand(command), places[command]) << command;
    EXPECT_EQ(menu.VerifyCommand(tovNoMenuItem), ~0UL);
}

class Target : public CCmdTarget {
    TOV_DYNAMIC(Target, CCmdTarget)
 public:
    std::string log;

 protected:
    void OnOne() { log += "one "; }
    int OnRange(unsigned id) {
        log += std::to_string(id) + ' ';
        return id != 12;
    }
    void OnUpdateOne(CCmdUI* state) { state->Enable(0), state->SetCheck(); }
    void OnUpdateRadio(CCmdUI* state) { state->SetRadio(); }

    CTovCommandTable const* GetCommandTable() const override {
        static constexpr CTovCommandHandler handlers[] = {
            TovCommand<Target, &Target::OnOne, &Target::OnUpdateOne>(1),
            TovCommand<Target, &Target::OnRange>(10, 12),
            TovCommand<Target, nullptr, &Target::OnUpdateRadio>(2),
        };
        static CTovCommandTable const table{CCmdTarget::GetCommandTable(), handlers};
        return &table;
    }
};

class Derived : public Target {
    TOV_DYNAMIC(Derived, Target)
    void OnOneAgain() { log += "derived "; }
    void OnUpdateLater(CCmdUI* state) { state->SetText("later"), state->ContinueRouting(); }

    CTovCommandTable const* GetCommandTable() const override {
        static constexpr auto handler = TovCommand<Derived, &Derived::OnOneAgain, &Derived::OnUpdateLater>(1);
        static CTovCommandTable const table{Target::GetCommandTable(), {&handler, 1}};
        return &table;
    }
};

TEST(Command, TheNearestHandlerDoesItAndTheStateReachesTheMenu) {
    Menu menu("a=1 b=2 c=10 d=12 e=13 f=65535");
    menu.SetMenuItemData(0, 5, MF_BYPOSITION);
    Derived target;
    for (unsigned i = 0; i < 6; ++i) {
        CTovMenuPopUp::CCmdUIPopUp state;
        state.m_nID = menu.GetMenuItemID(i);
        state.m_nIndex = i;
        EXPECT_EQ(target.OnCmdMsg(state.m_nID, CN_COMMAND, nullptr, nullptr), i == 0 || i == 2) << i;
        for (CMenu* const in : {static_cast<CMenu*>(nullptr), static_cast<CMenu*>(&menu)}) {
            state.m_pMenu = in;
            EXPECT_EQ(state.DoUpdate(&target, 1), i < 2 || i == 5) << i;
            EXPECT_EQ(state.m_bEnabled * 100 + state.m_nChecked * 10 + state.m_bRadio,
                      (i == 2 || i == 3) * 100 + (i < 2) * 10 + (i == 1));
        }
    }
    EXPECT_EQ(target.log, "derived 10 12 ") << "asking for a state does nothing";
    EXPECT_EQ(Told(menu), "later=1!+ b=2!+o c=10 d=12 e=13! f=65535 ");
    EXPECT_EQ(menu.GetMenuItemData(0, MF_BYPOSITION), 5u);
    CTovCommandInfo info;
    EXPECT_EQ(target.OnCmdMsg(12, CN_COMMAND, nullptr, &info), 1);
    EXPECT_EQ(info.target, &target);
}

TEST(MenuSlider, TakesThePlaceOfItsTokenAndGivesItBack) {
    char const* const rows[][2] = {{"a=1 p( %slider=7 ) b=2 ", "a=1 p( %SLIDER=7!+ ) b=2 "},
                                   {"%SLIDER( DUMMY=1 ) ", "%SLIDER=0!+ "}};
    for (auto const& [told, back] : rows) {
        Menu menu(told);
        CMenu empty;
        bool const isPopup = menu.GetSubMenu(0) != nullptr;
        CMenu& around = isPopup ? menu : *menu.GetSubMenu(1);
        around.EnableMenuItem(0, MF_BYPOSITION | MF_GRAYED);
        around.CheckMenuItem(0, MF_BYPOSITION | MF_CHECKED);
        around.SetMenuItemData(0, 42, MF_BYPOSITION);
        CTovMenuSlider slider;
        slider.SetCountSlides(2);
        EXPECT_EQ(slider.InsertIntoMenu(menu, "") + slider.InsertIntoMenu(menu, nullptr), 0);
        EXPECT_EQ(slider.InsertIntoMenu(empty, "s") + slider.RemoveFromMenu(menu), 0);
        EXPECT_EQ(slider.InsertIntoMenu(menu, nullptr, 26015), 1);
        EXPECT_NE(Told(menu).find("是(Y)( =48896# =48897# ) "), std::string::npos) << Told(menu);
        EXPECT_EQ(menu.GetMenuItemData(48897, MF_BYCOMMAND), 1u);
        EXPECT_EQ(slider.InsertIntoMenu(menu, "again") + slider.RemoveFromMenu(empty), 0);
        EXPECT_EQ(slider.RemoveFromMenu(menu), 1);
        EXPECT_EQ(Told(menu), back);
        EXPECT_EQ(around.GetMenuItemData(0, MF_BYPOSITION), 42u);
    }
    auto slider = std::make_unique<CTovMenuSlider>();
    std::unique_ptr<Menu> menu;
    for (int i = 0; i < 2; ++i) {
        menu = std::make_unique<Menu>("%SLIDER=0");  // the earlier menu ends before the slider
        EXPECT_EQ(slider->InsertIntoMenu(*menu, "s"), 1);
    }
    CMenu copy;
    copy.InsertCopies(*menu, 0);
    EXPECT_EQ(slider->RemoveFromMenu(copy), 0);
    for (unsigned const width : {16u, 0u}) {
        MEASUREITEMSTRUCT items[2];
        menu->GetSubMenu(0)->MeasureItem(&items[0]);
        copy.GetSubMenu(0)->MeasureItem(&items[1]);
        EXPECT_TRUE(items[0].itemWidth == width && items[1].itemWidth == width);
        slider.reset();  // before the menus
    }
}

TEST(MenuSlider, DrawsItsSlidesThroughTheirMenu) {
    Screen screen;
    Menu menu("%SLIDER=0");
    CTovMenuSlider slider;
    slider.SetCountSlides(2);
    slider.SetItemSize({20, 10});
    slider.SetColorMenu(0x0080FF);
    slider.SetSelectedSlide(1);
    slider.SetStyleSelection(CTovMenuSlider::eStyleSelectionFill);
    slider.InsertIntoMenu(menu, "s");
    CMenu& slides = *menu.GetSubMenu(0);
    MEASUREITEMSTRUCT size;
    slides.MeasureItem(&size);
    EXPECT_EQ(size.itemWidth * 100 + size.itemHeight, 2010u);
    char device = 0;
    DRAWITEMSTRUCT item;
    item.hDC = reinterpret_cast<CDC*>(&device);
    item.rcItem = {5, 5, 25, 15};
    for (item.itemData = 0; item.itemData < 2; ++item.itemData)
        slides.DrawItem(&item);
    std::vector<std::pair<CRect, unsigned long>> const fills = {
        {{5, 5, 25, 15}, 0x0080FF}, {{5, 5, 25, 15}, 0x0060BF},  // the second one is selected
        {{5, 5, 25, 6}, 0x00407F},  {{5, 14, 25, 15}, 0x00407F},
        {{5, 5, 6, 15}, 0x00407F},  {{24, 5, 25, 15}, 0x00407F}};
    EXPECT_EQ(screen.fills, fills);
}

}  // namespace
}  // namespace tov
