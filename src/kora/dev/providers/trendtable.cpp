// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/trendtable.h>

#include <kora/dev/providers/benchclock.h>
#include <kora/dev/providers/generatorcells_p.h>
#include <kora/dev/providers/jsonvalues_p.h>
#include <kora/dev/providers/tagtable.h>
#include <kora/dev/providers/tagvalues.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <cmath>

namespace KORA {
namespace DEV {

namespace {

constexpr int GapCycle = 20;
constexpr int ValuesBeforeGap = 15;

qint64 roundedDown(qint64 number, qint64 step)
{
    const qint64 remainder = number % step;
    return number - (remainder < 0 ? remainder + step : remainder);
}

qint64 roundedUp(qint64 number, qint64 step)
{
    return -roundedDown(-number, step);
}

bool isInGap(qint64 time, int interval)
{
    const qint64 place = roundedDown(time, interval) / interval;
    return place - roundedDown(place, GapCycle) >= ValuesBeforeGap;
}

bool isUsed(const TrendDefinition &trend, int column)
{
    if (column == TrendTable::TagColumn) {
        return trend.source == TrendDefinition::FromTag;
    }
    if (column < TrendTable::GeneratorColumn) {
        return true;
    }
    const bool isConstant = trend.generator.kind == Generator::Constant;
    return trend.source == TrendDefinition::FromGenerator
           && (GeneratorCells::isUsed(trend.generator, column - TrendTable::GeneratorColumn)
               || (isConstant && column == TrendTable::MinimumColumn)); // the value of a constant trend
}

QVector<ProviderColumn> columns()
{
    return QVector<ProviderColumn>{
               {TrendTable::tr("Name"), TrendTable::tr("The name that widgets ask for"),
                ProviderColumn::TextEditor},
               {TrendTable::tr("Source"),
                TrendTable::tr("What is recorded: a tag, or a generator of the trend's own"),
                ProviderColumn::ChoiceEditor},
               {TrendTable::tr("Tag"), TrendTable::tr("The tag whose values are recorded"),
                ProviderColumn::ChoiceEditor},
               {TrendTable::tr("Interval"), TrendTable::tr("Time between two recorded values"),
                ProviderColumn::WholeNumberEditor},
               {TrendTable::tr("Gaps"),
                TrendTable::tr("On: of every 20 values in a row the last 5 are missing"),
                ProviderColumn::CheckEditor},
               {TrendTable::tr("Delay"), TrendTable::tr("The latest values are missing for this long"),
                ProviderColumn::WholeNumberEditor},
               {TrendTable::tr("Too many"),
                TrendTable::tr("On: answers with twice as many values as were asked for"),
                ProviderColumn::CheckEditor},
               {TrendTable::tr("Empty"), TrendTable::tr("On: answers with no values at all"),
                ProviderColumn::CheckEditor}}
           + GeneratorCells::columns();
}

bool isWithin(int number, int minimum, int maximum, const QString &what, QString *reason)
{
    if (number >= minimum && number <= maximum) {
        return true;
    }
    *reason = TrendTable::tr("%1: %2 ms is not between %3 ms and %4 ms")
                  .arg(what, QString::number(number), QString::number(minimum), QString::number(maximum));
    return false;
}

bool hasUsableInterval(const TrendDefinition &trend, QString *reason)
{
    return isWithin(trend.interval, TrendDefinition::MinimumInterval, TrendDefinition::MaximumInterval,
                    TrendTable::tr("Interval"), reason);
}

bool hasUsableDelay(const TrendDefinition &trend, QString *reason)
{
    return isWithin(trend.delay, 0, TrendDefinition::MaximumDelay, TrendTable::tr("Delay"), reason);
}

bool readTrend(const QJsonObject &object, const QSet<QString> &taken, TrendDefinition &trend,
               QString *problem)
{
    JsonEntries entries(object, problem);
    entries.allowOnly(
        {"name", "source", "tag", "generator", "interval", "delay", "gaps", "tooMany", "empty"});
    trend.name = entries.text("name", QString());
    const QStringList sources{QStringLiteral("tag"), QStringLiteral("generator")};
    trend.source = static_cast<TrendDefinition::Source>(entries.choice("source", sources, trend.source));
    trend.tag = entries.text("tag", QString());
    trend.interval = entries.integer("interval", trend.interval);
    trend.delay = entries.integer("delay", trend.delay);
    trend.hasGaps = entries.flag("gaps", false);
    trend.hasTooMany = entries.flag("tooMany", false);
    trend.answersEmpty = entries.flag("empty", false);
    QString reason;
    if (!trend.generator.fromJson(entries.object("generator"), &reason)) {
        entries.refuse("generator", reason);
    }
    if (!hasUsableInterval(trend, &reason)) {
        entries.refuse("interval", reason);
    }
    if (!hasUsableDelay(trend, &reason)) {
        entries.refuse("delay", reason);
    }
    if (taken.contains(trend.name)) {
        entries.refuse("name", TrendTable::tr("two trends have this name"));
    } else if (trend.name.trimmed().isEmpty() || trend.name.size() > TagTable::LongestName) {
        entries.refuse("name", TrendTable::tr("empty, or longer than 200 characters"));
    }
    return entries.isGood();
}

} // namespace

struct TrendTable::Entry
{
    TrendDefinition definition;
    GeneratorSource source;
    QString problem;
};

/// In milliseconds after the clock's start.
struct TrendTable::Span
{
    qint64 from;
    qint64 to;
    qint64 count;
    KORA::WidgetActionManager::TrendTimeFormat format;

