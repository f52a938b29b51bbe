// SPDX-License-Identifier: Apache-2.0
#include "translationproject.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSet>

#include <kora/core/files_p.h>
#include <kora/core/pluginutils.h>
#include <kora/core/widgetlibrarypluginutils.h>

#include "logcollector.h"

#include <algorithm>

using KORA::DEV::Finding;
using KORA::DEV::Findings;
using namespace KORA::INTERNAL;

namespace {

const QLatin1String defaultHeader("text,comment,translation");
// Where projects have their translation files, the first being that of new ones.
const char *const usualDirs[] = {"translations", "translation", "."};

Finding finding(Finding::Severity severity, const char *rule, const QString &path, int line,
                const QString &message)
{
    Finding found;
    found.severity = severity;
    found.rule = QLatin1String(rule);
    found.file = path;
    found.line = line;
    found.column = line > 0 ? 1 : 0;
    found.message = message;
    return found;
}

QString fileNameOf(const QString &language)
{
    return language + QLatin1String(".csv");
}

QString nameOf(const TranslationKey &key)
{
    return key.second.isEmpty() ? QStringLiteral("\"%1\"").arg(key.first)
                                : QStringLiteral("\"%1\" (%2)").arg(key.first, key.second);
}

// The file itself, or that of a project's folder: metadata.json, or else the one that looks like it.
QString findMetaData(const QString &path, QString &problem)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        problem = QStringLiteral("%1 does not exist").arg(path);
        return {};
    }
    if (!info.isDir()) {
        return path;
    }
    const QDir dir(path);
    if (dir.exists(QStringLiteral("metadata.json"))) {
        return dir.filePath(QStringLiteral("metadata.json"));
    }
    QStringList found;
    const QStringList names = dir.entryList({QStringLiteral("*.json")}, QDir::Files);
    for (const QString &name : names) {
        QFile file(dir.filePath(name));
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const QJsonObject object = isOpen ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
        if (object.contains(QLatin1String("id")) && object.contains(QLatin1String("author"))) {
            found.append(dir.filePath(name));
        }
    }
    if (found.size() != 1) {
        problem = found.isEmpty() ? QStringLiteral("there is no metadata.json in %1").arg(path)
                                  : QStringLiteral("%1 has several metadata files; name one: %2")
                                        .arg(path, found.join(QLatin1String(", ")));
    }
    return found.value(0);
}

bool readMetaDataFile(const QString &path, WidgetLibraryPluginMetaInformation &info, QString &problem)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        problem = QStringLiteral("%1: %2").arg(path, file.errorString());
        return false;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        problem = QStringLiteral("%1 is no metadata: %2").arg(path, error.errorString());
        return false;
    }
    LogCollector log;
    const int code = WidgetLibraryPluginUtils::metaInformationFromMetaData(
        {{QStringLiteral("MetaData"), document.object()}}, info);
    if (code != 0) {
        problem = QStringLiteral("%1: %2 [%3]; kora check tells where")
                      .arg(path, WidgetLibraryPluginUtils::errorToString(code), QString::number(code));
    }
    return code == 0;
}

QVector<TranslationKey> textsOf(const WidgetLibraryPluginMetaInformation &info)
{
    QList<TranslationStringType> texts = info.translatableStrings(info.defaultLanguage());
    for (const TranslationStringType &text : {info.copyright(), info.description(), info.license()}) {
        PluginMetaInformation::addTranslatableStringToList(texts, text, info.defaultLanguage());
    }
    QVector<TranslationKey> keys;
    for (const TranslationStringType &text : qAsConst(texts)) {
        keys.append({text.get(info.defaultLanguage(), false), text.comment()});
    }
    return keys;
}

QString findTranslationDir(const QDir &project, const QStringList &languages)
{
    for (const char *name : usualDirs) {
        const QDir dir(project.filePath(QLatin1String(name)));
        for (const QString &language : languages) {
            if (dir.exists(fileNameOf(language))) {
                return QDir::cleanPath(dir.path());
            }
        }
    }
    return QDir::cleanPath(project.filePath(QLatin1String(usualDirs[0])));
}

bool save(const QString &path, const QByteArray &content, QString &problem)
{
    QString reason;
    if (QDir().mkpath(QFileInfo(path).path()) && KORA::INTERNAL::replaceFile(path, content, reason)) {
        return true;
    }
    problem = reason.isEmpty() ? QStringLiteral("its folder cannot be made")
                               : QStringLiteral("the file cannot be written: %1").arg(reason);
    return false;
}

QString lineNumbers(const QVector<int> &lines)
{
    const int shown = 10;
    QStringList numbers;
    for (int i = 0; i < qMin(shown, lines.size()); ++i) {
        numbers.append(QString::number(lines.at(i)));
    }
    return numbers.join(QLatin1String(", "))
           + (lines.size() > shown ? QLatin1String(", ...") : QLatin1String());
}

} // namespace

bool TranslationProject::open(const QString &path, const QString &dir, QString &problem)
{
    m_metaDataPath = findMetaData(path, problem);
    WidgetLibraryPluginMetaInformation info;
    if (!problem.isEmpty() || !readMetaDataFile(m_metaDataPath, info, problem)) {
        return false;
    }
    m_defaultLanguage = info.defaultLanguage();
    m_languages = info.translation();
    m_languages.removeDuplicates();
    m_texts = textsOf(info);
    m_dir = dir.isEmpty() ? findTranslationDir(QFileInfo(m_metaDataPath).dir(), m_languages) : dir;
    return true;
}

