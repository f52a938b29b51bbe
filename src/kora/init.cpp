// SPDX-License-Identifier: Apache-2.0
#include <kora/init.h>

#include <QtGui/QIcon>

#include <kora/gestures/gestures.h>
#include <kora/runtime/graphicsobject.h>

namespace KORA {
namespace INTERNAL {

bool koraInit(const QIcon &icon)
{
    koraGraphicsObjectInit(icon);
    return koraGesturesInit();
}

} // namespace INTERNAL
} // namespace KORA
