// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/dev/providers/providers.h>

using namespace KORA;
using namespace KORA::DEV;
using namespace KORA::INTERNAL;

const QDateTime noon(QDate(2024, 3, 4), QTime(12, 0), Qt::UTC);

/// Providers whose clock stands still at noon.
struct Plant : Providers
{
    Plant()
    {
        clock()->setPaused(true);
        clock()->setStart(noon);
    }
};

inline Generator generator(Generator::Kind kind, int period = 1000, double minimum = 0, double maximum = 10)
{
    Generator generator;
    generator.kind = kind;
    generator.period = period;
    generator.minimum = minimum;
    generator.maximum = maximum;
    return generator;
}

inline TagDefinition tag(const char *name, TagType type, const QVariant &value = QVariant(),
                         const Generator &generator = Generator())
{
    return {QLatin1String(name), type, generator, value, true};
}

inline AlarmInfoData alarm(const char *name, bool isAcknowledged, bool isReset)
{
    AlarmInfoData alarm;
    alarm.name = QLatin1String(name);
    alarm.acknowledgeEnabled = isAcknowledged;
    alarm.resetEnabled = isReset;
    return alarm;
}
