// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/graphicsobject.h>
#include <kora/runtime/graphicsobject_p.h>

#include <QtCore/QAtomicPointer>
#include <QtGui/QIcon>
#include <QtGui/QPainterPath>
#include <QtGui/QTouchEvent>

#include <kora/gestures/gesturetypes.h>
#include <kora/runtime/eventdelivery_p.h>
#include <kora/runtime/widget_p.h>

namespace KORA {

namespace {

// Lives until the end of the process, as a QIcon must not outlive the application that it would be freed after.
QAtomicPointer<QIcon> defaultGalleryIcon;

} // namespace

void koraGraphicsObjectInit(const QIcon &icon)
{
    auto *copy = new QIcon(icon);
    if (!defaultGalleryIcon.testAndSetOrdered(nullptr, copy)) {
        delete copy;
    }
}

QIcon koraDefaultGalleryIcon()
{
    const QIcon *icon = defaultGalleryIcon.loadAcquire();
    return icon ? *icon : QIcon();
}

namespace INTERNAL {

GraphicsObjectPrivate *GraphicsObjectPrivateAccessor::priv(GraphicsObject *object)
{
    return object->d.get();
}

} // namespace INTERNAL

// GraphicsObjectPrivate ------------------------------------------------------------------------------------

GraphicsObjectPrivate::GraphicsObjectPrivate(GraphicsObject *object, const GraphicsObjectData &data)
    : owner(object)
    , id(data.id)
    , version(data.version)
    , widget(data.widget)
    , widgetActionManager(data.widgetActionManager)
{}

void GraphicsObjectPrivate::init()
{
    if (initialised) {
        return;
    }
    initialised = true;
    InitEvent event{InitEventData()};
    deliverEvent(owner, event, &GraphicsObject::initEvent);
}

void GraphicsObjectPrivate::deinit()
{
    if (!initialised) {
        return;
    }
    initialised = false;
    DeinitEvent event{DeinitEventData()};
    deliverEvent(owner, event, &GraphicsObject::deinitEvent);
}

void GraphicsObjectPrivate::resize(const QSizeF &newSize)
{
    if (qFuzzyCompare(newSize.width(), size.width()) && qFuzzyCompare(newSize.height(), size.height())) {
        return;
    }
    ResizeEvent event(ResizeEventData{newSize, size});
    owner->prepareGeometryChange();
    size = newSize;
    deliverEvent(owner, event, &GraphicsObject::resizeEvent);
}

QVariant GraphicsObjectPrivate::getFieldValue(const QString &fieldId, bool fromHost) const
{
    return widget ? INTERNAL::WidgetPrivateAccessor::priv(widget)->getFieldValue(fieldId, fromHost)
                  : QVariant();
}

void GraphicsObjectPrivate::setFieldValue(const QString &fieldId, const QVariant &value, bool fromHost,
                                          bool sendEvent)
{
    if (widget) {
        INTERNAL::WidgetPrivateAccessor::priv(widget)->setFieldValue(fieldId, value, fromHost, sendEvent);
    }
}

// GraphicsObject -------------------------------------------------------------------------------------------

GraphicsObject::GraphicsObject(const KORA::GraphicsObjectData &data)
    : d(std::make_unique<GraphicsObjectPrivate>(this, data))
{
    setAcceptTouchEvents(true);
}

GraphicsObject::~GraphicsObject() = default;

QString GraphicsObject::id() const
{
    return d->id;
}

QString GraphicsObject::version() const
{
    return d->version.version();
}

int GraphicsObject::versionMajor() const
{
    return static_cast<int>(d->version.versionMajor());
}

int GraphicsObject::versionMinor() const
{
    return static_cast<int>(d->version.versionMinor());
}

int GraphicsObject::versionPatch() const
{
    return static_cast<int>(d->version.versionPatch());
}

QSizeF GraphicsObject::size() const
{
    return d->size;
}

QFlags<GraphicsObject::OptionFlag> GraphicsObject::options() const
{
    return d->options;
}

void GraphicsObject::setOptions(const QFlags<OptionFlag> &options)
{
    d->options = options;
}

void GraphicsObject::setOption(OptionFlag option, bool on)
{
    d->options.setFlag(option, on);
}

void GraphicsObject::setAcceptTouchAndMouseEvents(bool on)
{
    setFlag(ItemIsSelectable, on);
    setFlag(ItemIsFocusable, on);
    setAcceptTouchEvents(on);
}

KORA::Widget *GraphicsObject::widget() const
{
    return d->widget;
}

KORA::WidgetActionManager *GraphicsObject::widgetActionManager() const
{
    return d->widgetActionManager;
}

QVariant GraphicsObject::getFieldValue(const QString &fieldId) const
{
    return d->getFieldValue(fieldId, false);
}

void GraphicsObject::setFieldValue(const QString &fieldId, const QVariant &value)
{
    d->setFieldValue(fieldId, value, false, true);
}

Qt::GestureType GraphicsObject::pan1TouchGestureType()
{
    return gestureTypeForTouches(FirstPanGestureType, 1);
}

Qt::GestureType GraphicsObject::pan2TouchesGestureType()
{
    return gestureTypeForTouches(FirstPanGestureType, 2);
}

Qt::GestureType GraphicsObject::pan3TouchesGestureType()
{
    return gestureTypeForTouches(FirstPanGestureType, 3);
}

Qt::GestureType GraphicsObject::swipe1TouchGestureType()
{
    return gestureTypeForTouches(FirstSwipeGestureType, 1);
}

Qt::GestureType GraphicsObject::swipe2TouchesGestureType()
{
    return gestureTypeForTouches(FirstSwipeGestureType, 2);
}

Qt::GestureType GraphicsObject::swipe3TouchesGestureType()
{
    return gestureTypeForTouches(FirstSwipeGestureType, 3);
}

Qt::GestureType GraphicsObject::pinchGestureType()
{
    return static_cast<Qt::GestureType>(PinchGestureType);
}

QRectF GraphicsObject::boundingRect() const
{
    return {QPointF(0, 0), d->size};
}

bool GraphicsObject::koraEvent(KORA::Event *)
{
    return false;
}

void GraphicsObject::initEvent(KORA::InitEvent *) {}

void GraphicsObject::deinitEvent(KORA::DeinitEvent *) {}

void GraphicsObject::resizeEvent(KORA::ResizeEvent *) {}

void GraphicsObject::fieldIsChangedEvent(KORA::FieldIsChangedEvent *) {}

void GraphicsObject::alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *) {}

