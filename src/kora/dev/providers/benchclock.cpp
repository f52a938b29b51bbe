// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/benchclock.h>

#include <algorithm>
#include <cmath>

namespace KORA {
namespace DEV {

namespace {

constexpr int TimerMs = 50;

} // namespace

BenchClock::BenchClock(QObject *parent)
    : QObject(parent)
    , m_start(QDateTime::currentDateTimeUtc())
{
    m_timer.setInterval(TimerMs);
    connect(&m_timer, &QTimer::timeout, this, &BenchClock::goOn);
    runTimer();
}

void BenchClock::setPaused(bool isPaused)
{
    if (m_isPaused == isPaused) {
        return;
    }
    m_isPaused = isPaused;
    runTimer();
    Q_EMIT pausedChanged(isPaused);
}

void BenchClock::setSpeed(double speed)
{
    const double bounded = std::isnan(speed) ? 1 : std::clamp(speed, MinimumSpeed, MaximumSpeed);
    if (std::equal_to<double>()(m_speed, bounded)) {
        return;
    }
    m_speed = bounded;
    Q_EMIT speedChanged(bounded);
}

void BenchClock::setSeed(quint32 seed)
{
    if (m_seed == seed) {
        return;
    }
    m_seed = seed;
    Q_EMIT seedChanged(seed);
}

void BenchClock::step(int ms)
{
    setPaused(true);
    advance(ms);
}

void BenchClock::advance(qint64 ms)
{
    const qint64 elapsed = std::min(MaximumElapsed, m_elapsed + std::min(ms, MaximumElapsed));
    if (elapsed <= m_elapsed) {
        return;
    }
    m_elapsed = elapsed;
    Q_EMIT ticked(m_elapsed);
}

void BenchClock::setStart(const QDateTime &start)
{
    m_hasFixedStart = start.isValid();
    m_start = m_hasFixedStart ? start.toUTC() : QDateTime::currentDateTimeUtc();
    m_elapsed = 0;
    m_rest = 0;
    Q_EMIT restarted();
    Q_EMIT ticked(m_elapsed);
}

BenchClock::State BenchClock::state() const
{
    return {m_isPaused, m_speed, m_seed, m_hasFixedStart ? m_start : QDateTime(), m_elapsed};
}

void BenchClock::restore(const State &state)
{
    const bool isSameStart =
        state.start.isValid() ? m_hasFixedStart && state.start == m_start : !m_hasFixedStart;
    if (!isSameStart || state.elapsed != m_elapsed) {
        m_hasFixedStart = state.start.isValid();
        m_elapsed = std::clamp(state.elapsed, qint64(0), MaximumElapsed);
        m_start =
            m_hasFixedStart ? state.start.toUTC() : QDateTime::currentDateTimeUtc().addMSecs(-m_elapsed);
        m_rest = 0;
        Q_EMIT restarted();
    }
    setSeed(state.seed);
    setSpeed(state.speed);
    setPaused(state.isPaused);
}

void BenchClock::goOn()
{
    const double ms = static_cast<double>(m_sinceTick.restart()) * m_speed + m_rest;
    m_rest = ms - std::floor(ms);
    advance(static_cast<qint64>(std::floor(ms)));
}

void BenchClock::runTimer()
{
    if (m_isPaused) {
        m_timer.stop();
        return;
    }
    m_sinceTick.start();
    m_timer.start();
}

} // namespace DEV
} // namespace KORA
