// SPDX-License-Identifier: Apache-2.0
#include <studio/golden.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryFile>

#include <cstdio>

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly)
           && file.write(bytes) == bytes.size() && file.flush();
}

// To standard error: the test's log cuts long messages off.
void printDiff(const QString &path, const QByteArray &document)
{
    QTemporaryFile actual;
    if (!actual.open() || actual.write(document) != document.size() || !actual.flush()) {
        std::fprintf(stderr, "cannot write a temporary file: %s\n", qPrintable(actual.errorString()));
        return;
    }
    QProcess process;
    process.start(QStringLiteral("diff"), {QStringLiteral("-u"), path, actual.fileName()});
    process.waitForFinished();
    std::fputs(process.readAllStandardOutput().constData(), stderr);
}

} // namespace

QString differenceFromGolden(const QString &name, const QByteArray &document)
{
    const QString path = QStringLiteral(KORA_GOLDEN_DIR "/") + name;
    if (qEnvironmentVariableIsSet("KORA_UPDATE_GOLDEN")) {
        return writeFile(path, document) ? QString() : QStringLiteral("cannot write %1").arg(path);
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("no reference document %1; scripts/update-golden makes it").arg(path);
    }
    if (file.readAll() == document) {
        return {};
    }
    printDiff(path, document);
    return QStringLiteral("%1 differs; the difference stands on standard error\n").arg(name);
}

QStringList namesOfGolden(const QString &folder)
{
    return QDir(QStringLiteral(KORA_GOLDEN_DIR "/") + folder).entryList(QDir::Files);
}
