// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>

class QIcon;

namespace KORA {
namespace INTERNAL {

/// The host's one call before it makes widgets: sets the default gallery icon and registers the gesture
/// recognisers. Needs a QApplication. Returns what koraGesturesInit() returns. GUI thread.
KORA_EXPORT bool koraInit(const QIcon &icon);

} // namespace INTERNAL
} // namespace KORA
