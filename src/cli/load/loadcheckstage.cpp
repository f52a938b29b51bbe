// SPDX-License-Identifier: Apache-2.0
#include "loadcheckstage.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QStyleOptionGraphicsItem>

#include "loadchecklog.h"
#include "loadcheckrun.h"
#include "loadcheckvalues.h"
#include "picture/fieldsettings.h"

#include <cmath>
#include <limits>

using namespace KORA::INTERNAL;
using KORA::AlarmInfo;

namespace {

const QSizeF fallbackSize(100, 100); // for widgets without a default size
const int hugeCount = 5000;

QVariantMap trendEntry(const QDateTime &time, const QVariant &value)
{
    return {{QStringLiteral("time"), time}, {QStringLiteral("value"), value}};
}

QVariantList trend(const QDateTime &from, const QDateTime &to, int count)
{
    QVariantList entries;
    const qint64 step = from.msecsTo(to) / qMax(1, count);
    for (int i = 0; i < count; ++i) {
        entries.append(trendEntry(from.addMSecs(i * step), std::sin(i) * 10));
    }
    return entries;
}

QVariantList brokenTrend(const QDateTime &from, const QDateTime &to)
{
    return {QVariant(),
            1,
            QStringLiteral("entry"),
            QVariantMap(),
            trendEntry(to, QVariant()),
            trendEntry(from, QStringLiteral("text")),
            trendEntry(QDateTime(), std::numeric_limits<double>::quiet_NaN()),
            trendEntry(from, std::numeric_limits<double>::max())};
}

AlarmInfo longAlarm(int number)
{
    KORA::AlarmInfoData data;
    data.name = QStringLiteral("alarm %1 ").arg(number) + QString(200, QLatin1Char('W'));
    data.description = QString(2000, QLatin1Char('d'));
    data.state = static_cast<AlarmInfo::State>(number % 7);
    data.severity = static_cast<AlarmInfo::Severity>(number % 7);
    return AlarmInfo(data);
}

bool isFinite(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width())
           && std::isfinite(rect.height());
}

// Of faults of paint(), which nearly all checks call.
QString paintRule()
{
    return QStringLiteral("load-paint");
}

// What the host leaves in the painter, so that it sees which state the item leaves it in.
const qreal outerOpacity = 0.25;
const qreal innerOpacity = 0.75;

} // namespace

// CheckHost ------------------------------------------------------------------------------------------------

QVariant CheckHost::getTagValue(const QString &) const
{
    switch (answers) {
    case Nothing:
        return {};
    case Empty:
        return QString();
    case Usual:
        return 42.5;
    case Huge:
        return std::numeric_limits<double>::max();
    case Broken:
        break;
    }
    return QVariantList{QVariant(), QStringLiteral("text")};
}

QVariant CheckHost::getTrendValue(const QString &, const QDateTime &from, const QDateTime &to,
                                  unsigned int count, KORA::WidgetActionManager::TrendTimeFormat) const
{
    switch (answers) {
    case Nothing:
        return {};
    case Empty:
        return QVariantList();
    case Usual:
        return trend(from, to, static_cast<int>(qMin(count, 100U)));
    case Huge:
        return trend(from, to, hugeCount); // more than was asked for
    case Broken:
        break;
    }
    return brokenTrend(from, to);
}

QVector<AlarmInfo> CheckHost::getAlarms() const
{
    QVector<AlarmInfo> alarms;
    switch (answers) {
    case Nothing:
    case Empty:
        break;
    case Usual:
        for (int state = AlarmInfo::StateDisabled; state <= AlarmInfo::StateNotTriggeredAcknowledged;
             ++state) {
            alarms.append(alarmInState(static_cast<AlarmInfo::State>(state)));
        }
        break;
    case Huge:
        for (int i = 0; i < hugeCount; ++i) {
            alarms.append(longAlarm(i));
        }
        break;
    case Broken:
        alarms = {AlarmInfo(), alarmInState(static_cast<AlarmInfo::State>(99)), AlarmInfo()};
        break;
    }
    return alarms;
}

AlarmInfo alarmInState(AlarmInfo::State state)
{
    KORA::AlarmInfoData data;
    data.name = QStringLiteral("boiler.pressure %1").arg(static_cast<int>(state));
    data.description = QStringLiteral("Pressure is too high");
    data.severity = AlarmInfo::SeverityHigh;
    data.state = state;
    data.groups = QStringList(QStringLiteral("boiler"));
    data.customFields = QStringList(QStringLiteral("area 1"));
    data.timestamp = QDateTime(QDate(2024, 2, 29), QTime(12, 0), Qt::UTC);
    data.backgroundColors.insert(AlarmInfo::StateTriggered, Qt::red);
    data.foregroundColors.insert(AlarmInfo::StateTriggered, Qt::white);
    data.acknowledgeEnabled = true;
    data.blinkEnabled = true;
    data.resetEnabled = true;
    data.tagName = QStringLiteral("pressure");
    data.tagValue = 12.5;
    return AlarmInfo(data);
}

