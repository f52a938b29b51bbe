// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>

#include <kora/export.h>

namespace KORA {
namespace INTERNAL {

/// The fields of one line of a translation file, as PluginUtils::importTranslationFile() reads it.
KORA_EXPORT QStringList splitTranslationLine(const QString &line);

} // namespace INTERNAL
} // namespace KORA
