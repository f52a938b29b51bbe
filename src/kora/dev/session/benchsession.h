// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <functional>

#include <kora/dev/model/scenario.h>
#include <kora/export.h>

namespace KORA {
namespace DEV {

class BenchDocument;

/// Keeps what a bench has open in a file, so that neither a crash of the plugin nor the end of the window loses it: a
/// scenario, with the window's own state as its view. Changes are on disk within a second. GUI thread.
class KORA_EXPORT BenchSession : public QObject
{
    Q_OBJECT

public:
    /// From the first change that is not written yet to the writing. Further changes do not put it off.
    static constexpr int delayMs = 500;

    /// Where the session of a plugin is kept: in kora/bench below $XDG_STATE_HOME, else below ~/.local/state.
    static QString defaultPath(const QString &pluginId);

    enum class Found {
        Nothing, ///< there is no session
        Session,
        Damaged ///< it was renamed, so that the next one does not replace it
    };
    /// Reads a session. For Damaged @p message says why and what it is named now.
    static Found read(const QString &path, Scenario &scenario, QString &message);
    /// Puts a session aside as "<name>.previous.json", in the place of an earlier one: for who starts with something
    /// else. True if there is none.
    static bool setAside(const QString &path);

    /// Keeps @p document in the file @p path from now on; its folder is made. Not owned; must outlive the session.
    BenchSession(const QString &path, BenchDocument *document, QObject *parent = nullptr);
    ~BenchSession() override;

    QString path() const { return m_path; }
    /// Gives the window's state. A window says by noteChange() that it is another.
    void setViewSource(const std::function<QJsonObject()> &view) { m_view = view; }
    void noteChange();

    /// Writes now; what is written already is not written again. False, after failed(), if it cannot be.
    bool save();
    /// Another takes over: writes now, and then not again until resume().
    bool suspend();
    void resume();

Q_SIGNALS:
    /// Told once per reason, not at every attempt.
    void failed(const QString &problem);

private:
    QString m_path;
    BenchDocument *m_document;
    std::function<QJsonObject()> m_view;
    QTimer m_timer;
    QByteArray m_written;
    QString m_lastProblem;
    bool m_isSuspended = false;
};

} // namespace DEV
} // namespace KORA
