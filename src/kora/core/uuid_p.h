// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>

class QString;

namespace KORA {
namespace INTERNAL {

/// Whether the text is exactly one UUID other than the null one, without braces. QUuid alone accepts any tail
/// ("<uuid>/../../x"), and ids become names of folders and resources.
KORA_EXPORT bool isUuid(const QString &text);

/// As isUuid(), or the same between both braces.
KORA_EXPORT bool isUuidFolderName(const QString &name);

} // namespace INTERNAL
} // namespace KORA
