// SPDX-License-Identifier: Apache-2.0
#include "plantwidget.h"

#include <QtGui/QIcon>

namespace Plant {

PlantWidget::PlantWidget(const KORA::WidgetData &data)
    : KORA::Widget(data)
{}

QIcon PlantWidget::icon()
{
    // The resource prefix is the plugin's id; the icons are named by the widgets' ids.
    return QIcon(QStringLiteral(":/b29e4ff5-3b69-4566-977d-dd1851a271a4/resources/icons/%1.svg").arg(id()));
}

bool PlantWidget::isInEditor() const
{
    return widgetActionManager()->isInsideProjectEditor();
}

void PlantWidget::updateItems()
{
    const QList<KORA::GraphicsObject *> items = graphicsObjectsList();
    for (KORA::GraphicsObject *item : items) {
        item->update();
    }
}

} // namespace Plant
