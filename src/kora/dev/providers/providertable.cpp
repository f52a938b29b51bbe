// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/providers/providertable.h>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

constexpr int AnnouncementMs = 50;

} // namespace

ProviderTable::ProviderTable(const QVector<ProviderColumn> &columns, QObject *parent)
    : QAbstractTableModel(parent)
    , m_columns(columns)
{
    m_announcement.setSingleShot(true);
    m_announcement.setInterval(AnnouncementMs);
    connect(&m_announcement, &QTimer::timeout, this, &ProviderTable::announceTouchedRows);
}

int ProviderTable::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_columns.size();
}

QVariant ProviderTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columns.size()) {
        return QVariant();
    }
    switch (role) {
    case Qt::DisplayRole:
        return m_columns.at(section).title;
    case Qt::ToolTipRole:
        return m_columns.at(section).help;
    default:
        return QVariant();
    }
}

ProviderColumn::Editor ProviderTable::editorOf(int, int column) const
{
    return m_columns.at(column).editor;
}

Qt::ItemFlags ProviderTable::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    if (!index.isValid()) {
        return flags;
    }
    switch (editorOf(index.row(), index.column())) {
    case ProviderColumn::NoEditor:
        return flags;
    case ProviderColumn::CheckEditor:
        return flags | Qt::ItemIsUserCheckable;
    default:
        return flags | Qt::ItemIsEditable;
    }
}

bool ProviderTable::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return false;
    }
    const bool isCheck = editorOf(index.row(), index.column()) == ProviderColumn::CheckEditor;
    if (role != (isCheck ? Qt::CheckStateRole : Qt::EditRole)) {
        return false;
    }
    const QVariant entered = isCheck ? QVariant(value.toInt() == Qt::Checked) : value;
    const QVariant before = index.data(isCheck ? Qt::CheckStateRole : Qt::EditRole);
    if (before == value) {
        return true;
    }
    QString problem;
    bool isTaken = false;
    editByUser([&] { return isTaken = setCell(index.row(), index.column(), entered, &problem); });
    if (!isTaken) {
        Q_EMIT refused(problem);
    }
    return isTaken;
}

QString ProviderTable::unusedName(const QString &base) const
{
    const QStringList taken = names();
    QString name = base;
    for (int number = 2; taken.contains(name); ++number) {
        name = base + QString::number(number);
    }
    return name;
}

void ProviderTable::noteEdit()
{
    m_isEdited = true;
    finishEdit();
}

void ProviderTable::finishEdit()
{
    if (m_openEdits == 0 && m_isEdited) {
        m_isEdited = false;
        Q_EMIT edited();
    }
}

void ProviderTable::touchRow(int row)
{
    m_firstTouched = m_firstTouched < 0 ? row : std::min(m_firstTouched, row);
    m_lastTouched = std::max(m_lastTouched, row);
    if (!m_announcement.isActive()) {
        m_announcement.start();
    }
}

void ProviderTable::rowChanged(int row)
{
    Q_EMIT dataChanged(index(row, 0), index(row, m_columns.size() - 1));
}

void ProviderTable::announceTouchedRows()
{
    const int first = m_firstTouched;
    const int last = std::min(m_lastTouched, rowCount() - 1); // rows may have gone in between
    m_firstTouched = -1;
    m_lastTouched = -1;
    if (first >= 0 && first <= last) {
        Q_EMIT dataChanged(index(first, 0), index(last, m_columns.size() - 1));
    }
}

} // namespace DEV
} // namespace KORA
