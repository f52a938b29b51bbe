// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

/// What tells one state of a file from another, without reading it.
struct FileStamp
{
    qint64 size = -1; ///< -1: there is no file
    qint64 modifiedNs = 0;
    quint64 inode = 0;

    static FileStamp of(const QString &path);
    bool operator==(const FileStamp &other) const
    {
        return size == other.size && modifiedNs == other.modifiedNs && inode == other.inode;
    }
    bool operator!=(const FileStamp &other) const { return !(*this == other); }
};

/// Tells when the library in a plugin folder is another and complete: a build writes it piece by piece, replaces it by
/// renaming, or makes the whole folder anew.
class PluginWatcher : public QObject
{
    Q_OBJECT

public:
    static constexpr int settleMs = 300;
    /// A file that is settled but no plugin may still be on its way; so long a build is waited for.
    static constexpr int patienceMs = 1500;

    /// @p libraryPath need not exist, nor its folders.
    PluginWatcher(const QString &pluginFolder, const QString &libraryPath, QObject *parent = nullptr);

    /// Notes the present file as the one that is known; changes are told against it.
    void noteKnown();

Q_SIGNALS:
    void libraryChanged();
    /// The file is another, and remains no plugin, for this reason.
    void libraryBroken(const QString &problem);

private:
    void watch();
    void onNotice();
    void onTimeout();

    QStringList m_paths; // the folders from the plugin folder's own down, and the library
    QString m_libraryPath;
    FileStamp m_known;
    FileStamp m_seen;
    int m_unreadableMs = 0;
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
    QTimer m_poll;
};
