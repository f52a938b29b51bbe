// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

namespace KORA {
namespace INTERNAL {

/// Appends a text as QJsonDocument writes it, with quotes. For small documents of a fixed form, which this writes in a
/// fraction of the time that building and writing a QJsonDocument takes.
void appendJsonString(QString &json, const QString &text);

inline QString jsonBool(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace INTERNAL
} // namespace KORA
