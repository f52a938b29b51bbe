// SPDX-License-Identifier: Apache-2.0
#include "translationcheck.h"

#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QSet>

#include <algorithm>

#include <kora/core/translationfile_p.h>
#include <kora/host.h>

#include "jsonsource.h"
#include "project/translationsheet.h"
#include "rules.h"

using namespace KORA::INTERNAL;
using KORA::DEV::Finding;

namespace {

constexpr int translationFileCode = 17;

/// A text of the metadata and where it stands first.
struct SourceText
{
    QString pointer;
    bool isOption = false;
};

/// Notes where each translatable text of the metadata stands.
class TextPlaces
{
public:
    explicit TextPlaces(const QJsonObject &metaData);

    SourceText of(const TranslationKey &key) const { return m_places.value(key); }
    QList<TranslationKey> options() const;

private:
    void widget(const QJsonObject &object, const QString &pointer);
    void field(const QJsonObject &object, const QString &pointer);
    void defaultTexts(const QJsonValue &value, const QString &pointer);
    void member(const QJsonObject &object, const char *key, const QString &pointer);
    void text(const QJsonValue &value, const QString &pointer, bool isOption = false);

    QHash<TranslationKey, SourceText> m_places;
    QSet<TranslationKey> m_options;
};

TextPlaces::TextPlaces(const QJsonObject &metaData)
{
    member(metaData, "name", QString());
    const QJsonArray widgets = metaData.value(QLatin1String("widgets")).toArray();
    for (int i = 0; i < widgets.size(); ++i) {
        widget(widgets.at(i).toObject(), pointerTo(QStringLiteral("/widgets"), i));
    }
}

QList<TranslationKey> TextPlaces::options() const
{
    return m_options.values();
}

void TextPlaces::widget(const QJsonObject &object, const QString &pointer)
{
    for (const char *key : {"display", "description", "galleryGroupName"}) {
        member(object, key, pointer);
    }
    const QJsonArray fields = object.value(QLatin1String("fields")).toArray();
    for (int i = 0; i < fields.size(); ++i) {
        field(fields.at(i).toObject(), pointerTo(pointer + QLatin1String("/fields"), i));
    }
}

void TextPlaces::field(const QJsonObject &object, const QString &pointer)
{
    for (const char *key : {"display", "description", "group", "displayFontFamily", "displayFontSize",
                            "displayFontBold", "displayFontStyle", "displayFontUnderline"}) {
        member(object, key, pointer);
    }
    const QJsonArray options = object.value(QLatin1String("options")).toArray();
    for (int i = 0; i < options.size(); ++i) {
        text(options.at(i).toObject().value(QLatin1String("option")),
             pointerTo(pointer + QLatin1String("/options"), i) + QLatin1String("/option"), true);
    }
    if (object.value(QLatin1String("multiLanguage")).toBool()) {
        defaultTexts(object.value(QLatin1String("defaultValue")), pointer + QLatin1String("/defaultValue"));
    }
}

void TextPlaces::defaultTexts(const QJsonValue &value, const QString &pointer)
{
    text(value, pointer);
    const QJsonArray elements = value.toArray();
    for (int i = 0; i < elements.size(); ++i) {
        text(elements.at(i), pointerTo(pointer, i));
        text(elements.at(i).toObject().value(QLatin1String("v")),
             pointerTo(pointer, i) + QLatin1String("/v"));
    }
}

void TextPlaces::member(const QJsonObject &object, const char *key, const QString &pointer)
{
    text(object.value(QLatin1String(key)), pointerTo(pointer, QString(QLatin1String(key))));
}

void TextPlaces::text(const QJsonValue &value, const QString &pointer, bool isOption)
{
    TranslationStringType out;
    const QString language = QStringLiteral("en-US");
    if (!PluginUtils::infoFromMetaDataParseTranslatableString(value, language, {}, out, false, false)) {
        return;
    }
    const TranslationKey key{out.get(language, false), out.comment()};
    if (!m_places.contains(key)) {
        m_places.insert(key, {pointer, isOption});
    }
    if (isOption) {
        m_options.insert(key);
    }
}

/// One translation file and what is wrong with it.
class TranslationFile
{
public:
    TranslationFile(const QString &path, QVector<TranslationFinding> &findings)
        : m_path(path)
        , m_findings(findings)
    {}

    /// False if it cannot be read.
    bool read(const QString &defaultLanguage, const QString &language);
    TranslationRow of(const TranslationKey &key) const { return m_rows.value(key); }
    /// What the first line would be if it were not skipped.
    TranslationKey firstLine() const { return m_firstLine; }
    void add(const char *rule, int line, const QString &message, const QString &hint);

private:
    void add(Finding finding);

