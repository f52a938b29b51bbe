// SPDX-License-Identifier: Apache-2.0
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QFileInfo>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsScene>

#include <kora/host.h>
#include <kora/testkit/host.h>

#include <memory>

using namespace KORA::INTERNAL;

namespace {

QColor drawnColor(QGraphicsItem *item)
{
    QGraphicsScene scene;
    scene.addItem(item);
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    scene.render(&painter);
    scene.removeItem(item);
    return image.pixelColor(20, 20);
}

} // namespace

class TestFrozenPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lives()
    {
        const QFileInfo library(QStringLiteral(KORA_TEST_LIBRARY_abi_frozen));
        const QString id = library.completeBaseName().mid(3);
        LogRecorder log;
        PluginLoader loader;
        QVERIFY2(loader.loadFromPluginPath(library.filePath(), id),
                 qPrintable(log.takeTexts().join(QLatin1Char('\n'))));
        log.takeLines(); // that it is loaded
        QVERIFY(loader.init());
        const auto *plugin = loader.pluginDataByPluginId(id)->toWidgetLibraryPluginData();
        QVERIFY(plugin);
        const auto info = plugin->metaInformation()->widgetsLatestVersion().value(QStringLiteral("lamp"));

        KORA::TestKit::Host host;
        const std::unique_ptr<QObject> object(
            WidgetLibraryPluginPrivateAccessor::priv(plugin->instance())
                ->newWidgetInstance(info.id(), info.version().version(), id, info.fieldInfo(), &host));
        auto *widget = qobject_cast<KORA::Widget *>(object.get());
        QVERIFY(widget);
        const std::unique_ptr<KORA::WidgetActionManager> manager(widget->widgetActionManager());
        KORA::WidgetPrivate *live = WidgetPrivateAccessor::priv(widget);
        const std::unique_ptr<QObject> itemObject(live->newGraphicsObjectInstance());
        auto *item = qobject_cast<KORA::GraphicsObject *>(itemObject.get());
        QVERIFY(item);

        live->setFieldValue(QStringLiteral("color"), QColor(Qt::green), true, true);
        GraphicsObjectPrivateAccessor::priv(item)->resize(info.defaultSize());
        live->init();
        KORA::AlarmInfoData alarm;
        alarm.name = QStringLiteral("alarm");
        live->alarmEvent(KORA::AlarmInfo(alarm));
        QCOMPARE(drawnColor(item), QColor(Qt::green));
        QCOMPARE(widget->icon().pixmap(1, 1).toImage().pixelColor(0, 0), QColor(Qt::red));
        live->deinit();
        QCOMPARE(
            widget->getFieldValue(QStringLiteral("calls")).toString(),
            QStringLiteral("widget-#00ff00 item-40 widget-init item-init alarm widget-deinit item-deinit "));
    }
};

KORA_TEST_MAIN(TestFrozenPlugin)
#include "tst_frozenplugin.moc"
