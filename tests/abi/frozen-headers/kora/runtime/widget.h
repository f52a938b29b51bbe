// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtGui/QIcon>

#include <memory>

#include <kora/export.h>
#include <kora/runtime/datarole.h>
#include <kora/runtime/event.h>
#include <kora/runtime/widgetdata.h>

namespace KORA {

class GraphicsObject;
class WidgetActionManager;
class WidgetPrivate;

namespace INTERNAL {
class WidgetPrivateAccessor;
} // namespace INTERNAL

/// The logic of one widget instance: it holds the values of the fields that the metadata declares, and hears of
/// the instance's life, of field changes and of alarms.
///
/// Derive one class per widget. The framework makes instances through the meta-object system, so the class
/// needs exactly this constructor, with the type written out in full: a shorter `const WidgetData &` compiles
/// but is not found, and no instance is made.
///
///     class Gauge : public KORA::Widget
///     {
///         Q_OBJECT
///     public:
///         Q_INVOKABLE explicit Gauge(const KORA::WidgetData &data) : KORA::Widget(data) {}
///     };
///
/// The host makes the instance and its graphics objects, sets the fields' default values, and starts it
/// (initEvent()); field values may change at any time and are kept when it is stopped. The widget owns neither
/// its graphics objects nor its action manager: the host deletes the graphics objects, the widget and the
/// action manager, in this order. Everything happens on the GUI thread.
class KORA_EXPORT Widget : public QObject
{
    Q_OBJECT

public:
    explicit Widget(const KORA::WidgetData &data);
    ~Widget() override;

    QString id() const;
    /// "major.minor.patch".
    QString version() const;
    int versionMajor() const;
    int versionMinor() const;
    int versionPatch() const;
    /// The items of this widget, in the order in which they were made.
    QList<KORA::GraphicsObject *> graphicsObjectsList() const;
    KORA::WidgetActionManager *widgetActionManager() const;

    /// The value of a field, of the field's kind; invalid if it was never set or the id is unknown. The font of
    /// a multi-language text is read under the field's id followed by ".font".
    QVariant getFieldValue(const QString &fieldId) const;
    /// Sets a field and tells the host, the widget and its graphics objects. Nothing happens for an unknown id,
    /// a value that does not convert to the field's kind, or a multi-language text, which the host owns; the
    /// test bench logs why. The host is told of every write, the others only of a change.
    void setFieldValue(const QString &fieldId, const QVariant &value);

    /// The widget's picture in galleries and for items that draw nothing; the default is
    /// koraDefaultGalleryIcon().
    virtual QIcon icon();
    /// Sees every event first; true keeps it from the specific handler.
    virtual bool koraEvent(KORA::Event *event);
    virtual void initEvent(KORA::InitEvent *event);
    virtual void deinitEvent(KORA::DeinitEvent *event);
    virtual void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event);
    virtual void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event);
    /// Answers a role of the host: icon() for the icon role, else an invalid value.
    virtual QVariant data(KORA::DataRole *role);

    bool event(QEvent *event) override;

private:
    friend class INTERNAL::WidgetPrivateAccessor;

    std::unique_ptr<WidgetPrivate> d;
};

} // namespace KORA
