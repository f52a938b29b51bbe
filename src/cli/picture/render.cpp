// SPDX-License-Identifier: Apache-2.0
#include <CLI/CLI.hpp>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <kora/host.h>

#include "command.h"
#include "logcollector.h"
#include "output.h"
#include "picturecompare.h"
#include "pictureenvironment.h"
#include "placeholdericon.h"
#include "pluginfolder.h"
#include "renderscenario.h"
#include "widgetpicture.h"

#include <memory>
#include <string>
#include <vector>

using namespace KORA::INTERNAL;

namespace {

struct RenderOptions
{
    std::string folder;
    std::vector<std::string> widgets;
    std::string size;
    std::vector<std::string> settings;
    std::string language;
    std::string mode; ///< if not given, that of the scenario; of single widgets studio
    std::string fontDir = KORA_FONT_DIR;
    std::string out;
    std::string scenario;
    std::string golden;
    qint64 timeMs = 0;
};

/// What is to be drawn, once the options are found to fit the plugin.
struct PictureJob
{
    WidgetMetaInformation widget;
    PictureSettings settings;
};

int usageError(const QString &message)
{
    printError(message);
    return ExitUsage;
}

int failure(const QString &message, const QStringList &details = {})
{
    printError(message, details);
    return ExitFindings;
}

// "gauge 1.1.0"
QString nameOf(const WidgetMetaInformation &widget)
{
    return QStringLiteral("%1 %2").arg(widget.id(), widget.version().version());
}

// The latest version, or exactly the one that is named: "gauge@1.0.0".
bool findWidget(const WidgetLibraryPluginMetaInformation &plugin, const QString &text,
                WidgetMetaInformation &widget)
{
    const int at = text.indexOf(QLatin1Char('@'));
    if (at < 0) {
        widget = plugin.widgetsLatestVersion().value(text);
    } else {
        widget = plugin.widgets().value({text.left(at), VersionType(text.mid(at + 1)).version()});
    }
    return widget.isValid();
}

QString knownWidgets(const WidgetLibraryPluginMetaInformation &plugin)
{
    QStringList names;
    const auto keys = plugin.widgets().keys();
    for (const auto &key : keys) {
        names.append(QStringLiteral("%1@%2").arg(key.first, key.second));
    }
    return names.isEmpty() ? QStringLiteral("none") : names.join(QLatin1String(", "));
}

bool chooseWidgets(const WidgetLibraryPluginMetaInformation &plugin, const std::vector<std::string> &texts,
                   QList<WidgetMetaInformation> &widgets, QString &problem)
{
    if (texts.empty()) {
        widgets = plugin.widgetsLatestVersion().values();
        return true;
    }
    for (const std::string &argument : texts) {
        const QString text = textOfArgument(argument);
        WidgetMetaInformation widget;
        if (!findWidget(plugin, text, widget)) {
            problem = QStringLiteral("--widget %1: the plugin has no such widget; it has %2")
                          .arg(text, knownWidgets(plugin));
            return false;
        }
        widgets.append(widget);
    }
    return true;
}

bool readSettings(const std::vector<std::string> &texts, const QList<WidgetMetaInformation> &widgets,
                  QList<FieldSetting> &settings, QString &problem)
{
    for (const std::string &argument : texts) {
        const QString text = textOfArgument(argument);
        FieldSetting setting;
        if (!readFieldSetting(text, setting)) {
            problem = QStringLiteral("--set %1: field=value is expected").arg(text);
            return false;
        }
        QStringList names;
        bool isKnown = false;
        for (const WidgetMetaInformation &widget : widgets) {
            isKnown = isKnown || hasField(widget, setting.fieldId);
            names.append(nameOf(widget));
        }
        if (!isKnown) {
            problem = QStringLiteral("--set %1: no field %2 in %3")
                          .arg(text, setting.fieldId, names.join(QLatin1String(", ")));
            return false;
        }
        settings.append(setting);
    }
    return true;
}

bool readSize(const QString &text, QSizeF &size, QString &problem)
{
    if (text.isEmpty() || (WidgetLibraryPluginUtils::convertStringTo(text, size) && !size.isEmpty())) {
        return true;
    }
    problem = QStringLiteral("--size %1: width and height in pixels are expected, such as 300x200").arg(text);
    return false;
}

bool readLanguage(const WidgetLibraryPluginMetaInformation &plugin, const QString &text, QString &language,
                  QString &problem)
{
    language = text.isEmpty() ? plugin.defaultLanguage() : text;
    if (language == plugin.defaultLanguage() || plugin.translation().contains(language)) {
        return true;
    }
    const QStringList known = QStringList(plugin.defaultLanguage()) + plugin.translation();
    problem = QStringLiteral("--language %1: the plugin has no texts in it; it has %2")
                  .arg(text, known.join(QLatin1String(", ")));
    return false;
}

bool makeJobs(const WidgetLibraryPluginMetaInformation &plugin, const RenderOptions &options,
              QList<PictureJob> &jobs, QString &problem)
{
    PictureSettings common;
    QList<WidgetMetaInformation> widgets;
    QList<FieldSetting> fieldSettings;
    common.isInsideProjectEditor = options.mode != "runtime";
    if (!readSize(textOfArgument(options.size), common.size, problem)
        || !readLanguage(plugin, textOfArgument(options.language), common.language, problem)
        || !chooseWidgets(plugin, options.widgets, widgets, problem)
        || !readSettings(options.settings, widgets, fieldSettings, problem)) {
        return false;
    }
    for (const WidgetMetaInformation &widget : qAsConst(widgets)) {
        PictureJob job{widget, common};
        QStringList remarks;
        if (!valuesOfSettings(widget, fieldSettings, job.settings.values, remarks, problem)) {
            problem = QStringLiteral("widget %1, %2").arg(nameOf(widget), problem);
            return false;
        }
        for (const QString &remark : qAsConst(remarks)) {
            printWarning(QStringLiteral("widget %1, %2").arg(nameOf(widget), remark));
        }
        jobs.append(job);
    }
    return true;
}

bool drawAndSave(const WidgetLibraryPluginData &plugin, const PictureJob &job, const QString &outDir,
                 LogCollector &log)
{
    const QString path = QDir(outDir).filePath(
        QStringLiteral("%1-%2.png").arg(job.widget.id(), job.widget.version().version()));
    QString problem;
    const QImage image = pictureOf(plugin, job.widget, job.settings, problem);
    const bool ok = !image.isNull() && savePicture(image, path, problem);
    const QStringList remarks = log.takeWarnings();
    for (const QString &remark : remarks) {
        printWarning(QStringLiteral("widget %1: %2").arg(nameOf(job.widget), remark));
    }
    if (!ok) {
        printError(QStringLiteral("widget %1: %2").arg(nameOf(job.widget), problem));
        return false;
    }
    printResult(printable(path) + QLatin1Char('\n'));
    return true;
}

int drawAll(PluginLoader &loader, const QList<PictureJob> &jobs, const QString &outDir, LogCollector &log)
{
    if (!QDir().mkpath(outDir)) {
        return failure(QStringLiteral("the folder %1 cannot be made").arg(outDir));
    }
    // Outside the loader no widget may outlive this call: the plugin's hooks frame the widgets' lives.
    if (!loader.init()) {
        return failure(QStringLiteral("the plugin cannot be started"), log.takeWarnings());
    }
    const auto *plugin = loader.pluginData().first()->toWidgetLibraryPluginData();
    bool allDrawn = true;
    for (const PictureJob &job : jobs) {
        allDrawn = drawAndSave(*plugin, job, outDir, log) && allDrawn;
    }
    return allDrawn ? ExitFine : ExitFindings;
}

bool loadPlugin(PluginLoader &loader, const QString &path, LogCollector &log)
{
    const PluginFolder folder(path);
    const bool ok = loader.loadFromPluginDir(folder.path()) && !loader.pluginData().isEmpty();
    QStringList details = log.takeWarnings();
    if (ok) {
        return true;
    }
    const QString problem = folder.libraryProblem();
    if (!problem.isEmpty()) {
        details.append(problem);
    }
    printError(QStringLiteral("the plugin folder %1 was refused").arg(folder.path()), details);
    return false;
}

ScenarioRendering scenarioRendering(const RenderOptions &options)
{
    return {textOfArgument(options.scenario), textOfArgument(options.out),  textOfArgument(options.golden),
            textOfArgument(options.language), textOfArgument(options.mode), options.timeMs};
}

int renderPlugin(const RenderOptions &options)
{
    koraInit(placeholderIcon());
    LogCollector log;
    PluginLoader loader;
    if (!loadPlugin(loader, textOfArgument(options.folder), log)) {
        return ExitFindings;
    }
    const auto *plugin = loader.pluginData().first()->toWidgetLibraryPluginData();
    if (!options.scenario.empty()) {
        return renderScenario(loader, scenarioRendering(options), log);
    }
    QList<PictureJob> jobs;
    QString problem;
    if (!makeJobs(*plugin->metaInformation(), options, jobs, problem)) {
        return usageError(problem);
    }
    if (jobs.isEmpty()) {
        return failure(QStringLiteral("the plugin has no widgets"));
    }
    return drawAll(loader, jobs, textOfArgument(options.out), log);
}

int runRender(const RenderOptions &options)
{
    if (options.scenario.empty() && options.out.empty()) {
        return usageError(QStringLiteral("--out is required, unless a --scenario is drawn"));
    }
    const QString folderDoubt = folderProblem(textOfArgument(options.folder));
    if (!folderDoubt.isEmpty()) {
        return failure(folderDoubt);
    }
    const QString fontDir = textOfArgument(options.fontDir);
    const QString hint = QStringLiteral("install the Roboto fonts or name their folder with --font-dir");
    const QString fontDoubt = folderProblem(fontDir);
    if (!fontDoubt.isEmpty()) {
        return failure(QStringLiteral("fonts: %1").arg(fontDoubt), {hint});
    }
    PictureEnvironment environment;
    QString problem;
    if (!environment.pin(fontDir, problem)) {
        return failure(problem);
    }
    const OffscreenApplication application;
    if (!PictureEnvironment::useRoboto()) {
        return failure(QStringLiteral("fonts: there is no Roboto in %1").arg(fontDir), {hint});
    }
    return renderPlugin(options);
}

void addWidgetOptions(CLI::App *command, RenderOptions &options)
{
    command
        ->add_option("--widget", options.widgets,
                     "Draw only this widget, in its latest or the given version;\nmay be given several times")
        ->option_text("ID[@VERSION]")
        ->allow_extra_args(false);
    command->add_option("--size", options.size, "Size in pixels instead of each widget's default size")
        ->option_text("WxH");
    command
        ->add_option("--set", options.settings,
                     "Set a field, after the default values; may be given several times")
        ->option_text("FIELD=VALUE")
        ->allow_extra_args(false);
}

void addScenarioOptions(CLI::App *command, RenderOptions &options)
{
    CLI::Option *scenario = command->add_option("--scenario", options.scenario,
                                                "Draw the page of a scenario of the test bench instead");
    scenario->option_text("FILE");
    for (const char *name : {"--widget", "--size", "--set"}) {
        scenario->excludes(command->get_option(name));
    }
    command
        ->add_option("--compare", options.golden,
                     "Fail if the page differs from this picture, and draw what differs")
        ->needs(scenario)
        ->option_text("GOLDEN.png");
    command
        ->add_option("--time", options.timeMs,
                     "Milliseconds that the simulated plant runs before the widgets start;\ndefault: 0")
        ->needs(scenario)
        ->check(CLI::Range(0, 86400000))
        ->option_text("MS");
}

void addPictureOptions(CLI::App *command, RenderOptions &options)
{
    command->add_option("--language", options.language, "Language of multi-language texts, such as it-IT")
        ->option_text("CODE");
    command
        ->add_option("--mode", options.mode,
                     "studio: as the design tool shows the widgets, with sample content if\n"
                     "they have any and the icons of project widgets;\n"
                     "runtime: as a panel shows them; default: the scenario's, else studio")
        ->check(CLI::IsMember({"studio", "runtime"}))
        ->option_text("studio|runtime");
    command
        ->add_option("--font-dir", options.fontDir,
                     "Folder with the Roboto fonts, the only ones used; default:\n" KORA_FONT_DIR)
        ->option_text("DIR");
    command
        ->add_option("--out", options.out,
                     "Folder for the pictures, required; made if missing. With --scenario the\n"
                     "picture's file or folder; default: <scenario>.png in the present folder")
        ->option_text("DIR|FILE");
}

void addOptions(CLI::App *command, RenderOptions &options)
{
    command->add_option("plugin-folder", options.folder, "Plugin folder, named by the plugin's id")
        ->required()
        ->option_text(" ");
    addWidgetOptions(command, options);
    addScenarioOptions(command, options);
    addPictureOptions(command, options);
}

const char footerC[] = "Writes <widget>-<version>.png for each widget and prints the file's name. Needs no "
                       "display; the pictures\n"
                       "are the same, byte for byte, on every machine with the same fonts and Qt.\n"
                       "\n"
                       "Values for --set: 12, 0.5, true, #ff0000, plain text, an option's index or text,\n"
                       "  '[\"a\",\"b\"]' (string list), '[{\"i\":1,\"v\":\"a\"}]' (string map), "
                       "'{\"family\":\"Roboto\",\"size\":14}' (font).\n"
                       "  A tag field is set to the value that its tag has: a number, true, false or text.\n"
                       "  The font of a multi-language text is set as <field>.font. Private and read-only "
                       "fields can be set too.\n"
                       "  With several widgets a field is set on those that have it.";

} // namespace

void addRenderCommand(CLI::App &app, CommandRun &run)
{
    auto options = std::make_shared<RenderOptions>();
    CLI::App *command =
        app.add_subcommand("render", "Draw the widgets of a plugin, or a page of them, into PNG files.");
    addOptions(command, *options);
    command->footer(footerC);
    command->callback([options, &run] { run = [options] { return runRender(*options); }; });
}
