// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/widgetdrop.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMimeData>

#include <kora/dev/model/benchdocument.h>

namespace KORA {
namespace DEV {

WidgetDrop::WidgetDrop(const QMimeData &data, const BenchDocument &document)
{
    const QJsonObject widget = QJsonDocument::fromJson(data.data(mimeType())).object();
    m_widgetId = widget.value(QStringLiteral("widget")).toString();
    m_version = widget.value(QStringLiteral("version")).toString();
    m_size = document.sizeOfNew(m_widgetId, m_version);
}

QRectF WidgetDrop::rectAt(const QPointF &centre) const
{
    QRectF rect(QPointF(), m_size);
    rect.moveCenter(centre);
    return rect;
}

} // namespace DEV
} // namespace KORA
