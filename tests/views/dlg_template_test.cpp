#include "support/dlg_bytes.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/temporary_folder.h"

#include <tov310/dialog_template.h>
#include <tov310/dlg_template.h>
#include <tov310/styles.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>

namespace tov {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// A block of exactly that size, so that a read behind it is seen by the sanitizer.
struct Block {
    explicit Block(std::string_view text) : size(text.size()), bytes(std::make_unique<char[]>(size)) {
        text.copy(bytes.get(), size);
    }
    DLGTEMPLATE const* Dialog() const { return reinterpret_cast<DLGTEMPLATE const*>(bytes.get()); }
    std::string_view View() const { return {bytes.get(), size}; }
    std::size_t size;
    std::unique_ptr<char[]> bytes;
};

test::DlgName RandomName(std::mt19937& random) {
    if (random() % 3 == 0) return static_cast<std::uint16_t>(0x80 + random() % 6);
    return std::u16string(random() % 9, static_cast<char16_t>(u'a' + random() % 0x4000));
}

test::DlgDialog RandomDialog(std::mt19937& random) {
    test::DlgDialog dialog;
    dialog.style = static_cast<std::uint32_t>(random()) & ~0x40u;
    dialog.menu = RandomName(random);
    dialog.className = RandomName(random);
    dialog.title.assign(random() % 5, u'字');
    dialog.face.assign(random() % 4, u'f');
    dialog.controls.resize(random() % 6);
    for (test::DlgControl& control : dialog.controls) {
        control.className = RandomName(random);
        control.title = RandomName(random);
        control.id = static_cast<std::uint32_t>(random() % 0x10000);
        control.extra.assign(random() % 7, 'x');
    }
    return dialog;
}

TEST(DlgTemplate, WalksWhatWasWrittenAndNothingElse) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        bool const isEx = round % 2 != 0;
        test::DlgWriter const written(RandomDialog(random), isEx);
        Block const block(written.bytes + std::string(random() % 5, '\xFF'));
        CTovDlgTemplate dialog(block.View());
        EXPECT_EQ(CTovDlgTemplate::IsDialogEx(block.Dialog(), block.size), isEx);
        unsigned const count = CTovDlgTemplate::GetTemplateItemCount(block.Dialog(), block.size);
        ASSERT_EQ(count, written.offsets.size());
        ASSERT_EQ(dialog.GetTemplateSize(), written.bytes.size());
        DLGITEMTEMPLATE const* item = dialog.FindFirstDlgItem();
        for (std::size_t const offset : written.offsets) {
            ASSERT_EQ(reinterpret_cast<char const*>(item), block.bytes.get() + offset);
            item = dialog.FindNextDlgItem(item);
        }
        EXPECT_EQ(item, nullptr);
        ASSERT_NE(dialog.CopyTemplate(), nullptr);
        EXPECT_EQ(dialog.Copy(), written.bytes);
        dialog.CopyStyle(0x12345678);
        EXPECT_EQ(dialog.CopyStyle(), 0x12345678u);
        EXPECT_EQ(dialog.Copy().substr(isEx ? 16 : 4), std::string_view(written.bytes).substr(isEx ? 16 : 4));

        // Cut anywhere before the padding of its end it is damaged, and told to be.
        for (std::size_t size = 0; size + 4 < written.bytes.size(); ++size) {
            Block const cut(std::string_view(written.bytes).substr(0, size));
            CTovDlgTemplate part(cut.View());
            ASSERT_EQ(part.GetTemplateSize(), 0u) << size;
            ASSERT_EQ(part.CopyTemplate(), nullptr);
            for (item = part.FindFirstDlgItem(); item != nullptr; item = part.FindNextDlgItem(item)) {
            }
            CTovDialogTemplate model;
            ASSERT_EQ(TovReadDialogTemplate("d", cut.View(), {}, model), 0);
            EXPECT_THAT(test::TakeFaults(), Contains(HasSubstr("d: ends within ")));
        }
        // With some bytes of chance in it nobody reads outside either.
        for (int i = 0; i < 20; ++i)
            block.bytes[random() % block.size] = static_cast<char>(random());
        for (item = dialog.FindFirstDlgItem(); item != nullptr; item = dialog.FindNextDlgItem(item)) {
        }
        CTovDialogTemplate model;
        TovReadDialogTemplate("d", block.View(), block.View(), model);
        test::TakeFaults();
    }
    CTovDlgTemplate none;
    EXPECT_EQ(none.CopyTemplate(), nullptr);
    EXPECT_EQ(none.FindFirstDlgItem(), nullptr);
    EXPECT_EQ(none.FindNextDlgItem(nullptr), nullptr);
    EXPECT_EQ(CTovDlgTemplate::GetTemplateSize(nullptr, 100), 0u);
}

