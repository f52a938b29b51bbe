// SPDX-License-Identifier: Apache-2.0
#include "picture.h"

#include "drawing.h"

#include <QtCore/QtMath>
#include <QtGui/QImageReader>
#include <QtGui/QPainter>

namespace Plant {

namespace {

constexpr QSizeF DesignSize(320, 200);

} // namespace

Picture::Picture(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

PictureItem::PictureItem(const KORA::GraphicsObjectData &data)
    : TouchItem(data, DesignSize)
{
    grabGesture(pinchGestureType());
}

void PictureItem::fieldIsChangedEvent(KORA::FieldIsChangedEvent *event)
{
    m_pixmapSpace = QSize();
    TouchItem::fieldIsChangedEvent(event);
}

void PictureItem::panned(const QPointF &delta)
{
    setView(m_view * QTransform::fromTranslate(delta.x(), delta.y()));
}

void PictureItem::zoomed(qreal factor, const QPointF &center)
{
    QTransform zoom = QTransform::fromTranslate(center.x(), center.y());
    zoom.scale(factor, factor).translate(-center.x(), -center.y());
    setView(m_view * zoom);
}

void PictureItem::turned(qreal angle, const QPointF &center)
{
    QTransform turn = QTransform::fromTranslate(center.x(), center.y());
    turn.rotate(angle).translate(-center.x(), -center.y());
    setView(m_view * turn);
}

void PictureItem::mouseDoubleClickEvent(QGraphicsSceneMouseEvent *)
{
    setView(QTransform());
}

void PictureItem::setView(const QTransform &view)
{
    constexpr qreal SmallestZoom = 0.5;
    constexpr qreal LargestZoom = 8;
    const qreal zoom = qSqrt(qAbs(view.determinant()));
    const bool isLost = !view.mapRect(contentArea()).contains(boundingRect().center());
    if (flag(QStringLiteral("interactive")) && zoom >= SmallestZoom && zoom <= LargestZoom && !isLost) {
        m_view = view;
        update();
    }
}

void PictureItem::draw(QPainter &painter, const QRectF &area)
{
    QRectF imageArea = area;
    const QString caption = text(QStringLiteral("caption"));
    if (!isCompact() && !caption.isEmpty()) {
        drawText(painter, takeBottom(imageArea, area.height() * 0.12), Qt::AlignHCenter | Qt::AlignBottom,
                 caption, textFont(QStringLiteral("caption")), Palette::FaintText);
    }

    const QPixmap &image = pixmap(imageArea.size().toSize());
    if (image.isNull()) {
        drawEmptyPanel(painter, imageArea, noValueText(), textFont(QStringLiteral("caption")), scale());
        return;
    }
    QRectF target(QPointF(), imageSize(image.size(), imageArea.size()));
    target.moveCenter(imageArea.center());
    painter.save();
    painter.setClipRect(imageArea, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setTransform(m_view, true);
    painter.setOpacity(painter.opacity() * number(QStringLiteral("opacity")));
    painter.drawPixmap(target, image, QRectF(image.rect()));
    painter.restore();
}

QSizeF PictureItem::imageSize(const QSizeF &original, const QSizeF &space) const
{
    switch (integer(QStringLiteral("fit"))) {
    case Cover:
        return original.scaled(space, Qt::KeepAspectRatioByExpanding);
    case Stretch:
        return space;
    default:
        return original.scaled(space, Qt::KeepAspectRatio);
    }
}

/// Reads the image at the size that it is drawn at, so that a drawing (SVG) is sharp at every size.
const QPixmap &PictureItem::pixmap(const QSize &space)
{
    if (m_pixmapSpace == space) {
        return m_pixmap;
    }
    m_pixmapSpace = space;
    m_pixmap = QPixmap();
    const QString reference = text(QStringLiteral("image"));
    if (!reference.isEmpty()) {
        QImageReader reader(reference);
        reader.setScaledSize(imageSize(reader.size(), space).toSize());
        m_pixmap = QPixmap::fromImageReader(&reader);
    }
    return m_pixmap;
}

} // namespace Plant
