// SPDX-License-Identifier: Apache-2.0
#include <studio/golden.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryFile>

namespace {

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly)
           && file.write(bytes) == bytes.size() && file.flush();
}

QString diff(const QString &path, const QByteArray &document)
{
    QTemporaryFile actual;
    if (!actual.open() || actual.write(document) != document.size() || !actual.flush()) {
        return QStringLiteral("cannot write a temporary file: %1").arg(actual.errorString());
    }
    QProcess process;
    process.start(QStringLiteral("diff"), {QStringLiteral("-u"), path, actual.fileName()});
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
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
    return file.readAll() == document ? QString()
                                      : QStringLiteral("%1 differs\n%2").arg(name, diff(path, document));
}

QStringList namesOfGolden(const QString &folder)
{
    return QDir(QStringLiteral(KORA_GOLDEN_DIR "/") + folder).entryList(QDir::Files);
}
