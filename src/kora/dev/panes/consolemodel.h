// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QAbstractTableModel>
#include <QtCore/QDateTime>
#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QSortFilterProxyModel>
#include <QtCore/QTimer>
#include <QtCore/QVector>

#include <array>
#include <atomic>
#include <deque>

#include <kora/export.h>

namespace KORA {
namespace DEV {

struct ConsoleLine
{
    enum Level : int { Debug, Info, Warning, Error, LevelCount };
    static Level levelOf(int messageType); ///< of a QtMsgType; fatal counts as an error

    QDateTime time;
    Level level = Info;
    QString source; ///< the plugin or widget that the line is about, "Qt", or empty
    QString text;
};

/// The latest lines of the log, oldest first. Lines may come from any thread; those of the last twentieth of a second
/// become rows together, so that a plugin which logs thousands of lines a second does not block the window.
class KORA_EXPORT ConsoleModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int { TimeColumn, LevelColumn, SourceColumn, TextColumn, ColumnCount };
    static constexpr int capacity = 10000;

    explicit ConsoleModel(QObject *parent = nullptr);

    /// Thread-safe.
    void append(ConsoleLine::Level level, const QString &source, const QString &text);
    /// Makes rows of what has come until now.
    void flush();
    void clear();
    /// How the lines of a source are called in the list; plugins log under their id.
    void setSourceName(const QString &source, const QString &name) { m_sourceNames.insert(source, name); }

    const ConsoleLine &line(int row) const { return m_lines[static_cast<size_t>(row)]; }
    /// Lines of the level that are held.
    int count(ConsoleLine::Level level) const { return m_counts[static_cast<size_t>(level)]; }
    /// A line as it is copied and saved.
    static QString toText(const ConsoleLine &line);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void countsChanged();

protected:
    void customEvent(QEvent *event) override;

private:
    void dropOldest(int count);

    std::deque<ConsoleLine> m_lines;
    std::array<int, ConsoleLine::LevelCount> m_counts{};
    QMap<QString, QString> m_sourceNames;
    QTimer m_flushTimer;

    QMutex m_mutex; // guards what waits
    std::deque<ConsoleLine> m_pending;
    bool m_isAnnounced = false;
};

/// The lines of the chosen levels that match a filter: words that a line must hold, "-word" that it must not, or
/// "/expression/". All ignore case and look at source and text.
class KORA_EXPORT ConsoleFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setLevelShown(ConsoleLine::Level level, bool isShown);
    /// False, and the filter as it was, if the text is an expression that is not valid; @p problem says why.
    bool setText(const QString &text, QString &problem);

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    std::array<bool, ConsoleLine::LevelCount> m_isShown{true, true, true, true};
    QStringList m_wanted;
    QStringList m_unwanted;
    QRegularExpression m_expression;
};

/// Brings the library's log and Qt's messages of this process into a console while it lives. What was on Qt's
/// messages before still gets them, and is put back at the end. One at a time.
class KORA_EXPORT LogCapture
{
public:
    explicit LogCapture(ConsoleModel *console);
    ~LogCapture();
    Q_DISABLE_COPY_MOVE(LogCapture)
};

} // namespace DEV
} // namespace KORA