    QString m_path;
    QVector<TranslationFinding> &m_findings;
    QHash<TranslationKey, TranslationRow> m_rows;
    TranslationKey m_firstLine;
    bool m_isRefused = false;
};

void TranslationFile::add(const char *rule, int line, const QString &message, const QString &hint)
{
    Finding finding;
    finding.rule = QLatin1String(rule);
    finding.file = m_path;
    finding.line = line;
    finding.column = line > 0 ? 1 : 0;
    finding.message = message;
    finding.hint = hint;
    add(finding);
}

void TranslationFile::add(Finding finding)
{
    finding.severity = findRule(finding.rule)->severity;
    if (finding.severity == Finding::Error) {
        finding.code = translationFileCode;
        m_isRefused = true;
    }
    m_findings.append({finding, QString()});
}

bool TranslationFile::read(const QString &defaultLanguage, const QString &language)
{
    const TranslationSheet sheet = readTranslationSheet(m_path);
    for (const Finding &fault : sheet.faults) {
        add(fault);
    }
    for (const TranslationRow &row : sheet.rows) {
        m_rows.insert(row.key, row);
        const QString quote = QStringLiteral("\"");
        if (row.key.first == quote || row.key.second == quote || row.translation == quote) {
            add("csv-empty-quoted", row.line, QStringLiteral("\"\" reads as one quotation mark"),
                QStringLiteral("leave an empty field empty, without quotation marks"));
        }
    }
    const QStringList heading = splitTranslationLine(sheet.header);
    m_firstLine = {heading.value(0), heading.value(1)};
    // The importer has the last word on the file.
    QList<TranslationStringType> entries;
    if (!m_isRefused
        && !PluginUtils::importTranslationFile(m_path, entries, defaultLanguage, language, true)) {
        add("csv-fields", 0, WidgetLibraryPluginUtils::errorToString(translationFileCode),
            QStringLiteral("look for lines that have not exactly three fields"));
    }
    return QFileInfo(m_path).isReadable();
}

class TranslationCheck
{
public:
    TranslationCheck(const QJsonObject &metaData, const QString &folder, const QStringList &files)
        : m_metaData(metaData)
        , m_folder(folder)
        , m_files(files)
        , m_places(metaData)
    {}

    QVector<TranslationFinding> run();

private:
    QString fileOf(const QString &language) const;
    void language(const QString &language, const QString &pointer);
    void untranslated(TranslationFile &file, const QString &language);
    void options(TranslationFile &file);
    void add(const char *rule, const QString &pointer, const QString &message, const QString &hint);

    const QJsonObject &m_metaData;
    QString m_folder;
    QStringList m_files;
    TextPlaces m_places;
    WidgetLibraryPluginMetaInformation m_info;
    QVector<TranslationFinding> m_findings;
};

QVector<TranslationFinding> TranslationCheck::run()
{
    if (WidgetLibraryPluginUtils::metaInformationFromMetaData({{QLatin1String("MetaData"), m_metaData}},
                                                              m_info)) {
        return {};
    }
    const QStringList languages = m_info.translation();
    for (int i = 0; i < languages.size(); ++i) {
        if (languages.indexOf(languages.at(i)) == i && languages.at(i) != m_info.defaultLanguage()) {
            language(languages.at(i), pointerTo(QStringLiteral("/translation"), i));
        }
    }
    return m_findings;
}

QString TranslationCheck::fileOf(const QString &language) const
{
    const QString name = language + QLatin1String(".csv");
    for (const QString &file : m_files) {
        if (QFileInfo(file).fileName() == name) {
            return file;
        }
    }
    if (!m_files.isEmpty()) {
        return {};
    }
    for (const char *below : {"translations/", "translation/", ""}) {
        QString path = QStringLiteral("%1/%2%3").arg(m_folder, QLatin1String(below), name);
        if (QFileInfo(path).isFile()) {
            return path;
        }
    }
    return {};
}

void TranslationCheck::language(const QString &language, const QString &pointer)
{
    const QString path = fileOf(language);
    if (path.isEmpty()) {
        add("language-without-file", pointer,
            QStringLiteral("there is no translation file for %1").arg(language),
            QStringLiteral(
                "add translations/%1.csv beside the metadata file and name it under TRANSLATIONS in "
                "CMakeLists.txt, or remove the language")
                .arg(language));
        return;
    }
    TranslationFile file(path, m_findings);
    if (file.read(m_info.defaultLanguage(), language)) {
        untranslated(file, language);
        options(file);
    }
}

void TranslationCheck::untranslated(TranslationFile &file, const QString &language)
{
    const auto texts = m_info.translatableStrings(m_info.defaultLanguage());
    for (const TranslationStringType &text : texts) {
        const TranslationKey key{text.get(m_info.defaultLanguage(), false), text.comment()};
        if (file.firstLine() == key) {
            file.add(
                "csv-header", 1,
                QStringLiteral("the first line is skipped, and holds the translation of \"%1\"")
                    .arg(key.first),
                QStringLiteral("put a line with headings above it, such as en-US,comment,%1").arg(language));
        } else if (file.of(key).translation.isEmpty()) {
            add("untranslated", m_places.of(key).pointer,
                QStringLiteral("\"%1\" is not translated into %2").arg(key.first, language),
                key.second.isEmpty() ? QStringLiteral("add a line to %1.csv").arg(language)
                                     : QStringLiteral("add a line with the comment \"%1\" to %2.csv")
                                           .arg(key.second, language));
        }
    }
}

void TranslationCheck::options(TranslationFile &file)
{
    QList<TranslationKey> keys = m_places.options();
    std::sort(keys.begin(), keys.end());
    for (const TranslationKey &key : qAsConst(keys)) {
        const TranslationRow row = file.of(key);
        if (row.translation.contains(QLatin1Char(',')) || row.translation.contains(QLatin1Char('='))) {
            file.add("option-translation", row.line,
                     QStringLiteral("the translation of the option \"%1\" holds \",\" or \"=\": \"%2\"")
                         .arg(key.first, row.translation),
                     QStringLiteral("find a translation without them"));
        }
    }
}

void TranslationCheck::add(const char *rule, const QString &pointer, const QString &message,
                           const QString &hint)
{
    Finding finding;
    finding.rule = QLatin1String(rule);
    finding.severity = Finding::Warning;
    finding.message = message;
    finding.hint = hint;
    m_findings.append({finding, pointer});
}

} // namespace

QVector<TranslationFinding> checkTranslations(const QJsonObject &metaData, const QString &folder,
                                              const QStringList &files)
{
    return TranslationCheck(metaData, folder, files).run();
}
