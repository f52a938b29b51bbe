// SPDX-License-Identifier: Apache-2.0
#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QSet>
#include <QtTest/QTest>

#include <support/testmain.h>

#include "load/loadcheck.h"
#include "load/loadcheckrules.h"
#include "load/loadchecks.h"

using KORA::DEV::Finding;
using KORA::DEV::Findings;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
const bool isSanitized = true;
#else
const bool isSanitized = false;
#endif

LoadCheckOptions badWidgets(const QStringList &widgets = {}, const QStringList &checks = {})
{
    LoadCheckOptions options;
    options.path = QStringLiteral("bad widgets");
    options.program = QStringLiteral(KORA_COMMAND);
    options.plan.libraryPath = QStringLiteral(KORA_TEST_LIBRARY_fixture_badwidgets);
    options.plan.expectedId = QStringLiteral("0a5e9c10-0000-4000-8000-0000000bad00");
    options.plan.timeLimitMs = isSanitized ? 60000 : 6000;
    options.plan.widgets = widgets;
    options.plan.checks = checks;
    return options;
}

/// The rules of what was found wrong with a widget; of a death with the check that it befell.
QStringList rulesOf(const Findings &findings, const QString &widget)
{
    QStringList rules;
    for (const Finding &finding : findings) {
        if (finding.widgetId == widget) {
            const QString check = finding.message.section(QStringLiteral(" in the check "), 1, 1);
            rules.append((finding.rule + QLatin1Char(' ') + check.section(QLatin1Char('"'), 1, 1)).trimmed());
        }
    }
    rules.removeDuplicates();
    return rules;
}

QStringList one(const char *name)
{
    return {QLatin1String(name)};
}

} // namespace

class tst_LoadCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void eachFaultIsFoundByItsCheckAlone_data();
    void eachFaultIsFoundByItsCheckAlone();
    void findingsTellTheFault_data();
    void findingsTellTheFault();
    void nothingElseIsFound();
    void everyRuleIsExplained();
    void aDeathIsToldSoThatItCanBeRepeated();
    void faultsOfThePluginAreTold_data();
    void faultsOfThePluginAreTold();
    void randomValuesComeOfTheSeed();
    void wrongArgumentsAreProblems();
    void exitStatusTellsHowItWent_data();
    void exitStatusTellsHowItWent();

private:
    LoadCheckResult m_all;
};

// One run over all widgets: what kills it on the way must not hide the others.
void tst_LoadCheck::initTestCase()
{
    // A sanitizer would make an exit of the signals, and counts leaks itself.
    qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":handle_segv=0:handle_abort=0:detect_leaks=0");
    qputenv("TSAN_OPTIONS", qgetenv("TSAN_OPTIONS") + ":handle_segv=0:handle_abort=0");
    m_all = runLoadChecks(badWidgets());
    QCOMPARE(m_all.problem, QString());
    QVERIFY(m_all.hasDied);
}

void tst_LoadCheck::eachFaultIsFoundByItsCheckAlone_data()
{
    QTest::addColumn<QStringList>("rules");
    const auto row = [](const char *widget, const QStringList &rules) { QTest::newRow(widget) << rules; };
    row("abort", one("load-abort data-roles"));
    row("acknowledges_in_editor", one("load-modes"));
    row("crash", one("load-crash data-roles"));
    row("crash_when_made", one("load-crash widget-class"));
    row("crash_when_started", one("load-crash life-cycle") + one("load-crash events")
                                  + one("load-crash defaults") + one("load-skipped"));
    row("default", one("load-defaults"));
    row("deleted_by_touch", one("load-input"));
    row("deletes_itself", one("load-life-cycle"));
    row("ends_painter", one("load-paint"));
    row("exit", one("load-exit data-roles"));
    row("growing", isSanitized ? QStringList() : one("load-growth"));
    row("hang", one("load-hang data-roles"));
    row("icon", one("load-data-roles"));
    row("invalid_alarm", one("load-crash alarms"));
    row("leaves_scene", one("load-resize"));
    row("maximum", one("load-bounds"));
    row("message", one("load-message"));
    row("needs_item", one("load-crash life-cycle"));
    row("no_item", one("load-item-class"));
    row("no_widget", one("load-widget-class"));
    row("null_class", one("load-widget-class"));
    row("null_item", one("load-item-class"));
    row("other_class", one("load-widget-class"));
    row("other_data", one("load-widget-class"));
    row("other_item", one("load-item-class"));
    row("other_item_data", one("load-item-class"));
    row("own_scene", one("load-item-class"));
    row("painter", one("load-paint"));
    row("random", one("load-crash random-values"));
    row("resize", one("load-resize"));
    row("runs_when_stopped", one("load-events"));
    row("short_argument", one("load-widget-class"));
    row("short_item_argument", one("load-item-class"));
    row("short_version", one("load-registration"));
    row("trend_without_entries", one("load-crash host-services"));
    row("undeclared", one("load-registration"));
    row("unknown_field", one("load-warning"));
    row("unregistered", one("load-registration"));
    row("without_macro", one("load-widget-class"));
    row("writes_beyond_bounds", one("load-bounds"));
    row("writes_when_painted", one("load-paint"));
    row("wrong_icon", one("load-data-roles"));
    row("wrong_value", one("load-crash wrong-values"));
}

