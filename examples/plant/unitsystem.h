// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plantwidget.h"

namespace Plant {

/// A project widget: the units of the project's displays, metric or US, in read-only fields that can be
/// attached to tags.
class UnitSystem : public PlantWidget
{
    Q_OBJECT

public:
    /// The indexes of the option field "system".
    enum System { Metric = 0, UsCustomary = 1 };

    Q_INVOKABLE explicit UnitSystem(const KORA::WidgetData &data);

    void initEvent(KORA::InitEvent *event) override;
    void fieldIsChangedEvent(KORA::FieldIsChangedEvent *event) override;

private:
    void publish();
};

} // namespace Plant
