// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>

#include <support/testmain.h>

namespace {

const QString pluginId = QStringLiteral("7d1c1d3e-6c0a-4d7c-8f53-2b7f1c6f0a42");
const int longestWait = 15000;

QString libraryIn(const QString &folder)
{
    return QStringLiteral("%1/%2/lib%3.so")
        .arg(folder, QStringLiteral(KORA_TEST_PLATFORM_DIR).toLower(), pluginId);
}

QByteArray builtLibrary(const char *build)
{
    QFile file(libraryIn(QStringLiteral(KORA_TEST_PLUGINS_DIR "/%1/%2").arg(QLatin1String(build), pluginId)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// As a linker does: under another name, renamed when it is complete.
bool install(const QByteArray &content, const QString &path)
{
    QFile file(path + QLatin1String(".new"));
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
           && file.write(content) == content.size() && file.flush()
           && std::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(path).constData())
                  == 0;
}

QJsonObject tank(const char *name, const QJsonObject &values)
{
    return {{QStringLiteral("name"), QLatin1String(name)},
            {QStringLiteral("widget"), QStringLiteral("tank")},
            {QStringLiteral("version"), QStringLiteral("1.0.0")},
            {QStringLiteral("x"), 10},
            {QStringLiteral("y"), 10},
            {QStringLiteral("width"), 100},
            {QStringLiteral("height"), 80},
            {QStringLiteral("values"), values}};
}

QJsonObject fault(const char *kind)
{
    return {{QStringLiteral("fault"), QLatin1String(kind)}};
}

/// A run of the bench: what it reports, and commands to its window.
class Bench
{
public:
    Bench(const QString &stateDir, const QStringList &arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_STATE_HOME"), stateDir);
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), stateDir);
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), stateDir);
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(KORA_COMMAND),
                        QStringList{QStringLiteral("bench")} + arguments
                            + QStringList{QStringLiteral("--report"), QStringLiteral("-")});
    }

    ~Bench()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(10000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    Q_DISABLE_COPY_MOVE(Bench)

    /// The next report of that kind; empty if none comes. Reports of other kinds are passed over.
    QJsonObject waitFor(const char *event)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < longestWait) {
            while (m_process.canReadLine()) {
                const QJsonObject report = QJsonDocument::fromJson(m_process.readLine()).object();
                if (report[QLatin1String("event")].toString() == QLatin1String(event)) {
                    return report;
                }
            }
            if (!m_process.waitForReadyRead(1000) && m_process.state() == QProcess::NotRunning
                && !m_process.canReadLine()) {
                break;
            }
        }
        return {};
    }

    void send(const QJsonObject &command)
    {
        m_process.write(QJsonDocument(command).toJson(QJsonDocument::Compact) + '\n');
        m_process.waitForBytesWritten();
    }

    void interrupt() { ::kill(static_cast<pid_t>(m_process.processId()), SIGINT); }
    bool waitForEnd()
    {
        return m_process.state() == QProcess::NotRunning || m_process.waitForFinished(longestWait);
    }
    int exitCode() const { return m_process.exitCode(); }
    QString errors() { return QString::fromUtf8(m_process.readAllStandardError()); }

private:
    QProcess m_process;
};

QString bannersOf(const QJsonObject &ready)
{
    QStringList texts;
    const QJsonArray banners = ready[QLatin1String("banners")].toArray();
    for (const QJsonValue &banner : banners) {
        texts.append(banner.toString());
    }
    return texts.join(QLatin1Char('\n'));
}

bool isGone(const QJsonObject &ready)
{
    const auto pid = static_cast<pid_t>(ready[QLatin1String("pid")].toInt());
    return pid > 0 && ::kill(pid, 0) != 0 && errno == ESRCH;
}

} // namespace

class tst_BenchProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void wrongArguments_data();
    void wrongArguments();
    void withoutDisplay();
    void reloadTakesOverWhatIsOpen();
    void sessionComesBack();
    void theCommandLineDecides();
    void whatDoesNotFitIsTold();
    void damagedSessionIsSetAside();
    void crashedPluginComesBackStopped();
    void pluginThatEndsTheProcess();
    void newBuildThatCrashesIsNotTakenOver();
    void newBuildOfAnotherInterfaceIsNotTakenOver();
    void buildThatCrashesOnLoadingEndsInNoLoop();
    void hangIsTold();
    void hungWindowIsEnded();
    void aSessionThatCannotBeKeptIsTold();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    QString library() const { return libraryIn(path(pluginId)); }
    QString state() const { return path(QStringLiteral("state")); }
    QString session() const { return state() + QStringLiteral("/kora/bench/%1.json").arg(pluginId); }
    QStringList withScenario(const QJsonArray &widgets) const;

    std::unique_ptr<QTemporaryDir> m_dir;
};

