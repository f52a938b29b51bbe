// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/paneset.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QShortcut>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QUndoView>

#include <kora/dev/fields/fieldspane.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/panes/activitypane.h>
#include <kora/dev/panes/alarmspane.h>
#include <kora/dev/panes/consolepane.h>
#include <kora/dev/panes/instancespane.h>
#include <kora/dev/panes/problemspane.h>
#include <kora/dev/panes/tagspane.h>
#include <kora/dev/panes/trendspane.h>
#include <kora/dev/panes/widgetspane.h>
#include <kora/dev/window/panetitle.h>

namespace KORA {
namespace DEV {

namespace {

const int leftWidth = 220;
const int rightWidth = 370;
const int upperHeight = 300;
const int lowerHeight = 150;
const int bottomHeight = 220;

const PaneSet::Pane bottomPanes[] = {PaneSet::Console, PaneSet::Activity, PaneSet::Tags,    PaneSet::Trends,
                                     PaneSet::Alarms,  PaneSet::History,  PaneSet::Problems};

} // namespace

PaneSet::PaneSet(QMainWindow *window, ConsoleModel *console)
    : QObject(window)
    , m_window(window)
    , m_docks(PaneCount, nullptr)
    , m_console(console)
{
    m_titleBarTimer.setSingleShot(true);
    m_titleBarTimer.setInterval(0);
    connect(&m_titleBarTimer, &QTimer::timeout, this, &PaneSet::updateTitleBars);
    window->setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    window->setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
    window->setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowTabbedDocks
                           | QMainWindow::AllowNestedDocks);
    window->setTabPosition(Qt::AllDockWidgetAreas, QTabWidget::North);
    addDock(Widgets, QStringLiteral("widgets"), tr("Widgets"), Qt::LeftDockWidgetArea);
    addDock(Instances, QStringLiteral("instances"), tr("Instances"), Qt::LeftDockWidgetArea);
    addDock(Fields, QStringLiteral("fields"), tr("Fields"), Qt::RightDockWidgetArea);
    addDock(Console, QStringLiteral("console"), tr("Console"), Qt::BottomDockWidgetArea);
    addDock(Activity, QStringLiteral("activity"), tr("Activity"), Qt::BottomDockWidgetArea);
    addDock(Tags, QStringLiteral("tags"), tr("Tags"), Qt::BottomDockWidgetArea);
    addDock(Trends, QStringLiteral("trends"), tr("Trends"), Qt::BottomDockWidgetArea);
    addDock(Alarms, QStringLiteral("alarms"), tr("Alarms"), Qt::BottomDockWidgetArea);
    addDock(History, QStringLiteral("history"), tr("History"), Qt::BottomDockWidgetArea);
    addDock(Problems, QStringLiteral("problems"), tr("Problems"), Qt::BottomDockWidgetArea);
    setPane(Console, new ConsolePane(console));
    m_problems = new ProblemsPane;
    setPane(Problems, m_problems);
    connect(m_problems, &ProblemsPane::countChanged, this, [this](int count) {
        dock(Problems)->setWindowTitle(count > 0 ? tr("Problems (%1)").arg(count) : tr("Problems"));
    });
    for (int i = 0; i < static_cast<int>(std::size(bottomPanes)); ++i) {
        const Pane pane = bottomPanes[i];
        auto *shortcut = new QShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(i + 1)), window);
        connect(shortcut, &QShortcut::activated, this, [this, pane] { show(pane); });
    }
    resetLayout();
}

void PaneSet::addDock(Pane pane, const QString &name, const QString &title, Qt::DockWidgetArea area)
{
    auto *dock = new QDockWidget(title, m_window);
    dock->setObjectName(name + QLatin1String("Dock"));
    dock->setAccessibleName(title);
    m_window->addDockWidget(area, dock);
    m_docks[pane] = dock;
    const auto updateSoon = QOverload<>::of(&QTimer::start);
    connect(dock, &QDockWidget::topLevelChanged, &m_titleBarTimer, updateSoon);
    connect(dock, &QDockWidget::dockLocationChanged, &m_titleBarTimer, updateSoon);
    connect(dock, &QDockWidget::visibilityChanged, &m_titleBarTimer, updateSoon);
}

void PaneSet::setPane(Pane pane, QWidget *widget)
{
    delete dock(pane)->widget();
    dock(pane)->setWidget(widget);
}

void PaneSet::setDocument(BenchDocument *document)
{
    m_widgets = new WidgetsPane(document);
    m_instances = new InstancesPane(document);
    m_fields = new FieldsPane(document);
    setPane(Widgets, m_widgets);
    setPane(Instances, m_instances);
    setPane(Fields, m_fields);
    setPane(Activity, new ActivityPane(document->activity()));
    setPane(Tags, new TagsPane(document->providers(), nullptr));
    setPane(Trends, new TrendsPane(document->providers(), nullptr));
    setPane(Alarms, new AlarmsPane(document->providers(), nullptr));
    auto *history = new QUndoView(document->undoStack());
    history->setObjectName(QStringLiteral("historyList"));
    history->setAccessibleName(tr("History"));
    history->setToolTip(tr("A click goes back or forward to a step"));
    history->setEmptyLabel(tr("As opened"));
    history->setFrameShape(QFrame::NoFrame);
    setPane(History, history);
}

void PaneSet::dropDocument()
{
    for (const Pane pane : {Widgets, Instances, Fields, Activity, Tags, Trends, Alarms, History}) {
        setPane(pane, nullptr);
    }
    m_widgets = nullptr;
    m_instances = nullptr;
    m_fields = nullptr;
}

