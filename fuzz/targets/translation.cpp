// SPDX-License-Identifier: Apache-2.0
//
// A translation file, against a second reader that works by counting quotes.
#include "../fuzztarget.h"

#include <QtCore/QFile>

#include <kora/core/pluginutils.h>

using namespace KORA::INTERNAL;

namespace {

using Texts = QList<TranslationStringType>;

const QString own = QStringLiteral("en-US");
const QString foreign = QStringLiteral("it-IT");

QStringList fieldsOf(const QString &line)
{
    QStringList fields{QString()};
    int quotes = 0;
    for (int i = 0; i < line.size(); ++i) {
        const bool isQuote = line.at(i) == QLatin1Char('"');
        const bool followsQuote = i > 0 && line.at(i - 1) == QLatin1Char('"');
        quotes += isQuote ? 1 : 0;
        if (line.at(i) == QLatin1Char(',') && quotes % 2 == 0) {
            fields.append(QString());
        } else if (!isQuote || followsQuote) {
            fields.last().append(line.at(i));
        }
    }
    return fields;
}

bool import(const QString &content, Texts &texts)
{
    QStringList lines = content.split(QLatin1Char('\n'));
    if (lines.last().isEmpty()) {
        lines.removeLast(); // behind the last line feed there is no line
    }
    for (int i = 1; i < lines.size(); ++i) {
        QString line = lines.at(i);
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        const QStringList fields = fieldsOf(line);
        if (fields.size() != 3) {
            return false;
        }
        auto known = std::find_if(texts.begin(), texts.end(), [&](const TranslationStringType &text) {
            return text.get(own, false) == fields.at(0) && text.comment() == fields.at(1);
        });
        if (known == texts.end()) {
            TranslationStringType text;
            text.set(foreign, fields.at(2));
            text.set(own, fields.at(0));
            text.setComment(fields.at(1));
            texts.append(text);
        } else {
            const QString present = known->get(foreign, false);
            if (!present.isEmpty() && present != fields.at(2)) {
                return false;
            }
            known->set(foreign, fields.at(2));
        }
    }
    return true;
}

QString written(const QByteArray &content)
{
    const QString path = fuzzFolder() + QStringLiteral("/it-IT.csv");
    QFile file(path);
    expect(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), "no file");
    return path;
}

} // namespace

KORA_FUZZ_TARGET(translation)
{
    const QString path = written(input);
    Texts texts;
    const bool isRead = PluginUtils::importTranslationFile(path, texts, own, foreign, true);
    expect(isRead || texts.isEmpty(), "a refused file changed the texts");
    if (isRead) {
        // It may be refused: a text without a translation contradicts one that came later.
        Texts again = texts;
        PluginUtils::importTranslationFile(path, again, own, foreign, false);
        expect(again == texts, "a second reading changed the texts");
    }
    // Other encodings are Qt's to tell; here they are left to it alone.
    const bool isUtf8 = !input.contains('\0') && !input.startsWith("\xff") && !input.startsWith("\xfe");
    const QString content = QString::fromUtf8(input);
    if (isUtf8 && content.toUtf8() == (input.startsWith("\xef\xbb\xbf") ? input.mid(3) : input)) {
        Texts expected;
        const bool isExpected = import(content, expected);
        expect(isRead == isExpected, "the second reader decides otherwise");
        expect(!isRead || texts == expected, "the second reader has other texts");
    }
}
