// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/widgetlibraryplugintestwidget_p.h>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtGui/QFontDatabase>
#include <QtGui/QImageReader>
#include <QtGui/QResizeEvent>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QVBoxLayout>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/canvas/errorcard.h>
#include <kora/dev/diagnosis/plugindiagnosis.h>
#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/panes/instancespane.h>
#include <kora/dev/panes/problemspane.h>
#include <kora/dev/providers/providers.h>
#include <kora/loader/plugindata.h>
#include <kora/runtime/widgetlibraryplugin.h>
#include <kora/runtime/widgetlibraryplugin_p.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

namespace {

const QSize defaultWindowSize(1366, 768);
const int layoutVersion = 1; // of the saved layout: another one is not restored

const char *const geometryKey = "geometry";
const char *const layoutKey = "layout";

QString toText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

QByteArray toBytes(const QJsonValue &json)
{
    return QByteArray::fromBase64(json.toString().toLatin1());
}

Finding unregistered(const WidgetMetaInformation &info, const QStringList &registered)
{
    Finding finding;
    finding.severity = Finding::Error;
    finding.rule = QStringLiteral("widget-not-registered");
    finding.widgetId = info.id();
    finding.widgetVersion = info.version().version();
    finding.message = WidgetLibraryPluginTestWidget::tr("The widget %1 %2 is declared but not registered")
                          .arg(finding.widgetId, finding.widgetVersion);
    finding.hint = WidgetLibraryPluginTestWidget::tr("Call registerWidget() with this id and version in the "
                                                     "plugin's constructor. Registered are: %1")
                       .arg(registered.isEmpty() ? WidgetLibraryPluginTestWidget::tr("none")
                                                 : registered.join(QLatin1String(", ")));
    return finding;
}

} // namespace

// Construction ---------------------------------------------------------------------------------------------------

WidgetLibraryPluginTestWidgetPrivate::WidgetLibraryPluginTestWidgetPrivate(
    WidgetLibraryPluginTestWidget *owner)
    : owner(owner)
    , actions(owner)
    , banners(new BannerStrip(owner))
    , centre(new QStackedWidget(owner))
    , card(new ErrorCard(owner))
    , panes(owner, &console)
    , toolBar(new BenchToolBar(actions, owner))
    , statusLine(new StatusLine(owner))
{
    auto *area = new QWidget(owner);
    auto *layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(banners);
    layout->addWidget(centre, 1);
    centre->addWidget(card);
    owner->setCentralWidget(area);
    owner->addToolBar(toolBar);
    owner->setStatusBar(statusLine);
    actions.fill(owner->menuBar());
    panes.fill(owner->menuBar()->findChild<QMenu *>(QStringLiteral("viewMenu")));
    for (const char *const name : {"openPlugin", "reload"}) {
        card->addButton(actions[name]);
    }
    changeTimer.setSingleShot(true);
    QObject::connect(&changeTimer, &QTimer::timeout, owner, [this] { updateActions(); });
    connectActions();
    connectPageActions();
    connectWidgetActions();
    connectToolBar();
    QObject::connect(statusLine, &StatusLine::problemsRequested, owner,
                     [this] { panes.show(PaneSet::Problems); });
    QObject::connect(panes.problems(), &ProblemsPane::countChanged, statusLine, &StatusLine::setProblemCount);
    QObject::connect(panes.problems(), &ProblemsPane::failed, owner,
                     [this](const QString &text) { showMessage(text); });
}

WidgetLibraryPluginTestWidgetPrivate::~WidgetLibraryPluginTestWidgetPrivate()
{
    dropDocument();
    loader.unload();
}

WidgetLibraryPluginTestWidget::WidgetLibraryPluginTestWidget(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("benchWindow"));
    resize(defaultWindowSize);
    BenchTheme::apply(BenchTheme::remembered(), this);
    d = std::make_unique<WidgetLibraryPluginTestWidgetPrivate>(this);
    d->setDocument(std::make_unique<BenchDocument>(nullptr));
    d->setTheme(BenchTheme::remembered());
    d->restoreLayout();
}

WidgetLibraryPluginTestWidget::~WidgetLibraryPluginTestWidget() = default;

// Opening --------------------------------------------------------------------------------------------------------

bool WidgetLibraryPluginTestWidget::openPluginFolder(const QString &folder, Start start)
{
    if (d->document->plugin()) {
        showBanner(BannerKind::Warning, tr("A library is open already: another one takes a fresh window"), {},
                   QStringLiteral("open"));
        return false;
    }
    d->folder = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    d->isStopped = start == Start::Stopped;
    if (!d->load(d->folder)) {
        return false;
    }
    if (start == Start::FirstWidget) {
        d->placeFirstWidget();
    }
    d->warnOfEnvironment();
    return true;
}

void WidgetLibraryPluginTestWidget::placeFirstWidget()
{
    if (d->document->plugin()) {
        d->placeFirstWidget();
    }
}

