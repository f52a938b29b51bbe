// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeView>

#include <kora/export.h>

namespace KORA {
namespace DEV {

/// A list that grows at its end. While its end is in sight it follows what comes; else the reader's place stays
/// where it is, and a button tells how many rows have come and leads to them.
class KORA_EXPORT LogView : public QTreeView
{
    Q_OBJECT

public:
    explicit LogView(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;
    /// Makes the first columns wide enough for such texts, in the present font.
    void setColumnTexts(const QStringList &texts);

    bool isFollowing() const { return m_isFollowing; }
    void follow();

    /// The texts of the rows' columns, tab between, of the selected rows or of all.
    QString selectedText() const;

Q_SIGNALS:
    void followingChanged(bool isFollowing);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void rowsInserted(const QModelIndex &parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex &parent, int start, int end) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void onScrolled(int value);
    void onRowsRemoved();
    void setFollowing(bool isFollowing);
    void placeChip();

    QToolButton *m_chip;
    bool m_isFollowing = true;
    bool m_isUpdating = false; // rows come and go: scrolling is not the reader's
    int m_removedAbove = 0;
    int m_newRows = 0;
};

} // namespace DEV
} // namespace KORA
