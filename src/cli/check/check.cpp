// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include "command.h"
#include "findingoutput.h"
#include "librarycheck.h"
#include "load/loadcheck.h"
#include "metadatacheck.h"
#include "output.h"
#include "picture/pictureenvironment.h"
#include "pluginfolder.h"
#include "project/pluginarchive.h"
#include "rules.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

using KORA::DEV::Finding;
using KORA::DEV::Findings;

namespace {

struct CheckOptions
{
    std::vector<std::string> paths;
    bool isComplete = false;
    bool isStrict = false;
    bool isQuiet = false;
    std::string format = "text";
    std::string id;
    std::string sourceFile;
    std::vector<std::string> translationFiles;

    // of the checks that run the plugin's code
    bool isLoaded = false;
    bool isInProcess = false;
    quint32 seed = 1;
    double timeLimit = 20; // seconds
    std::vector<std::string> widgets;
    std::vector<std::string> checks;
};

/// One run of the checks over all paths.
class CheckRun
{
public:
    explicit CheckRun(const CheckOptions &options)
        : m_options(options)
    {
        m_report.isStrict = options.isStrict;
    }

    int run();

private:
    void path(const QString &path);
    void folder(const QString &path);
    void noPlugins(const QString &path);
    void file(const QString &path);
    void metadataFile(const QString &path, const QByteArray &content);
    void pluginFolder(const QString &path);
    void load(const QString &libraryPath, const QString &expectedId);
    void unreadable(const QString &path, const QString &reason);
    void print() const;
    QString nextCommand() const;
    LibraryCheckOptions libraryOptions() const;

    const CheckOptions &m_options;
    CheckReport m_report;
    bool m_isUnreadable = false;
    bool m_hasDied = false;
    QString m_usageProblem;
    QString m_nextCommand;
};

QStringList textsOfArguments(const std::vector<std::string> &arguments)
{
    QStringList texts;
    for (const std::string &argument : arguments) {
        texts.append(textOfArgument(argument));
    }
    return texts;
}

QString quoted(const QString &path)
{
    return path.contains(QLatin1Char(' ')) ? QStringLiteral("'%1'").arg(path) : path;
}

int CheckRun::run()
{
    for (const std::string &path : m_options.paths) {
        this->path(textOfArgument(path));
    }
    if (!m_usageProblem.isEmpty()) {
        printError(m_usageProblem);
        return ExitUsage;
    }
    print();
    if (m_hasDied) {
        return ExitDied;
    }
    if (m_isUnreadable) {
        return ExitUnreadable;
    }
    return m_report.isFine() ? ExitFine : ExitFindings;
}

void CheckRun::path(const QString &path)
{
    const QFileInfo info(path);
    m_report.checked.append(path);
    if (!m_options.sourceFile.empty() && !QFileInfo(textOfArgument(m_options.sourceFile)).isReadable()) {
        unreadable(textOfArgument(m_options.sourceFile), QStringLiteral("the source file cannot be read"));
    } else if (!info.exists()) {
        unreadable(path, QStringLiteral("there is no such file or folder"));
    } else if (info.isDir()) {
        folder(path);
    } else {
        file(path);
    }
}

LibraryCheckOptions CheckRun::libraryOptions() const
{
    return {textOfArgument(m_options.id), textOfArgument(m_options.sourceFile)};
}

void CheckRun::folder(const QString &path)
{
    if (!QFileInfo(path).isReadable() || !QFileInfo(path).isExecutable()) {
        unreadable(path, QStringLiteral("the folder cannot be read"));
        return;
    }
    if (isPluginFolder(path)) {
        pluginFolder(path);
        m_nextCommand = QStringLiteral("kora render %1 --out pictures").arg(quoted(path));
        return;
    }
    const QDir dir(path);
    const QStringList folders = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    const bool hasPlugins = std::any_of(folders.cbegin(), folders.cend(), [&dir](const QString &folder) {
        return isPluginFolder(dir.filePath(folder));
    });
    if (!hasPlugins) {
        noPlugins(path);
        return;
    }
    for (const QString &folder : folders) { // the loader looks at every one
        pluginFolder(dir.filePath(folder));
    }
    m_nextCommand = QStringLiteral("kora list %1").arg(quoted(path));
}

void CheckRun::pluginFolder(const QString &path)
{
    const int errors = m_report.count(Finding::Error);
    checkPluginFolder(path, libraryOptions(), m_options.isComplete, m_report);
    const PluginFolder folder(path);
    if (m_options.isLoaded && m_report.count(Finding::Error) == errors) {
        load(folder.libraryPath(), folder.name());
    }
}

/// Runs the plugin's code. A library that cannot be right is not even loaded: its findings are there already.
void CheckRun::load(const QString &libraryPath, const QString &expectedId)
{
    LoadCheckOptions options;
    options.path = m_report.checked.last();
    options.isInProcess = m_options.isInProcess;
    options.plan.libraryPath = libraryPath;
    options.plan.expectedId = expectedId;
    options.plan.seed = m_options.seed;
    options.plan.timeLimitMs = static_cast<int>(m_options.timeLimit * 1000);
    options.plan.widgets = textsOfArguments(m_options.widgets);
    options.plan.checks = textsOfArguments(m_options.checks);
    const LoadCheckResult result = runLoadChecks(options);
    m_report.findings += result.findings;
    m_hasDied = m_hasDied || result.hasDied;
    m_usageProblem = result.problem;
}

void CheckRun::noPlugins(const QString &path)
{
    Finding finding;
    finding.rule = QStringLiteral("folder-empty");
    finding.file = path;
    finding.message = QStringLiteral("this is no plugin folder and holds none");
    finding.hint = QStringLiteral(
        "a plugin folder is named by the plugin's id; kora_add_widget_library() makes it below "
        "\"plugins\" in the build folder");
    m_report.findings.append(finding);
}

void CheckRun::file(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        unreadable(path, file.errorString());
        return;
    }
    if (isArchive(path)) {
        m_report.findings += verifyArchive(path);
        m_nextCommand = QStringLiteral("tar -xf %1 in a directory of plugins").arg(quoted(path));
        return;
    }
    const bool isJson = path.endsWith(QLatin1String(".json"));
    if (isJson || file.peek(64).trimmed().startsWith('{')) {
        metadataFile(path, file.readAll());
        return;
    }
    const int errors = m_report.count(Finding::Error);
    checkLibrary(path, libraryOptions(), m_report);
    if (m_options.isLoaded && m_report.count(Finding::Error) == errors) {
        load(QFileInfo(path).absoluteFilePath(), textOfArgument(m_options.id));
    }
    m_nextCommand = QStringLiteral("kora check <plugins>/<id>");
}

