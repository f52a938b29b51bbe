// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QTimer>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <kora/export.h>

namespace KORA {
namespace DEV {

/// One crossing of the border between the bench and a widget.
struct ActivityEntry
{
    enum Kind : int { HostWrite, PluginWrite, Event, Call };

    Kind kind = Event;
    QString instance; ///< name of the placed widget
    QString what;     ///< "setFieldValue", "initEvent", "getTagValue"
    QString arguments;
    QString result;
    qint64 nanoseconds = 0; ///< that it took; 0 if it was not measured
    QDateTime time;
    int count = 1; ///< repeats that were collapsed
};

/// A value as the activity shows it: short, with the kind of Qt where text alone would not tell it.
KORA_EXPORT QString variantText(const QVariant &value);

/// The latest crossings, oldest first. An entry that repeats the latest one in all but result and time counts that
/// one up instead. Views are told at most twenty times a second, however many entries arrive. GUI thread.
class KORA_EXPORT ActivityLog : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int {
        TimeColumn,
        InstanceColumn,
        WhatColumn,
        ArgumentsColumn,
        ResultColumn,
        DurationColumn,
        ColumnCount
    };

    /// The kind of a row's entry, an ActivityEntry::Kind.
    static constexpr int KindRole = Qt::UserRole;

    static constexpr int capacity = 2000;

    explicit ActivityLog(QObject *parent = nullptr);

    void record(ActivityEntry entry);
    void clear();
    /// What was recorded and shown, oldest first; what waits for the next update is put in first.
    const QVector<ActivityEntry> &entries();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void flush();

    QVector<ActivityEntry> m_entries; // shown
    QVector<ActivityEntry> m_pending; // waits for the next update
    QTimer m_flushTimer;
};

} // namespace DEV
} // namespace KORA
