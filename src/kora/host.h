// SPDX-License-Identifier: Apache-2.0
//
// All that a host uses beside what authors use: loading, metadata, field values and the private parts.
#pragma once

#include <kora/core/pluginmetainformation.h>
#include <kora/core/pluginutils.h>
#include <kora/core/widgetlibrarypluginmetainformation.h>
#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/gestures/pangesture_p.h>
#include <kora/gestures/pangesturerecognizer_p.h>
#include <kora/gestures/pinchgesture_p.h>
#include <kora/gestures/pinchgesturerecognizer_p.h>
#include <kora/gestures/swipegesture_p.h>
#include <kora/gestures/swipegesturerecognizer_p.h>
#include <kora/init.h>
#include <kora/kora.h>
#include <kora/loader/plugindata.h>
#include <kora/loader/pluginloader.h>
#include <kora/log/logging_p.h>
#include <kora/runtime/graphicsobject_p.h>
#include <kora/runtime/plugin_p.h>
#include <kora/runtime/widget_p.h>
#include <kora/runtime/widgetactionmanager_p.h>
#include <kora/runtime/widgetlibraryplugin_p.h>
