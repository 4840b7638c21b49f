// links: objects
#include <tov310/cmd_ui.h>
#include <tov310/menu.h>
#include <tov310/menu_popup.h>
#include <tov310/messages.h>
#include <tov310/resources.h>
#include <tov310/window.h>

#include "frame/menu_resource.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace tov {
namespace {

using Random = std::minstd_rand;

// A menu as plain data, and as a text for comparison: "-" separators, "name=id" commands, "name(...)" popups.
struct Node {
    enum class Kind { kCommand, kSeparator, kPopup } kind = Kind::kCommand;
    std::string text;
    unsigned id = 0;
    std::vector<Node> items;
};

std::string Told(std::vector<Node> const& nodes) {
    std::string told;
    for (Node const& node : nodes) {
        if (!told.empty()) told += ' ';
        if (node.kind == Node::Kind::kSeparator)
            told += '-';
        else if (node.kind == Node::Kind::kPopup)
            told += node.text + '(' + Told(node.items) + ')';
        else
            told += node.text + '=' + std::to_string(node.id);
    }
    return told;
}

std::vector<Node> Read(CMenu const& menu) {
    std::vector<Node> nodes;
    for (unsigned i = 0; i < menu.GetMenuItemCount(); ++i) {
        Node node;
        menu.GetMenuString(i, node.text, MF_BYPOSITION);
        if (CMenu const* const popup = menu.GetSubMenu(i)) {
            node.kind = Node::Kind::kPopup;
            node.items = Read(*popup);
        } else if ((menu.GetMenuState(i, MF_BYPOSITION) & MF_SEPARATOR) != 0) {
            node.kind = Node::Kind::kSeparator;
        } else {
            node.id = menu.GetMenuItemID(i);
        }
        nodes.push_back(node);
    }
    return nodes;
}

std::string Told(CMenu const& menu) {
    return Told(Read(menu));
}

void Fill(CMenu& menu, std::vector<Node> const& nodes) {
    for (Node const& node : nodes) {
        if (node.kind == Node::Kind::kSeparator) {
            menu.AppendMenu(MF_SEPARATOR);
        } else if (node.kind == Node::Kind::kPopup) {
            auto popup = std::make_unique<CMenu>();
            Fill(*popup, node.items);
            menu.AppendMenu(MF_POPUP, std::move(popup), node.text.c_str());
        } else {
            menu.AppendMenu(MF_STRING, node.id, node.text.c_str());
        }
    }
}

// Reads the form of Told, with single letters for names: "a(b=1 -) -".
std::vector<Node> Parse(char const*& at) {
    std::vector<Node> nodes;
    for (; *at != '\0' && *at != ')'; ++at) {
        if (*at == ' ') continue;
        Node node;
        if (*at == '-') {
            node.kind = Node::Kind::kSeparator;
        } else {
            while (*at != '(' && *at != '=')
                node.text += *at++;
            if (*at == '(') {
                node.kind = Node::Kind::kPopup;
                node.items = Parse(++at);
            } else {
                char* end = nullptr;
                node.id = static_cast<unsigned>(std::strtoul(at + 1, &end, 10));
                at = end - 1;
            }
        }
        nodes.push_back(node);
    }
    return nodes;
}

void Fill(CMenu& menu, char const* told) {
    Fill(menu, Parse(told));
}

std::vector<Node> RandomNodes(Random& random, int depth) {
    std::vector<Node> nodes(random() % 6);
    for (Node& node : nodes) {
        auto const dice = random() % 10;
        if (dice < 4) {
            node.kind = Node::Kind::kSeparator;
        } else if (dice < 7 && depth > 0) {
            node.kind = Node::Kind::kPopup;
            node.text = "p";
            node.items = RandomNodes(random, depth - 1);
        } else {
            node.text = "c";
            node.id = static_cast<unsigned>(random() % 1000 + 1);
        }
    }
    return nodes;
}

unsigned Count(std::vector<Node> const& nodes, Node::Kind kind) {
    unsigned count = 0;
    for (Node const& node : nodes)
        count += (node.kind == kind) + Count(node.items, kind);
    return count;
}

void MirrorPopups(std::vector<Node>& nodes) {
    for (Node& node : nodes)
        MirrorPopups(node.items);
    std::erase_if(nodes,
                  [](Node const& node) { return node.kind == Node::Kind::kPopup && node.items.empty(); });
}

void MirrorSeparators(std::vector<Node>& nodes) {
    auto const separator = [](Node const& node) { return node.kind == Node::Kind::kSeparator; };
    nodes.erase(std::unique(nodes.begin(), nodes.end(),
                            [&](Node const& a, Node const& b) { return separator(a) && separator(b); }),
                nodes.end());
    if (!nodes.empty() && separator(nodes.front())) nodes.erase(nodes.begin());
    if (!nodes.empty() && separator(nodes.back())) nodes.pop_back();
    for (Node& node : nodes)
        MirrorSeparators(node.items);
}

// A screen that notes what it was asked to show and to fill.
class Screen : public ITovMenuPort {
 public:
    Screen() { TovSetMenuPort(this); }
    ~Screen() override { TovSetMenuPort(nullptr); }

