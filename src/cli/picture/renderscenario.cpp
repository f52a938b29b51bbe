// SPDX-License-Identifier: Apache-2.0
#include "renderscenario.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtGui/QPainter>

#include <kora/dev/model/benchdocument.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/theme/theme.h>
#include <kora/host.h>

#include "command.h"
#include "logcollector.h"
#include "output.h"
#include "picturecompare.h"

using namespace KORA::DEV;
using namespace KORA::INTERNAL;

namespace {

const int dotsPerMeter = 3780; // 96 DPI
const QLatin1String pictureSuffix(".png");

int failure(const QString &message, const QStringList &details = {})
{
    printError(message, details);
    return ExitFindings;
}

/// Where the picture goes: below a folder it has the scenario's name.
QString picturePath(const ScenarioRendering &rendering)
{
    const bool isFile = rendering.out.endsWith(pictureSuffix) && !QFileInfo(rendering.out).isDir();
    if (isFile) {
        return rendering.out;
    }
    const QString name = QFileInfo(rendering.scenario).completeBaseName() + pictureSuffix;
    return rendering.out.isEmpty() ? name : QDir(rendering.out).filePath(name);
}

/// What an author would otherwise look for in a widget that stays empty.
QStringList bindingProblems(BenchDocument &document)
{
    QStringList problems;
    const Providers *providers = document.providers();
    for (const PlacedWidget *widget : document.widgets()) {
        const PlacedWidgetState state = widget->state();
        for (auto it = state.bindings.cbegin(); it != state.bindings.cend(); ++it) {
            const bool isTrend = fieldTypeOf(widget->info(), it.key()) == FieldTypeTrend;
            const bool isThere =
                isTrend ? providers->trends()->contains(it.value()) : providers->tags()->contains(it.value());
            if (!isThere) {
                problems.append(QStringLiteral("%1: %2: there is no %3 %4")
                                    .arg(widget->name(), it.key(),
                                         isTrend ? QStringLiteral("trend") : QStringLiteral("tag"),
                                         it.value()));
            }
        }
    }
    return problems;
}

QStringList instanceProblems(const BenchDocument &document)
{
    QStringList problems;
    for (const PlacedWidget *widget : document.widgets()) {
        const Finding &problem = widget->problem();
        if (!problem.rule.isEmpty()) {
            problems.append(QStringLiteral("%1: %2").arg(widget->name(), problem.message));
            if (!problem.hint.isEmpty()) {
                problems.append(QStringLiteral("    ") + problem.hint);
            }
        }
    }
    return problems;
}

/// Unless the scenario says when it begins, it has begun so long ago that it is now: widgets ask for trends until then.
void runPlant(BenchClock &clock, qint64 ms)
{
    clock.setPaused(true);
    if (!clock.hasFixedStart()) {
        const qint64 elapsed = clock.elapsed() + ms;
        clock.setStart(QDateTime::currentDateTimeUtc().addMSecs(-elapsed));
        clock.advance(elapsed);
        return;
    }
    clock.advance(ms);
}

/// Lets the plant run, without widgets, and fills the page then; the clock stands still. Everything that does not fit
/// the library is in the result.
QStringList fillPage(BenchDocument &document, Scenario scenario, const ScenarioRendering &rendering)
{
    Scenario plant = scenario;
    plant.widgets.clear();
    QStringList problems;
    document.providers()->setFolder(QFileInfo(rendering.scenario).absolutePath());
    document.load(plant, problems);
    runPlant(*document.providers()->clock(), rendering.timeMs);
    if (!problems.isEmpty()) {
        return problems;
    }
    scenario.providers = document.providers()->toJson();
    document.load(scenario, problems);
    return problems + bindingProblems(document) + instanceProblems(document);
}

/// A page without background is transparent in the picture.
QImage drawPage(BenchDocument &document)
{
    const PageState page = document.page();
    QImage image(page.size,
                 page.background.isValid() ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) {
        return image;
    }
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    image.fill(page.background.isValid() ? page.background : QColor(Qt::transparent));
    // What the widgets put off until the event loop runs; timers are not waited for.
    QCoreApplication::sendPostedEvents();
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing
                           | QPainter::SmoothPixmapTransform);
    const QRectF area(QPointF(), QSizeF(page.size));
    document.scene()->render(&painter, area, area);
    return image;
}

QString sizeText(const QImage &image)
{
    return QStringLiteral("%1x%2").arg(QString::number(image.width()), QString::number(image.height()));
}

