// SPDX-License-Identifier: Apache-2.0
#include "windowprocess.h"

#include <QtCore/QCoreApplication>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "crashtrace.h"

WindowProcess::WindowProcess(const BenchStart &start, QObject *parent)
    : QProcess(parent)
    , m_start(start)
{
    setProcessChannelMode(QProcess::ForwardedChannels);
    m_silence.setSingleShot(true);
    m_silence.setInterval(answerMs);
    connect(&m_silence, &QTimer::timeout, this, [this] {
        m_isSilent = true;
        emit answersNoMore();
    });
    connect(this, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, [this] {
        m_silence.stop();
        emit ended();
    });
}

bool WindowProcess::begin()
{
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) {
        setErrorString(QStringLiteral("no socket pair"));
        return false;
    }
    m_channel = std::make_unique<JsonChannel>(sockets[0]);
    connect(m_channel.get(), &JsonChannel::received, this, &WindowProcess::onMessage);
    m_childSocket = sockets[1];
    start(QCoreApplication::applicationFilePath(),
          {QStringLiteral("bench"), m_start.folder, QStringLiteral("--window-socket"),
           QString::number(m_childSocket)});
    const bool isRunning = waitForStarted();
    ::close(m_childSocket);
    if (isRunning) {
        QJsonObject start = m_start.toJson();
        send(QStringLiteral("start"), start);
        m_silence.start();
    }
    return isRunning;
}

// Between fork and exec: the program inherits its end of the socket pair.
void WindowProcess::setupChildProcess()
{
    ::fcntl(m_childSocket, F_SETFD, 0);
}

void WindowProcess::send(const QString &what, QJsonObject more)
{
    more.insert(QStringLiteral("do"), what);
    m_channel->send(more);
}

void WindowProcess::close(int killAfterMs)
{
    m_isClosing = true;
    send(QStringLiteral("quit"));
    QTimer::singleShot(killAfterMs, this, [this] {
        m_isKilled = true;
        kill();
    });
}

QString WindowProcess::cause() const
{
    if (exitStatus() == QProcess::CrashExit) {
        return signalName(exitCode());
    }
    const bool isExpected = m_isClosing && exitCode() == 0;
    return isExpected ? QString() : QStringLiteral("exit status %1").arg(exitCode());
}

void WindowProcess::onMessage(const QJsonObject &message)
{
    m_silence.start();
    if (m_isSilent) {
        m_isSilent = false;
        emit answersAgain();
    }
    const QString event = message[QLatin1String("event")].toString();
    m_hasOpened = true;
    m_isReady = m_isReady || event == QLatin1String("ready");
    m_isClosing = m_isClosing || event == QLatin1String("closing");
    emit received(event, message);
}
