// SPDX-License-Identifier: Apache-2.0
#include "loadcheckreport.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMutexLocker>

#include <cerrno>
#include <unistd.h>

using KORA::DEV::Finding;

namespace {

const QLatin1String typeKey("type");
const QLatin1String textKey("text");
const QLatin1String fieldKey("field");
const QLatin1String valueKey("value");

QJsonObject message(const char *type)
{
    return {{typeKey, QLatin1String(type)}};
}

QJsonObject textMessage(const char *type, const QString &text)
{
    return {{typeKey, QLatin1String(type)}, {textKey, text}};
}

CheckStep stepOf(const QJsonObject &object)
{
    return {object[QLatin1String("number")].toInt(), object[QLatin1String("nextWidget")].toInt(),
            object[QLatin1String("check")].toString(), object[QLatin1String("widget")].toString(),
            object[QLatin1String("version")].toString()};
}

Finding findingOf(const QJsonObject &object)
{
    Finding finding;
    finding.severity = static_cast<Finding::Severity>(object[QLatin1String("severity")].toInt());
    finding.rule = object[QLatin1String("rule")].toString();
    finding.message = object[QLatin1String("message")].toString();
    finding.hint = object[QLatin1String("hint")].toString();
    finding.file = object[QLatin1String("file")].toString();
    finding.widgetId = object[QLatin1String("widget")].toString();
    finding.widgetVersion = object[QLatin1String("version")].toString();
    finding.fieldId = object[fieldKey].toString();
    finding.value = object[valueKey].toString();
    return finding;
}

} // namespace

LoadCheckReport::~LoadCheckReport() = default;

CheckLineWriter::CheckLineWriter(int fileDescriptor)
    : m_fileDescriptor(fileDescriptor)
{}

void CheckLineWriter::begin(const CheckStep &step)
{
    QJsonObject object = message("begin");
    object[QLatin1String("number")] = step.number;
    object[QLatin1String("nextWidget")] = step.nextWidget;
    object[QLatin1String("check")] = step.check;
    object[QLatin1String("widget")] = step.widgetId;
    object[QLatin1String("version")] = step.widgetVersion;
    write(object);
}

void CheckLineWriter::call(const QString &text, const QString &fieldId, const QString &value)
{
    QJsonObject object = textMessage("call", text);
    object[fieldKey] = fieldId;
    object[valueKey] = value;
    write(object);
}

void CheckLineWriter::log(const QString &line)
{
    write(textMessage("log", line));
}

void CheckLineWriter::finding(const Finding &finding)
{
    QJsonObject object = message("finding");
    object[QLatin1String("severity")] = static_cast<int>(finding.severity);
    object[QLatin1String("rule")] = finding.rule;
    object[QLatin1String("message")] = finding.message;
    object[QLatin1String("hint")] = finding.hint;
    object[QLatin1String("file")] = finding.file;
    object[QLatin1String("widget")] = finding.widgetId;
    object[QLatin1String("version")] = finding.widgetVersion;
    object[fieldKey] = finding.fieldId;
    object[valueKey] = finding.value;
    write(object);
}

void CheckLineWriter::problem(const QString &text)
{
    write(textMessage("problem", text));
}

void CheckLineWriter::done()
{
    write(message("done"));
}

void CheckLineWriter::write(const QJsonObject &object)
{
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    const QMutexLocker lock(&m_mutex);
    int written = 0;
    while (written < line.size()) {
        const auto count =
            ::write(m_fileDescriptor, line.constData() + written, static_cast<size_t>(line.size() - written));
        if (count < 0 && errno != EINTR) {
            return; // nobody reads any more
        }
        written += count < 0 ? 0 : static_cast<int>(count);
    }
}

void readCheckLine(const QByteArray &line, LoadCheckReport &report)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    const QString type = object[typeKey].toString();
    const QString text = object[textKey].toString();
    if (type == QLatin1String("begin")) {
        report.begin(stepOf(object));
    } else if (type == QLatin1String("call")) {
        report.call(text, object[fieldKey].toString(), object[valueKey].toString());
    } else if (type == QLatin1String("log")) {
        report.log(text);
    } else if (type == QLatin1String("finding")) {
        report.finding(findingOf(object));
    } else if (type == QLatin1String("problem")) {
        report.problem(text);
    } else if (type == QLatin1String("done")) {
        report.done();
    }
}