    QVariantMap point(const BenchClock *clock, qint64 time, const QVariant &value) const
    {
        const QDateTime moment = clock->start().addMSecs(time);
        return {{QStringLiteral("time"),
                 format == KORA::WidgetActionManager::UtcTime ? moment.toUTC() : moment.toLocalTime()},
                {QStringLiteral("value"), value}};
    }
};

bool TrendDefinition::operator==(const TrendDefinition &other) const
{
    return name == other.name && source == other.source && tag == other.tag && generator == other.generator
           && interval == other.interval && delay == other.delay && hasGaps == other.hasGaps
           && hasTooMany == other.hasTooMany && answersEmpty == other.answersEmpty;
}

TrendTable::TrendTable(BenchClock *clock, TagTable *tags, QObject *parent)
    : ProviderTable(columns(), parent)
    , m_clock(clock)
    , m_tags(tags)
{
    connect(tags, &TagTable::tagRenamed, this, &TrendTable::followRename);
    connect(tags, &TagTable::tagsChanged, this, [this] {
        for (int row = 0; row < rowCount(); ++row) {
            touchRow(row); // whether the tag exists is part of what is shown
        }
    });
}

TrendTable::~TrendTable() = default;

const TrendTable::Entry *TrendTable::find(const QString &name) const
{
    const auto found = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [&](const Entry &entry) { return entry.definition.name == name; });
    return found == m_entries.cend() ? nullptr : &*found;
}

QVariant TrendTable::trendValue(const QString &name, const QDateTime &from, const QDateTime &to,
                                unsigned int count, KORA::WidgetActionManager::TrendTimeFormat format) const
{
    if (!find(name)) {
        return QVariant();
    }
    const QVariantList answer = values(name, from, to, count, format);
    m_questions.insert(name, {from, to, count, answer.size()});
    Q_EMIT asked(name, from, to, count);
    return answer;
}

QVariantList TrendTable::values(const QString &name, const QDateTime &from, const QDateTime &to,
                                unsigned int count, KORA::WidgetActionManager::TrendTimeFormat format) const
{
    const Entry *entry = find(name);
    if (!entry || entry->definition.answersEmpty || !from.isValid() || !to.isValid() || count == 0) {
        return {};
    }
    const qint64 latest = m_clock->elapsed() - entry->definition.delay;
    const Span span{m_clock->start().msecsTo(from), std::min(m_clock->start().msecsTo(to), latest),
                    std::min(static_cast<qint64>(count), static_cast<qint64>(MaximumValues)), format};
    if (span.from > span.to) {
        return {};
    }
    return entry->definition.hasTooMany ? tooMany(*entry, span) : recorded(*entry, span);
}

QVariantList TrendTable::recorded(const Entry &entry, const Span &span) const
{
    const TrendDefinition &trend = entry.definition;
    const qint64 interval = trend.interval;
    // The places are multiples of the step, so that a chart does not flicker while its window moves.
    qint64 step = std::max(interval, roundedUp((span.to - span.from) / span.count, interval));
    while (roundedDown(span.to, step) / step - roundedUp(span.from, step) / step + 1 > span.count) {
        step += interval;
    }
    QVariantList points;
    for (qint64 time = roundedUp(span.from, step); time <= span.to; time += step) {
        const QVariant value =
            trend.hasGaps && isInGap(time, trend.interval) ? QVariant() : valueAt(entry, time);
        if (value.isValid()) {
            points.append(span.point(m_clock, time, value));
        }
    }
    return points;
}

QVariantList TrendTable::tooMany(const Entry &entry, const Span &span) const
{
    QVariantList points;
    const qint64 count = 2 * span.count;
    for (qint64 i = 0; i < count; ++i) {
        const double share = static_cast<double>(i) / static_cast<double>(count);
        const qint64 time = span.from + static_cast<qint64>(share * static_cast<double>(span.to - span.from));
        const QVariant value = valueAt(entry, time);
        if (value.isValid()) {
            points.append(span.point(m_clock, time, value));
        }
    }
    return points;
}

QVariant TrendTable::valueAt(const Entry &entry, qint64 elapsed) const
{
    if (entry.definition.source == TrendDefinition::FromTag) {
        return m_tags->pastValue(entry.definition.tag, elapsed);
    }
    const double number = entry.source.numberAt(elapsed, m_clock->seed());
    return std::isnan(number) ? QVariant() : QVariant(number);
}

QVariant TrendTable::presentValue(const QString &name) const
{
    const Entry *entry = find(name);
    return entry ? valueAt(*entry, m_clock->elapsed()) : QVariant();
}

const TrendTable::Question *TrendTable::lastQuestion(const QString &name) const
{
    const auto found = m_questions.constFind(name);
    return found == m_questions.cend() ? nullptr : &found.value();
}

bool TrendTable::isAddable(const TrendDefinition &definition, const QString &ownName, QString *problem) const
{
    QString reason;
    if (definition.name.trimmed().isEmpty()) {
        reason = tr("the name is empty");
    } else if (definition.name.size() > TagTable::LongestName) {
        reason = tr("the name is longer than %1 characters").arg(TagTable::LongestName);
    } else if (definition.name != ownName && contains(definition.name)) {
        reason = tr("there is a trend of that name");
    } else if (definition.source < TrendDefinition::FromTag
               || definition.source > TrendDefinition::FromGenerator) {
        reason = tr("there is no source %1").arg(static_cast<int>(definition.source));
    } else if (hasUsableInterval(definition, &reason) && hasUsableDelay(definition, &reason)) {
        definition.generator.isUsable(&reason);
    }
    if (problem && !reason.isEmpty()) {
        *problem = tr("Trend \"%1\": %2").arg(definition.name, reason);
    }
    return reason.isEmpty();
}

void TrendTable::openSource(Entry &entry) const
{
    QString reason;
    const TrendDefinition &trend = entry.definition;
    entry.problem.clear();
    if (trend.source == TrendDefinition::FromGenerator
        && !entry.source.open(trend.generator, m_folder, &reason)) {
        entry.problem = tr("Trend \"%1\": %2").arg(trend.name, reason);
    }
}

bool TrendTable::add(const TrendDefinition &definition, QString *problem)
{
    if (!isAddable(definition, QString(), problem)) {
        return false;
    }
    Entry entry;
    entry.definition = definition;
    openSource(entry);
    beginInsertRows(QModelIndex(), rowCount(), rowCount());
    m_entries.push_back(entry);
    endInsertRows();
    Q_EMIT trendsChanged();
    noteEdit();
    return true;
}

bool TrendTable::remove(const QString &name)
{
    const int row = rowOf(name);
    if (row < 0) {
        return false;
    }
    beginRemoveRows(QModelIndex(), row, row);
    m_entries.erase(m_entries.begin() + row);
    endRemoveRows();
    m_questions.remove(name);
    Q_EMIT trendsChanged();
    noteEdit();
    return true;
}

bool TrendTable::edit(const QString &name, const TrendDefinition &definition, QString *problem)
{
    const int row = rowOf(name);
    if (row < 0) {
        if (problem) {
            *problem = tr("Trend \"%1\": there is no such trend").arg(name);
        }
        return false;
    }
    if (!isAddable(definition, name, problem)) {
        return false;
    }
    Entry &entry = m_entries[static_cast<std::size_t>(row)];
    entry.definition = definition;
    openSource(entry);
    if (definition.name != name && m_questions.contains(name)) {
        m_questions.insert(definition.name, m_questions.take(name));
    }
    rowChanged(row);
    Q_EMIT trendsChanged();
    noteEdit();
    return true;
}

QStringList TrendTable::names() const
{
    QStringList names;
    for (const Entry &entry : m_entries) {
        names.append(entry.definition.name);
    }
    return names;
}

TrendDefinition TrendTable::definition(const QString &name) const
{
    const Entry *entry = find(name);
    return entry ? entry->definition : TrendDefinition();
}

void TrendTable::setFolder(const QString &folder)
{
    m_folder = folder;
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        openSource(m_entries[row]);
        touchRow(static_cast<int>(row));
    }
}

