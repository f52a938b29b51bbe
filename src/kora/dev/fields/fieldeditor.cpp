// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldeditor.h>

#include <QtCore/QEvent>
#include <QtGui/QFocusEvent>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QMenu>
#include <QtWidgets/QToolButton>

#include <kora/dev/theme/icons.h>

namespace KORA {
namespace DEV {

FieldEditor::FieldEditor(const FieldEditorContext &context)
    : m_context(context)
    , m_widget(new QWidget)
{
    setParent(m_widget);
    auto *layout = new QHBoxLayout(m_widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
}

FieldEditor::~FieldEditor() = default;

void FieldEditor::setBinding(const QString &) {}

void FieldEditor::setReadOnly(bool isReadOnly)
{
    m_widget->setEnabled(!isReadOnly);
}

void FieldEditor::addControl(QWidget *control, int stretch)
{
    addPassive(control, stretch);
    watch(control);
}

void FieldEditor::addPassive(QWidget *widget, int stretch)
{
    static_cast<QHBoxLayout *>(m_widget->layout())->addWidget(widget, stretch);
}

QToolButton *FieldEditor::addButton(const char *icon, const QString &label, const QString &part)
{
    auto *button = new QToolButton;
    button->setIcon(benchIcon(icon));
    button->setAutoRaise(true);
    button->setToolTip(label);
    addPassive(button);
    watch(button, part, label);
    return button;
}

void FieldEditor::addMenuButton(const char *icon, const QString &label, const QString &part, QMenu *menu)
{
    QToolButton *button = addButton(icon, label, part);
    menu->setParent(button, menu->windowFlags());
    connect(button, &QToolButton::clicked, menu,
            [button, menu] { menu->popup(button->mapToGlobal(QPoint(0, button->height()))); });
}

void FieldEditor::watch(QWidget *control, const QString &part, const QString &label)
{
    control->setObjectName(m_context.objectName + part);
    control->setAccessibleName(label.isEmpty() ? m_context.label : tr("%1: %2").arg(m_context.label, label));
    // By default the wheel gives spin boxes and combo boxes the focus, and changes them while one scrolls past.
    control->setFocusPolicy(Qt::StrongFocus);
    control->installEventFilter(this);
    m_controls.append(control);
}

void FieldEditor::send(const QVariant &value, bool finished)
{
    endRejection();
    m_lastSent = value;
    m_isEditing = !finished;
    m_hasSent = !finished;
    emit edited(value, finished);
}

void FieldEditor::reject(const QString &reason)
{
    m_isEditing = true;
    m_isRejected = true;
    emit rejected(reason);
}

void FieldEditor::endRejection()
{
    if (m_isRejected) {
        m_isRejected = false;
        emit rejected(QString());
    }
}

void FieldEditor::flush() {}

void FieldEditor::finish()
{
    flush();
    if (m_isEditing && !m_isRejected) {
        send(m_lastSent, true);
    }
}

void FieldEditor::leave()
{
    if (m_isRejected && !m_hasSent) {
        m_isEditing = false;
        endRejection();
        emit restoreRequested();
        return;
    }
    endRejection();
    finish();
}

bool FieldEditor::filterKey(QEvent *event)
{
    if (static_cast<QKeyEvent *>(event)->key() != Qt::Key_Escape || !m_isEditing) {
        return false;
    }
    event->accept(); // also as a shortcut: it is meant for the entry
    if (event->type() == QEvent::KeyPress) {
        flush(); // what waits would come after the restored value
        m_isEditing = false;
        m_hasSent = false;
        endRejection();
        emit restoreRequested();
    }
    return true;
}

bool FieldEditor::eventFilter(QObject *watched, QEvent *event)
{
    auto *control = static_cast<QWidget *>(watched);
    switch (event->type()) {
    case QEvent::Wheel:
        if (!control->hasFocus()) {
            event->ignore(); // the list scrolls instead
            return true;
        }
        return false;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        return filterKey(event);
    case QEvent::FocusIn:
        emit focusEntered();
        return false;
    case QEvent::FocusOut:
        // A menu or dialog of the editor itself ends no entry.
        if (static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason) {
            leave();
        }
        return false;
    default:
        return false;
    }
}

} // namespace DEV
} // namespace KORA
