#include <tov310/requirements.h>
#include <tov310/resources.h>
#include <tov310/system_error.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace tov {
namespace {

constexpr std::uint32_t Version(unsigned majorPart, unsigned minorPart) {
    return majorPart << 16 | minorPart;
}

// Answers from a table and notes what it was asked. What the table lacks is an error 2.
class Versions : public ITovVersionSource {
 public:
    std::map<std::string, std::uint32_t> known = {{"ComCtl32.Dll", Version(6, 0)},
                                                  {"Shell32.Dll", Version(6, 0)},
                                                  {"ShFolder.Dll", Version(6, 0)},
                                                  {"Shlwapi.Dll", Version(6, 0)},
                                                  {"Mfc90.Dll", Version(9, 0)}};
    std::vector<std::string> asked;
    std::uint32_t controlClasses = 0xFFFF;

    unsigned long Load(char const* file, tagVS_FIXEDFILEINFO& record) override {
        asked.emplace_back(file);
        record.dwSignature = 0xFEEF04BD;
        auto const found = known.find(file);
        if (found == known.end()) return TOV_ERROR_NOT_FOUND;
        record.dwProductVersionMS = found->second;
        record.dwFileVersionMS = Version(99, 0);  // is not what the checks look at
        return TOV_ERROR_NONE;
    }
    bool HasControlClasses(std::uint32_t mask) override { return (controlClasses & mask) == mask; }
};

// Texts in English, as the table below spells them out.
class Requirements : public testing::Test {
 protected:
    void SetUp() override {
        TovSetTovResourceHandle(TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/res/en"));
        TovSetVersionSource(&versions);
    }
    void TearDown() override {
        TovSetVersionSource(nullptr);
        TovSetTovResourceHandle(nullptr);
    }
    Versions versions;
};

constexpr std::uint32_t unreadable = 0xFFFFFFFF;

TEST_F(Requirements, EachCheckPassesFromItsLeastVersionOn) {
    struct {
        int (*check)(CString&);
        std::map<std::string, std::uint32_t> found;
        char const* message;  // empty when it passes; "*" stands for the text of error 2
    } const rows[] = {
        {TovCheckComCtl32Version, {{"ComCtl32.Dll", Version(4, 71)}}, ""},
        {TovCheckComCtl32Version, {{"ComCtl32.Dll", Version(5, 0)}}, ""},
        {TovCheckComCtl32Version, {{"ComCtl32.Dll", Version(0xFFFF, 0)}}, ""},
        {TovCheckComCtl32Version,
         {{"ComCtl32.Dll", Version(4, 70)}},
         "ComCtl32.Dll V4.70 found.\n\nRequired is version V4.71 or higher."},
        {TovCheckComCtl32Version,
         {{"ComCtl32.Dll", Version(3, 99)}},
         "ComCtl32.Dll V3.99 found.\n\nRequired is version V4.71 or higher."},
        {TovCheckComCtl32Version, {{"ComCtl32.Dll", unreadable}}, "ComCtl32.dll: *"},

        {TovCheckShell32Version, {{"Shell32.Dll", Version(4, 71)}, {"ShFolder.Dll", unreadable}}, ""},
        {TovCheckShell32Version, {{"Shell32.Dll", Version(4, 70)}, {"ShFolder.Dll", Version(4, 0)}}, ""},
        {TovCheckShell32Version, {{"Shell32.Dll", Version(4, 0)}, {"ShFolder.Dll", Version(1, 0)}}, ""},
        {TovCheckShell32Version,
         {{"Shell32.Dll", Version(4, 70)}, {"ShFolder.Dll", unreadable}},
         "ShFolder.dll: *"},
        {TovCheckShell32Version,
         {{"Shell32.Dll", Version(3, 99)}, {"ShFolder.Dll", Version(9, 0)}},
         "Shell32.Dll V3.99 found.\n\nRequired is version V4.0 or higher."},
        {TovCheckShell32Version, {{"Shell32.Dll", unreadable}}, "Shell32.dll: *"},

        {TovCheckShFolderVersion, {{"Shell32.Dll", Version(4, 0)}, {"ShFolder.Dll", Version(0, 1)}}, ""},
        {TovCheckShFolderVersion,
         {{"Shell32.Dll", Version(3, 99)}},
         "Shell32.Dll V3.99 found.\n\nRequired is version V4.0 or higher."},
        {TovCheckShFolderVersion, {{"Shell32.Dll", unreadable}}, "Shell32.dll: *"},
        {TovCheckShFolderVersion,
         {{"Shell32.Dll", Version(3, 0)}, {"ShFolder.Dll", unreadable}},
         "ShFolder.dll: *"},

        {TovCheckShlwapiVersion, {{"Shlwapi.Dll", Version(4, 71)}}, ""},
        {TovCheckShlwapiVersion,
         {{"Shlwapi.Dll", Version(4, 70)}},
         "Shlwapi.Dll V4.70 found.\n\nRequired is version V4.71 or higher."},
        {TovCheckShlwapiVersion, {{"Shlwapi.Dll", unreadable}}, "Shlwapi.dll: *"},

        {TovCheckMfcVersion, {{"Mfc90.Dll", Version(9, 0)}}, ""},
        {TovCheckMfcVersion,
         {{"Mfc90.Dll", Version(8, 99)}},
         "Mfc90.Dll V8.99 found.\n\nRequired is version V9.0 or higher."},
        {TovCheckMfcVersion, {{"Mfc90.Dll", unreadable}}, "Mfc90.dll: *"},
    };
    for (auto const& row : rows) {
        Versions source;
        for (auto const& [file, version] : row.found) {
            if (version == unreadable) {
                source.known.erase(file);
            } else {
                source.known[file] = version;
            }
        }
        TovSetVersionSource(&source);
        std::string expected = row.message;
        if (expected.ends_with('*')) expected.replace(expected.size() - 1, 1, TovSystemErrorText(2));
        for (int call = 0; call < 2; ++call) {
            CString message = "of an earlier call";
            EXPECT_EQ(row.check(message), expected.empty()) << expected;
            EXPECT_EQ(message, expected) << "call " << call;
        }
        TovSetVersionSource(&versions);
    }
}

TEST_F(Requirements, TheFirstOneThatFailsIsToldAndTheRestIsNotAsked) {
    struct {
        std::vector<std::string> missing;
        eTovRequirements failed;
        std::vector<std::string> asked;
    } const rows[] = {
        {{}, eTovRequirementsMet, {"ComCtl32.Dll", "Shell32.Dll", "Shlwapi.Dll", "Mfc90.Dll"}},
        {{"ShFolder.Dll"}, eTovRequirementsMet, {"ComCtl32.Dll", "Shell32.Dll", "Shlwapi.Dll", "Mfc90.Dll"}},
        {{"ComCtl32.Dll", "Mfc90.Dll"}, eTovRequirementsComCtl32, {"ComCtl32.Dll"}},
        {{"Shell32.Dll", "Shlwapi.Dll"}, eTovRequirementsShell32, {"ComCtl32.Dll", "Shell32.Dll"}},
        {{"Shlwapi.Dll"}, eTovRequirementsShlwapi, {"ComCtl32.Dll", "Shell32.Dll", "Shlwapi.Dll"}},
        {{"Mfc90.Dll"}, eTovRequirementsMfc, {"ComCtl32.Dll", "Shell32.Dll", "Shlwapi.Dll", "Mfc90.Dll"}},
    };
    for (auto const& row : rows) {
        Versions source;
        for (std::string const& file : row.missing)
            source.known.erase(file);
        TovSetVersionSource(&source);
        eTovRequirements failed = eTovRequirementsMfc;
        CString message = "of an earlier call";
        EXPECT_EQ(TovCheckAllRequirements(failed, message), row.failed == eTovRequirementsMet);
        EXPECT_EQ(failed, row.failed);
        EXPECT_EQ(message.empty(), row.failed == eTovRequirementsMet) << message;
        EXPECT_EQ(source.asked, row.asked);
        TovSetVersionSource(&versions);
    }
    EXPECT_EQ(eTovRequirementsComCtl32, 1);
    EXPECT_EQ(eTovRequirementsShell32, 2);
    EXPECT_EQ(eTovRequirementsShlwapi, 4);
    EXPECT_EQ(eTovRequirementsMfc, 8);
}

TEST_F(Requirements, RecordsAreLoadedOnceAndAFailureStays) {
    struct {
        int (*load)(tagVS_FIXEDFILEINFO&, unsigned long*, CString*);
        char const* file;
    } const layers[] = {
        {TovFixedFileInfoComCtl32, "ComCtl32.Dll"}, {TovFixedFileInfoShell32, "Shell32.Dll"},
        {TovFixedFileInfoShFolder, "ShFolder.Dll"}, {TovFixedFileInfoShlwapi, "Shlwapi.Dll"},
        {TovFixedFileInfoMfc, "Mfc90.Dll"},
    };
    for (auto const& layer : layers) {
        Versions source;
        TovSetVersionSource(&source);
        tagVS_FIXEDFILEINFO record;
        for (int call = 0; call < 2; ++call) {
            unsigned long error = 1;
            CString message = "of an earlier call";
            EXPECT_EQ(layer.load(record, &error, &message), 1);
            EXPECT_EQ(record.dwProductVersionMS, source.known[layer.file]);
            EXPECT_EQ(error, 0u);
            EXPECT_EQ(message, "");
            EXPECT_EQ(source.asked, std::vector<std::string>{layer.file});
            record = {};
        }
        source.known.clear();
        EXPECT_EQ(layer.load(record, nullptr, nullptr), 1) << "what is replaced while we run is not seen";

        Versions broken;
        broken.known.clear();
        TovSetVersionSource(&broken);
        for (int call = 0; call < 3; ++call) {
            record.dwProductVersionMS = 1;
            unsigned long error = 0;
            CString message = "of an earlier call";
            EXPECT_EQ(layer.load(record, &error, &message), 0);
            EXPECT_EQ(record, tagVS_FIXEDFILEINFO{});
            EXPECT_EQ(error, 2u) << "the code is told every time";
            EXPECT_EQ(message, call == 0 ? TovSystemErrorText(2) : "") << "the text the first time only";
            broken.known = Versions().known;
        }
        EXPECT_EQ(broken.asked.size(), 1u);
        TovSetVersionSource(&versions);
    }
}

TEST_F(Requirements, AnyFileMayBeAskedAndNothingOfItIsCached) {
    tagVS_FIXEDFILEINFO record;
    record.dwFileDateLS = 5;
    unsigned long error = 1;
    CString message = "of an earlier call";
    EXPECT_EQ(TovLoadFixedFileInfo(record, "Other.Dll", &error, &message), 0);
    EXPECT_EQ(record, tagVS_FIXEDFILEINFO{});
    EXPECT_EQ(error, 2u);
    EXPECT_EQ(message, TovSystemErrorText(2));
    versions.known["Other.Dll"] = Version(1, 2);
    EXPECT_EQ(TovLoadFixedFileInfo(record, "Other.Dll", &error, &message), 1);
    EXPECT_EQ(record.dwProductVersionMS, Version(1, 2));
    EXPECT_EQ(error, 0u);
    EXPECT_EQ(message, "");
    EXPECT_EQ(TovLoadFixedFileInfo(record, "Other.Dll"), 1);
    EXPECT_EQ(TovLoadFixedFileInfo(record, nullptr, &error), 0);
    EXPECT_EQ(error, TOV_ERROR_INVALID_PARAMETER);
}

TEST_F(Requirements, TheNewerControlsNeedBothClasses) {
    for (std::uint32_t const classes : {0u, 0x4000u, 0x8000u, 0xC000u, 0xFFFFu}) {
        versions.controlClasses = classes;
        EXPECT_EQ(TovIsComCtlXP(), (classes & 0xC000u) == 0xC000u) << classes;
    }
}

TEST_F(Requirements, TheLibraryMeetsItsOwn) {
    TovSetVersionSource(nullptr);
    eTovRequirements failed = eTovRequirementsMfc;
    CString message;
    EXPECT_EQ(TovCheckAllRequirements(failed, message), 1) << message;
    EXPECT_EQ(TovIsComCtlXP(), 1);
    tagVS_FIXEDFILEINFO record;
    EXPECT_EQ(TovLoadFixedFileInfo(record, "COMCTL32.DLL"), 1) << "file names fold case";
    EXPECT_EQ(record.dwSignature, 0xFEEF04BDu);
}

TEST_F(Requirements, ATranslationWithOtherConversionsIsHarmless) {
    versions.known["ComCtl32.Dll"] = Version(4, 70);
    TovSetTovResourceHandle(TovLoadResourceModule(TOV_TEST_SOURCE_DIR "/tests/frame/odd_translation"));
    CString message;
    EXPECT_EQ(TovCheckComCtl32Version(message), 0);
    EXPECT_EQ(message, "%s %n 4 100% 70 4 71 %d");
}

}  // namespace
}  // namespace tov
