// SPDX-License-Identifier: Apache-2.0
//
// Fingers on a touch device: remembers where each went down and where it was last, as events carry all three.
#pragma once

#include <QtGui/QTouchEvent>

class Fingers
{
public:
    using Points = QList<QTouchEvent::TouchPoint>;

    /// @p origin is where the receiver's position (0, 0) is on the screen.
    explicit Fingers(const QPointF &origin = {})
        : m_origin(origin)
    {}

    /// The points of the next event, one per position. Positions beyond those of the last event are fingers
    /// that come down now; the event TouchBegin puts all down afresh. The positions are the receiver's.
    Points moveTo(const QVector<QPointF> &positions, QEvent::Type event)
    {
        const int kept = event == QEvent::TouchBegin ? 0 : qMin(m_last.size(), positions.size());
        m_start = m_start.mid(0, kept) + positions.mid(kept);
        m_last = m_last.mid(0, kept) + positions.mid(kept);
        Points points;
        for (int i = 0; i < positions.size(); ++i) {
            points.append(point(i, i < kept ? stateIn(event) : Qt::TouchPointPressed, positions.at(i)));
        }
        m_last = positions;
        return points;
    }

private:
    static Qt::TouchPointState stateIn(QEvent::Type event)
    {
        return event == QEvent::TouchEnd ? Qt::TouchPointReleased : Qt::TouchPointMoved;
    }

    QTouchEvent::TouchPoint point(int id, Qt::TouchPointState state, const QPointF &position) const
    {
        QTouchEvent::TouchPoint point(id);
        point.setState(state);
        point.setScreenPos(position + m_origin);
        point.setStartScreenPos(m_start.at(id) + m_origin);
        point.setLastScreenPos(m_last.at(id) + m_origin);
        point.setPos(position);
        point.setStartPos(m_start.at(id));
        point.setLastPos(m_last.at(id));
        return point;
    }

    QPointF m_origin;
    QVector<QPointF> m_start;
    QVector<QPointF> m_last;
};
