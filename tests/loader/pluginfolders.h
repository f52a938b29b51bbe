// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>

/// Plugin folders in a temporary folder, filled with copies of the fixtures.
class PluginFolders
{
public:
    // The "%1" show a message that is put together by a chain of QString::arg().
    explicit PluginFolders(const QString &name = QStringLiteral("kora %1%2%3"))
        : m_dir(QDir::tempPath() + QLatin1Char('/') + name + QLatin1String(" XXXXXX"))
    {}

    bool isValid() const { return m_dir.isValid(); }
    QString path() const { return m_dir.path(); }
    QString folder(const QString &name) const { return m_dir.filePath(name); }

    /// Where the loader looks for the library of a plugin folder.
    QString libraryPath(const QString &folderName) const
    {
        return folder(folderName) + QStringLiteral("/" KORA_TEST_PLATFORM_DIR "/lib%1.so").arg(folderName);
    }

    /// Makes the folder and its platform folder, and returns the library's path.
    QString makeFolder(const QString &folderName) const
    {
        const QString path = libraryPath(folderName);
        return QDir().mkpath(QFileInfo(path).path()) ? path : QString();
    }

    /// Makes a folder with that library; empty on failure.
    QString put(const QString &folderName, const QByteArray &library) const
    {
        const QString path = makeFolder(folderName);
        return writeFile(path, library) ? path : QString();
    }

    static bool writeFile(const QString &path, const QByteArray &content)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    }

    static QByteArray readFile(const char *path)
    {
        QFile file(QString::fromLocal8Bit(path));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_dir;
};

/// Ids that differ in their last digits: "...0001".
inline QString pluginId(int number)
{
    return QStringLiteral("0a5e9c10-0000-4000-8000-%1").arg(number, 12, 16, QLatin1Char('0'));
}

/// The id that all fixtures are built with.
inline QByteArray builtId()
{
    return QByteArrayLiteral("0a5e9c10-0000-4000-8000-00000000f00d");
}

/// A fixture's library under another id, or with another text of the same length.
inline QByteArray patched(QByteArray library, const QByteArray &text, const QByteArray &replacement)
{
    Q_ASSERT(text.size() == replacement.size() && library.contains(text));
    return library.replace(text, replacement);
}