QString TrendTable::addNew()
{
    TrendDefinition definition;
    definition.name = unusedName(QStringLiteral("trend"));
    definition.tag = m_tags->nameOf(0);
    definition.source = definition.tag.isEmpty() ? TrendDefinition::FromGenerator : TrendDefinition::FromTag;
    definition.generator.kind = Generator::Sine;
    definition.generator.seed = static_cast<quint32>(m_entries.size()) + 1;
    return add(definition) ? definition.name : QString();
}

QString TrendTable::duplicate(const QString &name)
{
    TrendDefinition copy = definition(name);
    copy.name = unusedName(name.left(TagTable::LongestName - 4));
    return contains(name) && add(copy) ? copy.name : QString();
}

QString TrendTable::rowProblem(int row) const
{
    if (row < 0 || row >= rowCount()) {
        return QString();
    }
    const Entry &entry = m_entries[static_cast<std::size_t>(row)];
    const TrendDefinition &trend = entry.definition;
    if (trend.source == TrendDefinition::FromTag && !m_tags->contains(trend.tag)) {
        return tr("Trend \"%1\": there is no tag \"%2\"").arg(trend.name, trend.tag);
    }
    return entry.problem;
}

void TrendTable::followRename(const QString &from, const QString &to)
{
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        if (m_entries[row].definition.tag == from) {
            m_entries[row].definition.tag = to;
            rowChanged(static_cast<int>(row));
        }
    }
}

