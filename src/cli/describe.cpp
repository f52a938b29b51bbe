// SPDX-License-Identifier: Apache-2.0
#include "describe.h"

#include <CLI/CLI.hpp>

#include <QtCore/QCoreApplication>
#include <QtCore/QJsonDocument>

#include <kora/core/widgetlibrarypluginutils.h>

#include "command.h"
#include "logcollector.h"
#include "output.h"
#include "pluginfolder.h"

#include <memory>
#include <string>

using namespace KORA::INTERNAL;

namespace {

struct DescribeOptions
{
    std::string folder;
    std::string format = "text";
};

const QLatin1String widgetLibraryIid("org.Vako.KORA.WidgetLibrary");

// Of this build's platform if there is one, else any: metadata is read without running the library.
bool findLibrary(const PluginFolder &folder, QString &path, QString &problem)
{
    const QStringList libraries = folder.libraries();
    if (libraries.isEmpty()) {
        problem = folder.libraryProblem();
        return false;
    }
    path = libraries.first();
    return true;
}

bool readPlugin(const QString &libraryPath, WidgetLibraryPluginMetaInformation &plugin, QString &problem,
                QStringList &details)
{
    const QJsonObject metaData = readMetaData(libraryPath, problem);
    if (!problem.isEmpty()) {
        return false;
    }
    const QString iid = metaData.value(QLatin1String("IID")).toString();
    if (iid != widgetLibraryIid) {
        problem = QStringLiteral("%1 is no widget library: its interface identifier is \"%2\", not \"%3\"")
                      .arg(libraryPath, iid, widgetLibraryIid);
        return false;
    }
    LogCollector log;
    const int code = WidgetLibraryPluginUtils::metaInformationFromMetaData(metaData, plugin);
    if (code != 0) {
        problem = QStringLiteral("%1: error %2: %3")
                      .arg(libraryPath, QString::number(code), WidgetLibraryPluginUtils::errorToString(code));
        details = log.takeWarnings();
    }
    return code == 0;
}

void printDescription(const WidgetLibraryPluginMetaInformation &plugin, const QString &libraryPath,
                      const std::string &format)
{
    if (format == "json") {
        printResult(QString::fromUtf8(QJsonDocument(describeAsJson(plugin, libraryPath)).toJson()));
    } else {
        printResult(describeAsText(plugin, libraryPath));
    }
}

int runDescribe(const DescribeOptions &options)
{
    const QString argument = textOfArgument(options.folder);
    QString problem = folderProblem(argument);
    if (!problem.isEmpty()) {
        printError(problem);
        return ExitFindings;
    }
    char name[] = "kora";
    char *arguments[] = {name, nullptr};
    int argumentCount = 1;
    const QCoreApplication application(argumentCount, arguments);

    const PluginFolder folder(argument);
    QString libraryPath;
    QStringList details;
    WidgetLibraryPluginMetaInformation plugin;
    if (!findLibrary(folder, libraryPath, problem) || !readPlugin(libraryPath, plugin, problem, details)) {
        printError(problem, details);
        return ExitFindings;
    }
    printDescription(plugin, libraryPath, options.format);
    if (plugin.id() != folder.name()) {
        printError(
            QStringLiteral("the id %1 is not equal to the folder name %2: the plugin will not be loaded")
                .arg(plugin.id(), folder.name()));
        return ExitFindings;
    }
    return ExitFine;
}

} // namespace

bool isLatest(const WidgetLibraryPluginMetaInformation &plugin, const WidgetMetaInformation &widget)
{
    return plugin.widgetsLatestVersion().value(widget.id()).version().version() == widget.version().version();
}

void addDescribeCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<DescribeOptions>();
    CLI::App *command =
        app.add_subcommand("describe", "Tell what a plugin's metadata declares: widgets, fields, languages.");
    command->add_option("plugin-folder", options->folder, "Plugin folder, named by the plugin's id")
        ->required()
        ->option_text(" ");
    command->add_option("--format", options->format, "text for people (default), json for programs")
        ->check(CLI::IsMember({"text", "json"}))
        ->option_text("text|json");
    command->footer(
        "Reads the metadata inside the library file and runs no code of the plugin, so it also reads "
        "libraries\n"
        "for other processors. Translation files are read when a plugin is loaded: texts are shown in the\n"
        "plugin's own language, further languages as they are declared. The text form shortens long default\n"
        "values; the JSON form has everything.");
    command->callback([options, &run] { run = [options] { return runDescribe(*options); }; });
}
