// SPDX-License-Identifier: Apache-2.0
#include "timewindow.h"

namespace Plant {

namespace {

constexpr qint64 MinimumSpanMs = 10 * 1000;
constexpr qint64 MaximumSpanMs = 366LL * 24 * 3600 * 1000;

} // namespace

void TimeWindow::reset(qint64 spanMs, const QDateTime &now)
{
    m_spanMs = qBound(MinimumSpanMs, spanMs, MaximumSpanMs);
    m_end = now;
    m_isFollowing = true;
}

void TimeWindow::follow(const QDateTime &now)
{
    if (m_isFollowing) {
        m_end = now;
    }
}

void TimeWindow::pan(qreal share, const QDateTime &now)
{
    moveEnd(share * static_cast<qreal>(m_spanMs), now);
}

void TimeWindow::zoom(qreal factor, qreal anchor, const QDateTime &now)
{
    if (!(factor > 0)) {
        return;
    }
    const auto span = static_cast<qreal>(m_spanMs);
    const qreal newSpan =
        qBound(static_cast<qreal>(MinimumSpanMs), span / factor, static_cast<qreal>(MaximumSpanMs));
    m_spanMs = qRound64(newSpan);
    moveEnd((newSpan - span) * (1 - anchor), now);
}

qreal TimeWindow::shareOf(const QDateTime &moment) const
{
    return static_cast<qreal>(from().msecsTo(moment)) / static_cast<qreal>(m_spanMs);
}

void TimeWindow::moveEnd(qreal ms, const QDateTime &now)
{
    m_end = qMin(m_end.addMSecs(qRound64(ms)), now);
    m_isFollowing = m_end == now;
}

} // namespace Plant