QJsonArray TrendTable::toJson() const
{
    QJsonArray array;
    for (const Entry &entry : m_entries) {
        const TrendDefinition &trend = entry.definition;
        QJsonObject object{{QStringLiteral("name"), trend.name},
                           {QStringLiteral("interval"), trend.interval},
                           {QStringLiteral("delay"), trend.delay},
                           {QStringLiteral("gaps"), trend.hasGaps},
                           {QStringLiteral("tooMany"), trend.hasTooMany},
                           {QStringLiteral("empty"), trend.answersEmpty},
                           {QStringLiteral("source"), trend.source == TrendDefinition::FromTag
                                                          ? QStringLiteral("tag")
                                                          : QStringLiteral("generator")},
                           {QStringLiteral("tag"), trend.tag}};
        if (trend.generator != Generator()) {
            object.insert(QStringLiteral("generator"), trend.generator.toJson());
        }
        array.append(object);
    }
    return array;
}

bool TrendTable::read(const QJsonArray &array, QVector<TrendDefinition> &definitions,
                      QStringList &problems) const
{
    QSet<QString> taken;
    const int before = problems.size();
    for (int i = 0; i < array.size(); ++i) {
        TrendDefinition trend;
        QString problem;
        if (!readTrend(array.at(i).toObject(), taken, trend, &problem)) {
            problems.append(tr("trends[%1] \"%2\": %3").arg(QString::number(i), trend.name, problem));
        }
        taken.insert(trend.name);
        definitions.append(trend);
    }
    return problems.size() == before;
}

void TrendTable::assign(const QVector<TrendDefinition> &definitions)
{
    const bool isSame = std::equal(
        m_entries.cbegin(), m_entries.cend(), definitions.cbegin(), definitions.cend(),
        [](const Entry &entry, const TrendDefinition &wanted) { return entry.definition == wanted; });
    if (isSame) {
        return;
    }
    beginResetModel();
    m_entries.clear();
    for (const TrendDefinition &wanted : definitions) {
        Entry entry;
        entry.definition = wanted;
        openSource(entry);
        m_entries.push_back(entry);
    }
    endResetModel();
    Q_EMIT trendsChanged();
}

int TrendTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

