// SPDX-License-Identifier: Apache-2.0
//
// Loads the lamp library from the folder given, puts a live lamp on a scene and looks at what it draws.
#include <QtCore/QDateTime>
#include <QtCore/QTextStream>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>

#include <kora/host.h>

#include <memory>

namespace {

const QString pluginId = QStringLiteral("2b1f6d0e-8d0a-4f0e-9c55-0f0d5f2c7a11");

class Services : public KORA::INTERNAL::WidgetActionManagerImpl
{
public:
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
    bool isInsideProjectEditor() const override { return false; }
    bool isInsideDevProject() const override { return false; }
};

int fail(const char *what)
{
    QTextStream(stderr) << "host: " << what << '\n';
    return 1;
}

void printLogLine(int, const QString &, const QString &line, void *)
{
    QTextStream(stdout) << line << '\n';
}

QColor drawnColor(KORA::GraphicsObject *item)
{
    QGraphicsScene scene;
    scene.addItem(item);
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    scene.render(&painter, QRectF(0, 0, 40, 40), QRectF(0, 0, 40, 40));
    scene.removeItem(item);
    return image.pixelColor(20, 20);
}

int showLamp(KORA::INTERNAL::WidgetLibraryPluginData &plugin)
{
    const auto &library = *plugin.metaInformation();
    if (library.name().get(QStringLiteral("it-IT"), false) != QLatin1String("Lampada")) {
        return fail("the translation is missing");
    }
    const auto metadata = library.widgets().value({QStringLiteral("lamp"), QStringLiteral("1.0.0")});

    Services services;
    using KORA::INTERNAL::WidgetLibraryPluginPrivateAccessor;
    const std::unique_ptr<QObject> object(WidgetLibraryPluginPrivateAccessor::priv(plugin.instance())
                                              ->newWidgetInstance(metadata.id(), metadata.version().version(),
                                                                  pluginId, metadata.fieldInfo(), &services));
    auto *widget = qobject_cast<KORA::Widget *>(object.get());
    if (!widget) {
        return fail("no widget");
    }
    const std::unique_ptr<KORA::WidgetActionManager> manager(widget->widgetActionManager());
    KORA::WidgetPrivate *lamp = KORA::INTERNAL::WidgetPrivateAccessor::priv(widget);
    const std::unique_ptr<QObject> itemObject(lamp->newGraphicsObjectInstance());
    auto *item = qobject_cast<KORA::GraphicsObject *>(itemObject.get());
    if (!item) {
        return fail("no graphics object");
    }

    for (const auto &field : metadata.fields()) {
        lamp->setFieldValue(field.id(), field.defaultValue(), true, false);
    }
    lamp->init();
    KORA::INTERNAL::GraphicsObjectPrivateAccessor::priv(item)->resize(metadata.defaultSize());
    if (drawnColor(item) != QColor(Qt::green)) {
        return fail("the lamp is not green");
    }
    if (widget->icon().pixmap(1, 1).toImage().pixelColor(0, 0) != QColor(255, 200, 0)) {
        return fail("the icon is missing");
    }
    lamp->deinit();
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    KORA::koraInstallLogMessageHandlerPrivate(&printLogLine, nullptr);
    KORA::INTERNAL::koraInit(QIcon());

    KORA::INTERNAL::PluginLoader loader;
    if (!loader.loadFromDir(QApplication::arguments().value(1), {}) || !loader.init()) {
        return fail("the library does not load");
    }
    KORA::INTERNAL::PluginData *plugin = loader.pluginDataByPluginId(pluginId);
    return plugin ? showLamp(*plugin->toWidgetLibraryPluginData()) : fail("the library is not there");
}
