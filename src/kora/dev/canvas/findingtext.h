// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QStringList>

#include <kora/dev/diagnosis/finding.h>

namespace KORA {
namespace DEV {

/// A finding's text as a sentence begins. Names stay as they are: "libQt5Svg.so.5", "level_tank".
QString asSentence(const QString &text);

/// File, line, column, pointer and code, as far as they are known.
QString placeOf(const Finding &finding);

/// Cause, place and hint, as far as they are known.
QStringList linesOf(const Finding &finding);

} // namespace DEV
} // namespace KORA
