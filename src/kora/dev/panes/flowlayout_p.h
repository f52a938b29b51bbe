// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtWidgets/QLayout>

#include <memory>
#include <vector>

namespace KORA {
namespace DEV {

/// Lays controls out in rows, like words of a text, so that a tool row needs no more height than the width asks for.
class FlowLayout : public QLayout
{
    Q_OBJECT

public:
    explicit FlowLayout(QWidget *parent = nullptr);
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    Qt::Orientations expandingDirections() const override { return {}; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return arrange(QRect(0, 0, width, 0), false); }
    QSize minimumSize() const override;
    QSize sizeHint() const override { return minimumSize(); }
    void setGeometry(const QRect &rectangle) override;

private:
    /// The height that is needed.
    int arrange(const QRect &rectangle, bool isForReal) const;

    QSize sizeOfLargest() const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace DEV
} // namespace KORA
