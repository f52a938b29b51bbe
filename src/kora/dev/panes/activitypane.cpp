// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/activitypane.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QVBoxLayout>

#include <kora/dev/panes/logview.h>
#include <kora/dev/theme/controls.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>

namespace KORA {
namespace DEV {

namespace {

struct Kind
{
    ActivityEntry::Kind kind;
    const char *icon;
    const char *name; // in JSON; "activity" before it names the button
    const char *label;
    const char *toolTip;
};

const Kind kinds[] = {
    {ActivityEntry::HostWrite, "edit", "HostWrite", QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "Set"),
     QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "Fields that the bench or a tag set")},
    {ActivityEntry::PluginWrite, "widgets", "PluginWrite",
     QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "Written"),
     QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "Fields that the widgets wrote")},
    {ActivityEntry::Event, "burst", "Event", QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "Events"),
     QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "Events that the widgets got")},
    {ActivityEntry::Call, "activity", "Call", QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "Calls"),
     QT_TRANSLATE_NOOP("KORA::DEV::ActivityPane", "What the widgets asked of the host")},
};

QJsonObject toJson(const ActivityEntry &entry)
{
    return {{QStringLiteral("time"), entry.time.toString(Qt::ISODateWithMs)},
            {QStringLiteral("kind"), QLatin1String(kinds[entry.kind].name)},
            {QStringLiteral("instance"), entry.instance},
            {QStringLiteral("what"), entry.what},
            {QStringLiteral("arguments"), entry.arguments},
            {QStringLiteral("result"), entry.result},
            {QStringLiteral("nanoseconds"), static_cast<double>(entry.nanoseconds)},
            {QStringLiteral("count"), entry.count}};
}

} // namespace

ActivityFilter::ActivityFilter(ActivityLog *log, QObject *parent)
    : QSortFilterProxyModel(parent)
{
    setSourceModel(log);
}

void ActivityFilter::setKindShown(ActivityEntry::Kind kind, bool isShown)
{
    m_isShown[static_cast<size_t>(kind)] = isShown;
    invalidateFilter();
}

void ActivityFilter::setText(const QString &text)
{
    m_text = text;
    invalidateFilter();
}

QVariant ActivityFilter::data(const QModelIndex &index, int role) const
{
    if (role == Qt::ForegroundRole
        && (index.column() == ActivityLog::TimeColumn || index.column() == ActivityLog::DurationColumn)) {
        return BenchTheme::mutedColor();
    }
    if (role == Qt::DecorationRole && index.column() == ActivityLog::WhatColumn) {
        return benchIcon(kinds[index.data(ActivityLog::KindRole).toInt()].icon);
    }
    if (role == Qt::ToolTipRole) {
        return index.data(Qt::DisplayRole);
    }
    return QSortFilterProxyModel::data(index, role);
}

bool ActivityFilter::filterAcceptsRow(int row, const QModelIndex &) const
{
    const QAbstractItemModel *log = sourceModel();
    const auto holds = [this, log, row](int column) {
        return log->index(row, column).data().toString().contains(m_text, Qt::CaseInsensitive);
    };
    const int kind = log->index(row, 0).data(ActivityLog::KindRole).toInt();
    return m_isShown[static_cast<size_t>(kind)]
           && (m_text.isEmpty() || holds(ActivityLog::WhatColumn) || holds(ActivityLog::InstanceColumn)
               || holds(ActivityLog::ArgumentsColumn));
}

