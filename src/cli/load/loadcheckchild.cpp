// SPDX-License-Identifier: Apache-2.0
#include "loadcheckchild.h"

#include <CLI/CLI.hpp>

#include <QtCore/QFile>
#include <QtGui/QIcon>
#include <QtGui/QPixmap>

#include <kora/host.h>

#include "command.h"
#include "loadchecklog.h"
#include "loadcheckreport.h"
#include "loadcheckrun.h"
#include "loadchecks.h"
#include "output.h"
#include "picture/pictureenvironment.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <vector>

using namespace KORA::INTERNAL;
using KORA::DEV::Finding;

namespace {

// The step that loads the plugin is number 0, that of the registration 1.
const int registrationStep = 1;
const int firstWidgetStep = 2;

/// One run of the plan.
class StepTaker
{
public:
    StepTaker(const LoadCheckPlan &plan, LoadCheckReport &report)
        : m_plan(plan)
        , m_report(report)
        , m_log(report)
    {}

    void takeAll()
    {
        beginPluginStep(0, loadCheckName);
        if (!load() || !chooseWidgets()) {
            m_report.done();
            return;
        }
        if (isWanted(registrationCheckName) && m_plan.firstStep <= registrationStep) {
            beginPluginStep(registrationStep, registrationCheckName);
            CheckRun run = makeRun(QLatin1String(registrationCheckName), {});
            checkRegistration(run);
        }
        for (int i = 0; i < m_widgets.size(); ++i) {
            checkWidget(i);
        }
        unload();
        m_report.done();
    }

private:
    bool isWanted(const char *check) const
    {
        return m_plan.checks.isEmpty() || m_plan.checks.contains(QLatin1String(check));
    }

    int stepOfWidget(int index) const { return firstWidgetStep + index * widgetChecks().size(); }

    void beginPluginStep(int number, const char *check)
    {
        m_report.begin({number, number + 1, QLatin1String(check), QString(), QString()});
    }

    void tellCall(const QString &text) { m_report.call(text, QString(), QString()); }

    CheckRun makeRun(const QString &check, const WidgetMetaInformation &widget)
    {
        return CheckRun(check, *m_plugin, widget, m_report, m_log);
    }

    bool load()
    {
        tellCall(QStringLiteral("the loading of the library, with its static constructors"));
        // As the loader opens it next, so that a death tells the two apart. What fails here, the loader tells.
        (void)::dlopen(QFile::encodeName(m_plan.libraryPath).constData(), RTLD_NOW | RTLD_NODELETE);
        tellCall(QStringLiteral("the plugin's constructor"));
        if (!m_loader.loadFromPluginPath(m_plan.libraryPath, m_plan.expectedId)) {
            tellRefusal();
            return false;
        }
        m_plugin = m_loader.pluginData().first()->toWidgetLibraryPluginData();
        tellCall(QStringLiteral("the hooks aboutToLoad and load"));
        m_loader.init();
        tellLog(loadCheckName);
        return true;
    }

    void tellRefusal()
    {
        Finding finding;
        finding.rule = QStringLiteral("load-refused");
        finding.message = m_log.takeLibraryWarnings(false).join(QLatin1String("; "));
        finding.hint = QStringLiteral("kora check without --load tells the cause");
        finding.file = m_plan.libraryPath;
        m_report.finding(finding);
    }

    void tellLog(const char *check) { makeRun(QLatin1String(check), {}).tellLog(); }

    bool isChosen(const WidgetMetaInformation &widget, const QString &text) const
    {
        return text == widget.id()
               || text == QStringLiteral("%1@%2").arg(widget.id(), widget.version().version());
    }

    bool chooseWidgets()
    {
        const auto all = m_plugin->metaInformation()->widgets();
        for (const QString &text : m_plan.widgets) {
            const bool isKnown =
                std::any_of(all.cbegin(), all.cend(),
                            [&](const WidgetMetaInformation &widget) { return isChosen(widget, text); });
            if (!isKnown) {
                m_report.problem(QStringLiteral("--widget %1: the plugin has no such widget").arg(text));
                return false;
            }
        }
        for (const WidgetMetaInformation &widget : all) {
            const bool isWantedHere =
                std::any_of(m_plan.widgets.cbegin(), m_plan.widgets.cend(),
                            [&](const QString &text) { return isChosen(widget, text); });
            if (m_plan.widgets.isEmpty() || isWantedHere) {
                m_widgets.append(widget);
            }
        }
        return true;
    }

