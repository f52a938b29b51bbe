// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtNetwork/QLocalSocket>

/// Sends JSON objects, one per line, over one end of a socket pair to the process at the other end.
class JsonChannel : public QObject
{
    Q_OBJECT

public:
    /// Takes over the connected socket.
    explicit JsonChannel(int socket, QObject *parent = nullptr);

    /// Sent in order; nothing happens when the other end is gone.
    void send(const QJsonObject &message);
    /// Waits until all that was sent is with the system, at most so long.
    void flush(int ms);

Q_SIGNALS:
    void received(const QJsonObject &message);
    void closed();

private:
    void read();

    QLocalSocket m_socket;
};