QString TranslationProject::pathOf(const QString &language) const
{
    return QDir(m_dir).filePath(fileNameOf(language));
}

Findings TranslationProject::check() const
{
    Findings found;
    for (const QString &language : m_languages) {
        found += checkLanguage(language);
    }
    const QStringList names = QDir(m_dir).entryList({QStringLiteral("*.csv")}, QDir::Files);
    for (const QString &name : names) {
        const QString language = QFileInfo(name).completeBaseName();
        if (PluginUtils::isValidLanguageCode(language) && !m_languages.contains(language)) {
            found.append(finding(Finding::Warning, "translation-unlisted", pathOf(language), 0,
                                 QStringLiteral("the file is not read: the metadata does not list %1 under "
                                                "\"translation\"")
                                     .arg(language)));
        }
    }
    return found;
}

Findings TranslationProject::checkLanguage(const QString &language) const
{
    const QString path = pathOf(language);
    if (!QFileInfo::exists(path)) {
        return {finding(Finding::Warning, "language-without-file", path, 0,
                        QStringLiteral("the metadata lists %1, but there is no file").arg(language))};
    }
    const TranslationSheet sheet = readTranslationSheet(path);
    Findings found = sheet.faults;
    QList<TranslationStringType> imported;
    if (found.isEmpty()
        && !PluginUtils::importTranslationFile(path, imported, m_defaultLanguage, language, true)) {
        found.append(finding(Finding::Error, "csv-unreadable", path, 0,
                             QStringLiteral("the library refuses the file")));
    }
    addTextFindings(sheet, language, found);
    return found;
}

void TranslationProject::addTextFindings(const TranslationSheet &sheet, const QString &language,
                                         Findings &found) const
{
    const QString path = pathOf(language);
    QSet<TranslationKey> missing(m_texts.cbegin(), m_texts.cend());
    const QSet<TranslationKey> all = missing;
    QVector<int> same;
    for (const TranslationRow &row : sheet.rows) {
        missing.remove(row.key);
        if (!all.contains(row.key)) {
            found.append(finding(Finding::Warning, "translation-stale", path, row.line,
                                 QStringLiteral("the metadata no longer has %1").arg(nameOf(row.key))));
        } else if (row.translation.isEmpty()) {
            found.append(finding(Finding::Warning, "translation-empty", path, row.line,
                                 QStringLiteral("%1 is shown as an empty text").arg(nameOf(row.key))));
        } else if (row.translation == row.key.first) {
            same.append(row.line);
        }
    }
    for (const TranslationKey &text : m_texts) {
        if (missing.contains(text)) {
            found.append(finding(Finding::Warning, "untranslated", path, 0,
                                 QStringLiteral("there is no row for %1").arg(nameOf(text))));
        }
    }
    if (!same.isEmpty()) {
        found.append(finding(Finding::Note, "translation-same", path, same.first(),
                             QStringLiteral("%1 texts read as in %2, lines %3")
                                 .arg(QString::number(same.size()), m_defaultLanguage, lineNumbers(same))));
    }
}

// What is there keeps its place, new texts come after it, and what is gone comes last.
QVector<TranslationRow> TranslationProject::updatedRows(const TranslationSheet &sheet, bool prune,
                                                        Update &update) const
{
    QSet<TranslationKey> missing(m_texts.cbegin(), m_texts.cend());
    QVector<TranslationRow> rows;
    QVector<TranslationRow> stale;
    for (const TranslationRow &row : sheet.rows) {
        const bool isCurrent = missing.remove(row.key);
        (isCurrent ? rows : stale).append(row);
    }
    for (const TranslationKey &text : m_texts) {
        if (missing.contains(text)) {
            // An empty translation would be shown as an empty text.
            rows.append({text, text.first, 0});
            ++update.added;
        }
    }
    update.stale = stale.size();
    return prune ? rows : rows + stale;
}

TranslationProject::Update TranslationProject::update(const QString &language, bool prune) const
{
    Update update;
    update.path = pathOf(language);
    TranslationSheet sheet;
    sheet.header = defaultHeader;
    const bool exists = QFileInfo::exists(update.path);
    if (exists) {
        sheet = readTranslationSheet(update.path);
        if (sheet.faults.size()
            > sheet.emptyLines) { // empty lines are left out; the rest only a person can mend
            update.faults = sheet.faults;
            return update;
        }
    }
    const QVector<TranslationRow> rows = updatedRows(sheet, prune, update);
    const QByteArray content = translationSheetText(sheet.header, rows, update.path, update.faults).toUtf8();
    QFile file(update.path);
    const bool isUpToDate = exists && file.open(QIODevice::ReadOnly) && file.readAll() == content;
    file.close();
    if (!update.faults.isEmpty() || isUpToDate) {
        return update;
    }
    QString problem;
    update.isWritten = save(update.path, content, problem);
    if (!update.isWritten) {
        update.faults.append(finding(Finding::Error, "translation-unwritable", update.path, 0, problem));
    }
    return update;
}
