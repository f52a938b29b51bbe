// SPDX-License-Identifier: Apache-2.0
#include <kora/runtime/alarminfo.h>

#include <QtCore/QMetaType>

namespace KORA {

class AlarmInfoPrivate
{
public:
    bool isValid = false;
    AlarmInfoData data;
};

namespace {

const QColor &colorOf(const AlarmInfo::StateColors &colors, AlarmInfo::State state, const QColor &none)
{
    const auto found = colors.constFind(state);
    return found == colors.constEnd() ? none : found.value();
}

// An absent key leaves the default; a value that does not convert gives the type's zero.
template<typename T>
void readKey(const QVariantMap &map, const char *key, T &field)
{
    const auto found = map.constFind(QLatin1String(key));
    if (found != map.constEnd()) {
        field = found.value().value<T>();
    }
}

QString timestampText(const QDateTime &timestamp)
{
    const int offset = timestamp.offsetFromUtc();
    return QStringLiteral("%1 %2%3").arg(timestamp.toString(Qt::ISODateWithMs),
                                         offset < 0 ? QString() : QStringLiteral("+"),
                                         QString::number(offset));
}

// As in core: equal colour maps in variants must compare equal from the start.
void registerAlarmMetaTypes()
{
    qRegisterMetaType<AlarmInfo>();
    qRegisterMetaType<AlarmInfo::State>();
    qRegisterMetaType<AlarmInfo::Severity>();
    qRegisterMetaType<AlarmInfo::StateColors>();
    QMetaType::registerEqualsComparator<AlarmInfo::StateColors>();
    QMetaType::registerEqualsComparator<AlarmInfo>();
}

Q_CONSTRUCTOR_FUNCTION(registerAlarmMetaTypes)

} // namespace

AlarmInfoData::AlarmInfoData() = default;
AlarmInfoData::~AlarmInfoData() = default;

bool AlarmInfoData::operator==(const AlarmInfoData &other) const
{
    return name == other.name && description == other.description && severity == other.severity
           && state == other.state && groups == other.groups && customFields == other.customFields
           && timestamp == other.timestamp && backgroundColors == other.backgroundColors
           && foregroundColors == other.foregroundColors && acknowledgeEnabled == other.acknowledgeEnabled
           && blinkEnabled == other.blinkEnabled && resetEnabled == other.resetEnabled
           && tagName == other.tagName && tagValue == other.tagValue;
}

AlarmInfo::AlarmInfo()
    : d(std::make_unique<AlarmInfoPrivate>())
{}

AlarmInfo::AlarmInfo(const AlarmInfoData &data)
    : AlarmInfo()
{
    d->isValid = true;
    d->data = data;
}

AlarmInfo::AlarmInfo(const AlarmInfo &other)
    : d(other.d ? std::make_unique<AlarmInfoPrivate>(*other.d) : std::make_unique<AlarmInfoPrivate>())
{}

AlarmInfo &AlarmInfo::operator=(const AlarmInfo &other)
{
    if (this != &other) {
        d = other.d ? std::make_unique<AlarmInfoPrivate>(*other.d) : std::make_unique<AlarmInfoPrivate>();
    }
    return *this;
}

AlarmInfo::~AlarmInfo() = default;

bool AlarmInfo::operator==(const AlarmInfo &other) const
{
    return d->isValid == other.d->isValid && d->data == other.d->data;
}

bool AlarmInfo::isValid() const
{
    return d->isValid;
}

const QString &AlarmInfo::name() const
{
    return d->data.name;
}

const QString &AlarmInfo::description() const
{
    return d->data.description;
}

AlarmInfo::Severity AlarmInfo::severity() const
{
    return d->data.severity;
}

const QStringList &AlarmInfo::groups() const
{
    return d->data.groups;
}

const QStringList &AlarmInfo::customFields() const
{
    return d->data.customFields;
}

AlarmInfo::State AlarmInfo::state() const
{
    return d->data.state;
}

const QDateTime &AlarmInfo::timestamp() const
{
    return d->data.timestamp;
}

const AlarmInfo::StateColors &AlarmInfo::backgroundColors() const
{
    return d->data.backgroundColors;
}

const AlarmInfo::StateColors &AlarmInfo::foregroundColors() const
{
    return d->data.foregroundColors;
}

bool AlarmInfo::acknowledgeEnabled() const
{
    return d->data.acknowledgeEnabled;
}

bool AlarmInfo::blinkEnabled() const
{
    return d->data.blinkEnabled;
}

bool AlarmInfo::resetEnabled() const
{
    return d->data.resetEnabled;
}

const QString &AlarmInfo::tagName() const
{
    return d->data.tagName;
}

const QVariant &AlarmInfo::tagValue() const
{
    return d->data.tagValue;
}

// The three predicates are arithmetic on the number, so that they also hold for states of a later host.

bool AlarmInfo::triggered() const
{
    return static_cast<unsigned int>(d->data.state) - 2U < 3U;
}

bool AlarmInfo::acknowledged() const
{
    return (static_cast<unsigned int>(d->data.state) & ~2U) == 4U;
}

bool AlarmInfo::enabled() const
{
    return d->data.state != StateDisabled;
}

const QColor &AlarmInfo::backgroundColor(State state) const
{
    static const QColor none;
    return colorOf(d->data.backgroundColors, state, none);
}

const QColor &AlarmInfo::foregroundColor(State state) const
{
    static const QColor none;
    return colorOf(d->data.foregroundColors, state, none);
}

const QColor &AlarmInfo::currentBackgroundColor() const
{
    return backgroundColor(d->data.state);
}

const QColor &AlarmInfo::currentForegroundColor() const
{
    return foregroundColor(d->data.state);
}

AlarmInfo AlarmInfo::createAlarmInfo(const QVariantMap &map)
{
    AlarmInfoData data;
    readKey(map, "name", data.name);
    readKey(map, "description", data.description);
    readKey(map, "state", data.state);
    readKey(map, "timestamp", data.timestamp);
    readKey(map, "groups", data.groups);
    readKey(map, "customFields", data.customFields);
    readKey(map, "backgroundColor", data.backgroundColors);
    readKey(map, "foregroundColor", data.foregroundColors);
    readKey(map, "acknowledgeEnabled", data.acknowledgeEnabled);
    readKey(map, "blinkEnabled", data.blinkEnabled);
    readKey(map, "resetEnabled", data.resetEnabled);
    readKey(map, "tagName", data.tagName);
    readKey(map, "severity", data.severity);
    data.tagValue = map.value(QStringLiteral("tagValue"));
    return AlarmInfo(data);
}

QDebug operator<<(QDebug debug, const AlarmInfo *alarm)
{
    const QDebugStateSaver saver(debug);
    debug.nospace() << "KORA::AlarmInfo"
                    << "("
                    << "isValid=" << alarm->isValid() << ",name=" << alarm->name()
                    << ",description=" << alarm->description() << ",severity=" << alarm->severity()
                    << ",groups="
                    << alarm->groups()
                    // The custom fields stand under the label of the groups: tools read the line that way.
                    << ",groups=" << alarm->customFields() << ",state=" << alarm->state()
                    << ",triggered=" << alarm->triggered() << ",acknowledged=" << alarm->acknowledged()
                    << ",enabled=" << alarm->enabled() << ",timestamp=" << timestampText(alarm->timestamp())
                    << ",currentBackgroundColor=" << alarm->currentBackgroundColor()
                    << ",currentForegroundColor=" << alarm->currentForegroundColor()
                    << ",backgroundColor=" << alarm->backgroundColors()
                    << ",foregroundColor=" << alarm->foregroundColors()
                    << ",acknowledgeEnabled=" << alarm->acknowledgeEnabled()
                    << ",blinkEnabled=" << alarm->blinkEnabled() << ",resetEnabled=" << alarm->resetEnabled()
                    << ",tagName=" << alarm->tagName() << ",tagValue=" << alarm->tagValue() << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const AlarmInfo &alarm)
{
    return std::move(debug) << &alarm;
}

} // namespace KORA
