// SPDX-License-Identifier: Apache-2.0
#include <kora/gestures/gestures.h>

#include <QtWidgets/QApplication>

#include <atomic>

#include <kora/gestures/pangesturerecognizer_p.h>
#include <kora/gestures/pinchgesturerecognizer_p.h>
#include <kora/gestures/swipegesturerecognizer_p.h>
#include <kora/log/logging.h>

namespace KORA {

namespace {

// Qt's gesture manager takes the recogniser.
bool registerAs(Qt::GestureType type, QGestureRecognizer *recognizer)
{
    return QGestureRecognizer::registerRecognizer(recognizer) == type;
}

// Qt numbers recognisers in the order of their registration.
bool registerRecognizers()
{
    bool asNumbered = true;
    for (int touches = 1; touches <= MaximumGestureTouches; ++touches) {
        asNumbered &= registerAs(PanGestureRecognizer::type(touches), new PanGestureRecognizer(touches));
    }
    for (int touches = 1; touches <= MaximumGestureTouches; ++touches) {
        asNumbered &= registerAs(SwipeGestureRecognizer::type(touches), new SwipeGestureRecognizer(touches));
    }
    asNumbered &= registerAs(PinchGestureRecognizer::type(), new PinchGestureRecognizer);
    return asNumbered;
}

} // namespace

bool koraGesturesInit()
{
    static std::atomic<bool> registered{false};
    if (registered.load()) {
        return true;
    }
    // Qt crashes when a recogniser is registered without an application that has widgets.
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        return false;
    }
    if (!registered.exchange(true) && !registerRecognizers()) {
        LogHandler(QString(), nullptr, 0, nullptr, "GENERAL").warning().debug()
            << "Other gesture recognizers were registered before koraGesturesInit():"
            << "items that grab pan, swipe or pinch will not receive them";
    }
    return true;
}

} // namespace KORA