// A dialog with a control of every kind, and what it is here.
struct Kind {
    test::DlgControl control;
    char const* className;
    unsigned long style;
};
constexpr unsigned long shown = WS_CHILD | WS_VISIBLE;
std::vector<Kind> const kinds = {
    {{std::uint16_t{0x82}, u"&Name:", 0xFFFF, 0x5000000B, 7, 9, 40, 10}, "Static", shown | SS_LEFT},
    {{std::uint16_t{0x81}, u"\xD83D\xDCCD站", 1001, 0x50010080, 50, 7, 113, 14, 0x200},
     "Edit",
     shown | WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL},
    {{u"BUTTON", u"r", 1002, 0x50010004}, "Button", shown | WS_TABSTOP | BS_AUTORADIOBUTTON},
    {{std::uint16_t{0x80}, u"c", 1003, 0x40010002}, "Button", WS_CHILD | WS_TABSTOP | BS_AUTOCHECKBOX},
    {{std::uint16_t{0x80}, u"OK", 1, 0x50010001}, "Button", shown | WS_TABSTOP | BS_DEFPUSHBUTTON},
    {{std::uint16_t{0x82}, std::uint16_t{33}, 1004, 0x50000003}, "Static", shown | SS_ICON},
    {{std::uint16_t{0x82}, u"frame", 1005, 0x50000012}, "Button", shown | BS_GROUPBOX},
    {{std::uint16_t{0x82}, u"", 1006, 0x50000011}, "Static", shown | SS_ETCHEDHORZ},
    {{std::uint16_t{0x85}, u"", 1007, 0x50210103, 1, 2, 3, 99},
     "ComboBox",
     shown | WS_VSCROLL | WS_TABSTOP | CBS_SORT | CBS_DROPDOWNLIST},
    {{std::uint16_t{0x83}, u"", 1008, 0x50000008}, "ListBox", shown | 8 | LBS_EXTENDEDSEL},
    {{u"msctls_TrackBar32", u"", 1009, 0x50000002, -32768, -1, -5, 5}, "Slider", shown | TBS_VERT},
    {{u"SysDateTimePick32", u"", 1010}, "DateTime", shown},
    {{u"HostsOwn", u"", 1011, 0x10000000}, "HostsOwn", shown},
};

test::DlgDialog EveryKind() {
    test::DlgDialog dialog{.title = u"新建", .style = 0x80C80080, .cx = 170, .cy = 62, .face = u"Song"};
    dialog.exStyle = 0x400;
    for (Kind const& kind : kinds)
        dialog.controls.push_back(kind.control);
    dialog.controls[1].extra = "own";
    return dialog;
}

TEST(DlgTemplate, IsReadAsTheDialogThatItWas) {
    for (bool const isEx : {false, true}) {
        // The bytes are kept, so that no later change of writer and reader together goes by unseen.
        std::string const file = TOV_TEST_SOURCE_DIR "/tests/views/dialogs_module/dialogs/" +
                                 std::string(isEx ? "extended.dlg" : "plain.dlg");
        std::string const golden = test::GetFile(file);
        EXPECT_EQ(test::DlgWriter(EveryKind(), isEx).bytes, golden);
        CTovDialogTemplate dialog;
        ASSERT_EQ(TovReadDialogTemplate("d", golden, {}, dialog), 1);
        EXPECT_EQ(dialog.title, "新建");
        EXPECT_FALSE(dialog.hasPlace);
        EXPECT_EQ(dialog.rect, (CRect{0, 0, 170, 62}));
        EXPECT_EQ(dialog.style, 0x80C80080u | 0x40 | DS_CONTEXTHELP);
        EXPECT_EQ(dialog.fontFamily, "Song");
        EXPECT_EQ(dialog.fontSize, 8);
        ASSERT_EQ(dialog.controls.size(), kinds.size());
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            EXPECT_EQ(dialog.controls[i].className, kinds[i].className) << i;
            EXPECT_EQ(dialog.controls[i].style, kinds[i].style) << i;
            EXPECT_EQ(dialog.controls[i].id, i == 0 ? 0 : kinds[i].control.id);
        }
        EXPECT_EQ(dialog.controls[0].text, "&Name:");
        EXPECT_EQ(dialog.controls[0].rect, (CRect{7, 9, 47, 19}));
        EXPECT_EQ(dialog.controls[1].text, "📍站");
        EXPECT_EQ(dialog.controls[5].text, "");
        EXPECT_EQ(dialog.controls[8].rect, (CRect{1, 2, 4, 16})) << "the field alone";
        EXPECT_EQ(dialog.controls[10].rect, (CRect{-32767, -1, -32767, 4}));
    }
}

