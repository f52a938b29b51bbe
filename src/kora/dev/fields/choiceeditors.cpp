// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/fieldeditors_p.h>

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>

namespace KORA {
namespace DEV {

namespace {

class BoolEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit BoolEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_box(new QCheckBox)
    {
        addControl(m_box, 1);
        connect(m_box, &QCheckBox::clicked, this, [this](bool isOn) {
            showState(isOn ? Qt::Checked : Qt::Unchecked);
            send(isOn, true);
        });
    }

    void setValue(const QVariant &value) override
    {
        const Qt::CheckState set = value.toBool() ? Qt::Checked : Qt::Unchecked;
        showState(value.isValid() ? set : Qt::PartiallyChecked);
    }

private:
    // "No value" can be shown, not chosen.
    void showState(Qt::CheckState state)
    {
        m_box->setTristate(state == Qt::PartiallyChecked);
        m_box->setCheckState(state);
        m_box->setText(state == Qt::PartiallyChecked ? tr("no value") : QString());
    }

    QCheckBox *m_box;
};

class ChoiceEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit ChoiceEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_box(new QComboBox)
        , m_declared(context.choices.size())
    {
        m_box->setPlaceholderText(tr("no value"));
        m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        m_box->setMinimumContentsLength(6);
        for (const auto &choice : context.choices) {
            m_box->addItem(choice.second, choice.first);
        }
        addControl(m_box, 1);
        connect(m_box, QOverload<int>::of(&QComboBox::activated), this,
                [this](int row) { send(m_box->itemData(row), true); });
    }

    // A value that is none of the choices stays in sight; it cannot be chosen again once it is gone.
    void setValue(const QVariant &value) override
    {
        while (m_box->count() > m_declared) {
            m_box->removeItem(m_declared);
        }
        int row = value.isValid() ? m_box->findData(value) : -1;
        if (row < 0 && value.isValid()) {
            row = m_declared;
            m_box->addItem(tr("%1 - not declared").arg(value.toString()), value);
        }
        m_box->setCurrentIndex(row);
    }

private:
    QComboBox *m_box;
    int m_declared;
};

} // namespace

FieldEditor *makeBoolEditor(const FieldEditorContext &context)
{
    return new BoolEditor(context);
}

FieldEditor *makeChoiceEditor(const FieldEditorContext &context)
{
    return new ChoiceEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "choiceeditors.moc"
