// SPDX-License-Identifier: Apache-2.0
#include "valueswitch.h"

#include "drawing.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtWidgets/QGraphicsSceneMouseEvent>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(140, 70);

} // namespace

ValueSwitch::ValueSwitch(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

ValueSwitch::Mode ValueSwitch::mode() const
{
    return static_cast<Mode>(getFieldValue(QStringLiteral("mode")).toInt());
}

std::optional<bool> ValueSwitch::value() const
{
    const QVariant value = getFieldValue(QStringLiteral("value"));
    if (value.isValid()) {
        return value.toBool();
    }
    return isInEditor() ? std::optional<bool>(true) : std::nullopt;
}

bool ValueSwitch::canBeOperated() const
{
    return value() && getFieldValue(QStringLiteral("enabled")).toBool() && !isInEditor();
}

void ValueSwitch::press()
{
    if (mode() == PushButtonMode) {
        write(true);
    }
}

void ValueSwitch::release()
{
    if (mode() == PushButtonMode) {
        write(false);
    }
}

void ValueSwitch::click()
{
    const std::optional<bool> current = value();
    if (mode() == SwitchMode && current) {
        write(!*current);
    }
}

void ValueSwitch::write(bool value)
{
    setFieldValue(QStringLiteral("value"), value);
}

ValueSwitchItem::ValueSwitchItem(const KORA::GraphicsObjectData &data)
    : PlantItem(data, DesignSize)
{
    setOption(OptionTouchToMouse, true);
}

void ValueSwitchItem::deinitEvent(KORA::DeinitEvent *)
{
    letGo();
}

ValueSwitch *ValueSwitchItem::valueSwitch() const
{
    return qobject_cast<ValueSwitch *>(widget());
}

void ValueSwitchItem::mousePressEvent(QGraphicsSceneMouseEvent *event)
{
    if (!valueSwitch() || !valueSwitch()->canBeOperated()) {
        event->ignore();
        return;
    }
    m_isPressed = true;
    valueSwitch()->press();
    update();
}

void ValueSwitchItem::mouseReleaseEvent(QGraphicsSceneMouseEvent *event)
{
    const bool isClick = m_isPressed && boundingRect().contains(event->pos());
    letGo();
    if (isClick && valueSwitch()) {
        valueSwitch()->click();
    }
}

bool ValueSwitchItem::sceneEvent(QEvent *event)
{
    const bool isHandled = PlantItem::sceneEvent(event);
    // A button must not stay on when the page changes or a window opens under the operator's finger.
    if (event->type() == QEvent::UngrabMouse) {
        letGo();
    }
    return isHandled;
}

void ValueSwitchItem::letGo()
{
    if (!m_isPressed) {
        return;
    }
    m_isPressed = false;
    if (valueSwitch()) {
        valueSwitch()->release();
    }
    update();
}

void ValueSwitchItem::draw(QPainter &painter, const QRectF &area)
{
    const ValueSwitch *const owner = valueSwitch();
    if (!owner) {
        return;
    }
    if (!owner->value()) {
        drawEmptyPanel(painter, area, noValueText(), textFont(QStringLiteral("onText")), scale());
        return;
    }
    if (!getFieldValue(QStringLiteral("enabled")).toBool()) {
        painter.setOpacity(painter.opacity() * 0.6);
    }
    if (owner->mode() == ValueSwitch::PushButtonMode) {
        drawButton(painter, area);
    } else {
        drawSwitch(painter, area);
    }
}

QString ValueSwitchItem::stateText() const
{
    const bool isOn = valueSwitch()->value().value_or(false);
    return text(isOn ? QStringLiteral("onText") : QStringLiteral("offText"));
}

void ValueSwitchItem::drawSwitch(QPainter &painter, const QRectF &area) const
{
    const bool isOn = valueSwitch()->value().value_or(false);
    const qreal height = qMin(area.height() * 0.62, area.width() * 0.28);
    const QFont textFont = this->textFont(QStringLiteral("onText"));
    const qreal textWidth = QFontMetricsF(textFont).horizontalAdvance(stateText()) + 1;
    QRectF textArea(area);
    textArea.setWidth(qMin(area.width(), height * 2.1 + textWidth));
    textArea.moveCenter(area.center());
    QRectF track = takeLeft(textArea, height * 1.8);
    track = QRectF(track.left(), track.center().y() - height / 2, track.width(), height);

    painter.setPen(Qt::NoPen);
    painter.setBrush(isOn ? color(QStringLiteral("color")) : QColor(Palette::Line));
    painter.drawRoundedRect(track, height / 2, height / 2);
    const qreal gap = height * 0.1;
    QRectF knob(0, 0, height - 2 * gap, height - 2 * gap);
    knob.moveCenter(track.center());
    if (isOn) {
        knob.moveRight(track.right() - gap);
    } else {
        knob.moveLeft(track.left() + gap);
    }
    painter.setBrush(m_isPressed ? Palette::Track : QColor(Qt::white));
    painter.drawEllipse(knob);
    drawText(painter, textArea.adjusted(height * 0.3, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, stateText(),
             textFont, Palette::Text);
}

void ValueSwitchItem::drawButton(QPainter &painter, const QRectF &area) const
{
    const bool isOn = valueSwitch()->value().value_or(false);
    const QColor ground = isOn ? color(QStringLiteral("color")) : QColor(Palette::Track);
    painter.setPen(QPen(Palette::Line, qMax(1.0, scale())));
    painter.setBrush(m_isPressed ? ground.darker(112) : ground);
    const qreal radius = qBound(2.0, 5 * scale(), 12.0);
    painter.drawRoundedRect(area, radius, radius);
    drawText(painter, area.adjusted(radius, 0, -radius, 0), Qt::AlignCenter, stateText(),
             textFont(QStringLiteral("onText")), textColorOn(ground));
}

} // namespace Plant
