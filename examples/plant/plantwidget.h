// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/kora.h>

namespace Plant {

/// What every widget of the library has: a gallery icon of its own.
class PlantWidget : public KORA::Widget
{
    Q_OBJECT

public:
    explicit PlantWidget(const KORA::WidgetData &data);

    QIcon icon() override;

protected:
    /// Whether the widget stands in the design tool, where no plant is connected.
    bool isInEditor() const;
    /// Draws the widget's items again, after a change that is not one of a field.
    void updateItems();
};

} // namespace Plant
