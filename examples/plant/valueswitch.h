// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantitem.h"
#include "plantwidget.h"

#include <optional>

namespace Plant {

/// Writes a bool tag: a switch that turns it over, or a push button that sets it while it is pressed.
class ValueSwitch : public PlantWidget
{
    Q_OBJECT

public:
    /// The indexes of the option field "mode".
    enum Mode { SwitchMode = 0, PushButtonMode = 1 };

    Q_INVOKABLE explicit ValueSwitch(const KORA::WidgetData &data);

    Mode mode() const;
    /// Nothing while the tag has no value: what the operator cannot see is not operated.
    std::optional<bool> value() const;
    bool canBeOperated() const;

    /// A push button goes on when pressed and off when released or lost; a switch turns over on a click.
    void press();
    void release();
    void click();

private:
    void write(bool value);
};

class ValueSwitchItem : public PlantItem
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit ValueSwitchItem(const KORA::GraphicsObjectData &data);

    void deinitEvent(KORA::DeinitEvent *event) override;

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override;
    bool sceneEvent(QEvent *event) override;

private:
    ValueSwitch *valueSwitch() const;
    QString stateText() const;
    void drawSwitch(QPainter &painter, const QRectF &area) const;
    void drawButton(QPainter &painter, const QRectF &area) const;
    void letGo();

    bool m_isPressed = false;
};

} // namespace Plant
