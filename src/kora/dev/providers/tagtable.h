// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QHash>
#include <QtCore/QVariant>

#include <vector>

#include <kora/core/fieldtype.h>
#include <kora/dev/providers/generator.h>
#include <kora/dev/providers/providertable.h>
#include <kora/dev/providers/taghistory.h>

class QJsonArray;

namespace KORA {
namespace DEV {

class BenchClock;

struct KORA_EXPORT TagDefinition
{
    QString name;
    INTERNAL::TagType type = INTERNAL::TagTypeDouble;
    Generator generator;
    QVariant value;      ///< in the form of the type, see TagValues; the type's initial value if invalid
    bool isKnown = true; ///< an unknown tag has no value for widgets, and cannot be written by them
};

/// The simulated tags. A generator writes its tag whenever the generated value changes, looked at every 100 ms of
/// the clock; what a widget or the user writes in between stands until then. The elements of an array are the
/// generator's values one after the other, spread over a period.
class KORA_EXPORT TagTable : public ProviderTable
{
    Q_OBJECT

public:
    enum Column : int {
        NameColumn,
        ValueColumn,
        TypeColumn,
        KnownColumn,
        GeneratorColumn,
        PeriodColumn,
        MinimumColumn,
        MaximumColumn,
        SeedColumn,
        FileColumn
    };
    /// Values are generated at multiples of this.
    static constexpr int SampleMs = 100;
    static constexpr int LongestName = 200;

    /// @p clock is not owned and must outlive the table.
    explicit TagTable(BenchClock *clock, QObject *parent = nullptr);
    ~TagTable() override;

    /// What a widget reads; invalid for an unknown tag.
    QVariant value(const QString &tag) const;
    /// What a widget writes: false with the reason if there is no such tag, it is unknown, or the value does not
    /// convert (see TagValues::convert()); the tag keeps its value then.
    bool setValue(const QString &tag, const QVariant &value, QString *problem = nullptr);

    bool add(const TagDefinition &definition, QString *problem = nullptr);
    bool remove(const QString &name) override;
    /// Also renames. A value that does not fit another type becomes the type's initial one.
    bool edit(const QString &name, const TagDefinition &definition, QString *problem = nullptr);
    QStringList names() const override;
    bool contains(const QString &name) const { return m_rows.contains(name); }
    /// With the present value; a default one for an unknown name.
    TagDefinition definition(const QString &name) const;
    /// Whether there is such a tag and its type is among these. An empty list stands for every type.
    bool accepts(const QString &name, const QVector<INTERNAL::TagType> &types) const;

    /// The value at a moment, in milliseconds after the clock's start: as recorded, and as the generator would have
    /// given it before that. Invalid if nothing is known of it.
    QVariant pastValue(const QString &tag, qint64 elapsed) const;
    /// Null for an unknown name; for the moment only.
    const TagHistory *history(const QString &name) const;

    /// Where relative paths of replay files start.
    void setFolder(const QString &folder);

    QString addNew() override;
    QString duplicate(const QString &name) override;
    QString rowProblem(int row) const override;

    QJsonArray toJson(bool withRunningValues = true) const;
    /// Reads without changing anything. Absent values are marked by an invalid QVariant.
    bool read(const QJsonArray &array, QVector<TagDefinition> &definitions, QStringList &problems) const;
    /// Tags that stay as they are keep running. An absent value is the present one of the tag of that name.
    void assign(const QVector<TagDefinition> &definitions);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

Q_SIGNALS:
    /// A widget's view of the value; at every change. Invalid when the tag has become unknown or was removed.
    void valueChanged(const QString &tag, const QVariant &value);
    /// Tags were added, removed or redefined.
    void tagsChanged();
    void tagRenamed(const QString &from, const QString &to);
    /// A widget has asked for a tag that does not exist.
    void lastUnknownAsked(const QString &tag) const;

protected:
    ProviderColumn::Editor editorOf(int row, int column) const override;
    bool setCell(int row, int column, const QVariant &value, QString *problem) override;

private:
    struct Entry;

    bool isAddable(const TagDefinition &definition, const QString &ownName, QString *problem) const;
    void openSource(Entry &entry) const;
    void store(int row, const QVariant &value);
    QVariant generated(const Entry &entry, qint64 elapsed) const;
    /// The moment of the latest sample.
    qint64 sampleTime() const;
    void sample(qint64 elapsed);
    void sampleEntry(int row, qint64 from, qint64 to);
    void sampleNow();
    void startOver();
    bool redefine(Entry &entry, const TagDefinition &wanted);
    void announceDifferences(QHash<QString, QVariant> seenBefore);
    void indexRows();
    QVariant displayed(const TagDefinition &tag, int column) const;
    QVariant editable(const TagDefinition &tag, int column) const;
    QString toolTip(const Entry &entry, int column) const;
    QStringList choices(int column) const;

    BenchClock *m_clock;
    std::vector<Entry> m_entries;
    QHash<QString, int> m_rows;
    QString m_folder;
    qint64 m_sampled = 0;
};

} // namespace DEV
} // namespace KORA
