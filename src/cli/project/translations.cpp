// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include "check/findingoutput.h"
#include "command.h"
#include "output.h"
#include "translationproject.h"

#include <algorithm>
#include <memory>
#include <string>

using KORA::DEV::Finding;
using KORA::DEV::Findings;

namespace {

struct TranslationOptions
{
    std::string path;
    std::string dir;
    bool prune = false;
};

QString textOf(const Findings &findings)
{
    CheckReport report;
    report.findings = findings;
    return findings.isEmpty() ? QString() : findingsAsText(report);
}

bool openProject(const TranslationOptions &options, TranslationProject &project, int &result)
{
    QString problem;
    if (!project.open(textOfArgument(options.path), textOfArgument(options.dir), problem)) {
        printError(problem);
        result = ExitFindings;
        return false;
    }
    if (project.languages().isEmpty()) {
        printResult(QStringLiteral("the metadata lists no languages under \"translation\"\n"));
    }
    return true;
}

int runCheck(const TranslationOptions &options)
{
    int result = ExitFine;
    TranslationProject project;
    if (!openProject(options, project, result)) {
        return result;
    }
    const Findings found = project.check();
    printResult(textOf(found));
    const auto isProblem = [](const Finding &finding) { return finding.severity != Finding::Note; };
    const auto problems = std::count_if(found.cbegin(), found.cend(), isProblem);
    if (problems == 0) {
        printResult(
            QStringLiteral("%1: all texts are there\n").arg(project.languages().join(QLatin1String(", "))));
        return ExitFine;
    }
    printResult(QStringLiteral("%1 problems; kora translations update adds what is missing\n").arg(problems));
    return ExitFindings;
}

QString updateLine(const TranslationProject::Update &update, bool prune)
{
    if (!update.faults.isEmpty()) {
        return QStringLiteral("%1: left as it is\n").arg(printable(update.path));
    }
    QStringList parts;
    if (update.added > 0) {
        parts.append(QStringLiteral("%1 added, to be translated").arg(update.added));
    }
    if (update.stale > 0) {
        parts.append(QStringLiteral("%1 no longer used %2")
                         .arg(QString::number(update.stale),
                              prune ? QStringLiteral("removed") : QStringLiteral("kept at the end")));
    }
    if (parts.isEmpty()) {
        parts.append(update.isWritten ? QStringLiteral("put in order") : QStringLiteral("up to date"));
    }
    return QStringLiteral("%1: %2\n").arg(printable(update.path), parts.join(QLatin1String(", ")));
}

int runUpdate(const TranslationOptions &options)
{
    int result = ExitFine;
    TranslationProject project;
    if (!openProject(options, project, result)) {
        return result;
    }
    const QStringList languages = project.languages();
    for (const QString &language : languages) {
        const TranslationProject::Update update = project.update(language, options.prune);
        printResult(textOf(update.faults) + updateLine(update, options.prune));
        result = update.faults.isEmpty() ? result : ExitFindings;
    }
    return result;
}

void addOptions(CLI::App *command, TranslationOptions &options)
{
    command->add_option("path", options.path, "The metadata file, or the folder of the project")
        ->required()
        ->option_text(" ");
    command
        ->add_option("--dir", options.dir,
                     "Folder of the translation files; by default translations, translation\n"
                     "or the metadata's own folder, where there are any")
        ->option_text("DIR");
}

} // namespace

void addTranslationsCommand(CLI::App &app, CommandRun &run)
{
    CLI::App *command =
        app.add_subcommand("translations", "Write and check the translation files of a widget library.");
    command->require_subcommand(1);

    auto options = std::make_shared<TranslationOptions>();
    CLI::App *update =
        command->add_subcommand("update", "Add the metadata's new texts to the translation files.");
    addOptions(update, *options);
    update->add_flag("--prune", options->prune, "Remove the rows of texts that the metadata no longer has");
    update->footer(
        "A file per language that the metadata lists under \"translation\". What is translated stays: rows "
        "of texts\n"
        "that are gone move to the end. New rows hold the text itself, since an empty one would be shown "
        "as nothing.");
    update->callback([options, &run] { run = [options] { return runUpdate(*options); }; });

    CLI::App *check =
        command->add_subcommand("check", "Tell what is missing or wrong in the translation files.");
    addOptions(check, *options);
    check->footer("Errors are what a host refuses the library for. Exit status 1 also for warnings.");
    check->callback([options, &run] { run = [options] { return runCheck(*options); }; });
}
