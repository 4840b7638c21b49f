#include "window_commands.h"

#include "answer.h"
#include "files.h"
#include "gallery.h"
#include "settings.h"
#include "window_frame.h"
#include "window_ids.h"
#include "window_shots.h"

#include <tov310/resources.h>

#include <QApplication>

#include <cstdlib>

namespace survey {
namespace {

std::string languageInUse;

bool IsSet(char const* variable) {
    char const* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

// Qt ends the program when it finds no display; with one more way at the end it takes that instead, and we
// see that it did.
class Display {
 public:
    bool IsReached() const { return IsSet("QT_QPA_PLATFORM") || QGuiApplication::platformName() != fallback; }

 private:
    static constexpr char const* fallback = "offscreen";

    char m_program[7] = "survey";
    char m_option[10] = "-platform";
    char m_wayland[23] = "wayland;xcb;offscreen";
    char m_xcb[15] = "xcb;offscreen";
    char* m_arguments[4] = {m_program, m_option, IsSet("WAYLAND_DISPLAY") ? m_wayland : m_xcb, nullptr};
    int m_count = IsSet("QT_QPA_PLATFORM") ? 1 : 3;
    QApplication m_application{m_count, m_arguments};
};

int ShowWindow(CommonOptions const& common, std::string const& file) {
    Display const display;
    if (!display.IsReached()) return kNoDisplay;
    OpenProfile(common);
    std::string const language = common.language.empty() ? RememberedLanguage() : common.language;
    try {
        UseLanguage(language);
    } catch (UsageError const&) {
        if (language == common.language) throw;
        UseLanguage("");  // the profile may have been edited
    }
    SurveyApp app;
    SurveyFrame frame;
    if (!common.language.empty()) frame.FixLanguage();
    app.SetMainWnd(tov::TovHandle(&frame));
    frame.show();
    if (frame.Open(file.empty() ? DataFile("zone1970.tab").string() : file) == 0) return kUnreadable;
    return QApplication::exec();
}

int ShowGallery(CommonOptions const& common) {
    Display const display;
    if (!display.IsReached()) return kNoDisplay;
    UseWords(common.language);
    OpenProfile(common);
    SurveyApp const app;
    Gallery gallery;
    gallery.show();
    return QApplication::exec();
}

// What a command that needs a display ends with.
int OrNoDisplay(int code) {
    if (code != kNoDisplay) return code;
    Complain() << "there is no display\n";
    return kUnreadable;
}

std::string GalleryHelp() {
    return "Opens a window with every control of the library, its options and its states.\n";
}

int RunGallery(Arguments& arguments, CommonOptions& common) {
    while (arguments.Next()) {
        if (!TakeCommon(arguments, common)) arguments.Unknown();
    }
    LoadLanguage(common.language);
    return common.help ? kFine : OrNoDisplay(ShowGallery(common));
}

std::string WindowHelp() {
    return R"(Opens FILE, or the table that comes with the program, in a window. Without any argument
survey does so too where there is a display.
)";
}

int RunWindow(Arguments& arguments, CommonOptions& common) {
    std::string file;
    while (arguments.Next()) {
        if (TakeCommon(arguments, common)) continue;
        if (!arguments.IsFile()) arguments.Unknown();
        if (!file.empty()) throw UsageError("window: more than one table");
        file = arguments.Name();
    }
    LoadLanguage(common.language);
    if (common.help) return kFine;
    return OrNoDisplay(ShowWindow(common, file));
}

}  // namespace

void UseWords(std::string const& language) {
    std::string const folder = "res/" + (language.empty() ? "zh_CN" : language);
    tov::CString why;
    tov::HINSTANCE const words = tov::TovLoadResourceModule(DataFile(folder).c_str(), nullptr, &why);
    if (words == nullptr) throw UsageError(DataFile(folder).string() + ": " + why);
    tov::TovSetResourceHandle(words);
    languageInUse = language.empty() ? "zh_CN" : language;
}

void UseLanguage(std::string const& language) {
    tov::TovSetTovResourceHandle(nullptr);
    LoadLanguage(language);
    UseWords(language);
}

std::string LanguageInUse() {
    return languageInUse;
}

bool HasDisplay() {
    return IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY") || IsSet("QT_QPA_PLATFORM");
}

int RunFirstWindow() {
    return ShowWindow({}, "");
}

std::span<Command const> WindowCommands() {
    static constexpr Command commands[] = {
        {"gallery", "[options]", "every control of the library with its options", GalleryHelp, RunGallery},
        {"window", "[options] [FILE]", "a window with the places of a table", WindowHelp, RunWindow},
        {"shots", "[options] DIR", "pictures of all windows", ShotsHelp, RunShots},
    };
    return commands;
}

}  // namespace survey
