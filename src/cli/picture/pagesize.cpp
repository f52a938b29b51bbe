// SPDX-License-Identifier: Apache-2.0
#include "pagesize.h"

#include <kora/core/widgetlibrarypluginutils.h>
#include <kora/dev/model/scenario.h>

using KORA::DEV::PageState;

namespace {

bool isSide(double length)
{
    return length >= PageState::smallestSide && length <= PageState::largestSide;
}

} // namespace

bool pageSizeOf(const QString &text, QSize &size)
{
    QSizeF read;
    if (!KORA::INTERNAL::WidgetLibraryPluginUtils::convertStringTo(text, read) || !isSide(read.width())
        || !isSide(read.height())) {
        return false;
    }
    size = read.toSize();
    return true;
}