void tst_BenchProcess::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    QVERIFY(QDir().mkpath(state()));
    QVERIFY(QFile::setPermissions(state(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(install(builtLibrary("first"), library()));
}

QStringList tst_BenchProcess::withScenario(const QJsonArray &widgets) const
{
    const QJsonObject scenario{{QStringLiteral("kora"), QStringLiteral("scenario")},
                               {QStringLiteral("schema"), 1},
                               {QStringLiteral("pluginId"), pluginId},
                               {QStringLiteral("widgets"), widgets}};
    QFile file(path(QStringLiteral("scenario.json")));
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(scenario).toJson()) < 0) {
        return {};
    }
    return {path(pluginId), QStringLiteral("--scenario"), file.fileName()};
}

void tst_BenchProcess::wrongArguments_data()
{
    QTest::addColumn<QStringList>("arguments"); // "DIR" stands for the test's folder
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("reason");

    const QString plugin = QStringLiteral("DIR/") + pluginId;
    QTest::newRow("missing folder") << QStringList{QStringLiteral("DIR/nowhere")} << 1
                                    << QStringLiteral("does not exist");
    QTest::newRow("the folder above")
        << QStringList{QStringLiteral("DIR")} << 1
        << QStringLiteral("it holds the plugin folder DIR/%1: name that").arg(pluginId);
    QTest::newRow("a file") << QStringList{QStringLiteral(KORA_COMMAND)} << 1
                            << QStringLiteral("is no library in a plugin folder");
    QTest::newRow("size of the page")
        << QStringList{plugin, QStringLiteral("--page"), QStringLiteral("8x480")} << 2
        << QStringLiteral("--page 8x480: width and height");
    QTest::newRow("language") << QStringList{plugin, QStringLiteral("--language"), QStringLiteral("italian")}
                              << 2 << QStringLiteral("a code such as it-IT");
    QTest::newRow("theme") << QStringList{plugin, QStringLiteral("--theme"), QStringLiteral("pink")} << 2
                           << QStringLiteral("pink");
    QTest::newRow("no scenario") << QStringList{plugin, QStringLiteral("--scenario"),
                                                QStringLiteral("DIR/none.json")}
                                 << 1 << QStringLiteral("DIR/none.json cannot be read");
}

void tst_BenchProcess::wrongArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    arguments.replaceInStrings(QStringLiteral("DIR"), m_dir->path());
    reason.replace(QStringLiteral("DIR"), m_dir->path());
    Bench bench(state(), arguments);
    QVERIFY(bench.waitForEnd());
    QTEST(bench.exitCode(), "exitCode");
    const QString errors = bench.errors();
    QVERIFY2(errors.contains(reason), qPrintable(errors));
}

void tst_BenchProcess::withoutDisplay()
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        environment.remove(QLatin1String(name));
    }
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(KORA_COMMAND), {QStringLiteral("bench"), path(pluginId)});
    QVERIFY(process.waitForFinished(longestWait));
    QCOMPARE(process.exitCode(), 1);
    const QString errors = QString::fromUtf8(process.readAllStandardError());
    QVERIFY2(errors.contains(QStringLiteral("there is no display"))
                 && errors.contains(QStringLiteral("kora render")),
             qPrintable(errors));
}

