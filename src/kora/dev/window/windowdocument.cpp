// SPDX-License-Identifier: Apache-2.0
//
// The window's side of a document: what it shows of it, and what it does to it on the user's behalf.
#include <kora/dev/widgetlibraryplugintestwidget_p.h>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QMetaMethod>
#include <QtWidgets/QAction>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/panes/instancespane.h>
#include <kora/dev/panes/widgetspane.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/window/pagesizedialog.h>
#include <kora/loader/plugindata.h>

namespace KORA {
namespace DEV {

using Window = WidgetLibraryPluginTestWidget;

namespace {

const int changeInterval = 50; // milliseconds

} // namespace

void WidgetLibraryPluginTestWidgetPrivate::dropDocument()
{
    if (!document) {
        return;
    }
    // What shows the document goes before it; what it says while it goes is of no interest.
    document->disconnect(owner);
    document->undoStack()->disconnect(owner);
    delete canvas;
    panes.dropDocument();
    document.reset();
}

void WidgetLibraryPluginTestWidgetPrivate::setDocument(std::unique_ptr<BenchDocument> newDocument)
{
    dropDocument();
    document = std::move(newDocument);
    canvas = new CanvasView(document.get());
    canvas->setObjectName(QStringLiteral("canvas"));
    canvas->setAccessibleName(Window::tr("Page"));
    // Widgets look as on a panel, whatever the bench looks like.
    document->scene()->setPalette(BenchTheme::pagePalette());
    centre->addWidget(canvas);
    centre->setFocusProxy(canvas);
    owner->centralWidget()->setFocusProxy(canvas);
    fillPanes();
    connectDocument();
    connectCanvas();
    if (document->plugin()) {
        centre->setCurrentWidget(canvas);
    }
    updateUndo();
    updatePage();
    updateMode();
    updateTitle();
    updateActions();
    toolBar->setLanguages(document->languages(), document->language());
    toolBar->setZoom(canvas->zoom());
    Q_EMIT owner->documentChanged();
}

void WidgetLibraryPluginTestWidgetPrivate::connectDocument()
{
    BenchDocument *doc = document.get();
    QObject::connect(doc, &BenchDocument::selectionChanged, owner, [this] { updateActions(); });
    // A plugin may write thousands of values a second.
    QObject::connect(doc, &BenchDocument::changed, owner, [this] {
        if (!changeTimer.isActive()) {
            changeTimer.start(changeInterval);
        }
    });
    QObject::connect(doc, &BenchDocument::loaded, owner, [this] {
        updatePage();
        updateMode();
        updateActions();
        toolBar->setLanguages(document->languages(), document->language());
    });
    QObject::connect(doc, &BenchDocument::modeChanged, owner, [this] { updateMode(); });
    QObject::connect(doc, &BenchDocument::pageChanged, owner, [this] { updatePage(); });
    QObject::connect(doc, &BenchDocument::languageChanged, owner,
                     [this] { toolBar->setLanguages(document->languages(), document->language()); });
    const auto onUndo = [this] { updateUndo(); };
    QObject::connect(doc->undoStack(), &QUndoStack::indexChanged, owner, onUndo);
    QObject::connect(doc->undoStack(), &QUndoStack::cleanChanged, owner, onUndo);
}

void WidgetLibraryPluginTestWidgetPrivate::fillPanes()
{
    panes.setDocument(document.get());
    setFieldsPane(panes.fields());
    QObject::connect(panes.widgets(), &WidgetsPane::placeRequested, owner,
                     [this](const QString &id, const QString &version) { placeAtCentre(id, version); });
    QObject::connect(panes.instances(), &InstancesPane::failed, owner,
                     [this](const QString &text) { showMessage(text); });
    auto *offered = panes.fields()->findChild<QAction *>(QStringLiteral("fieldsPrivate"));
    offered->setChecked(actions["privateFields"]->isChecked());
    QObject::connect(actions["privateFields"], &QAction::toggled, offered, &QAction::setChecked);
    QObject::connect(offered, &QAction::toggled, actions["privateFields"], &QAction::setChecked);
    if (document->plugin() && !isStopped) {
        panes.widgets()->loadIcons();
    }
}

void WidgetLibraryPluginTestWidgetPrivate::connectCanvas()
{
    QObject::connect(canvas, &CanvasView::zoomChanged, owner, [this](double zoom) {
        toolBar->setZoom(zoom);
        statusLine->setZoom(zoom);
    });
    statusLine->setZoom(canvas->zoom());
    QObject::connect(canvas, &CanvasView::message, owner, [this](const QString &text) { showMessage(text); });
    QObject::connect(canvas, &CanvasView::contextMenuRequested, owner,
                     [this](PlacedWidget *widget, const QPoint &at) { showContextMenu(widget, at); });
    QObject::connect(canvas, &CanvasView::activated, owner, [this](PlacedWidget *widget) {
        if (widget->problem().rule == QLatin1String("stopped")) {
            const int id = widget->id();
            document->setRunning(widget, true);
            Q_EMIT owner->startAgainRequested(id);
            return;
        }
        panes.show(PaneSet::Fields);
    });
    canvas->setTouchEmulation(actions["touch"]->isChecked());
    canvas->setKeepsNoKeys(actions["allKeys"]->isChecked());
}

void WidgetLibraryPluginTestWidgetPrivate::placeAtCentre(const QString &widgetId, const QString &version)
{
    const QSize page = document->page().size;
    // Each a little off the last, so that none hides another.
    const int step = 2 * document->page().gridStep * (document->widgets().size() % 8);
    const QPoint middle(page.width() / 2, page.height() / 2);
    document->place(widgetId, version, middle + QPoint(step, step));
}

// What is shown --------------------------------------------------------------------------------------------------

void WidgetLibraryPluginTestWidgetPrivate::showMessage(const QString &text)
{
    const int duration = 8000; // milliseconds
    statusLine->showMessage(text, duration);
}

void WidgetLibraryPluginTestWidgetPrivate::updateActions()
{
    statusLine->showSelection(*document);
    const bool isSelected = !document->selection().isEmpty();
    for (const char *const name :
         {"cut", "copy", "duplicate", "remove", "rename", "startWidget", "stopWidget", "restartWidget",
          "defaultSize", "resetFields", "bringForward", "sendBackward", "fitSelection"}) {
        actions[name]->setEnabled(isSelected);
    }
    const bool isOpen = document->plugin() != nullptr;
    for (const char *const name :
         {"saveScenario", "saveScenarioAs", "savePicture", "openScenario", "studio", "runtime", "touch",
          "grid", "zoomIn", "zoomOut", "zoom100", "fitPage", "rotatePage", "paste", "selectAll"}) {
        actions[name]->setEnabled(isOpen);
    }
}

void WidgetLibraryPluginTestWidgetPrivate::updateUndo()
{
    const QUndoStack &stack = *document->undoStack();
    const auto update = [](QAction *action, const QString &verb, const QString &step, bool isPossible) {
        action->setEnabled(isPossible);
        action->setText(step.isEmpty() ? verb : QStringLiteral("%1: %2").arg(verb, step));
        action->setToolTip(QStringLiteral("%1 (%2)").arg(
            action->text().remove(QLatin1Char('&')), action->shortcut().toString(QKeySequence::NativeText)));
    };
    update(actions["undo"], Window::tr("&Undo"), stack.undoText(), stack.canUndo());
    update(actions["redo"], Window::tr("&Redo"), stack.redoText(), stack.canRedo());
    owner->setWindowModified(!stack.isClean());
}

void WidgetLibraryPluginTestWidgetPrivate::updateTitle()
{
    QString title = Window::tr("Test bench");
    if (document && document->plugin()) {
        title = document->plugin()->metaInformation()->name().get(document->language(), true);
    } else if (!folder.isEmpty()) {
        title = QDir(folder).dirName();
    }
    if (!scenarioPath.isEmpty()) {
        title += QStringLiteral(" - ") + QFileInfo(scenarioPath).fileName();
    }
    owner->setWindowTitle(title + QStringLiteral("[*]"));
}

void WidgetLibraryPluginTestWidgetPrivate::updateLibraryStatus()
{
    const INTERNAL::WidgetLibraryPluginData *plugin = document->plugin();
    console.setSourceName(plugin->metaInformation()->id(),
                          plugin->metaInformation()->name().get(document->language(), true));
    const QDateTime built = QFileInfo(plugin->libraryPath()).lastModified();
    buildTime = built.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    statusLine->setLibrary(
        Window::tr("library built %1, v%2")
            .arg(built.toString(QStringLiteral("HH:mm:ss")), plugin->metaInformation()->version().version()),
        QStringLiteral("%1\n%2").arg(plugin->libraryPath(), buildTime));
}

void WidgetLibraryPluginTestWidgetPrivate::updatePage()
{
    toolBar->setPage(document->page());
    actions["grid"]->setChecked(document->page().gridIsShown);
}

void WidgetLibraryPluginTestWidgetPrivate::updateMode()
{
    const BenchMode mode = document->mode();
    actions[mode == BenchMode::Studio ? "studio" : "runtime"]->setChecked(true);
    statusLine->setMode(mode, actions["allKeys"]->isChecked());
}

void WidgetLibraryPluginTestWidgetPrivate::setTheme(Theme theme)
{
    const char *const names[] = {"themeSystem", "themeLight", "themeDark"};
    actions[names[static_cast<int>(theme)]]->setChecked(true);
    BenchTheme::apply(theme, owner);
    if (panes.widgets()) {
        fillPanes(); // rows keep their colours otherwise
    }
}

// Page and files -------------------------------------------------------------------------------------------------

void WidgetLibraryPluginTestWidgetPrivate::choosePlugin()
{
    const QString chosen = QFileDialog::getExistingDirectory(owner, Window::tr("Open plugin folder"), folder);
    if (chosen.isEmpty()) {
        return;
    }
    const QMetaMethod takesOver = QMetaMethod::fromSignal(&Window::openRequested);
    if (document->plugin() || owner->isSignalConnected(takesOver)) {
        Q_EMIT owner->openRequested(chosen);
        return;
    }
    owner->openPluginFolder(chosen);
}

void WidgetLibraryPluginTestWidgetPrivate::chooseScenario()
{
    const QString chosen = QFileDialog::getOpenFileName(owner, Window::tr("Open scenario"), scenarioPath,
                                                        Window::tr("Scenarios (*.json)"));
    if (!chosen.isEmpty()) {
        owner->openScenario(chosen);
    }
}

bool WidgetLibraryPluginTestWidgetPrivate::saveScenario(bool asksForPath)
{
    QString path = scenarioPath;
    if (asksForPath || path.isEmpty()) {
        path = QFileDialog::getSaveFileName(owner, Window::tr("Save scenario"),
                                            path.isEmpty() ? QStringLiteral("default.json") : path,
                                            Window::tr("Scenarios (*.json)"));
    }
    if (path.isEmpty()) {
        return false;
    }
    QString problem;
    if (!document->toScenario().save(path, problem)) {
        owner->showBanner(BannerKind::Error, Window::tr("%1 cannot be saved: %2").arg(path, problem), {},
                          QStringLiteral("scenario"));
        return false;
    }
    document->undoStack()->setClean();
    owner->setScenarioPath(path);
    owner->closeBanner(QStringLiteral("scenario")); // of a time when it could not be saved
    showMessage(Window::tr("Saved as %1").arg(path));
    Q_EMIT owner->scenarioSaved(path);
    return true;
}

void WidgetLibraryPluginTestWidgetPrivate::savePicture()
{
    const QString path =
        QFileDialog::getSaveFileName(owner, Window::tr("Save picture of the page"),
                                     QStringLiteral("page.png"), Window::tr("Pictures (*.png)"));
    if (path.isEmpty()) {
        return;
    }
    const QSize size = document->page().size;
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(document->page().background.isValid() ? document->page().background
                                                       : QColor(Qt::transparent));
    QPainter painter(&picture);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing
                           | QPainter::SmoothPixmapTransform);
    const QRectF area(QPointF(), size);
    document->scene()->render(&painter, area, area);
    painter.end();
    picture.save(path) ? showMessage(Window::tr("Saved as %1").arg(path))
                       : owner->showBanner(BannerKind::Error, Window::tr("%1 cannot be written").arg(path));
}

void WidgetLibraryPluginTestWidgetPrivate::choosePageSize()
{
    auto *dialog = new PageSizeDialog(document->page().size, owner);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::finished, owner, [this, dialog](int result) {
        PageState page = document->page();
        if (result == QDialog::Accepted) {
            page.size = dialog->pageSize();
            document->setPage(page);
        }
        updatePage();
    });
    dialog->open();
}

