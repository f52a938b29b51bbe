// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>

#include <memory>

#include <kora/dev/providers/alarmtable.h>
#include <kora/dev/providers/benchclock.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/dev/providers/trendtable.h>
#include <kora/export.h>

class QJsonObject;

namespace KORA {
namespace DEV {

/// The simulated plant: tags, trends and alarms on one clock. GUI thread.
class KORA_EXPORT Providers : public QObject
{
    Q_OBJECT

public:
    /// What an undo step takes of the state: not the time, and not the values that generators keep writing, which
    /// undoing an edit must not take back.
    enum Scope { Everything, EditsOnly };

    explicit Providers(QObject *parent = nullptr);
    ~Providers() override;

    BenchClock *clock() { return &m_clock; }
    const BenchClock *clock() const { return &m_clock; }
    TagTable *tags() { return &m_tags; }
    const TagTable *tags() const { return &m_tags; }
    TrendTable *trends() { return &m_trends; }
    const TrendTable *trends() const { return &m_trends; }
    AlarmTable *alarms() { return &m_alarms; }
    const AlarmTable *alarms() const { return &m_alarms; }

    /// Where relative paths of replay files start: the folder of the scenario. Absolute ones need none.
    void setFolder(const QString &folder);
    QString folder() const { return m_folder; }

    /// All that fromJson() needs to go on in the same way; recorded values are not kept. Keys: "clock", "tags",
    /// "trends", "alarms", "burst".
    QJsonObject toJson(Scope scope = Everything) const;
    /// Takes what toJson() gave. Absent keys give the defaults, but an absent time of the clock and an absent value
    /// of a tag leave the present ones. Whatever stays the same goes on undisturbed. False, and nothing changed, with
    /// one problem for each entry that cannot be read: which, and why. edited() is not emitted.
    bool fromJson(const QJsonObject &object, QStringList &problems);

    /// Adds something to begin with: a level, a speed, a pump's switch, a text, a trend of the level, three alarms. What
    /// has one of their names already stays. edited() is not emitted.
    void addDefaults();

Q_SIGNALS:
    /// Tags, trends, alarms, or the clock's speed or seed were changed, for undo and the session.
    void edited();

private:
    void noteEdit();

    BenchClock m_clock;
    TagTable m_tags;
    TrendTable m_trends;
    AlarmTable m_alarms;
    QString m_folder;
    bool m_isLoading = false;
};

} // namespace DEV
} // namespace KORA
