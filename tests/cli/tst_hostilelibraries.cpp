// SPDX-License-Identifier: Apache-2.0
//
// Libraries that do harm when their code runs: what kora check --load says of each, alive.
#include <QtTest/QTest>

#include <functional>

#include <support/testmain.h>

#include <loader/libraryimage.h>
#include <loader/pluginfolders.h>

#include "load/loadcheck.h"

using KORA::DEV::Finding;

namespace {

const char libraryId[] = "0a5e9c10-0000-4000-8000-00000000dead";

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
const int timeLimitMs = 20000;
#else
const int timeLimitMs = 2000;
#endif

struct Place
{
    const char *name;
    const char *check;
    const char *call;
};

const Place places[] = {
    {"static", "load", "the loading of the library, with its static constructors"},
    {"root", "load", "the plugin's constructor"},
    {"aboutToLoad", "load", "the hooks aboutToLoad and load"},
    {"load", "load", "the hooks aboutToLoad and load"},
    {"aboutToUnload", "unload", "the hooks aboutToUnload and unload"},
    {"unload", "unload", "the hooks aboutToUnload and unload"},
    {"destructor", "unload", "the plugin's destructor"},
    {"end", "unload", "the end of the process"},
};

const char hangs[] = "hangs and was stopped after %1 s,";

struct Action
{
    const char *name;
    const char *rule;
    const char *death;
};

const Action actions[] = {
    {"abort", "load-abort", "aborts with SIGABRT"},
    {"throw", "load-abort", "aborts with SIGABRT"},
    {"exit", "load-exit", "ends the process with exit code 3"},
    {"_exit", "load-exit", "ends the process with exit code 0"},
    {"segfault", "load-crash", "crashes with SIGSEGV"},
    {"hang", "load-hang", hangs},
};

// More ways to die, in one place: they take the same way.
const Action rareActions[] = {
    {"fpe", "load-crash", "crashes with SIGFPE"},
    {"overflow", "load-crash", "crashes with SIGSEGV"},
    {"terminate", "load-crash", "crashes with SIGTERM"},
    {"sleep", "load-hang", hangs},
    {"close", "load-exit", "ends the process with exit code 0"},
    {"qFatal", "load-abort", "aborts with SIGABRT"},
};

LibraryImage hostileLibrary(const QByteArray &fault)
{
    LibraryImage image(PluginFolders::readFile(KORA_TEST_LIBRARY_fixture_hostile));
    image.setFault(fault);
    return image;
}

void addRow(const Place &place, const Action &action)
{
    const QByteArray fault = QByteArray(place.name) + ' ' + action.name;
    const QString finding = QStringLiteral("%1 the plugin %2 in the check \"%3\", in %4 (seed 1)")
                                .arg(QLatin1String(action.rule),
                                     QString::fromLatin1(action.death)
                                         .replace(QLatin1String("%1"), QString::number(timeLimitMs / 1000)),
                                     QLatin1String(place.check), QLatin1String(place.call));
    QTest::newRow(fault.constData()) << hostileLibrary(fault).bytes << finding;
}

} // namespace

class tst_HostileLibraries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void areContained_data();
    void areContained();
};

void tst_HostileLibraries::initTestCase()
{
    // A sanitizer would make an exit of the signals.
    qputenv("ASAN_OPTIONS",
            qgetenv("ASAN_OPTIONS") + ":handle_segv=0:handle_abort=0:handle_sigfpe=0:detect_leaks=0");
    qputenv("TSAN_OPTIONS", qgetenv("TSAN_OPTIONS") + ":handle_segv=0:handle_abort=0:handle_sigfpe=0");
}

void tst_HostileLibraries::areContained_data()
{
    QTest::addColumn<QByteArray>("library");
    QTest::addColumn<QString>("finding");
    for (const Place &place : places) {
        for (const Action &action : actions) {
            const bool isAfterReport = qstrcmp(place.name, "end") == 0; // when ending is what is due
            if (!isAfterReport || qstrcmp(action.rule, "load-exit") != 0) {
                addRow(place, action);
            }
        }
    }
    for (const Action &action : rareActions) {
        addRow(places[1], action);
    }
    const auto row = [](const char *name, const std::function<void(LibraryImage &)> &damage) {
        LibraryImage image = hostileLibrary({});
        damage(image);
        QTest::newRow(name) << image.bytes
                            << QStringLiteral(
                                   "load-crash the plugin crashes with SIGSEGV in the check \"load\", in "
                                   "the loading of the library, with its static constructors (seed 1)");
    };
    // What the system's loader believes without a look.
    row("names at a wild address",
        [](LibraryImage &image) { image.dynamic(DT_STRTAB).d_un.d_ptr = 1 << 30; });
    row("symbols at a wild address",
        [](LibraryImage &image) { image.dynamic(DT_SYMTAB).d_un.d_ptr = 1 << 30; });
    row("a needed library behind the names",
        [](LibraryImage &image) { image.dynamic(DT_NEEDED).d_un.d_val = 1 << 30; });
    row("relocations without end",
        [](LibraryImage &image) { image.dynamic(DT_RELASZ).d_un.d_val = 1 << 30; });
    row("static constructors at a wild address",
        [](LibraryImage &image) { image.dynamic(DT_INIT_ARRAY).d_un.d_ptr = 1 << 30; });
}

void tst_HostileLibraries::areContained()
{
    QFETCH(QByteArray, library);
    QFETCH(QString, finding);
    const PluginFolders folders;
    LoadCheckOptions options;
    options.path = QStringLiteral("hostile");
    options.program = QStringLiteral(KORA_COMMAND);
    options.plan.libraryPath = folders.put(QLatin1String(libraryId), library);
    options.plan.expectedId = QLatin1String(libraryId);
    options.plan.timeLimitMs = timeLimitMs;
    options.plan.checks = QStringList(QStringLiteral("unload"));
    const LoadCheckResult result = runLoadChecks(options);
    QCOMPARE(result.problem, QString());
    QVERIFY(result.hasDied);
    QCOMPARE(result.findings.size(), 1);
    const Finding &found = result.findings.first();
    // Some write last words; an emulator adds a line of its own.
    QCOMPARE(found.rule + QLatin1Char(' ') + found.message.section(QStringLiteral("; it wrote last: "), 0, 0),
             finding);
}

KORA_TEST_MAIN(tst_HostileLibraries)
#include "tst_hostilelibraries.moc"
