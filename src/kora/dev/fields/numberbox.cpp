// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/numberbox.h>

#include <QtCore/QLocale>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyleOptionSpinBox>

#include <cmath>
#include <limits>

namespace KORA {
namespace DEV {

NumberBox::NumberBox(bool isWhole, QWidget *parent)
    : QAbstractSpinBox(parent)
    , m_isWhole(isWhole)
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed); // may be narrower than its hint
    setEmptyText(tr("no value"));
    connect(lineEdit(), &QLineEdit::textEdited, this, &NumberBox::onTextEdited);
}

void NumberBox::setEmptyText(const QString &text)
{
    lineEdit()->setPlaceholderText(text);
}

void NumberBox::setBounds(const QVariant &minimum, const QVariant &maximum)
{
    m_minimum = minimum;
    m_maximum = maximum;
}

QString NumberBox::numberText(const QVariant &number)
{
    if (!number.isValid()) {
        return {};
    }
    if (number.userType() == QMetaType::Int) {
        return QString::number(number.toInt());
    }
    return QString::number(number.toDouble(), 'g', QLocale::FloatingPointShortest);
}

void NumberBox::setNumber(const QVariant &number)
{
    const QString text = numberText(number);
    if (lineEdit()->text() != text) {
        lineEdit()->setText(text);
        if (!hasFocus()) {
            lineEdit()->setCursorPosition(0); // its front is in sight
        }
    }
}

bool NumberBox::parse(const QString &text, QVariant &number, QString &reason) const
{
    bool isNumber = false;
    const QString plain = QString(text.trimmed()).replace(QLatin1Char(','), QLatin1Char('.'));
    const double value = plain.toDouble(&isNumber);
    if (!isNumber) {
        reason = m_isWhole ? tr("not a whole number") : tr("not a number");
        return false;
    }
    if (!m_isWhole) {
        number = value;
        return true;
    }
    if (std::trunc(value) != value) {
        reason = tr("not a whole number");
        return false;
    }
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
        reason = tr("beyond 32 bits");
        return false;
    }
    number = static_cast<int>(value);
    return true;
}

void NumberBox::onTextEdited(const QString &text)
{
    QVariant number;
    QString reason;
    if (parse(text, number, reason)) {
        emit numberEdited(number, false);
    } else {
        emit inputRejected(reason);
    }
}

// A hundredth of the range, or a tenth of the number's own size, as 1, 10, 100 ...
double NumberBox::stepSize(double number) const
{
    if (m_isWhole) {
        return 1;
    }
    const bool hasRange = m_minimum.isValid() && m_maximum.isValid();
    const double size = hasRange ? (m_maximum.toDouble() - m_minimum.toDouble()) / 10 : std::fabs(number);
    if (!(size > 0) || !std::isfinite(size)) {
        return 0.1;
    }
    return std::pow(10, std::floor(std::log10(size)) - 1);
}

double NumberBox::bounded(double number) const
{
    if (m_minimum.isValid()) {
        number = std::max(number, m_minimum.toDouble());
    }
    if (m_maximum.isValid()) {
        number = std::min(number, m_maximum.toDouble());
    }
    return m_isWhole
               ? qBound<double>(std::numeric_limits<int>::min(), number, std::numeric_limits<int>::max())
               : number;
}

void NumberBox::stepBy(int steps)
{
    QVariant present;
    QString reason;
    const double number = parse(lineEdit()->text(), present, reason) ? present.toDouble() : 0;
    const double step = stepSize(number);
    if (QApplication::keyboardModifiers() & Qt::ShiftModifier) {
        steps *= 10;
    }
    // On whole multiples of the step: 0.1 + 0.2 is 0.3.
    const double moved =
        m_isWhole ? number + steps : QString::number(number + steps * step, 'g', 12).toDouble();
    const double next = bounded(moved);
    const QVariant value = m_isWhole ? QVariant(static_cast<int>(next)) : QVariant(next);
    setNumber(value);
    selectAll();
    emit numberEdited(value, false);
}

QAbstractSpinBox::StepEnabled NumberBox::stepEnabled() const
{
    return isReadOnly() ? StepNone : StepUpEnabled | StepDownEnabled;
}

// Everything can be typed; what is no number is told, not refused.
QValidator::State NumberBox::validate(QString &input, int &) const
{
    QVariant number;
    QString reason;
    return parse(input, number, reason) ? QValidator::Acceptable : QValidator::Intermediate;
}

QSize NumberBox::sizeHint() const
{
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QSize text(fontMetrics().horizontalAdvance(QStringLiteral("-00000.00")),
                     lineEdit()->sizeHint().height());
    return style()->sizeFromContents(QStyle::CT_SpinBox, &option, text, this);
}

QSize NumberBox::minimumSizeHint() const
{
    return {fontMetrics().horizontalAdvance(QStringLiteral("-000")) + 24, sizeHint().height()};
}

} // namespace DEV
} // namespace KORA
