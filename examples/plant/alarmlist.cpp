// SPDX-License-Identifier: Apache-2.0
#include "alarmlist.h"

#include "drawing.h"
#include "examplealarms.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsSceneMouseEvent>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(480, 220);
constexpr int BlinkMs = 600;

QColor backgroundOf(const KORA::AlarmInfo &alarm)
{
    const QColor &color = alarm.currentBackgroundColor();
    if (color.isValid()) {
        return color;
    }
    return alarm.severity() >= KORA::AlarmInfo::SeverityHigh ? Palette::Alarm : Palette::Warning;
}

QColor foregroundOf(const KORA::AlarmInfo &alarm)
{
    const QColor &color = alarm.currentForegroundColor();
    return color.isValid() ? color : textColorOn(backgroundOf(alarm));
}

bool needsAttention(const KORA::AlarmInfo &alarm)
{
    return alarm.triggered() || AlarmList::needsAcknowledgement(alarm);
}

} // namespace

AlarmList::AlarmList(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

void AlarmList::initEvent(KORA::InitEvent *)
{
    const QVector<KORA::AlarmInfo> alarms =
        isInEditor() ? exampleAlarms() : widgetActionManager()->getAlarms();
    m_alarms.clear();
    for (const KORA::AlarmInfo &alarm : alarms) {
        putAlarm(alarm);
    }
    publish();
}

void AlarmList::fieldIsChangedEvent(KORA::FieldIsChangedEvent *event)
{
    if (event->fieldId() == QLatin1String("order")) {
        publish();
    }
}

void AlarmList::alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event)
{
    putAlarm(event->alarmInfo());
    publish();
}

void AlarmList::acknowledge(const KORA::AlarmInfo &alarm)
{
    if (alarm.acknowledgeEnabled() && needsAcknowledgement(alarm)) {
        widgetActionManager()->acknowAlarm(alarm.name());
    }
}

bool AlarmList::needsAcknowledgement(const KORA::AlarmInfo &alarm)
{
    return alarm.state() == KORA::AlarmInfo::StateTriggeredNotAcknowledged
           || alarm.state() == KORA::AlarmInfo::StateNotTriggeredNotAcknowledged;
}

void AlarmList::putAlarm(const KORA::AlarmInfo &alarm)
{
    const auto hasName = [&alarm](const KORA::AlarmInfo &other) { return other.name() == alarm.name(); };
    m_alarms.erase(std::remove_if(m_alarms.begin(), m_alarms.end(), hasName), m_alarms.end());
    if (needsAttention(alarm)) {
        m_alarms.append(alarm);
    }
}

void AlarmList::publish()
{
    const bool bySeverity = getFieldValue(QStringLiteral("order")).toInt() == MostSevereFirst;
    const auto isBefore = [bySeverity](const KORA::AlarmInfo &a, const KORA::AlarmInfo &b) {
        if (bySeverity && a.severity() != b.severity()) {
            return a.severity() > b.severity();
        }
        return a.timestamp() > b.timestamp();
    };
    std::stable_sort(m_alarms.begin(), m_alarms.end(), isBefore);
    setFieldValue(QStringLiteral("count"), m_alarms.size());
    updateItems();
}

AlarmListItem::AlarmListItem(const KORA::GraphicsObjectData &data)
    : PlantItem(data, DesignSize)
{
    setOption(OptionTouchToMouse, true);
}

void AlarmListItem::initEvent(KORA::InitEvent *)
{
    if (!isInEditor()) {
        m_blinkTimer.start(BlinkMs, this);
    }
}

void AlarmListItem::deinitEvent(KORA::DeinitEvent *)
{
    m_blinkTimer.stop();
    m_isBlinkedOff = false;
}

void AlarmListItem::alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *)
{
    update();
}

void AlarmListItem::timerEvent(QTimerEvent *)
{
    const auto blinks = [](const KORA::AlarmInfo &alarm) {
        return alarm.blinkEnabled() && AlarmList::needsAcknowledgement(alarm);
    };
    const bool anyBlinks =
        alarmList() && std::any_of(alarmList()->alarms().begin(), alarmList()->alarms().end(), blinks);
    const bool wasOff = std::exchange(m_isBlinkedOff, anyBlinks && !m_isBlinkedOff);
    if (wasOff != m_isBlinkedOff) {
        update();
    }
}

AlarmList *AlarmListItem::alarmList() const
{
    return qobject_cast<AlarmList *>(widget());
}

void AlarmListItem::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    m_pressedRow = isInEditor() ? -1 : rowAt(event->pos());
    if (m_pressedRow < 0) {
        event->ignore();
    }
}

void AlarmListItem::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    const int row = std::exchange(m_pressedRow, -1);
    if (row >= 0 && row == rowAt(event->pos())) {
        alarmList()->acknowledge(alarmList()->alarms().at(row));
    }
}

