// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QVector>

#include <kora/dev/widgetlibraryplugintestwidget.h>

#include "benchstart.h"
#include "crashtrace.h"
#include "jsonchannel.h"

#include <functional>
#include <memory>

namespace KORA {
namespace DEV {
class BenchSession;
} // namespace DEV
} // namespace KORA

/// The bench's window with its session, in the process that runs the plugin's code.
class BenchWindow : public QObject
{
    Q_OBJECT

public:
    /// @p channel leads to the supervising process; null if there is none. Not owned.
    explicit BenchWindow(JsonChannel *channel, QObject *parent = nullptr);
    ~BenchWindow() override;

    /// Opens what is asked for, and shows the window. A reload whose library does not load is refused instead.
    void open(const BenchStart &start);

private:
    void makeWindow();
    void checkStatically();
    void connectWindow();
    void followLog();
    bool openPlugin();
    void fillPage();
    bool fillFrom(const KORA::DEV::Scenario &scenario);
    void fillFromSession();
    void fillFromScenario();
    void applyOverrides();
    void keepSession();

    void tellReload();
    void tellCrash();
    void tellRefusal(const QString &reason, const QString &details);
    void showDetails(const QString &title, const QString &text, const std::function<void()> &afterwards);
    void startAgain(const QString &without);

    void onCommand(const QJsonObject &message);
    void quit();
    void send(const char *event, QJsonObject more = {});

    JsonChannel *m_channel;
    BenchStart m_start;
    std::unique_ptr<CrashTrace> m_trace;
    std::unique_ptr<KORA::DEV::WidgetLibraryPluginTestWidget> m_window;
    std::unique_ptr<KORA::DEV::BenchSession> m_session;
    QTimer m_pulse;
    int m_kept = 0;
    QStringList m_dropped;
    QString m_message; ///< of what became of the session
    bool m_isLoaded = false;
};

/// The process's work: opens a window as the supervising process at the other end of @p socket says.
int runWindowProcess(int socket);

/// The same without a supervising process, for debuggers.
int runSingleProcess(const BenchStart &start);
