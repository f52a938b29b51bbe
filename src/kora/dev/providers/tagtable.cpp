// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/tagtable.h>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/providers/benchclock.h>
#include <kora/dev/providers/generatorcells_p.h>
#include <kora/dev/providers/jsonvalues_p.h>
#include <kora/dev/providers/tagvalues.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <algorithm>

using namespace KORA::INTERNAL;

namespace KORA {
namespace DEV {

namespace {

constexpr qint64 NeverSampled = -1;

QString typeName(TagType type)
{
    return WidgetLibraryPluginMetaInformation::tagTypeToString(type);
}

QStringList typeNames()
{
    QStringList names;
    const QVector<TagType> types = TagValues::types();
    for (TagType type : types) {
        names.append(typeName(type));
    }
    return names;
}

bool readTag(const QJsonObject &object, const QSet<QString> &taken, TagDefinition &tag, QString *problem)
{
    JsonEntries entries(object, problem);
    entries.allowOnly({"name", "type", "value", "generator", "known"});
    tag.name = entries.text("name", QString());
    const int type = entries.choice("type", typeNames(), TagTypeDouble - 1);
    tag.type = static_cast<TagType>(type + 1); // the names begin with the type 1
    tag.isKnown = entries.flag("known", true);
    QString reason;
    if (!tag.generator.fromJson(entries.object("generator"), &reason)) {
        entries.refuse("generator", reason);
    }
    if (entries.contains("value")
        && !TagValues::fromJson(tag.type, object.value(QLatin1String("value")), tag.value, &reason)) {
        entries.refuse("value", reason);
    }
    if (taken.contains(tag.name)) {
        entries.refuse("name", TagTable::tr("two tags have this name"));
    } else if (tag.name.trimmed().isEmpty() || tag.name.size() > TagTable::LongestName) {
        entries.refuse("name", TagTable::tr("empty, or longer than 200 characters"));
    }
    return entries.isGood();
}

/// The lines of a replay have to convert too, else the tag would stop in the middle of the loop.
bool replayConverts(TagType type, const ReplayFile &replay, const QString &path, QString *problem)
{
    for (const ReplayFile::Line &line : replay.lines()) {
        QVariant value;
        QString reason;
        if (!TagValues::convert(type, line.value, value, &reason)) {
            *problem = TagTable::tr("%1, line %2: %3").arg(path, QString::number(line.number), reason);
            return false;
        }
    }
    return true;
}

QVector<ProviderColumn> columns()
{
    return QVector<ProviderColumn>{
               {TagTable::tr("Name"), TagTable::tr("The name that widgets ask for"),
                ProviderColumn::TextEditor},
               {TagTable::tr("Value"),
                TagTable::tr("The present value; what is entered here is written to the tag"),
                ProviderColumn::ValueEditor},
               {TagTable::tr("Type"), TagTable::tr("The type of the tag's values"),
                ProviderColumn::ChoiceEditor},
               {TagTable::tr("Known"),
                TagTable::tr("Off: widgets get no value, as from a host that does not know the tag"),
                ProviderColumn::CheckEditor}}
           + GeneratorCells::columns();
}

} // namespace

struct TagTable::Entry
{
    TagDefinition definition;
    GeneratorSource source;
    QString problem;
    QVariant lastGenerated;
    TagHistory history;