void tst_LoadCheck::eachFaultIsFoundByItsCheckAlone()
{
    QFETCH(const QStringList, rules);
    QCOMPARE(rulesOf(m_all.findings, QString::fromLatin1(QTest::currentDataTag())), rules);
}

void tst_LoadCheck::findingsTellTheFault_data()
{
    QTest::addColumn<QString>("message");
    const auto row = [](const char *widget, const char *message) {
        QTest::newRow(widget) << QString::fromLatin1(message);
    };
    row("deleted_by_touch", "it deletes its graphics object");
    row("deletes_itself", "it deletes itself");
    row("ends_painter", "its paint ends the painter");
    row("icon", "its icon shows nothing");
    row("maximum", "its field count does not keep its maximum 1000, it is 999 at once");
    row("no_widget", "its widget class NoWidget is not derived from KORA::Widget");
    row("null_class", "its widget class is registered as a null pointer");
    row("other_data", "its widget class does not pass on the data that it is constructed from");
    row("other_item_data", "its graphics object class does not pass on the data");
    row("own_scene", "its graphics object gives itself a scene");
    row("resize", "its boundingRect is not finite at the size 0x");
    row("runs_when_stopped", "it writes its field count although it was stopped");
    row("short_argument", "has no invokable constructor taking const KORA::WidgetData &; it has "
                          "ShortArgument(WidgetData)");
    row("without_macro", "its widget class is registered as KORA::Widget itself");
    row("writes_beyond_bounds", "it writes 1001 to its field count, whose bounds end at 1000");
    row("writes_when_painted", "it writes its field count while it paints");
    row("wrong_icon", "it answers the icon role with QVariant(QString, \"icon.png\") instead of a QIcon");
}

void tst_LoadCheck::findingsTellTheFault()
{
    QFETCH(const QString, message);
    const QString widget = QString::fromLatin1(QTest::currentDataTag());
    QStringList messages;
    for (const Finding &finding : qAsConst(m_all.findings)) {
        if (finding.widgetId == widget) {
            messages.append(finding.message);
        }
    }
    QVERIFY2(!messages.filter(message).isEmpty(), qPrintable(messages.join(QLatin1Char('\n'))));
}

void tst_LoadCheck::nothingElseIsFound()
{
    QCOMPARE(rulesOf(m_all.findings, QStringLiteral("good")), QStringList());
    QCOMPARE(rulesOf(m_all.findings, QString()), QStringList());
}

void tst_LoadCheck::everyRuleIsExplained()
{
    QSet<QString> rules{QStringLiteral("load-load"), QStringLiteral("load-refused"),
                        QStringLiteral("load-unload")};
    for (const LoadCheck &check : widgetChecks()) {
        rules.insert(QStringLiteral("load-") + QLatin1String(check.name));
    }
    for (const Finding &finding : qAsConst(m_all.findings)) {
        rules.insert(finding.rule);
    }
    QSet<QString> explained;
    for (const Rule &rule : loadCheckRules()) {
        explained.insert(QLatin1String(rule.id));
    }
    QCOMPARE(explained, rules);
}

void tst_LoadCheck::aDeathIsToldSoThatItCanBeRepeated()
{
    const LoadCheckResult result =
        runLoadChecks(badWidgets({QStringLiteral("crash")}, {QStringLiteral("data-roles")}));
    QCOMPARE(result.findings.size(), 1);
    const Finding &finding = result.findings.first();
    // An emulator adds a line of its own to the plugin's last words.
    QVERIFY2(finding.message.startsWith(QStringLiteral(
                 "it crashes with SIGSEGV in the check \"data-roles\", in the widget's data of "
                 "the icon role (seed 1); it wrote last: last words")),
             qPrintable(finding.message));
    QVERIFY2(finding.hint.endsWith(QStringLiteral("kora check 'bad widgets' --load --in-process --seed 1 "
                                                  "--widget crash@1.0.0 --check data-roles")),
             qPrintable(finding.hint));
    QCOMPARE(finding.widgetVersion, QStringLiteral("1.0.0"));
    QCOMPARE(finding.file, QStringLiteral(KORA_TEST_LIBRARY_fixture_badwidgets));
}

