// SPDX-License-Identifier: Apache-2.0
#include "support/livewidget.h"
#include "support/program.h"

#include <QtCore/QMetaProperty>
#include <QtQml/QQmlPropertyMap>

#include <memory>
#include <vector>

using namespace KORA::INTERNAL;

namespace {

/// What a program without the library would write: an object with properties that tell of their changes.
class Properties : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int field0 MEMBER m_0 NOTIFY field0Changed)
    Q_PROPERTY(int field1 MEMBER m_1 NOTIFY field1Changed)
    Q_PROPERTY(int field2 MEMBER m_2 NOTIFY field2Changed)
    Q_PROPERTY(int field3 MEMBER m_3 NOTIFY field3Changed)
    Q_PROPERTY(int field4 MEMBER m_4 NOTIFY field4Changed)
    Q_PROPERTY(int field5 MEMBER m_5 NOTIFY field5Changed)
    Q_PROPERTY(int field6 MEMBER m_6 NOTIFY field6Changed)
    Q_PROPERTY(int field7 MEMBER m_7 NOTIFY field7Changed)
    Q_PROPERTY(int field8 MEMBER m_8 NOTIFY field8Changed)
    Q_PROPERTY(int field9 MEMBER m_9 NOTIFY field9Changed)
    Q_PROPERTY(int field10 MEMBER m_10 NOTIFY field10Changed)
    Q_PROPERTY(int field11 MEMBER m_11 NOTIFY field11Changed)
    Q_PROPERTY(int field12 MEMBER m_12 NOTIFY field12Changed)
    Q_PROPERTY(int field13 MEMBER m_13 NOTIFY field13Changed)
    Q_PROPERTY(int field14 MEMBER m_14 NOTIFY field14Changed)
    Q_PROPERTY(int field15 MEMBER m_15 NOTIFY field15Changed)
    Q_PROPERTY(int field16 MEMBER m_16 NOTIFY field16Changed)
    Q_PROPERTY(int field17 MEMBER m_17 NOTIFY field17Changed)
    Q_PROPERTY(int field18 MEMBER m_18 NOTIFY field18Changed)
    Q_PROPERTY(int field19 MEMBER m_19 NOTIFY field19Changed)

Q_SIGNALS:
    void field0Changed();
    void field1Changed();
    void field2Changed();
    void field3Changed();
    void field4Changed();
    void field5Changed();
    void field6Changed();
    void field7Changed();
    void field8Changed();
    void field9Changed();
    void field10Changed();
    void field11Changed();
    void field12Changed();
    void field13Changed();
    void field14Changed();
    void field15Changed();
    void field16Changed();
    void field17Changed();
    void field18Changed();
    void field19Changed();

public:
    int m_0, m_1, m_2, m_3, m_4, m_5, m_6, m_7, m_8, m_9;
    int m_10, m_11, m_12, m_13, m_14, m_15, m_16, m_17, m_18, m_19;
};

class Listener : public QObject
{
    Q_OBJECT

public:
    qint64 changes = 0;

public Q_SLOTS:
    void count() { ++changes; }
};

const std::vector<QString> &names()
{
    static const std::vector<QString> all = [] {
        std::vector<QString> result;
        for (int i = 0; i < fieldCount; ++i) {
            result.push_back(fieldName(i));
        }
        return result;
    }();
    return all;
}

const std::vector<QByteArray> &latinNames()
{
    static const std::vector<QByteArray> all = [] {
        std::vector<QByteArray> result;
        for (const QString &name : names()) {
            result.push_back(name.toLatin1());
        }
        return result;
    }();
    return all;
}

/// A live widget with some items that listen.
struct Live
{
    explicit Live(int itemCount)
        : manager(&services, nullptr)
        , widget([this] {
            KORA::WidgetData data = widgetData();
            data.widgetActionManager = &manager;
            return data;
        }())
        , d(*WidgetPrivateAccessor::priv(&widget))
    {
        for (int i = 0; i < itemCount; ++i) {
            items.emplace_back(static_cast<CountingItem *>(d.newGraphicsObjectInstance()));
        }
    }

    NoServices services;
    KORA::WidgetActionManager manager;
    CountingWidget widget;
    KORA::WidgetPrivate &d;
    std::vector<std::unique_ptr<CountingItem>> items;
};

/// Counts on: each write is of the next field and of a value that the field has not.
class Writes
{
public:
    size_t next()
    {
        m_field = (m_field + 1) % fieldCount;
        m_value += m_field == 0 ? 1 : 0;
        return m_field;
    }
    int value() const { return m_value; }

private:
    size_t m_field = 0;
    int m_value = 1;
};

// A host writes a value that is new -------------------------------------------------------------------------

void hostWriteOurs(benchmark::State &state)
{
    Live live(int(state.range(0)));
    Writes writes;
    const auto write = [&] { live.d.setFieldValue(names()[writes.next()], writes.value(), true, true); };
    for (int i = 0; i < fieldCount; ++i) {
        write();
    }
    const bool heard =
        live.widget.events == fieldCount && (live.items.empty() || live.items.back()->events == fieldCount);
    if (require(state, heard, "no event")) {
        measure(state, write);
    }
}

