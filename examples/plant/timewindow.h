// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>

namespace Plant {

/// The stretch of time that a trend shows. It ends now until it is panned or zoomed, and keeps its place then.
class TimeWindow
{
public:
    /// Ends at @p now, unless the window has been moved.
    void follow(const QDateTime &now, qint64 spanMs);
    void pan(qreal share);
    void zoom(qreal factor, qreal anchor);
    void reset() { m_isMoved = false; }

    bool isMoved() const { return m_isMoved; }
    QDateTime from() const { return m_end.addMSecs(-m_spanMs); }
    QDateTime to() const { return m_end; }
    qint64 spanMs() const { return m_spanMs; }
    /// Where a moment stands in the window, 0 at its start and 1 at its end.
    qreal shareOf(const QDateTime &moment) const;

private:
    QDateTime m_end;
    qint64 m_spanMs = 1;
    bool m_isMoved = false;
};

} // namespace Plant
