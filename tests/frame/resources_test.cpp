#include <tov310/resources.h>
#include <tov310/system_error.h>

#include "support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <thread>
#include <vector>

namespace tov {
namespace {

using testing::AllOf;
using testing::HasSubstr;

// The built-in texts begin so.
constexpr char const* controlsTooOldChinese = "发现了ComCtl32.Dll V%d.%d .\n\n所需的版本是 V%d.%d 或更高.";

std::map<std::string, std::string> Language(char const* name) {
    std::ifstream file(std::string(TOV_TEST_SOURCE_DIR "/res/") + name + "/strings.json");
    return nlohmann::json::parse(file).get<std::map<std::string, std::string>>();
}

CString Text(HINSTANCE module, unsigned id) {
    CString text = "of an earlier call";
    int const loaded = TovLoadResourceString(module, id, text);
    return loaded != 0 ? text : "<none>" + text;
}

CString CurrentText(unsigned id) {
    CString text = "of an earlier call";
    int const loaded = TovLoadString(id, text);
    return loaded != 0 ? text : "<none>" + text;
}

// A resource folder made of (name, content) pairs.
class ResourceFolder {
 public:
    ResourceFolder(std::initializer_list<std::pair<char const*, char const*>> files) {
        for (auto const& [name, content] : files) {
            std::filesystem::path const path = m_folder.path() / name;
            std::filesystem::create_directories(path.parent_path());
            std::ofstream(path, std::ios::binary) << content;
        }
    }
    std::string path() const { return m_folder.path().string(); }

