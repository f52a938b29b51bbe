// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>

namespace Plant {

/// The stretch of time that a trend shows. It ends now, until it is panned or zoomed into the past; panned back to
/// the present it ends now again.
class TimeWindow
{
public:
    /// Starts over with a span that ends now.
    void reset(qint64 spanMs, const QDateTime &now);
    /// Time has gone on.
    void follow(const QDateTime &now);
    /// Moves by a share of the span, negative into the past.
    void pan(qreal share, const QDateTime &now);
    /// Above 1 shows less time and more detail; the moment at @p anchor, a share of the span, stays in place.
    void zoom(qreal factor, qreal anchor, const QDateTime &now);

    QDateTime from() const { return m_end.addMSecs(-m_spanMs); }
    QDateTime to() const { return m_end; }
    qint64 spanMs() const { return m_spanMs; }
    /// Where a moment stands in the window, 0 at its start and 1 at its end.
    qreal shareOf(const QDateTime &moment) const;

private:
    void moveEnd(qreal ms, const QDateTime &now);

    QDateTime m_end;
    qint64 m_spanMs = 1;
    bool m_isFollowing = true;
};

} // namespace Plant