    void checkWidget(int index)
    {
        const WidgetMetaInformation &widget = m_widgets.at(index);
        const auto &registry = WidgetLibraryPluginPrivateAccessor::priv(m_plugin->instance())->widgetRegistry;
        if (!registry.contains({widget.id(), widget.version().version()})) {
            return; // told by the check of the registration
        }
        int number = stepOfWidget(index);
        for (const LoadCheck &check : widgetChecks()) {
            const bool isNew = number >= m_plan.firstStep;
            if ((check.isPrecondition || isWanted(check.name)) && isNew
                && !passes(check, widget, number, stepOfWidget(index + 1))) {
                return;
            }
            ++number;
        }
    }

    /// Whether further checks of the widget make sense.
    bool passes(const LoadCheck &check, const WidgetMetaInformation &widget, int number, int nextWidget)
    {
        const QString name = QLatin1String(check.name);
        m_report.begin({number, nextWidget, name, widget.id(), widget.version().version()});
        CheckRun run = makeRun(name, widget);
        run.seed(m_plan.seed);
        run.setTimeLimit(m_plan.timeLimitMs);
        check.run(run);
        run.tellLog();
        return !check.isPrecondition || !run.hasErrors();
    }

    void unload()
    {
        beginPluginStep(stepOfWidget(m_widgets.size()), unloadCheckName);
        tellCall(QStringLiteral("the hooks aboutToUnload and unload"));
        m_loader.deinit();
        tellLog(unloadCheckName);
        tellCall(QStringLiteral("the plugin's destructor"));
        m_loader.unload();
        tellCall(QStringLiteral("the end of the process"));
    }

    const LoadCheckPlan &m_plan;
    LoadCheckReport &m_report;
    CheckLog m_log;
    PluginLoader m_loader;
    const WidgetLibraryPluginData *m_plugin = nullptr;
    QList<WidgetMetaInformation> m_widgets;
};

/// The arguments as they come.
struct ChildOptions
{
    std::string library;
    std::string id;
    quint32 seed = 1;
    int timeLimitMs = 0;
    int firstStep = 0;
    std::vector<std::string> widgets;
    std::vector<std::string> checks;
};

QStringList textsOf(const std::vector<std::string> &arguments)
{
    QStringList texts;
    for (const std::string &argument : arguments) {
        texts.append(textOfArgument(argument));
    }
    return texts;
}

// What a plugin does wrong is neither to fill the disk nor the memory, and not to outlive the command.
void confine()
{
    const struct rlimit noCore = {0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    ::prctl(PR_SET_DUMPABLE, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which map much more than they use
    const rlim_t mostMemory = rlim_t(4) << 30;
    const struct rlimit memory = {mostMemory, mostMemory};
    ::setrlimit(RLIMIT_AS, &memory);
#endif
}

/// Keeps standard output for the report: what the plugin writes there goes to standard error.
int takeStandardOutput()
{
    const int report = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    return report >= 0 && ::dup2(STDERR_FILENO, STDOUT_FILENO) >= 0 ? report : -1;
}

int runChild(const ChildOptions &options)
{
    const int output = takeStandardOutput();
    if (output < 0) {
        return ExitFindings;
    }
    confine();
    LoadCheckPlan plan;
    plan.libraryPath = textOfArgument(options.library);
    plan.expectedId = textOfArgument(options.id);
    plan.seed = options.seed;
    plan.timeLimitMs = options.timeLimitMs;
    plan.widgets = textsOf(options.widgets);
    plan.checks = textsOf(options.checks);
    plan.firstStep = options.firstStep;
    CheckLineWriter report(output);
    const OffscreenApplication application;
    takeCheckSteps(plan, report);
    return ExitFine;
}

} // namespace

void takeCheckSteps(const LoadCheckPlan &plan, LoadCheckReport &report)
{
    QPixmap icon(64, 64);
    icon.fill(Qt::gray);
    koraInit(QIcon(icon));
    StepTaker(plan, report).takeAll();
}

void addCheckChildCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<ChildOptions>();
    CLI::App *command =
        app.add_subcommand("check-child", "One run of kora check --load, for the command itself.");
    command->group(""); // not shown
    command->add_option("--library", options->library)->required();
    command->add_option("--id", options->id);
    command->add_option("--seed", options->seed);
    command->add_option("--time-limit", options->timeLimitMs);
    command->add_option("--first-step", options->firstStep);
    command->add_option("--widget", options->widgets)->allow_extra_args(false);
    command->add_option("--check", options->checks)->allow_extra_args(false);
    command->callback([options, &run] { run = [options] { return runChild(*options); }; });
}
