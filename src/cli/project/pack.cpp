// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <kora/core/files_p.h>

#include "command.h"
#include "output.h"
#include "pluginarchive.h"
#include "pluginfolder.h"

#include <memory>
#include <string>

namespace {

struct PackOptions
{
    std::string folder;
    std::string out;
};

int failure(const QString &problem)
{
    printError(problem);
    return ExitFindings;
}

bool isInside(const QString &path, const QString &folder)
{
    return QFileInfo(path).absoluteFilePath().startsWith(QFileInfo(folder).absoluteFilePath()
                                                         + QLatin1Char('/'));
}

int runPack(const PackOptions &options)
{
    const QString folder = QDir::cleanPath(textOfArgument(options.folder));
    const QString out = textOfArgument(options.out);
    QString problem = folderProblem(folder);
    if (!problem.isEmpty()) {
        return failure(problem);
    }
    if (isInside(out, folder)) {
        return failure(QStringLiteral("%1 lies in the folder that is packed").arg(out));
    }
    const QByteArray archive = packPluginFolder(folder, problem);
    if (archive.isEmpty()) {
        return failure(problem);
    }
    if (!KORA::INTERNAL::replaceFile(out, archive, problem)) {
        return failure(QStringLiteral("%1 cannot be written: %2").arg(out, problem));
    }
    printResult(printable(out) + QLatin1Char('\n'));
    return ExitFine;
}

} // namespace

void addPackCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<PackOptions>();
    CLI::App *command = app.add_subcommand("pack", "Put a plugin folder into one file, with checksums.");
    command->add_option("plugin-folder", options->folder, "Plugin folder, named by the plugin's id")
        ->required()
        ->option_text(" ");
    command->add_option("-o,--out", options->out, "The archive to write, required")
        ->required()
        ->option_text("FILE");
    command->footer(
        "A tar archive, the same byte for byte for the same folder. kora check tells whether it is still "
        "whole;\n"
        "tar -xf unpacks it in a panel's directory of plugins.");
    command->callback([options, &run] { run = [options] { return runPack(*options); }; });
}
