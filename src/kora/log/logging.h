// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QMessageLogContext>
#include <QtCore/QString>

#include <memory>

#include <kora/export.h>

namespace KORA {

class DebugPrivate;
class LogHandlerPrivate;

/// One message on its way to the host: write into debug(), the message goes out when the object dies.
///
/// A message without text is not emitted. A copy, and likewise a moved-to object, takes the text collected so
/// far along and emits a line of its own; the source keeps its text. May be used on any thread, one object on
/// one thread.
class KORA_EXPORT Debug
{
public:
    /// A message of the given level, without source and context.
    explicit Debug(QtMsgType type);
    Debug(const Debug &other);
    Debug(Debug &&other);
    Debug &operator=(const Debug &) = delete;
    ~Debug();

    /// The stream to write into. As with qDebug(), items are separated by a blank and strings are quoted until
    /// the caller switches that off (nospace(), noquote()).
    QDebug &debug();

private:
    friend class LogHandler;
    explicit Debug(std::unique_ptr<DebugPrivate> d);

    std::unique_ptr<DebugPrivate> d;
};

/// Where a message comes from: the source (a plugin id, or empty), a category and optionally a place in the code.
///
///     KORA::LogHandler(id(), nullptr, 0, nullptr, "PUMP").warning().debug() << "no answer from" << tag;
///
/// The macros of <kora/log/logmacros.h> fill in file, line and function. Without an installed callback
/// messages are dropped: the library writes neither to Qt's message handler nor to standard error.
/// The character pointers are kept, not copied: pass literals. Thread-safe.
class KORA_EXPORT LogHandler
{
public:
    LogHandler();
    /// The category is "default", which "%{IF-CATEGORY}" treats as none.
    LogHandler(const QString &sourceId, const char *file, int line, const char *function);
    LogHandler(const QString &sourceId, const char *file, int line, const char *function,
               const char *category);
    LogHandler(const LogHandler &) = delete;
    LogHandler &operator=(const LogHandler &) = delete;
    virtual ~LogHandler();

    Debug debug() const;
    Debug info() const;
    Debug warning() const;
    Debug critical() const;
    /// Keeps nothing of what is written to it.
    QNoDebug noDebug() const;

private:
    Debug message(QtMsgType type) const;

    std::unique_ptr<LogHandlerPrivate> d;
};

/// Receives each message: the level (0 debug, 1 warning, 2 critical, 3 fatal, 4 info), the source id, the text
/// formatted by the pattern, and the pointer given on installation. Called on the thread that logs; what the
/// callback logs itself is dropped.
using LogMessageHandler = void (*)(int type, const QString &sourceId, const QString &formattedMessage,
                                   void *opaque);

/// Installs the process's one callback in place of any other. @p opaque is handed back on every call and stays
/// the caller's. Thread-safe; while it runs, a message on another thread may see the new callback together
/// with the old pointer.
KORA_EXPORT void koraInstallLogMessageHandlerPrivate(LogMessageHandler handler, void *opaque);

/// Removes the callback: from now on messages are dropped. Thread-safe.
KORA_EXPORT void koraUninstallLogMessageHandlerPrivate();

/// Replaces the pattern that lines are formatted with. Thread-safe.
///
/// Placeholders: %{TYPE} %{CATEGORY} %{MESSAGE} %{FILE} %{LINE} %{FUNCTION} %{PID} %{THREAD}, %{TIME} or
/// `%{TIME <QDateTime format>}`, and the conditions %{IF-CATEGORY} and %{IF-NOT-INFO}, each up to %{ENDIF}.
/// Unknown placeholders vanish. Nothing is reported for a pattern that does not balance.
KORA_EXPORT void koraSetLogMessagePattern(const QString &text);

} // namespace KORA

/// The line for a message under the current pattern; the bare message once the process is past the pattern's
/// destruction. Thread-safe.
KORA_EXPORT QString koraFormatLogMessage(QtMsgType type, const QMessageLogContext &context,
                                         const QString &message);
