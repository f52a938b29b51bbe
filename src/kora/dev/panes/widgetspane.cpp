// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/widgetspane.h>

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMimeData>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/dev/model/benchdocument.h>
#include <kora/dev/model/hostservices.h>
#include <kora/dev/model/plugincall.h>
#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>
#include <kora/loader/plugindata.h>
#include <kora/runtime/datarole.h>
#include <kora/runtime/widgetlibraryplugin.h>
#include <kora/runtime/widgetlibraryplugin_p.h>

namespace KORA {
namespace DEV {

using namespace INTERNAL;

const char *const WidgetsPane::mimeType = "application/x-kora-widget";

namespace {

enum Column : int { NameColumn, VersionColumn, ColumnCount };
enum Role : int { IdRole = Qt::UserRole, VersionRole };

const int iconSide = 24;

using Key = QPair<QString, QString>;

Key keyOf(const QTreeWidgetItem *row)
{
    return {row->data(NameColumn, IdRole).toString(), row->data(NameColumn, VersionRole).toString()};
}

/// Its rows can be dragged out as widgets.
class WidgetTree : public QTreeWidget
{
public:
    using QTreeWidget::QTreeWidget;

protected:
    QStringList mimeTypes() const override { return {QLatin1String(WidgetsPane::mimeType)}; }

    QMimeData *mimeData(const QList<QTreeWidgetItem *> rows) const override
    {
        if (rows.isEmpty() || keyOf(rows.first()).first.isEmpty()) {
            return nullptr;
        }
        const Key key = keyOf(rows.first());
        const QJsonObject json{{QStringLiteral("widget"), key.first},
                               {QStringLiteral("version"), key.second}};
        auto *data = new QMimeData;
        data->setData(QLatin1String(WidgetsPane::mimeType),
                      QJsonDocument(json).toJson(QJsonDocument::Compact));
        return data;
    }
};

QString nameOf(const Key &key)
{
    return key.first + QLatin1Char(' ') + key.second;
}

bool filterRow(QTreeWidgetItem *row, const QString &text)
{
    bool isShown = row->text(NameColumn).contains(text, Qt::CaseInsensitive)
                   || keyOf(row).first.contains(text, Qt::CaseInsensitive);
    for (int i = 0; i < row->childCount(); ++i) {
        isShown = filterRow(row->child(i), text) || isShown;
    }
    row->setHidden(!isShown);
    return isShown;
}

} // namespace

WidgetsPane::WidgetsPane(BenchDocument *document, QWidget *parent)
    : QWidget(parent)
    , m_document(document)
    , m_filter(
          filterEdit(this, {QStringLiteral("widgetsFilter"), tr("Filter widgets"), {}, QKeySequence::Find}))
    , m_tree(new WidgetTree(this))
{
    m_tree->setObjectName(QStringLiteral("widgetsTree"));
    m_tree->setAccessibleName(tr("Widgets of the library"));
    m_tree->setColumnCount(ColumnCount);
    m_tree->setHeaderHidden(true);
    m_tree->setIndentation(14);
    m_tree->setIconSize({iconSide, iconSide});
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setDragEnabled(true);
    m_tree->setDragDropMode(QAbstractItemView::DragOnly);
    m_tree->header()->setStretchLastSection(false);
    m_tree->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    m_tree->header()->setSectionResizeMode(VersionColumn, QHeaderView::ResizeToContents);
    QHBoxLayout *bar = paneBar();
    bar->addWidget(m_filter);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    layout->addWidget(m_tree, 1);
    m_iconTimer.setSingleShot(true);
    connect(&m_iconTimer, &QTimer::timeout, this, &WidgetsPane::loadNextIcon);
    connect(m_filter, &QLineEdit::textChanged, this, &WidgetsPane::applyFilter);
    connect(m_tree, &QTreeWidget::itemActivated, this, &WidgetsPane::place);
    connect(document, &BenchDocument::languageChanged, this, &WidgetsPane::rebuild);
    rebuild();
}

void WidgetsPane::rebuild()
{
    m_tree->clear();
    if (!m_document->plugin()) {
        return;
    }
    const WidgetLibraryPluginMetaInformation &meta = *m_document->plugin()->metaInformation();
    const QMap<QString, WidgetMetaInformation> latest = meta.widgetsLatestVersion();
    for (const WidgetMetaInformation &newest : latest) {
        QTreeWidgetItem *row = addWidget(groupRow(groupOf(newest)), newest);
        QMap<VersionType, WidgetMetaInformation> older;
        for (const WidgetMetaInformation &each : meta.widgets()) {
            if (each.id() == newest.id() && each.version() != newest.version()) {
                older.insert(each.version(), each);
            }
        }
        for (auto it = older.end(); it != older.begin();) {
            addWidget(row, *--it);
        }
    }
    m_tree->sortItems(NameColumn, Qt::AscendingOrder);
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        m_tree->topLevelItem(i)->setExpanded(true);
    }
    applyFilter(m_filter->text());
}

QString WidgetsPane::groupOf(const WidgetMetaInformation &info) const
{
    if (!info.showInPageGallery() && !info.showInProjectGallery()) {
        return tr("Not in a gallery");
    }
    const QString name = info.galleryGroupName().get(m_document->language(), true);
    const QString group = name.isEmpty() ? tr("Basic") : name;
    return info.showInPageGallery() ? group : tr("%1 (project)").arg(group);
}

QTreeWidgetItem *WidgetsPane::groupRow(const QString &name)
{
    const QList<QTreeWidgetItem *> found = m_tree->findItems(name, Qt::MatchExactly, NameColumn);
    if (!found.isEmpty()) {
        return found.first();
    }
    auto *row = new QTreeWidgetItem(m_tree, {name});
    row->setFlags(Qt::ItemIsEnabled);
    row->setFirstColumnSpanned(true);
    QFont font = m_tree->font();
    font.setBold(true);
    row->setFont(NameColumn, font);
    row->setForeground(NameColumn, BenchTheme::mutedColor());
    return row;
}

QTreeWidgetItem *WidgetsPane::addWidget(QTreeWidgetItem *parent, const WidgetMetaInformation &info)
{
    const QString version = info.version().version();
    const Key key(info.id(), version);
    const QString display = info.display().get(m_document->language(), true);
    auto *row = new QTreeWidgetItem(parent, {display.isEmpty() ? info.id() : display, version});
    row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled);
    row->setData(NameColumn, IdRole, info.id());
    row->setData(NameColumn, VersionRole, version);
    row->setForeground(VersionColumn, BenchTheme::mutedColor());
    row->setIcon(NameColumn, m_icons.value(key, benchIcon("widgets")));
    QString toolTip = QStringLiteral("%1 %2\n%3")
                          .arg(info.id(), version, info.description().get(m_document->language(), true));
    const QString problem = problemOf(info);
    if (!problem.isEmpty()) {
        row->setIcon(VersionColumn, benchIcon("error"));
        row->setForeground(NameColumn, BenchTheme::errorColor());
        row->setForeground(VersionColumn, BenchTheme::errorColor());
        toolTip += QLatin1Char('\n') + problem;
    }
    toolTip += QLatin1Char('\n') + tr("Drag onto the page, or press Enter to place");
    row->setToolTip(NameColumn, toolTip);
    row->setToolTip(VersionColumn, toolTip);
    return row;
}

