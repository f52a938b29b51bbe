// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

#include <kora/dev/diagnosis/finding.h>
#include <kora/export.h>

class QAction;
class QBoxLayout;
class QLabel;

namespace KORA {
namespace DEV {

/// Stands in place of the canvas when the widget library could not be loaded: each cause, what to do about it, and
/// buttons for that. Every text can be selected; "Copy" copies all of it.
class KORA_EXPORT ErrorCard : public QWidget
{
    Q_OBJECT

public:
    explicit ErrorCard(QWidget *parent = nullptr);

    void setFindings(const QString &title, const Findings &findings);
    /// Adds a button before "Copy"; @p action is not owned.
    void addButton(QAction *action);
    /// What "Copy" copies.
    QString text() const;

public Q_SLOTS:
    void copy() const;

private:
    void arrange();
    void addFinding(const Finding &finding);
    QLabel *addLabel(const QString &text, QBoxLayout *layout);

    QString m_title;
    Findings m_findings;
    QLabel *m_titleLabel;
    QBoxLayout *m_findingsLayout;
    QBoxLayout *m_buttonsLayout;
};

} // namespace DEV
} // namespace KORA
