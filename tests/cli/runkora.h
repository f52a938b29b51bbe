// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

struct Result
{
    int exitCode = -1;
    QString out;
    QString err;
};

/// One run of the command.
inline Result kora(const QStringList &arguments, const QMap<QString, QString> &environment = {})
{
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (auto variable = environment.cbegin(); variable != environment.cend(); ++variable) {
        variables.insert(variable.key(), variable.value());
    }
    process.setProcessEnvironment(variables);
    process.start(QStringLiteral(KORA_COMMAND), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit) {
        return {-1, {}, process.errorString()};
    }
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
