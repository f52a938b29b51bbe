// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantitem.h"
#include "plantwidget.h"

#include <QtCore/QBasicTimer>
#include <QtCore/QVector>

namespace Plant {

/// The alarms that need attention: triggered, or gone without having been acknowledged. It starts from the
/// host's list and follows the alarm events, and tells how many there are in the read-only field "count".
class AlarmList : public PlantWidget
{
    Q_OBJECT

public:
    /// The indexes of the option field "order".
    enum Order { NewestFirst = 0, MostSevereFirst = 1 };

    Q_INVOKABLE explicit AlarmList(const KORA::WidgetData &data);

    void initEvent(KORA::InitEvent *event) override;
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;
    void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event) override;

    /// In the order of the field "order".
    const QVector<KORA::AlarmInfo> &alarms() const { return m_alarms; }
    /// Asks the host to acknowledge; the list changes when the host says so.
    void acknowledge(const KORA::AlarmInfo &alarm);

    static bool needsAcknowledgement(const KORA::AlarmInfo &alarm);

private:
    void putAlarm(const KORA::AlarmInfo &alarm);
    void publish();

    QVector<KORA::AlarmInfo> m_alarms;
};

class AlarmListItem : public PlantItem
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit AlarmListItem(const KORA::GraphicsObjectData &data);

    void initEvent(KORA::InitEvent *event) override;
    void deinitEvent(KORA::DeinitEvent *event) override;
    void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event) override;

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    /// Where the parts of the list stand at the present size.
    struct Layout
    {
        QRectF header;
        QRectF rows;
        QRectF footer;
        qreal rowHeight;
        int rowCount;
    };

    AlarmList *alarmList() const;
    Layout layout(const QRectF &area) const;
    int rowAt(const QPointF &position) const;
    QVector<QRectF> columns(const QRectF &row) const;
    void drawCount(QPainter &painter, const QRectF &area) const;
    void drawHeader(QPainter &painter, const QRectF &area) const;
    void drawRow(QPainter &painter, const QRectF &area, const KORA::AlarmInfo &alarm) const;

    QBasicTimer m_blinkTimer;
    bool m_isBlinkedOff = false;
    int m_pressedRow = -1;
};

} // namespace Plant
