// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/qnamespace.h>

namespace KORA {

/// The numbers of the framework's gestures. They are what QGestureRecognizer::registerRecognizer() hands out
/// when koraGesturesInit() is the first in the process to register recognisers of its own; they are constants
/// so that an item may grab a gesture at any time.
enum GestureTypeNumber : int {
    FirstPanGestureType = 0x101,   ///< pan with 1, 2 and 3 touches: 257 to 259
    FirstSwipeGestureType = 0x104, ///< swipe with 1, 2 and 3 touches: 260 to 262
    PinchGestureType = 0x107,      ///< 263
    UnsupportedGestureType = 0x4E8 ///< any other number of touches: 1256
};

constexpr int MaximumGestureTouches = 3;

constexpr Qt::GestureType gestureTypeForTouches(GestureTypeNumber first, int touches)
{
    return static_cast<Qt::GestureType>(touches >= 1 && touches <= MaximumGestureTouches
                                            ? static_cast<int>(first) + touches - 1
                                            : static_cast<int>(UnsupportedGestureType));
}

} // namespace KORA
