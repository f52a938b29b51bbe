// SPDX-License-Identifier: Apache-2.0
//
// Built against the frozen headers. Each handler notes its name in the field "calls": a handler in another
// place of the virtual table, or an event of another shape, shows there.
#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include <kora/kora.h>

namespace {

/// Appends to the field "calls" of a widget or graphics object.
template<typename Object>
void note(Object *object, const QString &call)
{
    const QString calls = QStringLiteral("calls");
    object->setFieldValue(calls, QVariant(object->getFieldValue(calls).toString() + call + QLatin1Char(' ')));
}

} // namespace

class FrozenLamp : public KORA::Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit FrozenLamp(const KORA::WidgetData &data)
        : KORA::Widget(data)
    {}

    QIcon icon() override
    {
        QPixmap pixmap(1, 1);
        pixmap.fill(Qt::red);
        return QIcon(pixmap);
    }
    void initEvent(KORA::InitEvent *) override { note(this, QStringLiteral("widget-init")); }
    void deinitEvent(KORA::DeinitEvent *) override { note(this, QStringLiteral("widget-deinit")); }
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override
    {
        if (event->fieldId() == QLatin1String("color")) {
            note(this, QStringLiteral("widget-%1").arg(event->value().value<QColor>().name()));
        }
    }
    void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event) override
    {
        note(this, event->alarmInfo().name());
    }
};

class FrozenLampItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit FrozenLampItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
    {}

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        painter->fillRect(boundingRect(), getFieldValue(QStringLiteral("color")).value<QColor>());
    }
    void initEvent(KORA::InitEvent *) override { note(this, QStringLiteral("item-init")); }
    void deinitEvent(KORA::DeinitEvent *) override { note(this, QStringLiteral("item-deinit")); }
    void resizeEvent(KORA::ResizeEvent *event) override
    {
        note(this, QStringLiteral("item-%1").arg(event->size().width()));
    }
};

class FrozenLibrary : public KORA::WidgetLibraryPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.Vako.KORA.WidgetLibrary" FILE "frozen.json")
    Q_INTERFACES(KORA::WidgetLibraryPlugin)

public:
    FrozenLibrary()
    {
        registerWidget(QStringLiteral("lamp"), QStringLiteral("1.0.0"), &FrozenLamp::staticMetaObject,
                       &FrozenLampItem::staticMetaObject);
    }
};

#include "frozen.moc"
