// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGui/QColor>
#include <QtWidgets/QAbstractButton>

class QColorDialog;

namespace KORA {
namespace DEV {

/// A button that shows a colour, on a checkerboard for its alpha, or a cross for none. Pressed it opens a colour dialog
/// that leaves the window usable; Delete takes the colour away.
class ColorSwatch : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ColorSwatch(QWidget *parent = nullptr);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

    QSize sizeHint() const override { return QSize(34, 20); }
    QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    /// By the user; invalid for none.
    void colorChosen(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void openDialog();
    void choose(const QColor &color);

    QColor m_color;
    QColor m_preview; ///< while the dialog is open
    QColorDialog *m_dialog = nullptr;
};

} // namespace DEV
} // namespace KORA
