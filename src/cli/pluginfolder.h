// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Why @p path cannot be listed as a folder; empty if it can.
QString folderProblem(const QString &path);

/// A plugin folder, looked at without loading anything from it.
class PluginFolder
{
public:
    explicit PluginFolder(const QString &path);

    QString path() const { return m_path; }
    /// The folder's own name, which is to be the plugin's id.
    QString name() const { return m_name; }
    /// Where the loader of this build looks for the library; absolute.
    QString libraryPath() const;
    /// The libraries that are there, for any platform, this build's first; absolute.
    QStringList libraries() const;
    /// Why the loader cannot read the library of this build's platform, in words for the user; empty if Qt can
    /// read its metadata.
    QString libraryProblem() const;

private:
    QString libraryPath(const QString &os, const QString &arch) const;

    QString m_path;
    QString m_name;
};

/// The metadata of a library file as Qt reads it, without loading the library: no code of the plugin runs.
/// Empty, with the reason in @p problem, for any file that is no Qt plugin.
QJsonObject readMetaData(const QString &libraryPath, QString &problem);
