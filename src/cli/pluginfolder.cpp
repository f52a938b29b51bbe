// SPDX-License-Identifier: Apache-2.0
#include "pluginfolder.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>

namespace {

// "linux/arm64", to be shown
QString platformOf(const QString &libraryPath, const QString &folderPath)
{
    return QFileInfo(QDir(folderPath).relativeFilePath(libraryPath)).path();
}

QString thisOs()
{
    return QStringLiteral(KORA_PLATFORM_OS).toLower();
}

QString thisArch()
{
    return QStringLiteral(KORA_PLATFORM_ARCH).toLower();
}

} // namespace

QString folderProblem(const QString &path)
{
    if (path.isEmpty()) {
        return QStringLiteral("the path of the folder is empty");
    }
    const QFileInfo info(path);
    if (!info.exists()) {
        return QStringLiteral("the folder %1 does not exist").arg(path);
    }
    if (!info.isDir()) {
        return QStringLiteral("%1 is not a folder").arg(path);
    }
    if (!info.isReadable() || !info.isExecutable()) {
        return QStringLiteral("the folder %1 cannot be read").arg(path);
    }
    return {};
}

PluginFolder::PluginFolder(const QString &path)
    : m_path(QDir::cleanPath(QFileInfo(path).absoluteFilePath()))
    , m_name(QDir(m_path).dirName())
{}

QString PluginFolder::libraryPath() const
{
    return libraryPath(thisOs(), thisArch());
}

QString PluginFolder::libraryPath(const QString &os, const QString &arch) const
{
    return QStringLiteral("%1/%2/%3/lib%4.so").arg(m_path, os, arch, m_name);
}

QStringList PluginFolder::libraries() const
{
    const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
    QStringList found;
    const QStringList osNames = QDir(m_path).entryList(folders);
    for (const QString &os : osNames) {
        const QStringList archNames = QDir(m_path + QLatin1Char('/') + os).entryList(folders);
        for (const QString &arch : archNames) {
            const QString library = libraryPath(os, arch);
            if (!QFileInfo(library).isFile()) {
                continue;
            }
            found.insert(os == thisOs() && arch == thisArch() ? 0 : found.size(), library);
        }
    }
    return found;
}

QString PluginFolder::libraryProblem() const
{
    QString problem;
    if (QFileInfo(libraryPath()).isFile()) {
        readMetaData(libraryPath(), problem);
        return problem;
    }
    QStringList platforms;
    const QStringList others = libraries();
    for (const QString &library : others) {
        platforms.append(platformOf(library, m_path));
    }
    problem = QStringLiteral("there is no library %1").arg(libraryPath());
    return platforms.isEmpty() ? problem
                               : QStringLiteral("%1; the folder has one for %2")
                                     .arg(problem, platforms.join(QLatin1String(", ")));
}

QJsonObject readMetaData(const QString &libraryPath, QString &problem)
{
    // Qt would look for a file of a similar name.
    if (!QFileInfo(libraryPath).isFile()) {
        problem = QStringLiteral("there is no library %1").arg(libraryPath);
        return {};
    }
    if (!QFileInfo(libraryPath).isReadable()) {
        problem = QStringLiteral("the library %1 cannot be read").arg(libraryPath);
        return {};
    }
    const QPluginLoader loader(libraryPath);
    const QJsonObject metaData = loader.metaData();
    if (metaData.isEmpty()) {
        problem = QStringLiteral("%1 is not a Qt plugin: %2").arg(libraryPath, loader.errorString());
    }
    return metaData;
}
