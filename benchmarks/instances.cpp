// SPDX-License-Identifier: Apache-2.0
#include "support/livewidget.h"
#include "support/program.h"

#include <QtWidgets/QGraphicsScene>

#include <kora/runtime/eventdelivery_p.h>

#include <memory>
#include <vector>

using namespace KORA::INTERNAL;

namespace {

const QString widgetId = QStringLiteral("gauge");
const QString widgetVersion = QStringLiteral("1.0.0");

class Library : public KORA::WidgetLibraryPlugin
{
public:
    Library()
    {
        registerWidget(widgetId, widgetVersion, &CountingWidget::staticMetaObject,
                       &CountingItem::staticMetaObject);
    }

    KORA::WidgetLibraryPluginPrivate &d() { return *WidgetLibraryPluginPrivateAccessor::priv(this); }
};

KORA::Widget *newWidget(Library &library, const KORA::WidgetData &data, NoServices &services)
{
    return static_cast<KORA::Widget *>(
        library.d().newWidgetInstance(widgetId, widgetVersion, data.pluginId, data.fieldInfo, &services));
}

void destroy(KORA::Widget *widget)
{
    KORA::WidgetActionManager *manager = widget->widgetActionManager();
    delete widget;
    delete manager;
}

// One widget, made and destroyed ----------------------------------------------------------------------------

void widgetOurs(benchmark::State &state)
{
    Library library;
    NoServices services;
    const KORA::WidgetData data = widgetData();
    const auto make = [&] { return newWidget(library, data, services); };
    KORA::Widget *first = make();
    if (!require(state, qobject_cast<CountingWidget *>(first) && first->version() == widgetVersion,
                 "no widget")) {
        return;
    }
    destroy(first);
    measure(state, [&] { destroy(make()); });
}

void widgetQt(benchmark::State &state)
{
    const KORA::WidgetData data = widgetData();
    const auto make = [&] {
        return CountingWidget::staticMetaObject.newInstance(Q_ARG(KORA::WidgetData, data));
    };
    const std::unique_ptr<QObject> first(make());
    if (require(state, qobject_cast<CountingWidget *>(first.get()), "no widget")) {
        measure(state, [&] { delete make(); });
    }
}

// 1,000 widgets with an item each on a scene ----------------------------------------------------------------

constexpr int placed = 1000;

struct Placed
{
    std::vector<QObject *> widgets;
    std::vector<QObject *> managers;
    QGraphicsScene scene; // destroyed first, with its items

    ~Placed()
    {
        scene.clear();
        qDeleteAll(widgets);
        qDeleteAll(managers);
    }
};

void placeOurs(Library &library, NoServices &services, const KORA::WidgetData &data, Placed &result)
{
    for (int i = 0; i < placed; ++i) {
        KORA::Widget *widget = newWidget(library, data, services);
        result.widgets.push_back(widget);
        result.managers.push_back(widget->widgetActionManager());
        result.scene.addItem(
            static_cast<CountingItem *>(WidgetPrivateAccessor::priv(widget)->newGraphicsObjectInstance()));
    }
}

void placeQt(const KORA::WidgetData &data, Placed &result)
{
    for (int i = 0; i < placed; ++i) {
        QObject *widget = CountingWidget::staticMetaObject.newInstance(Q_ARG(KORA::WidgetData, data));
        result.widgets.push_back(widget);
        const KORA::GraphicsObjectData itemData{data.id, data.version, static_cast<KORA::Widget *>(widget),
                                                nullptr};
        QObject *item = CountingItem::staticMetaObject.newInstance(Q_ARG(KORA::GraphicsObjectData, itemData));
        QObject::connect(item, &QObject::destroyed, widget, [] {});
        result.scene.addItem(static_cast<CountingItem *>(item));
    }
}

// Only the placing is timed: taking a scene down is Qt's work in both.
template<typename Place>
void place(benchmark::State &state, Place placeInto)
{
    {
        Placed first;
        placeInto(first);
        if (!require(state, first.scene.items().size() == placed, "items are missing")) {
            return;
        }
    }
    for (auto _ : state) {
        auto result = std::make_unique<Placed>();
        placeInto(*result);
        state.PauseTiming();
        result.reset();
        state.ResumeTiming();
    }
}

void sceneOurs(benchmark::State &state)
{
    Library library;
    NoServices services;
    const KORA::WidgetData data = widgetData();
    place(state, [&](Placed &result) { placeOurs(library, services, data, result); });
}

void sceneQt(benchmark::State &state)
{
    const KORA::WidgetData data = widgetData();
    place(state, [&](Placed &result) { placeQt(data, result); });
}

// One event from its making to its end ----------------------------------------------------------------------

void eventOurs(benchmark::State &state)
{
    CountingWidget widget(widgetData());
    const auto deliver = [&] {
        KORA::InitEvent event{KORA::InitEventData()};
        KORA::deliverEvent<KORA::Widget>(&widget, event, &KORA::Widget::initEvent);
    };
    deliver();
    if (require(state, widget.events == 1, "no event")) {
        measure(state, deliver);
    }
}

class Receiver : public QObject
{
public:
    bool event(QEvent *event) override
    {
        events += event->type() == QEvent::User ? 1 : 0;
        return true;
    }

    qint64 events = 0;
};

void eventQt(benchmark::State &state)
{
    Receiver receiver;
    const auto deliver = [&] {
        QEvent event(QEvent::User);
        QCoreApplication::sendEvent(&receiver, &event);
    };
    deliver();
    if (require(state, receiver.events == 1, "no event")) {
        measure(state, deliver);
    }
}

} // namespace

int main(int argc, char **argv)
{
    Program program(argc, argv);
    program.add("widget/ours", widgetOurs);
    program.add("widget/qt", widgetQt);
    program.add("scene/ours", sceneOurs);
    program.add("scene/qt", sceneQt);
    program.add("event/ours", eventOurs);
    program.add("event/qt", eventQt);
    return program.run();
}
