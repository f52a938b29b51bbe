// SPDX-License-Identifier: Apache-2.0
//
// The test bench, for programs that open it themselves. It is no part of the stable binary interface.
#pragma once

#include <kora/dev/widgetlibraryplugintestwidget.h>
#include <kora/init.h>
