// SPDX-License-Identifier: Apache-2.0
#include "activitylog.h"

#include <QtCore/QMap>
#include <QtGui/QColor>

#include <kora/core/widgetmetainformation.h>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

const int updateInterval = 50; // milliseconds

bool isRepeat(const ActivityEntry &entry, const ActivityEntry &latest)
{
    return entry.kind == latest.kind && entry.what == latest.what && entry.instance == latest.instance
           && entry.arguments == latest.arguments;
}

/// Counts @p latest up by @p entry, whose result and time stand from now on.
void addRepeat(ActivityEntry &latest, const ActivityEntry &entry)
{
    latest.count += entry.count;
    latest.result = entry.result;
    latest.time = entry.time;
    latest.nanoseconds = entry.nanoseconds;
}

QString durationText(qint64 nanoseconds)
{
    return nanoseconds == 0 ? QString()
                            : QStringLiteral("%1 ms").arg(static_cast<double>(nanoseconds) / 1e6, 0, 'f', 3);
}

} // namespace

QString variantText(const QVariant &value)
{
    if (!value.isValid()) {
        return QStringLiteral("no value");
    }
    if (value.type() == QVariant::String) {
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    }
    if (value.userType() == qMetaTypeId<QMap<int, QString>>()) {
        return QStringLiteral("%1 texts").arg(value.value<QMap<int, QString>>().size());
    }
    if (value.type() == QVariant::StringList || value.type() == QVariant::List) {
        return QLatin1Char('[') + value.toStringList().join(QLatin1String(", ")) + QLatin1Char(']');
    }
    if (value.type() == QVariant::Color) {
        return value.value<QColor>().name(QColor::HexArgb);
    }
    return value.canConvert<QString>() ? value.toString() : QLatin1String(value.typeName());
}

ActivityLog::ActivityLog(QObject *parent)
    : QAbstractTableModel(parent)
{
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(updateInterval);
    connect(&m_flushTimer, &QTimer::timeout, this, &ActivityLog::flush);
}

void ActivityLog::record(ActivityEntry entry)
{
    if (!m_pending.isEmpty() && isRepeat(entry, m_pending.last())) {
        addRepeat(m_pending.last(), entry);
    } else {
        m_pending.append(std::move(entry));
    }
    // What would leave the ring unseen need not wait.
    if (m_pending.size() >= 2 * capacity) {
        m_pending.remove(0, capacity);
    }
    if (!m_flushTimer.isActive()) {
        m_flushTimer.start();
    }
}

void ActivityLog::clear()
{
    beginResetModel();
    m_entries.clear();
    m_pending.clear();
    endResetModel();
}

const QVector<ActivityEntry> &ActivityLog::entries()
{
    flush();
    return m_entries;
}

void ActivityLog::flush()
{
    if (!m_pending.isEmpty() && !m_entries.isEmpty() && isRepeat(m_pending.first(), m_entries.last())) {
        addRepeat(m_entries.last(), m_pending.takeFirst());
        const int row = m_entries.size() - 1;
        emit dataChanged(index(row, 0), index(row, ColumnCount - 1));
    }
    if (m_pending.isEmpty()) {
        return;
    }
    const int surplus = std::min(m_entries.size(), m_entries.size() + m_pending.size() - capacity);
    if (surplus > 0) {
        beginRemoveRows({}, 0, surplus - 1);
        m_entries.remove(0, surplus);
        endRemoveRows();
    }
    if (m_pending.size() > capacity) {
        m_pending.remove(0, m_pending.size() - capacity);
    }
    const int first = m_entries.size();
    beginInsertRows({}, first, first + m_pending.size() - 1);
    m_entries += m_pending;
    m_pending.clear();
    endInsertRows();
}

int ActivityLog::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_entries.size();
}

int ActivityLog::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ActivityLog::data(const QModelIndex &index, int role) const
{
    if (!index.isValid()) {
        return {};
    }
    const ActivityEntry &entry = m_entries.at(index.row());
    if (role == KindRole) {
        return entry.kind;
    }
    if (role == Qt::TextAlignmentRole && index.column() == DurationColumn) {
        return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) {
        return {};
    }
    switch (index.column()) {
    case TimeColumn:
        return entry.time.toLocalTime().toString(QStringLiteral("HH:mm:ss.zzz"));
    case InstanceColumn:
        return entry.instance;
    case WhatColumn:
        return entry.count == 1 ? entry.what
                                : QStringLiteral("%1 × %2").arg(entry.what, QString::number(entry.count));
    case ArgumentsColumn:
        return entry.arguments;
    case ResultColumn:
        return entry.result;
    case DurationColumn:
        return durationText(entry.nanoseconds);
    default:
        return {};
    }
}

QVariant ActivityLog::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    const QString titles[ColumnCount] = {tr("Time"),      tr("Widget"), tr("What"),
                                         tr("Arguments"), tr("Result"), tr("Took")};
    return titles[section];
}

} // namespace DEV
} // namespace KORA
