// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/editorpopup.h>

#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QVBoxLayout>

namespace KORA {
namespace DEV {

EditorPopup::EditorPopup(QWidget *editor)
    : QFrame(editor, Qt::Popup)
    , m_content(new QVBoxLayout(this))
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    setAttribute(Qt::WA_DeleteOnClose);
    m_content->setContentsMargins(8, 8, 8, 8);
    m_content->setSpacing(6);
}

void EditorPopup::open()
{
    const QWidget *editor = parentWidget();
    resize(std::max(editor->width(), sizeHint().width()), sizeHint().height());
    QRect box(editor->mapToGlobal(QPoint(0, editor->height())), size());
    const QRect screen = editor->screen()->availableGeometry();
    if (box.bottom() > screen.bottom()) {
        box.moveBottom(editor->mapToGlobal(QPoint(0, 0)).y());
    }
    box.moveLeft(qBound(screen.left(), box.left(), std::max(screen.left(), screen.right() - box.width())));
    box.moveTop(std::max(box.top(), screen.top()));
    move(box.topLeft());
    show();
}

void EditorPopup::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        m_isCancelled = true;
        close();
        return;
    }
    QFrame::keyPressEvent(event);
}

void EditorPopup::hideEvent(QHideEvent *event)
{
    QFrame::hideEvent(event);
    if (m_isCancelled) {
        emit cancelled();
    } else {
        emit closed();
    }
}

} // namespace DEV
} // namespace KORA
