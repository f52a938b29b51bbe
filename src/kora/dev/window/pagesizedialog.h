// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QDialog>

#include <kora/export.h>

class QSpinBox;

namespace KORA {
namespace DEV {

/// Asks for the size of the page.
class KORA_EXPORT PageSizeDialog : public QDialog
{
    Q_OBJECT

public:
    PageSizeDialog(const QSize &size, QWidget *parent);

    QSize pageSize() const;

private:
    QSpinBox *addSide(const QString &name, const QString &label, int value);

    QSpinBox *m_width;
    QSpinBox *m_height;
};

} // namespace DEV
} // namespace KORA
