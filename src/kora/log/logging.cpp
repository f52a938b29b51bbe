// SPDX-License-Identifier: Apache-2.0
#include <kora/log/logging.h>
#include <kora/log/logging_p.h>

#include <atomic>

namespace KORA {

namespace {

std::atomic<LogMessageHandler> logMessageHandler{nullptr};
std::atomic<void *> logMessageHandlerOpaque{nullptr};
thread_local bool logMsgHandlerGrabbed = false;

constexpr int usualMessageSize = 120;

// Automatic spacing leaves a blank behind the last item; QDebug drops it only from output of its own.
void chopTrailingBlank(const QDebug &stream, QString &message)
{
    if (stream.autoInsertSpaces() && message.endsWith(QLatin1Char(' '))) {
        message.chop(1);
    }
}

} // namespace

LogHandlerPrivate::LogHandlerPrivate(const QString &source, const char *file, int line, const char *function,
                                     const char *category)
    : context(file, line, function, category)
    , sourceId(source)
{}

void LogHandlerPrivate::copyContext(const QMessageLogContext &from, QMessageLogContext &to)
{
    to.line = from.line;
    to.file = from.file;
    to.function = from.function;
    to.category = from.category;
}

DebugPrivate::DebugPrivate(QtMsgType messageType)
    : stream(&message)
    , type(messageType)
{
    message.reserve(usualMessageSize); // instead of growing item by item
}

DebugPrivate::DebugPrivate(const DebugPrivate &other)
    : message(other.message)
    , stream(&message)
    , type(other.type)
    , sourceId(other.sourceId)
{
    LogHandlerPrivate::copyContext(other.context, context);
}

DebugPrivate::~DebugPrivate()
{
    chopTrailingBlank(stream, message);
    if (message.isEmpty()) {
        return;
    }
    const LogMessageHandler handler = logMessageHandler.load();
    if (!handler || logMsgHandlerGrabbed) {
        return;
    }
    logMsgHandlerGrabbed = true;
    const QString formatted = koraFormatLogMessage(type, context, message);
    handler(static_cast<int>(type), sourceId, formatted, logMessageHandlerOpaque.load());
    logMsgHandlerGrabbed = false;
}

Debug::Debug(QtMsgType type)
    : d(std::make_unique<DebugPrivate>(type))
{}

Debug::Debug(std::unique_ptr<DebugPrivate> priv)
    : d(std::move(priv))
{}

Debug::Debug(const Debug &other)
    : d(std::make_unique<DebugPrivate>(*other.d))
{}

// Copies on purpose: a moved-from message that holds text still emits its own line.
// NOLINTBEGIN(performance-*,cert-oop11-cpp)
Debug::Debug(Debug &&other)
    : Debug(static_cast<const Debug &>(other))
{}
// NOLINTEND(performance-*,cert-oop11-cpp)

Debug::~Debug() = default;

QDebug &Debug::debug()
{
    return d->stream;
}

LogHandler::LogHandler()
    : d(std::make_unique<LogHandlerPrivate>())
{}

LogHandler::LogHandler(const QString &sourceId, const char *file, int line, const char *function)
    : LogHandler(sourceId, file, line, function, "default")
{}

LogHandler::LogHandler(const QString &sourceId, const char *file, int line, const char *function,
                       const char *category)
    : d(std::make_unique<LogHandlerPrivate>(sourceId, file, line, function, category))
{}

LogHandler::~LogHandler() = default;

Debug LogHandler::debug() const
{
    return message(QtDebugMsg);
}

Debug LogHandler::info() const
{
    return message(QtInfoMsg);
}

Debug LogHandler::warning() const
{
    return message(QtWarningMsg);
}

Debug LogHandler::critical() const
{
    return message(QtCriticalMsg);
}

QNoDebug LogHandler::noDebug() const
{
    return {};
}

Debug LogHandler::message(QtMsgType type) const
{
    auto priv = std::make_unique<DebugPrivate>(type);
    LogHandlerPrivate::copyContext(d->context, priv->context);
    priv->sourceId = d->sourceId;
    return Debug(std::move(priv));
}

void koraInstallLogMessageHandlerPrivate(LogMessageHandler handler, void *opaque)
{
    logMessageHandler.store(handler);
    logMessageHandlerOpaque.store(opaque);
}

void koraUninstallLogMessageHandlerPrivate()
{
    logMessageHandler.store(nullptr);
    logMessageHandlerOpaque.store(nullptr);
}

bool koraLogMessageHandlerIsInstalled()
{
    return logMessageHandler.load() != nullptr;
}

} // namespace KORA
