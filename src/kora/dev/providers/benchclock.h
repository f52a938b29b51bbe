// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <kora/export.h>

class QJsonObject;

namespace KORA {
namespace DEV {

/// The one clock of all tags, trends and alarms of the bench. Its time is virtual: it can stand still, be stepped
/// and run up to a hundred times as fast, and everything that the providers do depends on it alone, so that the
/// same start, seed and steps give the same values.
///
/// Unless setStart() was called, the clock starts at the present time, so that trends lie where a widget that asks
/// the system's clock looks for them.
class KORA_EXPORT BenchClock : public QObject
{
    Q_OBJECT

public:
    static constexpr double MinimumSpeed = 0.1;
    static constexpr double MaximumSpeed = 100;
    static constexpr int StepMs = 100;
    /// The last moment that a clock may be set to: some 300 years after its start.
    static constexpr qint64 MaximumElapsed = 10000000000000;

    explicit BenchClock(QObject *parent = nullptr);

    /// The virtual time, in UTC.
    QDateTime now() const { return m_start.addMSecs(m_elapsed); }
    QDateTime start() const { return m_start; }
    /// Virtual milliseconds since the start.
    qint64 elapsed() const { return m_elapsed; }

    bool isPaused() const { return m_isPaused; }
    void setPaused(bool isPaused);
    double speed() const { return m_speed; }
    /// Bounded to what the clock can do; not a number is taken for 1.
    void setSpeed(double speed);
    /// What every generator with chance in it depends on, beside its own seed.
    quint32 seed() const { return m_seed; }
    void setSeed(quint32 seed);

    /// Goes on by that much and stands still then.
    void step(int ms = StepMs);
    /// Goes on by that much, paused or not. Nothing happens for 0 and less.
    void advance(qint64 ms);
    /// Starts over at that time, which scenarios then keep. An invalid time starts over at the present one.
    void setStart(const QDateTime &start);
    bool hasFixedStart() const { return m_hasFixedStart; }

    /// What a scenario keeps of a clock. The start is invalid for a clock that starts at the present time.
    struct State
    {
        bool isPaused = false;
        double speed = 1;
        quint32 seed = 1;
        QDateTime start;
        qint64 elapsed = 0;
    };
    State state() const;
    /// Takes the clock to that state. restarted() is emitted only if the time jumped.
    void restore(const State &state);

Q_SIGNALS:
    /// @p elapsedMs is virtual, since the start.
    void ticked(qint64 elapsedMs);
    /// The time jumped: what was recorded before belongs to another run.
    void restarted();
    void pausedChanged(bool isPaused);
    void speedChanged(double speed);
    void seedChanged(quint32 seed);

private:
    void goOn();
    void runTimer();

    QDateTime m_start;
    qint64 m_elapsed = 0;
    bool m_hasFixedStart = false;
    bool m_isPaused = false;
    double m_speed = 1;
    quint32 m_seed = 1;
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    double m_rest = 0; ///< virtual time gone by, short of a millisecond
};

} // namespace DEV
} // namespace KORA
