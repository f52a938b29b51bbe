// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QMetaEnum>
#include <QtGui/QPixmap>

#include <support/testmain.h>

#include "recording.h"

using namespace KORA;

namespace {

template<typename T>
QString debugText(const T *event)
{
    QString text;
    QDebug(&text) << event << QStringLiteral("next");
    return text.trimmed();
}

FieldIsChangedEventData fieldData(const QVariant &value, const QVariant &oldValue)
{
    FieldIsChangedEventData data;
    data.fieldId = QStringLiteral("speed");
    data.value = value;
    data.oldValue = oldValue;
    return data;
}

class UnknownRole : public DataRole
{
public:
    UnknownRole()
        : DataRole(static_cast<DataRole::Type>(7))
    {}
};

} // namespace

class TestEvents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typesAreFixed();
    void eventsCarryTheirData();
    void debugForms();
    void roleAsksForTheIcon();
    void unknownRoleGetsNoAnswer();
};

void TestEvents::typesAreFixed()
{
    QCOMPARE(static_cast<int>(Event::InitEvent), 0);
    QCOMPARE(static_cast<int>(Event::DeinitEvent), 1);
    QCOMPARE(static_cast<int>(Event::Resize), 2);
    QCOMPARE(static_cast<int>(Event::FieldIsChanged), 3);
    QCOMPARE(static_cast<int>(Event::AlarmStatusIsChanged), 4);
    QCOMPARE(sizeof(Event::Type), sizeof(quint16));
    QCOMPARE(static_cast<int>(DataRole::Icon), 1);
    QCOMPARE(QMetaEnum::fromType<Event::Type>().valueToKey(Event::AlarmStatusIsChanged),
             "AlarmStatusIsChanged");
    QCOMPARE(QMetaEnum::fromType<DataRole::Type>().valueToKey(DataRole::Icon), "Icon");

    QCOMPARE(InitEvent(InitEventData()).type(), Event::InitEvent);
    QCOMPARE(DeinitEvent(DeinitEventData()).type(), Event::DeinitEvent);
    QCOMPARE(ResizeEvent(ResizeEventData()).type(), Event::Resize);
    QCOMPARE(FieldIsChangedEvent(FieldIsChangedEventData()).type(), Event::FieldIsChanged);
    QCOMPARE(AlarmStatusIsChangedEvent(AlarmStatusIsChangedEventData()).type(), Event::AlarmStatusIsChanged);
    QCOMPARE(IconDataRole().type(), DataRole::Icon);

    EventData data;
    data.type = Event::Resize;
    QCOMPARE(Event(data).type(), Event::Resize);
}

void TestEvents::eventsCarryTheirData()
{
    ResizeEventData size;
    size.size = QSizeF(200, 80);
    size.oldSize = QSizeF(100, 50);
    const ResizeEvent resize(size);
    size.size = QSizeF();
    QCOMPARE(resize.size(), QSizeF(200, 80));
    QCOMPARE(resize.oldSize(), QSizeF(100, 50));

    const FieldIsChangedEvent field(fieldData(2, QVariant()));
    QCOMPARE(field.fieldId(), QStringLiteral("speed"));
    QCOMPARE(field.value(), QVariant(2));
    QVERIFY(!field.oldValue().isValid());

    AlarmStatusIsChangedEventData alarm;
    alarm.alarmInfo = AlarmInfo::createAlarmInfo({{QStringLiteral("name"), QStringLiteral("Overheat")}});
    QCOMPARE(AlarmStatusIsChangedEvent(alarm).alarmInfo().name(), QStringLiteral("Overheat"));
    QVERIFY(!AlarmStatusIsChangedEvent(AlarmStatusIsChangedEventData()).alarmInfo().isValid());
}

void TestEvents::debugForms()
{
    // The stream goes on in the caller's format: with a blank, and quoted.
    const InitEvent init{InitEventData()};
    QCOMPARE(debugText(&init), QStringLiteral("KORA::InitEvent() \"next\""));
    const DeinitEvent deinit{DeinitEventData()};
    QCOMPARE(debugText(&deinit), QStringLiteral("KORA::DeinitEvent() \"next\""));
    const IconDataRole role;
    QCOMPARE(debugText(&role), QStringLiteral("KORA::IconDataRole() \"next\""));

    ResizeEventData size;
    size.size = QSizeF(200, 80);
    size.oldSize = QSizeF(100, 50.5);
    const ResizeEvent resize(size);
    QCOMPARE(debugText(&resize),
             QStringLiteral("KORA::ResizeEvent(size=200, 80,oldSize=100, 50.5) \"next\""));

    const FieldIsChangedEvent field(fieldData(QStringLiteral("a"), QVariant()));
    QCOMPARE(debugText(&field),
             QStringLiteral("KORA::FieldIsChangedEvent(fieldId=\"speed\",value=QVariant(QString, \"a\"),"
                            "oldValue=QVariant(Invalid)) \"next\""));

    AlarmStatusIsChangedEventData data;
    data.alarmInfo = AlarmInfo::createAlarmInfo({{QStringLiteral("name"), QStringLiteral("Overheat")}});
    const AlarmStatusIsChangedEvent alarm(data);
    QString alarmText;
    QDebug(&alarmText).nospace() << data.alarmInfo;
    QCOMPARE(debugText(&alarm),
             QStringLiteral("KORA::AlarmStatusIsChangedEvent(alarmInfo=%1) \"next\"").arg(alarmText));
}

void TestEvents::roleAsksForTheIcon()
{
    Panel panel(1);
    QPixmap pixmap(4, 4);
    pixmap.fill(Qt::red);
    panel.widget->ownIcon = QIcon(pixmap);
    IconDataRole role;
    for (const QVariant &answer : {panel.widget->data(&role), panel.items.first()->data(&role)}) {
        QCOMPARE(answer.userType(), static_cast<int>(QMetaType::QIcon));
        QCOMPARE(answer.value<QIcon>().cacheKey(), panel.widget->ownIcon.cacheKey());
    }
    panel.widget->ownIcon = QIcon();
    QCOMPARE(panel.widget->data(&role).userType(), static_cast<int>(QMetaType::QIcon));
}

void TestEvents::unknownRoleGetsNoAnswer()
{
    Panel panel(1);
    UnknownRole role;
    QVERIFY(!panel.widget->data(&role).isValid());
    QVERIFY(!panel.items.first()->data(&role).isValid());
}

KORA_TEST_MAIN(TestEvents)

#include "tst_events.moc"
