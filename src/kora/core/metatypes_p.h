// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>

namespace KORA {
namespace INTERNAL {

/// The value of a string map field: index to text.
using StringMap = QMap<int, QString>;

} // namespace INTERNAL
} // namespace KORA
