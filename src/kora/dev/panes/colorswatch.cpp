// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/colorswatch_p.h>

#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QAction>
#include <QtWidgets/QColorDialog>

namespace KORA {
namespace DEV {

ColorSwatch::ColorSwatch(QWidget *parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    auto *none = new QAction(tr("No colour"), this);
    none->setShortcut(QKeySequence::Delete);
    none->setShortcutContext(Qt::WidgetShortcut);
    connect(none, &QAction::triggered, this, [this] { choose(QColor()); });
    addAction(none);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(this, &QAbstractButton::clicked, this, &ColorSwatch::openDialog);
}

void ColorSwatch::setColor(const QColor &color)
{
    m_color = color;
    if (!m_dialog) {
        m_preview = color;
    }
    update();
}

void ColorSwatch::choose(const QColor &color)
{
    if (m_color == color) {
        return;
    }
    m_color = color;
    m_preview = color;
    update();
    Q_EMIT colorChosen(color);
}

void ColorSwatch::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void ColorSwatch::openDialog()
{
    if (m_dialog) {
        m_dialog->raise();
        m_dialog->activateWindow();
        return;
    }
    m_dialog = new QColorDialog(m_color.isValid() ? m_color : QColor(Qt::white), this);
    m_dialog->setObjectName(QStringLiteral("colorDialog"));
    m_dialog->setWindowTitle(accessibleName());
    m_dialog->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::DontUseNativeDialog);
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setModal(false);
    connect(m_dialog, &QColorDialog::currentColorChanged, this, [this](const QColor &color) {
        m_preview = color;
        update();
    });
    connect(m_dialog, &QColorDialog::colorSelected, this, &ColorSwatch::choose);
    connect(m_dialog, &QDialog::finished, this, [this] {
        m_dialog = nullptr;
        m_preview = m_color;
        update();
    });
    m_dialog->show();
}

void ColorSwatch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QRect field = rect().adjusted(2, 2, -3, -3);
    if (m_preview.isValid()) {
        painter.fillRect(field, Qt::white);
        painter.fillRect(field, QBrush(Qt::lightGray, Qt::Dense4Pattern));
        painter.fillRect(field, m_preview);
    } else {
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawLine(field.topLeft(), field.bottomRight());
        painter.drawLine(field.bottomLeft(), field.topRight());
    }
    painter.setPen(palette().color(isEnabled() ? QPalette::Text : QPalette::Mid));
    painter.drawRect(field);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

} // namespace DEV
} // namespace KORA
