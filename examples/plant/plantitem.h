// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/kora.h>

namespace Plant {

/// What every item of the library does: it draws itself in draw(), on a panel, again after each change of a
/// field or of its size, and reads its fields in the types that drawing needs.
class PlantItem : public KORA::GraphicsObject
{
    Q_OBJECT

public:
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    void resizeEvent(KORA::ResizeEvent *event) override;
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;

protected:
    /// @p designSize is the widget's default size: there scale() is 1 and fonts have the sizes of their fields.
    PlantItem(const KORA::GraphicsObjectData &data, const QSizeF &designSize);

    /// Draws the item on its panel; @p area is the panel without its margin. Antialiasing is on.
    virtual void draw(QPainter &painter, const QRectF &area) = 0;

    /// Whether the item stands in the design tool, where the mouse and the fingers belong to the tool.
    bool isInEditor() const;
    /// How much larger or smaller the item is than its design; lines and fonts grow with it.
    qreal scale() const;
    /// Whether there is room for the value only.
    bool isCompact() const;
    /// The panel without its margin.
    QRectF contentArea() const;

    QString text(const QString &field) const;
    QStringList textList(const QString &field) const;
    /// The text that a stringMap field has for an index.
    QString mappedText(const QString &field, int index) const;
    double number(const QString &field) const;
    int integer(const QString &field) const;
    bool flag(const QString &field) const;
    QColor color(const QString &field) const;
    /// The font of a font field, or of a multi-language text, at the item's scale.
    QFont font(const QString &field) const;
    QFont textFont(const QString &textField) const;

private:
    QSizeF m_designSize;
};

} // namespace Plant
