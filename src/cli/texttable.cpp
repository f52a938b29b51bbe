// SPDX-License-Identifier: Apache-2.0
#include "texttable.h"

#include "output.h"

#include <algorithm>

namespace {

// In characters: one outside the basic plane takes two QChars.
int textWidth(const QString &text)
{
    return text.toUcs4().size();
}

QString padding(const QString &text, int width)
{
    return QString(std::max(0, width - textWidth(text)), QLatin1Char(' '));
}

QString trimmedAtEnd(QString line)
{
    while (line.endsWith(QLatin1Char(' '))) {
        line.chop(1);
    }
    return line;
}

} // namespace

TextTable::TextTable(const QStringList &header)
    : m_rows{header}
{}

void TextTable::addRow(const QStringList &cells)
{
    QStringList row;
    for (int column = 0; column < m_rows.first().size(); ++column) {
        const QString cell = printable(cells.value(column));
        row.append(cell.isEmpty() ? QStringLiteral("-") : cell);
    }
    m_rows.append(row);
}

QString TextTable::toString(const QString &indent) const
{
    QString lines;
    for (const QStringList &row : m_rows) {
        QString line = indent;
        for (int column = 0; column < row.size(); ++column) {
            if (!columnIsUsed(column)) {
                continue;
            }
            const QString &cell = row.at(column);
            const QString space = padding(cell, columnWidth(column));
            line += m_rightAligned.contains(column) ? space + cell : cell + space;
            line += QLatin1String("  ");
        }
        lines += trimmedAtEnd(line) + QLatin1Char('\n');
    }
    return lines;
}

bool TextTable::columnIsUsed(int column) const
{
    return std::any_of(m_rows.cbegin() + 1, m_rows.cend(),
                       [column](const QStringList &row) { return row.at(column) != QLatin1String("-"); });
}

int TextTable::columnWidth(int column) const
{
    int width = 0;
    for (const QStringList &row : m_rows) {
        width = std::max(width, textWidth(row.at(column)));
    }
    return width;
}
