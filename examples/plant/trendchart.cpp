// SPDX-License-Identifier: Apache-2.0
#include "trendchart.h"

#include "drawing.h"

#include <QtCore/QTimerEvent>
#include <QtCore/QtMath>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(400, 220);
constexpr int MaximumSamples = 1000;
constexpr int ValueDivisions = 4;
constexpr int TimeDivisions = 4;

} // namespace

TrendChart::TrendChart(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

void TrendChart::initEvent(KORA::InitEvent *)
{
    m_isStarted = true;
    resetWindow();
    startRefreshTimer();
}

void TrendChart::deinitEvent(KORA::DeinitEvent *)
{
    m_isStarted = false;
    m_timer.stop();
}

void TrendChart::fieldIsChangedEvent(KORA::FieldIsChangedEvent *event)
{
    if (!m_isStarted) {
        return;
    }
    if (event->fieldId() == QLatin1String("refreshSeconds")) {
        startRefreshTimer();
    } else if (event->fieldId() == QLatin1String("spanMinutes")) {
        resetWindow();
    } else {
        refresh();
    }
}

void TrendChart::startRefreshTimer()
{
    m_timer.stop();
    const int seconds = getFieldValue(QStringLiteral("refreshSeconds")).toInt();
    if (seconds > 0 && !isInEditor()) {
        m_timer.start(seconds * 1000, this);
    }
}

void TrendChart::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == m_timer.timerId()) {
        refresh();
    }
}

void TrendChart::pan(qreal share)
{
    m_window.pan(share, now());
    refresh();
}

void TrendChart::zoom(qreal factor, qreal anchor)
{
    m_window.zoom(factor, anchor, now());
    refresh();
}

void TrendChart::resetWindow()
{
    m_window.reset(getFieldValue(QStringLiteral("spanMinutes")).toInt() * 60000LL, now());
    refresh();
}

QDateTime TrendChart::now() const
{
    // The editor shows the same picture every time.
    return isInEditor() ? QDateTime(QDate(2024, 3, 4), QTime(12, 0)) : QDateTime::currentDateTime();
}

void TrendChart::refresh()
{
    m_window.follow(now());
    m_samples = isInEditor() ? exampleSamples() : samplesFromHost();
    updateItems();
}

QVector<TrendSample> TrendChart::samplesFromHost() const
{
    const QString trend = getFieldValue(QStringLiteral("trend")).toString();
    const QVariantList entries = widgetActionManager()
                                     ->getTrendValue(trend, m_window.from(), m_window.to(), MaximumSamples,
                                                     KORA::WidgetActionManager::LocalTime)
                                     .toList();
    QVector<TrendSample> samples;
    samples.reserve(entries.size());
    for (const QVariant &entry : entries) {
        const QVariantMap sample = entry.toMap();
        bool isNumber = false;
        const double value = sample.value(QStringLiteral("value")).toDouble(&isNumber);
        if (isNumber && qIsFinite(value)) {
            samples.append({sample.value(QStringLiteral("time")).toDateTime(), value});
        }
    }
    return samples;
}

QVector<TrendSample> TrendChart::exampleSamples() const
{
    constexpr int Count = 120;
    const double minimum = getFieldValue(QStringLiteral("minimum")).toDouble();
    const double maximum = getFieldValue(QStringLiteral("maximum")).toDouble();
    QVector<TrendSample> samples;
    samples.reserve(Count);
    for (int i = 0; i < Count; ++i) {
        const qreal share = static_cast<qreal>(i) / (Count - 1);
        const double wave =
            0.55 + 0.2 * qSin(7 * share) + 0.08 * qSin(23 * share + 1) + 0.02 * qSin(71 * share);
        samples.append({m_window.from().addMSecs(qRound64(share * static_cast<qreal>(m_window.spanMs()))),
                        minimum + (maximum - minimum) * wave});
    }
    return samples;
}

