// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/benchactions.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QActionGroup>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>

#include <kora/dev/theme/icons.h>

namespace KORA {
namespace DEV {

namespace {

enum Flag : int {
    Checkable = 1,
    CanvasKey = 2, // the canvas handles the key; the menu shows it
};

struct Spec
{
    const char *name; // null for a separator
    const char *text; // null opens a menu, whose title is the name
    const char *icon;
    const char *keys;
    int flags;
    const char *group;
};

#define KORA_BENCH_TEXT(text) QT_TRANSLATE_NOOP("KORA::DEV::BenchActions", text)

const Spec specs[] = {
    {KORA_BENCH_TEXT("&File"), nullptr, nullptr, nullptr, 0, nullptr},
    {"openPlugin", KORA_BENCH_TEXT("&Open plugin folder..."), "open", "Ctrl+O", 0, nullptr},
    {"openScenario", KORA_BENCH_TEXT("Open s&cenario..."), "file", "Ctrl+Shift+O", 0, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"saveScenario", KORA_BENCH_TEXT("&Save scenario"), "save", "Ctrl+S", 0, nullptr},
    {"saveScenarioAs", KORA_BENCH_TEXT("Save scenario &as..."), nullptr, nullptr, 0, nullptr},
    {"savePicture", KORA_BENCH_TEXT("Save &picture..."), "camera", "Ctrl+Shift+S", 0, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"quit", KORA_BENCH_TEXT("&Quit"), nullptr, "Ctrl+Q", 0, nullptr},

    {KORA_BENCH_TEXT("&Edit"), nullptr, nullptr, nullptr, 0, nullptr},
    {"undo", KORA_BENCH_TEXT("&Undo"), "undo", "Ctrl+Z", 0, nullptr},
    {"redo", KORA_BENCH_TEXT("&Redo"), "redo", "Ctrl+Shift+Z", 0, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"cut", KORA_BENCH_TEXT("Cu&t"), nullptr, "Ctrl+X", CanvasKey, nullptr},
    {"copy", KORA_BENCH_TEXT("&Copy"), "copy", "Ctrl+C", CanvasKey, nullptr},
    {"paste", KORA_BENCH_TEXT("&Paste"), nullptr, "Ctrl+V", CanvasKey, nullptr},
    {"duplicate", KORA_BENCH_TEXT("&Duplicate"), "duplicate", "Ctrl+D", CanvasKey, nullptr},
    {"remove", KORA_BENCH_TEXT("Re&move"), "clear", "Del", CanvasKey, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"selectAll", KORA_BENCH_TEXT("Select &all"), nullptr, "Ctrl+A", CanvasKey, nullptr},
    {"rename", KORA_BENCH_TEXT("Re&name"), "edit", "F2", 0, nullptr},

    {KORA_BENCH_TEXT("&View"), nullptr, nullptr, nullptr, 0, nullptr},
    {"zoomIn", KORA_BENCH_TEXT("Zoom &in"), "zoomIn", "Ctrl++", 0, nullptr},
    {"zoomOut", KORA_BENCH_TEXT("Zoom &out"), "zoomOut", "Ctrl+-", 0, nullptr},
    {"zoom100", KORA_BENCH_TEXT("&100 %"), "actualSize", "Ctrl+0", 0, nullptr},
    {"fitPage", KORA_BENCH_TEXT("&Fit page"), "fit", "Ctrl+1", 0, nullptr},
    {"fitSelection", KORA_BENCH_TEXT("Fit &selection"), nullptr, "Ctrl+2", 0, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"grid", KORA_BENCH_TEXT("&Grid"), "grid", "Ctrl+G", Checkable, nullptr},
    {"rotatePage", KORA_BENCH_TEXT("&Rotate page"), "rotate", nullptr, 0, nullptr},
    {"privateFields", KORA_BENCH_TEXT("&Private fields"), nullptr, nullptr, Checkable, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"canvasOnly", KORA_BENCH_TEXT("Page o&nly"), nullptr, "F11", Checkable, nullptr},
    {"nextPane", KORA_BENCH_TEXT("Ne&xt pane"), nullptr, "F6", 0, nullptr},
    {"previousPane", KORA_BENCH_TEXT("Pre&vious pane"), nullptr, "Shift+F6", 0, nullptr},
    {"closePane", KORA_BENCH_TEXT("&Close pane"), nullptr, "Ctrl+W", 0, nullptr},
    {"floatPane", KORA_BENCH_TEXT("Pane as a &window, or back"), nullptr, "Ctrl+Shift+W", 0, nullptr},
    {"resetLayout", KORA_BENCH_TEXT("Reset &layout"), nullptr, nullptr, 0, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"themeSystem", KORA_BENCH_TEXT("Theme as the s&ystem"), nullptr, nullptr, Checkable, "theme"},
    {"themeLight", KORA_BENCH_TEXT("Li&ght theme"), nullptr, nullptr, Checkable, "theme"},
    {"themeDark", KORA_BENCH_TEXT("&Dark theme"), nullptr, nullptr, Checkable, "theme"},

    {KORA_BENCH_TEXT("&Widget"), nullptr, nullptr, nullptr, 0, nullptr},
    {"startWidget", KORA_BENCH_TEXT("&Start"), "play", nullptr, 0, nullptr},
    {"stopWidget", KORA_BENCH_TEXT("S&top"), "stop", nullptr, 0, nullptr},
    {"restartWidget", KORA_BENCH_TEXT("&Restart"), "restart", nullptr, 0, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"defaultSize", KORA_BENCH_TEXT("&Default size"), nullptr, nullptr, 0, nullptr},
    {"resetFields", KORA_BENCH_TEXT("Reset &fields"), "revert", nullptr, 0, nullptr},
    {"bringForward", KORA_BENCH_TEXT("Bring for&ward"), "up", "Ctrl+PgUp", CanvasKey, nullptr},
    {"sendBackward", KORA_BENCH_TEXT("Send &backward"), "down", "Ctrl+PgDown", CanvasKey, nullptr},

    {KORA_BENCH_TEXT("&Run"), nullptr, nullptr, nullptr, 0, nullptr},
    {"studio", KORA_BENCH_TEXT("&Studio"), "edit", "Shift+F5", Checkable, "mode"},
    {"runtime", KORA_BENCH_TEXT("&Runtime"), "play", "F5", Checkable, "mode"},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"touch", KORA_BENCH_TEXT("&Touch with the mouse"), "touch", "Ctrl+T", Checkable, nullptr},
    {"allKeys", KORA_BENCH_TEXT("All &keys to the widget"), nullptr, nullptr, Checkable, nullptr},
    {nullptr, nullptr, nullptr, nullptr, 0, nullptr},
    {"reload", KORA_BENCH_TEXT("Re&load"), "reload", "Ctrl+R", 0, nullptr},
    {"reloadFresh", KORA_BENCH_TEXT("Reload &without state"), nullptr, "Ctrl+Shift+R", 0, nullptr},