AlarmListItem::Layout AlarmListItem::layout(const QRectF &area) const
{
    const qreal lineHeight = QFontMetricsF(font(QStringLiteral("rowFont"))).height();
    const int count = alarmList() ? alarmList()->alarms().size() : 0;
    Layout layout;
    layout.rowHeight = lineHeight * 1.8; // wide enough for a finger
    layout.rows = area;
    layout.header = takeTop(layout.rows, lineHeight * 1.5);
    int fitting = qMax(0, static_cast<int>(layout.rows.height() / layout.rowHeight));
    if (count > fitting) {
        layout.footer = takeBottom(layout.rows, lineHeight * 1.3);
        fitting = qMax(0, static_cast<int>(layout.rows.height() / layout.rowHeight));
    }
    layout.rowCount = qMin(count, fitting);
    return layout;
}

int AlarmListItem::rowAt(const QPointF &position) const
{
    if (isCompact()) {
        return -1;
    }
    const Layout parts = layout(contentArea());
    const qreal row = (position.y() - parts.rows.top()) / parts.rowHeight;
    return row >= 0 && row < parts.rowCount ? static_cast<int>(row) : -1;
}

QVector<QRectF> AlarmListItem::columns(const QRectF &row) const
{
    QRectF middle = row.adjusted(row.width() * 0.02, 0, -row.width() * 0.01, 0);
    const QRectF left = takeLeft(middle, row.width() * 0.16);
    const QRectF right = takeRight(middle, row.width() * 0.28);
    const qreal gap = row.width() * 0.015;
    return {left.adjusted(0, 0, -gap, 0), middle.adjusted(0, 0, -gap, 0), right};
}

void AlarmListItem::draw(QPainter &painter, const QRectF &area)
{
    if (!alarmList()) {
        return;
    }
    const QVector<KORA::AlarmInfo> &alarms = alarmList()->alarms();
    if (alarms.isEmpty()) {
        drawText(painter, area, Qt::AlignCenter, text(QStringLiteral("emptyText")),
                 textFont(QStringLiteral("emptyText")), Palette::FaintText);
        return;
    }
    if (isCompact()) {
        drawCount(painter, area);
        return;
    }
    const Layout parts = layout(area);
    drawHeader(painter, parts.header);
    for (int i = 0; i < parts.rowCount; ++i) {
        const QRectF row(parts.rows.left(), parts.rows.top() + i * parts.rowHeight, parts.rows.width(),
                         parts.rowHeight);
        drawRow(painter, row, alarms.at(i));
    }
    drawText(painter, parts.footer, Qt::AlignRight | Qt::AlignVCenter,
             QStringLiteral("+%1").arg(alarms.size() - parts.rowCount), font(QStringLiteral("rowFont")),
             Palette::FaintText);
}

void AlarmListItem::drawCount(QPainter &painter, const QRectF &area) const
{
    const QVector<KORA::AlarmInfo> &alarms = alarmList()->alarms();
    const auto isLess = [](const KORA::AlarmInfo &a, const KORA::AlarmInfo &b) {
        return a.severity() < b.severity();
    };
    const KORA::AlarmInfo worst = *std::max_element(alarms.cbegin(), alarms.cend(), isLess);
    painter.setPen(Qt::NoPen);
    painter.setBrush(backgroundOf(worst));
    painter.drawRoundedRect(area, 3, 3);
    drawText(painter, area, Qt::AlignCenter, QString::number(alarms.size()),
             pixelFont(area.height() * 0.7, true), foregroundOf(worst));
}

void AlarmListItem::drawHeader(QPainter &painter, const QRectF &area) const
{
    const QStringList titles = textList(QStringLiteral("columns"));
    const QVector<QRectF> cells = columns(area);
    for (int i = 0; i < qMin(titles.size(), cells.size()); ++i) {
        drawText(painter, cells.at(i), Qt::AlignLeft | Qt::AlignVCenter, titles.at(i),
                 textFont(QStringLiteral("columns")), Palette::FaintText);
    }
}

void AlarmListItem::drawRow(QPainter &painter, const QRectF &area, const KORA::AlarmInfo &alarm) const
{
    const bool isOpen = AlarmList::needsAcknowledgement(alarm);
    const bool isOff = m_isBlinkedOff && isOpen && alarm.blinkEnabled();
    const QColor ground = isOff ? mixed(Palette::Panel, backgroundOf(alarm), 0.45) : backgroundOf(alarm);
    const qreal gap = qMax(1.0, 1.5 * scale());
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(area.adjusted(0, 0, 0, -gap), 2 * gap, 2 * gap);

    QFont rowFont = font(QStringLiteral("rowFont"));
    rowFont.setBold(rowFont.bold() || isOpen);
    const QStringList texts{alarm.timestamp().toString(QStringLiteral("HH:mm:ss")),
                            alarm.description().isEmpty() ? alarm.name() : alarm.description(),
                            mappedText(QStringLiteral("stateTexts"), alarm.state())};
    const QVector<QRectF> cells = columns(area.adjusted(0, 0, 0, -gap));
    for (int i = 0; i < cells.size(); ++i) {
        drawText(painter, cells.at(i), Qt::AlignLeft | Qt::AlignVCenter, texts.at(i), rowFont,
                 isOff ? QColor(Palette::Text) : foregroundOf(alarm));
    }
}

} // namespace Plant
