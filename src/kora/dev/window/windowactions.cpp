// SPDX-License-Identifier: Apache-2.0
//
// What the window's actions and tools do.
#include <kora/dev/widgetlibraryplugintestwidget_p.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QTreeWidget>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/fields/fieldeditor.h>
#include <kora/dev/fields/fieldmanager.h>
#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/model/fieldvaluejson.h>
#include <kora/dev/panes/instancespane.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/window/helpdialogs.h>
#include <kora/loader/plugindata.h>

namespace KORA {
namespace DEV {

using Window = WidgetLibraryPluginTestWidget;

namespace {

template<typename Run>
void onTriggered(const BenchActions &actions, const char *name, QObject *context, Run run)
{
    QObject::connect(actions[name], &QAction::triggered, context, run);
}

} // namespace

void WidgetLibraryPluginTestWidgetPrivate::connectActions()
{
    const auto on = [this](const char *name, const std::function<void()> &run) {
        onTriggered(actions, name, owner, run);
    };
    on("openPlugin", [this] { choosePlugin(); });
    on("openScenario", [this] { chooseScenario(); });
    on("saveScenario", [this] { saveScenario(false); });
    on("saveScenarioAs", [this] { saveScenario(true); });
    on("savePicture", [this] { savePicture(); });
    on("quit", [this] { owner->close(); });
    on("undo", [this] { document->undoStack()->undo(); });
    on("redo", [this] { document->undoStack()->redo(); });
    on("nextPane", [this] { panes.focusNext(true); });
    on("previousPane", [this] { panes.focusNext(false); });
    on("closePane", [this] { panes.closeFocused(); });
    on("floatPane", [this] { panes.floatFocused(); });
    on("resetLayout", [this] { panes.resetLayout(); });
    on("reload", [this] { Q_EMIT owner->reloadRequested(true); });
    on("reloadFresh", [this] { Q_EMIT owner->reloadRequested(false); });
    on("palette", [this] { openPalette(); });
    on("shortcuts", [this] { showShortcuts(actions, owner); });
    on("about", [this] { showAbout(document->plugin(), buildTime, owner); });
    const QPair<const char *, Theme> themes[] = {
        {"themeSystem", Theme::System}, {"themeLight", Theme::Light}, {"themeDark", Theme::Dark}};
    for (const auto &each : themes) {
        on(each.first, [this, theme = each.second] {
            BenchTheme::remember(theme);
            setTheme(theme);
        });
    }
    QObject::connect(actions["canvasOnly"], &QAction::toggled, owner,
                     [this](bool isOn) { panes.setCanvasOnly(isOn); });
}

void WidgetLibraryPluginTestWidgetPrivate::connectPageActions()
{
    const auto on = [this](const char *name, const std::function<void()> &run) {
        onTriggered(actions, name, owner, run);
    };
    on("zoomIn", [this] { canvas->zoomIn(); });
    on("zoomOut", [this] { canvas->zoomOut(); });
    on("zoom100", [this] { canvas->setZoom(1); });
    on("fitPage", [this] { canvas->fitPage(); });
    on("fitSelection", [this] { canvas->fitSelection(); });
    on("rotatePage", [this] { rotatePage(); });
    on("grid", [this] {
        PageState page = document->page();
        page.gridIsShown = actions["grid"]->isChecked();
        document->setPage(page);
    });
    on("studio", [this] { document->setMode(BenchMode::Studio); });
    on("runtime", [this] { document->setMode(BenchMode::Runtime); });
    QObject::connect(actions["touch"], &QAction::toggled, owner,
                     [this](bool isOn) { canvas->setTouchEmulation(isOn); });
    QObject::connect(actions["allKeys"], &QAction::toggled, owner, [this](bool isOn) {
        canvas->setKeepsNoKeys(isOn);
        updateMode();
    });
}

void WidgetLibraryPluginTestWidgetPrivate::connectWidgetActions()
{
    const auto on = [this](const char *name, const std::function<void()> &run) {
        onTriggered(actions, name, owner, run);
    };
    on("cut", [this] { canvas->edits()->cut(); });
    on("copy", [this] { canvas->edits()->copy(); });
    on("paste", [this] { canvas->edits()->paste(); });
    on("duplicate", [this] { canvas->edits()->duplicate(); });
    on("remove", [this] { canvas->edits()->remove(); });
    on("selectAll", [this] { canvas->edits()->selectAll(); });
    on("bringForward", [this] { canvas->edits()->bringForward(); });
    on("sendBackward", [this] { canvas->edits()->sendBackward(); });
    on("rename", [this] {
        panes.dock(PaneSet::Instances)->show();
        panes.dock(PaneSet::Instances)->raise();
        panes.instances()->renameCurrent();
    });
    on("startWidget",
       [this] { forSelection([this](PlacedWidget *widget) { document->setRunning(widget, true); }); });
    on("stopWidget",
       [this] { forSelection([this](PlacedWidget *widget) { document->setRunning(widget, false); }); });
    on("restartWidget",
       [this] { forSelection([this](PlacedWidget *widget) { document->restart(widget); }); });
    on("defaultSize", [this] { setDefaultSize(); });
    on("resetFields", [this] {
        forSelection(
            [this](PlacedWidget *widget) { document->resetFields(widget, fieldIds(widget->info())); });
    });
}

void WidgetLibraryPluginTestWidgetPrivate::connectToolBar()
{
    QObject::connect(toolBar, &BenchToolBar::zoomChosen, owner, [this](double zoom) {
        canvas->setZoom(zoom);
        canvas->setFocus();
    });
    QObject::connect(toolBar, &BenchToolBar::pageSizeChosen, owner, [this](const QSize &size) {
        PageState page = document->page();
        page.size = size;
        document->setPage(page);
    });
    QObject::connect(toolBar, &BenchToolBar::customPageSizeRequested, owner, [this] { choosePageSize(); });
    QObject::connect(toolBar, &BenchToolBar::backgroundChosen, owner,
                     [this](const QColor &color) { applyBackground(color); });
    QObject::connect(toolBar, &BenchToolBar::customBackgroundRequested, owner,
                     [this] { chooseBackground(); });
    QObject::connect(toolBar, &BenchToolBar::languageChosen, owner,
                     [this](const QString &language) { document->setLanguage(language); });
}

// Command palette ------------------------------------------------------------------------------------------------

void WidgetLibraryPluginTestWidgetPrivate::openPalette()
{
    QVector<PaletteEntry> entries;
    const QVector<QAction *> all = actions.all();
    for (QAction *action : all) {
        if (action->isEnabled() && action != actions["palette"]) {
            entries.append({action->text().remove(QLatin1Char('&')),
                            action->shortcut().toString(QKeySequence::NativeText), action->icon(),
                            [action] { action->trigger(); }});
        }
    }
    for (int pane = 0; pane < PaneSet::PaneCount; ++pane) {
        entries.append({Window::tr("Pane: %1").arg(panes.dock(PaneSet::Pane(pane))->windowTitle()), QString(),
                        QIcon(), [this, pane] { panes.show(PaneSet::Pane(pane)); }});
    }
    addWidgetEntries(entries);
    addFieldEntries(entries);
    auto *dialog = new CommandPalette(entries, owner);
    dialog->move(owner->mapToGlobal(QPoint((owner->width() - dialog->width()) / 2, 80)));
    dialog->show();
}

void WidgetLibraryPluginTestWidgetPrivate::addWidgetEntries(QVector<PaletteEntry> &entries)
{
    if (!document->plugin()) {
        return;
    }
    const auto widgets = document->plugin()->metaInformation()->widgets();
    for (const INTERNAL::WidgetMetaInformation &info : widgets) {
        const QString id = info.id();
        const QString version = info.version().version();
        entries.append({Window::tr("Place %1").arg(info.display().get(document->language(), true)), version,
                        benchIcon("add"), [this, id, version] { placeAtCentre(id, version); }});
    }
}

void WidgetLibraryPluginTestWidgetPrivate::addFieldEntries(QVector<PaletteEntry> &entries)
{
    if (!document->current()) {
        return;
    }
    const auto fields = document->current()->info().fields();
    for (const INTERNAL::FieldMetaInformation &field : fields) {
        const QString id = field.id();
        entries.append({Window::tr("Field: %1").arg(field.display().get(document->language(), true)), id,
                        benchIcon("fields"), [this, id] { focusField(id); }});
    }
}

void WidgetLibraryPluginTestWidgetPrivate::focusField(const QString &fieldId)
{
    panes.show(PaneSet::Fields);
    FieldManager *manager = fieldManagers().value(fieldId);
    if (!manager) {
        return; // of another widget by now
    }
    fieldsPane->tree()->setCurrentItem(manager->row());
    fieldsPane->tree()->scrollToItem(manager->row());
    const FieldEditor *editor = manager->editor();
    if (editor && !editor->controls().isEmpty()) {
        editor->controls().first()->setFocus(Qt::ShortcutFocusReason);
    }
}

} // namespace DEV
} // namespace KORA
