// SPDX-License-Identifier: Apache-2.0
#include "findingoutput.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QUrl>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>

#include "output.h"
#include "rules.h"

using KORA::DEV::Finding;
using KORA::DEV::Findings;

namespace {

constexpr int schemaVersion = 1;

QString labelOf(const Finding &finding)
{
    return finding.code != 0 ? QString::number(finding.code) : finding.rule;
}

QString placeOf(const Finding &finding)
{
    if (finding.line == 0) {
        return finding.file;
    }
    return QStringLiteral("%1:%2:%3")
        .arg(finding.file, QString::number(finding.line), QString::number(finding.column));
}

QString ownerOf(const Finding &finding)
{
    QStringList owner;
    if (!finding.widgetId.isEmpty()) {
        owner.append(QStringLiteral("widget %1 %2").arg(finding.widgetId, finding.widgetVersion).trimmed());
    }
    if (!finding.fieldId.isEmpty()) {
        owner.append(QStringLiteral("field %1").arg(finding.fieldId));
    }
    return owner.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(owner.join(QLatin1String(", ")));
}

// An object or array is not repeated: it begins at the place that is named.
QString valueOf(const Finding &finding)
{
    const bool isShown = !finding.value.isEmpty() && finding.rule == QLatin1String("metadata")
                         && !finding.value.startsWith(QLatin1Char('{'));
    return isShown ? QStringLiteral(": ") + finding.value : QString();
}

QString counted(int count, const char *singular)
{
    return QStringLiteral("%1 %2%3").arg(QString::number(count), QLatin1String(singular),
                                         count == 1 ? QString() : QStringLiteral("s"));
}

QString summaryOf(const CheckReport &report)
{
    QStringList parts{counted(report.count(Finding::Error), "error"),
                      counted(report.count(Finding::Warning), "warning")};
    if (const int notes = report.count(Finding::Note)) {
        parts.append(counted(notes, "note"));
    }
    return parts.join(QLatin1String(", "));
}

QJsonObject asJson(const Finding &finding)
{
    return {
        {QLatin1String("severity"), severityName(finding.severity)},
        {QLatin1String("rule"), finding.rule},
        {QLatin1String("code"), finding.code},
        {QLatin1String("message"), finding.message},
        {QLatin1String("hint"), finding.hint},
        {QLatin1String("file"), finding.file},
        {QLatin1String("line"), finding.line},
        {QLatin1String("column"), finding.column},
        {QLatin1String("pointer"), finding.pointer},
        {QLatin1String("widget"), finding.widgetId},
        {QLatin1String("version"), finding.widgetVersion},
        {QLatin1String("field"), finding.fieldId},
        {QLatin1String("value"), finding.value},
    };
}

Finding fromJson(const QJsonObject &object)
{
    const auto text = [&object](const char *key) { return object.value(QLatin1String(key)).toString(); };
    Finding finding;
    for (const Finding::Severity severity : {Finding::Error, Finding::Warning, Finding::Note}) {
        if (severityName(severity) == text("severity")) {
            finding.severity = severity;
        }
    }
    finding.rule = text("rule");
    finding.code = object.value(QLatin1String("code")).toInt();
    finding.message = text("message");
    finding.hint = text("hint");
    finding.file = text("file");
    finding.line = object.value(QLatin1String("line")).toInt();
    finding.column = object.value(QLatin1String("column")).toInt();
    finding.pointer = text("pointer");
    finding.widgetId = text("widget");
    finding.widgetVersion = text("version");
    finding.fieldId = text("field");
    finding.value = text("value");
    return finding;
}

QString pretty(const QJsonObject &object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson());
}

// SARIF ----------------------------------------------------------------------------------------------------

QJsonObject sarifText(const QString &text)
{
    return {{QLatin1String("text"), text}};
}

QString sarifUri(const QString &file)
{
    return QFileInfo(file).isAbsolute() ? QString::fromUtf8(QUrl::fromLocalFile(file).toEncoded())
                                        : QString::fromUtf8(QUrl::toPercentEncoding(file, "/"));
}

