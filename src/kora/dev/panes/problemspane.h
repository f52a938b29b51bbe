// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

#include <kora/dev/diagnosis/finding.h>
#include <kora/export.h>

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

namespace KORA {
namespace DEV {

/// What is wrong with the library, each with what to do about it and the place.
class KORA_EXPORT ProblemsPane : public QWidget
{
    Q_OBJECT

public:
    explicit ProblemsPane(QWidget *parent = nullptr);

    void setFindings(const Findings &findings);
    const Findings &findings() const { return m_findings; }

    /// Opens a finding's file at its line with the program that $VISUAL names, or with the desktop's for the file.
    /// False if there is no file or no program for it.
    static bool openPlace(const Finding &finding);

Q_SIGNALS:
    void countChanged(int count);
    /// A place could not be opened.
    void failed(const QString &message);

private:
    void addRow(int index);
    void showDetail();
    void openCurrent();
    const Finding *currentFinding() const;

    Findings m_findings;
    QTreeWidget *m_tree;
    QLabel *m_detail;
};

} // namespace DEV
} // namespace KORA
