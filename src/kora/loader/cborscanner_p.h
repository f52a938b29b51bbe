// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>

namespace KORA {
namespace INTERNAL {

/// Whether the data begins with a map that QCborValue::fromCbor() reads without an error. By hand, as reading it so would
/// add a fifth to the time that a plugin takes to load.
bool beginsWithCborMap(const QByteArray &data);

} // namespace INTERNAL
} // namespace KORA
