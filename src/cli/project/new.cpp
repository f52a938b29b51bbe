// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QDir>
#include <QtCore/QUuid>

#include "command.h"
#include "newproject.h"
#include "output.h"

#include <memory>
#include <string>
#include <vector>

namespace {

struct NewOptions
{
    std::string name;
    std::string id;
    std::string author;
    std::string dir = ".";
    std::vector<std::string> widgets;
    std::vector<std::string> languages{"it-IT"};
};

NewProject projectOf(const NewOptions &options)
{
    NewProject project;
    project.name = textOfArgument(options.name);
    project.id =
        options.id.empty() ? QUuid::createUuid().toString(QUuid::WithoutBraces) : textOfArgument(options.id);
    project.author = options.author.empty() ? QStringLiteral("The author of %1").arg(project.name)
                                            : textOfArgument(options.author);
    for (const std::string &widget : options.widgets) {
        project.widgets.append(textOfArgument(widget));
    }
    if (project.widgets.isEmpty()) {
        project.widgets.append(widgetIdFromName(project.name));
    }
    for (const std::string &language : options.languages) {
        project.languages.append(textOfArgument(language));
    }
    return project;
}

int runNew(const NewOptions &options)
{
    const NewProject project = projectOf(options);
    QString problem = problemWith(project);
    if (!problem.isEmpty()) {
        printError(problem);
        return ExitUsage;
    }
    const QString path = QDir::cleanPath(QDir(textOfArgument(options.dir)).filePath(project.name));
    if (!writeNewProject(project, path, problem)) {
        printError(problem);
        return ExitFindings;
    }
    printResult(QStringLiteral("%1 is there, with the widgets %2. Go on with:\n"
                               "\n"
                               "  cd %1 && cmake --preset host && cmake --build --preset host\n"
                               "  ctest --preset host\n")
                    .arg(printable(path), project.widgets.join(QLatin1String(", "))));
    return ExitFine;
}

} // namespace

void addNewCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<NewOptions>();
    CLI::App *command =
        app.add_subcommand("new", "Start a widget library: a project that builds and passes its tests.");
    command->add_option("name", options->name, "Name of the library and of its folder")
        ->required()
        ->option_text(" ");
    command->add_option("--id", options->id, "Its UUID; a new one if not given")->option_text("UUID");
    command->add_option("--author", options->author, "Its author")->option_text("TEXT");
    command
        ->add_option("--widget", options->widgets,
                     "A widget; may be given several times. By default one named as the\nlibrary")
        ->option_text("ID")
        ->allow_extra_args(false);
    command
        ->add_option("--language", options->languages,
                     "A language beside en-US; may be given several times. By default it-IT")
        ->option_text("CODE")
        ->allow_extra_args(false);
    command->add_option("--dir", options->dir, "Where to make the folder, instead of here")
        ->option_text("DIR");
    command->footer("Asks nothing and never writes into a folder that exists.");
    command->callback([options, &run] { run = [options] { return runNew(*options); }; });
}