QVariant GraphicsObject::data(KORA::DataRole *role)
{
    return role->type() == DataRole::Icon && d->widget ? QVariant::fromValue(d->widget->icon()) : QVariant();
}

bool GraphicsObject::sceneEvent(QEvent *event)
{
    if (!d->options.testFlag(OptionTouchToMouse)) {
        return QGraphicsObject::sceneEvent(event);
    }
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
        if (event->spontaneous() && d->trackedTouchPointId != GraphicsObjectPrivate::noTouchPoint) {
            event->ignore(); // the press that the system makes of the touch being tracked
            return true;
        }
        break;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        if (d->touchToMouse(static_cast<QTouchEvent *>(event))) {
            return true;
        }
        break;
    default:
        break;
    }
    return QGraphicsObject::sceneEvent(event);
}

void GraphicsObject::advance(int phase)
{
    QGraphicsObject::advance(phase);
}

QPainterPath GraphicsObject::shape() const
{
    return QGraphicsObject::shape();
}

bool GraphicsObject::contains(const QPointF &point) const
{
    return QGraphicsObject::contains(point);
}

bool GraphicsObject::collidesWithItem(const QGraphicsItem *other, Qt::ItemSelectionMode mode) const
{
    return QGraphicsObject::collidesWithItem(other, mode);
}

bool GraphicsObject::collidesWithPath(const QPainterPath &path, Qt::ItemSelectionMode mode) const
{
    return QGraphicsObject::collidesWithPath(path, mode);
}

bool GraphicsObject::isObscuredBy(const QGraphicsItem *item) const
{
    return QGraphicsObject::isObscuredBy(item);
}

QPainterPath GraphicsObject::opaqueArea() const
{
    return QGraphicsObject::opaqueArea();
}

int GraphicsObject::type() const
{
    return QGraphicsObject::type();
}

bool GraphicsObject::sceneEventFilter(QGraphicsItem *watched, QEvent *event)
{
    return QGraphicsObject::sceneEventFilter(watched, event);
}

QVariant GraphicsObject::inputMethodQuery(Qt::InputMethodQuery query) const
{
    return QGraphicsObject::inputMethodQuery(query);
}

QVariant GraphicsObject::itemChange(GraphicsItemChange change, const QVariant &value)
{
    return QGraphicsObject::itemChange(change, value);
}

bool GraphicsObject::supportsExtension(Extension extension) const
{
    return QGraphicsObject::supportsExtension(extension);
}

void GraphicsObject::setExtension(Extension extension, const QVariant &variant)
{
    QGraphicsObject::setExtension(extension, variant);
}

QVariant GraphicsObject::extension(const QVariant &variant) const
{
    return QGraphicsObject::extension(variant);
}

} // namespace KORA
