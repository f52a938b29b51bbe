// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <kora/export.h>

class QByteArray;
class QFileDevice;
class QString;

namespace KORA {
namespace INTERNAL {

/// Writes all data through to the system. Success of write() alone says nothing on a full disk: it only fills a
/// buffer.
bool writeThrough(QFileDevice &file, const QByteArray &data);

/// Replaces the file at once, whole or not at all. False with Qt's reason in @p problem; what was there then still is.
KORA_EXPORT bool replaceFile(const QString &path, const QByteArray &data, QString &problem);

} // namespace INTERNAL
} // namespace KORA
