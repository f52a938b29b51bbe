// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantwidget.h"
#include "timewindow.h"
#include "touchitem.h"

#include <QtCore/QBasicTimer>
#include <QtCore/QVector>

namespace Plant {

struct TrendSample
{
    QDateTime time;
    double value;
};

/// The course of a trend over time. The widget fetches the samples from the host, when something changes and
/// then at intervals; its items draw them.
class TrendChart : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit TrendChart(const KORA::WidgetData &data);

    void initEvent(KORA::InitEvent *event) override;
    void deinitEvent(KORA::DeinitEvent *event) override;
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;

    /// Oldest first; empty when the host has no data.
    const QVector<TrendSample> &samples() const { return m_samples; }
    const TimeWindow &window() const { return m_window; }

    /// As those of TimeWindow.
    void pan(qreal share);
    void zoom(qreal factor, qreal anchor);
    /// Follows the present again, over the span of the field.
    void resetWindow();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    QDateTime now() const;
    void startRefreshTimer();
    void refresh();
    QVector<TrendSample> samplesFromHost() const;
    QVector<TrendSample> exampleSamples() const;

    TimeWindow m_window;
    QVector<TrendSample> m_samples;
    QBasicTimer m_timer;
    bool m_isStarted = false;
};

/// One finger or the mouse moves through time, two fingers or the wheel zoom, a double click goes back to now.
class TrendChartItem : public TouchItem
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit TrendChartItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    void panned(const QPointF &delta) override;
    void zoomed(qreal factor, const QPointF &center) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent *event) override;

private:
    struct Range
    {
        double minimum;
        double maximum;
    };

    TrendChart *chart() const;
    /// The panel without header and axes.
    QRectF plotArea(const QRectF &area) const;
    qreal axisHeight() const;
    Range valueRange() const;
    void drawHeader(QPainter &painter, const QRectF &area) const;
    void drawValueAxis(QPainter &painter, const QRectF &strip, const Range &range) const;
    void drawTimeAxis(QPainter &painter, const QRectF &strip) const;
    void drawGrid(QPainter &painter, const QRectF &plot) const;
    void drawCurve(QPainter &painter, const QRectF &plot, const Range &range) const;
};

} // namespace Plant
