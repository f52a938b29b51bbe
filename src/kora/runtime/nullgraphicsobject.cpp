// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/nullgraphicsobject.h>

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

#include <kora/runtime/widget.h>
#include <kora/runtime/widgetactionmanager.h>

namespace KORA {

namespace {

// No icon is asked for in a size that no screen has; the drawing stretches it.
constexpr qreal largestIconExtent = 8192;

QSize iconSize(const QSizeF &size)
{
    if (size.isEmpty() || !qIsFinite(size.width()) || !qIsFinite(size.height())) {
        return {};
    }
    const QSizeF bounded = size.boundedTo({largestIconExtent, largestIconExtent});
    return bounded.toSize();
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