ActivityPane::ActivityPane(ActivityLog *log, QWidget *parent)
    : QWidget(parent)
    , m_log(log)
    , m_filter(log)
    , m_view(new LogView(this))
    , m_filterEdit(filterEdit(this, {QStringLiteral("activityFilter"), tr("Filter: widget, call or argument"),
                                     tr("Show entries that hold this text"), QKeySequence::Find}))
{
    m_view->setModel(&m_filter);
    m_view->setObjectName(QStringLiteral("activityEntries"));
    m_view->setAccessibleName(tr("Activity"));
    m_view->setColumnTexts({QStringLiteral("00:00:00.000"), QStringLiteral("value_display12"),
                            QStringLiteral("iii fieldIsChangedEvent"),
                            QStringLiteral("an argument, and another one"),
                            QStringLiteral("a longer result")});
    QHBoxLayout *bar = paneBar();
    addKindButtons(bar);
    bar->addSpacing(6);
    bar->addWidget(m_filterEdit, 1);
    bar->addSpacing(6);
    addCommands(bar);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(bar);
    layout->addWidget(m_view, 1);
    connect(m_filterEdit, &QLineEdit::textChanged, &m_filter, &ActivityFilter::setText);
}

void ActivityPane::addKindButtons(QLayout *bar)
{
    for (const Kind &each : kinds) {
        const ActivityEntry::Kind kind = each.kind;
        QToolButton *button = toggleButton(this, each.icon,
                                           {QStringLiteral("activity%1").arg(QLatin1String(each.name)),
                                            tr(each.label),
                                            tr(each.toolTip),
                                            {}});
        button->setText(tr(each.label));
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        const QString key = QStringLiteral("activity/") + QLatin1String(each.name);
        button->setChecked(BenchSettings().value(key, true).toBool());
        m_filter.setKindShown(kind, button->isChecked());
        connect(button, &QToolButton::toggled, this, [this, kind, key](bool isShown) {
            m_filter.setKindShown(kind, isShown);
            BenchSettings().setValue(key, isShown);
        });
        bar->addWidget(button);
    }
}

void ActivityPane::addCommands(QLayout *bar)
{
    QToolButton *follow =
        toggleButton(this, "follow", {QStringLiteral("activityFollow"), tr("Follow new entries"), {}, {}});
    follow->setChecked(true);
    connect(follow, &QToolButton::clicked, this, [this, follow] {
        m_view->follow();
        follow->setChecked(true);
    });
    connect(m_view, &LogView::followingChanged, follow, &QToolButton::setChecked);
    QToolButton *text = iconButton(this, "copy",
                                   {QStringLiteral("activityCopyText"), tr("Copy as text"),
                                    tr("Copy the selected entries, or all, as text"), QKeySequence::Copy});
    connect(text, &QToolButton::clicked, this, &ActivityPane::copyText);
    QToolButton *json = iconButton(this, "duplicate",
                                   {QStringLiteral("activityCopyJson"), tr("Copy as JSON"),
                                    tr("Copy the selected entries, or all, as JSON"),
                                    QKeySequence(QStringLiteral("Ctrl+Shift+C"))});
    connect(json, &QToolButton::clicked, this, &ActivityPane::copyJson);
    QToolButton *clear = iconButton(this, "clear",
                                    {QStringLiteral("activityClear"),
                                     tr("Clear the activity"),
                                     {},
                                     QKeySequence(QStringLiteral("Ctrl+L"))});
    connect(clear, &QToolButton::clicked, m_log, &ActivityLog::clear);
    for (QToolButton *button : {follow, text, json, clear}) {
        bar->addWidget(button);
    }
}

QVector<ActivityEntry> ActivityPane::chosenEntries() const
{
    const QVector<ActivityEntry> &all = m_log->entries();
    const QItemSelectionModel *selection = m_view->selectionModel();
    QVector<ActivityEntry> chosen;
    for (int row = 0; row < m_filter.rowCount(); ++row) {
        if (!selection->hasSelection() || selection->isRowSelected(row, {})) {
            chosen.append(all.at(m_filter.mapToSource(m_filter.index(row, 0)).row()));
        }
    }
    return chosen;
}

void ActivityPane::copyText()
{
    QApplication::clipboard()->setText(m_view->selectedText());
}

void ActivityPane::copyJson()
{
    QJsonArray array;
    const QVector<ActivityEntry> entries = chosenEntries();
    for (const ActivityEntry &entry : entries) {
        array.append(toJson(entry));
    }
    QApplication::clipboard()->setText(QString::fromUtf8(QJsonDocument(array).toJson()));
}

} // namespace DEV
} // namespace KORA
