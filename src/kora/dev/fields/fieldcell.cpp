// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldcell.h>

#include <QtCore/QEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolButton>

#include <kora/dev/fields/elidedlabel.h>
#include <kora/dev/fields/fieldeditor.h>
#include <kora/dev/theme/icons.h>
#include <kora/dev/theme/theme.h>

namespace KORA {
namespace DEV {

namespace {

const int buttonSide = 22;
const int iconSide = 14;
const int editorHeight = 24;

QColor noteColor(FieldCell::Note kind)
{
    switch (kind) {
    case FieldCell::Note::Error:
        return BenchTheme::errorColor();
    case FieldCell::Note::Warning:
        return BenchTheme::warningColor();
    default:
        return BenchTheme::mutedColor();
    }
}

} // namespace

FieldCell::FieldCell(FieldEditor *editor, const QString &name, const QString &label)
    : m_editor(editor->widget())
    , m_link(makeButton(name + QStringLiteral("Link")))
    , m_revert(makeButton(name + QStringLiteral("Revert")))
    , m_noteLabel(new ElidedLabel)
{
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    m_editor->setMinimumHeight(editorHeight);
    layout->addWidget(m_editor, 0, 0);
    layout->addWidget(m_link, 0, 1);
    layout->addWidget(m_revert, 0, 2);
    layout->addWidget(m_noteLabel, 1, 0, 1, 3);
    layout->setColumnStretch(0, 1);
    m_noteLabel->setSmall();
    m_noteLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_noteLabel->hide();

    m_revert->setIcon(benchIcon("revert"));
    m_revert->setAccessibleName(tr("Reset %1").arg(label));
    m_link->setAccessibleName(tr("Tag of %1").arg(label));
    m_revert->hide();
    m_link->hide();
    connect(m_revert, &QToolButton::clicked, this, &FieldCell::revertRequested);
    connect(m_link, &QToolButton::clicked, this, &FieldCell::linkRequested);
}

// Their actions are also in the row's menu: the tab key goes from editor to editor.
QToolButton *FieldCell::makeButton(const QString &name)
{
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setFixedSize(buttonSide, buttonSide);
    button->setIconSize({iconSide, iconSide});
    QSizePolicy policy = button->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // editors stand in line
    button->setSizePolicy(policy);
    return button;
}

int FieldCell::rowHeight()
{
    return editorHeight + 4;
}

void FieldCell::setNote(Note kind, const QString &text)
{
    if (kind == m_note && text == m_noteText) {
        return;
    }
    m_note = kind;
    m_noteText = text;
    m_noteLabel->setTextColor(noteColor(kind));
    m_noteLabel->showText(text);
    m_noteLabel->setVisible(!text.isEmpty());
    update();
    emit heightChanged();
}

void FieldCell::setLink(Link link, const QString &toolTip)
{
    m_link->setVisible(link != Link::None);
    m_link->setIcon(benchIcon(link == Link::Locked ? "lock" : "link"));
    m_link->setCheckable(link == Link::Bound);
    m_link->setChecked(link == Link::Bound);
    m_link->setToolTip(toolTip);
}

void FieldCell::setRevertable(bool isRevertable, const QString &toolTip)
{
    m_revert->setVisible(isRevertable);
    m_revert->setToolTip(toolTip);
}

void FieldCell::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        m_noteLabel->setTextColor(noteColor(m_note));
    }
}

void FieldCell::paintEvent(QPaintEvent *event)
{
    QWidget::paintEvent(event);
    if (m_note != Note::Error && m_note != Note::Warning) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(noteColor(m_note), 1.5));
    painter.drawRoundedRect(QRectF(m_editor->geometry()).adjusted(-1.5, -1.5, 1.5, 1.5), 3, 3);
}

} // namespace DEV
} // namespace KORA
