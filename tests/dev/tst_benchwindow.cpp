// SPDX-License-Identifier: Apache-2.0
#include <support/logrecorder.h>
#include <support/testmain.h>

#include <QtCore/QFileInfo>
#include <QtCore/QMimeData>
#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAccessible>
#include <QtGui/QDropEvent>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QAction>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QUndoStack>

#include <kora/dev/canvas/canvasview.h>
#include <kora/dev/canvas/errorcard.h>
#include <kora/dev/fields/fieldeditor.h>
#include <kora/dev/fields/fieldmanager.h>
#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/panes/problemspane.h>
#include <kora/dev/providers/providers.h>
#include <kora/dev/theme/theme.h>
#include <kora/dev/widgetlibraryplugintestwidget.h>
#include <kora/dev/window/commandpalette.h>
#include <kora/dev/window/toolbar.h>
#include <kora/host.h>

using namespace KORA::DEV;

namespace {

const char *const plantId = "b29e4ff5-3b69-4566-977d-dd1851a271a4";

QString plantFolder()
{
    return QFileInfo(QStringLiteral(KORA_TEST_LIBRARY_plant)).dir().absoluteFilePath(QStringLiteral("../.."));
}

/// The window as it is on a first start.
class Bench : public WidgetLibraryPluginTestWidget
{
public:
    explicit Bench(Start start = Start::FirstWidget)
    {
        isOpen = openPluginFolder(plantFolder(), start);
        show();
        QApplication::setActiveWindow(this);
    }

    template<typename T>
    T *get(const char *name) const
    {
        return findChild<T *>(QLatin1String(name));
    }
    void trigger(const char *action) const { get<QAction>(action)->trigger(); }
    CanvasView *canvas() const { return get<CanvasView>("canvas"); }
    FieldsPane *fields() const { return get<FieldsPane>("fieldsPane"); }
    PlacedWidget *placed(const char *name) const
    {
        for (PlacedWidget *each : document()->widgets()) {
            if (each->name() == QLatin1String(name)) {
                return each;
            }
        }
        return nullptr;
    }

    bool isOpen = false;
};

QTreeWidgetItem *rowOf(QTreeWidget *tree, const QString &text)
{
    const auto found = tree->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.first();
}

/// Drags a row of a tree onto the page.
void drag(QTreeWidget *tree, QTreeWidgetItem *row, CanvasView *canvas, const QPoint &to)
{
    tree->setCurrentItem(row);
    const std::unique_ptr<QMimeData> data(tree->model()->mimeData({tree->currentIndex()}));
    const QPoint at = canvas->mapFromScene(to);
    QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(canvas->viewport(), &enter);
    QDragMoveEvent move(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(canvas->viewport(), &move);
    QDropEvent drop(at, Qt::CopyAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(canvas->viewport(), &drop);
}

/// Types a value into the editor of a field of the selected widget.
void type(const Bench &bench, const char *field, const QString &text)
{
    FieldManager *manager = bench.fields()->fieldManagers().value(QLatin1String(field));
    QVERIFY(manager);
    QWidget *control = manager->editor()->controls().first();
    control->setFocus();
    QTest::keySequence(control, QKeySequence::SelectAll);
    QTest::keyClicks(control, text);
    QTest::keyClick(control, Qt::Key_Return);
}

// Internal parts of Qt's controls, which have the focus on behalf of their parent.
bool isPart(const QWidget *widget)
{
    return widget->objectName().startsWith(QLatin1String("qt_")) || widget->focusProxy();
}

QStringList unnamedControls(const QWidget &window)
{
    QStringList unnamed;
    const auto widgets = window.findChildren<QWidget *>();
    for (QWidget *each : widgets) {
        if (each->window() != &window || each->focusPolicy() == Qt::NoFocus || isPart(each)) {
            continue;
        }
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(each);
        if (!accessible || accessible->text(QAccessible::Name).isEmpty()) {
            unnamed.append(QStringLiteral("%1 '%2' in %3")
                               .arg(QLatin1String(each->metaObject()->className()), each->objectName(),
                                    each->parentWidget()->objectName()));
        }
    }
    return unnamed;
}

} // namespace

class TestBenchWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void cleanup();
    void firstStartPlacesAWidget();
    void dragsTypesAndUndoes();
    void valuesStayOverAChangeOfMode();
    void tagsAndAlarmsReachTheWidget();
    void everyControlHasAName();
    void keysReachThePanes();
    void instancesAreEditedInTheirPane();
    void aWidgetThatEndedTheBenchIsNotAskedForItsIcon();
    void layoutOutlivesTheWindow();
    void narrowWindowsTabTheLeftPanes();
    void paletteFindsActionsWidgetsAndFields();
    void scenariosAndWindowStateComeBack();
    void aFolderThatCannotBeLoadedIsExplained();
    void actionsEditTheSelection();
    void actionsAndToolsChangeThePage();
    void filesAreChosenInDialogs();
    void menusActOnWhatIsBelow();
    void whatCannotBeDoneIsTold();
    void findingsAreToldOnce();

private:
    QTemporaryDir m_dir;
};

void TestBenchWindow::initTestCase()
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_dir.path());
    KORA::INTERNAL::koraInit(QIcon());
}