TrendChartItem::TrendChartItem(const KORA::GraphicsObjectData &data)
    : TouchItem(data, DesignSize)
{
    grabGesture(pan1TouchGestureType());
    grabGesture(pinchGestureType());
}

TrendChart *TrendChartItem::chart() const
{
    return qobject_cast<TrendChart *>(widget());
}

void TrendChartItem::panned(const QPointF &delta)
{
    // The curve follows the finger, so the window goes the other way.
    if (chart()) {
        chart()->pan(-delta.x() / plotArea(contentArea()).width());
    }
}

void TrendChartItem::zoomed(qreal factor, const QPointF &center)
{
    const QRectF plot = plotArea(contentArea());
    if (chart()) {
        chart()->zoom(factor, qBound(0.0, (center.x() - plot.left()) / plot.width(), 1.0));
    }
}

void TrendChartItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *)
{
    if (chart()) {
        chart()->resetWindow();
    }
}

qreal TrendChartItem::axisHeight() const
{
    return QFontMetricsF(font(QStringLiteral("axisFont"))).height() * 1.3;
}

QRectF TrendChartItem::plotArea(const QRectF &area) const
{
    if (isCompact()) {
        return area;
    }
    const qreal headerHeight = QFontMetricsF(textFont(QStringLiteral("label"))).height() * 1.3;
    return area.adjusted(area.width() * 0.1, headerHeight + axisHeight() / 3, -axisHeight() / 2,
                         -axisHeight());
}

void TrendChartItem::draw(QPainter &painter, const QRectF &area)
{
    const QRectF plot = plotArea(area);
    QRectF body = area;
    if (!isCompact()) {
        drawHeader(painter, takeTop(body, plot.top() - area.top()));
    }
    if (!chart() || chart()->samples().isEmpty()) {
        drawEmptyPanel(painter, body, text(QStringLiteral("emptyText")),
                       textFont(QStringLiteral("emptyText")), scale());
        return;
    }
    const Range range = valueRange();
    if (!isCompact()) {
        drawValueAxis(painter, QRectF(area.left(), plot.top(), plot.left() - area.left(), plot.height()),
                      range);
        drawTimeAxis(painter, QRectF(plot.left(), plot.bottom(), plot.width(), axisHeight()));
        drawGrid(painter, plot);
    }
    drawCurve(painter, plot, range);
}

TrendChartItem::Range TrendChartItem::valueRange() const
{
    const Range fixed{number(QStringLiteral("minimum")), number(QStringLiteral("maximum"))};
    if (!flag(QStringLiteral("autoScale")) && fixed.minimum < fixed.maximum) {
        return fixed;
    }

    const QVector<TrendSample> &samples = chart()->samples();
    const auto isLess = [](const TrendSample &a, const TrendSample &b) { return a.value < b.value; };
    const auto ends = std::minmax_element(samples.cbegin(), samples.cend(), isLess);
    const double low = ends.first->value;
    const double high = ends.second->value;
    // A flat line runs through the middle.
    const double room = high > low ? (high - low) * 0.1 : qMax(1.0, qAbs(high) * 0.1);
    return {low - room, high + room};
}

void TrendChartItem::drawHeader(QPainter &painter, const QRectF &area) const
{
    QRectF titleArea = area;
    const QFont titleFont = textFont(QStringLiteral("label"));
    if (chart() && !chart()->samples().isEmpty()) {
        const QString last = QStringLiteral("%1 %2").arg(scaleText(chart()->samples().last().value),
                                                         text(QStringLiteral("unit")));
        drawText(painter, takeRight(titleArea, area.width() * 0.35), Qt::AlignRight | Qt::AlignTop,
                 last.trimmed(), titleFont, Palette::Text);
    }
    drawText(painter, titleArea, Qt::AlignLeft | Qt::AlignTop, text(QStringLiteral("label")), titleFont,
             Palette::FaintText);
}

