// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/graphicsobject_p.h>

#include <QtGui/QTouchEvent>
#include <QtWidgets/QGraphicsSceneMouseEvent>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <cmath>

namespace KORA {

namespace {

// Rounding a value outside int is undefined.
int roundToPixel(qreal value)
{
    if (std::isnan(value)) {
        return 0;
    }
    constexpr qreal farthest = 2e9; // in the range of int
    return qRound(std::clamp(value, -farthest, farthest));
}

QPoint roundToPixels(const QPointF &point)
{
    return {roundToPixel(point.x()), roundToPixel(point.y())};
}

void fillMouseEvent(QGraphicsSceneMouseEvent &mouse, const QTouchEvent &touch, Qt::MouseButton button,
                    Qt::MouseButtons buttons)
{
    const QTouchEvent::TouchPoint &point = touch.touchPoints().constFirst();
    mouse.setButton(button);
    mouse.setButtons(buttons);
    mouse.setScenePos(point.scenePos());
    mouse.setScreenPos(roundToPixels(point.screenPos()));
    mouse.setPos(point.pos());
    mouse.setLastScenePos(point.lastScenePos());
    mouse.setLastScreenPos(roundToPixels(point.lastScreenPos()));
    mouse.setLastPos(point.lastPos());
    mouse.setWidget(qobject_cast<QWidget *>(touch.target())); // the viewport that was touched
}

} // namespace

bool GraphicsObjectPrivate::touchToMouse(QTouchEvent *touch)
{
    if (touch->touchPoints().isEmpty()) {
        return false;
    }
    const int pointId = touch->touchPoints().constFirst().id();
    const QPointer<GraphicsObject> guard(owner); // each handler may delete the item
    bool isAccepted = false;
    switch (touch->type()) {
    case QEvent::TouchBegin: {
        if (pointId == trackedTouchPointId) {
            return true;
        }
        QGraphicsSceneMouseEvent mouse(QEvent::GraphicsSceneMousePress);
        fillMouseEvent(mouse, *touch, Qt::LeftButton, Qt::LeftButton);
        owner->mousePressEvent(&mouse);
        isAccepted = mouse.isAccepted();
        if (guard) {
            trackedTouchPointId = pointId;
        }
        break;
    }
    case QEvent::TouchUpdate: {
        QGraphicsSceneMouseEvent mouse(QEvent::GraphicsSceneMouseMove);
        fillMouseEvent(mouse, *touch, Qt::NoButton, Qt::LeftButton);
        owner->mouseMoveEvent(&mouse);
        isAccepted = mouse.isAccepted();
        break;
    }
    case QEvent::TouchEnd: {
        QGraphicsSceneMouseEvent mouse(QEvent::GraphicsSceneMouseRelease);
        fillMouseEvent(mouse, *touch, Qt::LeftButton, Qt::NoButton);
        owner->mouseReleaseEvent(&mouse);
        isAccepted = mouse.isAccepted();
        if (guard) {
            trackedTouchPointId = noTouchPoint;
        }
        break;
    }
    default:
        return false;
    }
    touch->setAccepted(isAccepted);
    return true;
}

} // namespace KORA