void CheckRun::metadataFile(const QString &path, const QByteArray &content)
{
    MetadataCheckOptions options;
    options.expectedId = textOfArgument(m_options.id);
    options.translationFiles = textsOfArguments(m_options.translationFiles);
    m_report.findings += checkMetadata(content, path, options);
    m_nextCommand = QStringLiteral("cmake --build <build folder>, then kora check <build folder>/plugins");
}

void CheckRun::unreadable(const QString &path, const QString &reason)
{
    Finding finding;
    finding.rule = QStringLiteral("input-unreadable");
    finding.file = path;
    finding.message = reason;
    finding.hint =
        QStringLiteral("give a metadata file (.json), a library, a plugin folder or a folder of those");
    m_report.findings.append(finding);
    m_isUnreadable = true;
}

QString CheckRun::nextCommand() const
{
    for (const Finding::Severity severity : {Finding::Error, Finding::Warning}) {
        for (const Finding &finding : m_report.findings) {
            if (finding.severity == severity) {
                return QStringLiteral("kora explain %1")
                    .arg(finding.code != 0 ? QString::number(finding.code) : finding.rule);
            }
        }
    }
    return m_nextCommand;
}

void CheckRun::print() const
{
    QString text = findingsIn(m_options.format, m_report);
    if (m_options.format == "text" && !m_options.isQuiet) {
        if (m_report.findings.isEmpty()) {
            text += printable(m_report.checked.join(QLatin1String(", "))) + QLatin1String(": fine\n");
        }
        text += QLatin1String("Next: ") + printable(nextCommand()) + QLatin1Char('\n');
    }
    printResult(text);
}

int runCheck(const CheckOptions &options)
{
    if (options.isInProcess) { // the plugin's widgets live here
        const OffscreenApplication application;
        return CheckRun(options).run();
    }
    char name[] = "kora";
    char *arguments[] = {name, nullptr};
    int argumentCount = 1;
    const QCoreApplication application(argumentCount, arguments);
    return CheckRun(options).run();
}

void addLoadOptions(CLI::App *command, CheckOptions &options)
{
    CLI::Option *load = command->add_flag("--load", options.isLoaded, "Run the plugin's code too");
    command
        ->add_option("--widget", options.widgets, "Only this widget, in all versions or in one; repeatable")
        ->option_text("ID[@VERSION]")
        ->allow_extra_args(false)
        ->needs(load);
    command->add_option("--check", options.checks, "Only this check; repeatable")
        ->option_text("NAME")
        ->allow_extra_args(false)
        ->needs(load);
    command->add_option("--seed", options.seed, "Other random values (1 if not given)")
        ->option_text("N")
        ->needs(load);
    command->add_option("--timeout", options.timeLimit, "Seconds that a check may take (20 if not given)")
        ->option_text("S")
        ->check(CLI::Range(0.1, 86400.0))
        ->needs(load);
    command
        ->add_flag("--in-process", options.isInProcess, "In this process, without time limit, for a debugger")
        ->needs(load);
}

} // namespace

void addCheckCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App *command = app.add_subcommand("check", "Tell what is wrong with a widget library, and where.");
    command
        ->add_option(
            "path", options->paths,
            "Metadata file (.json), library, plugin folder, folder of those, or archive\nof kora pack")
        ->required()
        ->option_text("...");
    command->add_flag("--complete", options->isComplete,
                      "The libraries of all four platforms must be there, none built for debugging");
    command->add_flag("--strict", options->isStrict, "Warnings count as errors");
    command->add_flag("--quiet", options->isQuiet, "Print nothing but findings");
    command->add_option("--format", options->format, "text for people (default), the others for programs")
        ->check(CLI::IsMember({"text", "json", "sarif", "junit"}))
        ->option_text("text|json|sarif|junit");
    command->add_option("--id", options->id, "The id that the metadata must have")->option_text("UUID");
    command
        ->add_option("--source", options->sourceFile,
                     "Metadata file that the library was built from: findings point into it")
        ->option_text("FILE");
    command
        ->add_option("--translation-file", options->translationFiles,
                     "Translation file of a metadata file, instead of those beside it; repeatable")
        ->option_text("FILE")
        ->allow_extra_args(false);
    addLoadOptions(command, *options);
    command->footer(
        "Without --load no code of the plugin runs, so it also checks libraries for other processors.\n"
        "Exit status: 0 fine, 1 findings, 2 wrong usage, 3 a path cannot be read, 4 a plugin crashed, hung\n"
        "or ended the process that checked it.");
    command->callback([options, &run] { run = [options] { return runCheck(*options); }; });
}
