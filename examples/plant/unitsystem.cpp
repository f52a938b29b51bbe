// SPDX-License-Identifier: Apache-2.0
#include "unitsystem.h"

namespace Plant {

UnitSystem::UnitSystem(const KORA::WidgetData &data)
    : PlantWidget(data)
{}

void UnitSystem::initEvent(KORA::InitEvent *)
{
    publish();
}

void UnitSystem::fieldIsChangedEvent(KORA::FieldIsChangedEvent *event)
{
    if (event->fieldId() == QLatin1String("system")) {
        publish();
    }
}

void UnitSystem::publish()
{
    const bool isUs = getFieldValue(QStringLiteral("system")).toInt() == UsCustomary;
    setFieldValue(QStringLiteral("temperatureUnit"), isUs ? QStringLiteral("°F") : QStringLiteral("°C"));
    setFieldValue(QStringLiteral("pressureUnit"), isUs ? QStringLiteral("psi") : QStringLiteral("bar"));
    setFieldValue(QStringLiteral("volumeUnit"), isUs ? QStringLiteral("gal") : QStringLiteral("L"));
}

} // namespace Plant
