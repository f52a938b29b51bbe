// SPDX-License-Identifier: Apache-2.0
#include "loadchecklog.h"

#include <QtCore/QMutexLocker>

#include "loadcheckreport.h"

namespace {

const int mostMessages = 100; // a widget may log at every paint

// Qt's message handler has no place for a pointer.
CheckLog *currentLog = nullptr;

} // namespace

CheckLog::CheckLog(LoadCheckReport &report)
    : m_report(report)
    , m_library([this](const LogLine &line) { m_report.log(line.text); })
{
    currentLog = this;
    m_formerHandler = qInstallMessageHandler(&CheckLog::receiveQt);
}

CheckLog::~CheckLog()
{
    qInstallMessageHandler(m_formerHandler);
    currentLog = nullptr;
}

QStringList CheckLog::takeLibraryWarnings(bool whileWidgetsRun)
{
    QStringList texts;
    const QList<LogLine> lines = m_library.takeLines();
    for (const LogLine &line : lines) {
        if (isWarning(line) && (!whileWidgetsRun || line.category == QLatin1String("KORA"))) {
            texts.append(line.text);
        }
    }
    return texts;
}

QStringList CheckLog::takeQtMessages()
{
    const QMutexLocker lock(&m_mutex);
    QStringList texts;
    texts.swap(m_qtMessages);
    return texts;
}

void CheckLog::receiveQt(QtMsgType, const QMessageLogContext &, const QString &text)
{
    CheckLog *log = currentLog;
    if (!log || log->m_isQtMuted) {
        return;
    }
    log->m_report.log(text);
    const QMutexLocker lock(&log->m_mutex);
    if (log->m_qtMessages.size() < mostMessages) {
        log->m_qtMessages.append(text);
    }
}