// CheckStage -----------------------------------------------------------------------------------------------

CheckStage::CheckStage(CheckRun &run, Mode mode)
    : m_run(run)
    , m_fieldInfo(run.widget().fieldInfo())
{
    host.isInEditor = mode == Editor;
}

CheckStage::~CheckStage()
{
    for (int i = 0; i < m_items.size(); ++i) {
        deleteItem(i);
    }
    deleteWidget();
    delete m_actionManager.data();
    settle();
}

bool CheckStage::makeWidget()
{
    const WidgetMetaInformation &info = m_run.widget();
    m_run.call(QStringLiteral("the widget's constructor"));
    auto *factory = WidgetLibraryPluginPrivateAccessor::priv(m_run.plugin().instance());
    QObject *object = factory->newWidgetInstance(info.id(), info.version().version(),
                                                 m_run.plugin().metaInformation()->id(), m_fieldInfo, &host);
    m_widget = qobject_cast<KORA::Widget *>(object);
    if (!m_widget) {
        delete object;
        return false;
    }
    m_actionManager = m_widget->widgetActionManager();
    QObject::connect(
        priv(), &KORA::WidgetPrivate::fieldIsChanged, &host,
        [this](const QString &fieldId, const QVariant &value) { fieldIsWritten(fieldId, value); });
    return true;
}

bool CheckStage::makeItem()
{
    m_run.call(QStringLiteral("the graphics object's constructor"));
    QObject *object = m_widget ? priv()->newGraphicsObjectInstance() : nullptr;
    const QPointer<KORA::GraphicsObject> item = qobject_cast<KORA::GraphicsObject *>(object);
    if (!item) {
        delete object;
        return false;
    }
    m_items.append(item);
    if (item->scene() || item->parentItem()) {
        m_run.error(
            QStringLiteral("its graphics object gives itself a scene or a parent item when it is made"),
            QStringLiteral("leave that to the host: it owns the item and puts it on its scene"));
    }
    m_scene.addItem(item);
    return true;
}

bool CheckStage::perform()
{
    if (!makeWidget() || !makeItem()) {
        return false;
    }
    setDefaults();
    resize(defaultSize());
    start();
    return true;
}

void CheckStage::setDefaults()
{
    if (m_widget) {
        m_run.call(QStringLiteral("fieldIsChangedEvent of all fields with their default values"));
        setDefaultValues(priv(), m_run.widget(), m_run.plugin().metaInformation()->defaultLanguage());
    }
}

void CheckStage::setField(const QString &fieldId, const QVariant &value)
{
    if (!m_widget) {
        return;
    }
    const QString text = shortText(value);
    m_run.call(QStringLiteral("fieldIsChangedEvent of %1 = %2").arg(fieldId, text), fieldId, text);
    QVariant stored;
    // The library would warn of a value that it refuses: here it is given on purpose.
    host.warnsOfFieldAccess = storedValue(fieldId, value, stored);
    const int type = m_run.widget().fields().value(fieldId).type();
    priv()->setFieldValue(
        fieldId, WidgetLibraryPluginUtils::fieldValueCheckBeforeSet(type, value, fieldId, m_run.widget()),
        true, true);
    host.warnsOfFieldAccess = true;
}

bool CheckStage::storedValue(const QString &fieldId, const QVariant &value, QVariant &stored) const
{
    const int type = m_run.widget().fields().value(fieldId).type();
    stored = WidgetLibraryPluginUtils::fieldValueCheckBeforeSet(type, value, fieldId, m_run.widget());
    return m_fieldInfo.value(fieldId).convertToFieldType(stored);
}

QVariant CheckStage::fieldValue(const QString &fieldId) const
{
    return m_widget ? priv()->getFieldValue(fieldId, true) : QVariant();
}

void CheckStage::start()
{
    if (m_widget) {
        m_run.call(QStringLiteral("initEvent"));
        priv()->init();
    }
}

void CheckStage::stop()
{
    if (m_widget) {
        m_run.call(QStringLiteral("deinitEvent"));
        priv()->deinit();
    }
}

void CheckStage::resize(const QSizeF &size)
{
    m_run.call(QStringLiteral("resizeEvent to %1x%2")
                   .arg(QString::number(size.width()), QString::number(size.height())));
    for (int i = 0; i < m_items.size(); ++i) {
        if (m_items.at(i)) {
            GraphicsObjectPrivateAccessor::priv(m_items.at(i))->resize(size);
        }
    }
}

void CheckStage::alarm(const AlarmInfo &alarm, const QString &description)
{
    if (m_widget) {
        m_run.call(QStringLiteral("alarmStatusIsChangedEvent of %1").arg(description));
        priv()->alarmEvent(alarm);
    }
}

