// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/consolepane.h>

#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

#include <kora/core/files_p.h>
#include <kora/dev/panes/logview.h>
#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>

namespace KORA {
namespace DEV {

namespace {

struct LevelButton
{
    ConsoleLine::Level level;
    const char *icon;
    const char *name; // of the object and of the setting
};

const LevelButton levelButtons[] = {
    {ConsoleLine::Error, "error", "consoleErrors"},
    {ConsoleLine::Warning, "warning", "consoleWarnings"},
    {ConsoleLine::Info, "info", "consoleInfo"},
    {ConsoleLine::Debug, "debug", "consoleDebug"},
};

QString labelOf(ConsoleLine::Level level)
{
    switch (level) {
    case ConsoleLine::Error:
        return ConsolePane::tr("Errors");
    case ConsoleLine::Warning:
        return ConsolePane::tr("Warnings");
    case ConsoleLine::Info:
        return ConsolePane::tr("Information");
    default:
        return ConsolePane::tr("Debug lines");
    }
}

} // namespace

ConsolePane::ConsolePane(ConsoleModel *console, QWidget *parent)
    : QWidget(parent)
    , m_console(console)
    , m_view(new LogView(this))
    , m_filterEdit(filterEdit(this, {QStringLiteral("consoleFilter"), tr("Filter: word, -word, /expression/"),
                                     tr("Show lines that hold these words"), QKeySequence::Find}))
    , m_problem(new QLabel(this))
{
    m_filter.setSourceModel(console);
    m_view->setModel(&m_filter);
    m_view->setObjectName(QStringLiteral("consoleLines"));
    m_view->setAccessibleName(tr("Console"));
    m_view->setColumnTexts(
        {QStringLiteral("00:00:00.000"), QStringLiteral("iii warning"), tr("A library's name")});
    m_problem->setObjectName(QStringLiteral("consoleFilterProblem"));
    m_problem->hide();
    QHBoxLayout *bar = paneBar();
    addLevelButtons(bar);
    bar->addSpacing(6);
    bar->addWidget(m_filterEdit, 1);
    bar->addSpacing(6);
    addCommands(bar);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    layout->addWidget(m_problem);
    layout->addWidget(m_view, 1);
    connect(m_filterEdit, &QLineEdit::textChanged, this, &ConsolePane::setFilter);
    connect(console, &ConsoleModel::countsChanged, this, &ConsolePane::updateCounts);
    // A double click on a source shows its lines alone.
    connect(m_view, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        if (index.column() == ConsoleModel::SourceColumn) {
            m_filterEdit->setText(index.data(Qt::ToolTipRole).toString());
        }
    });
    updateCounts();
}

void ConsolePane::addLevelButtons(QLayout *bar)
{
    for (const LevelButton &each : levelButtons) {
        const QString name = QLatin1String(each.name);
        QToolButton *button = toggleButton(
            this, each.icon, {name, labelOf(each.level), tr("Show %1").arg(labelOf(each.level)), {}});
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        const ConsoleLine::Level level = each.level;
        connect(button, &QToolButton::toggled, this, [this, level, name](bool isShown) {
            m_filter.setLevelShown(level, isShown);
            BenchSettings().setValue(QStringLiteral("console/") + name, isShown);
        });
        button->setChecked(BenchSettings().value(QStringLiteral("console/") + name, true).toBool());
        m_filter.setLevelShown(level, button->isChecked());
        m_levels[static_cast<size_t>(level)] = button;
        bar->addWidget(button);
    }
}

void ConsolePane::addCommands(QLayout *bar)
{
    m_follow =
        toggleButton(this, "follow", {QStringLiteral("consoleFollow"), tr("Follow new lines"), {}, {}});
    m_follow->setChecked(true);
    connect(m_follow, &QToolButton::clicked, this, [this] {
        m_view->follow();
        m_follow->setChecked(true);
    });
    connect(m_view, &LogView::followingChanged, m_follow, &QToolButton::setChecked);
    bar->addWidget(m_follow);

    const auto command = [this, bar](const char *icon, const char *name, const QString &label,
                                     const QKeySequence &key, void (ConsolePane::*slot)()) {
        QToolButton *button = iconButton(this, icon, {QLatin1String(name), label, {}, key});
        connect(button, &QToolButton::clicked, this, slot);
        bar->addWidget(button);
    };
    command("mark", "consoleMark", tr("Add a mark"), QKeySequence(QStringLiteral("Ctrl+M")),
            &ConsolePane::mark);
    command("copy", "consoleCopy", tr("Copy the selected lines"), QKeySequence::Copy,
            &ConsolePane::copySelected);
    command("duplicate", "consoleCopyAll", tr("Copy all lines that are shown"),
            QKeySequence(QStringLiteral("Ctrl+Shift+C")), &ConsolePane::copyAll);
    command("save", "consoleSave", tr("Save the lines that are shown..."), {}, &ConsolePane::save);
    QToolButton *clear = iconButton(this, "clear",
                                    {QStringLiteral("consoleClear"),
                                     tr("Clear the console"),
                                     {},
                                     QKeySequence(QStringLiteral("Ctrl+L"))});
    connect(clear, &QToolButton::clicked, m_console, &ConsoleModel::clear);
    bar->addWidget(clear);
}

void ConsolePane::updateCounts()
{
    for (const LevelButton &each : levelButtons) {
        QToolButton *button = m_levels[static_cast<size_t>(each.level)];
        const QString count = QString::number(m_console->count(each.level));
        button->setText(count);
        button->setAccessibleName(QStringLiteral("%1: %2").arg(labelOf(each.level), count));
    }
}

void ConsolePane::setFilter(const QString &text)
{
    QString problem;
    m_filter.setText(text, problem);
    m_problem->setText(QStringLiteral("<span style='color:%1'>%2</span>")
                           .arg(BenchTheme::errorColor().name(), problem.toHtmlEscaped()));
    m_problem->setVisible(!problem.isEmpty());
}

void ConsolePane::mark()
{
    m_console->append(ConsoleLine::Info, QString(), tr("---- mark %1 ----").arg(QString::number(++m_marks)));
    m_console->flush();
}

QString ConsolePane::textOf(bool onlySelected) const
{
    QString text;
    for (int row = 0; row < m_filter.rowCount(); ++row) {
        if (!onlySelected || m_view->selectionModel()->isRowSelected(row, {})) {
            const int line = m_filter.mapToSource(m_filter.index(row, 0)).row();
            text += ConsoleModel::toText(m_console->line(line)) + QLatin1Char('\n');
        }
    }
    return text;
}

void ConsolePane::copySelected()
{
    if (m_view->selectionModel()->hasSelection()) {
        QApplication::clipboard()->setText(textOf(true));
    }
}

void ConsolePane::copyAll()
{
    QApplication::clipboard()->setText(textOf(false));
}

void ConsolePane::save()
{
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Save the console"), QStringLiteral("console.log"));
    if (path.isEmpty()) {
        return;
    }
    QString reason;
    const bool ok = INTERNAL::replaceFile(path, textOf(false).toUtf8(), reason);
    m_console->append(ok ? ConsoleLine::Info : ConsoleLine::Error, QString(),
                      ok ? tr("Saved as %1").arg(path) : tr("%1 cannot be written: %2").arg(path, reason));
}

} // namespace DEV
} // namespace KORA
