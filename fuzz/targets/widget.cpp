// SPDX-License-Identifier: Apache-2.0
//
// Calls of widgets and items, byte by byte, whose handlers go on with the same bytes: they write, delete, start, stop
// and come back in. The values and items must be those of a plain record of the calls.
#include "../fuzztarget.h"

#include <QtCore/QPointer>

#include <cmath>
#include <limits>

#include <kora/host.h>
#include <kora/kora.h>
#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/widget_p.h>

using namespace KORA;

namespace {

constexpr int slotCount = 3;
constexpr int deepest = 5;
constexpr int mostItems = 16;

class FuzzedItem;
class FuzzedWidget;

struct Slot
{
    QPointer<FuzzedWidget> widget;
    QMap<QString, QVariant> values;
    QList<GraphicsObject *> items; // of the widget, in order
};

class Play
{
public:
    explicit Play(const QByteArray &input)
        : m_bytes(input)
    {}
    ~Play();

    void run();
    // A handler: some more calls, and whether it kept the event.
    bool goOn();
    void forget(GraphicsObject *item);

private:
    void step();
    void makeWidget(Slot &slot);
    void makeItem(Slot &slot);
    void deleteItem(Slot &slot);
    void write(Slot &slot, int how);
    void check() const;
    FuzzedItem *someItem(Slot &slot);

    FuzzBytes m_bytes;
    Slot m_slots[slotCount];
    QList<QPointer<QObject>> m_objects; // all that were made
    int m_depth = 0;
};

Play *play = nullptr;

class FuzzedWidget : public Widget
{
    Q_OBJECT

public:
    explicit FuzzedWidget(const WidgetData &data)
        : Widget(data)
    {}

    bool koraEvent(Event *) override { return play->goOn(); }
    void initEvent(InitEvent *) override { play->goOn(); }
    void deinitEvent(DeinitEvent *) override { play->goOn(); }
    void fieldIsChangedEvent(FieldIsChangedEvent *) override { play->goOn(); }
    void alarmStatusIsChangedEvent(AlarmStatusIsChangedEvent *) override { play->goOn(); }
};

class FuzzedItem : public GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit FuzzedItem(const KORA::GraphicsObjectData &data)
        : GraphicsObject(data)
    {}
    ~FuzzedItem() override { play->forget(this); }

    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override {}
    bool koraEvent(Event *) override { return play->goOn(); }
    void initEvent(InitEvent *) override { play->goOn(); }
    void resizeEvent(ResizeEvent *) override { play->goOn(); }
    void fieldIsChangedEvent(FieldIsChangedEvent *) override { play->goOn(); }
};

WidgetPrivate *priv(Widget *widget)
{
    return INTERNAL::WidgetPrivateAccessor::priv(widget);
}

const QStringList fields{QStringLiteral("number"), QStringLiteral("text"), QStringLiteral("hosts"),
                         QStringLiteral("unknown")};

Play::~Play()
{
    for (const QPointer<QObject> &object : qAsConst(m_objects)) {
        delete object;
    }
}

void Play::run()
{
    while (!m_bytes.atEnd()) {
        step();
        check();
    }
}

bool Play::goOn()
{
    const int calls = m_bytes.takeBelow(4);
    const bool isKept = calls == 3;
    if (m_depth < deepest) {
        ++m_depth;
        for (int i = 0; i < calls && !m_bytes.atEnd(); ++i) {
            step();
        }
        --m_depth;
    }
    return isKept;
}

void Play::forget(GraphicsObject *item)
{
    for (Slot &slot : m_slots) {
        slot.items.removeAll(item);
    }
}

void Play::makeWidget(Slot &slot)
{
    using namespace INTERNAL;
    WidgetData data;
    data.id = QStringLiteral("fuzzed");
    data.version = VersionType(1, 0, 0);
    data.graphicsObjectClass = &FuzzedItem::staticMetaObject;
    data.fieldInfo = {{fields.at(0), FieldInfo(true, true, false, FieldTypeInteger, 0)},
                      {fields.at(1), FieldInfo(true, true, false, FieldTypeString, 0)},
                      {fields.at(2), FieldInfo(false, true, false, FieldTypeInteger, 0)}};
    slot = {};
    slot.widget = new FuzzedWidget(data);
    m_objects.append(slot.widget.data());
    QObject::connect(priv(slot.widget), &WidgetPrivate::fieldIsChanged, [] { play->goOn(); });
}