// The buttons in Qt's line edits fade in; an animation whose line edit is gone ends at its next step, and until then it is a
// leak.
void TestBenchWindow::cleanupTestCase()
{
    QTest::qWait(100);
}

void TestBenchWindow::cleanup()
{
    BenchSettings().clear();
    LogRecorder::installUnexpectedLineHandler();
}

void TestBenchWindow::firstStartPlacesAWidget()
{
    const Bench bench;
    QVERIFY(bench.isOpen);
    QCOMPARE(bench.document()->widgets().size(), 1);
    PlacedWidget *first = bench.document()->widgets().first();
    QCOMPARE(bench.document()->current(), first);
    QVERIFY(first->isRunning());
    QCOMPARE(first->geometry().center().toPoint(), QPoint(400, 240));
    QVERIFY(!bench.isWindowModified());
    QVERIFY(!bench.fields()->fieldManagers().isEmpty());
    QCOMPARE(bench.banners(), QStringList());
    QCOMPARE(bench.get<QDockWidget>("problemsDock")->windowTitle(), QStringLiteral("Problems"));
}

void TestBenchWindow::dragsTypesAndUndoes()
{
    const Bench bench;
    auto *tree = bench.get<QTreeWidget>("widgetsTree");
    QTreeWidgetItem *tank = rowOf(tree, QStringLiteral("Level tank"));
    QVERIFY(tank);
    drag(tree, tank, bench.canvas(), {200, 200});
    QCOMPARE(bench.document()->widgets().size(), 2);
    PlacedWidget *placed = bench.document()->current();
    QCOMPARE(placed->widgetId(), QStringLiteral("level_tank"));
    QTRY_COMPARE(bench.get<QTreeWidget>("instancesTree")->topLevelItemCount(), 2);
    QCOMPARE(bench.get<QTreeWidget>("instancesTree")->currentItem()->text(0), placed->name());

    const QVariant before = placed->fieldValue(QStringLiteral("capacity"));
    type(bench, "capacity", QStringLiteral("250"));
    QCOMPARE(placed->fieldValue(QStringLiteral("capacity")).toDouble(), 250.0);
    QVERIFY(bench.isWindowModified());
    bench.trigger("undo");
    QCOMPARE(placed->fieldValue(QStringLiteral("capacity")), before);
    bench.trigger("undo");
    QCOMPARE(bench.document()->widgets().size(), 1);
    bench.trigger("redo");
    QCOMPARE(bench.document()->widgets().size(), 2);

    // A double click on the gallery places as well, and an older version is there to be placed.
    QTreeWidgetItem *gauge = rowOf(tree, QStringLiteral("Gauge"));
    QCOMPARE(gauge->text(1), QStringLiteral("1.1.0"));
    QCOMPARE(gauge->child(0)->text(1), QStringLiteral("1.0.0"));
    Q_EMIT tree->itemActivated(gauge->child(0), 0);
    QCOMPARE(bench.document()->current()->version(), QStringLiteral("1.0.0"));
}