void tst_LoadCheck::faultsOfThePluginAreTold_data()
{
    QTest::addColumn<QString>("message");
    const auto row = [](const char *fault, const char *message) {
        QTest::newRow(fault) << QString::fromLatin1(message);
    };
    row("exit-when-loaded",
        "the plugin ends the process with exit code 0 in the check \"load\", in the plugin's "
        "constructor");
    row("crash-when-unloaded", "the plugin crashes with SIGSEGV in the check \"unload\", in the hooks "
                               "aboutToUnload and unload");
    row("crash-when-deleted",
        "the plugin crashes with SIGSEGV in the check \"unload\", in the plugin's destructor");
    row("crash-at-exit",
        "the plugin crashes with SIGSEGV in the check \"unload\", in the end of the process");
}

void tst_LoadCheck::faultsOfThePluginAreTold()
{
    QFETCH(const QString, message);
    qputenv("KORA_TEST_FAULT", QTest::currentDataTag());
    const LoadCheckResult result =
        runLoadChecks(badWidgets({QStringLiteral("good")}, {QStringLiteral("unload")}));
    qunsetenv("KORA_TEST_FAULT");
    QVERIFY(result.hasDied);
    QCOMPARE(result.findings.size(), 1);
    QVERIFY2(result.findings.first().message.startsWith(message),
             qPrintable(result.findings.first().message));
}

void tst_LoadCheck::randomValuesComeOfTheSeed()
{
    const auto messageWith = [](quint32 seed) {
        LoadCheckOptions options =
            badWidgets({QStringLiteral("random@1.0.0")}, {QStringLiteral("random-values")});
        options.plan.seed = seed;
        return runLoadChecks(options).findings.value(0).message.section(QStringLiteral(" (seed"), 0, 0);
    };
    const QString message = messageWith(7);
    QVERIFY2(message.contains(QStringLiteral("in fieldIsChangedEvent of count = ")), qPrintable(message));
    QCOMPARE(messageWith(7), message);
    QVERIFY(messageWith(8) != message);
}

void tst_LoadCheck::wrongArgumentsAreProblems()
{
    QVERIFY(
        runLoadChecks(badWidgets({}, {QStringLiteral("pant")}))
            .problem.startsWith(QStringLiteral("--check pant: there is no such check; there are load, ")));
    QCOMPARE(runLoadChecks(badWidgets({QStringLiteral("good@2.0.0")})).problem,
             QStringLiteral("--widget good@2.0.0: the plugin has no such widget"));
    LoadCheckOptions options = badWidgets();
    options.program = QDir::rootPath();
    QCOMPARE(runLoadChecks(options).problem, QStringLiteral("the process for the checks cannot be started"));
    options = badWidgets();
    options.plan.expectedId = QStringLiteral("another");
    const Findings findings = runLoadChecks(options).findings;
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().rule, QStringLiteral("load-refused"));
    QVERIFY(findings.first().message.contains(QStringLiteral("is not equal to the folder name another")));
}

void tst_LoadCheck::exitStatusTellsHowItWent_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    const auto row = [](const char *name, const QString &arguments, int status) {
        QTest::newRow(name) << arguments.split(QLatin1Char(' ')) << status;
    };
    row("fine", QStringLiteral("--widget good --check paint"), 0);
    row("fine in this process", QStringLiteral("--in-process --widget good --check growth"), 0);
    row("findings", QStringLiteral("--in-process --widget painter --check paint"), 1);
    row("usage", QStringLiteral("--widget nobody"), 2);
    row("died", QStringLiteral("--widget crash --check data-roles"), 4);
}

void tst_LoadCheck::exitStatusTellsHowItWent()
{
    QFETCH(const QStringList, arguments);
    const QString library = QStringLiteral(KORA_TEST_LIBRARY_fixture_badwidgets);
    QProcess process;
    process.start(QStringLiteral(KORA_COMMAND),
                  QStringList{QStringLiteral("check"), library, QStringLiteral("--load")} + arguments);
    QVERIFY(process.waitForFinished(60000));
    QTEST(process.exitCode(), "status");
}

KORA_TEST_MAIN(tst_LoadCheck)
#include "tst_loadcheck.moc"
