// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSizeF>
#include <QtGui/QImage>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>

#include <kora/testkit/touch.h>

namespace KORA {
namespace TestKit {

/// A page of a panel: a scene in a shown view, one pixel of the view to a unit of the scene, the scene's (0, 0) in the
/// upper left corner. Items on it belong to the scene.
class Scene
{
public:
    explicit Scene(const QSizeF &size)
        : touch(view.viewport())
    {
        scene.setSceneRect(QRectF(QPointF(), size));
        view.setScene(&scene);
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
        view.setFixedSize(size.toSize());
        view.show();
    }
    Q_DISABLE_COPY(Scene)

    /// To be awaited before mouse and touch events are sent.
    bool isExposed() { return QTest::qWaitForWindowExposed(&view); }

    /// What the scene shows, on white.
    QImage picture()
    {
        QImage image(scene.sceneRect().size().toSize(), QImage::Format_ARGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing
                               | QPainter::SmoothPixmapTransform);
        scene.render(&painter);
        return image;
    }

    // The left mouse button -------------------------------------------------------------------------------------

    void mouse(QEvent::Type type, const QPoint &position)
    {
        const bool isDown = type != QEvent::MouseButtonRelease;
        QMouseEvent event(type, position, view.viewport()->mapToGlobal(position),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          isDown ? Qt::LeftButton : Qt::NoButton, {});
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    void click(const QPoint &position)
    {
        mouse(QEvent::MouseButtonPress, position);
        mouse(QEvent::MouseButtonRelease, position);
    }
    void drag(const QPoint &from, const QPoint &step, int steps)
    {
        mouse(QEvent::MouseButtonPress, from);
        for (int i = 1; i <= steps; ++i) {
            mouse(QEvent::MouseMove, from + i * step);
        }
        mouse(QEvent::MouseButtonRelease, from + steps * step);
    }

    QGraphicsScene scene;
    QGraphicsView view;
    Touch touch;
};

} // namespace TestKit
} // namespace KORA
