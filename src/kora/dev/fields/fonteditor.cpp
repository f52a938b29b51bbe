// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/elidedlabel.h>
#include <kora/dev/fields/fieldeditors_p.h>
#include <kora/dev/fields/fontparts.h>

#include <QtWidgets/QToolButton>

namespace KORA {
namespace DEV {

namespace {

const int largestSampleSize = 12;

/// A sample with buttons for bold, italic and underline; family and size have rows of their own below.
class FontEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit FontEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_sample(new ElidedLabel)
    {
        m_sample->setMinimumWidth(30);
        addPassive(m_sample, 1);
        addButton(FontPart::Bold, "bold", tr("Bold"));
        addButton(FontPart::Style, "italic", tr("Italic"));
        addButton(FontPart::Underline, "underline", tr("Underline"));
    }

    void setValue(const QVariant &value) override
    {
        m_font = value.value<QFont>();
        const QString text = tr("%1, %2 pt").arg(m_font.family(), QString::number(m_font.pointSize()));
        QFont sample = m_font;
        sample.setPointSize(qBound(6, m_font.pointSize(), largestSampleSize));
        m_sample->setFont(sample); // first: the text is cut to what it takes in this font
        m_sample->showText(value.isValid() ? text : tr("no value"));
        for (const Button &button : qAsConst(m_buttons)) {
            button.control->setChecked(value.isValid() && fontPart(m_font, button.part).toBool());
        }
    }

private:
    struct Button
    {
        QToolButton *control;
        FontPart part;
    };

    void addButton(FontPart part, const char *icon, const QString &label)
    {
        const bool isFirst = m_buttons.isEmpty();
        QToolButton *button = FieldEditor::addButton(
            icon, label, isFirst ? QString() : fontPartName(part) + QStringLiteral("Button"));
        button->setCheckable(true);
        m_buttons.append({button, part});
        connect(button, &QToolButton::clicked, this, [this, part](bool isOn) {
            setFontPart(m_font, part, isOn);
            send(m_font, true);
        });
    }

    ElidedLabel *m_sample;
    QVector<Button> m_buttons;
    QFont m_font;
};

} // namespace

FieldEditor *makeFontEditor(const FieldEditorContext &context)
{
    return new FontEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "fonteditor.moc"