QString WidgetsPane::problemOf(const WidgetMetaInformation &info) const
{
    KORA::WidgetLibraryPlugin *plugin = m_document->plugin()->instance();
    const Key key(info.id(), info.version().version());
    if (!plugin || !WidgetLibraryPluginPrivateAccessor::priv(plugin)->widgetRegistry.contains(key)) {
        return tr("Declared, but the plugin's code does not register it in this version");
    }
    return m_refused.contains(nameOf(key)) ? tr("Ended the bench when it was made for its icon; not made "
                                                "again until the library is built anew")
                                           : QString();
}

void WidgetsPane::applyFilter(const QString &text)
{
    for (int i = 0; i < m_tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem *group = m_tree->topLevelItem(i);
        bool isShown = false;
        for (int j = 0; j < group->childCount(); ++j) {
            isShown = filterRow(group->child(j), text) || isShown;
        }
        group->setHidden(!isShown);
    }
}

void WidgetsPane::place(QTreeWidgetItem *row)
{
    const Key key = keyOf(row);
    if (!key.first.isEmpty()) {
        Q_EMIT placeRequested(key.first, key.second);
    }
}

WidgetsPane::~WidgetsPane()
{
    if (m_iconTimer.isActive()) {
        BenchSettings().remove(settingsKey("asked"));
    }
}

QString WidgetsPane::settingsKey(const char *name) const
{
    return QStringLiteral("icons/%1/%2")
        .arg(m_document->plugin()->metaInformation()->id(), QLatin1String(name));
}

void WidgetsPane::readRefused()
{
    BenchSettings settings;
    const QString built =
        QFileInfo(m_document->plugin()->libraryPath()).lastModified().toString(Qt::ISODateWithMs);
    if (settings.value(settingsKey("built")).toString() == built) {
        m_refused = settings.value(settingsKey("refused")).toStringList();
        // The process that asked did not come back.
        const QString asked = settings.value(settingsKey("asked")).toString();
        if (!asked.isEmpty()) {
            m_refused.append(asked);
        }
    }
    settings.setValue(settingsKey("built"), built);
    settings.setValue(settingsKey("refused"), m_refused);
    settings.remove(settingsKey("asked"));
}

void WidgetsPane::loadIcons()
{
    if (!m_document->plugin()) {
        return;
    }
    readRefused();
    rebuild();
    m_iconless = m_document->plugin()->metaInformation()->widgets().keys().toVector();
    m_iconTimer.start(0);
}

void WidgetsPane::loadNextIcon()
{
    BenchSettings settings;
    if (m_iconless.isEmpty()) {
        settings.remove(settingsKey("asked"));
        rebuild();
        return;
    }
    const Key key = m_iconless.takeLast();
    const WidgetMetaInformation info = m_document->plugin()->metaInformation()->widgets().value(key);
    if (problemOf(info).isEmpty()) {
        settings.setValue(settingsKey("asked"), nameOf(key));
        settings.sync();
        const QIcon icon = iconOf(info);
        if (!icon.isNull()) {
            m_icons.insert(key, icon);
        }
    }
    m_iconTimer.start(0);
}

QIcon WidgetsPane::iconOf(const WidgetMetaInformation &info) const
{
    HostServices host(nullptr, nullptr);
    const PluginCall call(nullptr, ActivityEntry::Event, info.id(), QStringLiteral("icon"));
    LiveWidget live;
    Finding problem;
    if (!live.create(*m_document->plugin(), info, &host, problem) || !live.item()) {
        return {};
    }
    KORA::IconDataRole role;
    const QIcon icon = live.item()->data(&role).value<QIcon>();
    // A picture of it: the icon may draw with the plugin's own code.
    QIcon copy;
    for (const int scale : {1, 2, 4}) {
        const QPixmap pixmap = icon.pixmap(QSize(iconSide, iconSide) * scale);
        if (!pixmap.isNull()) {
            copy.addPixmap(pixmap);
        }
    }
    return copy;
}

} // namespace DEV
} // namespace KORA