void CheckStage::paint(const QSize &imageSize)
{
    paintItem(imageSize);
    if (!item()) {
        return;
    }
    QImage image(imageSize.expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    const QRectF area(image.rect());
    // What an item does to the painter is told above; the scene would have Qt tell it once more.
    m_run.log().muteQt(true);
    m_scene.render(&painter, area, area);
    painter.end();
    m_run.log().muteQt(false);
}

void CheckStage::paintItem(const QSize &imageSize)
{
    const QPointer<KORA::GraphicsObject> first = item();
    if (!first) {
        return;
    }
    m_run.call(QStringLiteral("paint at %1x%2")
                   .arg(QString::number(first->size().width()), QString::number(first->size().height())));
    QImage image(imageSize.expandedTo(QSize(1, 1)), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.save();
    painter.setOpacity(outerOpacity);
    painter.save();
    painter.setOpacity(innerOpacity);
    QStyleOptionGraphicsItem option;
    option.rect = first->boundingRect().toAlignedRect();
    option.exposedRect = first->boundingRect();
    first->paint(&painter, &option, nullptr);
    m_run.log().muteQt(true);
    if (!painter.isActive()) {
        m_run.error(QStringLiteral("its paint ends the painter"),
                    QStringLiteral("the painter is the host's: do not call end() or begin()"), paintRule());
    } else {
        painter.restore();
        if (painter.opacity() != outerOpacity) {
            m_run.error(QStringLiteral("its paint leaves the painter with a save() too much or too few"),
                        QStringLiteral("call restore() once for every save(), on every way out of paint"),
                        paintRule());
        }
        painter.end();
    }
    m_run.log().muteQt(false);
}

void CheckStage::settle(int milliseconds)
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (milliseconds > 0) {
        m_run.call(QStringLiteral("timers and posted events"));
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }
}

void CheckStage::deleteItem(int index)
{
    if (m_items.at(index)) {
        m_run.call(QStringLiteral("the graphics object's destructor"));
        if (m_items.at(index)->scene() == &m_scene) {
            m_scene.removeItem(m_items.at(index));
        }
        delete m_items.at(index).data();
    }
}

void CheckStage::deleteWidget()
{
    if (m_widget) {
        m_run.call(QStringLiteral("the widget's destructor"));
        delete m_widget.data();
    }
}

void CheckStage::verify()
{
    for (const QPointer<KORA::GraphicsObject> &item : qAsConst(m_items)) {
        verifyItem(item);
    }
    if (!m_widget) {
        m_run.error(QStringLiteral("it deletes itself"),
                    QStringLiteral("the host owns the widget and deletes it"));
    }
}

void CheckStage::verifyItem(const QPointer<KORA::GraphicsObject> &item)
{
    if (!item) {
        m_run.error(QStringLiteral("it deletes its graphics object"),
                    QStringLiteral("the host owns the item; setVisible(false) hides it"));
        return;
    }
    if (item->scene() != &m_scene || item->parentItem()) {
        m_run.error(
            QStringLiteral("its graphics object leaves the scene or the parent that the host gave it"),
            QStringLiteral("the host owns the item; make further items its children"));
    }
    m_run.call(QStringLiteral("boundingRect at %1x%2")
                   .arg(QString::number(item->size().width()), QString::number(item->size().height())));
    if (!isFinite(item->boundingRect())) {
        m_run.error(QStringLiteral("its boundingRect is not finite at the size %1x%2")
                        .arg(QString::number(item->size().width()), QString::number(item->size().height())),
                    QStringLiteral("a division by a width or height of 0 is the usual cause"));
    }
}

QSizeF CheckStage::defaultSize() const
{
    const QSizeF size = m_run.widget().defaultSize();
    return size.isEmpty() ? fallbackSize : size;
}

QSet<QString> CheckStage::takeWrittenFields()
{
    QSet<QString> fields;
    fields.swap(m_writtenFields);
    return fields;
}

KORA::WidgetPrivate *CheckStage::priv() const
{
    return WidgetPrivateAccessor::priv(m_widget);
}

void CheckStage::fieldIsWritten(const QString &fieldId, const QVariant &value)
{
    m_writtenFields.insert(fieldId);
    QVariant stored;
    const bool isNumber = value.type() == QVariant::Int || value.type() == QVariant::Double;
    if (isNumber && storedValue(fieldId, value, stored) && stored != value) {
        m_run.fieldError(fieldId, shortText(value),
                         QStringLiteral("it writes %1 to its field %2, whose bounds end at %3")
                             .arg(shortText(value), fieldId, shortText(stored)),
                         QStringLiteral("the library does not move what a widget writes into the bounds"),
                         QStringLiteral("load-bounds"));
    }
}
