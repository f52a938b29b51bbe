// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

#include "command.h"
#include "loadcheck.h"
#include "output.h"
#include "pictureenvironment.h"
#include "pluginfolder.h"

#include <memory>
#include <string>
#include <vector>

namespace {

const int exitUnreadable = 3;
const int exitDied = 4;

struct CheckOptions
{
    std::string path;
    quint32 seed = 1;
    double timeout = 20;
    bool isInProcess = false;
    std::vector<std::string> widgets;
    std::vector<std::string> checks;
};

QString nameOf(KORA::DEV::Finding::Severity severity)
{
    switch (severity) {
    case KORA::DEV::Finding::Error:
        return QStringLiteral("error");
    case KORA::DEV::Finding::Warning:
        return QStringLiteral("warning");
    case KORA::DEV::Finding::Note:
        break;
    }
    return QStringLiteral("note");
}

void print(const KORA::DEV::Finding &finding)
{
    printResult(QStringLiteral("%1: %2 %3: %4 [%5]\n")
                    .arg(nameOf(finding.severity), finding.widgetId, finding.widgetVersion,
                         printable(finding.message), finding.rule));
    if (!finding.hint.isEmpty()) {
        printResult(QStringLiteral("    %1\n").arg(printable(finding.hint)));
    }
}

LoadCheckOptions loadCheckOptions(const CheckOptions &options)
{
    LoadCheckOptions result;
    result.path = textOfArgument(options.path);
    const PluginFolder folder(result.path);
    const bool isFolder = QFileInfo(result.path).isDir();
    result.plan.libraryPath = isFolder ? folder.libraryPath() : QFileInfo(result.path).absoluteFilePath();
    result.plan.expectedId = isFolder ? folder.name() : QString();
    result.plan.seed = options.seed;
    result.plan.timeLimitMs = static_cast<int>(options.timeout * 1000);
    for (const std::string &widget : options.widgets) {
        result.plan.widgets.append(textOfArgument(widget));
    }
    for (const std::string &check : options.checks) {
        result.plan.checks.append(textOfArgument(check));
    }
    result.isInProcess = options.isInProcess;
    return result;
}

int runCheck(const CheckOptions &arguments)
{
    const LoadCheckOptions options = loadCheckOptions(arguments);
    if (!QFileInfo::exists(options.plan.libraryPath)) {
        printError(QStringLiteral("there is no library %1").arg(options.plan.libraryPath));
        return exitUnreadable;
    }
    std::unique_ptr<OffscreenApplication> application;
    if (options.isInProcess) {
        application = std::make_unique<OffscreenApplication>();
    }
    const LoadCheckResult result = runLoadChecks(options);
    if (!result.problem.isEmpty()) {
        printError(result.problem);
        return ExitUsage;
    }
    for (const auto &finding : result.findings) {
        print(finding);
    }
    return result.hasDied ? exitDied : result.findings.isEmpty() ? ExitFine : ExitFindings;
}

} // namespace

void addCheckCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App *command =
        app.add_subcommand("check", "Run the code of a plugin and tell what is wrong with it.");
    command->add_option("path", options->path, "Plugin folder or library")->required();
    command->add_flag("--load", "Run the plugin's code");
    command->add_option("--seed", options->seed, "Seed of the random values");
    command->add_option("--timeout", options->timeout, "Seconds for each check");
    command->add_flag("--in-process", options->isInProcess, "No child process, for a debugger");
    command->add_option("--widget", options->widgets, "Only this widget")->allow_extra_args(false);
    command->add_option("--check", options->checks, "Only this check")->allow_extra_args(false);
    command->callback([options, &run] { run = [options] { return runCheck(*options); }; });
}
