// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/runtime/graphicsobject.h>

namespace KORA {

/// The item of a project widget: in the design tool it shows the widget's icon, on a panel nothing.
class KORA_EXPORT NullGraphicsObject : public GraphicsObject
{
    Q_OBJECT

public:
    Q_INVOKABLE explicit NullGraphicsObject(const KORA::GraphicsObjectData &data);
    ~NullGraphicsObject() override;

    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
};

} // namespace KORA
