// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <kora/export.h>

class QTextStream;

namespace KORA {
namespace DEV {

/// Recorded values that are played in a loop. A UTF-8 text file of lines
///
///     time_ms,value
///
/// with rising times in milliseconds from the start of the loop, the first at 0 or later. Each value holds until
/// the next line's time, the last one for as long as the one before it; before the first time the first value
/// holds. The value is all text after the first comma, without the blanks around it. Empty lines, lines that start
/// with "#" and a first line "time_ms,value" are passed over.
class KORA_EXPORT ReplayFile
{
    Q_DECLARE_TR_FUNCTIONS(KORA::DEV::ReplayFile)

public:
    struct Line
    {
        qint64 time = 0;
        QString value;
        int number = 0; ///< in the file, from 1
    };

    /// False with a problem that names the file, the line and the reason; the object is empty then.
    bool read(const QString &path, QString *problem);
    bool isEmpty() const { return m_lines.isEmpty(); }
    const QVector<Line> &lines() const { return m_lines; }
    /// The value at that many milliseconds, which may be negative; null if the object is empty.
    QString valueAt(qint64 ms) const;

private:
    bool readLines(QTextStream &stream, QString *problem);
    bool readLine(const QString &text, int number, QString *problem);

    QVector<Line> m_lines;
    qint64 m_length = 0;
};

} // namespace DEV
} // namespace KORA
