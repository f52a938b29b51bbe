// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>
#include <kora/gestures/gesturetypes.h>
#include <kora/gestures/pangesture.h>
#include <kora/gestures/pinchgesture.h>
#include <kora/gestures/swipegesture.h>

namespace KORA {

/// Registers the framework's recognisers with Qt, once per process: pan and swipe with 1, 2 and 3 touches,
/// then pinch. True when they are registered, by this call or an earlier one. Without a QApplication
/// nothing happens and the result is false; a later call may still register them. Call it before anything
/// else in the process registers recognisers, or the numbers of gesturetypes.h are taken; a warning is
/// logged then. GUI thread.
KORA_EXPORT bool koraGesturesInit();

} // namespace KORA
