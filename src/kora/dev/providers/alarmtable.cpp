// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/alarmtable.h>

#include <kora/dev/providers/alarmjson_p.h>
#include <kora/dev/providers/benchclock.h>
#include <kora/dev/providers/tagtable.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtGui/QBrush>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

const char *const stateTexts[AlarmTable::StateCount] = {
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Disabled"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Not triggered"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Triggered"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Triggered, not acknowledged"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Triggered, acknowledged"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Gone, not acknowledged"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Gone, acknowledged"),
};

const char *const severityTexts[AlarmTable::SeverityCount] = {
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Not important"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Low"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Below normal"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Normal"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Above normal"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "High"),
    QT_TRANSLATE_NOOP("KORA::DEV::AlarmTable", "Critical"),
};

AlarmInfoData storable(const AlarmInfoData &alarm)
{
    AlarmInfoData stored = alarm;
    stored.backgroundColors = AlarmJson::storable(alarm.backgroundColors);
    stored.foregroundColors = AlarmJson::storable(alarm.foregroundColors);
    return stored;
}

} // namespace

AlarmTable::AlarmTable(BenchClock *clock, TagTable *tags, QObject *parent)
    : ProviderTable(
        {{tr("Name"), tr("The name that widgets acknowledge and reset it by"), ProviderColumn::TextEditor},
         {tr("State"), tr("The present state, in its colours"), ProviderColumn::ChoiceEditor},
         {tr("Severity"), tr("How much the alarm matters"), ProviderColumn::ChoiceEditor},
         {tr("Time"), tr("When it was raised last, in UTC"), ProviderColumn::NoEditor},
         {tr("Description"), tr("What the operator reads"), ProviderColumn::TextEditor},
         {tr("Tag"), tr("The tag that raised it, and its value then"), ProviderColumn::NoEditor},
         {tr("Groups"), tr("The groups that the alarm belongs to"), ProviderColumn::NoEditor}},
        parent)
    , m_clock(clock)
    , m_tags(tags)
{
    connect(clock, &BenchClock::ticked, this, &AlarmTable::goOnWithBurst);
    connect(clock, &BenchClock::restarted, this,
            [this] { m_burstDone = m_clock->elapsed() * m_burstRate / 1000; });
    connect(tags, &TagTable::tagRenamed, this, &AlarmTable::followRename);
}

AlarmTable::~AlarmTable() = default;

QVector<AlarmInfo> AlarmTable::alarms() const
{
    QVector<AlarmInfo> alarms;
    alarms.reserve(m_alarms.size());
    for (const AlarmInfoData &alarm : m_alarms) {
        alarms.append(AlarmInfo(alarm));
    }
    return alarms;
}

AlarmInfoData AlarmTable::definition(const QString &name) const
{
    const int row = m_rows.value(name, -1);
    return row < 0 ? AlarmInfoData() : m_alarms.at(row);
}

bool AlarmTable::setDisabled(const QString &name, bool isDisabled)
{
    return act(isDisabled ? AlarmStates::Disable : AlarmStates::Enable, name);
}

bool AlarmTable::act(AlarmStates::Action action, const QString &name)
{
    const int row = m_rows.value(name, -1);
    if (row < 0 || !AlarmStates::hasEffect(action, m_alarms.at(row))) {
        return false;
    }
    AlarmInfoData alarm = m_alarms.at(row);
    alarm.state = AlarmStates::after(action, alarm);
    if (action == AlarmStates::Raise) {
        alarm.timestamp = m_clock->now();
        const QVariant value =
            m_tags->contains(alarm.tagName) ? m_tags->value(alarm.tagName) : alarm.tagValue;
        alarm.tagValue = value;
    }
    m_alarms[row] = alarm;
    touchRow(row);
    Q_EMIT alarmChanged(AlarmInfo(alarm));
    return true;
}

bool AlarmTable::actOnAll(AlarmStates::Action action)
{
    bool hasActed = false;
    const QStringList all = names();
    for (const QString &name : all) {
        hasActed = act(action, name) || hasActed;
    }
    return hasActed;
}

void AlarmTable::burst(int perSecond)
{
    const int rate = std::clamp(perSecond, 0, MaximumBurst);
    if (rate == m_burstRate) {
        return;
    }
    m_burstRate = rate;
    m_burstDone = m_clock->elapsed() * rate / 1000;
    Q_EMIT burstChanged(rate);
}

