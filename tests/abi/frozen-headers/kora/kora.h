// SPDX-License-Identifier: Apache-2.0
//
// All that the author of a widget library uses.
#pragma once

#include <kora/gestures/gestures.h>
#include <kora/log/logging.h>
#include <kora/log/logmacros.h>
#include <kora/runtime/alarminfo.h>
#include <kora/runtime/datarole.h>
#include <kora/runtime/event.h>
#include <kora/runtime/graphicsobject.h>
#include <kora/runtime/nullgraphicsobject.h>
#include <kora/runtime/plugin.h>
#include <kora/runtime/widget.h>
#include <kora/runtime/widgetactionmanager.h>
#include <kora/runtime/widgetdata.h>
#include <kora/runtime/widgetlibraryplugin.h>
