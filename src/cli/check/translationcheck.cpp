// SPDX-License-Identifier: Apache-2.0
#include "translationcheck.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTextCodec>

#include <algorithm>

#include <kora/host.h>

#include "jsonsource.h"

using namespace KORA::INTERNAL;
using KORA::DEV::Finding;

namespace {

constexpr int translationFileCode = 17;

using TextKey = QPair<QString, QString>; // text and comment

struct Translation
{
    QString text;
    int line = 0;
};

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

    SourceText of(const TextKey &key) const { return m_places.value(key); }
    QList<TextKey> options() const;

private:
    void widget(const QJsonObject &object, const QString &pointer);
    void field(const QJsonObject &object, const QString &pointer);
    void defaultTexts(const QJsonValue &value, const QString &pointer);
    void member(const QJsonObject &object, const char *key, const QString &pointer);
    void text(const QJsonValue &value, const QString &pointer, bool isOption = false);

    QHash<TextKey, SourceText> m_places;
    QSet<TextKey> m_options;
};

TextPlaces::TextPlaces(const QJsonObject &metaData)
{
    member(metaData, "name", QString());
    const QJsonArray widgets = metaData.value(QLatin1String("widgets")).toArray();
    for (int i = 0; i < widgets.size(); ++i) {
        widget(widgets.at(i).toObject(), pointerTo(QStringLiteral("/widgets"), i));
    }
}

QList<TextKey> TextPlaces::options() const
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
    const TextKey key{out.get(language, false), out.comment()};
    if (!m_places.contains(key)) {
        m_places.insert(key, {pointer, isOption});
    }
    if (isOption) {
        m_options.insert(key);
    }
}

/// One translation file, read line by line through the library's importer.
class TranslationFile
{
public:
    TranslationFile(const QString &path, const QString &defaultLanguage, const QString &language,
                    QVector<TranslationFinding> &findings)
        : m_path(path)
        , m_defaultLanguage(defaultLanguage)
        , m_language(language)
        , m_findings(findings)
    {}

    /// False if it cannot be read.
    bool read();
    Translation of(const TextKey &key) const { return m_translations.value(key); }
    /// What the first line would be if it were not skipped.
    TextKey firstLine() const { return m_firstLine; }
    void add(const char *rule, int line, const QString &message, const QString &hint,
             Finding::Severity severity = Finding::Warning);

private:
    void readLine(const QByteArray &bytes, int line, const QString &scratch);
    bool import(const QByteArray &bytes, const QString &scratch, TextKey &key, QString &translation) const;
    void checkWhole();

    QString m_path;
    QString m_defaultLanguage;
    QString m_language;
    QVector<TranslationFinding> &m_findings;
    QHash<TextKey, Translation> m_translations;
    TextKey m_firstLine;
    bool m_isRefused = false;
};

void TranslationFile::add(const char *rule, int line, const QString &message, const QString &hint,
                          Finding::Severity severity)
{
    Finding finding;
    finding.rule = QLatin1String(rule);
    finding.severity = severity;
    finding.code = severity == Finding::Error ? translationFileCode : 0;
    m_isRefused = m_isRefused || severity == Finding::Error;
    finding.file = m_path;
    finding.line = line;
    finding.column = line > 0 ? 1 : 0;
    finding.message = message;
    finding.hint = hint;
    m_findings.append({finding, QString()});
}

bool TranslationFile::read()
{
    QFile file(m_path);
    const QTemporaryDir scratch;
    if (!file.open(QIODevice::ReadOnly) || !scratch.isValid()) {
        add("csv-unreadable", 0,
            QStringLiteral("the translation file cannot be read: %1").arg(file.errorString()),
            QStringLiteral("give the user of the program the right to read it"), Finding::Error);
        return false;
    }
    QList<QByteArray> lines = file.readAll().split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast(); // what stands behind the last line's end is no line
    }
    if (!lines.isEmpty()) {
        QString unused;
        import(lines.first(), scratch.filePath(QStringLiteral("line.csv")), m_firstLine, unused);
    }
    for (int i = 1; i < lines.size(); ++i) {
        readLine(lines.at(i), i + 1, scratch.filePath(QStringLiteral("line.csv")));
    }
    checkWhole();
    return true;
}