    {KORA_BENCH_TEXT("&Help"), nullptr, nullptr, nullptr, 0, nullptr},
    {"palette", KORA_BENCH_TEXT("&Find action, widget or field..."), "palette", "Ctrl+Shift+P", 0, nullptr},
    {"shortcuts", KORA_BENCH_TEXT("&Keys and mouse"), "help", "F1", 0, nullptr},
    {"about", KORA_BENCH_TEXT("What is &loaded"), "info", nullptr, 0, nullptr},
};

const char *const canvasKeyTexts[] = {
    KORA_BENCH_TEXT("Wheel, Shift+wheel\tScroll the page"),
    KORA_BENCH_TEXT("Ctrl+wheel\tZoom at the mouse"),
    KORA_BENCH_TEXT("Middle button, Space and drag\tMove the page"),
    KORA_BENCH_TEXT("Arrows, with Shift\tMove the selection by 1 pixel, by 10"),
    KORA_BENCH_TEXT("Ctrl+arrows, with Shift\tResize it by 1 pixel, by 10"),
    KORA_BENCH_TEXT("Drag a handle, with Shift, Alt, Ctrl\tResize; keep the ratio, the centre, do not snap"),
    KORA_BENCH_TEXT("Esc\tCancel a drag, restore a field, deselect"),
    KORA_BENCH_TEXT("Alt, Alt+Shift, with Ctrl\tTouch: a mirrored, a parallel, a third finger"),
    KORA_BENCH_TEXT("Ctrl+F\tFilter of the pane"),
    KORA_BENCH_TEXT("Alt+1 to Alt+7\tThe panes at the bottom"),
};

QAction *makeAction(const Spec &spec, QWidget *window, QObject *owner)
{
    auto *action = new QAction(BenchActions::tr(spec.text), owner);
    action->setObjectName(QLatin1String(spec.name));
    action->setCheckable((spec.flags & Checkable) != 0);
    if (spec.icon) {
        action->setIcon(benchIcon(spec.icon));
    }
    QString toolTip = action->text().remove(QLatin1Char('&')).remove(QLatin1String("..."));
    if (spec.keys) {
        action->setShortcut(QKeySequence(QLatin1String(spec.keys)));
        toolTip += QStringLiteral(" (%1)").arg(action->shortcut().toString(QKeySequence::NativeText));
    }
    action->setToolTip(toolTip);
    if ((spec.flags & CanvasKey) != 0) {
        action->setShortcutContext(Qt::WidgetShortcut);
    } else {
        window->addAction(action);
    }
    return action;
}

} // namespace

BenchActions::BenchActions(QWidget *window)
    : QObject(window)
{
    QMap<QByteArray, QActionGroup *> groups;
    for (const Spec &spec : specs) {
        if (!spec.name || !spec.text) {
            continue;
        }
        QAction *action = makeAction(spec, window, this);
        m_actions.append(action);
        if (spec.group) {
            QActionGroup *&group = groups[spec.group];
            group = group ? group : new QActionGroup(this);
            group->addAction(action);
        }
    }
    (*this)["zoomIn"]->setShortcuts(
        {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
    (*this)["redo"]->setShortcuts(
        {QKeySequence(QStringLiteral("Ctrl+Shift+Z")), QKeySequence(QStringLiteral("Ctrl+Y"))});
}

QAction *BenchActions::operator[](const char *name) const
{
    const QLatin1String wanted(name);
    const auto found = std::find_if(m_actions.begin(), m_actions.end(),
                                    [wanted](const QAction *each) { return each->objectName() == wanted; });
    Q_ASSERT(found != m_actions.end());
    return *found;
}

void BenchActions::fill(QMenuBar *bar) const
{
    QMenu *menu = nullptr;
    for (const Spec &spec : specs) {
        if (spec.name && !spec.text) {
            menu = bar->addMenu(tr(spec.name));
            menu->setObjectName(menu->title().remove(QLatin1Char('&')).toLower() + QLatin1String("Menu"));
        } else if (menu && !spec.name) { // the table begins with a menu
            menu->addSeparator();
        } else if (menu) {
            menu->addAction((*this)[spec.name]);
        }
    }
}

QStringList BenchActions::canvasKeys()
{
    QStringList keys;
    for (const char *const text : canvasKeyTexts) {
        keys.append(tr(text));
    }
    return keys;
}

} // namespace DEV
} // namespace KORA
