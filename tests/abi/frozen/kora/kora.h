// SPDX-License-Identifier: Apache-2.0
//
// All of <kora/kora.h> as it was, written by scripts/update-abi --freeze-headers.
#pragma once
#include <QtCore/qglobal.h>
#if defined(KORA_BUILDING_LIBRARY)
#define KORA_EXPORT Q_DECL_EXPORT
#else
#define KORA_EXPORT Q_DECL_IMPORT
#endif
#include <QtCore/qnamespace.h>
namespace KORA {
enum GestureTypeNumber : int {
    FirstPanGestureType = 0x101,
    FirstSwipeGestureType = 0x104,
    PinchGestureType = 0x107,
    UnsupportedGestureType = 0x4E8
};
constexpr int MaximumGestureTouches = 3;
constexpr Qt::GestureType gestureTypeForTouches(GestureTypeNumber first, int touches)
{
    return static_cast<Qt::GestureType>(touches >= 1 && touches <= MaximumGestureTouches
                                            ? static_cast<int>(first) + touches - 1
                                            : static_cast<int>(UnsupportedGestureType));
}
}
#include <QtCore/QPointF>
#include <QtWidgets/QGesture>
#include <memory>
namespace KORA {
class PanGesturePrivate;
namespace INTERNAL {
class PanGesturePrivateAccessor;
}
class KORA_EXPORT PanGesture : public QGesture
{
    Q_OBJECT
    Q_PROPERTY(QPointF startPoint READ startPoint)
    Q_PROPERTY(QPointF lastOffset READ lastOffset)
    Q_PROPERTY(QPointF offset READ offset)
    Q_PROPERTY(QPointF delta READ delta)
public:
    explicit PanGesture(int touches, QObject *parent = nullptr);
    ~PanGesture() override;
    Qt::GestureType gestureType() const;
    QPointF startPoint() const;
    QPointF lastOffset() const;
    QPointF offset() const;
    QPointF delta() const;
private:
    friend class INTERNAL::PanGesturePrivateAccessor;
    std::unique_ptr<PanGesturePrivate> d;
};
KORA_EXPORT QDebug operator<<(QDebug debug, const PanGesture *gesture);
}
#include <QtCore/QPointF>
#include <QtWidgets/QGesture>
#include <memory>
namespace KORA {
class PinchGesturePrivate;
namespace INTERNAL {
class PinchGesturePrivateAccessor;
}
class KORA_EXPORT PinchGesture : public QGesture
{
    Q_OBJECT
public:
    enum ChangeFlag : int { ScaleFactorChanged = 0x1, RotationAngleChanged = 0x2, CenterPointChanged = 0x4 };
    Q_DECLARE_FLAGS(ChangeFlags, ChangeFlag)
    Q_FLAG(ChangeFlags)
    Q_PROPERTY(ChangeFlags totalChangeFlags READ totalChangeFlags)
    Q_PROPERTY(ChangeFlags changeFlags READ changeFlags)
    Q_PROPERTY(QPointF startCenterPoint READ startCenterPoint)
    Q_PROPERTY(QPointF lastCenterPoint READ lastCenterPoint)
    Q_PROPERTY(QPointF centerPoint READ centerPoint)
    Q_PROPERTY(qreal totalScaleFactor READ totalScaleFactor)
    Q_PROPERTY(qreal lastScaleFactor READ lastScaleFactor)
    Q_PROPERTY(qreal scaleFactor READ scaleFactor)
    Q_PROPERTY(qreal totalRotationAngle READ totalRotationAngle)
    Q_PROPERTY(qreal lastRotationAngle READ lastRotationAngle)
    Q_PROPERTY(qreal rotationAngle READ rotationAngle)
    explicit PinchGesture(QObject *parent = nullptr);
    ~PinchGesture() override;
    Qt::GestureType gestureType() const;
    ChangeFlags totalChangeFlags() const;
    ChangeFlags changeFlags() const;
    QPointF startCenterPoint() const;
    QPointF lastCenterPoint() const;
    QPointF centerPoint() const;
    qreal totalScaleFactor() const;
    qreal lastScaleFactor() const;
    qreal scaleFactor() const;
    qreal totalRotationAngle() const;
    qreal lastRotationAngle() const;
    qreal rotationAngle() const;
private:
    friend class INTERNAL::PinchGesturePrivateAccessor;
    std::unique_ptr<PinchGesturePrivate> d;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(PinchGesture::ChangeFlags)
KORA_EXPORT QDebug operator<<(QDebug debug, const PinchGesture *gesture);
}
#include <QtCore/QPointF>
#include <QtWidgets/QGesture>
#include <memory>
class QGraphicsObject;
class QGestureEvent;
namespace KORA {
class SwipeGesturePrivate;
namespace INTERNAL {
class SwipeGesturePrivateAccessor;
}
class KORA_EXPORT SwipeGesture : public QGesture
{
    Q_OBJECT
    Q_PROPERTY(QPointF startPoint READ startPoint)
    Q_PROPERTY(SwipeDirection horizontalDirection READ horizontalDirection)
    Q_PROPERTY(SwipeDirection verticalDirection READ verticalDirection)
    Q_PROPERTY(qreal swipeAngle READ swipeAngle)
    Q_PROPERTY(qreal velocity READ velocity)
public:
    enum SwipeDirection : int { NoDirection = 0, Left = 1, Right = 2, Up = 3, Down = 4 };
    Q_ENUM(SwipeDirection)
    explicit SwipeGesture(int touches, QObject *parent = nullptr);
    ~SwipeGesture() override;
    Qt::GestureType gestureType() const;
    QPointF startPoint() const;
    SwipeDirection horizontalDirection() const;
    SwipeDirection verticalDirection() const;
    qreal swipeAngle() const;
    qreal velocity() const;
    qreal mapSwipeAngleToGraphicsScene(QGestureEvent *event) const;
    SwipeDirection mapHorizontalDirectionToGraphicsScene(QGestureEvent *event) const;
    SwipeDirection mapVerticalDirectionToGraphicsScene(QGestureEvent *event) const;
    qreal mapSwipeAngleToGraphicsObject(QGestureEvent *event, QGraphicsObject *item) const;
    SwipeDirection mapHorizontalDirectionToGraphicsObject(QGestureEvent *event, QGraphicsObject *item) const;
    SwipeDirection mapVerticalDirectionToGraphicsObject(QGestureEvent *event, QGraphicsObject *item) const;
private:
    friend class INTERNAL::SwipeGesturePrivateAccessor;
    std::unique_ptr<SwipeGesturePrivate> d;
};
KORA_EXPORT QDebug operator<<(QDebug debug, const SwipeGesture *gesture);
}
namespace KORA {
KORA_EXPORT bool koraGesturesInit();
}
#include <QtCore/QDebug>
#include <QtCore/QMessageLogContext>
#include <QtCore/QString>
#include <memory>
namespace KORA {
class DebugPrivate;
class LogHandlerPrivate;
class KORA_EXPORT Debug
{
public:
    explicit Debug(QtMsgType type);
    Debug(const Debug &other);
    Debug(Debug &&other);
    Debug &operator=(const Debug &) = delete;
    ~Debug();
    QDebug &debug();
private:
    friend class LogHandler;
    explicit Debug(std::unique_ptr<DebugPrivate> d);
    std::unique_ptr<DebugPrivate> d;
};
class KORA_EXPORT LogHandler
{
public:
    LogHandler();
    LogHandler(const QString &sourceId, const char *file, int line, const char *function);
    LogHandler(const QString &sourceId, const char *file, int line, const char *function,
               const char *category);
    LogHandler(const LogHandler &) = delete;
    LogHandler &operator=(const LogHandler &) = delete;
    virtual ~LogHandler();
    Debug debug() const;
    Debug info() const;
    Debug warning() const;
    Debug critical() const;
    QNoDebug noDebug() const;
private:
    Debug message(QtMsgType type) const;
    std::unique_ptr<LogHandlerPrivate> d;
};
using LogMessageHandler = void (*)(int type, const QString &sourceId, const QString &formattedMessage,
                                   void *opaque);
KORA_EXPORT void koraInstallLogMessageHandlerPrivate(LogMessageHandler handler, void *opaque);
KORA_EXPORT void koraUninstallLogMessageHandlerPrivate();
KORA_EXPORT void koraSetLogMessagePattern(const QString &text);
}
KORA_EXPORT QString koraFormatLogMessage(QtMsgType type, const QMessageLogContext &context,
                                         const QString &message);
#define koraDebug(sourceId,category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).debug().debug()
#define koraInfo(sourceId,category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).info().debug()
#define koraWarning(sourceId,category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).warning().debug()
#define koraCritical(sourceId,category) \
    KORA::LogHandler((sourceId), __FILE__, __LINE__, Q_FUNC_INFO, (category)).critical().debug()
#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtGui/QColor>
#include <memory>
namespace KORA {
class AlarmInfoData;
class AlarmInfoPrivate;
class KORA_EXPORT AlarmInfo
{
    Q_GADGET
public:
    enum State : int {
        StateDisabled = 0,
        StateNotTriggered = 1,
        StateTriggered = 2,
        StateTriggeredNotAcknowledged = 3,
        StateTriggeredAcknowledged = 4,
        StateNotTriggeredNotAcknowledged = 5,
        StateNotTriggeredAcknowledged = 6
    };
    Q_ENUM(State)
    enum Severity : int {
        SeverityNotImportant = 0,
        SeverityLow = 1,
        SeverityBelowNormal = 2,
        SeverityNormal = 3,
        SeverityAboveNormal = 4,
        SeverityHigh = 5,
        SeverityCritical = 6
    };
    Q_ENUM(Severity)
    using StateColors = QMap<State, QColor>;
    AlarmInfo();
    explicit AlarmInfo(const AlarmInfoData &data);
    AlarmInfo(const AlarmInfo &other);
    AlarmInfo &operator=(const AlarmInfo &other);
    virtual ~AlarmInfo();
    bool operator==(const AlarmInfo &other) const;
    bool operator!=(const AlarmInfo &other) const { return !(*this == other); }
    bool isValid() const;
    const QString &name() const;
    const QString &description() const;
    Severity severity() const;
    const QStringList &groups() const;
    const QStringList &customFields() const;
    State state() const;
    const QDateTime &timestamp() const;
    const StateColors &backgroundColors() const;
    const StateColors &foregroundColors() const;
    bool acknowledgeEnabled() const;
    bool blinkEnabled() const;
    bool resetEnabled() const;
    const QString &tagName() const;
    const QVariant &tagValue() const;
    bool triggered() const;
    bool acknowledged() const;
    bool enabled() const;
    const QColor &backgroundColor(State state) const;
    const QColor &foregroundColor(State state) const;
    const QColor &currentBackgroundColor() const;
    const QColor &currentForegroundColor() const;
    static AlarmInfo createAlarmInfo(const QVariantMap &map);
private:
    std::unique_ptr<AlarmInfoPrivate> d;
};
class KORA_EXPORT AlarmInfoData
{
public:
    AlarmInfoData();
    AlarmInfoData(const AlarmInfoData &) = default;
    AlarmInfoData &operator=(const AlarmInfoData &) = default;
    ~AlarmInfoData();
    bool operator==(const AlarmInfoData &other) const;
    bool operator!=(const AlarmInfoData &other) const { return !(*this == other); }
    QString name;
    QString description;
    AlarmInfo::Severity severity = AlarmInfo::SeverityNotImportant;
    AlarmInfo::State state = AlarmInfo::StateNotTriggered;
    QStringList groups;
    QStringList customFields;
    QDateTime timestamp;
    QMap<AlarmInfo::State, QColor> backgroundColors;
    QMap<AlarmInfo::State, QColor> foregroundColors;
    bool acknowledgeEnabled = false;
    bool blinkEnabled = false;
    bool resetEnabled = false;
    QString tagName;
    QVariant tagValue;
};
KORA_EXPORT QDebug operator<<(QDebug debug, const AlarmInfo *alarm);
KORA_EXPORT QDebug operator<<(QDebug debug, const AlarmInfo &alarm);
}
Q_DECLARE_METATYPE(KORA::AlarmInfo)
#include <QtCore/QDebug>
#include <QtCore/QObject>
#include <memory>
namespace KORA {
class DataRolePrivate;
class KORA_EXPORT DataRole
{
    Q_GADGET
public:
    enum Type : int { Icon = 1 };
    Q_ENUM(Type)
    explicit DataRole(DataRole::Type type);
    DataRole(const DataRole &) = delete;
    DataRole &operator=(const DataRole &) = delete;
    virtual ~DataRole();
    DataRole::Type type() const;
private:
    std::unique_ptr<DataRolePrivate> d;
};
class IconDataRolePrivate;
class KORA_EXPORT IconDataRole : public DataRole
{
public:
    IconDataRole();
    ~IconDataRole() override;
private:
    std::unique_ptr<IconDataRolePrivate> d;
};
KORA_EXPORT QDebug operator<<(QDebug debug, const IconDataRole *role);
}
#include <QtCore/QDebug>
#include <QtCore/QObject>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <memory>
namespace KORA {
class EventData;
class EventPrivate;
class KORA_EXPORT Event
{
    Q_GADGET
public:
    enum Type : quint16 {
        InitEvent = 0,
        DeinitEvent = 1,
        Resize = 2,
        FieldIsChanged = 3,
        AlarmStatusIsChanged = 4
    };
    Q_ENUM(Type)
    explicit Event(const EventData &data);
    Event(const Event &) = delete;
    Event &operator=(const Event &) = delete;
    virtual ~Event();
    Event::Type type() const;
private:
    std::unique_ptr<EventPrivate> d;
};
class KORA_EXPORT EventData
{
public:
    Event::Type type = Event::InitEvent;
};
class KORA_EXPORT InitEventData
{};
class InitEventPrivate;
class KORA_EXPORT InitEvent : public Event
{
public:
    explicit InitEvent(const InitEventData &data);
    ~InitEvent() override;
private:
    std::unique_ptr<InitEventPrivate> d;
};
class KORA_EXPORT DeinitEventData
{};
class DeinitEventPrivate;
class KORA_EXPORT DeinitEvent : public Event
{
public:
    explicit DeinitEvent(const DeinitEventData &data);
    ~DeinitEvent() override;
private:
    std::unique_ptr<DeinitEventPrivate> d;
};
class KORA_EXPORT ResizeEventData
{
public:
    QSizeF size;
    QSizeF oldSize;
};
class ResizeEventPrivate;
class KORA_EXPORT ResizeEvent : public Event
{
public:
    explicit ResizeEvent(const ResizeEventData &data);
    ~ResizeEvent() override;
    QSizeF size() const;
    QSizeF oldSize() const;
private:
    std::unique_ptr<ResizeEventPrivate> d;
};
class KORA_EXPORT FieldIsChangedEventData
{
public:
    QString fieldId;
    QVariant value;
    QVariant oldValue;
};
class FieldIsChangedEventPrivate;
class KORA_EXPORT FieldIsChangedEvent : public Event
{
public:
    explicit FieldIsChangedEvent(const FieldIsChangedEventData &data);
    ~FieldIsChangedEvent() override;
    QString fieldId() const;
    QVariant value() const;
    QVariant oldValue() const;
private:
    std::unique_ptr<FieldIsChangedEventPrivate> d;
};
class KORA_EXPORT AlarmStatusIsChangedEventData
{
public:
    AlarmInfo alarmInfo;
};
class AlarmStatusIsChangedEventPrivate;
class KORA_EXPORT AlarmStatusIsChangedEvent : public Event
{
public:
    explicit AlarmStatusIsChangedEvent(const AlarmStatusIsChangedEventData &data);
    ~AlarmStatusIsChangedEvent() override;
    AlarmInfo alarmInfo() const;
private:
    std::unique_ptr<AlarmStatusIsChangedEventPrivate> d;
};
KORA_EXPORT QDebug operator<<(QDebug debug, const InitEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const DeinitEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const ResizeEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const FieldIsChangedEvent *event);
KORA_EXPORT QDebug operator<<(QDebug debug, const AlarmStatusIsChangedEvent *event);
}
namespace KORA {
namespace INTERNAL {
enum FieldType : int {
    FieldTypeUndefined = 0,
    FieldTypeString = 1,
    FieldTypeStringList = 2,
    FieldTypeStringMap = 3,
    FieldTypeInteger = 4,
    FieldTypeDouble = 5,
    FieldTypeBool = 6,
    FieldTypeOption = 7,
    FieldTypeColor = 8,
    FieldTypeFont = 9,
    FieldTypeImage = 10,
    FieldTypeTag = 11,
    FieldTypeTrend = 12
};
enum TagType : int {
    TagTypeNone = 0,
    TagTypeBool = 1,
    TagTypeByte = 2,
    TagTypeShort = 3,
    TagTypeInt = 4,
    TagTypeUByte = 5,
    TagTypeUShort = 6,
    TagTypeUInt = 7,
    TagTypeUInt64 = 8,
    TagTypeInt64 = 9,
    TagTypeFloat = 10,
    TagTypeDouble = 11,
    TagTypeString = 12,
    TagTypeArrayBool = 13,
    TagTypeArrayByte = 14,
    TagTypeArrayShort = 15,
    TagTypeArrayInt = 16,
    TagTypeArrayUByte = 17,
    TagTypeArrayUShort = 18,
    TagTypeArrayUInt = 19,
    TagTypeArrayUInt64 = 20,
    TagTypeArrayInt64 = 21,
    TagTypeArrayFloat = 22,
    TagTypeArrayDouble = 23
};
}
}
#include <QtCore/QMetaType>
class QVariant;
namespace KORA {
namespace INTERNAL {
class KORA_EXPORT FieldInfo
{
public:
    FieldInfo() = default;
    FieldInfo(bool setFieldValueIsEnabled, bool getFieldValueIsEnabled, bool isAdditionalInformation,
              FieldType fieldType, int metaType);
    bool setFieldValueIsEnabled() const { return m_setFieldValueIsEnabled; }
    bool getFieldValueIsEnabled() const { return m_getFieldValueIsEnabled; }
    bool isAdditionalInformation() const { return m_isAdditionalInformation; }
    FieldType fieldType() const { return m_fieldType; }
    int metaType() const { return m_metaType; }
    bool convertToFieldType(QVariant &value) const;
private:
    bool m_setFieldValueIsEnabled = false;
    bool m_getFieldValueIsEnabled = false;
    bool m_isAdditionalInformation = false;
    FieldType m_fieldType = FieldTypeUndefined;
    int m_metaType = QMetaType::UnknownType;
};
}
}
#include <QtCore/QString>
namespace KORA {
namespace INTERNAL {
class KORA_EXPORT VersionType
{
public:
    VersionType() = default;
    VersionType(unsigned int major, unsigned int minor, unsigned int patch);
    explicit VersionType(const QString &text);
    bool isValid() const { return !m_version.isEmpty(); }
    QString version() const { return m_version; }
    unsigned int versionMajor() const { return m_major; }
    unsigned int versionMinor() const { return m_minor; }
    unsigned int versionPatch() const { return m_patch; }
    bool operator==(const VersionType &other) const;
    bool operator!=(const VersionType &other) const { return !(*this == other); }
    bool operator<(const VersionType &other) const;
    bool operator<=(const VersionType &other) const { return *this == other || *this < other; }
    bool operator>(const VersionType &other) const { return other < *this; }
    bool operator>=(const VersionType &other) const { return *this == other || *this > other; }
private:
    unsigned int m_major = 0;
    unsigned int m_minor = 0;
    unsigned int m_patch = 0;
    QString m_version;
};
}
}
#include <QtCore/QMap>
#include <QtCore/QString>
struct QMetaObject;
namespace KORA {
class Widget;
class WidgetActionManager;
class WidgetData
{
public:
    QString id;
    INTERNAL::VersionType version;
    QString pluginId;
    QMap<QString, INTERNAL::FieldInfo> fieldInfo;
    const QMetaObject *graphicsObjectClass = nullptr;
    KORA::WidgetActionManager *widgetActionManager = nullptr;
};
class GraphicsObjectData
{
public:
    QString id;
    INTERNAL::VersionType version;
    KORA::Widget *widget = nullptr;
    KORA::WidgetActionManager *widgetActionManager = nullptr;
};
}
#include <QtCore/QVariant>
#include <QtWidgets/QGraphicsObject>
#include <memory>
namespace KORA {
class GraphicsObjectPrivate;
class Widget;
class WidgetActionManager;
namespace INTERNAL {
class GraphicsObjectPrivateAccessor;
}
class KORA_EXPORT GraphicsObject : public QGraphicsObject
{
    Q_OBJECT
public:
    enum OptionFlag : int {
        OptionTouchToMouse = 0x1
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
    QSizeF size() const;
    QFlags<OptionFlag> options() const;
    void setOptions(const QFlags<OptionFlag> &options);
    void setOption(OptionFlag option, bool on);
    void setAcceptTouchAndMouseEvents(bool on);
    KORA::Widget *widget() const;
    KORA::WidgetActionManager *widgetActionManager() const;
    QVariant getFieldValue(const QString &fieldId) const;
    void setFieldValue(const QString &fieldId, const QVariant &value);
    static Qt::GestureType pan1TouchGestureType();
    static Qt::GestureType pan2TouchesGestureType();
    static Qt::GestureType pan3TouchesGestureType();
    static Qt::GestureType swipe1TouchGestureType();
    static Qt::GestureType swipe2TouchesGestureType();
    static Qt::GestureType swipe3TouchesGestureType();
    static Qt::GestureType pinchGestureType();
    using QGraphicsObject::data;
    QRectF boundingRect() const override;
    virtual bool koraEvent(KORA::Event *event);
    virtual void initEvent(KORA::InitEvent *event);
    virtual void deinitEvent(KORA::DeinitEvent *event);
    virtual void resizeEvent(KORA::ResizeEvent *event);
    virtual void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event);
    virtual void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event);
    virtual QVariant data(KORA::DataRole *role);
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
KORA_EXPORT void koraGraphicsObjectInit(const QIcon &icon);
KORA_EXPORT QIcon koraDefaultGalleryIcon();
}
namespace KORA {
class KORA_EXPORT NullGraphicsObject : public GraphicsObject
{
    Q_OBJECT
public:
    Q_INVOKABLE explicit NullGraphicsObject(const KORA::GraphicsObjectData &data);
    ~NullGraphicsObject() override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
};
}
#include <QtCore/QObject>
#include <memory>
namespace KORA {
class PluginPrivate;
namespace INTERNAL {
class PluginPrivateAccessor;
}
class KORA_EXPORT Plugin : public QObject
{
    Q_OBJECT
public:
    explicit Plugin(QObject *parent = nullptr);
    ~Plugin() override;
    bool event(QEvent *event) override;
    virtual void aboutToLoad();
    virtual void load();
    virtual void aboutToUnload();
    virtual void unload();
private:
    friend class INTERNAL::PluginPrivateAccessor;
    std::unique_ptr<PluginPrivate> d;
};
}
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtGui/QIcon>
#include <memory>
namespace KORA {
class GraphicsObject;
class WidgetActionManager;
class WidgetPrivate;
namespace INTERNAL {
class WidgetPrivateAccessor;
}
class KORA_EXPORT Widget : public QObject
{
    Q_OBJECT
public:
    explicit Widget(const KORA::WidgetData &data);
    ~Widget() override;
    QString id() const;
    QString version() const;
    int versionMajor() const;
    int versionMinor() const;
    int versionPatch() const;
    QList<KORA::GraphicsObject *> graphicsObjectsList() const;
    KORA::WidgetActionManager *widgetActionManager() const;
    QVariant getFieldValue(const QString &fieldId) const;
    void setFieldValue(const QString &fieldId, const QVariant &value);
    virtual QIcon icon();
    virtual bool koraEvent(KORA::Event *event);
    virtual void initEvent(KORA::InitEvent *event);
    virtual void deinitEvent(KORA::DeinitEvent *event);
    virtual void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event);
    virtual void alarmStatusIsChangedEvent(KORA::AlarmStatusIsChangedEvent *event);
    virtual QVariant data(KORA::DataRole *role);
    bool event(QEvent *event) override;
private:
    friend class INTERNAL::WidgetPrivateAccessor;
    std::unique_ptr<WidgetPrivate> d;
};
}
#include <QtCore/QObject>
#include <QtCore/QVariant>
#include <QtCore/QVector>
#include <memory>
class QDateTime;
namespace KORA {
class WidgetActionManagerPrivate;
namespace INTERNAL {
class WidgetActionManagerImpl;
class WidgetActionManagerPrivateAccessor;
}
class KORA_EXPORT WidgetActionManager : public QObject
{
    Q_OBJECT
public:
    enum TrendTimeFormat : int { LocalTime = 0, UtcTime = 1 };
    Q_ENUM(TrendTimeFormat)
    explicit WidgetActionManager(INTERNAL::WidgetActionManagerImpl *impl, QObject *parent = nullptr);
    ~WidgetActionManager() override;
    QVariant getTagValue(const QString &tag) const;
    QVariant getTrendValue(const QString &tag, const QDateTime &from, const QDateTime &to, unsigned int count,
                           TrendTimeFormat format) const;
    QVector<AlarmInfo> getAlarms() const;
    void resetAlarm(const QString &alarm) const;
    void resetAllAlarms() const;
    void acknowAlarm(const QString &alarm) const;
    void acknowAllAlarms() const;
    bool isInsideProjectEditor() const;
private:
    friend class INTERNAL::WidgetActionManagerPrivateAccessor;
    std::unique_ptr<WidgetActionManagerPrivate> d;
};
}
#include <QtCore/QString>
#include <memory>
namespace KORA {
class Event;
class WidgetLibraryPluginPrivate;
namespace INTERNAL {
class WidgetLibraryPluginPrivateAccessor;
}
class KORA_EXPORT WidgetLibraryPlugin : public Plugin
{
    Q_OBJECT
public:
    explicit WidgetLibraryPlugin(QObject *parent = nullptr);
    ~WidgetLibraryPlugin() override;
    void registerWidget(const QString &id, const QString &version, const QMetaObject *widgetClass,
                        const QMetaObject *graphicsObjectClass);
    void registerProjectWidget(const QString &id, const QString &version, const QMetaObject *widgetClass);
    bool event(QEvent *event) override;
    virtual bool koraEvent(KORA::Event *event);
private:
    friend class INTERNAL::WidgetLibraryPluginPrivateAccessor;
    std::unique_ptr<WidgetLibraryPluginPrivate> d;
};
}
Q_DECLARE_INTERFACE(KORA::WidgetLibraryPlugin, "org.Vako.KORA.WidgetLibrary/1.0.0")
