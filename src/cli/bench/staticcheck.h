// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QProcess>

#include <kora/dev/diagnosis/finding.h>

/// One `kora check` of a plugin folder in a process of its own: it asks the metadata's parser again and again, which
/// would fill the bench's console.
class StaticCheck : public QObject
{
    Q_OBJECT

public:
    explicit StaticCheck(const QString &folder, QObject *parent = nullptr);

Q_SIGNALS:
    /// Once; without findings also if the check could not be run.
    void finished(const KORA::DEV::Findings &findings);

private:
    QProcess m_process;
};
