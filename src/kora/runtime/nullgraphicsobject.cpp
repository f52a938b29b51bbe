// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/nullgraphicsobject.h>

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

#include <algorithm>

#include <kora/runtime/widget.h>
#include <kora/runtime/widgetactionmanager.h>

namespace KORA {

namespace {

// No icon is asked for in a size that no screen has; the drawing stretches it.
constexpr qreal largestIconExtent = 8192;

QSize iconSize(const QSizeF &size)
{
    const auto extent = [](qreal value) { return qRound(std::clamp<qreal>(value, 0, largestIconExtent)); };
    return {extent(size.width()), extent(size.height())};
}

} // namespace

NullGraphicsObject::NullGraphicsObject(const KORA::GraphicsObjectData &data)
    : GraphicsObject(data)
{}

NullGraphicsObject::~NullGraphicsObject() = default;

void NullGraphicsObject::paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *)
{
    if (!widgetActionManager() || !widgetActionManager()->isInsideProjectEditor()) {
        return;
    }
    painter->setClipRect(option->rect, Qt::ReplaceClip);
    painter->setRenderHint(QPainter::Antialiasing, true);

    QIcon icon = widget() ? widget()->icon() : QIcon();
    if (icon.isNull()) {
        icon = koraDefaultGalleryIcon();
    }
    const QSize size = iconSize(this->size());
    if (icon.isNull() || size.isEmpty()) {
        return;
    }
    const QPixmap pixmap = icon.pixmap(size, QIcon::Normal, QIcon::Off);
    painter->drawPixmap(boundingRect(), pixmap, pixmap.rect());
}

} // namespace KORA
