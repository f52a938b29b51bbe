// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDateTime>
#include <QtWidgets/QFrame>

namespace KORA {
namespace DEV {

class ElidedLabel;
class FieldManager;

/// Who wrote a field last, and when.
struct FieldWriter
{
    QString who;
    QTime time;
};

/// Three lines on the field whose row is the current one: what it is, when it is shown, what it holds.
class FieldDetails : public QFrame
{
    Q_OBJECT

public:
    explicit FieldDetails(QWidget *parent = nullptr);

    void showField(const FieldManager *manager, const FieldWriter &writer, const QStringList &fieldIds);
    void clear();

private:
    void setLine(int line, const QString &text);

    static constexpr int lineCount = 3;

    ElidedLabel *m_lines[lineCount];
};

} // namespace DEV
} // namespace KORA