// Which change is due depends on the moment alone, so that a burst repeats as everything else does.
void AlarmTable::goOnWithBurst(qint64 elapsed)
{
    const qint64 due = elapsed * m_burstRate / 1000;
    const QStringList all = names();
    if (all.isEmpty() || m_burstRate == 0) {
        m_burstDone = due;
        return;
    }
    const qint64 most = m_burstRate; // after a long jump the changes of the last second do
    for (qint64 change = std::max(m_burstDone, due - most); change < due; ++change) {
        const QString &name = all.at(static_cast<int>(change % all.size()));
        if (!raise(name)) {
            clear(name);
        }
    }
    m_burstDone = due;
}

bool AlarmTable::isAddable(const AlarmInfoData &alarm, const QString &ownName, QString *problem) const
{
    QString reason;
    if (alarm.name.trimmed().isEmpty()) {
        reason = tr("the name is empty");
    } else if (alarm.name.size() > TagTable::LongestName) {
        reason = tr("the name is longer than %1 characters").arg(TagTable::LongestName);
    } else if (alarm.name != ownName && contains(alarm.name)) {
        reason = tr("there is an alarm of that name");
    } else if (alarm.state < 0 || alarm.state >= StateCount) {
        reason = tr("there is no state %1").arg(static_cast<int>(alarm.state));
    } else if (alarm.severity < 0 || alarm.severity >= SeverityCount) {
        reason = tr("there is no severity %1").arg(static_cast<int>(alarm.severity));
    }
    if (problem && !reason.isEmpty()) {
        *problem = tr("Alarm \"%1\": %2").arg(alarm.name, reason);
    }
    return reason.isEmpty();
}

bool AlarmTable::add(const AlarmInfoData &alarm, QString *problem)
{
    if (!isAddable(alarm, QString(), problem)) {
        return false;
    }
    beginInsertRows(QModelIndex(), rowCount(), rowCount());
    m_alarms.append(storable(alarm));
    indexRows();
    endInsertRows();
    Q_EMIT alarmsChanged();
    Q_EMIT alarmChanged(AlarmInfo(definition(alarm.name)));
    noteEdit();
    return true;
}

bool AlarmTable::remove(const QString &name)
{
    const int row = m_rows.value(name, -1);
    if (row < 0) {
        return false;
    }
    beginRemoveRows(QModelIndex(), row, row);
    m_alarms.removeAt(row);
    indexRows();
    endRemoveRows();
    Q_EMIT alarmsChanged();
    noteEdit();
    return true;
}

bool AlarmTable::edit(const QString &name, const AlarmInfoData &alarm, QString *problem)
{
    const int row = m_rows.value(name, -1);
    if (row < 0) {
        if (problem) {
            *problem = tr("Alarm \"%1\": there is no such alarm").arg(name);
        }
        return false;
    }
    if (!isAddable(alarm, name, problem)) {
        return false;
    }
    const AlarmInfoData stored = storable(alarm);
    if (stored == m_alarms.at(row)) {
        return true;
    }
    m_alarms[row] = stored;
    indexRows();
    rowChanged(row);
    Q_EMIT alarmsChanged();
    Q_EMIT alarmChanged(AlarmInfo(stored));
    noteEdit();
    return true;
}

QStringList AlarmTable::names() const
{
    QStringList names;
    for (const AlarmInfoData &alarm : m_alarms) {
        names.append(alarm.name);
    }
    return names;
}

QString AlarmTable::addNew()
{
    AlarmInfoData alarm;
    alarm.name = unusedName(QStringLiteral("alarm"));
    alarm.description = tr("New alarm");
    alarm.severity = AlarmInfo::SeverityNormal;
    alarm.acknowledgeEnabled = true;
    return add(alarm) ? alarm.name : QString();
}

QString AlarmTable::duplicate(const QString &name)
{
    AlarmInfoData copy = definition(name);
    copy.name = unusedName(name.left(TagTable::LongestName - 4));
    return contains(name) && add(copy) ? copy.name : QString();
}

void AlarmTable::followRename(const QString &from, const QString &to)
{
    for (int row = 0; row < m_alarms.size(); ++row) {
        if (m_alarms.at(row).tagName == from) {
            m_alarms[row].tagName = to;
            rowChanged(row);
            Q_EMIT alarmChanged(AlarmInfo(m_alarms.at(row)));
        }
    }
}

void AlarmTable::indexRows()
{
    m_rows.clear();
    for (int row = 0; row < m_alarms.size(); ++row) {
        m_rows.insert(m_alarms.at(row).name, row);
    }
}

QJsonArray AlarmTable::toJson() const
{
    QJsonArray array;
    for (const AlarmInfoData &alarm : m_alarms) {
        array.append(AlarmJson::write(alarm));
    }
    return array;
}

