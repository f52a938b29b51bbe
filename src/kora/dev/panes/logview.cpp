// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/logview.h>

#include <QtGui/QClipboard>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QScrollBar>

#include <kora/dev/theme/icons.h>

namespace KORA {
namespace DEV {

LogView::LogView(QWidget *parent)
    : QTreeView(parent)
    , m_chip(new QToolButton(this))
{
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemsExpandable(false);
    setSelectionMode(ExtendedSelection);
    setVerticalScrollMode(ScrollPerItem);
    setTextElideMode(Qt::ElideRight);
    setFrameShape(NoFrame);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    m_chip->setObjectName(QStringLiteral("newLines"));
    m_chip->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_chip->setIcon(benchIcon("down"));
    m_chip->setToolTip(tr("Go to the end and follow (End)"));
    m_chip->setFocusPolicy(Qt::NoFocus);
    m_chip->setStyleSheet(QStringLiteral("background: palette(button); border: 1px solid palette(highlight);"
                                         "border-radius: 9px; padding: 2px 10px;"));
    m_chip->hide();
    connect(m_chip, &QToolButton::clicked, this, &LogView::follow);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &LogView::onScrolled);
}

void LogView::setModel(QAbstractItemModel *model)
{
    QTreeView::setModel(model);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &LogView::onRowsRemoved);
    connect(model, &QAbstractItemModel::modelReset, this, &LogView::follow);
}

void LogView::setColumnTexts(const QStringList &texts)
{
    const int margin = 16;
    for (int column = 0; column < texts.size(); ++column) {
        header()->resizeSection(column, fontMetrics().horizontalAdvance(texts.at(column)) + margin);
    }
}

void LogView::follow()
{
    setFollowing(true);
    scrollToBottom();
}

void LogView::setFollowing(bool isFollowing)
{
    if (isFollowing) {
        m_newRows = 0;
        m_chip->hide();
    }
    if (m_isFollowing == isFollowing) {
        return;
    }
    m_isFollowing = isFollowing;
    Q_EMIT followingChanged(isFollowing);
}

void LogView::onScrolled(int value)
{
    if (!m_isUpdating) {
        setFollowing(value >= verticalScrollBar()->maximum());
    }
}

void LogView::rowsInserted(const QModelIndex &parent, int start, int end)
{
    m_isUpdating = true;
    QTreeView::rowsInserted(parent, start, end);
    executeDelayedItemsLayout();
    m_isUpdating = false;
    if (m_isFollowing) {
        scrollToBottom();
        return;
    }
    m_newRows += end - start + 1;
    m_chip->setText(tr("%n new lines", nullptr, m_newRows));
    m_chip->setAccessibleName(m_chip->text());
    m_chip->show();
    placeChip();
}

void LogView::rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end)
{
    // Rows leave at the top when the list is full: what is being read must not move.
    m_isUpdating = true;
    m_removedAbove = end < verticalScrollBar()->value() ? end - start + 1 : 0;
    QTreeView::rowsAboutToBeRemoved(parent, start, end);
}

void LogView::onRowsRemoved()
{
    const int value = verticalScrollBar()->value();
    executeDelayedItemsLayout();
    if (m_removedAbove > 0 && !m_isFollowing) {
        verticalScrollBar()->setValue(value - m_removedAbove);
    }
    m_removedAbove = 0;
    m_isUpdating = false;
}

QString LogView::selectedText() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    const bool all = rows.isEmpty();
    QStringList lines;
    for (int row = 0; row < model()->rowCount(); ++row) {
        if (!all && !selectionModel()->isRowSelected(row, {})) {
            continue;
        }
        QStringList cells;
        for (int column = 0; column < model()->columnCount(); ++column) {
            cells.append(model()->index(row, column).data().toString());
        }
        lines.append(cells.join(QLatin1Char('\t')));
    }
    return lines.join(QLatin1Char('\n'));
}

void LogView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_End) {
        follow();
        return;
    }
    QTreeView::keyPressEvent(event);
}

void LogView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    placeChip();
    if (m_isFollowing) {
        scrollToBottom();
    }
}

void LogView::placeChip()
{
    m_chip->adjustSize();
    const QRect area = viewport()->geometry();
    m_chip->move(area.center().x() - m_chip->width() / 2, area.bottom() - m_chip->height() - 6);
    m_chip->raise();
}

} // namespace DEV
} // namespace KORA
