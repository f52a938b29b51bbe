// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QWidget>

class QToolButton;

namespace KORA {
namespace DEV {

class ElidedLabel;
class FieldEditor;

/// What stands in a row's second column: the editor, a button that links a tag or shows the lock, one that reverts,
/// and below them what there is to say about the value.
class FieldCell : public QWidget
{
    Q_OBJECT

public:
    enum class Note { None, Info, Warning, Error };
    enum class Link { None, Free, Bound, Locked };

    /// Takes the editor's widget over. @p name starts the names of its buttons.
    FieldCell(FieldEditor *editor, const QString &name, const QString &label);

    void setNote(Note kind, const QString &text);
    QString note() const { return m_noteText; }
    void setLink(Link link, const QString &toolTip);
    void setRevertable(bool isRevertable, const QString &toolTip);

    QToolButton *linkButton() const { return m_link; }

    /// Of a row without a note.
    static int rowHeight();

Q_SIGNALS:
    void revertRequested();
    void linkRequested();
    void heightChanged();

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QToolButton *makeButton(const QString &name);

    QWidget *m_editor;
    QToolButton *m_link;
    QToolButton *m_revert;
    ElidedLabel *m_noteLabel;
    QString m_noteText;
    Note m_note = Note::None;
};

} // namespace DEV
} // namespace KORA
