// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QHash>
#include <QtCore/QVector>

#include <kora/dev/providers/alarmstates.h>
#include <kora/dev/providers/providertable.h>

class QJsonArray;
class QJsonObject;

namespace KORA {
namespace DEV {

class BenchClock;
class TagTable;

/// The simulated alarms. Each goes through its states as AlarmStates has them. Raising an alarm sets its time to the
/// clock's and its tag value to the present one of its tag.
class KORA_EXPORT AlarmTable : public ProviderTable
{
    Q_OBJECT

public:
    enum Column : int {
        NameColumn,
        StateColumn,
        SeverityColumn,
        TimeColumn,
        DescriptionColumn,
        TagColumn,
        GroupsColumn
    };
    static constexpr int MaximumBurst = 1000; ///< changes per second
    static constexpr int StateCount = 7;
    static constexpr int SeverityCount = 7;

    /// @p clock and @p tags are not owned and must outlive the table.
    AlarmTable(BenchClock *clock, TagTable *tags, QObject *parent = nullptr);
    ~AlarmTable() override;

    QVector<AlarmInfo> alarms() const;
    bool contains(const QString &name) const { return m_rows.contains(name); }
    /// Default data for an unknown name.
    AlarmInfoData definition(const QString &name) const;

    // True if the alarm's state has changed; nothing happens for an unknown name.
    bool raise(const QString &name) { return act(AlarmStates::Raise, name); }
    bool clear(const QString &name) { return act(AlarmStates::Clear, name); }
    bool acknowledge(const QString &name) { return act(AlarmStates::Acknowledge, name); }
    bool reset(const QString &name) { return act(AlarmStates::Reset, name); }
    bool setDisabled(const QString &name, bool isDisabled);
    bool act(AlarmStates::Action action, const QString &name);
    void acknowledgeAll() { actOnAll(AlarmStates::Acknowledge); }
    void resetAll() { actOnAll(AlarmStates::Reset); }
    /// The same for all alarms.
    bool actOnAll(AlarmStates::Action action);

    /// Raises and clears the alarms in turn, that many changes per second of the clock; 0 ends it.
    void burst(int perSecond);
    int burstRate() const { return m_burstRate; }

    bool add(const AlarmInfoData &alarm, QString *problem = nullptr);
    bool remove(const QString &name) override;
    bool edit(const QString &name, const AlarmInfoData &alarm, QString *problem = nullptr);
    QStringList names() const override;
    QString addNew() override;
    QString duplicate(const QString &name) override;
    QString rowProblem(int) const override { return QString(); }

    QJsonArray toJson() const;
    bool read(const QJsonArray &array, QVector<AlarmInfoData> &alarms, QStringList &problems) const;
    /// Alarms that stay as they are cause no signals.
    void assign(const QVector<AlarmInfoData> &alarms);

    /// For the reader.
    static QString stateText(AlarmInfo::State state);
    static QString severityText(AlarmInfo::Severity severity);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

Q_SIGNALS:
    /// At every change of an alarm, to be delivered to widgets.
    void alarmChanged(const KORA::AlarmInfo &alarm);
    /// Alarms were added, removed or redefined.
    void alarmsChanged();
    void burstChanged(int perSecond);

protected:
    bool setCell(int row, int column, const QVariant &value, QString *problem) override;

private:
    bool isAddable(const AlarmInfoData &alarm, const QString &ownName, QString *problem) const;
    void goOnWithBurst(qint64 elapsed);
    void followRename(const QString &from, const QString &to);
    void indexRows();
    QVariant displayed(const AlarmInfoData &alarm, int column) const;
    QVariant editable(const AlarmInfoData &alarm, int column) const;

    BenchClock *m_clock;
    TagTable *m_tags;
    QVector<AlarmInfoData> m_alarms;
    QHash<QString, int> m_rows;
    int m_burstRate = 0;
    qint64 m_burstDone = 0; ///< the number of changes that were due since the clock's start
};

} // namespace DEV
} // namespace KORA
