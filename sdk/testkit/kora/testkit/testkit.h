// SPDX-License-Identifier: Apache-2.0
//
// All of the test kit for authors of widget libraries. Link KRPluginLibrary::TestKit.
#pragma once

#include <kora/testkit/alarm.h>
#include <kora/testkit/host.h>
#include <kora/testkit/library.h>
#include <kora/testkit/main.h>
#include <kora/testkit/scene.h>
#include <kora/testkit/touch.h>
#include <kora/testkit/widgetfixture.h>
