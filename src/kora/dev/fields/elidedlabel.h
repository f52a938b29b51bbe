// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QLabel>

namespace KORA {
namespace DEV {

/// One line that shows as much of its text as there is room for; the rest is in its tooltip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    void showText(const QString &text);
    /// Smaller than the text round it.
    void setSmall();
    /// In place of the palette's colour; an invalid one for that.
    void setTextColor(const QColor &color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QFont textFont() const;

    QColor m_color;
    bool m_isSmall = false;
};

} // namespace DEV
} // namespace KORA