void Play::makeItem(Slot &slot)
{
    if (slot.items.size() >= mostItems) {
        return;
    }
    auto *item = qobject_cast<FuzzedItem *>(priv(slot.widget)->newGraphicsObjectInstance());
    expect(item, "no item");
    slot.items.append(item);
    m_objects.append(item);
}

FuzzedItem *Play::someItem(Slot &slot)
{
    const int index = m_bytes.take();
    return slot.items.isEmpty() ? nullptr
                                : qobject_cast<FuzzedItem *>(slot.items.at(index % slot.items.size()));
}

void Play::deleteItem(Slot &slot)
{
    delete someItem(slot);
}

void Play::write(Slot &slot, int how)
{
    static const QVariantList values{1,
                                     2,
                                     QStringLiteral("3"),
                                     QStringLiteral("x"),
                                     4.6,
                                     std::numeric_limits<double>::quiet_NaN(),
                                     1e300,
                                     QVariant()};
    static const QMap<int, int> integers{{0, 1}, {1, 2}, {2, 3}, {4, 5}};
    const int field = m_bytes.takeBelow(fields.size());
    const int value = m_bytes.takeBelow(values.size());
    const QString &id = fields.at(field);
    const bool isFromHost = how == 0;
    const bool isInteger = field == 0 || field == 2;
    if (isInteger && integers.contains(value) && (field == 0 || isFromHost)) {
        slot.values.insert(id, integers.value(value));
    } else if (field == 1 && values.at(value).canConvert<QString>() && value < 4) {
        slot.values.insert(id, values.at(value).toString());
    } else if (field == 1) {
        return; // how Qt writes the others is Qt's
    }
    if (isFromHost) {
        priv(slot.widget)->setFieldValue(id, values.at(value), true, m_bytes.takeBelow(2) == 1);
    } else if (how == 1) {
        slot.widget->setFieldValue(id, values.at(value));
    } else if (GraphicsObject *item = slot.items.value(0)) {
        item->setFieldValue(id, values.at(value));
    } else {
        slot.widget->setFieldValue(id, values.at(value));
    }
}

void Play::step()
{
    const int call = m_bytes.takeBelow(13);
    Slot &slot = m_slots[m_bytes.takeBelow(slotCount)];
    if (!slot.widget) {
        makeWidget(slot);
        return;
    }
    switch (call) {
    case 0:
        delete slot.widget;
        break;
    case 1:
    case 2:
        makeItem(slot);
        break;
    case 3:
        deleteItem(slot);
        break;
    case 4:
        priv(slot.widget)->init();
        break;
    case 5:
        priv(slot.widget)->deinit();
        break;
    case 6:
        priv(slot.widget)->alarmEvent(AlarmInfo(AlarmInfoData()));
        break;
    case 7:
        if (FuzzedItem *item = someItem(slot)) {
            const qreal sizes[] = {10, 20, -1, std::numeric_limits<qreal>::quiet_NaN(), 1e300};
            const qreal side = sizes[m_bytes.takeBelow(5)];
            INTERNAL::GraphicsObjectPrivateAccessor::priv(item)->resize({side, 10});
        }
        break;
    default:
        write(slot, call % 3);
    }
}

void Play::check() const
{
    for (const Slot &slot : m_slots) {
        if (!slot.widget) {
            continue;
        }
        expect(slot.widget->graphicsObjectsList() == slot.items, "the list of items");
        for (const QString &field : fields) {
            expect(priv(slot.widget)->getFieldValue(field, true) == slot.values.value(field), "a value");
        }
    }
}

} // namespace

KORA_FUZZ_TARGET(widget)
{
    Play current(input.left(4096));
    play = &current;
    current.run();
}

#include "widget.moc"