void PaneSet::resetLayout()
{
    for (QDockWidget *each : qAsConst(m_docks)) {
        each->setFloating(false);
        m_window->removeDockWidget(each);
    }
    m_window->addDockWidget(Qt::LeftDockWidgetArea, dock(Widgets));
    m_window->addDockWidget(Qt::LeftDockWidgetArea, dock(Instances));
    m_window->addDockWidget(Qt::RightDockWidgetArea, dock(Fields));
    QDockWidget *first = dock(bottomPanes[0]);
    m_window->addDockWidget(Qt::BottomDockWidgetArea, first);
    for (const Pane pane : bottomPanes) {
        if (dock(pane) != first) {
            m_window->tabifyDockWidget(first, dock(pane));
        }
    }
    for (QDockWidget *each : qAsConst(m_docks)) {
        each->show();
    }
    first->raise();
    applyNarrow();
    m_window->resizeDocks({dock(Widgets), dock(Fields)}, {leftWidth, rightWidth}, Qt::Horizontal);
    m_window->resizeDocks({dock(Widgets), dock(Instances), first}, {upperHeight, lowerHeight, bottomHeight},
                          Qt::Vertical);
}

void PaneSet::adaptToWidth(int width)
{
    if (m_isNarrow != (width < narrowWidth)) {
        m_isNarrow = width < narrowWidth;
        applyNarrow();
    }
}

void PaneSet::applyNarrow()
{
    QDockWidget *upper = dock(Widgets);
    QDockWidget *lower = dock(Instances);
    // Where the user has put them elsewhere, they stay.
    if (upper->isFloating() || lower->isFloating()
        || m_window->dockWidgetArea(upper) != Qt::LeftDockWidgetArea
        || m_window->dockWidgetArea(lower) != Qt::LeftDockWidgetArea) {
        return;
    }
    const bool areTabs = m_window->tabifiedDockWidgets(upper).contains(lower);
    if (m_isNarrow && !areTabs) {
        m_window->tabifyDockWidget(upper, lower);
        upper->raise();
    } else if (!m_isNarrow && areTabs) {
        // Splitting would keep it a tab.
        const bool isShown = !lower->isHidden();
        m_window->removeDockWidget(lower);
        m_window->addDockWidget(Qt::LeftDockWidgetArea, lower, Qt::Vertical);
        lower->setVisible(isShown);
    }
}

void PaneSet::updateTitleBars()
{
    // A tab says the name already; a title would say it again.
    for (QDockWidget *each : qAsConst(m_docks)) {
        const bool isTab = !each->isFloating() && !m_window->tabifiedDockWidgets(each).isEmpty();
        QWidget *present = each->titleBarWidget();
        if (present && isTab != (qobject_cast<PaneTitle *>(present) != nullptr)) {
            continue;
        }
        each->setTitleBarWidget(isTab ? new QWidget(each) : new PaneTitle(each));
        delete present;
    }
    const auto bars = m_window->findChildren<QTabBar *>(QString(), Qt::FindDirectChildrenOnly);
    for (QTabBar *bar : bars) {
        bar->setAccessibleName(tr("Panes"));
        bar->setDocumentMode(true);
        bar->setExpanding(false);
    }
}

QDockWidget *PaneSet::focusedDock() const
{
    for (QDockWidget *each : m_docks) {
        if (each->isAncestorOf(QApplication::focusWidget())) {
            return each;
        }
    }
    return nullptr;
}

void PaneSet::closeFocused()
{
    if (QDockWidget *focused = focusedDock()) {
        focused->close();
    }
}

void PaneSet::floatFocused()
{
    if (QDockWidget *focused = focusedDock()) {
        focused->setFloating(!focused->isFloating());
    }
}

void PaneSet::setCanvasOnly(bool isCanvasOnly)
{
    if (!isCanvasOnly) {
        m_window->restoreState(m_layoutBeforeCanvasOnly);
        return;
    }
    m_layoutBeforeCanvasOnly = m_window->saveState();
    for (QDockWidget *each : qAsConst(m_docks)) {
        each->hide();
    }
}

void PaneSet::show(Pane pane)
{
    dock(pane)->show();
    dock(pane)->raise();
    QWidget *content = dock(pane)->widget();
    for (QWidget *next = content; next;) {
        if (next != content && next->focusPolicy() != Qt::NoFocus && next->isEnabled()) {
            next->setFocus(Qt::ShortcutFocusReason);
            return;
        }
        next = next->nextInFocusChain();
        if (!content->isAncestorOf(next)) {
            break;
        }
    }
    if (content) {
        content->setFocus(Qt::ShortcutFocusReason);
    }
}

void PaneSet::focusNext(bool isForward)
{
    QVector<int> seen; // panes in sight; the page is PaneCount
    for (int pane = 0; pane < PaneCount; ++pane) {
        const QDockWidget *each = m_docks.at(pane);
        if (each->widget() && !each->widget()->visibleRegion().isEmpty()) {
            seen.append(pane);
        }
    }
    seen.append(PaneCount);
    int present = seen.size() - 1;
    for (int i = 0; i < seen.size() - 1; ++i) {
        if (m_docks.at(seen.at(i))->isAncestorOf(QApplication::focusWidget())) {
            present = i;
        }
    }
    const int next = seen.at((present + (isForward ? 1 : seen.size() - 1)) % seen.size());
    if (next < PaneCount) {
        show(static_cast<Pane>(next));
    } else {
        m_window->centralWidget()->setFocus(Qt::ShortcutFocusReason);
    }
}

void PaneSet::fill(QMenu *menu) const
{
    menu->addSeparator();
    for (const QDockWidget *each : m_docks) {
        menu->addAction(each->toggleViewAction());
    }
}

} // namespace DEV
} // namespace KORA
