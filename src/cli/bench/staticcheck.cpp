// SPDX-License-Identifier: Apache-2.0
#include "staticcheck.h"

#include <QtCore/QCoreApplication>

#include "check/findingoutput.h"

StaticCheck::StaticCheck(const QString &folder, QObject *parent)
    : QObject(parent)
{
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
    connect(&m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            [this] { emit finished(findingsFromJson(m_process.readAllStandardOutput())); });
    connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            emit finished({});
        }
    });
    m_process.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("check"), folder, QStringLiteral("--format"), QStringLiteral("json")});
}