void TestBenchWindow::valuesStayOverAChangeOfMode()
{
    const Bench bench;
    PlacedWidget *gauge =
        bench.document()->place(QStringLiteral("gauge"), QStringLiteral("1.1.0"), {300, 200});
    type(bench, "maximum", QStringLiteral("77.5"));
    const QPointer<KORA::Widget> instance = gauge->widget();
    QTest::keyClick(bench.canvas(), Qt::Key_F5);
    QCOMPARE(bench.document()->mode(), BenchMode::Runtime);
    QVERIFY(bench.get<QAction>("runtime")->isChecked());
    QVERIFY(instance.isNull()); // the next one may stand at the same address
    QVERIFY(gauge->widget());
    QCOMPARE(gauge->fieldValue(QStringLiteral("maximum")).toDouble(), 77.5);
    QTest::keyClick(bench.canvas(), Qt::Key_F5, Qt::ShiftModifier);
    QCOMPARE(bench.document()->mode(), BenchMode::Studio);
    QCOMPARE(gauge->fieldValue(QStringLiteral("maximum")).toDouble(), 77.5);
}

void TestBenchWindow::tagsAndAlarmsReachTheWidget()
{
    const Bench bench;
    Providers *plant = bench.document()->providers();
    PlacedWidget *tank =
        bench.document()->place(QStringLiteral("level_tank"), QStringLiteral("1.0.0"), {300, 200});
    TagDefinition level;
    level.name = QStringLiteral("TestLevel");
    level.value = 41.5;
    QVERIFY(plant->tags()->add(level));
    const QString capacity = QStringLiteral("capacity");
    bench.document()->setBinding(tank, capacity, level.name);
    QCOMPARE(tank->fieldValue(capacity).toDouble(), 41.5);
    QVERIFY(plant->tags()->setValue(level.name, 99.0));
    QCOMPARE(tank->fieldValue(capacity).toDouble(), 99.0);
    // The editor writes the tag.
    type(bench, "capacity", QStringLiteral("12"));
    QCOMPARE(plant->tags()->value(level.name).toDouble(), 12.0);

    bench.document()->place(QStringLiteral("alarm_list"), QStringLiteral("1.0.0"), {400, 240});
    QSignalSpy changes(plant->alarms(), &AlarmTable::alarmChanged);
    const QString alarm = plant->alarms()->names().value(0);
    QVERIFY(plant->alarms()->raise(alarm));
    QCOMPARE(changes.size(), 1);
    const auto isAlarm = [](const ActivityEntry &entry) {
        return entry.what.contains(QLatin1String("alarm"), Qt::CaseInsensitive);
    };
    const auto &entries = bench.document()->activity()->entries();
    QVERIFY(std::any_of(entries.begin(), entries.end(), isAlarm));
}

void TestBenchWindow::everyControlHasAName()
{
    const Bench bench;
    bench.document()->place(QStringLiteral("gauge"), QStringLiteral("1.1.0"), {300, 200});
    for (const char *const widget : {"alarm_list", "value_switch", "picture", "pump", "trend_chart"}) {
        bench.document()->place(QLatin1String(widget), QStringLiteral("1.0.0"), {300, 200});
        const auto managers = bench.fields()->fieldManagers();
        for (FieldManager *manager : managers) {
            manager->editor(); // rows out of sight have none yet
        }
        QCOMPARE(unnamedControls(bench).join(QLatin1Char('\n')), QString());
    }
    bench.trigger("palette");
    bench.trigger("shortcuts");
    bench.trigger("about");
    const auto dialogs = bench.findChildren<QDialog *>();
    QCOMPARE(dialogs.size(), 3);
    for (const QDialog *dialog : dialogs) {
        QCOMPARE(unnamedControls(*dialog).join(QLatin1Char('\n')), QString());
    }
}

