// Which texts and file names edits take, held against real files.
#include "support/limits.h"
#include "support/temporary_folder.h"

#include <tov310/edit_filename.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <sstream>

namespace tov {
namespace {

namespace fs = std::filesystem;
using State = CTovInputControl::eState;
using enum CTovEditFilenameHost::eType;
using enum CTovEditFilenameHost::eExistence;

// Some folders count as media that can be taken out.
struct FakeHost : CTovEditFilenameHost {
    int PathIsValid(char const* name, int noRemovable, int* removable) override {
        if (noRemovable == 0 || removableFolder.empty() ||
            !std::string_view(name).starts_with(removableFolder))
            return CTovEditFilenameHost::PathIsValid(name, noRemovable, removable);
        *removable = 1;
        return 0;
    }
    std::string removableFolder;
};

TEST(EditFilename, ChecksNamesAgainstRealFiles) {
    test::TemporaryFolder const folder;
    auto const at = [&](char const* name) { return folder.File(name); };
    for (char const* const name :
         {"plain.txt", "with blank.txt", "测量 数据.txt", "tool.exe", "lib.dll", "run"})
        std::ofstream(at(name)) << "x";
    fs::permissions(at("run"), fs::perms::owner_all);
    fs::create_directories(at("目录/inside"));
    std::ofstream(at("目录/inside/deep.txt")) << "x";
    fs::create_symlink(at("nowhere"), at("dead"));
    fs::create_symlink(at("plain.txt"), at("link"));
    FakeHost host;
    host.removableFolder = at("目录");

    enum Flags { kSeveral = 1, kBareName = 2, kFixedOnly = 4 };
    struct Row {
        int type, existence, flags;
        std::string text;
        char const* message;  // null: valid; empty: nothing but quotes
    };
    auto const quoted = [&](std::initializer_list<char const*> names) {
        std::string text;
        for (char const* const name : names)
            text.append("\"").append(at(name)).append("\"  ");
        return text;
    };
    auto const in = [](std::string before, std::string const& name, char const* behind) {
        return before.append(name).append(behind);
    };
    char const* const mustExist = "路径/文件必须存在";
    char const* const mustNot = "路径/文件不存在";
    char const* const noPath = "对于一个目录或文件域必须指定一个有效的路径";
    char const* const noName = "字段必须指定一个有效的目录或文件名 (没有路径)";
    char const* const removable = "路径/文件必须不能在一个移动的驱动器上";
    Row const rows[] = {
        // clang-format off
        {0, 1, 0, at("plain.txt"), nullptr}, {0, 1, 0, at("none.txt"), mustExist}, {0, 2, 0, at("plain.txt"), mustNot},
        {0, 2, 0, at("none.txt"), nullptr}, {0, 1, 0, at("with blank.txt"), nullptr}, {0, 1, 0, at("测量 数据.txt"), nullptr},
        {0, 1, 0, in(" \t\"", at("plain.txt"), " \" "), nullptr}, {0, 1, 0, at("link"), nullptr},
        {0, 1, 0, at("dead"), mustExist}, {0, 2, 0, at("dead"), mustNot}, {0, 1, 0, at("目录"), mustExist}, {0, 1, 0, at("*.txt"), noPath},
        {0, 1, 0, at("plain.txt/below"), noPath}, {0, 2, 0, at("a<b"), noPath}, {0, 0, 0, "a<b", nullptr}, {0, 1, 0, "  ", nullptr},
        {4, 1, 0, at("目录/inside"), nullptr}, {4, 1, 0, at("目录/inside/"), nullptr}, {4, 1, 0, at("plain.txt"), mustExist},
        {4, 2, 0, at("目录"), mustNot}, {4, 2, 0, at("new"), nullptr}, {4, 1, 0, at("none"), mustExist},
        {1, 1, 0, at("tool.exe"), nullptr}, {1, 1, 0, at("lib.dll"), nullptr}, {1, 1, 0, at("run"), nullptr},
        {1, 1, 0, at("plain.txt"), "没有发现可执行文件"}, {1, 2, 0, at("none.txt"), nullptr}, {2, 1, 0, at("tool.exe"), nullptr},
        {2, 1, 0, at("lib.dll"), "...EXE 没有发现"}, {3, 1, 0, at("lib.dll"), nullptr}, {3, 1, 0, at("tool.exe"), "...DLL 没有发现"},
        {0, 1, kSeveral, quoted({"plain.txt", "with blank.txt"}), nullptr}, {0, 1, kSeveral, quoted({"plain.txt", "none"}), mustExist},
        {0, 1, kSeveral, at("with blank.txt"), nullptr}, {0, 1, 0, quoted({"plain.txt", "link"}), noPath},
        {0, 1, kSeveral, "\"\"", ""}, {0, 0, kSeveral, "\"", ""}, {0, 2, kSeveral, quoted({"none"}), nullptr},
        {0, 2, kBareName, "new.txt", nullptr}, {0, 2, kBareName, at("new.txt"), noName}, {0, 2, kBareName, "CON", noName},
        {0, 1, kFixedOnly, at("目录/inside/deep.txt"), removable}, {0, 1, 0, at("目录/inside/deep.txt"), nullptr},
        {1, 1, kSeveral, quoted({"plain.txt", "none"}), mustExist}, {0, 1, kSeveral, quoted({"none", "a<b"}), noPath},
        {0, 2, kFixedOnly, at("a<b"), noPath}, {0, 1, kFixedOnly | kSeveral, quoted({"plain.txt", "目录/inside/deep.txt"}), removable},
        // clang-format on
    };
    for (Row const& row : rows) {
        CTovFilenameRules rules(host, static_cast<CTovFilenameRules::eType>(row.type),
                                static_cast<CTovFilenameRules::eExistence>(row.existence),
                                (row.flags & kSeveral) == 0);
        rules.NameWithoutPath(row.flags & kBareName);
        rules.NoRemovableDrive(row.flags & kFixedOnly);
        CString message = "old";
        State const state = rules.InternalValidate(row.text.c_str(), &message);
        CString const expected = row.message != nullptr ? row.message : "";
        EXPECT_EQ(message, expected) << row.text << ", type " << row.type << ", existence " << row.existence;
        EXPECT_EQ(state, row.message == nullptr ? State::eStateValid
                         : expected.empty()     ? State::eStateEmpty
                                                : State::eStateInvalid)
            << row.text;
        EXPECT_EQ(rules.InternalValidate(row.text.c_str(), nullptr), state) << row.text;
    }
    CTovFilenameRules rules(host, eTypeFile, eExistenceMust, 0);
    EXPECT_EQ(rules.InternalValidate(nullptr, nullptr), State::eStateValid);
    rules.OwnNames({at("plain.txt")});
    EXPECT_EQ(rules.InternalValidate("\"\"", nullptr), State::eStateValid);

    // Behind a folder that may not be entered nothing is found.
    fs::permissions(at("目录"), fs::perms::none);
    test::WithoutRights({folder.path()}, [&] {
        CString message;
        EXPECT_EQ(rules.InternalValidate(at("目录/inside/deep.txt").c_str(), &message), State::eStateInvalid);
        EXPECT_EQ(message, mustExist);
        EXPECT_EQ(rules.InternalValidate(at("plain.txt").c_str(), &message), State::eStateValid);
    });
    fs::permissions(at("目录"), fs::perms::owner_all);
}

TEST(EditFilename, AsksForFilesAndTakesWhatIsChosen) {
    struct Chooser : ITovBrowseForFile {
        bool Browse(CTovBrowseRequest const& request, std::vector<CString>& names) override {
            asked = request;
            names = answer;
            return !answer.empty();
        }
        CTovBrowseRequest asked;
        std::vector<CString> answer;
    } own, all;
    test::TemporaryFolder const folder;
    FakeHost host;
    CTovFilenameRules rules(host, eTypeLibrary, eExistenceMust, 0);
    CString chosen = "before";
    EXPECT_EQ(rules.Select(nullptr, {}, "", chosen), 0);  // nobody to ask
    EXPECT_EQ(TovSetBrowseForFile(&all), nullptr);
    EXPECT_EQ(rules.Select(nullptr, {}, "", chosen), 0);  // cancelled
    EXPECT_EQ(chosen, "before");
    EXPECT_EQ(all.asked.folder, "");
    own.answer = {"/a/one.dll", "/a/the other.dll"};
    std::string text = "\"";
    text.append(folder.File("not/there/x.dll")).append("\" \"y\"");
    EXPECT_EQ(rules.Select(&own, HWND{7}, text.c_str(), chosen), 1);
    EXPECT_EQ(chosen, "\"/a/one.dll\" \"/a/the other.dll\"");
    EXPECT_EQ(rules.Names(chosen.c_str()), own.answer);
    EXPECT_EQ(own.asked.folder, folder.path());
    EXPECT_EQ(own.asked.names, (std::vector<CString>{folder.File("not/there/x.dll"), "y"}));
    EXPECT_TRUE(own.asked.owner == HWND{7} && own.asked.multiple && own.asked.mustExist &&
                !own.asked.directory);
    rules.NameWithoutPath(1);
    own.answer.resize(1);
    EXPECT_EQ(rules.Select(&own, {}, nullptr, chosen), 1);
    EXPECT_EQ(chosen, "one.dll");

    rules.Type(eTypeDirectory);
    rules.Texts("mine", "", "", "");
    CTovBrowseRequest const request = rules.Request(folder.path().c_str());
    std::ostringstream texts;
    texts << request.title << '|' << request.prompt << '|' << request.filter << '|' << request.okText << '|'
          << request.folder;
    EXPECT_EQ(texts.str(), std::string("mine|输入新目录名称||确定|").append(folder.path().string()));
    EXPECT_TRUE(request.directory && !request.multiple);
    rules.Type(eTypeProgram);
    rules.Texts("", "", "", "");
    EXPECT_EQ(rules.Request("").title, "选择程序");
    EXPECT_EQ(rules.Request("").filter, "程序 (*.exe)|*.exe||");
    EXPECT_EQ(TovSetBrowseForFile(nullptr), &all);
}

TEST(EditString, CountsCharactersAndNotBytes) {
    struct Row {
        char const* text;
        unsigned least, most;
        int emptyAllowed;
        State state;
        char const* message;
    };
    Row const rows[] = {
        // clang-format off
        {"测量", 2, 2, 0, State::eStateValid, ""}, {"测量", 3, 9, 0, State::eStateInvalid, "字段包含 2 字符， 最小字符数为3字符"},
        {"测量站", 0, 2, 0, State::eStateInvalid, "字段包含 3 字符， 最大值是 2 字符"}, {"", 3, 9, 1, State::eStateValid, ""},
        {"", 3, 9, 0, State::eStateEmpty, "字段不能为空"}, {nullptr, 0, 0xFFFFFFFF, 0, State::eStateEmpty, "字段不能为空"},
        {"abc", 0, 0xFFFFFFFF, 0, State::eStateValid, ""},
        // clang-format on
    };
    for (Row const& row : rows) {
        CString message = "old";
        EXPECT_EQ(TovValidateString(row.text, row.least, row.most, row.emptyAllowed, &message), row.state);
        EXPECT_EQ(message, row.message);
        EXPECT_EQ(TovValidateString(row.text, row.least, row.most, row.emptyAllowed, nullptr), row.state);
    }
}

TEST(EditSwitched, EveryTypeHasAnEditOfItsOwn) {
    std::set<std::pair<std::string, int>> edits;
    for (int type = 0; type <= 15; ++type) {
        if (CTovSwitchedEdit const* const edit = TovSwitchedEdit(type))
            edits.emplace(edit->className, edit->numberType);
    }
    EXPECT_EQ(edits.size(), 14U);
    EXPECT_TRUE(edits.contains({"CTovEditInteger", 5}) && edits.contains({"CTovEditFloating", 1}));
}

}  // namespace
}  // namespace tov
