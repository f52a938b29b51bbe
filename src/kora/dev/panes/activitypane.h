// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QSortFilterProxyModel>
#include <QtWidgets/QWidget>

#include <array>

#include <kora/dev/model/activitylog.h>
#include <kora/export.h>

class QLineEdit;
class QToolButton;

namespace KORA {
namespace DEV {

class LogView;

/// The entries of the chosen kinds that hold a text.
class KORA_EXPORT ActivityFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    static constexpr int kindCount = 4;

    explicit ActivityFilter(ActivityLog *log, QObject *parent = nullptr);

    void setKindShown(ActivityEntry::Kind kind, bool isShown);
    void setText(const QString &text);
    QVariant data(const QModelIndex &index, int role) const override;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    std::array<bool, kindCount> m_isShown{true, true, true, true};
    QString m_text;
};

/// What crossed the border between the bench and the widgets.
class KORA_EXPORT ActivityPane : public QWidget
{
    Q_OBJECT

public:
    /// @p log is not owned and outlives the pane.
    explicit ActivityPane(ActivityLog *log, QWidget *parent = nullptr);

private:
    void addKindButtons(QLayout *bar);
    void addCommands(QLayout *bar);
    void copyText();
    void copyJson();
    QVector<ActivityEntry> chosenEntries() const;

    ActivityLog *m_log;
    ActivityFilter m_filter;
    LogView *m_view;
    QLineEdit *m_filterEdit;
};

} // namespace DEV
} // namespace KORA