 private:
    test::TemporaryFolder m_folder;
};

HINSTANCE Load(std::string const& path) {
    unsigned long error = 0;
    CString message;
    HINSTANCE const module = TovLoadResourceModule(path.c_str(), &error, &message);
    EXPECT_NE(module, nullptr) << error << ' ' << message;
    EXPECT_EQ(error, 0u);
    EXPECT_EQ(message, "");
    return module;
}

// Puts the process-wide state back whatever a test does.
class Resources : public testing::Test {
 protected:
    void TearDown() override {
        TovSetTovResourceHandle(nullptr);
        TovSetResourceHandle(nullptr);
        TovSetResourceHandle(nullptr);  // saves the built-in handle in the slot ...
        TovRestoreResourceHandle();     // ... which empties it
    }
};

TEST_F(Resources, EveryBuiltInTextLoads) {
    auto const texts = Language("zh_CN");
    ASSERT_GT(texts.size(), 200u);
    for (auto const& [id, text] : texts)
        EXPECT_EQ(Text(TovBuiltInResourceModule(), static_cast<unsigned>(std::stoul(id))), text) << id;
    EXPECT_EQ(Text(TovGetTovResourceHandle(), 26000), controlsTooOldChinese);
    EXPECT_EQ(Text(nullptr, 26000), controlsTooOldChinese);
    EXPECT_EQ(Text(TovBuiltInResourceModule(), 1), "<none>");
}

TEST_F(Resources, LanguagesHaveTheSameIdsAndConversions) {
    auto const conversions = [](std::string const& text) {
        std::vector<std::string> found;
        for (auto at = text.find('%'); at != text.npos; at = text.find('%', at + found.back().size())) {
            auto const end = text.find_first_not_of("-+ #0123456789.hl", at + 1);
            found.push_back(text.substr(at, end - at + 1));
        }
        return found;
    };
    EXPECT_THAT(conversions("a %d%%, %-5.2lf %s"), testing::ElementsAre("%d", "%%", "%-5.2lf", "%s"));
    auto const chinese = Language("zh_CN");
    for (auto const& folder : std::filesystem::directory_iterator(TOV_TEST_SOURCE_DIR "/res")) {
        auto const name = folder.path().filename().string();
        auto const other = Language(name.c_str());
        for (auto const& [id, text] : chinese) {
            ASSERT_TRUE(other.contains(id)) << name << " lacks " << id;
            EXPECT_EQ(conversions(text), conversions(other.at(id))) << name << ' ' << id;
        }
        EXPECT_EQ(other.size(), chinese.size()) << name << " has ids that nobody asks for";
    }
}

TEST_F(Resources, FolderOnDiskTakesTheLibrarysPlaceAndTheBuiltInModuleAnswersWhatItLacks) {
    ResourceFolder const folder{{"strings.json", R"({"26000": "controls", "1": "own"})"},
                                {"dialogs/7.json", "{}"},
                                {"bitmaps/large/8.png", ""}};
    // With and without a separator at the end.
    for (std::string const& path : {folder.path(), folder.path() + "/"}) {
        HINSTANCE const module = Load(path);
        EXPECT_EQ(Text(module, 26000), "controls");
        EXPECT_EQ(Text(module, 1), "own");
        EXPECT_EQ(Text(module, 26001), Text(nullptr, 26001));
        EXPECT_EQ(Text(module, 2), "<none>");
        EXPECT_EQ(TovFindResource(module, "dialogs/7.json"), "{}") << path;
        EXPECT_NE(TovFindResource(module, "bitmaps/large/8.png").data(), nullptr) << "empty, but there";
        EXPECT_EQ(TovFindResource(module, "dialogs/9.json").data(), nullptr);
        EXPECT_EQ(TovFindResource(module, nullptr).data(), nullptr);
        EXPECT_EQ(TovFindResource(nullptr, "dialogs/7.json").data(), nullptr);
        EXPECT_THAT(std::string(TovFindResource(nullptr, "strings.json")), HasSubstr("\"26000\""));
    }
    HINSTANCE const module = Load(folder.path());
    TovSetTovResourceHandle(module);
    EXPECT_EQ(TovGetTovResourceHandle(), module);
    TovSetTovResourceHandle(nullptr);
    EXPECT_EQ(TovGetTovResourceHandle(), TovBuiltInResourceModule());
}

TEST_F(Resources, LoadedModuleServesItsEmbeddedFiles) {
    HINSTANCE const module = Load(TOV_TEST_LIBRARY_DIR "/test_translation.so");
    EXPECT_EQ(Text(module, 26000), "translated %d.%d (%d.%d)");
    EXPECT_EQ(Text(module, 26001), Text(nullptr, 26001));
    std::ifstream source(TOV_TEST_SOURCE_DIR "/tests/frame/translation/menus/12.json", std::ios::binary);
    EXPECT_EQ(TovFindResource(module, "menus/12.json"),
              (std::string{std::istreambuf_iterator<char>(source), std::istreambuf_iterator<char>()}));
}

TEST_F(Resources, FailuresAreToldByCodeAndText) {
    ResourceFolder const noStrings{{"dialogs/1.json", "{}"}};
    ResourceFolder const faulty{{"strings.json", "{\n\"1\": 5\n}"}};
    struct {
        std::string path;
        unsigned long error;
        char const* words;
    } const rows[] = {
        {"", TOV_ERROR_NOT_FOUND, ""},
        {noStrings.path(), TOV_ERROR_NOT_FOUND, "strings.json"},
        {faulty.path(), TOV_ERROR_INVALID_PARAMETER, "strings.json: line 2: a value is not a text"},
        {"/nowhere/at/all", TOV_ERROR_NOT_FOUND, "/nowhere/at/all"},
        {faulty.path() + "/strings.json", TOV_ERROR_MODULE_NOT_LOADED, "strings.json"},
        {TOV_TEST_LIBRARY_DIR "/test_plugin.so", TOV_ERROR_SYMBOL_NOT_FOUND, "tov_resources"},
        {TOV_TEST_LIBRARY_DIR "/test_faulty_translation.so", TOV_ERROR_INVALID_PARAMETER, "line 3: "},
    };
    for (auto const& row : rows) {
        unsigned long error = 1;
        CString message = "of an earlier call";
        EXPECT_EQ(TovLoadResourceModule(row.path.c_str(), &error, &message), nullptr) << row.path;
        EXPECT_EQ(error, row.error) << row.path;
        EXPECT_THAT(message, AllOf(HasSubstr(TovSystemErrorText(row.error)), HasSubstr(row.words)));
        EXPECT_EQ(TovLoadResourceModule(row.path.c_str()), nullptr) << "without the pair";
    }
    EXPECT_EQ(TovLoadResourceModule(nullptr), nullptr);
}

TEST_F(Resources, RestoreWithoutSetDoesNothing) {
    HINSTANCE const before = TovGetResourceHandle();
    EXPECT_EQ(before, TovBuiltInResourceModule());
    TovRestoreResourceHandle();
    EXPECT_EQ(TovGetResourceHandle(), before);
}

TEST_F(Resources, TheSaveSlotDoesNotNest) {
    ResourceFolder const one{{"strings.json", R"({"26000": "one"})"}};
    ResourceFolder const two{{"strings.json", R"({"26000": "two"})"}};
    HINSTANCE const first = Load(one.path());
    HINSTANCE const second = Load(two.path());
    TovSetResourceHandle(first);
    EXPECT_EQ(CurrentText(26000), "one");
    TovSetResourceHandle(second);
    EXPECT_EQ(CurrentText(26000), "two");
    TovRestoreResourceHandle();
    EXPECT_EQ(CurrentText(26000), "one") << "the first override stays";
    TovRestoreResourceHandle();
    EXPECT_EQ(CurrentText(26000), "one") << "the slot is empty by now";
}

TEST_F(Resources, LoadingATextTakesTheSlotAndPutsTheCurrentHandleBack) {
    ResourceFolder const one{{"strings.json", R"({"26000": "one"})"}};
    HINSTANCE const module = Load(one.path());
    TovSetResourceHandle(module);
    EXPECT_EQ(Text(TovBuiltInResourceModule(), 26000), controlsTooOldChinese);
    EXPECT_EQ(TovGetResourceHandle(), module);
    TovRestoreResourceHandle();
    EXPECT_EQ(TovGetResourceHandle(), module) << "what the host had saved is gone";
}

TEST_F(Resources, ARestoreEmptiesTheOneSlotForAllThreads) {
    ResourceFolder const one{{"strings.json", R"({"26000": "one"})"}};
    HINSTANCE const module = Load(one.path());
    TovSetResourceHandle(module);
    std::thread([] { TovRestoreResourceHandle(); }).join();
    TovRestoreResourceHandle();
    EXPECT_EQ(TovGetResourceHandle(), module) << "the other thread had it all";
}

TEST_F(Resources, AnotherThreadHasACurrentHandleOfItsOwn) {
    ResourceFolder const one{{"strings.json", R"({"26000": "one"})"}};
    HINSTANCE const module = Load(one.path());
    TovSetResourceHandle(module);
    std::thread([] { EXPECT_EQ(CurrentText(26000), controlsTooOldChinese); }).join();
    EXPECT_EQ(CurrentText(26000), "one");
}

}  // namespace
}  // namespace tov
