// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/trendcurve_p.h>

#include <kora/dev/providers/providers.h>
#include <kora/dev/providers/tagvalues.h>

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <algorithm>
#include <cmath>

namespace KORA {
namespace DEV {

namespace {

constexpr int UpdateMs = 100;
constexpr unsigned int MostPoints = 2000; // more than a pane has pixels
constexpr qint64 SpanMs = 60000;
constexpr int Padding = 4;

QString clockText(const QDateTime &time)
{
    return time.toUTC().toString(QStringLiteral("HH:mm:ss"));
}

} // namespace

struct TrendCurve::Curve
{
    QDateTime from;
    QDateTime to;
    QVector<QPointF> points; ///< milliseconds after from, value
    double minimum = 0;
    double maximum = 0;
};

TrendCurve::TrendCurve(Providers *providers, QWidget *parent)
    : QWidget(parent)
    , m_providers(providers)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_update.setSingleShot(true);
    m_update.setInterval(UpdateMs);
    connect(&m_update, &QTimer::timeout, this, [this] {
        setToolTip(caption()); // in full
        update();
    });
    connect(providers->clock(), &BenchClock::ticked, this, &TrendCurve::updateSoon);
    connect(providers->trends(), &TrendTable::asked, this, &TrendCurve::updateSoon);
    connect(providers->trends(), &TrendTable::trendsChanged, this, &TrendCurve::updateSoon);
}

void TrendCurve::setTrend(const QString &name)
{
    if (m_trend != name) {
        m_trend = name;
        setToolTip(caption());
        update();
    }
}

void TrendCurve::updateSoon()
{
    if (isVisible() && !m_update.isActive()) {
        m_update.start();
    }
}

QString TrendCurve::caption() const
{
    const TrendTable *trends = m_providers->trends();
    if (!trends->contains(m_trend)) {
        return tr("No trend is selected");
    }
    const QVariant value = trends->presentValue(m_trend);
    const QString now = value.isValid() ? TagValues::shortText(value) : tr("no value");
    const TrendTable::Question *question = trends->lastQuestion(m_trend);
    if (!question) {
        return tr("Now %1; last minute, not asked yet").arg(now);
    }
    return tr("Now %1; asked for %2, got %3: %4 to %5")
        .arg(now, QString::number(question->count), QString::number(question->answered),
             clockText(question->from), clockText(question->to));
}

TrendCurve::Curve TrendCurve::curve() const
{
    Curve curve;
    const TrendTable::Question *question = m_providers->trends()->lastQuestion(m_trend);
    curve.to = question ? question->to : m_providers->clock()->now();
    curve.from = question ? question->from : curve.to.addMSecs(-SpanMs);
    const unsigned int count = question ? std::min(question->count, MostPoints) : MostPoints;
    const QVariantList values = m_providers->trends()->values(m_trend, curve.from, curve.to, count,
                                                              KORA::WidgetActionManager::UtcTime);
    for (const QVariant &entry : values) {
        const QVariantMap point = entry.toMap();
        bool isNumber = false;
        const double value = point.value(QStringLiteral("value")).toDouble(&isNumber);
        if (isNumber && std::isfinite(value)) {
            const QDateTime time = point.value(QStringLiteral("time")).toDateTime();
            curve.points.append({static_cast<double>(curve.from.msecsTo(time)), value});
        }
    }
    const auto isLower = [](const QPointF &a, const QPointF &b) { return a.y() < b.y(); };
    const auto range = std::minmax_element(curve.points.cbegin(), curve.points.cend(), isLower);
    if (!curve.points.isEmpty()) {
        curve.minimum = range.first->y();
        curve.maximum = range.second->y();
    }
    return curve;
}

void TrendCurve::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    painter.setPen(palette().color(QPalette::Text));
    const int line = fontMetrics().height();
    const QRect inside = rect().adjusted(Padding, Padding, -Padding, -Padding);
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignTop,
                     fontMetrics().elidedText(caption(), Qt::ElideRight, inside.width()));
    if (!m_providers->trends()->contains(m_trend)) {
        return;
    }
    const Curve shown = curve();
    const int scale = std::max(fontMetrics().horizontalAdvance(QString::number(shown.minimum, 'g', 4)),
                               fontMetrics().horizontalAdvance(QString::number(shown.maximum, 'g', 4)));
    const QRectF plot = QRectF(inside).adjusted(scale + Padding, 1.5 * line, -Padding, -1.2 * line);
    if (plot.width() < 10 || plot.height() < 5) {
        return;
    }
    drawFrame(painter, plot, shown);
    drawLine(painter, plot, shown);
}

void TrendCurve::drawFrame(QPainter &painter, const QRectF &plot, const Curve &curve) const
{
    const double line = fontMetrics().height();
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(plot);
    painter.setPen(palette().color(QPalette::Text));
    const QRectF below(plot.left(), plot.bottom() + 1, plot.width(), line);
    painter.drawText(below, Qt::AlignLeft | Qt::AlignTop, clockText(curve.from));
    const double both = 2 * fontMetrics().horizontalAdvance(clockText(curve.from));
    if (below.width() > both + Padding) {
        painter.drawText(below, Qt::AlignRight | Qt::AlignTop, clockText(curve.to));
    }
    if (curve.points.isEmpty()) {
        painter.drawText(plot, Qt::AlignCenter, tr("no values"));
        return;
    }
    const QRectF left(0, plot.top() - line / 2, plot.left() - Padding, line);
    painter.drawText(left, Qt::AlignRight | Qt::AlignVCenter, QString::number(curve.maximum, 'g', 4));
    if (curve.maximum > curve.minimum && plot.height() > line) {
        painter.drawText(left.translated(0, plot.height()), Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(curve.minimum, 'g', 4));
    }
}

void TrendCurve::drawLine(QPainter &painter, const QRectF &plot, const Curve &curve) const
{
    const double span = std::max(1.0, static_cast<double>(curve.from.msecsTo(curve.to)));
    const double range = curve.maximum - curve.minimum;
    double step = span;
    for (int i = 1; i < curve.points.size(); ++i) {
        step = std::min(step, curve.points.at(i).x() - curve.points.at(i - 1).x());
    }
    QPainterPath path;
    for (int i = 0; i < curve.points.size(); ++i) {
        const QPointF &point = curve.points.at(i);
        const double share = range > 0 ? (point.y() - curve.minimum) / range : 0.5;
        const QPointF place(plot.left() + point.x() / span * plot.width(),
                            plot.bottom() - share * plot.height());
        const bool isAfterGap = i == 0 || point.x() - curve.points.at(i - 1).x() > 1.5 * step;
        if (isAfterGap) {
            path.moveTo(place);
            path.lineTo(place + QPointF(0.1, 0)); // a value alone is seen too
        } else {
            path.lineTo(place);
        }
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(plot.adjusted(-1, -2, 1, 2));
    QPen pen(palette().color(QPalette::Link), 1.5);
    pen.setCapStyle(Qt::RoundCap);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.drawPath(path);
}

} // namespace DEV
} // namespace KORA