TEST(DlgTemplate, HasPlaceAndFontOfItsOwnOnlyWhereItTellsThem) {
    struct Case {
        std::u16string face;
        std::uint32_t style;
        std::int16_t x;
        char const* family;
        bool hasPlace;
    };
    Case const cases[] = {{u"", 0, 0, "", false},
                          {u"MS Shell Dlg", 0, 5, "", true},
                          {u"A", DS_CENTER, 5, "A", false},
                          {u"A", 1, 0, "A", true},
                          {u"", 0, -32768, "", false}};
    for (Case const& c : cases) {
        test::DlgDialog written{.style = c.style, .x = c.x, .cx = 30, .face = c.face};
        CTovDialogTemplate dialog;
        ASSERT_EQ(TovReadDialogTemplate("d", test::DlgWriter(written, true).bytes, {}, dialog), 1);
        EXPECT_EQ(dialog.fontFamily, c.family);
        EXPECT_EQ(dialog.hasPlace, c.hasPlace);
        EXPECT_EQ(dialog.rect.Width(), 30);
    }
    test::DlgDialog const wrong{.controls = {{.className = std::uint16_t{0x86}, .id = 0x10000}}};
    CTovDialogTemplate dialog;
    CString message;
    EXPECT_EQ(TovReadDialogTemplate("d", test::DlgWriter(wrong, true).bytes, {}, dialog, &message), 0);
    EXPECT_EQ(message, "d: control 1: has no class\nd: control 1: the id 65536 is beyond 65535");
    EXPECT_THAT(test::TakeFaults(), testing::SizeIs(2));
}

TEST(DlgTemplate, TakesTheWordsOfItsLists) {
    std::string const bytes = test::DlgWriter(EveryKind(), false).bytes;
    std::string const init = test::DlgWords(1007, 0x403, "\xD6\xD0") + test::DlgWords(1007, 0x1234, "站") +
                             test::DlgWords(1008, 0x401, "one") + test::DlgWords(1001, 0x403, "no list") +
                             test::DlgWords(1007, 0x376, "no word") + test::DlgWords(4711, 0x403, "nobody") +
                             std::string(2, '\0');
    CTovDialogTemplate dialog;
    ASSERT_EQ(TovReadDialogTemplate("d", bytes, init, dialog), 1);
    EXPECT_THAT(dialog.controls[8].items, ElementsAre("中", "站"));
    EXPECT_THAT(dialog.controls[9].items, ElementsAre("one"));
    EXPECT_THAT(dialog.controls[1].items, ElementsAre());
    EXPECT_EQ(TovReadDialogTemplate("d", bytes, std::string_view(init).substr(0, 10), dialog), 0);
    EXPECT_THAT(test::TakeFaults(), ElementsAre("d: the words for its lists end too soon"));
}

TEST(DlgTemplate, StandsInAModuleBesideItsTextForm) {
    test::TemporaryFolder const folder;
    std::filesystem::path const dialogs = folder.path() / "dialogs";
    std::filesystem::create_directory(dialogs);
    test::PutFile(folder.path() / "strings.json", "{}");
    test::PutFile(dialogs / "7.dlg", test::DlgWriter(EveryKind(), true).bytes);
    test::PutFile(dialogs / "7.dlginit", test::DlgWords(1008, 0x180, "one"));
    test::PutFile(dialogs / "8.dlg", "?");
    test::PutFile(dialogs / "8.json", R"({"title": "text", "cx": 1, "cy": 1, "controls": []})");
    test::PutFile(dialogs / "9.dlg", "?");
    HINSTANCE const module = TovLoadResourceModule(folder.path().c_str());
    CTovDialogTemplate dialog;
    ASSERT_EQ(TovLoadDialogTemplate(module, 7, dialog), 1);
    EXPECT_EQ(dialog.name, "dialogs/7.dlg");
    EXPECT_THAT(dialog.controls.at(9).items, ElementsAre("one"));
    ASSERT_EQ(TovLoadDialogTemplate(module, 8, dialog), 1);
    EXPECT_EQ(dialog.title, "text");
    EXPECT_EQ(TovLoadDialogTemplate(module, 9, dialog), 0);
    EXPECT_TRUE(dialog.name.empty());
    EXPECT_THAT(test::TakeFaults(), ElementsAre("dialogs/9.dlg: ends within the dialog"));
}

}  // namespace
}  // namespace tov