QJsonObject sarifRule(const QString &id)
{
    QJsonObject object{{QLatin1String("id"), id}};
    if (const Rule *rule = findRule(id)) {
        object.insert(QLatin1String("shortDescription"), sarifText(QString::fromUtf8(rule->meaning)));
        object.insert(QLatin1String("help"),
                      sarifText(QStringLiteral("Usual cause: ") + QString::fromUtf8(rule->cause)));
    }
    return object;
}

QJsonObject sarifResult(const Finding &finding)
{
    QJsonObject place{
        {QLatin1String("artifactLocation"), QJsonObject{{QLatin1String("uri"), sarifUri(finding.file)}}}};
    if (finding.line > 0) {
        place.insert(QLatin1String("region"), QJsonObject{{QLatin1String("startLine"), finding.line},
                                                          {QLatin1String("startColumn"), finding.column}});
    }
    const QString text = finding.message + ownerOf(finding)
                         + (finding.hint.isEmpty() ? QString() : QLatin1String("; ") + finding.hint);
    return {
        {QLatin1String("ruleId"), finding.rule},
        {QLatin1String("level"), severityName(finding.severity)}, // SARIF has the same three words
        {QLatin1String("message"), sarifText(text)},
        {QLatin1String("locations"), QJsonArray{QJsonObject{{QLatin1String("physicalLocation"), place}}}},
        {QLatin1String("properties"), asJson(finding)},
    };
}

// JUnit ----------------------------------------------------------------------------------------------------

// What XML cannot hold, a file's name may.
QString xmlSafe(const QString &text)
{
    QString safe = printable(text);
    std::replace_if(
        safe.begin(), safe.end(), [](QChar c) { return c.isSurrogate() || c.unicode() >= 0xfffe; },
        QLatin1Char('?'));
    return safe;
}

bool isFailure(const Finding &finding, const CheckReport &report)
{
    return finding.severity == Finding::Error || (report.isStrict && finding.severity == Finding::Warning);
}

bool isAbout(const Finding &finding, const QString &subject)
{
    const QString file = QFileInfo(finding.file).absoluteFilePath();
    const QString place = QFileInfo(subject).absoluteFilePath();
    return file == place || file.startsWith(place + QLatin1Char('/'));
}

void writeCase(QXmlStreamWriter &writer, const QString &name, const Findings &findings,
               const CheckReport &report)
{
    writer.writeStartElement(QStringLiteral("testcase"));
    writer.writeAttribute(QStringLiteral("classname"), QLatin1String("kora.") + report.command);
    writer.writeAttribute(QStringLiteral("name"), xmlSafe(name));
    for (const Finding &finding : findings) {
        const QString text = xmlSafe(placeOf(finding) + QLatin1String(": ") + finding.message
                                     + ownerOf(finding) + QLatin1String("; ") + finding.hint);
        if (isFailure(finding, report)) {
            writer.writeStartElement(QStringLiteral("failure"));
            writer.writeAttribute(QStringLiteral("type"), labelOf(finding));
            writer.writeAttribute(QStringLiteral("message"), xmlSafe(finding.message));
            writer.writeCharacters(text);
            writer.writeEndElement();
        } else {
            writer.writeTextElement(QStringLiteral("system-out"), text);
        }
    }
    writer.writeEndElement();
}

// The findings by what was checked; those about other files, such as a translation file, come with the first.
QVector<QPair<QString, Findings>> casesOf(const CheckReport &report)
{
    QVector<QPair<QString, Findings>> cases;
    for (const QString &subject : report.checked) {
        cases.append({subject, {}});
    }
    if (cases.isEmpty()) {
        cases.append({report.command, {}});
    }
    for (const Finding &finding : report.findings) {
        auto found = std::find_if(cases.begin(), cases.end(),
                                  [&finding](const auto &one) { return isAbout(finding, one.first); });
        (found == cases.end() ? cases.begin() : found)->second.append(finding);
    }
    return cases;
}

} // namespace

int CheckReport::count(Finding::Severity severity) const
{
    return static_cast<int>(
        std::count_if(findings.cbegin(), findings.cend(),
                      [severity](const Finding &finding) { return finding.severity == severity; }));
}

bool CheckReport::isFine() const
{
    return count(Finding::Error) == 0 && (!isStrict || count(Finding::Warning) == 0);
}

