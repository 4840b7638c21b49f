#include <tov310/resources.h>
#include <tov310/system_error.h>

#include "support/files.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <map>
#include <nlohmann/json.hpp>
#include <thread>

namespace tov {
namespace {

// The built-in texts begin so.
constexpr char const* controlsTooOldChinese = "发现了ComCtl32.Dll V%d.%d .\n\n所需的版本是 V%d.%d 或更高.";

std::map<std::string, std::string> Language(std::string const& name) {
    return nlohmann::json::parse(test::GetFile(TOV_TEST_SOURCE_DIR "/res/" + name + "/strings.json"));
}

CString Text(HINSTANCE module, unsigned id) {
    CString text = "of an earlier call";
    return TovLoadResourceString(module, id, text) != 0 ? text : "<none>" + text;
}

CString CurrentText() {
    CString text;
    EXPECT_EQ(TovLoadString(26000, text), 1);
    return text;
}

// A resource folder with these texts.
struct ResourceFolder : test::TemporaryFolder {
    explicit ResourceFolder(std::string const& strings) { test::PutFile(File("strings.json"), strings); }
};

HINSTANCE Load(std::string const& path) {
    unsigned long error = 1;
    CString message = "of an earlier call";
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

// With a module "one" that is the current one.
class Slot : public Resources {
 protected:
    Slot() { TovSetResourceHandle(one); }
    HINSTANCE const one = Load(ResourceFolder(R"({"26000": "one"})").path());
};

TEST_F(Resources, EveryBuiltInTextLoads) {
    auto const texts = Language("zh_CN");
    ASSERT_GT(texts.size(), 200u);
    for (auto const& [id, text] : texts)
        EXPECT_EQ(Text(TovBuiltInResourceModule(), static_cast<unsigned>(std::stoul(id))), text) << id;
    EXPECT_EQ(Text(TovGetTovResourceHandle(), 26000), controlsTooOldChinese);
    EXPECT_EQ(Text(nullptr, 1), "<none>");
}

TEST_F(Resources, LanguagesHaveTheSameIdsAndConversions) {
    auto const conversions = [](std::string const& text) {
        std::vector<std::string> found;
        for (std::size_t at = text.find('%'); at < text.size(); at = text.find('%', at)) {
            std::size_t const end = text.find_first_not_of("-+ #0123456789.hl", at + 1);
            found.push_back(text.substr(at, end - at + 1));
            at += found.back().size();
        }
        return found;
    };
    EXPECT_THAT(conversions("a %d%%, %-5.2lf %s"), testing::ElementsAre("%d", "%%", "%-5.2lf", "%s"));
    auto const chinese = Language("zh_CN");
    for (auto const& folder : std::filesystem::directory_iterator(TOV_TEST_SOURCE_DIR "/res")) {
        auto other = Language(folder.path().filename());
        EXPECT_EQ(other.size(), chinese.size()) << folder << " lacks ids or has some that nobody asks for";
        for (auto const& [id, text] : chinese)
            EXPECT_EQ(conversions(text), conversions(other[id])) << folder << ' ' << id;
    }
}

TEST_F(Resources, FolderOnDiskTakesTheLibrarysPlaceAndTheBuiltInModuleAnswersWhatItLacks) {
    ResourceFolder const folder(R"({"26000": "controls", "1": "own"})");
    std::filesystem::create_directories(folder.path() / "bitmaps/large");
    test::PutFile(folder.File("bitmaps/large/8.png"), "");
    test::PutFile(folder.File("7.json"), "{}");
    for (std::string const& path : {folder.path().string(), folder.File("")}) {
        HINSTANCE const module = Load(path);
        EXPECT_EQ(Text(module, 26000), "controls");
        EXPECT_EQ(Text(module, 1), "own");
        EXPECT_EQ(Text(module, 26001), Text(nullptr, 26001));
        EXPECT_EQ(TovFindResource(module, "7.json"), "{}") << path;
        EXPECT_NE(TovFindResource(module, "bitmaps/large/8.png").data(), nullptr) << "empty, but there";
        EXPECT_EQ(TovFindResource(module, nullptr).data(), nullptr);
        EXPECT_EQ(TovFindResource(nullptr, "7.json").data(), nullptr);
        TovSetTovResourceHandle(module);
        EXPECT_EQ(TovGetTovResourceHandle(), module);
    }
    TovSetTovResourceHandle(nullptr);
    EXPECT_EQ(TovGetTovResourceHandle(), TovBuiltInResourceModule());
}

TEST_F(Resources, LoadedModuleServesItsEmbeddedFiles) {
    HINSTANCE const module = Load(TOV_TEST_LIBRARY_DIR "/test_translation.so");
    EXPECT_EQ(Text(module, 26000), "translated %d.%d (%d.%d)");
    auto const file = test::GetFile(TOV_TEST_SOURCE_DIR "/tests/frame/translation/menus/12.json");
    EXPECT_EQ(nlohmann::json::parse(TovFindResource(module, "menus/12.json")), nlohmann::json::parse(file));
}

TEST_F(Resources, FailuresAreToldByCodeAndText) {
    test::TemporaryFolder const empty;
    ResourceFolder const faulty("{\n\"1\": 5\n}");
    std::tuple<std::string, unsigned long, char const*> const rows[] = {
        {"", TOV_ERROR_NOT_FOUND, ""},
        {empty.File(""), TOV_ERROR_NOT_FOUND, "strings.json"},
        {faulty.File(""), TOV_ERROR_INVALID_PARAMETER, "strings.json: line 2: a value is not a text"},
        {"/nowhere/at/all", TOV_ERROR_NOT_FOUND, "/nowhere/at/all"},
        {faulty.File("strings.json"), TOV_ERROR_MODULE_NOT_LOADED, "strings.json"},
        {TOV_TEST_LIBRARY_DIR "/test_plugin.so", TOV_ERROR_SYMBOL_NOT_FOUND, "tov_resources"},
        {TOV_TEST_LIBRARY_DIR "/test_faulty_translation.so", TOV_ERROR_INVALID_PARAMETER, "line 3: "},
    };
    for (auto const& [path, code, words] : rows) {
        unsigned long error = 1;
        CString message = "of an earlier call";
        EXPECT_EQ(TovLoadResourceModule(path.c_str(), &error, &message), nullptr) << path;
        EXPECT_EQ(error, code) << path;
        EXPECT_THAT(message, testing::StartsWith(TovSystemErrorText(code)));
        EXPECT_THAT(message, testing::HasSubstr(words));
        EXPECT_EQ(TovLoadResourceModule(path.c_str()), nullptr) << "without the pair";
    }
    EXPECT_EQ(TovLoadResourceModule(nullptr), nullptr);
}

TEST_F(Slot, DoesNotNest) {
    TovSetResourceHandle(Load(ResourceFolder(R"({"26000": "two"})").path()));
    EXPECT_EQ(CurrentText(), "two");
    for (char const* why : {"the first override stays", "the slot is empty by now"}) {
        TovRestoreResourceHandle();
        EXPECT_EQ(CurrentText(), "one") << why;
    }
}

TEST_F(Slot, IsTakenByLoadingATextWhichPutsTheCurrentHandleBack) {
    EXPECT_EQ(Text(TovBuiltInResourceModule(), 26000), controlsTooOldChinese);
    EXPECT_EQ(TovGetResourceHandle(), one);
    TovRestoreResourceHandle();
    EXPECT_EQ(TovGetResourceHandle(), one) << "what the host had saved is gone";
}

TEST_F(Slot, IsOneForAllThreadsWhichHaveACurrentHandleEach) {
    std::thread([] {
        EXPECT_EQ(CurrentText(), controlsTooOldChinese);
        TovRestoreResourceHandle();
    }).join();
    TovRestoreResourceHandle();
    EXPECT_EQ(CurrentText(), "one") << "the other thread had emptied it";
}

}  // namespace
}  // namespace tov
