// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QFrame>

class QVBoxLayout;

namespace KORA {
namespace DEV {

/// A box below an editor for what does not fit into its row. A click outside closes it and keeps what was entered,
/// Esc gives it up. It deletes itself.
class EditorPopup : public QFrame
{
    Q_OBJECT

public:
    explicit EditorPopup(QWidget *editor);

    QVBoxLayout *content() const { return m_content; }
    /// Below the editor and on the screen.
    void open();

Q_SIGNALS:
    void closed();
    void cancelled();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QVBoxLayout *m_content;
    bool m_isCancelled = false;
};

} // namespace DEV
} // namespace KORA
