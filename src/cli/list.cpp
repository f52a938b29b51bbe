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
#include <memory>
#include <string>
#include <vector>

using KORA::INTERNAL::PluginData;
using KORA::INTERNAL::PluginLoader;

namespace {

struct ListOptions
{
    std::string folder;
    std::vector<std::string> disabledIds;
};

/// What became of one sub-folder.
struct FolderResult
{
    enum Status { Loaded, Disabled, Refused };

    explicit FolderResult(const QString &path)
        : folder(path)
    {}

    PluginFolder folder;
    Status status = Refused;
    const PluginData *data = nullptr;
    QStringList reasons;
};

// The loader names a folder by its id, by its library or, without a source, by its path.
bool isAbout(const LogLine &line, const PluginFolder &folder)
{
    if (line.source.isEmpty()) {
        return line.text.contains(QStringLiteral(" %1 ").arg(folder.path()));
    }
    return line.source == folder.name() || line.source == folder.libraryPath();
}

// The metadata readers do not know the folder: what they say comes just before the loader's own line.
void addReasons(std::vector<FolderResult> &results, const QList<LogLine> &lines)
{
    QStringList details;
    for (const LogLine &line : lines) {
        if (!isWarning(line)) {
            details.clear();
            continue;
        }
        if (line.category == QLatin1String("METADATA")) {
            details.append(line.text);
            continue;
        }
        for (FolderResult &result : results) {
            if (isAbout(line, result.folder)) {
                result.reasons += line.text;
                result.reasons += details;
            }
        }
        details.clear();
    }
}

// A library that is not there or cannot be read reaches the loader as one without an interface identifier.
void addLibraryProblem(FolderResult &result)
{
    const bool reachedTheLibrary =
        std::any_of(result.reasons.cbegin(), result.reasons.cend(), [&result](const QString &reason) {
            return reason.contains(result.folder.libraryPath());
        });
    const QString problem = result.folder.libraryProblem();
    if ((reachedTheLibrary || result.reasons.isEmpty()) && !problem.isEmpty()) {
        result.reasons.append(problem);
    }
    if (result.reasons.isEmpty()) {
        result.reasons.append(QStringLiteral("the loader gave no reason"));
    }
}

std::vector<FolderResult> subFolders(const QString &dirPath)
{
    std::vector<FolderResult> results;
    const QFileInfoList folders = QDir(dirPath).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        results.emplace_back(folder.absoluteFilePath());
    }
    return results;
}

std::vector<FolderResult> examine(const QString &dirPath, const PluginLoader &loader,
                                  const QStringList &disabledIds, const QList<LogLine> &lines)
{
    std::vector<FolderResult> results = subFolders(dirPath);
    addReasons(results, lines);
    for (FolderResult &result : results) {
        result.data = loader.pluginDataByPluginId(result.folder.name());
        if (result.data) {
            result.status = FolderResult::Loaded;
        } else if (disabledIds.contains(result.folder.name()) && result.reasons.isEmpty()) {
            result.status = FolderResult::Disabled;
        } else {
            addLibraryProblem(result);
        }
    }
    return results;
}

QString statusText(FolderResult::Status status)
{
    switch (status) {
    case FolderResult::Loaded:
        return QStringLiteral("loaded");
    case FolderResult::Disabled:
        return QStringLiteral("disabled");
    case FolderResult::Refused:
        break;
    }
    return QStringLiteral("refused");
}

QStringList tableRow(const FolderResult &result)
{
    QStringList row{result.folder.name(), statusText(result.status)};
    if (result.data) {
        const auto *info = result.data->metaInformation();
        row << QString::number(result.data->loadingTimeMs(), 'f', 1) << info->version().version()
            << info->name().get(info->defaultLanguage(), true) << info->author();
    }
    return row;
}

int countOf(const std::vector<FolderResult> &results, FolderResult::Status status)
{
    return static_cast<int>(
        std::count_if(results.cbegin(), results.cend(),
                      [status](const FolderResult &result) { return result.status == status; }));
}

void printTable(const std::vector<FolderResult> &results)
{
    if (results.empty()) {
        return;
    }
    TextTable table({QStringLiteral("ID"), QStringLiteral("STATUS"), QStringLiteral("LOAD MS"),
                     QStringLiteral("VERSION"), QStringLiteral("NAME"), QStringLiteral("AUTHOR")});
    table.alignRight(2);
    for (const FolderResult &result : results) {
        table.addRow(tableRow(result));
    }
    printResult(table.toString() + QLatin1Char('\n'));
}

void printReasons(const std::vector<FolderResult> &results)
{
    for (const FolderResult &result : results) {
        if (result.status != FolderResult::Refused) {
            continue;
        }
        QString text = QStringLiteral("Refused: %1\n").arg(printable(result.folder.name()));
        for (const QString &reason : result.reasons) {
            text += QStringLiteral("    %1\n").arg(printable(reason));
        }
        printResult(text + QLatin1Char('\n'));
    }
}

void printSummary(const std::vector<FolderResult> &results)
{
    const auto count = static_cast<int>(results.size());
    printResult(QStringLiteral("%1 %2: %3 loaded, %4 disabled, %5 refused\n")
                    .arg(QString::number(count), QLatin1String(count == 1 ? "folder" : "folders"),
                         QString::number(countOf(results, FolderResult::Loaded)),
                         QString::number(countOf(results, FolderResult::Disabled)),
                         QString::number(countOf(results, FolderResult::Refused))));
}

QStringList textsOf(const std::vector<std::string> &arguments)
{
    QStringList texts;
    for (const std::string &argument : arguments) {
        texts.append(textOfArgument(argument));
    }
    return texts;
}

void warnOfUnknownIds(const QStringList &ids, const std::vector<FolderResult> &results)
{
    for (const QString &id : ids) {
        const bool isKnown = std::any_of(results.cbegin(), results.cend(), [&id](const FolderResult &result) {
            return result.folder.name() == id;
        });
        if (!isKnown) {
            printWarning(QStringLiteral("--disable %1: there is no folder of this name").arg(id));
        }
    }
}

int runList(const ListOptions &options)
{
    const QString argument = textOfArgument(options.folder);
    const QString problem = folderProblem(argument);
    if (!problem.isEmpty()) {
        printError(problem);
        return ExitFindings;
    }
    const QString dirPath = QDir::cleanPath(QFileInfo(argument).absoluteFilePath());
    // Plugins may use fonts and pictures as soon as they are made.
    const OffscreenApplication application;
    const QStringList disabledIds = textsOf(options.disabledIds);
    LogCollector log;
    PluginLoader loader;
    const bool allLoaded = loader.loadFromDir(dirPath, disabledIds);
    const std::vector<FolderResult> results = examine(dirPath, loader, disabledIds, log.takeLines());
    printTable(results);
    printReasons(results);
    printSummary(results);
    warnOfUnknownIds(disabledIds, results);
    return allLoaded ? ExitFine : ExitFindings;
}

} // namespace

void addListCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<ListOptions>();
    CLI::App *command =
        app.add_subcommand("list", "Load every plugin folder of a directory and tell what became of each.");
    command->add_option("plugins-dir", options->folder, "Directory that holds the plugin folders")
        ->required()
        ->option_text(" ");
    command
        ->add_option("--disable", options->disabledIds,
                     "Skip the plugin folder of this name; may be given several times")
        ->option_text("ID")
        ->allow_extra_args(false);
    command->footer(
        "Prints id, status, load time in milliseconds, version, name and author of each folder, then\n"
        "the reasons of each refusal. Exit status 1 if any folder was refused.");
    command->callback([options, &run] { run = [options] { return runList(*options); }; });
}
