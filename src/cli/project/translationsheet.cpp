// SPDX-License-Identifier: Apache-2.0
#include "translationsheet.h"

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QTextCodec>

#include <kora/core/translationfile_p.h>

#include <algorithm>

using KORA::DEV::Finding;
using KORA::DEV::Findings;
using KORA::INTERNAL::splitTranslationLine;

namespace {

constexpr int fieldsPerRow = 3;
const QChar quote = QLatin1Char('"');
const QChar comma = QLatin1Char(',');

Finding fault(const QString &path, int line, const QString &rule, const QString &message, const QString &hint)
{
    Finding finding;
    finding.rule = rule;
    finding.file = path;
    finding.line = line;
    finding.column = line > 0 ? 1 : 0;
    finding.message = message;
    finding.hint = hint;
    return finding;
}

Finding wrongFieldCount(const QString &path, int line, const QString &text, int count)
{
    const bool isQuoting = text.count(quote) % 2 != 0;
    const QString hint = isQuoting
                             ? QStringLiteral("a quoted field is not closed: quotes in a text are doubled")
                             : QStringLiteral("text, comment and translation; a text with a comma is put in "
                                              "double quotes");
    Finding finding = fault(path, line, QStringLiteral("csv-fields"),
                            QStringLiteral("the line has %1 fields instead of 3").arg(count), hint);
    finding.value = text;
    return finding;
}

Finding conflict(const QString &path, const TranslationRow &row, const TranslationRow &first)
{
    Finding finding =
        fault(path, row.line, QStringLiteral("csv-conflict"),
              QStringLiteral("\"%1\" is translated as \"%2\" here and as \"%3\" in line %4")
                  .arg(row.key.first, row.translation, first.translation, QString::number(first.line)),
              QStringLiteral("keep one, or give the text another comment in the metadata where it means "
                             "something else"));
    finding.value = row.translation;
    return finding;
}

/// Reads the lines after the header.
class SheetReader
{
public:
    SheetReader(const QString &path, TranslationSheet &sheet)
        : m_path(path)
        , m_sheet(sheet)
    {}

    void read(int line, const QString &text)
    {
        const QStringList fields = splitTranslationLine(text);
        if (text.isEmpty()) {
            ++m_sheet.emptyLines;
            addFault(fault(m_path, line, QStringLiteral("csv-fields"), QStringLiteral("the line is empty"),
                           QStringLiteral("remove it")));
        } else if (fields.size() != fieldsPerRow) {
            addFault(wrongFieldCount(m_path, line, text, fields.size()));
        } else {
            add({{fields.at(0), fields.at(1)}, fields.at(2), line});
        }
    }

private:
    void addFault(const Finding &finding) { m_sheet.faults.append(finding); }

    void add(const TranslationRow &row)
    {
        const auto known = m_indexes.constFind(row.key);
        if (known == m_indexes.constEnd()) {
            m_indexes.insert(row.key, m_sheet.rows.size());
            m_sheet.rows.append(row);
            return;
        }
        TranslationRow &first = m_sheet.rows[*known];
        if (first.translation.isEmpty()) { // as the library reads it
            first.translation = row.translation;
        } else if (first.translation != row.translation) {
            addFault(conflict(m_path, row, first));
        }
    }

