// SPDX-License-Identifier: Apache-2.0
#include <kora/dev/panes/flowlayout_p.h>

#include <QtWidgets/QWidget>

#include <algorithm>

namespace KORA {
namespace DEV {

namespace {

constexpr int Spacing = 4;

} // namespace

FlowLayout::FlowLayout(QWidget *parent)
    : QLayout(parent)
{
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem *item)
{
    m_items.emplace_back(item);
}

QLayoutItem *FlowLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem *FlowLayout::takeAt(int index)
{
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem *item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item;
}

QSize FlowLayout::minimumSize() const
{
    QSize size;
    for (const auto &item : m_items) {
        size = size.expandedTo(item->minimumSize());
    }
    return size;
}

void FlowLayout::setGeometry(const QRect &rectangle)
{
    QLayout::setGeometry(rectangle);
    arrange(rectangle, true);
}

int FlowLayout::arrange(const QRect &rectangle, bool isForReal) const
{
    const bool isMirrored = parentWidget() && parentWidget()->isRightToLeft();
    const int rowHeight = sizeOfLargest().height();
    int x = 0;
    int y = 0;
    for (const auto &item : m_items) {
        if (item->isEmpty()) {
            continue;
        }
        const QSize size = item->sizeHint();
        if (x > 0 && x + size.width() > rectangle.width()) {
            x = 0;
            y += rowHeight + Spacing;
        }
        if (isForReal) {
            const int left = isMirrored ? rectangle.right() + 1 - x - size.width() : rectangle.left() + x;
            const int top = rectangle.top() + y + (rowHeight - size.height()) / 2;
            item->setGeometry(QRect(QPoint(left, top), size));
        }
        x += size.width() + Spacing;
    }
    return y + rowHeight;
}

QSize FlowLayout::sizeOfLargest() const
{
    QSize size;
    for (const auto &item : m_items) {
        size = size.expandedTo(item->sizeHint());
    }
    return size;
}

} // namespace DEV
} // namespace KORA
