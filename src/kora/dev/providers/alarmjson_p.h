// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QCoreApplication>

#include <kora/runtime/alarminfo.h>

class QJsonObject;

namespace KORA {
namespace DEV {

/// An alarm in scenarios: every field, states and severities by the names of their enumerations, colours as
/// "#aarrggbb", the time as ISO 8601.
class AlarmJson
{
    Q_DECLARE_TR_FUNCTIONS(KORA::DEV::AlarmJson)

public:
    static QJsonObject write(const AlarmInfoData &alarm);
    /// False with the reason.
    static bool read(const QJsonObject &object, AlarmInfoData &alarm, QString *problem);
    /// Colours that a scenario keeps without loss, invalid ones left out.
    static AlarmInfo::StateColors storable(const AlarmInfo::StateColors &colors);
};

} // namespace DEV
} // namespace KORA
