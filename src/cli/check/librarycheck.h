// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include "findingoutput.h"

struct LibraryCheckOptions
{
    QString expectedId; ///< empty: the folder's name, if the library lies in a plugin folder
    QString
        sourceFile; ///< the metadata file that the library was built from; empty: looked for in the build tree
};

/// Checks a library file without running it, for whatever processor it is, and the metadata in it.
void checkLibrary(const QString &path, const LibraryCheckOptions &options, CheckReport &report);

/// Checks all libraries of a plugin folder. With @p complete none of the four platforms' may be missing, and none may be
/// a debug build.
void checkPluginFolder(const QString &folder, const LibraryCheckOptions &options, bool complete,
                       CheckReport &report);

/// Whether the folder is a plugin folder and not a folder of them: by its name or by what it holds.
bool isPluginFolder(const QString &folder);

/// The metadata file that a library was built from: in the source tree of the CMake build folder that the library lies
/// in, a JSON file with just this content. Empty if there is none.
QString findSourceFile(const QString &libraryPath, const QJsonObject &metaData);