void TestBenchWindow::keysReachThePanes()
{
    const Bench bench;
    const auto pane = [&bench] {
        for (QWidget *each = bench.focusWidget(); each; each = each->parentWidget()) {
            if (qobject_cast<QDockWidget *>(each) || each == bench.canvas()) {
                return each->objectName();
            }
        }
        return QString();
    };
    QTest::keyClick(bench.canvas(), Qt::Key_2, Qt::AltModifier);
    QCOMPARE(pane(), QStringLiteral("activityDock"));
    QTest::keyClick(bench.focusWidget(), Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(bench.focusWidget()->objectName(), QStringLiteral("activityFilter"));
    QStringList order;
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(bench.focusWidget(), Qt::Key_F6);
        order.append(pane());
    }
    const QStringList expected{QStringLiteral("canvas"), QStringLiteral("widgetsDock"),
                               QStringLiteral("instancesDock"), QStringLiteral("fieldsDock"),
                               QStringLiteral("activityDock")};
    QCOMPARE(order, expected);
    QTest::keyClick(bench.focusWidget(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(bench.get<QDockWidget>("activityDock")->isHidden());
    // A letter alone is never a key of the window: it is what is typed.
    const auto actions = bench.findChildren<QAction *>();
    for (const QAction *action : actions) {
        const QString key = action->shortcut().toString();
        QVERIFY2(key.size() != 1, qPrintable(action->text()));
    }
}

void TestBenchWindow::instancesAreEditedInTheirPane()
{
    const Bench bench;
    bench.document()->place(QStringLiteral("pump"), QStringLiteral("1.0.0"), {300, 200});
    PlacedWidget *pump = bench.document()->current();
    auto *tree = bench.get<QTreeWidget>("instancesTree");
    QTRY_COMPARE(tree->topLevelItemCount(), 2);
    const auto click = [tree](int row, int column) {
        const QModelIndex index = tree->model()->index(row, column);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(index).center());
    };
    click(0, 2);
    QVERIFY(!pump->isVisible());
    click(0, 3);
    QVERIFY(pump->isLocked());
    click(0, 1);
    QVERIFY(!pump->isRunning());

    const auto rename = [&](const QString &name) {
        bench.trigger("rename");
        auto *editor = tree->findChild<QLineEdit *>();
        QVERIFY(editor);
        editor->setText(name);
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_VERIFY(!tree->findChild<QLineEdit *>());
    };
    rename(QStringLiteral("feed"));
    QCOMPARE(pump->name(), QStringLiteral("feed"));
    rename(QStringLiteral("alarm_list1"));
    QCOMPARE(pump->name(), QStringLiteral("feed"));
    QTRY_COMPARE(tree->topLevelItem(0)->text(0), QStringLiteral("feed"));

    // The topmost stands first.
    bench.get<QToolButton>("instanceDown")->click();
    QCOMPARE(bench.document()->widgets().first(), pump);
    QTRY_COMPARE(tree->topLevelItem(1)->text(0), QStringLiteral("feed"));
    click(0, 0);
    QCOMPARE(bench.document()->current()->name(), QStringLiteral("alarm_list1"));
}

void TestBenchWindow::aWidgetThatEndedTheBenchIsNotAskedForItsIcon()
{
    const QString asked = QStringLiteral("icons/%1/asked").arg(QLatin1String(plantId));
    {
        const Bench bench;
        QTRY_VERIFY(!BenchSettings().contains(asked));
    }
    // As a process leaves it that did not come back.
    BenchSettings().setValue(asked, QStringLiteral("pump 1.0.0"));
    for (int start = 0; start < 2; ++start) {
        const Bench bench;
        QTRY_VERIFY(!BenchSettings().contains(asked));
        auto *tree = bench.get<QTreeWidget>("widgetsTree");
        QVERIFY(rowOf(tree, QStringLiteral("Pump"))->toolTip(0).contains(QLatin1String("Ended the bench")));
        QVERIFY(!rowOf(tree, QStringLiteral("Gauge"))->toolTip(0).contains(QLatin1String("Ended")));
    }
}

void TestBenchWindow::layoutOutlivesTheWindow()
{
    {
        Bench bench;
        bench.resize(1280, 700);
        bench.get<QDockWidget>("tagsDock")->setFloating(true);
        bench.get<QDockWidget>("alarmsDock")->hide();
        bench.close();
    }
    const Bench bench;
    QCOMPARE(bench.size(), QSize(1280, 700));
    QVERIFY(bench.get<QDockWidget>("tagsDock")->isFloating());
    QVERIFY(bench.get<QDockWidget>("alarmsDock")->isHidden());
    bench.trigger("resetLayout");
    QVERIFY(!bench.get<QDockWidget>("tagsDock")->isFloating());
    QVERIFY(!bench.get<QDockWidget>("alarmsDock")->isHidden());

    // The page alone, and all panes back.
    bench.trigger("canvasOnly");
    QVERIFY(bench.get<QDockWidget>("fieldsDock")->isHidden());
    bench.trigger("canvasOnly");
    QVERIFY(!bench.get<QDockWidget>("fieldsDock")->isHidden());
}

void TestBenchWindow::narrowWindowsTabTheLeftPanes()
{
    Bench bench;
    auto *widgets = bench.get<QDockWidget>("widgetsDock");
    auto *instances = bench.get<QDockWidget>("instancesDock");
    QVERIFY(!bench.tabifiedDockWidgets(widgets).contains(instances));
    bench.resize(1000, 700);
    QTRY_VERIFY(bench.tabifiedDockWidgets(widgets).contains(instances));
    bench.resize(1366, 768);
    QTRY_VERIFY(!bench.tabifiedDockWidgets(widgets).contains(instances));
}

void TestBenchWindow::paletteFindsActionsWidgetsAndFields()
{
    const Bench bench;
    bench.document()->place(QStringLiteral("gauge"), QStringLiteral("1.1.0"), {300, 200});
    const auto run = [&bench](const QString &typed) {
        bench.trigger("palette");
        auto *palette = bench.get<QDialog>("commandPalette");
        auto *edit = palette->findChild<QLineEdit *>(QStringLiteral("paletteFilter"));
        QTest::keyClicks(edit, typed);
        QTest::keyClick(edit, Qt::Key_Return);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    run(QStringLiteral("runtime"));
    QCOMPARE(bench.document()->mode(), BenchMode::Runtime);
    run(QStringLiteral("place pump"));
    QCOMPARE(bench.document()->current()->widgetId(), QStringLiteral("pump"));
    run(QStringLiteral("field label"));
    const auto controls =
        bench.fields()->fieldManagers().value(QStringLiteral("label"))->editor()->controls();
    QCOMPARE(bench.focusWidget(), controls.first());

    QVERIFY(CommandPalette::match(QStringLiteral("zoom"), QStringLiteral("Zoom in"))
            > CommandPalette::match(QStringLiteral("zi"), QStringLiteral("Zoom in")));
    QVERIFY(CommandPalette::match(QStringLiteral("zx"), QStringLiteral("Zoom in")) < 0);
}

void TestBenchWindow::scenariosAndWindowStateComeBack()
{
    const QString path = m_dir.filePath(QStringLiteral("tank.json"));
    QJsonObject view;
    {
        Bench bench;
        bench.document()->place(QStringLiteral("level_tank"), QStringLiteral("1.0.0"), {300, 200});
        type(bench, "capacity", QStringLiteral("31"));
        bench.canvas()->setZoom(2);
        bench.setScenarioPath(path);
        QSignalSpy saved(&bench, &WidgetLibraryPluginTestWidget::scenarioSaved);
        bench.trigger("saveScenario");
        QCOMPARE(saved.size(), 1);
        QVERIFY(!bench.isWindowModified());
        view = bench.windowState();
    }
    Bench bench(WidgetLibraryPluginTestWidget::Start::Empty);
    QVERIFY(bench.document()->widgets().isEmpty());
    QVERIFY(bench.openScenario(path));
    bench.restoreWindowState(view);
    QCOMPARE(bench.document()->widgets().size(), 2);
    QCOMPARE(bench.document()->current()->widgetId(), QStringLiteral("level_tank"));
    QCOMPARE(bench.document()->current()->fieldValue(QStringLiteral("capacity")).toDouble(), 31.0);
    QCOMPARE(bench.canvas()->zoom(), 2.0);
    QVERIFY(!bench.openScenario(m_dir.filePath(QStringLiteral("none.json"))));
    QCOMPARE(bench.banners().size(), 1);
    QCOMPARE(bench.document()->widgets().size(), 2);

    // Without code of the widgets: nothing runs until it is asked for.
    Bench stopped(WidgetLibraryPluginTestWidget::Start::Stopped);
    QVERIFY(stopped.openScenario(path));
    QVERIFY(!stopped.document()->widgets().first()->widget());
    QSignalSpy startedAgain(&stopped, &WidgetLibraryPluginTestWidget::startAgainRequested);
    Q_EMIT stopped.canvas()->activated(stopped.document()->widgets().first());
    QCOMPARE(startedAgain.size(), 1);
    QVERIFY(stopped.document()->widgets().first()->isRunning());
    QVERIFY(!stopped.document()->widgets().last()->widget());
}

void TestBenchWindow::aFolderThatCannotBeLoadedIsExplained()
{
    const QString folder = m_dir.filePath(QLatin1String(plantId));
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/linux/arm64")));
    WidgetLibraryPluginTestWidget bench;
    bench.show();
    QVERIFY(!bench.openPluginFolder(folder));
    const auto *card = bench.findChild<ErrorCard *>();
    QVERIFY(card->isVisible());
    QVERIFY2(card->text().contains(QLatin1String("librar")), qPrintable(card->text()));
    QVERIFY(card->text().contains(QLatin1String("The loader says")));
    const auto *problems = bench.findChild<QTreeWidget *>(QStringLiteral("problemsList"));
    QVERIFY(problems->topLevelItemCount() >= 2);
    // Another folder can be opened in its place.
    QVERIFY(bench.openPluginFolder(plantFolder()));
    QVERIFY(!card->isVisible());
    QCOMPARE(problems->topLevelItemCount(), 0);
    QVERIFY(!bench.openPluginFolder(plantFolder()));
    QCOMPARE(bench.banners().size(), 1);
}

void TestBenchWindow::actionsEditTheSelection()
{
    const Bench bench;
    BenchDocument *document = bench.document();
    PlacedWidget *gauge = document->place(QStringLiteral("gauge"), QStringLiteral("1.1.0"), {300, 200});
    QCOMPARE(document->selection().size(), 1);
    document->setGeometries({gauge}, {QRectF(10, 20, 50, 40)});
    bench.trigger("defaultSize");
    QCOMPARE(gauge->geometry(), QRectF(QPointF(10, 20), gauge->info().defaultSize()));

    const QString maximum = QStringLiteral("maximum");
    const QVariant before = gauge->fieldValue(maximum);
    type(bench, "maximum", QStringLiteral("77.5"));
    QCOMPARE(gauge->fieldValue(maximum).toDouble(), 77.5);
    bench.trigger("resetFields");
    QCOMPARE(gauge->fieldValue(maximum), before);

    bench.trigger("stopWidget");
    QVERIFY(!gauge->isRunning());
    bench.trigger("startWidget");
    QVERIFY(gauge->isRunning());
    bench.trigger("restartWidget");
    QVERIFY(gauge->isRunning());

    QCOMPARE(document->widgets().last(), gauge);
    bench.trigger("sendBackward");
    QCOMPARE(document->widgets().first(), gauge);
    bench.trigger("bringForward");
    QCOMPARE(document->widgets().last(), gauge);

    bench.trigger("copy");
    bench.trigger("paste");
    QCOMPARE(document->widgets().size(), 3);
    QCOMPARE(document->current()->widgetId(), QStringLiteral("gauge"));
    QVERIFY(document->current()->name() != gauge->name());
    bench.trigger("duplicate");
    QCOMPARE(document->widgets().size(), 4);
    bench.trigger("cut");
    QCOMPARE(document->widgets().size(), 3);
    bench.trigger("selectAll");
    QCOMPARE(document->selection().size(), 3);
    bench.trigger("remove");
    QVERIFY(document->widgets().isEmpty());
    bench.trigger("startWidget"); // of nothing
    bench.trigger("paste");
    QCOMPARE(document->widgets().size(), 1);
    bench.trigger("undo");
    bench.trigger("undo");
    QCOMPARE(document->widgets().size(), 3);
}

void TestBenchWindow::actionsAndToolsChangeThePage()
{
    const Bench bench;
    BenchDocument *document = bench.document();
    QCOMPARE(document->page().size, QSize(800, 480));
    bench.trigger("rotatePage");
    QCOMPARE(document->page().size, QSize(480, 800));
    QVERIFY(document->page().gridIsShown);
    bench.trigger("grid");
    QVERIFY(!document->page().gridIsShown);
    bench.trigger("zoom100");
    QCOMPARE(bench.canvas()->zoom(), 1.0);
    bench.trigger("zoomIn");
    const double zoom = bench.canvas()->zoom();
    QVERIFY(zoom > 1);
    bench.trigger("zoomOut");
    QVERIFY(bench.canvas()->zoom() < zoom);
    bench.trigger("fitSelection");
    const double ofSelection = bench.canvas()->zoom();
    bench.trigger("fitPage");
    QVERIFY(bench.canvas()->zoom() < ofSelection); // the page is larger than its widget

    auto *tools = bench.findChild<BenchToolBar *>();
    Q_EMIT tools->pageSizeChosen(QSize(640, 400));
    QCOMPARE(document->page().size, QSize(640, 400));
    Q_EMIT tools->zoomChosen(0.5);
    QCOMPARE(bench.canvas()->zoom(), 0.5);
    Q_EMIT tools->languageChosen(QStringLiteral("it-IT"));
    QCOMPARE(document->language(), QStringLiteral("it-IT"));
    Q_EMIT tools->backgroundChosen(Qt::darkGreen);
    QCOMPARE(document->page().background, QColor(Qt::darkGreen));
    Q_EMIT tools->customBackgroundRequested();
    auto *colors = bench.get<QColorDialog>("backgroundDialog");
    QVERIFY(colors && colors->currentColor() == QColor(Qt::darkGreen));
    colors->setCurrentColor(Qt::yellow);
    colors->accept();
    QCOMPARE(document->page().background, QColor(Qt::yellow));

    // A size of one's own, taken and then given up.
    for (const bool isTaken : {true, false}) {
        Q_EMIT tools->customPageSizeRequested();
        auto *dialog = bench.get<QDialog>("pageSizeDialog");
        QVERIFY(dialog && dialog->isVisible());
        dialog->findChild<QSpinBox *>(QStringLiteral("pageWidth"))->setValue(isTaken ? 1024 : 320);
        isTaken ? dialog->accept() : dialog->reject();
        QCOMPARE(document->page().size, QSize(1024, 400));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    for (const char *theme : {"themeDark", "themeLight"}) {
        bench.trigger(theme);
        QVERIFY(bench.get<QAction>(theme)->isChecked());
        QCOMPARE(bench.palette().color(QPalette::Window).lightness() < 128, theme[5] == 'D');
    }
    QCOMPARE(BenchTheme::remembered(), Theme::Light);
    bench.trigger("themeSystem");

    QSignalSpy reloads(&bench, &WidgetLibraryPluginTestWidget::reloadRequested);
    bench.trigger("reload");
    bench.trigger("reloadFresh");
    QCOMPARE(reloads.size(), 2);
    QCOMPARE(reloads.at(0).first(), QVariant(true));
    QCOMPARE(reloads.at(1).first(), QVariant(false));
}

void TestBenchWindow::filesAreChosenInDialogs()
{
    const Bench bench;
    const QString scenario = m_dir.filePath(QStringLiteral("chosen.json"));
    const QString picture = m_dir.filePath(QStringLiteral("chosen.png"));
    // An empty path gives up.
    const auto answer = [&bench](const char *action, const QString &path) {
        bool isAsked = false;
        QTimer::singleShot(0, &bench, [&isAsked, path] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            isAsked = dialog != nullptr;
            if (!isAsked) {
                return;
            }
            if (!path.isEmpty()) {
                dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(path);
            }
            static_cast<QDialog *>(dialog)->done(path.isEmpty() ? QDialog::Rejected : QDialog::Accepted);
        });
        bench.trigger(action);
        return isAsked;
    };
    QVERIFY(answer("savePicture", QString()));
    QVERIFY(answer("savePicture", picture));
    QCOMPARE(QImage(picture).size(), bench.document()->page().size);

    QVERIFY(answer("saveScenarioAs", QString()));
    QVERIFY(!QFile::exists(scenario));
    QSignalSpy saved(&bench, &WidgetLibraryPluginTestWidget::scenarioSaved);
    QVERIFY(answer("saveScenarioAs", scenario));
    QCOMPARE(saved.value(0).value(0).toString(), scenario);
    bench.trigger("saveScenario"); // knows the path
    QCOMPARE(saved.size(), 2);
    bench.document()->place(QStringLiteral("pump"), QStringLiteral("1.0.0"), {100, 100});
    QVERIFY(answer("openScenario", QString()));
    QCOMPARE(bench.document()->widgets().size(), 2);
    QVERIFY(answer("openScenario", scenario));
    QCOMPARE(bench.document()->widgets().size(), 1);

    // Another plugin is the business of whoever opened the window.
    QSignalSpy others(&bench, &WidgetLibraryPluginTestWidget::openRequested);
    QVERIFY(answer("openPlugin", QString()));
    QCOMPARE(others.size(), 0);
    QVERIFY(answer("openPlugin", m_dir.path()));
    QCOMPARE(others.value(0).value(0).toString(), m_dir.path());
    QCOMPARE(bench.banners(), QStringList());
}

void TestBenchWindow::menusActOnWhatIsBelow()
{
    const Bench bench;
    PlacedWidget *first = bench.document()->widgets().first();
    bench.document()->setSelection({});
    const auto choose = [&bench](PlacedWidget *widget, const char *name) {
        bool isThere = false;
        QTimer::singleShot(0, &bench, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            auto *action = bench.get<QAction>(name);
            isThere = menu && menu->actions().contains(action);
            if (isThere) {
                action->trigger();
            }
            if (menu) {
                menu->close();
            }
        });
        Q_EMIT bench.canvas()->contextMenuRequested(widget, bench.mapToGlobal(QPoint(300, 300)));
        return isThere;
    };
    QVERIFY(choose(first, "duplicate"));
    QCOMPARE(bench.document()->widgets().size(), 2);
    QVERIFY(!choose(nullptr, "duplicate"));
    QVERIFY(choose(nullptr, "selectAll"));
    QCOMPARE(bench.document()->selection().size(), 2);
    QVERIFY(choose(first, "remove")); // of the selection that it belongs to
    QVERIFY(bench.document()->widgets().isEmpty());
}

void TestBenchWindow::whatCannotBeDoneIsTold()
{
    WidgetLibraryPluginTestWidget empty;
    QVERIFY(!empty.openScenario(m_dir.filePath(QStringLiteral("none.json"))));
    QCOMPARE(empty.banners(),
             QStringList{QStringLiteral("Open a plugin folder first: a scenario places its widgets")});

    Bench bench;
    QCOMPARE(QFileInfo(bench.pluginFolder()), QFileInfo(plantFolder()));
    bench.setScenarioPath(m_dir.filePath(QStringLiteral("none/scenario.json")));
    bench.trigger("saveScenario");
    QVERIFY2(bench.banners().value(0).startsWith(m_dir.filePath(QStringLiteral("none/scenario.json"))
                                                 + QStringLiteral(" cannot be saved: ")),
             qPrintable(bench.banners().value(0)));
    // Values that the library does not have are dropped by name.
    const QString path = m_dir.filePath(QStringLiteral("old.json"));
    bench.setScenarioPath(path);
    bench.trigger("saveScenario");
    QCOMPARE(bench.banners(), QStringList()); // gone with its reason
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray content = file.readAll();
    QVERIFY(content.contains("\"values\": {"));
    content.replace("\"values\": {", "\"values\": {\"colourOfOld\": 1, ");
    QVERIFY(file.seek(0) && file.write(content) == content.size() && file.flush());
    QVERIFY(bench.openScenario(path));
    QVERIFY2(bench.banners().value(0).startsWith(QStringLiteral("Opened, but not all fits the library: "))
                 && bench.banners().value(0).contains(QStringLiteral("colourOfOld")),
             qPrintable(bench.banners().value(0)));
}

// Of what is found twice, the finding with the line stays.
void TestBenchWindow::findingsAreToldOnce()
{
    Bench bench;
    const auto finding = [](Finding::Severity severity, const char *rule, int line) {
        Finding finding;
        finding.severity = severity;
        finding.rule = QLatin1String(rule);
        finding.message = QStringLiteral("about %1").arg(finding.rule);
        finding.line = line;
        return finding;
    };
    bench.setFindings({finding(Finding::Warning, "first", 0)});
    bench.addFindings({finding(Finding::Warning, "first", 12), finding(Finding::Note, "second", 3),
                       finding(Finding::Error, "third", 4)});
    const Findings all = bench.findChild<ProblemsPane *>()->findings();
    QCOMPARE(all.size(), 3);
    QCOMPARE(all.at(0).rule, QStringLiteral("third")); // the worst first
    QCOMPARE(all.at(1).rule, QStringLiteral("first"));
    QCOMPARE(all.at(1).line, 12);
}

KORA_TEST_MAIN(TestBenchWindow)

#include "tst_benchwindow.moc"
