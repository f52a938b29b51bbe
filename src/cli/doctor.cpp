// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QLibraryInfo>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>
#include <QtCore/QVersionNumber>
#include <QtGui/QFontDatabase>
#include <QtGui/QGuiApplication>
#include <QtGui/QImageReader>

#include <kora/dev/diagnosis/plugindiagnosis.h>

#include "command.h"
#include "output.h"
#include "picture/pictureenvironment.h"
#include "pluginfolder.h"
#include "texttable.h"

#include <memory>
#include <string>

using KORA::DEV::diagnosePluginFolder;
using KORA::DEV::Finding;
using KORA::DEV::Findings;

namespace {

struct DoctorOptions
{
    std::string pluginDir;
};

const char *const fontFamilies[] = {"Roboto", "Roboto Black", "Roboto Light", "Roboto Medium", "Roboto Thin"};

/// A program that authors need, with the oldest version that will do.
struct Tool
{
    const char *name;
    const char *package;
    const char *purpose;
    const char *oldest; // null for any
    bool isRequired;
};

const Tool tools[] = {
    {"cmake", "cmake", "building widget libraries", "3.25", true},
    {"ninja", "ninja-build", "building widget libraries", nullptr, true},
    {"c++", "g++", "building widget libraries", nullptr, true},
    {"moc", "qtbase5-dev-tools", "building widget libraries", nullptr, true},
    {"clang++", "clang", "building for panels", nullptr, false},
    {"ld.lld", "lld", "building for panels", nullptr, false},
};

/// The rows of the report.
class Report
{
public:
    void add(const char *state, const QString &what, const QString &found, const QString &remedy = {})
    {
        m_table.addRow({QString::fromLatin1(state), what, found, remedy});
    }
    void fine(const QString &what, const QString &found) { add("ok", what, found); }
    /// Needed for what is optional: no reason to fail.
    void lacks(const QString &what, const QString &found, const QString &remedy)
    {
        add("-", what, found, remedy);
    }
    void bad(const QString &what, const QString &found, const QString &remedy)
    {
        add("WRONG", what, found, remedy);
        ++m_faults;
    }

