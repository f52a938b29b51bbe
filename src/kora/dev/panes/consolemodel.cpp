// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/consolemodel.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QRegularExpression>
#include <QtGui/QFontDatabase>

#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>
#include <kora/log/logging.h>

namespace KORA {
namespace DEV {

namespace {

const int flushInterval = 50; // milliseconds

const QEvent::Type linesWaitEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

const char *const levelNames[] = {"debug", "info", "warning", "error"};

// A row is one line high; the rest is in the tooltip and in what is copied.
QString firstLine(const QString &text)
{
    const int end = text.indexOf(QLatin1Char('\n'));
    if (end < 0) {
        return text;
    }
    const int more = text.count(QLatin1Char('\n'), Qt::CaseSensitive);
    return ConsoleModel::tr("%1   (+%2 lines)").arg(text.left(end), QString::number(more));
}

QVariant colorOf(ConsoleLine::Level level)
{
    switch (level) {
    case ConsoleLine::Error:
        return BenchTheme::errorColor();
    case ConsoleLine::Warning:
        return BenchTheme::warningColor();
    case ConsoleLine::Debug:
        return BenchTheme::mutedColor();
    default:
        return {};
    }
}

} // namespace

ConsoleLine::Level ConsoleLine::levelOf(int messageType)
{
    switch (messageType) {
    case QtDebugMsg:
        return Debug;
    case QtWarningMsg:
        return Warning;
    case QtCriticalMsg:
    case QtFatalMsg:
        return Error;
    default:
        return Info;
    }
}

ConsoleModel::ConsoleModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    m_flushTimer.setSingleShot(true);
    m_flushTimer.setInterval(flushInterval);
    connect(&m_flushTimer, &QTimer::timeout, this, &ConsoleModel::flush);
}

void ConsoleModel::append(ConsoleLine::Level level, const QString &source, const QString &text)
{
    // A deep copy: a plugin's literal must not outlive the plugin.
    ConsoleLine line{QDateTime::currentDateTime(), level, QString(source.constData(), source.size()),
                     QString(text.constData(), text.size())};
    const QMutexLocker lock(&m_mutex);
    m_pending.push_back(std::move(line));
    if (m_pending.size() > capacity) {
        m_pending.pop_front();
    }
    if (!m_isAnnounced) {
        m_isAnnounced = true;
        QCoreApplication::postEvent(this, new QEvent(linesWaitEvent));
    }
}

void ConsoleModel::customEvent(QEvent *event)
{
    if (event->type() == linesWaitEvent) {
        m_flushTimer.start();
    }
}

void ConsoleModel::flush()
{
    std::deque<ConsoleLine> lines;
    {
        const QMutexLocker lock(&m_mutex);
        lines.swap(m_pending);
        m_isAnnounced = false;
    }
    if (lines.empty()) {
        return;
    }
    const int added = static_cast<int>(lines.size());
    dropOldest(rowCount() + added - capacity);
    beginInsertRows({}, rowCount(), rowCount() + added - 1);
    for (ConsoleLine &line : lines) {
        ++m_counts[static_cast<size_t>(line.level)];
        m_lines.push_back(std::move(line));
    }
    endInsertRows();
    Q_EMIT countsChanged();
}

void ConsoleModel::dropOldest(int count)
{
    if (count <= 0) {
        return;
    }
    beginRemoveRows({}, 0, count - 1);
    for (int i = 0; i < count; ++i) {
        --m_counts[static_cast<size_t>(m_lines.front().level)];
        m_lines.pop_front();
    }
    endRemoveRows();
}

void ConsoleModel::clear()
{
    flush();
    beginResetModel();
    m_lines.clear();
    m_counts.fill(0);
    endResetModel();
    Q_EMIT countsChanged();
}

QString ConsoleModel::toText(const ConsoleLine &line)
{
    return QStringLiteral("%1 %2 %3%4%5")
        .arg(line.time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")),
             QLatin1String(levelNames[line.level]), line.source,
             line.source.isEmpty() ? QString() : QStringLiteral(": "), line.text);
}

int ConsoleModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int ConsoleModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant ConsoleModel::data(const QModelIndex &index, int role) const
{
    const ConsoleLine &line = this->line(index.row());
    if (role == Qt::ForegroundRole) {
        return index.column() == TextColumn || index.column() == LevelColumn
                   ? colorOf(line.level)
                   : QVariant(BenchTheme::mutedColor());
    }
    if (role == Qt::ToolTipRole) {
        return index.column() == TextColumn ? line.text : line.source;
    }
    if (role == Qt::DecorationRole && index.column() == LevelColumn) {
        return benchIcon(levelNames[line.level]);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (index.column()) {
    case TimeColumn:
        return line.time.toString(QStringLiteral("HH:mm:ss.zzz"));
    case LevelColumn:
        return QLatin1String(levelNames[line.level]);
    case SourceColumn:
        return m_sourceNames.value(line.source, line.source);
    default:
        return firstLine(line.text);
    }
}

QVariant ConsoleModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case LevelColumn:
        return tr("Level");
    case SourceColumn:
        return tr("Source");
    default:
        return tr("Text");
    }
}