QString findingsAsText(const CheckReport &report)
{
    QString text;
    for (const Finding &finding : report.findings) {
        text += printable(QStringLiteral("%1: %2: %3%4%5 [%6]")
                              .arg(placeOf(finding), severityName(finding.severity), finding.message,
                                   valueOf(finding), ownerOf(finding), labelOf(finding)))
                + QLatin1Char('\n');
        if (!finding.hint.isEmpty()) {
            text += QLatin1String("    ") + printable(finding.hint) + QLatin1Char('\n');
        }
    }
    return text;
}

QString findingsAsJson(const CheckReport &report)
{
    QJsonArray problems;
    for (const Finding &finding : report.findings) {
        problems.append(asJson(finding));
    }
    const QJsonObject summary{
        {QLatin1String("checked"), QJsonArray::fromStringList(report.checked)},
        {QLatin1String("errors"), report.count(Finding::Error)},
        {QLatin1String("warnings"), report.count(Finding::Warning)},
        {QLatin1String("notes"), report.count(Finding::Note)},
    };
    return pretty({
        {QLatin1String("tool"), QLatin1String("kora")},
        {QLatin1String("schema"), schemaVersion},
        {QLatin1String("command"), report.command},
        {QLatin1String("ok"), report.isFine()},
        {QLatin1String("summary"), summary},
        {QLatin1String("problems"), problems},
    });
}

Findings findingsFromJson(const QByteArray &text)
{
    Findings findings;
    const QJsonArray problems =
        QJsonDocument::fromJson(text).object().value(QLatin1String("problems")).toArray();
    for (const QJsonValue &problem : problems) {
        findings.append(fromJson(problem.toObject()));
    }
    return findings;
}

QString findingsAsSarif(const CheckReport &report)
{
    QStringList ruleIds;
    QJsonArray results;
    for (const Finding &finding : report.findings) {
        results.append(sarifResult(finding));
        ruleIds.append(finding.rule);
    }
    ruleIds.removeDuplicates();
    QJsonArray rules;
    for (const QString &id : qAsConst(ruleIds)) {
        rules.append(sarifRule(id));
    }
    const QJsonObject driver{
        {QLatin1String("name"), QLatin1String("kora")},
        {QLatin1String("version"), QLatin1String(KORA_VERSION)},
        {QLatin1String("rules"), rules},
    };
    const QJsonObject run{
        {QLatin1String("tool"), QJsonObject{{QLatin1String("driver"), driver}}},
        {QLatin1String("columnKind"), QLatin1String("unicodeCodePoints")},
        {QLatin1String("results"), results},
    };
    return pretty({
        {QLatin1String("$schema"), QLatin1String("https://json.schemastore.org/sarif-2.1.0.json")},
        {QLatin1String("version"), QLatin1String("2.1.0")},
        {QLatin1String("runs"), QJsonArray{run}},
    });
}

QString findingsAsJUnit(const CheckReport &report)
{
    const auto cases = casesOf(report);
    const auto failed = std::count_if(cases.cbegin(), cases.cend(), [&report](const auto &one) {
        return std::any_of(one.second.cbegin(), one.second.cend(),
                           [&report](const Finding &finding) { return isFailure(finding, report); });
    });
    QString text;
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("testsuites"));
    writer.writeStartElement(QStringLiteral("testsuite"));
    writer.writeAttribute(QStringLiteral("name"), QLatin1String("kora ") + report.command);
    writer.writeAttribute(QStringLiteral("tests"), QString::number(cases.size()));
    writer.writeAttribute(QStringLiteral("failures"), QString::number(failed));
    writer.writeAttribute(QStringLiteral("errors"), QStringLiteral("0"));
    for (const auto &one : cases) {
        writeCase(writer, one.first, one.second, report);
    }
    writer.writeEndDocument();
    return text;
}

QString findingsIn(const std::string &format, const CheckReport &report)
{
    if (format == "json") {
        return findingsAsJson(report);
    }
    if (format == "sarif") {
        return findingsAsSarif(report);
    }
    if (format == "junit") {
        return findingsAsJUnit(report);
    }
    const QString text = findingsAsText(report);
    return text.isEmpty() ? text : text + summaryOf(report) + QLatin1Char('\n');
}
