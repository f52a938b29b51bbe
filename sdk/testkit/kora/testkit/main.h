// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <kora/log/logging.h>

namespace KORA {
namespace TestKit {

/// Lets the QApplication that is made next draw into memory, at 96 DPI and unscaled, unless the environment names a
/// platform.
inline void useOffscreenPlatform()
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) { // Qt complains where no session has set it
        static const QTemporaryDir runtimeDir;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDir.path()));
    }
    qputenv("QT_FONT_DPI", "96");
    qunsetenv("QT_SCALE_FACTOR");
}

/// Shows the library's warnings, such as wrong field accesses, in the test's output.
inline void showLibraryWarnings()
{
    KORA::koraInstallLogMessageHandlerPrivate(
        [](int type, const QString &, const QString &line, void *) {
            if (type != QtDebugMsg && type != QtInfoMsg) {
                QTest::qWarn(qPrintable(line), __FILE__, __LINE__);
            }
        },
        nullptr);
}

} // namespace TestKit
} // namespace KORA

/// The main function of a test program for widgets; needs no display.
#define KORA_TESTKIT_MAIN(TestClass)            \
    int main(int argc, char **argv)             \
    {                                           \
        KORA::TestKit::useOffscreenPlatform();  \
        QApplication application(argc, argv);   \
        KORA::TestKit::showLibraryWarnings();   \
        TestClass test;                         \
        return QTest::qExec(&test, argc, argv); \
    }
