// SPDX-License-Identifier: Apache-2.0
//
// fuzz_replay <corpus folder> [<target>]
//
// Runs the targets on the files of <corpus folder>/<target>/, with any compiler and without libFuzzer. What is no text is
// kept as hexadecimal digits, in files *.hex.
#include "fuzztarget.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstdio>

namespace {

bool replay(const FuzzTarget &target, const QDir &folder)
{
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            std::fprintf(stderr, "%s: %s\n", qPrintable(file.fileName()), qPrintable(file.errorString()));
            return false;
        }
        std::printf("%s/%s\n", target.name, qPrintable(name));
        std::fflush(stdout); // the last line names a file that does not come back
        const QByteArray content = file.readAll();
        target.run(name.endsWith(QLatin1String(".hex")) ? QByteArray::fromHex(content) : content);
    }
    if (names.isEmpty()) {
        std::fprintf(stderr, "%s: no files\n", qPrintable(folder.path()));
    }
    return !names.isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    prepareFuzzing(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString wanted = arguments.value(2);
    bool isGood = arguments.size() > 1;
    for (const FuzzTarget &target : fuzzTargets()) {
        const QString name = QString::fromLatin1(target.name);
        if (wanted.isEmpty() || wanted == name) {
            isGood = replay(target, QDir(arguments.value(1) + QLatin1Char('/') + name)) && isGood;
        }
    }
    return isGood ? 0 : 1;
}
