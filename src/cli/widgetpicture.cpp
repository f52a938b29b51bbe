// SPDX-License-Identifier: Apache-2.0
#include "widgetpicture.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsScene>

#include <kora/host.h>

#include <cmath>

using namespace KORA::INTERNAL;

namespace {

const QSizeF fallbackSize(100, 100); // for widgets without a default size
const double largestSize = 8192;
const int dotsPerMeter = 3780; // 96 DPI

/// A host without tags, trends and alarms: values come from the field settings alone.
class PictureHost : public WidgetActionManagerImpl
{
public:
    explicit PictureHost(bool isInsideProjectEditor)
        : m_isInsideProjectEditor(isInsideProjectEditor)
    {}

    QVariant getTagValue(const QString &) const override { return {}; }
    QVariant getTrendValue(const QString &, const QDateTime &, const QDateTime &, unsigned int,
                           KORA::WidgetActionManager::TrendTimeFormat) const override
    {
        return {};
    }
    QVector<KORA::AlarmInfo> getAlarms() const override { return {}; }
    void resetAlarm(const QString &) override {}
    void resetAllAlarms() override {}
    void acknowAlarm(const QString &) override {}
    void acknowAllAlarms() override {}
    bool isInsideProjectEditor() const override { return m_isInsideProjectEditor; }
    // Authors look at their own widgets here: let the library tell them of wrong field accesses.
    bool isInsideDevProject() const override { return true; }

private:
    bool m_isInsideProjectEditor;
};

/// A widget with its one item and its action manager. They are the host's to delete, in this order, but the
/// plugin's code may have deleted any of them before.
struct LiveWidget
{
    LiveWidget() = default;
    Q_DISABLE_COPY_MOVE(LiveWidget)
    ~LiveWidget()
    {
        delete item.data();
        delete widget.data();
        delete actionManager.data();
    }

    QPointer<KORA::GraphicsObject> item;
    QPointer<KORA::Widget> widget;
    QPointer<KORA::WidgetActionManager> actionManager;
};

QString unregisteredProblem(const KORA::WidgetLibraryPluginPrivate *plugin, const WidgetMetaInformation &info)
{
    if (!plugin->widgetRegistry.contains({info.id(), info.version().version()})) {
        return QStringLiteral("the plugin's code does not register this widget in this version");
    }
    return QStringLiteral("its widget class has no invokable constructor taking const KORA::WidgetData &");
}

bool makeWidget(const WidgetLibraryPluginData &plugin, const WidgetMetaInformation &info,
                WidgetActionManagerImpl *host, LiveWidget &live, QString &problem)
{
    auto *factory = WidgetLibraryPluginPrivateAccessor::priv(plugin.instance());
    QObject *object = factory->newWidgetInstance(info.id(), info.version().version(),
                                                 plugin.metaInformation()->id(), info.fieldInfo(), host);
    live.widget = qobject_cast<KORA::Widget *>(object);
    if (live.widget) {
        live.actionManager = live.widget->widgetActionManager();
        return true;
    }
    problem = object ? QStringLiteral("its widget class %1 is not derived from KORA::Widget")
                           .arg(QLatin1String(object->metaObject()->className()))
                     : unregisteredProblem(factory, info);
    delete object;
    return false;
}

bool makeItem(LiveWidget &live, QString &problem)
{
    QObject *object = WidgetPrivateAccessor::priv(live.widget)->newGraphicsObjectInstance();
    live.item = qobject_cast<KORA::GraphicsObject *>(object);
    if (live.item) {
        return true;
    }
    problem = object ? QStringLiteral("its item class %1 is not derived from KORA::GraphicsObject")
                           .arg(QLatin1String(object->metaObject()->className()))
                     : QStringLiteral("its item class has no invokable constructor taking const "
                                      "KORA::GraphicsObjectData &");
    delete object;
    return false;
}

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
    GraphicsObjectPrivateAccessor::priv(live.item)->resize(size);
    WidgetPrivateAccessor::priv(live.widget)->init();
    if (!live.item) {
        problem = QStringLiteral("it deleted its item when it was started");
        return {};
    }
    const QImage image = draw(live.item, size);
    if (image.isNull()) {
        problem = QStringLiteral("there is no memory for its picture");
    }
    if (live.widget) {
        WidgetPrivateAccessor::priv(live.widget)->deinit();
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
    PictureHost host(settings.isInsideProjectEditor);
    LiveWidget live;
    if (!makeWidget(plugin, info, &host, live, problem) || !makeItem(live, problem)) {
        return {};
    }
    setValues(WidgetPrivateAccessor::priv(live.widget), info, settings);
    return perform(live, size, problem);
}