void tst_BenchProcess::reloadTakesOverWhatIsOpen()
{
    const QJsonObject values{{QStringLiteral("level"), 42.5}, {QStringLiteral("speedLimit"), 7}};
    Bench bench(state(),
                withScenario({tank("tank1", values), tank("tank2", {{QStringLiteral("level"), 1}})}));
    const QJsonObject first = bench.waitFor("ready");
    QCOMPARE(first[QLatin1String("loaded")], QJsonValue(true));
    QCOMPARE(first[QLatin1String("kept")].toInt(), 3);

    QVERIFY(install(builtLibrary("later"), library()));
    const QJsonObject second = bench.waitFor("ready");
    QCOMPARE(second[QLatin1String("reload")], QJsonValue(true));
    QCOMPARE(second[QLatin1String("kept")].toInt(), 2);
    QVERIFY2(bannersOf(second).contains(QStringLiteral(" s. 2 values kept, 1 dropped: tank1: speedLimit")),
             qPrintable(bannersOf(second)));
    QVERIFY(second[QLatin1String("pid")] != first[QLatin1String("pid")]);
    QTRY_VERIFY(isGone(first));

    // A build that is no library leaves the old one at work; one that is missing for long as well.
    QVERIFY(install("no library", library()));
    QVERIFY(bench.waitFor("reloadRefused")[QLatin1String("reason")].toString().contains(
        QStringLiteral("is not a Qt plugin")));
    QVERIFY(QDir(path(pluginId)).removeRecursively());
    QVERIFY(bench.waitFor("reloadRefused")[QLatin1String("reason")].toString().contains(
        QStringLiteral("there is no library")));
    QVERIFY(!isGone(second));

    // Its folders are new ones too.
    QVERIFY(install(builtLibrary("first"), library()));
    const QJsonObject third = bench.waitFor("ready");
    QCOMPARE(third[QLatin1String("kept")].toInt(), 2);
    QVERIFY(bannersOf(third).contains(QStringLiteral(" s. 2 values kept.")));

    // Asked for, and of a library that is the same.
    bench.send({{QStringLiteral("do"), QStringLiteral("reload")}});
    QCOMPARE(bench.waitFor("ready")[QLatin1String("kept")].toInt(), 2);
}

void tst_BenchProcess::sessionComesBack()
{
    {
        Bench bench(state(), withScenario({tank("tank1", {{QStringLiteral("level"), 42.5}})}));
        const QJsonObject ready = bench.waitFor("ready");
        QCOMPARE(ready[QLatin1String("kept")].toInt(), 1);
        bench.interrupt();
        QVERIFY(!bench.waitFor("ended").isEmpty());
        QVERIFY(bench.waitForEnd());
        QCOMPARE(bench.exitCode(), 0);
        QVERIFY(isGone(ready));
    }
    QVERIFY(QFile::exists(session()));
    {
        Bench bench(state(), {library()}); // the library stands for its folder
        QCOMPARE(bench.waitFor("ready")[QLatin1String("kept")].toInt(), 1);
        // The session is in use: another bench begins afresh.
        Bench other(state(), {path(pluginId) + QLatin1Char('/')});
        QCOMPARE(other.waitFor("ready")[QLatin1String("kept")].toInt(), 0);
        QVERIFY(other.errors().contains(QStringLiteral("another bench has this plugin open")));
    }
    {
        Bench bench(state(), {path(pluginId), QStringLiteral("--no-session")});
        QCOMPARE(bench.waitFor("ready")[QLatin1String("kept")].toInt(), 0);
    }
    {
        Bench bench(state(), withScenario({}));
        QCOMPARE(bench.waitFor("ready")[QLatin1String("kept")].toInt(), 0);
        QVERIFY(QFile::exists(
            QString(session()).replace(QStringLiteral(".json"), QStringLiteral(".previous.json"))));
    }
}

void tst_BenchProcess::theCommandLineDecides()
{
    const auto kept = [this](const char *key) -> QJsonValue {
        QFile file(session());
        const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return QJsonDocument::fromJson(content).object().value(QLatin1String(key));
    };
    {
        Bench bench(state(), {path(pluginId), QStringLiteral("--page"), QStringLiteral("1024x600"),
                              QStringLiteral("--mode"), QStringLiteral("runtime"),
                              QStringLiteral("--language"), QStringLiteral("xx-XX"),
                              QStringLiteral("--theme"), QStringLiteral("dark"), QStringLiteral("--safe")});
        const QJsonObject ready = bench.waitFor("ready");
        QCOMPARE(ready[QLatin1String("stopped")], QJsonValue(true));
        const QString banners = bannersOf(ready);
        QVERIFY2(banners.contains(QStringLiteral("The library has no texts in xx-XX; it has "))
                     && banners.contains(QStringLiteral("Safe mode: no widget is started.")),
                 qPrintable(banners));
        bench.interrupt();
        QVERIFY(bench.waitForEnd());
    }
    QCOMPARE(kept("page")[QLatin1String("width")].toInt(), 1024);
    QCOMPARE(kept("page")[QLatin1String("height")].toInt(), 600);
    QCOMPARE(kept("mode").toString(), QStringLiteral("runtime"));
    {
        Bench bench(state(), {path(pluginId), QStringLiteral("--mode"), QStringLiteral("studio")});
        QCOMPARE(bench.waitFor("ready")[QLatin1String("stopped")], QJsonValue(false));
        bench.interrupt();
        QVERIFY(bench.waitForEnd());
    }
    QCOMPARE(kept("page")[QLatin1String("width")].toInt(), 1024);
    QCOMPARE(kept("mode").toString(), QStringLiteral("studio"));
}

