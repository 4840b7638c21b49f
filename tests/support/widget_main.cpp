// Runs the tests of one program with an application object. A warning of Qt's that no test expects fails it.
#include "support/widgets.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

void OnQtMessage(QtMsgType type, QMessageLogContext const&, QString const& text) {
    QByteArray const bytes = text.toUtf8();
    // The toolkit's own words about a screen that it does not have.
    bool const isExpected = text.startsWith("This plugin does not support") || text.contains("propagateSizeHints");
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        if (!isExpected) ADD_FAILURE() << "Qt says: " << bytes.constData();
    } else {
        std::fprintf(stderr, "%s\n", bytes.constData());
    }
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Also whoever only asks which tests there are.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication const application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler(OnQtMessage);
    return RUN_ALL_TESTS();
}