ProviderColumn::Editor TrendTable::editorOf(int row, int column) const
{
    const TrendDefinition &trend = m_entries[static_cast<std::size_t>(row)].definition;
    return isUsed(trend, column) ? ProviderTable::editorOf(row, column) : ProviderColumn::NoEditor;
}

QStringList TrendTable::choices(int column) const
{
    if (column == TagColumn) {
        return m_tags->names();
    }
    if (column == SourceColumn) {
        return {tr("Tag"), tr("Generator")};
    }
    return GeneratorCells::kindTexts();
}

QVariant TrendTable::displayed(const Entry &entry, int column) const
{
    const TrendDefinition &trend = entry.definition;
    if (!isUsed(trend, column)) {
        return QString();
    }
    switch (column) {
    case SourceColumn:
        return choices(column).value(static_cast<int>(trend.source));
    case TagColumn:
        return trend.tag;
    case IntervalColumn:
    case DelayColumn:
        return tr("%1 ms").arg(editable(trend, column).toInt());
    case GapsColumn:
    case TooManyColumn:
    case EmptyColumn:
        return QVariant();
    case MinimumColumn:
        return editable(trend, column);
    default:
        return column < GeneratorColumn
                   ? editable(trend, column)
                   : GeneratorCells::displayed(trend.generator, column - GeneratorColumn);
    }
}

QVariant TrendTable::editable(const TrendDefinition &trend, int column) const
{
    switch (column) {
    case NameColumn:
        return trend.name;
    case SourceColumn:
        return static_cast<int>(trend.source);
    case TagColumn:
        return m_tags->rowOf(trend.tag);
    case IntervalColumn:
        return trend.interval;
    case GapsColumn:
        return trend.hasGaps;
    case DelayColumn:
        return trend.delay;
    case TooManyColumn:
        return trend.hasTooMany;
    case EmptyColumn:
        return trend.answersEmpty;
    default:
        return GeneratorCells::editable(trend.generator, column - GeneratorColumn);
    }
}

QVariant TrendTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return QVariant();
    }
    const int column = index.column();
    const Entry &entry = m_entries[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return displayed(entry, column);
    case Qt::EditRole:
        return editable(entry.definition, column);
    case Qt::CheckStateRole:
        if (column != GapsColumn && column != TooManyColumn && column != EmptyColumn) {
            return QVariant();
        }
        return editable(entry.definition, column).toBool() ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
        return rowProblem(index.row()).isEmpty() ? displayed(entry, column).toString()
                                                 : rowProblem(index.row());
    case ProblemRole:
        return rowProblem(index.row());
    case EditorRole:
        return editorOf(index.row(), column);
    case ChoicesRole:
        return choices(column);
    case MinimumRole:
        return column == DelayColumn ? 0 : TrendDefinition::MinimumInterval;
    case MaximumRole:
        return column == IntervalColumn ? TrendDefinition::MaximumInterval : TrendDefinition::MaximumDelay;
    case SuffixRole:
        return tr(" ms");
    default:
        return QVariant();
    }
}

bool TrendTable::setCell(int row, int column, const QVariant &value, QString *problem)
{
    TrendDefinition trend = m_entries[static_cast<std::size_t>(row)].definition;
    const QString name = trend.name;
    bool isNumber = true;
    switch (column) {
    case NameColumn:
        trend.name = value.toString().trimmed();
        break;
    case SourceColumn:
        trend.source = static_cast<TrendDefinition::Source>(value.toInt());
        break;
    case TagColumn:
        trend.tag = m_tags->nameOf(value.toInt());
        break;
    case IntervalColumn:
        trend.interval = value.toInt();
        break;
    case GapsColumn:
        trend.hasGaps = value.toBool();
        break;
    case DelayColumn:
        trend.delay = value.toInt();
        break;
    case TooManyColumn:
        trend.hasTooMany = value.toBool();
        break;
    case EmptyColumn:
        trend.answersEmpty = value.toBool();
        break;
    default:
        isNumber = GeneratorCells::set(trend.generator, column - GeneratorColumn, value);
    }
    if (!isNumber) {
        *problem = tr("Trend \"%1\": \"%2\" is no number for %3")
                       .arg(name, value.toString(), m_columns.at(column).title);
        return false;
    }
    return edit(name, trend, problem);
}

} // namespace DEV
} // namespace KORA
