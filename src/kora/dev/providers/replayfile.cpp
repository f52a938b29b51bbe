// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/replayfile.h>

#include <kora/dev/providers/benchclock.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTextStream>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

constexpr qint64 MaximumBytes = 16 * 1024 * 1024;

bool isPassedOver(const QString &text, int number)
{
    return text.isEmpty() || text.startsWith(QLatin1Char('#'))
           || (number == 1 && text == QLatin1String("time_ms,value"));
}

} // namespace

bool ReplayFile::read(const QString &path, QString *problem)
{
    m_lines.clear();
    m_length = 0;
    const QFileInfo info(path);
    const QString shown = QDir::toNativeSeparators(path);
    QString reason;
    QFile file(path);
    if (path.isEmpty()) {
        reason = tr("no file is chosen");
    } else if (!info.exists()) {
        reason = tr("%1: there is no such file").arg(shown);
    } else if (!info.isFile()) {
        // A pipe or a device could keep the window waiting for ever.
        reason = tr("%1: this is no regular file").arg(shown);
    } else if (info.size() > MaximumBytes) {
        reason = tr("%1: more than 16 MB").arg(shown);
    } else if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        reason = tr("%1: %2").arg(shown, file.errorString());
    } else {
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        if (readLines(stream, &reason)) {
            return true;
        }
        reason = tr("%1, %2").arg(shown, reason);
        m_lines.clear();
    }
    if (problem) {
        *problem = reason;
    }
    return false;
}

bool ReplayFile::readLines(QTextStream &stream, QString *problem)
{
    QString text;
    for (int number = 1; stream.readLineInto(&text); ++number) {
        text = text.trimmed();
        if (!isPassedOver(text, number) && !readLine(text, number, problem)) {
            return false;
        }
    }
    if (m_lines.isEmpty()) {
        *problem = tr("line 1: no line with a time and a value");
        return false;
    }
    const qint64 last = m_lines.last().time;
    m_length = m_lines.size() < 2 ? last + 1 : last + (last - m_lines.at(m_lines.size() - 2).time);
    return true;
}

bool ReplayFile::readLine(const QString &text, int number, QString *problem)
{
    const int comma = text.indexOf(QLatin1Char(','));
    bool isNumber = false;
    const qint64 time = text.left(std::max(comma, 0)).trimmed().toLongLong(&isNumber);
    const QString value = text.mid(comma + 1).trimmed();
    if (comma < 0) {
        *problem = tr("line %1: no comma between time and value").arg(number);
    } else if (!isNumber || time < 0 || time > BenchClock::MaximumElapsed) {
        *problem = tr("line %1: \"%2\" is no time in milliseconds")
                       .arg(QString::number(number), text.left(comma).trimmed());
    } else if (!m_lines.isEmpty() && time <= m_lines.last().time) {
        *problem =
            tr("line %1: the time %2 does not come after %3")
                .arg(QString::number(number), QString::number(time), QString::number(m_lines.last().time));
    } else if (value.isEmpty()) {
        *problem = tr("line %1: the value is missing").arg(number);
    } else {
        m_lines.append({time, value, number});
        return true;
    }
    return false;
}

QString ReplayFile::valueAt(qint64 ms) const
{
    if (m_lines.isEmpty()) {
        return QString();
    }
    const qint64 remainder = ms % m_length;
    const qint64 time = remainder < 0 ? remainder + m_length : remainder;
    const auto next = std::upper_bound(m_lines.cbegin(), m_lines.cend(), time,
                                       [](qint64 moment, const Line &line) { return moment < line.time; });
    return next == m_lines.cbegin() ? next->value : std::prev(next)->value;
}

} // namespace DEV
} // namespace KORA
