// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldeditors_p.h>

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtWidgets/QColorDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

namespace KORA {
namespace DEV {

namespace {

/// A button that shows a colour on a checkerboard, so that its alpha is seen.
class ColorSwatch : public QToolButton
{
public:
    void setColor(const QColor &color)
    {
        m_color = color;
        update();
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QToolButton::paintEvent(event);
        QPainter painter(this);
        const QRect area = rect().adjusted(4, 4, -4, -4);
        const int cell = 4;
        painter.setClipRect(area);
        painter.fillRect(area, Qt::white);
        for (int y = 0; y * cell < area.height(); ++y) {
            for (int x = y % 2; x * cell < area.width(); x += 2) {
                painter.fillRect(area.x() + x * cell, area.y() + y * cell, cell, cell, Qt::lightGray);
            }
        }
        if (m_color.isValid()) {
            painter.fillRect(area, m_color);
        }
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(area.adjusted(0, 0, -1, -1));
    }

private:
    QColor m_color;
};

class ColorEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit ColorEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_text(new QLineEdit)
        , m_swatch(new ColorSwatch)
    {
        m_swatch->setToolTip(tr("Choose a colour"));
        m_swatch->setFixedWidth(34);
        m_text->setPlaceholderText(tr("no value"));
        m_text->setToolTip(tr("#rgb, #rrggbb, #aarrggbb or a name"));
        m_text->setMinimumWidth(40);
        addControl(m_text, 1);
        addPassive(m_swatch);
        watch(m_swatch, QStringLiteral("Swatch"), tr("choose"));
        connect(m_text, &QLineEdit::textEdited, this, &ColorEditor::onTextEdited);
        connect(m_text, &QLineEdit::returnPressed, this, &ColorEditor::finish);
        connect(m_swatch, &QToolButton::clicked, this, &ColorEditor::openDialog);
    }
    ~ColorEditor() override { delete m_dialog; }

    void setValue(const QVariant &value) override
    {
        m_color = value.value<QColor>();
        showText();
        m_swatch->setColor(m_color);
        const bool losesAlpha = m_color.isValid() && m_color.alpha() < 255;
        emit noted(losesAlpha ? tr("text form drops alpha: %1").arg(m_color.name()) : QString());
    }

private:
    static QString nameOf(const QColor &color)
    {
        return !color.isValid() ? QString()
                                : color.name(color.alpha() < 255 ? QColor::HexArgb : QColor::HexRgb);
    }
    void showText()
    {
        const QString text = nameOf(m_color);
        if (m_text->text() != text) {
            m_text->setText(text);
            m_text->setCursorPosition(0);
        }
    }
    void onTextEdited(const QString &text)
    {
        const QString name = text.trimmed();
        if (!QColor::isValidColor(name)) {
            reject(tr("not a colour: #rgb, #rrggbb, #aarrggbb or a name"));
            return;
        }
        m_color = QColor(name);
        m_swatch->setColor(m_color);
        send(m_color, false);
    }
    // Not modal: the widget is looked at, and worked with, while the colour is chosen.
    void openDialog()
    {
        if (m_dialog) {
            m_dialog->raise();
            m_dialog->activateWindow();
            return;
        }
        m_dialog = new QColorDialog(m_color, widget());
        m_dialog->setObjectName(m_text->objectName() + QStringLiteral("Dialog"));
        m_dialog->setWindowTitle(context().label);
        m_dialog->setOptions(QColorDialog::ShowAlphaChannel | QColorDialog::DontUseNativeDialog);
        m_dialog->setAttribute(Qt::WA_DeleteOnClose);
        m_dialog->setModal(false);
        connect(m_dialog, &QColorDialog::currentColorChanged, this, [this](const QColor &color) {
            m_color = color;
            showText();
            m_swatch->setColor(color);
            send(color, false);
        });
        connect(m_dialog, &QColorDialog::accepted, this, &ColorEditor::finish);
        connect(m_dialog, &QColorDialog::rejected, this, &ColorEditor::restoreRequested);
        m_dialog->show();
    }

    QLineEdit *m_text;
    ColorSwatch *m_swatch;
    QColor m_color;
    QPointer<QColorDialog> m_dialog;
};

} // namespace

FieldEditor *makeColorEditor(const FieldEditorContext &context)
{
    return new ColorEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "coloreditor.moc"
