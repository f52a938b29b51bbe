// SPDX-License-Identifier: Apache-2.0
//
// Loads the library into a program that has Qt already, and prints the milliseconds and the KiB written.
#include "memory.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTextStream>
#include <QtWidgets/QApplication>

#include <dlfcn.h>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const Memory before = Memory::now();
    QElapsedTimer timer;
    timer.start();
    if (!dlopen(LIBRARY_FILE, RTLD_NOW)) {
        QTextStream(stderr) << dlerror() << '\n';
        return 1;
    }
    const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
    const Memory cost = Memory::now() - before;
    QTextStream(stdout) << milliseconds << ' ' << cost.written / 1024 << '\n';
    return 0;
}