    QVariant seen() const { return definition.isKnown ? definition.value : QVariant(); }
};

TagTable::TagTable(BenchClock *clock, QObject *parent)
    : ProviderTable(columns(), parent)
    , m_clock(clock)
{
    connect(clock, &BenchClock::ticked, this, &TagTable::sample);
    connect(clock, &BenchClock::restarted, this, &TagTable::startOver);
    connect(clock, &BenchClock::seedChanged, this, &TagTable::sampleNow);
}

TagTable::~TagTable() = default;

QVariant TagTable::value(const QString &tag) const
{
    const int row = m_rows.value(tag, -1);
    if (row < 0) {
        Q_EMIT lastUnknownAsked(tag);
        return QVariant();
    }
    return m_entries[static_cast<std::size_t>(row)].seen();
}

bool TagTable::setValue(const QString &tag, const QVariant &value, QString *problem)
{
    const int row = m_rows.value(tag, -1);
    QString reason;
    QVariant converted;
    if (row < 0) {
        reason = tr("there is no such tag");
    } else {
        const TagDefinition &definition = m_entries[static_cast<std::size_t>(row)].definition;
        if (!definition.isKnown) {
            reason = tr("the tag is set to be unknown");
        } else if (TagValues::convert(definition.type, value, converted, &reason)) {
            store(row, converted);
            return true;
        }
    }
    if (problem) {
        *problem = tr("Tag \"%1\": %2").arg(tag, reason);
    }
    return false;
}

bool TagTable::isAddable(const TagDefinition &definition, const QString &ownName, QString *problem) const
{
    QString reason;
    QVariant value;
    if (definition.name.trimmed().isEmpty()) {
        reason = tr("the name is empty");
    } else if (definition.name.size() > LongestName) {
        reason = tr("the name is longer than %1 characters").arg(LongestName);
    } else if (definition.name != ownName && contains(definition.name)) {
        reason = tr("there is a tag of that name");
    } else if (typeName(definition.type).isEmpty()) {
        reason = tr("there is no type %1").arg(static_cast<int>(definition.type));
    } else if (definition.generator.isUsable(&reason) && definition.value.isValid()) {
        TagValues::convert(definition.type, definition.value, value, &reason);
    }
    if (problem && !reason.isEmpty()) {
        *problem = tr("Tag \"%1\": %2").arg(definition.name, reason);
    }
    return reason.isEmpty();
}

bool TagTable::add(const TagDefinition &definition, QString *problem)
{
    if (!isAddable(definition, QString(), problem)) {
        return false;
    }
    Entry entry;
    entry.definition = definition;
    entry.definition.value = TagValues::initialValue(definition.type);
    if (definition.value.isValid()) {
        TagValues::convert(definition.type, definition.value, entry.definition.value, nullptr);
    }
    openSource(entry);
    beginInsertRows(QModelIndex(), rowCount(), rowCount());
    m_entries.push_back(entry);
    indexRows();
    endInsertRows();
    m_entries.back().history.record(m_clock->elapsed(), m_entries.back().seen());
    sampleEntry(rowCount() - 1, NeverSampled, sampleTime());
    Q_EMIT tagsChanged();
    Q_EMIT valueChanged(definition.name, value(definition.name));
    noteEdit();
    return true;
}

bool TagTable::remove(const QString &name)
{
    const int row = m_rows.value(name, -1);
    if (row < 0) {
        return false;
    }
    beginRemoveRows(QModelIndex(), row, row);
    m_entries.erase(m_entries.begin() + row);
    indexRows();
    endRemoveRows();
    Q_EMIT valueChanged(name, QVariant());
    Q_EMIT tagsChanged();
    noteEdit();
    return true;
}

bool TagTable::edit(const QString &name, const TagDefinition &definition, QString *problem)
{
    const int row = m_rows.value(name, -1);
    if (row < 0) {
        if (problem) {
            *problem = tr("Tag \"%1\": there is no such tag").arg(name);
        }
        return false;
    }
    Entry &entry = m_entries[static_cast<std::size_t>(row)];
    TagDefinition wanted = definition;
    const bool isOtherType = wanted.type != entry.definition.type;
    if (isOtherType && !TagValues::convert(wanted.type, definition.value, wanted.value, nullptr)) {
        wanted.value = TagValues::initialValue(wanted.type);
    }
    if (!isAddable(wanted, name, problem)) {
        return false;
    }
    const QVariant before = entry.seen();
    const bool isOtherSource = isOtherType || wanted.generator != entry.definition.generator;
    QVariant converted = entry.definition.value;
    if (wanted.value.isValid()) {
        TagValues::convert(wanted.type, wanted.value, converted, nullptr);
    }
    entry.definition = wanted;
    entry.definition.value = converted;
    if (isOtherSource) {
        openSource(entry);
        entry.lastGenerated = QVariant();
    }
    indexRows();
    if (wanted.name != name) {
        Q_EMIT tagRenamed(name, wanted.name);
    }
    const QVariant after = m_entries[static_cast<std::size_t>(row)].seen();
    if (!TagValues::areSame(before, after)) {
        m_entries[static_cast<std::size_t>(row)].history.record(m_clock->elapsed(), after);
        Q_EMIT valueChanged(wanted.name, after);
    }
    if (isOtherSource) {
        sampleEntry(row, NeverSampled, sampleTime());
    }
    rowChanged(row);
    Q_EMIT tagsChanged();
    noteEdit();
    return true;
}

QStringList TagTable::names() const
{
    QStringList names;
    for (const Entry &entry : m_entries) {
        names.append(entry.definition.name);
    }
    return names;
}

TagDefinition TagTable::definition(const QString &name) const
{
    const int row = m_rows.value(name, -1);
    return row < 0 ? TagDefinition() : m_entries[static_cast<std::size_t>(row)].definition;
}

bool TagTable::accepts(const QString &name, const QVector<TagType> &types) const
{
    return contains(name) && (types.isEmpty() || types.contains(definition(name).type));
}

QVariant TagTable::pastValue(const QString &tag, qint64 elapsed) const
{
    const int row = m_rows.value(tag, -1);
    if (row < 0) {
        return QVariant();
    }
    const Entry &entry = m_entries[static_cast<std::size_t>(row)];
    if (const TagHistory::Sample *sample = entry.history.sampleAt(elapsed)) {
        return sample->value;
    }
    return entry.definition.isKnown ? generated(entry, elapsed) : QVariant();
}

const TagHistory *TagTable::history(const QString &name) const
{
    const int row = m_rows.value(name, -1);
    return row < 0 ? nullptr : &m_entries[static_cast<std::size_t>(row)].history;
}

void TagTable::setFolder(const QString &folder)
{
    if (m_folder == folder) {
        return;
    }
    m_folder = folder;
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        if (m_entries[row].definition.generator.kind == Generator::CsvReplay) {
            openSource(m_entries[row]);
            touchRow(static_cast<int>(row));
        }
    }
}

QString TagTable::addNew()
{
    TagDefinition definition;
    definition.name = unusedName(QStringLiteral("tag"));
    definition.generator.seed = static_cast<quint32>(m_entries.size()) + 1;
    return add(definition) ? definition.name : QString();
}

QString TagTable::duplicate(const QString &name)
{
    TagDefinition copy = definition(name);
    copy.name = unusedName(name.left(LongestName - 4));
    return contains(name) && add(copy) ? copy.name : QString();
}

QString TagTable::rowProblem(int row) const
{
    return row >= 0 && row < rowCount() ? m_entries[static_cast<std::size_t>(row)].problem : QString();
}

void TagTable::openSource(Entry &entry) const
{
    const TagDefinition &definition = entry.definition;
    entry.problem.clear();
    QString reason;
    if (!entry.source.open(definition.generator, m_folder, &reason)
        || !replayConverts(definition.type, entry.source.replay(), definition.generator.csvFile, &reason)) {
        entry.problem = tr("Tag \"%1\": %2").arg(definition.name, reason);
    }
}

void TagTable::store(int row, const QVariant &value)
{
    Entry &entry = m_entries[static_cast<std::size_t>(row)];
    if (TagValues::areSame(entry.definition.value, value)) {
        return;
    }
    entry.definition.value = value;
    touchRow(row);
    if (!entry.definition.isKnown) {
        return;
    }
    entry.history.record(m_clock->elapsed(), value);
    Q_EMIT valueChanged(QString(entry.definition.name), value); // a receiver may remove the tag
}

QVariant TagTable::generated(const Entry &entry, qint64 elapsed) const
{
    const Generator &generator = entry.definition.generator;
    if (generator.kind == Generator::Constant || !entry.problem.isEmpty()) {
        return QVariant();
    }
    const TagType type = entry.definition.type;
    QVariant result;
    if (generator.kind == Generator::CsvReplay) {
        TagValues::convert(type, entry.source.valueAt(elapsed, m_clock->seed()), result, nullptr);
        return result;
    }
    if (!TagValues::isArray(type)) {
        return TagValues::nearest(type, generator.valueAt(elapsed, m_clock->seed()));
    }
    QVariantList list;
    const int size = entry.definition.value.toList().size();
    for (int i = 0; i < size; ++i) {
        const qint64 shift = static_cast<qint64>(generator.period) * i / size;
        list.append(TagValues::nearest(TagValues::elementType(type),
                                       generator.valueAt(elapsed + shift, m_clock->seed())));
    }
    return list;
}

qint64 TagTable::sampleTime() const
{
    return m_clock->elapsed() / SampleMs * SampleMs;
}

void TagTable::sample(qint64 elapsed)
{
    const qint64 from = m_sampled;
    m_sampled = elapsed / SampleMs * SampleMs;
    if (m_sampled == from) {
        return;
    }
    for (int row = 0; row < rowCount(); ++row) {
        sampleEntry(row, from, m_sampled);
    }
}

// Every sample up to the present one goes into the history; the last one is the tag's value. The way the time was
// cut into ticks makes no difference.
void TagTable::sampleEntry(int row, qint64 from, qint64 to)
{
    Entry &entry = m_entries[static_cast<std::size_t>(row)];
    if (entry.definition.generator.kind == Generator::Constant) {
        return;
    }
    const qint64 longest = static_cast<qint64>(TagHistory::Capacity) * SampleMs;
    const qint64 first = from == NeverSampled ? to : std::max(from + SampleMs, to - longest);
    const QVariant before = entry.definition.value;
    for (qint64 time = first; time <= to; time += SampleMs) {
        const QVariant next = generated(entry, time);
        if (!next.isValid() || TagValues::areSame(next, entry.lastGenerated)) {
            continue;
        }
        entry.lastGenerated = next;
        entry.definition.value = next;
        if (entry.definition.isKnown) {
            entry.history.record(time, next);
        }
    }
    if (TagValues::areSame(before, entry.definition.value)) {
        return;
    }
    touchRow(row);
    if (entry.definition.isKnown) {
        Q_EMIT valueChanged(QString(entry.definition.name), QVariant(entry.definition.value));
    }
}

void TagTable::sampleNow()
{
    for (int row = 0; row < rowCount(); ++row) {
        sampleEntry(row, NeverSampled, sampleTime());
    }
}

// Values stay: a scenario that moved the clock brings its own.
void TagTable::startOver()
{
    m_sampled = sampleTime();
    for (Entry &entry : m_entries) {
        entry.history.clear();
        entry.history.record(m_clock->elapsed(), entry.seen());
        entry.lastGenerated = generated(entry, m_sampled);
    }
}

void TagTable::indexRows()
{
    m_rows.clear();
    for (std::size_t row = 0; row < m_entries.size(); ++row) {
        m_rows.insert(m_entries[row].definition.name, static_cast<int>(row));
    }
}

QJsonArray TagTable::toJson(bool withRunningValues) const
{
    QJsonArray array;
    for (const Entry &entry : m_entries) {
        const TagDefinition &tag = entry.definition;
        QJsonObject object{{QStringLiteral("name"), tag.name}, {QStringLiteral("type"), typeName(tag.type)}};
        if (withRunningValues || tag.generator.kind == Generator::Constant) {
            object.insert(QStringLiteral("value"), TagValues::toJson(tag.value));
        }
        if (tag.generator != Generator()) {
            object.insert(QStringLiteral("generator"), tag.generator.toJson());
        }
        if (!tag.isKnown) {
            object.insert(QStringLiteral("known"), false);
        }
        array.append(object);
    }
    return array;
}

bool TagTable::read(const QJsonArray &array, QVector<TagDefinition> &definitions, QStringList &problems) const
{
    QSet<QString> taken;
    const int before = problems.size();
    for (int i = 0; i < array.size(); ++i) {
        TagDefinition tag;
        QString problem;
        if (!readTag(array.at(i).toObject(), taken, tag, &problem)) {
            problems.append(tr("tags[%1] \"%2\": %3").arg(QString::number(i), tag.name, problem));
        }
        taken.insert(tag.name);
        definitions.append(tag);
    }
    return problems.size() == before;
}

void TagTable::assign(const QVector<TagDefinition> &definitions)
{
    QHash<QString, QVariant> seenBefore;
    for (const Entry &entry : m_entries) {
        seenBefore.insert(entry.definition.name, entry.seen());
    }
    const QStringList namesBefore = names();
    QStringList namesAfter;
    bool isRedefined = false;
    std::vector<Entry> entries;
    for (const TagDefinition &wanted : definitions) {
        const int row = m_rows.value(wanted.name, -1);
        Entry entry = row < 0 ? Entry() : std::move(m_entries[static_cast<std::size_t>(row)]);
        isRedefined = !redefine(entry, wanted) || isRedefined;
        namesAfter.append(wanted.name);
        entries.push_back(std::move(entry));
    }
    const bool hasSameRows = namesBefore == namesAfter;
    if (!hasSameRows) {
        beginResetModel();
    }
    m_entries = std::move(entries);
    indexRows();
    if (!hasSameRows) {
        endResetModel();
    }
    if (isRedefined || !hasSameRows) {
        Q_EMIT tagsChanged();
    }
    announceDifferences(seenBefore);
}

// True if the entry keeps all but its value.
bool TagTable::redefine(Entry &entry, const TagDefinition &wanted)
{
    const TagDefinition before = entry.definition;
    const bool isSameType = before.name == wanted.name && before.type == wanted.type;
    const bool isSameSource = isSameType && before.generator == wanted.generator;
    entry.definition = wanted;
    if (!wanted.value.isValid()) {
        entry.definition.value = isSameType ? before.value : TagValues::initialValue(wanted.type);
    }
    if (!isSameSource) {
        openSource(entry);
        entry.lastGenerated = generated(entry, sampleTime());
        if (!wanted.value.isValid() && entry.lastGenerated.isValid()) {
            entry.definition.value = entry.lastGenerated;
        }
    }
    return isSameSource && before.isKnown == wanted.isKnown;
}

void TagTable::announceDifferences(QHash<QString, QVariant> seenBefore)
{
    for (int row = 0; row < rowCount(); ++row) {
        Entry &entry = m_entries[static_cast<std::size_t>(row)];
        const QString name = entry.definition.name;
        const QVariant seen = entry.seen();
        touchRow(row);
        if (seenBefore.contains(name) && TagValues::areSame(seenBefore.take(name), seen)) {
            continue;
        }
        seenBefore.remove(name);
        entry.history.record(m_clock->elapsed(), seen);
        Q_EMIT valueChanged(name, seen);
    }
    for (auto gone = seenBefore.cbegin(); gone != seenBefore.cend(); ++gone) {
        Q_EMIT valueChanged(gone.key(), QVariant());
    }
}

int TagTable::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

ProviderColumn::Editor TagTable::editorOf(int row, int column) const
{
    const TagDefinition &tag = m_entries[static_cast<std::size_t>(row)].definition;
    if (column >= GeneratorColumn && !GeneratorCells::isUsed(tag.generator, column - GeneratorColumn)) {
        return ProviderColumn::NoEditor;
    }
    if (column == ValueColumn && tag.type == TagTypeBool) {
        return ProviderColumn::ChoiceEditor;
    }
    return ProviderTable::editorOf(row, column);
}

QVariant TagTable::displayed(const TagDefinition &tag, int column) const
{
    switch (column) {
    case NameColumn:
        return tag.name;
    case ValueColumn:
        return TagValues::shortText(tag.value);
    case TypeColumn:
        return typeName(tag.type);
    case KnownColumn:
        return QVariant();
    default:
        return GeneratorCells::displayed(tag.generator, column - GeneratorColumn);
    }
}

QVariant TagTable::editable(const TagDefinition &tag, int column) const
{
    switch (column) {
    case NameColumn:
        return tag.name;
    case ValueColumn:
        return tag.type == TagTypeBool ? QVariant(tag.value.toBool() ? 1 : 0)
                                       : QVariant(TagValues::text(tag.value));
    case TypeColumn:
        return static_cast<int>(tag.type) - 1;
    case KnownColumn:
        return QVariant();
    default:
        return GeneratorCells::editable(tag.generator, column - GeneratorColumn);
    }
}

QString TagTable::toolTip(const Entry &entry, int column) const
{
    if (!entry.problem.isEmpty()) {
        return entry.problem;
    }
    return column == ValueColumn ? TagValues::text(entry.definition.value)
                                 : displayed(entry.definition, column).toString();
}

QStringList TagTable::choices(int column) const
{
    switch (column) {
    case ValueColumn:
        return {QStringLiteral("false"), QStringLiteral("true")};
    case TypeColumn:
        return typeNames();
    default:
        return GeneratorCells::kindTexts();
    }
}

QVariant TagTable::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return QVariant();
    }
    const Entry &entry = m_entries[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return displayed(entry.definition, index.column());
    case Qt::EditRole:
        return editable(entry.definition, index.column());
    case Qt::CheckStateRole:
        return index.column() == KnownColumn
                   ? QVariant(entry.definition.isKnown ? Qt::Checked : Qt::Unchecked)
                   : QVariant();
    case Qt::ToolTipRole:
        return toolTip(entry, index.column());
    case ProblemRole:
        return entry.problem;
    case EditorRole:
        return editorOf(index.row(), index.column());
    case ChoicesRole:
        return choices(index.column());
    case MinimumRole:
        return Generator::MinimumPeriod;
    case MaximumRole:
        return Generator::MaximumPeriod;
    case SuffixRole:
        return tr(" ms");
    default:
        return QVariant();
    }
}

bool TagTable::setCell(int row, int column, const QVariant &value, QString *problem)
{
    TagDefinition tag = m_entries[static_cast<std::size_t>(row)].definition;
    const QString name = tag.name;
    QString reason;
    switch (column) {
    case NameColumn:
        tag.name = value.toString().trimmed();
        break;
    case ValueColumn:
        if (TagValues::convert(tag.type, value, tag.value, &reason)) {
            store(row, tag.value);
            return true;
        }
        break;
    case TypeColumn:
        tag.type = static_cast<TagType>(value.toInt() + 1);
        break;
    case KnownColumn:
        tag.isKnown = value.toBool();
        break;
    default:
        if (!GeneratorCells::set(tag.generator, column - GeneratorColumn, value)) {
            reason = tr("\"%1\" is no number for %2").arg(value.toString(), m_columns.at(column).title);
        }
    }
    if (!reason.isEmpty()) {
        *problem = tr("Tag \"%1\": %2").arg(name, reason);
        return false;
    }
    return edit(name, tag, problem);
}

} // namespace DEV
} // namespace KORA
