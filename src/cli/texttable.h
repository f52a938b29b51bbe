// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Aligned columns of plain text, the same on a terminal and in a pipe.
class TextTable
{
public:
    explicit TextTable(const QStringList &header);

    /// Cells are made printable(); an empty one is shown as "-". Missing cells at the end are empty.
    void addRow(const QStringList &cells);
    /// Column @p column is aligned to the right.
    void alignRight(int column) { m_rightAligned.append(column); }
    /// One line per row, each beginning with @p indent. A column without any content is left out.
    QString toString(const QString &indent = {}) const;

private:
    bool columnIsUsed(int column) const;
    int columnWidth(int column) const;

    QList<QStringList> m_rows; // the header first
    QList<int> m_rightAligned;
};
