// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QVector>

#include <kora/runtime/alarminfo.h>

namespace Plant {

/// The alarms that the alarm list shows inside the project editor, where no plant is connected.
QVector<KORA::AlarmInfo> exampleAlarms();

} // namespace Plant
