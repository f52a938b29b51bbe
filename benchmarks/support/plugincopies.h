// SPDX-License-Identifier: Apache-2.0
//
// Many plugins out of one: copies in which the bytes of the id are replaced.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QString>

/// The id of a copy: the generator's, with the number in its last digits.
inline QString copyId(int number)
{
    return QStringLiteral("5b5e9c10-0000-4000-8000-%1").arg(number, 12, 10, QLatin1Char('0'));
}

inline QString copyPath(const QString &dir, int number)
{
    const QString id = copyId(number);
    return QStringLiteral("%1/%2/%3/lib%2.so").arg(dir, id, QStringLiteral(KORA_BENCHMARK_PLATFORM_DIR));
}

/// Fills @p dir with plugin folders; false if the id does not stand in the library or a file could not be written.
inline bool makeCopies(const QString &libraryPath, const QByteArray &libraryId, const QString &dir, int count)
{
    QFile original(libraryPath);
    if (!original.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QByteArray library = original.readAll();
    if (!library.contains(libraryId)) {
        return false;
    }
    for (int number = 0; number < count; ++number) {
        QByteArray copy = library;
        copy.replace(libraryId, copyId(number).toLatin1());
        const QString path = copyPath(dir, number);
        QFile file(path);
        if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)
            || file.write(copy) != copy.size()) {
            return false;
        }
    }
    return true;
}