int compare(const QImage &image, const QString &path, const QString &golden)
{
    const QString differencePath = path.chopped(pictureSuffix.size()) + QLatin1String("-difference.png");
    QFile::remove(differencePath); // of an earlier run
    const QImage expected(golden);
    if (expected.isNull()) {
        return failure(QStringLiteral("--compare %1: it is no picture that can be read").arg(golden),
                       {QStringLiteral("to accept the new one: cp %1 %2").arg(path, golden)});
    }
    if (expected.size() != image.size()) {
        return failure(
            QStringLiteral("%1 is %2, %3 is %4").arg(path, sizeText(image), golden, sizeText(expected)));
    }
    const PictureDifference difference = differenceOf(expected, image);
    const QString count = QStringLiteral("%1 of %2 pixels differ")
                              .arg(QString::number(difference.pixels), QString::number(difference.total));
    if (difference.isTolerated()) {
        printResult(QStringLiteral("same as %1: %2\n").arg(printable(golden), count));
        return ExitFine;
    }
    QString problem;
    if (!savePicture(difference.picture, differencePath, problem)) {
        return failure(problem);
    }
    return failure(QStringLiteral("%1 differs from %2: %3, by up to %4 of 255")
                       .arg(path, golden, count, QString::number(difference.largestStep)),
                   {QStringLiteral("what differs is red in %1").arg(differencePath)});
}

bool readScenario(const ScenarioRendering &rendering, const WidgetLibraryPluginMetaInformation &plugin,
                  Scenario &scenario, QStringList &problems)
{
    if (!Scenario::load(rendering.scenario, scenario, problems)) {
        return false;
    }
    if (scenario.pluginId != plugin.id()) {
        problems.append(QStringLiteral("/pluginId: it is for the plugin %1, not for %2")
                            .arg(scenario.pluginId, plugin.id()));
        return false;
    }
    if (!rendering.language.isEmpty()) {
        scenario.language = rendering.language;
    }
    if (!rendering.mode.isEmpty()) {
        scenario.mode = rendering.mode == QLatin1String("runtime") ? BenchMode::Runtime : BenchMode::Studio;
    }
    return true;
}

int drawScenario(WidgetLibraryPluginData *plugin, const Scenario &scenario,
                 const ScenarioRendering &rendering, LogCollector &log)
{
    BenchDocument document(plugin);
    document.scene()->setPalette(BenchTheme::pagePalette());
    const QStringList problems = fillPage(document, scenario, rendering);
    if (!problems.isEmpty()) {
        return failure(QStringLiteral("%1 does not fit the plugin").arg(rendering.scenario), problems);
    }
    const QImage image = drawPage(document);
    const QStringList remarks = log.takeWarnings();
    for (const QString &remark : remarks) {
        printWarning(remark);
    }
    const QString path = picturePath(rendering);
    QString problem;
    if (!QDir().mkpath(QFileInfo(path).path())) {
        return failure(QStringLiteral("the folder %1 cannot be made").arg(QFileInfo(path).path()));
    }
    if (image.isNull()) {
        return failure(QStringLiteral("there is no memory for the picture"));
    }
    if (!savePicture(image, path, problem)) {
        return failure(problem);
    }
    printResult(printable(path) + QLatin1Char('\n'));
    return rendering.golden.isEmpty() ? static_cast<int>(ExitFine) : compare(image, path, rendering.golden);
}

} // namespace

int renderScenario(PluginLoader &loader, const ScenarioRendering &rendering, LogCollector &log)
{
    auto *plugin = loader.pluginData().first()->toWidgetLibraryPluginData();
    Scenario scenario;
    QStringList problems;
    if (!readScenario(rendering, *plugin->metaInformation(), scenario, problems)) {
        return failure(QStringLiteral("%1 cannot be drawn").arg(rendering.scenario), problems);
    }
    if (!rendering.golden.isEmpty()
        && QFileInfo(rendering.golden).absoluteFilePath()
               == QFileInfo(picturePath(rendering)).absoluteFilePath()) {
        printError(QStringLiteral("--compare %1: the new picture would replace it; name another with --out")
                       .arg(rendering.golden));
        return ExitUsage;
    }
    if (!loader.init()) {
        return failure(QStringLiteral("the plugin cannot be started"), log.takeWarnings());
    }
    return drawScenario(plugin, scenario, rendering, log);
}
