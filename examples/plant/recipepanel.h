// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantwidget.h"
#include "touchitem.h"

namespace Plant {

/// Recipes on pages, one recipe per page. The page on show is in the field "page".
class RecipePanel : public PlantWidget
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit RecipePanel(const KORA::WidgetData &data);

    int pageCount() const;
    /// From 0; always one of the pages, also when the field says otherwise.
    int page() const;
    /// Turns a number of pages; stays on the first or last page.
    void turn(int pages);
};

/// A swipe to the left turns to the next page, one to the right to the page before.
class RecipePanelItem : public TouchItem
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit RecipePanelItem(const KORA::GraphicsObjectData &data);

protected:
    void draw(QPainter &painter, const QRectF &area) override;
    void swiped(KORA::SwipeGesture::SwipeDirection direction) override;

private:
    RecipePanel *panel() const;
    void drawLines(QPainter &painter, const QRectF &area) const;
    void drawPageDots(QPainter &painter, const QRectF &area) const;
};

} // namespace Plant
