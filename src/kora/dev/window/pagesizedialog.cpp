// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/window/pagesizedialog.h>

#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QSpinBox>

#include <kora/dev/model/scenario.h>
#include <kora/dev/theme/controls.h>

namespace KORA {
namespace DEV {

PageSizeDialog::PageSizeDialog(const QSize &size, QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("pageSizeDialog"));
    setWindowTitle(tr("Page size"));
    auto *form = new QFormLayout(this);
    m_width = addSide(QStringLiteral("pageWidth"), tr("Width"), size.width());
    m_height = addSide(QStringLiteral("pageHeight"), tr("Height"), size.height());
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

QSpinBox *PageSizeDialog::addSide(const QString &name, const QString &label, int value)
{
    auto *box = new QSpinBox(this);
    box->setRange(PageState::smallestSide, PageState::largestSide);
    box->setValue(value);
    box->setSuffix(tr(" px"));
    describe(box, {name, label, {}, {}});
    static_cast<QFormLayout *>(layout())->addRow(label, box);
    return box;
}

QSize PageSizeDialog::pageSize() const
{
    return {m_width->value(), m_height->value()};
}

} // namespace DEV
} // namespace KORA
