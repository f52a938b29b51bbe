// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/alarmjson_p.h>

#include <kora/dev/providers/jsonvalues_p.h>
#include <kora/dev/providers/tagvalues.h>

#include <QtCore/QJsonArray>
#include <QtCore/QMetaEnum>

namespace KORA {
namespace DEV {

namespace {

template<typename Enum>
QString keyOf(Enum value)
{
    return QLatin1String(QMetaEnum::fromType<Enum>().valueToKey(value));
}

template<typename Enum>
QStringList keysOf()
{
    const QMetaEnum meta = QMetaEnum::fromType<Enum>();
    QStringList keys;
    for (int i = 0; i < meta.keyCount(); ++i) {
        keys.append(QLatin1String(meta.key(i)));
    }
    return keys;
}

QJsonObject colorsToJson(const AlarmInfo::StateColors &colors)
{
    QJsonObject object;
    for (auto color = colors.cbegin(); color != colors.cend(); ++color) {
        object.insert(keyOf(color.key()), color->name(QColor::HexArgb));
    }
    return object;
}

bool isColorText(const QString &text)
{
    return text.startsWith(QLatin1Char('#')) && (text.size() == 7 || text.size() == 9)
           && QColor::isValidColor(text);
}

AlarmInfo::StateColors readColors(JsonEntries &entries, const char *key)
{
    AlarmInfo::StateColors colors;
    const QStringList states = keysOf<AlarmInfo::State>();
    const QJsonObject object = entries.object(key);
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        const int state = states.indexOf(entry.key());
        if (state < 0 || !isColorText(entry.value().toString())) {
            entries.refuse(key, state < 0
                                    ? AlarmJson::tr("there is no state %1").arg(entry.key())
                                    : AlarmJson::tr("%1 has no colour like #ffcc0000").arg(entry.key()));
            continue;
        }
        colors.insert(static_cast<AlarmInfo::State>(state), QColor(entry.value().toString()));
    }
    return colors;
}

QDateTime readTime(JsonEntries &entries)
{
    const QString text = entries.text("timestamp", QString());
    const QDateTime time = QDateTime::fromString(text, Qt::ISODateWithMs);
    // Qt passes over what comes after a time: only what it would write itself is one.
    if (!text.isEmpty() && time.toString(Qt::ISODateWithMs) != text) {
        entries.refuse("timestamp",
                       AlarmJson::tr("\"%1\" is no time like 2024-03-04T12:00:00.000Z").arg(text));
    }
    return time;
}

} // namespace

AlarmInfo::StateColors AlarmJson::storable(const AlarmInfo::StateColors &colors)
{
    AlarmInfo::StateColors storable;
    for (auto color = colors.cbegin(); color != colors.cend(); ++color) {
        if (color->isValid()) {
            storable.insert(color.key(), QColor::fromRgba(color->rgba()));
        }
    }
    return storable;
}

QJsonObject AlarmJson::write(const AlarmInfoData &alarm)
{
    QJsonObject object{{QStringLiteral("name"), alarm.name},
                       {QStringLiteral("description"), alarm.description},
                       {QStringLiteral("severity"), keyOf(alarm.severity)},
                       {QStringLiteral("state"), keyOf(alarm.state)},
                       {QStringLiteral("groups"), QJsonArray::fromStringList(alarm.groups)},
                       {QStringLiteral("customFields"), QJsonArray::fromStringList(alarm.customFields)},
                       {QStringLiteral("backgroundColors"), colorsToJson(alarm.backgroundColors)},
                       {QStringLiteral("foregroundColors"), colorsToJson(alarm.foregroundColors)},
                       {QStringLiteral("acknowledgeEnabled"), alarm.acknowledgeEnabled},
                       {QStringLiteral("blinkEnabled"), alarm.blinkEnabled},
                       {QStringLiteral("resetEnabled"), alarm.resetEnabled},
                       {QStringLiteral("tagName"), alarm.tagName},
                       {QStringLiteral("tagValue"), TagValues::typedToJson(alarm.tagValue)}};
    if (alarm.timestamp.isValid()) {
        object.insert(QStringLiteral("timestamp"), alarm.timestamp.toString(Qt::ISODateWithMs));
    }
    return object;
}

bool AlarmJson::read(const QJsonObject &object, AlarmInfoData &alarm, QString *problem)
{
    JsonEntries entries(object, problem);
    entries.allowOnly({"name", "description", "severity", "state", "groups", "customFields",
                       "backgroundColors", "foregroundColors", "acknowledgeEnabled", "blinkEnabled",
                       "resetEnabled", "tagName", "tagValue", "timestamp"});
    alarm.name = entries.text("name", QString());
    alarm.description = entries.text("description", QString());
    alarm.severity = static_cast<AlarmInfo::Severity>(
        entries.choice("severity", keysOf<AlarmInfo::Severity>(), alarm.severity));
    alarm.state =
        static_cast<AlarmInfo::State>(entries.choice("state", keysOf<AlarmInfo::State>(), alarm.state));
    alarm.groups = entries.texts("groups");
    alarm.customFields = entries.texts("customFields");
    alarm.timestamp = readTime(entries);
    alarm.backgroundColors = readColors(entries, "backgroundColors");
    alarm.foregroundColors = readColors(entries, "foregroundColors");
    alarm.acknowledgeEnabled = entries.flag("acknowledgeEnabled", false);
    alarm.blinkEnabled = entries.flag("blinkEnabled", false);
    alarm.resetEnabled = entries.flag("resetEnabled", false);
    alarm.tagName = entries.text("tagName", QString());
    const QJsonValue tagValue = object.value(QLatin1String("tagValue"));
    if (!tagValue.isUndefined() && !TagValues::typedFromJson(tagValue, alarm.tagValue)) {
        entries.refuse("tagValue", tr("not a value with its type, like {\"int\": 5}"));
    }
    return entries.isGood();
}

} // namespace DEV
} // namespace KORA