void hostWriteQt(benchmark::State &state)
{
    Properties properties{};
    std::vector<std::unique_ptr<Listener>> listeners;
    for (int i = 0; i < state.range(0); ++i) {
        listeners.push_back(std::make_unique<Listener>());
        for (int field = 0; field < fieldCount; ++field) {
            const QMetaProperty property =
                Properties::staticMetaObject.property(Properties::staticMetaObject.propertyOffset() + field);
            QObject::connect(
                &properties, property.notifySignal(), listeners.back().get(),
                Listener::staticMetaObject.method(Listener::staticMetaObject.indexOfSlot("count()")));
        }
    }
    Writes writes;
    const auto write = [&] {
        benchmark::DoNotOptimize(
            properties.setProperty(latinNames()[writes.next()].constData(), writes.value()));
    };
    write();
    const bool heard = listeners.empty() || listeners.back()->changes == 1;
    if (require(state, heard && properties.m_1 == 1, "no change")) {
        measure(state, write);
    }
}

void hostSameOurs(benchmark::State &state)
{
    Live live(0);
    Writes writes;
    const auto write = [&] { live.d.setFieldValue(names()[writes.next()], 7, true, true); };
    for (int i = 0; i < fieldCount; ++i) {
        write();
    }
    if (require(state, live.widget.events == fieldCount && live.d.getFieldValue(names()[3], true) == 7,
                "not written")) {
        measure(state, write);
    }
}

void hostSameQt(benchmark::State &state)
{
    QObject object;
    Writes writes;
    const auto write = [&] { object.setProperty(latinNames()[writes.next()].constData(), 7); };
    for (int i = 0; i < fieldCount; ++i) {
        write();
    }
    if (require(state, object.property("field3") == 7, "not written")) {
        measure(state, write);
    }
}

// A plugin writes a value that is new, with one receiver connected and one item ------------------------------

void pluginWriteOurs(benchmark::State &state)
{
    Live live(1);
    qint64 received = 0;
    QObject::connect(&live.d, &KORA::WidgetPrivate::fieldIsChanged, &live.services,
                     [&](const QString &, const QVariant &) { ++received; });
    Writes writes;
    const auto write = [&] { live.widget.setFieldValue(names()[writes.next()], writes.value()); };
    for (int i = 0; i < fieldCount; ++i) {
        write();
    }
    if (require(state, received == fieldCount && live.items.back()->events == fieldCount, "not told")) {
        measure(state, write);
    }
}

void pluginWriteQt(benchmark::State &state)
{
    QQmlPropertyMap map;
    for (const QString &name : names()) {
        map.insert(name, 0);
    }
    qint64 received = 0;
    // The map emits valueChanged() for writes of QML only; its properties' own signals tell of others.
    Listener listener;
    for (int i = map.metaObject()->propertyOffset(); i < map.metaObject()->propertyCount(); ++i) {
        QObject::connect(
            &map, map.metaObject()->property(i).notifySignal(), &listener,
            Listener::staticMetaObject.method(Listener::staticMetaObject.indexOfSlot("count()")));
    }
    QObject::connect(&map, &QQmlPropertyMap::valueChanged, &listener, [&] { ++received; });
    Writes writes;
    const auto write = [&] {
        benchmark::DoNotOptimize(map.setProperty(latinNames()[writes.next()].constData(), writes.value()));
    };
    write();
    if (require(state, received + listener.changes >= 1 && map.value(names()[1]) == 1, "not told")) {
        measure(state, write);
    }
}

// Reads -----------------------------------------------------------------------------------------------------

void readOurs(benchmark::State &state)
{
    Live live(0);
    Writes writes;
    for (const QString &name : names()) {
        live.d.setFieldValue(name, 7, true, true);
    }
    const auto read = [&] { return live.widget.getFieldValue(names()[writes.next()]); };
    if (require(state, read() == 7, "another value")) {
        measure(state, [&] { benchmark::DoNotOptimize(read()); });
    }
}

void readQt(benchmark::State &state)
{
    QObject object;
    Writes writes;
    for (const QByteArray &name : latinNames()) {
        object.setProperty(name.constData(), 7);
    }
    const auto read = [&] { return object.property(latinNames()[writes.next()].constData()); };
    if (require(state, read() == 7, "another value")) {
        measure(state, [&] { benchmark::DoNotOptimize(read()); });
    }
}

} // namespace

int main(int argc, char **argv)
{
    Program program(argc, argv);
    program.add("hostwrite/ours", hostWriteOurs, {0, 1, 4});
    program.add("hostwrite/qt", hostWriteQt, {0, 1, 4});
    program.add("hostsame/ours", hostSameOurs);
    program.add("hostsame/qt", hostSameQt);
    program.add("pluginwrite/ours", pluginWriteOurs);
    program.add("pluginwrite/qt", pluginWriteQt);
    program.add("fieldread/ours", readOurs);
    program.add("fieldread/qt", readQt);
    return program.run();
}

#include "fields.moc"
