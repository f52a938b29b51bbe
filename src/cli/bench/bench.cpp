// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <kora/core/uuid_p.h>
#include <kora/dev/model/scenario.h>
#include <kora/dev/session/benchsession.h>

#include "benchstart.h"
#include "benchsupervisor.h"
#include "benchwindow.h"
#include "command.h"
#include "output.h"
#include "picture/pagesize.h"
#include "pluginfolder.h"

#include <memory>
#include <string>

using namespace KORA::DEV;

namespace {

struct BenchOptions
{
    std::string folder;
    std::string scenario;
    std::string mode;
    std::string language;
    std::string page;
    std::string theme;
    bool isSafe = false;
    bool isSingleProcess = false;
    bool withoutSession = false;
    std::string report;
    int windowSocket = -1;
};

// A build knows the library by its path: <folder>/<os>/<arch>/lib<folder>.so
QString folderOfLibrary(const QString &path)
{
    const QFileInfo library(path);
    const QString folder = QFileInfo(QFileInfo(library.path()).path()).path();
    const QString expected = QStringLiteral("lib%1.so").arg(QFileInfo(folder).fileName());
    return library.fileName() == expected ? folder : QString();
}

// Often the folder above is named, or one beside.
QString hintFor(const QString &folder)
{
    const QStringList names = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (KORA::INTERNAL::isUuidFolderName(name)) {
            return QStringLiteral("it holds the plugin folder %1: name that")
                .arg(QDir(folder).filePath(name));
        }
    }
    return QStringLiteral("a plugin folder has the plugin's id for a name and is made by the build, such as "
                          "build/plugins/<id>");
}

bool findFolder(const QString &argument, QString &folder, QString &problem, QString &hint)
{
    const QFileInfo info(argument);
    QString path = QDir::cleanPath(info.absoluteFilePath());
    if (info.isFile()) {
        path = folderOfLibrary(path);
        if (path.isEmpty()) {
            problem = QStringLiteral("%1 is no library in a plugin folder").arg(argument);
            hint = QStringLiteral("expected: <id>/%1/lib<id>.so, or the folder <id>")
                       .arg(QStringLiteral(KORA_PLATFORM_OS "/" KORA_PLATFORM_ARCH).toLower());
            return false;
        }
    }
    problem = folderProblem(argument.isEmpty() ? argument : path);
    if (!problem.isEmpty()) {
        return false;
    }
    // A folder with another name is shown with its fault, if there is anything to show.
    const QDir dir(path);
    const bool holdsPlatforms = dir.exists(QStringLiteral("linux")) || dir.exists(QStringLiteral("win32"));
    if (!KORA::INTERNAL::isUuidFolderName(dir.dirName()) && !holdsPlatforms) {
        problem = QStringLiteral("%1 is no plugin folder").arg(argument);
        hint = hintFor(path);
        return false;
    }
    folder = path;
    return true;
}

bool checkScenario(const QString &path, const QString &pluginId, QStringList &problems)
{
    Scenario scenario;
    if (!Scenario::load(path, scenario, problems)) {
        return false;
    }
    if (scenario.pluginId != pluginId) {
        problems.append(QStringLiteral("it is for the plugin %1").arg(scenario.pluginId));
    }
    return problems.isEmpty();
}

QString valueProblem(const BenchOptions &options)
{
    static const QRegularExpression language(QStringLiteral("\\A[a-z]{2}-[A-Z]{2}\\z"));
    QSize size;
    if (!options.page.empty() && !pageSizeOf(textOfArgument(options.page), size)) {
        return QStringLiteral(
                   "--page %1: width and height in pixels are expected, from %2 to %3, such as 800x480")
            .arg(textOfArgument(options.page), QString::number(PageState::smallestSide),
                 QString::number(PageState::largestSide));
    }
    if (!options.language.empty() && !language.match(textOfArgument(options.language)).hasMatch()) {
        return QStringLiteral("--language %1: a code such as it-IT is expected")
            .arg(textOfArgument(options.language));
    }
    return {};
}

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY")
           || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

int noDisplay(const QString &folder)
{
    printError(
        QStringLiteral("there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set"),
        {QStringLiteral("open the bench in a desktop session, or draw into files, which needs no display:"),
         QStringLiteral("    kora render %1 --out pictures").arg(folder),
         QStringLiteral("    kora render %1 --scenario FILE --out page.png").arg(folder)});
    return ExitFindings;
}

