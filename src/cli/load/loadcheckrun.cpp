// SPDX-License-Identifier: Apache-2.0
#include "loadcheckrun.h"

#include <kora/loader/plugindata.h>

#include "loadchecklog.h"
#include "loadcheckreport.h"

using KORA::DEV::Finding;

CheckRun::CheckRun(const QString &check, const WidgetLibraryPluginData &plugin,
                   const WidgetMetaInformation &widget, LoadCheckReport &report, CheckLog &log)
    : m_check(check)
    , m_plugin(plugin)
    , m_widget(widget)
    , m_report(report)
    , m_log(log)
{
    m_timer.start();
}

void CheckRun::seed(quint32 seed)
{
    // No QHash: its numbers differ between machines.
    const QByteArray place = (widgetName() + QLatin1Char(' ') + m_check).toUtf8();
    const quint32 seeds[] = {seed, qChecksum(place.constData(), static_cast<uint>(place.size()))};
    m_random = QRandomGenerator(seeds);
}

QString CheckRun::widgetName() const
{
    return m_widget.isValid() ? QStringLiteral("%1 %2").arg(m_widget.id(), m_widget.version().version())
                              : QStringLiteral("the plugin");
}

void CheckRun::call(const QString &text, const QString &fieldId, const QString &value)
{
    m_report.call(text, fieldId, value);
}

void CheckRun::error(const QString &message, const QString &hint, const QString &rule)
{
    tell(finding(Finding::Error, message, hint, rule));
}

void CheckRun::warning(const QString &message, const QString &hint)
{
    tell(finding(Finding::Warning, message, hint));
}

void CheckRun::note(const QString &message, const QString &hint)
{
    tell(finding(Finding::Note, message, hint));
}

void CheckRun::fieldError(const QString &fieldId, const QString &value, const QString &message,
                          const QString &hint, const QString &rule)
{
    Finding found = finding(Finding::Error, message, hint, rule);
    found.fieldId = fieldId;
    found.value = value;
    tell(found);
}

void CheckRun::errorOf(const QString &widgetId, const QString &version, const QString &message,
                       const QString &hint)
{
    Finding found = finding(Finding::Error, message, hint);
    found.widgetId = widgetId;
    found.widgetVersion = version;
    tell(found);
}

void CheckRun::tellLog()
{
    const QStringList warnings = m_log.takeLibraryWarnings(true);
    for (const QString &text : warnings) {
        tell(finding(Finding::Warning, QStringLiteral("the library warns: %1").arg(text),
                     QStringLiteral("see the calls of getFieldValue and setFieldValue in the widget's code"),
                     QStringLiteral("load-warning")));
    }
    const QStringList messages = m_log.takeQtMessages();
    for (const QString &text : messages) {
        tell(finding(Finding::Note, QStringLiteral("it writes to Qt's message handler: %1").arg(text),
                     QStringLiteral("log with KORA::LogHandler: a panel shows nobody what Qt is told"),
                     QStringLiteral("load-message")));
    }
}

Finding CheckRun::finding(Finding::Severity severity, const QString &message, const QString &hint,
                          const QString &rule) const
{
    Finding found;
    found.severity = severity;
    found.rule = rule.isEmpty() ? QLatin1String("load-") + m_check : rule;
    found.message = message;
    found.hint = hint;
    found.file = m_plugin.libraryPath();
    if (m_widget.isValid()) {
        found.widgetId = m_widget.id();
        found.widgetVersion = m_widget.version().version();
    }
    return found;
}

void CheckRun::tell(const Finding &finding)
{
    m_hasErrors = m_hasErrors || finding.severity == Finding::Error;
    m_report.finding(finding);
}
