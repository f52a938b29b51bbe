// SPDX-License-Identifier: Apache-2.0
#include "metadatacheck.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>
#include <tuple>

#include <kora/host.h>

#include "jsonsource.h"
#include "metadatafaults.h"
#include "metadatalints.h"
#include "rules.h"
#include "translationcheck.h"

using KORA::DEV::Finding;
using KORA::DEV::Findings;
using KORA::INTERNAL::WidgetLibraryPluginUtils;

namespace {

constexpr int metaDataNotValid = 3;

Finding findingOf(const char *rule, const QString &message, const QString &hint)
{
    Finding finding;
    finding.rule = QLatin1String(rule);
    finding.message = message;
    finding.hint = hint;
    if (const Rule *entry = findRule(finding.rule)) {
        finding.severity = entry->severity;
    }
    return finding;
}

/// Puts what the checks find to its place in the file.
class MetadataCheck
{
public:
    MetadataCheck(const JsonSource &source, const QString &fileName)
        : m_source(source)
        , m_fileName(fileName)
    {}

    Findings run(const MetadataCheckOptions &options);

private:
    void syntax();
    void expectedId(const QString &id);
    void faults(const MetadataFaults &faults);
    void lints(const MetadataFaults &faults);
    void translations(const QJsonObject &metaData, const MetadataCheckOptions &options);
    void add(Finding finding, const QString &pointer, bool atKey = false);
    void setOwner(Finding &finding, const QString &pointer) const;

    const JsonSource &m_source;
    QString m_fileName;
    Findings m_findings;
};

Findings MetadataCheck::run(const MetadataCheckOptions &options)
{
    if (!m_source.isValid() || !m_source.isObject()) {
        syntax();
        return m_findings;
    }
    const MetadataFaults found = findMetadataFaults(m_source.object());
    faults(found);
    lints(found);
    expectedId(options.expectedId);
    if (options.withTranslations) {
        translations(found.repaired, options);
    }
    std::stable_sort(m_findings.begin(), m_findings.end(), [this](const Finding &a, const Finding &b) {
        const bool isOther = a.file != m_fileName;
        if (isOther != (b.file != m_fileName)) {
            return !isOther;
        }
        return std::tie(a.file, a.line, a.column) < std::tie(b.file, b.line, b.column);
    });
    return m_findings;
}

void MetadataCheck::syntax()
{
    if (m_source.isValid()) {
        Finding finding = findingOf("metadata", WidgetLibraryPluginUtils::errorToString(metaDataNotValid),
                                    QLatin1String(findCode(metaDataNotValid)->remedy));
        finding.code = metaDataNotValid;
        add(finding, QString());
        return;
    }
    Finding finding =
        findingOf("json-syntax", QStringLiteral("no JSON: %1").arg(m_source.problem()),
                  QStringLiteral("Qt's moc would only warn and build a plugin without metadata"));
    finding.file = m_fileName;
    finding.line = m_source.problemPlace().line;
    finding.column = m_source.problemPlace().column;
    m_findings.append(finding);
}

void MetadataCheck::expectedId(const QString &expected)
{
    const QString id = m_source.object().value(QLatin1String("id")).toString();
    if (expected.isEmpty() || id.isEmpty() || id == expected) {
        return;
    }
    add(findingOf("id-differs", QStringLiteral("the id %1 is not %2").arg(id, expected),
                  QStringLiteral("the id of the metadata names the folder and the library")),
        QStringLiteral("/id"));
}

void MetadataCheck::faults(const MetadataFaults &faults)
{
    for (const MetadataFault &fault : faults.faults) {
        const CodeHelp *help = findCode(fault.code);
        Finding finding = findingOf("metadata", WidgetLibraryPluginUtils::errorToString(fault.code),
                                    help ? QLatin1String(help->remedy) : QLatin1String());
        finding.code = fault.code;
        add(finding, fault.pointer);
    }
}

void MetadataCheck::lints(const MetadataFaults &faults)
{
    const auto lints = lintMetadata(m_source.object(), faults.repaired);
    for (const MetadataLint &lint : lints) {
        add(findingOf(lint.rule, lint.message, lint.hint), lint.pointer, lint.atKey);
    }
    for (const auto &key : m_source.repeatedKeys()) {
        Finding finding = findingOf("repeated-key", QStringLiteral("the key stands in this object before"),
                                    QStringLiteral("keep one of the two: the last one counts"));
        add(finding, key.first, true);
    }
    if (!m_source.isStandard()) {
        Finding finding = findingOf(
            "json-not-standard",
            QStringLiteral("Qt reads this, other programs do not: %1").arg(m_source.strictProblem()),
            QStringLiteral("write it as the standard of JSON says"));
        finding.file = m_fileName;
        finding.line = m_source.problemPlace().line;
        finding.column = m_source.problemPlace().column;
        m_findings.append(finding);
    }
}

void MetadataCheck::translations(const QJsonObject &metaData, const MetadataCheckOptions &options)
{
    const auto findings = checkTranslations(metaData, QFileInfo(m_fileName).path(), options.translationFiles);
    for (const TranslationFinding &one : findings) {
        if (one.finding.file.isEmpty()) {
            add(one.finding, one.pointer);
        } else {
            m_findings.append(one.finding);
        }
    }
}

void MetadataCheck::add(Finding finding, const QString &pointer, bool atKey)
{
    const TextPlace place = atKey ? m_source.placeOfKey(pointer) : m_source.placeOf(pointer);
    finding.file = m_fileName;
    finding.line = place.line;
    finding.column = place.column;
    finding.pointer = QLatin1String("/MetaData") + pointer;
    finding.value = m_source.textOf(pointer);
    setOwner(finding, pointer);
    m_findings.append(finding);
}

// The widget and the field that the pointer leads into.
void MetadataCheck::setOwner(Finding &finding, const QString &pointer) const
{
    const QStringList path = pointer.split(QLatin1Char('/')); // "", "widgets", "0", "fields", "1", ...
    if (path.size() < 3 || path.at(1) != QLatin1String("widgets")) {
        return;
    }
    const QJsonObject widget =
        m_source.object().value(QLatin1String("widgets")).toArray().at(path.at(2).toInt()).toObject();
    finding.widgetId = widget.value(QLatin1String("id")).toString();
    finding.widgetVersion = widget.value(QLatin1String("version")).toString();
    if (path.size() >= 5 && path.at(3) == QLatin1String("fields")) {
        const QJsonValue field = widget.value(QLatin1String("fields")).toArray().at(path.at(4).toInt());
        finding.fieldId = field.toObject().value(QLatin1String("id")).toString();
    }
}

} // namespace

Findings checkMetadata(const QByteArray &json, const QString &fileName, const MetadataCheckOptions &options)
{
    const JsonSource source(json);
    return MetadataCheck(source, fileName).run(options);
}

Findings checkLibraryMetadata(const QJsonObject &metaData, const QString &libraryPath)
{
    MetadataCheckOptions options;
    options.withTranslations = false;
    Findings findings =
        checkMetadata(QJsonDocument(metaData).toJson(QJsonDocument::Compact), libraryPath, options);
    for (Finding &finding : findings) {
        finding.line = 0;
        finding.column = 0;
    }
    return findings;
}
