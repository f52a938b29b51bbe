// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QVariant>
#include <QtWidgets/QAbstractSpinBox>

#include <kora/export.h>

namespace KORA {
namespace DEV {

/// A spin box for whole numbers or for doubles of any size and all digits, which may also show no value. Unlike Qt's
/// own ones it lets numbers outside the bounds be typed: what becomes of these is the receiver's to say.
class KORA_EXPORT NumberBox : public QAbstractSpinBox
{
    Q_OBJECT

public:
    explicit NumberBox(bool isWhole, QWidget *parent = nullptr);

    /// Arrow keys and buttons stay inside; invalid for none.
    void setBounds(const QVariant &minimum, const QVariant &maximum);
    void setNumber(const QVariant &number);
    /// Stands in the box while there is no number; "no value" unless set.
    void setEmptyText(const QString &text);

    /// With every digit that it takes to be read back as the same number.
    static QString numberText(const QVariant &number);

    void stepBy(int steps) override;
    QValidator::State validate(QString &input, int &position) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void numberEdited(const QVariant &number, bool finished);
    void inputRejected(const QString &reason);

protected:
    StepEnabled stepEnabled() const override;

private:
    void onTextEdited(const QString &text);
    bool parse(const QString &text, QVariant &number, QString &reason) const;
    double stepSize(double number) const;
    double bounded(double number) const;

    bool m_isWhole;
    QVariant m_minimum;
    QVariant m_maximum;
};

} // namespace DEV
} // namespace KORA
