// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGui/QIcon>

#include <kora/export.h>

namespace KORA {
namespace DEV {

/// One of the bench's own icons, drawn in the palette's text colour: legible on light and on dark. Null for an
/// unknown name.
KORA_EXPORT QIcon benchIcon(const char *name);

} // namespace DEV
} // namespace KORA
