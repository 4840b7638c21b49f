#include <tov310/requirements.h>
#include <tov310/resources.h>
#include <tov310/system_error.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace tov {
namespace {

using Files = std::vector<std::string>;

constexpr std::uint32_t Version(unsigned majorPart, unsigned minorPart) {
    return majorPart << 16 | minorPart;
}

// Answers from a table and notes what it was asked. A version 0 is an error 2.
struct Versions : ITovVersionSource {
    std::map<std::string, std::uint32_t> known;
    Files asked;
    std::uint32_t controlClasses = 0xFFFF;

    unsigned long Load(char const* file, tagVS_FIXEDFILEINFO& record) override {
        asked.emplace_back(file);
        record.dwProductVersionMS = known[file];
        record.dwFileVersionMS = Version(99, 0);  // is not what the checks look at
        return known[file] != 0 ? TOV_ERROR_NONE : TOV_ERROR_NOT_FOUND;
    }
    bool HasControlClasses(std::uint32_t mask) override { return (controlClasses & mask) == mask; }
};

// What loads and what checks a layer, its name, the least version, and what is told of the one right below.
std::tuple<int (*)(tagVS_FIXEDFILEINFO&, unsigned long*, CString*), int (*)(CString&), std::string,
           std::uint32_t, char const*> const layers[] = {
    {TovFixedFileInfoComCtl32, TovCheckComCtl32Version, "ComCtl32", Version(4, 71),
     "ComCtl32.Dll V4.70 found.\n\nRequired is version V4.71 or higher."},
    {TovFixedFileInfoShell32, TovCheckShFolderVersion, "Shell32", Version(4, 0),
     "Shell32.Dll V3.65535 found.\n\nRequired is version V4.0 or higher."},
    {TovFixedFileInfoShlwapi, TovCheckShlwapiVersion, "Shlwapi", Version(4, 71),
     "Shlwapi.Dll V4.70 found.\n\nRequired is version V4.71 or higher."},
    {TovFixedFileInfoMfc, TovCheckMfcVersion, "Mfc90", Version(9, 0),
     "Mfc90.Dll V8.65535 found.\n\nRequired is version V9.0 or higher."},
};

// Texts in English, as the tests spell them out.
class Requirements : public testing::Test {
 protected:
    void SetUp() override {
        TovSetTovResourceHandle(TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/res/en"));
        Restart();
    }
    void TearDown() override {
        TovSetVersionSource(nullptr);
        TovSetTovResourceHandle(nullptr);
    }
    // Nothing has been asked yet and all is there, but for what is given.
    void Restart(std::map<std::string, std::uint32_t> known = {}) {
        for (char const* file : {"ComCtl32.Dll", "Shell32.Dll", "ShFolder.Dll", "Shlwapi.Dll", "Mfc90.Dll"})
            known.emplace(file, Version(9, 0));
        versions.known = known;
        versions.asked.clear();
        TovSetVersionSource(&versions);
    }
    Versions versions;
    tagVS_FIXEDFILEINFO record;
    unsigned long error = 1;
    CString message = "of an earlier call";
};

TEST_F(Requirements, RecordsAreLoadedOnceAndPassFromTheLeastVersionOn) {
    for (auto const& [load, check, name, least, tooOld] : layers) {
        for (auto const version : {least, Version(0xFFFF, 0), least - 1, 0u}) {
            Restart({{name + ".Dll", version}});
            CString const expected = version >= least ? "" : tooOld;
            for (int call = 0; call < 2; ++call) {
                record.dwFileDateLS = 5;
                EXPECT_EQ(load(record, &error, &message), version != 0);
                EXPECT_EQ(record.dwProductVersionMS, version);
                EXPECT_EQ(record.dwFileDateLS, 0u);
                EXPECT_EQ(error, version != 0 ? 0u : 2u) << "the code is told every time";
                EXPECT_EQ(message, version != 0 || call == 1 ? "" : TovSystemErrorText(2)) << "the text once";
                EXPECT_EQ(check(message), version >= least);
                EXPECT_EQ(message, version != 0 ? expected : name + ".dll: " + TovSystemErrorText(2));
                versions.known[name + ".Dll"] = Version(7, 7);  // what is replaced while we run is not seen
            }
            EXPECT_EQ(std::ranges::count(versions.asked, name + ".Dll"), 1);
        }
    }
}

TEST_F(Requirements, AnOlderShellNeedsItsFolders) {
    CString const noFolders = "ShFolder.dll: " + TovSystemErrorText(2);
    // What is told by the check of the shell and by that of the folders.
    std::tuple<std::uint32_t, std::uint32_t, CString, CString> const rows[] = {
        {Version(4, 71), 0, "", noFolders},
        {Version(4, 70), 0, noFolders, noFolders},
        {Version(3, 99), 0, noFolders, noFolders},
        {Version(4, 0), Version(0, 1), "", ""},
    };
    for (auto const& [shell, folders, byShell, byFolders] : rows) {
        Restart({{"Shell32.Dll", shell}, {"ShFolder.Dll", folders}});
        EXPECT_EQ(TovCheckShell32Version(message), byShell.empty());
        EXPECT_EQ(message, byShell) << shell;
        EXPECT_EQ(TovCheckShFolderVersion(message), byFolders.empty());
        EXPECT_EQ(message, byFolders) << shell;
    }
}

TEST_F(Requirements, TheFirstOneThatFailsIsToldAndTheRestIsNotAsked) {
    Files const all = {"ComCtl32.Dll", "Shell32.Dll", "Shlwapi.Dll", "Mfc90.Dll"};
    // What is missing, the number that hosts keep, and how many are asked.
    std::tuple<Files, int, long> const rows[] = {{{"ShFolder.Dll"}, 0, 4},
                                                 {{"ComCtl32.Dll", "Mfc90.Dll"}, 1, 1},
                                                 {{"Shell32.Dll", "Shlwapi.Dll"}, 2, 2},
                                                 {{"Shlwapi.Dll"}, 4, 3},
                                                 {{"Mfc90.Dll"}, 8, 4}};
    for (auto const& [missing, number, asked] : rows) {
        Restart();
        for (std::string const& file : missing)
            versions.known[file] = 0;
        eTovRequirements failed = eTovRequirementsMfc;
        EXPECT_EQ(TovCheckAllRequirements(failed, message), number == 0);
        EXPECT_EQ(failed, number);
        EXPECT_EQ(message.empty(), number == 0) << message;
        EXPECT_EQ(versions.asked, Files(all.begin(), all.begin() + asked));
    }
}

TEST_F(Requirements, AnyFileMayBeAskedAndNothingOfItIsCached) {
    for (std::uint32_t const version : {0u, Version(1, 2), Version(1, 3), 0u}) {
        versions.known["Other.Dll"] = version;
        EXPECT_EQ(TovLoadFixedFileInfo(record, "Other.Dll", &error, &message), version != 0);
        EXPECT_EQ(record.dwProductVersionMS, version);
        EXPECT_EQ(record.dwFileVersionMS, version != 0 ? Version(99, 0) : 0) << "a failure leaves nothing";
        EXPECT_EQ(error, version != 0 ? 0u : 2u);
        EXPECT_EQ(message, version != 0 ? "" : TovSystemErrorText(2));
    }
    EXPECT_EQ(TovLoadFixedFileInfo(record, nullptr, &error), 0);
    EXPECT_EQ(error, TOV_ERROR_INVALID_PARAMETER);
}

TEST_F(Requirements, TheLibraryMeetsItsOwnAndNewerControlsNeedBothClasses) {
    for (std::uint32_t const classes : {0x4000u, 0x8000u, 0xC000u}) {
        versions.controlClasses = classes;
        EXPECT_EQ(TovIsComCtlXP(), classes == 0xC000u) << classes;
    }
    TovSetVersionSource(nullptr);
    eTovRequirements failed = eTovRequirementsMfc;
    EXPECT_EQ(TovCheckAllRequirements(failed, message), 1) << message;
    EXPECT_EQ(TovIsComCtlXP(), 1);
    EXPECT_EQ(TovLoadFixedFileInfo(record, "COMCTL32.DLL"), 1) << "file names fold case";
}

TEST_F(Requirements, ATranslationWithOtherConversionsIsHarmless) {
    Restart({{"ComCtl32.Dll", Version(4, 70)}});
    TovSetTovResourceHandle(TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/tests/frame/odd_translation"));
    EXPECT_EQ(TovCheckComCtl32Version(message), 0);
    EXPECT_EQ(message, "%s %n 4 100% 70 4 71 %d");
}

}  // namespace
}  // namespace tov
