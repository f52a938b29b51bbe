// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QRandomGenerator>
#include <QtCore/QString>

#include <kora/core/widgetmetainformation.h>
#include <kora/dev/diagnosis/finding.h>

class CheckLog;
class LoadCheckReport;

namespace KORA {
namespace INTERNAL {
class WidgetLibraryPluginData;
} // namespace INTERNAL
} // namespace KORA

/// What a check works with: the plugin, the widget and the way to tell what it finds. One object per step.
class CheckRun
{
public:
    using Finding = KORA::DEV::Finding;
    using WidgetMetaInformation = KORA::INTERNAL::WidgetMetaInformation;
    using WidgetLibraryPluginData = KORA::INTERNAL::WidgetLibraryPluginData;

    /// @p widget is invalid for a check of the plugin as a whole.
    CheckRun(const QString &check, const WidgetLibraryPluginData &plugin, const WidgetMetaInformation &widget,
             LoadCheckReport &report, CheckLog &log);

    /// Makes random() the same for the same seed, widget and check, whatever else is checked.
    void seed(quint32 seed);
    void setTimeLimit(int milliseconds) { m_timeLimit = milliseconds; }

    const WidgetLibraryPluginData &plugin() const { return m_plugin; }
    const WidgetMetaInformation &widget() const { return m_widget; }
    /// "gauge 1.0.0", or "the plugin"
    QString widgetName() const;
    CheckLog &log() { return m_log; }
    QRandomGenerator &random() { return m_random; }
    /// Whether a check that can do with less is to end now.
    bool isHalfTimeOver() const { return m_timer.elapsed() > m_timeLimit / 2; }

    /// To be told before each call of the plugin's code.
    void call(const QString &text, const QString &fieldId = QString(), const QString &value = QString());

    /// @p rule for what any check can meet and what therefore is not of the present one: "load-paint".
    void error(const QString &message, const QString &hint, const QString &rule = QString());
    void warning(const QString &message, const QString &hint);
    void note(const QString &message, const QString &hint);
    void fieldError(const QString &fieldId, const QString &value, const QString &message, const QString &hint,
                    const QString &rule = QString());
    /// About another widget than widget(), such as one that the metadata does not know.
    void errorOf(const QString &widgetId, const QString &version, const QString &message,
                 const QString &hint);
    /// Makes findings of what was logged since the last call.
    void tellLog();

    bool hasErrors() const { return m_hasErrors; }

private:
    Finding finding(Finding::Severity severity, const QString &message, const QString &hint,
                    const QString &rule = QString()) const;
    void tell(const Finding &finding);

    QString m_check;
    const WidgetLibraryPluginData &m_plugin;
    WidgetMetaInformation m_widget;
    LoadCheckReport &m_report;
    CheckLog &m_log;
    QRandomGenerator m_random;
    QElapsedTimer m_timer;
    int m_timeLimit = 0;
    bool m_hasErrors = false;
};
