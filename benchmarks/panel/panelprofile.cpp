// SPDX-License-Identifier: Apache-2.0
//
// panelprofile PLUGIN_FOLDER...: a host that loads one widget library after the other, makes many instances of every
// widget, and prints what a library and an instance cost. The first library's figures hold what is made once as well.
#include "memory.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QTextStream>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>

#include <kora/host.h>

#include <memory>
#include <vector>

using namespace KORA::INTERNAL;

namespace {

const int instances = 200;

/// A panel without tags, trends and alarms.
class Services : public WidgetActionManagerImpl
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

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

void printCost(const QString &what, const Memory &cost, int count)
{
    out() << QStringLiteral("  %1 %2 KiB heap %3 KiB written\n")
                 .arg(what.leftJustified(44),
                      QString::number(cost.heap / 1024 / count, 'f', 1).rightJustified(8),
                      QString::number(cost.written / 1024 / count, 'f', 1).rightJustified(8));
}

void printTime(const QString &what, const QElapsedTimer &timer)
{
    out() << QStringLiteral("  %1 %2 ms\n")
                 .arg(what.leftJustified(44),
                      QString::number(double(timer.nsecsElapsed()) / 1e6, 'f', 2).rightJustified(8));
}

struct Instance
{
    std::unique_ptr<KORA::WidgetActionManager> manager;
    std::unique_ptr<QObject> widget;
    std::unique_ptr<QObject> item; // destroyed first
};

/// A started widget of default size with its default values, drawn once; null if the library does not make it.
Instance makeInstance(const WidgetLibraryPluginData &plugin, const WidgetMetaInformation &info,
                      Services *services)
{
    Instance result;
    result.widget.reset(WidgetLibraryPluginPrivateAccessor::priv(plugin.instance())
                            ->newWidgetInstance(info.id(), info.version().version(),
                                                plugin.metaInformation()->id(), info.fieldInfo(), services));
    auto *widget = qobject_cast<KORA::Widget *>(result.widget.get());
    if (!widget) {
        return {};
    }
    result.manager.reset(widget->widgetActionManager());
    KORA::WidgetPrivate *live = WidgetPrivateAccessor::priv(widget);
    for (const FieldMetaInformation &field : info.fields()) {
        if (field.defaultValue().isValid()) {
            live->setFieldValue(field.id(), field.defaultValue(), true, true);
        }
    }
    result.item.reset(live->newGraphicsObjectInstance());
    auto *item = qobject_cast<KORA::GraphicsObject *>(result.item.get());
    if (!item) {
        return {};
    }
    GraphicsObjectPrivateAccessor::priv(item)->resize(info.defaultSize());
    live->init();
    return result;
}

void draw(const Instance &instance)
{
    static QImage image(400, 400, QImage::Format_RGB32);
    QGraphicsScene scene;
    auto *item = qobject_cast<KORA::GraphicsObject *>(instance.item.get());
    scene.addItem(item);
    QPainter painter(&image);
    scene.render(&painter);
    scene.removeItem(item);
}

bool measureWidget(const WidgetLibraryPluginData &plugin, const WidgetMetaInformation &info, Memory *total)
{
    Services services;
    const Instance first = makeInstance(plugin, info, &services); // what all instances share is made here
    if (!first.item) {
        out() << "no widget: " << info.id() << '\n';
        return false;
    }
    draw(first);

    std::vector<Instance> all;
    all.reserve(instances);
    const Memory before = Memory::now();
    for (int i = 0; i < instances; ++i) {
        all.push_back(makeInstance(plugin, info, &services));
        draw(all.back());
    }
    const Memory cost = Memory::now() - before;
    total->heap += cost.heap;
    total->written += cost.written;
    printCost(QStringLiteral("instance of %1").arg(info.id()), cost, instances);
    return true;
}

bool measureLibrary(const QString &dir)
{
    const Memory before = Memory::now();
    QElapsedTimer timer;
    timer.start();
    PluginLoader loader;
    if (!loader.loadFromPluginDir(dir) || !loader.init()) {
        out() << "not loaded: " << dir << '\n';
        return false;
    }
    const auto *plugin = loader.pluginDataByPluginId(QDir(dir).dirName())->toWidgetLibraryPluginData();
    const auto widgets = plugin->metaInformation()->widgetsLatestVersion();
    const QString name = plugin->metaInformation()->name().get(QString(), true);
    printTime(QStringLiteral("loading %1 (%2 widgets)").arg(name, QString::number(widgets.size())), timer);
    printCost(QStringLiteral("%1 loaded").arg(name), Memory::now() - before, 1);

    Memory total{0, 0};
    for (const WidgetMetaInformation &info : widgets) {
        if (!measureWidget(*plugin, info, &total)) {
            return false;
        }
    }
    printCost(QStringLiteral("mean instance, %1 of each widget").arg(instances), total,
              instances * widgets.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QElapsedTimer timer;
    timer.start();
    koraInit(QIcon());
    printTime(QStringLiteral("koraInit()"), timer);

    const QStringList folders = QApplication::arguments().mid(1);
    for (const QString &folder : folders) {
        if (!measureLibrary(folder)) {
            return 1;
        }
    }
    return folders.isEmpty() ? 1 : 0;
}