bool WidgetLibraryPluginTestWidgetPrivate::load(const QString &pluginFolder)
{
    console.flush();
    const int firstLine = console.rowCount();
    if (!loader.loadFromPluginDir(pluginFolder) || !loader.init()) {
        loader.unload();
        console.flush();
        showLoadFailure(pluginFolder, firstLine);
        return false;
    }
    setDocument(std::make_unique<BenchDocument>(loader.pluginData().first()->toWidgetLibraryPluginData()));
    updateLibraryStatus();
    findUnregistered();
    return true;
}

void WidgetLibraryPluginTestWidgetPrivate::showLoadFailure(const QString &pluginFolder, int firstConsoleLine)
{
    Findings findings = diagnosePluginFolder(pluginFolder);
    if (findings.isEmpty() && console.rowCount() > firstConsoleLine) {
        findings = diagnoseLoadFailure(libraryPathInFolder(pluginFolder, thisPlatform()),
                                       console.line(console.rowCount() - 1).text);
    }
    // What the loader said is the cause if nothing better is known, and stands below it otherwise.
    const Finding::Severity severity = findings.isEmpty() ? Finding::Error : Finding::Note;
    for (int row = qMin(firstConsoleLine, console.rowCount()); row < console.rowCount(); ++row) {
        const ConsoleLine &line = console.line(row);
        if (line.level == ConsoleLine::Error || line.level == ConsoleLine::Warning) {
            Finding said;
            said.severity = severity;
            said.rule = QStringLiteral("loader");
            said.message = WidgetLibraryPluginTestWidget::tr("The loader says: %1").arg(line.text);
            findings.append(said);
        }
    }
    owner->setFindings(findings);
    owner->showFailure(WidgetLibraryPluginTestWidget::tr("The library cannot be loaded"), findings);
    updateTitle();
}

void WidgetLibraryPluginTestWidgetPrivate::placeFirstWidget()
{
    const QMap<QString, WidgetMetaInformation> latest =
        document->plugin()->metaInformation()->widgetsLatestVersion();
    auto first = std::find_if(latest.begin(), latest.end(),
                              [](const WidgetMetaInformation &info) { return info.showInPageGallery(); });
    first = first == latest.end() ? latest.begin() : first;
    if (first == latest.end()) {
        owner->showBanner(BannerKind::Warning,
                          WidgetLibraryPluginTestWidget::tr("The library declares no widgets"));
        return;
    }
    placeAtCentre(first->id(), first->version().version());
    document->undoStack()->clear();
}

void WidgetLibraryPluginTestWidgetPrivate::warnOfEnvironment()
{
    if (!QFontDatabase().families().contains(QStringLiteral("Roboto"))) {
        owner->showBanner(BannerKind::Warning,
                          WidgetLibraryPluginTestWidget::tr(
                              "The font Roboto is missing: texts look other than on the panel. Install the "
                              "package fonts-roboto-unhinted"),
                          {}, QStringLiteral("font"));
    }
    if (!QImageReader::supportedImageFormats().contains("svg")) {
        owner->showBanner(
            BannerKind::Warning,
            WidgetLibraryPluginTestWidget::tr("SVG pictures cannot be shown. Install the package libqt5svg5"),
            {}, QStringLiteral("svg"));
    }
}

void WidgetLibraryPluginTestWidgetPrivate::findUnregistered()
{
    const auto &registry =
        WidgetLibraryPluginPrivateAccessor::priv(document->plugin()->instance())->widgetRegistry;
    QStringList registered;
    for (auto it = registry.begin(); it != registry.end(); ++it) {
        registered.append(it.key().first + QLatin1Char(' ') + it.key().second);
    }
    Findings findings;
    const auto widgets = document->plugin()->metaInformation()->widgets();
    for (const WidgetMetaInformation &info : widgets) {
        if (!registry.contains({info.id(), info.version().version()})) {
            findings.append(unregistered(info, registered));
        }
    }
    owner->setFindings(findings);
}

bool WidgetLibraryPluginTestWidget::openScenario(const QString &path)
{
    if (!d->document->plugin()) {
        showBanner(BannerKind::Warning, tr("Open a plugin folder first: a scenario places its widgets"), {},
                   QStringLiteral("scenario"));
        return false;
    }
    Scenario scenario;
    QStringList problems;
    if (!Scenario::load(path, scenario, problems)) {
        showBanner(BannerKind::Error,
                   tr("%1 cannot be opened: %2").arg(path, problems.join(QLatin1String("; "))), {},
                   QStringLiteral("scenario"));
        return false;
    }
    d->document->providers()->setFolder(QFileInfo(path).absolutePath());
    QStringList dropped;
    d->document->load(scenario, dropped, d->isStopped);
    setScenarioPath(path);
    if (dropped.isEmpty()) {
        closeBanner(QStringLiteral("scenario"));
    } else {
        showBanner(BannerKind::Warning,
                   tr("Opened, but not all fits the library: %1").arg(dropped.join(QLatin1String("; "))), {},
                   QStringLiteral("scenario"));
    }
    return true;
}

