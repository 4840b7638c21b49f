// Runs the tests of one program with an application object. A warning of Qt's that no test expects fails it.
#include "support/widgets.h"

#include <QPointingDevice>

#include <gtest/gtest.h>
#include <tov310/export.h>

#include <cstdio>

// The toolkit is not built with the thread sanitizer, which therefore does not see how it hands memory of its
// own from thread to thread. What it calls in the library or in a test is watched as ever.
extern "C" TOV_EXPORT char const* __tsan_default_suppressions();
extern "C" char const* __tsan_default_suppressions() {
    return "called_from_lib:libQt6Core.so.6\n"
           "called_from_lib:libQt6Gui.so.6\n";
}

// The desktop's message bus keeps what it connected with, and the C library what it reads for a locale, which
// libraries that come with printers ask for.
extern "C" TOV_EXPORT char const* __lsan_default_suppressions();
extern "C" char const* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n"
           "leak:__argz_add_sep\n";
}

namespace {

void OnQtMessage(QtMsgType type, QMessageLogContext const&, QString const& text) {
    QByteArray const bytes = text.toUtf8();
    // The toolkit's own words about a screen that it does not have.
    bool const isExpected =
        text.startsWith("This plugin does not support") || text.contains("propagateSizeHints");
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        if (!isExpected) ADD_FAILURE() << "Qt says: " << bytes.constData();
    } else {
        std::fprintf(stderr, "%s\n", bytes.constData());
    }
}

// What is not told otherwise: no display, the same look everywhere, and settings that nobody else has.
void SetUpEnvironment(QString const& folder) {
    auto const preset = [](char const* name, QByteArray const& value) {
        if (!qEnvironmentVariableIsSet(name)) qputenv(name, value);
    };
    preset("QT_QPA_PLATFORM", "offscreen");
    preset("QT_SCALE_FACTOR", "1");
    preset("QT_STYLE_OVERRIDE", "fusion");
    preset("XDG_RUNTIME_DIR", folder.toUtf8());
    qputenv("XDG_CONFIG_HOME", folder.toUtf8());
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QTemporaryDir const folder;
    SetUpEnvironment(folder.path());
    QApplication const application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler(OnQtMessage);
    // Made where it is first asked for, which must not be a test's thread.
    QPointingDevice::primaryPointingDevice();
    return RUN_ALL_TESTS();
}
