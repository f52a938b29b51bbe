// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QString>

class QMimeData;

namespace KORA {
namespace DEV {

class BenchDocument;

/// A widget of the gallery that is dragged over the page.
class WidgetDrop
{
public:
    static QString mimeType() { return QStringLiteral("application/x-kora-widget"); }

    WidgetDrop() = default;
    WidgetDrop(const QMimeData &data, const BenchDocument &document);

    /// Whether the data names a widget and a version; the library need not have them.
    bool isValid() const { return !m_widgetId.isEmpty() && !m_version.isEmpty(); }
    QString widgetId() const { return m_widgetId; }
    QString version() const { return m_version; }
    /// What the widget covers when it is placed with its centre there.
    QRectF rectAt(const QPointF &centre) const;

private:
    QString m_widgetId;
    QString m_version;
    QSizeF m_size;
};

} // namespace DEV
} // namespace KORA