// The rest of the interface --------------------------------------------------------------------------------------

QString WidgetLibraryPluginTestWidget::pluginFolder() const
{
    return d->folder;
}

QString WidgetLibraryPluginTestWidget::scenarioPath() const
{
    return d->scenarioPath;
}

void WidgetLibraryPluginTestWidget::setScenarioPath(const QString &path)
{
    d->scenarioPath = path;
    d->updateTitle();
}

BenchDocument *WidgetLibraryPluginTestWidget::document() const
{
    return d->document.get();
}

QJsonObject WidgetLibraryPluginTestWidget::windowState() const
{
    QJsonObject state = d->canvas->viewState();
    QJsonArray selection;
    for (const PlacedWidget *widget : d->document->selection()) {
        selection.append(widget->name());
    }
    state.insert(QStringLiteral("selection"), selection);
    state.insert(QLatin1String(geometryKey), toText(saveGeometry()));
    state.insert(QLatin1String(layoutKey), toText(saveState(layoutVersion)));
    state.insert(QStringLiteral("touch"), d->canvas->touchEmulation());
    return state;
}

void WidgetLibraryPluginTestWidget::restoreWindowState(const QJsonObject &state)
{
    restoreGeometry(toBytes(state.value(QLatin1String(geometryKey))));
    restoreState(toBytes(state.value(QLatin1String(layoutKey))), layoutVersion);
    d->canvas->setViewState(state);
    d->actions["touch"]->setChecked(state.value(QStringLiteral("touch")).toBool());
    QVector<PlacedWidget *> selection;
    const QJsonArray names = state.value(QStringLiteral("selection")).toArray();
    for (const QJsonValue &name : names) {
        for (PlacedWidget *widget : d->document->widgets()) {
            if (widget->name() == name.toString()) {
                selection.append(widget);
            }
        }
    }
    if (!selection.isEmpty()) {
        d->document->setSelection(selection);
    }
}

void WidgetLibraryPluginTestWidget::showBanner(BannerKind kind, const QString &text,
                                               const QVector<BannerAction> &actions, const QString &key)
{
    d->banners->show(kind, text, actions, key);
}

void WidgetLibraryPluginTestWidget::closeBanner(const QString &key)
{
    d->banners->close(key);
}

QStringList WidgetLibraryPluginTestWidget::banners() const
{
    return d->banners->texts();
}

void WidgetLibraryPluginTestWidget::setFindings(const Findings &findings)
{
    d->panes.problems()->setFindings(findings);
}

void WidgetLibraryPluginTestWidget::addFindings(const Findings &findings)
{
    Findings all = d->panes.problems()->findings();
    for (const Finding &added : findings) {
        const auto known = std::find_if(all.begin(), all.end(), [&added](const Finding &finding) {
            return finding.rule == added.rule && finding.code == added.code
                   && (finding.message == added.message || finding.line == 0);
        });
        if (known == all.end()) {
            all.append(added);
        } else {
            *known = added;
        }
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Finding &a, const Finding &b) { return a.severity < b.severity; });
    setFindings(all);
    if (d->centre->currentWidget() == d->card && !d->document->plugin()) {
        d->card->setFindings(d->failureTitle, all);
    }
}

void WidgetLibraryPluginTestWidget::showFailure(const QString &title, const Findings &findings)
{
    d->failureTitle = title;
    d->card->setFindings(title, findings);
    d->centre->setCurrentWidget(d->card);
}

void WidgetLibraryPluginTestWidget::setReloadStatus(const QString &text)
{
    d->statusLine->setReload(text);
}

void WidgetLibraryPluginTestWidget::closeEvent(QCloseEvent *event)
{
    d->saveLayout();
    Q_EMIT aboutToClose();
    QMainWindow::closeEvent(event);
}

void WidgetLibraryPluginTestWidget::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    if (d) {
        d->panes.adaptToWidth(event->size().width());
    }
}

void WidgetLibraryPluginTestWidgetPrivate::restoreLayout()
{
    const BenchSettings settings;
    owner->restoreGeometry(settings.value(QLatin1String(geometryKey)).toByteArray());
    owner->restoreState(settings.value(QLatin1String(layoutKey)).toByteArray(), layoutVersion);
}

void WidgetLibraryPluginTestWidgetPrivate::saveLayout()
{
    actions["canvasOnly"]->setChecked(false);
    BenchSettings settings;
    settings.setValue(QLatin1String(geometryKey), owner->saveGeometry());
    settings.setValue(QLatin1String(layoutKey), owner->saveState(layoutVersion));
}

} // namespace DEV
} // namespace KORA
