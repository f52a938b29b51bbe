// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Compares a document byte by byte with the reference document tests/data/golden/<name>. Returns an empty text or
/// what is wrong; the difference goes to standard error.
///
/// With KORA_UPDATE_GOLDEN in the environment the reference is replaced instead (scripts/update-golden).
QString differenceFromGolden(const QString &name, const QByteArray &document);

/// The names of the reference documents in the folder tests/data/golden/<folder>.
QStringList namesOfGolden(const QString &folder);
