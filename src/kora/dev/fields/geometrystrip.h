// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <kora/dev/model/benchdocument.h>

namespace KORA {
namespace DEV {

class NumberBox;

/// Position and size of the selected widget, in numbers.
class GeometryStrip : public QWidget
{
    Q_OBJECT

public:
    explicit GeometryStrip(BenchDocument *document, QWidget *parent = nullptr);

    /// Null for none.
    void setWidget(PlacedWidget *widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static constexpr int sideCount = 4; ///< x, y, width, height

    void refresh();
    void onEdited(int side, const QVariant &number);
    void restore();

    BenchDocument *m_document;
    QPointer<PlacedWidget> m_widget;
    NumberBox *m_boxes[sideCount];
    int m_gesture = 0; ///< of the entry under way
};

} // namespace DEV
} // namespace KORA
