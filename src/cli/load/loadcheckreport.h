// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMutex>
#include <QtCore/QString>

#include <kora/dev/diagnosis/finding.h>

class QJsonObject;

/// One check of one widget version, or of the plugin as a whole.
struct CheckStep
{
    int number = 0;     ///< place in the run, the same in every run with the same arguments
    int nextWidget = 0; ///< number of the first step that is not about this widget
    QString check;
    QString widgetId; ///< empty for the plugin
    QString widgetVersion;
};

/// What a run of checks tells while it goes on. A run in a child process tells it as lines of JSON.
class LoadCheckReport
{
public:
    LoadCheckReport() = default;
    Q_DISABLE_COPY_MOVE(LoadCheckReport)
    virtual ~LoadCheckReport();

    virtual void begin(const CheckStep &step) = 0;
    /// What is about to be called, such as "fieldIsChangedEvent of speed = 5"; of a field with its id and value.
    virtual void call(const QString &text, const QString &fieldId, const QString &value) = 0;
    /// A line that the plugin or the library logged. On any thread.
    virtual void log(const QString &line) = 0;
    virtual void finding(const KORA::DEV::Finding &finding) = 0;
    /// The arguments do not fit the plugin; the run is over.
    virtual void problem(const QString &text) = 0;
    /// Every step was taken.
    virtual void done() = 0;
};

/// Writes each line at once: what was told before a crash is not lost.
class CheckLineWriter : public LoadCheckReport
{
public:
    explicit CheckLineWriter(int fileDescriptor);

    void begin(const CheckStep &step) override;
    void call(const QString &text, const QString &fieldId, const QString &value) override;
    void log(const QString &line) override;
    void finding(const KORA::DEV::Finding &finding) override;
    void problem(const QString &text) override;
    void done() override;

private:
    void write(const QJsonObject &object);

    QMutex m_mutex;
    int m_fileDescriptor;
};

/// Tells @p report what one line says; a line that is none of CheckLineWriter's says nothing.
void readCheckLine(const QByteArray &line, LoadCheckReport &report);
