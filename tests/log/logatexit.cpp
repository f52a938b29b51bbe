// SPDX-License-Identifier: Apache-2.0
//
// Logs under the default pattern, then at the process's end: from a thread-local destructor, an atexit handler
// and static destructors before and after the library's own globals are gone.
#include <kora/log/logmacros.h>

#include <cstdio>
#include <cstdlib>
#include <thread>

static void log(const char *stage)
{
    KORA::LogHandler(QString(), nullptr, 0, nullptr, "EXIT").warning().debug().nospace() << stage;
}

static void print(int, const QString &, const QString &message, void *)
{
    std::printf("%s\n", message.toUtf8().constData());
}

struct LogsWhenDestroyed
{
    const char *stage;
    ~LogsWhenDestroyed() { log(stage); }
};

static LogsWhenDestroyed outlivesThePattern{"after the pattern"};

int main()
{
    KORA::koraInstallLogMessageHandlerPrivate(print, nullptr);
    KORA::LogHandler(QString(), nullptr, 0, nullptr, "PLUGIN_LOADING").warning().debug().nospace() << "x";
    KORA::LogHandler(QString(), nullptr, 0, nullptr).info().debug().nospace() << "x";
    KORA::koraSetLogMessagePattern(QStringLiteral("[%{MESSAGE}]"));
    static LogsWhenDestroyed diesBeforeThePattern{"before the pattern"};
    thread_local LogsWhenDestroyed diesWithTheThread{"thread local"};
    (void)diesWithTheThread.stage;
    std::atexit([] { log("atexit"); });
    std::thread([] {
        // Holds the pattern's mutex most of the time, also while the process ends.
        for (;;)
            koraFormatLogMessage(QtDebugMsg, QMessageLogContext(), QStringLiteral("x"));
    }).detach();
    return 0;
}
