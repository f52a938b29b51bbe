// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPair>
#include <QtCore/QPointer>
#include <QtCore/QVector>

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/widget_p.h>
#include <kora/testkit/host.h>
#include <kora/testkit/library.h>
#include <kora/testkit/scene.h>

namespace KORA {
namespace TestKit {

/// A live widget on a page of its own, made as hosts make it: the default values are set, its item has the widget's
/// default size, and it is started.
///
///     Host host;
///     WidgetFixture tank(library, host, QStringLiteral("tank"));
///     QVERIFY2(tank.isValid(), qPrintable(tank.problem()));
///     tank.set("level", 80);              // as the host writes a field
///     tank.page.touch.tap({20, 20});
///     QCOMPARE(tank.get("alarmed"), QVariant(true));
///     QCOMPARE(tank.takeWrites(), (WidgetFixture::Writes{{"alarmed", true}}));
class WidgetFixture
{
public:
    /// Fields that the widget wrote, with the values, as hosts are told of them.
    using Writes = QVector<QPair<QString, QVariant>>;

    /// The version is the latest, and texts that are kept per language are in the library's own, if not given.
    WidgetFixture(const Library &library, Host &host, const QString &id, const QString &version = {},
                  const QString &language = {})
        : metaData(library.widget(id, version))
        , page(metaData.defaultSize().isEmpty() ? QSizeF(100, 100) : metaData.defaultSize())
    {
        if (!metaData.isValid()) {
            m_problem = QStringLiteral("the metadata declares no widget %1 %2").arg(id, version);
        } else if (makeWidget(library, host) && makeItem()) {
            start(language);
        }
    }
    Q_DISABLE_COPY(WidgetFixture)
    ~WidgetFixture()
    {
        if (widget) {
            hold()->deinit();
        }
        // The order of hosts. Widgets may have deleted any of them.
        delete item;
        const QPointer<KORA::WidgetActionManager> manager(widget ? widget->widgetActionManager() : nullptr);
        delete widget;
        delete manager;
    }

    /// Whether widget and item were made.
    bool isValid() const { return m_problem.isEmpty(); }
    const QString &problem() const { return m_problem; }

    /// A host's access to the widget: init(), deinit() and more.
    KORA::WidgetPrivate *hold() const { return KORA::INTERNAL::WidgetPrivateAccessor::priv(widget); }

    /// Writes a field as the host does, within its bounds; the widget is told of a change.
    void set(const QString &fieldId, const QVariant &value)
    {
        const auto type = metaData.fields().value(fieldId).type();
        hold()->setFieldValue(fieldId,
                              KORA::INTERNAL::WidgetLibraryPluginUtils::fieldValueCheckBeforeSet(
                                  type, value, fieldId, metaData),
                              true, true);
    }
    void set(const char *fieldId, const QVariant &value) { set(QString::fromUtf8(fieldId), value); }
    QVariant get(const QString &fieldId) const { return hold()->getFieldValue(fieldId, true); }
    QVariant get(const char *fieldId) const { return get(QString::fromUtf8(fieldId)); }
    /// What the widget wrote since the last call.
    Writes takeWrites()
    {
        Writes taken;
        taken.swap(m_writes);
        return taken;
    }

    /// Tells the widget of an alarm. A panel does so if the metadata has "receiveAlarmsEvents".
    void deliver(const KORA::AlarmInfo &alarm) const { hold()->alarmEvent(alarm); }
    /// Gives the item and the page a new size.
    void resize(const QSizeF &size)
    {
        page.scene.setSceneRect(QRectF(QPointF(), size));
        page.view.setFixedSize(size.toSize());
        KORA::INTERNAL::GraphicsObjectPrivateAccessor::priv(item)->resize(size);
    }
    QImage picture() { return page.picture(); }

    const KORA::INTERNAL::WidgetMetaInformation metaData;
    Scene page;
    QPointer<KORA::Widget> widget;
    QPointer<KORA::GraphicsObject> item;

private:
    bool makeWidget(const Library &library, Host &host)
    {
        const auto *factory = KORA::INTERNAL::WidgetLibraryPluginPrivateAccessor::priv(library.plugin());
        QObject *object = factory->newWidgetInstance(metaData.id(), metaData.version().version(),
                                                     library.metaData().id(), metaData.fieldInfo(), &host);
        widget = qobject_cast<KORA::Widget *>(object);
        if (!widget) {
            delete object;
            m_problem =
                QStringLiteral("widget %1 %2: not registered, or its class has no Q_INVOKABLE constructor "
                               "taking const KORA::WidgetData &")
                    .arg(metaData.id(), metaData.version().version());
        }
        return widget;
    }
    bool makeItem()
    {
        QObject *object = hold()->newGraphicsObjectInstance();
        item = qobject_cast<KORA::GraphicsObject *>(object);
        if (!item) {
            delete object;
            m_problem =
                QStringLiteral("widget %1: the item's class has no Q_INVOKABLE constructor taking const "
                               "KORA::GraphicsObjectData &")
                    .arg(metaData.id());
        }
        return item;
    }
    void start(const QString &language)
    {
        QObject::connect(hold(), &KORA::WidgetPrivate::fieldIsChanged, &page.view,
                         [this](const QString &fieldId, const QVariant &value) {
                             m_writes.append({fieldId, value});
                         });
        page.scene.addItem(item);
        setDefaults(language);
        KORA::INTERNAL::GraphicsObjectPrivateAccessor::priv(item)->resize(page.scene.sceneRect().size());
        hold()->init();
    }
    void setDefaults(const QString &language)
    {
        const auto fields = metaData.fields();
        for (const KORA::INTERNAL::FieldMetaInformation &field : fields) {
            if (field.isMultiLanguageText()) {
                hold()->setFieldValue(field.id() + QStringLiteral(".font"), field.defaultFont(), true, true);
            }
            if (field.defaultValue().isValid()) {
                set(field.id(), defaultOf(field, language));
            }
        }
    }
    static QVariant defaultOf(const KORA::INTERNAL::FieldMetaInformation &field, const QString &language)
    {
        QMap<int, QString> texts;
        const auto defaults = field.defaultTexts();
        for (auto text = defaults.cbegin(); text != defaults.cend(); ++text) {
            texts.insert(text.key(), text->get(language, true));
        }
        if (texts.isEmpty()) {
            return field.defaultValue();
        }
        switch (field.type()) {
        case KORA::INTERNAL::FieldTypeString:
            return texts.value(0);
        case KORA::INTERNAL::FieldTypeStringList:
            return QVariant(QStringList(texts.values()));
        default:
            return QVariant::fromValue(texts);
        }
    }

    QString m_problem;
    Writes m_writes;
};

} // namespace TestKit
} // namespace KORA
