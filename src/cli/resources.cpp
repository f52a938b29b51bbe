// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <kora/host.h>

#include "command.h"
#include "logcollector.h"
#include "output.h"
#include "picture/pictureenvironment.h"
#include "pluginfolder.h"
#include "texttable.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <unistd.h>

using KORA::INTERNAL::PluginLoader;
using KORA::INTERNAL::PluginUtils;
using Action = PluginLoader::ExtraResourceAction;

namespace {

struct ResourcesOptions
{
    std::string pluginsDir;
    std::string outDir;
    std::string language;
    bool onlyCheck = false;
};

struct Row
{
    enum Status { Kept, Generated, Removed, Refused };

    QString name;
    Status status;
    QStringList reasons;
};

/// Shows on a terminal how far a long run is, and takes the line away when it is done.
class ProgressLine
{
public:
    ProgressLine() = default;
    ~ProgressLine()
    {
        if (m_isShown) {
            (void)std::fprintf(stderr, "\r\x1b[K");
        }
    }
    Q_DISABLE_COPY_MOVE(ProgressLine)

    void show(int done, int total)
    {
        constexpr int many = 20;
        if (total >= many && isatty(STDERR_FILENO)) {
            m_isShown = true;
            (void)std::fprintf(stderr, "\rkora: documents of %d of %d plugins", done, total);
        }
    }

private:
    bool m_isShown = false;
};

bool contains(const QString &dirPath, const QString &path)
{
    return (path + QLatin1Char('/')).startsWith(dirPath + QLatin1Char('/'));
}

// Where a path leads, also when its last parts do not exist yet.
QString realPath(const QString &path)
{
    const QFileInfo info(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    if (info.exists() || info.isRoot()) {
        return info.canonicalFilePath();
    }
    return realPath(info.path()) + QLatin1Char('/') + info.fileName();
}

// A generation run removes every folder that it does not know: it must not be let loose on another folder.
QString outDirProblem(const QString &outDir, const QString &pluginsDir, const QVector<Action> &plan)
{
    const QString out = realPath(outDir);
    const QString plugins = realPath(pluginsDir);
    if (contains(out, plugins) || contains(plugins, out)) {
        return QStringLiteral("%1 and the plugins' directory lie one in the other").arg(outDir);
    }
    if (QFileInfo::exists(outDir + QLatin1String("/index.json"))) {
        return {};
    }
    for (const Action &action : plan) {
        if (action.type == Action::Remove && !action.name.endsWith(QLatin1String(".part"))) {
            return QStringLiteral("%1 is no resource folder: it has no index.json but a folder %2, which "
                                  "would be removed")
                .arg(outDir, action.name);
        }
    }
    return {};
}

QVector<Row> rowsOf(const QVector<Action> &plan)
{
    QVector<Row> rows;
    for (const Action &action : plan) {
        const Row::Status status = action.type == Action::Keep       ? Row::Kept
                                   : action.type == Action::Generate ? Row::Generated
                                                                     : Row::Removed;
        rows.append(
            {action.name, status, action.reason.isEmpty() ? QStringList() : QStringList{action.reason}});
    }
    return rows;
}

// Turns the rows of folders that failed into refusals with the library's own words; what was said about no
// folder in particular, and what plugins said, comes back.
QStringList markRefused(QVector<Row> &rows, const QList<LogLine> &lines)
{
    QStringList others;
    for (const LogLine &line : lines) {
        const auto row = std::find_if(rows.begin(), rows.end(), [&line](const Row &candidate) {
            return line.category == QLatin1String("RESOURCES_GENERATION") && candidate.name == line.source;
        });
        if (row != rows.end()) {
            row->status = Row::Refused;
            row->reasons = QStringList{line.text};
        } else if (isWarning(line)) {
            others.append(line.text);
        }
    }
    return others;
}

QString statusText(Row::Status status, bool onlyCheck)
{
    switch (status) {
    case Row::Kept:
        return onlyCheck ? QStringLiteral("keep") : QStringLiteral("kept");
    case Row::Generated:
        return onlyCheck ? QStringLiteral("generate") : QStringLiteral("generated");
    case Row::Removed:
        return onlyCheck ? QStringLiteral("remove") : QStringLiteral("removed");
    case Row::Refused:
        break;
    }
    return QStringLiteral("refused");
}

int countOf(const QVector<Row> &rows, Row::Status status)
{
    return static_cast<int>(
        std::count_if(rows.cbegin(), rows.cend(), [status](const Row &row) { return row.status == status; }));
}

void printRows(const QVector<Row> &rows, bool onlyCheck)
{
    if (!rows.isEmpty()) {
        TextTable table({QStringLiteral("FOLDER"), QStringLiteral("ACTION"), QStringLiteral("REASON")});
        for (const Row &row : rows) {
            table.addRow(
                {row.name, statusText(row.status, onlyCheck), row.reasons.join(QLatin1String("; "))});
        }
        printResult(table.toString() + QLatin1Char('\n'));
    }
    QStringList counts;
    for (const Row::Status status : {Row::Generated, Row::Kept, Row::Removed, Row::Refused}) {
        const QString count = QString::number(countOf(rows, status));
        const QString text = statusText(status, onlyCheck);
        if (!onlyCheck) {
            counts.append(count + QLatin1Char(' ') + text);
        } else if (status != Row::Refused) { // what fails shows in a run only
            counts.append(text + QLatin1Char(' ') + count);
        }
    }
    printResult(QLatin1String(onlyCheck ? "A run would " : "") + counts.join(QLatin1String(", "))
                + QLatin1Char('\n'));
}

bool hasChanges(const QVector<Action> &plan)
{
    return std::any_of(plan.cbegin(), plan.cend(),
                       [](const Action &action) { return action.type != Action::Keep; });
}

int checkResources(const QVector<Action> &plan, const QStringList &indexProblems)
{
    printRows(rowsOf(plan), true);
    for (const QString &problem : indexProblems) {
        printWarning(problem);
    }
    return hasChanges(plan) || !indexProblems.isEmpty() ? ExitFindings : ExitFine;
}

int generateResources(PluginLoader &loader, LogCollector &log, const QString &outDir, const QString &language,
                      const QVector<Action> &plan)
{
    bool isDone = false;
    if (loader.init()) {
        ProgressLine line;
        isDone = loader.generateStudioExtraResources(
            outDir, language, [&line](int done, int total) { line.show(done, total); });
        loader.deinit();
    }
    QVector<Row> rows = rowsOf(plan);
    const QStringList problems = markRefused(rows, log.takeLines());
    printRows(rows, false);
    for (const QString &problem : problems) {
        printError(problem);
    }
    return isDone ? ExitFine : ExitFindings;
}

// The line of the first check that fails, and its exit code; an empty text if all is well.
QString optionsProblem(const ResourcesOptions &options, int &exitCode)
{
    const QString language = textOfArgument(options.language);
    exitCode = ExitUsage;
    if (!PluginUtils::isValidLanguageCode(language)) {
        return QStringLiteral("--language %1: a language code looks like en-US").arg(language);
    }
    if (options.outDir.empty()) {
        return QStringLiteral("the output directory has no name");
    }
    exitCode = ExitFindings;
    return folderProblem(textOfArgument(options.pluginsDir));
}

int runResources(const ResourcesOptions &options)
{
    int exitCode = ExitFine;
    QString problem = optionsProblem(options, exitCode);
    if (!problem.isEmpty()) {
        printError(problem);
        return exitCode;
    }
    const QString pluginsDir =
        QDir::cleanPath(QFileInfo(textOfArgument(options.pluginsDir)).absoluteFilePath());
    const QString outDir = QDir::cleanPath(QFileInfo(textOfArgument(options.outDir)).absoluteFilePath());
    const QString language = textOfArgument(options.language);

    const OffscreenApplication application;
    LogCollector log;
    PluginLoader loader;
    const bool allLoaded = loader.loadFromDir(pluginsDir, {});
    const QStringList refusals = log.takeWarnings();
    if (!allLoaded) {
        printError(QStringLiteral("not every plugin was loaded"), refusals);
    }
    if (loader.pluginData().isEmpty()) {
        printError(QStringLiteral("there is no plugin to generate resources for in %1").arg(pluginsDir));
        return ExitFindings;
    }
    const QVector<Action> plan = loader.checkStudioExtraResources(outDir, language);
    const QStringList indexProblems = log.takeWarnings(); // a run tells them again
    problem = outDirProblem(outDir, pluginsDir, plan);
    if (!problem.isEmpty()) {
        printError(problem);
        return ExitFindings;
    }
    exitCode = options.onlyCheck ? checkResources(plan, indexProblems)
                                 : generateResources(loader, log, outDir, language, plan);
    return allLoaded ? exitCode : ExitFindings;
}

} // namespace

void addResourcesCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<ResourcesOptions>();
    CLI::App *command =
        app.add_subcommand("resources", "Keep the design tool's documents of all plugins up to date.");
    command->add_option("plugins-dir", options->pluginsDir, "Directory that holds the plugin folders")
        ->required()
        ->option_text(" ");
    command
        ->add_option("out-dir", options->outDir,
                     "Directory of the documents, which holds nothing else; made if it does not exist")
        ->required()
        ->option_text(" ");
    command->add_option("--language", options->language, "Language of the documents, such as en-US")
        ->required()
        ->option_text("CODE");
    command->add_flag("--check", options->onlyCheck,
                      "Write nothing; exit status 1 if a run would change something");
    command->footer(
        "Prints what became of each folder, and why. Documents are generated anew when the plugin's\n"
        "library or the language has changed; folders of plugins that are gone are removed.");
    command->callback([options, &run] { run = [options] { return runResources(*options); }; });
}
