// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/fields/elidedlabel.h>
#include <kora/dev/fields/fieldeditors_p.h>
#include <kora/dev/fields/fieldsources.h>
#include <kora/dev/fields/numberbox.h>

#include <QtGui/QStandardItemModel>
#include <QtWidgets/QComboBox>

namespace KORA {
namespace DEV {

namespace {

/// Asks for the tags or trends anew whenever its list is opened: they come and go.
class SourceBox : public QComboBox
{
    Q_OBJECT

public:
    void showPopup() override
    {
        emit aboutToShow();
        QComboBox::showPopup();
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        emit aboutToShow();
        QComboBox::keyPressEvent(event);
    }

Q_SIGNALS:
    void aboutToShow();
};

/// The tag or trend that a field follows, with the live value beside it.
class SourceEditor : public FieldEditor
{
    Q_OBJECT

public:
    explicit SourceEditor(const FieldEditorContext &context)
        : FieldEditor(context)
        , m_box(new SourceBox)
        , m_value(new ElidedLabel)
    {
        m_box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        m_box->setMinimumContentsLength(6);
        addControl(m_box, 2);
        m_value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        addPassive(m_value, 1);
        m_value->setVisible(context.type == INTERNAL::FieldTypeTag); // not before it has a parent
        list();
        connect(m_box, &SourceBox::aboutToShow, this, &SourceEditor::list);
        connect(m_box, QOverload<int>::of(&QComboBox::activated), this,
                [this](int row) { emit bindingChosen(m_box->itemData(row).toString()); });
    }

    void setValue(const QVariant &value) override
    {
        const bool isNumber = value.userType() == QMetaType::Double || value.userType() == QMetaType::Float;
        const QString text = isNumber ? QString::number(value.toDouble(), 'g', 6) : value.toString();
        m_value->showText(value.isValid() ? text : tr("no value"));
    }

    void setBinding(const QString &source) override
    {
        if (source != m_source) {
            m_source = source;
            list();
        }
    }

private:
    void list()
    {
        m_box->clear();
        m_box->addItem(tr("not bound"), QString());
        const QVector<FieldSource> sources = fieldSources(context().providers, context().field);
        for (const FieldSource &source : sources) {
            add(source);
        }
        if (!m_source.isEmpty() && m_box->findData(m_source) < 0) {
            m_box->addItem(tr("%1 - gone").arg(m_source), m_source);
        }
        m_box->setCurrentIndex(std::max(0, m_box->findData(m_source)));
    }
    void add(const FieldSource &source)
    {
        const QString text =
            source.problem.isEmpty() ? source.name : tr("%1 - %2").arg(source.name, source.problem);
        m_box->addItem(text, source.name);
        auto *item = qobject_cast<QStandardItemModel *>(m_box->model())->item(m_box->count() - 1);
        item->setEnabled(source.problem.isEmpty());
        item->setToolTip(source.problem.isEmpty() ? source.kind : source.problem);
    }

    SourceBox *m_box;
    ElidedLabel *m_value;
    QString m_source;
};

} // namespace

FieldEditor *makeSourceEditor(const FieldEditorContext &context)
{
    return new SourceEditor(context);
}

} // namespace DEV
} // namespace KORA

#include "sourceeditor.moc"
