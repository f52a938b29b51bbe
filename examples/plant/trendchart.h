// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantitem.h"
#include "plantwidget.h"
#include "timewindow.h"

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

    /// Moves the window by a share of its span; back towards the past is negative.
    void pan(qreal share);
    /// Shows more (below 1) or less (above 1) time; the moment at @p anchor, a share of the span, stays in place.
    void zoom(qreal factor, qreal anchor);
    /// Follows the present again, over the span of the field.
    void resetWindow();

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    void refresh();
    QVector<TrendSample> samplesFromHost() const;
    QVector<TrendSample> exampleSamples() const;

    TimeWindow m_window;
    QVector<TrendSample> m_samples;
    QBasicTimer m_timer;
};

class TrendChartItem : public PlantItem
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit TrendChartItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;

private:
    struct Range
    {
        double minimum;
        double maximum;
    };

    const TrendChart *chart() const;
    Range valueRange() const;
    void drawHeader(QPainter &painter, const QRectF &area) const;
    void drawValueAxis(QPainter &painter, const QRectF &strip, const Range &range) const;
    void drawTimeAxis(QPainter &painter, const QRectF &strip) const;
    void drawGrid(QPainter &painter, const QRectF &plot) const;
    void drawCurve(QPainter &painter, const QRectF &plot, const Range &range) const;
};

} // namespace Plant