void tst_BenchProcess::whatDoesNotFitIsTold()
{
    const QJsonObject values{{QStringLiteral("level"), 42.5}, {QStringLiteral("depth"), 7}};
    Bench bench(state(), withScenario({tank("tank1", values)}));
    const QJsonObject ready = bench.waitFor("ready");
    QCOMPARE(ready[QLatin1String("kept")].toInt(), 1);
    QVERIFY2(bannersOf(ready).contains(
                 QStringLiteral("Of scenario.json, 1 value kept, 1 dropped: tank1: depth is gone (was 7)")),
             qPrintable(bannersOf(ready)));
}

void tst_BenchProcess::damagedSessionIsSetAside()
{
    QVERIFY(install("{\"kora\": \"scen", session()));
    Bench bench(state(), {path(pluginId)});
    const QJsonObject ready = bench.waitFor("ready");
    QCOMPARE(ready[QLatin1String("loaded")], QJsonValue(true));
    QVERIFY2(bannersOf(ready).contains(QStringLiteral("It is kept as ")), qPrintable(bannersOf(ready)));
    const QDir folder(QFileInfo(session()).path());
    const QStringList damaged = folder.entryList({QStringLiteral("*.damaged-*.json")});
    QCOMPARE(damaged.size(), 1);
    QCOMPARE(QFileInfo(folder.filePath(damaged.first())).size(), 14);
}

void tst_BenchProcess::crashedPluginComesBackStopped()
{
    Bench bench(state(), withScenario({tank("tank1", fault("crash")), tank("tank2", {})}));
    const QJsonObject crash = bench.waitFor("crashed");
    QCOMPARE(crash[QLatin1String("cause")].toString(), QStringLiteral("SIGSEGV"));
    QCOMPARE(crash[QLatin1String("calls")].toArray().last().toString(), QStringLiteral("initEvent of tank1"));
    QCOMPARE(crash[QLatin1String("repeated")], QJsonValue(false));
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    QVERIFY(crash[QLatin1String("details")].toString().contains(
        pluginId)); // the backtrace leads into the library
#endif
    const QJsonObject stopped = bench.waitFor("ready");
    QCOMPARE(stopped[QLatin1String("stopped")], QJsonValue(true));
    QVERIFY2(bannersOf(stopped).contains(QStringLiteral("Crashed in initEvent of tank1 (SIGSEGV).")),
             qPrintable(bannersOf(stopped)));

    bench.send({{QStringLiteral("do"), QStringLiteral("startAgain")},
                {QStringLiteral("without"), QStringLiteral("tank1")}});
    QCOMPARE(bench.waitFor("startedAgain")[QLatin1String("count")].toInt(), 1);
    bench.send({{QStringLiteral("do"), QStringLiteral("startAgain")}});
    QCOMPARE(bench.waitFor("crashed")[QLatin1String("repeated")], QJsonValue(true));
    const QJsonObject safe = bench.waitFor("ready");
    QCOMPARE(safe[QLatin1String("stopped")], QJsonValue(true));
    QVERIFY2(bannersOf(safe).contains(QStringLiteral("second crash within a minute")),
             qPrintable(bannersOf(safe)));
    QCOMPARE(safe[QLatin1String("kept")].toInt(), 1); // nothing is lost
}

void tst_BenchProcess::pluginThatEndsTheProcess()
{
    Bench bench(state(), withScenario({tank("tank1", fault("exit"))}));
    QCOMPARE(bench.waitFor("crashed")[QLatin1String("cause")].toString(), QStringLiteral("exit status 3"));
    QVERIFY(bannersOf(bench.waitFor("ready")).contains(QStringLiteral("initEvent of tank1 (exit status 3)")));
}

