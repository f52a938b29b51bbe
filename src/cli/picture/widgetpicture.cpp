// SPDX-License-Identifier: Apache-2.0
#include "widgetpicture.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsScene>

#include <kora/dev/model/hostservices.h>
#include <kora/dev/model/livewidget.h>
#include <kora/host.h>

#include <cmath>

using namespace KORA::DEV;
using namespace KORA::INTERNAL;

namespace {

const QSizeF fallbackSize(100, 100); // for widgets without a default size
const double largestSize = 8192;
const int dotsPerMeter = 3780; // 96 DPI

bool pictureSize(const WidgetMetaInformation &info, const QSizeF &wanted, QSizeF &size, QString &problem)
{
    size = wanted.isEmpty() ? info.defaultSize() : wanted;
    if (size.isEmpty()) {
        size = fallbackSize;
    }
    if (size.width() > largestSize || size.height() > largestSize) {
        problem = QStringLiteral("its size %1x%2 is more than %3 pixels; give --size")
                      .arg(QString::number(size.width()), QString::number(size.height()),
                           QString::number(largestSize));
        return false;
    }
    return true;
}

void setValues(KORA::WidgetPrivate *widget, const WidgetMetaInformation &info,
               const PictureSettings &settings)
{
    setDefaultValues(widget, info, settings.language);
    for (const FieldValue &field : settings.values) {
        widget->setFieldValue(field.fieldId, field.value, true, true);
    }
}

QImage draw(const QPointer<KORA::GraphicsObject> &item, const QSizeF &size)
{
    QImage image(static_cast<int>(std::ceil(size.width())), static_cast<int>(std::ceil(size.height())),
                 QImage::Format_RGB32);
    if (image.isNull()) {
        return image;
    }
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    image.fill(Qt::white);
    const QRectF area(image.rect());
    QGraphicsScene scene(area);
    scene.addItem(item);
    // What the widget put off until the event loop runs; timers are not waited for.
    QCoreApplication::sendPostedEvents();
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing
                           | QPainter::SmoothPixmapTransform);
    scene.render(&painter, area, area);
    if (item) {
        // The scene would delete it.
        scene.removeItem(item);
    }
    return image;
}

/// Starts, draws and stops the widget.
QImage perform(const LiveWidget &live, const QSizeF &size, QString &problem)
{
    GraphicsObjectPrivateAccessor::priv(live.item())->resize(size);
    if (live.priv()) {
        live.priv()->init();
    }
    if (!live.item()) {
        problem = QStringLiteral("it deleted its item when it was started");
        return {};
    }
    const QImage image = draw(live.item(), size);
    if (image.isNull()) {
        problem = QStringLiteral("there is no memory for its picture");
    }
    if (live.priv()) {
        live.priv()->deinit();
    }
    return image;
}

} // namespace

QImage pictureOf(const WidgetLibraryPluginData &plugin, const WidgetMetaInformation &info,
                 const PictureSettings &settings, QString &problem)
{
    QSizeF size;
    if (!pictureSize(info, settings.size, size, problem)) {
        return {};
    }
    HostServices host(nullptr, nullptr); // no tags, trends and alarms: values come from the settings alone
    host.setMode(settings.isInsideProjectEditor ? BenchMode::Studio : BenchMode::Runtime);
    LiveWidget live;
    Finding finding;
    if (!live.create(plugin, info, &host, finding)) {
        problem = finding.message;
        return {};
    }
    setValues(live.priv(), info, settings);
    if (!live.item()) {
        problem = QStringLiteral("it deleted its item when its fields were set");
        return {};
    }
    return perform(live, size, problem);
}