bool AlarmTable::read(const QJsonArray &array, QVector<AlarmInfoData> &alarms, QStringList &problems) const
{
    QSet<QString> taken;
    const int before = problems.size();
    for (int i = 0; i < array.size(); ++i) {
        AlarmInfoData alarm;
        QString problem;
        bool isGood = AlarmJson::read(array.at(i).toObject(), alarm, &problem);
        if (isGood && (alarm.name.trimmed().isEmpty() || alarm.name.size() > TagTable::LongestName)) {
            isGood = false;
            problem = tr("\"name\": empty, or longer than 200 characters");
        } else if (isGood && taken.contains(alarm.name)) {
            isGood = false;
            problem = tr("\"name\": two alarms have this name");
        }
        taken.insert(alarm.name);
        if (!isGood) {
            problems.append(tr("alarms[%1] \"%2\": %3").arg(QString::number(i), alarm.name, problem));
        }
        alarms.append(alarm);
    }
    return problems.size() == before;
}

void AlarmTable::assign(const QVector<AlarmInfoData> &alarms)
{
    if (alarms == m_alarms) {
        return;
    }
    const QVector<AlarmInfoData> before = m_alarms;
    const QStringList namesBefore = names();
    beginResetModel();
    m_alarms = alarms;
    indexRows();
    endResetModel();
    Q_EMIT alarmsChanged();
    for (const AlarmInfoData &alarm : alarms) {
        if (before.value(namesBefore.indexOf(alarm.name)) != alarm) {
            Q_EMIT alarmChanged(AlarmInfo(alarm));
        }
    }
}

QString AlarmTable::stateText(AlarmInfo::State state)
{
    return state >= 0 && state < StateCount ? tr(stateTexts[state]) : QString();
}

QString AlarmTable::severityText(AlarmInfo::Severity severity)
{
    return severity >= 0 && severity < SeverityCount ? tr(severityTexts[severity]) : QString();
}

int AlarmTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_alarms.size();
}

QVariant AlarmTable::displayed(const AlarmInfoData &alarm, int column) const
{
    switch (column) {
    case NameColumn:
        return alarm.name;
    case StateColumn:
        return stateText(alarm.state);
    case SeverityColumn:
        return severityText(alarm.severity);
    case TimeColumn:
        return alarm.timestamp.toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
    case DescriptionColumn:
        return alarm.description;
    case TagColumn:
        return alarm.tagName;
    default:
        return alarm.groups.join(QStringLiteral(", "));
    }
}

QVariant AlarmTable::editable(const AlarmInfoData &alarm, int column) const
{
    switch (column) {
    case StateColumn:
        return static_cast<int>(alarm.state);
    case SeverityColumn:
        return static_cast<int>(alarm.severity);
    default:
        return displayed(alarm, column);
    }
}

QVariant AlarmTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return QVariant();
    }
    const int column = index.column();
    const AlarmInfoData &alarm = m_alarms.at(index.row());
    const auto colorOf = [&](const AlarmInfo::StateColors &colors) {
        return column == StateColumn && colors.contains(alarm.state)
                   ? QVariant(QBrush(colors.value(alarm.state)))
                   : QVariant();
    };
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return displayed(alarm, column);
    case Qt::EditRole:
        return editable(alarm, column);
    case Qt::BackgroundRole:
        return colorOf(alarm.backgroundColors);
    case Qt::ForegroundRole:
        return colorOf(alarm.foregroundColors);
    case EditorRole:
        return editorOf(index.row(), column);
    case ChoicesRole: {
        QStringList texts;
        const int count = column == StateColumn ? StateCount : SeverityCount;
        for (int i = 0; i < count; ++i) {
            texts.append(column == StateColumn ? stateText(static_cast<AlarmInfo::State>(i))
                                               : severityText(static_cast<AlarmInfo::Severity>(i)));
        }
        return texts;
    }
    default:
        return QVariant();
    }
}

bool AlarmTable::setCell(int row, int column, const QVariant &value, QString *problem)
{
    AlarmInfoData alarm = m_alarms.at(row);
    const QString name = alarm.name;
    switch (column) {
    case NameColumn:
        alarm.name = value.toString().trimmed();
        break;
    case StateColumn:
        alarm.state = static_cast<AlarmInfo::State>(value.toInt());
        break;
    case SeverityColumn:
        alarm.severity = static_cast<AlarmInfo::Severity>(value.toInt());
        break;
    case DescriptionColumn:
        alarm.description = value.toString();
        break;
    default:
        return false;
    }
    return edit(name, alarm, problem);
}

} // namespace DEV
} // namespace KORA
