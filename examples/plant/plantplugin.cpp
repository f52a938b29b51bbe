// SPDX-License-Identifier: Apache-2.0
#include "plantplugin.h"

#include "alarmlist.h"
#include "bandgauge.h"
#include "gauge.h"
#include "leveltank.h"
#include "picture.h"
#include "pump.h"
#include "recipepanel.h"
#include "shiftcalendar.h"
#include "trendchart.h"
#include "unitsystem.h"
#include "valuedisplay.h"
#include "valueswitch.h"

namespace Plant {

PlantPlugin::PlantPlugin()
{
    const QString v1_0_0 = QStringLiteral("1.0.0");
    const QString v1_1_0 = QStringLiteral("1.1.0");

    // Both versions of the gauge stay: a project keeps the version that it was made with.
    registerWidget(QStringLiteral("gauge"), v1_0_0, &Gauge::staticMetaObject, &GaugeItem::staticMetaObject);
    registerWidget(QStringLiteral("gauge"), v1_1_0, &BandGauge::staticMetaObject,
                   &BandGaugeItem::staticMetaObject);
    registerWidget(QStringLiteral("level_tank"), v1_0_0, &LevelTank::staticMetaObject,
                   &LevelTankItem::staticMetaObject);
    registerWidget(QStringLiteral("value_display"), v1_0_0, &ValueDisplay::staticMetaObject,
                   &ValueDisplayItem::staticMetaObject);
    registerWidget(QStringLiteral("trend_chart"), v1_0_0, &TrendChart::staticMetaObject,
                   &TrendChartItem::staticMetaObject);
    registerWidget(QStringLiteral("alarm_list"), v1_0_0, &AlarmList::staticMetaObject,
                   &AlarmListItem::staticMetaObject);
    registerWidget(QStringLiteral("value_switch"), v1_0_0, &ValueSwitch::staticMetaObject,
                   &ValueSwitchItem::staticMetaObject);
    registerWidget(QStringLiteral("pump"), v1_0_0, &Pump::staticMetaObject, &PumpItem::staticMetaObject);
    registerWidget(QStringLiteral("recipe_panel"), v1_0_0, &RecipePanel::staticMetaObject,
                   &RecipePanelItem::staticMetaObject);
    registerWidget(QStringLiteral("picture"), v1_0_0, &Picture::staticMetaObject,
                   &PictureItem::staticMetaObject);

    registerProjectWidget(QStringLiteral("shift_calendar"), v1_0_0, &ShiftCalendar::staticMetaObject);
    registerProjectWidget(QStringLiteral("unit_system"), v1_0_0, &UnitSystem::staticMetaObject);
}

} // namespace Plant
