// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/canvas/widgetdrop.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMimeData>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/loader/plugindata.h>

namespace KORA {
namespace DEV {

namespace {

const QSizeF fallbackSize(120, 80); // as BenchDocument::place()

} // namespace

WidgetDrop::WidgetDrop(const QMimeData &data, const BenchDocument &document)
    : m_size(fallbackSize)
{
    const QJsonObject widget = QJsonDocument::fromJson(data.data(mimeType())).object();
    m_widgetId = widget.value(QStringLiteral("widget")).toString();
    m_version = widget.value(QStringLiteral("version")).toString();
    if (!document.plugin()) {
        return;
    }
    const auto info = document.plugin()->metaInformation()->widgets().value({m_widgetId, m_version});
    if (!info.defaultSize().isEmpty()) {
        m_size = info.defaultSize();
    }
}

QRectF WidgetDrop::rectAt(const QPointF &centre) const
{
    QRectF rect(QPointF(), m_size);
    rect.moveCenter(centre);
    return rect;
}

} // namespace DEV
} // namespace KORA
