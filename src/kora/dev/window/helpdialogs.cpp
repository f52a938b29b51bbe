// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/helpdialogs.h>

#include <QtWidgets/QAction>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/theme/controls.h>
#include <kora/dev/window/benchactions.h>
#include <kora/loader/plugindata.h>

namespace KORA {
namespace DEV {

namespace {

QString tr(const char *text)
{
    return BenchActions::tr(text);
}

QTreeWidget *showTable(const QString &name, const QString &title, const QStringList &headers,
                       const QSize &size, QWidget *parent)
{
    auto *dialog = new QDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(name);
    dialog->setWindowTitle(title);
    dialog->resize(size);
    auto *table = new QTreeWidget(dialog);
    table->setObjectName(name + QLatin1String("Table"));
    table->setAccessibleName(title);
    table->setRootIsDecorated(false);
    table->setAlternatingRowColors(true);
    table->setUniformRowHeights(true);
    table->setStyleSheet(QStringLiteral("QTreeView::item { padding: 3px 4px; }"));
    table->setHeaderLabels(headers);
    table->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    buttons->button(QDialogButtonBox::Close)->setIcon({});
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    auto *layout = new QVBoxLayout(dialog);
    layout->addWidget(table);
    layout->addWidget(buttons);
    dialog->show();
    return table;
}

void addRow(QTreeWidget *table, const QString &what, const QString &text)
{
    auto *row = new QTreeWidgetItem(table, {what, text});
    row->setToolTip(1, text);
}

} // namespace

void showShortcuts(const BenchActions &actions, QWidget *parent)
{
    QTreeWidget *table = showTable(QStringLiteral("shortcutList"), tr("Keys and mouse"),
                                   {tr("Keys"), tr("What they do")}, {660, 560}, parent);
    const QVector<QAction *> all = actions.all();
    for (const QAction *action : all) {
        if (!action->shortcut().isEmpty()) {
            addRow(table, action->shortcut().toString(QKeySequence::NativeText),
                   action->text().remove(QLatin1Char('&')));
        }
    }
    const QStringList keys = BenchActions::canvasKeys();
    for (const QString &each : keys) {
        addRow(table, each.section(QLatin1Char('\t'), 0, 0), each.section(QLatin1Char('\t'), 1));
    }
}

void showAbout(INTERNAL::WidgetLibraryPluginData *plugin, const QString &buildTime, QWidget *parent)
{
    QTreeWidget *table = showTable(QStringLiteral("aboutLibrary"), tr("What is loaded"),
                                   {tr("What"), tr("Value")}, {660, 360}, parent);
    addRow(table, tr("Test bench with Qt"), QLatin1String(qVersion()));
    if (!plugin) {
        addRow(table, tr("Library"), tr("none"));
        return;
    }
    const INTERNAL::WidgetLibraryPluginMetaInformation &meta = *plugin->metaInformation();
    addRow(table, tr("Library"), plugin->libraryPath());
    addRow(table, tr("Built at"), buildTime);
    addRow(table, tr("Name"), meta.name().get(meta.defaultLanguage(), true));
    addRow(table, tr("Version"), meta.version().version());
    addRow(table, tr("Author"), meta.author());
    addRow(table, tr("Licence"), meta.license().get(meta.defaultLanguage(), true));
    addRow(table, tr("Plugin id"), meta.id());
    addRow(table, tr("Widgets"), QString::number(meta.widgets().size()));
    addRow(table, tr("Languages"),
           (QStringList(meta.defaultLanguage()) + meta.translation()).join(QLatin1String(", ")));
    addRow(table, tr("Loaded in"), QStringLiteral("%1 ms").arg(plugin->loadingTimeMs(), 0, 'f', 1));
}

} // namespace DEV
} // namespace KORA
