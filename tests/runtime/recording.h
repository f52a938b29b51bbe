// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtWidgets/QGraphicsSceneMouseEvent>

#include <functional>
#include <memory>

#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/widget_p.h>
#include <kora/testkit/host.h>

// A widget and graphics object that write down what reaches them.

/// What the receivers of one widget wrote down: lines like "item2.resizeEvent". Outlives them.
struct Journal
{
    QStringList lines;
    QVector<const KORA::Event *> events; // of each line; for comparing addresses only
    QStringList texts;                   // of each line; the event's values

    /// Called after each line; may delete the receivers.
    std::function<void(const QString &line)> onLine;
    /// koraEvent() of this receiver keeps its events from the specific handlers.
    QString grabber;

    void add(const QString &receiver, const char *handler, const KORA::Event *event,
             const QString &text = QString())
    {
        const QString line = receiver + QLatin1Char('.') + QLatin1String(handler);
        lines.append(line);
        events.append(event);
        texts.append(text);
        const auto callback = onLine;
        if (callback) {
            callback(line);
        }
    }

    QStringList takeLines()
    {
        QStringList taken;
        taken.swap(lines);
        events.clear();
        texts.clear();
        return taken;
    }
};

inline QString textOf(const KORA::FieldIsChangedEvent *event)
{
    QString text;
    QDebug(&text).nospace() << event;
    return text;
}

class RecordingWidget : public KORA::Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit RecordingWidget(const KORA::WidgetData &data)
        : KORA::Widget(data)
        , journal(std::make_shared<Journal>())
    {}

    KORA::WidgetPrivate *priv() { return KORA::INTERNAL::WidgetPrivateAccessor::priv(this); }

    QIcon icon() override { return ownIcon.isNull() ? KORA::Widget::icon() : ownIcon; }

    // A handler may be the last thing that this object does: nothing of it is used after add().
    bool koraEvent(KORA::Event *event) override
    {
        const bool grab = journal->grabber == name;
        record("koraEvent", event);
        return grab;
    }
    void initEvent(KORA::InitEvent *event) override { record("initEvent", event); }
    void deinitEvent(KORA::DeinitEvent *event) override { record("deinitEvent", event); }
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override
    {
        record("fieldIsChangedEvent", event, textOf(event));
    }
    void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event) override
    {
        record("alarmStatusIsChangedEvent", event, event->alarmInfo().name());
    }

    QIcon ownIcon;
    const QString name = QStringLiteral("widget");
    std::shared_ptr<Journal> journal;

private:
    void record(const char *handler, const KORA::Event *event, const QString &text = QString())
    {
        const std::shared_ptr<Journal> keep = journal;
        keep->add(QString(name), handler, event, text);
    }
};

/// Its name is "item1", "item2", ... in the order of creation.
class RecordingItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit RecordingItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
        , name(nameFor(data))
        , journal(journalFor(data))
    {}

    KORA::GraphicsObjectPrivate *priv() { return KORA::INTERNAL::GraphicsObjectPrivateAccessor::priv(this); }

    using KORA::GraphicsObject::sceneEvent;

    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}

    bool koraEvent(KORA::Event *event) override
    {
        const bool grab = journal->grabber == name;
        record("koraEvent", event);
        return grab;
    }
    void initEvent(KORA::InitEvent *event) override { record("initEvent", event); }
    void deinitEvent(KORA::DeinitEvent *event) override { record("deinitEvent", event); }
    void resizeEvent(KORA::ResizeEvent *event) override
    {
        QString text;
        QDebug(&text).nospace() << event;
        record("resizeEvent", event, text);
    }
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override
    {
        record("fieldIsChangedEvent", event, textOf(event));
    }
    void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event) override
    {
        record("alarmStatusIsChangedEvent", event, event->alarmInfo().name());
    }

    /// A mouse event that reached the item.
    struct Mouse
    {
        QEvent::Type type;
        Qt::MouseButton button;
        Qt::MouseButtons buttons;
        QPointF pos, scenePos, lastPos, lastScenePos;
        QPoint screenPos, lastScreenPos;
        bool spontaneous;
    };
    QVector<Mouse> mouse;
    bool acceptMouse = true;

    const QString name;
    std::shared_ptr<Journal> journal;

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *event) override { recordMouse(event); }
    void mouseMoveEvent(QGraphicsSceneMouseEvent *event) override { recordMouse(event); }
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *event) override { recordMouse(event); }

private:
    static QString nameFor(const KORA::GraphicsObjectData &data)
    {
        const int number = data.widget ? data.widget->graphicsObjectsList().size() + 1 : 1;
        return QStringLiteral("item%1").arg(number);
    }
    static std::shared_ptr<Journal> journalFor(const KORA::GraphicsObjectData &data)
    {
        auto *widget = qobject_cast<RecordingWidget *>(data.widget);
        return widget ? widget->journal : std::make_shared<Journal>();
    }
    void record(const char *handler, const KORA::Event *event, const QString &text = QString())
    {
        const std::shared_ptr<Journal> keep = journal;
        keep->add(QString(name), handler, event, text);
    }
    void recordMouse(QGraphicsSceneMouseEvent *event)
    {
        mouse.append({event->type(), event->button(), event->buttons(), event->pos(), event->scenePos(),
                      event->lastPos(), event->lastScenePos(), event->screenPos(), event->lastScreenPos(),
                      event->spontaneous()});
        event->setAccepted(acceptMouse);
    }
};

/// A recording widget in a host, with as many items as asked for. Deletes what is left of them.
class Panel
{
public:
    explicit Panel(int itemCount, const QMap<QString, KORA::INTERNAL::FieldInfo> &fields = {},
                   const QMetaObject *itemClass = &RecordingItem::staticMetaObject)
        : manager(std::make_unique<KORA::WidgetActionManager>(&host))
    {
        host.insideDevProject = false;
        KORA::WidgetData data;
        data.id = QStringLiteral("gauge");
        data.version = KORA::INTERNAL::VersionType(1, 20, 3);
        data.pluginId = QStringLiteral("plugin");
        data.fieldInfo = fields;
        data.graphicsObjectClass = itemClass;
        data.widgetActionManager = manager.get();
        widget = new RecordingWidget(data);
        journal = widget->journal;
        for (int i = 0; i < itemCount; ++i) {
            items.append(qobject_cast<RecordingItem *>(widget->priv()->newGraphicsObjectInstance()));
        }
    }
    Panel(const Panel &) = delete;
    Panel &operator=(const Panel &) = delete;
    ~Panel()
    {
        for (const QPointer<RecordingItem> &item : items) {
            delete item;
        }
        delete widget;
    }

    /// "item1" is items[0].
    QObject *receiver(const QString &name) const
    {
        for (const QPointer<RecordingItem> &item : items) {
            if (item && item->name == name) {
                return item;
            }
        }
        return widget && widget->name == name ? widget.data() : nullptr;
    }

    KORA::TestKit::Host host;
    std::unique_ptr<KORA::WidgetActionManager> manager;
    QPointer<RecordingWidget> widget;
    QVector<QPointer<RecordingItem>> items;
    std::shared_ptr<Journal> journal;
};
