// SPDX-License-Identifier: Apache-2.0
#include <kora/core/pluginutils.h>

#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QTextStream>

#include <kora/core/translatablestringlist_p.h>
#include <kora/core/translationfile_p.h>

namespace KORA {
namespace INTERNAL {

// A double quote toggles quoting, and the second of two in a row stands for itself. So an empty quoted field,
// which is two double quotes, deliberately reads as one double quote.
QStringList splitTranslationLine(const QString &line)
{
    QStringList fields;
    QString field;
    bool insideQuotes = false;
    QChar previous;
    for (const QChar c : line) {
        if (c == QLatin1Char(',') && !insideQuotes) {
            fields.append(field);
            field.clear();
        } else if (c != QLatin1Char('"')) {
            field.append(c);
        } else {
            if (previous == QLatin1Char('"')) {
                field.append(c);
            }
            insideQuotes = !insideQuotes;
        }
        previous = c;
    }
    fields.append(field);
    return fields;
}

namespace {

constexpr int fieldsPerLine = 3;

// False for a line that is no translation or contradicts one.
bool importLine(const QString &line, TranslatableStringList &texts, const QString &language, bool addMissing)
{
    const QStringList fields = splitTranslationLine(line);
    if (fields.size() != fieldsPerLine) {
        return false;
    }
    const QString &text = fields.at(0);
    const QString &comment = fields.at(1);
    const QString &translation = fields.at(2);

    const int index = texts.indexOf(text, comment);
    if (index < 0) {
        if (addMissing) {
            TranslationStringType entry;
            entry.set(language, translation);
            entry.set(texts.language(), text);
            entry.setComment(comment);
            entry.defaultLanguage = texts.language();
            texts.append(entry);
        }
        return true;
    }
    const QString known = texts.at(index).get(language, false);
    if (!known.isEmpty() && known != translation) {
        return false;
    }
    texts.entry(index).set(language, translation);
    return true;
}

} // namespace

bool PluginUtils::importTranslationFile(const QString &path, QList<TranslationStringType> &translations,
                                        const QString &defaultLanguage, const QString &language,
                                        bool addMissing)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return false;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");

    QList<TranslationStringType> imported = translations;
    TranslatableStringList texts(imported, defaultLanguage);
    QString line;
    stream.readLineInto(&line); // the header, whatever it holds
    while (stream.readLineInto(&line)) {
        if (!importLine(line, texts, language, addMissing)) {
            return false;
        }
    }
    if (file.error() != QFileDevice::NoError) {
        return false;
    }
    translations = imported;
    return true;
}

} // namespace INTERNAL
} // namespace KORA
