// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVariant>

#include <kora/export.h>
#include <kora/runtime/invokableconstructor_p.h>
#include <kora/runtime/widget.h>

namespace KORA {

/// A host's hold on a widget: it makes the widget's items, starts and stops it, and reads and writes its fields
/// past the checks that hold for plugin code.
///
/// Handlers may delete items or the widget, and write fields, while an event is delivered: what is gone gets
/// nothing more.
class KORA_EXPORT WidgetPrivate : public QObject
{
    Q_OBJECT

public:
    WidgetPrivate(Widget *owner, const WidgetData &data);
    ~WidgetPrivate() override;

    /// With @p fromHost a field is read although plugin code could not, and an unknown id is no error.
    QVariant getFieldValue(const QString &fieldId, bool fromHost) const;
    /// With @p fromHost a field is written although plugin code could not, and fieldIsChanged() is not emitted.
    /// @p sendEvent announces a change to the widget and its items. Values are not clamped here: see
    /// WidgetLibraryPluginUtils::fieldValueCheckBeforeSet().
    void setFieldValue(const QString &fieldId, const QVariant &value, bool fromHost, bool sendEvent);

    /// Makes one item, without parent; the caller puts it on a scene and owns it. Null when the graphics object
    /// class is null or has no invokable constructor taking `const KORA::GraphicsObjectData &`.
    QObject *newGraphicsObjectInstance();

    /// Starts the widget, then its items; does nothing when started.
    void init();
    /// Stops the widget, then its items; does nothing when stopped.
    void deinit();
    /// Tells the widget and its items of an alarm, started or not. The host calls it for widgets whose metadata
    /// asks for alarms.
    void alarmEvent(const KORA::AlarmInfo &alarmInfo) const;

    Widget *owner;
    bool initialised = false;
    QString id;
    INTERNAL::VersionType version;
    QString pluginId;
    const QMetaObject *graphicsObjectClass;
    InvokableConstructor graphicsObjectConstructor;    // of that class
    QPointer<WidgetActionManager> widgetActionManager; // not owned
    QList<GraphicsObject *> graphicsObjects;           // not owned

Q_SIGNALS:
    /// Plugin code wrote a field; emitted on every such write, also of an equal value.
    void fieldIsChanged(const QString &fieldId, const QVariant &value);

private:
    struct Field
    {
        INTERNAL::FieldInfo info;
        QVariant value;
        bool isSet = false; // a value that was set may be an invalid variant
    };

    /// Null when the field table has no such field.
    Field *fieldToSet(const QString &fieldId);
    void warnOfReading(const QString &fieldId) const;
    bool isInsideDevProject() const;
    void announceChange(const QString &fieldId, const QVariant &value, const QVariant &oldValue) const;

    const QMap<QString, INTERNAL::FieldInfo> m_fieldInfo; // shared with all instances of the widget
    QHash<QString, Field> m_fields;                       // those that were set
};

namespace INTERNAL {

class KORA_EXPORT WidgetPrivateAccessor
{
public:
    static WidgetPrivate *priv(Widget *widget);
};

} // namespace INTERNAL
} // namespace KORA
