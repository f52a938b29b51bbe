// SPDX-License-Identifier: Apache-2.0
//
// soak <plugin library> <load> <count>
//
// Puts a load on the library, checks the results as it goes, and prints the time and how far the memory grew after the
// first tenth. scripts/soak runs all of them.
#include "fuzztarget.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QRandomGenerator>
#include <QtCore/QUuid>

#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <thread>

#include <kora/host.h>
#include <kora/kora.h>
#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/widget_p.h>
#include <kora/runtime/widgetactionmanager.h>
#include <kora/runtime/widgetlibraryplugin_p.h>

using namespace KORA;
using namespace KORA::INTERNAL;

namespace {

const QByteArray pluginId("5b0c6c2e-7f0f-4a53-8f07-3a6f3e5f0c01");
QString pluginLibrary;

double residentMegabytes()
{
    malloc_trim(0);
    QFile file(QStringLiteral("/proc/self/statm"));
    expect(file.open(QIODevice::ReadOnly), "no /proc");
    return file.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

// Calls the step count times, by its number, and prints what that cost.
template<typename Step>
void soak(const char *what, int count, Step step)
{
    QElapsedTimer timer;
    timer.start();
    double start = residentMegabytes();
    for (int i = 0; i < count; ++i) {
        step(i);
        if (i == count / 10) {
            start = residentMegabytes();
        }
    }
    std::printf("%10d %-44s %8.1f s  %+7.1f MB\n", count, what, double(timer.elapsed()) / 1000,
                residentMegabytes() - start);
}

// A library of its own for the id: the same code with another id in its metadata.
void copyPlugin(const QByteArray &library, const QString &plugins, const QByteArray &id)
{
    const QString platform = QFileInfo(pluginLibrary).path().section(QLatin1Char('/'), -2);
    const QString folder = QStringLiteral("%1/%2/%3").arg(plugins, QString::fromLatin1(id), platform);
    QFile file(QStringLiteral("%1/lib%2.so").arg(folder, QString::fromLatin1(id)));
    QByteArray content = library;
    content.replace(pluginId, id);
    expect(QDir().mkpath(folder) && file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
           "no room for the plugins");
}

void loadPlugins(int count)
{
    QFile original(pluginLibrary);
    expect(original.open(QIODevice::ReadOnly), "no plugin");
    const QByteArray library = original.readAll();
    const QString plugins = fuzzFolder() + QStringLiteral("/plugins");
    for (int i = 0; i < count; ++i) {
        copyPlugin(library, plugins, QUuid::createUuid().toByteArray(QUuid::WithoutBraces));
    }
    const auto load = [&](int) {
        PluginLoader loader;
        expect(loader.loadFromDir(plugins, {}) && loader.pluginData().size() == count, "not all were loaded");
        expect(loader.init() && loader.deinit(), "the hooks");
        loader.unload();
        expect(loader.pluginData().isEmpty(), "not all were unloaded");
    };
    QElapsedTimer timer;
    timer.start();
    const double start = residentMegabytes();
    load(0);
    std::printf("%10d %-44s %8.1f s  %+7.1f MB (code stays mapped)\n", count, "plugins at once",
                double(timer.elapsed()) / 1000, residentMegabytes() - start);
    soak("times those plugins again", 10, load);
}

void cyclePlugin(int count)
{
    PluginLoader loader;
    soak("load and unload cycles", count, [&](int) {
        expect(loader.loadFromPluginPath(pluginLibrary, QString::fromLatin1(pluginId)) && loader.init(),
               "not loaded");
        loader.unload();
        expect(loader.pluginData().isEmpty(), "not unloaded");
    });
}

class SoakedWidget : public Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit SoakedWidget(const KORA::WidgetData &data)
        : Widget(data)
    {}
    void fieldIsChangedEvent(FieldIsChangedEvent *event) override { sum += event->value().toInt(); }

    int sum = 0;
};

class SoakedItem : public GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit SoakedItem(const KORA::GraphicsObjectData &data)
        : GraphicsObject(data)
    {}
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
};