// ConsoleFilter ----------------------------------------------------------------------------------------------

void ConsoleFilter::setLevelShown(ConsoleLine::Level level, bool isShown)
{
    m_isShown[static_cast<size_t>(level)] = isShown;
    invalidateFilter();
}

bool ConsoleFilter::setText(const QString &text, QString &problem)
{
    QRegularExpression expression;
    QStringList wanted;
    QStringList unwanted;
    if (text.size() > 2 && text.startsWith(QLatin1Char('/')) && text.endsWith(QLatin1Char('/'))) {
        expression =
            QRegularExpression(text.mid(1, text.size() - 2), QRegularExpression::CaseInsensitiveOption);
        if (!expression.isValid()) {
            problem = tr("Not a regular expression: %1").arg(expression.errorString());
            return false;
        }
    } else {
        const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (const QString &word : words) {
            const bool isUnwanted = word.size() > 1 && word.startsWith(QLatin1Char('-'));
            isUnwanted ? unwanted.append(word.mid(1)) : wanted.append(word);
        }
    }
    m_expression = expression;
    m_wanted = wanted;
    m_unwanted = unwanted;
    invalidateFilter();
    return true;
}

bool ConsoleFilter::filterAcceptsRow(int row, const QModelIndex &) const
{
    const ConsoleLine &line = static_cast<ConsoleModel *>(sourceModel())->line(row);
    if (!m_isShown[static_cast<size_t>(line.level)]) {
        return false;
    }
    if (!m_expression.pattern().isEmpty()) {
        return m_expression.match(line.text).hasMatch() || m_expression.match(line.source).hasMatch();
    }
    const auto holds = [&line](const QString &word) {
        return line.text.contains(word, Qt::CaseInsensitive)
               || line.source.contains(word, Qt::CaseInsensitive);
    };
    return std::all_of(m_wanted.begin(), m_wanted.end(), holds)
           && std::none_of(m_unwanted.begin(), m_unwanted.end(), holds);
}

// LogCapture -------------------------------------------------------------------------------------------------

namespace {

// What the bench asks of the library; the console shows the time in a column of its own.
const char *const benchPattern = "[%{TIME}] %{MESSAGE}";
const int timeLength = 22; // "[2026-01-31T12:00:00] "

QBasicMutex captureMutex; // guards the next two
ConsoleModel *capturing = nullptr;
QtMessageHandler chainedHandler = nullptr;
thread_local bool isAppending = false;

void appendLine(int type, const QString &source, const QString &text)
{
    if (isAppending) {
        return; // a message about a message
    }
    isAppending = true;
    captureMutex.lock();
    if (capturing) {
        capturing->append(ConsoleLine::levelOf(type), source, text);
    }
    captureMutex.unlock();
    isAppending = false;
}

void onLibraryMessage(int type, const QString &source, const QString &formatted, void *)
{
    const bool hasTime =
        formatted.startsWith(QLatin1Char('[')) && formatted.midRef(timeLength - 2, 2) == QLatin1String("] ");
    appendLine(type, source, hasTime ? formatted.mid(timeLength) : formatted);
}

void onQtMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    appendLine(type, QStringLiteral("Qt"), text);
    captureMutex.lock();
    const QtMessageHandler chained = chainedHandler;
    captureMutex.unlock();
    if (chained) {
        chained(type, context, text);
    }
}

} // namespace

LogCapture::LogCapture(ConsoleModel *console)
{
    captureMutex.lock();
    capturing = console;
    captureMutex.unlock();
    const QtMessageHandler previous = qInstallMessageHandler(onQtMessage);
    captureMutex.lock();
    chainedHandler = previous == onQtMessage ? nullptr : previous;
    captureMutex.unlock();
    koraSetLogMessagePattern(QLatin1String(benchPattern));
    koraInstallLogMessageHandlerPrivate(onLibraryMessage, nullptr);
}

LogCapture::~LogCapture()
{
    koraUninstallLogMessageHandlerPrivate();
    captureMutex.lock();
    const QtMessageHandler previous = chainedHandler;
    capturing = nullptr;
    captureMutex.unlock();
    qInstallMessageHandler(previous);
}

} // namespace DEV
} // namespace KORA
