// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/providers.h>

#include <kora/dev/providers/jsonvalues_p.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QScopedValueRollback>

namespace KORA {
namespace DEV {

namespace {

QJsonObject clockToJson(const BenchClock &clock, Providers::Scope scope)
{
    const BenchClock::State state = clock.state();
    QJsonObject object{{QStringLiteral("speed"), state.speed},
                       {QStringLiteral("seed"), static_cast<qint64>(state.seed)}};
    if (scope == Providers::EditsOnly) {
        return object;
    }
    object.insert(QStringLiteral("paused"), state.isPaused);
    object.insert(QStringLiteral("elapsed"), state.elapsed);
    if (state.start.isValid()) {
        object.insert(QStringLiteral("start"), state.start.toString(Qt::ISODateWithMs));
    }
    return object;
}

bool readClock(const QJsonObject &object, BenchClock::State &state, QString *problem)
{
    JsonEntries entries(object, problem);
    entries.allowOnly({"speed", "seed", "paused", "elapsed", "start"});
    state.speed = entries.number("speed", 1);
    if (!(state.speed >= BenchClock::MinimumSpeed && state.speed <= BenchClock::MaximumSpeed)) {
        entries.refuse("speed", Providers::tr("not a number from 0.1 to 100"));
    }
    state.seed = entries.seed("seed", 1);
    state.isPaused = entries.flag("paused", state.isPaused);
    if (entries.contains("elapsed") || entries.contains("start")) {
        state.elapsed = entries.wholeNumber("elapsed", 0);
        const QString start = entries.text("start", QString());
        state.start = QDateTime::fromString(start, Qt::ISODateWithMs);
        if (!start.isEmpty() && state.start.toString(Qt::ISODateWithMs) != start) {
            entries.refuse("start",
                           Providers::tr("\"%1\" is no time like 2024-03-04T12:00:00.000Z").arg(start));
        }
    }
    if (state.elapsed < 0 || state.elapsed > BenchClock::MaximumElapsed) {
        entries.refuse("elapsed", Providers::tr("not between 0 and %1").arg(BenchClock::MaximumElapsed));
    }
    return entries.isGood();
}

QJsonArray arrayOf(const QJsonObject &object, const char *key, QStringList &problems)
{
    const QJsonValue value = object.value(QLatin1String(key));
    if (!value.isUndefined() && !value.isArray()) {
        problems.append(Providers::tr("\"%1\": not a list").arg(QLatin1String(key)));
    }
    return value.toArray();
}

TagDefinition tag(const QString &name, INTERNAL::TagType type, const QVariant &value)
{
    TagDefinition tag;
    tag.name = name;
    tag.type = type;
    tag.value = value;
    return tag;
}

AlarmInfoData alarm(const QString &name, const QString &description, AlarmInfo::Severity severity,
                    const QColor &color)
{
    AlarmInfoData alarm;
    alarm.name = name;
    alarm.description = description;
    alarm.severity = severity;
    alarm.groups = QStringList{QStringLiteral("Plant")};
    alarm.acknowledgeEnabled = true;
    for (const AlarmInfo::State state :
         {AlarmInfo::StateTriggered, AlarmInfo::StateTriggeredNotAcknowledged}) {
        alarm.backgroundColors.insert(state, color);
        alarm.foregroundColors.insert(state, Qt::white);
    }
    return alarm;
}

} // namespace

Providers::Providers(QObject *parent)
    : QObject(parent)
    , m_tags(&m_clock)
    , m_trends(&m_clock, &m_tags)
    , m_alarms(&m_clock, &m_tags)
{
    connect(&m_clock, &BenchClock::speedChanged, this, &Providers::noteEdit);
    connect(&m_clock, &BenchClock::seedChanged, this, &Providers::noteEdit);
    connect(&m_tags, &TagTable::edited, this, &Providers::noteEdit);
    connect(&m_trends, &TrendTable::edited, this, &Providers::noteEdit);
    connect(&m_alarms, &AlarmTable::edited, this, &Providers::noteEdit);
    connect(&m_alarms, &AlarmTable::burstChanged, this, &Providers::noteEdit);
}

Providers::~Providers() = default;

void Providers::noteEdit()
{
    if (!m_isLoading) {
        Q_EMIT edited();
    }
}

void Providers::setFolder(const QString &folder)
{
    m_folder = folder;
    m_tags.setFolder(folder);
    m_trends.setFolder(folder);
}

QJsonObject Providers::toJson(Scope scope) const
{
    QJsonObject object{{QStringLiteral("clock"), clockToJson(m_clock, scope)},
                       {QStringLiteral("tags"), m_tags.toJson(scope == Everything)},
                       {QStringLiteral("trends"), m_trends.toJson()},
                       {QStringLiteral("alarms"), m_alarms.toJson()}};
    if (m_alarms.burstRate() > 0) {
        object.insert(QStringLiteral("burst"), m_alarms.burstRate());
    }
    return object;
}

bool Providers::fromJson(const QJsonObject &object, QStringList &problems)
{
    const int before = problems.size();
    BenchClock::State clock = m_clock.state();
    QVector<TagDefinition> tags;
    QVector<TrendDefinition> trends;
    QVector<AlarmInfoData> alarms;
    QString problem;
    JsonEntries entries(object, &problem);
    entries.allowOnly({"clock", "tags", "trends", "alarms", "burst"});
    const int burst = entries.integer("burst", 0);
    if (burst < 0 || burst > AlarmTable::MaximumBurst) {
        entries.refuse("burst", tr("not between 0 and %1").arg(AlarmTable::MaximumBurst));
    }
    const QJsonObject clockEntries = entries.object("clock");
    if (!entries.isGood()) {
        problems.append(problem);
    }
    if (!readClock(clockEntries, clock, &problem)) {
        problems.append(tr("clock: %1").arg(problem));
    }
    m_tags.read(arrayOf(object, "tags", problems), tags, problems);
    m_trends.read(arrayOf(object, "trends", problems), trends, problems);
    m_alarms.read(arrayOf(object, "alarms", problems), alarms, problems);
    if (problems.size() > before) {
        return false;
    }
    const QScopedValueRollback<bool> loading(m_isLoading, true);
    m_clock.restore(clock);
    m_tags.assign(tags);
    m_trends.assign(trends);
    m_alarms.assign(alarms);
    m_alarms.burst(burst);
    return true;
}

void Providers::addDefaults()
{
    const QScopedValueRollback<bool> loading(m_isLoading, true);
    TagDefinition level = tag(QStringLiteral("level"), INTERNAL::TagTypeDouble, 50);
    level.generator.kind = Generator::Sine;
    level.generator.period = 20000;
    TagDefinition speed = tag(QStringLiteral("speed"), INTERNAL::TagTypeInt, 0);
    speed.generator.kind = Generator::RandomWalk;
    speed.generator.period = 1000;
    speed.generator.maximum = 1500;
    m_tags.add(level);
    m_tags.add(speed);
    m_tags.add(tag(QStringLiteral("pump"), INTERNAL::TagTypeBool, true));
    m_tags.add(tag(QStringLiteral("message"), INTERNAL::TagTypeString, tr("Running")));
    TrendDefinition trend;
    trend.name = QStringLiteral("levelTrend");
    trend.tag = QStringLiteral("level");
    m_trends.add(trend);
    AlarmInfoData high = alarm(QStringLiteral("levelHigh"), tr("Level is high"), AlarmInfo::SeverityHigh,
                               QColor(0xc6, 0x28, 0x28));
    high.tagName = QStringLiteral("level");
    high.blinkEnabled = true;
    m_alarms.add(high);
    AlarmInfoData fault = alarm(QStringLiteral("pumpFault"), tr("Pump does not run"),
                                AlarmInfo::SeverityCritical, QColor(0x8e, 0x24, 0xaa));
    fault.tagName = QStringLiteral("pump");
    fault.resetEnabled = true;
    m_alarms.add(fault);
    AlarmInfoData service = alarm(QStringLiteral("serviceDue"), tr("Service is due"), AlarmInfo::SeverityLow,
                                  QColor(0x15, 0x65, 0xc0));
    service.acknowledgeEnabled = false;
    m_alarms.add(service);
}

} // namespace DEV
} // namespace KORA