void makeWidgets(int count)
{
    WidgetLibraryPlugin plugin;
    const QString id = QStringLiteral("soaked");
    const QString version = QStringLiteral("1.0.0");
    plugin.registerWidget(id, version, &SoakedWidget::staticMetaObject, &SoakedItem::staticMetaObject);
    const QMap<QString, FieldInfo> fields{{id, FieldInfo(true, true, false, FieldTypeInteger, 0)}};
    const auto *factory = WidgetLibraryPluginPrivateAccessor::priv(&plugin);
    soak("widgets with an item made, used, destroyed", count, [&](int i) {
        const std::unique_ptr<QObject> object(factory->newWidgetInstance(id, version, id, fields, nullptr));
        auto *widget = qobject_cast<SoakedWidget *>(object.get());
        expect(widget, "no widget");
        const std::unique_ptr<WidgetActionManager> manager(widget->widgetActionManager());
        auto *d = WidgetPrivateAccessor::priv(widget);
        const std::unique_ptr<QObject> item(d->newGraphicsObjectInstance());
        d->init();
        GraphicsObjectPrivateAccessor::priv(qobject_cast<GraphicsObject *>(item.get()))->resize({10, 20});
        d->setFieldValue(id, i + 1, true, true);
        d->setFieldValue(id, i + 1, true, true);
        d->deinit();
        expect(widget->sum == i + 1 && widget->graphicsObjectsList().size() == 1, "a widget's results");
    });
}

std::atomic<int> goodLines{0};
std::atomic<int> badLines{0};

// Lines are "<1 or 2 letters>message number <n>".
void takeLine(int, const QString &, const QString &line, void *)
{
    const int start = line.startsWith(QLatin1String("bb")) ? 2 : 1;
    const bool isGood = line.startsWith(QLatin1String(start == 2 ? "bb" : "a"))
                        && line.midRef(start).startsWith(QLatin1String("message number "));
    ++(isGood ? goodLines : badLines);
}

void takeLineToo(int type, const QString &source, const QString &line, void *opaque)
{
    takeLine(type, source, line, opaque);
}

void logFromThreads(int count)
{
    constexpr int threadCount = 64;
    koraSetLogMessagePattern(QStringLiteral("a%{MESSAGE}"));
    koraInstallLogMessageHandlerPrivate(takeLine, nullptr);
    std::atomic<bool> isDone{false};
    int changes = 0;
    std::thread changer([&] {
        while (!isDone) {
            koraSetLogMessagePattern(changes % 2 ? QStringLiteral("a%{MESSAGE}")
                                                 : QStringLiteral("b%{IF-CATEGORY}b%{ENDIF}%{MESSAGE}"));
            koraInstallLogMessageHandlerPrivate(changes % 3 ? takeLine : takeLineToo, nullptr);
            ++changes;
            std::this_thread::yield();
        }
    });
    const int each = count / threadCount / 10;
    soak("rounds of 64 threads that log", 10, [&](int) {
        std::vector<std::thread> threads;
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([each] {
                for (int i = 0; i < each; ++i) {
                    LogHandler(QString(), nullptr, 0, nullptr, "SOAK").info().debug().noquote()
                        << "message number" << i;
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
    });
    isDone = true;
    changer.join();
    expect(badLines == 0 && goodLines == each * threadCount * 10, "lines are lost or damaged");
    std::printf("%10d %-44s %8d changes of pattern and handler\n", goodLines.load(),
                "  lines, all whole, during", changes);
}

// Events as the target takes them; each goes to all seven recognisers and to their model.
QByteArray gestureEvents(int count)
{
    QByteArray events;
    auto *random = QRandomGenerator::global();
    for (int i = 0; i < count; ++i) {
        const int fingers = static_cast<int>(random->bounded(4));
        const int kinds[] = {0, 1, 1, 1, 1, 1, 2, 3, 4, 4, 5, 6};
        const int kind = kinds[random->bounded(12)];
        events.append(char(kind + 8 * fingers));
        for (int byte = kind < 3 ? 2 * fingers : 2; byte > 0; --byte) {
            events.append(char(random->bounded(256) - 128));
        }
    }
    return events;
}

void sendGestures(int count)
{
    koraUninstallLogMessageHandlerPrivate(); // a pinch logs each update
    constexpr int eventsEach = 1000;
    soak("times 1,000 gesture events", count / eventsEach,
         [](int) { fuzzTargets().front().run(gestureEvents(eventsEach)); });
}

} // namespace

int main(int argc, char **argv)
{
    prepareFuzzing(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr,
                     "usage: soak <plugin library> plugins|cycles|widgets|logging|gestures <count>\n");
        return 2;
    }
    pluginLibrary = QString::fromLocal8Bit(argv[1]);
    const struct
    {
        const char *name;
        void (*run)(int count);
    } loads[] = {{"plugins", loadPlugins},
                 {"cycles", cyclePlugin},
                 {"widgets", makeWidgets},
                 {"logging", logFromThreads},
                 {"gestures", sendGestures}};
    for (const auto &load : loads) {
        if (qstrcmp(load.name, argv[2]) == 0) {
            load.run(std::atoi(argv[3]));
            return 0;
        }
    }
    return 2;
}

#include "soak.moc"