void tst_BenchProcess::newBuildThatCrashesIsNotTakenOver()
{
    Bench bench(state(), withScenario({tank("tank1", {{QStringLiteral("level"), 42.5}})}));
    const QJsonObject first = bench.waitFor("ready");
    QVERIFY(install(builtLibrary("crashing"), library()));
    QCOMPARE(bench.waitFor("reloadRefused")[QLatin1String("reason")].toString(),
             QStringLiteral("Crashed in load of %1 (SIGSEGV).").arg(pluginId));
    QVERIFY(!isGone(first));
    // The window goes on, and so does its session.
    QVERIFY(install(builtLibrary("later"), library()));
    QCOMPARE(bench.waitFor("ready")[QLatin1String("kept")].toInt(), 1);
}

void tst_BenchProcess::newBuildOfAnotherInterfaceIsNotTakenOver()
{
    Bench bench(state(), withScenario({tank("tank1", {{QStringLiteral("level"), 42.5}})}));
    const QJsonObject first = bench.waitFor("ready");
    QVERIFY(
        install(builtLibrary("later").replace("org.Vako.KORA.WidgetLibrary", "org.Vako.KORA.WidgetLibrarx"),
                library()));
    const QString reason = bench.waitFor("reloadRefused")[QLatin1String("reason")].toString();
    QVERIFY2(reason.startsWith(QStringLiteral("the plugin's interface (IID) is ")), qPrintable(reason));
    QVERIFY(!isGone(first));
    QVERIFY(install(builtLibrary("later"), library()));
    QCOMPARE(bench.waitFor("ready")[QLatin1String("kept")].toInt(), 1);
}

void tst_BenchProcess::buildThatCrashesOnLoadingEndsInNoLoop()
{
    QVERIFY(install(builtLibrary("crashing"), library()));
    Bench bench(state(), {path(pluginId)});
    QVERIFY(!bench.waitFor("crashed").isEmpty());
    QVERIFY(!bench.waitFor("crashed").isEmpty());
    QCOMPARE(bench.waitFor("ready")[QLatin1String("loaded")], QJsonValue(false));
    QVERIFY(install(builtLibrary("first"), library()));
    QCOMPARE(bench.waitFor("ready")[QLatin1String("loaded")], QJsonValue(true));
}

void tst_BenchProcess::hangIsTold()
{
    Bench bench(state(), withScenario({tank("tank1", fault("hang"))}));
    QCOMPARE(bench.waitFor("hangs")[QLatin1String("call")].toString(), QStringLiteral("initEvent of tank1"));
    QVERIFY(!bench.waitFor("answersAgain").isEmpty());
    QVERIFY(!bench.waitFor("ready").isEmpty());
    const QString errors = bench.errors();
    QCOMPARE(errors.count(QStringLiteral("gdb -p ")), 1);
}

// It has three seconds to end; who asks again will not wait so long.
void tst_BenchProcess::hungWindowIsEnded()
{
    Bench bench(state(), withScenario({tank("tank1", fault("hang"))}));
    QCOMPARE(bench.waitFor("hangs")[QLatin1String("call")].toString(), QStringLiteral("initEvent of tank1"));
    bench.interrupt();
    QTest::qWait(600);
    bench.interrupt();
    const QJsonObject crash = bench.waitFor("crashedAtEnd");
    QCOMPARE(crash[QLatin1String("cause")].toString(), QStringLiteral("SIGKILL"));
    QCOMPARE(crash[QLatin1String("calls")].toArray().last().toString(), QStringLiteral("initEvent of tank1"));
    QVERIFY(!bench.waitFor("ended").isEmpty());
    QVERIFY(bench.waitForEnd());
    const QString errors = bench.errors();
    QVERIFY2(errors.contains(QStringLiteral("the window hung in initEvent of tank1 and was killed")),
             qPrintable(errors));
}

void tst_BenchProcess::aSessionThatCannotBeKeptIsTold()
{
    QVERIFY(install("in the way", state() + QStringLiteral("/kora")));
    Bench bench(state(), {path(pluginId)});
    QVERIFY(!bench.waitFor("ready").isEmpty());
    const QString errors = bench.errors();
    QVERIFY2(errors.contains(QStringLiteral("cannot be made: what is open is lost at the end")),
             qPrintable(errors));
    // Reloads work without it, one after the other.
    bench.send({{QStringLiteral("do"), QStringLiteral("reload")}});
    bench.send({{QStringLiteral("do"), QStringLiteral("reload")}});
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(bench.waitFor("ready")[QLatin1String("reload")], QJsonValue(true));
    }
}

KORA_TEST_MAIN(tst_BenchProcess)
#include "tst_benchprocess.moc"
