// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTimer>

#include "benchstart.h"
#include "jsonchannel.h"

#include <memory>

/// A process with the bench's window, seen from the one that supervises it.
class WindowProcess : public QProcess
{
    Q_OBJECT

public:
    static constexpr int answerMs = 5000; ///< without a sign of life for so long it hangs

    explicit WindowProcess(const BenchStart &begin, QObject *parent = nullptr);

    /// False if there is no process.
    bool begin();
    const BenchStart &what() const { return m_start; }

    void send(const QString &what, QJsonObject more = {});
    /// Asks it to close, and kills it if it does not in time.
    void close(int killAfterMs = 3000);

    bool hasOpened() const { return m_hasOpened; } ///< there is a display
    bool isReady() const { return m_isReady; }
    bool isClosing() const { return m_isClosing; } ///< it was asked to, or the user did
    bool isKilled() const { return m_isKilled; }   ///< it did not close in time
    /// How it ended: "SIGSEGV", "exit status 3"; empty if well.
    QString cause() const;

Q_SIGNALS:
    void received(const QString &event, const QJsonObject &message);
    void answersNoMore();
    void answersAgain();
    void ended();

protected:
    void setupChildProcess() override;

private:
    void onMessage(const QJsonObject &message);

    BenchStart m_start;
    std::unique_ptr<JsonChannel> m_channel;
    QTimer m_silence;
    int m_childSocket = -1;
    bool m_hasOpened = false;
    bool m_isReady = false;
    bool m_isClosing = false;
    bool m_isSilent = false;
    bool m_isKilled = false;
};
