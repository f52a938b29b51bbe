// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/// What a new widget library is to be.
struct NewProject
{
    QString name; ///< of the folder, the library and the build target
    QString id;   ///< its UUID without braces
    QString author;
    QStringList widgets;   ///< their ids
    QStringList languages; ///< of its translation files
};

/// Why there can be no such project, naming the option to blame; empty if there can.
QString problemWith(const NewProject &project);

/// The widget id that follows from a project's name.
QString widgetIdFromName(const QString &name);

/// Writes the project into the new folder @p path, which appears whole or not at all. False, with the reason in
/// @p problem, if it exists or cannot be written.
bool writeNewProject(const NewProject &project, const QString &path, QString &problem);
