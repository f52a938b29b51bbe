// SPDX-License-Identifier: Apache-2.0
#include "pluginwatcher.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <sys/stat.h>

#include "pluginfolder.h"

namespace {

// Where the system has no notices to give, as on some network file systems.
const int pollMs = 2000;

} // namespace

FileStamp FileStamp::of(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {};
    }
    return {status.st_size, qint64(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec,
            status.st_ino};
}

PluginWatcher::PluginWatcher(const QString &pluginFolder, const QString &libraryPath, QObject *parent)
    : QObject(parent)
    , m_libraryPath(libraryPath)
{
    QString path = libraryPath;
    const QString top = QFileInfo(pluginFolder).path();
    while (path.size() > top.size()) {
        m_paths.prepend(path);
        path = QFileInfo(path).path();
    }
    m_paths.prepend(top);
    m_timer.setSingleShot(true);
    m_timer.setInterval(settleMs);
    connect(&m_timer, &QTimer::timeout, this, &PluginWatcher::onTimeout);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &PluginWatcher::onNotice);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &PluginWatcher::onNotice);
    connect(&m_poll, &QTimer::timeout, this, &PluginWatcher::onNotice);
    m_poll.start(pollMs);
    noteKnown();
    watch();
}

void PluginWatcher::noteKnown()
{
    m_known = m_seen = FileStamp::of(m_libraryPath);
}

// A path that was replaced is not watched any more, and what is new was never.
void PluginWatcher::watch()
{
    const QStringList watched = m_watcher.files() + m_watcher.directories();
    QStringList missing;
    for (const QString &path : qAsConst(m_paths)) {
        if (!watched.contains(path) && QFileInfo::exists(path)) {
            missing.append(path);
        }
    }
    if (!missing.isEmpty()) {
        m_watcher.addPaths(missing); // what fails is polled
    }
}

void PluginWatcher::onNotice()
{
    watch();
    const FileStamp stamp = FileStamp::of(m_libraryPath);
    if (stamp == m_seen) {
        return; // nothing new, or settling already
    }
    m_seen = stamp;
    m_unreadableMs = 0;
    m_timer.start();
}

void PluginWatcher::onTimeout()
{
    const FileStamp stamp = FileStamp::of(m_libraryPath);
    if (stamp != m_seen) {
        onNotice();
        return;
    }
    if (stamp == m_known) {
        return; // put back
    }
    QString problem;
    readMetaData(m_libraryPath, problem);
    if (!problem.isEmpty() && m_unreadableMs < patienceMs) {
        m_unreadableMs += settleMs;
        m_timer.start();
        return;
    }
    m_known = stamp;
    if (problem.isEmpty()) {
        emit libraryChanged();
    } else {
        emit libraryBroken(problem);
    }
}
