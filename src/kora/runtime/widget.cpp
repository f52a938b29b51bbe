// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/widget.h>
#include <kora/runtime/widget_p.h>

#include <QtCore/QVarLengthArray>

#include <kora/log/logging.h>
#include <kora/runtime/eventdelivery_p.h>
#include <kora/runtime/graphicsobject.h>
#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/widgetactionmanager.h>
#include <kora/runtime/widgetactionmanager_p.h>

namespace KORA {

namespace {

/// Calls a function for each of a widget's items that live and are still the widget's when their turn comes:
/// handlers may delete items, and the widget.
template<typename Function>
void forEachItem(const WidgetPrivate &widget, Function function)
{
    QVarLengthArray<QPointer<GraphicsObject>, 8> items;
    for (GraphicsObject *item : widget.graphicsObjects) {
        items.append(item);
    }
    for (const QPointer<GraphicsObject> &item : qAsConst(items)) {
        if (item) {
            function(item.data());
        }
    }
}

Debug warning(const QString &pluginId)
{
    return LogHandler(pluginId, nullptr, 0, nullptr, "KORA").warning();
}

/// Delivers one event to the widget and then, as the same object, to its items.
template<typename EventClass>
void deliver(const WidgetPrivate &widget, EventClass &event, void (Widget::*widgetHandler)(EventClass *),
             void (GraphicsObject::*itemHandler)(EventClass *))
{
    // One guard for both: the private part goes with the widget.
    const QPointer<const WidgetPrivate> guard(&widget);
    Widget *owner = widget.owner;
    if (!owner->koraEvent(&event) && guard) {
        (owner->*widgetHandler)(&event);
    }
    if (guard) {
        forEachItem(widget, [&](GraphicsObject *item) { deliverEvent(item, event, itemHandler); });
    }
}

} // namespace

namespace INTERNAL {

WidgetPrivate *WidgetPrivateAccessor::priv(Widget *widget)
{
    return widget->d.get();
}

} // namespace INTERNAL

// WidgetPrivate --------------------------------------------------------------------------------------------

WidgetPrivate::WidgetPrivate(Widget *widget, const WidgetData &data)
    : owner(widget)
    , id(data.id)
    , version(data.version)
    , pluginId(data.pluginId)
    , graphicsObjectClass(data.graphicsObjectClass)
    , widgetActionManager(data.widgetActionManager)
    , m_fieldInfo(data.fieldInfo)
{}

WidgetPrivate::~WidgetPrivate() = default;

QVariant WidgetPrivate::getFieldValue(const QString &fieldId, bool fromHost) const
{
    const auto field = m_fields.constFind(fieldId);
    if (field != m_fields.constEnd() && (fromHost || field->info.getFieldValueIsEnabled())) {
        return field->value;
    }
    if (!fromHost && isInsideDevProject()) {
        warnOfReading(fieldId);
    }
    return {};
}

// A field that was never set is no error.
void WidgetPrivate::warnOfReading(const QString &fieldId) const
{
    const auto info = m_fieldInfo.constFind(fieldId);
    if (info == m_fieldInfo.constEnd()) {
        warning(pluginId).debug() << "getFieldValue called with an invalid fieldId:" << fieldId;
    } else if (!info->getFieldValueIsEnabled()) {
        warning(pluginId).debug() << "getFieldValue can not be used for the field" << fieldId;
    }
}

WidgetPrivate::Field *WidgetPrivate::fieldToSet(const QString &fieldId)
{
    auto field = m_fields.find(fieldId);
    if (field == m_fields.end()) {
        const auto info = m_fieldInfo.constFind(fieldId);
        if (info == m_fieldInfo.constEnd()) {
            return nullptr;
        }
        field = m_fields.insert(fieldId, Field{*info, QVariant(), false});
    }
    return &*field;
}

void WidgetPrivate::setFieldValue(const QString &fieldId, const QVariant &value, bool fromHost,
                                  bool sendEvent)
{
    Field *field = fieldToSet(fieldId);
    if (!field) {
        if (isInsideDevProject()) {
            warning(pluginId).debug() << "setFieldValue called with an invalid fieldId:" << fieldId;
        }
        return;
    }
    if (!fromHost && !field->info.setFieldValueIsEnabled()) {
        if (isInsideDevProject()) {
            warning(pluginId).debug() << "setFieldValue can not be used for the field" << fieldId;
        }
        return;
    }
    QVariant converted = value;
    if (!field->info.convertToFieldType(converted)) {
        if (isInsideDevProject()) {
            warning(pluginId).debug().nospace() << "setFieldValue called with wrong value for the field "
                                                << fieldId << ": value is " << value;
        }
        return;
    }

    const bool isChanged = !field->isSet || field->value != converted;
    QVariant oldValue;
    if (isChanged) {
        oldValue.swap(field->value); // invalid before the first value
        field->value = converted;
        field->isSet = true;
    }
    const bool isAnnounced = sendEvent && isChanged;
    if (fromHost) {
        if (isAnnounced) {
            announceChange(fieldId, converted, oldValue);
        }
        return;
    }
    const QPointer<WidgetPrivate> self(this);
    // The caller's text may belong to an item that a receiver deletes.
    const QString changedId = fieldId; // NOLINT(performance-unnecessary-copy-initialization)
    // Also for an equal value: the host learns of every write, for example to write it to a tag again.
    Q_EMIT fieldIsChanged(changedId, converted);
    if (self && isAnnounced) {
        announceChange(changedId, converted, oldValue);
    }
}

void WidgetPrivate::announceChange(const QString &fieldId, const QVariant &value,
                                   const QVariant &oldValue) const
{
    FieldIsChangedEvent event(FieldIsChangedEventData{fieldId, value, oldValue});
    deliver(*this, event, &Widget::fieldIsChangedEvent, &GraphicsObject::fieldIsChangedEvent);
}

QObject *WidgetPrivate::newGraphicsObjectInstance()
{
    if (!graphicsObjectClass) {
        return nullptr;
    }
    if (graphicsObjectConstructor.metaObject() != graphicsObjectClass) {
        graphicsObjectConstructor = InvokableConstructor(graphicsObjectClass, "KORA::GraphicsObjectData");
    }
    const GraphicsObjectData data{id, version, owner, widgetActionManager};
    QObject *object = graphicsObjectConstructor.construct(&data);
    if (auto *item = qobject_cast<GraphicsObject *>(object)) {
        graphicsObjects.append(item);
        // The pointer is only compared: at that moment it is no graphics object any more.
        connect(item, &QObject::destroyed, this, [this, item] { graphicsObjects.removeAll(item); });
    }
    return object;
}

void WidgetPrivate::init()
{
    if (initialised) {
        return;
    }
    initialised = true;
    const QPointer<WidgetPrivate> self(this);
    InitEvent event{InitEventData()};
    deliverEvent(owner, event, &Widget::initEvent);
    if (self && initialised) { // the handler may have stopped the widget
        forEachItem(
            *this, [](GraphicsObject *item) { INTERNAL::GraphicsObjectPrivateAccessor::priv(item)->init(); });
    }
}

void WidgetPrivate::deinit()
{
    if (!initialised) {
        return;
    }
    initialised = false;
    const QPointer<WidgetPrivate> self(this);
    DeinitEvent event{DeinitEventData()};
    deliverEvent(owner, event, &Widget::deinitEvent);
    if (self && !initialised) { // the handler may have started the widget
        forEachItem(*this, [](GraphicsObject *item) {
            INTERNAL::GraphicsObjectPrivateAccessor::priv(item)->deinit();
        });
    }
}

void WidgetPrivate::alarmEvent(const KORA::AlarmInfo &alarmInfo) const
{
    AlarmStatusIsChangedEvent event(AlarmStatusIsChangedEventData{alarmInfo});
    deliver(*this, event, &Widget::alarmStatusIsChangedEvent, &GraphicsObject::alarmStatusIsChangedEvent);
}

bool WidgetPrivate::isInsideDevProject() const
{
    return widgetActionManager
           && INTERNAL::WidgetActionManagerPrivateAccessor::priv(widgetActionManager)->isInsideDevProject();
}

// Widget ---------------------------------------------------------------------------------------------------

Widget::Widget(const KORA::WidgetData &data)
    : d(std::make_unique<WidgetPrivate>(this, data))
{}

Widget::~Widget() = default;

QString Widget::id() const
{
    return d->id;
}

QString Widget::version() const
{
    return d->version.version();
}

int Widget::versionMajor() const
{
    return static_cast<int>(d->version.versionMajor());
}

int Widget::versionMinor() const
{
    return static_cast<int>(d->version.versionMinor());
}

int Widget::versionPatch() const
{
    return static_cast<int>(d->version.versionPatch());
}

QList<KORA::GraphicsObject *> Widget::graphicsObjectsList() const
{
    return d->graphicsObjects;
}

KORA::WidgetActionManager *Widget::widgetActionManager() const
{
    return d->widgetActionManager;
}

QVariant Widget::getFieldValue(const QString &fieldId) const
{
    return d->getFieldValue(fieldId, false);
}

void Widget::setFieldValue(const QString &fieldId, const QVariant &value)
{
    d->setFieldValue(fieldId, value, false, true);
}

QIcon Widget::icon()
{
    return koraDefaultGalleryIcon();
}

bool Widget::koraEvent(KORA::Event *)
{
    return false;
}

void Widget::initEvent(KORA::InitEvent *) {}

void Widget::deinitEvent(KORA::DeinitEvent *) {}

void Widget::fieldIsChangedEvent(KORA::FieldIsChangedEvent *) {}

void Widget::alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *) {}

QVariant Widget::data(KORA::DataRole *role)
{
    return role->type() == DataRole::Icon ? QVariant::fromValue(icon()) : QVariant();
}

bool Widget::event(QEvent *event)
{
    return QObject::event(event);
}

} // namespace KORA
