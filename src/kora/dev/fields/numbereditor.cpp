// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldeditors_p.h>
#include <kora/dev/fields/numberbox.h>

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QSlider>

#include <cmath>

namespace KORA {
namespace DEV {

namespace {

const int mostSliderSteps = 1000;

/// The positions of a slider between two bounds: every whole number, or a thousand steps.
class SliderScale
{
public:
    SliderScale(const QVariant &minimum, const QVariant &maximum, bool isWhole)
        : m_minimum(minimum.toDouble())
        , m_range(maximum.toDouble() - m_minimum)
        , m_isWhole(isWhole)
        , m_steps(isWhole && m_range < mostSliderSteps ? static_cast<int>(m_range) : mostSliderSteps)
    {}

    int steps() const { return m_steps; }
    int position(const QVariant &value) const
    {
        const double part = (value.toDouble() - m_minimum) / m_range;
        return part > 0 ? qRound(std::min(part, 1.0) * m_steps) : 0;
    }
    QVariant value(int position) const
    {
        const double exact = m_minimum + m_range * position / m_steps;
        if (m_isWhole) {
            return static_cast<int>(std::round(exact));
        }
        // As few digits as the steps need, so that 0.3 is not 0.30000000000000004.
        return position == 0 || position == m_steps ? exact : QString::number(exact, 'g', 6).toDouble();
    }

private:
    double m_minimum;
    double m_range;
    bool m_isWhole;
    int m_steps;
};

class NumberEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit NumberEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_isWhole(context.type == INTERNAL::FieldTypeInteger)
        , m_box(new NumberBox(m_isWhole))
        , m_scale(context.minimum, context.maximum, m_isWhole)
    {
        m_box->setBounds(context.minimum, context.maximum);
        addControl(m_box, 1);
        connect(m_box, &NumberBox::numberEdited, this, &NumberEditor::onNumberEdited);
        connect(m_box, &NumberBox::inputRejected, this, &NumberEditor::reject);
        connect(m_box, &NumberBox::editingFinished, this, &NumberEditor::finish);
        if (context.minimum.isValid() && context.maximum.isValid()
            && context.minimum.toDouble() < context.maximum.toDouble()) {
            addSlider();
        }
    }

    void setValue(const QVariant &value) override
    {
        m_box->setNumber(value);
        moveSlider(value);
        tellPrecision(value);
    }

private:
    void addSlider()
    {
        m_slider = new QSlider(Qt::Horizontal);
        m_slider->setRange(0, m_scale.steps());
        m_slider->setMinimumWidth(40);
        addPassive(m_slider, 1);
        watch(m_slider, QStringLiteral("Slider"), tr("slider"));
        connect(m_slider, &QSlider::valueChanged, this, &NumberEditor::onSliderMoved);
        connect(m_slider, &QSlider::sliderReleased, this, &NumberEditor::finish);
    }
    void onNumberEdited(const QVariant &number, bool finished)
    {
        moveSlider(number);
        send(number, finished);
    }
    void onSliderMoved(int position)
    {
        const QVariant number = m_scale.value(position);
        m_box->setNumber(number);
        send(number, false);
    }
    void moveSlider(const QVariant &value)
    {
        if (!m_slider) {
            return;
        }
        const QSignalBlocker blocker(m_slider);
        m_slider->setSliderPosition(m_scale.position(value));
    }
    void tellPrecision(const QVariant &value)
    {
        const double number = value.toDouble();
        const QString text = QString::number(number, 'g', 6);
        const bool isLost = !m_isWhole && std::isfinite(number) && text.toDouble() != number;
        emit noted(isLost ? tr("text form: %1").arg(text) : QString());
    }

    bool m_isWhole;
    NumberBox *m_box;
    SliderScale m_scale;
    QSlider *m_slider = nullptr;
};

} // namespace

FieldEditor *makeNumberEditor(const FieldEditorContext &context)
{
    return new NumberEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "numbereditor.moc"
