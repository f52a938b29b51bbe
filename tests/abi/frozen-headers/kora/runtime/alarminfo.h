// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtGui/QColor>

#include <memory>

#include <kora/export.h>

namespace KORA {

class AlarmInfoData;
class AlarmInfoPrivate;

/// One alarm of the host as widgets see it. A value; widgets only read it and act on the alarm through
/// WidgetActionManager, by its name.
///
/// One object must not be read from two threads at once; separate copies may.
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

    /// Invalid, with default data.
    AlarmInfo();
    /// Valid, with a copy of the data.
    explicit AlarmInfo(const AlarmInfoData &data);
    AlarmInfo(const AlarmInfo &other);
    AlarmInfo &operator=(const AlarmInfo &other);
    virtual ~AlarmInfo();

    bool operator==(const AlarmInfo &other) const;
    bool operator!=(const AlarmInfo &other) const { return !(*this == other); }

    bool isValid() const;
    /// Also the identifier of the alarm, for WidgetActionManager::resetAlarm() and acknowAlarm().
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
    /// The tag that raised the alarm, and its value then.
    const QString &tagName() const;
    const QVariant &tagValue() const;

    bool triggered() const;
    bool acknowledged() const;
    bool enabled() const;

    /// The colour given for exactly that state, else an invalid one: no other state or map stands in.
    const QColor &backgroundColor(State state) const;
    const QColor &foregroundColor(State state) const;
    /// The colour given for the alarm's own state.
    const QColor &currentBackgroundColor() const;
    const QColor &currentForegroundColor() const;

    /// Builds an alarm from a host's map. The result is always valid; absent keys leave the defaults, unknown
    /// keys are ignored.
    ///
    /// Keys: "name", "description", "state", "timestamp", "groups", "customFields", "backgroundColor" and
    /// "foregroundColor" (StateColors), "acknowledgeEnabled", "blinkEnabled", "resetEnabled", "tagName",
    /// "tagValue", "severity". A "state" that does not convert gives StateDisabled.
    static AlarmInfo createAlarmInfo(const QVariantMap &map);

private:
    std::unique_ptr<AlarmInfoPrivate> d;
};

/// The data of an alarm.
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

} // namespace KORA

Q_DECLARE_METATYPE(KORA::AlarmInfo)
