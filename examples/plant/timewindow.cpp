// SPDX-License-Identifier: Apache-2.0
#include "timewindow.h"

namespace Plant {

namespace {

constexpr qint64 MinimumSpanMs = 10 * 1000;
constexpr qint64 MaximumSpanMs = 366LL * 24 * 3600 * 1000;

} // namespace

void TimeWindow::follow(const QDateTime &now, qint64 spanMs)
{
    if (m_isMoved)
        return;
    m_end = now;
    m_spanMs = qBound(MinimumSpanMs, spanMs, MaximumSpanMs);
}

void TimeWindow::pan(qreal share)
{
    m_end = m_end.addMSecs(qRound64(share * static_cast<qreal>(m_spanMs)));
    m_isMoved = true;
}

void TimeWindow::zoom(qreal factor, qreal anchor)
{
    if (!(factor > 0))
        return;
    const auto span = static_cast<qreal>(m_spanMs);
    const qreal newSpan =
        qBound(static_cast<qreal>(MinimumSpanMs), span / factor, static_cast<qreal>(MaximumSpanMs));
    m_end = m_end.addMSecs(qRound64((newSpan - span) * (1 - anchor)));
    m_spanMs = qRound64(newSpan);
    m_isMoved = true;
}

qreal TimeWindow::shareOf(const QDateTime &moment) const
{
    return static_cast<qreal>(from().msecsTo(moment)) / static_cast<qreal>(m_spanMs);
}

} // namespace Plant
