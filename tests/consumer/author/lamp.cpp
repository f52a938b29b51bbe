// SPDX-License-Identifier: Apache-2.0
#include <QtGui/QIcon>
#include <QtGui/QPainter>

#include <kora/kora.h>

class Lamp : public KORA::Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Lamp(const KORA::WidgetData &data)
        : KORA::Widget(data)
    {}

    QIcon icon() override
    {
        return QIcon(QStringLiteral(":/2b1f6d0e-8d0a-4f0e-9c55-0f0d5f2c7a11/resources/icons/lamp.ppm"));
    }
};

class LampItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit LampItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
    {}

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        painter->fillRect(boundingRect(), getFieldValue(QStringLiteral("color")).value<QColor>());
    }
};

class LampLibrary : public KORA::WidgetLibraryPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.Vako.KORA.WidgetLibrary" FILE "lamp.json")
    Q_INTERFACES(KORA::WidgetLibraryPlugin)

public:
    LampLibrary()
    {
        registerWidget(QStringLiteral("lamp"), QStringLiteral("1.0.0"), &Lamp::staticMetaObject,
                       &LampItem::staticMetaObject);
    }
};

#include "lamp.moc"
