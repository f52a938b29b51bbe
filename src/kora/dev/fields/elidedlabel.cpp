// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/elidedlabel.h>

#include <QtGui/QPainter>

namespace KORA {
namespace DEV {

ElidedLabel::ElidedLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void ElidedLabel::showText(const QString &text)
{
    setText(text);
    setToolTip(text.toHtmlEscaped());
    setAccessibleName(text);
}

void ElidedLabel::setSmall()
{
    m_isSmall = true;
    updateGeometry();
}

void ElidedLabel::setTextColor(const QColor &color)
{
    m_color = color;
    update();
}

// At the time of painting: a style sheet may change the font that was there before.
QFont ElidedLabel::textFont() const
{
    QFont used = font();
    if (m_isSmall && used.pointSizeF() > 0) {
        used.setPointSizeF(std::max(6.0, used.pointSizeF() - 1));
    }
    return used;
}

QSize ElidedLabel::sizeHint() const
{
    return {QFontMetrics(textFont()).horizontalAdvance(text()), QFontMetrics(textFont()).height() + 1};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(textFont());
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(m_color.isValid() ? m_color : palette().color(group, foregroundRole()));
    painter.drawText(rect(), static_cast<int>(alignment()),
                     painter.fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

} // namespace DEV
} // namespace KORA