BenchStart startOf(const BenchOptions &options, const QString &folder)
{
    BenchStart start;
    start.folder = folder;
    if (!options.scenario.empty()) {
        start.scenario = QFileInfo(textOfArgument(options.scenario)).absoluteFilePath();
    }
    start.mode = textOfArgument(options.mode);
    start.language = textOfArgument(options.language);
    start.page = textOfArgument(options.page);
    start.theme = textOfArgument(options.theme);
    start.isStopped = options.isSafe;
    return start;
}

int superviseWindows(const BenchOptions &options, const BenchStart &start, const QString &session)
{
    char name[] = "kora";
    char *arguments[] = {name, nullptr};
    int argumentCount = 1;
    QCoreApplication application(argumentCount, arguments);
    BenchSupervisor supervisor(start, session);
    if (!options.report.empty() && !supervisor.reportTo(textOfArgument(options.report))) {
        printError(QStringLiteral("--report %1 cannot be written").arg(textOfArgument(options.report)));
        return ExitFindings;
    }
    return supervisor.begin() ? QCoreApplication::exec() : static_cast<int>(ExitFindings);
}

int openBench(const BenchOptions &options)
{
    QString problem = valueProblem(options);
    if (!problem.isEmpty()) {
        printError(problem);
        return ExitUsage;
    }
    QString folder;
    QString hint;
    if (!findFolder(textOfArgument(options.folder), folder, problem, hint)) {
        printError(problem, hint.isEmpty() ? QStringList() : QStringList{hint});
        return ExitFindings;
    }
    BenchStart start = startOf(options, folder);
    const QString pluginId = QFileInfo(folder).fileName();
    QStringList problems;
    if (!start.scenario.isEmpty() && !checkScenario(start.scenario, pluginId, problems)) {
        printError(QStringLiteral("the scenario %1 cannot be opened").arg(textOfArgument(options.scenario)),
                   problems);
        return ExitFindings;
    }
    if (!hasDisplay()) {
        return noDisplay(textOfArgument(options.folder));
    }
    const QString session = options.withoutSession ? QString() : BenchSession::defaultPath(pluginId);
    if (options.isSingleProcess) {
        start.session = session;
        return runSingleProcess(start);
    }
    return superviseWindows(options, start, session);
}

int runBench(const BenchOptions &options)
{
    return options.windowSocket >= 0 ? runWindowProcess(options.windowSocket) : openBench(options);
}

void addPageOptions(CLI::App *command, BenchOptions &options)
{
    command->add_option("--scenario", options.scenario, "Begin with this page instead of the last session's")
        ->option_text("FILE");
    command
        ->add_option("--mode", options.mode,
                     "studio: as in the design tool, to place and resize; runtime: as on a panel, to touch")
        ->check(CLI::IsMember({"studio", "runtime"}))
        ->option_text("studio|runtime");
    command->add_option("--language", options.language, "Language of multi-language texts, such as it-IT")
        ->option_text("CODE");
    command->add_option("--page", options.page, "Size of the page in pixels")->option_text("WxH");
    command->add_option("--theme", options.theme, "Look of the bench itself")
        ->check(CLI::IsMember({"light", "dark", "system"}))
        ->option_text("light|dark|system");
}

void addProcessOptions(CLI::App *command, BenchOptions &options)
{
    command->add_flag("--safe", options.isSafe, "Start no widget until you say so, as after a crash");
    command->add_flag("--single-process", options.isSingleProcess,
                      "One process, for debuggers: no reload, and a crash of the plugin ends the bench");
    command->add_flag("--no-session", options.withoutSession,
                      "Neither restore what was open when this plugin's bench was last closed, nor keep it");
    // For tests and for the command itself; an empty group hides an option.
    command->add_option("--report", options.report)->group("");
    command->add_option("--window-socket", options.windowSocket)->group("");
}

const char footerC[] =
    "The window renews itself when the library is built anew, and keeps what is open. It comes back with "
    "the\n"
    "plugin stopped when the plugin crashes, and says in which call of which widget. What is open is kept "
    "for\n"
    "the next time in $XDG_STATE_HOME/kora/bench (~/.local/state/kora/bench). Ctrl+C ends the bench.";

} // namespace

void addBenchCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<BenchOptions>();
    CLI::App *command =
        app.add_subcommand("bench", "Open the test bench: see, touch and change the widgets of a plugin.");
    command
        ->add_option("plugin-folder", options->folder,
                     "Plugin folder, named by the plugin's id, or the library in it")
        ->required()
        ->option_text(" ");
    addPageOptions(command, *options);
    addProcessOptions(command, *options);
    command->footer(footerC);
    command->callback([options, &run] { run = [options] { return runBench(*options); }; });
}
