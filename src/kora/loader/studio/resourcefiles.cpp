// SPDX-License-Identifier: Apache-2.0
#include <kora/loader/studio/resourcefiles_p.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <kora/log/logging.h>

namespace KORA {
namespace INTERNAL {

void logResourceError(const QString &pluginId, const QString &message)
{
    LogHandler(pluginId, nullptr, 0, nullptr, "RESOURCES_GENERATION").critical().debug().noquote() << message;
}

bool isUsablePath(const QString &path)
{
    return !path.isEmpty() && !path.contains(QChar::Null);
}

bool entryExists(const QFileInfo &entry)
{
    return entry.exists() || entry.isSymLink();
}

bool removeEntry(const QString &dirPath, const QString &name)
{
    if (!isUsablePath(dirPath) || !isUsablePath(name) || name.contains(QLatin1Char('/'))
        || name == QLatin1String(".") || name == QLatin1String("..")) {
        return false;
    }
    const QFileInfo entry(dirPath + QLatin1Char('/') + name);
    if (!entryExists(entry)) {
        return true;
    }
    return entry.isDir() && !entry.isSymLink() ? QDir(entry.filePath()).removeRecursively()
                                               : QFile::remove(entry.filePath());
}

} // namespace INTERNAL
} // namespace KORA