    QString m_path;
    TranslationSheet &m_sheet;
    QHash<TranslationKey, int> m_indexes;
};

// Only the first line may begin with the mark of the byte order.
bool decode(const QByteArray &bytes, bool isFirst, QString &text)
{
    QTextCodec::ConverterState state(isFirst ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

bool readsAs(const QString &field, const QString &text)
{
    return splitTranslationLine(field + QLatin1String(",,")) == QStringList{text, QString(), QString()};
}

/// Finds a field that is read as a text by trying: the library takes the second of two quotes for itself wherever
/// they stand, so "\"a\"" as spreadsheets write it reads as two quotes at each end.
class FieldSearch
{
public:
    explicit FieldSearch(const QString &text)
        : m_text(text)
        , m_from((text.size() + 1) * statesPerPosition, unseen)
        , m_step(m_from.size())
    {}

    bool find(QString &field)
    {
        QVector<int> queue{indexOf(0, false, false)};
        m_from[queue.first()] = queue.first();
        for (int next = 0; next < queue.size(); ++next) {
            const int index = queue.at(next);
            const int position = index / statesPerPosition;
            const bool isInside = index & 2;
            if (position == m_text.size() && !isInside) {
                field = pathTo(index);
                return true;
            }
            visitFollowing(index, position, isInside, index & 1, queue);
        }
        return false;
    }

private:
    static constexpr int unseen = -1;
    static constexpr int statesPerPosition = 4; // inside quotes or not, after a quote or not

    static int indexOf(int position, bool isInside, bool isAfterQuote)
    {
        return position * statesPerPosition + (isInside ? 2 : 0) + (isAfterQuote ? 1 : 0);
    }

    void visitFollowing(int from, int position, bool isInside, bool isAfterQuote, QVector<int> &queue)
    {
        const bool atEnd = position == m_text.size();
        if (!atEnd && m_text.at(position) == quote) {
            if (isAfterQuote) {
                return; // one more quote would be read than is there
            }
            int end = position;
            while (end < m_text.size() && m_text.at(end) == quote) {
                ++end;
            }
            const int count = end - position; // takes one more, and each of them toggles
            visit(from, indexOf(end, isInside != (count % 2 == 0), true), QString(count + 1, quote), queue);
            return;
        }
        if (!atEnd && (isInside || m_text.at(position) != comma)) {
            visit(from, indexOf(position + 1, isInside, false), m_text.at(position), queue);
        }
        if (!isAfterQuote) {
            visit(from, indexOf(position, !isInside, true), quote, queue);
        }
    }

    void visit(int from, int to, const QString &step, QVector<int> &queue)
    {
        if (m_from.at(to) == unseen) {
            m_from[to] = from;
            m_step[to] = step;
            queue.append(to);
        }
    }

    QString pathTo(int index) const
    {
        QString path;
        for (; m_from.at(index) != index; index = m_from.at(index)) {
            path.prepend(m_step.at(index));
        }
        return path;
    }

    QString m_text;
    QVector<int> m_from;
    QVector<QString> m_step;
};

} // namespace

TranslationSheet readTranslationSheet(const QString &path)
{
    TranslationSheet sheet;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        sheet.faults.append(fault(path, 0, QStringLiteral("csv-unreadable"),
                                  QStringLiteral("the file cannot be read: %1").arg(file.errorString()),
                                  QStringLiteral("give the user of the program the right to read it")));
        return sheet;
    }
    QList<QByteArray> lines = file.readAll().split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast(); // what stands behind the last line's end is no line
    }
    SheetReader reader(path, sheet);
    for (int i = 0; i < lines.size(); ++i) {
        QString line;
        if (!decode(lines.at(i), i == 0, line)) {
            sheet.faults.append(fault(path, i + 1, QStringLiteral("csv-encoding"),
                                      QStringLiteral("the line is not UTF-8"),
                                      QStringLiteral("save the file as CSV in UTF-8")));
        }
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        if (i == 0) {
            sheet.header = line;
        } else {
            reader.read(i + 1, line);
        }
    }
    return sheet;
}

bool writeTranslationField(const QString &text, QString &field)
{
    if (text.contains(QLatin1Char('\n')) || text.contains(QLatin1Char('\r'))) {
        return false;
    }
    field = text;
    if (readsAs(field, text)) {
        return true;
    }
    QString doubled = text; // as spreadsheets write it, which is right unless a quote begins or ends the text
    field = quote + doubled.replace(quote, QStringLiteral("\"\"")) + quote;
    return readsAs(field, text) || (FieldSearch(text).find(field) && readsAs(field, text));
}

QString translationSheetText(const QString &header, const QVector<TranslationRow> &rows, const QString &path,
                             Findings &faults)
{
    QString content = header + QLatin1Char('\n');
    for (const TranslationRow &row : rows) {
        QStringList fields;
        for (const QString &text : {row.key.first, row.key.second, row.translation}) {
            QString field;
            if (writeTranslationField(text, field)) {
                fields.append(field);
                continue;
            }
            faults.append(fault(
                path, row.line, QStringLiteral("translation-unwritable"),
                QStringLiteral("\"%1\" cannot be written into a translation file").arg(text),
                QStringLiteral(
                    "texts have one line; some with quotes beside commas or at the edge cannot be written")));
            break;
        }
        if (fields.size() == fieldsPerRow) {
            content += fields.join(comma) + QLatin1Char('\n');
        }
    }
    return content;
}
