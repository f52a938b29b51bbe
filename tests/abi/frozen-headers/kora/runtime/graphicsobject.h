// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QVariant>
#include <QtWidgets/QGraphicsObject>

#include <memory>

#include <kora/export.h>
#include <kora/runtime/datarole.h>
#include <kora/runtime/event.h>
#include <kora/runtime/widgetdata.h>

namespace KORA {

class GraphicsObjectPrivate;
class Widget;
class WidgetActionManager;

namespace INTERNAL {
class GraphicsObjectPrivateAccessor;
} // namespace INTERNAL

/// The item of a widget on the host's graphics scene: derive one class per widget, draw in paint().
///
/// Like a widget class it needs an invokable constructor whose argument type is written out in full:
///
///     class GaugeItem : public KORA::GraphicsObject
///     {
///         Q_OBJECT
///     public:
///         Q_INVOKABLE explicit GaugeItem(const KORA::GraphicsObjectData &data) : KORA::GraphicsObject(data) {}
///         void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
///     };
///
/// The item's rectangle starts at (0, 0) and has the size that the host gives it; before the first resize that
/// is (-1, -1). The host owns the item. Everything happens on the GUI thread.
class KORA_EXPORT GraphicsObject : public QGraphicsObject
{
    Q_OBJECT

public:
    enum OptionFlag : int {
        OptionTouchToMouse = 0x1 ///< turn the first touch point into left-button mouse events
    };
    Q_DECLARE_FLAGS(Options, OptionFlag)
    Q_FLAG(Options)

    explicit GraphicsObject(const KORA::GraphicsObjectData &data);
    ~GraphicsObject() override;

    QString id() const;
    QString version() const;
    int versionMajor() const;
    int versionMinor() const;
    int versionPatch() const;
    /// Width and height in pixels of the item.
    QSizeF size() const;

    QFlags<OptionFlag> options() const;
    void setOptions(const QFlags<OptionFlag> &options);
    void setOption(OptionFlag option, bool on);

    /// Makes the item selectable, focusable and a receiver of touch, or none of these. The accepted mouse
    /// buttons stay as they are.
    void setAcceptTouchAndMouseEvents(bool on);

    /// Null once the widget is deleted.
    KORA::Widget *widget() const;
    KORA::WidgetActionManager *widgetActionManager() const;

    /// As Widget::getFieldValue() and Widget::setFieldValue().
    QVariant getFieldValue(const QString &fieldId) const;
    void setFieldValue(const QString &fieldId, const QVariant &value);

    /// The gestures that the framework recognises, for grabGesture().
    static Qt::GestureType pan1TouchGestureType();
    static Qt::GestureType pan2TouchesGestureType();
    static Qt::GestureType pan3TouchesGestureType();
    static Qt::GestureType swipe1TouchGestureType();
    static Qt::GestureType swipe2TouchesGestureType();
    static Qt::GestureType swipe3TouchesGestureType();
    static Qt::GestureType pinchGestureType();

    using QGraphicsObject::data;

    QRectF boundingRect() const override;
    /// Sees every framework event first; true keeps it from the specific handler.
    virtual bool koraEvent(KORA::Event *event);
    virtual void initEvent(KORA::InitEvent *event);
    virtual void deinitEvent(KORA::DeinitEvent *event);
    virtual void resizeEvent(KORA::ResizeEvent *event);
    virtual void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event);
    virtual void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event);
    /// Answers a role of the host: the widget's icon for the icon role, else an invalid value.
    virtual QVariant data(KORA::DataRole *role);

    // Reserved for the framework: each calls QGraphicsItem's version.
    void advance(int phase) override;
    QPainterPath shape() const override;
    bool contains(const QPointF &point) const override;
    bool collidesWithItem(const QGraphicsItem *other, Qt::ItemSelectionMode mode) const override;
    bool collidesWithPath(const QPainterPath &path, Qt::ItemSelectionMode mode) const override;
    bool isObscuredBy(const QGraphicsItem *item) const override;
    QPainterPath opaqueArea() const override;
    int type() const override;

protected:
    bool sceneEvent(QEvent *event) override;

    bool sceneEventFilter(QGraphicsItem *watched, QEvent *event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;
    bool supportsExtension(Extension extension) const override;
    void setExtension(Extension extension, const QVariant &variant) override;
    QVariant extension(const QVariant &variant) const override;

private:
    friend class GraphicsObjectPrivate;
    friend class INTERNAL::GraphicsObjectPrivateAccessor;

    std::unique_ptr<GraphicsObjectPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(GraphicsObject::Options)

/// Sets the process's default gallery icon; the first call counts, later ones change nothing.
KORA_EXPORT void koraGraphicsObjectInit(const QIcon &icon);

/// A copy of the default gallery icon; null if none was set.
KORA_EXPORT QIcon koraDefaultGalleryIcon();

} // namespace KORA