void WidgetLibraryPluginTestWidgetPrivate::rotatePage()
{
    PageState page = document->page();
    page.size.transpose();
    document->setPage(page);
}

void WidgetLibraryPluginTestWidgetPrivate::applyBackground(const QColor &color)
{
    PageState page = document->page();
    page.background = color;
    document->setPage(page);
}

void WidgetLibraryPluginTestWidgetPrivate::chooseBackground()
{
    auto *dialog = new QColorDialog(document->page().background, owner);
    dialog->setObjectName(QStringLiteral("backgroundDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    QObject::connect(dialog, &QColorDialog::colorSelected, owner,
                     [this](const QColor &color) { applyBackground(color); });
    dialog->show();
}

// Selected widgets -----------------------------------------------------------------------------------------------

void WidgetLibraryPluginTestWidgetPrivate::forSelection(const std::function<void(PlacedWidget *)> &act)
{
    QVector<int> ids; // a plugin may take widgets away while it is called
    for (const PlacedWidget *widget : document->selection()) {
        ids.append(widget->id());
    }
    for (const int id : qAsConst(ids)) {
        if (PlacedWidget *widget = document->widgetById(id)) {
            act(widget);
        }
    }
}

void WidgetLibraryPluginTestWidgetPrivate::setDefaultSize()
{
    QVector<PlacedWidget *> widgets;
    QVector<QRectF> geometries;
    for (PlacedWidget *widget : document->selection()) {
        const QSizeF size = widget->info().defaultSize();
        if (!widget->isLocked() && size.isValid()) {
            widgets.append(widget);
            geometries.append(QRectF(widget->geometry().topLeft(), size));
        }
    }
    document->setGeometries(widgets, geometries);
}

void WidgetLibraryPluginTestWidgetPrivate::showContextMenu(PlacedWidget *widget, const QPoint &position)
{
    QMenu menu(owner);
    if (widget) {
        if (!document->selection().contains(widget)) {
            document->setSelection({widget});
        }
        for (const char *const name :
             {"startWidget", "stopWidget", "restartWidget", "defaultSize", "resetFields", "duplicate",
              "rename", "bringForward", "sendBackward", "remove"}) {
            menu.addAction(actions[name]);
        }
    } else {
        for (const char *const name :
             {"paste", "selectAll", "fitPage", "grid", "rotatePage", "savePicture"}) {
            menu.addAction(actions[name]);
        }
    }
    menu.exec(position);
}

} // namespace DEV
} // namespace KORA
