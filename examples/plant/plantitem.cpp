// SPDX-License-Identifier: Apache-2.0
#include "plantitem.h"

#include "drawing.h"

#include <QtGui/QPainter>

namespace Plant {

namespace {

constexpr qreal CompactSide = 72;
constexpr qreal PixelsPerPoint = 96.0 / 72.0;
constexpr qreal DefaultPoints = 10;
constexpr qreal ReadablePixels = 11;

} // namespace

PlantItem::PlantItem(const KORA::GraphicsObjectData &data, const QSizeF &designSize)
    : KORA::GraphicsObject(data)
    , m_designSize(designSize)
{}

void PlantItem::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    if (size().isEmpty()) {
        return;
    }
    painter->setRenderHint(QPainter::Antialiasing);
    drawPanel(*painter, boundingRect(), scale());
    draw(*painter, contentArea());
}

void PlantItem::resizeEvent(KORA::ResizeEvent *)
{
    update();
}

void PlantItem::fieldIsChangedEvent(KORA::FieldIsChangedEvent *)
{
    update();
}

bool PlantItem::isInEditor() const
{
    return widgetActionManager()->isInsideProjectEditor();
}

qreal PlantItem::scale() const
{
    return qMin(size().width() / m_designSize.width(), size().height() / m_designSize.height());
}

bool PlantItem::isCompact() const
{
    return qMin(size().width(), size().height()) < CompactSide;
}

QRectF PlantItem::contentArea() const
{
    const qreal margin = qBound(2.0, 8 * scale(), 24.0);
    return boundingRect().adjusted(margin, margin, -margin, -margin);
}

QString PlantItem::text(const QString &field) const
{
    return getFieldValue(field).toString();
}

QStringList PlantItem::textList(const QString &field) const
{
    return getFieldValue(field).toStringList();
}

QString PlantItem::mappedText(const QString &field, int index) const
{
    return getFieldValue(field).value<QMap<int, QString>>().value(index);
}

double PlantItem::number(const QString &field) const
{
    return getFieldValue(field).toDouble();
}

int PlantItem::integer(const QString &field) const
{
    return getFieldValue(field).toInt();
}

bool PlantItem::flag(const QString &field) const
{
    return getFieldValue(field).toBool();
}

QColor PlantItem::color(const QString &field) const
{
    const QColor color = getFieldValue(field).value<QColor>();
    return color.isValid() ? color : Palette::Process;
}

QFont PlantItem::font(const QString &field) const
{
    const QVariant value = getFieldValue(field);
    QFont font = value.isValid() ? value.value<QFont>() : pixelFont(DefaultPoints * PixelsPerPoint);
    const qreal pixels = font.pointSizeF() > 0 ? font.pointSizeF() * PixelsPerPoint : font.pixelSize();
    font.setPixelSize(qRound(qMax(ReadablePixels, pixels * scale())));
    return font;
}

QFont PlantItem::textFont(const QString &textField) const
{
    return font(textField + QStringLiteral(".font"));
}

} // namespace Plant