// One line alone: its fields are those of the one entry that the importer makes of it.
bool TranslationFile::import(const QByteArray &bytes, const QString &scratch, TextKey &key,
                             QString &translation) const
{
    QFile file(scratch);
    if (!file.open(QIODevice::WriteOnly) || file.write("header\n" + bytes + '\n') < 0) {
        return false;
    }
    file.close();
    QList<TranslationStringType> entries;
    if (!PluginUtils::importTranslationFile(scratch, entries, m_defaultLanguage, m_language, true)
        || entries.isEmpty()) {
        return false;
    }
    key = {entries.first().get(m_defaultLanguage, false), entries.first().comment()};
    translation = entries.first().get(m_language, false);
    return true;
}

void TranslationFile::readLine(const QByteArray &bytes, int line, const QString &scratch)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0) {
        add("csv-encoding", line, QStringLiteral("the line is not UTF-8"),
            QStringLiteral("save the file as CSV in UTF-8"));
    }
    TextKey key;
    QString translation;
    if (!import(bytes, scratch, key, translation)) {
        add("csv-fields", line,
            QStringLiteral("the line has not exactly three fields: text, comment, translation"),
            bytes.trimmed().isEmpty()
                ? QStringLiteral("remove the empty line")
                : QStringLiteral("put texts with a comma between double quotes and write a "
                                 "double quote in them twice"),
            Finding::Error);
        return;
    }
    if (key.first == QLatin1String("\"") || key.second == QLatin1String("\"")
        || translation == QLatin1String("\"")) {
        add("csv-empty-quoted", line, QStringLiteral("\"\" reads as one quotation mark"),
            QStringLiteral("leave an empty field empty, without quotation marks"));
    }
    const Translation known = m_translations.value(key);
    if (!known.text.isEmpty() && known.text != translation) {
        add("csv-conflict", line,
            QStringLiteral("\"%1\" is \"%2\" in line %3 and \"%4\" here")
                .arg(key.first, known.text, QString::number(known.line), translation),
            QStringLiteral("keep one of them, or tell the texts apart by a comment"), Finding::Error);
        return;
    }
    m_translations.insert(key, {translation, line});
}

// The importer has the last word on the file.
void TranslationFile::checkWhole()
{
    QList<TranslationStringType> entries;
    if (!m_isRefused
        && !PluginUtils::importTranslationFile(m_path, entries, m_defaultLanguage, m_language, true)) {
        add("csv-fields", 0, WidgetLibraryPluginUtils::errorToString(translationFileCode),
            QStringLiteral("look for lines that have not exactly three fields"), Finding::Error);
    }
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
    TranslationFile file(path, m_info.defaultLanguage(), language, m_findings);
    if (file.read()) {
        untranslated(file, language);
        options(file);
    }
}

void TranslationCheck::untranslated(TranslationFile &file, const QString &language)
{
    const auto texts = m_info.translatableStrings(m_info.defaultLanguage());
    for (const TranslationStringType &text : texts) {
        const TextKey key{text.get(m_info.defaultLanguage(), false), text.comment()};
        if (file.firstLine() == key) {
            file.add(
                "csv-header", 1,
                QStringLiteral("the first line is skipped, and holds the translation of \"%1\"")
                    .arg(key.first),
                QStringLiteral("put a line with headings above it, such as en-US,comment,%1").arg(language));
        } else if (file.of(key).text.isEmpty()) {
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
    QList<TextKey> keys = m_places.options();
    std::sort(keys.begin(), keys.end());
    for (const TextKey &key : qAsConst(keys)) {
        const Translation translation = file.of(key);
        if (translation.text.contains(QLatin1Char(',')) || translation.text.contains(QLatin1Char('='))) {
            file.add("option-translation", translation.line,
                     QStringLiteral("the translation of the option \"%1\" holds \",\" or \"=\": \"%2\"")
                         .arg(key.first, translation.text),
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
