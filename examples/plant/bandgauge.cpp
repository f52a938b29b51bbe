// SPDX-License-Identifier: Apache-2.0
#include "bandgauge.h"

#include <QtGui/QPainter>

#include <limits>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(220, 220);
constexpr qreal BandEdge = 0.9;
constexpr qreal BandThickness = 0.09;
constexpr qreal SmallestRadiusWithNumbers = 60;
constexpr qreal SmallestRadiusWithTicks = 32;

} // namespace

BandGauge::BandGauge(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

void BandGauge::initEvent(KORA::InitEvent *)
{
    raisePeak(getFieldValue(QStringLiteral("value")));
}

void BandGauge::fieldIsChangedEvent(KORA::FieldIsChangedEvent *event)
{
    if (event->fieldId() == QLatin1String("value")) {
        raisePeak(event->value());
    }
}

void BandGauge::raisePeak(const QVariant &value)
{
    const QString peak = QStringLiteral("peak");
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    const QVariant last = getFieldValue(peak);
    if (isNumber && (!last.isValid() || number > last.toDouble())) {
        setFieldValue(peak, number);
    }
}

BandGaugeItem::BandGaugeItem(const KORA::GraphicsObjectData &data)
    : DialItem(data, DesignSize)
{}

void BandGaugeItem::draw(QPainter &painter, const QRectF &area)
{
    const Dial dial(area);
    if (const std::optional<double> reading = value()) {
        drawBands(painter, dial);
        drawTicks(painter, dial);
        drawPeak(painter, dial);
        drawNeedle(painter, dial, *reading);
    } else {
        drawHatching(painter, dial.ring(BandEdge, 2 * BandThickness), scale());
        drawTicks(painter, dial);
    }
    const QRectF readingBox = isCompact() ? dial.box(0.6, 1.6, 0.8) : dial.box(0.52, 0.9, 0.3);
    drawReading(painter, readingBox, font(QStringLiteral("valueFont")), Qt::AlignCenter);
    if (!isCompact()) {
        drawLabel(painter, dial.box(0.84, 1.0, 0.22), Qt::AlignCenter);
    }
}

Status BandGaugeItem::status(double value) const
{
    Status worst = Status::Normal;
    const QVector<Band> all = bands();
    for (const Band &band : all) {
        if (value >= band.from && value <= band.to) {
            worst = qMax(worst, band.status);
        }
    }
    return worst;
}

QVector<BandGaugeItem::Band> BandGaugeItem::bands() const
{
    if (!flag(QStringLiteral("bands"))) {
        return {};
    }
    const double lowAlarm = number(QStringLiteral("lowAlarm"));
    const double lowWarning = number(QStringLiteral("lowWarning"));
    const double highWarning = number(QStringLiteral("highWarning"));
    const double highAlarm = number(QStringLiteral("highAlarm"));
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    return {{-Infinity, lowAlarm, Status::Alarm},
            {lowAlarm, lowWarning, Status::Warning},
            {highWarning, highAlarm, Status::Warning},
            {highAlarm, Infinity, Status::Alarm}};
}

void BandGaugeItem::drawBands(QPainter &painter, const Dial &dial) const
{
    constexpr qreal RestingStrength = 0.4;
    dial.drawArc(painter, 0, 1, BandEdge, BandThickness, Palette::Track);
    const double reading = value().value_or(0);
    const QVector<Band> all = bands();
    for (const Band &band : all) {
        const bool isActive = reading >= band.from && reading <= band.to;
        const QColor color = statusColor(band.status);
        dial.drawArc(painter, fraction(band.from), fraction(band.to), BandEdge, BandThickness,
                     isActive ? color : mixed(Palette::Panel, color, RestingStrength));
    }
}

void BandGaugeItem::drawTicks(QPainter &painter, const Dial &dial) const
{
    if (dial.radius() < SmallestRadiusWithTicks) {
        return;
    }
    const int divisions = qMax(1, integer(QStringLiteral("divisions")));
    const double minimum = number(QStringLiteral("minimum"));
    const double step = (number(QStringLiteral("maximum")) - minimum) / divisions;
    const QFont numberFont = pixelFont(dial.radius() * 0.12);
    for (int i = 0; i <= divisions; ++i) {
        const qreal at = static_cast<qreal>(i) / divisions;
        painter.setPen(QPen(Palette::Line, qMax(1.0, dial.radius() * 0.016)));
        painter.drawLine(dial.point(at, BandEdge - BandThickness), dial.point(at, 0.74));
        if (dial.radius() < SmallestRadiusWithNumbers) {
            continue;
        }
        QRectF box(0, 0, dial.radius() * 0.34, dial.radius() * 0.16);
        box.moveCenter(dial.point(at, 0.6));
        drawText(painter, box, Qt::AlignCenter, scaleText(minimum + i * step), numberFont,
                 Palette::FaintText);
    }
}

void BandGaugeItem::drawPeak(QPainter &painter, const Dial &dial) const
{
    const QVariant peak = getFieldValue(QStringLiteral("peak"));
    if (peak.isValid() && flag(QStringLiteral("showPeak"))) {
        dial.drawMark(painter, fraction(peak.toDouble()), BandEdge - BandThickness, BandEdge + 0.05,
                      Palette::Text);
    }
}

void BandGaugeItem::drawNeedle(QPainter &painter, const Dial &dial, double value) const
{
    const qreal at = fraction(value);
    const qreal quarter = 1.0 / 3; // of the dial's three quarters: a right angle to the needle
    const qreal halfWidth = 0.045;
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(QStringLiteral("color")));
    painter.drawPolygon(QVector<QPointF>{dial.point(at, 0.84), dial.point(at + quarter, halfWidth),
                                         dial.point(at, -0.14), dial.point(at - quarter, halfWidth)});
    painter.setBrush(Palette::Text);
    painter.drawEllipse(dial.box(0, 0.16, 0.16));
}

} // namespace Plant
