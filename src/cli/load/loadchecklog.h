// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMutex>
#include <QtCore/QStringList>

#include "logcollector.h"

class LoadCheckReport;

/// Takes what the library, the plugin and Qt log for as long as it lives, and passes it on to the report at once.
/// One at a time.
class CheckLog
{
public:
    explicit CheckLog(LoadCheckReport &report);
    ~CheckLog();
    Q_DISABLE_COPY_MOVE(CheckLog)

    /// The library's own warnings since the last call: of its category "KORA" while widgets run, else of any.
    QStringList takeLibraryWarnings(bool whileWidgetsRun);
    /// What came through Qt's message handler since the last call.
    QStringList takeQtMessages();

    /// Qt's messages are of the checks' own making.
    void muteQt(bool on) { m_isQtMuted = on; }

private:
    static void receiveQt(QtMsgType type, const QMessageLogContext &context, const QString &text);

    LoadCheckReport &m_report;
    LogCollector m_library;
    QMutex m_mutex;
    QStringList m_qtMessages;
    bool m_isQtMuted = false;
    QtMessageHandler m_formerHandler;
};
