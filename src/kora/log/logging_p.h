// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>
#include <kora/log/logging.h>

namespace KORA {

class KORA_EXPORT LogHandlerPrivate
{
public:
    LogHandlerPrivate() = default;
    LogHandlerPrivate(const QString &sourceId, const char *file, int line, const char *function,
                      const char *category);

    /// Copies line, file, function and category; the version stays that of the target.
    static void copyContext(const QMessageLogContext &from, QMessageLogContext &to);

    QMessageLogContext context;
    QString sourceId;
};

class KORA_EXPORT DebugPrivate
{
public:
    explicit DebugPrivate(QtMsgType type);
    /// Takes text, type, source and context over into a stream of its own.
    DebugPrivate(const DebugPrivate &other);
    DebugPrivate &operator=(const DebugPrivate &) = delete;
    /// Emits the message.
    ~DebugPrivate();

    QString message; // before the stream that writes into it
    QDebug stream;
    QtMsgType type;
    QString sourceId;
    QMessageLogContext context;
};

/// Whether a callback is installed: lets a caller skip messages that are dear to build. Thread-safe.
KORA_EXPORT bool koraLogMessageHandlerIsInstalled();

} // namespace KORA