void TrendChartItem::drawValueAxis(QPainter &painter, const QRectF &strip, const Range &range) const
{
    const QFont axisFont = font(QStringLiteral("axisFont"));
    const qreal height = QFontMetricsF(axisFont).height();
    for (int i = 0; i <= ValueDivisions; ++i) {
        const double value = range.minimum + (range.maximum - range.minimum) * i / ValueDivisions;
        const qreal y = strip.bottom() - strip.height() * i / ValueDivisions;
        drawText(painter, QRectF(strip.left(), y - height / 2, strip.width() - height * 0.3, height),
                 Qt::AlignRight | Qt::AlignVCenter, scaleText(value), axisFont, Palette::FaintText);
    }
}

void TrendChartItem::drawTimeAxis(QPainter &painter, const QRectF &strip) const
{
    const TimeWindow &window = chart()->window();
    constexpr qint64 DayMs = 24 * 3600 * 1000;
    constexpr qint64 QuarterHourMs = 15 * 60 * 1000;
    const QString format = window.spanMs() > DayMs           ? QStringLiteral("MM-dd HH:mm")
                           : window.spanMs() < QuarterHourMs ? QStringLiteral("HH:mm:ss")
                                                             : QStringLiteral("HH:mm");
    const qreal width = strip.width() / TimeDivisions;
    for (int i = 0; i <= TimeDivisions; ++i) {
        const QDateTime moment = window.from().addMSecs(window.spanMs() * i / TimeDivisions);
        // The last label ends with the plot; the first starts with it.
        const QRectF box(strip.left() + width * (i - 0.5), strip.top(), width * 0.9, strip.height());
        const Qt::Alignment alignment = i == 0               ? Qt::AlignLeft
                                        : i == TimeDivisions ? Qt::AlignRight
                                                             : Qt::AlignHCenter;
        const qreal shift = i == 0 ? width * 0.5 : i == TimeDivisions ? -width * 0.4 : width * 0.05;
        drawText(painter, box.translated(shift, 0), alignment | Qt::AlignBottom, moment.toString(format),
                 font(QStringLiteral("axisFont")), Palette::FaintText);
    }
}

void TrendChartItem::drawGrid(QPainter &painter, const QRectF &plot) const
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawRect(plot);
    if (!flag(QStringLiteral("showGrid"))) {
        return;
    }
    painter.setPen(QPen(Palette::Track, qMax(1.0, scale())));
    for (int i = 0; i <= ValueDivisions; ++i) {
        const qreal y = plot.top() + plot.height() * i / ValueDivisions;
        painter.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
    }
    for (int i = 0; i <= TimeDivisions; ++i) {
        const qreal x = plot.left() + plot.width() * i / TimeDivisions;
        painter.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
    }
}

void TrendChartItem::drawCurve(QPainter &painter, const QRectF &plot, const Range &range) const
{
    QPolygonF line;
    const QVector<TrendSample> &samples = chart()->samples();
    for (const TrendSample &sample : samples) {
        const qreal height = fractionOf(sample.value, range.minimum, range.maximum);
        line.append(QPointF(plot.left() + plot.width() * chart()->window().shareOf(sample.time),
                            plot.bottom() - plot.height() * height));
    }
    QPolygonF surface = line;
    surface << QPointF(line.last().x(), plot.bottom()) << QPointF(line.first().x(), plot.bottom());

    const QColor lineColor = color(QStringLiteral("color"));
    QColor surfaceColor = lineColor;
    surfaceColor.setAlphaF(0.12);
    painter.save();
    painter.setClipRect(plot, Qt::IntersectClip);
    painter.setPen(Qt::NoPen);
    painter.setBrush(surfaceColor);
    painter.drawPolygon(surface);
    painter.setPen(
        QPen(lineColor, qBound(1.2, 1.8 * scale(), 4.0), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(line);
    painter.restore();
}

} // namespace Plant
