// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <kora/testkit/main.h>

/// Runs the test object without a display. Beside the test functions, every message on Qt's message handler and
/// every log line of the library that no LogRecorder took make the program fail. A Qt message that belongs to the
/// test is announced with QTest::ignoreMessage().
int runKoraTest(QObject &test, const QStringList &arguments);

/// The main function of a test program.
#define KORA_TEST_MAIN(TestClass)                            \
    int main(int argc, char **argv)                          \
    {                                                        \
        KORA::TestKit::useOffscreenPlatform();               \
        QApplication app(argc, argv);                        \
        TestClass test;                                      \
        return runKoraTest(test, QApplication::arguments()); \
    }
