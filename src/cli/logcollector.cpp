// SPDX-License-Identifier: Apache-2.0
#include "logcollector.h"

#include <QtCore/QMutexLocker>

#include <kora/log/logging.h>

#include <utility>

namespace {

const QChar categoryEnd(0x1f);

} // namespace

LogCollector::LogCollector(Listener listener)
    : m_listener(std::move(listener))
{
    KORA::koraSetLogMessagePattern(QLatin1String("%{CATEGORY}") + categoryEnd + QLatin1String("%{MESSAGE}"));
    KORA::koraInstallLogMessageHandlerPrivate(&LogCollector::receive, this);
}

LogCollector::~LogCollector()
{
    KORA::koraUninstallLogMessageHandlerPrivate();
}

QList<LogLine> LogCollector::takeLines()
{
    const QMutexLocker lock(&m_mutex);
    QList<LogLine> lines;
    lines.swap(m_lines);
    return lines;
}

QStringList LogCollector::takeWarnings()
{
    QStringList texts;
    const QList<LogLine> lines = takeLines();
    for (const LogLine &line : lines) {
        if (isWarning(line)) {
            texts.append(line.text);
        }
    }
    return texts;
}

void LogCollector::receive(int type, const QString &source, const QString &formatted, void *opaque)
{
    auto *self = static_cast<LogCollector *>(opaque);
    const int end = formatted.indexOf(categoryEnd);
    const LogLine line{type, source, formatted.left(end), formatted.mid(end + 1)};
    if (self->m_listener) {
        self->m_listener(line);
    }
    const QMutexLocker lock(&self->m_mutex);
    self->m_lines.append(line);
}

bool isWarning(const LogLine &line)
{
    return line.type == QtWarningMsg || line.type == QtCriticalMsg || line.type == QtFatalMsg;
}