    int faults() const { return m_faults; }
    QString text() const { return m_table.toString(); }

private:
    TextTable m_table{
        {QStringLiteral("STATE"), QStringLiteral("WHAT"), QStringLiteral("FOUND"), QStringLiteral("TO DO")}};
    int m_faults = 0;
};

QString installHint(const char *package)
{
    return QStringLiteral("install it (Debian: %1)").arg(QLatin1String(package));
}

void checkVersions(Report &report)
{
    report.fine(QStringLiteral("kora"), QStringLiteral(KORA_VERSION));
    const QString found =
        QStringLiteral("%1, built with %2").arg(QLatin1String(qVersion()), QStringLiteral(QT_VERSION_STR));
    if (QLibraryInfo::version() < QVersionNumber(QT_VERSION_MAJOR, QT_VERSION_MINOR)) {
        report.bad(QStringLiteral("Qt"), found,
                   QStringLiteral("bring Qt up to the version that kora was built with"));
    } else {
        report.fine(QStringLiteral("Qt"), found);
    }
    report.fine(QStringLiteral("platform of plugins"),
                QStringLiteral(KORA_PLATFORM_OS "/" KORA_PLATFORM_ARCH).toLower());
    report.fine(QStringLiteral("display"),
                QStringLiteral("%1, not needed").arg(QGuiApplication::platformName()));
}

void checkFonts(Report &report)
{
    const QStringList families = QFontDatabase().families();
    QStringList missing;
    for (const char *family : fontFamilies) {
        if (!families.contains(QLatin1String(family))) {
            missing.append(QLatin1String(family));
        }
    }
    if (missing.isEmpty()) {
        report.fine(QStringLiteral("fonts"), QStringLiteral("Roboto, Black, Light, Medium, Thin"));
    } else {
        report.bad(QStringLiteral("fonts"), QStringLiteral("no %1").arg(missing.join(QLatin1String(", "))),
                   installHint("fonts-roboto-unhinted"));
    }
}

void checkImageFormats(Report &report)
{
    if (QImageReader::supportedImageFormats().contains("svg")) {
        report.fine(QStringLiteral("SVG pictures"), QStringLiteral("Qt's plugin"));
    } else {
        report.lacks(QStringLiteral("SVG pictures"), QStringLiteral("no plugin"), installHint("libqt5svg5"));
    }
}

// The first number with dots in what the program says of itself.
QString versionOf(const QString &program)
{
    QProcess process;
    process.start(program, {QStringLiteral("--version")});
    if (!process.waitForFinished(10000)) {
        return {};
    }
    static const QRegularExpression number(QStringLiteral("\\d+(\\.\\d+)+"));
    return number.match(QString::fromUtf8(process.readAllStandardOutput())).captured();
}

QString findProgram(const char *name)
{
    const QString program = QStandardPaths::findExecutable(QLatin1String(name));
    return program.isEmpty() ? QStandardPaths::findExecutable(
               QLatin1String(name), {QLibraryInfo::location(QLibraryInfo::BinariesPath)})
                             : program;
}

void checkTools(Report &report)
{
    for (const Tool &tool : tools) {
        const QString what =
            QStringLiteral("%1, for %2").arg(QLatin1String(tool.name), QLatin1String(tool.purpose));
        const QString program = findProgram(tool.name);
        const QString version = program.isEmpty() ? QString() : versionOf(program);
        const bool isOld =
            tool.oldest
            && QVersionNumber::fromString(version) < QVersionNumber::fromString(QLatin1String(tool.oldest));
        if (!program.isEmpty() && !isOld) {
            report.fine(what, version.isEmpty() ? program : version);
            continue;
        }
        const QString found = program.isEmpty() ? QStringLiteral("not in PATH") : version;
        const QString remedy = isOld && !program.isEmpty()
                                   ? QStringLiteral("version %1 is needed").arg(QLatin1String(tool.oldest))
                                   : installHint(tool.package);
        tool.isRequired ? report.bad(what, found, remedy) : report.lacks(what, found, remedy);
    }
}

// Beside the command, as it is installed.
void checkPackage(Report &report)
{
    const QDir prefix(QCoreApplication::applicationDirPath() + QLatin1String("/.."));
    const QString config = QStringLiteral("KRPluginLibraryConfig.cmake");
    QDirIterator package(prefix.filePath(QStringLiteral("lib")), {config}, QDir::Files,
                         QDirIterator::Subdirectories);
    if (package.hasNext()) {
        report.fine(QStringLiteral("CMake package"), QDir::cleanPath(QFileInfo(package.next()).path()));
    } else {
        report.bad(QStringLiteral("CMake package"), QStringLiteral("none beside this command"),
                   QStringLiteral("install the development files, and use the command beside them"));
    }
    const QString toolchain = prefix.filePath(QStringLiteral("share/kora/toolchains/aarch64-linux.cmake"));
    if (QFileInfo::exists(toolchain)) {
        report.fine(QStringLiteral("toolchain for panels"), QDir::cleanPath(toolchain));
    } else {
        report.lacks(QStringLiteral("toolchain for panels"), QStringLiteral("none beside this command"),
                     QStringLiteral("KORA_PANEL_TOOLCHAIN may name another"));
    }
}

// Settings of the process that let Qt refuse or miss plugins that are right.
void checkEnvironment(Report &report)
{
    if (qEnvironmentVariableIsSet("LD_BIND_NOW")) {
        report.lacks(QStringLiteral("LD_BIND_NOW"), QStringLiteral("set"),
                     QStringLiteral("plugins with an unused missing symbol are refused; unset it"));
    }
    if (qEnvironmentVariableIsSet("LD_PRELOAD")) {
        report.lacks(QStringLiteral("LD_PRELOAD"), qEnvironmentVariable("LD_PRELOAD"),
                     QStringLiteral("its symbols come before those of plugins; unset it"));
    }
}

void checkPlugins(Report &report, const QString &dir)
{
    const QString problem = folderProblem(dir);
    if (!problem.isEmpty()) {
        report.bad(QStringLiteral("plugins"), problem, QStringLiteral("name another directory"));
        return;
    }
    const QStringList names = QDir(dir).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const Findings found = diagnosePluginFolder(QDir(dir).filePath(name));
        for (const Finding &finding : found) {
            report.bad(QStringLiteral("plugin"), QStringLiteral("%1: %2").arg(name, finding.message),
                       finding.hint);
        }
        if (found.isEmpty()) {
            report.fine(QStringLiteral("plugin"), name);
        }
    }
}

int runDoctor(const DoctorOptions &options)
{
    PictureEnvironment environment;
    QString problem;
    const QString fontDir = QStringLiteral(KORA_FONT_DIR);
    const bool isPinned = !fontDir.isEmpty() && environment.pin(fontDir, problem);
    const OffscreenApplication application;
    Report report;
    checkVersions(report);
    if (isPinned) {
        checkFonts(report);
    } else {
        report.bad(QStringLiteral("fonts"), problem.isEmpty() ? QStringLiteral("none") : problem,
                   installHint("fonts-roboto-unhinted"));
    }
    checkImageFormats(report);
    checkTools(report);
    checkPackage(report);
    checkEnvironment(report);
    if (!options.pluginDir.empty()) {
        checkPlugins(report, textOfArgument(options.pluginDir));
    }
    printResult(report.text());
    const QString summary = report.faults() == 0
                                ? QStringLiteral("all is well; kora new NAME starts a library")
                                : QStringLiteral("%1 to be put right").arg(report.faults());
    printResult(QLatin1Char('\n') + summary + QLatin1Char('\n'));
    return report.faults() == 0 ? ExitFine : ExitFindings;
}

} // namespace

void addDoctorCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<DoctorOptions>();
    CLI::App *command =
        app.add_subcommand("doctor", "Tell what this machine lacks for making widget libraries.");
    command
        ->add_option("plugins-dir", options->pluginDir,
                     "Also tell what would keep these plugin folders from loading")
        ->option_text(" ");
    command->footer(
        "A \"-\" stands for what is missing but not always needed. Exit status 1 if anything is WRONG.");
    command->callback([options, &run] { run = [options] { return runDoctor(*options); }; });
}
