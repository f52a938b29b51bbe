// SPDX-License-Identifier: Apache-2.0
//
// How time and memory grow: what one of each thing costs when there are 10, 100, 1,000 and 10,000; of plugins up to
// 1,000, as 10,000 take minutes to open. Processor time, the least of three runs.
#include "panel/memory.h"
#include "support/generator.h"
#include "support/livewidget.h"
#include "support/plugincopies.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QTextStream>
#include <QtCore/QXmlStreamWriter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>

#include <ctime>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

using namespace KORA::INTERNAL;

namespace {

const int sizes[] = {10, 100, 1000, 10000};

double processorMicroseconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e6 + double(time.tv_nsec) / 1e3;
}

struct Cost
{
    double microseconds = std::numeric_limits<double>::max();
    double bytes = 0;
    bool isRight = true;
};

/// What stays alive while its memory is looked at; false for a wrong answer.
using Step = std::function<bool()>;

/// Runs a step and then what releases its result.
Cost costOf(const Step &step, const std::function<void()> &release, int runs)
{
    Cost cost;
    for (int run = 0; run < runs; ++run) {
        const Memory before = Memory::now();
        const double start = processorMicroseconds();
        cost.isRight = step() && cost.isRight;
        cost.microseconds = std::min(cost.microseconds, processorMicroseconds() - start);
        cost.bytes = (Memory::now() - before).heap;
        release();
    }
    return cost;
}

bool print(const QString &what, const std::function<Cost(int)> &measure, int largest = 10000)
{
    QTextStream out(stdout);
    out << what.leftJustified(12);
    bool isRight = true;
    for (const int size : sizes) {
        if (size > largest) {
            break;
        }
        const Cost cost = measure(size);
        isRight = isRight && cost.isRight;
        out << QString::number(cost.microseconds / size, 'f', 3).rightJustified(11)
            << QString::number(cost.bytes / size, 'f', 0).rightJustified(9);
        out.flush();
    }
    out << (isRight ? "\n" : "  WRONG\n");
    return isRight;
}

// Plugins are not unloaded, so each size takes plugins of its own, and there is one run.
Cost plugins(int count)
{
    static QTemporaryDir dir;
    const QString path = dir.filePath(QString::number(count));
    if (!makeCopies(QStringLiteral(KORA_BENCHMARK_PLUGIN), untranslatedId.toLatin1(), path, count)) {
        return {0, 0, false};
    }
    auto *loader = new PluginLoader; // for ever, as the libraries
    return costOf([&] { return loader->loadFromDir(path, {}) && loader->pluginData().size() == count; },
                  [] {}, 1);
}

Cost reading(int widgets, int fields)
{
    const QJsonObject object = pluginMetaData({untranslatedId, widgets, fields});
    auto info = std::make_unique<WidgetLibraryPluginMetaInformation>();
    return costOf(
        [&] {
            return WidgetLibraryPluginUtils::metaInformationFromMetaData(object, *info) == 0
                   && info->widgets().first().fields().size() == fields;
        },
        [&] { info = std::make_unique<WidgetLibraryPluginMetaInformation>(); }, 3);
}

Cost widgets(int count)
{
    return reading(count, 10);
}

Cost fields(int count)
{
    return reading(1, count);
}

Cost instances(int count)
{
    KORA::WidgetLibraryPlugin library;
    library.registerWidget(QStringLiteral("gauge"), QStringLiteral("1.0.0"),
                           &CountingWidget::staticMetaObject, &CountingItem::staticMetaObject);
    NoServices services;
    const KORA::WidgetData data = widgetData();
    std::vector<KORA::Widget *> made;
    made.reserve(size_t(count));
    auto scene = std::make_unique<QGraphicsScene>();
    const auto make = [&] {
        for (int i = 0; i < count; ++i) {
            auto *widget = static_cast<KORA::Widget *>(
                WidgetLibraryPluginPrivateAccessor::priv(&library)->newWidgetInstance(
                    QStringLiteral("gauge"), QStringLiteral("1.0.0"), data.pluginId, data.fieldInfo,
                    &services));
            made.push_back(widget);
            scene->addItem(static_cast<CountingItem *>(
                WidgetPrivateAccessor::priv(widget)->newGraphicsObjectInstance()));
        }
        return made.back()->graphicsObjectsList().size() == 1;
    };
    const auto release = [&] {
        scene = std::make_unique<QGraphicsScene>();
        for (KORA::Widget *widget : made) {
            KORA::WidgetActionManager *manager = widget->widgetActionManager();
            delete widget;
            delete manager;
        }
        made.clear();
    };
    return costOf(make, release, 3);
}

Cost lines(int count)
{
    static int received;
    received = 0;
    KORA::koraInstallLogMessageHandlerPrivate(
        [](int, const QString &, const QString &, void *) { ++received; }, nullptr);
    const auto log = [&] {
        for (int i = 0; i < count; ++i) {
            KORA::LogHandler(QString(), nullptr, 0, nullptr, "PLUMBING").warning().debug() << "pressure" << i;
        }
        return received > 0 && received % count == 0;
    };
    const Cost cost = costOf(
        log, [] {}, 3);
    KORA::koraUninstallLogMessageHandlerPrivate();
    return cost;
}

// Elements of the properties document: those of the fields, 10 in a widget.
Cost elements(int count)
{
    WidgetLibraryPluginMetaInformation info;
    WidgetLibraryPluginUtils::metaInformationFromMetaData(pluginMetaData({untranslatedId, count / 10, 10}),
                                                          info);
    QByteArray document;
    const auto write = [&] {
        QXmlStreamWriter writer(&document);
        writer.setAutoFormatting(true);
        return WidgetLibraryPluginUtils::studioPropertiesFromMetaInformation(info, writer,
                                                                             QStringLiteral("en-US"))
                   == 0
               && document.count("<text ") >= count;
    };
    return costOf(
        write, [&] { document = QByteArray(); }, 3);
}

// Events are the changes of as many fields of one widget.
Cost events(int count)
{
    KORA::WidgetData data = widgetData();
    for (int i = 0; i < count; ++i) {
        data.fieldInfo.insert(fieldName(i), data.fieldInfo.first());
    }
    CountingWidget widget(data);
    std::vector<QString> names;
    for (int i = 0; i < count; ++i) {
        names.push_back(fieldName(i));
    }
    int value = 0;
    const auto write = [&] {
        ++value;
        for (const QString &name : names) {
            WidgetPrivateAccessor::priv(&widget)->setFieldValue(name, value, true, true);
        }
        return widget.events == qint64(value) * count;
    };
    return costOf(
        write, [] {}, 3);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QTextStream out(stdout);
    out << QStringLiteral("per one of ");
    for (const int size : sizes) {
        out << QString::number(size).rightJustified(8) << QStringLiteral(": us    bytes");
    }
    out << '\n';
    out.flush();
    bool isRight = print(QStringLiteral("widget"), widgets);
    isRight = print(QStringLiteral("field"), fields) && isRight;
    isRight = print(QStringLiteral("instance"), instances) && isRight;
    isRight = print(QStringLiteral("line"), lines) && isRight;
    isRight = print(QStringLiteral("element"), elements) && isRight;
    isRight = print(QStringLiteral("event"), events) && isRight;
    isRight = print(QStringLiteral("plugin"), plugins, 1000) && isRight;
    return isRight ? 0 : 1;
}