    int Track(CMenu& menu, POINT const& point, unsigned flags, CWnd& window) override {
        shown.push_back(Told(menu));
        at = point;
        with = flags;
        owner = window.GetSafeHwnd();
        return 1;
    }
    void FillRect(CDC*, CRect const& rect, unsigned long color) override { fills.emplace_back(rect, color); }

    std::vector<std::string> shown;
    POINT at;
    unsigned with = 0;
    HWND owner;
    std::vector<std::pair<CRect, unsigned long>> fills;
};

class Window : public CTovMessageWindow {
 public:
    Window() { Create(); }
};

class HostMenu : public CTovMenuPopUp {
 public:
    using CTovMenuPopUp::CTovMenuPopUp;
    using CTovMenuPopUp::LoadMenu;

    void CustomizeMenu() override {
        ++customized;
        TovMenuCustomize(this);
    }
    int customized = 0;
};

TEST(Menu, EntriesAreReachedByPositionAndByCommandInPopupsToo) {
    CMenu menu;
    Fill(menu, "a=1 p(b=2 q(c=3)) - d=4");
    CMenu& inner = *menu.GetSubMenu(1)->GetSubMenu(1);
    CString text;
    EXPECT_EQ(menu.GetMenuString(3, text, MF_BYCOMMAND), 1);
    EXPECT_EQ(text, "c");
    EXPECT_EQ(menu.GetMenuString(9, text, MF_BYCOMMAND), 0);
    EXPECT_EQ(text, "");

    EXPECT_EQ(menu.EnableMenuItem(3, MF_BYCOMMAND | MF_GRAYED | MF_DISABLED), MF_ENABLED);
    EXPECT_EQ(menu.CheckMenuItem(3, MF_BYCOMMAND | MF_CHECKED), MF_UNCHECKED);
    EXPECT_EQ(inner.GetMenuState(0, MF_BYPOSITION), MF_GRAYED | MF_DISABLED | MF_CHECKED);
    EXPECT_EQ(menu.CheckMenuItem(3, MF_BYCOMMAND | MF_UNCHECKED), MF_CHECKED);
    EXPECT_EQ(menu.EnableMenuItem(3, MF_BYCOMMAND | MF_ENABLED), MF_GRAYED | MF_DISABLED);
    EXPECT_EQ(menu.EnableMenuItem(9, MF_BYCOMMAND), tovNoMenuItem);
    EXPECT_EQ(menu.CheckMenuItem(4, MF_BYPOSITION), tovNoMenuItem);
    EXPECT_EQ(menu.GetMenuState(1, MF_BYPOSITION), MF_POPUP | 2u << 8);
    EXPECT_EQ(menu.GetMenuItemID(1), tovNoMenuItem);
    EXPECT_EQ(menu.GetMenuItemID(2), 0u);
    EXPECT_EQ(menu.GetMenuItemID(4), tovNoMenuItem);

    EXPECT_EQ(menu.InsertMenu(3, MF_BYCOMMAND, 5, "e"), 1);
    EXPECT_EQ(menu.InsertMenu(9, MF_BYCOMMAND, 6, "f"), 0);
    EXPECT_EQ(menu.InsertMenu(99, MF_BYPOSITION, 7, nullptr), 1);
    EXPECT_EQ(menu.ModifyMenu(2, MF_BYCOMMAND | MF_SEPARATOR), 1);
    EXPECT_EQ(menu.DeleteMenu(9, MF_BYCOMMAND), 0);
    EXPECT_EQ(menu.DeleteMenu(1, MF_BYCOMMAND), 1);
    EXPECT_EQ(Told(menu), "p(- q(e=5 c=3)) - d=4 =7");

    EXPECT_EQ(menu.SetMenuItemData(3, 42, MF_BYCOMMAND), 1);
    EXPECT_EQ(inner.GetMenuItemData(1, MF_BYPOSITION), 42u);
    EXPECT_EQ(menu.SetMenuItemData(9, 42, MF_BYCOMMAND), 0);
}

TEST(Menu, OneOfARowIsChosen) {
    CMenu menu;
    Fill(menu, "a=1 b=2 - c=3 d=4");
    EXPECT_EQ(menu.CheckMenuRadioItem(1, 3, 2, MF_BYCOMMAND), 1);
    EXPECT_EQ(menu.CheckMenuRadioItem(1, 3, 3, MF_BYCOMMAND), 1);
    EXPECT_EQ(menu.CheckMenuRadioItem(1, 3, 4, MF_BYCOMMAND), 0);
    EXPECT_EQ(menu.CheckMenuRadioItem(0, 2, 2, MF_BYPOSITION), 0) << "a separator";
    unsigned const states[] = {0, 0, MF_SEPARATOR, MF_CHECKED | MF_RADIOCHECK, 0};
    for (unsigned i = 0; i < 5; ++i)
        EXPECT_EQ(menu.GetMenuState(i, MF_BYPOSITION), states[i]) << i;
}

TEST(Menu, APopupBelongsToOneMenuAndNeverToItself) {
    auto root = std::make_unique<CMenu>();
    Fill(*root, "p(q())");
    CMenu& inner = *root->GetSubMenu(0)->GetSubMenu(0);
    std::unique_ptr<CMenu> taken;
    EXPECT_EQ(root->RemoveMenu(7, MF_BYPOSITION, &taken), 0);
    EXPECT_EQ(root->RemoveMenu(0, MF_BYPOSITION, &taken), 1);
    ASSERT_NE(taken, nullptr);
    EXPECT_EQ(Told(*taken), "q()");
    EXPECT_EQ(root->GetMenuItemCount(), 0u);
    EXPECT_EQ(inner.TakeEntries(*taken), 0);
    // A menu that stood in another is free of it: this would otherwise be a ring.
    EXPECT_EQ(taken->AppendMenu(MF_POPUP, std::move(root), "r"), 1);
    EXPECT_EQ(taken->AppendMenu(MF_POPUP, std::unique_ptr<CMenu>(), "n"), 0);
    EXPECT_EQ(Told(*taken), "q() r()");
    EXPECT_EQ(taken->TakeEntries(*taken->GetSubMenu(0)), 1);
    EXPECT_EQ(Told(*taken), "");
    CMenu& alone = *taken;
    EXPECT_EQ(alone.AppendMenu(MF_POPUP, std::move(taken), "self"), 0);
}

TEST(Menu, TidyingExamples) {
    struct {
        char const* menu;
        unsigned popups;
        char const* withoutPopups;
        unsigned separators;
        char const* withoutBoth;
    } const rows[] = {
        {"", 0, "", 0, ""},
        {"- a=1 - - b=2 -", 0, "- a=1 - - b=2 -", 3, "a=1 - b=2"},
        {"- - -", 0, "- - -", 3, ""},
        {"p() p(p() p(p()))", 5, "", 0, ""},
        {"a=1 - p() - b=2", 1, "a=1 - - b=2", 1, "a=1 - b=2"},
        {"p(- a=1 -) -", 0, "p(- a=1 -) -", 3, "p(a=1)"},
        {"a=1 p(-)", 0, "a=1 p(-)", 1, "a=1 p()"},
    };
    for (auto const& row : rows) {
        CMenu menu;
        Fill(menu, row.menu);
        EXPECT_EQ(TovMenuCheckEmptyPopupMenus(&menu), row.popups) << row.menu;
        EXPECT_EQ(Told(menu), row.withoutPopups);
        EXPECT_EQ(TovMenuCheckSeparators(&menu), row.separators) << row.menu;
        EXPECT_EQ(Told(menu), row.withoutBoth);
    }
    EXPECT_EQ(TovMenuCheckEmptyPopupMenus(nullptr) + TovMenuCheckSeparators(nullptr), 0u);
}

TEST(Menu, RandomTreesAreTidiedAsTheirMirror) {
    Random random(680);
    Screen screen;
    Window window;
    for (int round = 0; round < 3000; ++round) {
        std::vector<Node> mirror = RandomNodes(random, 4);
        CMenu menu;
        Fill(menu, mirror);
        ASSERT_EQ(Told(menu), Told(mirror));
        HostMenu popup;
        popup.LoadMenu(menu);
        popup.SetWindow(&window);
        popup.Activate(CPoint(), 0);

        std::string before;
        do {
            before = Told(mirror);
            unsigned const popups = Count(mirror, Node::Kind::kPopup);
            MirrorPopups(mirror);
            ASSERT_EQ(TovMenuCheckEmptyPopupMenus(&menu), popups - Count(mirror, Node::Kind::kPopup))
                << before;
            ASSERT_EQ(Told(menu), Told(mirror)) << before;
            unsigned const separators = Count(mirror, Node::Kind::kSeparator);
            MirrorSeparators(mirror);
            ASSERT_EQ(TovMenuCheckSeparators(&menu), separators - Count(mirror, Node::Kind::kSeparator))
                << before;
            ASSERT_EQ(Told(menu), Told(mirror)) << before;
        } while (Told(mirror) != before);
        ASSERT_EQ(screen.shown.back(), before) << "Activate tidies until nothing is left to do";
    }
}

TEST(Menu, CopiesHoldTheWholeTreeAndStandApart) {
    CMenu from;
    Fill(from, "a=1 p(b=2 - q()) -");
    from.CheckMenuItem(2, MF_BYCOMMAND | MF_CHECKED);
    struct {
        unsigned position;
        char const* told;
    } const rows[] = {
        {0, "a=1 p(b=2 - q()) - x=8 y=9"},          {1, "x=8 a=1 p(b=2 - q()) - y=9"},
        {2, "x=8 y=9 a=1 p(b=2 - q()) -"},          {7, "x=8 y=9 a=1 p(b=2 - q()) -"},
        {0xFFFFFFFE, "x=8 y=9 a=1 p(b=2 - q()) -"}, {0xFFFFFFFF, "x=8 y=9 a=1 p(b=2 - q()) -"},
    };
    for (auto const& row : rows) {
        CMenu to;
        Fill(to, "x=8 y=9");
        EXPECT_EQ(TovMenuCopyRecursive(&from, &to, row.position), 3u);
        EXPECT_EQ(Told(to), row.told);
        EXPECT_EQ(to.GetMenuState(2, MF_BYCOMMAND), MF_CHECKED);
        to.DeleteMenu(2, MF_BYCOMMAND);
        EXPECT_EQ(Told(from), "a=1 p(b=2 - q()) -");
    }
    EXPECT_EQ(TovMenuCopyRecursive(&from, &from, 1), 3u) << "into itself";
    EXPECT_EQ(Told(from), "a=1 a=1 p(b=2 - q()) - p(b=2 - q()) -");
    EXPECT_EQ(TovMenuCopyRecursive(&from, from.GetSubMenu(2)->GetSubMenu(2), 0), 6u) << "into its popup";
    EXPECT_EQ(from.GetSubMenu(2)->GetSubMenu(2)->GetMenuItemCount(), 6u);
    EXPECT_EQ(TovMenuCopyRecursive(nullptr, &from, 0) + TovMenuCopyRecursive(&from, nullptr, 0), 0u);

    std::string longText;
    for (int i = 0; i < 1025; ++i)
        longText += "字";
    CMenu wide;
    CMenu cut;
    wide.AppendMenu(MF_POPUP, std::make_unique<CMenu>(), longText.c_str());
    wide.AppendMenu(MF_STRING, 1, longText.c_str());
    TovMenuCopyRecursive(&wide, &cut, 0);
    CString text;
    EXPECT_EQ(cut.GetMenuString(0, text, MF_BYPOSITION), 3 * 1024);
    EXPECT_EQ(cut.GetMenuString(1, text, MF_BYPOSITION), 3 * 1025);
}

TEST(Menu, SeparatorsAreNoPopupsAndNoCommands) {
    CMenu menu;
    Fill(menu, "a=0 - p(-)");
    int const separator[] = {0, 1, 0, 0};
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(TovMenuIsSeparator(&menu, i), separator[i]) << i;
    EXPECT_EQ(TovMenuIsSeparator(nullptr, 0), 0);
}

TEST(Menu, TokensAreReplacedInEveryPlace) {
    std::string const properties = "属性...\tAlt+Enter(&R)=" + std::to_string(WM_TOV_PROPERTIES);
    struct {
        char const* menu;
        std::string told;
    } const rows[] = {
        {"%PROPERTIES=0 a=1", properties + " a=1"},
        {"a=1 %properties=7 b=2", "a=1 " + properties + " b=2"},
        {"a=1 %Properties(DUMMY=0)", "a=1 " + properties},
        {"%PROPERTIES=0 p(q(%PROPERTIES=0))", properties + " p(q(" + properties + "))"},
        {"%PROPERTIE=1 %PROPERTIESS=2 - p()", ""},
    };
    for (auto const& row : rows) {
        CMenu menu;
        Fill(menu, row.menu);
        EXPECT_EQ(TovMenuCustomize(&menu), !row.told.empty()) << row.menu;
        EXPECT_EQ(Told(menu), row.told.empty() ? row.menu : row.told);
    }
    EXPECT_EQ(TovMenuCustomize(nullptr), 0);
    CMenu menu;
    Fill(menu, "a=1");
    TovMenuReplaceItem(&menu, 1, nullptr, 26046, 5);
    TovMenuReplaceItem(nullptr, 0, nullptr, 26046, 5);
    EXPECT_EQ(Told(menu), "a=1");
}

TEST(MenuResource, FormsAndFaults) {
    std::string deep = "[]";
    for (int i = 0; i < 16; ++i)
        deep = R"([{"text": "p", "items": )" + deep + "}]";
    struct {
        std::string json;
        char const* told;  // null for a fault
    } const rows[] = {
        {R"([])", ""},
        {R"([{"text": "a", "id": 65535, "checked": true}, {"separator": true}, {"text": ""}])",
         "a=65535 - =0"},
        {R"([{"text": "p", "grayed": true, "items": [{"text": "字", "id": 1}]}])", "p(字=1)"},
        {"", nullptr},
        {"{}", nullptr},
        {"[", nullptr},
        {"[] x", nullptr},
        {R"([{}])", nullptr},
        {R"([[]])", nullptr},
        {R"([{"text": 1}])", nullptr},
        {R"([{"id": 1}])", nullptr},
        {R"([{"text": "a", "id": 65536}])", nullptr},
        {R"([{"text": "a", "id": -1}])", nullptr},
        {R"([{"text": "a", "id": "1"}])", nullptr},
        {R"([{"text": "a", "id": 1.0}])", nullptr},
        {R"([{"text": "a", "check": true}])", nullptr},
        {R"([{"text": "a", "checked": false}])", nullptr},
        {R"([{"text": "a", "text": "b"}])", nullptr},
        {R"([{"text": "a\u0000b"}])", nullptr},
        {R"([{"text": "p", "items": {}}])", nullptr},
        {R"([{"text": "p", "items": [], "id": 1}])", nullptr},
        {R"([{"separator": true, "text": "a"}])", nullptr},
        {R"([{"separator": false}])", nullptr},
        {"[{\"text\": \"\xff\"}]", nullptr},
        {deep, "p(p(p(p(p(p(p(p(p(p(p(p(p(p(p(p())))))))))))))))"},
        {R"([{"text": "p", "items": )" + deep + "}]", nullptr},
        {std::string(100'000, '['), nullptr},
    };
    for (auto const& row : rows) {
        CMenu menu;
        ASSERT_EQ(ParseMenu(row.json, menu), row.told != nullptr) << row.json.substr(0, 200);
        if (row.told == nullptr) continue;
        EXPECT_EQ(Told(menu), row.told);
    }
}

TEST(MenuResource, OfTheHostsModuleAndOfTheLibrary) {
    test::TemporaryFolder const folder;
    std::filesystem::create_directory(folder.path() / "menus");
    std::ofstream(folder.File("strings.json")) << "{}";
    std::ofstream(folder.File("menus/7.json")) << R"([{"text": "p", "items": [{"text": "a", "id": 1}]}])";
    std::ofstream(folder.File("menus/named.json")) << R"([{"text": "a", "id": 2}])";
    std::ofstream(folder.File("menus/8.json")) << R"([{"text": )";
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    CMenu menu;
    EXPECT_EQ(menu.LoadMenu(module, 7), 1);
    EXPECT_EQ(Told(menu), "p(a=1)");
    EXPECT_EQ(menu.LoadMenu(module, "named"), 1);
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    EXPECT_EQ(menu.LoadMenu(module, 8), 0);
    EXPECT_EQ(menu.LoadMenu(module, 9), 0);
    EXPECT_EQ(menu.LoadMenu(module, nullptr), 0);
    EXPECT_EQ(menu.LoadMenu(nullptr, 7), 0);
    CTovMenuPopUp popup;
    EXPECT_EQ(popup.LoadMenu(module, 7), 1);
    EXPECT_EQ(popup.LoadMenu(module, 8), 0);
    EXPECT_EQ(popup.LoadMenu(module, "named"), 0) << "its first entry is no popup";
    EXPECT_EQ(testing::internal::GetCapturedStderr() + testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(Told(menu), "a=2");
    EXPECT_EQ(Told(popup), "a=1") << "the earlier menu stays";
    EXPECT_EQ(menu.LoadMenu(module, 26269), 1) << "the library's own";

    for (auto const& language : std::filesystem::directory_iterator(TOV_TEST_SOURCE_DIR "/res")) {
        for (auto const& file : std::filesystem::directory_iterator(language.path() / "menus")) {
            std::ifstream stream(file.path());
            std::string const json{std::istreambuf_iterator<char>(stream), {}};
            CMenu own;
            EXPECT_TRUE(ParseMenu(json, own)) << file.path();
            CMenu builtIn;
            ASSERT_EQ(builtIn.LoadMenu(nullptr, file.path().stem().c_str()), 1) << file.path();
            // Translations differ in their words only.
            std::vector<Node> nodes[] = {Read(own), Read(builtIn)};
            auto const wordless = [](auto const& self, std::vector<Node>& tree) -> void {
                for (Node& node : tree) {
                    if (!node.text.starts_with('%')) node.text.clear();
                    self(self, node.items);
                }
            };
            for (auto& tree : nodes)
                wordless(wordless, tree);
            EXPECT_EQ(Told(nodes[0]), Told(nodes[1])) << file.path();
        }
    }
}

TEST(MenuPopUp, ShowsWhatIsLoadedAndBoundAndCustomisesOnce) {
    CMenu source;
    Fill(source, "- a=1 %PROPERTIES=0 p(- q()) -");
    Screen screen;
    Window window;
    HostMenu menu;
    EXPECT_EQ(menu.SetWindow(&window), 0) << "nothing is loaded";
    EXPECT_EQ(menu.Activate(CPoint(1, 2), 0), 0);
    EXPECT_EQ(menu.VerifyCommand(1), ~0UL);
    EXPECT_EQ(menu.LoadMenu(source), 1);
    EXPECT_EQ(menu.Activate(CPoint(1, 2), 0), 0) << "no window";
    EXPECT_EQ(menu.VerifyCommand(1), ~0UL);
    CTovMessageWindow unborn;
    EXPECT_EQ(menu.SetWindow(nullptr) + menu.SetWindow(&unborn), 0);
    EXPECT_EQ(menu.customized, 0);

    EXPECT_EQ(menu.SetWindow(&window), 1);
    EXPECT_EQ(menu.Activate(CPoint(1, 2), TPM_RIGHTBUTTON), 1);
    EXPECT_EQ(menu.Activate(POINT{3, 4}, TPM_RIGHTBUTTON), 1);
    EXPECT_EQ(menu.customized, 1);
    std::string const tidy = "a=1 属性...\tAlt+Enter(&R)=" + std::to_string(WM_TOV_PROPERTIES);
    EXPECT_EQ(screen.shown, (std::vector<std::string>{tidy, tidy}));
    EXPECT_EQ(screen.at, (POINT{3, 4}));
    EXPECT_EQ(screen.with, TPM_RIGHTBUTTON);
    EXPECT_EQ(screen.owner, window.GetSafeHwnd());

    EXPECT_EQ(menu.LoadMenu(source), 1);
    EXPECT_EQ(menu.Activate(CPoint(), 0), 0) << "a new menu has no window";
    menu.SetWindow(&window);
    EXPECT_EQ(menu.Activate(CPoint(), 0), 1);
    EXPECT_EQ(menu.customized, 2);
    window.DestroyWindow();
    EXPECT_EQ(menu.Activate(CPoint(), 0), 0) << "the window is dead";

    Window another;
    HostMenu edit(nullptr, 26269, &another);
    TovSetMenuPort(nullptr);
    EXPECT_EQ(edit.Activate(CPoint(), 0), 0) << "no screen";
    EXPECT_EQ(Told(edit).substr(0, 25), "%INSERT(DUMMY=0) - %UNDO(");
}

TEST(MenuPopUp, CommandsAreFoundBehindThePopupsOpenedOnTheWay) {
    CMenu source;
    Fill(source, "a=1 p(b=2 q(c=3)) - r(d=4) e=5 f=2 l=0");
    Window window;
    HostMenu menu;
    menu.LoadMenu(source);
    menu.SetWindow(&window);
    struct {
        unsigned command;
        unsigned long place;
    } const rows[] = {{1, 0x00000}, {2, 0x10000}, {3, 0x20000}, {4, 0x30000},
                      {5, 0x30004}, {9, ~0UL},    {0, ~0UL},    {0xFFFFFFFF, ~0UL}};
    for (auto const& row : rows)
        EXPECT_EQ(menu.VerifyCommand(row.command), row.place) << row.command;
}

class Target : public CCmdTarget {
    TOV_DYNAMIC(Target, CCmdTarget)
 public:
    std::string log;
    int busy = 0;

 protected:
    void OnOne() { log += "one "; }
    int OnRange(unsigned id) {
        log += std::to_string(id) + ' ';
        return id != 12;
    }
    void OnUpdateOne(CCmdUI* state) {
        state->Enable(busy == 0);
        state->SetCheck(busy);
    }
    void OnUpdateRadio(CCmdUI* state) { state->SetRadio(1); }

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
    void OnUpdateLater(CCmdUI* state) {
        state->SetText("later");
        state->ContinueRouting();
    }

    CTovCommandTable const* GetCommandTable() const override {
        static constexpr CTovCommandHandler handlers[] = {
            TovCommand<Derived, &Derived::OnOneAgain, &Derived::OnUpdateLater>(1),
        };
        static CTovCommandTable const table{Target::GetCommandTable(), handlers};
        return &table;
    }
};

TEST(Command, TheNearestHandlerDoesItAndMayLetItGoOn) {
    Derived target;
    for (unsigned const id : {1u, 10u, 11u})
        EXPECT_EQ(target.OnCmdMsg(id, CN_COMMAND, nullptr, nullptr), 1) << id;
    EXPECT_EQ(target.OnCmdMsg(12, CN_COMMAND, nullptr, nullptr), 0);
    EXPECT_EQ(target.OnCmdMsg(13, CN_COMMAND, nullptr, nullptr), 0);
    EXPECT_EQ(target.OnCmdMsg(2, CN_COMMAND, nullptr, nullptr), 0) << "only its state is told";
    EXPECT_EQ(target.log, "derived 10 11 12 ");
    CTovCommandInfo info;
    EXPECT_EQ(target.OnCmdMsg(12, CN_COMMAND, nullptr, &info), 1);
    EXPECT_EQ(info.target, &target);
    EXPECT_EQ(target.log, "derived 10 11 12 ") << "asking does nothing";
}

TEST(Command, StatesReachTheMenu) {
    CMenu menu;
    Fill(menu, "a=1 b=2 c=12 d=99");
    menu.SetMenuItemData(0, 5, MF_BYPOSITION);
    Derived target;
    target.busy = 1;
    int const found[] = {1, 1, 0, 0};
    unsigned const states[] = {MF_GRAYED | MF_DISABLED | MF_CHECKED,
                               MF_CHECKED | MF_RADIOCHECK | MF_GRAYED | MF_DISABLED, MF_ENABLED,
                               MF_GRAYED | MF_DISABLED};
    for (unsigned i = 0; i < 4; ++i) {
        CCmdUI state;
        state.m_nID = menu.GetMenuItemID(i);
        state.m_pMenu = &menu;
        state.m_nIndex = i;
        EXPECT_EQ(state.DoUpdate(&target, 1), found[i]) << i;
        EXPECT_EQ(menu.GetMenuState(i, MF_BYPOSITION), states[i]) << i;
    }
    EXPECT_EQ(Told(menu), "later=1 b=2 c=12 d=99");
    EXPECT_EQ(menu.GetMenuItemData(0, MF_BYPOSITION), 5u);
}

TEST(Command, StatesAreCollectedWithoutAMenu) {
    Target target;
    CTovMenuPopUp::CCmdUIPopUp one;
    one.m_nID = 1;
    EXPECT_EQ(one.DoUpdate(&target, 1), 1);
    EXPECT_EQ(one.m_bEnabled * 100 + one.m_nChecked * 10 + one.m_bRadio, 100);
    CTovMenuPopUp::CCmdUIPopUp radio;
    radio.m_nID = 2;
    EXPECT_EQ(radio.DoUpdate(&target, 1), 1);
    EXPECT_EQ(radio.m_bEnabled * 100 + radio.m_nChecked * 10 + radio.m_bRadio, 11) << "nobody would do it";
    for (unsigned const none : {0u, 0xFFFFu}) {
        radio.m_nID = none;
        EXPECT_EQ(radio.DoUpdate(nullptr, 1), 1) << none;
    }
}

TEST(MenuSlider, TakesThePlaceOfItsTokenAndGivesItBack) {
    struct {
        char const* told;
        char const* back;
    } const rows[] = {
        {"a=1 %SLIDER=7 b=2", "a=1 %SLIDER=7 b=2"},
        {"a=1 p(%slider=7) b=2", "a=1 p(%SLIDER=7) b=2"},
        {"%SLIDER(DUMMY=1)", "%SLIDER=0"},
    };
    for (auto const& [told, back] : rows) {
        CMenu menu;
        CMenu empty;
        Fill(menu, told);
        CTovMenuSlider slider;
        slider.SetCountSlides(2);
        EXPECT_EQ(slider.InsertIntoMenu(menu, "") + slider.InsertIntoMenu(menu, nullptr), 0);
        EXPECT_EQ(slider.InsertIntoMenu(empty, "s") + slider.RemoveFromMenu(menu), 0);
        EXPECT_EQ(slider.InsertIntoMenu(menu, nullptr, 26015), 1);
        EXPECT_NE(Told(menu).find("是(Y)(=48896 =48897)"), std::string::npos) << Told(menu);
        EXPECT_EQ(menu.GetMenuState(48897, MF_BYCOMMAND), MF_OWNERDRAW);
        EXPECT_EQ(menu.GetMenuItemData(48897, MF_BYCOMMAND), 1u);
        EXPECT_EQ(slider.InsertIntoMenu(menu, "again"), 0);
        EXPECT_EQ(slider.RemoveFromMenu(empty), 0);
        EXPECT_EQ(slider.RemoveFromMenu(menu), 1);
        EXPECT_EQ(Told(menu), back);
    }
    auto menu = std::make_unique<CMenu>();
    Fill(*menu, "%SLIDER=0");
    auto slider = std::make_unique<CTovMenuSlider>();
    EXPECT_EQ(slider->InsertIntoMenu(*menu, "s"), 1);
    menu = std::make_unique<CMenu>();  // the menu ends first
    Fill(*menu, "%SLIDER=0");
    EXPECT_EQ(slider->RemoveFromMenu(*menu), 0);
    slider->SetCountSlides(1);
    EXPECT_EQ(slider->InsertIntoMenu(*menu, "s"), 1);
    slider.reset();  // the slider ends first
    MEASUREITEMSTRUCT item;
    menu->GetSubMenu(0)->MeasureItem(&item);
    EXPECT_EQ(item.itemWidth, 0u);
}

TEST(MenuSlider, DrawsItsSlidesThroughTheirMenu) {
    Screen screen;
    CMenu menu;
    Fill(menu, "%SLIDER=0");
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
    EXPECT_EQ(size.itemWidth, 20u);
    EXPECT_EQ(size.itemHeight, 10u);

    char device = 0;
    DRAWITEMSTRUCT item;
    item.hDC = reinterpret_cast<CDC*>(&device);
    item.rcItem = {5, 5, 25, 15};
    slides.DrawItem(&item);
    ASSERT_EQ(screen.fills.size(), 1u);
    EXPECT_EQ(screen.fills[0], (std::pair{CRect{5, 5, 25, 15}, 0x0080FFUL}));
    item.itemData = 1;
    slides.DrawItem(&item);
    ASSERT_EQ(screen.fills.size(), 6u) << "the slide and four sides";
    EXPECT_EQ(screen.fills[1], (std::pair{CRect{5, 5, 25, 15}, 0x0060BFUL}));
    EXPECT_EQ(screen.fills[5], (std::pair{CRect{24, 5, 25, 15}, 0x00407FUL}));
}

}  // namespace
}  // namespace tov
