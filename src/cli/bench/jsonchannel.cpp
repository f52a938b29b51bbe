// SPDX-License-Identifier: Apache-2.0
#include "jsonchannel.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>

JsonChannel::JsonChannel(int socket, QObject *parent)
    : QObject(parent)
{
    m_socket.setSocketDescriptor(socket);
    connect(&m_socket, &QLocalSocket::readyRead, this, &JsonChannel::read);
    connect(&m_socket, &QLocalSocket::disconnected, this, [this] {
        read();
        emit closed();
    });
}

void JsonChannel::send(const QJsonObject &message)
{
    if (m_socket.state() == QLocalSocket::ConnectedState) {
        m_socket.write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
        m_socket.flush(); // the process may be gone before its event loop runs again
    }
}

void JsonChannel::flush(int ms)
{
    while (m_socket.bytesToWrite() > 0 && m_socket.waitForBytesWritten(ms)) {
    }
}

void JsonChannel::read()
{
    const QPointer<JsonChannel> self(this); // a receiver may delete the channel
    while (self && m_socket.canReadLine()) {
        const QJsonDocument document = QJsonDocument::fromJson(m_socket.readLine());
        if (document.isObject()) {
            emit received(document.object());
        }
    }
}
