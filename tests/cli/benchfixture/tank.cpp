// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QThread>
#include <QtGui/QPainter>

#include <csignal>
#include <cstdlib>

#include <kora/kora.h>

/// Does what its field says when it starts.
class Tank : public KORA::Widget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit Tank(const KORA::WidgetData &data)
        : KORA::Widget(data)
    {}

    void initEvent(KORA::InitEvent *) override
    {
        const QString fault = getFieldValue(QStringLiteral("fault")).toString();
        if (fault == QLatin1String("crash")) {
            std::raise(SIGSEGV);
        } else if (fault == QLatin1String("exit")) {
            std::_Exit(3);
        } else if (fault == QLatin1String("hang")) {
            QThread::sleep(7);
        }
    }
};

class TankItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit TankItem(const KORA::GraphicsObjectData &data)
        : KORA::GraphicsObject(data)
    {}

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *) override
    {
        painter->fillRect(boundingRect(), Qt::darkBlue);
    }
};

class Tanks : public KORA::WidgetLibraryPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.Vako.KORA.WidgetLibrary" FILE "tank.json")
    Q_INTERFACES(KORA::WidgetLibraryPlugin)

public:
    Tanks()
    {
#ifdef TANKS_CRASH_WHEN_LOADED
        std::raise(SIGSEGV);
#endif
        registerWidget(QStringLiteral("tank"), QStringLiteral("1.0.0"), &Tank::staticMetaObject,
                       &TankItem::staticMetaObject);
    }
};

#include "tank.moc"
