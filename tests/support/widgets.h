// What tests of widgets need. Mouse clicks go through the window, as a user's do.
#pragma once

#define QTEST_QPA_MOUSE_HANDLING

#include <QTest>
#include <QtWidgets>
