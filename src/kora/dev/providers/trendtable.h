// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QHash>

#include <vector>

#include <kora/dev/providers/generator.h>
#include <kora/dev/providers/providertable.h>
#include <kora/runtime/widgetactionmanager.h>

class QJsonArray;

namespace KORA {
namespace DEV {

class BenchClock;
class TagTable;

struct KORA_EXPORT TrendDefinition
{
    enum Source : int { FromTag, FromGenerator };
    static constexpr int MinimumInterval = 100;
    static constexpr int MaximumInterval = 60 * 60 * 1000;
    static constexpr int MaximumDelay = 24 * 60 * 60 * 1000;

    QString name;
    Source source = FromTag;
    QString tag;          ///< whose values are recorded; a tag with a generator has a past from the beginning
    Generator generator;  ///< for FromGenerator; has a past of any length
    int interval = 500;   ///< milliseconds between two recorded values
    int delay = 0;        ///< the latest milliseconds that are missing yet
    bool hasGaps = false; ///< of every 20 values in a row the last 5 are missing
    bool hasTooMany = false;   ///< answers with twice as many values as were asked for
    bool answersEmpty = false; ///< answers with none

    bool operator==(const TrendDefinition &other) const;
    bool operator!=(const TrendDefinition &other) const { return !(*this == other); }
};

/// The simulated trends: values of a tag or a generator, recorded at a fixed interval.
class KORA_EXPORT TrendTable : public ProviderTable
{
    Q_OBJECT

public:
    enum Column : int {
        NameColumn,
        SourceColumn,
        TagColumn,
        IntervalColumn,
        GapsColumn,
        DelayColumn,
        TooManyColumn,
        EmptyColumn,
        GeneratorColumn,
        PeriodColumn,
        MinimumColumn,
        MaximumColumn,
        SeedColumn,
        FileColumn
    };
    static constexpr int MaximumValues = 100000; ///< of one answer, whatever was asked for

    /// What a widget asked for last.
    struct Question
    {
        QDateTime from;
        QDateTime to;
        unsigned int count = 0;
        int answered = 0; ///< the number of values it got
    };

    /// @p clock and @p tags are not owned and must outlive the table.
    TrendTable(BenchClock *clock, TagTable *tags, QObject *parent = nullptr);
    ~TrendTable() override;

    /// The answer to WidgetActionManager::getTrendValue(): a QVariantList of QVariantMap {"time": QDateTime, "value":
    /// QVariant}, oldest first; invalid for an unknown trend. When the span holds more values than @p count, every
    /// second, third ... one is given, always the same ones. An empty list for a span that ends before it starts, for
    /// invalid times and for a count of 0.
    QVariant trendValue(const QString &name, const QDateTime &from, const QDateTime &to, unsigned int count,
                        KORA::WidgetActionManager::TrendTimeFormat format) const;
    /// The same without being taken for a question of a widget.
    QVariantList values(const QString &name, const QDateTime &from, const QDateTime &to, unsigned int count,
                        KORA::WidgetActionManager::TrendTimeFormat format) const;
    /// What the trend records now; invalid for an unknown one.
    QVariant presentValue(const QString &name) const;
    /// Null before the first question.
    const Question *lastQuestion(const QString &name) const;

    bool add(const TrendDefinition &definition, QString *problem = nullptr);
    bool remove(const QString &name) override;
    bool edit(const QString &name, const TrendDefinition &definition, QString *problem = nullptr);
    QStringList names() const override;
    bool contains(const QString &name) const { return rowOf(name) >= 0; }
    TrendDefinition definition(const QString &name) const;

    void setFolder(const QString &folder);
    QString addNew() override;
    QString duplicate(const QString &name) override;
    QString rowProblem(int row) const override;

    QJsonArray toJson() const;
    bool read(const QJsonArray &array, QVector<TrendDefinition> &definitions, QStringList &problems) const;
    void assign(const QVector<TrendDefinition> &definitions);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

Q_SIGNALS:
    /// A widget has asked; the answer is given already.
    void asked(const QString &name, const QDateTime &from, const QDateTime &to, unsigned int count) const;
    void trendsChanged();

protected:
    ProviderColumn::Editor editorOf(int row, int column) const override;
    bool setCell(int row, int column, const QVariant &value, QString *problem) override;

private:
    struct Entry;
    struct Span;

    const Entry *find(const QString &name) const;
    bool isAddable(const TrendDefinition &definition, const QString &ownName, QString *problem) const;
    void openSource(Entry &entry) const;
    QVariant valueAt(const Entry &entry, qint64 elapsed) const;
    QVariantList recorded(const Entry &entry, const Span &span) const;
    QVariantList tooMany(const Entry &entry, const Span &span) const;
    void followRename(const QString &from, const QString &to);
    QVariant displayed(const Entry &entry, int column) const;
    QVariant editable(const TrendDefinition &trend, int column) const;
    QStringList choices(int column) const;

    BenchClock *m_clock;
    TagTable *m_tags;
    std::vector<Entry> m_entries;
    QString m_folder;
    mutable QHash<QString, Question> m_questions; ///< asking is const for a widget
};

} // namespace DEV
} // namespace KORA
